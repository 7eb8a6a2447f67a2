// The table of cell types. Pixels and voxels count their corners row by row instead of round the rim.
#include "vtk_cells.h"

#include <algorithm>
#include <iterator>

namespace kvo {

namespace {

constexpr VtkDraw corners = VtkDraw::Corners;
constexpr VtkDraw nothing = VtkDraw::Nothing;
constexpr Family shell = Family::Shell;
constexpr Family solid = Family::Solid;
constexpr Family beam = Family::Beam;

const VtkCellType types[] = {
    {1, "VTK_VERTEX", nothing, shell, Shape::Line, 1, {0, 1, 2, 3, 4, 5, 6, 7}},
    {2, "VTK_POLY_VERTEX", nothing, shell, Shape::Line, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {3, "VTK_LINE", corners, beam, Shape::Line, 2, {0, 1, 2, 3, 4, 5, 6, 7}},
    {4, "VTK_POLY_LINE", VtkDraw::Lines, beam, Shape::Line, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {5, "VTK_TRIANGLE", corners, shell, Shape::Triangle, 3, {0, 1, 2, 3, 4, 5, 6, 7}},
    {6, "VTK_TRIANGLE_STRIP", VtkDraw::Strip, shell, Shape::Triangle, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {7, "VTK_POLYGON", VtkDraw::Polygon, shell, Shape::Triangle, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {8, "VTK_PIXEL", corners, shell, Shape::Quad, 4, {0, 1, 3, 2}},
    {9, "VTK_QUAD", corners, shell, Shape::Quad, 4, {0, 1, 2, 3, 4, 5, 6, 7}},
    {10, "VTK_TETRA", corners, solid, Shape::Tetra, 4, {0, 1, 2, 3, 4, 5, 6, 7}},
    {11, "VTK_VOXEL", corners, solid, Shape::Hexa, 8, {0, 1, 3, 2, 4, 5, 7, 6}},
    {12, "VTK_HEXAHEDRON", corners, solid, Shape::Hexa, 8, {0, 1, 2, 3, 4, 5, 6, 7}},
    {13, "VTK_WEDGE", corners, solid, Shape::Wedge, 6, {0, 1, 2, 3, 4, 5, 6, 7}},
    {14, "VTK_PYRAMID", corners, solid, Shape::Pyramid, 5, {0, 1, 2, 3, 4, 5, 6, 7}},
    {15, "VTK_PENTAGONAL_PRISM", nothing, solid, Shape::Hexa, 10, {0, 1, 2, 3, 4, 5, 6, 7}},
    {16, "VTK_HEXAGONAL_PRISM", nothing, solid, Shape::Hexa, 12, {0, 1, 2, 3, 4, 5, 6, 7}},
    {21, "VTK_QUADRATIC_EDGE", corners, beam, Shape::Line, 3, {0, 1, 2, 3, 4, 5, 6, 7}},
    {22, "VTK_QUADRATIC_TRIANGLE", corners, shell, Shape::Triangle, 6, {0, 1, 2, 3, 4, 5, 6, 7}},
    {23, "VTK_QUADRATIC_QUAD", corners, shell, Shape::Quad, 8, {0, 1, 2, 3, 4, 5, 6, 7}},
    {24, "VTK_QUADRATIC_TETRA", corners, solid, Shape::Tetra, 10, {0, 1, 2, 3, 4, 5, 6, 7}},
    {25, "VTK_QUADRATIC_HEXAHEDRON", corners, solid, Shape::Hexa, 20, {0, 1, 2, 3, 4, 5, 6, 7}},
    {26, "VTK_QUADRATIC_WEDGE", corners, solid, Shape::Wedge, 15, {0, 1, 2, 3, 4, 5, 6, 7}},
    {27, "VTK_QUADRATIC_PYRAMID", corners, solid, Shape::Pyramid, 13, {0, 1, 2, 3, 4, 5, 6, 7}},
    {28, "VTK_BIQUADRATIC_QUAD", corners, shell, Shape::Quad, 9, {0, 1, 2, 3, 4, 5, 6, 7}},
    {29, "VTK_TRIQUADRATIC_HEXAHEDRON", corners, solid, Shape::Hexa, 27, {0, 1, 2, 3, 4, 5, 6, 7}},
    {30, "VTK_QUADRATIC_LINEAR_QUAD", corners, shell, Shape::Quad, 6, {0, 1, 2, 3, 4, 5, 6, 7}},
    {31, "VTK_QUADRATIC_LINEAR_WEDGE", corners, solid, Shape::Wedge, 12, {0, 1, 2, 3, 4, 5, 6, 7}},
    {32, "VTK_BIQUADRATIC_QUADRATIC_WEDGE", corners, solid, Shape::Wedge, 18, {0, 1, 2, 3, 4, 5, 6, 7}},
    {33, "VTK_BIQUADRATIC_QUADRATIC_HEXAHEDRON", corners, solid, Shape::Hexa, 24, {0, 1, 2, 3, 4, 5, 6, 7}},
    {34, "VTK_BIQUADRATIC_TRIANGLE", corners, shell, Shape::Triangle, 7, {0, 1, 2, 3, 4, 5, 6, 7}},
    {35, "VTK_CUBIC_LINE", corners, beam, Shape::Line, 4, {0, 1, 2, 3, 4, 5, 6, 7}},
    {36, "VTK_QUADRATIC_POLYGON", nothing, shell, Shape::Triangle, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {37, "VTK_TRIQUADRATIC_PYRAMID", corners, solid, Shape::Pyramid, 19, {0, 1, 2, 3, 4, 5, 6, 7}},
    {41, "VTK_CONVEX_POINT_SET", nothing, solid, Shape::Hexa, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {42, "VTK_POLYHEDRON", nothing, solid, Shape::Hexa, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {68, "VTK_LAGRANGE_CURVE", corners, beam, Shape::Line, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {69, "VTK_LAGRANGE_TRIANGLE", corners, shell, Shape::Triangle, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {70, "VTK_LAGRANGE_QUADRILATERAL", corners, shell, Shape::Quad, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {71, "VTK_LAGRANGE_TETRAHEDRON", corners, solid, Shape::Tetra, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {72, "VTK_LAGRANGE_HEXAHEDRON", corners, solid, Shape::Hexa, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {73, "VTK_LAGRANGE_WEDGE", corners, solid, Shape::Wedge, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {74, "VTK_LAGRANGE_PYRAMID", corners, solid, Shape::Pyramid, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {75, "VTK_BEZIER_CURVE", corners, beam, Shape::Line, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {76, "VTK_BEZIER_TRIANGLE", corners, shell, Shape::Triangle, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {77, "VTK_BEZIER_QUADRILATERAL", corners, shell, Shape::Quad, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {78, "VTK_BEZIER_TETRAHEDRON", corners, solid, Shape::Tetra, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {79, "VTK_BEZIER_HEXAHEDRON", corners, solid, Shape::Hexa, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {80, "VTK_BEZIER_WEDGE", corners, solid, Shape::Wedge, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
    {81, "VTK_BEZIER_PYRAMID", corners, solid, Shape::Pyramid, 0, {0, 1, 2, 3, 4, 5, 6, 7}},
};

} // namespace

const VtkCellType* findVtkCellType(std::int64_t number)
{
    const auto* row = std::lower_bound(std::begin(types), std::end(types), number,
                                       [](const VtkCellType& type, std::int64_t n) { return type.number < n; });
    return row != std::end(types) && row->number == number ? row : nullptr;
}

} // namespace kvo
