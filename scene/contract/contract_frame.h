// A frame of a scene as its environment has it: matrices, lights, overlays, boxes.
#ifndef KVO_SCENE_CONTRACT_FRAME_H
#define KVO_SCENE_CONTRACT_FRAME_H

#include "scene_camera.h"
#include <kvo/pick.h>
#include <kvo/scene_view.h>

namespace kvo {

class ContractFrame
{
public:
    explicit ContractFrame(CAEEnv& environment) : env(environment) {}

    // Throws std::logic_error before a model is loaded.
    void requireLoaded() const;
    // The context's shade model, which the environment keeps too.
    bool readSmooth();
    void setViewport(const int viewport[4]);

    // Projection, view and transformation as the environment makes them, for model coordinates as they are; for models
    // far from the origin (far) once more in double precision.
    void setMatrices(const SceneLook& look, bool far, SceneCamera& camera);
    // The context's lights.
    void setLights(const SceneCamera& camera, SurfaceUniforms& uniforms) const;
    // From coordinates relative to origin, as the scene's geometry.
    void drawBoxes(const SceneCamera& camera, const double origin[3]);
    // Overlays, and what the environment keeps of the frame.
    void end(const SceneLook& look, bool far, const SceneCamera& camera);
    PickView pickView() const;

private:
    bool showsOverlays(const SceneLook& look) const;
    void endTransform(const SceneLook& look);

    CAEEnv& env;
};

} // namespace kvo

#endif
