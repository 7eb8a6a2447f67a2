// .msh files of all versions.
#include "gmsh/msh_reader.h"
#include "hostile.h"

namespace {

class Msh : public HostileTest
{
protected:
    kvo::Mesh readMsh(const std::string& text) { return read(text, "deck.msh"); }
    std::string error(const std::string& text) { return readError(text, "deck.msh"); }

    // Reads it again and again with one text in place of another.
    std::string errorWith(std::string text, const std::string& old, const std::string& instead)
    {
        const std::size_t at = text.find(old);
        EXPECT_NE(at, std::string::npos) << old;
        return outcome(text.replace(at, old.size(), instead), "deck.msh");
    }
};

const char* const format22 = "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n";
const char* const format40 = "$MeshFormat\n4 0 8\n$EndMeshFormat\n";
const char* const format41 = "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n";

const char* const names = "$PhysicalNames\n3\n2 7 \"Skin Top\"\n3 7 \"core\"\n0 4 \"hold here\"\n$EndPhysicalNames\n";

// A square of nodes 11 to 14 and one above it, 20.
const char* const nodes22 = "$Nodes\n5\n11 0 0 0\n12 1 0 0\n13 1 1 0\n14 0 1 0\n20 .5 +.5 1e0\n$EndNodes\n";

std::string elements22(int count, const std::string& lines)
{
    return "$Elements\n" + std::to_string(count) + "\n" + lines + "$EndElements\n";
}

const kvo::MeshSet* findSet(const kvo::Mesh& mesh, const std::string& name, kvo::MeshSet::Of of)
{
    for (const kvo::MeshSet& set : mesh.sets) {
        if (set.name == name && set.of == of) {
            return &set;
        }
    }
    return nullptr;
}

Ids idsOf(const kvo::MeshSet* set)
{
    Ids ids;
    if (set) {
        set->ids.forEach([&](std::int64_t id) { ids.push_back(id); });
    }
    return ids;
}

} // namespace

TEST_F(Msh, Version2PartsAreGroupsElseEntities)
{
    const kvo::Mesh mesh = readMsh(format22 + std::string(names) + nodes22 +
                                   elements22(5, "501 3 2 7 30 11 12 13 14\n"
                                                 "502 2 2 0 31 11 12 20\n"
                                                 "701 7 2 7 1 11 12 13 14 20\n"
                                                 "801 1 2 9 5 11 20\n"
                                                 "803 1 0 12 20\n"));
    EXPECT_EQ(partNames(mesh),
              (std::vector<std::string>{"Skin Top", "surface 31", "core", "physical curve 9", "curve 0"}));
    EXPECT_EQ(partOf(mesh, 501).id, 7);
    EXPECT_EQ(partOf(mesh, 501).section, "physical group");
    EXPECT_EQ(partOf(mesh, 502).id, 31);
    EXPECT_EQ(partOf(mesh, 502).section, "entity");
    EXPECT_EQ(partOf(mesh, 701).name, "core") << "the same number in another dimension is another group";
    EXPECT_EQ(nodesOf(mesh, 701), (Ids{11, 12, 13, 14, 20}));
    EXPECT_EQ(nodesOf(mesh, 801), (Ids{11, 20, kvo::noNode}));
    EXPECT_EQ(pointOf(mesh, 20), (Point{.5, .5, 1}));
    EXPECT_EQ(mesh.formatName, "Gmsh");
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(Msh, PointsAreNotDrawnButMakeANodeSet)
{
    const kvo::Mesh mesh =
        readMsh(format22 + std::string(names) + nodes22 + elements22(2, "950 15 2 4 4 13\n1 2 2 0 31 11 12 20\n"));
    EXPECT_EQ(elementIds(mesh), Ids{1});
    ASSERT_EQ(mesh.files[0].undrawn.size(), 1u);
    EXPECT_EQ(mesh.files[0].undrawn[0].type, "1-node point");
    EXPECT_EQ(mesh.files[0].undrawn[0].ids, Ids{950});
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "1-node point"), 1u);
    EXPECT_EQ(idsOf(findSet(mesh, "hold here", kvo::MeshSet::Of::Nodes)), Ids{13});
}

