// Bulk data decks: grid points, coordinate systems, elements, properties.
#include "import_fixture.h"

#include <cmath>

namespace {

class BdfMesh : public ImportTest
{
protected:
    kvo::Mesh readBdf(const std::string& text) { return read("BEGIN BULK\n" + text, "deck.bdf"); }

    void expectNear(const kvo::Mesh& mesh, std::int64_t node, const Point& expected)
    {
        const Point found = pointOf(mesh, node);
        ASSERT_EQ(found.size(), 3u) << node;
        for (std::size_t k = 0; k < 3; ++k) {
            EXPECT_NEAR(found[k], expected[k], 1e-6) << "node " << node << ", coordinate " << k;
        }
    }
};

// Grid points 1 to count at (id, id squared, 0).
std::string grids(int count)
{
    std::string text;
    for (int id = 1; id <= count; ++id) {
        text += "GRID," + std::to_string(id) + ",," + std::to_string(id) + ".," + std::to_string(id * id) + ".,0.\n";
    }
    return text;
}

const kvo::Orientation& orientationOf(const kvo::Mesh& mesh, std::int64_t element)
{
    for (const kvo::Orientation& row : mesh.files.at(0).orientations) {
        for (const kvo::IdRange& range : row.elements.ranges) {
            if (element >= range.first && element <= range.last) {
                return row;
            }
        }
    }
    static const kvo::Orientation none = {};
    return none;
}

using Vector = std::array<double, 3>;

} // namespace

// --- coordinate systems ---

TEST_F(BdfMesh, GridPointsInLocalSystems)
{
    const kvo::Mesh mesh = readBdf("GRID,1,8,0.,2.,5.\n" // before its system, which hangs on another one
                                   "CORD2R,5,0,10.,0.,0.,10.,0.,1.\n,11.,0.,0.\n"
                                   "CORD2C,6,0,0.,0.,0.,0.,0.,1.\n,1.,0.,0.\n"
                                   "CORD2S,7,0,0.,0.,0.,0.,0.,1.\n,1.,0.,0.\n"
                                   "CORD2R,8,6,10.,90.,0.,10.,90.,1.\n,10.0498756,84.2894069,0.\n"
                                   "GRID,2,5,0.,1.,0.\nGRID,3,6,2.,90.,3.\nGRID,4,7,3.,0.,0.\nGRID,5,7,2.,90.,90.\n");
    expectNear(mesh, 1, {0, 12, 5});
    expectNear(mesh, 2, {10, 1, 0});
    expectNear(mesh, 3, {0, 2, 3});
    expectNear(mesh, 4, {0, 0, 3});
    expectNear(mesh, 5, {0, 2, 0});
}

TEST_F(BdfMesh, SystemsByGridPoints)
{
    // System 1: origin 11, z towards 12 (global x), x-z plane through 13 (global y); system 2 hangs on points in it.
    const kvo::Mesh mesh = readBdf("CORD1R,1,11,12,13,2,21,22,23\n"
                                   "GRID,11,,1.,1.,1.\nGRID,12,,2.,1.,1.\nGRID,13,,1.,2.,1.\n"
                                   "GRID,21,1,0.,0.,1.\nGRID,22,1,0.,0.,2.\nGRID,23,1,1.,0.,1.\n"
                                   "GRID,1,1,1.,0.,0.\nGRID,2,1,0.,1.,0.\nGRID,3,2,0.,0.,1.\nGRID,4,2,1.,0.,0.\n");
    expectNear(mesh, 1, {1, 2, 1});
    expectNear(mesh, 2, {1, 1, 2});
    expectNear(mesh, 21, {2, 1, 1});
    expectNear(mesh, 3, {3, 1, 1});
    expectNear(mesh, 4, {2, 2, 1});
}

TEST_F(BdfMesh, GrdsetGivesTheSystemOfBlankFieldsOnly)
{
    const kvo::Mesh mesh = readBdf("GRID,1,,1.\nGRID,2,0,1.\nGRDSET,,5\nCORD2R,5,0,10.,0.,0.,10.,0.,1.\n,11.,0.,0.\n");
    expectNear(mesh, 1, {11, 0, 0});
    expectNear(mesh, 2, {1, 0, 0});
}

TEST_F(BdfMesh, RoundSystemsByGridPoints)
{
    const kvo::Mesh mesh = readBdf("GRID,1\nGRID,2,,0.,0.,1.\nGRID,3,,1.,0.,0.\nCORD1C,1,1,2,3,2,2,1,3\n"
                                   "CORD1S,3,1,2,3\nGRID,10,1,2.,90.,1.\nGRID,11,2,2.,90.,1.\nGRID,12,3,2.,90.,90.\n");
    expectNear(mesh, 10, {0, 2, 1});
    expectNear(mesh, 11, {0, -2, 0}); // its z axis points down, from 2 to 1
    expectNear(mesh, 12, {0, 2, 0});
}

