// Archive files.
#include "deck_outcome.h"

#include "ansys/cdb_lines.h"
#include "ansys/cdb_reader.h"
#include "node_surplus.h"

namespace {

class Cdb : public DeckOutcomeTest
{
protected:
    kvo::Mesh readCdb(const std::string& text) { return read("/PREP7\n" + text + "FINISH\n", "deck.cdb"); }
};

std::string columns(const std::vector<std::int64_t>& values, std::size_t width = 9)
{
    std::string text;
    for (const std::int64_t value : values) {
        const std::string digits = std::to_string(value);
        text += std::string(width - digits.size(), ' ') + digits;
    }
    return text + "\n";
}

// Nodes 1 to count at (id, 0, 0).
std::string nodes(int count)
{
    std::string text = "NBLOCK,6,SOLID,100," + std::to_string(count) + "\n(3i9,6e21.13e3)\n";
    for (int id = 1; id <= count; ++id) {
        text += columns({id, 0, 0}).substr(0, 27) + " " + std::to_string(id) + ".0\n";
    }
    return text + "N,R5.3,LOC,       -1,\n";
}

struct Attributes
{
    std::int64_t material = 1;
    std::int64_t type = 1;
    std::int64_t real = 1;
    std::int64_t section = 1;
};

std::string element(std::int64_t id, const Attributes& a, const std::vector<std::int64_t>& nodes)
{
    std::vector<std::int64_t> first = {
        a.material, a.type, a.real, a.section, 0, 0, 0, 0, static_cast<std::int64_t>(nodes.size()), 0, id};
    const std::size_t here = std::min<std::size_t>(nodes.size(), 8);
    first.insert(first.end(), nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(here));
    std::string text = columns(first);
    if (nodes.size() > here) {
        text += columns({nodes.begin() + static_cast<std::ptrdiff_t>(here), nodes.end()});
    }
    return text;
}

std::string block(const std::string& elements)
{
    return "EBLOCK,19,SOLID,100\n(19i9)\n" + elements + "       -1\n";
}

Ids idsOf(const kvo::MeshSet& set)
{
    Ids ids;
    set.ids.forEach([&](std::int64_t id) { ids.push_back(id); });
    return ids;
}

} // namespace

TEST_F(Cdb, WidthsComeFromTheFormatLine)
{
    const kvo::Mesh mesh =
        readCdb("ET,1,SHELL181\nNBLOCK,6,SOLID\n(3i8,6e16.9)\n"
                "       1       0       0 -6.01747084    -0.250000000    -0.260074407    \n"
                "       2       0       0                 0.500000000\n"
                "       3\n"
                "N,R5.3,LOC,     -1,\n"
                "NBLOCK,3\n(1i10,3e21.13e3)\n"
                "1000000004 1.0000000000000E+000-2.0000000000000E+000 3.0000000000000E-001\n"
                "-1\n"
                "EBLOCK,19,SOLID\n(19i10)\n" +
                columns({1, 1, 1, 1, 0, 0, 0, 0, 4, 0, 7, 1, 2, 3, 1000000004}, 10) + "        -1\n");
    EXPECT_EQ(pointOf(mesh, 1), (Point{-6.01747084, -0.25, -0.260074407}));
    EXPECT_EQ(pointOf(mesh, 2), (Point{0, 0.5, 0})) << "trailing zeros are left out";
    EXPECT_EQ(pointOf(mesh, 3), (Point{0, 0, 0}));
    EXPECT_EQ(pointOf(mesh, 1000000004), (Point{1, -2, 0.3}));
    EXPECT_EQ(nodesOf(mesh, 7), (Ids{1, 2, 3, 1000000004}));
}