TEST_F(Msh, HigherOrderIsDrawnByItsCorners)
{
    std::string nodes = "$Nodes\n30\n";
    for (int id = 1; id <= 30; ++id) {
        nodes += std::to_string(id) + " " + std::to_string(id) + " " + std::to_string(id % 7) + " " +
                 std::to_string(id % 5) + "\n";
    }
    nodes += "$EndNodes\n";
    const auto upTo = [](int count) {
        std::string list;
        for (int id = 1; id <= count; ++id) {
            list += " " + std::to_string(id);
        }
        return list + "\n";
    };
    const struct
    {
        int type;
        int nodes;
        std::size_t corners;
    } rows[] = {{8, 3, 2},   {9, 6, 3},   {10, 9, 4},  {11, 10, 4}, {12, 27, 8}, {13, 18, 6}, {14, 14, 5}, {16, 8, 4},
                {17, 20, 8}, {18, 15, 6}, {19, 13, 5}, {20, 9, 3},  {21, 10, 3}, {25, 21, 3}, {26, 4, 2},  {29, 20, 4}};
    for (const auto& row : rows) {
        const kvo::Mesh mesh =
            readMsh(format22 + nodes +
                    elements22(2, "1 " + std::to_string(row.type) + " 2 0 1" + upTo(row.nodes) + "2 2 2 0 1 1 2 3\n"));
        Ids drawn = nodesOf(mesh, 1);
        drawn.resize(std::min(drawn.size(), row.corners));
        Ids corners;
        for (std::size_t k = 1; k <= row.corners; ++k) {
            corners.push_back(static_cast<std::int64_t>(k));
        }
        EXPECT_EQ(drawn, corners) << "type " << row.type;
        EXPECT_EQ(elementIds(mesh), (Ids{1, 2})) << "type " << row.type;
        EXPECT_EQ(mesh.nodeCount(), 30u) << "nodes between corners stay";
    }
}

TEST_F(Msh, Version2ElementInTwoGroupsIsOneElement)
{
    // Side by side with numbers of their own; far apart with the same number; different elements with one number.
    const kvo::Mesh mesh = readMsh(format22 + std::string(names) + nodes22 +
                                   elements22(6, "1 2 2 7 30 11 12 20\n"
                                                 "2 2 2 8 30 11 12 20\n"
                                                 "3 2 2 7 30 12 13 20\n"
                                                 "4 2 2 7 30 13 14 20\n"
                                                 "3 2 2 8 30 12 13 20\n"
                                                 "4 2 2 8 30 14 11 20\n"));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 3, 4}));
    EXPECT_EQ(partOf(mesh, 1).name, "Skin Top");
    EXPECT_EQ(partOf(mesh, 3).name, "Skin Top");
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{14, 11, 20}));
    EXPECT_EQ(idsOf(findSet(mesh, "Skin Top", kvo::MeshSet::Of::Elements)), (Ids{1, 3, 4}));
    EXPECT_EQ(idsOf(findSet(mesh, "physical surface 8", kvo::MeshSet::Of::Elements)), (Ids{1, 3, 4}));
    EXPECT_EQ(log.listCount(kvo::listMshCopies, "3-node triangle"), 2u);
    EXPECT_EQ(log.warningCount(kvo::warnElementTwice), 1u) << "element 4 is two different ones";
}

TEST_F(Msh, Version2CopiesAmongElementsOfOtherTypes)
{
    const kvo::Mesh mesh = readMsh(format22 + std::string(nodes22) +
                                   elements22(5, "1 2 2 7 30 11 12 20\n2 2 2 8 30 11 12 20\n3 3 2 7 30 11 12 13 14\n"
                                                 "4 2 2 8 30 11 12 20\n5 3 2 8 30 11 12 13 14\n"));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 3, 4, 5})) << "a copy stands right behind its original";
    EXPECT_EQ(log.listCount(kvo::listMshCopies, "3-node triangle"), 1u);
}

TEST_F(Msh, Version2NegativeTagsAndPartitions)
{
    const kvo::Mesh mesh = readMsh(format22 + std::string(names) + nodes22 +
                                   elements22(3, "1 2 4 -7 30 1 2 11 12 20\n"
                                                 "2 2 6 7 30 3 1 -2 -3 12 13 20\n"
                                                 "3 2 3 7 30 0 13 14 20\n"));
    EXPECT_EQ(partNames(mesh), std::vector<std::string>{"Skin Top"});
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{11, 12, 20})) << "a group turned round does not turn its elements";
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{12, 13, 20}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{13, 14, 20}));
}