TEST_F(BdfMesh, AnUnknownSystemIsWarnedOfWithALine)
{
    const kvo::Mesh mesh = readBdf("GRID,1\nGRID,2,77,1.,2.,3.\nGRID,3,77,1.\nGRID,4,78,1.\n");
    expectNear(mesh, 2, {1, 2, 3});
    ASSERT_EQ(log.warningCount("unknown coordinate systems"), 3u);
    const std::vector<std::string>& lines = log.warnings().at(0).lines;
    ASSERT_EQ(lines.size(), 2u) << "one line a system";
    EXPECT_TRUE(contains(lines[0], "deck.bdf:3: grid point 2 is given in system 77")) << lines[0];
    EXPECT_TRUE(contains(lines[1], "deck.bdf:5: grid point 4 is given in system 78")) << lines[1];
}

TEST_F(BdfMesh, SystemsThatCannotBe)
{
    EXPECT_EQ(readError("BEGIN BULK\nGRID,1,5\nCORD2R,5,6\n,1.\nCORD2R,6,5,0.,0.,0.,0.,0.,1.\n,1.\n", "deck.bdf"),
              "deck.bdf:3: coordinate system 5 depends on itself");
    EXPECT_EQ(readError("BEGIN BULK\nGRID,1,5\nCORD1R,5,1,2,3\nGRID,2\nGRID,3,,1.\n", "deck.bdf"),
              "deck.bdf:3: coordinate system 5 depends on itself");
    EXPECT_EQ(readError("BEGIN BULK\nGRID,1,5\nCORD1R,5,2,3,4\nGRID,2\nGRID,3,,1.\n", "deck.bdf"),
              "deck.bdf:3: coordinate system 5 refers to grid point 4, which does not exist");
    EXPECT_EQ(readError("BEGIN BULK\nGRID,1,5\nCORD2R,5,0,0.,0.,0.,0.,0.,1.\n,0.,0.,2.\n", "deck.bdf"),
              "deck.bdf:3: coordinate system 5: its three points do not span a plane");
    readBdf("GRID,1,5,1.\n");
    EXPECT_EQ(log.warningCount("unknown coordinate systems"), 1u);
}

TEST_F(BdfMesh, AChainOfSystemsWithoutEndIsRefused)
{
    std::string deck = "BEGIN BULK\nGRID,1,1\n";
    for (int k = 1; k < 100000; ++k) {
        deck += "CORD2R," + std::to_string(k) + "," + std::to_string(k + 1) + ",0.,0.,0.,0.,0.,1.\n,1.,0.,0.\n";
    }
    EXPECT_TRUE(contains(readError(deck, "deck.bdf"), "hangs on too many others"));
}

// --- elements ---

