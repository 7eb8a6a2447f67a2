// Framing: nothing is distorted, everything is inside, whatever the shapes of model and picture.
#include <cmath>
#include <vector>

#include <GL/gl.h>

#include "caeenv.h"
#include "host_fixture.h"
#include "mantypes.h"
#include "mtrans.h"
#include "mview.h"
#include "output_redirect.h"
#include <kvo/model_frame.h>

using kvo::Box;
using kvo::Framing;
using kvo::Offscreen;
using kvo::Picture;

namespace {

const kvo::Color ballColor{255, 128, 0, 255};
const int allViews[] = {ISO_VIEW, TOP_VIEW, BOTTOM_VIEW, LEFT_VIEW, RIGHT_VIEW, FRONT_VIEW, BACK_VIEW};

struct Point
{
    double x, y, z;
};

// A shell part from faces of four corners.
PartInfoStr shellPart(const std::vector<Point>& points, const std::vector<unsigned int>& corners)
{
    PartInfoStr part{};
    part.partDrawType = SHELL;
    part.partFlag = PART_SHOWN;
    const float color[4] = {1, 128 / 255.0f, 0, 1};
    std::copy(color, color + 4, part.partColor);
    part.partNodes.numNodes = static_cast<unsigned int>(points.size());
    part.partNodes.idList = new unsigned int[points.size()];
    part.partNodes.nodeValues = new float[3 * points.size()];
    for (int axis = 0; axis < 3; ++axis) {
        part.partExtents[2 * axis] = HUGE_VALF;
        part.partExtents[2 * axis + 1] = -HUGE_VALF;
    }
    for (std::size_t k = 0; k < points.size(); ++k) {
        const double xyz[3] = {points[k].x, points[k].y, points[k].z};
        part.partNodes.idList[k] = static_cast<unsigned int>(k + 1);
        for (int axis = 0; axis < 3; ++axis) {
            const auto value = static_cast<float>(xyz[axis]);
            part.partNodes.nodeValues[3 * k + axis] = value;
            part.partExtents[2 * axis] = std::min(part.partExtents[2 * axis], value);
            part.partExtents[2 * axis + 1] = std::max(part.partExtents[2 * axis + 1], value);
        }
    }
    part.partElements.numElements = static_cast<unsigned int>(corners.size());
    part.partElements.nodesPerElement = 4;
    part.partElements.elmIndices = new unsigned int[corners.size()];
    std::copy(corners.begin(), corners.end(), part.partElements.elmIndices);
    return part;
}

PartInfoStr ball(Point center, double radius)
{
    const int around = 96, down = 48;
    const double pi = std::acos(-1.0);
    std::vector<Point> points;
    for (int j = 0; j <= down; ++j) {
        for (int k = 0; k < around; ++k) {
            const double polar = pi * j / down, azimuth = 2 * pi * k / around;
            points.push_back({center.x + radius * std::sin(polar) * std::cos(azimuth),
                              center.y + radius * std::sin(polar) * std::sin(azimuth),
                              center.z + radius * std::cos(polar)});
        }
    }
    std::vector<unsigned int> corners;
    for (unsigned int j = 0; j < down; ++j) {
        for (unsigned int k = 0; k < around; ++k) {
            const unsigned int next = (k + 1) % around;
            corners.insert(corners.end(),
                           {j * around + k, j * around + next, (j + 1) * around + next, (j + 1) * around + k});
        }
    }
    return shellPart(points, corners);
}

// A box that is empty but for its corners: two faces too small to see.
PartInfoStr cornersOnly(Point low, Point high)
{
    return shellPart({low, low, low, low, high, high, high, high}, {0, 1, 2, 3, 4, 5, 6, 7});
}

PartInfoStr plate(Point a, Point b, Point c, Point d)
{
    return shellPart({a, b, c, d}, {0, 1, 2, 3});
}

// All six faces of the box +-x, +-y, +-z, so that its silhouette is the box's.
PartInfoStr closedBox(double x, double y, double z)
{
    return shellPart(
        {{-x, -y, -z}, {x, -y, -z}, {x, y, -z}, {-x, y, -z}, {-x, -y, z}, {x, -y, z}, {x, y, z}, {-x, y, z}},
        {0, 1, 2, 3, 1, 2, 6, 5, 4, 5, 6, 7, 3, 0, 4, 7, 2, 3, 7, 6, 0, 1, 5, 4});
}

// An environment with these parts, drawn in plain colours without light. The library's commentary is dropped while it
// works, and only then: a test's own report must not get lost with it.
class Scene
{
public:
    explicit Scene(std::vector<PartInfoStr> list) : parts(std::move(list)), env("nowhere", "nothing", GL_FLAT)
    {
        env.numParts = static_cast<unsigned int>(parts.size());
        env.partsInfoList = parts.data(); // the environment releases what the records hold, not the records
        for (unsigned int k = 0; k < env.numParts; ++k) {
            env.pidMap[k + 1] = k;
        }
        const Box box = kvo::visibleBox(env);
        for (int axis = 0; axis < 3; ++axis) {
            env.modelExtents[2 * axis] = static_cast<float>(box.low[axis]);
            env.modelExtents[2 * axis + 1] = static_cast<float>(box.high[axis]);
        }
        kvo::OutputRedirect quiet("");
        env.loadAndInitGL(0, true, nullptr);
        glDisable(GL_LIGHTING);
    }

