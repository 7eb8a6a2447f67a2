// Frames through the scene and through the drawing library.
#include "drawing_path.h"

#include <GL/gl.h>

#include "caeenv.h"
#include "contract_picker.h"
#include "model_frame.h"
#include "scene_picker.h"

namespace kvo {

namespace {

class ScenePath : public DrawingPath
{
public:
    ScenePath(CAEEnv& env, const SceneLook& look, const Coloring& coloring) : view(env), ownPicker(view)
    {
        view.look() = look;
        view.setColoring(coloring);
    }

    void drawFrame(int width, int height) override
    {
        glViewport(0, 0, width, height);
        view.draw();
    }

    void shift(float right, float up) override
    {
        view.look().pixelShift[0] = right;
        view.look().pixelShift[1] = up;
    }

    Picker& picker() override { return ownPicker; }

private:
    SceneView view;
    ScenePicker ownPicker;
};

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

private:
    CAEEnv& env;
    float pixelShift[2] = {0, 0};
    ContractPicker ownPicker;
};

} // namespace

std::unique_ptr<DrawingPath> makeScenePath(CAEEnv& env, const SceneLook& look, const Coloring& coloring)
{
    return std::make_unique<ScenePath>(env, look, coloring);
}

std::unique_ptr<DrawingPath> makeContractPath(CAEEnv& env)
{
    return std::make_unique<ContractPath>(env);
}

} // namespace kvo
