// What picks answer besides which entities: ids, places, order, what is skipped, what is noticed. No OpenGL.
#include <cmath>
#include <set>

#include <gtest/gtest.h>

#include "outputcapture.h"
#include "pick_models.h"
#include <kvo/through_picker.h>

using kvo::PickRegion;
using kvo::PickType;
using kvo::SceneHit;

namespace {

typedef std::vector<std::pair<std::uint32_t, std::uint32_t>> Names;

// Parts seen from the top in a window of 400x300 pixels, one unit a pixel.
class ThroughPick : public testing::Test
{
protected:
    void load(const std::vector<PartInfoStr>& parts)
    {
        const OutputCapture quiet(1);
        model.reset(new TestModel(GL_FLAT));
        for (const PartInfoStr& part : parts) {
            model->add(part);
        }
        model->install();
        picker.reset(new kvo::ThroughPicker(**model));
    }

    std::vector<SceneHit> pick(PickType type, const PickRegion& region) { return picker->pick(type, region, view); }
    Names names(PickType type, const PickRegion& region)
    {
        Names all;
        for (const SceneHit& hit : pick(type, region)) {
            all.emplace_back(hit.part, hit.entity);
        }
        return all;
    }
    Names elementsAt(double x, double y) { return names(PickType::Element, PickRegion::click(x, y, 3)); }

    static PartInfoStr square(float x, float y, float z, float size = 20)
    {
        return makePart(SHELL, 4, {x, y, z, x + size, y, z, x + size, y + size, z, x, y + size, z}, {0, 1, 2, 3});
    }

    std::unique_ptr<TestModel> model;
    std::unique_ptr<kvo::ThroughPicker> picker;
    kvo::PickView view = topView(400, 300);
};

const PickRegion wholeWindow = PickRegion::rectangle(0, 0, 400, 300);

} // namespace

// --- What is hit ---

TEST_F(ThroughPick, EverythingUnderTheClickNearestFirst)
{
    load({square(100, 100, 5), square(100, 100, -3), square(100, 100, 1), square(200, 100, -9)});
    EXPECT_EQ(elementsAt(110, 110), (Names{{2, 1}, {3, 1}, {1, 1}}));
    EXPECT_EQ(names(PickType::Part, PickRegion::click(110, 110)), (Names{{2, 0}, {3, 0}, {1, 0}}));
}

TEST_F(ThroughPick, EqualDepthsStayInTheOrderOfPartsAndNumbers)
{
    load({square(100, 100, 1), quadStripPart(3), square(100, 100, 1)});
    EXPECT_EQ(elementsAt(110, 110), (Names{{1, 1}, {3, 1}}));
    EXPECT_EQ(elementsAt(1, 0.5), (Names{{2, 1}, {2, 2}, {2, 3}}));
}

TEST_F(ThroughPick, NothingUnderTheClick)
{
    load({square(100, 100, 1)});
    EXPECT_TRUE(elementsAt(50, 50).empty());
    EXPECT_FALSE(picker->nearest(PickType::Element, PickRegion::click(50, 50), view));
    load({});
    EXPECT_TRUE(elementsAt(50, 50).empty());
}

TEST_F(ThroughPick, NearestIsTheFirstOfAll)
{
    load({square(100, 100, 5), square(100, 100, -3)});
    const std::optional<SceneHit> nearest = picker->nearest(PickType::Element, PickRegion::click(110, 110), view);
    ASSERT_TRUE(nearest);
    const SceneHit first = pick(PickType::Element, PickRegion::click(110, 110))[0];
    EXPECT_EQ(nearest->part, 2u);
    EXPECT_EQ(nearest->entityId, first.entityId);
    EXPECT_EQ(nearest->depth, first.depth);
    EXPECT_EQ(nearest->position[2], first.position[2]);
}

