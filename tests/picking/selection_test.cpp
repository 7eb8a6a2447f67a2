// Selection of parts, nodes and elements: by number, by lists of ids, by lists of positions, and model-wide.
#include <functional>
#include <set>

#include "modelbuilder.h"
#include "mtrans.h"
#include "readerstub.h"
#include "readids.h"
#include "readnodes.h"
#include "recordedtest.h"

namespace {
const unsigned int S = PART_SHOWN, H = PART_HIDDEN, E = PART_ELEMENTS_SELECTED, N = PART_NODES_SELECTED;

// Three shell parts with the ids 11 to 13: one quad at x = 0, a strip of three quads from x = 0 to 3, one quad at x
// = 20.
class Selection : public RecordedTest
{
protected:
    void SetUp() override
    {
        RecordedTest::SetUp();
        model.add(quadPart()).add(quadStripPart(3)).add(quadPart(20)).install();
        glViewport(0, 0, 800, 600);
        forget();
    }

    Indices allFlags()
    {
        Indices flags;
        for (unsigned int k = 0; k < model->numParts; ++k)
            flags.push_back(model.flags(k));
        return flags;
    }

    void setFlags(const Indices& flags)
    {
        for (unsigned int k = 0; k < model->numParts; ++k)
            model.part(k).partFlag = flags[k];
    }

    void selectNode(unsigned int part, unsigned int node) { model->selectNode(&part, &node); }
    void selectElement(unsigned int part, unsigned int element) { model->selectElement(&part, &element); }
    void selectNodes(Indices ids) { model->selectNodes(ids); }
    void selectElements(Indices elements, Indices parts) { model->selectElements(elements, parts); }
    void selectByIndex(Indices elements, Indices parts) { model->selectElementsByIndex(elements, parts); }

    // Flag characters of a part; "none" while it has no array.
    std::string elementMarks(unsigned int index)
    {
        const PartElementsStr& e = model.part(index).partElements;
        return e.selectedList ? std::string(e.selectedList, e.numElements / e.nodesPerElement) : "none";
    }

    std::string nodeMarks(unsigned int index)
    {
        const PartNodesStr& n = model.part(index).partNodes;
        return n.selectedNodes ? std::string(n.selectedNodes, n.numNodes) : "none";
    }

    TestModel model{GL_FLAT};
};
} // namespace

// --- Parts
// ---------------------------------------------------------------------------------------------------------------

TEST_F(Selection, lastPartNumberSelectsTheLastPart)
{
    model->selectPart(3);
    EXPECT_EQ(allFlags(), (Indices{S, S, S | PART_SELECTED}));
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, partNumbersOutOfRangeChangeNothingAndPrintNothing)
{
    for (unsigned int number : {4u, 0u, 0xFFFFFFFFu}) {
        model->selectPart(number);
        model->highlightPart(number);
    }
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, lastPartNumberHighlightsTheLastPart)
{
    model->highlightPart(3);
    EXPECT_EQ(allFlags(), (Indices{S, S, S | PART_HIGHLIGHTED}));
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, clearingSelectedPartsKeepsEveryOtherFlag)
{
    setFlags({S | PART_SELECTED | PART_HIGHLIGHTED, H | PART_SELECTED | PART_BOX_SHOWN, S | E | N});
    model->clearSelectedParts();
    EXPECT_EQ(allFlags(), (Indices{S | PART_HIGHLIGHTED, H | PART_BOX_SHOWN, S | E | N})) << "there is no un-highlight";
    EXPECT_EQ(printed(), "");
}

// --- Single nodes
// --------------------------------------------------------------------------------------------------------

TEST_F(Selection, firstNodeSelectionMakesTheMarksOfEveryPart)
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

TEST_F(Selection, nodeNumberEqualToTheNodeCountMarksTheLastNode)
{
    selectNode(1, 4);
    EXPECT_EQ(nodeMarks(0), "0001");
}

TEST_F(Selection, nodeNumberOnePastTheNodeCountIsReportedAndChangesNothing)
{
    selectNode(1, 5);
    EXPECT_EQ(printed(), "ERROR: CAEEnv::selectNode node index out of bounds\n");
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(nodeMarks(0), "none") << "not even the lists are made";
    EXPECT_FALSE(model->compFlag & NODE_SELECT_LISTS_CREATED);
}