    Picture draw(int view, int width, int height, int samples = 0)
    {
        kvo::OutputRedirect quiet("");
        Offscreen target(width, height, samples);
        env.getMViewPtr()->mViewType = view;
        framing = kvo::applyFrame(env, width, height);
        env.renderModel();
        return target.read();
    }

    void showOnly(unsigned int part)
    {
        kvo::OutputRedirect quiet("");
        std::vector<unsigned int> list = {part};
        env.processPartsByID(PART_SHOWN, &list);
        glDisable(GL_LIGHTING);
    }

    void operate(int trans, std::vector<float> values = {0, 0, 0, 0})
    {
        kvo::OutputRedirect quiet("");
        env.getMTransformPtr()->updateValues(trans, values.data());
    }

    std::vector<PartInfoStr> parts;
    CAEEnv env;
    Framing framing;
};

// The box around everything in the parts' colour.
Blob drawnBlob(Scene& scene, int view, int width, int height)
{
    return findColor(scene.draw(view, width, height), ballColor);
}

Box boxOf(double x0, double x1, double y0, double y1, double z0, double z1)
{
    Box out;
    const double low[3] = {x0, y0, z0}, high[3] = {x1, y1, z1};
    std::copy(low, low + 3, out.low);
    std::copy(high, high + 3, out.high);
    return out;
}

} // namespace

// --- The numbers ---

TEST(FrameModel, BoxHasThePicturesShape)
{
    for (int view : allViews) {
        const Framing framing = kvo::frameModel(boxOf(-1, 5, 2, 3, 10, 40), view, 640, 480);
        EXPECT_NEAR(framing.box.size(0) / framing.box.size(1), 640.0 / 480, 1e-12) << view;
    }
}

TEST(FrameModel, BoxKeepsTheModelsCenter)
{
    const Framing framing = kvo::frameModel(boxOf(-1, 5, 2, 3, 10, 40), FRONT_VIEW, 640, 480);
    EXPECT_NEAR(framing.box.center(0), 2, 1e-12);
    EXPECT_NEAR(framing.box.center(1), 2.5, 1e-12);
    EXPECT_NEAR(framing.box.center(2), 25, 1e-12);
}

TEST(FrameModel, TighterDirectionIsFilledUpToTheMargin)
{
    // Seen from the front: 1 across (y), 30 up (z); the picture's height is what binds.
    const Framing framing = kvo::frameModel(boxOf(-1, 5, 2, 3, 10, 40), FRONT_VIEW, 640, 480);
    EXPECT_NEAR(framing.pixelsPerUnit, 0.95 * 480 / 30, 1e-9);
    // From the top: 6 across, 1 up.
    EXPECT_NEAR(kvo::frameModel(boxOf(-1, 5, 2, 3, 10, 40), TOP_VIEW, 640, 480).pixelsPerUnit, 0.95 * 640 / 6, 1e-9);
}

