// The matrices of a frame and what follows from them.
#ifndef KVO_SCENE_SCENE_CAMERA_H
#define KVO_SCENE_SCENE_CAMERA_H

#include "surface_program.h"

class CAEEnv;

namespace kvo {

enum class SceneLight;

struct SceneCamera
{
    int viewport[4] = {0, 0, 0, 0};
    double modelview[16]; // column-major; from model coordinates
    double projection[16];
    float viewer = 1;      // the viewer looks along -z (1) or +z (-1) of eye coordinates
    double unitScale = 0;  // by which the modelview scales all lengths; 0 when it scales directions differently
    bool mirrored = false; // the window shows the model's mirror image: outward faces run clockwise

    // Reads the current matrices.
    void capture();
    // Window coordinates (x, y in pixels, depth) of a point of the model.
    void project(const double model[3], double window[3]) const;
    // modelview, from coordinates relative to origin.
    void relativeTo(const double origin[3], double out[16]) const;
    // Both matrices for coordinates relative to origin, so that single precision can hold them: what the projection
    // takes off again is not added before.
    void matricesFrom(const double origin[3], double modelviewOut[16], double projectionOut[16]) const;
};

// Sets lights, viewer, ambient and bothSides: in model coordinates when camera.unitScale is not 0, for programs with
// UnitNormals.
void setLights(SceneLight light, const SceneCamera& camera, SurfaceUniforms& uniforms);

} // namespace kvo

#endif