TEST_F(Selection, nodeOfAPartOutOfRangeIsReported)
{
    selectNode(4, 1);
    EXPECT_EQ(printed(), "ERROR: CAEEnv::selectNode part index out of bounds\n");
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
}

TEST_F(Selection, nodeZeroSetsTheFlagAndMarksNothing)
{
    selectNode(1, 0);
    EXPECT_EQ(allFlags(), (Indices{S | N, S, S}));
    EXPECT_EQ(nodeMarks(0), "0000");
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, nodeAndElementOfPartZeroChangeNothing)
{
    selectNode(0, 1);
    selectElement(0, 1);
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, furtherNodeSelectionsKeepTheMarks)
{
    selectNode(2, 1);
    selectNode(2, 8);
    selectNode(1, 1);
    EXPECT_EQ(nodeMarks(1), "10000001");
    EXPECT_EQ(nodeMarks(0), "1000");
}

TEST_F(Selection, clearingSelectedNodesResetsTheMarksOfFlaggedPartsOnly)
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

TEST_F(Selection, clearingMarksOfRestoredFlagsWithoutArraysIsHarmless)
{
    setFlags({S | N | E, S, H | N | E});
    model->clearSelectedNodes();
    model->clearSelectedElements();
    EXPECT_EQ(allFlags(), (Indices{S, S, H}));
    EXPECT_EQ(nodeMarks(0), "none");
    EXPECT_EQ(elementMarks(2), "none");
}

// --- Single elements
// -----------------------------------------------------------------------------------------------------

TEST_F(Selection, firstElementSelectionMakesTheMarksOfEveryPart)
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

TEST_F(Selection, elementOfAPartOutOfRangeIsNotReported)
{
    selectElement(4, 1);
    EXPECT_EQ(printed(), "") << "unlike a node's";
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(elementMarks(0), "none");
}

TEST_F(Selection, elementNumberAboveTheElementCountIsAcceptedUpToTheIndexCount)
{
    for (unsigned int number : {4u, 12u}) { // three elements, twelve index entries
        setFlags({S, S, S});
        selectElement(2, number);
        EXPECT_EQ(allFlags(), (Indices{S, S | E, S})) << number;
        EXPECT_EQ(elementMarks(1), "000") << "nothing is written past the marks";
        EXPECT_EQ(printed(), "");
    }
}

TEST_F(Selection, elementNumberAboveTheIndexCountIsReported)
{
    selectElement(2, 13);
    EXPECT_EQ(printed(), "ERROR: CAEEnv::selectElement element index out of bounds\n");
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(elementMarks(1), "none");
    EXPECT_FALSE(model->compFlag & ELEMENT_SELECT_LISTS_CREATED);
}

TEST_F(Selection, elementZeroSetsTheFlagAndMarksNothing)
{
    selectElement(2, 0);
    EXPECT_EQ(allFlags(), (Indices{S, S | E, S}));
    EXPECT_EQ(elementMarks(1), "000");
    EXPECT_EQ(printed(), "");
}

TEST_F(Selection, clearingSelectedElementsResetsTheMarksOfFlaggedPartsOnly)
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

TEST_F(Selection, listsMadeByTheHostAreNotRememberedSoTheFirstSelectionMakesThemAnew)
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

TEST_F(Selection, partsWithoutStrideHaveNoElementsToMark)
{
    model.part(2).partElements.nodesPerElement = 0;
    selectElement(1, 1);
    selectElement(3, 1);
    EXPECT_EQ(allFlags(), (Indices{S | E, S, S | E}));
    model->clearSelectedElements();
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
}

// --- Nodes by id
// ---------------------------------------------------------------------------------------------------------

TEST_F(Selection, nodeIdsAreMarkedInEveryPartThatHoldsThem)
{
    selectNodes({4, 8});
    EXPECT_EQ(nodeMarks(0), "0001");
    EXPECT_EQ(nodeMarks(1), "00010001");
    EXPECT_EQ(nodeMarks(2), "0001");
    EXPECT_EQ(allFlags(), (Indices{S | N, S | N, S | N}));
}

TEST_F(Selection, nodeIdsAreReportedWithTheTimeAndThenTheExtents)
{
    selectNodes({4, 8, 99});
    const Lines lines = printedLines();
    ASSERT_GE(lines.size(), 5u);
    EXPECT_TRUE(lines[0] == "TIME FOR 3 NODES=0" || lines[0] == "TIME FOR 3 NODES=1") << lines[0];
    EXPECT_EQ(lines[1], "AFTER NODE PICK");
    EXPECT_EQ(lines[2], "xmin=0 xmax=21");
    EXPECT_EQ(lines[3], "ymin=0 ymax=1");
}

