// The two ways to draw a model's frames and to pick in them.
//
//   ScenePath      the scene: light on every face, beams, edges, looks; picks what the picture shows, or through it
//   ContractPath   the drawing library's own frames and its picks in OpenGL's selection mode
//
// Both take the same environment, selections and operations. The scene is seen by a camera (session_camera.h), the
// library's frames by its own views, framed to the parts that are shown.
#ifndef KVO_DRAWING_PATH_H
#define KVO_DRAWING_PATH_H

#include <memory>
#include <string>

#include "picker.h"
#include <kvo/scene_view.h>

class CAEEnv;

namespace kvo {

class SessionCamera;
class SessionModel;

class DrawingPath
{
public:
    virtual ~DrawingPath() = default;

    // Into the bound framebuffer, from its lower left corner. The context must be current, here and in the destructor.
    virtual void drawFrame(int width, int height) = 0;
    // From now on frames are drawn moved by fractions of a pixel, right and up.
    virtual void shift(float right, float up) = 0;
    virtual Picker& picker() = 0; // for the last frame; lives as long as this
    // Is anything of the model, hidden parts' ghosts included, in the last frame?
    virtual bool showsModel() = 0;
};

// On a loaded model, which must outlive the path. Throws std::runtime_error for a context without OpenGL 3.3.
// camera: read at every frame; it must outlive the path, too. fontFile, fontHeight: as SceneView::setFont takes them.
std::unique_ptr<DrawingPath> makeScenePath(SessionModel& model, const SessionCamera& camera, const SceneLook& look,
                                           const Coloring& coloring, const std::string& fontFile, int fontHeight);
std::unique_ptr<DrawingPath> makeContractPath(CAEEnv& env);

} // namespace kvo

#endif