TEST_F(ThroughPick, HiddenPartsAreReadAnewByEveryPick)
{
    load({square(100, 100, 0), square(100, 100, 1)});
    model->part(0).partFlag = PART_HIDDEN;
    EXPECT_EQ(elementsAt(110, 110), (Names{{2, 1}}));
    model->part(0).partFlag = PART_SHOWN;
    EXPECT_EQ(elementsAt(110, 110), (Names{{1, 1}, {2, 1}}));
}

TEST_F(ThroughPick, BeamsAreHitAtTheirLineAndThirdNodeButNotAsParts)
{
    load({makePart(BEAM, 3, {50, 50, 0, 90, 50, 0, 70, 80, 0}, {0, 1, 2}),
          makePart(DISCRETE, 3, {50, 150, 0, 90, 150, 0, 70, 180, 0}, {0, 1, 2})});
    EXPECT_EQ(elementsAt(70, 50), (Names{{1, 1}}));
    EXPECT_EQ(elementsAt(70, 80), (Names{{1, 1}}));
    EXPECT_EQ(elementsAt(70, 150), (Names{{2, 1}}));
    EXPECT_TRUE(elementsAt(70, 180).empty());
    EXPECT_EQ(names(PickType::Part, wholeWindow), (Names{{2, 0}}));
    EXPECT_EQ(names(PickType::Node, PickRegion::click(70, 80)), (Names{{1, 3}}));
}

TEST_F(ThroughPick, TenSlotTetrahedraAreWhereTheyAre)
{
    Floats nodes;
    for (float x : {100.0f, 200.0f}) {
        nodes.insert(nodes.end(), {x, 100, 0, x + 20, 100, 0, x, 120, 0, x, 100, 20});
    }
    load({makePart(SOLID, 10, nodes, {0, 1, 2, 3, 0, 0, 0, 0, 0, 0, 4, 5, 6, 7, 0, 0, 0, 0, 0, 0})});
    EXPECT_EQ(elementsAt(105, 105), (Names{{1, 1}}));
    EXPECT_EQ(elementsAt(205, 105), (Names{{1, 2}}));
}

TEST_F(ThroughPick, WhatCannotBeDrawnIsLeftOut)
{
    PartInfoStr none = square(100, 100, 0);
    none.partDrawType = 99;
    PartInfoStr noIndices = square(100, 100, 0);
    delete[] noIndices.partElements.elmIndices;
    noIndices.partElements.elmIndices = nullptr;
    PartInfoStr noNodes = square(100, 100, 0);
    delete[] noNodes.partNodes.nodeValues;
    noNodes.partNodes.nodeValues = nullptr;
    PartInfoStr noStride = square(100, 100, 0);
    noStride.partElements.nodesPerElement = 0;
    load({none, noIndices, noNodes, noStride,
          makePart(SHELL, 4, {100, 100, 0, 120, 100, 0, 120, 120, 0, 100, 120, 0}, {0, 1, 2, 4, 0, 1, 2, 3}),
          makePart(BEAM, 3, {100, 100, 0, 120, 120, 0}, {0, 1, 7, 0, 7, 1})});
    EXPECT_EQ(names(PickType::Element, wholeWindow), (Names{{5, 2}, {6, 1}}));
    EXPECT_EQ(names(PickType::Part, wholeWindow), (Names{{5, 0}}));
    EXPECT_EQ(names(PickType::Node, PickRegion::click(120, 100)), (Names{{1, 2}, {2, 2}, {4, 2}, {5, 2}}));
}