TEST_F(Cdb, IntegersOfABlockMayHaveSeveralWidths)
{
    const kvo::Mesh mesh = readCdb("ET,1,SHELL181\nNBLOCK,6,SOLID,219712,4\n(1i7,2i9,6e21.13)\n"
                                   " 219712        0        0  9.8936757830530E-02 -8.0709219224048E-04\n"
                                   "2197130        0        0  5.0000000000000E-01\n"
                                   "      3        0        0\n      4\nN,R5.3,LOC,       -1,\n"
                                   "EBLOCK,19,SOLID,1,1\n(10i3,1i5,8i8)\n"
                                   "  1  1  1  1  0  0  0  0  4  0 1234  2197122197130       3       4\n"
                                   " -1\n"
                                   "CMBLOCK,TOP,NODE,3\n(1i4,7i8)\n   3       4  219712\n");
    EXPECT_EQ(pointOf(mesh, 219712), (Point{9.8936757830530E-02, -8.0709219224048E-04, 0}));
    EXPECT_EQ(pointOf(mesh, 2197130), (Point{0.5, 0, 0}));
    EXPECT_EQ(mesh.nodeCount(), 4u);
    EXPECT_EQ(nodesOf(mesh, 1234), (Ids{219712, 2197130, 3, 4}));
    EXPECT_EQ(idsOf(mesh.sets.at(0)), (Ids{3, 4, 219712}));
    EXPECT_TRUE(log.warnings().empty()) << log.warnings()[0].lines[0];
}

TEST_F(Cdb, TheFirstOptionOfMesh200IsItsShape)
{
    const struct
    {
        int option;
        int count;
        kvo::Family family;
        Ids corners;
    } rows[] = {
        {0, 2, kvo::Family::Beam, {1, 2, kvo::noNode}},
        {1, 3, kvo::Family::Beam, {1, 2, kvo::noNode}},
        {2, 2, kvo::Family::Beam, {1, 2, kvo::noNode}},
        {3, 3, kvo::Family::Beam, {1, 2, kvo::noNode}},
        {4, 3, kvo::Family::Shell, {1, 2, 3}},
        {5, 6, kvo::Family::Shell, {1, 2, 3}},
        {6, 4, kvo::Family::Shell, {1, 2, 3, 4}},
        {7, 8, kvo::Family::Shell, {1, 2, 3, 4}},
        {8, 4, kvo::Family::Solid, {1, 2, 3, 4}},
        {9, 10, kvo::Family::Solid, {1, 2, 3, 4}},
        {10, 8, kvo::Family::Solid, {1, 2, 3, 4, 5, 6, 7, 8}},
        {11, 20, kvo::Family::Solid, {1, 2, 3, 4, 5, 6, 7, 8}},
    };
    for (const auto& row : rows) {
        Ids all;
        for (int id = 1; id <= row.count; ++id) {
            all.push_back(id);
        }
        const std::string mesh20 = nodes(21) + block(element(1, {}, all));
        const std::string option = std::to_string(row.option);
        for (const std::string& type : {"ET,1,200\nKEYOP,1,1," + option + "\n", "ET,1,MESH200," + option + "\n",
                                        "ETBLOCK,1,1\n(2i9,19a9)\n" + columns({1, 200, row.option}) + "       -1\n"}) {
            const kvo::Mesh mesh = readCdb(type + mesh20);
            ASSERT_EQ(elementIds(mesh), Ids{1}) << type;
            EXPECT_EQ(nodesOf(mesh, 1), row.corners) << type;
            EXPECT_EQ(mesh.types.at(0).family, row.family) << type;
            EXPECT_TRUE(log.warnings().empty()) << type;
        }
        all.push_back(21);
        const kvo::Mesh more = readCdb("ET,1,200," + option + "\n" + nodes(21) + block(element(1, {}, all)));
        EXPECT_EQ(nodesOf(more, 1), row.corners) << option;
        EXPECT_EQ(log.warningCount(kvo::warnMoreNodes), 1u) << option;
    }
    // No such option: the shape is not known.
    readCdb("ET,1,200,12\n" + nodes(2) + block(element(1, {}, {1, 2})));
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "MESH200"), 1u);
}

TEST_F(Cdb, MoreNodesThanTheTypeHas)
{
    const kvo::Mesh mesh = readCdb("ET,1,187\nET,2,188\n" + nodes(11) +
                                   block(element(1, {1, 1}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}) +
                                         element(2, {1, 2}, {1, 2, 3, 0, 0}) + element(3, {1, 2}, {1, 2, 3, 4, 5})));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2, 3}));
    ASSERT_EQ(log.warningCount(kvo::warnMoreNodes), 2u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "SOLID187 element 1 has 10 nodes, 11 are given; the first 10"))
        << log.warnings()[0].lines[0];
}

