// A model, a software context and a picture to draw into.
#ifndef SCENE_FIXTURE_H
#define SCENE_FIXTURE_H

#include <GL/gl.h>

#include <optional>

#include <gtest/gtest.h>

#include "caeenv.h"
#include "headless_context.h"
#include "mtrans.h"
#include "mview.h"
#include "offscreen.h"
#include "output_redirect.h"
#include "scene_models.h"
#include <kvo/model_frame.h>
#include <kvo/scene_view.h>

class SceneTest : public testing::Test
{
protected:
    static constexpr int width = 320;
    static constexpr int height = 240;

    SceneTest() : target(width, height)
    {
        glClearColor(0, 0, 0, 1);
        const kvo::OutputRedirect quiet("");
        made.emplace(GL_FLAT);
    }

    // After the last model.add(): normals, lights, the context's state as loadAndInitGL leaves it.
    void load(int shade = GL_FLAT)
    {
        const kvo::OutputRedirect quiet("");
        model.install();
        glViewport(0, 0, width, height);
        model->resizeModel(width, height);
        model->switchOnLights();
        model->setShadeModel(static_cast<unsigned int>(shade));
    }

    // The drawing library's frame, with the scene's projection.
    kvo::Picture contractPicture()
    {
        const kvo::OutputRedirect quiet("");
        kvo::applyFrame(*model, width, height);
        model->renderModel();
        return target.read();
    }

    kvo::Picture picture(kvo::SceneView& view)
    {
        target.bind();
        {
            const kvo::OutputRedirect quiet("");
            view.draw();
        }
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        return target.read();
    }

    kvo::HeadlessContext context{"software"};
    kvo::Offscreen target;
    std::optional<TestModel> made;
    TestModel& model = *made;
};

// The pixel where a model point is drawn by the last frame; y from the top.
struct Pixel
{
    int x;
    int y;
};
inline Pixel pixelOf(CAEEnv& env, double x, double y, double z)
{
    const MTransform& t = *env.getMTransformPtr();
    const double point[4] = {x, y, z, 1};
    double eye[4], clip[4];
    for (int r = 0; r < 4; ++r) {
        eye[r] = 0;
        for (int k = 0; k < 4; ++k) {
            eye[r] += t.mvMatrix[4 * k + r] * point[k];
        }
    }
    for (int r = 0; r < 4; ++r) {
        clip[r] = 0;
        for (int k = 0; k < 4; ++k) {
            clip[r] += t.projMatrix[4 * k + r] * eye[k];
        }
    }
    const double wx = (clip[0] / clip[3] + 1) / 2 * env.viewPort[2], wy = (clip[1] / clip[3] + 1) / 2 * env.viewPort[3];
    return {static_cast<int>(wx), env.viewPort[3] - 1 - static_cast<int>(wy)};
}

#endif
