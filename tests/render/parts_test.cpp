// Visibility of parts by selection state and by part id, the segment part, flags and accessors. Much of it turns on the
// environment's loop counter `i`, whose leftover value one operation continues from.
#include "modelbuilder.h"
#include "mtrans.h"
#include "mview.h"
#include "recordedtest.h"

namespace {
const unsigned int anySelection = PART_SELECTED | PART_ELEMENTS_SELECTED | PART_NODES_SELECTED;

class Parts : public RecordedTest
{
protected:
    void SetUp() override
    {
        RecordedTest::SetUp();
        for (float x : {0.0f, 10.0f, 20.0f, 30.0f}) {
            model.add(quadPart(x));
        }
        model.install();
        forget();
    }

    Indices allFlags()
    {
        Indices flags;
        for (unsigned int k = 0; k < model->numParts; ++k) {
            flags.push_back(model.flags(k));
        }
        return flags;
    }

    TestModel model{GL_FLAT};
};

const unsigned int S = PART_SHOWN, H = PART_HIDDEN;
} // namespace

// --- By selection state ---

TEST_F(Parts, ShowOnlySelectedTakesAnyKindOfSelection)
{
    model.part(0).partFlag = S | PART_SELECTED;
    model.part(1).partFlag = H | PART_ELEMENTS_SELECTED;
    model.part(2).partFlag = H | PART_NODES_SELECTED;
    model.part(3).partFlag = S | PART_HIGHLIGHTED;
    model->processParts(2);
    EXPECT_EQ(allFlags(), (Indices{S, S | PART_ELEMENTS_SELECTED, S | PART_NODES_SELECTED, H | PART_HIGHLIGHTED}))
        << "the part selection is used up, the others stay";
    EXPECT_EQ(model->i, 4u);
}

TEST_F(Parts, ShowOnlySelectedStartsAtTheFirstPartWhateverTheCounter)
{
    model.part(3).partFlag = S | PART_SELECTED;
    model->i = 3;
    model->processParts(2);
    EXPECT_EQ(allFlags(), (Indices{H, H, H, S}));
}

TEST_F(Parts, HideSelectedContinuesAtTheCounterSoItChangesNothingAfterALoopOverAllParts)
{
    model.part(1).partFlag |= PART_SELECTED;
    model->i = 4; // as every loop over all parts leaves it
    model->processParts(4);
    EXPECT_EQ(allFlags(), (Indices{S, S | PART_SELECTED, S, S}));
    EXPECT_EQ(printed().find("xmin=0 xmax=31\n"), 0u) << "the extents are recomputed all the same";
}

TEST_F(Parts, HideSelectedRightAfterInitChangesNoFlag)
{
    TestModel loaded(GL_FLAT);
    loaded.add(quadPart()).add(quadPart(10)).installParts();
    loaded.part(1).partFlag |= PART_SELECTED;
    loaded->loadAndInitGL(0, true, nullptr);
    loaded->processParts(4);
    EXPECT_TRUE(loaded.flags(1) & PART_SELECTED);
    EXPECT_TRUE(loaded.flags(1) & PART_SHOWN);
    EXPECT_NE(printed().find("\nxmin=0 xmax=11\n"), std::string::npos);
}

TEST_F(Parts, HideSelectedFromAResetCounterHidesAndDeselects)
{
    model.part(0).partFlag |= PART_SELECTED;
    model.part(1).partFlag |= PART_ELEMENTS_SELECTED;
    model.part(2).partFlag |= PART_NODES_SELECTED | PART_SELECTED;
    model->i = 0;
    model->processParts(4);
    EXPECT_EQ(allFlags(), (Indices{H, H | PART_ELEMENTS_SELECTED, H | PART_NODES_SELECTED, S}));
    EXPECT_EQ(model->i, 4u);
}

TEST_F(Parts, HideSelectedStartsWhereTheLastOperationStopped)
{
    for (unsigned int k = 0; k < 4; ++k) {
        model.part(k).partFlag |= PART_SELECTED;
    }
    model->i = 2;
    model->processParts(4);
    EXPECT_EQ(allFlags(), (Indices{S | PART_SELECTED, S | PART_SELECTED, H, H}));
}

TEST_F(Parts, HideSelectedAfterAListDisplayStartsAtTheListsLength)
{
    for (unsigned int k = 0; k < 4; ++k) {
        model.part(k).partFlag |= PART_SELECTED;
    }
    unsigned int list[] = {1};
    model->setDisplay(1u, list, 2);
    model->processParts(4);
    EXPECT_EQ(allFlags(), (Indices{S | PART_SELECTED, H, H, H}));
}