TEST_F(Selection, unknownNodeIdsAreSkippedSilently)
{
    selectNodes({99, 0});
    EXPECT_EQ(nodeMarks(1), "00000000");
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(printed().find("NOT FOUND"), std::string::npos);
}

TEST_F(Selection, nodeIdsShowTheirPartsAndHideOnlyPartsThatWereNotShown)
{
    setFlags({H, H, 0});
    selectNodes({8}); // in the strip only
    EXPECT_EQ(allFlags(), (Indices{H, S | N, H}));
}

TEST_F(Selection, nodeIdsLeaveShownPartsShown)
{
    selectNodes({8});
    EXPECT_EQ(allFlags(), (Indices{S, S | N, S}));
    setFlags({S | H, S, S | H}); // both bits: not ours to repair
    selectNodes({8});
    EXPECT_EQ(allFlags(), (Indices{S | H, S | N, S | H}));
}

TEST_F(Selection, nodeFlagsOfEarlierCallsShowTheirPartsAgain)
{
    setFlags({H | N, S, H});
    selectNodes({8});
    EXPECT_EQ(allFlags(), (Indices{S | N, S | N, H}));
}

TEST_F(Selection, extentsFollowTheShownParts)
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

// --- Elements by id
// ------------------------------------------------------------------------------------------------------

TEST_F(Selection, elementIdsAreMarkedInTheirParts)
{
    selectElements({101, 103, 101}, {12, 12, 13});
    EXPECT_EQ(elementMarks(0), "0");
    EXPECT_EQ(elementMarks(1), "101");
    EXPECT_EQ(elementMarks(2), "1");
    EXPECT_EQ(allFlags(), (Indices{S, S | E, S | E}));
    EXPECT_EQ(printed().find("xmin=0 xmax=21\n"), 0u) << "nothing but the extents is printed";
}

TEST_F(Selection, elementsGroupedByPartShareTheLookUpOfTheirPart)
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

TEST_F(Selection, partIdsMayComeBackAfterOthers)
{
    selectElements({101, 101, 103}, {12, 99, 12});
    EXPECT_EQ(elementMarks(1), "101");
}

TEST_F(Selection, unknownElementIdFlagsItsPartAllTheSame)
{
    setFlags({S, H, S});
    selectElements({999}, {12});
    EXPECT_EQ(allFlags(), (Indices{S, S | E, S}));
    EXPECT_EQ(elementMarks(1), "000");
    EXPECT_EQ(printed().find("NOT FOUND"), std::string::npos);
}

TEST_F(Selection, unknownPartIdsAreSkippedSilently)
{
    selectElements({101, 102}, {99, 99});
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(printed().find("NOT FOUND"), std::string::npos);
}

TEST_F(Selection, partIdZeroIsNotLookedUpAtTheStartOfTheList)
{
    (*model->getPartsMapPtr())[0] = 2;
    selectElements({101, 101}, {0, 0});
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
    EXPECT_EQ(elementMarks(2), "0");
}

TEST_F(Selection, partIdZeroIsLookedUpAfterAnotherId)
{
    (*model->getPartsMapPtr())[0] = 2;
    selectElements({101, 101}, {12, 0});
    EXPECT_EQ(allFlags(), (Indices{S, S | E, S | E}));
    EXPECT_EQ(elementMarks(2), "1");
}

TEST_F(Selection, partIdsWithoutAnElementIdOnlyFlagTheirParts)
{
    selectElements({103}, {12, 13});
    EXPECT_EQ(allFlags(), (Indices{S, S | E, S | E}));
    EXPECT_EQ(elementMarks(1), "001");
    EXPECT_EQ(elementMarks(2), "0");
}

TEST_F(Selection, surplusElementIdsAreIgnored)
{
    selectElements({103, 101, 101}, {12});
    EXPECT_EQ(elementMarks(1), "001");
    EXPECT_EQ(allFlags(), (Indices{S, S | E, S}));
}

TEST_F(Selection, partIdsBeyondThePartsAreSkipped)
{
    (*model->getPartsMapPtr())[50] = 3; // a foreign entry: there are three parts
    selectElements({101}, {50});
    EXPECT_EQ(allFlags(), (Indices{S, S, S}));
}

