// Frames of a SceneView with a camera of its own, and picks in them.
#include <array>
#include <cmath>
#include <cstring>
#include <random>

#include <kvo/view_names.h>

#include "mantypes.h"
#include "scene_fixture.h"
#include <kvo/through_picker.h>
#include <kvo/visible_picker.h>

namespace {

using kvo::Camera;
using kvo::PickRegion;
using kvo::PickType;
using kvo::Picture;
using kvo::Rotation;
using kvo::SceneHit;
using kvo::SceneView;
using kvo::ThroughPicker;
using kvo::VisiblePicker;

constexpr kvo::Viewport window = {320, 240};

Camera lookingAt(const SceneView& view, const std::string& name, double degrees)
{
    Camera camera;
    camera.setOrientation(*kvo::viewOrientation(name));
    camera.setPerspective(degrees);
    return camera.fit(view.visibleBox(), window);
}

class CameraView : public SceneTest
{
protected:
    void addBlock(double x, double y, double z)
    {
        PartInfoStr block = hexaPart();
        movePart(block, static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
        paintPart(block, 1, 0.5f, 0.2f);
        model.add(block);
    }
    Picture frame(const Camera& camera)
    {
        if (!view) {
            view.emplace(*model);
        }
        view->look().axes = false;
        view->setCamera(camera);
        return picture(*view);
    }
    // For models that are made anew within a test.
    void forget()
    {
        view.reset();
        const kvo::OutputRedirect quiet("");
        made.emplace(GL_FLAT);
    }
    std::optional<SceneView> view;
};

bool same(const Picture& a, const Picture& b)
{
    return a.width == b.width && a.height == b.height && a.rgba == b.rgba;
}

std::size_t litPixels(const Picture& p)
{
    std::size_t out = 0;
    for (int y = 0; y < p.height; ++y) {
        for (int x = 0; x < p.width; ++x) {
            out += p.at(x, y).r > 20;
        }
    }
    return out;
}

TEST_F(CameraView, LeavesViewTransformationAndMatricesAlone)
{
    addBlock(0, 0, 0);
    load();
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(1, 2, 3);
    MTransform& transform = *model->getMTransformPtr();
    transform.mTransType = ROTATE_X_CCW; // waits for a frame of the environment's own
    std::array<double, 32> before;
    std::copy_n(transform.mvMatrix, 16, before.begin());
    std::copy_n(transform.projMatrix, 16, before.begin() + 16);
    const std::array<float, 6> extents = {model->getExtents()[0], model->getExtents()[1], model->getExtents()[2],
                                          model->getExtents()[3], model->getExtents()[4], model->getExtents()[5]};
    view.emplace(*model);
    EXPECT_GT(litPixels(frame(lookingAt(*view, "iso", 30))), 1000u);
    EXPECT_TRUE(std::equal(before.begin(), before.begin() + 16, transform.mvMatrix));
    EXPECT_TRUE(std::equal(before.begin() + 16, before.end(), transform.projMatrix));
    EXPECT_TRUE(std::equal(extents.begin(), extents.end(), model->getExtents()));
    EXPECT_EQ(transform.mTransType, static_cast<int>(ROTATE_X_CCW));
    double m[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, m);
    EXPECT_EQ(m[12], 1);
    EXPECT_EQ(m[0], 1);
}

TEST_F(CameraView, ABlockLooksTheSameWhereverItLies)
{
    std::array<Picture, 7> first;
    for (int position = 0; position < 27; ++position) {
        addBlock(8.0 * (position % 3 - 1), 8.0 * (position / 3 % 3 - 1), 8.0 * (position / 9 - 1));
        load();
        view.emplace(*model);
        for (std::size_t k = 0; k < 7; ++k) {
            const Picture now = frame(lookingAt(*view, kvo::standardViewWords()[k], 0));
            if (position == 0) {
                first[k] = now;
                EXPECT_GT(litPixels(now), 10000u);
            } else {
                EXPECT_TRUE(same(now, first[k])) << "position " << position << " " << kvo::standardViewWords()[k];
            }
        }
        forget();
    }
}

// The middle of what is drawn is where the camera says, in double precision.
TEST_F(CameraView, DrawsAPointWhereTheCameraProjectsIt)
{
    for (const double at : {0.0, 1000.0, 1e7}) {
        for (const double degrees : {0.0, 50.0}) {
            SCOPED_TRACE(std::to_string(at) + " " + std::to_string(degrees));
            PartInfoStr frameOfReference = hexaPart();
            for (int n = 0; n < 24; ++n) {
                frameOfReference.partNodes.nodeValues[n] =
                    static_cast<float>(at - 50 + 100 * double(frameOfReference.partNodes.nodeValues[n]));
            }
            for (int n = 0; n < 6; ++n) {
                frameOfReference.partExtents[n] = static_cast<float>(at + (n % 2 ? 50 : -50));
            }
            frameOfReference.partFlag |= PART_HIDDEN;
            frameOfReference.partFlag &= ~static_cast<unsigned int>(PART_SHOWN);
            PartInfoStr cube = hexaPart();
            for (int n = 0; n < 24; ++n) {
                cube.partNodes.nodeValues[n] = static_cast<float>(at + 20 + 4 * double(cube.partNodes.nodeValues[n]));
            }
            for (int n = 0; n < 6; ++n) {
                cube.partExtents[n] = static_cast<float>(at + 20 + (n % 2 ? 4 : 0));
            }
            paintPart(cube, 1, 1, 1);
            model.add(frameOfReference);
            model.add(cube);
            load();
            Camera camera;
            camera.setOrientation(Rotation::ofQuaternion(0.8, 0.3, -0.4, 0.2));
            camera.setTarget({at, at, at});
            camera.setScale(120);
            camera.setPerspective(degrees);
            const Picture p = frame(camera);
            double x = 0, y = 0, pixels = 0;
            for (int row = 0; row < height; ++row) {
                for (int column = 0; column < width; ++column) {
                    if (p.at(column, row).r > 20) {
                        x += column + 0.5;
                        y += height - row - 0.5;
                        ++pixels;
                    }
                }
            }
            ASSERT_GT(pixels, 20);
            const kvo::Pixel wanted = camera.project({at + 22, at + 22, at + 22}, window)->pixel;
            EXPECT_NEAR(x / pixels, wanted.x, 0.8);
            EXPECT_NEAR(y / pixels, wanted.y, 0.8);
            forget();
        }
    }
}

TEST_F(CameraView, HidingAPartLeavesTheCamera)
{
    addBlock(0, 0, 0);
    addBlock(5, 0, 0);
    load();
    view.emplace(*model);
    const Camera camera = lookingAt(*view, "front", 0);
    const Picture both = frame(camera);
    model->partsInfoList[1].partFlag |= PART_HIDDEN;
    const Picture one = picture(*view);
    EXPECT_EQ(*view->camera(), camera);
    EXPECT_NEAR(double(litPixels(one)), double(litPixels(both)) / 2, 0.05 * double(litPixels(both)));
    for (int y = 0; y < height; ++y) {
        EXPECT_EQ(one.at(60, y), both.at(60, y));
    }
}

// Which side of a face is seen depends on where it is: this wall on the right shows the viewer its left side, of which
// a viewer in parallel projection would see the back.
TEST_F(CameraView, PerspectiveLightsTheSideThatIsSeen)
{
    PartInfoStr wall = quadPart();
    for (unsigned int n = 0; n < wall.partNodes.numNodes; ++n) {
        float* p = wall.partNodes.nodeValues + 3 * n;
        const float along = 4 * p[0], up = p[1];
        p[0] = 2 + 0.1f * along;
        p[1] = along;
        p[2] = up;
    }
    const float extents[6] = {2, 2.4f, 0, 4, 0, 1};
    std::copy(extents, extents + 6, wall.partExtents);
    paintPart(wall, 1, 1, 1);
    model.add(wall);
    load();
    Camera camera;
    camera.setPerspective(80);
    camera.setScale(6);
    camera.setTarget({0, 2, 0.5});
    const Picture p = frame(camera);
    EXPECT_GT(litPixels(p), 50u);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (p.at(x, y).r > 20) { // ambient light, and the light from the left on a side that faces left: 0.41
                EXPECT_NEAR(p.at(x, y).r, 105, 2) << x << " " << y;
            }
        }
    }
}

