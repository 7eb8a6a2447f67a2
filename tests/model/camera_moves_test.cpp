// Movements of a camera.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <kvo/view_names.h>

#include "random_cameras.h"

using namespace kvo;
using namespace kvotest;

namespace {

Point3 along(const Point3& from, double t, const Point3& direction)
{
    return {from[0] + t * direction[0], from[1] + t * direction[1], from[2] + t * direction[2]};
}

double dotOf(const Point3& a, const Point3& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

void expectPixel(const std::optional<PicturePoint>& seen, Pixel wanted, double pixels)
{
    ASSERT_TRUE(seen);
    EXPECT_NEAR(seen->pixel.x, wanted.x, pixels);
    EXPECT_NEAR(seen->pixel.y, wanted.y, pixels);
}

void expectOrthonormal(const Camera& camera)
{
    const Point3 x = camera.right(), y = camera.up(), z = camera.towardsViewer();
    EXPECT_NEAR(dotOf(x, x), 1, 1e-12);
    EXPECT_NEAR(dotOf(y, y), 1, 1e-12);
    EXPECT_NEAR(dotOf(x, y), 0, 1e-12);
    EXPECT_NEAR(dotOf(y, z), 0, 1e-12);
    EXPECT_NEAR(x[0] * (y[1] * z[2] - z[1] * y[2]) - y[0] * (x[1] * z[2] - z[1] * x[2]) +
                    z[0] * (x[1] * y[2] - y[1] * x[2]),
                1, 1e-12);
}

// Coordinates at 1e9 model sizes leave so many pixels open.
constexpr double farRounding = 1e-3;

} // namespace

TEST(CameraMoves, OrbitTakesTheNearestPointAlongWithTheMouse)
{
    for (const Sight& sight : randomSights(10, 200)) {
        SCOPED_TRACE(sight.name);
        const Camera& camera = sight.camera;
        const Point3 pivot = camera.target(), nearest = along(pivot, 0.2 * camera.scale(), camera.towardsViewer());
        const Pixel before = camera.project(nearest, sight.viewport)->pixel, from = {3, 4};
        const Pixel across = camera.orbit(from, {5, 4}, sight.viewport, pivot).project(nearest, sight.viewport)->pixel;
        EXPECT_GT(across.x, before.x + 0.2);
        EXPECT_NEAR(across.y, before.y, farRounding);
        const Pixel up = camera.orbit(from, {3, 6}, sight.viewport, pivot).project(nearest, sight.viewport)->pixel;
        EXPECT_GT(up.y, before.y + 0.2);
        EXPECT_NEAR(up.x, before.x, farRounding);
    }
}

TEST(CameraMoves, TurntableTakesTheNearestPointAlongWithTheMouse)
{
    for (const Sight& sight : randomSights(11, 200)) {
        SCOPED_TRACE(sight.name);
        const Camera& camera = sight.camera;
        const Point3 pivot = camera.target(), nearest = along(pivot, 0.2 * camera.scale(), camera.towardsViewer());
        const Pixel before = camera.project(nearest, sight.viewport)->pixel, from = {3, 4};
        for (const UpAxis up : {UpAxis::Z, UpAxis::Y}) {
            const Point3 upwards = up == UpAxis::Z ? Point3{0, 0, 1} : Point3{0, 1, 0};
            if (std::fabs(dotOf(camera.towardsViewer(), upwards)) > 0.98) {
                continue;
            }
            const Camera turned = camera.turntable(from, {5, 4}, sight.viewport, pivot, up);
            const Pixel across = turned.project(nearest, sight.viewport)->pixel;
            EXPECT_GT(across.x, before.x);
            expectOrthonormal(turned);
        }
    }
}

TEST(CameraMoves, TurntableKeepsWhatIsUprightUprightInEveryStandardView)
{
    const Viewport viewport = {200, 100};
    for (const UpAxis up : {UpAxis::Z, UpAxis::Y}) {
        for (const char* view : standardViewWords()) {
            SCOPED_TRACE(view);
            Camera camera;
            camera.setOrientation(*viewOrientation(std::string(view), up));
            const Camera turned = camera.turntable({10, 10}, {27, 31}, viewport, camera.target(), up);
            const std::size_t upwards = up == UpAxis::Z ? 2 : 1;
            EXPECT_NEAR(turned.right()[upwards], 0, 1e-12);
            EXPECT_GE(turned.up()[upwards], -1e-12);
            expectOrthonormal(turned);
        }
    }
}

TEST(CameraMoves, TurntableStopsAtThePolesAndFollowsTheMouseBelowThem)
{
    const Viewport viewport = {100, 100};
    Camera camera;
    const Camera top = camera.turntable({50, 90}, {50, 10}, viewport, camera.target());
    EXPECT_NEAR(top.towardsViewer()[2], 1, 1e-12); // a drag downwards of 144 degrees ends at 90
    EXPECT_NEAR(top.right()[0], 1, 1e-12);
    const Point3 lower = {0, -0.5, 0};
    const Pixel before = top.project(lower, viewport)->pixel;
    const Pixel after = top.turntable({50, 50}, {55, 50}, viewport, {0, 0, 0}).project(lower, viewport)->pixel;
    EXPECT_LT(before.y, 50);
    EXPECT_GT(after.x, before.x);
}

TEST(CameraMoves, OrbitsAndTurnsKeepThePivotInPlace)
{
    for (const Sight& sight : randomSights(12, 200)) {
        SCOPED_TRACE(sight.name);
        const Camera& camera = sight.camera;
        const Point3 pivot = along(along(camera.target(), 0.1 * camera.scale(), camera.right()), 0.05 * camera.scale(),
                                   camera.towardsViewer());
        const Pixel place = camera.project(pivot, sight.viewport)->pixel;
        const Pixel from = {0, 0}, to = {17, -40};
        for (const Camera& moved :
             {camera.orbit(from, to, sight.viewport, pivot), camera.turntable(from, to, sight.viewport, pivot),
              camera.turn({1, 2, 3}, 77, pivot)}) {
            expectPixel(moved.project(pivot, sight.viewport), place, farRounding);
            EXPECT_EQ(moved.scale(), camera.scale());
        }
    }
}

TEST(CameraMoves, AHundredThousandOrbitsLeaveARotation)
{
    Camera camera;
    camera.setOrientation(*viewOrientation("iso"));
    camera.setPerspective(30);
    const Viewport viewport = {640, 480};
    const Point3 pivot = {0.3, 0.2, 0.1};
    const Pixel place = camera.project(pivot, viewport)->pixel;
    for (int k = 0; k < 100000; ++k) {
        camera = camera.orbit({0, 0}, {double(k % 7 - 3), double(k % 11 - 4)}, viewport, pivot);
    }
    expectOrthonormal(camera);
    expectPixel(camera.project(pivot, viewport), place, 1e-6);
}

TEST(CameraMoves, ADragThatComesBackGivesBackTheBeginning)
{
    for (const Sight& sight : randomSights(13, 50)) {
        const Pixel at = {5, 6};
        EXPECT_EQ(sight.camera.pan(at, at, sight.viewport).target(), sight.camera.target());
        const Camera turned = sight.camera.orbit(at, at, sight.viewport, sight.camera.target());
        for (std::size_t k = 0; k < 4; ++k) {
            EXPECT_NEAR(turned.orientation().quaternion()[k], sight.camera.orientation().quaternion()[k], 1e-15);
        }
        EXPECT_EQ(turned.target(), sight.camera.target());
    }
}

TEST(CameraMoves, RollTurnsThePictureCounterclockwise)
{
    const Viewport viewport = {100, 100};
    for (const double degrees : {0.0, 40.0}) {
        Camera camera;
        camera.setPerspective(degrees);
        const Camera rolled = camera.roll(90);
        expectPixel(rolled.project({0.5, 0, 0}, viewport), {50, 75}, 1e-9); // from the right to the top
    }
}

TEST(CameraMoves, PanKeepsTheGrabbedPointUnderTheMouse)
{
    for (const Sight& sight : randomSights(14, 200)) {
        SCOPED_TRACE(sight.name);
        const Camera& camera = sight.camera;
        const Point3 grabbed = along(camera.target(), 0.3 * camera.scale(), camera.towardsViewer());
        const Pixel from = camera.project(grabbed, sight.viewport)->pixel, to = {from.x + 12.5, from.y - 7};
        expectPixel(camera.pan(from, to, sight.viewport, grabbed).project(grabbed, sight.viewport), to, farRounding);
        const Point3 atTarget = camera.unproject({from, 0}, sight.viewport);
        expectPixel(camera.pan(from, to, sight.viewport).project(atTarget, sight.viewport), to, farRounding);
    }
}

TEST(CameraMoves, ZoomKeepsWhatIsUnderTheMouse)
{
    for (const Sight& sight : randomSights(15, 200)) {
        SCOPED_TRACE(sight.name);
        const Camera& camera = sight.camera;
        const Pixel at = {sight.viewport.width * 0.2, sight.viewport.height * 0.7};
        const Point3 under = camera.unproject({at, 0}, sight.viewport);
        const Point3 nearer = camera.unproject({at, -0.2 * camera.scale()}, sight.viewport);
        for (const double factor : {0.5, 1.1, 20.0}) {
            const Camera zoomed = camera.zoomAt(at, factor, sight.viewport);
            expectPixel(zoomed.project(under, sight.viewport), at, factor * farRounding);
            EXPECT_NEAR(zoomed.pixelsPerUnit(sight.viewport) / camera.pixelsPerUnit(sight.viewport), factor, 1e-9);
            expectPixel(camera.zoomAbout(nearer, factor).project(nearer, sight.viewport), at, factor * farRounding);
        }
    }
}

TEST(CameraMoves, ZoomTakesNoFactorThatIsNone)
{
    const Camera camera;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double factor : {0.0, -1.0, nan, 1e300, 1e-300}) {
        EXPECT_EQ(camera.zoom(factor), camera) << factor;
        EXPECT_EQ(camera.zoomAt({1, 1}, factor, {10, 10}), camera) << factor;
    }
    EXPECT_EQ(camera.zoomAt({nan, 1}, 2, {10, 10}), camera);
}

