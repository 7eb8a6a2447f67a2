// Selection by lists: node ids, element ids, positions of elements.
#include "selectiontest.h"

// --- Nodes by id ---

TEST_F(Selection, NodeIdsAreMarkedInEveryPartThatHoldsThem)
{
    selectNodes({4, 8});
    EXPECT_EQ(nodeMarks(0), "0001");
    EXPECT_EQ(nodeMarks(1), "00010001");
    EXPECT_EQ(nodeMarks(2), "0001");
    EXPECT_EQ(allFlags(), (Indices{S | N, S | N, S | N}));
}

TEST_F(Selection, NodeIdsAreReportedWithTheTimeAndThenTheExtents)
{
    selectNodes({4, 8, 99});
    const Lines lines = printedLines();
    ASSERT_GE(lines.size(), 5u);
    EXPECT_TRUE(lines[0] == "TIME FOR 3 NODES=0" || lines[0] == "TIME FOR 3 NODES=1") << lines[0];
    EXPECT_EQ(lines[1], "AFTER NODE PICK");
    EXPECT_EQ(lines[2], "xmin=0 xmax=21");
    EXPECT_EQ(lines[3], "ymin=0 ymax=1");
}

TEST_F(Selection, UnknownNodeIdsAreSkippedSilently)
{
    selectNodes({99, 0});
    EXPECT_EQ(nodeMarks(1), "00000000");
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(printed().find("NOT FOUND"), std::string::npos);
}

TEST_F(Selection, NodeIdsShowTheirPartsAndHideOnlyPartsThatWereNotShown)
{
    setFlags({H, H, 0});
    selectNodes({8}); // in the strip only
    EXPECT_EQ(allFlags(), (Indices{H, S | N, H}));
}

TEST_F(Selection, PartsWithoutNodesHoldNoNodeIds)
{
    PartNodesStr& nodes = model.part(0).partNodes;
    delete[] nodes.idList;
    nodes.idList = nullptr;
    nodes.numNodes = 0;
    selectNodes({4});
    EXPECT_EQ(allFlags(), (Indices{S, S | N, S | N}));
    selectNode(1, 1);
    EXPECT_NE(printed().find("ERROR: CAEEnv::selectNode node index out of bounds\n"), std::string::npos);
}

TEST_F(Selection, NodeIdsLeaveShownPartsShown)
{
    selectNodes({8});
    EXPECT_EQ(allFlags(), (Indices{S, S | N, S}));
    setFlags({S | H, S, S | H}); // both bits: not ours to repair
    selectNodes({8});
    EXPECT_EQ(allFlags(), (Indices{S | H, S | N, S | H}));
}

TEST_F(Selection, NodeFlagsOfEarlierCallsShowTheirPartsAgain)
{
    setFlags({H | N, S, H});
    selectNodes({8});
    EXPECT_EQ(allFlags(), (Indices{S | N, S | N, H}));
}

TEST_F(Selection, ExtentsFollowTheShownParts)
{
    setFlags({H, H, H});
    selectNodes({8});
    EXPECT_EQ(Floats(model->modelExtents, model->modelExtents + 2), (Floats{0, 3}));
    setFlags({H, H, H});
    selectElements({101}, {13});
    EXPECT_EQ(Floats(model->modelExtents, model->modelExtents + 2), (Floats{20, 21}));
    setFlags({H, H, H});
    selectByIndex({0}, {0});
    EXPECT_EQ(Floats(model->modelExtents, model->modelExtents + 2), (Floats{0, 1}));
}

// --- Elements by id ---

TEST_F(Selection, ElementIdsAreMarkedInTheirParts)
{
    selectElements({101, 103, 101}, {12, 12, 13});
    EXPECT_EQ(elementMarks(0), "0");
    EXPECT_EQ(elementMarks(1), "101");
    EXPECT_EQ(elementMarks(2), "1");
    EXPECT_EQ(allFlags(), (Indices{S, S | E, S | E}));
    EXPECT_EQ(printed().find("xmin=0 xmax=21\n"), 0u) << "nothing but the extents is printed";
}

TEST_F(Selection, ElementsGroupedByPartShareTheLookUpOfTheirPart)
{
    UIUIMap& ids = *model->getPartsMapPtr();
    selectElements({101, 102}, {12, 12});
    EXPECT_EQ(elementMarks(1), "110");
    ids.erase(12); // an id that is gone is not found again once another one came between
    selectElements({103, 101}, {12, 12});
    EXPECT_EQ(elementMarks(1), "110");
    selectElements({101, 101, 101}, {13, 12, 13});
    EXPECT_EQ(elementMarks(2), "1");
}

TEST_F(Selection, PartIdsMayComeBackAfterOthers)
{
    selectElements({101, 101, 103}, {12, 99, 12});
    EXPECT_EQ(elementMarks(1), "101");
}

