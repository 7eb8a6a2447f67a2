// Single precision: what coordinates lose in it, and where to put the origin so that they do not.
#ifndef KVO_IMPORT_MODEL_ORIGIN_H
#define KVO_IMPORT_MODEL_ORIGIN_H

#include <array>

#include "import_log.h"
#include "mesh.h"

namespace kvo {

using Origin = std::array<double, 3>;

// What to take off all coordinates: 0 unless shift, then a round vector near the middle of the mesh. The log says what
// was taken off, and when the shortest edges are lost in single precision nevertheless.
Origin chooseOrigin(const Mesh& mesh, bool shift, ImportLog& log);

// For a model that need not keep the deck's zero: 0, or, where a mesh is so far from it that single precision would
// lose sight of its edges (16 times its size), the same round vector.
Origin chooseFarOrigin(const Mesh& mesh);

} // namespace kvo

#endif
