// What a frame asks of OpenGL when only the camera has changed.
#include <kvo/view_names.h>

#include "gl_calls.h"
#include "profile_fixture.h"

namespace {

using kvo::ContextProfile;
using kvo::ModelView;
using kvo::SceneView;

class FrameCalls : public EachProfile
{
protected:
    FrameCalls()
    {
        std::vector<PartInfoStr> parts;
        for (int k = 0; k < 30; ++k) {
            parts.push_back(k % 3 == 0 ? blockPart(4) : k % 3 == 1 ? sheetPart(9, true) : beamPart());
            movePart(parts.back(), static_cast<float>(10 * (k % 6)), static_cast<float>(10 * (k / 6)), 0);
        }
        shown = ModelView(modelOfParts(std::move(parts)));
        view.emplace(shown);
        view->setHostState(kvo::HostState::Defaults);
        view->look().axes = false;
        camera.setOrientation(*kvo::viewOrientation("iso"));
        camera = camera.fit(shown.visibleBox(), {ProfileScene::width, ProfileScene::height});
    }
    // Of a frame that is turned a little further than the one before, with the same look.
    GlCalls ofOrbit()
    {
        for (int k = 0; k < 2; ++k) {
            camera = camera.turn({0, 1, 0}, 5, camera.target());
            view->setCamera(camera);
            scene.target.bind();
            resetGlCalls();
            view->draw();
        }
        const GlCalls out = glCalls();
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        return out;
    }

    static void expectFew(const GlCalls& calls)
    {
        EXPECT_GT(calls.draws, 0u);
        EXPECT_LE(calls.draws, 40u);
        EXPECT_EQ(calls.uploadedBytes, 0u);
        EXPECT_EQ(calls.readings, 0u);
        EXPECT_EQ(calls.queries, std::vector<std::string>{"glGetFloatv(0xba2)"}) << "the viewport";
    }

    ProfileScene scene{GetParam()};
    ModelView shown;
    std::optional<SceneView> view;
    kvo::Camera camera;
};

TEST_P(FrameCalls, AreFewInAnOrbit)
{
    expectFew(ofOrbit());
}

TEST_P(FrameCalls, AreFewWithEdgesLinesMarksAndASection)
{
    view->look().lines.feature = view->look().lines.free = true;
    view->look().section.cut = kvo::SceneCut::Slice;
    view->look().section.plane[3] = -1.5;
    view->look().edgeWidth = 2;
    shown.parts[1].selected = true;
    shown.parts[0].selectedNodes =
        std::make_shared<const std::vector<std::uint8_t>>(shown.model.parts()[0].nodeCount(), 1);
    for (const kvo::SceneStyle style :
         {kvo::SceneStyle::ShadedEdges, kvo::SceneStyle::HiddenLine, kvo::SceneStyle::Wire}) {
        view->look().style = style;
        expectFew(ofOrbit());
    }
}

// The axes turn with the model: they are sent in every frame, and drawn in one call.
TEST_P(FrameCalls, OfTheAxesAreOneMore)
{
    const std::size_t without = ofOrbit().draws;
    view->look().axes = true;
    const GlCalls with = ofOrbit();
    EXPECT_EQ(with.draws, without + 1);
    EXPECT_GT(with.uploadedBytes, 0u);
    EXPECT_LT(with.uploadedBytes, 10000u);
}

TEST_P(FrameCalls, AskTheHostWhoseStateIsToBeRestored)
{
    view->setHostState(kvo::HostState::Restore);
    EXPECT_GT(ofOrbit().queries.size(), 50u);
}

INSTANTIATE_TEST_SUITE_P(Profiles, FrameCalls, testing::Values(ContextProfile::Core, ContextProfile::Compatibility),
                         profileName);

} // namespace
