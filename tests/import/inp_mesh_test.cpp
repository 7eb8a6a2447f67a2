// Input decks: nodes, elements of every family, continuation, bad data.
#include "import_fixture.h"

#include "abaqus/element_types.h"

using InpNodes = ImportTest;
using InpElements = ImportTest;
using InpErrors = ImportTest;

namespace {

// One element with nodes 1, 2, 3, ... of a type, on a line each of 16 entries at most.
std::string oneElement(const std::string& type, int nodes)
{
    std::string text = someNodes(40) + "*ELEMENT, TYPE=" + type + "\n7";
    for (int k = 1; k <= nodes; ++k) {
        text += "," + std::string(k % 16 == 0 ? "\n" : " ") + std::to_string(k);
    }
    return text + "\n";
}

} // namespace

TEST_F(InpNodes, NumbersBlanksAndMissingCoordinates)
{
    const kvo::Mesh mesh = read("*NODE\n1, 1., -.5, 2D0\n 2,,1.5-3\n3\n\t4 ,\t1 , 2, 3, 0., 0., 1.\n");
    EXPECT_EQ(pointOf(mesh, 1), (Point{1, -0.5, 2}));
    EXPECT_EQ(pointOf(mesh, 2), (Point{0, 0.0015, 0}));
    EXPECT_EQ(pointOf(mesh, 3), (Point{0, 0, 0}));
    EXPECT_EQ(pointOf(mesh, 4), (Point{1, 2, 3})) << "what follows the coordinates is a normal";
}

TEST_F(InpNodes, SeveralBlocksAnyCaseComments)
{
    const kvo::Mesh mesh = read("*Heading\n words, not numbers\n** comment\n*node\n1, 1\n** between\n2, 2\n"
                                "  *NoDe , nset = All\n3, 3\n*NODE PRINT, NSET=ALL\nU\n*NODE FILE\nU\n");
    EXPECT_EQ(mesh.files.at(0).nodeIds, (Ids{1, 2, 3}));
}

TEST_F(InpNodes, CarriageReturnsAndNoLastNewline)
{
    const kvo::Mesh mesh = read("*NODE\r\n1, 1., 2., 3.\r\n*NODE\r\n2, 4., 5., 6.");
    EXPECT_EQ(pointOf(mesh, 1), (Point{1, 2, 3}));
    EXPECT_EQ(pointOf(mesh, 2), (Point{4, 5, 6}));
}

TEST_F(InpNodes, AreSortedAndTheLastDefinitionHolds)
{
    const kvo::Mesh mesh = read("*NODE\n9, 9\n2, 2\n5, 5\n2, 22\n");
    EXPECT_EQ(mesh.files.at(0).nodeIds, (Ids{2, 5, 9}));
    EXPECT_EQ(pointOf(mesh, 2), (Point{22, 0, 0}));
    EXPECT_EQ(pointOf(mesh, 9), (Point{9, 0, 0}));
    EXPECT_EQ(log.warningCount(kvo::warnNodeTwice), 1u);
}

TEST_F(InpNodes, CylindricalAndSphericalSystems)
{
    const kvo::Mesh mesh = read("*NODE, SYSTEM=C\n1, 2., 90., 5.\n*NODE, SYSTEM=S\n2, 3., 180., 0.\n3, 4., 0., 90.\n"
                                "*NODE\n4, 1., 90., 0.\n");
    EXPECT_EQ(pointOf(mesh, 1), (Point{0, 2, 5}));
    EXPECT_EQ(pointOf(mesh, 2), (Point{-3, 0, 0}));
    EXPECT_EQ(pointOf(mesh, 3), (Point{0, 0, 4}));
    EXPECT_EQ(pointOf(mesh, 4), (Point{1, 90, 0}));
}