TEST_F(ThroughPick, ThereIsNoLimitToTheHits)
{
    const unsigned int n = 340;
    Floats nodes;
    Indices indices;
    for (unsigned int k = 0; k < (n + 1) * (n + 1); ++k) {
        nodes.insert(nodes.end(), {static_cast<float>(k % (n + 1)), static_cast<float>(k / (n + 1)) / 2, 0});
    }
    for (unsigned int k = 0; k < n * n; ++k) {
        const unsigned int first = k / n * (n + 1) + k % n;
        indices.insert(indices.end(), {first, first + 1, first + n + 2, first + n + 1});
    }
    load({makePart(SHELL, 4, nodes, indices)});
    EXPECT_EQ(pick(PickType::Element, wholeWindow).size(), n * n);
    EXPECT_EQ(pick(PickType::Node, wholeWindow).size(), (n + 1) * (n + 1));
    EXPECT_EQ(elementsAt(10.5, 20.25), names(PickType::Element, PickRegion::rectangle(9, 18.75, 12, 21.75)));
}

TEST_F(ThroughPick, ManyParts)
{
    std::vector<PartInfoStr> parts;
    for (unsigned int k = 0; k < 3000; ++k) {
        parts.push_back(square(static_cast<float>(k % 60) * 6, static_cast<float>(k / 60) * 6, 0, 5));
    }
    load(parts);
    EXPECT_EQ(pick(PickType::Element, wholeWindow).size(), 3000u);
    EXPECT_EQ(elementsAt(62.5, 122.5), (Names{{60 * 20 + 11, 1}}));
}

// --- What is told about it ---

TEST_F(ThroughPick, AnswersCarryTheDecksIds)
{
    PartInfoStr strip = quadStripPart(3);
    *strip.partElements.eidMap = {{7, 2}, {70, 0}, {71, 1}}; // in no order
    load({square(100, 100, 0), strip});
    (*model)->pidMap = {{4000, 1}, {12, 0}};
    const SceneHit element = pick(PickType::Element, PickRegion::click(2.5, 0.5, 0.1))[0];
    EXPECT_EQ(element.part, 2u);
    EXPECT_EQ(element.partId, 4000u);
    EXPECT_EQ(element.entity, 3u);
    EXPECT_EQ(element.entityId, 7u);
    EXPECT_EQ(pick(PickType::Element, PickRegion::click(0.5, 0.5, 0.1))[0].entityId, 70u);
    EXPECT_EQ(pick(PickType::Element, PickRegion::click(110, 110))[0].entityId, 101u);
    EXPECT_EQ(pick(PickType::Node, PickRegion::click(120, 120))[0].entityId, 3u);
    const SceneHit part = pick(PickType::Part, PickRegion::click(110, 110))[0];
    EXPECT_EQ(part.partId, 12u);
    EXPECT_EQ(part.entityId, 0u);
}

TEST_F(ThroughPick, IdsThatAreMissingReadZero)
{
    PartInfoStr strip = quadStripPart(2);
    *strip.partElements.eidMap = {{7, 1}};
    PartInfoStr bare = square(100, 100, 0);
    delete bare.partElements.eidMap;
    bare.partElements.eidMap = nullptr;
    delete[] bare.partNodes.idList;
    bare.partNodes.idList = nullptr;
    load({strip, bare});
    (*model)->pidMap.clear();
    EXPECT_EQ(pick(PickType::Element, PickRegion::click(0.5, 0.5, 0.1))[0].entityId, 0u);
    EXPECT_EQ(pick(PickType::Element, PickRegion::click(1.5, 0.5, 0.1))[0].entityId, 7u);
    EXPECT_EQ(pick(PickType::Element, PickRegion::click(110, 110))[0].entityId, 0u);
    EXPECT_EQ(pick(PickType::Element, PickRegion::click(110, 110))[0].partId, 0u);
    EXPECT_EQ(pick(PickType::Node, PickRegion::click(120, 120))[0].entityId, 0u);
}

