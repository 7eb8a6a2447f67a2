// The machinery of picking by itself: clip volumes, sorting, the index.
#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>

#include <gtest/gtest.h>

#include "block_index.h"
#include "pick_models.h"
#include "radix_sort.h"
#include "region_test.h"

using kvo::FloatBox;
using kvo::Overlap;
using kvo::PickRegion;
using kvo::PickType;

namespace {

// Any rotation and scale, far from the origin or not.
kvo::PickView randomView(Dice& dice)
{
    kvo::PickView view = topView(400, 300);
    for (int k = 0; k < 12; ++k) {
        view.modelview[k] = k % 4 == 3 ? 0 : dice.between(-2, 2);
    }
    for (int k = 12; k < 15; ++k) {
        view.modelview[k] = dice.between(-500, 500);
    }
    return view;
}

FloatBox randomBox(Dice& dice)
{
    FloatBox box;
    box.clear();
    const double size = std::pow(10, dice.between(-2, 3));
    float middle[3];
    for (float& m : middle) {
        m = static_cast<float>(dice.between(-300, 300));
    }
    for (int corner = 0; corner < 2; ++corner) {
        float point[3];
        for (int axis = 0; axis < 3; ++axis) {
            point[axis] = middle[axis] + static_cast<float>(size * dice.between(-1, 1));
        }
        box.add(point);
    }
    return box;
}

bool inOrder(const std::vector<kvo::KeyedNumber>& items)
{
    return std::is_sorted(items.begin(), items.end(), [](const kvo::KeyedNumber& a, const kvo::KeyedNumber& b) {
        return a.key != b.key ? a.key < b.key : a.number < b.number;
    });
}

} // namespace

TEST(PickVolumes, OverlapOfBoxesIsNeverWrong)
{
    std::size_t certain[2] = {0, 0};
    for (unsigned int seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        const PickRegion region = PickRegion::click(dice.between(0, 400), dice.between(0, 300), dice.between(1, 400));
        const kvo::PickVolume volume(region, randomView(dice));
        for (int k = 0; k < 50; ++k) {
            const FloatBox box = randomBox(dice);
            const Overlap overlap = volume.overlap(box);
            if (overlap == Overlap::Partly) {
                continue;
            }
            ++certain[overlap == Overlap::Inside];
            unsigned int all = 0xFF;
            for (int sample = 0; sample < 20; ++sample) {
                float point[3];
                for (int axis = 0; axis < 3; ++axis) {
                    point[axis] = sample < 8 ? ((sample >> axis & 1) ? box.high : box.low)[axis]
                                             : static_cast<float>(dice.between(box.low[axis], box.high[axis]));
                }
                const unsigned int code = kvo::outcodeOf(volume.transform(point));
                all &= code;
                EXPECT_TRUE(overlap == Overlap::Outside || code == 0);
            }
            EXPECT_TRUE(overlap == Overlap::Inside || all != 0) << "all beyond one plane";
        }
    }
    EXPECT_GT(certain[0], 5000u);
    EXPECT_GT(certain[1], 50u);
}

TEST(PickVolumes, DepthsAreRecordedIn32Bits)
{
    EXPECT_EQ(kvo::recordedDepth(0.5f), 0.5f);
    EXPECT_EQ(kvo::recordedDepth(1.0f), 1.0f);
    EXPECT_EQ(kvo::recordedDepth(1.5f), 1.0f);
    EXPECT_EQ(kvo::recordedDepth(-1e-9f), 0.0f);
    EXPECT_EQ(kvo::recordedDepth(0.7654321f), 0.7654321f);
    EXPECT_EQ(kvo::recordedDepth(1.5f / 4294967296.0f), 1 / 4294967296.0f);
    EXPECT_EQ(kvo::recordedDepth(std::nanf("")), 0.0f);
}