TEST_F(Selection, partsWithoutAnElementIdMapAreFlaggedOnly)
{
    delete model.part(0).partElements.eidMap;
    model.part(0).partElements.eidMap = nullptr;
    selectElements({101}, {11});
    EXPECT_EQ(allFlags(), (Indices{S | E, S, S}));
    EXPECT_EQ(elementMarks(0), "0");
}

TEST_F(Selection, elementIdsMappedBeyondTheElementsMarkNothing)
{
    (*model.part(0).partElements.eidMap)[777] = 1;
    selectElements({777}, {11});
    EXPECT_EQ(allFlags(), (Indices{S | E, S, S}));
    EXPECT_EQ(elementMarks(0), "0");
}

TEST_F(Selection, elementIdsLeaveShownPartsShownAndHideTheOthers)
{
    setFlags({S, H, 0});
    selectElements({101}, {12});
    EXPECT_EQ(allFlags(), (Indices{S, S | E, H}));
}

// --- Elements by position
// ------------------------------------------------------------------------------------------------

TEST_F(Selection, positionsAreMarked)
{
    selectByIndex({0, 2}, {1, 1});
    EXPECT_EQ(elementMarks(1), "101");
    EXPECT_TRUE(model->compFlag & ELEMENT_SELECT_LISTS_CREATED);
}

TEST_F(Selection, positionsHideEveryOtherPartEvenIfItWasShown)
{
    selectByIndex({0}, {1});
    EXPECT_EQ(allFlags(), (Indices{H, S | E, H}));
}

TEST_F(Selection, positionsKeepPartsFlaggedByEarlierCallsVisible)
{
    selectElement(3, 1);
    selectByIndex({0}, {1});
    EXPECT_EQ(allFlags(), (Indices{H, S | E, S | E}));
}

TEST_F(Selection, partPositionsAreBoundedByTheNumberOfPartIds)
{
    model->getPartsMapPtr()->erase(11); // two ids for three parts: the last part is out of reach
    selectByIndex({0, 0}, {1, 2});
    EXPECT_EQ(allFlags(), (Indices{H, S | E, H}));
}

TEST_F(Selection, partPositionsBeyondThePartsAreSkippedWhateverTheNumberOfIds)
{
    (*model->getPartsMapPtr())[50] = 0; // four ids for three parts
    selectByIndex({0, 0}, {3, 0});
    EXPECT_EQ(allFlags(), (Indices{S | E, H, H}));
}

TEST_F(Selection, elementPositionsOutOfRangeFlagThePartAndMarkNothing)
{
    selectByIndex({3, 0xFFFFFFFF}, {1, 1});
    EXPECT_EQ(allFlags(), (Indices{H, S | E, H}));
    EXPECT_EQ(elementMarks(1), "000");
}

TEST_F(Selection, partPositionsWithoutAnElementPositionAreMemorySafe)
{
    selectByIndex({2}, {1, 2});
    EXPECT_EQ(elementMarks(1), "001");
    EXPECT_EQ(elementMarks(2), "0");
    EXPECT_TRUE(model.flags(1) & E);
}

// --- The loop counter
// ----------------------------------------------------------------------------------------------------

TEST_F(Selection, operationsThatLoopOverThePartsLeaveTheCounterAtTheirNumber)
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

TEST_F(Selection, listMakersLeaveTheCounterAtTheNumberOfParts)
{
    model->i = 77;
    model->createNodeSelectedList();
    EXPECT_EQ(model->i, 3u);
    model->i = 77;
    model->createElementSelectedList();
    EXPECT_EQ(model->i, 3u);
}

TEST_F(Selection, operationsWithoutALoopOverThePartsLeaveTheCounterAlone)
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

TEST_F(Selection, elementListIsWalkedFromItsStartThoughTheMarksAreMadeWithTheSameCounter)
{
    selectElements({101, 102, 103, 101}, {12, 12, 12, 11}); // longer than the parts; the lists are made in this call
    EXPECT_EQ(elementMarks(0), "1");
    EXPECT_EQ(elementMarks(1), "111");
    EXPECT_EQ(model->i, 3u);
}

// --- Printing
// ------------------------------------------------------------------------------------------------------------