TEST_F(InpNodes, SystemCardMovesAndTurnsUntilTheNextOne)
{
    const kvo::Mesh mesh = read("*SYSTEM\n10, 0, 0, 10, 1, 0\n*NODE\n1, 1, 2, 3\n"
                                "*SYSTEM\n1, 1, 1, 1, 1, 2\n1, 2, 1\n*NODE\n2, 5, 0, 0\n3, 0, 5, 0\n"
                                "*SYSTEM\n*NODE\n4, 1, 2, 3\n");
    EXPECT_EQ(pointOf(mesh, 1), (Point{8, 1, 3}));
    EXPECT_EQ(pointOf(mesh, 2), (Point{1, 1, 6})) << "local x is global z";
    EXPECT_EQ(pointOf(mesh, 3), (Point{1, 6, 1}));
    EXPECT_EQ(pointOf(mesh, 4), (Point{1, 2, 3}));
    EXPECT_EQ(pointOf(read("*SYSTEM\n1, 2, 3\n*NODE\n1, 1, 1, 1\n"), 1), (Point{2, 3, 4})) << "moved only";
    EXPECT_EQ(pointOf(read("*SYSTEM\n5, 0, 0, 0, 0, 0\n*NODE\n1, 1, 2, 0\n"), 1), (Point{4, -2, 0}))
        << "x towards the origin";
}

TEST_F(InpElements, CornersOfEveryShape)
{
    struct Row
    {
        const char* type;
        int nodes;
        kvo::Family family;
        int corners;
    };
    const kvo::Family shell = kvo::Family::Shell;
    const kvo::Family solid = kvo::Family::Solid;
    const Row rows[] = {
        {"S3", 3, shell, 3},      {"S3R", 3, shell, 3},     {"S4", 4, shell, 4},       {"S4R", 4, shell, 4},
        {"S4R5", 4, shell, 4},    {"S6", 6, shell, 3},      {"S8", 8, shell, 4},       {"S8R", 8, shell, 4},
        {"S8R5", 8, shell, 4},    {"S9R5", 9, shell, 4},    {"STRI3", 3, shell, 3},    {"STRI65", 6, shell, 3},
        {"M3D4R", 4, shell, 4},   {"M3D9", 9, shell, 4},    {"CPS3", 3, shell, 3},     {"CPE8R", 8, shell, 4},
        {"CAX6", 6, shell, 3},    {"CAX8R", 8, shell, 4},   {"SFM3D4R", 4, shell, 4},  {"DS4", 4, shell, 4},
        {"R3D3", 3, shell, 3},    {"R3D4", 4, shell, 4},    {"C3D4", 4, solid, 4},     {"C3D5", 5, solid, 5},
        {"C3D6", 6, solid, 6},    {"C3D8", 8, solid, 8},    {"C3D8I", 8, solid, 8},    {"C3D8RH", 8, solid, 8},
        {"C3D10M", 10, solid, 4}, {"C3D13", 13, solid, 5},  {"C3D15", 15, solid, 6},   {"C3D20", 20, solid, 8},
        {"C3D20R", 20, solid, 8}, {"C3D27", 27, solid, 8},  {"SC6R", 6, solid, 6},     {"SC8R", 8, solid, 8},
        {"F3D8", 8, solid, 8},    {"DC3D10", 10, solid, 4}, {"DC3D20", 20, solid, 8},  {"COH3D8", 8, solid, 8},
        {"GK3D6", 6, solid, 6},   {"GK3D8N", 8, solid, 8},  {"GK3D12M", 12, solid, 6}, {"GK3D18", 18, solid, 8},
        {"CCL9", 9, solid, 6},    {"CCL12H", 12, solid, 8}, {"CCL18", 18, solid, 6},   {"CCL24R", 24, solid, 8},
        {"MCL6", 6, shell, 4},    {"SFMCL9", 9, shell, 4},  {"GKPS4", 4, shell, 4},    {"CINPE4", 4, shell, 4},
        {"WARP2D3", 3, shell, 3}, {"WARP2D4", 4, shell, 4}, {"DCC2D4D", 4, shell, 4},  {"C3D10HS", 10, solid, 4},
        {"STRI65", 6, shell, 3},  {"C3D15V", 15, solid, 6}, {"S4RSW", 4, shell, 4},    {"CAX4RHT", 4, shell, 4},
    };
    for (const Row& row : rows) {
        const kvo::Mesh mesh = read(oneElement(row.type, row.nodes));
        Ids expected;
        for (int k = 1; k <= row.corners; ++k) {
            expected.push_back(k);
        }
        EXPECT_EQ(nodesOf(mesh, 7), expected) << row.type;
        ASSERT_EQ(mesh.types.size(), 1u) << row.type;
        EXPECT_EQ(mesh.types[0].family, row.family) << row.type;
        EXPECT_EQ(mesh.types[0].name, row.type);
        EXPECT_TRUE(log.warnings().empty()) << row.type;
    }
}

