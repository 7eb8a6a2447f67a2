// Lines of several pixels: their width, their ends, where they are cut.
#include <cmath>

#include "profile_fixture.h"

namespace {

using kvo::Color;
using kvo::ContextProfile;
using kvo::Model;
using kvo::ModelView;
using kvo::Picture;
using kvo::SceneView;

constexpr Color ink = {255, 0, 0, 255};

Model lineFrom(float x0, float y0, float z0, float x1, float y1, float z1)
{
    kvo::ModelBuilder builder;
    kvo::Part part;
    part.id = 1;
    part.kind = kvo::ElementKind::Beam;
    part.color = {1, 0, 0, 1};
    builder.addPart(part, true, {1, 2}, {x0, y0, z0, x1, y1, z1}, {1}, 3, {0, 1, noNode});
    return builder.build();
}

bool inked(const Picture& picture, int x, int y)
{
    return picture.at(x, y) == ink;
}

std::size_t inkIn(const Picture& picture)
{
    std::size_t out = 0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            out += inked(picture, x, y);
        }
    }
    return out;
}

class WideLines : public EachProfile
{
protected:
    // Front view: ten pixels a unit, the origin in the middle of the picture.
    Picture draw(const Model& model, float lineWidth)
    {
        ModelView shown(model);
        SceneView view(shown);
        kvo::Camera camera;
        camera.setScale(24);
        view.setCamera(camera);
        view.look().axes = false;
        view.look().lineWidth = lineWidth;
        view.look().section = section;
        return scene.picture(view);
    }

    ProfileScene scene{GetParam()};
    kvo::SceneSection section;
};

TEST_P(WideLines, AreAsWideAsTheyAreSaidToBeWithRoundEnds)
{
    const Model model = lineFrom(-8, 0, 0, 8, 0, 0);
    for (const int width : {1, 2, 5, 10}) {
        const Picture picture = draw(model, static_cast<float>(width));
        for (const int x : {100, 160, 220}) {
            int across = 0;
            for (int y = 0; y < picture.height; ++y) {
                across += inked(picture, x, y);
            }
            EXPECT_EQ(across, width) << "at " << x;
        }
    }
    const Picture picture = draw(model, 20);
    EXPECT_TRUE(inked(picture, 240 + 8, 120)) << "the end reaches half a width further";
    EXPECT_FALSE(inked(picture, 240 + 11, 120));
    EXPECT_TRUE(inked(picture, 80 - 8, 120));
    EXPECT_FALSE(inked(picture, 240 + 8, 120 - 8)) << "without corners";
    EXPECT_TRUE(inked(picture, 240 + 6, 120 - 6));
}

TEST_P(WideLines, OfNoLengthAreDots)
{
    const std::size_t area = inkIn(draw(lineFrom(2, 0, 1, 2, 0, 1), 20));
    EXPECT_GT(area, 280u); // of a circle: 314
    EXPECT_LT(area, 330u);
}

TEST_P(WideLines, EndAtTheSection)
{
    section.cut = kvo::SceneCut::Slice;
    section.plane[0] = 1; // x >= 0 stays
    section.plane[2] = section.plane[3] = 0;
    const Picture picture = draw(lineFrom(-8, 0, 0, 8, 0, 0), 6);
    EXPECT_FALSE(inked(picture, 150, 120));
    EXPECT_TRUE(inked(picture, 170, 120));
}

// One end is behind the eye: without a cut it would be mirrored to the other side.
TEST_P(WideLines, PassTheEyeInPerspective)
{
    ModelView shown(lineFrom(1, -40, 0, 1, 100, 0));
    SceneView view(shown);
    kvo::Camera camera;
    camera.setScale(10);
    camera.setPerspective(60);
    ASSERT_LT(camera.distance(), 30);
    view.setCamera(camera);
    view.look().axes = false;
    view.look().lineWidth = 1;
    const Picture thin = scene.picture(view);
    view.look().lineWidth = 4;
    const Picture wide = scene.picture(view);
    ASSERT_GT(inkIn(thin), 100u);
    EXPECT_GT(inkIn(wide), 3 * inkIn(thin));
    EXPECT_LT(inkIn(wide), 5 * inkIn(thin) + 40);
    for (int y = 0; y < thin.height; ++y) {
        for (int x = 0; x < thin.width; ++x) {
            ASSERT_TRUE(!inked(thin, x, y) || inked(wide, x, y)) << x << " " << y;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Profiles, WideLines, testing::Values(ContextProfile::Core, ContextProfile::Compatibility),
                         profileName);

} // namespace
