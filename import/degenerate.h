// Solids that are written as hexahedra with repeated nodes.
#ifndef KVO_IMPORT_DEGENERATE_H
#define KVO_IMPORT_DEGENERATE_H

#include <cstdint>

#include "mesh.h"

namespace kvo {

// The shape that eight nodes, bottom round the rim and top above it, have in truth: a tetrahedron, pyramid or wedge if
// edges or faces shrank to a node, else a hexahedron. corners gets the nodes of that shape in its order, same
// handedness.
Shape collapsedHexa(const std::int64_t* nodes, std::int64_t* corners);

} // namespace kvo

#endif
