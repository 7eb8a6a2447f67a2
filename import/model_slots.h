// From the corners of an element to the node slots of a model's part (partstr.h).
#ifndef KVO_IMPORT_MODEL_SLOTS_H
#define KVO_IMPORT_MODEL_SLOTS_H

#include <cstdint>

#include "mesh.h"

namespace kvo {

constexpr int maxModelSlots = 8;

// Slots per element of a family: shell 4, solid 8, beam and discrete 3.
int modelStride(Family family);

// Draw type of a family (mantypes.h).
unsigned int modelDrawType(Family family);

// Fills the modelStride() slots of one element. nodes are the ElementType::slots() entries of a finished mesh. An empty
// third slot of a line is 0xFFFFFFFF.
void fillModelSlots(const ElementType& type, const std::int64_t* nodes, unsigned int* slots);

} // namespace kvo

#endif