TEST_F(BdfMesh, SolidsOfEitherOrder)
{
    const kvo::Mesh mesh = readBdf(grids(30) + "CTETRA,1,7,1,2,3,4\nCTETRA,2,7,1,2,3,4,5,6\n,7,8,9,10\n"
                                               "CTETRA,3,7,1,2,3,4,5,\n,7,,9\n" // mid-side nodes left out
                                               "CPYRAM,4,7,1,2,3,4,5\nCPENTA,5,7,1,2,3,4,5,6\n"
                                               "CHEXA,6,7,1,2,3,4,5,6\n,7,8\n"
                                               "CHEXA,7,7,1,2,3,4,5,6\n,7,8,9,10,11,12,13,14\n,15,16,17,18,19,20\n"
                                               "CPENTA,8,7,1,2,3,4,5,6\n,7,8,9,10,11,12,13,14\n,15\n"
                                               "CPYRAM,9,7,1,2,3,4,5,6\n,7,8,9,10,11,12,13\n");
    for (const std::int64_t id : {1, 2, 3}) {
        EXPECT_EQ(nodesOf(mesh, id), (Ids{1, 2, 3, 4})) << id;
    }
    for (const std::int64_t id : {4, 9}) {
        EXPECT_EQ(nodesOf(mesh, id), (Ids{1, 2, 3, 4, 5})) << id;
    }
    for (const std::int64_t id : {5, 8}) {
        EXPECT_EQ(nodesOf(mesh, id), (Ids{1, 2, 3, 4, 5, 6})) << id;
    }
    for (const std::int64_t id : {6, 7}) {
        EXPECT_EQ(nodesOf(mesh, id), (Ids{1, 2, 3, 4, 5, 6, 7, 8})) << id;
    }
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(BdfMesh, ShellsOfEveryKind)
{
    const kvo::Mesh mesh =
        readBdf(grids(9) + "CQUAD4,1,7,1,2,3,4\nCQUAD8,2,7,1,2,3,4,5,6\n,7,8\nCQUADR,3,7,1,2,3,4\n"
                           "CSHEAR,4,7,1,2,3,4\nCTRIA3,5,7,1,2,3\nCTRIA6,6,7,1,2,3,4,5,6\nCTRIAR,7,7,1,2,3\n"
                           "CTRIAX6,8,7,1,9,2,9,3,9\nCQUAD8,9,,1,2,3,4,,,\n");
    for (const std::int64_t id : {1, 2, 3, 4, 9}) {
        EXPECT_EQ(nodesOf(mesh, id), (Ids{1, 2, 3, 4})) << id;
    }
    for (const std::int64_t id : {5, 6, 7, 8}) {
        EXPECT_EQ(nodesOf(mesh, id), (Ids{1, 2, 3})) << id;
    }
    EXPECT_EQ(partOf(mesh, 5).id, 7);
    EXPECT_EQ(partOf(mesh, 9).id, 9) << "a blank property is the element's own id";
}

TEST_F(BdfMesh, BarsAndTheirThirdNodes)
{
    const kvo::Mesh mesh =
        readBdf(grids(4) + "CBAR,1,7,1,2,3\nCBEAM,2,7,1,2,0.,0.,1.\nCROD,3,7,1,2\nCONROD,4,1,2,9,2.5\n"
                           "CTUBE,5,7,1,2\nCBEND,6,7,1,2,4\nCBEAM3,7,7,1,2,4,3\nCBAR,8,7,1,2,99\nPLOTEL,9,1,2\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, kvo::noNode})) << "a vector is no node";
    EXPECT_EQ(orientationOf(mesh, 2).vector, (Vector{0, 0, 1}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(partOf(mesh, 4).name, "CONROD elements");
    EXPECT_EQ(partOf(mesh, 4).data.area, 2.5);
    EXPECT_EQ(nodesOf(mesh, 6), (Ids{1, 2, 4}));
    EXPECT_EQ(nodesOf(mesh, 7), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 8), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(log.warningCount(kvo::warnMissingThirdNode), 1u);
    EXPECT_EQ(nodesOf(mesh, 9), (Ids{1, 2, kvo::noNode}));
}

TEST_F(BdfMesh, VectorsAreInTheDisplacementSystemOfEndA)
{
    const std::string systems = "CORD2R,5,0,0.,0.,0.,1.,0.,0.\n,0.,1.,0.\n" // z is global x, x is global y
                                "CORD2C,6,0,0.,0.,0.,0.,0.,1.\n,1.,0.,0.\nCORD2S,7,0,0.,0.,0.,0.,0.,1.\n,1.,0.,0.\n";
    const kvo::Mesh mesh = readBdf(systems + "GRID,1,,0.,2.,0.,5\nGRID,2,,0.,2.,0.,6\nGRID,3,,0.,0.,2.,7\nGRID,4\n"
                                             "GRID,9,,0.,2.,0.,7\n"
                                             "CBAR,1,7,1,4,1.,0.,0.\nCBAR,2,7,2,4,1.,0.,0.\nCBAR,3,7,3,4,1.,0.,0.\n"
                                             "CBAR,4,7,1,4,1.,0.,0.,BGG\nCBAR,5,7,9,4,0.,1.,0.\nCBAR,6,7,9,4,0.,0.,1.\n"
                                             "CBAR,7,7,2,4,0.,1.,0.\n");
    EXPECT_EQ(orientationOf(mesh, 1).vector, (Vector{0, 1, 0}));
    EXPECT_EQ(orientationOf(mesh, 2).vector, (Vector{0, 1, 0})) << "radially";
    EXPECT_EQ(orientationOf(mesh, 3).vector, (Vector{0, 0, 1})) << "radially";
    EXPECT_EQ(orientationOf(mesh, 4).vector, (Vector{1, 0, 0})) << "in the basic system";
    EXPECT_EQ(orientationOf(mesh, 5).vector, (Vector{0, 0, -1})) << "theta grows away from the z axis";
    EXPECT_EQ(orientationOf(mesh, 6).vector, (Vector{-1, 0, 0}));
    EXPECT_EQ(orientationOf(mesh, 7).vector, (Vector{-1, 0, 0})) << "round the z axis";
}

TEST_F(BdfMesh, NodesAndVectorsAreToldApart)
{
    const kvo::Mesh mesh = readBdf(grids(3) + "CBAR,1,7,1,2,3,,,GGG\nCBAR,2,7,1,2,0,1,0\nCBAR,3,7,1,2,3.\n"
                                              "CBAR,4,7,1,2,3,0.,0.\nCBAR,5,7,1,2,,,1.\nCBAR,6,7,1,2,0\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    for (const int vector : {2, 3, 4, 5, 6}) {
        EXPECT_EQ(nodesOf(mesh, vector), (Ids{1, 2, kvo::noNode})) << vector;
    }
    EXPECT_EQ(orientationOf(mesh, 2).vector, (Vector{0, 1, 0}));
    EXPECT_EQ(orientationOf(mesh, 3).vector, (Vector{3, 0, 0}));
    EXPECT_EQ(orientationOf(mesh, 4).vector, (Vector{3, 0, 0}));
    EXPECT_EQ(orientationOf(mesh, 5).vector, (Vector{0, 0, 1}));
    EXPECT_EQ(orientationOf(mesh, 6).elements.size(), 0u);
}

TEST_F(BdfMesh, BarorSaysWhatVectorsAreIn)
{
    const kvo::Mesh mesh = readBdf("CORD2R,5,0,0.,0.,0.,1.,0.,0.\n,0.,1.,0.\n" // z is global x, x is global y
                                   "GRID,1,,0.,0.,0.,5\nGRID,2,,1.,0.,0.,5\nBAROR,,39,,,0.,0.,1.,BGG\n"
                                   "CBAR,1,,1,2\nCBAR,2,,1,2,1.,0.,0.\nCBAR,3,,1,2,1.,0.,0.,GGG\n"
                                   "CBAR,4,,1,2,,,,GGG\nCBEAM,5,,1,2,1.,0.,0.\n");
    EXPECT_EQ(orientationOf(mesh, 1).vector, (Vector{0, 0, 1})) << "both from BAROR";
    EXPECT_EQ(orientationOf(mesh, 2).vector, (Vector{1, 0, 0})) << "its own vector in BAROR's frame";
    EXPECT_EQ(orientationOf(mesh, 3).vector, (Vector{0, 1, 0})) << "all its own";
    EXPECT_EQ(orientationOf(mesh, 4).vector, (Vector{1, 0, 0})) << "BAROR's vector in its own frame";
    EXPECT_EQ(orientationOf(mesh, 5).vector, (Vector{0, 1, 0})) << "BAROR is not for beams";
}

TEST_F(BdfMesh, BarorAndBeamorFillWhatIsBlank)
{
    const kvo::Mesh mesh = readBdf(grids(4) + "CBAR,1,,1,2\nCBAR,2,7,1,2,4\nCBEAM,3,,1,2\nBAROR,,39,,,3\n"
                                              "BEAMOR,,40,,,0.,1.,0.\n");
    EXPECT_EQ(partOf(mesh, 1).id, 39);
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(partOf(mesh, 2).id, 7);
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 4}));
    EXPECT_EQ(partOf(mesh, 3).id, 40);
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(orientationOf(mesh, 3).vector, (Vector{0, 1, 0}));
}

TEST_F(BdfMesh, DefaultsFillTheirElementsAmongOthers)
{
    const kvo::Mesh mesh = readBdf(grids(4) + "CBAR,1,,1,2\nCTRIA3,2,7,1,2,4\nCBAR,3,,2,4\nCROD,4,8,1,2\n"
                                              "CBAR,5,,1,4\nBAROR,,39,,,3\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 4}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{2, 4, 3}));
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 5), (Ids{1, 4, 3}));
    EXPECT_EQ(partOf(mesh, 2).id, 7);
    EXPECT_EQ(partOf(mesh, 4).id, 8);
    for (const int bar : {1, 3, 5}) {
        EXPECT_EQ(partOf(mesh, bar).id, 39) << bar;
    }
}