TEST_F(ThroughPick, TheNearestPointOfATiltedElementInsideTheRegion)
{
    // z falls from 0 at x = 100 to -100 at x = 200.
    load({makePart(SHELL, 4, {100, 100, 0, 200, 100, -100, 200, 200, -100, 100, 200, 0}, {0, 1, 2, 3})});
    const SceneHit hit = pick(PickType::Element, PickRegion::click(150, 150, 10))[0];
    EXPECT_NEAR(hit.window[0], 155, 1e-3);
    EXPECT_GE(hit.window[1], 145 - 1e-3);
    EXPECT_LE(hit.window[1], 155 + 1e-3);
    EXPECT_NEAR(hit.position[0], 155, 1e-3);
    EXPECT_NEAR(hit.position[1], hit.window[1], 1e-3);
    EXPECT_NEAR(hit.position[2], -55, 1e-3);
    EXPECT_NEAR(hit.depth, 0.5 - 55 / 19998.0, 1e-7);
    EXPECT_NEAR(hit.window[2], hit.depth, 1e-7);
}

TEST_F(ThroughPick, PlacesOfAnythingLieOnItAndInsideTheRegion)
{
    std::size_t hitCount = 0;
    for (unsigned int seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        const double centre[3] = {200, 150, 0};
        load({randomPart(dice, centre, 80), randomPart(dice, centre, 80)});
        const PickType type = seed % 2 ? PickType::Element : PickType::Part;
        const PickRegion region = PickRegion::click(dice.between(100, 300), dice.between(50, 250), 20);
        for (const SceneHit& hit : pick(type, region)) {
            ++hitCount;
            EXPECT_LE(std::abs(hit.window[0] - region.x), region.width / 2 + 1e-2);
            EXPECT_LE(std::abs(hit.window[1] - region.y), region.height / 2 + 1e-2);
            EXPECT_NEAR(hit.position[0], hit.window[0], 1e-3);
            EXPECT_NEAR(hit.position[1], hit.window[1], 1e-3);
            EXPECT_NEAR(hit.position[2], (hit.window[2] - 0.5) * 19998, 1e-3);
            EXPECT_NEAR(hit.window[2], hit.depth, 1e-6);
            // A region about the place hits the same entity, as near.
            const PickRegion about = PickRegion::click(hit.window[0], hit.window[1], 0.2);
            bool again = false;
            for (const SceneHit& other : pick(type, about)) {
                again =
                    again || (other.part == hit.part && other.entity == hit.entity && other.depth <= hit.depth + 1e-6);
            }
            EXPECT_TRUE(again);
        }
    }
    EXPECT_GT(hitCount, 100u);
}

// --- What is noticed ---

TEST_F(ThroughPick, MovedNodesAreFoundAfterGeometryChanged)
{
    load({quadStripPart(3000)});
    view = topView(4000, 30);
    EXPECT_EQ(elementsAt(2000.5, 0.5).size(), 4u);
    PartNodesStr& nodes = model->part(0).partNodes;
    for (unsigned int k = 0; k < nodes.numNodes; ++k) {
        nodes.nodeValues[3 * k + 1] += 20;
    }
    picker->geometryChanged();
    EXPECT_TRUE(elementsAt(2000.5, 0.5).empty());
    EXPECT_EQ(elementsAt(2000.5, 20.5).size(), 4u);
}

TEST_F(ThroughPick, OtherArraysAreNoticed)
{
    load({quadStripPart(3000)});
    view = topView(4000, 30);
    EXPECT_EQ(elementsAt(2000.5, 0.5).size(), 4u);
    PartInfoStr other = quadStripPart(3500);
    std::swap(model->part(0), other);
    EXPECT_EQ(elementsAt(3200.5, 0.5).size(), 4u);
    releasePart(other);
}

TEST_F(ThroughPick, IndexCostsAFewBytesAnElementAndNothingForHiddenParts)
{
    load({quadStripPart(50000), quadStripPart(50000)});
    model->part(1).partFlag = PART_HIDDEN;
    picker->prepare(PickType::Element);
    EXPECT_LT(picker->indexBytes(), 50000u * 8);
    const std::size_t bytes = picker->indexBytes();
    EXPECT_GT(bytes, 50000u * 4);
    elementsAt(100.5, 0.5);
    EXPECT_EQ(picker->indexBytes(), bytes);
}