TEST_F(Selection, nodesArePrintedInColumns)
{
    float coordinates[] = {1, -2.5f, 1000000};
    model->printNode(42, coordinates);
    model->printNode(0xFFFFFFFF, coordinates); // printed as a signed number
    EXPECT_EQ(printed(), "      42         1.000000        -2.500000   1000000.000000\n"
                         "      -1         1.000000        -2.500000   1000000.000000\n");
}

// --- The model-wide node selection
// ---------------------------------------------------------------------------------------

namespace {
class NodeList : public Selection
{
protected:
    void SetUp() override
    {
        Selection::SetUp();
        readerstub::reset();
        readerstub::files["model"].nodeIds = {10, 20, 30};
        readerstub::files["model"].nodeValues = {3, 5, 7, -1, 8, -4, 2, -6, 2};
    }

    // Earlier readers are nobody's, and the environment keeps those that found no nodes.
    void TearDown() override
    {
        if (model->numNodes != 0) {
            nodeReaders.erase(model->readNodes);
            idReaders.erase(model->readIDS);
        }
        for (ReadNodes* reader : nodeReaders)
            delete reader;
        for (ReadIDS* reader : idReaders)
            delete reader;
        readerstub::reset();
        Selection::TearDown();
    }

    void selectNodeList(Indices ids)
    {
        model->selectNodeList(ids);
        nodeReaders.insert(model->readNodes);
        idReaders.insert(model->readIDS);
    }

    std::set<ReadNodes*> nodeReaders;
    std::set<ReadIDS*> idReaders;
    std::string marks() { return std::string(model->selectedNodes, model->numNodes); }

    std::string extentsLine()
    {
        for (const std::string& line : printedLines())
            if (line.find("EXTENTS=") == 0)
                return line;
        return "none";
    }
};
} // namespace

TEST_F(NodeList, nodesAreMarkedInTheModelWideList)
{
    selectNodeList({10, 30});
    EXPECT_TRUE(model->compFlag & NODE_LIST_SELECTED);
    EXPECT_EQ(model->numNodes, 3u);
    EXPECT_EQ(marks(), "101");
    EXPECT_EQ(model->nodeValues[3], -1);
    EXPECT_EQ(allFlags(), (Indices{S, S, S})) << "independent of the parts' own marks";
    EXPECT_EQ(nodeMarks(0), "none");
}

TEST_F(NodeList, oneNodePrintsNegatedMaximaButForTheYMinimum)
{
    selectNodeList({10}); // (3, 5, 7): the y minimum takes x, so it differs from the maximum and is not negated
    EXPECT_EQ(extentsLine(), "EXTENTS=-3,3,3,5,-7,7");
}

TEST_F(NodeList, oneNodeWithEqualXAndYPrintsNegatedMaximaOnEveryAxis)
{
    readerstub::files["model"].nodeValues = {5, 5, 7, -1, 8, -4, 2, -6, 2};
    selectNodeList({10});
    EXPECT_EQ(extentsLine(), "EXTENTS=-5,5,-5,5,-7,7");
}

TEST_F(NodeList, lowerYStoresX)
{
    selectNodeList({10, 20, 30}); // y: 5 stores x 3, 8 is above it, -6 stores x 2
    EXPECT_EQ(extentsLine(), "EXTENTS=-1,3,2,8,-4,7");
}

TEST_F(NodeList, noNodeFoundPrintsTheStartingBox)
{
    selectNodeList({});
    EXPECT_EQ(extentsLine(), "EXTENTS=1e+06,-1e+06,1e+06,-1e+06,1e+06,-1e+06");
}

TEST_F(NodeList, boxIsPrintedOnly)
{
    const Floats before(model->modelExtents, model->modelExtents + 6);
    selectNodeList({10});
    EXPECT_EQ(Floats(model->modelExtents, model->modelExtents + 6), before);
    EXPECT_EQ(Floats(model->orgModelExtents, model->orgModelExtents + 6), before);
}

TEST_F(NodeList, unknownNodeIsReportedByTheReaderAndByTheEnvironment)
{
    selectNodeList({99, 20, 0});
    const Lines lines = printedLines();
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[0], "Node ID <99> not found");
    EXPECT_EQ(lines[1], "NODE NOT FOUND=99");
    EXPECT_EQ(lines[2], "NODE NOT FOUND=0") << "the reader says nothing of id 0";
    EXPECT_EQ(lines[3].find("EXTENTS="), 0u);
    EXPECT_EQ(marks(), "010");
}

