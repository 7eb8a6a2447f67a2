// Cells of lattices.
#include "structured_cells.h"

#include <algorithm>

namespace kvo {

std::int64_t Lattice::cellCount() const
{
    std::int64_t count = 1;
    for (int d = 0; d < dimensions; ++d) {
        count *= std::max<std::int64_t>(nodes[static_cast<std::size_t>(d)] - 1, 0);
    }
    return count;
}

std::int64_t Lattice::position(std::int64_t i, std::int64_t j, std::int64_t k) const
{
    return i + nodes[0] * ((j - 1) + nodes[1] * (k - 1));
}

Shape cellShape(const Lattice& lattice)
{
    return lattice.dimensions == 1 ? Shape::Line : lattice.dimensions == 2 ? Shape::Quad : Shape::Hexa;
}

std::vector<std::int64_t> cellCorners(const Lattice& lattice)
{
    // Steps along i, j, k to the corners, round the bottom, then round the top.
    static const int steps[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                    {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
    std::array<std::int64_t, 3> cells;
    for (std::size_t d = 0; d < 3; ++d) {
        cells[d] = static_cast<int>(d) < lattice.dimensions ? lattice.nodes[d] - 1 : 1;
    }
    const int corners = cornerCount(cellShape(lattice));
    std::vector<std::int64_t> result;
    for (std::int64_t k = 1; k <= cells[2]; ++k) {
        for (std::int64_t j = 1; j <= cells[1]; ++j) {
            for (std::int64_t i = 1; i <= cells[0]; ++i) {
                for (int c = 0; c < corners; ++c) {
                    result.push_back(lattice.position(i + steps[c][0], j + steps[c][1], k + steps[c][2]));
                }
            }
        }
    }
    return result;
}

} // namespace kvo