TEST_F(Msh, SectionsThatAreNotReadAreListed)
{
    const kvo::Mesh mesh =
        readMsh("$Comments\nwords $Nodes\n$EndComments\n" + std::string(format22) + nodes22 +
                "$Periodic\n1\n1 2 1\n1\n11 12\n$EndPeriodic\n" + elements22(1, "1 2 2 0 31 11 12 20\n") +
                "$NodeData\n1\n\"T\"\n$EndNodeData\r\n$NodeData\n$EndNodeData\n$Own\nwords\n$EndOwn");
    EXPECT_EQ(mesh.elementCount(), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "$Periodic"), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "$NodeData"), 2u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "$Own"), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "$Comments"), 0u);
}

TEST_F(Msh, UnknownTypesAreLeftOutWithAMessage)
{
    const kvo::Mesh mesh =
        readMsh(format22 + std::string(nodes22) + elements22(2, "1 140 2 0 31 11 12 20 13 14\n2 2 2 0 31 11 12 20\n"));
    EXPECT_EQ(elementIds(mesh), Ids{2});
    EXPECT_EQ(log.warningCount(kvo::warnMshType), 1u);
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "type 140"), 1u);
}

TEST_F(Msh, Version1)
{
    const kvo::Mesh mesh = readMsh("$NOD\n3\n1 0 0 0\n5 1 0 0\n7 0 1 0\n$ENDNOD\n$ELM\n3\n2 2 9 30 3 1 5 7\n"
                                   "3 1 0 4 2 1 5\n4 15 0 1 1 7\n$ENDELM\n");
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 5, 7}));
    EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"physical surface 9", "curve 4"}));
    const kvo::Mesh more = readMsh("$NOD\n3\n1 0 0 0\n5 1 0 0\n7 0 1 0\n$ENDNOD\n$ELM\n2\n2 2 9 30 5 1 5 7 1 5\n"
                                   "3 2 9 30 3 5 7 1\n$ENDELM\n");
    EXPECT_EQ(nodesOf(more, 2), (Ids{1, 5, 7}));
    EXPECT_EQ(nodesOf(more, 3), (Ids{5, 7, 1}));
    EXPECT_TRUE(contains(log.warnings().at(0).lines.at(0), "deck.msh:9: 3-node triangle element 2 has 3 nodes, 5 are"))
        << log.warnings()[0].lines[0];
    EXPECT_EQ(error("$NOD\n1\n1 0 0 0\n$ENDNOD\n$ELM\n1\n2 2 9 30 2 1 1\n$ENDELM\n"),
              "deck.msh:7: a 3-node triangle does not have 2 nodes");
}

TEST_F(Msh, Version40)
{
    const kvo::Mesh mesh = readMsh(format40 + std::string(names) +
                                   "$Entities\n1 0 2 0\n4 0 0 0 0 0 0 1 4\n"
                                   "30 0 0 0 1 1 1 2 -7 8 0\n31 0 0 0 1 1 1 0 0\n$EndEntities\n"
                                   "$Nodes\n2 4\n30 2 1 3\n11 0 0 0 .1 .2\n12 1 0 0 .1 .2\n13 1 1 0 .1 .2\n"
                                   "4 0 0 1\n20 0 0 1\n$EndNodes\n"
                                   "$Elements\n3 3\n30 2 2 1\n1 11 12 13\n31 2 2 1\n2 12 13 20\n4 0 15 1\n3 20\n"
                                   "$EndElements\n");
    EXPECT_EQ(pointOf(mesh, 12), (Point{1, 0, 0}));
    EXPECT_EQ(partOf(mesh, 1).name, "Skin Top");
    EXPECT_EQ(partOf(mesh, 2).name, "surface 31");
    EXPECT_EQ(idsOf(findSet(mesh, "Skin Top", kvo::MeshSet::Of::Elements)), Ids{1});
    EXPECT_EQ(idsOf(findSet(mesh, "physical surface 8", kvo::MeshSet::Of::Elements)), Ids{1});
    EXPECT_EQ(idsOf(findSet(mesh, "hold here", kvo::MeshSet::Of::Nodes)), Ids{20});
}

