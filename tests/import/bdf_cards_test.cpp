// Bulk data decks: sections, widths of fields, continuations, includes, damage.
#include "import_fixture.h"

namespace {

class BdfCards : public ImportTest
{
protected:
    kvo::Mesh readBdf(const std::string& text) { return read(text, "deck.bdf"); }

    // Node 1 of a deck, which is at (1.5, -2, 0.25) however the deck says it.
    void expectNode(const std::string& text)
    {
        const kvo::Mesh mesh = readBdf("BEGIN BULK\n" + text);
        EXPECT_EQ(pointOf(mesh, 1), (Point{1.5, -2, 0.25})) << text;
        EXPECT_EQ(mesh.nodeCount(), 1u) << text;
        EXPECT_TRUE(log.warnings().empty()) << text;
    }
};

const char* const triangle = "GRID,1\nGRID,2,,1.\nGRID,3,,0.,1.\nCTRIA3,7,5,1,2,3\n";

} // namespace

TEST_F(BdfCards, FieldsOfEveryWidth)
{
    expectNode("GRID           1             1.5     -2.     .25\n");
    expectNode("GRID    1               1.5     -2.     2.5-1\n");
    expectNode("GRID*                  1                             1.5             -2.\n*                    .25\n");
    expectNode("GRID,1,,1.5,-2.,.25\n");
    expectNode("GRID , 1 , , 1.5 , -2. , .25 , \n");
    expectNode("GRID*,1,,1.5,-2.,*A\n*A,.25\n");
    expectNode("GRID    1\t\t1.5\t-2.\t.25\n");
    expectNode("GRID\t1\t\t1.5\t-2.\t.25\n");
    expectNode("GRID*\t1\t\t1.5\t-2.\n*\t.25\n");
    expectNode("grid,1,,1.5D0,-2.0d+0,25.-2 $ a comment, with commas\n");
    expectNode("  GrId  1               1.5     -2.     .25     \r\n");
    expectNode("GRID           1             1.5     -2.     .25                        a remark, with commas\n");
    expectNode("GRID           1             1.5     -2.     .25"); // no end of line
}

TEST_F(BdfCards, LinesOfOneCardMayHaveDifferentWidths)
{
    const std::string nodes = "GRID,1\nGRID,2,,1.\nGRID,3,,1.,1.\nGRID,4,,0.,1.\nGRID,5,,0.,0.,1.\nGRID,6,,1.,0.,1.\n"
                              "GRID,7,,1.,1.,1.\nGRID,8,,0.,1.,1.\n";
    const char* const hexas[] = {
        "CHEXA,9,1,1,2,3,4,5,6\n,7,8\n",
        "CHEXA,9,1,1,2,3,4,5,6,+A\n+A,7,8\n",
        "CHEXA   9       1       1       2       3       4       5       6       +A\n+A      7       8\n",
        "CHEXA   9       1       1       2       3       4       5       6\n        7       8\n",
        "CHEXA   9       1       1       2       3       4       5       6\n+,7,8\n",
        "CHEXA,9,1,1,2,3,4,5,6\n$ a comment\n\n+       7       8\n",
        "CHEXA,9,1,1,2,3,4,5,6\n*                      7               8\n",
        ("CHEXA*                 9               1               1               2\n*                      3"
         "               4               5               6\n,7,8\n"),
        "CHEXA,9,1,1,2,3,4,5,6,7,8,\n",
        "CHEXA,9,1,1,2,3,4,5,6,+A,\n+A,7,8,\n",
        "CHEXA,9,1,1,2,3,4,5,6, +A , , \n+A, 7, 8\n",
    };
    for (const char* hexa : hexas) {
        const kvo::Mesh mesh = readBdf("BEGIN BULK\n" + nodes + hexa);
        EXPECT_EQ(nodesOf(mesh, 9), (Ids{1, 2, 3, 4, 5, 6, 7, 8})) << hexa;
        EXPECT_TRUE(log.warnings().empty()) << hexa;
    }
}

