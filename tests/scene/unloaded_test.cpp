// What a scene says before a model is loaded.
#include <stdexcept>

#include "scene_fixture.h"
#include <kvo/coloring.h>
#include <kvo/standard_view.h>
#include <kvo/through_picker.h>
#include <kvo/visible_picker.h>

namespace {

template <class Action> std::string complaint(Action action)
{
    try {
        action();
    } catch (const std::logic_error& error) {
        return error.what();
    }
    return "";
}

class Unloaded : public SceneTest
{
protected:
    Unloaded()
    {
        const kvo::OutputRedirect quiet("");
        env.emplace("none", "none", GL_FLAT);
    }
    std::optional<CAEEnv> env;
    const kvo::PickRegion all = kvo::PickRegion::rectangle(0, 0, width, height);
};

TEST_F(Unloaded, FramesViewsAndPicksSayWhatComesFirst)
{
    kvo::SceneView view(*env);
    kvo::VisiblePicker picker(view);
    const std::string text = "no model is loaded: kvo::loadScene() or CAEEnv::loadAndInitGL() comes first";
    EXPECT_EQ(complaint([&] { view.draw(); }), text);
    EXPECT_EQ(complaint([&] { kvo::applyFrame(*env, width, height); }), text);
    EXPECT_EQ(complaint([&] { kvo::setStandardView(*env, TOP_VIEW); }), text);
    EXPECT_EQ(complaint([&] { picker.pick(kvo::PickType::Element, all); }), text);
    EXPECT_EQ(complaint([&] { picker.nearest(kvo::PickType::Part, all); }), text);
}

TEST_F(Unloaded, WhatNeedsNoViewFindsNothing)
{
    kvo::ThroughPicker picker(*env);
    kvo::PickView view{};
    view.viewport[2] = width;
    view.viewport[3] = height;
    picker.prepare(kvo::PickType::Element);
    EXPECT_TRUE(picker.pick(kvo::PickType::Element, all, view).empty());
    EXPECT_FALSE(picker.nearest(kvo::PickType::Node, all, view));
    const kvo::Box box = kvo::visibleBox(*env);
    EXPECT_EQ(box.low[0], -1);
    EXPECT_EQ(box.high[2], 1);
}

} // namespace