TEST(FrameModel, FlatAndPointModelsHaveFiniteFrames)
{
    for (int view : allViews) {
        for (const Box& box : {boxOf(5, 5, 0, 1, 0, 1), boxOf(0, 1, 5, 5, 0, 1), boxOf(0, 1, 0, 1, 5, 5),
                               boxOf(5, 5, 5, 5, 0, 1), boxOf(7, 7, 7, 7, 7, 7)}) {
            const Framing framing = kvo::frameModel(box, view, 300, 200);
            EXPECT_TRUE(std::isfinite(framing.pixelsPerUnit) && framing.pixelsPerUnit > 0);
            for (int axis = 0; axis < 3; ++axis) {
                EXPECT_GT(framing.box.size(axis), 0) << view;
            }
        }
    }
}

// --- The pictures ---

class ModelFrameTest : public Drawing
{
};

TEST_F(ModelFrameTest, BallStaysRoundInEveryViewAndWindow)
{
    Scene scene({ball({0, 0, 0}, 1)});
    for (int view : allViews) {
        for (auto [width, height] : {std::pair(300, 200), std::pair(200, 301), std::pair(640, 100)}) {
            const Blob blob = drawnBlob(scene, view, width, height);
            EXPECT_NEAR(blob.width(), blob.height(), 2) << "view " << view << " " << width << "x" << height;
        }
    }
}

TEST_F(ModelFrameTest, BallFillsThePictureUpToTheMargin)
{
    Scene scene({ball({0, 0, 0}, 1)});
    for (int view : {TOP_VIEW, BOTTOM_VIEW, LEFT_VIEW, RIGHT_VIEW, FRONT_VIEW, BACK_VIEW}) {
        EXPECT_NEAR(drawnBlob(scene, view, 400, 200).height(), 0.95 * 200, 2) << view;
        EXPECT_NEAR(drawnBlob(scene, view, 200, 400).width(), 0.95 * 200, 2) << view;
    }
}

TEST_F(ModelFrameTest, BallInASlenderModelStaysRound)
{
    // Slender along each axis, and slender twice; the ball lies at the far corner, away from the axis triad.
    for (Point far : {Point{100, 6, 6}, Point{6, 100, 6}, Point{6, 6, 100}, Point{4, 30, 100}}) {
        Scene scene({ball(far, 1), cornersOnly({0, 0, 0}, far)});
        for (int view : allViews) {
            const Blob blob = drawnBlob(scene, view, 900, 600);
            EXPECT_NEAR(blob.width(), blob.height(), 2) << "view " << view << " far " << far.x << " " << far.y;
            EXPECT_NEAR(blob.width(), 2 * scene.framing.pixelsPerUnit, 2) << "view " << view;
        }
    }
}

TEST_F(ModelFrameTest, NothingIsCutOffInAnyView)
{
    Scene scene({closedBox(3, 1, 2)});
    for (int view : allViews) {
        const Blob blob = drawnBlob(scene, view, 400, 300);
        EXPECT_GT(blob.left, 0) << view;
        EXPECT_GT(blob.top, 0) << view;
        EXPECT_LT(blob.right, 399) << view;
        EXPECT_LT(blob.bottom, 299) << view;
        EXPECT_TRUE(std::fabs(blob.width() - 0.95 * 400) < 3 || std::fabs(blob.height() - 0.95 * 300) < 3) << view;
    }
}

TEST_F(ModelFrameTest, TiltedViewIsFilledUpToTheMarginToo)
{
    // The iso view shows some of the box's depth below its height.
    Scene scene({closedBox(1, 4, 2)});
    EXPECT_NEAR(drawnBlob(scene, ISO_VIEW, 400, 300).height(), 0.95 * 300, 2);
}

TEST_F(ModelFrameTest, ModelIsInTheMiddle)
{
    // Positive, negative and mixed coordinates choose different rotations in the library; the middle is the middle.
    for (Point center : {Point{50, 60, 70}, Point{-50, -60, -70}, Point{50, -60, 0}, Point{-1, 60, -70}}) {
        Scene scene({ball(center, 1)});
        for (int view : allViews) {
            const Blob blob = drawnBlob(scene, view, 300, 300);
            EXPECT_NEAR((blob.left + blob.right) / 2.0, 149.5, 1.5) << "view " << view;
            EXPECT_NEAR((blob.top + blob.bottom) / 2.0, 149.5, 1.5) << "view " << view;
            EXPECT_NEAR(blob.width(), blob.height(), 2) << "view " << view;
        }
    }
}

