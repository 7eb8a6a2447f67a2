// Keyword decks: nodes, elements and the shapes of their lines.
#include "deck_outcome.h"

#include "keyword/key_cards.h"
#include "keyword/key_fields.h"
#include "keyword/key_reader.h"

namespace {

class KeyMesh : public DeckOutcomeTest
{
protected:
    kvo::Mesh readKey(const std::string& cards) { return read("*KEYWORD\n" + cards + "*END\n", "deck.k"); }
};

// Nodes 1 to 8 of a unit cube and four more above it.
const char* const cube = "*NODE\n"
                         "1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1\n"
                         "9,0,0,2\n10,1,0,2\n11,1,1,2\n12,0,1,2\n";

std::string typeOf(const kvo::Mesh& mesh, std::int64_t element)
{
    for (const kvo::ElementBlock& block : mesh.files[0].blocks) {
        for (std::size_t e = 0; e < block.size(); ++e) {
            if (block.ids[e] == element) {
                return mesh.types[block.type].name + " " +
                       std::to_string(static_cast<int>(mesh.types[block.type].shape));
            }
        }
    }
    return "none";
}

} // namespace

TEST_F(KeyMesh, ColumnsOfEightMayTouch)
{
    const kvo::Mesh mesh = readKey("*NODE\n"
                                   "1000000112345678.1234567-9.8765432101234-1.23456789012-7\n"
                                   "10000002             1.0             2.0             3.0       0       0\n"
                                   "*ELEMENT_BEAM\n"
                                   "12345678999999991000000110000002\n");
    EXPECT_EQ(pointOf(mesh, 10000001), (Point{12345678.1234567, -9.8765432101234, -1.23456789012e-7}));
    EXPECT_EQ(elementIds(mesh), Ids{12345678});
    EXPECT_EQ(nodesOf(mesh, 12345678), (Ids{10000001, 10000002, kvo::noNode}));
    EXPECT_EQ(partOf(mesh, 12345678).id, 99999999);
}

TEST_F(KeyMesh, LinesWithCommasStandAmongColumns)
{
    const kvo::Mesh mesh = readKey("*NODE\n"
                                   "       1             0.5\n"
                                   "2, 1.5 ,, -2\n"
                                   "3,1.5,\n"
                                   "*ELEMENT_SHELL\n"
                                   "7,4,1,2,3\n");
    EXPECT_EQ(pointOf(mesh, 1), (Point{0.5, 0, 0}));
    EXPECT_EQ(pointOf(mesh, 2), (Point{1.5, 0, -2}));
    EXPECT_EQ(pointOf(mesh, 3), (Point{1.5, 0, 0}));
    EXPECT_EQ(nodesOf(mesh, 7), (Ids{1, 2, 3}));
}

TEST_F(KeyMesh, NumbersAsDecksWriteThem)
{
    const kvo::Mesh mesh = readKey("*NODE\n"
                                   "       1            1.-3            .5D2            -1.5\n"
                                   "2\t3.\n"
                                   "      3.              1.\n");
    EXPECT_EQ(pointOf(mesh, 1), (Point{1e-3, 50, -1.5}));
    EXPECT_EQ(pointOf(mesh, 2), (Point{3, 0, 0})) << "tabs go on to the next multiple of eight";
    EXPECT_EQ(pointOf(mesh, 3), (Point{1, 0, 0}));
    EXPECT_TRUE(contains(readError("*KEYWORD\n*NODE\n       1             one\n*END\n", "deck.k"),
                         "deck.k:3: *NODE: \"one\" is no number"));
    EXPECT_TRUE(contains(readError("*KEYWORD\n*ELEMENT_SHELL\n     1 2       1\n*END\n", "deck.k"),
                         "deck.k:3: *ELEMENT_SHELL: \"1 2\" is no number"));
}