TEST_F(CameraView, AClosedSurfaceIsSeenFromWithin)
{
    addBlock(0, 0, 0);
    load();
    Camera camera;
    camera.setPerspective(60);
    camera.setTarget({0.5, 0.5, 0.5});
    camera.setScale(0.2);
    const Picture p = frame(camera);
    EXPECT_EQ(litPixels(p), static_cast<std::size_t>(width) * height);
    VisiblePicker picker(*view);
    const std::optional<SceneHit> hit = picker.nearest(PickType::Element, PickRegion::click(160.5, 120.5, 1));
    ASSERT_TRUE(hit);
    EXPECT_NEAR(hit->position[1], 1, 1e-3); // the wall behind, seen from the front
}

// Lines are drawn a little nearer than the faces that they lie on; from within a model that must not take them through
// walls.
TEST_F(CameraView, LinesStayBehindWallsInPerspective)
{
    PartInfoStr wall = sheetPart(1), beam = beamPart();
    for (unsigned int n = 0; n < wall.partNodes.numNodes; ++n) { // y = 200, 400 wide
        float* p = wall.partNodes.nodeValues + 3 * n;
        const float x = 400 * p[0] - 200, z = 400 * p[1] - 200;
        p[0] = x;
        p[1] = 200;
        p[2] = z;
    }
    const float wallBox[6] = {-200, 200, 200, 200, -200, 200}, beamBox[6] = {-300, 300, 900, 900, 0, 0};
    std::copy(wallBox, wallBox + 6, wall.partExtents);
    for (unsigned int n = 0; n < beam.partNodes.numNodes; ++n) {
        float* p = beam.partNodes.nodeValues + 3 * n;
        p[0] = n % 2 ? 300.0f : -300.0f;
        p[1] = 900;
        p[2] = 0;
    }
    std::copy(beamBox, beamBox + 6, beam.partExtents);
    PartInfoStr floor = sheetPart(1); // under the eye: it makes the near plane near
    for (unsigned int n = 0; n < floor.partNodes.numNodes; ++n) {
        float* p = floor.partNodes.nodeValues + 3 * n;
        p[0] = 40 * p[0] - 20;
        p[1] = 40 * p[1] - 20;
        p[2] = -100;
    }
    const float floorBox[6] = {-20, 20, -20, 20, -100, -100};
    std::copy(floorBox, floorBox + 6, floor.partExtents);
    paintPart(wall, 0, 0, 1);
    paintPart(floor, 0, 0, 1);
    paintPart(beam, 1, 0, 0);
    model.add(wall);
    model.add(beam);
    model.add(floor);
    load();
    Camera camera;
    camera.setPerspective(60);
    camera.setScale(1);
    camera.setTarget({0, 0, 0});
    const Picture p = frame(camera);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            EXPECT_LT(p.at(x, y).r, 20) << x << " " << y;
        }
    }
}

