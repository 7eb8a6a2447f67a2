// Decoding of hit records: every pick type with every method, and what is printed of them.
#include "hitstest.h"

// --- The part type ---

TEST_F(Hits, SinglePartPickPrintsEveryRecordAndSelectsTheNearest)
{
    record(half, threeQuarters, {1});
    record(quarter, half, {3});
    EXPECT_EQ(decode(PICK_TYPE_PART, SELECT_PICK), 2);
    EXPECT_EQ(printed(), "hits = 2\n"
                         " number of parts for hit = 1\n"
                         "  z1 is 0.5; z2 is 0.75\n"
                         "   the part is 1 \n"
                         " number of parts for hit = 1\n"
                         "  z1 is 0.25; z2 is 0.5\n"
                         "   the part is 3 \n"
                         "FIRST PART=3\n"
                         "LAST PART=1\n"
                         "NUM PARTS SELECTED=2\n");
    EXPECT_EQ(selectedParts(), Indices{3});
    EXPECT_EQ(entities(), (Lines{"3 0", "1 0", "3 0", "1 0"})) << "both depths, equal ones in order of insertion";
}

TEST_F(Hits, RectanglePartPickSelectsEveryPartHit)
{
    record(half, half, {1});
    record(quarter, quarter, {3});
    EXPECT_EQ(decode(PICK_TYPE_PART, RECT_PICK), 2);
    EXPECT_EQ(printed(), "hits = 2\n"
                         " number of parts for hit = 1\n"
                         "  z1 is 0.5; z2 is 0.5\n"
                         "   the part is 1 \n"
                         " number of parts for hit = 1\n"
                         "  z1 is 0.25; z2 is 0.25\n"
                         "   the part is 3 \n"
                         "FIRST PART=3\n"
                         "LAST PART=1\n"
                         "NUM PARTS SELECTED=2\n");
    EXPECT_EQ(selectedParts(), (Indices{1, 3}));
    EXPECT_EQ(entities(), (Lines{"3 0", "3 0", "1 0", "1 0"}));
}

TEST_F(Hits, PartRecordWithTwoNamesCountsBothAsParts)
{
    record(quarter, half, {1, 3});
    EXPECT_EQ(decode(PICK_TYPE_PART, RECT_PICK), 2);
    EXPECT_EQ(selectedParts(), (Indices{1, 3}));
    EXPECT_EQ(entities(), (Lines{"1 0", "3 0", "1 0", "3 0"}));
    model->clearSelectedParts();
    pick.zPartMap.clear();
    EXPECT_EQ(decode(PICK_TYPE_PART, SELECT_PICK), 2);
    EXPECT_EQ(entities(), (Lines{"1 0", "3 0", "1 0", "3 0"}));
    EXPECT_EQ(selectedParts(), Indices{1});
}

TEST_F(Hits, TriadAloneCountsAsAHitOfNoPart)
{
    record(half, half, {noPart});
    EXPECT_EQ(decode(PICK_TYPE_PART, SELECT_PICK), 1);
    EXPECT_EQ(printed(), "hits = 1\n"
                         " number of parts for hit = 1\n"
                         "  z1 is 0.5; z2 is 0.5\n"
                         "   the part is -1 \n"
                         "FIRST PART=4294967295\n"
                         "LAST PART=4294967295\n"
                         "NUM PARTS SELECTED=1\n");
    EXPECT_TRUE(nothingSelected());
}

// --- The element type ---

TEST_F(Hits, SingleElementPickStoresElementNumbersAndNamesTheWinner)
{
    replace(1, quadStripPart(3));
    record(half, half, {1, 1});
    record(quarter, quarter, {2, 3});
    EXPECT_EQ(decode(PICK_TYPE_ELEMENT, SELECT_PICK), 2);
    EXPECT_EQ(printed(), "hits = 2\n"
                         " number of parts for hit = 2\n"
                         "  z1 is 0.5; z2 is 0.5\n"
                         "   the part is 1 \n"
                         " number of parts for hit = 2\n"
                         "  z1 is 0.25; z2 is 0.25\n"
                         "   the part is 2 \n"
                         "FIRST PART=2\n"
                         "LAST PART=1\n"
                         "PID=2 EID=3\n"
                         "NUM PARTS SELECTED=2\n");
    EXPECT_EQ(entities(), (Lines{"2 3", "2 3", "1 1", "1 1"}));
    EXPECT_EQ(elementMarks(1), "001");
    EXPECT_EQ(numbersWith(PART_ELEMENTS_SELECTED), Indices{2});
}

