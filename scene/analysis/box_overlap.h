// Do elements and boxes with sides along the axes have a point in common? Rims count.
#ifndef KVO_SCENE_BOX_OVERLAP_H
#define KVO_SCENE_BOX_OVERLAP_H

#include <cstdint>

#include "element_shape.h"
#include <kvo/measure.h>
#include <kvo/select_more.h>

namespace kvo {

bool insideBox(const ModelBox& box, const Vector3& p);

// The triangle may be a line (two corners alike) or a point.
bool triangleTouchesBox(const ModelBox& box, const Vector3& a, const Vector3& b, const Vector3& c);

// shape must be shapeOf(part, element), not None. Lines, faces of shells, and solids with what is inside them.
bool elementTouchesBox(const PartMesh& part, std::uint32_t element, ElementShape shape, const ModelBox& box);

} // namespace kvo

#endif
