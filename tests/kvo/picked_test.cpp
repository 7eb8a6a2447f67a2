// Where picked elements are, by the slots of their parts.
#include "picked.h"

#include <GL/gl.h>
#include <memory>

#include <gtest/gtest.h>

#include "caeenv.h"
#include "modelbuilder.h"
#include "output_redirect.h"
#include "session_model.h"

namespace {

using Place = std::vector<double>;

struct OnePart
{
    explicit OnePart(const PartInfoStr& part) : parts(new PartInfoStr[1]{part}), model("none", "none", GL_FLAT)
    {
        model.env().numParts = 1;
        model.env().partsInfoList = parts.get();
    }
    std::unique_ptr<PartInfoStr[]> parts; // an environment leaves the list behind
    const kvo::OutputRedirect quiet{""};
    kvo::SessionModel model;
};

Place placeOf(const PartInfoStr& part, unsigned int element)
{
    OnePart one(part);
    kvo::PickHit hit;
    hit.part = 0;
    hit.member = element;
    const kvo::Picked picked = kvo::describeHits(one.model, {}, PICK_TYPE_ELEMENT, {hit}).at(0);
    EXPECT_EQ(picked.id, 101 + element);
    return {picked.at[0], picked.at[1], picked.at[2]};
}

// Two tetrahedra with nodes between their corners, of which one lies far off; the second one is 10 further along x.
TEST(Picked, SolidsOfTenSlotsAreTheirFourCorners)
{
    Floats nodes;
    Indices slots;
    for (unsigned int k = 0; k < 2; ++k) {
        const float x = 10 * static_cast<float>(k);
        const Floats corners = {x, 0, 0, x + 4, 0, 0, x, 4, 0, x, 0, 4, x + 900, 900, 900};
        nodes.insert(nodes.end(), corners.begin(), corners.end());
        const Indices ten = {0, 1, 2, 3, 4, 4, 4, 4, 4, 4};
        for (const unsigned int node : ten) {
            slots.push_back(5 * k + node);
        }
    }
    EXPECT_EQ(placeOf(makePart(SOLID, 10, nodes, slots), 0), (Place{1, 1, 1}));
    EXPECT_EQ(placeOf(makePart(SOLID, 10, nodes, slots), 1), (Place{11, 1, 1}));
}

TEST(Picked, LaterElementsOfEveryKindAreTheirOwnCorners)
{
    const Floats cubes = {0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0, 0, 0, 2, 2, 0, 2,
                          2, 2, 2, 0, 2, 2, 0, 0, 4, 2, 0, 4, 2, 2, 4, 0, 2, 4};
    const Indices two = {0, 1, 2, 3, 4, 5, 6, 7, 4, 5, 6, 7, 8, 9, 10, 11};
    EXPECT_EQ(placeOf(makePart(SOLID, 8, cubes, two), 1), (Place{1, 1, 3}));
    EXPECT_EQ(placeOf(quadStripPart(3), 2), (Place{2.5, 0.5, 0}));
    EXPECT_EQ(placeOf(tetraPart(), 0), (Place{0.25, 0.25, 0.25})) << "slots that repeat a corner count once";
}

// The third node only gives a beam's cross-section its direction.
TEST(Picked, ABeamsThirdNodeIsNoCorner)
{
    const Floats nodes = {0, 0, 0, 2, 0, 0, 4, 0, 0, 50, 60, 70};
    for (const unsigned int type : {BEAM, DISCRETE}) {
        EXPECT_EQ(placeOf(makePart(type, 3, nodes, {0, 1, 3, 1, 2, 3}), 0), (Place{1, 0, 0}));
        EXPECT_EQ(placeOf(makePart(type, 3, nodes, {0, 1, 3, 1, 2, 3}), 1), (Place{3, 0, 0}));
        EXPECT_EQ(placeOf(makePart(type, 3, nodes, {0, 1, noNode, 1, 2, noNode}), 1), (Place{3, 0, 0}));
    }
}

// Turning the map of ids round takes 30 ms of a pick at a million elements. Here it says something else than the
// picker.
TEST(Picked, TheElementIdThatThePickerKnowsIsTaken)
{
    PartInfoStr part = {};
    part.partDrawType = SHELL;
    part.partElements.numElements = 4;
    part.partElements.nodesPerElement = 4;
    part.partElements.elmIndices = new unsigned int[4]();
    part.partElements.eidMap = new UIUIMap{{42, 0}};
    OnePart one(part);
    kvo::PickHit unknown, known;
    known.id = 7;
    const std::vector<kvo::Picked> out = kvo::describeHits(one.model, {}, PICK_TYPE_ELEMENT, {unknown, known});
    ASSERT_EQ(out.size(), 2u);
    EXPECT_EQ(out[0].id, 42u);
    EXPECT_EQ(out[1].id, 7u);
}

} // namespace