TEST_F(BdfMesh, SpringsDampersAndBushes)
{
    const kvo::Mesh mesh =
        readBdf(grids(4) + "CELAS1,1,7,1,1,2,1\nCELAS2,2,100.,1,1,2,1\nCDAMP1,3,7,1,1,2,1\nCDAMP2,4,5.,1,1,2,1\n"
                           "CDAMP5,5,7,1,2\nCVISC,6,7,1,2\nCGAP,7,7,1,2,1.,0.,0.\nCBUSH,8,7,1,2,3\nCBUSH1D,9,7,1,2\n"
                           "CELAS1,11,7,1,1\nCELAS1,12,7,,,2,1\nCELAS1,13,7,0,,2,1\nCBUSH,14,7,1,,1.,0.,0.\n"
                           "CELAS2,15,100.,3\nCELAS1,16,7\n");
    for (const std::int64_t id : {1, 2, 3, 4, 5, 6, 9}) {
        EXPECT_EQ(nodesOf(mesh, id), (Ids{1, 2})) << id;
    }
    EXPECT_EQ(nodesOf(mesh, 7), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 8), (Ids{1, 2, 3})) << "a bush keeps its orientation node";
    EXPECT_EQ(nodesOf(mesh, 11), (Ids{1, 1})) << "grounded: the node twice";
    EXPECT_EQ(nodesOf(mesh, 12), (Ids{2, 2}));
    EXPECT_EQ(nodesOf(mesh, 13), (Ids{2, 2}));
    EXPECT_EQ(nodesOf(mesh, 14), (Ids{1, 1, kvo::noNode}));
    EXPECT_EQ(partOf(mesh, 2).name, "CELAS2 elements");
    EXPECT_EQ(partOf(mesh, 2).data.stiffness, 100.0);
    EXPECT_EQ(partOf(mesh, 4).data.damping, 5.0);
    EXPECT_EQ(nodesOf(mesh, 15), (Ids{3, 3}));
    EXPECT_EQ(nodesOf(mesh, 16), Ids());
    EXPECT_EQ(log.warningCount("elements without nodes"), 1u);

    const auto elements = roundTrip(mesh);
    EXPECT_EQ(elements.at(8).nodeIds, (std::vector<unsigned int>{1, 2, 3}));
    EXPECT_EQ(elements.at(1).nodeIds, (std::vector<unsigned int>{1, 2, 0xFFFFFFFF}));
}