TEST_F(KeyMesh, LongFormatHasColumnsOfTwenty)
{
    const std::string longNode = "                   1                 1.5                 2.5                 3.5\n";
    const std::string node = "       2             1.5             2.5             3.5\n";
    const kvo::Mesh suffix = readKey("*NODE+\n" + longNode + "*NODE\n" + node);
    EXPECT_EQ(pointOf(suffix, 1), (Point{1.5, 2.5, 3.5}));
    EXPECT_EQ(pointOf(suffix, 2), (Point{1.5, 2.5, 3.5}));
    const kvo::Mesh whole = read("*KEYWORD LONG = Y\n*NODE\n" + longNode + "*NODE -\n" + node + "*END", "deck.k");
    EXPECT_EQ(pointOf(whole, 1), (Point{1.5, 2.5, 3.5}));
    EXPECT_EQ(pointOf(whole, 2), (Point{1.5, 2.5, 3.5}));
}

TEST_F(KeyMesh, TheLongFormatOfTheDeckHasTwoLetters)
{
    const std::string longNode =
        "*NODE\n                   1                 1.5                 2.5                 3.5\n";
    const std::string node = "*NODE\n       1             1.5             2.5             3.5\n";
    EXPECT_EQ(pointOf(read("*KEYWORD LONG=K\n" + longNode + "*END\n", "deck.k"), 1), (Point{1.5, 2.5, 3.5}));
    EXPECT_EQ(pointOf(read("*KEYWORD LONG=S\n" + node + "*END\n", "deck.k"), 1), (Point{1.5, 2.5, 3.5}))
        << "what the solver writes is long then, not the deck";
}

TEST_F(KeyMesh, WideIdsHaveColumnsOfTen)
{
    const std::string nodes =
        "1000000001             1.0             2.0             3.0\n1000000002             1.0\n";
    const std::string beam = "1000000009         310000000011000000002\n";
    for (const std::string& deck : {"*KEYWORD\n*NODE %\n" + nodes + "*ELEMENT_BEAM%\n" + beam + "*END\n",
                                    "*KEYWORD I10=Y\n*NODE\n" + nodes + "*ELEMENT_BEAM\n" + beam + "*END\n"}) {
        const kvo::Mesh mesh = read(deck, "deck.k");
        EXPECT_EQ(pointOf(mesh, 1000000001), (Point{1, 2, 3}));
        EXPECT_EQ(nodesOf(mesh, 1000000009), (Ids{1000000001, 1000000002, kvo::noNode}));
    }
}

TEST_F(KeyMesh, SolidsHaveOneLineOrTwo)
{
    const kvo::Mesh mesh = readKey(cube + std::string("*ELEMENT_SOLID\n"
                                                      "1,5,1,2,3,4,5,6,7,8\n"
                                                      "2,5\n"
                                                      "5,6,7,8,9,10,11,12,0,0\n"
                                                      "       3       5\n"
                                                      "       1       2       3       6       9      10      11      12"
                                                      "       7       8\n"));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{5, 6, 7, 8, 9, 10, 11, 12}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2, 3, 6})) << "ten nodes: a tetrahedron's corners come first";
}

TEST_F(KeyMesh, SolidsWithRepeatedNodesAreWhatTheyLookLike)
{
    const kvo::Mesh mesh = readKey(cube + std::string("*ELEMENT_SOLID\n"
                                                      "1,5,1,2,3,6,6,6,6,6\n"
                                                      "2,5,1,2,3,4,6,6,6,6\n"
                                                      "3,5,1,2,3,4,5,5,8,8\n"
                                                      "4,5,1,2,3,3,5,6,7,7\n"
                                                      "5,5,1,2,3,3,6,6,6,6\n"
                                                      "6,5,1,2,3,6\n"
                                                      "7,5,1,1,3,4,5,6,7,8\n"
                                                      "*ELEMENT_TSHELL\n"
                                                      "1,6,1,2,3,3,5,6,7,7\n"));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 3, 4, 6}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 5, 2, 4, 8, 3}));
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{1, 2, 3, 5, 6, 7}));
    EXPECT_EQ(nodesOf(mesh, 5), (Ids{1, 2, 3, 6}));
    EXPECT_EQ(nodesOf(mesh, 6), (Ids{1, 2, 3, 6}));
    EXPECT_EQ(nodesOf(mesh, 7), (Ids{1, 1, 3, 4, 5, 6, 7, 8})) << "no shape that has a name: as it is written";
    // A solid and a thick shell may share an id.
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3, 6, 1, 2, 3, 5, 6, 7}));
    EXPECT_EQ(log.warningCount(kvo::warnElementTwice), 0u);
}