TEST_F(InpElements, LinesTakeTheirEndsAndAnOrientationNode)
{
    EXPECT_EQ(nodesOf(read(oneElement("B31", 2)), 7), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(nodesOf(read(oneElement("B31R", 3)), 7), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(read(oneElement("B32", 3)), 7), (Ids{1, 3, kvo::noNode})) << "end, middle, end";
    EXPECT_EQ(nodesOf(read(oneElement("B32R", 4)), 7), (Ids{1, 3, 4}));
    EXPECT_EQ(nodesOf(read(oneElement("T3D2", 2)), 7), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(nodesOf(read(oneElement("T3D3", 3)), 7), (Ids{1, 3, kvo::noNode}));
    EXPECT_EQ(nodesOf(read(oneElement("B33", 2)), 7), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(nodesOf(read(oneElement("PIPE31", 2)), 7), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(nodesOf(read(oneElement("FRAME3D", 2)), 7), (Ids{1, 2, kvo::noNode}));
}

TEST_F(InpElements, SpringsAndDashpotsMayEndInTheGround)
{
    for (const char* type : {"SPRING2", "SPRINGA", "DASHPOT2", "DASHPOTA", "CONN3D2", "GAPUNI"}) {
        EXPECT_EQ(nodesOf(read(oneElement(type, 2)), 7), (Ids{1, 2})) << type;
    }
    EXPECT_EQ(nodesOf(read(oneElement("SPRING1", 1)), 7), (Ids{1, 1}));
    EXPECT_EQ(nodesOf(read(oneElement("DASHPOT1", 1)), 7), (Ids{1, 1}));
    EXPECT_EQ(nodesOf(read(someNodes(2) + "*ELEMENT, TYPE=CONN3D2\n7, , 2\n"), 7), (Ids{2, 2}));
    EXPECT_EQ(nodesOf(read(someNodes(2) + "*ELEMENT, TYPE=CONN3D2\n7, 1, \n*NODE\n"), 7), Ids{})
        << "one entry is not enough";
}

TEST_F(InpElements, DataLinesGoOnWithAndWithoutAComma)
{
    const std::string nodes = someNodes(20);
    const Ids eight = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(nodesOf(read(nodes + "*ELEMENT, TYPE=C3D8\n7, 1, 2, 3, 4,\n5, 6, 7, 8\n"), 7), eight);
    EXPECT_EQ(nodesOf(read(nodes + "*ELEMENT, TYPE=C3D8\n7, 1, 2, 3, 4\n** words\n5, 6, 7, 8,\n"), 7), eight);
    const kvo::Mesh mesh = read(nodes + "*ELEMENT, TYPE=C3D20\n7,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,\n16,17,18,19,20\n"
                                        "8,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16\n17,18,19,20,1,\n");
    EXPECT_EQ(elementIds(mesh), (Ids{7, 8}));
    EXPECT_EQ(nodesOf(mesh, 8), (Ids{2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(elementIds(read(nodes + "*ELEMENT, TYPE=S4\n1,1,2,3,4,\n2,2,3,4,5,\n")), (Ids{1, 2}))
        << "a comma behind the last node does not go on";
}

TEST_F(InpElements, InnerNodesThatMayBeLeftOut)
{
    const std::string all = "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,";
    const kvo::Mesh mesh = read(someNodes(30) + "*ELEMENT, TYPE=C3D15V\n5," + all + "\n16,17,18\n6," + all +
                                "\n*ELEMENT, "
                                "TYPE=C3D27\n7," +
                                all + "\n16,17,18,19,20,21\n8," + all + "\n16,17,18,19,20,21,22\n");
    EXPECT_EQ(elementIds(mesh), (Ids{5, 6, 7, 8}));
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(InpElements, MoreNodesThanTheTypeHas)
{
    const kvo::Mesh mesh = read(someNodes(20) + "*ELEMENT, TYPE=S4\n7, 1, 2, 3, 4, 5, 6, 7, 8\n8, 2, 3, 4, 5\n");
    EXPECT_EQ(nodesOf(mesh, 7), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(nodesOf(mesh, 8), (Ids{2, 3, 4, 5}));
    ASSERT_EQ(log.warningCount("elements with more nodes than their type has"), 1u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "S4 element 7 has 4 nodes, 8 are given; the first 4 are used"));
}

TEST_F(InpElements, ManyFieldsOnALineDoNotHurt)
{
    std::string line = "7";
    for (int k = 0; k < 5000; ++k) {
        line += ",1";
    }
    read(someNodes(3) + "*ELEMENT, TYPE=S3\n" + line + "\n*ELEMENT, TYPE=WEIRD\n" + line + "\n");
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "WEIRD"), 1u);
}

TEST_F(InpElements, TypesWithoutAPictureAreCounted)
{
    const kvo::Mesh mesh =
        read(someNodes(9) + "*ELEMENT, TYPE=MASS, ELSET=M\n1, 1\n2, 2\n*ELEMENT, TYPE=U17\n3, 1, 2,\n3, "
                            "4\n4, 5, 6\n*ELEMENT, TYPE=D\n5, 0, 1, 2\n*ELEMENT, TYPE=S3\n6, 1, 2, 3\n");
    EXPECT_EQ(elementIds(mesh), Ids{6});
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "MASS"), 2u);
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "U17"), 2u);
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "D"), 1u);
}

