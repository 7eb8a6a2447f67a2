// The table of element types of archive files, and their shapes.
#include "cdb_elements.h"

#include <algorithm>

#include "degenerate.h"
#include "text/fields.h"

namespace kvo {

namespace {

using L = CdbLayout;

struct Type
{
    const char* name;
    L layout;
    std::vector<int> numbers;
};

const std::vector<Type>& types()
{
    static const std::vector<Type> table = {
        {"LINK", L::Line, {1, 8, 10, 31, 32, 33, 34, 68, 180}},
        {"LINK", L::BeamThird, {160, 167}},
        {"LINK", L::Spring, {11}},
        {"BEAM", L::Line, {3, 23, 54}},
        {"BEAM", L::BeamThird, {4, 24, 44, 161, 188}},
        {"BEAM", L::BeamMid, {189}},
        {"PIPE", L::Line, {17, 20, 59}},
        {"PIPE", L::BeamThird, {16, 18, 60, 288}},
        {"PIPE", L::BeamMid, {289}},
        {"ELBOW", L::BeamMid, {290}},
        {"CABLE", L::Line, {280}},
        {"FLUID", L::Line, {66, 116, 129, 138}},
        {"COMBIN", L::Spring, {7, 14, 37, 39, 40}},
        {"COMBI", L::Spring, {165, 214, 250}},
        {"MATRIX", L::Spring, {27}},
        {"CONTAC", L::Spring, {12, 52}},
        {"CONTA", L::Spring, {178}},
        {"SHELL", L::Line, {51, 61, 208, 209}},
        {"SHELL", L::Face, {28, 41, 43, 57, 63, 91, 93, 99, 131, 132, 143, 150, 157, 163, 181, 281}},
        {"PLANE", L::Triangle, {2, 35}},
        {"PLANE", L::Face, {13,  25,  42,  53,  55,  67,  75,  77,  78,  82,  83, 121,
                            145, 162, 182, 183, 222, 223, 230, 233, 238, 292, 293}},
        {"HYPER", L::Face, {56, 74, 84}},
        {"VISCO", L::Face, {88, 106, 108}},
        {"FLUID", L::Face, {29, 79, 81, 141, 243}},
        {"CPT", L::Face, {212, 213}},
        {"SOLID", L::Face, {272, 273}},
        {"SOLID", L::Brick, {5,   45,  46,  62,  64,  65,  69,  70,  73,  90,  95,  96,  97, 117,
                             122, 128, 147, 164, 185, 186, 191, 226, 231, 236, 239, 278, 279}},
        {"HYPER", L::Brick, {58, 86, 158}},
        {"VISCO", L::Brick, {89, 107}},
        {"SOLSH", L::Brick, {190}},
        {"FLUID", L::Brick, {30, 80, 142, 220}},
        {"CPT", L::Brick, {215, 216}},
        {"SOLID", L::Tetra, {72, 87, 92, 98, 123, 127, 148, 168, 187, 227, 232, 237, 240, 285, 291}},
        {"FLUID", L::Tetra, {221}},
        {"CPT", L::Tetra, {217}},
        {"MASS", L::Undrawn, {21, 71, 166}},
        {"MATRIX", L::Undrawn, {50}},
        {"CONTAC", L::Undrawn, {26, 48, 49}},
        {"TARGE", L::Undrawn, {169, 170}},
        {"CONTA", L::Undrawn, {171, 172, 173, 174, 175, 176, 177}},
        {"PRETS", L::Undrawn, {179}},
        {"MPC", L::Undrawn, {184}},
        {"SURF", L::Undrawn, {19, 22, 150, 151, 152, 153, 154, 155, 156, 159, 251, 252}},
        {"INTER", L::Undrawn, {192, 193, 194, 195, 202, 203, 204, 205}},
        {"FOLLW", L::Undrawn, {201}},
        {"REINF", L::Undrawn, {263, 264, 265}},
        {"MESH", L::Line, {200}}, // see options
    };
    return table;
}

const CdbOption options[] = {
    {"PLANE183", 0, L::Face, 8},    {"PLANE183", 1, L::Triangle, 6}, {"MESH200", 0, L::Line, 2},
    {"MESH200", 1, L::Line, 3},     {"MESH200", 2, L::Line, 2},      {"MESH200", 3, L::Line, 3},
    {"MESH200", 4, L::Triangle, 3}, {"MESH200", 5, L::Triangle, 6},  {"MESH200", 6, L::Face, 4},
    {"MESH200", 7, L::Face, 8},     {"MESH200", 8, L::Tetra, 4},     {"MESH200", 9, L::Tetra, 10},
    {"MESH200", 10, L::Brick, 8},   {"MESH200", 11, L::Brick, 20},
};

// "SOLID" of "SOLID185".
std::string prefixOf(const std::string& name)
{
    const std::string upper = upperCase(name);
    return upper.substr(0, std::min(upper.find_first_of("0123456789"), upper.size()));
}

// A number that stands in two rows (150) goes by its name.
const Type* findType(int number, const std::string& prefix)
{
    const Type* found = nullptr;
    for (const Type& type : types()) {
        if (std::find(type.numbers.begin(), type.numbers.end(), number) != type.numbers.end()) {
            if (prefix == type.name) {
                return &type;
            }
            found = found ? found : &type;
        }
    }
    return found;
}

std::int64_t entry(const std::vector<std::int64_t>& entries, std::size_t k)
{
    return k < entries.size() ? entries[k] : 0;
}

bool line(const std::vector<std::int64_t>& entries, std::size_t third, CdbShape& result)
{
    result.family = Family::Beam;
    result.shape = Shape::Line;
    result.nodes[0] = entry(entries, 0);
    result.nodes[1] = entry(entries, 1);
    const std::int64_t node = third > 0 ? entry(entries, third) : 0;
    result.nodes[2] = node > 0 ? node : noNode;
    return result.nodes[0] != 0 && result.nodes[1] != 0;
}

bool spring(const std::vector<std::int64_t>& entries, CdbShape& result)
{
    result.family = Family::Discrete;
    result.shape = Shape::Line;
    const std::int64_t a = entry(entries, 0);
    const std::int64_t b = entry(entries, 1);
    result.nodes[0] = a == 0 ? b : a;
    result.nodes[1] = b == 0 ? a : b;
    return result.nodes[0] != 0;
}

bool corners(const std::vector<std::int64_t>& entries, Family family, Shape shape, CdbShape& result)
{
    result.family = family;
    result.shape = shape;
    for (int k = 0; k < cornerCount(shape); ++k) {
        result.nodes[k] = entry(entries, static_cast<std::size_t>(k));
        if (result.nodes[k] == 0) {
            return false;
        }
    }
    return true;
}

bool face(const std::vector<std::int64_t>& entries, CdbShape& result)
{
    const std::int64_t last = entry(entries, 3);
    const bool triangle = last == 0 || last == entry(entries, 2);
    return corners(entries, Family::Shell, triangle ? Shape::Triangle : Shape::Quad, result);
}

bool brick(const std::vector<std::int64_t>& entries, CdbShape& result)
{
    if (!corners(entries, Family::Solid, Shape::Hexa, result)) {
        // Some writers give a tetrahedron its four nodes only.
        return entries.size() == 4 && corners(entries, Family::Solid, Shape::Tetra, result);
    }
    std::int64_t found[8];
    result.shape = collapsedHexa(result.nodes, found);
    std::copy_n(found, cornerCount(result.shape), result.nodes);
    return true;
}

} // namespace

CdbLayout cdbLayout(int number, const std::string& name)
{
    const std::string prefix = prefixOf(name);
    const Type* type = findType(number, prefix);
    if (type) {
        return type->layout;
    }
    if (prefix == "SOLID") {
        return L::Brick;
    }
    if (prefix == "SHELL" || prefix == "PLANE") {
        return L::Face;
    }
    return L::Undrawn;
}

// Control nodes of springs and of lines of fluid count. Axisymmetric solids have their nodes in every plane.
std::size_t cdbMostNodes(int number, CdbLayout layout)
{
    constexpr std::size_t mostOfPlanes = 8 * 12;
    switch (layout) {
    case L::Line:
    case L::BeamMid:
        return 4;
    case L::BeamThird:
        return 3;
    case L::Spring:
        return 5;
    case L::Triangle:
        return 6;
    case L::Face:
        return number == 272 || number == 273 ? mostOfPlanes : 8;
    case L::Tetra:
        return 10;
    default:
        return 20;
    }
}

const CdbOption* findCdbOption(const std::string& name, std::int64_t value)
{
    const CdbOption* found = std::find_if(std::begin(options), std::end(options),
                                          [&](const CdbOption& row) { return row.value == value && name == row.name; });
    return found == std::end(options) ? nullptr : found;
}

std::string cdbTypeName(int number, const std::string& name)
{
    const std::string prefix = prefixOf(name);
    const Type* type = findType(number, prefix);
    return (!prefix.empty() ? prefix : type ? type->name : "TYPE ") + std::to_string(number);
}

bool cdbShape(CdbLayout layout, const std::vector<std::int64_t>& entries, CdbShape& result)
{
    switch (layout) {
    case L::Line:
        return line(entries, 0, result);
    case L::BeamThird:
        return line(entries, 2, result);
    case L::BeamMid:
        return line(entries, 3, result);
    case L::Spring:
        return spring(entries, result);
    case L::Face:
        return face(entries, result);
    case L::Triangle:
        return corners(entries, Family::Shell, Shape::Triangle, result);
    case L::Brick:
        return brick(entries, result);
    case L::Tetra:
        return corners(entries, Family::Solid, Shape::Tetra, result);
    case L::Undrawn:
        break;
    }
    return false;
}

} // namespace kvo
