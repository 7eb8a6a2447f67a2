// Between a camera and the drawing library's view and transformation, which view states keep.
#ifndef KVO_STATE_CAMERA_H
#define KVO_STATE_CAMERA_H

#include <string>

#include <kvo/camera.h>

class CAEEnv;

namespace kvo {

// What the environment's view and transformation show in a picture of that size. Throws ProgramError, naming the file,
// when no camera shows that: a scale that differs between directions, or too far from the origin for single precision.
// The context must be current; OpenGL's projection is changed.
Camera cameraOfState(CAEEnv& env, Viewport viewport, const std::string& file);

// Sets view and transformation so that cameraOfState gives this camera again, within a quarter of a pixel. Throws
// ProgramError, naming the file, when that cannot be: in perspective, or too far from the origin.
void cameraIntoState(CAEEnv& env, const Camera& camera, Viewport viewport, const std::string& file);

} // namespace kvo

#endif