TEST_F(BdfCards, ALargeCardMayLeaveItsSecondHalfOut)
{
    // The third line is a whole small one: it begins where the second half would have ended.
    const kvo::Mesh mesh = readBdf("BEGIN BULK\nGRID,1\nGRID,2,,1.\nGRID,3,,1.,1.\nCTRIA3,7,5,1,2,3\n"
                                   "PCOMP*                 5\n,1,.25,0.,,1,.5\n");
    EXPECT_EQ(mesh.parts.at(0).data.thickness, 0.75);
}

TEST_F(BdfCards, TheBulkDataBeginsWhereItBegins)
{
    const char* const heads[] = {
        "",
        "$ a punch file\n\n",
        "BEGIN BULK\n",
        "begin bulk   \n",
        "BEGIN_BULK\n",
        "SOL 101\nCEND\nTITLE = GRID, 5\nSUBCASE 1\n  LOAD = 2\n  SET 1 = 1 THRU 5,\n  9, 10\nBEGIN BULK\n",
        "NASTRAN SYSTEM(151)=1\nID A,B\nSOL 103\nCEND\nSPC=1\nBEGIN BULK\nPARAM,POST,-1\n",
        "SOL 101\nCEND\nLOAD = 2\n", // no BEGIN BULK
    };
    for (const char* head : heads) {
        const kvo::Mesh mesh = readBdf(head + std::string(triangle));
        EXPECT_EQ(mesh.formatName, "Nastran bulk data") << head;
        EXPECT_EQ(nodesOf(mesh, 7), (Ids{1, 2, 3})) << head;
        EXPECT_TRUE(log.warnings().empty()) << head;
    }
    EXPECT_EQ(readBdf("TITLE = A bracket $ 3\nBEGIN BULK\n" + std::string(triangle)).facts.at(0).second, "A bracket");
}

TEST_F(BdfCards, NothingCountsBehindEnddata)
{
    const kvo::Mesh mesh = readBdf("BEGIN BULK\n" + std::string(triangle) + "ENDDATA\nGRID,4\nwords\n");
    EXPECT_EQ(mesh.nodeCount(), 3u);
    EXPECT_TRUE(log.lists().empty());
}

TEST_F(BdfCards, IncludesAreReadFromNextToTheirDeck)
{
    write("mesh/grids.bdf", "GRID,1\nGRID,2,,1.\nINCLUDE 'more grids.bdf'\nENDDATA\nGRID,99\n");
    write("mesh/more grids.bdf", "GRID,3,,0.,1.\n");
    const char* const includes[] = {"INCLUDE 'mesh/grids.bdf'\n", "include mesh/grids.bdf\n",
                                    "INCLUDE \"mesh\\grids.bdf\"\n", "INCLUDE 'mesh/\n   grids.bdf'\n"};
    for (const char* include : includes) {
        const kvo::Mesh mesh = readBdf("SOL 101\nCEND\nBEGIN BULK\n" + std::string(include) + "CTRIA3,7,5,1,2,3\n");
        EXPECT_EQ(nodesOf(mesh, 7), (Ids{1, 2, 3})) << include;
        EXPECT_EQ(mesh.nodeCount(), 3u) << include;
        EXPECT_EQ(mesh.sourceFiles.size(), 3u) << include;
    }
    EXPECT_EQ(readBdf("INCLUDE 'mesh/grids.bdf'\nCTRIA3,7,5,1,2,3\n").elementCount(), 1u) << "in case control";
}