TEST_F(Cdb, FormatsOfBlocks)
{
    kvo::CdbFormat format;
    ASSERT_TRUE(kvo::parseCdbFormat("(2i8,6g16.9) ", format));
    EXPECT_EQ(format.integers, 2u);
    EXPECT_EQ(format.firstWidth, 8u);
    EXPECT_EQ(format.integersWidth, 16u);
    EXPECT_EQ(format.others, 6u);
    EXPECT_EQ(format.otherWidth, 16u);
    ASSERT_TRUE(kvo::parseCdbFormat("(I10)", format));
    EXPECT_EQ(format.integers, 1u);
    ASSERT_TRUE(kvo::parseCdbFormat("(1i7,2i9,6e21.13)", format));
    EXPECT_EQ(format.integers, 3u);
    EXPECT_EQ(format.firstWidth, 7u);
    EXPECT_EQ(format.integersWidth, 25u);
    EXPECT_EQ(format.others, 6u);
    for (const char* text : {"", "()", "(i)", "3i9,6e21", "(3i9,e)", "(9999999i9)", "(3i0)", "(,)"}) {
        EXPECT_FALSE(kvo::parseCdbFormat(text, format)) << text;
    }
}

TEST_F(Cdb, RepeatedNodesMakeOtherShapes)
{
    const kvo::Mesh mesh = readCdb(
        "ET,1,186\nET,2,185\nET,3,281\nET,4,187\n" + nodes(20) +
        block(element(1, {}, {1, 2, 3, 3, 5, 5, 5, 5, 9, 10, 3, 12, 5, 5, 5, 5, 17, 18, 19, 19}) +
              element(2, {}, {1, 2, 3, 4, 5, 5, 5, 5, 9, 10, 11, 12, 5, 5, 5, 5, 17, 18, 19, 20}) +
              element(3, {}, {1, 2, 3, 3, 5, 6, 7, 7, 0, 0, 3, 0, 0, 0, 7, 0, 0, 0, 0, 19}) +
              element(4, {1, 2}, {1, 2, 3, 4, 5, 6, 7, 8}) + element(5, {1, 3}, {1, 2, 3, 3, 9, 10, 3, 12}) +
              element(6, {1, 3}, {1, 2, 3, 4, 9, 10, 11, 12}) + element(7, {1, 4}, {1, 2, 3, 5, 9, 10, 11, 12, 13})));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3, 5}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 3, 4, 5}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2, 3, 5, 6, 7})) << "mid-side nodes may be missing";
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(nodesOf(mesh, 5), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 6), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(nodesOf(mesh, 7), (Ids{1, 2, 3, 5}));
}

TEST_F(Cdb, TrianglesOfSixNodesAreToldByTheirOption)
{
    const std::string elements = block(element(1, {1, 1}, {1, 2, 3, 4, 5, 6}) + element(2, {1, 2}, {1, 2, 3, 4, 5, 6}));
    const kvo::Mesh mesh = readCdb("ET,1,PLANE183\nKEYOPT,1,1,1\nET,2,PLANE183\n" + nodes(6) + elements);
    EXPECT_EQ(nodesOf(readCdb("ET,1,PLANE183,1\nET,2,PLANE183,,,3\n" + nodes(6) + elements), 1), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(readCdb("ET,1,PLANE183,1\nET,2,PLANE183,,,3\n" + nodes(6) + elements), 2), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 3, 4}));
}

