// Selecting by a box: nodes, elements inside, elements that it touches.
#include <limits>

#include "box_overlap.h"
#include "toolstest.h"

namespace {

using namespace kvo;

const double infinite = std::numeric_limits<double>::infinity();

bool touches(const kvo::PartMesh& part, const ModelBox& box)
{
    return elementTouchesBox(part, 0, shapeOf(part, 0), box);
}

TEST(SelectByBox, NodesOnTheRimAreInside)
{
    TestModel model(GL_FLAT);
    model.add(gridPart(3, 1)).add(quadPart()).installParts();
    hide(model.part(1));
    Selector selector(*model);
    const ModelBox box = {{1, 0, 0}, {2, 0.5, 0}};
    EXPECT_EQ(membersOf(selector.nodesInBox(box)), (Members{{0, 1}, {0, 2}}));
    selector.scope = Scope::AllParts;
    EXPECT_EQ(membersOf(selector.nodesInBox(box)), (Members{{0, 1}, {0, 2}, {1, 1}}));
    EXPECT_EQ(selector.nodesInBox({{2, 0, 0}, {1, 1, 1}}).count(), 0u) << "turned round is empty";
    EXPECT_EQ(selector.nodesInBox({{NAN, 0, 0}, {1, 1, 1}}).count(), 0u);
    EXPECT_EQ(selector.nodesInBox({{-infinite, -infinite, -infinite}, {infinite, infinite, infinite}}).count(), 12u);
}

TEST(SelectByBox, InsideWantsAllCornersTouchingAnyPoint)
{
    TestModel model(GL_FLAT);
    model.add(gridPart(5, 1)).add(beamPart()).installParts();
    Selector selector(*model);
    const ModelBox box = {{0.9, -1, -1}, {3.1, 2, 2}};
    EXPECT_EQ(membersOf(selector.elementsInBox(box, InBox::Inside)), (Members{{0, 1}, {0, 2}}));
    EXPECT_EQ(membersOf(selector.elementsInBox(box, InBox::Touching)),
              (Members{{0, 0}, {0, 1}, {0, 2}, {0, 3}, {1, 0}}));
    const ModelBox atEdge = {{2, 0, 0}, {2, 1, 0}};
    EXPECT_EQ(membersOf(selector.elementsInBox(atEdge, InBox::Touching)), (Members{{0, 1}, {0, 2}})) << "flat boxes do";
    EXPECT_EQ(selector.elementsInBox({{2, 0, 0}, {1, 1, 1}}, InBox::Touching).count(), 0u);
    EXPECT_EQ(selector.elementsInBox({{0, NAN, 0}, {1, 1, 1}}, InBox::Touching).count(), 0u);
}

TEST(SelectByBox, EndlessBoxesCutSpaceInHalf)
{
    TestModel model(GL_FLAT);
    model.add(gridPart(5, 1)).installParts();
    Selector selector(*model);
    const ModelBox box = {{-infinite, -infinite, -infinite}, {1.5, infinite, infinite}};
    EXPECT_EQ(membersOf(selector.elementsInBox(box, InBox::Inside)), (Members{{0, 0}}));
    EXPECT_EQ(membersOf(selector.elementsInBox(box, InBox::Touching)), (Members{{0, 0}, {0, 1}}));
}

TEST(SelectByBox, UndrawableElementsAreInNoBox)
{
    TestModel model(GL_FLAT);
    model.add(gridPart(2, 1)).installParts();
    model.part(0).partElements.elmIndices[1] = 77;
    Selector selector(*model);
    const ModelBox box = {{-9, -9, -9}, {9, 9, 9}};
    EXPECT_EQ(membersOf(selector.elementsInBox(box, InBox::Inside)), (Members{{0, 1}}));
    EXPECT_EQ(membersOf(selector.elementsInBox(box, InBox::Touching)), (Members{{0, 1}}));
}

TEST(SelectByBox, SmallBoxInsideASolidTouchesIt)
{
    for (const PartInfoStr& built : {hexaPart(), pentaPart(), pyramidPart(), tetraPart(), collapsedPart()}) {
        const TestPart part(built);
        EXPECT_TRUE(touches(part, {{0.3, 0.3, 0.15}, {0.31, 0.31, 0.16}}));
        EXPECT_FALSE(touches(part, {{-0.2, -0.2, -0.2}, {-0.1, 2, 2}}));
    }
}

TEST(SelectByBox, BoxInTheCornerOfTheSpanThatTheElementDoesNotFill)
{
    const ModelBox corner = {{0.8, 0.8, 0}, {1, 1, 1}};
    EXPECT_FALSE(touches(TestPart(trianglePart()), corner));
    EXPECT_FALSE(touches(TestPart(tetraPart()), corner));
    EXPECT_FALSE(touches(TestPart(pentaPart()), corner));
    EXPECT_TRUE(touches(TestPart(hexaPart()), corner));
    const TestPart line(BEAM, 3, {0, 0, 0, 1, 1, 1}, {0, 1, noNode});
    EXPECT_FALSE(touches(line, {{0, 0.6, 0}, {0.5, 1, 1}}));
    EXPECT_TRUE(touches(line, {{0.2, 0.6, 0}, {0.7, 1, 1}}));
}

TEST(SelectByBox, TriangleThroughTheBoxWithoutACornerInIt)
{
    const TestPart part(SHELL, 4, {-10, -10, 0.5f, 10, -10, 0.5f, 0, 20, 0.5f}, {0, 1, 2, 2});
    EXPECT_TRUE(touches(part, {{0, 0, 0}, {1, 1, 1}}));
    EXPECT_FALSE(touches(part, {{0, 0, 0.6}, {1, 1, 1}}));
}

// Barycentric points of the triangle: one in the box proves contact; none of a fine raster near it excludes it.
bool sampledContact(const ModelBox& box, const Vector3* t, double margin)
{
    const ModelBox wide = {{box.low[0] - margin, box.low[1] - margin, box.low[2] - margin},
                           {box.high[0] + margin, box.high[1] + margin, box.high[2] + margin}};
    const int steps = 120;
    for (int i = 0; i <= steps; ++i) {
        for (int j = 0; i + j <= steps; ++j) {
            const double u = static_cast<double>(i) / steps, v = static_cast<double>(j) / steps, w = 1 - u - v;
            if (insideBox(wide, {u * t[0].x + v * t[1].x + w * t[2].x, u * t[0].y + v * t[1].y + w * t[2].y,
                                 u * t[0].z + v * t[1].z + w * t[2].z})) {
                return true;
            }
        }
    }
    return false;
}

TEST(SelectByBox, TrianglesAgainstSampling)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> at(0, 1);
    int contacts = 0;
    for (int round = 0; round < 400; ++round) {
        Vector3 t[3];
        for (Vector3& p : t) {
            p = {at(random), at(random), at(random)};
        }
        ModelBox box;
        for (int axis = 0; axis < 3; ++axis) {
            box.low[axis] = at(random);
            box.high[axis] = box.low[axis] + 0.6 * at(random);
        }
        const bool contact = triangleTouchesBox(box, t[0], t[1], t[2]);
        contacts += contact;
        ASSERT_TRUE(contact || !sampledContact(box, t, 0)) << round;
        ASSERT_TRUE(!contact || sampledContact(box, t, 0.02)) << round;
    }
    EXPECT_GT(contacts, 40);
    EXPECT_LT(contacts, 360);
}

} // namespace
