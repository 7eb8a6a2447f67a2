// The table of element types of universal files.
#include "unv_elements.h"

#include <algorithm>

namespace kvo {

namespace {

constexpr Family shell = Family::Shell;
constexpr Family solid = Family::Solid;
constexpr Family beam = Family::Beam;
constexpr Family discrete = Family::Discrete;

// Ascending by number.
const UnvElement elements[] = {
    {11, "rod", beam, Shape::Line, 1, true, true},
    {21, "linear beam", beam, Shape::Line, 1, true, true},
    {22, "tapered beam", beam, Shape::Line, 2, true, true}, // most programs' parabolic beam
    {23, "curved beam", beam, Shape::Line, 2, true, true},
    {24, "parabolic beam", beam, Shape::Line, 2, true, true},
    {31, "straight pipe", beam, Shape::Line, 1, true, true},
    {32, "curved pipe", beam, Shape::Line, 2, true, true},
    {41, "plane stress linear triangle", shell, Shape::Triangle, 1, false, true},
    {42, "plane stress parabolic triangle", shell, Shape::Triangle, 2, false, true},
    {43, "plane stress cubic triangle", shell, Shape::Triangle, 3, false, true},
    {44, "plane stress linear quadrilateral", shell, Shape::Quad, 1, false, true},
    {45, "plane stress parabolic quadrilateral", shell, Shape::Quad, 2, false, true},
    {46, "plane stress cubic quadrilateral", shell, Shape::Quad, 3, false, true},
    {51, "plane strain linear triangle", shell, Shape::Triangle, 1, false, true},
    {52, "plane strain parabolic triangle", shell, Shape::Triangle, 2, false, true},
    {53, "plane strain cubic triangle", shell, Shape::Triangle, 3, false, true},
    {54, "plane strain linear quadrilateral", shell, Shape::Quad, 1, false, true},
    {55, "plane strain parabolic quadrilateral", shell, Shape::Quad, 2, false, true},
    {56, "plane strain cubic quadrilateral", shell, Shape::Quad, 3, false, true},
    {61, "plate linear triangle", shell, Shape::Triangle, 1, false, true},
    {62, "plate parabolic triangle", shell, Shape::Triangle, 2, false, true},
    {63, "plate cubic triangle", shell, Shape::Triangle, 3, false, true},
    {64, "plate linear quadrilateral", shell, Shape::Quad, 1, false, true},
    {65, "plate parabolic quadrilateral", shell, Shape::Quad, 2, false, true},
    {66, "plate cubic quadrilateral", shell, Shape::Quad, 3, false, true},
    {71, "membrane linear quadrilateral", shell, Shape::Quad, 1, false, true},
    {72, "membrane parabolic triangle", shell, Shape::Triangle, 2, false, true},
    {73, "membrane cubic triangle", shell, Shape::Triangle, 3, false, true},
    {74, "membrane linear triangle", shell, Shape::Triangle, 1, false, true},
    {75, "membrane parabolic quadrilateral", shell, Shape::Quad, 2, false, true},
    {76, "membrane cubic quadrilateral", shell, Shape::Quad, 3, false, true},
    {81, "axisymmetric solid linear triangle", shell, Shape::Triangle, 1, false, true},
    {82, "axisymmetric solid parabolic triangle", shell, Shape::Triangle, 2, false, true},
    {84, "axisymmetric solid linear quadrilateral", shell, Shape::Quad, 1, false, true},
    {85, "axisymmetric solid parabolic quadrilateral", shell, Shape::Quad, 2, false, true},
    {91, "thin shell linear triangle", shell, Shape::Triangle, 1, false, true},
    {92, "thin shell parabolic triangle", shell, Shape::Triangle, 2, false, true},
    {93, "thin shell cubic triangle", shell, Shape::Triangle, 3, false, true},
    {94, "thin shell linear quadrilateral", shell, Shape::Quad, 1, false, true},
    {95, "thin shell parabolic quadrilateral", shell, Shape::Quad, 2, false, true},
    {96, "thin shell cubic quadrilateral", shell, Shape::Quad, 3, false, true},
    {101, "thick shell linear wedge", solid, Shape::Wedge, 1, false, true},
    {102, "thick shell parabolic wedge", solid, Shape::Wedge, 2, false, true},
    {103, "thick shell cubic wedge", solid, Shape::Wedge, 3, false, true},
    {104, "thick shell linear brick", solid, Shape::Hexa, 1, false, true},
    {105, "thick shell parabolic brick", solid, Shape::Hexa, 2, false, true},
    {106, "thick shell cubic brick", solid, Shape::Hexa, 3, false, true},
    {111, "solid linear tetrahedron", solid, Shape::Tetra, 1, false, true},
    {112, "solid linear wedge", solid, Shape::Wedge, 1, false, true},
    {113, "solid parabolic wedge", solid, Shape::Wedge, 2, false, true},
    {114, "solid cubic wedge", solid, Shape::Wedge, 3, false, true},
    {115, "solid linear brick", solid, Shape::Hexa, 1, false, true},
    {116, "solid parabolic brick", solid, Shape::Hexa, 2, false, true},
    {117, "solid cubic brick", solid, Shape::Hexa, 3, false, true},
    {118, "solid parabolic tetrahedron", solid, Shape::Tetra, 2, false, true},
    {121, "rigid bar", discrete, Shape::Line, 1, false, false},
    {122, "rigid element", discrete, Shape::Line, 1, false, false},
    {136, "node to node translational spring", discrete, Shape::Line, 1, false, true},
    {137, "node to node rotational spring", discrete, Shape::Line, 1, false, true},
    {138, "node to ground translational spring", discrete, Shape::Line, 1, false, true},
    {139, "node to ground rotational spring", discrete, Shape::Line, 1, false, true},
    {141, "node to node damper", discrete, Shape::Line, 1, false, true},
    {142, "node to ground damper", discrete, Shape::Line, 1, false, true},
    {151, "node to node gap", discrete, Shape::Line, 1, false, true},
    {152, "node to ground gap", discrete, Shape::Line, 1, false, true},
    {161, "lumped mass", discrete, Shape::Line, 1, false, false},
    {171, "axisymmetric linear shell", beam, Shape::Line, 1, false, true},
    {172, "axisymmetric parabolic shell", beam, Shape::Line, 2, false, true},
};

// Nodes run round the bottom's rim, mid-side nodes among them, then up the sides, then round the top's rim:
//
//        5
//      6   4       a parabolic triangle; a parabolic wedge goes on with 7 8 9 half way up and 10 to 15 on top
//    1   2   3
//
// Thick shells have nothing half way up. A parabolic tetrahedron is a triangle of six, three half way up, the apex.
const int linear[] = {0, 1, 2, 3, 4, 5, 6, 7};
const int parabolicLine[] = {0, 2};
const int parabolicFace[] = {0, 2, 4, 6};
const int cubicFace[] = {0, 3, 6, 9};
const int parabolicTetra[] = {0, 2, 4, 9};
const int parabolicWedge[] = {0, 2, 4, 9, 11, 13};
const int cubicWedge[] = {0, 3, 6, 15, 18, 21};
const int parabolicHexa[] = {0, 2, 4, 6, 12, 14, 16, 18};
const int cubicHexa[] = {0, 3, 6, 9, 20, 23, 26, 29};
const int parabolicThick[] = {0, 2, 4, 6, 8, 10, 12, 14};
const int cubicThick[] = {0, 3, 6, 9, 12, 15, 18, 21};

// Nodes of a shape by order; 0: there is no such element.
constexpr std::size_t orders = 3;

struct OrderedShape
{
    Shape shape;
    bool thickShell;
    std::size_t nodes[orders];
};

const OrderedShape orderedShapes[] = {
    {Shape::Line, false, {2, 3, 0}},   {Shape::Triangle, false, {3, 6, 9}}, {Shape::Quad, false, {4, 8, 12}},
    {Shape::Tetra, false, {4, 10, 0}}, {Shape::Wedge, false, {6, 15, 24}},  {Shape::Wedge, true, {6, 12, 18}},
    {Shape::Hexa, false, {8, 20, 32}}, {Shape::Hexa, true, {8, 16, 24}},
};

constexpr int firstThickShell = 101;
constexpr int lastThickShell = 106;

bool isThickShell(const UnvElement& element)
{
    return element.descriptor >= firstThickShell && element.descriptor <= lastThickShell;
}

const OrderedShape& orderedShapeOf(const UnvElement& element)
{
    return *std::find_if(std::begin(orderedShapes), std::end(orderedShapes), [&](const OrderedShape& row) {
        return row.shape == element.shape && row.thickShell == isThickShell(element);
    });
}

} // namespace

const UnvElement* findUnvElement(std::int64_t descriptor)
{
    const UnvElement* end = elements + sizeof elements / sizeof *elements;
    const UnvElement* found = std::lower_bound(
        elements, end, descriptor, [](const UnvElement& row, std::int64_t number) { return row.descriptor < number; });
    return found < end && found->descriptor == descriptor ? found : nullptr;
}

std::size_t unvNodes(const UnvElement& element)
{
    return orderedShapeOf(element).nodes[element.order - 1];
}

int unvOrder(const UnvElement& element, std::size_t nodes)
{
    const std::size_t* counts = orderedShapeOf(element).nodes;
    const std::size_t* found = std::find(counts, counts + orders, nodes);
    const bool fits = element.family != Family::Discrete && nodes > 0 && found < counts + orders;
    return fits ? static_cast<int>(found - counts) + 1 : element.order;
}

const int* unvCorners(const UnvElement& element, int order)
{
    if (order == 1) {
        return linear;
    }
    const bool cubic = order == 3;
    if (isThickShell(element)) {
        return cubic ? cubicThick : parabolicThick;
    }
    switch (element.shape) {
    case Shape::Line:
        return parabolicLine;
    case Shape::Tetra:
        return parabolicTetra;
    case Shape::Wedge:
        return cubic ? cubicWedge : parabolicWedge;
    case Shape::Hexa:
        return cubic ? cubicHexa : parabolicHexa;
    default:
        return cubic ? cubicFace : parabolicFace;
    }
}

} // namespace kvo