TEST(CameraMoves, BoxZoomFillsThePictureWithTheRectangle)
{
    for (const Sight& sight : randomSights(16, 200)) {
        SCOPED_TRACE(sight.name);
        const double w = sight.viewport.width, h = sight.viewport.height;
        const Pixel corners[2] = {{0.9 * w, 0.2 * h}, {0.5 * w, 0.9 * h}};
        const Camera zoomed = sight.camera.boxZoom(corners[0], corners[1], sight.viewport);
        double across[2], upwards[2];
        for (int k = 0; k < 2; ++k) {
            const Point3 corner = sight.camera.unproject({corners[k], 0}, sight.viewport);
            const Pixel now = zoomed.project(corner, sight.viewport)->pixel;
            across[k] = now.x;
            upwards[k] = now.y;
        }
        EXPECT_NEAR(across[0] + across[1], w, farRounding); // centred
        EXPECT_NEAR(upwards[0] + upwards[1], h, farRounding);
        EXPECT_NEAR(upwards[1], h, farRounding); // 0.7 of the height is more than 0.4 of the width
        EXPECT_LE(across[0], w + farRounding);
    }
}

TEST(CameraMoves, BoxZoomOfALineFitsTheLineAndOfAPointDoesNothing)
{
    const Camera camera;
    const Viewport viewport = {100, 100};
    EXPECT_EQ(camera.boxZoom({20, 30}, {20, 30}, viewport), camera);
    EXPECT_NEAR(camera.boxZoom({20, 30}, {70, 30}, viewport).scale(), camera.scale() / 2, 1e-12);
}

