// Tables of element types.
#include "element_types.h"

#include <cstring>

#include "text/fields.h"

namespace kvo {

namespace {

constexpr Family shell = Family::Shell;
constexpr Family solid = Family::Solid;
constexpr Family beam = Family::Beam;
constexpr Family discrete = Family::Discrete;

// Second-order elements list their corners first, so a row needs no more than the shape. Lines are the exception: they
// list end, middle, end.
const InpElementType types[] = {
    // Solids: stress, heat, acoustic, fluid, electromagnetic, Eulerian, coupled; continuum shells; cohesive layers and
    // gaskets; sectors of cylinders, whose middle sections come last.
    {"C3D4", solid, Shape::Tetra, 4, 4, 1},
    {"C3D5", solid, Shape::Pyramid, 5, 5, 1},
    {"C3D6", solid, Shape::Wedge, 6, 6, 1},
    {"C3D8", solid, Shape::Hexa, 8, 8, 1},
    {"C3D10", solid, Shape::Tetra, 10, 10, 1},
    {"C3D13", solid, Shape::Pyramid, 13, 13, 1},
    {"C3D15V", solid, Shape::Wedge, 15, 18, 1},
    {"C3D15", solid, Shape::Wedge, 15, 15, 1},
    {"C3D20", solid, Shape::Hexa, 20, 20, 1},
    {"C3D27", solid, Shape::Hexa, 21, 27, 1},
    {"DC3D4", solid, Shape::Tetra, 4, 4, 1},
    {"DC3D5", solid, Shape::Pyramid, 5, 5, 1},
    {"DC3D6", solid, Shape::Wedge, 6, 6, 1},
    {"DC3D8", solid, Shape::Hexa, 8, 8, 1},
    {"DC3D10", solid, Shape::Tetra, 10, 10, 1},
    {"DC3D15", solid, Shape::Wedge, 15, 15, 1},
    {"DC3D20", solid, Shape::Hexa, 20, 20, 1},
    {"DCC3D8", solid, Shape::Hexa, 8, 8, 1},
    {"AC3D4", solid, Shape::Tetra, 4, 4, 1},
    {"AC3D5", solid, Shape::Pyramid, 5, 5, 1},
    {"AC3D6", solid, Shape::Wedge, 6, 6, 1},
    {"AC3D8", solid, Shape::Hexa, 8, 8, 1},
    {"AC3D10", solid, Shape::Tetra, 10, 10, 1},
    {"AC3D15", solid, Shape::Wedge, 15, 15, 1},
    {"AC3D20", solid, Shape::Hexa, 20, 20, 1},
    {"F3D4", solid, Shape::Tetra, 4, 4, 1},
    {"F3D6", solid, Shape::Wedge, 6, 6, 1},
    {"F3D8", solid, Shape::Hexa, 8, 8, 1},
    {"FC3D4", solid, Shape::Tetra, 4, 4, 1},
    {"FC3D5", solid, Shape::Pyramid, 5, 5, 1},
    {"FC3D6", solid, Shape::Wedge, 6, 6, 1},
    {"FC3D8", solid, Shape::Hexa, 8, 8, 1},
    {"EMC3D4", solid, Shape::Tetra, 4, 4, 1},
    {"EMC3D8", solid, Shape::Hexa, 8, 8, 1},
    {"EC3D8", solid, Shape::Hexa, 8, 8, 1},
    {"Q3D4", solid, Shape::Tetra, 4, 4, 1},
    {"Q3D6", solid, Shape::Wedge, 6, 6, 1},
    {"Q3D8", solid, Shape::Hexa, 8, 8, 1},
    {"Q3D10", solid, Shape::Tetra, 10, 10, 1},
    {"Q3D20", solid, Shape::Hexa, 20, 20, 1},
    {"CIN3D8", solid, Shape::Hexa, 8, 8, 1},
    {"SC6", solid, Shape::Wedge, 6, 6, 1},
    {"SC8", solid, Shape::Hexa, 8, 8, 1},
    {"CSS8", solid, Shape::Hexa, 8, 8, 1},
    {"COH3D6", solid, Shape::Wedge, 6, 6, 1},
    {"COH3D8", solid, Shape::Hexa, 8, 8, 1},
    {"GK3D6", solid, Shape::Wedge, 6, 6, 1},
    {"GK3D8", solid, Shape::Hexa, 8, 8, 1},
    {"GK3D12", solid, Shape::Wedge, 12, 12, 1},
    {"GK3D18", solid, Shape::Hexa, 18, 18, 1},
    {"CCL9", solid, Shape::Wedge, 9, 9, 1},
    {"CCL12", solid, Shape::Hexa, 12, 12, 1},
    {"CCL18", solid, Shape::Wedge, 18, 18, 1},
    {"CCL24", solid, Shape::Hexa, 24, 24, 1},
    // Shells, membranes, surfaces, rigid faces.
    {"S3", shell, Shape::Triangle, 3, 3, 1},
    {"US3", shell, Shape::Triangle, 3, 3, 1},
    {"S4", shell, Shape::Quad, 4, 4, 1},
    {"S4R5", shell, Shape::Quad, 4, 4, 1},
    {"S6", shell, Shape::Triangle, 6, 6, 1},
    {"S8", shell, Shape::Quad, 8, 8, 1},
    {"S8R5", shell, Shape::Quad, 8, 8, 1},
    {"S9R5", shell, Shape::Quad, 9, 9, 1},
    {"STRI3", shell, Shape::Triangle, 3, 3, 1},
    {"STRI65", shell, Shape::Triangle, 6, 6, 1},
    {"DS3", shell, Shape::Triangle, 3, 3, 1},
    {"DS4", shell, Shape::Quad, 4, 4, 1},
    {"DS6", shell, Shape::Triangle, 6, 6, 1},
    {"DS8", shell, Shape::Quad, 8, 8, 1},
    {"M3D3", shell, Shape::Triangle, 3, 3, 1},
    {"M3D4", shell, Shape::Quad, 4, 4, 1},
    {"M3D6", shell, Shape::Triangle, 6, 6, 1},
    {"M3D8", shell, Shape::Quad, 8, 8, 1},
    {"M3D9", shell, Shape::Quad, 9, 9, 1},
    {"SFM3D3", shell, Shape::Triangle, 3, 3, 1},
    {"SFM3D4", shell, Shape::Quad, 4, 4, 1},
    {"SFM3D6", shell, Shape::Triangle, 6, 6, 1},
    {"SFM3D8", shell, Shape::Quad, 8, 8, 1},
    {"MCL6", shell, Shape::Quad, 6, 6, 1},
    {"MCL9", shell, Shape::Quad, 9, 9, 1},
    {"SFMCL6", shell, Shape::Quad, 6, 6, 1},
    {"SFMCL9", shell, Shape::Quad, 9, 9, 1},
    {"R3D3", shell, Shape::Triangle, 3, 3, 1},
    {"R3D4", shell, Shape::Quad, 4, 4, 1},
    {"F3D3", shell, Shape::Triangle, 3, 3, 1}, // hydrostatic fluid face; F3D4 is taken by the fluid tetrahedron
    {"ACIN3D3", shell, Shape::Triangle, 3, 3, 1},
    {"ACIN3D4", shell, Shape::Quad, 4, 4, 1},
    // Plane and axisymmetric continuum elements, drawn as the faces that they are.
    {"CPS3", shell, Shape::Triangle, 3, 3, 1},
    {"CPS4", shell, Shape::Quad, 4, 4, 1},
    {"CPS6", shell, Shape::Triangle, 6, 6, 1},
    {"CPS8", shell, Shape::Quad, 8, 8, 1},
    {"CPE3", shell, Shape::Triangle, 3, 3, 1},
    {"CPE4", shell, Shape::Quad, 4, 4, 1},
    {"CPE6", shell, Shape::Triangle, 6, 6, 1},
    {"CPE8", shell, Shape::Quad, 8, 8, 1},
    {"CPEG3", shell, Shape::Triangle, 3, 3, 1},
    {"CPEG4", shell, Shape::Quad, 4, 4, 1},
    {"CPEG6", shell, Shape::Triangle, 6, 6, 1},
    {"CPEG8", shell, Shape::Quad, 8, 8, 1},
    {"CAX3", shell, Shape::Triangle, 3, 3, 1},
    {"CAX4", shell, Shape::Quad, 4, 4, 1},
    {"CAX6", shell, Shape::Triangle, 6, 6, 1},
    {"CAX8", shell, Shape::Quad, 8, 8, 1},
    {"CGAX3", shell, Shape::Triangle, 3, 3, 1},
    {"CGAX4", shell, Shape::Quad, 4, 4, 1},
    {"CGAX6", shell, Shape::Triangle, 6, 6, 1},
    {"CGAX8", shell, Shape::Quad, 8, 8, 1},
    {"DC2D3", shell, Shape::Triangle, 3, 3, 1},
    {"DC2D4", shell, Shape::Quad, 4, 4, 1},
    {"DC2D6", shell, Shape::Triangle, 6, 6, 1},
    {"DC2D8", shell, Shape::Quad, 8, 8, 1},
    {"DCAX3", shell, Shape::Triangle, 3, 3, 1},
    {"DCAX4", shell, Shape::Quad, 4, 4, 1},
    {"DCAX6", shell, Shape::Triangle, 6, 6, 1},
    {"DCAX8", shell, Shape::Quad, 8, 8, 1},
    {"AC2D3", shell, Shape::Triangle, 3, 3, 1},
    {"AC2D4", shell, Shape::Quad, 4, 4, 1},
    {"AC2D6", shell, Shape::Triangle, 6, 6, 1},
    {"AC2D8", shell, Shape::Quad, 8, 8, 1},
    {"ACAX3", shell, Shape::Triangle, 3, 3, 1},
    {"ACAX4", shell, Shape::Quad, 4, 4, 1},
    {"ACAX6", shell, Shape::Triangle, 6, 6, 1},
    {"ACAX8", shell, Shape::Quad, 8, 8, 1},
    {"COH2D4", shell, Shape::Quad, 4, 4, 1},
    {"COHAX4", shell, Shape::Quad, 4, 4, 1},
    {"GKPS4", shell, Shape::Quad, 4, 4, 1},
    {"GKPE4", shell, Shape::Quad, 4, 4, 1},
    {"GKAX4", shell, Shape::Quad, 4, 4, 1},
    {"CINPE4", shell, Shape::Quad, 4, 4, 1},
    {"CINPS4", shell, Shape::Quad, 4, 4, 1},
    {"CINAX4", shell, Shape::Quad, 4, 4, 1},
    {"DCC2D4", shell, Shape::Quad, 4, 4, 1},
    {"DCCAX4", shell, Shape::Quad, 4, 4, 1},
    {"WARP2D4", shell, Shape::Quad, 4, 4, 1},
    {"WARP2D3", shell, Shape::Triangle, 3, 3, 1},
    // Beams, pipes, elbows, frames, trusses; shells, membranes and rigid surfaces of plane models, seen from the edge.
    {"B21", beam, Shape::Line, 2, 2, 1},
    {"B22", beam, Shape::Line, 3, 3, 2},
    {"B23", beam, Shape::Line, 2, 2, 1},
    {"B31", beam, Shape::Line, 2, 2, 1},
    {"B32", beam, Shape::Line, 3, 3, 2},
    {"B33", beam, Shape::Line, 2, 2, 1},
    {"PIPE21", beam, Shape::Line, 2, 2, 1},
    {"PIPE22", beam, Shape::Line, 3, 3, 2},
    {"PIPE31", beam, Shape::Line, 2, 2, 1},
    {"PIPE32", beam, Shape::Line, 3, 3, 2},
    {"ELBOW31", beam, Shape::Line, 2, 2, 1},
    {"ELBOW32", beam, Shape::Line, 3, 3, 2},
    {"FRAME2D", beam, Shape::Line, 2, 2, 1},
    {"FRAME3D", beam, Shape::Line, 2, 2, 1},
    {"T2D2", beam, Shape::Line, 2, 2, 1},
    {"T2D3", beam, Shape::Line, 3, 3, 2},
    {"T3D2", beam, Shape::Line, 2, 2, 1},
    {"T3D3", beam, Shape::Line, 3, 3, 2},
    {"DC1D2", beam, Shape::Line, 2, 2, 1},
    {"DC1D3", beam, Shape::Line, 3, 3, 2},
    {"DCC1D2", beam, Shape::Line, 2, 2, 1},
    {"DCCAX2", beam, Shape::Line, 2, 2, 1},
    {"AC1D2", beam, Shape::Line, 2, 2, 1},
    {"AC1D3", beam, Shape::Line, 3, 3, 2},
    {"RB2D2", beam, Shape::Line, 2, 2, 1},
    {"RB3D2", beam, Shape::Line, 2, 2, 1},
    {"R2D2", beam, Shape::Line, 2, 2, 1},
    {"RAX2", beam, Shape::Line, 2, 2, 1},
    {"SAX1", beam, Shape::Line, 2, 2, 1},
    {"SAX2", beam, Shape::Line, 3, 3, 2},
    {"DSAX1", beam, Shape::Line, 2, 2, 1},
    {"DSAX2", beam, Shape::Line, 3, 3, 2},
    {"MAX1", beam, Shape::Line, 2, 2, 1},
    {"MAX2", beam, Shape::Line, 3, 3, 2},
    {"SFMAX1", beam, Shape::Line, 2, 2, 1},
    {"SFMAX2", beam, Shape::Line, 3, 3, 2},
    // Springs, dashpots, connectors, gaps. One node: to ground.
    {"SPRING1", discrete, Shape::Line, 1, 1, 0},
    {"SPRING2", discrete, Shape::Line, 2, 2, 1},
    {"SPRINGA", discrete, Shape::Line, 2, 2, 1},
    {"DASHPOT1", discrete, Shape::Line, 1, 1, 0},
    {"DASHPOT2", discrete, Shape::Line, 2, 2, 1},
    {"DASHPOTA", discrete, Shape::Line, 2, 2, 1},
    {"CONN2D2", discrete, Shape::Line, 2, 2, 1},
    {"CONN3D2", discrete, Shape::Line, 2, 2, 1},
    {"JOINTC", discrete, Shape::Line, 2, 2, 1},
    {"GAPUNI", discrete, Shape::Line, 2, 2, 1},
    {"GAPCYL", discrete, Shape::Line, 2, 2, 1},
    {"GAPSPHER", discrete, Shape::Line, 2, 2, 1},
    {"DGAP", discrete, Shape::Line, 2, 2, 1},
};

struct UndrawnType
{
    const char* name; // whole
    int nodes;
};

const UndrawnType undrawn[] = {
    {"MASS", 1}, {"ROTARYI", 1}, {"HEATCAP", 1}, {"DCOUP2D", 1}, {"DCOUP3D", 1}, {"PC3D", 1},
    {"PD3D", 1}, {"D", 3},       {"GK3D4L", 4},  {"GK3D6L", 6},  {"GK3D4LN", 4}, {"GK3D6LN", 6},
};

// Formulation letters only: no digit may follow what the row names.
bool matches(std::string_view name, const char* row)
{
    if (!startsWithIgnoringCase(name, row)) {
        return false;
    }
    for (const char c : name.substr(std::strlen(row))) {
        const bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (!letter) {
            return false;
        }
    }
    return true;
}

} // namespace

const InpElementType* findInpElementType(std::string_view name)
{
    for (const InpElementType& type : types) {
        if (matches(name, type.name) && undrawnNodeCount(name) == 0) {
            return &type;
        }
    }
    return nullptr;
}

int undrawnNodeCount(std::string_view name)
{
    for (const UndrawnType& type : undrawn) {
        if (equalsIgnoringCase(name, type.name)) {
            return type.nodes;
        }
    }
    return 0;
}

} // namespace kvo
