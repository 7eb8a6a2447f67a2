// State, projection and matrices of a camera.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <kvo/view_names.h>

#include "random_cameras.h"

using namespace kvo;
using namespace kvotest;

TEST(Camera, ProjectsAndUnprojectsToTheSamePoint)
{
    for (const Sight& sight : randomSights(1, 200)) {
        SCOPED_TRACE(sight.name);
        for (unsigned int k = 0; k < 8; ++k) {
            const Point3 corner = cornerOf(sight.box, k);
            const std::optional<PicturePoint> seen = sight.camera.project(corner, sight.viewport);
            if (!seen) {
                continue; // behind the eye
            }
            const Point3 back = sight.camera.unproject(*seen, sight.viewport);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const double rounding = 1e-15 * std::fabs(corner[axis]) + 1e-12 * sight.camera.scale();
                EXPECT_NEAR(back[axis], corner[axis], rounding);
            }
        }
    }
}

TEST(Camera, MatricesShowAPointWhereProjectSaysIt)
{
    for (const Sight& sight : randomSights(2, 200)) {
        SCOPED_TRACE(sight.name);
        const Point3 origin = {sight.box.low[0], sight.box.high[1], sight.box.low[2]};
        const CameraMatrices matrices = sight.camera.matrices(sight.viewport, sight.box, origin);
        for (unsigned int k = 0; k < 8; ++k) {
            const Point3 corner = cornerOf(sight.box, k);
            const std::optional<PicturePoint> seen = sight.camera.project(corner, sight.viewport);
            const std::array<double, 4> window = throughMatrices(
                matrices, {corner[0] - origin[0], corner[1] - origin[1], corner[2] - origin[2]}, sight.viewport);
            ASSERT_EQ(seen.has_value(), window[3] > 0);
            if (seen) {
                const double pixels = 1e-6 * (1 + std::fabs(window[0]) + std::fabs(window[1]));
                EXPECT_NEAR(window[0], seen->pixel.x, pixels);
                EXPECT_NEAR(window[1], seen->pixel.y, pixels);
            }
        }
    }
}

TEST(Camera, NearAndFarPlaneHoldTheBoxInSinglePrecisionToo)
{
    for (const Sight& sight : randomSights(3, 400)) {
        SCOPED_TRACE(sight.name);
        const Point3 origin = {sight.box.center(0), sight.box.center(1), sight.box.center(2)};
        CameraMatrices matrices = sight.camera.matrices(sight.viewport, sight.box, origin);
        for (std::array<double, 16>* matrix : {&matrices.modelview, &matrices.projection}) {
            for (double& value : *matrix) {
                value = static_cast<float>(value);
            }
        }
        double farthest = 0;
        for (unsigned int k = 0; k < 8; ++k) {
            const std::optional<PicturePoint> seen = sight.camera.project(cornerOf(sight.box, k), sight.viewport);
            farthest = seen ? std::max(farthest, seen->depth + sight.camera.distance()) : farthest;
        }
        for (unsigned int k = 0; k < 8; ++k) {
            const Point3 corner = cornerOf(sight.box, k);
            const Point3 from = {corner[0] - origin[0], corner[1] - origin[1], corner[2] - origin[2]};
            const std::array<double, 4> window = throughMatrices(matrices, from, sight.viewport);
            if (sight.camera.perspective() > 0 && window[3] < 1.1e-4 * farthest) {
                continue; // before the near plane, or beside it
            }
            EXPECT_GE(window[2], 0);
            EXPECT_LE(window[2], 1);
        }
    }
}

TEST(Camera, InsideTheModelSeesWhatIsInFront)
{
    Camera camera;
    camera.setPerspective(60);
    camera.setScale(0.1);
    Box room;
    std::fill(room.low, room.low + 3, -10.0);
    std::fill(room.high, room.high + 3, 10.0);
    const CameraMatrices matrices = camera.matrices({100, 100}, room, {0, 0, 0});
    for (const double depth : {0.01, 1.0, 9.99}) { // along the line of sight from the eye, which is at y = -0.087
        const std::array<double, 4> window = throughMatrices(matrices, {0, camera.eye()[1] + depth, 0}, {100, 100});
        EXPECT_GT(window[2], 0) << depth;
        EXPECT_LT(window[2], 1) << depth;
    }
}

