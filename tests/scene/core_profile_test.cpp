// Scenes of a model in a context of the core profile: the same pictures, labels and picks as in one of the
// compatibility profile, and no error of OpenGL's.
#include <functional>

#include "font.h"
#include "host_states.h"
#include "profile_fixture.h"
#include <kvo/coloring.h>
#include <kvo/select_more.h>
#include <kvo/visible_picker.h>

#include <kvo/view_names.h>

namespace {

using kvo::ContextProfile;
using kvo::ModelView;
using kvo::Picture;
using kvo::SceneHit;
using kvo::SceneView;

// Solids, shells that one sees through, beams, springs and a tube, side by side.
kvo::Model manyKinds()
{
    std::vector<PartInfoStr> parts = {blockPart(4), sheetPart(6, true), beamPart(), discretePart(), tubePart(8, 4, 3)};
    const float places[5][3] = {{0, 0, 0}, {5, 0, 1}, {0, 5, 0}, {3, 6, 2}, {8, 8, 0}};
    for (std::size_t k = 0; k < parts.size(); ++k) {
        movePart(parts[k], places[k][0], places[k][1], places[k][2]);
        paintPart(parts[k], 0.9f, 0.2f * static_cast<float>(k), 0.3f, k == 1 ? 0.5f : 1);
    }
    return modelOfParts(std::move(parts));
}

struct Drawn
{
    Picture picture;
    std::vector<SceneHit> elements, nodes;
};

typedef std::function<void(ModelView&, SceneView&)> Change;

Drawn drawIn(ContextProfile profile, double perspective, const Change& change)
{
    ProfileScene scene(profile);
    ModelView shown(manyKinds());
    SceneView view(shown);
    kvo::Camera camera;
    camera.setOrientation(*kvo::viewOrientation("iso"));
    camera.setPerspective(perspective);
    view.setCamera(camera.fit(shown.visibleBox(), {ProfileScene::width, ProfileScene::height}));
    change(shown, view);
    Drawn out;
    out.picture = scene.picture(view);
    kvo::VisiblePicker picker(view);
    const kvo::PickRegion all = kvo::PickRegion::rectangle(0, 0, ProfileScene::width, ProfileScene::height);
    out.elements = picker.pick(kvo::PickType::Element, all);
    out.nodes = picker.pick(kvo::PickType::Node, all);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    return out;
}

void expectSameHits(const std::vector<SceneHit>& core, const std::vector<SceneHit>& compatibility)
{
    ASSERT_FALSE(compatibility.empty());
    ASSERT_EQ(core.size(), compatibility.size());
    for (std::size_t k = 0; k < core.size(); ++k) {
        EXPECT_EQ(core[k].partId, compatibility[k].partId);
        EXPECT_EQ(core[k].entityId, compatibility[k].entityId);
        EXPECT_EQ(core[k].depth, compatibility[k].depth);
    }
}

void expectSame(const Change& change)
{
    for (const double perspective : {0.0, 40.0}) {
        const Drawn core = drawIn(ContextProfile::Core, perspective, change);
        const Drawn compatibility = drawIn(ContextProfile::Compatibility, perspective, change);
        const Picture plain = drawIn(ContextProfile::Core, perspective, [](ModelView&, SceneView& view) {
                                  view.look().featureAngle = 60;
                              }).picture;
        EXPECT_TRUE(core.picture.rgba == compatibility.picture.rgba) << perspective;
        EXPECT_FALSE(core.picture.rgba == plain.rgba) << "what was asked for is to be seen";
        expectSameHits(core.elements, compatibility.elements);
        expectSameHits(core.nodes, compatibility.nodes);
    }
}

TEST(CoreProfile, EdgesAndLines)
{
    expectSame([](ModelView&, SceneView& view) {
        view.look().style = kvo::SceneStyle::ShadedEdges;
        view.look().edgeWidth = 3;
        view.look().lines.feature = view.look().lines.free = view.look().lines.branching = true;
    });
    for (const kvo::SceneStyle style : {kvo::SceneStyle::HiddenLine, kvo::SceneStyle::Wire}) {
        expectSame([style](ModelView&, SceneView& view) {
            view.look().style = style;
            view.look().edgeColor[1] = 1;
        });
    }
}

TEST(CoreProfile, SectionsWithTheirCaps)
{
    expectSame([](ModelView&, SceneView& view) {
        view.look().style = kvo::SceneStyle::ShadedEdges;
        view.look().section.cut = kvo::SceneCut::Slice;
        view.look().section.plane[3] = -1.5;
    });
}

TEST(CoreProfile, GhostsMarksAndColours)
{
    expectSame([](ModelView& shown, SceneView& view) {
        view.look().ghosts = true;
        shown.parts[0].hidden = true;
        shown.parts[2].selected = true;
        shown.parts[3].highlighted = true;
    });
    expectSame([](ModelView& shown, SceneView& view) {
        view.setFont(kvo::defaultFontFile());
        view.setColoring(kvo::colorByQuality(shown, kvo::Quality::Skew));
        shown.parts[0].boxShown = true;
    });
}

TEST(CoreProfile, SelectionsAndLabels)
{
    expectSame([](ModelView& shown, SceneView& view) {
        kvo::ElementSet elements(shown);
        kvo::NodeSet nodes(shown);
        elements.insert(0, 63);
        elements.insert(1, 3);
        nodes.insert(0, 124);
        nodes.insert(1, 0);
        ASSERT_TRUE(kvo::selectOnly(shown, elements));
        ASSERT_TRUE(kvo::selectOnly(shown, nodes));
        view.setFont(kvo::defaultFontFile());
        view.look().labels.elements = view.look().labels.nodes = true;
    });
}

TEST(CoreProfile, FlatAndCoarse)
{
    expectSame([](ModelView&, SceneView& view) {
        view.look().smooth = false;
        view.look().featureAngle = 60;
    });
    ProfileScene scene(ContextProfile::Core);
    ModelView shown(modelOfParts({sheetPart(120, true)}));
    SceneView view(shown);
    view.look().style = kvo::SceneStyle::ShadedEdges;
    view.look().frameBudget = 0.01f;
    scene.picture(view);
    view.look().moving = true;
    scene.picture(view);
    EXPECT_TRUE(view.lastFrame().coarse);
}

class SceneInEachProfile : public EachProfile
{
};

// Each frame finds what the one before has left.
TEST(CoreProfile, HostsThatPromiseDefaultsFindThemAgain)
{
    ProfileScene scene(ContextProfile::Core);
    ModelView shown(manyKinds());
    SceneView view(shown);
    view.look().style = kvo::SceneStyle::ShadedEdges;
    view.look().edgeWidth = 2;
    view.look().section.cut = kvo::SceneCut::Slice;
    view.look().section.plane[3] = -1.5;
    kvo::NodeSet nodes(shown);
    nodes.insert(0, 124);
    ASSERT_TRUE(kvo::selectOnly(shown, nodes));
    const Picture restored = scene.picture(view);
    const Values before = Asked(false).values;
    view.setHostState(kvo::HostState::Defaults);
    for (int frame = 0; frame < 2; ++frame) {
        EXPECT_TRUE(scene.picture(view).rgba == restored.rgba) << frame;
    }
    Values after = Asked(false).values;
    for (const auto& [name, value] : before) {
        if (name != "GL_SCISSOR_BOX") { // the window's, which nobody can ask for
            EXPECT_EQ(after[name], value) << name;
        }
    }
}

// But for its own clear colour, and without a depth test, with which nothing is the same.
TEST_P(SceneInEachProfile, HostsMayHaveSetAnything)
{
    ProfileScene scene(GetParam());
    const bool fixedFunction = GetParam() == ContextProfile::Compatibility;
    ModelView shown(manyKinds());
    SceneView view(shown);
    view.look().style = kvo::SceneStyle::ShadedEdges;
    view.look().edgeWidth = 2;
    view.look().axes = false;
    const Picture plain = scene.picture(view);
    const Hostile host(fixedFunction);
    scene.target.bind();
    glViewport(0, 0, ProfileScene::width, ProfileScene::height);
    glClearColor(0, 0, 0, 1);
    glClearDepth(1);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    const Values before = Asked(fixedFunction).values;
    view.draw();
    EXPECT_EQ(Asked(fixedFunction).values, before);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    kvo::GlState::read().defaults().apply();
    EXPECT_TRUE(scene.target.read().rgba == plain.rgba);
}

INSTANTIATE_TEST_SUITE_P(Profiles, SceneInEachProfile,
                         testing::Values(ContextProfile::Core, ContextProfile::Compatibility), profileName);

} // namespace
