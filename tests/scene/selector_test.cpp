// Selecting by ids, parts, types and quality; inverting; from elements to nodes and back.
#include <limits>

#include "toolstest.h"

namespace {

using namespace kvo;

// Parts 0: 4 x 1 squares (elements 101 to 104), 1: a beam, 2: a cube, 3: one square, hidden. Part ids 11 to 14.
class Selecting : public testing::Test
{
protected:
    void SetUp() override
    {
        model.add(gridPart(4, 1)).add(beamPart()).add(hexaPart()).add(quadPart()).installParts();
        hide(model.part(3));
    }
    Members elementsById(const std::vector<IdRange>& ids) { return membersOf(selector.elementsById(ids)); }

    TestModel model{GL_FLAT};
    Selector selector{*model};
};

TEST_F(Selecting, ElementsByIdInEveryPartThatIsShown)
{
    EXPECT_EQ(elementsById({{101, 101}}), (Members{{0, 0}, {1, 0}, {2, 0}}));
    EXPECT_EQ(elementsById({{103, 200}}), (Members{{0, 2}, {0, 3}}));
    selector.scope = Scope::AllParts;
    EXPECT_EQ(elementsById({{101, 101}}), (Members{{0, 0}, {1, 0}, {2, 0}, {3, 0}}));
}

TEST_F(Selecting, RangesMayOverlapAndComeInAnyOrder)
{
    EXPECT_EQ(elementsById({{104, 104}, {102, 103}, {103, 104}, {9, 2}, {0, 5}}), (Members{{0, 1}, {0, 2}, {0, 3}}));
    EXPECT_EQ(elementsById({}), Members());
    EXPECT_EQ(elementsById({{0, 0xFFFFFFFF}}).size(), 6u);
    EXPECT_EQ(elementsById({{105, 104}}), Members()) << "turned round is empty";
    EXPECT_EQ(elementsById({{1, 100}, {105, 0xFFFFFFFF}}), Members());
}

TEST_F(Selecting, RangesMayHaveSteps)
{
    EXPECT_EQ(elementsById({{100, 200, 3}}), (Members{{0, 2}})) << "100, 103, 106 ...";
    EXPECT_EQ(elementsById({{-3, 102, 2}, {104, 999, 50}}), (Members{{0, 0}, {0, 3}, {1, 0}, {2, 0}}));
    EXPECT_EQ(elementsById({{102, 104, 2}, {101, 103}}).size(), 6u) << "steps do not end a run that goes on";
    EXPECT_EQ(membersOf(selector.nodesById({{8, 12, 2}})), (Members{{0, 7}, {0, 9}, {2, 7}}));
    EXPECT_EQ(membersOf(selector.elementsOfParts({{10, 14, 2}})), (Members{{1, 0}}));
}

TEST_F(Selecting, RangesMayReachBeyondTheIdsOfAModel)
{
    const std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    const std::int64_t highest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(elementsById({{lowest, highest}}).size(), 6u);
    EXPECT_EQ(elementsById({{lowest, 101}, {(std::int64_t{1} << 32) + 102, highest}}).size(), 3u);
    EXPECT_EQ(membersOf(selector.nodesById({{lowest, -1}, {10, highest}})), (Members{{0, 9}}));
}

TEST_F(Selecting, IdsOfElementsThatAreNotThereAreIgnored)
{
    (*model.part(0).partElements.eidMap)[500] = 4; // one past the end
    delete model.part(2).partElements.eidMap;
    model.part(2).partElements.eidMap = nullptr;
    EXPECT_EQ(elementsById({{101, 101}, {500, 500}}), (Members{{0, 0}, {1, 0}}));
}

TEST_F(Selecting, NodesById)
{
    EXPECT_EQ(membersOf(selector.nodesById({{9, 10}, {3, 3}})), (Members{{0, 2}, {0, 8}, {0, 9}, {1, 2}, {2, 2}}));
    EXPECT_EQ(membersOf(selector.nodesById({{11, 0xFFFFFFFF}, {0, 0}})), Members());
    setNodeIds(model.part(1), {5, 70, 900});
    selector.modelChanged();
    EXPECT_EQ(membersOf(selector.nodesById({{50, 1000}})), (Members{{1, 1}, {1, 2}}));
    selector.scope = Scope::AllParts;
    EXPECT_EQ(membersOf(selector.nodesById({{4, 4}})), (Members{{0, 3}, {2, 3}, {3, 3}}));
}

TEST_F(Selecting, ElementsOfPartsByTheirIds)
{
    EXPECT_EQ(membersOf(selector.elementsOfParts({{12, 14}})), (Members{{1, 0}, {2, 0}})) << "14 is hidden";
    EXPECT_EQ(membersOf(selector.elementsOfParts({{1, 10}, {15, 99}})), Members());
    model->pidMap[40] = 77; // an id without a part
    EXPECT_EQ(membersOf(selector.elementsOfParts({{40, 40}})), Members());
}

TEST_F(Selecting, ElementsOfAType)
{
    EXPECT_EQ(selector.elementsOfKind(kvo::ElementKind::Shell).count(), 4u);
    EXPECT_EQ(membersOf(selector.elementsOfKind(kvo::ElementKind::Beam)), (Members{{1, 0}}));
    EXPECT_EQ(membersOf(selector.elementsOfKind(kvo::ElementKind::Discrete)), Members());
}

TEST_F(Selecting, ElementsByQuality)
{
    float* p = model.part(0).partNodes.nodeValues;
    p[3 * 4] = p[3 * 9] = 6; // the last square becomes 3 long
    EXPECT_EQ(membersOf(selector.elementsByQuality(Quality::EdgeRatio, 2, worstRatio)), (Members{{0, 3}}));
    EXPECT_EQ(selector.elementsByQuality(Quality::EdgeRatio, 0.5f, 1.5f).count(), 4u) << "no beam";
    EXPECT_EQ(selector.elementsByQuality(Quality::EdgeRatio, -10, worstRatio).count(), 5u);
    EXPECT_EQ(selector.elementsByQuality(Quality::EdgeRatio, 5, 1).count(), 0u);
}

TEST_F(Selecting, AllAndInvertKeepToTheScope)
{
    EXPECT_EQ(selector.allElements().count(), 6u);
    const ElementSet set = elementSet(*model, {{0, 1}, {3, 0}});
    EXPECT_EQ(membersOf(selector.invert(set)), (Members{{0, 0}, {0, 2}, {0, 3}, {1, 0}, {2, 0}, {3, 0}}))
        << "the hidden part is left as it is";
    EXPECT_EQ(membersOf(selector.invert(selector.invert(set))), membersOf(set));
    selector.scope = Scope::AllParts;
    EXPECT_EQ(membersOf(selector.invert(set)), (Members{{0, 0}, {0, 2}, {0, 3}, {1, 0}, {2, 0}}));
    NodeSet nodes(*model);
    EXPECT_EQ(selector.invert(nodes).count(), 10u + 3 + 8 + 4);
    EXPECT_EQ(selector.invert(selector.invert(nodes)).count(), 0u);
}

TEST_F(Selecting, SetsThatDoNotFitCountAsEmpty)
{
    ElementSet foreign;
    EXPECT_EQ(selector.invert(foreign).count(), 6u);
    EXPECT_EQ(selector.nodesOf(foreign).count(), 0u);
    EXPECT_EQ(selector.elementsWithNodes(NodeSet(), true).count(), 0u);
    EXPECT_EQ(selector.growByLayers(foreign).count(), 0u);
    EXPECT_EQ(selector.attached(foreign).count(), 0u);
    EXPECT_EQ(selector.growByAngle(foreign, 90).count(), 0u);
    EXPECT_EQ(selector.nodesByAngle(foreign, 90).count(), 0u);
}

TEST_F(Selecting, NodesOfElementsLeaveOutABeamsOrientationNode)
{
    EXPECT_EQ(membersOf(selector.nodesOf(elementSet(*model, {{0, 0}}))), (Members{{0, 0}, {0, 1}, {0, 5}, {0, 6}}));
    model.part(1).partElements.elmIndices[2] = 2;
    EXPECT_EQ(membersOf(selector.nodesOf(elementSet(*model, {{1, 0}}))), (Members{{1, 0}, {1, 1}}));
    EXPECT_EQ(selector.nodesOf(ElementSet(*model)).count(), 0u);
}

TEST_F(Selecting, ElementsWithAllOrAnyOfTheirNodes)
{
    NodeSet nodes(*model);
    for (unsigned int k : {0u, 1u, 5u, 6u}) {
        nodes.insert(0, k);
    }
    EXPECT_EQ(membersOf(selector.elementsWithNodes(nodes, true)), (Members{{0, 0}}));
    EXPECT_EQ(membersOf(selector.elementsWithNodes(nodes, false)), (Members{{0, 0}, {0, 1}}));
    EXPECT_EQ(selector.elementsWithNodes(NodeSet(*model), true).count(), 0u);
    for (unsigned int k = 0; k < 4; ++k) {
        nodes.insert(3, k);
    }
    EXPECT_FALSE(selector.elementsWithNodes(nodes, true).contains(3, 0)) << "hidden";
}

TEST_F(Selecting, UndrawableElementsHaveNoNodes)
{
    model.part(0).partElements.elmIndices[0] = 99;
    EXPECT_EQ(selector.nodesOf(elementSet(*model, {{0, 0}})).count(), 0u);
    NodeSet all = selector.invert(NodeSet(*model));
    EXPECT_FALSE(selector.elementsWithNodes(all, true).contains(0, 0));
    EXPECT_FALSE(selector.elementsWithNodes(all, false).contains(0, 0));
}

TEST_F(Selecting, PartsWithoutNodesOrElements)
{
    TestModel empty(GL_FLAT);
    empty.add(makePart(SHELL, 4, {}, {})).add(makePart(SOLID, 0, {}, {})).add(quadPart()).installParts();
    Selector s(*empty);
    EXPECT_EQ(s.allElements().count(), 1u);
    EXPECT_EQ(s.nodesById({{1, 1}}).count(), 1u);
    EXPECT_EQ(s.attached(s.allElements()).count(), 1u);
    EXPECT_EQ(s.growByAngle(s.allElements(), 180).count(), 1u);
    EXPECT_EQ(s.freeEdgePath({2, 0}).nodes.size(), 4u);
    EXPECT_EQ(s.nodesInBox({{0, 0, 0}, {1, 1, 1}}).count(), 4u);
}

TEST(Selector, ModelWithoutParts)
{
    TestModel model(GL_FLAT);
    model.installParts();
    Selector s(*model);
    EXPECT_EQ(s.allElements().count(), 0u);
    EXPECT_EQ(s.attached(ElementSet(*model)).count(), 0u);
    EXPECT_EQ(s.growByLayers(ElementSet(*model), 3).count(), 0u);
    EXPECT_EQ(s.growByAngle(ElementSet(*model), 3).count(), 0u);
    EXPECT_EQ(s.elementsByAngle(0, 0, 0, 3).count(), 0u);
    EXPECT_TRUE(s.freeEdgePath({0, 0}).nodes.empty());
    EXPECT_EQ(s.elementsInBox({{0, 0, 0}, {1, 1, 1}}, InBox::Touching).count(), 0u);
}

} // namespace