TEST_F(Cdb, BeamsHaveTheirThirdNodeBehindTheOthers)
{
    const kvo::Mesh mesh =
        readCdb("ET,1,188\nET,2,BEAM189\nET,3,LINK180\n" + nodes(5) +
                block(element(1, {1, 1}, {1, 2, 5}) + element(2, {1, 1}, {2, 3}) + element(3, {1, 2}, {1, 3, 2, 5}) +
                      element(4, {1, 2}, {1, 3, 2}) + element(5, {1, 3}, {3, 4})));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 5}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{2, 3, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 3, 5}));
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{1, 3, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 5), (Ids{3, 4, kvo::noNode}));
    for (const char* type : {"BEAM4", "BEAM44", "PIPE16", "PIPE18", "PIPE60", "PIPE288", "LINK160"}) {
        const kvo::Mesh one = readCdb(std::string("ET,1,") + type + "\n" + nodes(5) + block(element(1, {}, {1, 2, 5})));
        EXPECT_EQ(nodesOf(one, 1), (Ids{1, 2, 5})) << type;
    }
}

TEST_F(Cdb, SpringsMassesAndContacts)
{
    const kvo::Mesh mesh =
        readCdb("ET,1,14\nET,2,COMBIN39\nET,3,40\nET,4,21\nET,5,174\nET,6,154\nR,7,1000.,0.5\n" + nodes(4) +
                block(element(1, {1, 1, 7}, {1, 2}) + element(2, {1, 2, 8}, {1}) + element(3, {1, 3, 9}, {3, 4}) +
                      element(4, {1, 4, 9}, {3}) + element(5, {1, 5}, {1, 2, 3, 4}) + element(6, {1, 6}, {1, 2, 3, 4}) +
                      element(7, {1, 77}, {1, 2})));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 1}));
    EXPECT_EQ(partOf(mesh, 1).data.stiffness, 1000.0);
    EXPECT_EQ(partOf(mesh, 1).data.damping, 0.5);
    EXPECT_EQ(partOf(mesh, 1).id, 7) << "that of its real constants";
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "MASS21"), 1u);
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "CONTA174"), 1u);
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "type 77 without ET"), 1u);
    ASSERT_EQ(mesh.files[0].undrawn.size(), 4u);
    EXPECT_EQ(mesh.files[0].undrawn[0].nodes, Ids{3});
}

TEST_F(Cdb, PartsAreTypeRealMaterialAndSection)
{
    const kvo::Mesh mesh =
        readCdb("ET,1,181\nET,2,188\nSECTYPE,4,SHELL,,Skin Top\nSECBLOCK,2\n 0.5, 1, 0.0, 3\n 0.25,1,90.,3\n"
                "SECTYPE,5,BEAM,RECT,\nSECDATA, 2.0, 3.0,\n"
                "RLBLOCK,2,9,12,7\n(2i8,6g16.9)\n(7g16.9)\n"
                "       8       8             1.5             0.0             0.0             0.0"
                "             0.0             0.0\n"
                "             9.0            10.0\n"
                "       9       1             2.5\n" +
                nodes(4) +
                block(element(1, {1, 1, 1, 4}, {1, 2, 3, 4}) + element(2, {2, 1, 1, 4}, {1, 2, 3, 4}) +
                      element(3, {1, 1, 8, 0}, {1, 2, 3, 4}) + element(4, {1, 2, 1, 5}, {1, 2}) +
                      element(5, {1, 1, 9, 0}, {1, 2, 3, 4})));
    ASSERT_EQ(mesh.parts.size(), 5u);
    EXPECT_EQ(partOf(mesh, 1).name, "Skin Top");
    EXPECT_EQ(partOf(mesh, 1).id, 4);
    EXPECT_EQ(partOf(mesh, 1).data.thickness, 0.75);
    EXPECT_EQ(partOf(mesh, 2).id, 0) << "the writer gives it one: another part has 4";
    EXPECT_EQ(partOf(mesh, 2).materialId, 2);
    EXPECT_EQ(partOf(mesh, 3).name, "SHELL181 type 1 real 8 mat 1 sec 0");
    EXPECT_EQ(partOf(mesh, 3).data.thickness, 1.5);
    EXPECT_EQ(partOf(mesh, 5).data.thickness, 2.5);
    EXPECT_EQ(partOf(mesh, 4).data.shape, "RECT");
    EXPECT_EQ(partOf(mesh, 4).data.sizes, (std::vector<double>{2, 3}));
}