TEST_F(Hits, RectangleElementPickSelectsEveryElementAndStoresElementNumberZero)
{
    replace(1, quadStripPart(3));
    record(half, half, {1, 1});
    record(quarter, quarter, {2, 1});
    record(eighth, eighth, {2, 3});
    EXPECT_EQ(decode(PICK_TYPE_ELEMENT, RECT_PICK), 3);
    EXPECT_EQ(elementMarks(0), "1");
    EXPECT_EQ(elementMarks(1), "101");
    EXPECT_EQ(elementMarks(2), "0");
    EXPECT_EQ(entities(), (Lines{"2 0", "2 0", "2 0", "2 0", "1 0", "1 0"}));
    const std::string text = printed();
    EXPECT_EQ(text.find("PID="), std::string::npos);
    EXPECT_NE(text.find("FIRST PART=2\nLAST PART=1\nNUM PARTS SELECTED=3\n"), std::string::npos);
}

TEST_F(Hits, ElementRecordWithOneNameTakesTheWordAfterItAsElement)
{
    record(quarter, half, {2}); // the axis triad: drawn under the part's name alone
    EXPECT_EQ(decode(PICK_TYPE_ELEMENT, SELECT_PICK), 1);
    EXPECT_EQ(printed(), "hits = 1\n"
                         " number of parts for hit = 1\n"
                         "  z1 is 0.25; z2 is 0.5\n"
                         "   the part is 2 \n"
                         "FIRST PART=2\n"
                         "LAST PART=2\n"
                         "PID=2 EID=0\n"
                         "NUM PARTS SELECTED=1\n");
    EXPECT_EQ(numbersWith(PART_ELEMENTS_SELECTED), Indices{2}) << "flagged, although no element is marked";
    EXPECT_EQ(elementMarks(1), "0");
}

TEST_F(Hits, TriadInARectangleElementPickCountsOneTooManyAndMarksNothing)
{
    record(half, half, {1, 1});
    record(quarter, quarter, {3});
    EXPECT_EQ(decode(PICK_TYPE_ELEMENT, RECT_PICK), 2);
    EXPECT_EQ(numbersWith(PART_ELEMENTS_SELECTED), (Indices{1, 3}));
    EXPECT_EQ(elementMarks(0), "1");
    EXPECT_EQ(elementMarks(2), "0");
}

TEST_F(Hits, TriadWinsAnElementPickWithoutDepthTesting)
{
    glDisable(GL_DEPTH_TEST);
    record(eighth, eighth, {1, 1});
    record(threeQuarters, threeQuarters, {3});
    EXPECT_EQ(decode(PICK_TYPE_ELEMENT, SELECT_PICK), 2);
    EXPECT_EQ(numbersWith(PART_ELEMENTS_SELECTED), Indices{3});
    EXPECT_EQ(elementMarks(0), "0");
    EXPECT_EQ(elementMarks(2), "0");
}

TEST_F(Hits, ElementPickOnTheTriadWithEveryPartHiddenIsSilent)
{
    record(half, half, {noPart});
    EXPECT_EQ(decode(PICK_TYPE_ELEMENT, SELECT_PICK), 1);
    EXPECT_NE(printed().find("FIRST PART=4294967295\nLAST PART=4294967295\nPID=4294967295 EID=0\n"
                             "NUM PARTS SELECTED=1\n"),
              std::string::npos);
    EXPECT_TRUE(nothingSelected());
}

TEST_F(Hits, ElementRecordWithFourNamesIsTwoElements)
{
    for (unsigned int method : {RECT_PICK, SELECT_PICK}) {
        words.clear();
        records = 0;
        pick.zPartMap.clear();
        record(quarter, half, {1, 1, 3, 1});
        EXPECT_EQ(decode(PICK_TYPE_ELEMENT, method), 2) << "two names at a time, whatever their number";
        EXPECT_NE(printed().find(" number of parts for hit = 4\n  z1 is 0.25; z2 is 0.5\n   the part is 1 3 \n"),
                  std::string::npos);
        EXPECT_EQ(entities(),
                  method == RECT_PICK ? (Lines{"1 0", "3 0", "1 0", "3 0"}) : (Lines{"1 1", "3 1", "1 1", "3 1"}));
    }
    EXPECT_EQ(elementMarks(2), "1");
}

TEST_F(Hits, ElementRecordInTheMiddleWithOneNameShiftsTheNext)
{
    record(half, half, {1});    // element number: the next record's name count, 2
    record(0, quarter, {1, 1}); // read as name count 0, depths quarter and 1
    EXPECT_EQ(decode(PICK_TYPE_ELEMENT, SELECT_PICK), 1);
    EXPECT_EQ(printed(), "hits = 2\n"
                         " number of parts for hit = 1\n"
                         "  z1 is 0.5; z2 is 0.5\n"
                         "   the part is 1 \n"
                         " number of parts for hit = 0\n"
                         "  z1 is 0.25; z2 is 2.32831e-10\n"
                         "   the part is \n"
                         "FIRST PART=1\n"
                         "LAST PART=1\n"
                         "PID=1 EID=2\n"
                         "NUM PARTS SELECTED=1\n");
}

