// Sets of elements and nodes, into the environment and back.
#include "outputcapture.h"
#include "toolstest.h"

namespace {

using namespace kvo;

// Parts 0: two quads, 1: a beam, 2: one quad, hidden.
class MarkSets : public testing::Test
{
protected:
    void SetUp() override
    {
        model.add(quadStripPart(2)).add(beamPart()).add(quadPart()).installParts();
        hide(model.part(2));
    }
    Indices allFlags() { return {model.flags(0), model.flags(1), model.flags(2)}; }

    TestModel model{GL_FLAT};
};

TEST_F(MarkSets, HoldElementsOfEveryPart)
{
    ElementSet set(*model);
    EXPECT_EQ(set.numParts(), 3u);
    EXPECT_EQ(set.size(0), 2u);
    EXPECT_EQ(set.size(2), 1u);
    EXPECT_EQ(set.size(3), 0u);
    EXPECT_TRUE(set.empty());
    set.insert(0, 1);
    set.insert(2, 0);
    EXPECT_EQ(membersOf(set), (Members{{0, 1}, {2, 0}}));
    EXPECT_EQ(set.count(), 2u);
    EXPECT_EQ(set.count(0), 1u);
    EXPECT_EQ(set.count(1), 0u);
    EXPECT_EQ(set.count(9), 0u);
    set.erase(0, 1);
    EXPECT_EQ(membersOf(set), (Members{{2, 0}}));
}

TEST_F(MarkSets, PositionsOutsideTheModelAreIgnored)
{
    ElementSet set(*model);
    set.insert(0, 2);
    set.insert(3, 0);
    set.insert(0xFFFFFFFF, 0);
    set.erase(7, 7);
    EXPECT_TRUE(set.empty());
    EXPECT_FALSE(set.contains(0, 2));
    EXPECT_FALSE(set.contains(0xFFFFFFFF, 0));
}

TEST_F(MarkSets, UniteIntersectAndSubtract)
{
    const ElementSet a = elementSet(*model, {{0, 0}, {0, 1}}), b = elementSet(*model, {{0, 1}, {1, 0}});
    ElementSet set = a;
    EXPECT_TRUE(set.unite(b));
    EXPECT_EQ(membersOf(set), (Members{{0, 0}, {0, 1}, {1, 0}}));
    set = a;
    EXPECT_TRUE(set.intersect(b));
    EXPECT_EQ(membersOf(set), (Members{{0, 1}}));
    set = a;
    EXPECT_TRUE(set.subtract(b));
    EXPECT_EQ(membersOf(set), (Members{{0, 0}}));
}

TEST_F(MarkSets, SetsOfOtherModelsDoNotFit)
{
    TestModel other(GL_FLAT);
    other.add(quadPart()).installParts();
    const ElementSet foreign = elementSet(*other, {{0, 0}});
    ElementSet set = elementSet(*model, {{0, 0}});
    EXPECT_FALSE(set.unite(foreign));
    EXPECT_FALSE(set.intersect(foreign));
    EXPECT_FALSE(set.subtract(foreign));
    EXPECT_EQ(membersOf(set), (Members{{0, 0}}));
    EXPECT_FALSE(selectOnly(*model, foreign));
    EXPECT_FALSE(selectAlso(*model, foreign));
    EXPECT_FALSE(selectOnly(*model, NodeSet()));
    EXPECT_FALSE(selectAlso(*model, NodeSet()));
    EXPECT_EQ(allFlags(), (Indices{PART_SHOWN, PART_SHOWN, PART_HIDDEN}));
    EXPECT_EQ(model.part(0).partElements.selectedList, nullptr);
}

TEST_F(MarkSets, NothingIsSelectedInAFreshModel)
{
    EXPECT_TRUE(selectedElements(*model).empty());
    EXPECT_TRUE(selectedNodes(*model).empty());
    EXPECT_EQ(model.part(0).partElements.selectedList, nullptr) << "looking makes no lists";
}

TEST_F(MarkSets, SelectionGoesInAndComesBack)
{
    const Members members = {{0, 1}, {1, 0}, {2, 0}};
    EXPECT_TRUE(selectOnly(*model, elementSet(*model, members)));
    EXPECT_EQ(membersOf(selectedElements(*model)), members);
    EXPECT_EQ(std::string(model.part(0).partElements.selectedList, 2), "01");
    NodeSet nodes(*model);
    nodes.insert(0, 5);
    nodes.insert(2, 3);
    EXPECT_TRUE(selectOnly(*model, nodes));
    EXPECT_EQ(membersOf(selectedNodes(*model)), (Members{{0, 5}, {2, 3}}));
    EXPECT_EQ(std::string(model.part(2).partNodes.selectedNodes, 4), "0001");
}

TEST_F(MarkSets, SelectingHidesAndShowsNothingAndPrintsNothing)
{
    OutputCapture output;
    const float extents = model->modelExtents[1];
    selectOnly(*model, elementSet(*model, {{0, 0}, {2, 0}}));
    NodeSet nodes(*model);
    nodes.insert(1, 0);
    selectAlso(*model, nodes);
    EXPECT_EQ(allFlags(), (Indices{PART_SHOWN | PART_ELEMENTS_SELECTED, PART_SHOWN | PART_NODES_SELECTED,
                                   PART_HIDDEN | PART_ELEMENTS_SELECTED}));
    EXPECT_EQ(model->modelExtents[1], extents);
    EXPECT_EQ(output.all(), "");
}

TEST_F(MarkSets, OnlyReplacesAndAlsoAdds)
{
    selectOnly(*model, elementSet(*model, {{0, 0}}));
    selectAlso(*model, elementSet(*model, {{1, 0}}));
    EXPECT_EQ(membersOf(selectedElements(*model)), (Members{{0, 0}, {1, 0}}));
    selectOnly(*model, elementSet(*model, {{0, 1}}));
    EXPECT_EQ(membersOf(selectedElements(*model)), (Members{{0, 1}}));
    EXPECT_FALSE(model.flags(1) & PART_ELEMENTS_SELECTED);
    selectOnly(*model, ElementSet(*model));
    EXPECT_TRUE(selectedElements(*model).empty());
    EXPECT_FALSE(model.flags(0) & PART_ELEMENTS_SELECTED);

    NodeSet one(*model), two(*model);
    one.insert(0, 0);
    two.insert(0, 1);
    selectOnly(*model, one);
    selectAlso(*model, two);
    EXPECT_EQ(membersOf(selectedNodes(*model)), (Members{{0, 0}, {0, 1}}));
    selectOnly(*model, two);
    EXPECT_EQ(membersOf(selectedNodes(*model)), (Members{{0, 1}}));
}

TEST_F(MarkSets, FlagsWithoutMarksAndMarksWithoutFlagsAreNoSelection)
{
    model.part(0).partFlag |= PART_ELEMENTS_SELECTED | PART_NODES_SELECTED; // as restored from a file
    EXPECT_TRUE(selectedElements(*model).empty());
    EXPECT_TRUE(selectedNodes(*model).empty());
    selectOnly(*model, elementSet(*model, {{0, 0}}));
    model.part(0).partFlag &= ~PART_ELEMENTS_SELECTED;
    EXPECT_TRUE(selectedElements(*model).empty()) << "the contract draws it unselected";
}

TEST_F(MarkSets, RemainderOfAnIndexArrayHoldsNoElement)
{
    model.part(2).partElements.numElements = 3; // less than one quadrilateral
    EXPECT_EQ(ElementSet(*model).size(2), 0u);
}

TEST(MarkSet, ModelWithoutParts)
{
    TestModel model(GL_FLAT);
    model.installParts();
    const ElementSet set(*model);
    EXPECT_EQ(set.numParts(), 0u);
    EXPECT_EQ(ElementSet().numParts(), 0u);
    EXPECT_TRUE(ElementSet().empty());
    EXPECT_TRUE(selectOnly(*model, set));
    EXPECT_TRUE(selectedElements(*model).empty());
}

} // namespace
