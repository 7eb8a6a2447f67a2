// Input decks: sets, sections, parts, instances, generated nodes and elements.
#include "import_fixture.h"

using InpParts = ImportTest;
using InpAssembly = ImportTest;
using InpGenerate = ImportTest;

namespace {

using Names = std::vector<std::string>;

const char* const unknownSetRefs = "sets that refer to unknown sets";

// Triangles 1 to 4 over nodes 1 to 6, each in no set.
std::string fourTriangles()
{
    return someNodes(6) + "*ELEMENT, TYPE=S3\n1, 1, 2, 3\n2, 2, 3, 4\n3, 3, 4, 5\n4, 4, 5, 6\n";
}

const char* const platePart =
    "*PART, NAME=Plate\n*NODE\n1, 0, 0, 0\n2, 1, 0, 0\n3, 1, 1, 0\n4, 0, 1, 0\n"
    "*ELEMENT, TYPE=S4, ELSET=E\n10, 1, 2, 3, 4\n*SHELL SECTION, ELSET=E, MATERIAL=Steel\n1.\n*END PART\n";

} // namespace

TEST_F(InpParts, AreWhatSectionsCover)
{
    const kvo::Mesh mesh = read(fourTriangles() + "*ELSET, ELSET=Left\n1, 2\n*ELSET, ELSET=Right\n3\n"
                                                  "*SHELL SECTION, ELSET=LEFT, MATERIAL=Steel\n1.\n"
                                                  "*MEMBRANE SECTION, ELSET=\"Right\", MATERIAL=\"Alu 7\"\n1.\n");
    EXPECT_EQ(partNames(mesh), (Names{"LEFT", "Right", "shell elements"}));
    EXPECT_EQ(partOf(mesh, 1).id, 1);
    EXPECT_EQ(partOf(mesh, 2).id, 1);
    EXPECT_EQ(partOf(mesh, 3).id, 2);
    EXPECT_EQ(partOf(mesh, 3).section, "membrane section");
    EXPECT_EQ(partOf(mesh, 3).materialName, "Alu 7");
    EXPECT_EQ(partOf(mesh, 3).materialId, 2);
    EXPECT_EQ(partOf(mesh, 4).id, 3);
    EXPECT_EQ(partOf(mesh, 4).propertyId, 0);
}

TEST_F(InpParts, WithoutSectionsGoByTheElementsSets)
{
    const kvo::Mesh mesh =
        read(someNodes(4) + "*ELEMENT, TYPE=S3, ELSET=A\n1, 1, 2, 3\n*ELEMENT, TYPE=T3D2\n2, 1, 2\n"
                            "*ELEMENT, TYPE=S3, ELSET=b\n3, 2, 3, 4\n*ELEMENT, TYPE=S3, ELSET=a\n4, 1, 3, 4\n");
    EXPECT_EQ(partNames(mesh), (Names{"A", "beam elements", "b"}));
    EXPECT_EQ(partOf(mesh, 4).name, "A");
}

TEST_F(InpParts, SetsOfSetsGeneratedSetsAndCircles)
{
    const kvo::Mesh mesh =
        read(fourTriangles() + "*ELSET, ELSET=OUTER\nINNER, 4\n*ELSET, ELSET=INNER, GENERATE\n1, 3, 2\n"
                               "*ELSET, ELSET=INNER\nOUTER\n*SHELL SECTION, ELSET=OUTER\n1.\n");
    EXPECT_EQ(partOf(mesh, 1).name, "OUTER");
    EXPECT_EQ(partOf(mesh, 2).name, "shell elements");
    EXPECT_EQ(partOf(mesh, 3).name, "OUTER");
    EXPECT_EQ(partOf(mesh, 4).name, "OUTER");
    EXPECT_EQ(log.warningCount(unknownSetRefs), 0u);
}

TEST_F(InpParts, AHugeGeneratedRangeCostsNothing)
{
    const kvo::Mesh mesh =
        read(fourTriangles() + "*ELSET, ELSET=ALL, GENERATE\n2, 900000000000000, 2\n*SHELL SECTION, ELSET=ALL\n");
    EXPECT_EQ(partOf(mesh, 2).name, "ALL");
    EXPECT_EQ(partOf(mesh, 4).name, "ALL");
    EXPECT_EQ(partOf(mesh, 3).name, "shell elements");
}

TEST_F(InpParts, ALaterSectionWinsAndEmptyPartsVanish)
{
    const kvo::Mesh mesh = read(fourTriangles() + "*ELSET, ELSET=A, GENERATE\n1, 4\n*ELSET, ELSET=B, GENERATE\n1, 4\n"
                                                  "*SHELL SECTION, ELSET=A\n1.\n*SHELL SECTION, ELSET=B\n1.\n");
    EXPECT_EQ(partNames(mesh), Names{"B"});
    EXPECT_EQ(mesh.parts[0].id, 1);
}