namespace {

// A square of two triangles of a parametric surface in two groups, a line on an entity that is nowhere described, and a
// point of a group; as text.
std::string textOf41()
{
    return format41 + std::string(names) +
           "$Entities\n1 0 1 0\n4 0 0 0 1 4\n30 0 0 0 1 1 0 2 7 8 1 -3\n$EndEntities\n"
           "$Nodes\n2 5 11 20\n2 30 1 4\n11\n12\n13\n14\n0 0 0 0 0\n1 0 0 1 0\n1 1 0 1 1\n0 1 0 0 1\n"
           "0 4 0 1\n20\n.5 .5 1\n$EndNodes\n"
           "$Elements\n3 4 1 9\n2 30 2 2\n1 11 12 13\n2 11 13 14\n1 5 1 1\n9 11 20\n0 4 15 1\n5 20\n$EndElements\n";
}

// The same as bytes.
std::string bytesOf41(bool swapped, int sizeBytes = 8)
{
    Bytes out(swapped);
    const auto sizes = [&](std::initializer_list<std::int64_t> values) {
        for (const std::int64_t value : values) {
            sizeBytes == 8 ? out.add(value) : out.add(static_cast<std::int32_t>(value));
        }
    };
    out.plain("$MeshFormat\n4.1 1 " + std::to_string(sizeBytes) + "\n")
        .ints({1})
        .plain("\n$EndMeshFormat\n")
        .plain(names);
    out.plain("$Entities\n");
    sizes({1, 0, 1, 0});
    out.ints({4}).reals({0, 0, 0});
    sizes({1});
    out.ints({4, 30}).reals({0, 0, 0, 1, 1, 0});
    sizes({2});
    out.ints({7, 8});
    sizes({1});
    out.ints({-3}).plain("\n$EndEntities\n$Nodes\n");
    sizes({2, 5, 11, 20});
    out.ints({2, 30, 1});
    sizes({4, 11, 12, 13, 14});
    out.reals({0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 1, 1, 0, 1, 1, 0, 1, 0, 0, 1}).ints({0, 4, 0});
    sizes({1, 20});
    out.reals({.5, .5, 1}).plain("\n$EndNodes\n$Elements\n");
    sizes({3, 4, 1, 9});
    out.ints({2, 30, 2});
    sizes({2, 1, 11, 12, 13, 2, 11, 13, 14});
    out.ints({1, 5, 1});
    sizes({1, 9, 11, 20});
    out.ints({0, 4, 15});
    sizes({1, 5, 20});
    return out.plain("\n$EndElements\n").text;
}

// Two of its elements in version 4.0, behind nodes of a curve and a surface, before and behind sections that are not
// read.
std::string bytesOf40(bool swapped)
{
    Bytes out(swapped);
    out.plain("$MeshFormat\n4.0 1 8\n").ints({1}).plain("\n$EndMeshFormat\n").plain(names).plain("$Entities\n");
    out.longs({1, 1, 1, 0}).ints({4}).reals({0, 0, 0, 0, 0, 0}).longs({1}).ints({4});
    out.ints({5}).reals({0, 0, 0, 1, 1, 1}).longs({0, 1}).ints({4});
    out.ints({30}).reals({0, 0, 0, 1, 1, 1}).longs({2}).ints({7, -8}).longs({1}).ints({-5});
    out.plain("\n$EndEntities\n$Nodes\n").longs({2, 5});
    out.ints({5, 1, 1}).longs({2}).ints({11}).reals({0, 0, 0, .25}).ints({20}).reals({.5, .5, 1, .75});
    out.ints({30, 2, 1}).longs({3}).ints({12}).reals({1, 0, 0, .1, .2}).ints({13}).reals({1, 1, 0, .1, .2});
    out.ints({14}).reals({0, 1, 0, .1, .2}).plain("\n$EndNodes\n$Periodic\n").ints({1, 0, 4, 4}).longs({1});
    out.ints({11, 12}).plain("\n$EndPeriodic\n$Elements\n").longs({2, 2});
    out.ints({30, 2, 2}).longs({1}).ints({2, 11, 13, 14}).ints({5, 1, 1}).longs({1}).ints({9, 11, 20});
    out.plain("\n$EndElements\n$GhostElements\n").longs({1}).ints({2, 1}).longs({1}).ints({2});
    return out.plain("\n$EndGhostElements\n").text;
}

// The first three elements of it in version 2.2.
std::string bytesOf22(bool swapped)
{
    Bytes out(swapped);
    out.plain("$MeshFormat\n2.2 1 8\n").ints({1}).plain("\n$EndMeshFormat\n").plain(names).plain("$Nodes\n5\n");
    out.ints({11}).reals({0, 0, 0}).ints({12}).reals({1, 0, 0}).ints({13}).reals({1, 1, 0});
    out.ints({14}).reals({0, 1, 0}).ints({20}).reals({.5, .5, 1}).plain("\n$EndNodes\n$Elements\n3\n");
    out.ints({2, 2, 2, /**/ 1, 7, 30, 11, 12, 13, /**/ 2, 7, 30, 11, 13, 14});
    out.ints({1, 1, 3, /**/ 9, 0, 5, 0, 11, 20});
    return out.plain("\n$EndElements\n").text;
}

} // namespace

