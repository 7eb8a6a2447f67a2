// Selection of single parts, nodes and elements by number; what the shared loop counter shows of it; printing.
#include <functional>

#include "selectiontest.h"

// --- Parts ---

TEST_F(Selection, LastPartNumberSelectsTheLastPart)
{
    model->selectPart(3);
    EXPECT_EQ(allFlags(), (Indices{S, S, S | PART_SELECTED}));
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, PartNumbersOutOfRangeChangeNothingAndPrintNothing)
{
    for (unsigned int number : {4u, 0u, 0xFFFFFFFFu}) {
        model->selectPart(number);
        model->highlightPart(number);
    }
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, LastPartNumberHighlightsTheLastPart)
{
    model->highlightPart(3);
    EXPECT_EQ(allFlags(), (Indices{S, S, S | PART_HIGHLIGHTED}));
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, ClearingSelectedPartsKeepsEveryOtherFlag)
{
    setFlags({S | PART_SELECTED | PART_HIGHLIGHTED, H | PART_SELECTED | PART_BOX_SHOWN, S | E | N});
    model->clearSelectedParts();
    EXPECT_EQ(allFlags(), (Indices{S | PART_HIGHLIGHTED, H | PART_BOX_SHOWN, S | E | N})) << "there is no un-highlight";
    EXPECT_EQ(printed(), "");
}

// --- Single nodes ---

TEST_F(Selection, FirstNodeSelectionMakesTheMarksOfEveryPart)
{
    selectNode(2, 3);
    EXPECT_EQ(nodeMarks(0), "0000");
    EXPECT_EQ(nodeMarks(1), "00100000");
    EXPECT_EQ(nodeMarks(2), "0000");
    EXPECT_EQ(allFlags(), (Indices{S, S | N, S}));
    EXPECT_TRUE(model->compFlag & NODE_SELECT_LISTS_CREATED);
    EXPECT_FALSE(model->compFlag & ELEMENT_SELECT_LISTS_CREATED);
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, NodeNumberEqualToTheNodeCountMarksTheLastNode)
{
    selectNode(1, 4);
    EXPECT_EQ(nodeMarks(0), "0001");
}

TEST_F(Selection, NodeNumberOnePastTheNodeCountIsReportedAndChangesNothing)
{
    selectNode(1, 5);
    EXPECT_EQ(printed(), "ERROR: CAEEnv::selectNode node index out of bounds\n");
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(nodeMarks(0), "none") << "not even the lists are made";
    EXPECT_FALSE(model->compFlag & NODE_SELECT_LISTS_CREATED);
}

TEST_F(Selection, NodeOfAPartOutOfRangeIsReported)
{
    selectNode(4, 1);
    EXPECT_EQ(printed(), "ERROR: CAEEnv::selectNode part index out of bounds\n");
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
}

TEST_F(Selection, NodeZeroSetsTheFlagAndMarksNothing)
{
    selectNode(1, 0);
    EXPECT_EQ(allFlags(), (Indices{S | N, S, S}));
    EXPECT_EQ(nodeMarks(0), "0000");
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, NodeAndElementOfPartZeroChangeNothing)
{
    selectNode(0, 1);
    selectElement(0, 1);
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, FurtherNodeSelectionsKeepTheMarks)
{
    selectNode(2, 1);
    selectNode(2, 8);
    selectNode(1, 1);
    EXPECT_EQ(nodeMarks(1), "10000001");
    EXPECT_EQ(nodeMarks(0), "1000");
}

TEST_F(Selection, ClearingSelectedNodesResetsTheMarksOfFlaggedPartsOnly)
{
    selectNode(1, 1);
    selectNode(2, 2);
    model.part(1).partFlag = S; // its marks are no longer the selection's business
    model->clearSelectedNodes();
    EXPECT_EQ(nodeMarks(0), "0000");
    EXPECT_EQ(nodeMarks(1), "01000000");
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_TRUE(model->compFlag & NODE_SELECT_LISTS_CREATED) << "the lists stay";
}

TEST_F(Selection, ClearingMarksOfRestoredFlagsWithoutArraysIsHarmless)
{
    setFlags({S | N | E, S, H | N | E});
    model->clearSelectedNodes();
    model->clearSelectedElements();
    EXPECT_EQ(allFlags(), (Indices{S, S, H}));
    EXPECT_EQ(nodeMarks(0), "none");
    EXPECT_EQ(elementMarks(2), "none");
}

// --- Single elements ---

TEST_F(Selection, FirstElementSelectionMakesTheMarksOfEveryPart)
{
    selectElement(2, 3);
    EXPECT_EQ(elementMarks(0), "0");
    EXPECT_EQ(elementMarks(1), "001");
    EXPECT_EQ(elementMarks(2), "0");
    EXPECT_EQ(allFlags(), (Indices{S, S | E, S}));
    EXPECT_TRUE(model->compFlag & ELEMENT_SELECT_LISTS_CREATED);
    EXPECT_FALSE(model->compFlag & NODE_SELECT_LISTS_CREATED);
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, ElementOfAPartOutOfRangeIsNotReported)
{
    selectElement(4, 1);
    EXPECT_EQ(printed(), "") << "unlike a node's";
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(elementMarks(0), "none");
}

