// The corners of a part's box, numbered in the window.
#ifndef KVO_SCENE_BOX_CORNERS_H
#define KVO_SCENE_BOX_CORNERS_H

#include <array>

#include "overlay_painter.h"
#include "scene_camera.h"

namespace kvo {

// extents: least and greatest x, y, z. 0 to 3 run about the face of the least z, from its least x and y to its
// greatest x; 4 to 7 stand above them. Corner 0 has a green mark, 6 a red one. Corners beside or behind the eye have
// none.
void drawBoxCorners(OverlayPainter& painter, const SceneCamera& camera, const std::array<float, 6>& extents);

} // namespace kvo

#endif