TEST_F(Cdb, TypesFromABlock)
{
    const kvo::Mesh mesh = readCdb("ETBLOCK,        1,        1\n(2i9,19a9)\n" + columns({3, 185, 0, 0, 2}) +
                                   "       -1\n" + nodes(8) + block(element(1, {1, 3}, {1, 2, 3, 4, 5, 6, 7, 8})));
    EXPECT_EQ(nodesOf(mesh, 1).size(), 8u);
    EXPECT_EQ(mesh.types[0].name, "SOLID185");
}

TEST_F(Cdb, ComponentsHaveRanges)
{
    const kvo::Mesh mesh =
        readCdb("ET,1,181\n" + nodes(9) + block(element(1, {}, {1, 2, 3, 4}) + element(2, {}, {1, 2, 3, 4})) +
                "CMBLOCK,N_BASE  ,NODE,       5  ! users node component definition\n(4i10)\n" +
                columns({1, -3, 5, 7}, 10) + columns({-9}, 10) + "CMBLOCK,ALL_ELEMENTS,ELEM,       2\n(8i10)\n" +
                columns({1, -2}, 10) + "CMBLOCK,CORNERS,KP,       2\n(8i10)\n" + columns({1, -2}, 10));
    ASSERT_EQ(mesh.sets.size(), 2u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "CMBLOCK of KP"), 1u);
    EXPECT_EQ(mesh.sets[0].name, "N_BASE");
    EXPECT_EQ(idsOf(mesh.sets[0]), (Ids{1, 2, 3, 5, 7, 8, 9}));
    EXPECT_EQ(mesh.sets[1].of, kvo::MeshSet::Of::Elements);
    EXPECT_EQ(idsOf(mesh.sets[1]), (Ids{1, 2}));
}

TEST_F(Cdb, ElementsWithoutBlocks)
{
    const kvo::Mesh mesh =
        readCdb("et,1,solid185\nET,2,SHELL181\nN,1,1.,2.,3.\nN,R5.3,LOC,2,0,0,4.,5.,6.\nN,R5.3,ANG,2,0,0,9.,9.,9.\n"
                "N,3,1.\nN,4,2.\nN,5,3.\nN,6,4.\nN,7,5.\nN,8,6.\n"
                "TYPE,1\nMAT,3\nREAL,4\nSECNUM,5\nE,1,2,3,4,5,6,7,8\n"
                "TYPE,2\nEN,9,1,2,3,4\nE,5,6,7,7\n"
                "EN,R5.5,ATTR,8,1,1,1,1,0,20,0,0\nEN,R5.5,NODE,8,7,6,5,4,3,2,1\n");
    EXPECT_EQ(pointOf(mesh, 2), (Point{4, 5, 6}));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 9, 10, 20}));
    EXPECT_EQ(nodesOf(mesh, 10), (Ids{5, 6, 7}));
    EXPECT_EQ(nodesOf(mesh, 20), (Ids{8, 7, 6, 5, 4, 3, 2, 1}));
    EXPECT_EQ(partOf(mesh, 1).propertyId, 5);
    // A block without SOLID: id, section, real, material, system, nodes.
    const kvo::Mesh plain = readCdb("ET,4,181\n" + nodes(4) + "TYPE,4\nEBLOCK,10\n(15i9)\n" +
                                    columns({7, 1, 2, 3, 0, 1, 2, 3, 4}) + "       -1\n");
    EXPECT_EQ(nodesOf(plain, 7), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(partOf(plain, 7).materialId, 3);
}