TEST_F(InpParts, UnknownSetsAreWarnedOf)
{
    read(fourTriangles() + "*ELSET, ELSET=A\nNOWHERE\n*SHELL SECTION, ELSET=NONE\n1.\n*SHELL SECTION, MATERIAL=M\n");
    EXPECT_EQ(log.warningCount(unknownSetRefs), 1u);
    const auto lines = log.lines();
    EXPECT_TRUE(contains(lines.at(1), "deck.inp:13: set \"A\" refers to set \"NOWHERE\"")) << lines.at(1);
    EXPECT_EQ(log.warningCount("sections of unknown sets"), 1u);
    EXPECT_EQ(log.warningCount("sections without a set"), 1u);
}

TEST_F(InpParts, SpringsAndBeamsHaveSectionsToo)
{
    const kvo::Mesh mesh =
        read(someNodes(4) + "*ELEMENT, TYPE=SPRINGA, ELSET=SP\n1, 1, 2\n*ELEMENT, TYPE=DASHPOTA, ELSET=DP\n2, 1, "
                            "3\n*ELEMENT, TYPE=B31, ELSET=BM\n3, 1, 4\n*SPRING, ELSET=SP\n\n100.\n*DASHPOT, "
                            "ELSET=DP\n\n5.\n*BEAM SECTION, ELSET=BM, MATERIAL=S, SECTION=RECT\n1., 2.\n0., 0., 1.\n");
    EXPECT_EQ(partOf(mesh, 1).section, "spring");
    EXPECT_EQ(partOf(mesh, 2).section, "dashpot");
    EXPECT_EQ(partOf(mesh, 3).section, "beam section");
}

TEST_F(InpParts, KeywordLinesGoOnBehindAComma)
{
    const kvo::Mesh mesh = read(someNodes(3) + "*ELEMENT, TYPE=S3,\n** in between\n   ELSET = Long Name\n1, 1, 2, 3\n"
                                               "*ELSET, ELSET=G,\nGENERATE\n1, 1\n*ELSET, ELSET=H,\nG\n"
                                               "*SHELL SECTION,\nELSET=H,\nMATERIAL=M\n1.\n");
    EXPECT_EQ(partOf(mesh, 1).name, "H");
    EXPECT_EQ(partOf(mesh, 1).materialName, "M");
}

TEST_F(InpParts, AKeywordLineWithATrailingCommaAndDataIsNoContinuation)
{
    const kvo::Mesh mesh = read("*NODE, NSET=ALL,\n1, 5.\n*NODE,\n*NODE\n2, 1.\n");
    EXPECT_EQ(mesh.files.at(0).nodeIds, (Ids{1, 2}));
}

TEST_F(InpParts, CardsThatAreNotReadAreCounted)
{
    read(fourTriangles() +
         "*MATERIAL, NAME=M\n*ELASTIC\n1, .3\n*Boundary\n1, 1, 3\n*BOUNDARY\n2, 1\n*user material, CONSTANTS=1\n1.\n"
         "*  Solid   Frobnication\n*\n");
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "*BOUNDARY"), 2u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "*USER MATERIAL"), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "*SOLID FROBNICATION"), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "*ELEMENT"), 0u);
}

TEST_F(InpAssembly, InstancesAreMovedThenTurned)
{
    const kvo::Mesh mesh = read(
        std::string(platePart) +
        "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=P-1, PART=PLATE\n*END INSTANCE\n"
        "*INSTANCE, NAME=P-2, PART=plate\n5., 0., 0.\n5., 0., 0., 5., 0., 1., 90.\n*END INSTANCE\n*END ASSEMBLY\n");
    ASSERT_EQ(mesh.files.size(), 2u);
    EXPECT_EQ(mesh.files[1].name, "P-2");
    EXPECT_EQ(pointOf(mesh, 3, 0), (Point{1, 1, 0}));
    EXPECT_EQ(pointOf(mesh, 1, 1), (Point{5, 0, 0}));
    EXPECT_EQ(pointOf(mesh, 2, 1), (Point{5, 1, 0}));
    EXPECT_EQ(pointOf(mesh, 3, 1), (Point{4, 1, 0}));
    EXPECT_EQ(elementIds(mesh, 0), Ids{10});
    EXPECT_EQ(elementIds(mesh, 1), Ids{10}) << "local ids stay";
    EXPECT_EQ(partNames(mesh), (Names{"P-1.E", "P-2.E"}));
    EXPECT_EQ(mesh.parts[1].materialId, 1);
}

