// The order of hits by depth, and the single winner.
#include "hitstest.h"

// --- Depths ---

TEST_F(Hits, DepthWordsBecomeFractionsOfTwoToThe32)
{
    record(0, 0xFFFFFFFF, {1});
    decode(PICK_TYPE_PART, SELECT_PICK);
    EXPECT_EQ(depths(), (Floats{0, 1})) << "the largest word rounds up to 1";
    EXPECT_NE(printed().find("  z1 is 0; z2 is 1\n"), std::string::npos);
}

TEST_F(Hits, DepthWordsAboveTwoToThe31AreRoundedCorrectly)
{
    record(0x80000080, 0x80000081, {1}); // floats there are 256 apart: a tie goes to the even one
    decode(PICK_TYPE_PART, SELECT_PICK);
    EXPECT_EQ(depths(), (Floats{0.5f, 0.5f + 1.0f / 0x1000000}));
}

TEST_F(Hits, FarthestDepthsTakePartInTheOrder)
{
    record(eighth, threeQuarters, {1}); // both before and behind the other one
    record(quarter, half, {2});
    decode(PICK_TYPE_PART, SELECT_PICK);
    EXPECT_EQ(entities(), (Lines{"1 0", "2 0", "2 0", "1 0"}));
    EXPECT_NE(printed().find("FIRST PART=1\nLAST PART=1\n"), std::string::npos);
    EXPECT_EQ(selectedParts(), Indices{1});
}

TEST_F(Hits, EqualDepthsStayInTheOrderOfTheRecords)
{
    record(half, half, {2});
    record(half, half, {3});
    record(half, half, {1});
    decode(PICK_TYPE_PART, RECT_PICK);
    EXPECT_EQ(entities(), (Lines{"2 0", "2 0", "3 0", "3 0", "1 0", "1 0"}));
    EXPECT_NE(printed().find("FIRST PART=2\nLAST PART=1\n"), std::string::npos);
}

TEST_F(Hits, AmongEqualSmallestDepthsTheFirstRecordWins)
{
    record(half, half, {3});
    record(quarter, half, {1});
    record(quarter, quarter, {2});
    decode(PICK_TYPE_PART, SELECT_PICK);
    EXPECT_EQ(selectedParts(), Indices{1});
}

TEST_F(Hits, AmongEqualSmallestDepthsTheFirstElementRecordWins)
{
    replace(0, quadStripPart(3));
    record(quarter, quarter, {1, 2});
    record(quarter, quarter, {1, 3});
    decode(PICK_TYPE_ELEMENT, SELECT_PICK);
    EXPECT_EQ(elementMarks(0), "010");
}

// --- The winner without depth testing ---

TEST_F(Hits, WithoutDepthTestingTheLastPartReadWins)
{
    glDisable(GL_DEPTH_TEST);
    record(eighth, eighth, {1});
    record(half, half, {3});
    record(quarter, quarter, {2});
    EXPECT_EQ(decode(PICK_TYPE_PART, SELECT_PICK), 3);
    EXPECT_EQ(selectedParts(), Indices{2});
    EXPECT_NE(printed().find("FIRST PART=1\nLAST PART=3\nNUM PARTS SELECTED=3\n"), std::string::npos);
}

TEST_F(Hits, WithoutDepthTestingTheLastElementReadWinsUnannounced)
{
    glDisable(GL_DEPTH_TEST);
    replace(1, quadStripPart(3));
    record(eighth, eighth, {1, 1});
    record(half, half, {2, 3});
    EXPECT_EQ(decode(PICK_TYPE_ELEMENT, SELECT_PICK), 2);
    EXPECT_EQ(numbersWith(PART_ELEMENTS_SELECTED), Indices{2});
    EXPECT_EQ(elementMarks(1), "001");
    EXPECT_EQ(printed().find("PID="), std::string::npos);
}

TEST_F(Hits, WithoutDepthTestingTheLastNodeReadWinsUnannounced)
{
    glDisable(GL_DEPTH_TEST);
    record(eighth, eighth, {1, 1});
    record(half, half, {2, 4});
    EXPECT_EQ(decode(PICK_TYPE_NODE, SELECT_PICK), 2);
    EXPECT_EQ(numbersWith(PART_NODES_SELECTED), Indices{2});
    EXPECT_EQ(nodeMarks(1), "0001");
    EXPECT_EQ(printed().find("PID="), std::string::npos);
}