TEST_F(Selection, ElementNumberAboveTheElementCountIsAcceptedUpToTheIndexCount)
{
    for (unsigned int number : {4u, 12u}) { // three elements, twelve index entries
        setFlags({S, S, S});
        selectElement(2, number);
        EXPECT_EQ(allFlags(), (Indices{S, S | E, S})) << number;
        EXPECT_EQ(elementMarks(1), "000") << "nothing is written past the marks";
        EXPECT_EQ(printed(), "");
    }
}

TEST_F(Selection, ElementNumberAboveTheIndexCountIsReported)
{
    selectElement(2, 13);
    EXPECT_EQ(printed(), "ERROR: CAEEnv::selectElement element index out of bounds\n");
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(elementMarks(1), "none");
    EXPECT_FALSE(model->compFlag & ELEMENT_SELECT_LISTS_CREATED);
}

TEST_F(Selection, ElementZeroSetsTheFlagAndMarksNothing)
{
    selectElement(2, 0);
    EXPECT_EQ(allFlags(), (Indices{S, S | E, S}));
    EXPECT_EQ(elementMarks(1), "000");
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, ClearingSelectedElementsResetsTheMarksOfFlaggedPartsOnly)
{
    selectElement(1, 1);
    selectElement(2, 2);
    model.part(1).partFlag = S;
    model->clearSelectedElements();
    EXPECT_EQ(elementMarks(0), "0");
    EXPECT_EQ(elementMarks(1), "010");
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_TRUE(model->compFlag & ELEMENT_SELECT_LISTS_CREATED);
}

TEST_F(Selection, ListsMadeByTheHostAreNotRememberedSoTheFirstSelectionMakesThemAnew)
{
    model->createNodeSelectedList();
    model->createElementSelectedList();
    EXPECT_FALSE(model->compFlag & (NODE_SELECT_LISTS_CREATED | ELEMENT_SELECT_LISTS_CREATED));
    std::vector<char*> earlier;
    for (unsigned int k = 0; k < 3; ++k) {
        earlier.push_back(model.part(k).partNodes.selectedNodes);
        earlier.push_back(model.part(k).partElements.selectedList);
        earlier[2 * k][0] = earlier[2 * k + 1][0] = SELECTED_CHAR;
    }
    selectNode(2, 2);
    selectElement(2, 2);
    EXPECT_EQ(nodeMarks(1), "01000000");
    EXPECT_EQ(elementMarks(1), "010");
    for (char* marks : earlier) {
        EXPECT_EQ(marks[0], SELECTED_CHAR) << "the earlier arrays are not freed either";
        delete[] marks;
    }
}

TEST_F(Selection, PartsWithoutStrideHaveNoElementsToMark)
{
    model.part(2).partElements.nodesPerElement = 0;
    selectElement(1, 1);
    selectElement(3, 1);
    EXPECT_EQ(allFlags(), (Indices{S | E, S, S | E}));
    model->clearSelectedElements();
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
}

// --- The loop counter ---

TEST_F(Selection, OperationsThatLoopOverThePartsLeaveTheCounterAtTheirNumber)
{
    const std::vector<std::function<void()>> operations = {
        [&] { model->clearSelectedParts(); },    [&] { selectNode(1, 1); },
        [&] { model->clearSelectedNodes(); },    [&] { selectElement(1, 1); },
        [&] { model->clearSelectedElements(); }, [&] { selectNodes({1}); },
        [&] { selectElements({101}, {11}); },    [&] { selectByIndex({0}, {0}); },
    };
    for (std::size_t k = 0; k < operations.size(); ++k) {
        model->i = 77;
        operations[k]();
        EXPECT_EQ(model->i, 3u) << "operation " << k;
    }
}

TEST_F(Selection, ListMakersLeaveTheCounterAtTheNumberOfParts)
{
    model->i = 77;
    model->createNodeSelectedList();
    EXPECT_EQ(model->i, 3u);
    model->i = 77;
    model->createElementSelectedList();
    EXPECT_EQ(model->i, 3u);
}

TEST_F(Selection, OperationsWithoutALoopOverThePartsLeaveTheCounterAlone)
{
    selectNode(1, 1);
    selectElement(1, 1);
    model->i = 77;
    model->selectPart(1);
    model->highlightPart(1);
    selectNode(1, 2); // the lists exist now
    selectElement(2, 2);
    selectNode(9, 1);
    selectElement(9, 1);
    Indices ids = {11};
    model->selectPartsByID(&ids);
    EXPECT_EQ(model->i, 77u);
}

TEST_F(Selection, ElementListIsWalkedFromItsStartThoughTheMarksAreMadeWithTheSameCounter)
{
    selectElements({101, 102, 103, 101}, {12, 12, 12, 11}); // longer than the parts; the lists are made in this call
    EXPECT_EQ(elementMarks(0), "1");
    EXPECT_EQ(elementMarks(1), "111");
    EXPECT_EQ(model->i, 3u);
}

// --- Printing ---

TEST_F(Selection, NodesArePrintedInColumns)
{
    float coordinates[] = {1, -2.5f, 1000000};
    model->printNode(42, coordinates);
    model->printNode(0xFFFFFFFF, coordinates); // printed as a signed number
    EXPECT_EQ(printed(), "      42         1.000000        -2.500000   1000000.000000\n"
                         "      -1         1.000000        -2.500000   1000000.000000\n");
}