TEST(CameraMoves, TargetDepthChangesNothingInThePicture)
{
    for (const Sight& sight : randomSights(17, 100)) {
        SCOPED_TRACE(sight.name);
        const Camera& camera = sight.camera;
        const Point3 surface = along(camera.target(), 0.3 * camera.scale(), camera.towardsViewer());
        const Camera moved = camera.withTargetDepthOf(surface);
        EXPECT_NEAR(moved.project(surface, sight.viewport)->depth / camera.scale(), 0, 1e-6);
        for (unsigned int k = 0; k < 8; ++k) {
            const std::optional<PicturePoint> before = camera.project(cornerOf(sight.box, k), sight.viewport);
            if (before && before->depth + camera.distance() > 0.01 * camera.scale()) {
                expectPixel(moved.project(cornerOf(sight.box, k), sight.viewport), before->pixel, 0.1);
            }
        }
    }
}

TEST(CameraMoves, FitFillsThePictureAndCentresTheBox)
{
    for (const Sight& sight : randomSights(18, 300)) {
        SCOPED_TRACE(sight.name);
        const Camera fitted = sight.camera.fit(sight.box, sight.viewport);
        double low[2] = {HUGE_VAL, HUGE_VAL}, high[2] = {-HUGE_VAL, -HUGE_VAL};
        for (unsigned int k = 0; k < 8; ++k) {
            const std::optional<PicturePoint> seen = fitted.project(cornerOf(sight.box, k), sight.viewport);
            ASSERT_TRUE(seen);
            const double at[2] = {seen->pixel.x / sight.viewport.width, seen->pixel.y / sight.viewport.height};
            for (int axis = 0; axis < 2; ++axis) {
                low[axis] = std::min(low[axis], at[axis]);
                high[axis] = std::max(high[axis], at[axis]);
            }
        }
        const double filled = std::max(high[0] - low[0], high[1] - low[1]);
        EXPECT_NEAR(filled, cameraFill, 1e-5);
        const int tighter = high[0] - low[0] > high[1] - low[1] ? 0 : 1;
        EXPECT_NEAR(low[tighter] + high[tighter], 1, 1e-5);
        EXPECT_GE(low[1 - tighter], 0.025 - 1e-5);
        EXPECT_LE(high[1 - tighter], 0.975 + 1e-5);
        EXPECT_EQ(fitted.orientation().quaternion(), sight.camera.orientation().quaternion());
        EXPECT_EQ(fitted.perspective(), sight.camera.perspective());
    }
}