TEST(Camera, PerspectiveKeepsTheSizeAtTheTarget)
{
    const Viewport viewport = {300, 200};
    Camera camera;
    camera.setScale(5);
    camera.setTarget({1, 2, 3});
    const Point3 aside = {1 + 2, 2, 3 + 1};
    const Pixel before = camera.project(aside, viewport)->pixel;
    camera.setPerspective(40);
    const Pixel after = camera.project(aside, viewport)->pixel;
    EXPECT_NEAR(after.x, before.x, 1e-9);
    EXPECT_NEAR(after.y, before.y, 1e-9);
    EXPECT_NEAR(before.x, 150 + 2 * 200 / 5, 1e-9);
}

TEST(Camera, PerspectiveMakesNearThingsLarger)
{
    const Viewport viewport = {200, 200};
    Camera camera;
    camera.setPerspective(30);
    const Point3 near = {0.5, -1, 0}, far = {0.5, 1, 0};
    EXPECT_GT(camera.project(near, viewport)->pixel.x, camera.project(far, viewport)->pixel.x);
    EXPECT_FALSE(camera.project({0, -100, 0}, viewport)); // behind the eye
}

TEST(Camera, RaysPassThroughWhatIsUnderThePixel)
{
    for (const Sight& sight : randomSights(4, 100)) {
        SCOPED_TRACE(sight.name);
        const Pixel pixel = {sight.viewport.width * 0.3, sight.viewport.height * 0.8};
        const PickRay ray = sight.camera.ray(pixel, sight.viewport);
        const Point3 d = ray.direction;
        EXPECT_NEAR(std::hypot(d[0], d[1], d[2]), 1, 1e-12);
        const double scale = sight.camera.scale(), steps[] = {0.5 * scale, 2 * scale};
        for (const double t : steps) {
            const Point3 at = {ray.begin[0] + t * d[0], ray.begin[1] + t * d[1], ray.begin[2] + t * d[2]};
            const std::optional<PicturePoint> seen = sight.camera.project(at, sight.viewport);
            ASSERT_TRUE(seen);
            EXPECT_NEAR(seen->pixel.x, pixel.x, 1e-3);
            EXPECT_NEAR(seen->pixel.y, pixel.y, 1e-3);
        }
        EXPECT_LT(d[0] * sight.camera.towardsViewer()[0] + d[1] * sight.camera.towardsViewer()[1] +
                      d[2] * sight.camera.towardsViewer()[2],
                  0);
    }
}

TEST(Camera, TakesNoStateThatIsNone)
{
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    Camera camera;
    const Camera before = camera;
    camera.setTarget({0, nan, 0});
    camera.setTarget({inf, 0, 0});
    for (const double scale : {0.0, -1.0, nan, inf}) {
        camera.setScale(scale);
    }
    camera.setPerspective(nan);
    EXPECT_EQ(camera, before);
    camera.setPerspective(1000);
    EXPECT_EQ(camera.perspective(), 150);
    camera.setPerspective(-3);
    EXPECT_EQ(camera, before);
}

TEST(Camera, AViewportWithoutSizeHasOnePixel)
{
    const Camera camera;
    const CameraMatrices none = camera.matrices({0, -5}, Box(), {0, 0, 0});
    EXPECT_EQ(none.projection, camera.matrices({1, 1}, Box(), {0, 0, 0}).projection);
    EXPECT_TRUE(std::isfinite(camera.project({0.1, 0, 0}, {0, 0})->pixel.x));
}

TEST(Camera, BoxesThatAreNoneStillGiveMatrices)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Box turnedRound, numberless;
    turnedRound.low[0] = 1;
    numberless.low[1] = nan;
    for (const Box& box : {turnedRound, numberless}) {
        for (const double degrees : {0.0, 40.0}) {
            Camera camera;
            camera.setPerspective(degrees);
            for (const double value : camera.matrices({10, 10}, box, {0, 0, 0}).projection) {
                EXPECT_TRUE(std::isfinite(value));
            }
        }
    }
}