TEST_F(InpAssembly, AnEmptyFirstLineMeansNotMovedButTurned)
{
    const kvo::Mesh mesh =
        read(std::string(platePart) + "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=P, PART=PLATE\n\n0,0,0, 0,0,1, 180.\n"
                                      "*END INSTANCE\n*END ASSEMBLY\n");
    EXPECT_EQ(pointOf(mesh, 3), (Point{-1, -1, 0}));
    EXPECT_EQ(mesh.files[0].name, "") << "a single instance is the model";
    EXPECT_EQ(partNames(mesh), Names{"E"});
}

TEST_F(InpAssembly, AnInstanceMayHoldTheMeshItself)
{
    const kvo::Mesh mesh = read(
        "*Part, name=P\n*End Part\n*Assembly, name=A\n*Instance, name=I, part=P\n0., 0., 7.\n"
        "*Node\n1, 1\n2, 2\n3, 3\n*Element, type=S3\n4, 1, 2, 3\n*Elset, elset=S, internal, generate\n4, 4, 1\n"
        "*Shell Section, elset=S, material=M\n1.\n*End Instance\n*Elset, elset=X, instance=I\n4,\n*End Assembly\n");
    EXPECT_EQ(pointOf(mesh, 2), (Point{2, 0, 7}));
    EXPECT_EQ(partOf(mesh, 4).name, "S");
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(InpAssembly, PartsWithoutAnAssemblyAreTheModel)
{
    const kvo::Mesh mesh = read(platePart);
    EXPECT_EQ(elementIds(mesh), Ids{10});
    EXPECT_EQ(partNames(mesh), Names{"E"});
}

TEST_F(InpAssembly, PartsThatNobodyPlacesAndInstancesOfNothing)
{
    const kvo::Mesh mesh =
        read(std::string(platePart) + "*PART, NAME=SPARE\n*NODE\n1, 1\n*END PART\n*ASSEMBLY, NAME=A\n"
                                      "*INSTANCE, NAME=P, PART=PLATE\n*END INSTANCE\n*INSTANCE, NAME=Q, PART=NONE\n"
                                      "*END INSTANCE\n*END ASSEMBLY\n");
    EXPECT_EQ(mesh.nodeCount(), 4u);
    EXPECT_EQ(log.warningCount("parts without an instance"), 1u);
    EXPECT_EQ(log.warningCount("instances of unknown parts"), 1u);
}

TEST_F(InpAssembly, ElementsBetweenInstancesGetCopiesOfTheirNodes)
{
    const kvo::Mesh mesh =
        read(std::string(platePart) +
             "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=P-1, PART=PLATE\n*END INSTANCE\n*INSTANCE, NAME=P-2, PART=PLATE\n"
             "0, 0, 9\n*END INSTANCE\n*NODE\n3, 8, 8, 8\n*ELEMENT, TYPE=CONN3D2, ELSET=LINK\n"
             "1, P-1.2, P-2.2\n2, p-1.2, 3\n3, P-1.99, P-2.1\n4, P-2.3, P-1.2\n*CONNECTOR SECTION, ELSET=LINK\n*END "
             "ASSEMBLY\n");
    ASSERT_EQ(mesh.files.size(), 3u);
    EXPECT_EQ(mesh.files[2].name, "Assembly");
    EXPECT_EQ(elementIds(mesh, 2), (Ids{1, 2, 4}));
    const Ids link = nodesOf(mesh, 1, 2);
    ASSERT_EQ(link.size(), 2u);
    EXPECT_EQ(link[0], 2) << "keeps its id";
    EXPECT_GT(link[1], 99) << "2 is taken: a new id above all";
    EXPECT_EQ(pointOf(mesh, link[0], 2), (Point{1, 0, 0}));
    EXPECT_EQ(pointOf(mesh, link[1], 2), (Point{1, 0, 9}));
    EXPECT_EQ(nodesOf(mesh, 2, 2), (Ids{2, 3}));
    EXPECT_EQ(nodesOf(mesh, 4, 2)[1], 2);
    EXPECT_EQ(log.warningCount("nodes of instances that do not exist"), 1u);
    EXPECT_EQ(log.warningCount(kvo::warnMissingNode), 1u);
    EXPECT_EQ(partOf(mesh, 1, 2).name, "Assembly.LINK");
}

TEST_F(InpGenerate, NodesOnALine)
{
    const kvo::Mesh mesh = read("*NODE\n1, 0., 0., 0.\n9, 4., 8., 0.\n*NGEN, NSET=L\n1, 9, 2\n");
    EXPECT_EQ(mesh.files.at(0).nodeIds, (Ids{1, 3, 5, 7, 9}));
    EXPECT_EQ(pointOf(mesh, 7), (Point{3, 6, 0}));
}

TEST_F(InpGenerate, NodesBetweenSetsAndElementsOnThem)
{
    // A 2 x 2 plate: two edges, the line between them, four quadrilaterals.
    const kvo::Mesh mesh =
        read("*NODE\n1, 0, 0\n3, 2, 0\n21, 0, 2\n23, 2, 2\n*NGEN, NSET=A\n1, 3\n*NGEN, NSET=B\n21, 23\n"
             "*NFILL, NSET=ALL\nA, B, 2, 10\n*ELEMENT, TYPE=S4\n1, 1, 2, 12, 11\n"
             "*ELGEN, ELSET=PLATE\n1, 2, 1, 1, 2, 10, 10\n*SHELL SECTION, ELSET=PLATE\n1.\n");
    EXPECT_EQ(mesh.files.at(0).nodeIds, (Ids{1, 2, 3, 11, 12, 13, 21, 22, 23}));
    EXPECT_EQ(pointOf(mesh, 13), (Point{2, 1, 0}));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 11, 12}));
    EXPECT_EQ(nodesOf(mesh, 12), (Ids{12, 13, 23, 22}));
    EXPECT_EQ(partOf(mesh, 12).name, "PLATE");
    EXPECT_EQ(log.warningCount(kvo::warnNodeTwice), 0u);
}

