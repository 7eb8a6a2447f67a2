// Models far from the origin: where single precision would put their points, and where they have to be.
#include <array>
#include <cmath>

#include "look_pictures.h"
#include "mantypes.h"
#include "scene_fixture.h"

namespace {

using kvo::Color;
using kvo::Picture;
using kvo::SceneView;

struct Spot
{
    double x = 0, y = 0;
    std::size_t pixels = 0;
};

// The middle of all pixels in which one channel rules.
Spot spotOf(const Picture& p, std::uint8_t Color::* channel)
{
    Spot out;
    for (int y = 0; y < p.height; ++y) {
        for (int x = 0; x < p.width; ++x) {
            const Color c = p.at(x, y);
            if (c.*channel > 60 && c.r + c.g + c.b < 1.2 * (c.*channel)) {
                out.x += x;
                out.y += y;
                ++out.pixels;
            }
        }
    }
    out.x /= double(out.pixels);
    out.y /= double(out.pixels);
    return out;
}

// Three cubes 10 wide in a box of 100 about `at`: red, green, and grey ones that span the box.
void addCubes(TestModel& model, double at)
{
    const float low[4][3] = {{-40, -30, -20}, {30, 20, 35}, {-50, -50, -50}, {40, 40, 40}};
    const float colors[4][3] = {{1, 0, 0}, {0, 1, 0}, {0.5f, 0.5f, 0.5f}, {0.5f, 0.5f, 0.5f}};
    for (int k = 0; k < 4; ++k) {
        PartInfoStr cube = hexaPart();
        for (int n = 0; n < 24; ++n) {
            cube.partNodes.nodeValues[n] =
                static_cast<float>(at + double(low[k][n % 3]) + 10 * double(cube.partNodes.nodeValues[n]));
        }
        for (int n = 0; n < 6; ++n) {
            cube.partExtents[n] = static_cast<float>(at + double(low[k][n / 2]) + 10 * double(cube.partExtents[n]));
        }
        paintPart(cube, colors[k][0], colors[k][1], colors[k][2]);
        model.add(cube);
    }
}

class FarModels : public SceneTest
{
protected:
    // The frame of the model at a place, after the given turns.
    Picture frameAt(double at, int viewType, const std::vector<std::array<float, 4>>& drags, Spot (&spots)[2])
    {
        std::optional<kvo::OutputRedirect> quiet("");
        TestModel cubes(GL_FLAT);
        addCubes(cubes, at);
        cubes.install();
        glViewport(0, 0, width, height);
        cubes->resizeModel(width, height);
        cubes->switchOnLights();
        cubes->setShadeModel(GL_FLAT);
        quiet.reset();
        cubes->getMViewPtr()->mViewType = viewType;
        SceneView view(*cubes);
        picture(view);
        for (std::array<float, 4> drag : drags) {
            cubes->getMTransformPtr()->updateValues(GLOBAL_ROTATION, drag.data());
        }
        const Picture out = picture(view);
        spots[0] = spotOf(out, &Color::r);
        spots[1] = spotOf(out, &Color::g);
        return out;
    }
};

// The same model nearer to the origin, where single precision is enough, says what is right: positive coordinates too,
// so that the standard views are the same.
TEST_F(FarModels, StayWithinAPixelUnderRotation)
{
    std::vector<std::array<float, 4>> drags;
    for (int step = 0; step < 12; ++step) {
        for (int viewType : {static_cast<int>(ISO_VIEW), static_cast<int>(TOP_VIEW), static_cast<int>(RIGHT_VIEW)}) {
            Spot near[2], far[2];
            frameAt(1000, viewType, drags, near);
            frameAt(1e7, viewType, drags, far);
            for (int k = 0; k < 2; ++k) {
                if (near[k].pixels < 20) {
                    continue; // covered by a grey one
                }
                EXPECT_LT(std::hypot(near[k].x - far[k].x, near[k].y - far[k].y), 1) << step << " view " << viewType;
                EXPECT_NEAR(double(far[k].pixels), double(near[k].pixels), 0.15 * double(near[k].pixels));
            }
        }
        drags.push_back({160, 120, 160.0f + 13, 120.0f + 9});
    }
}

TEST_F(FarModels, MatricesForPicksAreTheFrames)
{
    addCubes(model, 1e7);
    load();
    SceneView view(*model);
    picture(view);
    float drag[4] = {160, 120, 190, 100};
    model->getMTransformPtr()->updateValues(GLOBAL_ROTATION, drag);
    const Picture p = picture(view);
    const Spot red = spotOf(p, &Color::r);
    ASSERT_GT(red.pixels, 20u);
    const Pixel middle = pixelOf(*model, 1e7 - 35, 1e7 - 25, 1e7 - 15);
    EXPECT_NEAR(red.x, middle.x, 2);
    EXPECT_NEAR(red.y, middle.y, 2);
}

TEST_F(FarModels, LabelsSectionsAndNodesAreWithThem)
{
    addCubes(model, 1e7);
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    std::vector<unsigned int> ids = {1};
    model->selectNodes(ids); // a corner of each cube
    SceneView view(*model);
    Picture p = picture(view);
    const Pixel node = pixelOf(*model, 1e7 - 40, 1e7 - 30, 1e7 - 20);
    bool blue = false;
    for (int dx = -2; dx <= 2; ++dx) {
        for (int dy = -2; dy <= 2; ++dy) {
            blue = blue || p.at(node.x + dx, node.y + dy) == Color{0, 0, 255, 255};
        }
    }
    EXPECT_TRUE(blue);
    view.look().section.cut = kvo::SceneCut::Slice;
    const double point[3] = {1e7 - 35, 0, 0}, normal[3] = {1, 0, 0};
    view.look().section.setPlane(point, normal);
    const std::size_t whole = spotOf(p, &Color::r).pixels;
    p = picture(view);
    EXPECT_NEAR(double(spotOf(p, &Color::r).pixels), double(whole) / 2, 0.2 * double(whole));
}

} // namespace