TEST_F(Hits, WithoutDepthTestingTheNodeOfAnEarlierRecordIsSelectedInTheLastPart)
{
    glDisable(GL_DEPTH_TEST);
    record(eighth, eighth, {1, 2});
    record(half, half, {3}); // a single name, as the axis triad gives it
    EXPECT_EQ(decode(PICK_TYPE_NODE, SELECT_PICK), 1);
    EXPECT_EQ(numbersWith(PART_NODES_SELECTED), Indices{3});
    EXPECT_EQ(nodeMarks(0), "0000");
    EXPECT_EQ(nodeMarks(2), "0100");
}

TEST_F(Hits, WithoutDepthTestingAnEarlierNodeMayBeOutOfBoundsInTheLastPart)
{
    glDisable(GL_DEPTH_TEST);
    replace(0, quadStripPart(3)); // 8 nodes
    record(eighth, eighth, {1, 8});
    record(half, half, {3});
    decode(PICK_TYPE_NODE, SELECT_PICK);
    EXPECT_NE(printed().find("LAST PART=1\nERROR: CAEEnv::selectNode node index out of bounds\nNUM PARTS SELECTED=1\n"),
              std::string::npos);
    EXPECT_TRUE(nothingSelected());
}

TEST_F(Hits, WithDepthTestingASingleNameRecordDoesNotDisturbTheNodeWinner)
{
    record(half, half, {1, 2});
    record(eighth, eighth, {3});
    EXPECT_EQ(decode(PICK_TYPE_NODE, SELECT_PICK), 1);
    EXPECT_EQ(numbersWith(PART_NODES_SELECTED), Indices{1});
    EXPECT_EQ(nodeMarks(0), "0100");
}

TEST_F(Hits, WithoutDepthTestingASingleNameAloneIsNoNode)
{
    glDisable(GL_DEPTH_TEST);
    record(half, half, {3});
    EXPECT_EQ(decode(PICK_TYPE_NODE, SELECT_PICK), 0);
    EXPECT_TRUE(nothingSelected());
    EXPECT_NE(printed().find("PART IDX=3\n\nNUM PARTS SELECTED=0\n"), std::string::npos);
}

TEST_F(Hits, UnknownTypesHaveNoWinnerWithOrWithoutDepthTesting)
{
    record(half, half, {1, 1});
    for (bool depthTest : {true, false}) {
        depthTest ? glEnable(GL_DEPTH_TEST) : glDisable(GL_DEPTH_TEST);
        EXPECT_EQ(decode(0x2000, SELECT_PICK), 0);
        EXPECT_TRUE(nothingSelected());
    }
}

TEST_F(Hits, DepthTestingIsAskedForOnceInASinglePickOnly)
{
    record(half, half, {1, 1});
    for (unsigned int type : {PICK_TYPE_PART, PICK_TYPE_ELEMENT, PICK_TYPE_NODE, 0x2000u}) {
        forget();
        decode(type, SELECT_PICK);
        EXPECT_EQ(glrecord::lines(), Lines{"glIsEnabled(GL_DEPTH_TEST)"}) << "type " << type;
    }
    forget();
    decode(PICK_TYPE_PART, RECT_PICK);
    EXPECT_EQ(glrecord::lines(), Lines{});
}

// --- Nothing to choose from ---

TEST_F(Hits, RecordsWithoutNamesSelectNothingAndStillCloseTheReport)
{
    record(quarter, half, {});
    for (bool depthTest : {true, false}) {
        depthTest ? glEnable(GL_DEPTH_TEST) : glDisable(GL_DEPTH_TEST);
        for (unsigned int type : {PICK_TYPE_PART, PICK_TYPE_ELEMENT, PICK_TYPE_NODE}) {
            EXPECT_EQ(decode(type, SELECT_PICK), 0);
            EXPECT_EQ(printed(), "hits = 1\n"
                                 " number of parts for hit = 0\n"
                                 "  z1 is 0.25; z2 is 0.5\n"
                                 "   the part is \n"
                                 "NUM PARTS SELECTED=0\n");
            EXPECT_TRUE(nothingSelected());
        }
    }
}