TEST_F(Cdb, ElementsOutsideBlocksMayStandInFrontOfOne)
{
    const kvo::Mesh mesh = readCdb("ET,1,14\nET,2,181\n" + nodes(4) + "TYPE,1\nREAL,5\nEN,77,1,2\n" +
                                   block(element(1, {1, 2}, {1, 2, 3, 4})) + "E,3,4\n");
    EXPECT_EQ(elementIds(mesh), (Ids{1, 77, 78}));
    EXPECT_EQ(nodesOf(mesh, 77), (Ids{1, 2}));
    EXPECT_EQ(partOf(mesh, 77).id, 5);
    EXPECT_EQ(nodesOf(mesh, 78), (Ids{3, 4}));
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(Cdb, TypeAndTheOthersAreOneUntilTheyAreSet)
{
    const kvo::Mesh mesh = readCdb("ET,1,181\n" + nodes(4) + "E,1,2,3,4\nMAT,2\nE,4,3,2,1\n");
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2}));
    EXPECT_EQ(partOf(mesh, 1).name, "SHELL181 type 1 real 1 mat 1 sec 1");
    EXPECT_EQ(partOf(mesh, 2).materialId, 2);
}

TEST_F(Cdb, NewerFilesCallTheirUnblockedLinesOtherwise)
{
    const kvo::Mesh mesh = readCdb("ET,1,181\nN,UNBL,LOC,3,0,0,1.,2.,3.\nN,UNBL,ANG,3,0,0,9.\nN,UNBL,LOC,4,0,0,1.\n"
                                   "N,R5.3,LOC,5,0,0,0.,1.\nN,UNBL,LOC,-1,\n"
                                   "EN,UNBL,ATTR,3,1,1,1,1,0,8,0,0\nEN,UNBL,NODE,4,3,5\nEN,UNBL,ATTR,-1\n");
    EXPECT_EQ(pointOf(mesh, 3), (Point{1, 2, 3}));
    EXPECT_EQ(mesh.nodeCount(), 3u);
    EXPECT_EQ(elementIds(mesh), Ids{8});
    EXPECT_EQ(nodesOf(mesh, 8), (Ids{4, 3, 5}));
    EXPECT_TRUE(log.warnings().empty());
    EXPECT_TRUE(log.lists().empty());
}

TEST_F(Cdb, FourLettersOfACommandAreEnough)
{
    const kvo::Mesh mesh = readCdb("ET,1,183\nKEYO,1,1,1\nET,2,181\nSECT,3,SHELL,,Plate\nSECD,2.5\n" + nodes(8) +
                                   "TYPE,1\nE,1,2,3,4,5,6\nTYPE,2\nSECN,3\nE,1,2,3,4\nFINI\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(partOf(mesh, 2).name, "Plate");
    EXPECT_EQ(partOf(mesh, 2).data.thickness, 2.5);
    EXPECT_TRUE(log.lists().empty());
}

TEST_F(Cdb, ADollarSignPartsCommands)
{
    const kvo::Mesh mesh = readCdb("/TITLE,cost in $, all\n/com, a $ N,9\nC*** and $ N,9\nET,1,181 $ N,1,0,0 $N,2,1\n"
                                   "N,3,1,1 ! no $ N,9\nN,,0,1\nE,1,2,3,4\n");
    EXPECT_EQ(mesh.files[0].nodeIds, (Ids{1, 2, 3, 4})) << "a node without a number has the next one";
    EXPECT_EQ(pointOf(mesh, 4), (Point{0, 1, 0}));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(mesh.facts[0].second, "cost in $");
    EXPECT_TRUE(log.lists().empty());
}

TEST_F(Cdb, NamesMayStandForNumbers)
{
    const kvo::Mesh mesh = readCdb("*SET,tid,3\ncid = 4\nsame=CID\n*SET,_NAME,'text'\net,1,181\net,Tid,185\n"
                                   "et,same,174\nthick=0.75\nr,tid,thick\n" +
                                   nodes(8) + "L=7.5\nN,50,L\nN,51,2*L\nL=L/2\nN,52,L\nTYPE,1\nREAL,tid\nSECNUM,0\n" +
                                   "E,1,2,3,4\nTYPE,tid\nE,1,2,3,4,5,6,7,8\nE,1,2,3,none,5,6,7,8\nEMORE,1\n");
    EXPECT_EQ(pointOf(mesh, 50), (Point{7.5, 0, 0}));
    EXPECT_EQ(mesh.nodeCount(), 9u) << "formulas are not worked out, and what needs them is not read";
    EXPECT_EQ(log.warningCount("fields that are no numbers"), 3u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "values of parameters"), 1u);
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2}));
    EXPECT_EQ(partOf(mesh, 1).data.thickness, 0.75);
    EXPECT_EQ(mesh.types[1].name, "SOLID185");
}