TEST_F(InpElements, ATypeNameIsNotCutAtADigit)
{
    EXPECT_EQ(kvo::findInpElementType("C3D80"), nullptr);
    EXPECT_EQ(kvo::findInpElementType("C3D"), nullptr);
    EXPECT_EQ(kvo::findInpElementType("S40R"), nullptr);
    EXPECT_EQ(kvo::findInpElementType(""), nullptr);
    ASSERT_NE(kvo::findInpElementType("c3d10mh"), nullptr);
    EXPECT_EQ(kvo::findInpElementType("c3d10mh")->nodes, 10);
}

TEST_F(InpElements, TheLastDefinitionOfAnIdHolds)
{
    const kvo::Mesh mesh =
        read(someNodes(9) + "*ELEMENT, TYPE=S3\n1, 1, 2, 3\n*ELEMENT, TYPE=S4\n2, 1, 2, 3, 4\n1, 5, 6, 7, 8\n");
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2}));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{5, 6, 7, 8}));
    ASSERT_EQ(log.warningCount(kvo::warnElementTwice), 1u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "deck.inp:12: element 1 ")) << log.warnings()[0].lines[0];
}

TEST_F(InpElements, TheLastDefinitionHoldsWhicheverTypeCameFirst)
{
    const kvo::Mesh mesh = read(someNodes(9) + "*ELEMENT, TYPE=S3, ELSET=E\n1, 1, 2, 3\n*ELEMENT, TYPE=S4\n"
                                               "2, 1, 2, 3, 4\n*ELEMENT, TYPE=S3, ELSET=E\n2, 5, 6, 7\n"
                                               "*SHELL SECTION, ELSET=E, MATERIAL=M\n1.\n");
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{5, 6, 7}));
    EXPECT_EQ(partOf(mesh, 2).name, "E");
    EXPECT_EQ(partOf(mesh, 2).materialName, "M");
    ASSERT_EQ(log.warningCount(kvo::warnElementTwice), 1u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "deck.inp:14: element 2 ")) << log.warnings()[0].lines[0];
}

