// Picks without OpenGL against the drawing library's pick in selection mode: the same entities, the same depths to the
// last bit, the same nearest. Models, views and regions are random; a failure names the seed.
#include <algorithm>
#include <cmath>
#include <set>

#include "pick_fixture.h"
#include "pickrect.h"

using kvo::PickRegion;
using kvo::PickType;
using kvo::SceneHit;

namespace {

const PickType types[] = {PickType::Part, PickType::Element, PickType::Node};

PickRegion randomRegion(Dice& dice, int width, int height)
{
    const double x = dice.between(0, width), y = dice.between(0, height);
    if (dice.chance(0.4)) {
        return PickRegion::click(x, y, dice.between(1, 8));
    }
    if (dice.chance(0.1)) {
        return PickRegion::rectangle(0, 0, width, height);
    }
    return PickRegion::rectangle(x, y, dice.between(-20, width + 20), dice.between(-20, height + 20));
}

// Rotation, zoom and pan by any amount.
void turn(Dice& dice, MTransform& transform, double size)
{
    for (int axis = 0; axis < 3; ++axis) {
        transform.globalRot[axis] = static_cast<float>(dice.between(-360, 360));
        transform.localScale[axis] = static_cast<float>(std::pow(10, dice.between(-0.5, 0.7)));
        transform.globalTrans[axis] = static_cast<float>(dice.between(-0.2, 0.2) * size);
    }
}

class PickAgainstContract : public PickTest
{
protected:
    // A model in a random view; returns its size.
    void showRandom(Dice& dice, double size, double distance, double depthStretch = 1)
    {
        double centre[3];
        for (double& c : centre) {
            c = dice.between(-1, 1) * distance;
        }
        std::vector<PartInfoStr> parts;
        for (unsigned int k = 1 + dice.below(5); k > 0; --k) {
            parts.push_back(randomPart(dice, centre, size));
            if (dice.chance(0.15)) {
                parts.back().partFlag = PART_HIDDEN;
            }
            for (unsigned int n = 0; n < parts.back().partNodes.numNodes; ++n) {
                parts.back().partNodes.nodeValues[3 * n + 2] *= static_cast<float>(depthStretch);
            }
        }
        const int shade = dice.chance(0.5) ? GL_FLAT : GL_SMOOTH;
        show(parts, static_cast<int>(dice.below(8)), shade, [&](MTransform& transform) {
            if (dice.chance(0.7)) {
                turn(dice, transform, size);
            }
        });
    }

    void compare(PickType type, const PickRegion& region)
    {
        std::vector<ContractHit> expected = contractHits(type, region);
        // A depth of 1 or just below 0 does not fit the 32 bits of a record and wraps round to the other end.
        const bool wrapped = std::any_of(expected.begin(), expected.end(), [](const ContractHit& hit) {
            return hit.low == 0 || hit.high == 0 || hit.high == 1 || hit.low > hit.high;
        });
        kvo::ThroughPicker picker(*env);
        const std::vector<SceneHit> hits = picker.pick(type, region, view);
        total += hits.size();
        ASSERT_EQ(hits.size(), expected.size());
        std::set<std::pair<std::uint32_t, std::uint32_t>> wanted, got;
        for (std::size_t k = 0; k < hits.size(); ++k) {
            wanted.emplace(expected[k].part, expected[k].entity);
            got.emplace(hits[k].part, hits[k].entity);
        }
        ASSERT_EQ(got, wanted);
        const std::optional<SceneHit> nearest = picker.nearest(type, region, view);
        ASSERT_EQ(nearest.has_value(), !hits.empty());
        if (wrapped || hits.empty()) {
            return;
        }
        std::stable_sort(expected.begin(), expected.end(),
                         [](const ContractHit& a, const ContractHit& b) { return a.low < b.low; });
        for (std::size_t k = 0; k < hits.size(); ++k) {
            EXPECT_EQ(hits[k].depth, expected[k].low);
            EXPECT_EQ(hits[k].part, expected[k].part);
            EXPECT_EQ(hits[k].entity, expected[k].entity);
        }
        EXPECT_EQ(nearest->part, expected[0].part);
        EXPECT_EQ(nearest->entity, expected[0].entity);
        EXPECT_EQ(nearest->depth, expected[0].low);
        compared += hits.size();
    }

    void compareMany(unsigned int firstSeed, unsigned int models, double lowestSize, double highestSize,
                     double distance, double depthStretch = 1)
    {
        for (unsigned int seed = firstSeed; seed < firstSeed + models && !HasFatalFailure(); ++seed) {
            SCOPED_TRACE("seed " + std::to_string(seed));
            Dice dice(seed);
            const double size = std::exp(dice.between(std::log(lowestSize), std::log(highestSize)));
            showRandom(dice, size, distance * size, depthStretch);
            for (int k = 0; k < 12 && !HasFatalFailure(); ++k) {
                compare(types[dice.below(3)], randomRegion(dice, width, height));
            }
        }
    }

    std::size_t total = 0;    // hits
    std::size_t compared = 0; // of them with their depths
};

} // namespace

TEST_F(PickAgainstContract, RandomModelsGiveTheSameHitsDepthsAndNearest)
{
    compareMany(1, 250, 0.5, 2000, 0);
    EXPECT_GT(compared, 3000u);
}