TEST_F(KeyMesh, OptionsOfSolidsAddLines)
{
    const kvo::Mesh mesh = readKey(cube + std::string("*ELEMENT_SOLID_ORTHO\n"
                                                      "1,5,1,2,3,4,5,6,7,8\n 1.,0.,0.\n 0.,1.,0.\n"
                                                      "2,5\n5,6,7,8,9,10,11,12\n\n\n"
                                                      "*ELEMENT_SOLID_H20\n"
                                                      "3,5\n1,2,3,4,5,6,7,8,9,10\n11,12,9,10,11,12,9,10,11,12\n"
                                                      "4,5\n1,2,3,4,9,10,11,12,9,10\n11,12,9,10,11,12,9,10,11,12\n"
                                                      "*ELEMENT_SOLID_T15\n"
                                                      "5,5\n1,2,3,5,9,10,11,12,9,10\n11,12,9,10,11\n"));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3, 4, 5}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{5, 6, 7, 8, 9, 10, 11, 12}));
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{1, 2, 3, 4, 9, 10, 11, 12}));
    EXPECT_EQ(nodesOf(mesh, 5), (Ids{1, 2, 3, 5}));
    EXPECT_TRUE(log.lists().empty());
}

TEST_F(KeyMesh, OptionsOfShellsAddLines)
{
    const kvo::Mesh mesh = readKey(cube + std::string("*ELEMENT_SHELL_THICKNESS_OFFSET\n"
                                                      "1,5,1,2,3,4\n 1.,1.,1.,1.,30.\n 9.\n"
                                                      "2,5,1,2,3,4,5,6,7,8\n 1.,1.,1.,1.\n 1.,1.,1.,1.\n 8.\n"
                                                      "3,5,1,2,3,3\n\n\n"
                                                      "*ELEMENT_SHELL_BETA\n"
                                                      "4,5,5,6,7,8\n 1.,1.,1.,1.,30.\n"
                                                      "*ELEMENT_SHELL_MCID\n"
                                                      "5,5,5,6,7\n 1.,1.,1.,1.,3\n"
                                                      "*ELEMENT_SHELL_DOF\n"
                                                      "6,5,5,6,7\n,,1,2,3\n"
                                                      "*ELEMENT_SHELL_COMPOSITE\n"
                                                      "7,5,9,10,11,12\n1,.5,0.,,2,.5,90.\n3,.5,0.\n"
                                                      "*ELEMENT_SHELL_COMPOSITE\n"
                                                      "8,5,9,10,11\n1,.5,0.\n"));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 8), (Ids{9, 10, 11}));
    EXPECT_TRUE(log.lists().empty());
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(KeyMesh, SecondOrderShellsKeepTheirCorners)
{
    const kvo::Mesh mesh = readKey(cube + std::string("*ELEMENT_SHELL\n"
                                                      "1,5,1,2,3,4,5,6\n"
                                                      "2,5,1,2,3,4,5,6,7,8\n"));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 3, 4}));
}

