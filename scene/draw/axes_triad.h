// The model's axes in the corner of the picture.
#ifndef KVO_SCENE_AXES_TRIAD_H
#define KVO_SCENE_AXES_TRIAD_H

#include "overlay_painter.h"
#include "scene_camera.h"

namespace kvo {

// x red, y green, z blue, with letters, in the viewport's lower left corner. Letters are of the painter's font, strokes
// without one.
void drawAxes(OverlayPainter& painter, const SceneCamera& camera);

} // namespace kvo

#endif