TEST_F(BdfMesh, BushesAndGapsByNodeVectorOrSystem)
{
    const std::string system = "CORD2R,5,0,0.,0.,0.,1.,0.,0.\n,0.,1.,0.\nGRID,9,,7.,0.,0.,5\n";
    const kvo::Mesh mesh = readBdf(grids(3) + system +
                                   "CBUSH,1,7,9,2,1.,0.,0.\nCBUSH,2,7,1,2,3,,,0\nCBUSH,3,7,1,2,1.,0.,0.,5\n"
                                   "CGAP,4,7,1,2,3\nCGAP,5,7,1,2,3,,,5\nCBUSH,6,7,1,2,3\n,.5,5\n");
    EXPECT_EQ(orientationOf(mesh, 1).vector, (Vector{0, 1, 0})) << "in the displacement system of end A";
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, kvo::noNode})) << "a system overrides the node";
    EXPECT_EQ(orientationOf(mesh, 3).elements.size(), 0u) << "and the vector";
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 5), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 6), (Ids{1, 2, 3})) << "a system of the damper's place is none of the bush";
}

TEST_F(BdfMesh, DampersBetweenScalarPointsAndGrids)
{
    const kvo::Mesh mesh = readBdf(grids(2) + "SPOINT,100\nCDAMP3,1,7,1,100\nCDAMP4,2,10.,2\nCBUSH2D,3,8,1,2,5,XY\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 1}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{2, 2}));
    EXPECT_EQ(partOf(mesh, 2).data.damping, 10.0);
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2}));
}

TEST_F(BdfMesh, DifferentStiffnessesAreNoneOfThePart)
{
    const kvo::Mesh mesh = readBdf(grids(2) + "CELAS2,1,100.,1,1,2,1\nCELAS2,2,200.,1,1,2,1\nCELAS2,3,100.,1,1,2,1\n");
    EXPECT_EQ(partOf(mesh, 1).data.stiffness, 0.0);
}

TEST_F(BdfMesh, SomeCardsHaveTwoElements)
{
    const std::string points = grids(3) + "SPOINT,9\n";
    const char* const cards[] = {
        "PLOTEL,1,1,2,,2,2,3\n",
        "PLOTEL         1       1       2               2       2       3\n",
        "PLOTEL*                1               1               2\n*                      2               2            "
        "   3\n",
        "CROD,1,7,1,2,2,8,2,3\n",
        "CTUBE,1,7,1,2,2,8,2,3\n",
        "CVISC,1,7,1,2,2,8,2,3\n",
        "CELAS3,1,7,1,2,2,8,2,3\n",
        "CELAS4,1,7.,1,2,2,8.,2,3\n",
        "CDAMP3,1,7,1,2,2,8,2,3\n",
        "CDAMP4,1,7.,1,2,2,8.,2,3\n",
    };
    for (const char* card : cards) {
        const kvo::Mesh mesh = readBdf(points + card);
        ASSERT_EQ(elementIds(mesh), (Ids{1, 2})) << card;
        EXPECT_EQ(nodesOf(mesh, 1)[0], 1) << card;
        EXPECT_EQ(nodesOf(mesh, 1)[1], 2) << card;
        EXPECT_EQ(nodesOf(mesh, 2)[0], 2) << card;
        EXPECT_EQ(nodesOf(mesh, 2)[1], 3) << card;
        EXPECT_TRUE(log.warnings().empty()) << card;
        const bool property = contains(card, ",8,");
        EXPECT_EQ(property ? partOf(mesh, 2).propertyId : 8, 8) << card;
    }
    const kvo::Mesh grounded = readBdf(points + "CELAS3,1,7,1,2,2,8,0,3\nCDAMP4,3,1.,9,2,4,1.,1,9\n");
    EXPECT_EQ(nodesOf(grounded, 2), (Ids{3, 3}));
    EXPECT_EQ(nodesOf(grounded, 3), (Ids{2, 2}));
    EXPECT_EQ(nodesOf(grounded, 4), (Ids{1, 1}));
    const kvo::Mesh masses = readBdf(points + "CMASS3,1,7,1,2,2,8,2,3\nCMASS4,3,1.,1,2,4,1.,,3\n");
    ASSERT_EQ(masses.files[0].undrawn.size(), 2u);
    EXPECT_EQ(masses.files[0].undrawn[0].ids, (Ids{1, 2}));
    EXPECT_EQ(masses.files[0].undrawn[0].nodes, (Ids{1, 2, 2, 3}));
    EXPECT_EQ(masses.files[0].undrawn[1].nodes, (Ids{1, 2, 3}));
}