TEST_F(KeyMesh, MidSideNodesOfShellsAddALineOfThicknesses)
{
    const kvo::Mesh mesh = readKey(cube + std::string("*ELEMENT_SHELL_THICKNESS\n"
                                                      "1,5,1,2,3,4,5,6\n 1.,1.,1.\n 1.,1.,1.\n"
                                                      "2,5,1,2,3,4\n 1.,1.,1.\n"));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2}));
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(KeyMesh, BeamsHaveAThirdNodeOrAVector)
{
    const kvo::Mesh mesh = readKey(cube + std::string("*ELEMENT_BEAM\n"
                                                      "1,5,1,2,3,0,0,0,0,2\n2,5,2,3\n3,5,3,4,77\n"
                                                      "*ELEMENT_BEAM_OFFSET_ORIENTATION_PID\n"
                                                      "4,5,5,6\n8,9\n 1.,1.,1.\n 0.,0.,2.\n"
                                                      "5,5,6,7,8\n8,9\n 1.,1.,1.\n     1.0     1.0     0.0\n"
                                                      "*ELEMENT_BEAM_THICKNESS\n"
                                                      "6,5,7,8,1\n             1.0\n"));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{2, 3, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{3, 4, kvo::noNode}));
    EXPECT_EQ(log.warningCount(kvo::warnMissingThirdNode), 1u);
    EXPECT_EQ(nodesOf(mesh, 6), (Ids{7, 8, 1}));
    ASSERT_EQ(mesh.files[0].orientations.size(), 2u);
    EXPECT_EQ(mesh.files[0].orientations[0].vector, (std::array<double, 3>{0, 0, 2}));
    EXPECT_EQ(mesh.files[0].orientations[1].vector, (std::array<double, 3>{1, 1, 0}));
    EXPECT_EQ(mesh.files[0].orientations[1].elements.ranges[0].first, 5);
}

TEST_F(KeyMesh, VectorsOfBeamsMayStandInColumnsOfAnyWidth)
{
    const kvo::Mesh mesh = readKey(cube + std::string("*ELEMENT_BEAM_ORIENTATION\n"
                                                      "1,5,1,2\n       0.0       0.0       2.0\n"
                                                      "2,5,2,3\n     0.0     3.0     0.0\n"
                                                      "3,5,3,4\n                     4.0\n"
                                                      "4,5,4,5\n    -1.5-123.456    -1.0\n"));
    const std::array<double, 3> vectors[] = {{0, 0, 2}, {0, 3, 0}, {0, 0, 4}, {-1.5, -123.456, -1}};
    ASSERT_EQ(mesh.files[0].orientations.size(), 4u);
    for (std::size_t k = 0; k < 4; ++k) {
        EXPECT_EQ(mesh.files[0].orientations[k].vector, vectors[k]);
    }
}

TEST_F(KeyMesh, ASecondNodeOfZeroIsTheGround)
{
    const kvo::Mesh mesh = readKey(cube + std::string("*ELEMENT_DISCRETE\n       1       5       3       0\n2,5,4\n"));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{3, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{4, 4}));
}

TEST_F(KeyMesh, DiscreteElementsAndBelts)
{
    const kvo::Mesh mesh = readKey(cube + std::string("*ELEMENT_DISCRETE\n"
                                                      "       1       5       1       2       3"
                                                      "             1.0       0             0.0\n"
                                                      "2,5,3,0\n3,5,0,4\n4,5\n"
                                                      "*DEFINE_SD_ORIENTATION\n"
                                                      "3,0,0.,1.,0.\n4,2,0.,0.,0.,1,2\n"
                                                      "*ELEMENT_SEATBELT\n"
                                                      "1,6,5,6,0,0.0\n2,7,1,2,0,0.0,3,4\n"));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 5, 6})) << "a spring and a belt of one id";
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{4, 4}));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 1, 2, 2, 3}));
    EXPECT_EQ(log.warningCount(kvo::warnTooFewNodes), 1u);
    ASSERT_EQ(mesh.files[0].orientations.size(), 1u);
    EXPECT_EQ(mesh.files[0].orientations[0].vector, (std::array<double, 3>{0, 1, 0}));
}

