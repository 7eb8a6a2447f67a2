// The model's axes in the corner of the picture.
#ifndef KVO_SCENE_AXES_TRIAD_H
#define KVO_SCENE_AXES_TRIAD_H

#include "scene_camera.h"

namespace kvo {

// x red, y green, z blue, with letters, in the viewport's lower left corner. Leaves OpenGL's state as it was.
void drawAxes(const SceneCamera& camera);

} // namespace kvo

#endif
