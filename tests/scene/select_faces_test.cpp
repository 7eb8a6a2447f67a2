// Growing by feature angle and following free edges.
#include <numeric>
#include <set>

#include "toolstest.h"

namespace {

using namespace kvo;

// A strip of squares along x, each turned against the one before by the angle of that name, degrees.
PartInfoStr foldedStrip(const std::vector<double>& folds)
{
    Floats nodes = {0, 0, 0, 0, 1, 0};
    Indices slots;
    double x = 0, z = 0, angle = 0;
    for (std::size_t k = 0; k <= folds.size(); ++k) {
        x += std::cos(angle);
        z += std::sin(angle);
        for (float y : {0.0f, 1.0f}) {
            nodes.insert(nodes.end(), {static_cast<float>(x), y, static_cast<float>(z)});
        }
        const unsigned int a = static_cast<unsigned int>(2 * k);
        slots.insert(slots.end(), {a, a + 2, a + 3, a + 1});
        angle += k < folds.size() ? folds[k] * M_PI / 180 : 0;
    }
    return makePart(SHELL, 4, nodes, slots);
}

Members range(unsigned int part, unsigned int first, unsigned int last)
{
    Members members;
    for (unsigned int k = first; k <= last; ++k) {
        members.push_back({part, k});
    }
    return members;
}

TEST(FeatureAngle, StopsAtTheFirstSharperFold)
{
    TestModel model(GL_FLAT);
    model.add(foldedStrip({10, 29, 31, 10, -20})).installParts();
    Selector selector(*model);
    const ElementSet first = elementSet(*model, {{0, 0}});
    EXPECT_EQ(membersOf(selector.growByAngle(first, 30)), range(0, 0, 2));
    EXPECT_EQ(membersOf(selector.growByAngle(first, 5)), range(0, 0, 0));
    EXPECT_EQ(membersOf(selector.growByAngle(first, 31)), range(0, 0, 5)) << "the limit itself passes";
    EXPECT_EQ(membersOf(selector.growByAngle(elementSet(*model, {{0, 4}}), 30)), range(0, 3, 5));
    EXPECT_EQ(membersOf(selector.growByAngle(first, -1)), range(0, 0, 0));
    EXPECT_EQ(membersOf(selector.growByAngle(first, NAN)), range(0, 0, 0));
    EXPECT_TRUE(selector.growByAngle(ElementSet(*model), 180).empty());
}

TEST(FeatureAngle, WindingDoesNotMatter)
{
    for (unsigned int turned = 0; turned < 64; ++turned) {
        TestModel model(GL_FLAT);
        model.add(foldedStrip({10, 20, 31, 10, -20})).installParts();
        for (unsigned int e = 0; e < 6; ++e) {
            if (turned >> e & 1) {
                std::reverse(model.part(0).partElements.elmIndices + 4 * e,
                             model.part(0).partElements.elmIndices + 4 * e + 4);
            }
        }
        Selector selector(*model);
        ASSERT_EQ(membersOf(selector.growByAngle(elementSet(*model, {{0, 1}}), 30)), range(0, 0, 2)) << turned;
    }
}

TEST(FeatureAngle, FoldedBackIsTheSharpestFold)
{
    TestModel model(GL_FLAT);
    model.add(foldedStrip({180})).installParts(); // the second square lies on the first
    Selector selector(*model);
    const ElementSet first = elementSet(*model, {{0, 0}});
    EXPECT_EQ(selector.growByAngle(first, 175).count(), 1u);
    EXPECT_EQ(selector.growByAngle(first, 180).count(), 2u);
}

TEST(FeatureAngle, CubeFacesAreApartFromOneSideOnly)
{
    const unsigned int n = 3;
    TestModel model(GL_FLAT);
    model.add(blockPart(n)).installParts();
    Selector selector(*model);
    // Face 0 of element 0 is the bottom.
    EXPECT_EQ(membersOf(selector.elementsByAngle(0, 0, 0, 30)), range(0, 0, 8));
    EXPECT_EQ(membersOf(selector.nodesByAngle(0, 0, 0, 30)), range(0, 0, 15));
    EXPECT_EQ(selector.elementsByAngle(0, 0, 0, 90).count(), 26u) << "all but the middle one";
    EXPECT_EQ(selector.elementsByAngle(0, 0, 2, 30).count(), 0u) << "the top of a lower element lies inside";
    EXPECT_EQ(selector.elementsByAngle(0, 0, 9, 30).count(), 0u);
    EXPECT_EQ(selector.elementsByAngle(0, 27, 0, 30).count(), 0u);
    EXPECT_EQ(selector.elementsByAngle(1, 0, 0, 30).count(), 0u);
    // As a set, the corner starts on all of its three faces.
    EXPECT_EQ(selector.growByAngle(elementSet(*model, {{0, 0}}), 30).count(), 19u);
    EXPECT_EQ(selector.nodesByAngle(elementSet(*model, {{0, 0}}), 30).count(), 37u);
    const ElementSet middle = elementSet(*model, {{0, 13}});
    EXPECT_EQ(membersOf(selector.growByAngle(middle, 90)), membersOf(middle)) << "has no outer face";
}

TEST(FeatureAngle, PartsThatShareNodesAreOneSkin)
{
    // Two cubes side by side along x with their own copies of the four nodes between them.
    TestModel model(GL_FLAT);
    PartInfoStr a = hexaPart(), b = hexaPart();
    for (unsigned int k = 0; k < 8; ++k) {
        b.partNodes.nodeValues[3 * k] += 1;
    }
    setNodeIds(a, {1, 20, 21, 4, 5, 22, 23, 8});
    std::sort(a.partNodes.idList, a.partNodes.idList + 8); // ids ascend; the nodes follow
    const float places[] = {0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 1, 0, 0, 1, 1, 0, 1, 0, 1, 1, 1, 1};
    std::copy(places, places + 24, a.partNodes.nodeValues);
    const unsigned int slots[] = {0, 4, 5, 1, 2, 6, 7, 3};
    std::copy(slots, slots + 8, a.partElements.elmIndices);
    std::copy(slots, slots + 8, b.partElements.elmIndices);
    for (unsigned int k = 0; k < 24; ++k) {
        b.partNodes.nodeValues[k] = places[k] + (k % 3 == 0 ? 1 : 0);
    }
    setNodeIds(b, {20, 21, 22, 23, 31, 32, 33, 34});
    model.add(a).add(b).installParts();
    Selector selector(*model);
    EXPECT_EQ(membersOf(selector.elementsByAngle(0, 0, 0, 10)), (Members{{0, 0}, {1, 0}})) << "bottom";
    EXPECT_TRUE(selector.elementsByAngle(0, 0, 1, 10).empty()) << "the face between them";
    hide(model.part(1));
    EXPECT_EQ(membersOf(selector.elementsByAngle(0, 0, 0, 10)), (Members{{0, 0}}));
    EXPECT_EQ(membersOf(selector.elementsByAngle(0, 0, 1, 10)), (Members{{0, 0}})) << "now outside";
    selector.scope = Scope::AllParts;
    selector.joint = Joint::OwnPart;
    EXPECT_EQ(membersOf(selector.elementsByAngle(0, 0, 0, 10)), (Members{{0, 0}}));
    EXPECT_EQ(membersOf(selector.elementsByAngle(0, 0, 1, 10)), (Members{{0, 0}}));
}

TEST(FeatureAngle, TJunctionGoesStraightOnAndNotUp)
{
    // Two squares in line and a third standing on their common edge.
    TestModel model(GL_FLAT);
    model
        .add(makePart(SHELL, 4, {0, 0, 0, 0, 1, 0, 1, 0, 0, 1, 1, 0, 2, 0, 0, 2, 1, 0, 1, 0, 1, 1, 1, 1},
                      {0, 2, 3, 1, 2, 4, 5, 3, 2, 3, 7, 6}))
        .installParts();
    Selector selector(*model);
    EXPECT_EQ(membersOf(selector.growByAngle(elementSet(*model, {{0, 0}}), 45)), range(0, 0, 1));
    EXPECT_EQ(membersOf(selector.growByAngle(elementSet(*model, {{0, 2}}), 45)), range(0, 2, 2));
    EXPECT_EQ(membersOf(selector.growByAngle(elementSet(*model, {{0, 2}}), 90)), range(0, 0, 2));
}

TEST(FeatureAngle, FacesWithoutAreaAreNotPassed)
{
    TestModel model(GL_FLAT);
    model.add(foldedStrip({0, 0})).installParts();
    float* p = model.part(0).partNodes.nodeValues;
    for (int k = 0; k < 6; ++k) {
        p[12 + k] = p[6 + k]; // the middle square has no width
    }
    Selector selector(*model);
    EXPECT_EQ(membersOf(selector.growByAngle(elementSet(*model, {{0, 0}}), 180)), range(0, 0, 0));
}

TEST(FeatureAngle, MixedShapesHaveOneClosedSkin)
{
    // A cube with a pyramid on top, a wedge at its side, and a beam: skin without the two faces between them.
    TestModel model(GL_FLAT);
    model
        .add(makePart(SOLID, 8, {0, 0, 0, 1, 0, 0, 1, 1,    0,    0, 1, 0, 0,    0, 1, 1,   0,
                                 1, 1, 1, 1, 0, 1, 1, 0.5f, 0.5f, 2, 2, 0, 0.5f, 2, 1, 0.5f},
                      {0, 1, 2, 3, 4, 5, 6, 7, 4, 5, 6, 7, 8, 8, 8, 8, 1, 5, 6, 2, 9, 9, 10, 10}))
        .add(beamPart())
        .installParts();
    Selector selector(*model);
    selector.joint = Joint::OwnPart;
    EXPECT_EQ(membersOf(selector.elementsByAngle(0, 0, 0, 180)), range(0, 0, 2));
    EXPECT_EQ(selector.nodesByAngle(0, 0, 0, 180).count(), 11u);
    EXPECT_TRUE(selector.elementsByAngle(0, 0, 2, 180).empty());
    EXPECT_TRUE(selector.elementsByAngle(0, 2, 0, 180).empty());
    EXPECT_EQ(membersOf(selector.growByAngle(elementSet(*model, {{1, 0}}), 180)), range(1, 0, 0))
        << "a beam has no faces";
}

// --- Free edges ---

Indices nodesOn(const EdgePath& path)
{
    Indices nodes;
    for (const NodePosition& at : path.nodes) {
        nodes.push_back(at.node);
    }
    return nodes;
}

// A 5 x 5 grid without the middle element.
PartInfoStr plateWithHole()
{
    PartInfoStr part = gridPart(5, 5);
    unsigned int* slots = part.partElements.elmIndices;
    std::copy(slots + 4 * 24, slots + 4 * 25, slots + 4 * 12);
    part.partElements.numElements -= 4;
    return part;
}

TEST(FreeEdge, RimOfAPlate)
{
    TestModel model(GL_FLAT);
    model.add(gridPart(3, 2)).installParts();
    Selector selector(*model);
    const EdgePath path = selector.freeEdgePath({0, 0});
    EXPECT_TRUE(path.closed);
    EXPECT_EQ(nodesOn(path), (Indices{0, 1, 2, 3, 7, 11, 10, 9, 8, 4}));
    EXPECT_EQ(path.elements.count(), 6u);
    const EdgePath back = selector.freeEdgePath({0, 0}, {0, 4});
    EXPECT_TRUE(back.closed);
    EXPECT_EQ(nodesOn(back), (Indices{0, 4, 8, 9, 10, 11, 7, 3, 2, 1}));
    EXPECT_TRUE(selector.freeEdgePath({0, 5}).nodes.empty()) << "an inner node";
    EXPECT_TRUE(selector.freeEdgePath({0, 0}, {0, 5}).nodes.empty()) << "no edge";
    EXPECT_TRUE(selector.freeEdgePath({0, 1}, {0, 5}).nodes.empty()) << "no free edge";
    EXPECT_TRUE(selector.freeEdgePath({0, 12}).nodes.empty());
    EXPECT_TRUE(selector.freeEdgePath({1, 0}).nodes.empty());
    EXPECT_TRUE(selector.freeEdgePath({0, 0}, {7, 0}).nodes.empty());
}

TEST(FreeEdge, RimOfAHole)
{
    TestModel model(GL_FLAT);
    model.add(plateWithHole()).installParts();
    Selector selector(*model);
    const EdgePath path = selector.freeEdgePath({0, 14});
    EXPECT_TRUE(path.closed);
    Indices nodes = nodesOn(path);
    std::sort(nodes.begin(), nodes.end());
    EXPECT_EQ(nodes, (Indices{14, 15, 20, 21}));
    EXPECT_EQ(membersOf(path.elements), (Members{{0, 7}, {0, 11}, {0, 13}, {0, 17}}));
    EXPECT_EQ(selector.freeEdgePath({0, 0}).nodes.size(), 20u) << "the rim, round the removed corner too";
}

TEST(FreeEdge, HolesThatMeetAtANodeStayApart)
{
    // Of a 4 x 4 grid, the elements (1, 1) and (2, 2) are missing: their holes touch at node 12.
    PartInfoStr part = gridPart(4, 4);
    unsigned int* slots = part.partElements.elmIndices;
    for (unsigned int gone : {5u, 10u}) {
        std::fill_n(slots + 4 * gone, 4, 9999u); // no element of the drawing any more
    }
    TestModel model(GL_FLAT);
    model.add(part).installParts();
    Selector selector(*model);
    // Round the shells between them: the path follows one shell fan through node 12.
    const EdgePath path = selector.freeEdgePath({0, 6});
    EXPECT_TRUE(path.closed);
    const Indices nodes = nodesOn(path);
    EXPECT_EQ(std::count(nodes.begin(), nodes.end(), 12u), 2) << "through the common node twice";
    EXPECT_EQ(nodes.size(), 8u);
    EXPECT_EQ(selector.freeEdgePath({0, 0}).nodes.size(), 16u);
}

TEST(FreeEdge, WindingDoesNotMatter)
{
    std::mt19937 random(2);
    for (int round = 0; round < 20; ++round) {
        TestModel model(GL_FLAT);
        model.add(gridPart(3, 2)).installParts();
        for (unsigned int e = 0; e < 6; ++e) {
            unsigned int* slots = model.part(0).partElements.elmIndices + 4 * e;
            std::rotate(slots, slots + random() % 4, slots + 4);
            if (random() % 2) {
                std::reverse(slots, slots + 4);
            }
        }
        Selector selector(*model);
        const EdgePath path = selector.freeEdgePath({0, 0}, {0, 1});
        ASSERT_TRUE(path.closed);
        ASSERT_EQ(nodesOn(path), (Indices{0, 1, 2, 3, 7, 11, 10, 9, 8, 4}));
    }
}

TEST(FreeEdge, GoesOnIntoPartsThatShareTheNodes)
{
    TestModel model(GL_FLAT);
    PartInfoStr a = quadPart(), b = makePart(SHELL, 4, {1, 0, 0, 1, 1, 0, 2, 0, 0, 2, 1, 0}, {0, 2, 3, 1});
    setNodeIds(b, {2, 3, 50, 51});
    model.add(a).add(b).installParts();
    Selector selector(*model);
    const EdgePath both = selector.freeEdgePath({0, 0});
    EXPECT_TRUE(both.closed);
    EXPECT_EQ(both.nodes.size(), 6u);
    EXPECT_EQ(both.elements.count(), 2u);
    hide(model.part(1));
    EXPECT_EQ(selector.freeEdgePath({0, 0}).nodes.size(), 4u);
    EXPECT_TRUE(selector.freeEdgePath({1, 0}).nodes.empty()) << "a hidden part has no path";
}

TEST(FreeEdge, ASolidsFaceDoesNotCoverAShellsEdge)
{
    TestModel model(GL_FLAT);
    model.add(hexaPart()).add(quadPart()).installParts(); // the square has the ids of the cube's bottom
    Selector selector(*model);
    EXPECT_EQ(selector.freeEdgePath({1, 0}).nodes.size(), 4u);
}

TEST(FreeEdge, PathsOverTJunctionsEndOrComeBack)
{
    // Two squares in line and a third standing on their common edge, which three shells have.
    TestModel model(GL_FLAT);
    model
        .add(makePart(SHELL, 4, {0, 0, 0, 0, 1, 0, 1, 0, 0, 1, 1, 0, 2, 0, 0, 2, 1, 0, 1, 0, 1, 1, 1, 1},
                      {0, 2, 3, 1, 2, 4, 5, 3, 2, 3, 7, 6}))
        .installParts();
    Selector selector(*model);
    for (unsigned int node = 0; node < 8; ++node) {
        const EdgePath path = selector.freeEdgePath({0, node});
        EXPECT_GE(path.nodes.size(), 4u);
        EXPECT_LE(path.nodes.size(), 10u);
    }
}

TEST(FreeEdge, MoebiusStripHasOneEdge)
{
    const unsigned int n = 12;
    Floats nodes;
    for (unsigned int k = 0; k < n; ++k) {
        for (int side : {-1, 1}) {
            const double t = 2 * M_PI * k / n, r = 2 + 0.5 * side * std::cos(t / 2);
            nodes.insert(nodes.end(), {static_cast<float>(r * std::cos(t)), static_cast<float>(r * std::sin(t)),
                                       static_cast<float>(0.5 * side * std::sin(t / 2))});
        }
    }
    Indices slots;
    for (unsigned int k = 0; k < n; ++k) {
        const bool last = k + 1 == n;
        const unsigned int a = 2 * k, b = last ? 1 : a + 2, c = last ? 0 : a + 3;
        slots.insert(slots.end(), {a, b, c, a + 1});
    }
    TestModel model(GL_FLAT);
    model.add(makePart(SHELL, 4, nodes, slots)).installParts();
    Selector selector(*model);
    const EdgePath path = selector.freeEdgePath({0, 0});
    EXPECT_TRUE(path.closed);
    EXPECT_EQ(path.nodes.size(), 2 * n);
    EXPECT_EQ(selector.growByAngle(elementSet(*model, {{0, 0}}), 60).count(), n) << "no side is the wrong one";
}

} // namespace