TEST_F(BdfMesh, WhatIsNoSecondElementIsWarnedOf)
{
    const kvo::Mesh mesh = readBdf(grids(3) + "CROD,1,7,1,2,+A\nCROD,2,7,2,3\n");
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2}));
    ASSERT_EQ(log.warnings().size(), 1u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "deck.bdf:5: CROD: \"+A\" in field 6 is no id"))
        << log.warnings()[0].lines[0];
    EXPECT_EQ(readError("BEGIN BULK\n" + grids(3) + "CROD,1,7,1,2,-2,7,2,3\n", "deck.bdf"),
              "deck.bdf:5: CROD: the id must be above 0, not -2");
}

TEST_F(BdfMesh, SolidsWithMoreNodesThanTheyCanHave)
{
    const std::string whole = "CTETRA,1,5,1,2,3,4,5,6\n,7,8,9,10";
    const kvo::Mesh mesh = readBdf(grids(12) + whole + ",11,12\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3, 4}));
    ASSERT_EQ(log.warningCount("elements with more nodes than their type has"), 1u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "deck.bdf:14: CTETRA element 1 has 10 nodes, 12 are given"))
        << log.warnings()[0].lines[0];
    readBdf(grids(12) + whole + "\n+,CORDM,3\n");
    EXPECT_TRUE(log.warnings().empty()) << "a material system is no node";
}

TEST_F(BdfMesh, ScalarPointsAreNowhere)
{
    const kvo::Mesh mesh = readBdf(grids(2) + "SPOINT,10,THRU,12\nSPOINT,20\nCELAS1,1,7,1,1,11,0\nCELAS3,2,7,20,2\n"
                                              "CELAS3,3,7,10,11\nCELAS4,4,5.,1,77\nCELAS1,5,7,1,1,77\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 1}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{2, 2}));
    EXPECT_EQ(nodesOf(mesh, 3), Ids());
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{1, 1})) << "a scalar element makes its scalar points";
    EXPECT_EQ(nodesOf(mesh, 5), Ids()) << "77 is no scalar point for this one";
    EXPECT_EQ(log.warningCount(kvo::warnMissingNode), 1u);
    ASSERT_EQ(mesh.files[0].undrawn.size(), 1u);
    EXPECT_EQ(mesh.files[0].undrawn[0].nodes, (Ids{10, 11}));
}

TEST_F(BdfMesh, MassesAndRigidElementsAreKeptWithTheirNodes)
{
    const kvo::Mesh mesh = readBdf(grids(6) + "CONM2,50,3,0,2.5\nRBE2,51,1,123456,2,3,4,5\n,6\n"
                                              "RBE3,52,,1,123,1.0,123,2,3\n,2.0,12,4,UM,5,123\n"
                                              "RBE1,53,1,123,2,3,,,\n,UM,4,123,5,1\nRBAR,54,1,2,123456\n"
                                              "CMASS1,55,7,1,1,2,1\nCWELD,56,1\nCTRIA3,57,7,1,2,3\n");
    const std::vector<kvo::UndrawnElements>& undrawn = mesh.files.at(0).undrawn;
    ASSERT_EQ(undrawn.size(), 7u);
    const Ids expected[] = {{3}, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4}, {1, 2, 4, 5}, {1, 2}, {1, 2}, {}};
    for (std::size_t k = 0; k < undrawn.size(); ++k) {
        EXPECT_EQ(undrawn[k].ids, Ids{std::int64_t(50 + k)});
        EXPECT_EQ(undrawn[k].nodes, expected[k]) << undrawn[k].type;
    }
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "CONM2"), 1u);
    EXPECT_EQ(mesh.elementCount(), 1u);
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(BdfMesh, RangesOfRigidElementsAreWarnedOf)
{
    const kvo::Mesh mesh = readBdf(grids(6) + "RBE2,51,1,123456,2,thru,5\n");
    EXPECT_EQ(mesh.files.at(0).undrawn.at(0).nodes, (Ids{1, 2, 5}));
    ASSERT_GE(log.warnings().size(), 1u);
    EXPECT_TRUE(contains(log.warnings()[0].lines.at(0), "RBE2 51: of nodes with THRU only the two ends"))
        << log.warnings()[0].lines[0];
}

