// The matrices of a frame and what follows from them.
#ifndef KVO_SCENE_SCENE_CAMERA_H
#define KVO_SCENE_SCENE_CAMERA_H

#include <kvo/camera.h>

#include "surface_program.h"

namespace kvo {

enum class SceneLight;

struct SceneCamera
{
    int viewport[4] = {0, 0, 0, 0};
    double origin[3] = {0, 0, 0};
    double modelview[16] = {}; // column-major; from model coordinates minus origin
    double projection[16] = {};
    bool perspective = false;
    bool inside = false;   // the eye is in the box of what is drawn: surfaces may be seen from within
    float viewer = 1;      // the viewer looks along -z (1) or +z (-1) of eye coordinates
    double unitScale = 0;  // by which the modelview scales all lengths; 0 when it scales directions differently
    bool mirrored = false; // the window shows the model's mirror image: outward faces run clockwise
    bool captured = false; // the matrices are those of OpenGL's fixed pipeline

    // Reads the current matrices, which are for model coordinates as they are.
    void capture();
    // What a camera sees of a box in this viewport.
    void see(const Camera& camera, const int pixels[4], const Box& box, const double newOrigin[3]);
    // Window coordinates (x, y in pixels, depth) of a point of the model; false beside and behind the eye.
    bool project(const double model[3], double window[3]) const;
    void unproject(const double window[3], double model[3]) const;
    // modelview, from coordinates relative to another origin.
    void relativeTo(const double otherOrigin[3], double out[16]) const;
    // Both matrices for coordinates relative to another origin, so that single precision can hold them: what the
    // projection takes off again is not added before. What was captured stays to the last bit.
    void matricesFrom(const double otherOrigin[3], double modelviewOut[16], double projectionOut[16]) const;
    // The matrices of what is drawn from coordinates relative to that origin.
    void setMatrices(const double otherOrigin[3], SurfaceUniforms& uniforms) const;
};

// What lies on faces is drawn a little nearer than it is, for as long as this lives: by steps of 1/2000 of the depth,
// of the picture's in parallel projection, of each point's own in perspective, where depths are no lengths. Changes the
// uniforms, with which it is drawn.
class DrawnNearer
{
public:
    DrawnNearer(const SceneCamera& camera, int steps, SurfaceUniforms& uniforms);
    ~DrawnNearer();
    DrawnNearer(const DrawnNearer&) = delete;
    DrawnNearer& operator=(const DrawnNearer&) = delete;

private:
    const bool perspective;
};

// Sets lights, ambient and bothSides for SceneLight::Eye and Model, in eye coordinates.
void setLights(SceneLight light, const SceneCamera& camera, SurfaceUniforms& uniforms);
// Sets the viewer; then takes lights and viewer from eye to model coordinates when camera.unitScale is not 0, for
// programs with UnitNormals.
void lightTheModel(const SceneCamera& camera, SurfaceUniforms& uniforms);

void setUnit(const double v[3], float out[3]);

} // namespace kvo

#endif
