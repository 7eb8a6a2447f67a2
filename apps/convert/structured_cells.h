// Structured zones: nodes in a lattice, i fastest, and cells between them.
#ifndef KVO_CONVERT_STRUCTURED_CELLS_H
#define KVO_CONVERT_STRUCTURED_CELLS_H

#include <array>
#include <cstdint>
#include <vector>

#include "mesh.h"

namespace kvo {

struct Lattice
{
    int dimensions = 3;                         // 1: lines, 2: quads, 3: hexahedra
    std::array<std::int64_t, 3> nodes{1, 1, 1}; // per direction; 1 beyond the dimensions

    std::int64_t nodeCount() const { return nodes[0] * nodes[1] * nodes[2]; }
    std::int64_t cellCount() const;
    // The position of a node from 1; i, j, k count from 1.
    std::int64_t position(std::int64_t i, std::int64_t j, std::int64_t k) const;
};

Shape cellShape(const Lattice& lattice);

// The corners of all cells as positions from 1, cell by cell, i fastest.
std::vector<std::int64_t> cellCorners(const Lattice& lattice);

} // namespace kvo

#endif