TEST(CameraMoves, FitTakesFlatBoxesLinesAndPoints)
{
    const Viewport viewport = {100, 100};
    for (const double degrees : {0.0, 40.0}) {
        SCOPED_TRACE(degrees);
        Camera camera;
        camera.setPerspective(degrees);
        Box plate, endOn, point;
        plate.high[0] = plate.high[2] = 8; // seen from the front
        endOn.high[1] = 8;
        for (int axis = 0; axis < 3; ++axis) {
            point.low[axis] = point.high[axis] = 1e9;
        }
        EXPECT_NEAR(camera.fit(plate, viewport).scale(), 8 / 0.95, 1e-9);
        const double lineScale = camera.fit(endOn, viewport).scale();
        EXPECT_GT(lineScale, 4);
        EXPECT_LT(lineScale, 40);
        EXPECT_NEAR(camera.fit(point, viewport).scale(), 1 / 0.95, 1e-9);
        EXPECT_EQ(camera.fit(point, viewport).target(), (Point3{1e9, 1e9, 1e9}));
    }
}

TEST(CameraMoves, FitSeesBothEndsOfALineSeenAlmostEndOn)
{
    const Viewport viewport = {100, 100};
    Camera camera;
    camera.setPerspective(40);
    Box line;
    line.high[1] = 8;
    const Camera fitted = camera.turn({0, 1, 0}, 5, camera.target()).fit(line, viewport);
    for (const double y : {0.0, 8.0}) {
        const std::optional<PicturePoint> seen = fitted.project({0, y, 0}, viewport);
        ASSERT_TRUE(seen) << y;
        EXPECT_GT(seen->depth + fitted.distance(), 1e-3); // behind the near plane
        EXPECT_GT(seen->pixel.x, 0);
        EXPECT_LT(seen->pixel.x, 100);
    }
}

TEST(CameraMoves, FitTakesNoBoxThatIsNone)
{
    const Camera camera;
    Box turnedRound, numberless;
    turnedRound.low[2] = 1;
    numberless.high[0] = std::numeric_limits<double>::infinity();
    EXPECT_EQ(camera.fit(turnedRound, {10, 10}), camera);
    EXPECT_EQ(camera.fit(numberless, {10, 10}), camera);
}

TEST(CameraMoves, LookAtPutsTheTargetInTheMiddleAndUpUpwards)
{
    const Viewport viewport = {100, 100};
    Camera camera;
    camera.setPerspective(50);
    const Camera placed = camera.lookAt({10, 0, 0}, {0, 0, 5}, {0, 0, 1});
    expectPixel(placed.project({0, 0, 5}, viewport), {50, 50}, 1e-9);
    EXPECT_NEAR(placed.eye()[0], 10, 1e-12);
    EXPECT_NEAR(placed.eye()[2], 0, 1e-12);
    EXPECT_NEAR(placed.right()[1], 1, 1e-12); // seen from +x, y is to the right
    EXPECT_GT(placed.up()[2], 0);
    const Camera parallel = Camera().lookAt({10, 0, 0}, {0, 0, 5}, {0, 0, 1});
    EXPECT_EQ(parallel.scale(), Camera().scale());
}

TEST(CameraMoves, LookAtAlongTheUpwardDirectionIsAView)
{
    const Camera camera;
    expectOrthonormal(camera.lookAt({0, 0, 5}, {0, 0, 0}, {0, 0, 1}));
    EXPECT_NEAR(camera.lookAt({0, 0, 5}, {0, 0, 0}, {0, 0, 1}).towardsViewer()[2], 1, 1e-12);
    expectOrthonormal(camera.lookAt({0, -5, 0}, {0, 0, 0}, {0, 0, 0}));
    EXPECT_EQ(camera.lookAt({1, 2, 3}, {1, 2, 3}, {0, 0, 1}), camera);
}