TEST_F(Selection, UnknownElementIdFlagsItsPartAllTheSame)
{
    setFlags({S, H, S});
    selectElements({999}, {12});
    EXPECT_EQ(allFlags(), (Indices{S, S | E, S}));
    EXPECT_EQ(elementMarks(1), "000");
    EXPECT_EQ(printed().find("NOT FOUND"), std::string::npos);
}

TEST_F(Selection, UnknownPartIdsAreSkippedSilently)
{
    selectElements({101, 102}, {99, 99});
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(printed().find("NOT FOUND"), std::string::npos);
}

TEST_F(Selection, PartIdZeroIsNotLookedUpAtTheStartOfTheList)
{
    (*model->getPartsMapPtr())[0] = 2;
    selectElements({101, 101}, {0, 0});
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(elementMarks(2), "0");
}

TEST_F(Selection, PartIdZeroIsLookedUpAfterAnotherId)
{
    (*model->getPartsMapPtr())[0] = 2;
    selectElements({101, 101}, {12, 0});
    EXPECT_EQ(allFlags(), (Indices{S, S | E, S | E}));
    EXPECT_EQ(elementMarks(2), "1");
}

TEST_F(Selection, PartIdsWithoutAnElementIdOnlyFlagTheirParts)
{
    selectElements({103}, {12, 13});
    EXPECT_EQ(allFlags(), (Indices{S, S | E, S | E}));
    EXPECT_EQ(elementMarks(1), "001");
    EXPECT_EQ(elementMarks(2), "0");
}

TEST_F(Selection, SurplusElementIdsAreIgnored)
{
    selectElements({103, 101, 101}, {12});
    EXPECT_EQ(elementMarks(1), "001");
    EXPECT_EQ(allFlags(), (Indices{S, S | E, S}));
}

TEST_F(Selection, PartIdsBeyondThePartsAreSkipped)
{
    (*model->getPartsMapPtr())[50] = 3; // a foreign entry: there are three parts
    selectElements({101}, {50});
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
}

TEST_F(Selection, PartsWithoutAnElementIdMapAreFlaggedOnly)
{
    delete model.part(0).partElements.eidMap;
    model.part(0).partElements.eidMap = nullptr;
    selectElements({101}, {11});
    EXPECT_EQ(allFlags(), (Indices{S | E, S, S}));
    EXPECT_EQ(elementMarks(0), "0");
}

TEST_F(Selection, ElementIdsMappedBeyondTheElementsMarkNothing)
{
    (*model.part(0).partElements.eidMap)[777] = 1;
    selectElements({777}, {11});
    EXPECT_EQ(allFlags(), (Indices{S | E, S, S}));
    EXPECT_EQ(elementMarks(0), "0");
}

TEST_F(Selection, ElementIdsLeaveShownPartsShownAndHideTheOthers)
{
    setFlags({S, H, 0});
    selectElements({101}, {12});
    EXPECT_EQ(allFlags(), (Indices{S, S | E, H}));
}

// --- Elements by position ---

TEST_F(Selection, PositionsAreMarked)
{
    selectByIndex({0, 2}, {1, 1});
    EXPECT_EQ(elementMarks(1), "101");
    EXPECT_TRUE(model->compFlag & ELEMENT_SELECT_LISTS_CREATED);
}

TEST_F(Selection, PositionsHideEveryOtherPartEvenIfItWasShown)
{
    selectByIndex({0}, {1});
    EXPECT_EQ(allFlags(), (Indices{H, S | E, H}));
}

TEST_F(Selection, PositionsKeepPartsFlaggedByEarlierCallsVisible)
{
    selectElement(3, 1);
    selectByIndex({0}, {1});
    EXPECT_EQ(allFlags(), (Indices{H, S | E, S | E}));
}

TEST_F(Selection, PartPositionsAreBoundedByTheNumberOfPartIds)
{
    model->getPartsMapPtr()->erase(11); // two ids for three parts: the last part is out of reach
    selectByIndex({0, 0}, {1, 2});
    EXPECT_EQ(allFlags(), (Indices{H, S | E, H}));
}

TEST_F(Selection, PartPositionsBeyondThePartsAreSkippedWhateverTheNumberOfIds)
{
    (*model->getPartsMapPtr())[50] = 0; // four ids for three parts
    selectByIndex({0, 0}, {3, 0});
    EXPECT_EQ(allFlags(), (Indices{S | E, H, H}));
}

TEST_F(Selection, ElementPositionsOutOfRangeFlagThePartAndMarkNothing)
{
    selectByIndex({3, 0xFFFFFFFF}, {1, 1});
    EXPECT_EQ(allFlags(), (Indices{H, S | E, H}));
    EXPECT_EQ(elementMarks(1), "000");
}

TEST_F(Selection, PartPositionsWithoutAnElementPositionAreMemorySafe)
{
    selectByIndex({2}, {1, 2});
    EXPECT_EQ(elementMarks(1), "001");
    EXPECT_EQ(elementMarks(2), "0");
    EXPECT_TRUE(model.flags(1) & E);
}