TEST_F(NodeList, readersAreAskedForTheModelItself)
{
    readerstub::watched = true;
    selectNodeList({});
    const Lines lines = printedLines();
    const Lines expected = {"reader: ReadNodes(dir,model)", "reader: ReadNodes::getValues of model",
                            "reader: ReadIDS(dir,model)", "reader: ReadIDS::get(node_ids) of model"};
    ASSERT_GE(lines.size(), expected.size());
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 4), expected);
    readerstub::watched = false;
}

TEST_F(NodeList, viewportProjectionLightsAndWindowCentreAreSetAgain)
{
    glViewport(10, 20, 640, 480);
    forget();
    selectNodeList({10});
    EXPECT_EQ((Indices{model->viewPort[2] + 0u, model->viewPort[3] + 0u}), (Indices{640, 480}));
    EXPECT_EQ(glrecord::count("glViewport"), 1);
    EXPECT_GE(glrecord::find("glViewport(0,0,640,480)"), 0) << "the origin is lost";
    const int ortho = glrecord::find("glOrtho(0,21,0,1,9999,-9999)");
    EXPECT_GT(ortho, 0);
    EXPECT_GT(glrecord::find("glEnable(GL_LIGHTING)"), ortho);
    const std::string text = printed();
    EXPECT_LT(text.find("EXTENTS=-3"), text.find("RESIZE MODEL EXTS="));
}

TEST_F(NodeList, counterIsLeftAlone)
{
    model->i = 77;
    selectNodeList({10, 99});
    EXPECT_EQ(model->i, 77u);
}

TEST_F(NodeList, flagIsSetEvenIfTheNodesCannotBeRead)
{
    readerstub::files.clear();
    selectNodeList({10});
    EXPECT_TRUE(model->compFlag & NODE_LIST_SELECTED);
    EXPECT_EQ(model->numNodes, 0u);
    EXPECT_EQ(model->selectedNodes, nullptr);
    EXPECT_NE(model->readNodes, nullptr);
    EXPECT_EQ(model->readIDS, nullptr);
    EXPECT_EQ(printed(), "") << "nothing further is done";
    EXPECT_EQ(glrecord::lines(), Lines{});
}

TEST_F(NodeList, nodesStaySetIfTheIdsCannotBeRead)
{
    readerstub::files["model"].nodeIds.clear();
    selectNodeList({10});
    EXPECT_EQ(model->numNodes, 3u);
    EXPECT_EQ(marks(), "000");
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(glrecord::lines(), Lines{});
}

TEST_F(NodeList, marksOfAnEarlierCallStayReadableAfterAFailedOne)
{
    selectNodeList({20});
    const char* const before = model->selectedNodes;
    readerstub::files["model"].nodeValues.clear();
    selectNodeList({10});
    EXPECT_EQ(model->selectedNodes, before);
    EXPECT_EQ(marks(), "010") << "the earlier reader is not released";
}

TEST_F(NodeList, secondCallStartsWithFreshMarks)
{
    selectNodeList({20});
    selectNodeList({10});
    EXPECT_EQ(marks(), "100");
}

TEST_F(NodeList, clearingSelectedNodesKeepsTheModelWideOnes)
{
    selectNodeList({20});
    model->clearSelectedNodes();
    EXPECT_EQ(marks(), "010");
    EXPECT_TRUE(model->compFlag & NODE_LIST_SELECTED);
}

TEST(NodeListReaders, areReleasedWithTheEnvironmentOnlyIfNodesWereRead)
{
    for (bool readable : {true, false}) {
        readerstub::reset();
        if (readable) {
            readerstub::files["model"].nodeIds = {10};
            readerstub::files["model"].nodeValues = {3, 5, 7};
        }
        glrecord::start(glrecord::Mode::RecordOnly);
        OutputCapture output;
        ReadNodes* kept = nullptr;
        {
            TestModel model(GL_FLAT);
            model.add(quadPart()).install();
            Indices ids = {10};
            model->selectNodeList(ids);
            kept = model->readNodes;
            readerstub::watched = true;
            output.take();
        }
        const std::string expected = readable ? "reader: ~ReadNodes model\nreader: ~ReadIDS model\n" : "";
        EXPECT_EQ(output.take(), expected);
        readerstub::reset();
        if (!readable)
            delete kept;
        glrecord::stop();
    }
}