TEST(Boxes, GrowByPointsAndBoxesAndSkipWhatIsNoNumber)
{
    FloatBox box;
    box.clear();
    EXPECT_TRUE(box.empty());
    FloatBox other;
    other.clear();
    box.add(other);
    EXPECT_TRUE(box.empty());
    const float points[2][3] = {{1, 2, 3}, {std::nanf(""), 5, -1}};
    box.add(points[0]);
    EXPECT_FALSE(box.empty());
    other.add(points[1]);
    EXPECT_TRUE(other.empty());
    box.add(other);
    EXPECT_EQ(box.high[0], 1);
    EXPECT_EQ(box.high[1], 5);
    EXPECT_EQ(box.low[2], -1);
}

TEST(RadixSort, SortsAnyKeysAndKeepsEqualOnesInPlace)
{
    for (std::uint32_t count : {0u, 1u, 100u, 300u, 5000u, 200000u}) {
        for (unsigned int bits : {1u, 8u, 11u, 12u, 22u, 32u}) {
            Dice dice(count + bits);
            std::vector<kvo::KeyedNumber> items(count);
            for (std::uint32_t k = 0; k < count; ++k) {
                items[k] = {static_cast<std::uint32_t>(dice.between(0, std::ldexp(1.0, static_cast<int>(bits)))), k};
            }
            kvo::sortByKey(items, bits);
            EXPECT_TRUE(inOrder(items)) << count << " items of " << bits << " bits";
        }
    }
    EXPECT_EQ(kvo::bitsOf(0), 0u);
    EXPECT_EQ(kvo::bitsOf(1), 1u);
    EXPECT_EQ(kvo::bitsOf(255), 8u);
    EXPECT_EQ(kvo::bitsOf(0xFFFFFFFF), 32u);
}

TEST(BlockIndex, FindsEverythingThatABoxMayHold)
{
    Dice dice(7);
    const unsigned int count = 20000;
    Floats nodes;
    for (unsigned int k = 0; k < count; ++k) {
        nodes.insert(nodes.end(), {static_cast<float>(dice.between(0, 400)), static_cast<float>(dice.between(0, 300)),
                                   static_cast<float>(dice.between(0, 2))});
    }
    PartInfoStr part = makePart(SHELL, 4, nodes, {});
    const kvo::BlockIndex index(part, PickType::Node, kvo::boxOfNodes(part));
    for (int k = 0; k < 50; ++k) {
        const PickRegion region = PickRegion::click(dice.between(0, 400), dice.between(0, 300), 12);
        const kvo::RegionTest test(region, topView(400, 300));
        std::vector<std::uint32_t> found;
        ASSERT_TRUE(index.find([&](const FloatBox& box) { return test.overlap(box); }, count, found));
        EXPECT_LT(found.size(), count / 20) << "most of it is not looked at";
        const std::set<std::uint32_t> unique(found.begin(), found.end());
        EXPECT_EQ(unique.size(), found.size());
        for (std::uint32_t node = 0; node < count; ++node) {
            kvo::DepthMinimum hit;
            test.addNode(part, node, hit);
            EXPECT_TRUE(!hit.hit || unique.count(node) == 1);
        }
    }
    std::vector<std::uint32_t> some;
    EXPECT_FALSE(index.find([](const FloatBox&) { return Overlap::Inside; }, 100, some));
    EXPECT_LT(some.size(), 200u);
    releasePart(part);
}

TEST(BlockIndex, StandsAnyCoordinates)
{
    const float none = std::nanf(""), endless = HUGE_VALF;
    PartInfoStr parts[] = {
        makePart(SHELL, 4, {5, 5, 5, 5, 5, 5, 5, 5, 5}, {}),
        makePart(SHELL, 4, {none, none, none, none, 1, 2}, {}),
        makePart(SHELL, 4, {endless, 0, 0, -endless, 0, 0, 1, 1, 1}, {}),
        makePart(SHELL, 4, {3e38f, 0, 0, -3e38f, 0, 0, 1, 1, 1}, {}),
        makePart(SHELL, 4, {}, {}),
    };
    for (PartInfoStr& part : parts) {
        const kvo::BlockIndex index(part, PickType::Node, kvo::boxOfNodes(part));
        std::vector<std::uint32_t> found;
        EXPECT_TRUE(index.find([](const FloatBox&) { return Overlap::Partly; }, 100, found));
        EXPECT_LE(found.size(), part.partNodes.numNodes);
        releasePart(part);
    }
}