TEST_F(Parts, HideSelectedAfterClearingTheFirstPartCoversEveryPart)
{
    for (unsigned int k = 0; k < 4; ++k) {
        model.part(k).partFlag |= PART_SELECTED;
    }
    Indices none;
    model->processPartsByID(256, &none);
    model->processParts(4);
    EXPECT_EQ(allFlags(), (Indices{S, H, H, H})) << "the first part had just lost its selection";
}

TEST_F(Parts, AnyOtherOperationChangesNoFlagButRecomputesTheExtents)
{
    model.part(1).partFlag |= anySelection;
    const Indices before = allFlags();
    for (unsigned int op : {0u, 1u, 3u, 6u, 8u, 256u}) {
        forget();
        model->i = 0;
        model->processParts(op);
        EXPECT_EQ(allFlags(), before) << op;
        EXPECT_EQ(printed().find("xmin=0 xmax=31\n"), 0u) << op;
        EXPECT_EQ(model->i, 4u) << op;
    }
}

// --- By part id ---

TEST_F(Parts, ByIdShowsExactlyTheListed)
{
    Indices ids = {12, 14};
    model->processPartsByID(2, &ids);
    EXPECT_EQ(allFlags(), (Indices{H, S, H, S}));
    EXPECT_EQ(printed().find("NUM PARTS=4\nxmin=10 xmax=31\n"), 0u);
    EXPECT_EQ(model->i, 4u);
}

TEST_F(Parts, ByIdHidesExactlyTheListedAndShowsAllOthers)
{
    model.part(3).partFlag = H;
    Indices ids = {11};
    model->processPartsByID(4, &ids);
    EXPECT_EQ(allFlags(), (Indices{H, S, S, S}));
}

TEST_F(Parts, ByIdSelectsExactlyTheListedAndShowsThem)
{
    model.part(0).partFlag = S | PART_SELECTED;
    model.part(1).partFlag = H;
    model.part(2).partFlag = H | PART_HIGHLIGHTED;
    Indices ids = {12};
    model->processPartsByID(8, &ids);
    EXPECT_EQ(allFlags(), (Indices{S, S | PART_SELECTED, H | PART_HIGHLIGHTED, S}));
}

TEST_F(Parts, ByIdHighlightsExactlyTheListedSoItAlsoEndsOtherHighlights)
{
    model.part(0).partFlag = S | PART_HIGHLIGHTED;
    model.part(1).partFlag = H;
    model.part(2).partFlag = H | PART_HIGHLIGHTED;
    Indices ids = {12};
    model->processPartsByID(32, &ids);
    EXPECT_EQ(allFlags(), (Indices{S, S | PART_HIGHLIGHTED, H, S}));
}

TEST_F(Parts, ByIdClearTouchesOnlyTheFirstPartAndPrintsNothing)
{
    for (unsigned int k = 0; k < 4; ++k) {
        model.part(k).partFlag |= PART_SELECTED | PART_HIGHLIGHTED;
    }
    Indices ids = {12, 13, 99};
    model->processPartsByID(256, &ids);
    const unsigned int both = S | PART_SELECTED | PART_HIGHLIGHTED;
    EXPECT_EQ(allFlags(), (Indices{S, both, both, both}));
    EXPECT_EQ(model->i, 0u);
    EXPECT_EQ(printed(), "");
    EXPECT_TRUE(glrecord::lines().empty()) << "no recomputed extents";
}

TEST_F(Parts, ByIdReportsUnknownIdsOnceForEveryMention)
{
    Indices ids = {99, 12, 99, 0};
    model->processPartsByID(8, &ids);
    EXPECT_EQ(printed().find("NUM PARTS=4\nPID NOT FOUND=99\nPID NOT FOUND=99\nPID NOT FOUND=0\nxmin="), 0u);
    EXPECT_TRUE(model.flags(1) & PART_SELECTED);
}

TEST_F(Parts, ByIdAcceptsAnIdTwice)
{
    Indices ids = {13, 13};
    model->processPartsByID(8, &ids);
    EXPECT_EQ(allFlags(), (Indices{S, S, S | PART_SELECTED, S}));
}

TEST_F(Parts, ByIdCountsTheIdsThatAreKnownNotTheParts)
{
    model->pidMap.erase(11);
    Indices none;
    model->processPartsByID(8, &none);
    EXPECT_EQ(printed().find("NUM PARTS=3\n"), 0u);
}

TEST_F(Parts, ByIdSetsTheBitsOfAnyOtherOperationAsTheyAre)
{
    Indices ids = {12};
    model->processPartsByID(64, &ids);
    EXPECT_EQ(allFlags(), (Indices{S, S | PART_BOX_SHOWN, S, S}));
    model->processPartsByID(6, &ids);
    EXPECT_EQ(model.flags(1), S | H | PART_BOX_SHOWN) << "nothing is prepared or repaired for it";
    EXPECT_NE(printed().find("xmin="), std::string::npos);
}