// --- The node type ---

TEST_F(Hits, SingleNodePickPrintsPartAndNodeAndSelectsTheNearest)
{
    record(half, half, {1, 4});
    record(quarter, quarter, {2, 3});
    EXPECT_EQ(decode(PICK_TYPE_NODE, SELECT_PICK), 2);
    EXPECT_EQ(printed(), "hits = 2\n"
                         " number of parts for hit = 2\n"
                         "  z1 is 0.5; z2 is 0.5\n"
                         "   the part is 1 PART IDX=1\n"
                         "NODE IDX=4\n"
                         "\n"
                         " number of parts for hit = 2\n"
                         "  z1 is 0.25; z2 is 0.25\n"
                         "   the part is 2 PART IDX=2\n"
                         "NODE IDX=3\n"
                         "\n"
                         "FIRST PART=2\n"
                         "LAST PART=1\n"
                         "PID=2 NID=3\n"
                         "NUM PARTS SELECTED=2\n");
    EXPECT_EQ(entities(), (Lines{"2 3", "2 3", "1 4", "1 4"}));
    EXPECT_EQ(numbersWith(PART_NODES_SELECTED), Indices{2});
    EXPECT_EQ(nodeMarks(1), "0010");
}

TEST_F(Hits, RectangleNodePickSelectsEveryNodeAndStoresItsNumber)
{
    record(half, half, {1, 4});
    record(quarter, quarter, {2, 3});
    EXPECT_EQ(decode(PICK_TYPE_NODE, RECT_PICK), 2);
    EXPECT_EQ(printed(), "hits = 2\n"
                         " number of parts for hit = 2\n"
                         "  z1 is 0.5; z2 is 0.5\n"
                         "   the part is 1 PART IDX=1\n"
                         "NODE IDX=4\n"
                         "\n"
                         " number of parts for hit = 2\n"
                         "  z1 is 0.25; z2 is 0.25\n"
                         "   the part is 2 PART IDX=2\n"
                         "NODE IDX=3\n"
                         "\n"
                         "FIRST PART=2\n"
                         "LAST PART=1\n"
                         "NUM PARTS SELECTED=2\n");
    EXPECT_EQ(entities(), (Lines{"2 3", "2 3", "1 4", "1 4"})) << "unlike the rectangle pick of elements";
    EXPECT_EQ(nodeMarks(0), "0001");
    EXPECT_EQ(nodeMarks(1), "0010");
}

TEST_F(Hits, RectangleNodePickReportsANodeOutOfRangeAfterItsNumber)
{
    record(half, half, {1, 5});
    EXPECT_EQ(decode(PICK_TYPE_NODE, RECT_PICK), 1) << "counted all the same";
    EXPECT_NE(printed().find("   the part is 1 PART IDX=1\n"
                             "NODE IDX=5\n"
                             "ERROR: CAEEnv::selectNode node index out of bounds\n"
                             "\n"
                             "FIRST PART=1\n"),
              std::string::npos);
    EXPECT_TRUE(nothingSelected());
}

TEST_F(Hits, NodeRecordsWithOneNameArePrintedButNeitherCountedNorSelected)
{
    for (unsigned int method : {RECT_PICK, SELECT_PICK}) {
        words.clear();
        records = 0;
        record(quarter, half, {2});
        EXPECT_EQ(decode(PICK_TYPE_NODE, method), 0);
        EXPECT_EQ(printed(), "hits = 1\n"
                             " number of parts for hit = 1\n"
                             "  z1 is 0.25; z2 is 0.5\n"
                             "   the part is 2 PART IDX=2\n"
                             "\n"
                             "NUM PARTS SELECTED=0\n");
        EXPECT_TRUE(pick.zPartMap.empty());
        EXPECT_TRUE(nothingSelected());
    }
}

TEST_F(Hits, NodeRecordsWithOneNameAreReadWhole)
{
    record(quarter, half, {2});
    record(quarter, half, {1, 3});
    EXPECT_EQ(decode(PICK_TYPE_NODE, SELECT_PICK), 1);
    EXPECT_EQ(nodeMarks(0), "0010");
}