TEST_F(InpElements, WithoutTheirNodesAreLeftOutWithALine)
{
    const kvo::Mesh mesh =
        read("*ELEMENT, TYPE=S3\n1, 1, 2, 3\n2, 1, 2, 99\n*ELEMENT, TYPE=B31\n3, 1, 2, 77\n" + someNodes(3));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 3})) << "elements may come before their nodes";
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2, kvo::noNode}));
    ASSERT_EQ(log.warnings().size(), 2u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "deck.inp:3: S3 element 2 refers to node 99"))
        << log.warnings()[0].lines[0];
    EXPECT_TRUE(contains(log.warnings()[1].lines[0], "deck.inp:5: B31 element 3: orientation node 77"));
}

TEST_F(InpElements, IncompleteOnesAreLeftOutWithALine)
{
    const kvo::Mesh mesh =
        read(someNodes(8) + "*ELEMENT, TYPE=C3D8\n7, 1, 2, 3,\n*ELEMENT, TYPE=S3\n8, 1, 2, 3\n9, 1, 2");
    EXPECT_EQ(elementIds(mesh), Ids{8});
    EXPECT_EQ(log.warningCount("incomplete elements"), 2u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "deck.inp:11: C3D8 element 7 has 3 of 8 nodes"))
        << log.warnings()[0].lines[0];
}

TEST_F(InpElements, IncludedDataBelongsToTheCardAround)
{
    write("sub/nodes.txt", "2, 2\n*include, input=more.txt\n");
    write("sub/more.txt", "3, 3\n** nothing else\n");
    write("elements.txt", "5, 1, 2, 3\n");
    const kvo::Mesh mesh = read("*NODE\n1, 1\n*INCLUDE, INPUT=\"sub/nodes.txt\"\n4, 4\n"
                                "*ELEMENT, TYPE=S3, INPUT=elements.txt\n6, 2, 3, 4\n");
    EXPECT_EQ(mesh.files.at(0).nodeIds, (Ids{1, 2, 3, 4}));
    EXPECT_EQ(elementIds(mesh), (Ids{5, 6}));
    EXPECT_EQ(mesh.sourceFiles.size(), 4u);
}

TEST_F(InpElements, LineGasketsAreNoWedges)
{
    read(someNodes(6) + "*ELEMENT, TYPE=GK3D6LN\n1, 1, 2, 3, 4, 5, 6\n2, 1, 2, 3, 4, 5, 6\n");
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "GK3D6LN"), 2u);
}

TEST_F(InpElements, FileIsTakenForInputOfAnInclude)
{
    write("nodes.txt", "*NODE\n1, 1\n2, 2\n3, 3\n");
    const kvo::Mesh mesh = read("*INCLUDE, FILE=nodes.txt\n*ELEMENT, TYPE=US3\n5, 1, 2, 3\n");
    EXPECT_EQ(nodesOf(mesh, 5), (Ids{1, 2, 3}));
    EXPECT_EQ(typeCounts(mesh), (std::map<std::string, std::uint64_t>{{"US3", 1}}));
    ASSERT_EQ(log.notes().size(), 1u);
    EXPECT_TRUE(contains(log.notes()[0], "deck.inp:1: FILE= of *INCLUDE")) << log.notes()[0];
    EXPECT_EQ(read("*INCLUDE, INPUT=nodes.txt, FILE=none.txt\n").nodeCount(), 3u);
    EXPECT_TRUE(log.notes().empty());
    EXPECT_EQ(readError("*INCLUDE\n"), "deck.inp:1: *INCLUDE without INPUT=");
}

TEST_F(InpElements, IncludedFilesMayBeNamedAsUnderWindows)
{
    write("sub/mesh/nodes.txt", "*NODE\n1, 1\n2, 2\n3, 3\n");
    write("sub/elements.txt", "5, 1, 2, 3\n");
    const kvo::Mesh mesh =
        read("*INCLUDE, INPUT=sub\\mesh\\nodes.txt\n*ELEMENT, TYPE=S3, INPUT=.\\sub\\elements.txt\n");
    EXPECT_EQ(nodesOf(mesh, 5), (Ids{1, 2, 3}));
}

TEST_F(InpNodes, AMarkOfUtf8IsNoText)
{
    const kvo::Mesh mesh = read("\xEF\xBB\xBF*NODE\n1, 5., 6., 7.\n");
    EXPECT_EQ(pointOf(mesh, 1), (Point{5, 6, 7}));
}