TEST_F(BdfCards, IncludesThatCannotBe)
{
    write("self.bdf", "GRID,1\nINCLUDE 'deck.bdf'\n");
    EXPECT_EQ(readError("BEGIN BULK\nINCLUDE 'self.bdf'\n", "deck.bdf"),
              "self.bdf:2: \"deck.bdf\" is included by itself");
    EXPECT_EQ(readError("BEGIN BULK\nGRID,1\nINCLUDE 'none.bdf'\n", "deck.bdf"),
              "deck.bdf:3: included file \"none.bdf\" not found");
    EXPECT_EQ(readError("BEGIN BULK\nINCLUDE 'none.bdf\nGRID,1\n", "deck.bdf"),
              "deck.bdf:2: INCLUDE: the name's closing quotation mark is missing");
    EXPECT_EQ(readError("BEGIN BULK\nINCLUDE '/dev/zero'\n", "deck.bdf"),
              "deck.bdf:2: included file \"/dev/zero\" not found");
    EXPECT_EQ(readError("BEGIN BULK\nINCLUDE\n", "deck.bdf"), "deck.bdf:2: INCLUDE without a file name");
}

TEST_F(BdfCards, UnknownCardsAreCountedAndListed)
{
    readBdf("BEGIN BULK\n" + std::string(triangle) + "FORCE,1,2,0,1.\n,7\nFORCE,1,3,0,1.\nFROB,1\nBEGIN SUPER=1\n");
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "FORCE"), 2u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "FROB"), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "BEGIN SUPER=1"), 1u);
    EXPECT_EQ(log.lists().at(0).entries.size(), 3u);
    EXPECT_TRUE(contains(log.lists()[0].entries[1].firstPlace, "deck.bdf:6"));
}

TEST_F(BdfCards, LinesThatBelongNowhereAreWarnedOf)
{
    readBdf("BEGIN BULK\n+A,5,6\n" + std::string(triangle) + "%$!\n123\n");
    EXPECT_EQ(log.warningCount("continuation lines without a card"), 1u);
    EXPECT_EQ(log.warningCount("lines that are no cards"), 2u);
    EXPECT_TRUE(contains(log.warnings()[0].lines.at(0), "deck.bdf:2: "));
}

TEST_F(BdfCards, NumbersThatAreNone)
{
    EXPECT_EQ(readError("BEGIN BULK\nGRID,1,,1.0.0\n", "deck.bdf"),
              "deck.bdf:2: GRID: a number expected in field 4, found \"1.0.0\"");
    EXPECT_EQ(readError("BEGIN BULK\nGRID,x\n", "deck.bdf"),
              "deck.bdf:2: GRID: an integer expected in field 2, found \"x\"");
    EXPECT_EQ(readError("BEGIN BULK\nGRID\n", "deck.bdf"), "deck.bdf:2: GRID: the id must be above 0, not 0");
    EXPECT_EQ(readError("BEGIN BULK\nGRID,99999999999999999999\n", "deck.bdf"),
              "deck.bdf:2: GRID: an integer expected in field 2, found \"99999999999999999999\"");
    EXPECT_EQ(readError("BEGIN BULK\nGRID,1\nCTRIA3,1,1,1,2,1.5\n", "deck.bdf"),
              "deck.bdf:3: CTRIA3: an integer expected in field 6, found \"1.5\"");
    EXPECT_EQ(readError("BEGIN BULK\nGRID,1,99999999999\n", "deck.bdf"),
              "deck.bdf:2: GRID: coordinate system 99999999999 is out of range");
}

TEST_F(BdfCards, ADeckCutOffAnywhereIsReadOrRefusedWithItsPlace)
{
    const std::string deck =
        "SOL 101\nCEND\nTITLE = X\nBEGIN BULK\n"
        "CORD2R,5,0,10.,0.,0.,10.,0.,1.\n,11.,0.,0.\n"
        "GRID*                  1               5             1.5             -2.\n*           .25\n"
        "GRID,2,,1.,0.,0.\nGRID           3              1.      1.      0.\nSPOINT,10,THRU,20\n"
        "CTRIA3,7,5,1,2,3\nCBAR,8,6,1,2,3\nCELAS1,9,7,1,1,10,1\nRBE3,20,,1,123,1.,123,2,3\n"
        "PSHELL,5,1,.5\nPBARL,6,1,,TUBE\n,5.,4.\nSET3,1,ELEM,7,THRU,9\nINCLUDE 'none.bdf'\n";
    for (std::size_t k = 1; k <= 20; ++k) {
        const std::size_t length = deck.size() * k / 20;
        const std::string file = write("deck.bdf", deck.substr(0, length));
        log = kvo::ImportLog();
        try {
            const kvo::Mesh mesh = kvo::readDeck(file, log);
            EXPECT_LE(mesh.nodeCount(), 3u);
        } catch (const kvo::ImportError& error) {
            EXPECT_EQ(error.place.file, file) << length;
            EXPECT_GT(error.place.line, 0u) << length;
        }
    }
    EXPECT_TRUE(contains(readError(deck, "deck.bdf"), ": included file \"none.bdf\" not found"));
}