struct Look
{
    double perspective;
    bool within;
    double away;
};

class CameraPick : public CameraView, public testing::WithParamInterface<Look>
{
};

// What the picture shows at a pixel, the visible pick, the pick through everything and the camera's own ray all agree.
TEST_P(CameraPick, AgreesWithThePicture)
{
    const Look look = GetParam();
    std::mt19937 dice(7);
    for (int k = 0; k < 12; ++k) {
        PartInfoStr block = blockPart(3);
        const auto at = [&] { return static_cast<float>(look.away + double(dice() % 12)); };
        movePart(block, at(), at(), at());
        paintPart(block, 0.3f + 0.05f * float(k), 0.5f, 0.5f);
        model.add(block);
    }
    load();
    view.emplace(*model);
    Camera camera = lookingAt(*view, "35,25", look.perspective);
    if (look.within) {
        const double middle = look.away + 6;
        camera.setTarget({middle, middle, middle});
        camera.setScale(3);
    }
    const Picture p = frame(camera);
    VisiblePicker visible(*view);
    ThroughPicker through(*model);
    std::size_t hits = 0, differing = 0;
    for (int y = 4; y < height; y += 9) {
        for (int x = 5; x < width; x += 9) {
            const PickRegion pixel = PickRegion::click(x + 0.5, y + 0.5, 1);
            const std::optional<SceneHit> seen = visible.nearest(PickType::Element, pixel);
            EXPECT_EQ(seen.has_value(), p.at(x, height - 1 - y).r > 20) << x << " " << y;
            if (!seen) {
                continue;
            }
            ++hits;
            const std::vector<SceneHit> all = through.pick(PickType::Element, pixel, view->pickView());
            const auto same = std::find_if(all.begin(), all.end(), [&](const SceneHit& hit) {
                return hit.part == seen->part && hit.entity == seen->entity;
            });
            ASSERT_TRUE(same != all.end()) << x << " " << y;
            differing += same != all.begin() && std::fabs(all.front().depth - same->depth) > 1e-6f;
            const kvo::PickRay ray = camera.ray({x + 0.5, y + 0.5}, window);
            double across[3], t = 0;
            for (std::size_t axis = 0; axis < 3; ++axis) {
                t += (seen->position[axis] - ray.begin[axis]) * ray.direction[axis];
            }
            for (std::size_t axis = 0; axis < 3; ++axis) {
                across[axis] = seen->position[axis] - ray.begin[axis] - t * ray.direction[axis];
            }
            EXPECT_LT(std::hypot(across[0], across[1], across[2]), 0.01);
        }
    }
    EXPECT_GT(hits, 200u);
    // Touching pixels at edges, where a neighbour is in front by part of a pixel.
    EXPECT_LT(double(differing), 0.25 * double(hits));
}

