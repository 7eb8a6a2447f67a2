// Which way round solids are numbered.
#ifndef KVO_CONVERT_SOLID_SENSE_H
#define KVO_CONVERT_SOLID_SENSE_H

#include <cstdint>

#include "mesh.h"

namespace kvo {

// Numbers the corners of a solid the other way round: the mirror image's order. Other shapes stay.
void mirrorSolid(Shape shape, std::int64_t* corners);

// Of a solid in a finished mesh, with positions as nodes; below 0 for one that is numbered the wrong way round.
double solidVolume(const MeshFile& file, Shape shape, const std::int64_t* nodes);

// Mirrors the solids of a finished mesh whose volume is below 0, and returns how many they were.
std::uint64_t turnNegativeSolids(const Mesh& mesh, MeshFile& file);

} // namespace kvo

#endif