TEST_F(InpGenerate, CopiesOfNodesAndElements)
{
    const kvo::Mesh mesh =
        read(someNodes(3) + "*NSET, NSET=N, GENERATE\n1, 3\n*ELEMENT, TYPE=B31, ELSET=E\n1, 1, 2, 3\n2, 2, 3\n"
                            "*NCOPY, CHANGE NUMBER=100, OLD SET=N, NEW SET=M, SHIFT\n10., 0., 0.\n0,0,0, 0,0,1, 90.\n"
                            "*ELCOPY, ELEMENT SHIFT=50, OLD SET=E, SHIFT NODES=100, NEW SET=F\n");
    EXPECT_EQ(pointOf(mesh, 101), (Point{-1, 11, 0}));
    EXPECT_EQ(nodesOf(mesh, 51), (Ids{101, 102, 103}));
    EXPECT_EQ(nodesOf(mesh, 52), (Ids{102, 103, kvo::noNode}));
}

TEST_F(InpGenerate, WhatIsNotFollowedIsListed)
{
    const kvo::Mesh mesh =
        read(someNodes(3) + "*NGEN, LINE=C\n1, 3, 1\n*NFILL, BIAS=.5\nA, B, 2, 2\n*NCOPY, CHANGE NUMBER=5, OLD "
                            "SET=N, REFLECT=MIRROR\n1, 2, 3\n");
    EXPECT_EQ(mesh.nodeCount(), 3u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "*NGEN, LINE"), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "*NFILL, BIAS"), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "*NCOPY, REFLECT"), 1u);
}

TEST_F(InpGenerate, BadInput)
{
    const std::string n = someNodes(3); // 4 lines
    EXPECT_EQ(readError(n + "*NGEN\n1, 7\n"), "deck.inp:6: *NGEN: node 7 does not exist");
    EXPECT_TRUE(contains(readError(n + "*NGEN\n1, 3, 5\n"), "deck.inp:6: *NGEN expects"));
    EXPECT_TRUE(contains(readError(n + "*NGEN\n1, 999999999, 1\n"), "deck.inp:6: *NGEN expects"));
    EXPECT_TRUE(contains(readError(n + "*NGEN\n1, 99999999999999\n"), "deck.inp:6: 99999999999999 is too large"));
    EXPECT_EQ(readError(n + "*NFILL\nA, B, 2, 2\n"), "deck.inp:6: *NFILL: set \"A\" does not exist");
    EXPECT_EQ(readError(n + "*NSET, NSET=A\n1\n*NSET, NSET=B\n2, 3\n*NFILL\nA, B, 2, 2\n"),
              "deck.inp:10: *NFILL: sets \"A\" and \"B\" have 1 and 2 nodes");
    EXPECT_EQ(readError(n + "*ELGEN\n1, 3\n"), "deck.inp:6: *ELGEN: element 1 does not exist");
    EXPECT_EQ(readError(n + "*NCOPY, OLD SET=A\n"), "deck.inp:5: *NCOPY needs CHANGENUMBER= with an integer");
    EXPECT_TRUE(contains(readError(n + "*ELEMENT, TYPE=S3\n1,1,2,3\n*ELGEN\n1, 100000, 1, 1, 100000, 1, 1\n"),
                         "deck.inp:8: *ELGEN would make too many elements"));
}

TEST_F(InpGenerate, ATrailingCommaDoesNotTakeTheNamesOfFilledSetsAway)
{
    const kvo::Mesh mesh = read("*NODE\n1, 0, 0\n21, 0, 2\n*NSET, NSET=A\n1\n*NSET, NSET=B\n21\n"
                                "*NFILL, NSET=ALL,\nA, B, 2, 10\n");
    EXPECT_EQ(pointOf(mesh, 11), (Point{0, 1, 0}));
}
