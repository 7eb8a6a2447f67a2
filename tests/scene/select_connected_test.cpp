// Layers and attached elements.
#include <numeric>

#include "toolstest.h"

namespace {

using namespace kvo;

const unsigned int n = 7; // elements along one side of the grid

// Elements of the grid within a distance of the middle one, in steps that also go diagonally.
Members squareAround(unsigned int distance)
{
    Members members;
    for (unsigned int j = 0; j < n; ++j) {
        for (unsigned int i = 0; i < n; ++i) {
            if (std::max(std::abs(static_cast<int>(i) - 3), std::abs(static_cast<int>(j) - 3)) <=
                static_cast<int>(distance)) {
                members.push_back({0, j * n + i});
            }
        }
    }
    return members;
}

TEST(Layers, GrowByElementsThatShareANode)
{
    TestModel model(GL_FLAT);
    model.add(gridPart(n, n)).installParts();
    Selector selector(*model);
    const ElementSet middle = elementSet(*model, squareAround(0));
    EXPECT_EQ(membersOf(selector.growByLayers(middle, 0)), squareAround(0));
    EXPECT_EQ(membersOf(selector.growByLayers(middle)), squareAround(1));
    EXPECT_EQ(membersOf(selector.growByLayers(middle, 2)), squareAround(2));
    EXPECT_EQ(membersOf(selector.growByLayers(middle, 4000000000u)), squareAround(3)) << "ends when nothing changes";
    EXPECT_TRUE(selector.growByLayers(ElementSet(*model), 5).empty());
}

TEST(Layers, ShrinkIsTheReverseAndTheRimIsNoOutside)
{
    TestModel model(GL_FLAT);
    model.add(gridPart(n, n)).installParts();
    Selector selector(*model);
    EXPECT_EQ(membersOf(selector.shrinkByLayers(elementSet(*model, squareAround(2)), 1)), squareAround(1));
    EXPECT_EQ(membersOf(selector.shrinkByLayers(elementSet(*model, squareAround(2)), 3)), Members());
    EXPECT_EQ(selector.shrinkByLayers(selector.allElements(), 3).count(), n * n);
    Members rows; // the two lower rows
    for (unsigned int k = 0; k < 2 * n; ++k) {
        rows.push_back({0, k});
    }
    EXPECT_EQ(selector.shrinkByLayers(elementSet(*model, rows)).count(), n) << "only from the side of the others";
}

TEST(Layers, PartsJoinAtNodesWithTheSameId)
{
    TestModel model(GL_FLAT);
    PartInfoStr beam = beamPart();
    setNodeIds(beam, {4, 50, 60}); // node 4: the upper right corner of the strip's last square
    model.add(quadStripPart(1)).add(beam).installParts();
    Selector selector(*model);
    const ElementSet quad = elementSet(*model, {{0, 0}});
    EXPECT_EQ(membersOf(selector.growByLayers(quad)), (Members{{0, 0}, {1, 0}}));
    EXPECT_EQ(membersOf(selector.attached(quad)), (Members{{0, 0}, {1, 0}}));
    selector.joint = Joint::OwnPart;
    EXPECT_EQ(membersOf(selector.growByLayers(quad)), (Members{{0, 0}}));
    EXPECT_EQ(membersOf(selector.attached(quad)), (Members{{0, 0}}));
}

TEST(Layers, OrientationNodesOfBeamsJoinNothing)
{
    TestModel model(GL_FLAT);
    PartInfoStr beam = makePart(BEAM, 3, {1, 1, 0, 0, 0, 5, 0, 0, 6}, {1, 2, 0});
    setNodeIds(beam, {4, 50, 60});
    model.add(quadStripPart(1)).add(beam).installParts();
    Selector selector(*model);
    EXPECT_EQ(selector.attached(elementSet(*model, {{0, 0}})).count(), 1u);
}

// Three squares in a row, each a part; the middle one can be hidden.
struct Row : TestModel
{
    Row() : TestModel(GL_FLAT)
    {
        PartInfoStr parts[] = {quadPart(0), quadPart(1), quadPart(2)};
        setNodeIds(parts[0], {1, 2, 3, 4});
        setNodeIds(parts[1], {2, 3, 5, 6});
        setNodeIds(parts[2], {5, 6, 7, 8});
        for (const PartInfoStr& part : parts) {
            add(part);
        }
        installParts();
    }
};

TEST(Attached, HiddenPartsAreNeitherReachedNorPassed)
{
    Row model;
    Selector selector(*model);
    const ElementSet first = elementSet(*model, {{0, 0}});
    EXPECT_EQ(selector.attached(first).count(), 3u);
    hide(model.part(1));
    EXPECT_EQ(membersOf(selector.attached(first)), (Members{{0, 0}})) << "flags are read at each call";
    EXPECT_EQ(membersOf(selector.attached(elementSet(*model, {{0, 0}, {1, 0}}))), (Members{{0, 0}, {1, 0}}))
        << "what is selected in a hidden part stays, and starts nothing";
    EXPECT_EQ(membersOf(selector.shrinkByLayers(elementSet(*model, {{0, 0}, {1, 0}}))), (Members{{0, 0}, {1, 0}}));
    selector.scope = Scope::AllParts;
    EXPECT_EQ(selector.attached(first).count(), 3u);
}

TEST(Attached, ThinlySpreadIdsJoinAsWell)
{
    Row model;
    for (unsigned int part = 0; part < 3; ++part) {
        for (unsigned int k = 0; k < 4; ++k) {
            model.part(part).partNodes.idList[k] = model.part(part).partNodes.idList[k] * 400000000u + 3;
        }
    }
    Selector selector(*model);
    EXPECT_EQ(selector.attached(elementSet(*model, {{2, 0}})).count(), 3u);
}

TEST(Attached, PartsWithoutIdsJoinOnlyThemselves)
{
    Row model;
    delete[] model.part(1).partNodes.idList;
    model.part(1).partNodes.idList = nullptr;
    Selector selector(*model);
    EXPECT_EQ(membersOf(selector.attached(elementSet(*model, {{1, 0}}))), (Members{{1, 0}}));
    EXPECT_EQ(selector.nodesById({{1, 9}}).count(1), 0u);
}

TEST(Attached, ChangesOfTheModelAreSeenAfterTheCall)
{
    Row model;
    Selector selector(*model);
    const ElementSet first = elementSet(*model, {{0, 0}});
    EXPECT_EQ(selector.attached(first).count(), 3u);
    setNodeIds(model.part(2), {15, 16, 17, 18});
    selector.modelChanged();
    EXPECT_EQ(selector.attached(first).count(), 2u);
}

TEST(Attached, UndrawableElementsConnectNothing)
{
    TestModel model(GL_FLAT);
    model.add(quadStripPart(3)).installParts();
    model.part(0).partElements.elmIndices[4 + 1] = 1000;
    Selector selector(*model);
    EXPECT_EQ(membersOf(selector.attached(elementSet(*model, {{0, 0}}))), (Members{{0, 0}}));
}

// A plate of 300 strips of 40 squares, each strip a part with its own copies of the nodes.
struct Plate : TestModel
{
    Plate() : TestModel(GL_FLAT)
    {
        for (unsigned int k = 0; k < 300; ++k) {
            PartInfoStr strip = quadStripPart(40);
            for (unsigned int n = 0; n < 82; ++n) {
                strip.partNodes.idList[n] = 41 * k + n + 1;
                strip.partNodes.nodeValues[3 * n + 1] += static_cast<float>(k);
            }
            add(strip);
        }
        installParts();
    }
};

TEST(Attached, ManyPartsAreOnePlate)
{
    Plate model;
    Selector selector(*model);
    const ElementSet middle = elementSet(*model, {{150, 20}});
    EXPECT_EQ(selector.growByLayers(middle, 7).count(), 15u * 15);
    EXPECT_EQ(selector.shrinkByLayers(selector.growByLayers(middle, 7), 5).count(), 5u * 5);
    EXPECT_EQ(selector.attached(middle).count(), 12000u);
    EXPECT_EQ(selector.growByAngle(middle, 1).count(), 12000u);
    EXPECT_EQ(selector.freeEdgePath({0, 0}).nodes.size(), 680u);
    EXPECT_EQ(selector.elementsInBox({{0, 100, 0}, {40, 200, 0}}, InBox::Inside).count(), 4000u);
    EXPECT_EQ(selector.nodesOf(selector.allElements()).count(), 24600u);
    for (unsigned int k = 0; k < 300; k += 2) {
        hide(model.part(k));
    }
    EXPECT_EQ(membersOf(selector.attached(middle)), membersOf(middle)) << "starts in a hidden part";
    EXPECT_EQ(selector.attached(elementSet(*model, {{151, 0}})).count(), 40u);
    EXPECT_EQ(selector.allElements().count(), 6000u);
}

// --- Against a plain search ---

struct RandomModel : TestModel
{
    explicit RandomModel(unsigned int seed) : TestModel(GL_FLAT)
    {
        std::mt19937 random(seed);
        for (int k = 0; k < 4; ++k) {
            const unsigned int count = 20 + random() % 30;
            Floats nodes(3 * count);
            Indices ids(60), slots;
            std::iota(ids.begin(), ids.end(), 1);
            std::shuffle(ids.begin(), ids.end(), random);
            ids.resize(count);
            std::sort(ids.begin(), ids.end());
            const unsigned int types[] = {SHELL, SOLID, BEAM, SHELL}, strides[] = {4, 8, 3, 4};
            for (unsigned int s = 0; s < strides[k] * (2 + random() % 4); ++s) {
                slots.push_back(random() % count);
            }
            for (unsigned int s = 4; strides[k] == 8 && s < slots.size(); s += 8) {
                slots[s] += slots[s] == slots[s - 1] ? (slots[s] == 0 ? 1 : -1) : 0; // no tetrahedra: all slots count
            }
            PartInfoStr part = makePart(types[k], strides[k], nodes, slots);
            setNodeIds(part, ids);
            add(part);
        }
        installParts();
    }
};

bool share(const PartInfoStr& a, unsigned int ea, const PartInfoStr& b, unsigned int eb, bool byId)
{
    const auto corners = [](const PartInfoStr& part) {
        return part.partDrawType == BEAM ? 2u : part.partElements.nodesPerElement;
    };
    for (unsigned int x = 0; x < corners(a); ++x) {
        for (unsigned int y = 0; y < corners(b); ++y) {
            const unsigned int na = a.partElements.elmIndices[ea * a.partElements.nodesPerElement + x];
            const unsigned int nb = b.partElements.elmIndices[eb * b.partElements.nodesPerElement + y];
            if (byId ? a.partNodes.idList[na] == b.partNodes.idList[nb] : &a == &b && na == nb) {
                return true;
            }
        }
    }
    return false;
}

ElementSet neighboursToo(TestModel& model, const ElementSet& set, bool byId)
{
    ElementSet grown = set;
    const Members all = membersOf(Selector(*model).allElements());
    for (const auto& m : membersOf(set)) {
        for (const auto& other : all) {
            if (share(model.part(m.first), m.second, model.part(other.first), other.second, byId)) {
                grown.insert(other.first, other.second);
            }
        }
    }
    return grown;
}

TEST(Layers, SameAsAPlainSearchOnRandomModels)
{
    for (unsigned int seed = 0; seed < 60; ++seed) {
        RandomModel model(seed);
        for (Joint joint : {Joint::NodeIds, Joint::OwnPart}) {
            Selector selector(*model);
            selector.joint = joint;
            ElementSet set = elementSet(*model, {{seed % 4, 0}});
            ElementSet grown = neighboursToo(model, set, joint == Joint::NodeIds);
            ASSERT_EQ(membersOf(selector.growByLayers(set)), membersOf(grown)) << seed;
            const ElementSet shrunk =
                selector.invert(neighboursToo(model, selector.invert(grown), joint == Joint::NodeIds));
            ASSERT_EQ(membersOf(selector.shrinkByLayers(grown)), membersOf(shrunk)) << seed;
            for (std::size_t before = 0; before != grown.count();) {
                before = grown.count();
                grown = neighboursToo(model, grown, joint == Joint::NodeIds);
            }
            ASSERT_EQ(membersOf(selector.attached(set)), membersOf(grown)) << seed;
        }
    }
}

} // namespace
