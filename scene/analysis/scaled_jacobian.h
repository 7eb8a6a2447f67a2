// Minimum scaled Jacobian of an element (quality.h).
#ifndef KVO_SCENE_SCALED_JACOBIAN_H
#define KVO_SCENE_SCALED_JACOBIAN_H

#include <cstdint>

#include "element_shape.h"
#include <kvo/part_mesh.h>

namespace kvo {

// -1 to 1, always a number. shape must be shapeOf(part, element), neither None nor Line.
double scaledJacobian(const PartMesh& part, std::uint32_t element, ElementShape shape);

} // namespace kvo

#endif