TEST_F(Msh, Version41IsTheSameAsTextAndAsBytes)
{
    const std::string decks[] = {textOf41(), bytesOf41(false), bytesOf41(true), bytesOf41(false, 4),
                                 bytesOf41(true, 4)};
    for (const std::string& deck : decks) {
        const kvo::Mesh mesh = readMsh(deck);
        EXPECT_EQ(mesh.nodeCount(), 5u);
        EXPECT_EQ(pointOf(mesh, 13), (Point{1, 1, 0}));
        EXPECT_EQ(pointOf(mesh, 20), (Point{.5, .5, 1}));
        EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 9}));
        EXPECT_EQ(nodesOf(mesh, 2), (Ids{11, 13, 14}));
        EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"Skin Top", "curve 5"}));
        EXPECT_EQ(idsOf(findSet(mesh, "physical surface 8", kvo::MeshSet::Of::Elements)), (Ids{1, 2}));
        EXPECT_EQ(idsOf(findSet(mesh, "hold here", kvo::MeshSet::Of::Nodes)), Ids{20});
        EXPECT_TRUE(log.warnings().empty());
    }
}

TEST_F(Msh, Version40AsBytesOfEitherOrder)
{
    for (const bool swapped : {false, true}) {
        const kvo::Mesh mesh = readMsh(bytesOf40(swapped));
        EXPECT_EQ(elementIds(mesh), (Ids{2, 9}));
        EXPECT_EQ(nodesOf(mesh, 2), (Ids{11, 13, 14}));
        EXPECT_EQ(nodesOf(mesh, 9), (Ids{11, 20, kvo::noNode}));
        EXPECT_EQ(pointOf(mesh, 20), (Point{.5, .5, 1}));
        EXPECT_EQ(pointOf(mesh, 14), (Point{0, 1, 0}));
        EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"Skin Top", "curve 5"}));
        EXPECT_EQ(idsOf(findSet(mesh, "physical surface 8", kvo::MeshSet::Of::Elements)), Ids{2});
        EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "$Periodic"), 1u);
        EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "$GhostElements"), 1u);
        EXPECT_TRUE(log.warnings().empty());
    }
}

TEST_F(Msh, Version2AsBytesOfEitherOrder)
{
    for (const bool swapped : {false, true}) {
        const kvo::Mesh mesh = readMsh(bytesOf22(swapped));
        EXPECT_EQ(pointOf(mesh, 20), (Point{.5, .5, 1}));
        EXPECT_EQ(nodesOf(mesh, 2), (Ids{11, 13, 14}));
        EXPECT_EQ(nodesOf(mesh, 9), (Ids{11, 20, kvo::noNode}));
        EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"Skin Top", "curve 5"}));
    }
}

