// What visible picks find: what the picture shows, and nothing else.
#include <kvo/visible_picker.h>

#include <random>
#include <set>

#include "mantypes.h"
#include "scene_fixture.h"

namespace {

using kvo::PickRegion;
using kvo::PickType;
using kvo::SceneHit;
using kvo::SceneView;
using kvo::VisiblePicker;

// Window coordinates, y upwards, of a model point in the last frame.
PickRegion clickAt(CAEEnv& env, double x, double y, double z, double size = 1)
{
    const Pixel pixel = pixelOf(env, x, y, z);
    return PickRegion::click(pixel.x + 0.5, env.viewPort[3] - 1 - pixel.y + 0.5, size);
}

std::set<std::uint32_t> entities(const std::vector<SceneHit>& hits)
{
    std::set<std::uint32_t> out;
    for (const SceneHit& hit : hits) {
        out.insert(hit.entity);
    }
    return out;
}

class VisiblePick : public SceneTest
{
protected:
    void frame(int viewType)
    {
        model->getMViewPtr()->mViewType = viewType;
        view.emplace(*model);
        picture(*view);
        picker.emplace(*view);
    }
    std::optional<SceneView> view;
    std::optional<VisiblePicker> picker;
};

TEST_F(VisiblePick, AnElementWithItsIdsAndPlace)
{
    model.add(sheetPart(4));
    load();
    frame(TOP_VIEW);
    const std::vector<SceneHit> hits = picker->pick(PickType::Element, clickAt(*model, 2.5, 1.5, 0));
    ASSERT_EQ(hits.size(), 1u);
    EXPECT_EQ(hits[0].part, 1u);
    EXPECT_EQ(hits[0].partId, 11u);
    EXPECT_EQ(hits[0].entity, 7u);
    EXPECT_EQ(hits[0].entityId, 107u);
    EXPECT_NEAR(hits[0].position[0], 2.5, 0.05);
    EXPECT_NEAR(hits[0].position[1], 1.5, 0.05);
    EXPECT_NEAR(hits[0].position[2], 0, 0.01);
    EXPECT_GT(hits[0].depth, 0);
    EXPECT_LT(hits[0].depth, 1);
}

// Drawn as lines, a face shows its sides and nothing between them.
TEST_F(VisiblePick, SidesOfFacesThatAreDrawnAsLines)
{
    model.add(quadPart());
    load();
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    frame(TOP_VIEW);
    EXPECT_TRUE(picker->pick(PickType::Element, clickAt(*model, 0.5, 0.5, 0, 21)).empty());
    EXPECT_EQ(picker->pick(PickType::Element, clickAt(*model, 0.5, 0, 0, 5)).size(), 1u);
    EXPECT_EQ(picker->pick(PickType::Element, clickAt(*model, 0, 0.5, 0, 5)).size(), 1u);
}

TEST_F(VisiblePick, PartsAndNodes)
{
    model.add(sheetPart(4));
    PartInfoStr other = sheetPart(4);
    movePart(other, 5, 0, 0);
    model.add(other);
    load();
    frame(TOP_VIEW);
    std::vector<SceneHit> hits = picker->pick(PickType::Part, clickAt(*model, 6.5, 1.5, 0));
    ASSERT_EQ(hits.size(), 1u);
    EXPECT_EQ(hits[0].part, 2u);
    EXPECT_EQ(hits[0].entity, 0u);
    EXPECT_EQ(hits[0].entityId, 0u);
    hits = picker->pick(PickType::Node, clickAt(*model, 6, 1, 0, 5));
    ASSERT_EQ(hits.size(), 1u);
    EXPECT_EQ(hits[0].part, 2u);
    EXPECT_EQ(hits[0].entityId, 7u);
    EXPECT_EQ(hits[0].position[0], 6);
    EXPECT_EQ(hits[0].position[1], 1);
    EXPECT_TRUE(picker->pick(PickType::Node, clickAt(*model, 6.5, 1.5, 0, 5)).empty());
}

TEST_F(VisiblePick, WhatIsCoveredOrHiddenIsNotHit)
{
    // Of a block of cubes only the side towards the viewer.
    model.add(blockPart(3));
    load();
    frame(TOP_VIEW);
    const std::vector<SceneHit> all = picker->pick(PickType::Element, PickRegion::rectangle(0, 0, width, height));
    EXPECT_EQ(all.size(), 9u);
    const std::set<std::uint32_t> seen = entities(all);
    EXPECT_TRUE(seen.count(1) != seen.count(19)) << "one of the two sides";
    EXPECT_EQ(picker->pick(PickType::Node, PickRegion::rectangle(0, 0, width, height)).size(), 16u);
    model->setDisplay(1u, PART_HIDDEN);
    picture(*view);
    EXPECT_TRUE(picker->pick(PickType::Element, PickRegion::rectangle(0, 0, width, height)).empty());
}

TEST_F(VisiblePick, AbsentElementsAreNotHitAndUncoverOthers)
{
    model.add(blockPart(3));
    load();
    frame(TOP_VIEW);
    const PickRegion middle = clickAt(*model, 1.5, 1.5, 1.5);
    const std::uint32_t first = picker->nearest(PickType::Element, middle)->entity;
    std::vector<char> absent(27, 0);
    absent[first - 1] = 1;
    view->setAbsentElements({absent});
    picture(*view);
    EXPECT_EQ(picker->nearest(PickType::Element, middle)->entity, 14u);
}

TEST_F(VisiblePick, RegionsOutsideTheModelOrTheWindow)
{
    model.add(sheetPart(2));
    load();
    frame(TOP_VIEW);
    EXPECT_TRUE(picker->pick(PickType::Element, PickRegion::click(2, 2, 3)).empty());
    EXPECT_TRUE(picker->pick(PickType::Element, PickRegion::click(-50, 1e9, 3)).empty());
    EXPECT_FALSE(picker->nearest(PickType::Part, PickRegion::click(2, 2, 3)));
    EXPECT_EQ(picker->pick(PickType::Element, PickRegion::rectangle(-1e9, -1e9, 1e9, 1e9)).size(), 4u);
}

TEST_F(VisiblePick, BeforeTheFirstFrameThereIsNothing)
{
    model.add(sheetPart(2));
    load();
    view.emplace(*model);
    picker.emplace(*view);
    EXPECT_TRUE(picker->pick(PickType::Element, PickRegion::rectangle(0, 0, width, height)).empty());
}

// A hover in a viewer. The driver's fences are looked after by preloading slow_broadcast.cpp.
TEST_F(VisiblePick, TheSameAtThatPlaceEachTime)
{
    model.add(sheetPart(4));
    load();
    frame(TOP_VIEW);
    for (int k = 0; k < 1500; ++k) {
        const std::vector<SceneHit> hits = picker->pick(PickType::Element, clickAt(*model, 2.5, 1.5, 0));
        ASSERT_EQ(hits.size(), 1u) << k;
        EXPECT_EQ(hits[0].entityId, 107u);
    }
}

TEST_F(VisiblePick, PolygonsTakeThePixelsInside)
{
    model.add(sheetPart(4));
    load();
    frame(TOP_VIEW);
    // A triangle over the corner of node (0, 0), seen from wherever.
    const auto at = [&](double x, double y) {
        const Pixel p = pixelOf(*model, x, y, 0);
        return kvo::WindowPosition{p.x + 0.5, height - 1 - p.y + 0.5};
    };
    const auto hits = picker->pick(PickType::Element, PickRegion::polygon({at(0.1, 0.1), at(1.7, 0.1), at(0.1, 1.7)}));
    EXPECT_EQ(entities(hits), (std::set<std::uint32_t>{1, 2, 5}));
}

TEST_F(VisiblePick, BeamsAndTransparentPartsAreHit)
{
    PartInfoStr pane = sheetPart(2), beam = beamPart();
    paintPart(pane, 1, 1, 1, 0.3f);
    movePart(beam, 3, 0, 0);
    model.add(pane).add(beam);
    load();
    frame(TOP_VIEW);
    EXPECT_EQ(picker->nearest(PickType::Element, clickAt(*model, 0.5, 0.5, 0))->part, 1u);
    EXPECT_EQ(picker->nearest(PickType::Element, clickAt(*model, 3.5, 0, 0, 3))->part, 2u);
}

// A node counts where its element shows in its pixel or in one beside, not farther off. A cover before the sheet ends
// near the node in the middle; how far from it is tried in quarters of a pixel.
TEST_F(VisiblePick, NodesShowInTheirPixelOrBesideIt)
{
    model.add(sheetPart(2));
    model.add(makePart(SHELL, 4, {0, 0, 0.1f, 1, 0, 0.1f, 1, 2, 0.1f, 0, 2, 0.1f}, {0, 1, 2, 3}));
    load();
    frame(TOP_VIEW);
    const Pixel left = pixelOf(*model, 0, 1, 0), right = pixelOf(*model, 2, 1, 0), node = pixelOf(*model, 1, 1, 0);
    const float quarter = 0.5f / float(right.x - left.x);
    const PickRegion place = clickAt(*model, 1, 1, 0);
    int shown = 0, hidden = 0;
    for (int k = -4; k <= 16; ++k) {
        float* cover = model.part(1).partNodes.nodeValues;
        cover[3] = cover[6] = 1 + float(k) * quarter;
        view->geometryChanged();
        picture(*view);
        const auto sheetAt = [&](int steps) {
            const auto hit = picker->nearest(PickType::Part, PickRegion::click(node.x + steps + 0.5, place.y, 1));
            return hit && hit->part == 1;
        };
        bool found = false;
        for (const SceneHit& hit : picker->pick(PickType::Node, place)) {
            found = found || (hit.part == 1 && hit.entity == 5);
        }
        EXPECT_EQ(found, sheetAt(0) || sheetAt(1)) << "cover ends " << k << " quarters of a pixel to the right";
        shown += found;
        hidden += !found && sheetAt(2);
    }
    EXPECT_GT(shown, 4);
    EXPECT_GT(hidden, 1) << "it was never seen two pixels off";
}

// The rule itself: a pick finds what the picture of numbers shows. The picture is made here by colours: every element
// in a colour of its own, flat and without light.
TEST_F(VisiblePick, AgreesWithAnIdPicture)
{
    std::mt19937 random(3);
    PartInfoStr part = blockPart(4);
    model.add(part);
    load();
    for (int round = 0; round < 7; ++round) {
        std::vector<char> absent(64);
        for (char& flag : absent) {
            flag = random() % 2;
        }
        view.emplace(*model);
        view->setAbsentElements({absent});
        model->getMViewPtr()->mViewType = 1 + round % 7;
        float turn[4] = {160, 120, float(random() % 320), float(random() % 240)};
        {
            const kvo::OutputRedirect quiet("");
            model->getMTransformPtr()->updateValues(GLOBAL_ROTATION, turn);
        }
        picture(*view);
        picker.emplace(*view);
        std::set<std::uint32_t> single;
        const int x0 = 110, y0 = 70, x1 = 180, y1 = 140;
        for (int y = y0; y < y1; y += 1) {
            for (int x = x0; x < x1; x += 1) {
                if (auto hit = picker->nearest(PickType::Element, PickRegion::click(x + 0.5, y + 0.5, 1))) {
                    single.insert(hit->entity);
                }
            }
        }
        EXPECT_EQ(entities(picker->pick(PickType::Element, PickRegion::rectangle(x0, y0, x1, y1))), single);
        for (std::uint32_t element : single) {
            EXPECT_FALSE(absent[element - 1]);
        }
    }
}

} // namespace