TEST_F(Hits, NodeRecordsWithThreeNamesAreNotReadOn)
{
    for (unsigned int method : {RECT_PICK, SELECT_PICK}) {
        words.clear();
        records = 0;
        record(quarter, half, {1, 2, 3});
        EXPECT_EQ(decode(PICK_TYPE_NODE, method), 0);
        EXPECT_EQ(printed(), "hits = 1\n"
                             " number of parts for hit = 3\n"
                             "  z1 is 0.25; z2 is 0.5\n"
                             "   the part is 1 1 1 \n"
                             "NUM PARTS SELECTED=0\n");
        EXPECT_TRUE(nothingSelected());
    }
}

// --- Types and methods that interpret nothing ---

TEST_F(Hits, UnknownTypesLeaveTheNamesUnreadSoTheNextRecordIsReadFromThem)
{
    for (unsigned int method : {RECT_PICK, SELECT_PICK}) {
        words.clear();
        records = 0;
        record(quarter, half, {3});
        record(half, 77, {2}); // read as: name count 3, depths 1 and half, names from 77 on
        EXPECT_EQ(decode(0x2000, method), 0);
        EXPECT_EQ(printed(), "hits = 2\n"
                             " number of parts for hit = 1\n"
                             "  z1 is 0.25; z2 is 0.5\n"
                             "   the part is 3 \n"
                             " number of parts for hit = 3\n"
                             "  z1 is 2.32831e-10; z2 is 0.5\n"
                             "   the part is 77 77 77 \n"
                             "NUM PARTS SELECTED=0\n");
        EXPECT_TRUE(nothingSelected());
    }
}

TEST_F(Hits, UnknownMethodsPrintTheRecordsButNeitherStoreNorSelect)
{
    for (unsigned int method : {unsigned(POLYLINE_PICK), 0u, 999u}) {
        for (unsigned int type : {PICK_TYPE_PART, PICK_TYPE_ELEMENT, PICK_TYPE_NODE}) {
            words.clear();
            records = 0;
            record(quarter, half, {2, 3});
            EXPECT_EQ(decode(type, method), 0);
            EXPECT_EQ(printed(), "hits = 1\n"
                                 " number of parts for hit = 2\n"
                                 "  z1 is 0.25; z2 is 0.5\n"
                                 "   the part is 2 2 \n"
                                 "NUM PARTS SELECTED=0\n");
            EXPECT_TRUE(pick.zPartMap.empty());
            EXPECT_TRUE(nothingSelected());
        }
    }
}

TEST_F(Hits, NameCountsAreReadAsSigned)
{
    words = {0xFFFFFFFE, quarter, half};
    records = 1;
    EXPECT_EQ(decode(PICK_TYPE_PART, SELECT_PICK), 0);
    EXPECT_EQ(printed(), "hits = 1\n"
                         " number of parts for hit = -2\n"
                         "  z1 is 0.25; z2 is 0.5\n"
                         "   the part is \n"
                         "NUM PARTS SELECTED=0\n");
}

// --- Bounds of what a record may name ---

TEST_F(Hits, ElementNumbersAboveTheElementCountFlagThePartAndWriteNothing)
{
    record(half, half, {1, 2}); // one element, four index entries
    EXPECT_EQ(decode(PICK_TYPE_ELEMENT, RECT_PICK), 1);
    EXPECT_EQ(numbersWith(PART_ELEMENTS_SELECTED), Indices{1});
    EXPECT_EQ(elementMarks(0), "0");
    EXPECT_EQ(printed().find("ERROR"), std::string::npos);
}

TEST_F(Hits, NodeZeroFlagsThePartAndWritesNothing)
{
    record(half, half, {1, 0});
    EXPECT_EQ(decode(PICK_TYPE_NODE, RECT_PICK), 1);
    EXPECT_EQ(numbersWith(PART_NODES_SELECTED), Indices{1});
    EXPECT_EQ(nodeMarks(0), "0000");
}

TEST_F(Hits, SelectionsAddToThoseAlreadyMade)
{
    model->selectPart(2);
    record(half, half, {1});
    decode(PICK_TYPE_PART, SELECT_PICK);
    EXPECT_EQ(selectedParts(), (Indices{1, 2}));
}

TEST_F(Hits, SelectionsGoToTheCurrentEnvironment)
{
    TestModel other(GL_FLAT); // the newest is current
    other.add(quadPart()).install();
    record(half, half, {1});
    decode(PICK_TYPE_PART, SELECT_PICK);
    EXPECT_TRUE(other.flags(0) & PART_SELECTED);
    EXPECT_TRUE(nothingSelected());
    CAEEnv::setPtr(&*model);
    decode(PICK_TYPE_PART, SELECT_PICK);
    EXPECT_EQ(selectedParts(), Indices{1});
}