TEST_P(CameraPick, FindsNodesWhereTheyAreSeen)
{
    const Look look = GetParam();
    PartInfoStr sheet = sheetPart(6);
    movePart(sheet, static_cast<float>(look.away), static_cast<float>(look.away), static_cast<float>(look.away));
    model.add(sheet);
    load();
    view.emplace(*model);
    const Camera camera = lookingAt(*view, "20,50", look.perspective).zoom(look.within ? 3 : 1);
    frame(camera);
    VisiblePicker visible(*view);
    ThroughPicker through(*model);
    const PartInfoStr& part = model->partsInfoList[0];
    for (unsigned int n = 0; n < part.partNodes.numNodes; ++n) {
        const float* q = part.partNodes.nodeValues + 3 * n;
        const std::optional<kvo::PicturePoint> at = camera.project({q[0], q[1], q[2]}, window);
        if (!at || at->pixel.x < 2 || at->pixel.x > width - 2 || at->pixel.y < 2 || at->pixel.y > height - 2) {
            EXPECT_TRUE(look.within) << n;
            continue;
        }
        const PickRegion region = PickRegion::click(at->pixel.x, at->pixel.y, 3);
        const std::optional<SceneHit> seen = visible.nearest(PickType::Node, region);
        ASSERT_TRUE(seen) << n;
        EXPECT_EQ(seen->entity, n + 1);
        const std::optional<SceneHit> hit = through.nearest(PickType::Node, region, view->pickView());
        ASSERT_TRUE(hit) << n;
        EXPECT_EQ(hit->entity, n + 1);
        EXPECT_NEAR(hit->window[0], at->pixel.x, 0.01);
    }
}

INSTANTIATE_TEST_SUITE_P(Looks, CameraPick,
                         testing::Values(Look{0, false, 0}, Look{45, false, 0}, Look{70, true, 0}, Look{0, true, 0},
                                         Look{0, false, 1e5}, Look{45, false, 1e5}, Look{70, true, 1e5}));

} // namespace