TEST_F(KeyMesh, VectorsOfABeamAndASpringOfOneIdAreToldApart)
{
    const kvo::Mesh mesh = readKey(cube + std::string("*ELEMENT_BEAM_ORIENTATION\n7,5,1,2\n 0.,0.,1.\n"
                                                      "*ELEMENT_DISCRETE\n7,6,3,4,1\n"
                                                      "*DEFINE_SD_ORIENTATION\n1,0,0.,0.,1.\n"));
    ASSERT_EQ(mesh.files[0].orientations.size(), 2u);
    EXPECT_EQ(mesh.files[0].orientations[0].family, static_cast<int>(kvo::Family::Beam));
    EXPECT_EQ(mesh.files[0].orientations[1].family, static_cast<int>(kvo::Family::Discrete));
}

TEST_F(KeyMesh, IdsAreUniquePerClassOnly)
{
    const kvo::Mesh mesh = readKey("*ELEMENT_SOLID\n1,1,1,2,3,4,5,6,7,8\n*ELEMENT_SHELL\n1,2,1,2,3,4\n"
                                   "*ELEMENT_BEAM\n1,3,1,2\n*ELEMENT_DISCRETE\n1,4,1,2\n" +
                                   std::string(cube));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 1, 1, 1})) << "elements may stand before the nodes";
    EXPECT_TRUE(log.warnings().empty());
    const kvo::Mesh twice = readKey(cube + std::string("*ELEMENT_SHELL\n1,2,1,2,3,4\n1,3,5,6,7\n"));
    EXPECT_EQ(nodesOf(twice, 1), (Ids{5, 6, 7}));
    EXPECT_EQ(log.warningCount(kvo::warnElementTwice), 1u);
}

TEST_F(KeyMesh, WhatIsNotReadIsCounted)
{
    readKey(cube + std::string("*CONTROL_TERMINATION\n 1.0\n*ELEMENT_SHELL_NURBS_PATCH\n1,2,3\n"
                               "*CONTROL_TERMINATION\n 1.0\n"
                               "-----BEGIN PGP MESSAGE-----\nxyz\n*NODE\nabc\n-----END PGP MESSAGE-----\n"));
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "*CONTROL_TERMINATION"), 2u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "*ELEMENT_SHELL_NURBS_PATCH"), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "encrypted block"), 1u);
}

TEST_F(KeyMesh, MassesParticlesAndRigidBodiesAreKept)
{
    const kvo::Mesh mesh =
        readKey(cube + std::string("*ELEMENT_MASS\n1,2,3.5\n2,3,1.\n"
                                   "*ELEMENT_INERTIA_OFFSET\n3,4,0\n 1.,0.,0.,1.,0.,1.,2.\n 0.,0.,1.\n"
                                   "*ELEMENT_SPH\n5,6,-1.\n"
                                   "*CONSTRAINED_NODAL_RIGID_BODY_SPC_TITLE\nbolt\n"
                                   "11,0,21\n 1.,0,0\n"
                                   "*SET_NODE_LIST\n21\n1,2,3\n"
                                   "*CONSTRAINED_SPOTWELD\n7,8\n1,5\n"
                                   "*CONSTRAINED_INTERPOLATION\n31,9\n1,123\n2,123\n"));
    std::map<std::string, Ids> nodes;
    std::map<std::string, Ids> ids;
    for (const kvo::UndrawnElements& list : mesh.files[0].undrawn) {
        nodes[list.type] = list.nodes;
        ids[list.type] = list.ids;
    }
    EXPECT_EQ(ids["ELEMENT_MASS"], (Ids{1, 2}));
    EXPECT_EQ(nodes["ELEMENT_MASS"], (Ids{2, 3}));
    EXPECT_EQ(nodes["ELEMENT_INERTIA"], Ids{4});
    EXPECT_EQ(nodes["ELEMENT_SPH"], Ids{5});
    EXPECT_EQ(ids["CONSTRAINED_NODAL_RIGID_BODY"], Ids{11});
    EXPECT_EQ(nodes["CONSTRAINED_NODAL_RIGID_BODY"], (Ids{1, 2, 3}));
    EXPECT_EQ(nodes["CONSTRAINED_SPOTWELD"], (Ids{7, 8, 1, 5}));
    EXPECT_EQ(nodes["CONSTRAINED_INTERPOLATION"], (Ids{9, 1, 2}));
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "ELEMENT_MASS"), 2u);
}