TEST_F(Msh, Version2NodesWithTheirPlaceOnTheGeometry)
{
    const std::string text = format22 +
                             std::string("$ParametricNodes\n3\n1 0 0 0 0 7\n2 1 0 0 1 8 .5\n"
                                         "3 0 1 0 2 9 .5 .25\n$EndParametricNodes\n") +
                             elements22(1, "1 2 0 1 2 3\n");
    Bytes out;
    out.plain("$MeshFormat\n2.2 1 8\n").ints({1}).plain("\n$EndMeshFormat\n$ParametricNodes\n3\n");
    out.ints({1}).reals({0, 0, 0}).ints({0, 7, 2}).reals({1, 0, 0}).ints({1, 8}).reals({.5});
    out.ints({3}).reals({0, 1, 0}).ints({2, 9}).reals({.5, .25}).plain("\n$EndParametricNodes\n$Elements\n1\n");
    out.ints({2, 1, 0, 1, 1, 2, 3}).plain("\n$EndElements\n");
    for (const std::string& deck : {text, out.text}) {
        const kvo::Mesh mesh = readMsh(deck);
        EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
        EXPECT_EQ(pointOf(mesh, 3), (Point{0, 1, 0}));
    }
}

TEST_F(Msh, BytesOfAnUnknownTypeEndTheSection)
{
    Bytes out;
    out.plain(bytesOf22(false).substr(0, bytesOf22(false).find("$Elements")));
    out.plain("$Elements\n3\n").ints({2, 1, 2, 1, 7, 30, 11, 12, 13, /**/ 140, 2, 0, 5, 6, 7, 8});
    const kvo::Mesh mesh = readMsh(out.plain("\n$EndElements\n$Own\n$EndOwn\n").text);
    EXPECT_EQ(elementIds(mesh), Ids{1});
    EXPECT_EQ(log.warningCount(kvo::warnMshType), 1u);
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "type 140"), 2u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "$Own"), 1u);
}

TEST_F(Msh, PartitionsBelongToTheirEntity)
{
    // Surface 30 is cut into 101 and 102; 102 repeats its group, 101 leaves it to its parent. Curve 103 lies between
    // them and has a parent of another dimension.
    const kvo::Mesh mesh =
        readMsh(format41 + std::string(names) +
                "$Entities\n0 0 2 0\n30 0 0 0 1 1 0 1 7 0\n31 0 0 0 1 1 0 0 0\n$EndEntities\n"
                "$PartitionedEntities\n2\n1\n500 1\n0 1 3 0\n103 2 30 2 1 2 0 0 0 1 1 0 0 0\n"
                "101 2 30 1 1 0 0 0 1 1 0 0 0\n102 2 30 1 2 0 0 0 1 1 0 1 7 1 103\n104 2 31 1 2 0 0 0 1 1 0 0 0\n"
                "$EndPartitionedEntities\n"
                "$Nodes\n1 4 1 4\n2 101 0 4\n1\n2\n3\n4\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n$EndNodes\n"
                "$Elements\n4 4 1 4\n1 103 1 1\n1 1 3\n2 101 2 1\n2 1 2 3\n2 102 2 1\n3 1 3 4\n2 104 2 1\n4 2 3 4\n"
                "$EndElements\n");
    EXPECT_EQ(partOf(mesh, 1).name, "curve 103");
    EXPECT_EQ(partOf(mesh, 2).name, "Skin Top");
    EXPECT_EQ(partOf(mesh, 3).name, "Skin Top");
    EXPECT_EQ(partOf(mesh, 4).name, "surface 31");
    EXPECT_EQ(mesh.parts.size(), 3u);
}

TEST_F(Msh, GroupsOfEqualNumbersBothReachTheModel)
{
    const kvo::Mesh mesh = readMsh(format22 + std::string(names) + nodes22 +
                                   elements22(3, "501 3 2 7 30 11 12 13 14\n701 7 2 7 1 11 12 13 14 20\n"
                                                 "801 1 2 -9 5 11 20\n"));
    const std::map<unsigned int, LoadedElement> elements = roundTrip(mesh);
    ASSERT_EQ(elements.size(), 3u);
    EXPECT_EQ(elements.at(501).part, 7u);
    EXPECT_EQ(elements.at(701).part, 10u) << "one above the highest";
    EXPECT_EQ(elements.at(801).part, 9u);
    EXPECT_EQ(elements.at(801).nodeIds, (std::vector<unsigned int>{11, 20, 0xFFFFFFFF}));
    EXPECT_EQ(elements.at(701).points.back(), (Point{.5, .5, 1}));
}