TEST_F(BdfCards, AbsurdCountsCostNothing)
{
    const kvo::Mesh mesh = readBdf("BEGIN BULK\n" + std::string(triangle) +
                                   "SPOINT,1000,THRU,999999999999\nSET3,1,GRID,1,THRU,999999999999\n"
                                   "CELAS1,8,6,1,1,5000000000,1\n");
    EXPECT_EQ(nodesOf(mesh, 8), (Ids{1, 1}));
    EXPECT_EQ(mesh.sets.at(0).ids.size(), 3u);
    EXPECT_EQ(readError("BEGIN BULK\nSPOINT,9,THRU,8\n", "deck.bdf"),
              "deck.bdf:2: SPOINT: THRU expects a higher id behind it");
}

TEST_F(BdfCards, FieldsMayBePartedByBlanks)
{
    const kvo::Mesh mesh = readBdf("BEGIN BULK\nGRID 1 0 1.5 -2. .25\nGRID 2 0 1.\nGRID  3  0  0. 1. $ 5\n"
                                   "CTRIA3 7 5 1 2 3\n");
    EXPECT_EQ(pointOf(mesh, 1), (Point{1.5, -2, 0.25}));
    EXPECT_EQ(nodesOf(mesh, 7), (Ids{1, 2, 3}));
    EXPECT_EQ(partOf(mesh, 7).id, 5);
    EXPECT_EQ(mesh.nodeCount(), 3u);
    EXPECT_TRUE(log.warnings().empty());
    expectNode("GRID *                 1                             1.5             -2.\n*                    .25\n");
}

TEST_F(BdfCards, ALineWithoutFieldsCountsAsOne)
{
    const kvo::Mesh mesh = readBdf(
        "BEGIN BULK\nGRID,1\nGRID,2,,1.\nGRID,3,,1.,1.\nCTRIA3,7,5,1,2,3\nCBAR,8,6,1,2,3\n"
        "PBARL*                 6               1                             BOX\n*\n"
        "*                     1.              2.             .25              .5\n"
        "PCOMP*                 5\n*A\n*A                     1             .25             45.             YES\n"
        "*                      1              .5\n*                      1             .25\n");
    EXPECT_EQ(partOf(mesh, 8).data.sizes, (std::vector<double>{1, 2, 0.25, 0.5}));
    EXPECT_EQ(partOf(mesh, 7).data.thickness, 1.0);
}

TEST_F(BdfCards, ACommentMayStandBehindAnInclude)
{
    write("a$b.bdf", "GRID,1\nGRID,2,,1.\n");
    write("c.bdf", "GRID,3,,0.,1.\n");
    const kvo::Mesh mesh = readBdf("BEGIN BULK\nINCLUDE a$b.bdf $ nodes\ninclude 'c.bdf' $ more\nCTRIA3,7,5,1,2,3\n");
    EXPECT_EQ(nodesOf(mesh, 7), (Ids{1, 2, 3}));
}

TEST_F(BdfCards, AMarkOfUtf8IsNoText)
{
    expectNode("GRID,1,,1.5,-2.,.25\n");
    const kvo::Mesh mesh = readBdf("\xEF\xBB\xBF" + std::string(triangle));
    EXPECT_EQ(nodesOf(mesh, 7), (Ids{1, 2, 3}));
}