TEST_F(BdfMesh, DanglingAndRepeatedIds)
{
    const kvo::Mesh mesh = readBdf("GRID,1\nGRID,2,,1.\nGRID,3,,0.,1.\nGRID,1,,5.\n"
                                   "CTRIA3,1,7,1,2,3\nCTRIA3,2,7,1,2,4\nCTRIA3,3,7,1,2\nCBAR,1,7,1,2\n");
    EXPECT_EQ(elementIds(mesh), (Ids{1}));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(pointOf(mesh, 1)[0], 5.0);
    EXPECT_EQ(log.warningCount(kvo::warnMissingNode), 2u);
    EXPECT_EQ(log.warningCount(kvo::warnElementTwice), 1u);
    EXPECT_EQ(log.warningCount(kvo::warnNodeTwice), 1u);
    EXPECT_EQ(readError("BEGIN BULK\nCTRIA3,-1,7,1,2,3\n", "deck.bdf"),
              "deck.bdf:2: CTRIA3: the id must be above 0, not -1");
}

// --- properties ---

TEST_F(BdfMesh, PropertiesOfParts)
{
    const kvo::Mesh mesh =
        readBdf(grids(8) + "CTRIA3,1,11,1,2,3\nPSHELL,11,4,2.5\nCTRIA3,2,12,1,2,3\nPSHELL,12,,1.5,5\n"
                           "CTRIA3,3,13,1,2,3\nPCOMP,13,,,,,,,SYM\n,6,.25,0.,,,,90.\n"
                           "CTRIA3,4,14,1,2,3\nPCOMPG,14\n,101,6,.25,0.\n,102,6,.5,0.\n"
                           "CTETRA,5,15,1,2,3,4\nPSOLID,15,7\nCBAR,6,16,1,2\nPBAR,16,8,12.5\n"
                           "CBAR,7,17,1,2\nPBARL,17,8,,BOX\n,10.,20.,1.,2.,.7\nCROD,8,18,1,2\nPROD,18,8,3.5\n"
                           "CELAS1,9,19,1,1,2,1\nCELAS1,10,20,1,1,2,1\nPELAS,19,100.,,,20,200.\n"
                           "CDAMP1,11,21,1,1,2,1\nPDAMP,21,5.\nCBUSH,12,22,1,2,3\nPBUSH,22,K,,300.\n,,B,4.\n"
                           "CTUBE,13,23,1,2\nPTUBE,23,8,10.,1.\nCTRIA3,14,24,1,2,3\n");
    EXPECT_EQ(partOf(mesh, 1).section, "PSHELL");
    EXPECT_EQ(partOf(mesh, 1).name, "PSHELL 11");
    EXPECT_EQ(partOf(mesh, 1).propertyId, 11);
    EXPECT_EQ(partOf(mesh, 1).materialId, 4);
    EXPECT_EQ(partOf(mesh, 1).data.thickness, 2.5);
    EXPECT_EQ(partOf(mesh, 2).materialId, 5);
    EXPECT_EQ(partOf(mesh, 3).data.thickness, 1.0) << "two plies of .25, mirrored";
    EXPECT_EQ(partOf(mesh, 3).materialId, 6);
    EXPECT_EQ(partOf(mesh, 4).data.thickness, 0.75);
    EXPECT_EQ(partOf(mesh, 5).materialId, 7);
    EXPECT_EQ(partOf(mesh, 6).data.area, 12.5);
    EXPECT_EQ(partOf(mesh, 7).data.shape, "BOX");
    EXPECT_EQ(partOf(mesh, 7).data.sizes, (std::vector<double>{10, 20, 1, 2}));
    EXPECT_EQ(partOf(mesh, 8).data.area, 3.5);
    EXPECT_EQ(partOf(mesh, 9).data.stiffness, 100);
    EXPECT_EQ(partOf(mesh, 10).data.stiffness, 200);
    EXPECT_EQ(partOf(mesh, 11).data.damping, 5);
    EXPECT_EQ(partOf(mesh, 12).data.stiffness, 300);
    EXPECT_EQ(partOf(mesh, 12).data.damping, 4);
    EXPECT_EQ(partOf(mesh, 13).data.sizes, (std::vector<double>{10, 1}));
    EXPECT_EQ(partOf(mesh, 14).name, "property 24") << "no card";
}