TEST_F(Cdb, BlocksWithoutSolidNameTheirType)
{
    // As contacts are written: type, real constants and material have one number. TYPE is about what came before.
    const kvo::Mesh mesh = readCdb("ET,1,181\nET,5,14\nET,6,181\nET,7,174\n" + nodes(4) + "TYPE,5\nEN,77,1,2\n" +
                                   "EBLOCK,10,,,2\n(15i9)\n" + columns({8, 6, 6, 6, 0, 1, 2, 3, 4}) +
                                   columns({9, 7, 7, 7, 0, 1, 2, 3, 4}) + "-1\n");
    EXPECT_EQ(elementIds(mesh), (Ids{8, 77}));
    EXPECT_EQ(nodesOf(mesh, 8), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "CONTA174"), 1u);
}

TEST_F(Cdb, CommandsMayLackTheirFields)
{
    const kvo::Mesh mesh =
        readCdb("ET,1,181\nR\nRMORE\nET\nKEYOPT\nSECTYPE\nSECDATA\nN\nTYPE\nEN\nE\nEMORE\nEN,R5.5\n" + nodes(4) +
                "EN,R5.5,ATTR\nEN,R5.5,NODE\n" + block(element(1, {}, {1, 2, 3, 4})));
    EXPECT_EQ(elementIds(mesh), Ids{1});
}

TEST_F(Cdb, WhatIsNotReadIsCounted)
{
    const kvo::Mesh mesh =
        readCdb("/TITLE,Board\n/UNITS,MPA\nMPDATA,EX,1,1,5.\nMPDATA,NUXY,1,1,.3\nSFE,1\n! a comment, too\n" + nodes(1));
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "MPDATA"), 2u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "SFE"), 1u);
    EXPECT_EQ(log.lists().size(), 1u);
    EXPECT_EQ(mesh.facts[0].second, "Board");
    EXPECT_EQ(mesh.facts[1].second, "MPA");
}

TEST_F(Cdb, CommandsMayStandInLinesOfGeometry)
{
    const auto padded = [](std::string text, const char* end) {
        return text + std::string(72 - text.size(), ' ') + end + "\n";
    };
    const kvo::Mesh mesh = readCdb(padded("/TITLE,Board", "S      1") + padded("1H,,1H;,5HANSYS", "G      1") +
                                   padded("ET,1,181", "S      2") + nodes(4) + block(element(1, {}, {1, 2, 3, 4})));
    EXPECT_EQ(mesh.facts[0].second, "Board");
    EXPECT_EQ(elementIds(mesh), Ids{1});
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "lines of IGES geometry"), 1u);
}

TEST_F(Cdb, FilesAreKnownByTheirBlocks)
{
    const struct
    {
        const char* text;
        bool own;
    } rows[] = {{"/COM,ANSYS RELEASE\n", true},
                {"! x\n/prep7\n", true},
                {"ET,1,181\nNBLOCK,6,SOLID\n", true},
                {"*NODE\n1,0,0,0\n", false},
                {"GRID,1\nNBLOCKS\n", false}};
    for (const auto& row : rows) {
        const kvo::MappedFile file(write("deck", row.text));
        EXPECT_EQ(kvo::looksLikeCdb(file), row.own) << row.text;
    }
}

TEST_F(Cdb, CountsOfBlocksAreChecked)
{
    const std::string begin = "ET,1,181\n" + nodes(4);
    const std::string one = columns({1, 1, 1, 1, 0, 0, 0, 0, 4, 0, 7, 1, 2, 3, 4});
    readCdb(begin + "EBLOCK,19,SOLID,7,2\n(19i9)\n" + one + "       -1\n");
    EXPECT_EQ(log.warningCount("blocks with another count than they say"), 1u);
    // All elements, but no end of the block.
    EXPECT_EQ(read("/PREP7\n" + begin + "EBLOCK,19,SOLID,7,1\n(19i9)\n" + one, "deck.cdb").elementCount(), 1u);
    EXPECT_EQ(log.warningCount("blocks without an end"), 1u);
    EXPECT_TRUE(contains(readError("/PREP7\n" + begin + "EBLOCK,19,SOLID,7,2\n(19i9)\n" + one, "deck.cdb"),
                         "cut off inside the EBLOCK of line 10"));
}

