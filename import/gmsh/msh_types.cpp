// The table of element types.
#include "msh_types.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace kvo {

namespace {

const MshType types[] = {
    {1, "2-node line", Family::Beam, Shape::Line, 2, 1},
    {2, "3-node triangle", Family::Shell, Shape::Triangle, 3, 2},
    {3, "4-node quadrangle", Family::Shell, Shape::Quad, 4, 2},
    {4, "4-node tetrahedron", Family::Solid, Shape::Tetra, 4, 3},
    {5, "8-node hexahedron", Family::Solid, Shape::Hexa, 8, 3},
    {6, "6-node prism", Family::Solid, Shape::Wedge, 6, 3},
    {7, "5-node pyramid", Family::Solid, Shape::Pyramid, 5, 3},
    {8, "3-node line", Family::Beam, Shape::Line, 3, 1},
    {9, "6-node triangle", Family::Shell, Shape::Triangle, 6, 2},
    {10, "9-node quadrangle", Family::Shell, Shape::Quad, 9, 2},
    {11, "10-node tetrahedron", Family::Solid, Shape::Tetra, 10, 3},
    {12, "27-node hexahedron", Family::Solid, Shape::Hexa, 27, 3},
    {13, "18-node prism", Family::Solid, Shape::Wedge, 18, 3},
    {14, "14-node pyramid", Family::Solid, Shape::Pyramid, 14, 3},
    {15, "1-node point", Family::Discrete, Shape::Line, 1, 0},
    {16, "8-node quadrangle", Family::Shell, Shape::Quad, 8, 2},
    {17, "20-node hexahedron", Family::Solid, Shape::Hexa, 20, 3},
    {18, "15-node prism", Family::Solid, Shape::Wedge, 15, 3},
    {19, "13-node pyramid", Family::Solid, Shape::Pyramid, 13, 3},
    {20, "9-node triangle", Family::Shell, Shape::Triangle, 9, 2},
    {21, "10-node triangle", Family::Shell, Shape::Triangle, 10, 2},
    {22, "12-node triangle", Family::Shell, Shape::Triangle, 12, 2},
    {23, "15-node triangle", Family::Shell, Shape::Triangle, 15, 2},
    {24, "15-node incomplete triangle", Family::Shell, Shape::Triangle, 15, 2},
    {25, "21-node triangle", Family::Shell, Shape::Triangle, 21, 2},
    {26, "4-node line", Family::Beam, Shape::Line, 4, 1},
    {27, "5-node line", Family::Beam, Shape::Line, 5, 1},
    {28, "6-node line", Family::Beam, Shape::Line, 6, 1},
    {29, "20-node tetrahedron", Family::Solid, Shape::Tetra, 20, 3},
    {30, "35-node tetrahedron", Family::Solid, Shape::Tetra, 35, 3},
    {31, "56-node tetrahedron", Family::Solid, Shape::Tetra, 56, 3},
    {36, "16-node quadrangle", Family::Shell, Shape::Quad, 16, 2},
    {37, "25-node quadrangle", Family::Shell, Shape::Quad, 25, 2},
    {38, "36-node quadrangle", Family::Shell, Shape::Quad, 36, 2},
    {90, "40-node prism", Family::Solid, Shape::Wedge, 40, 3},
    {91, "75-node prism", Family::Solid, Shape::Wedge, 75, 3},
    {92, "64-node hexahedron", Family::Solid, Shape::Hexa, 64, 3},
    {93, "125-node hexahedron", Family::Solid, Shape::Hexa, 125, 3},
};

} // namespace

const MshType* findMshType(std::int64_t number)
{
    const auto* row = std::lower_bound(std::begin(types), std::end(types), number,
                                       [](const MshType& type, std::int64_t n) { return type.number < n; });
    return row != std::end(types) && row->number == number ? row : nullptr;
}

} // namespace kvo