TEST_F(BdfMesh, AnIdCanBeThePropertyOfAShellAndOfASpring)
{
    const kvo::Mesh mesh = readBdf(grids(3) + "CTRIA3,1,7,1,2,3\nPELAS,7,100.\nPSHELL,7,4,2.5\n");
    EXPECT_EQ(partOf(mesh, 1).section, "PSHELL");
}

TEST_F(BdfMesh, NamesInComments)
{
    const kvo::Mesh mesh =
        readBdf("$HMNAME PROP       7\"Skin Top\" 4\n$ANSA_NAME_COMMENT;8;PSHELL;Rib 3;;NO;NO;\n"
                "$ANSA_NAME_COMMENT;9;MAT1;Steel;\n$ Femap Property 10 : Bolt\n$HMNAME COMP 9\"X\"\n"
                "$ Pset: \"Spar v1.2\" will be imported as: \"pbarl.11\"\n$ Pset: \"lost\n$ Pset: \"X\" as Y.\n" +
                grids(3) + "CTRIA3,1,7,1,2,3\nCTRIA3,2,8,1,2,3\nCTRIA3,3,9,1,2,3\nCBAR,4,10,1,2\nCBAR,5,11,1,2\n");
    EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"Skin Top", "Rib 3", "property 9", "Bolt", "Spar v1.2"}));
}

TEST_F(BdfMesh, HeadingsNameThePartBelowThem)
{
    const std::string heading = "$       Shell element data for family    ";
    const kvo::Mesh mesh = readBdf(grids(4) + "CTRIA3,1,4,1,2,3\n" + heading + "RIBS/RIB.00/SEG.00  \n" +
                                   "CTRIA3,2,5,1,2,3\nCTRIA3,3,4,1,2,3\nCTRIA3,4,5,2,3,4\n" + heading + "BOTH\n" +
                                   "CTRIA3,5,6,1,2,3\nCTRIA3,6,7,1,2,3\n" + heading + "EMPTY\n" + heading +
                                   "Flap\nCQUAD4,7,8,1,2,3,4\nCQUAD4,8,8,1,2,3,4\nPSHELL,6,1,1.\n");
    EXPECT_EQ(partNames(mesh),
              (std::vector<std::string>{"property 4", "RIBS/RIB.00/SEG.00", "PSHELL 6", "property 7", "Flap"}));
}

TEST_F(BdfMesh, Sets)
{
    const kvo::Mesh mesh =
        readBdf(grids(9) + "CTRIA3,1,7,1,2,3\nCTRIA3,2,8,1,2,3\nCONM2,3,1\n"
                           "SET3,5,GRID,1,THRU,3,9\nSET3,6,ELEM,1,3\nSET3,7,PROP,8\nSET3,8,POINT,1\n");
    ASSERT_EQ(mesh.sets.size(), 3u);
    EXPECT_EQ(mesh.sets[0].ids.size(), 4u);
    EXPECT_EQ(mesh.sets[0].of, kvo::MeshSet::Of::Nodes);
    EXPECT_EQ(mesh.sets[0].id, 5);
    EXPECT_EQ(mesh.sets[1].ids.size(), 2u) << "an element that is not drawn is a member, too";
    EXPECT_EQ(mesh.sets[2].of, kvo::MeshSet::Of::Parts);
    EXPECT_EQ(mesh.sets[2].ids.size(), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "SET3, POINT"), 1u);
}

TEST_F(BdfMesh, ADamagedSetCostsNoMesh)
{
    const kvo::Mesh mesh = readBdf(grids(3) + "SET3,1,GRID,3,THRU,1\nSET3,2,GRID,1,x\nSET3,3,GRID,1,2\n");
    EXPECT_EQ(mesh.nodeCount(), 3u);
    ASSERT_EQ(mesh.sets.size(), 1u);
    EXPECT_EQ(mesh.sets[0].id, 3);
    ASSERT_EQ(log.warningCount("sets that are left out"), 2u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "deck.bdf:5: SET3: THRU expects a higher id"));
}

TEST_F(BdfMesh, SetsThatTakeIdsBackAreListed)
{
    const kvo::Mesh mesh = readBdf(grids(9) + "CTRIA3,1,7,1,2,3\nSET3,5,GRID,1,THRU,6,EXCEPT,3\nSET3,6,ELEM,ALL\n"
                                              "SET3,7,grid,1,2\n");
    ASSERT_EQ(mesh.sets.size(), 1u);
    EXPECT_EQ(mesh.sets[0].id, 7);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "SET3 with EXCEPT"), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "SET3 with ALL"), 1u);
}