TEST_F(PickAgainstContract, ModelsFarFromTheOrigin)
{
    compareMany(1000, 120, 0.1, 50, 100);
    EXPECT_GT(compared, 1000u);
}

TEST_F(PickAgainstContract, TinyModels)
{
    compareMany(2000, 80, 1e-5, 1e-2, 1);
    EXPECT_GT(compared, 700u);
}

TEST_F(PickAgainstContract, ModelsCutByNearAndFarPlane)
{
    compareMany(3000, 120, 2000, 30000, 0.2, 3);
    EXPECT_GT(total, 1000u);
    EXPECT_GT(compared, 100u);
}

TEST_F(PickAgainstContract, ThePickOfTheDrawingLibraryItself)
{
    // Far from the origin, where no axis triad is hit.
    unsigned int picked = 0;
    for (unsigned int seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        const double centre[3] = {300, 200, 50};
        show({randomPart(dice, centre, 10), randomPart(dice, centre, 10), randomPart(dice, centre, 10)});
        const PickRegion region = randomRegion(dice, width, height);
        const PickType type = types[seed % 3];
        kvo::ThroughPicker picker(*env);
        const std::vector<SceneHit> hits = picker.pick(type, region, view);
        PickRect contract;
        float values[] = {region.x, region.y, region.width, region.height};
        {
            const kvo::OutputRedirect quiet("");
            EXPECT_EQ(contract.process(static_cast<int>(contractType(type)), SELECT_PICK, values),
                      static_cast<int>(hits.size()));
        }
        if (hits.empty()) {
            continue;
        }
        ++picked;
        const PidEidStr nearest = contract.zPartMap.begin()->second;
        EXPECT_EQ(hits[0].part, nearest.pid);
        EXPECT_EQ(hits[0].entity, nearest.eid);
        EXPECT_EQ(hits[0].depth, contract.zPartMap.begin()->first);
    }
    EXPECT_GT(picked, 15u);
}

TEST_F(PickAgainstContract, RegionsThatOnlyTouchAnElement)
{
    // A square whose edges lie exactly on pixel borders: seen from the top, one unit is 100 pixels.
    show({makePart(SHELL, 4, {-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0}, {0, 1, 2, 3}),
          makePart(SHELL, 4, {-2, -1.5f, 0, 2, -1.5f, 0, 2, 1.5f, 0, -2, 1.5f, 0}, {0, 1, 2, 3})});
    const std::vector<double> corner = project(1, 1, 0);
    for (double dx : {-4.0, -2.0, -1.0, 0.0, 1.0, 2.0, 4.0}) {
        for (double dy : {-4.0, -2.0, 0.0, 2.0, 4.0}) {
            for (PickType type : types) {
                compare(type, PickRegion::click(corner[0] + dx, corner[1] + dy, 4));
            }
        }
    }
    EXPECT_GT(total, 50u);
}

TEST_F(PickAgainstContract, CoordinatesThatAreNotNumbers)
{
    const float none = std::nanf(""), endless = HUGE_VALF;
    std::vector<PartInfoStr> parts;
    for (float value : {none, endless, -endless}) {
        for (unsigned int node = 0; node < 4; ++node) {
            parts.push_back(quadPart());
            parts.back().partNodes.nodeValues[3 * node + 1] = value;
            parts.push_back(makePart(BEAM, 3, {0, 0, 0, 1, 1, 0, 0.5f, 0.5f, 0}, {0, 1, 2}));
            parts.back().partNodes.nodeValues[3 * (node % 3)] = value;
        }
    }
    parts.push_back(hexaPart());
    show(parts);
    for (PickType type : types) {
        for (const PickRegion& region : {PickRegion::rectangle(0, 0, width, height), PickRegion::click(200, 150, 9),
                                         PickRegion::rectangle(0, 0, 60, 300), PickRegion::rectangle(0, 0, 400, 20)}) {
            compare(type, region);
        }
    }
    EXPECT_GT(total, 50u);
}

TEST_F(PickAgainstContract, PartsLargeEnoughForAnIndex)
{
    for (unsigned int seed = 1; seed <= 3; ++seed) {
        Dice dice(seed);
        // A bumpy sheet whose elements come in no order.
        const unsigned int n = 70;
        Floats nodes;
        for (unsigned int k = 0; k < (n + 1) * (n + 1); ++k) {
            nodes.insert(nodes.end(), {static_cast<float>(k % (n + 1)), static_cast<float>(k / (n + 1)),
                                       static_cast<float>(dice.between(0, 3))});
        }
        std::vector<unsigned int> cells(n * n);
        for (unsigned int k = 0; k < cells.size(); ++k) {
            std::swap(cells[k] = k, cells[dice.below(k + 1)]);
        }
        Indices indices;
        for (unsigned int cell : cells) {
            const unsigned int first = cell / n * (n + 1) + cell % n;
            indices.insert(indices.end(), {first, first + 1, first + n + 2, first + n + 1});
        }
        show({makePart(SHELL, 4, nodes, indices), randomPart(dice, std::vector<double>{35, 35, 0}.data(), 20)},
             ISO_VIEW, GL_FLAT, [&](MTransform& transform) { turn(dice, transform, 10); });
        for (int k = 0; k < 60 && !HasFatalFailure(); ++k) {
            compare(types[dice.below(3)], randomRegion(dice, width, height));
        }
    }
    EXPECT_GT(compared, 10000u);
}