TEST_F(ModelFrameTest, FlatModelsAreDrawnInTheirProportions)
{
    // A plate of 4 x 2 at z = 5 from the top, and one at x = 5 from the front.
    Scene flat({plate({0, 0, 5}, {4, 0, 5}, {4, 2, 5}, {0, 2, 5})});
    const Blob top = drawnBlob(flat, TOP_VIEW, 300, 300);
    EXPECT_NEAR(top.width(), 285, 2);
    EXPECT_NEAR(top.height(), 142.5, 2);
    Scene upright({plate({5, 0, 0}, {5, 4, 0}, {5, 4, 2}, {5, 0, 2})});
    const Blob front = drawnBlob(upright, FRONT_VIEW, 300, 300);
    EXPECT_NEAR(front.width(), 285, 2);
    EXPECT_NEAR(front.height(), 142.5, 2);
}

TEST_F(ModelFrameTest, TurningKeepsProportions)
{
    Scene scene({ball({0, 0, 0}, 1), cornersOnly({-1, -1, -1}, {20, 1, 2})});
    scene.draw(FRONT_VIEW, 400, 300);
    for (int op : {ROTATE_X_CCW, ROTATE_Y_CCW, ROTATE_Z_CCW, ROTATE_Z_CCW, ROTATE_Z_CCW}) {
        scene.operate(op);
        const Blob blob = drawnBlob(scene, TOP_VIEW, 400, 300);
        EXPECT_NEAR(blob.width(), blob.height(), 2);
        EXPECT_NEAR(blob.width(), 2 * scene.framing.pixelsPerUnit, 2);
    }
}

TEST_F(ModelFrameTest, PanningByPixelsMovesByPixels)
{
    Scene scene({ball({0, 0, 0}, 1)});
    const Blob before = drawnBlob(scene, FRONT_VIEW, 300, 200);
    scene.operate(GLOBAL_TRANSLATION, {30, -20, 300, 200}); // the library counts y upwards here
    const Blob after = drawnBlob(scene, FRONT_VIEW, 300, 200);
    EXPECT_NEAR(after.left - before.left, 30, 1);
    EXPECT_NEAR(after.top - before.top, 20, 1);
}

TEST_F(ModelFrameTest, HidingPartsFramesTheRest)
{
    Scene scene({ball({0, 0, 0}, 1), cornersOnly({-1, -1, -1}, {40, 1, 1})});
    EXPECT_NEAR(drawnBlob(scene, TOP_VIEW, 400, 400).width(), 2 * 0.95 * 400 / 41, 2);
    scene.showOnly(1);
    EXPECT_NEAR(drawnBlob(scene, TOP_VIEW, 400, 400).width(), 380, 2);
}

TEST_F(ModelFrameTest, ModelsLargerThanTheDepthRangeAreWhole)
{
    Scene scene({ball({0, 0, 0}, 1e6)});
    for (int view : allViews) {
        const Blob blob = drawnBlob(scene, view, 300, 200);
        const double share = blob.count / (blob.width() * static_cast<double>(blob.height()));
        EXPECT_NEAR(share, std::acos(-1.0) / 4, 0.02) << view; // a disc, not what a cut has left of it
    }
}

TEST_F(ModelFrameTest, SmallModelsHaveEnoughDepthSteps)
{
    // Two plates a thousandth of the model apart, the model a thousandth of a unit: the nearer one hides the other
    // everywhere, also where it is drawn first.
    const double s = 1e-3;
    PartInfoStr nearer = plate({-s, -s, 0}, {s, -s, 0}, {s, s, 0}, {-s, s, 0});
    PartInfoStr farther = plate({-s, -s, s / 1000}, {s, -s, s / 1000}, {s, s, s / 1000}, {-s, s, s / 1000});
    farther.partColor[0] = farther.partColor[1] = 0;
    farther.partColor[2] = 1;
    Scene scene({nearer, farther});
    const int orange[2] = {findColor(scene.draw(TOP_VIEW, 200, 200), ballColor).count,
                           findColor(scene.draw(BOTTOM_VIEW, 200, 200), ballColor).count};
    EXPECT_GT(std::max(orange[0], orange[1]), 180 * 180); // the axis triad covers some
    EXPECT_EQ(std::min(orange[0], orange[1]), 0);
}

TEST_F(ModelFrameTest, NoPartsIsNoError)
{
    Scene scene({});
    EXPECT_EQ(drawnBlob(scene, ISO_VIEW, 100, 80).count, 0);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}
