// Standard views mean the same for every model.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include <kvo/view_names.h>

#include "random_cameras.h"

using namespace kvo;
using namespace kvotest;

namespace {

struct Meaning
{
    const char* name;
    Point3 from; // the viewer's side
    Point3 right;
    Point3 up;
};

void expectMeaning(const Meaning& meaning, UpAxis up)
{
    SCOPED_TRACE(meaning.name);
    const std::optional<Rotation> found = viewOrientation(std::string(meaning.name), up);
    ASSERT_TRUE(found);
    Camera camera;
    camera.setOrientation(*found);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        EXPECT_NEAR(camera.towardsViewer()[axis], meaning.from[axis], 1e-15) << axis;
        EXPECT_NEAR(camera.right()[axis], meaning.right[axis], 1e-15) << axis;
        EXPECT_NEAR(camera.up()[axis], meaning.up[axis], 1e-15) << axis;
    }
}

Box blockAt(double x, double y, double z)
{
    Box out;
    const double middle[3] = {x, y, z}, half[3] = {1, 2, 3};
    for (int axis = 0; axis < 3; ++axis) {
        out.low[axis] = middle[axis] - half[axis];
        out.high[axis] = middle[axis] + half[axis];
    }
    return out;
}

CameraMatrices viewOfBlock(const std::string& view, const Point3& middle)
{
    Camera camera;
    camera.setOrientation(*viewOrientation(view));
    const Box block = blockAt(middle[0], middle[1], middle[2]);
    const Viewport viewport = {640, 480};
    return camera.fit(block, viewport).matrices(viewport, block, middle);
}

} // namespace

TEST(ViewNames, MeanWhatTheTableSaysWhereZIsUp)
{
    const Meaning meanings[] = {
        {"front", {0, -1, 0}, {1, 0, 0}, {0, 0, 1}}, {"back", {0, 1, 0}, {-1, 0, 0}, {0, 0, 1}},
        {"right", {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},  {"left", {-1, 0, 0}, {0, -1, 0}, {0, 0, 1}},
        {"top", {0, 0, 1}, {1, 0, 0}, {0, 1, 0}},    {"bottom", {0, 0, -1}, {1, 0, 0}, {0, -1, 0}},
        {"-y", {0, -1, 0}, {1, 0, 0}, {0, 0, 1}},    {"+y", {0, 1, 0}, {-1, 0, 0}, {0, 0, 1}},
        {"+x", {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},     {"-x", {-1, 0, 0}, {0, -1, 0}, {0, 0, 1}},
        {"+z", {0, 0, 1}, {1, 0, 0}, {0, 1, 0}},     {"-z", {0, 0, -1}, {1, 0, 0}, {0, -1, 0}},
        {"90,0", {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},   {"-90,0", {-1, 0, 0}, {0, -1, 0}, {0, 0, 1}},
        {"0,90", {0, 0, 1}, {1, 0, 0}, {0, 1, 0}},   {"90,-90", {0, 0, -1}, {0, 1, 0}, {1, 0, 0}}};
    for (const Meaning& meaning : meanings) {
        expectMeaning(meaning, UpAxis::Z);
    }
}

TEST(ViewNames, MeanWhatTheTableSaysWhereYIsUp)
{
    const Meaning meanings[] = {
        {"front", {0, 0, 1}, {1, 0, 0}, {0, 1, 0}},  {"back", {0, 0, -1}, {-1, 0, 0}, {0, 1, 0}},
        {"right", {1, 0, 0}, {0, 0, -1}, {0, 1, 0}}, {"left", {-1, 0, 0}, {0, 0, 1}, {0, 1, 0}},
        {"top", {0, 1, 0}, {1, 0, 0}, {0, 0, -1}},   {"bottom", {0, -1, 0}, {1, 0, 0}, {0, 0, 1}},
        {"+z", {0, 0, 1}, {1, 0, 0}, {0, 1, 0}},     {"-z", {0, 0, -1}, {-1, 0, 0}, {0, 1, 0}},
        {"+x", {1, 0, 0}, {0, 0, -1}, {0, 1, 0}},    {"-x", {-1, 0, 0}, {0, 0, 1}, {0, 1, 0}},
        {"+y", {0, 1, 0}, {1, 0, 0}, {0, 0, -1}},    {"-y", {0, -1, 0}, {1, 0, 0}, {0, 0, 1}},
        {"90,0", {1, 0, 0}, {0, 0, -1}, {0, 1, 0}}};
    for (const Meaning& meaning : meanings) {
        expectMeaning(meaning, UpAxis::Y);
    }
}

// Seen from a corner, the three axes are equally long and 120 degrees apart.
TEST(ViewNames, IsoIsIsometric)
{
    for (const UpAxis up : {UpAxis::Z, UpAxis::Y}) {
        Camera camera;
        camera.setOrientation(*viewOrientation("iso", up));
        const Point3 side = camera.towardsViewer();
        const double third = std::sqrt(1.0 / 3);
        const Point3 wanted = up == UpAxis::Z ? Point3{third, -third, third} : Point3{third, third, third};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            EXPECT_NEAR(side[axis], wanted[axis], 1e-15);
        }
        EXPECT_NEAR(camera.right()[up == UpAxis::Z ? 2 : 1], 0, 1e-15);
        EXPECT_GT(camera.up()[up == UpAxis::Z ? 2 : 1], 0.8);
    }
}

TEST(ViewNames, SeeABlockTheSameWayWhereverItLies)
{
    for (const char* view : standardViewWords()) {
        const CameraMatrices atOrigin = viewOfBlock(view, {0, 0, 0});
        for (int k = 0; k < 27; ++k) {
            for (const double distance : {10.0, 1e9}) {
                const Point3 middle = {distance * (k % 3 - 1), distance * (k / 3 % 3 - 1), distance * (k / 9 - 1)};
                const CameraMatrices here = viewOfBlock(view, middle);
                EXPECT_EQ(here.modelview, atOrigin.modelview) << view << " at position " << k;
                EXPECT_EQ(here.projection, atOrigin.projection) << view << " at position " << k;
            }
        }
    }
}

TEST(ViewNames, OtherTextIsNoView)
{
    for (const char* text :
         {"", "isometric", "ISO", "x", "+w", "1", "1,", ",1", "1,2,3", "1,91", "nan,0", "1, 2x", "0,inf"}) {
        EXPECT_FALSE(viewOrientation(std::string(text))) << text;
    }
}
