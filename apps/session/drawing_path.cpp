// Frames through the scene and through the drawing library.
#include "drawing_path.h"

#include <algorithm>
#include <cmath>

#include <GL/glu.h>

#include "caeenv.h"
#include "contract_picker.h"
#include "mantypes.h"
#include "mtrans.h"
#include "partstr.h"
#include "scene_picker.h"
#include "session_camera.h"
#include "session_model.h"
#include <kvo/model_frame.h>

namespace kvo {

namespace {

// A line over the frame, dark on light and light on dark.
void drawOverlay(const std::vector<Pixel>& line, int width, int height)
{
    if (line.size() < 2) {
        return;
    }
    GLfloat background[4];
    glGetFloatv(GL_COLOR_CLEAR_VALUE, background);
    const GLfloat ink = background[0] + background[1] + background[2] < 1.5f ? 1 : 0;
    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT | GL_TRANSFORM_BIT | GL_LINE_BIT);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0, width, 0, height, -1, 1);
    glColor3f(ink, ink, ink);
    glLineWidth(1);
    glBegin(GL_LINE_STRIP);
    for (const Pixel& pixel : line) {
        glVertex2d(pixel.x, pixel.y);
    }
    glEnd();
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
    glPopAttrib();
}

class ScenePath : public DrawingPath
{
public:
    ScenePath(SessionModel& sessionModel, const SessionCamera& sessionCamera, const SceneLook& look,
              const Coloring& coloring)
        : camera(sessionCamera), model(sessionModel),
          shown(model.model() ? std::make_unique<ModelView>(*model.model()) : nullptr),
          view(shown ? std::make_unique<SceneView>(*shown) : std::make_unique<SceneView>(model.env())),
          ownPicker(*view, shown ? ShownModel(*shown) : ShownModel(model.env())), ghosts(look.ghosts)
    {
        view->look() = look;
        view->setColoring(coloring);
    }

    void setFont(const std::string& file, int height) { view->setFont(file, height); }

    void drawFrame(int width, int height) override
    {
        glViewport(0, 0, width, height);
        if (shown) {
            GLint shade = GL_SMOOTH;
            glGetIntegerv(GL_SHADE_MODEL, &shade);
            view->look().smooth = shade == GL_SMOOTH;
            model.show(*shown);
        }
        view->setCamera(camera.camera());
        view->draw();
        drawOverlay(camera.overlay(), width, height);
    }

    void shift(float right, float up) override
    {
        view->look().pixelShift[0] = right;
        view->look().pixelShift[1] = up;
    }

    Picker& picker() override { return ownPicker; }

    bool showsModel() override
    {
        int v[4];
        glGetIntegerv(GL_VIEWPORT, v);
        const PickRegion all = PickRegion::rectangle(v[0], v[1], v[0] + v[2], v[1] + v[3]);
        return ghosts || VisiblePicker(*view).nearest(PickType::Part, all);
    }

private:
    const SessionCamera& camera;
    SessionModel& model;
    std::unique_ptr<ModelView> shown; // of a Model; else the environment itself is drawn
    std::unique_ptr<SceneView> view;
    ScenePicker ownPicker;
    const bool ghosts;
};

// Whether the part's nodes span part of the window, by the last frame's matrices. Seen from its edge a flat part spans
// nothing, and its faces cover no pixel; lines need one direction only.
bool isInWindow(const PartInfoStr& part, const MTransform& transform, const int viewport[4])
{
    const bool faces = part.partDrawType == SHELL || part.partDrawType == SOLID;
    double low[2] = {HUGE_VAL, HUGE_VAL}, high[2] = {-HUGE_VAL, -HUGE_VAL};
    for (std::size_t node = 0; node < part.partNodes.numNodes; ++node) {
        const float* p = part.partNodes.nodeValues + 3 * node;
        double at[3];
        gluProject(p[0], p[1], p[2], transform.mvMatrix, transform.projMatrix, viewport, &at[0], &at[1], &at[2]);
        for (int axis = 0; axis < 2 && std::isfinite(at[0]) && std::isfinite(at[1]); ++axis) {
            low[axis] = std::min(low[axis], std::max<double>(at[axis], viewport[axis]));
            high[axis] = std::max(high[axis], std::min<double>(at[axis], viewport[axis] + viewport[2 + axis]));
        }
        const double seen = 0.01; // pixels
        const bool across = high[0] - low[0] > seen, up = high[1] - low[1] > seen;
        if (faces ? across && up : (across && high[1] >= low[1]) || (up && high[0] >= low[0])) {
            return true;
        }
    }
    return false;
}

class ContractPath : public DrawingPath
{
public:
    explicit ContractPath(CAEEnv& environment) : env(environment) {}

    void drawFrame(int width, int height) override
    {
        applyFrame(env, width, height);
        shiftFrame(pixelShift[0], pixelShift[1]);
        // Selected nodes are lit by whatever normal was given last; so that is not one of the frame before.
        glNormal3f(0, 0, 1);
        env.renderModel();
    }

    void shift(float right, float up) override
    {
        pixelShift[0] = right;
        pixelShift[1] = up;
    }

    Picker& picker() override { return ownPicker; }

    bool showsModel() override
    {
        const PartInfoStr* parts = env.getPartsList();
        return std::any_of(parts, parts + env.getNumParts(), [this](const PartInfoStr& part) {
            return (part.partFlag & PART_HIDDEN) == 0 && isInWindow(part, *env.getMTransformPtr(), env.viewPort);
        });
    }

private:
    CAEEnv& env;
    float pixelShift[2] = {0, 0};
    ContractPicker ownPicker;
};

} // namespace

std::unique_ptr<DrawingPath> makeScenePath(SessionModel& model, const SessionCamera& camera, const SceneLook& look,
                                           const Coloring& coloring, const std::string& fontFile, int fontHeight)
{
    auto out = std::make_unique<ScenePath>(model, camera, look, coloring);
    out->setFont(fontFile, fontHeight);
    return out;
}

std::unique_ptr<DrawingPath> makeContractPath(CAEEnv& env)
{
    return std::make_unique<ContractPath>(env);
}

} // namespace kvo