TEST(PartsOfAnEmptyModel, ByIdClearReturnsAtOnce)
{
    OutputCapture output;
    CAEEnv env("dir", "model", GL_FLAT);
    env.i = 7;
    env.processPartsByID(256, nullptr);
    EXPECT_EQ(env.i, 0u);
    EXPECT_EQ(output.all(), "");
}

TEST_F(Parts, SelectByIdAddsToTheSelectionOnly)
{
    model.part(0).partFlag = S | PART_SELECTED;
    model.part(1).partFlag = H;
    model->i = 2;
    Indices ids = {12, 77};
    model->selectPartsByID(&ids);
    EXPECT_EQ(allFlags(), (Indices{S | PART_SELECTED, H | PART_SELECTED, S, S})) << "hidden parts stay hidden";
    EXPECT_EQ(printed(), "NUM PARTS=4\nPID NOT FOUND=77\n");
    EXPECT_TRUE(glrecord::lines().empty());
    EXPECT_EQ(model->i, 2u) << "no loop over parts";
}

// --- Segment part ---

TEST_F(Parts, ASegmentPartIsSetWithItsNormalsAndTheExtentsRecomputed)
{
    PartInfoStr segment = quadPart(500);
    model->setSegmentPart(&segment);
    EXPECT_EQ(model->segmentPart, &segment);
    EXPECT_TRUE(model->checkComputeFlag(SEGMENT_PART_SET));
    EXPECT_TRUE(segment.partFlag & PART_ELEMENT_NORMALS_DONE);
    EXPECT_EQ(segment.partElements.elmNormals[2], 1);
    EXPECT_EQ(printed().find("xmin=0 xmax=31\n"), 0u) << "the segment part does not count in them";
    releasePart(segment);
}

TEST_F(Parts, NoSegmentPartLeavesTheFlagAsItWas)
{
    model->setSegmentPart(nullptr);
    EXPECT_FALSE(model->checkComputeFlag(SEGMENT_PART_SET));
    PartInfoStr segment = quadPart();
    model->setSegmentPart(&segment);
    forget();
    model->setSegmentPart(nullptr);
    EXPECT_TRUE(model->checkComputeFlag(SEGMENT_PART_SET));
    EXPECT_EQ(model->segmentPart, &segment);
    EXPECT_EQ(printed(), "");
    releasePart(segment);
}

TEST(SegmentPart, IsNotOwnedByTheEnvironment)
{
    OutputCapture output;
    glrecord::start(glrecord::Mode::RecordOnly);
    PartInfoStr segment = quadPart();
    {
        TestModel model(GL_FLAT);
        model.install();
        model->setSegmentPart(&segment);
    }
    EXPECT_EQ(segment.partNodes.numNodes, 4u);
    EXPECT_EQ(segment.partNodes.nodeValues[3], 1);
    releasePart(segment);
    glrecord::stop();
}

// --- Flags and accessors ---

TEST_F(Parts, ComputeFlagsAreSetClearedAndTestedByBit)
{
    model->setComputeFlag(SEGMENT_PART_SET | NODE_LIST_SELECTED);
    model->clearComputeFlag(SEGMENT_PART_SET | ELEMENT_SELECT_LISTS_CREATED);
    EXPECT_EQ(model->compFlag, NODE_LIST_SELECTED);
    EXPECT_EQ(model->checkComputeFlag(SEGMENT_PART_SET), 0);
    EXPECT_EQ(model->checkComputeFlag(SEGMENT_PART_SET | NODE_LIST_SELECTED), static_cast<int>(NODE_LIST_SELECTED));
}

TEST_F(Parts, AnyPickTypeIsStored)
{
    model->setPickType(PICK_TYPE_NODE);
    EXPECT_EQ(model->pickType, PICK_TYPE_NODE);
    model->setPickType(5);
    EXPECT_EQ(model->pickType, 5u);
}

TEST_F(Parts, AccessorsGiveTheLiveObjects)
{
    EXPECT_EQ(model->getMViewPtr(), model->mView);
    EXPECT_EQ(model->getMTransformPtr(), model->mTrans);
    EXPECT_EQ(model->getNumParts(), 4);
    EXPECT_EQ(model->getPartsList(), model->partsInfoList);
    EXPECT_EQ(model->getPartsMapPtr(), &model->pidMap);
    EXPECT_EQ(model->getExtents(), model->modelExtents);
    EXPECT_STREQ(model->getModelName(), "model");
}
