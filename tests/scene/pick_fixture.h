// What OpenGL's selection mode finds in a model: the drawing library's own pick pass, with a buffer that no pick fills
// and with the axis triad under a name of its own.
#ifndef PICK_FIXTURE_H
#define PICK_FIXTURE_H

#include <GL/gl.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "headless_context.h"
#include "mtrans.h"
#include "mview.h"
#include "offscreen.h"
#include "output_redirect.h"
#include "pick_models.h"
#include <kvo/through_picker.h>

struct ContractHit
{
    std::uint32_t part;
    std::uint32_t entity; // 0 for a part
    float low;            // depths as the contract library normalises them
    float high;
};

class PickTest : public testing::Test
{
protected:
    static constexpr int width = 400;
    static constexpr int height = 300;

    // Everything up to the first frame; transform() may change the environment's transformation before it.
    template <class Change>
    void show(const std::vector<PartInfoStr>& parts, int viewType, int shadeModel, const Change& transform)
    {
        const kvo::OutputRedirect quiet("");
        model.reset(new TestModel(shadeModel));
        for (const PartInfoStr& part : parts) {
            model->add(part);
        }
        model->install();
        env = &**model;
        glShadeModel(static_cast<GLenum>(shadeModel));
        env->computeNormals();
        env->setHideMode(1);
        env->mView->mViewType = viewType;
        env->resizeModel(width, height);
        env->renderModel(); // finds the centre of the window
        transform(*env->mTrans);
        env->renderModel();
        view = kvo::viewOf(*env->mTrans);
    }
    void show(const std::vector<PartInfoStr>& parts, int viewType = TOP_VIEW, int shadeModel = GL_FLAT)
    {
        show(parts, viewType, shadeModel, [](MTransform&) {});
    }

    // By parts and numbers.
    std::vector<ContractHit> contractHits(kvo::PickType type, const kvo::PickRegion& region);

    // The window position and depth of a point in the frame drawn last.
    std::vector<double> project(double x, double y, double z) const;

    kvo::HeadlessContext context{"software"};
    kvo::Offscreen target{width, height};
    std::unique_ptr<TestModel> model;
    CAEEnv* env = nullptr;
    kvo::PickView view = {};
};

unsigned int contractType(kvo::PickType type);

#endif