TEST_F(Msh, DanglingNodesAreWarnedOfWithTheirLine)
{
    const kvo::Mesh mesh = readMsh(format22 + std::string(nodes22) + elements22(2, "1 2 0 11 12 99\n2 2 0 11 12 20\n"));
    EXPECT_EQ(elementIds(mesh), Ids{2});
    ASSERT_EQ(log.warnings().size(), 1u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0],
                         "deck.msh:14: 3-node triangle element 1 refers to node 99, which does not exist"));
}

TEST_F(Msh, FilesThatEndEarly)
{
    const std::string two = format22 + std::string(names) + nodes22 + elements22(1, "1 2 2 0 31 11 12 20\n");
    const auto whole = [](const std::string& beginning) { // the elements are missing, which is warned of
        return beginning.find("$Elements") == std::string::npos || contains(beginning, "$EndElements");
    };
    expectErrorsWhenCutOff(two, "deck.msh", false, whole);
    expectErrorsWhenCutOff(textOf41(), "deck.msh", false, whole);
    for (const bool swapped : {false, true}) {
        expectErrorsWhenCutOff(bytesOf41(swapped), "deck.msh", true, whole);
        expectErrorsWhenCutOff(bytesOf22(swapped), "deck.msh", true, whole);
    }
}

TEST_F(Msh, FilesThatLie)
{
    const std::string deck = format22 + std::string(names) + nodes22 + elements22(1, "1 2 2 0 31 11 12 20\n");
    EXPECT_EQ(errorWith(deck, "$Nodes\n5", "$Nodes\n99999999999"),
              "deck.msh:11: 99999999999 nodes announced; the rest of the file cannot hold them");
    EXPECT_EQ(errorWith(deck, "$Nodes\n5", "$Nodes\n-5"),
              "deck.msh:11: -5 nodes announced; the rest of the file cannot hold them");
    EXPECT_EQ(errorWith(deck, "$Nodes\n5", "$Nodes\n4"), "deck.msh:16: expected $EndNodes, found \"20\"");
    EXPECT_EQ(errorWith(deck, "$Nodes\n5", "$Nodes\n6"), "deck.msh:17: expected a whole number, found \"$EndNodes\"");
    EXPECT_EQ(errorWith(deck, "1 0 0\n", "1 0 zero\n"), "deck.msh:13: expected a number, found \"zero\"");
    EXPECT_EQ(errorWith(deck, "1 0 0\n", "1 0 nan\n"), "deck.msh:13: expected a number, found \"nan\"");
    EXPECT_EQ(errorWith(deck, "1 0 0\n", "1 0 1e999\n"), "deck.msh:13: expected a number, found \"1e999\"");
    EXPECT_EQ(errorWith(deck, "1 2 2 0", "1 2 99999999 0"), "deck.msh:20: an element with 99999999 tags");
    EXPECT_EQ(errorWith(deck, "2.2 0 8", "3.0 0 8"),
              "deck.msh:2: version 3.0 is not known; known are 1, 2, 4.0 and 4.1");
    EXPECT_EQ(errorWith(deck, "2.2 0 8", "2.2 2 8"), "deck.msh:2: file type 2 is neither 0 (text) nor 1 (binary)");
    EXPECT_EQ(errorWith(deck, "\"Skin Top\"", "Skin Top"),
              "deck.msh:6: a physical group's name stands in quotation marks");
    EXPECT_EQ(errorWith(deck, "$EndNodes", "$EndNodes\n$EndNodes"), "deck.msh:19: $EndNodes ends no section");
    EXPECT_EQ(error(format22), "deck.msh:4: no nodes: the file has no section $Nodes");
    const std::string four = textOf41();
    EXPECT_TRUE(contains(errorWith(four, "2 30 1 4\n", "2 30 1 4000000000000\n"),
                         "deck.msh:17: 4000000000000 nodes announced"));
    EXPECT_TRUE(contains(errorWith(four, "2 30 2 2\n", "2 30 2 20000\n"), "20000 elements announced"));
    EXPECT_TRUE(contains(errorWith(four, "0 2 7 8", "0 999999 7 8"), "999999 physical groups announced"));
}

TEST_F(Msh, IsKnownByContent)
{
    EXPECT_EQ(read(format22 + std::string(nodes22) + elements22(0, ""), "mesh.txt").formatName, "Gmsh");
    EXPECT_NE(outcome("$ a comment of another format\n$MeshFormat\n", "mesh.txt"), "ok");
}