TEST_F(InpErrors, NameFileAndLine)
{
    const std::string n = someNodes(4); // 5 lines
    const struct
    {
        std::string deck;
        const char* message;
    } rows[] = {
        {"*NODE\n1, 0, 0, 0\nx, 1\n", "deck.inp:3: node id expected, found \"x\""},
        {"*NODE\n1, 0, 1..2\n", "deck.inp:2: coordinate expected, found \"1..2\""},
        {"*NODE\n0, 0\n", "deck.inp:2: node id 0 is out of range"},
        {"*NODE\n-4, 0\n", "deck.inp:2: node id -4 is out of range"},
        {"*NODE\n99999999999999999999, 0\n", "deck.inp:2: node id expected, found \"99999999999999999999\""},
        {"*NODE, SYSTEM=Q\n", "deck.inp:1: *NODE: SYSTEM=Q is none of R, C, S"},
        {n + "*ELEMENT, ELSET=A\n", "deck.inp:6: *ELEMENT without TYPE="},
        {n + "*ELEMENT, TYPE=S3\nq, 1, 2, 3\n", "deck.inp:7: element id expected, found \"q\""},
        {n + "*ELEMENT, TYPE=S3\n1, 1, q, 3\n", "deck.inp:7: node id expected, found \"q\""},
        {n + "*ELEMENT, TYPE=S3\n0, 1, 2, 3\n", "deck.inp:7: element id 0 is out of range"},
        {n + "*ELEMENT, TYPE=S3\n1, 1, -2, 3\n", "deck.inp:7: id -2 is out of range"},
        {n + "*ELSET\n", "deck.inp:6: *ELSET without ELSET="},
        {n + "*NSET\n", "deck.inp:6: *NSET without NSET="},
        {n + "*ELSET, ELSET=A, GENERATE\n5, 1\n",
         "deck.inp:7: GENERATE expects first, last, step with first <= last and step > 0"},
        {n + "*ELSET, ELSET=A, GENERATE\n1, x\n", "deck.inp:7: id expected, found \"x\""},
        {n + "*INCLUDE\n", "deck.inp:6: *INCLUDE without INPUT="},
        {n + "*INCLUDE, INPUT=none.inp\n", "deck.inp:6: included file \"none.inp\" not found"},
        {n + "*INCLUDE, INPUT=deck.inp\n", "deck.inp:6: \"deck.inp\" is included by itself"},
        {"*SYSTEM\n0, 0, 0, 1, 0, 0\n2, 0, 0\n", "deck.inp:1: *SYSTEM: the points do not span a plane"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(readError(row.deck), row.message);
    }
}

TEST_F(InpErrors, InAnIncludedFileNameThatFile)
{
    write("bad.inp", "*NODE\n1, 1\n2, oops\n");
    EXPECT_EQ(readError("*INCLUDE, INPUT=bad.inp\n"), "bad.inp:3: coordinate expected, found \"oops\"");
}

TEST_F(InpErrors, ADeckCutOffAnywhereEndsInAMessageOrAMesh)
{
    const std::string deck = someNodes(20) +
                             "*ELEMENT, TYPE=C3D20, ELSET=\"A B\"\n7,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,\n16,17,"
                             "18,19,20\n*ELEMENT, TYPE=B31\n8, 1, 2, 3\n*ELSET, ELSET=X, GENERATE\n7, 8, 1\n"
                             "*SOLID SECTION, ELSET=X, MATERIAL=M\n1.\n";
    for (std::size_t length = 1; length <= deck.size(); ++length) {
        write("cut.inp", deck.substr(0, length));
        try {
            const kvo::Mesh mesh = readFile(path("cut.inp"));
            EXPECT_LE(mesh.nodeCount(), 20u);
            EXPECT_LE(mesh.elementCount(), 2u);
        } catch (const kvo::ImportError& error) {
            EXPECT_TRUE(contains(error.what(), "cut.inp")) << error.what();
        }
    }
}