TEST_F(KeyMesh, RigidBodiesHaveTitlesAndLinesOfInertiaEach)
{
    const std::string inertia = "1.,2.,3.,4.\n1.,0.,0.,1.,0.,1.\n0.,0.,0.\n";
    const std::string withSystem = "1.,2.,3.,4.,1\n1.,0.,0.,1.,0.,1.\n0.,0.,0.\n0.,0.,0.,1.,1.,0.\n";
    const kvo::Mesh mesh =
        readKey(cube + std::string("*CONSTRAINED_NODAL_RIGID_BODY_TITLE\nfirst\n11,0,21\nsecond\n12,0,21\n\n"
                                   "*CONSTRAINED_NODAL_RIGID_BODY_SPC_INERTIA\n"
                                   "13,0,21\n1.,0,0\n" +
                                   withSystem + "14,0,21\n1.,0,0\n" + inertia + "15,0,22\n1.,0,0\n" + inertia +
                                   "*CONSTRAINED_INTERPOLATION\n31,9,123456,0,1\n21,123\n22,123\n"
                                   "*ELEMENT_MASS\n1,2,3.5\n\n2,3,1.\n\n"
                                   "*SET_NODE_LIST\n21\n1,2,3\n*SET_NODE_LIST\n22\n7\n"));
    std::map<std::string, Ids> nodes;
    std::map<std::string, Ids> ids;
    for (const kvo::UndrawnElements& list : mesh.files[0].undrawn) {
        nodes[list.type] = list.nodes;
        ids[list.type] = list.ids;
    }
    EXPECT_EQ(ids["CONSTRAINED_NODAL_RIGID_BODY"], (Ids{11, 12, 13, 14, 15}));
    EXPECT_EQ(nodes["CONSTRAINED_NODAL_RIGID_BODY"], (Ids{1, 2, 3, 1, 2, 3, 1, 2, 3, 1, 2, 3, 7}));
    EXPECT_EQ(ids["CONSTRAINED_INTERPOLATION"], Ids{31});
    EXPECT_EQ(nodes["CONSTRAINED_INTERPOLATION"], (Ids{9, 1, 2, 3, 7})) << "its lines name sets of nodes";
    EXPECT_EQ(ids["ELEMENT_MASS"], (Ids{1, 2})) << "blank lines are no masses";
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(KeyMesh, ElementsWithTooFewNodesAreLeftOut)
{
    const kvo::Mesh mesh = readKey(cube + std::string("*ELEMENT_SHELL\n1,1,1,2\n2,1,1,2,99\n"
                                                      "*ELEMENT_BEAM\n1,2,1,0\n"
                                                      "*ELEMENT_SOLID\n1,3,1,2,3\n2,3\n"));
    EXPECT_TRUE(elementIds(mesh).empty());
    EXPECT_EQ(log.warningCount(kvo::warnTooFewNodes), 3u);
    EXPECT_EQ(log.warningCount(kvo::warnMissingNode), 1u);
    EXPECT_EQ(log.warningCount(kvo::warnCutCards), 1u);
}

TEST_F(KeyMesh, AlternatingShapesShareTwoBlocks)
{
    std::string cards = "*ELEMENT_SOLID\n";
    for (int id = 1; id <= 100; ++id) {
        cards += std::to_string(id) + (id % 2 ? ",1,1,2,3,4,5,6,7,8\n" : ",1,1,2,3,6\n");
    }
    const kvo::Mesh mesh = readKey(cube + cards);
    EXPECT_EQ(mesh.files[0].blocks.size(), 2u);
    EXPECT_EQ(typeOf(mesh, 99), "ELEMENT_SOLID " + std::to_string(static_cast<int>(kvo::Shape::Hexa)));
    EXPECT_EQ(typeOf(mesh, 100), "ELEMENT_SOLID " + std::to_string(static_cast<int>(kvo::Shape::Tetra)));
}

TEST_F(KeyMesh, DecksAreKnownByTheirFirstKeywords)
{
    const struct
    {
        const char* text;
        bool own;
    } rows[] = {{"$ comment\n\n*keyword\n", true},  {"*NODE\n1,0,0,0\n*ELEMENT_SHELL\n", true},
                {"*INCLUDE\nmesh.k\n", true},       {"*INCLUDE, INPUT=mesh.inp\n", false},
                {"*NODE\n1,0,0,0\n*end\r\n", true}, {"*NODE\n1,0,0,0\n*END STEP\n", false},
                {"*INCLUDE_TRANSFORM\n", true},     {"*NODE\n1,0,0,0\n*ELEMENT, TYPE=S4\n", false},
                {"** comment\n*KEYWORD\n", false},  {"*Heading\n**\n*SET_\n", false},
                {"words\n*KEYWORD\n", false}};
    for (const auto& row : rows) {
        const kvo::MappedFile file(write("deck", row.text));
        EXPECT_EQ(kvo::looksLikeKeyword(file), row.own) << row.text;
    }
}

TEST_F(KeyMesh, ADeckOfNodesOnlyIsKnownByItsEnding)
{
    const std::string node = "*NODE\n       1    -21.93931007     29.07068825    -21.93931007       0       0\n";
    for (const char* name : {"nodes.k", "nodes.KEY", "nodes.dyn"}) {
        const kvo::Mesh mesh = read("$ nodes\n" + node, name);
        EXPECT_EQ(mesh.formatName, "Keyword") << name;
        EXPECT_EQ(pointOf(mesh, 1), (Point{-21.93931007, 29.07068825, -21.93931007})) << name;
        kvo::writeModelDirectory(mesh, path("model"), log);
        EXPECT_TRUE(
            contains(log.warnings().back().lines.at(0), std::string(name) + ": the deck has nodes, but no elements"))
            << log.warnings().back().lines[0];
    }
    EXPECT_EQ(read("*NODE\n1,0,0,0\n", "nodes.k").formatName, "Keyword");
    EXPECT_EQ(read("*NODE\n1,0,0,0\n", "nodes.inp").formatName, "Abaqus/CalculiX");
    EXPECT_EQ(read("*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n*ELEMENT, TYPE=S3\n1,1,2,3\n", "nodes.k").formatName,
              "Abaqus/CalculiX");
    EXPECT_EQ(read("** made by\n*NODE\n1,0,0,0\n", "nodes.k").formatName, "Abaqus/CalculiX");
    const kvo::Mesh mesh = readKey("*NODE\n1,0,0,0\n*ELEMENT_MASS\n1,1,2.5\n");
    kvo::writeModelDirectory(mesh, path("model"), log);
    EXPECT_TRUE(contains(log.warnings().back().lines.at(0), ": no element of the deck can be drawn"));
}

TEST_F(KeyMesh, DamageIsSaid)
{
    const std::string deck = "*KEYWORD\n" + std::string(cube) +
                             "*ELEMENT_SOLID\n2,5\n5,6,7,8,9,10,11,12,0,0\n*ELEMENT_SHELL_THICKNESS\n"
                             "1,6,1,2,3,4\n1.,1.,1.,1.\n*PART\ntitle\n5,1,1\n*SET_NODE_LIST\n4\n1,2,3\n*END\n";
    EXPECT_EQ(complaint(deck, "deck.k"), "");
    expectComplaintsWhenCutOff(deck, "deck.k");
    EXPECT_TRUE(contains(complaint("*KEYWORD\n*NODE\n99999999999999999999,1.\n*END\n", "deck.k"), "deck.k:3: "));
    EXPECT_TRUE(contains(complaint("*KEYWORD\n*NODE\n1,1e999\n*END\n", "deck.k"), "deck.k:3: "));
}