TEST_F(Cdb, DamageOfAComponentCostsNoMesh)
{
    const struct
    {
        std::string text;
        const char* warning;
        Ids ids;
    } rows[] = {
        {"CMBLOCK,A,NODE,2000000000\n(8i10)\n" + columns({1, 2, 0, 0, 0, 0, 0, 0}, 10),
         "deck.cdb:11: cut off inside",
         {1, 2}},
        {"CMBLOCK,A,NODE,9\n(2i10)\n" + columns({1, 2}, 10) + "ET,1,181\n" + block(element(1, {}, {1, 2, 3, 4})),
         "deck.cdb:12: CMBLOCK says 9 members, but a command",
         {1, 2}},
        {"CMBLOCK,A,NODE,3\n(8i10)\n" + columns({3, 1, -1}, 10), "deck.cdb:11: no range from 1 to 1", {1, 3}},
        {"CMBLOCK,A,NODE,3\nnone\n", "deck.cdb:10: behind CMBLOCK a format", {}},
        {"CMBLOCK,A,NODE,3\n(8i10)\n#?\n", "deck.cdb:11: \"#?\": columns of integers", {}},
    };
    for (const auto& row : rows) {
        const kvo::Mesh mesh = read("/PREP7\n" + nodes(4) + row.text, "deck.cdb");
        EXPECT_EQ(mesh.nodeCount(), 4u) << row.text;
        ASSERT_EQ(mesh.sets.size(), 1u) << row.text;
        EXPECT_EQ(mesh.sets[0].name, "A") << row.text;
        EXPECT_EQ(idsOf(mesh.sets[0]), row.ids) << row.text;
        EXPECT_TRUE(contains(log.warnings().at(0).lines.at(0), row.warning)) << log.warnings()[0].lines[0];
        EXPECT_EQ(mesh.elementCount(), contains(row.text, "EBLOCK") ? 1u : 0u);
    }
}

TEST_F(Cdb, DamageIsSaid)
{
    const std::string deck =
        "/PREP7\nET,1,181\n" + nodes(4) + block(element(1, {}, {1, 2, 3, 4}) + element(2, {}, {1, 2, 3, 4}));
    expectComplaintsWhenCutOff(deck, "deck.cdb");
    EXPECT_TRUE(
        contains(readError("/PREP7\nNBLOCK,6,SOLID\nnone\n", "deck.cdb"), "deck.cdb:3: behind NBLOCK a format"));
    EXPECT_TRUE(contains(readError("/PREP7\nNBLOCK,6,SOLID\n(3i9,6e21.13e3)\n  1x\n", "deck.cdb"), "deck.cdb:4: "));
    EXPECT_TRUE(contains(readError("/PREP7\nNBLOCK,6,SOLID\n(1i9,6e21.13e3)\n        1 1.e9999\n", "deck.cdb"),
                         "deck.cdb:4: "));
    EXPECT_TRUE(contains(
        readError("/PREP7\n" + nodes(1) + block(element(1, {}, {1, 2, 3}).replace(71, 10, " 999999999")), "deck.cdb"),
        "deck.cdb:"));
    EXPECT_TRUE(contains(readError("/PREP7\nRLBLOCK,2000000000,1,1,7\n(2i8,6g16.9)\n(7g16.9)\n", "deck.cdb"),
                         "deck.cdb:4: cut off"));
    readCdb("ET,1,181\n" + nodes(3) + block(element(1, {}, {1, 2, 99}) + element(2, {}, {1, 2})));
    EXPECT_EQ(log.warningCount(kvo::warnMissingNode), 1u);
    EXPECT_EQ(log.warningCount("elements with too few nodes"), 1u);
}
