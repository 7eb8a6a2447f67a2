// ReadNodes.
#include "readnodes.h"

#include "modelfixture.h"
#include "outputcapture.h"

TEST(ReadNodes, GivesCoordinatesInTheOrderOfIds)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    ReadNodes nodes(folder.path.c_str(), "tiny");
    ASSERT_EQ(nodes.getValues(), 12);
    EXPECT_EQ(nodes.getNumNodes(), 12);
    const std::vector<float> xyz = coordinatesOf(tinyNodes);
    EXPECT_EQ(std::vector<float>(nodes.getValuesPtr(), nodes.getValuesPtr() + 36), xyz);
}

TEST(ReadNodes, StartsWithNoNodeSelected)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    ReadNodes nodes(folder.path.c_str(), "tiny");
    nodes.getValues();
    EXPECT_EQ(std::string(nodes.getSelectedPtr(), 12), std::string(12, NOT_SELECTED_CHAR));
}

TEST(ReadNodes, IsEmptyBeforeReading)
{
    ReadNodes nodes("/nowhere", "nothing");
    EXPECT_EQ(nodes.getNumNodes(), 0);
    EXPECT_EQ(nodes.getValuesPtr(), nullptr);
    EXPECT_EQ(nodes.getSelectedPtr(), nullptr);
}

TEST(ReadNodes, AddsNodesAtTheEnd)
{
    ReadNodes nodes("", "");
    for (int k = 0; k < 1000; ++k) {
        float xyz[3] = {1.0f * k, 2.0f * k, 3.0f * k};
        nodes.addNode(xyz);
    }
    ASSERT_EQ(nodes.getNumNodes(), 1000);
    EXPECT_GE(nodes.m_MallocCount, 1000);
    for (int k = 0; k < 1000; ++k) {
        EXPECT_EQ(nodes.nodeValues[3 * k + 2], 3.0f * k);
        EXPECT_EQ(nodes.selectedNodes[k], NOT_SELECTED_CHAR);
    }
}

TEST(ReadNodes, AddsANodeAtAPositionAndFillsTheGap)
{
    ReadNodes nodes("", "");
    float xyz[3] = {1, 2, 3};
    nodes.addNode(xyz, 200);
    ASSERT_EQ(nodes.getNumNodes(), 201);
    EXPECT_EQ(nodes.nodeValues[3 * 200], 1);
    EXPECT_EQ(nodes.nodeValues[3 * 199], 0);
    EXPECT_EQ(nodes.selectedNodes[0], NOT_SELECTED_CHAR);
    float other[3] = {4, 5, 6};
    nodes.addNode(other, 200);
    EXPECT_EQ(nodes.getNumNodes(), 201);
    EXPECT_EQ(nodes.nodeValues[3 * 200 + 1], 5);
}

TEST(ReadNodes, AddsToWhatWasRead)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    ReadNodes nodes(folder.path.c_str(), "tiny");
    nodes.getValues();
    float xyz[3] = {7, 8, 9};
    nodes.addNode(xyz);
    ASSERT_EQ(nodes.getNumNodes(), 13);
    EXPECT_EQ(nodes.nodeValues[0], coordinatesOf({11})[0]);
    EXPECT_EQ(nodes.nodeValues[3 * 12 + 2], 9);
}

TEST(ReadNodes, RefusesAPositionThatMeansNotFound)
{
    ReadNodes nodes("", "");
    float xyz[3] = {1, 2, 3};
    OutputCapture errors(2);
    nodes.addNode(xyz, 0x80000000u);
    errors.stop();
    EXPECT_EQ(nodes.getNumNodes(), 0);
    EXPECT_EQ(errors.all(), "kvoread: node index 2147483648 is out of range: no node added\n");
}
