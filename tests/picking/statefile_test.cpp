// The view state file: its bytes one by one, what comes back from it, and files that end early or belong to another
// model.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

#include <unistd.h>

#include "modelbuilder.h"
#include "mtrans.h"
#include "mview.h"
#include "recordedtest.h"

namespace {
const std::size_t namesOffset = 4 + 3 + 4 + 5; // "dir" and "model" with their lengths

// One field of the transformation block: where it stands behind the parts, counted from the shade model.
struct Row
{
    const char* name;
    std::size_t offset, bytes;
};
const Row stateRows[] = {{"shadeModel", 0, 4},        {"blendFlag", 4, 4},     {"polygonMode", 8, 8},
                         {"mViewType", 16, 4},        {"depthTest", 20, 4},    {"localTrans", 24, 12},
                         {"globalRot", 36, 12},       {"globalTrans", 48, 12}, {"localScale", 60, 12},
                         {"mvMatrixLocal", 72, 128},  {"mvMatrix", 200, 128},  {"projMatrix", 328, 128},
                         {"centerOfWindow", 456, 24}, {"curQuat", 480, 16}};
const std::size_t stateOffset = 496;

std::string readFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

template <class T, std::size_t COUNT> std::string bytesOf(const T (&values)[COUNT])
{
    return std::string(reinterpret_cast<const char*>(values), sizeof values);
}
template <class T> std::string bytesOf(T value)
{
    return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

template <class T, std::size_t COUNT> void fill(T (&values)[COUNT], T first)
{
    for (std::size_t k = 0; k < COUNT; ++k) {
        values[k] = first + static_cast<T>(k);
    }
}

class StateFile : public RecordedTest
{
protected:
    void SetUp() override
    {
        RecordedTest::SetUp();
        char name[] = "/tmp/kvo-state-XXXXXX";
        close(mkstemp(name));
        path = name;
        model.add(quadPart()).add(quadPart(10)).install();
        forget();
    }

    void TearDown() override
    {
        unlink(path.c_str());
        RecordedTest::TearDown();
    }

    // Every field of the transformation with a value of its own.
    static void number(MTransform& trans)
    {
        trans.depthTest = 1;
        fill(trans.localTrans, 10.0f);
        fill(trans.globalRot, 20.0f);
        fill(trans.globalTrans, 30.0f);
        fill(trans.localScale, 40.0f);
        fill(trans.mvMatrix, 100.0);
        fill(trans.mvMatrixLocal, 200.0);
        fill(trans.projMatrix, 300.0);
        fill(trans.centerOfWindow, 400.0);
        fill(trans.curQuat, 50.0f);
    }

    std::string saved(TestModel& source)
    {
        EXPECT_EQ(source->save(path.c_str()), 0);
        return readFile(path);
    }

    std::string row(const std::string& bytes, const std::string& name, std::size_t parts = 2)
    {
        for (const Row& r : stateRows) {
            if (name == r.name) {
                return bytes.substr(namesOffset + 20 * parts + r.offset, r.bytes);
            }
        }
        ADD_FAILURE() << "no row " << name;
        return "";
    }

    // Restores what stands behind the names. How much was consumed is left in `consumed`.
    void restore(TestModel& target, const std::string& bytes)
    {
        std::ofstream(path, std::ios::binary) << bytes;
        FILE* const file = std::fopen(path.c_str(), "rb");
        std::fseek(file, namesOffset, SEEK_SET);
        target->restore(file);
        consumed = std::ftell(file);
        EXPECT_EQ(std::fclose(file), 0) << "the host's to close";
    }

    std::string path;
    std::size_t consumed = 0;
    TestModel model{GL_FLAT};
};
} // namespace

// --- Saving ---

TEST_F(StateFile, SizeFollowsFromNamesAndParts)
{
    EXPECT_EQ(saved(model).size(), 504u + 3 + 5 + 20 * 2);
    TestModel empty(GL_FLAT);
    empty.install();
    EXPECT_EQ(saved(empty).size(), 504u + 3 + 5);
    empty->dirName = "";
    empty->modelName = std::string(300, 'm');
    EXPECT_EQ(saved(empty).size(), 504u + 300);
}

TEST_F(StateFile, BeginsWithTheNamesAndTheirLengths)
{
    const std::string bytes = saved(model);
    EXPECT_EQ(bytes.substr(0, namesOffset), std::string("\3\0\0\0dir\5\0\0\0model", namesOffset))
        << "without terminators";
}

TEST_F(StateFile, PartsFollowInListOrderEachWithFlagAndColour)
{
    model.part(0).partFlag = 0x12345678;
    model.part(1).partFlag = 0x80000002;
    fill(model.part(0).partColor, 1.0f);
    fill(model.part(1).partColor, 5.0f);
    const std::string bytes = saved(model);
    const std::string expected = bytesOf(0x12345678u) + bytesOf(model.part(0).partColor) + bytesOf(0x80000002u) +
                                 bytesOf(model.part(1).partColor);
    EXPECT_EQ(bytes.substr(namesOffset, 40), expected);
}

TEST_F(StateFile, EnvironmentBlockFollowsTheParts)
{
    model->shadeModel = GL_SMOOTH;
    glEnable(GL_BLEND);
    glPolygonMode(GL_FRONT, GL_LINE);
    glPolygonMode(GL_BACK, GL_POINT);
    model->mView->mViewType = BACK_VIEW;
    const std::string bytes = saved(model);
    EXPECT_EQ(row(bytes, "shadeModel"), bytesOf(int32_t(GL_SMOOTH)));
    EXPECT_EQ(row(bytes, "blendFlag"), bytesOf(int32_t(1)));
    EXPECT_EQ(row(bytes, "polygonMode"), bytesOf(int32_t(GL_LINE)) + bytesOf(int32_t(GL_POINT)));
    EXPECT_EQ(row(bytes, "mViewType"), bytesOf(int32_t(BACK_VIEW)));
}

TEST_F(StateFile, TransformationBlockEndsTheFileRowByRow)
{
    number(*model->mTrans);
    MTransform& t = *model->mTrans;
    const std::string bytes = saved(model);
    EXPECT_EQ(row(bytes, "depthTest"), bytesOf(int32_t(1)));
    EXPECT_EQ(row(bytes, "localTrans"), bytesOf(t.localTrans));
    EXPECT_EQ(row(bytes, "globalRot"), bytesOf(t.globalRot));
    EXPECT_EQ(row(bytes, "globalTrans"), bytesOf(t.globalTrans));
    EXPECT_EQ(row(bytes, "localScale"), bytesOf(t.localScale));
    EXPECT_EQ(row(bytes, "centerOfWindow"), bytesOf(t.centerOfWindow));
    EXPECT_EQ(row(bytes, "curQuat"), bytesOf(t.curQuat));
    EXPECT_EQ(bytes.size(), namesOffset + 40 + stateOffset);
}

TEST_F(StateFile, LocalMatrixComesBeforeTheCompleteOne)
{
    number(*model->mTrans);
    const std::string bytes = saved(model);
    double expected[48];
    fill(expected, 200.0); // mvMatrixLocal
    for (int k = 0; k < 16; ++k) {
        expected[16 + k] = 100 + k; // mvMatrix
        expected[32 + k] = 300 + k; // projMatrix
    }
    EXPECT_EQ(bytes.substr(namesOffset + 40 + 72, 384), bytesOf(expected));
}

TEST_F(StateFile, ShadeModelIsTheFieldsButBlendingAndPolygonModeAreTheContexts)
{
    model->shadeModel = GL_FLAT;
    glShadeModel(GL_SMOOTH);
    model->blendFlag = 1;
    model->polygonMode[0] = model->polygonMode[1] = GL_POINT;
    const std::string bytes = saved(model);
    EXPECT_EQ(row(bytes, "shadeModel"), bytesOf(int32_t(GL_FLAT)));
    EXPECT_EQ(row(bytes, "blendFlag"), bytesOf(int32_t(0)));
    EXPECT_EQ(row(bytes, "polygonMode"), bytesOf(int32_t(GL_FILL)) + bytesOf(int32_t(GL_FILL)));
    EXPECT_EQ(model->blendFlag, 0) << "the fields follow";
    EXPECT_EQ(model->polygonMode[0], GL_FILL);
    EXPECT_EQ(model->polygonMode[1], GL_FILL);
}

TEST_F(StateFile, SavingPrintsNothingAndAsksForBlendingAndPolygonModeOnly)
{
    saved(model);
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(glrecord::lines(), (Lines{"glIsEnabled(GL_BLEND)", "glGetIntegerv(GL_POLYGON_MODE)"}));
}

TEST_F(StateFile, SavedDepthTestIsThatOfTheLastFrame)
{
    glDisable(GL_DEPTH_TEST);
    model->mTrans->depthTest = 1;
    EXPECT_EQ(row(saved(model), "depthTest"), bytesOf(int32_t(1)));
    glEnable(GL_DEPTH_TEST);
    model->mTrans->depthTest = 0;
    EXPECT_EQ(row(saved(model), "depthTest"), bytesOf(int32_t(0)));
}

TEST_F(StateFile, DepthTestIsOffInAFileSavedBeforeAnyFrame)
{
    glEnable(GL_DEPTH_TEST);
    EXPECT_EQ(row(saved(model), "depthTest"), bytesOf(int32_t(0)));
}

TEST_F(StateFile, AFrameCapturesTheDepthTestForTheFile)
{
    model->resizeModel(100, 100);
    glEnable(GL_DEPTH_TEST);
    model->computeNormals();
    model->renderModel();
    EXPECT_NE(row(saved(model), "depthTest"), bytesOf(int32_t(0)));
    glDisable(GL_DEPTH_TEST);
    model->renderModel();
    EXPECT_EQ(row(saved(model), "depthTest"), bytesOf(int32_t(0)));
}

TEST_F(StateFile, SavingLoopsOverThePartsWithTheSharedCounter)
{
    model->i = 77;
    saved(model);
    EXPECT_EQ(model->i, 2u);
}

TEST_F(StateFile, UnwritableFileIsReportedByTheNameGiven)
{
    EXPECT_EQ(model->save("/no/such/folder/x.state"), 1);
    EXPECT_EQ(printed(), "Unable to open file </no/such/folder/x.state> to save\n");
    EXPECT_EQ(model->filePtr, nullptr);
    EXPECT_EQ(glrecord::lines(), Lines{});
}

TEST_F(StateFile, ViewAndTransformationWriteTheirOwnBlocks)
{
    number(*model->mTrans);
    FILE* file = std::fopen(path.c_str(), "wb");
    model->mView->save(file);
    EXPECT_EQ(std::ftell(file), 4);
    model->mTrans->save(file);
    EXPECT_EQ(std::ftell(file), 480);
    std::fclose(file);
    const std::string blocks = readFile(path);
    EXPECT_EQ(blocks, saved(model).substr(namesOffset + 40 + 16));
}

// --- Restoring ---

TEST_F(StateFile, EveryFieldComesBackAsSaved)
{
    number(*model->mTrans);
    model.part(0).partFlag = PART_HIDDEN | PART_SELECTED | PART_HIGHLIGHTED | PART_BOX_SHOWN | 0x40000000;
    fill(model.part(1).partColor, 7.0f);
    model->mView->mViewType = LEFT_VIEW;
    const std::string bytes = saved(model);

    TestModel fresh(GL_FLAT);
    fresh.add(quadPart()).add(quadPart(10)).install();
    restore(fresh, bytes);
    EXPECT_EQ(consumed, bytes.size());
    EXPECT_EQ(fresh.flags(0), model.flags(0) | (fresh.flags(0) & PART_ELEMENT_NORMALS_DONE))
        << "whole; restoring the shade model may add that normals were computed";
    EXPECT_EQ(fresh.flags(0) & 0x40000000, 0x40000000u);
    EXPECT_EQ(bytesOf(fresh.part(1).partColor), bytesOf(model.part(1).partColor));
    EXPECT_EQ(fresh->mView->mViewType, LEFT_VIEW);
    const MTransform &t = *fresh->mTrans, &s = *model->mTrans;
    EXPECT_EQ(t.depthTest, 1);
    EXPECT_EQ(bytesOf(t.localTrans), bytesOf(s.localTrans));
    EXPECT_EQ(bytesOf(t.globalRot), bytesOf(s.globalRot));
    EXPECT_EQ(bytesOf(t.globalTrans), bytesOf(s.globalTrans));
    EXPECT_EQ(bytesOf(t.localScale), bytesOf(s.localScale));
    EXPECT_EQ(bytesOf(t.mvMatrix), bytesOf(s.mvMatrix));
    EXPECT_EQ(bytesOf(t.mvMatrixLocal), bytesOf(s.mvMatrixLocal));
    EXPECT_EQ(bytesOf(t.projMatrix), bytesOf(s.projMatrix));
    EXPECT_EQ(bytesOf(t.centerOfWindow), bytesOf(s.centerOfWindow));
    EXPECT_EQ(bytesOf(t.curQuat), bytesOf(s.curQuat));
}

TEST_F(StateFile, BlendingAndLineModeComeBackInAFreshEnvironment)
{
    glEnable(GL_BLEND);
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    const std::string bytes = saved(model);
    glDisable(GL_BLEND);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);

    TestModel fresh(GL_FLAT);
    fresh.add(quadPart()).add(quadPart(10)).install();
    restore(fresh, bytes);
    EXPECT_TRUE(glrecord::state().enabled.count(GL_BLEND));
    EXPECT_EQ(glrecord::state().polygonMode[0], GL_LINE);
    EXPECT_EQ(glrecord::state().polygonMode[1], GL_LINE);
    EXPECT_EQ(fresh->blendFlag, 1);
    EXPECT_EQ(fresh->polygonMode[0], GL_LINE);
}

TEST_F(StateFile, FrontPolygonModeIsAppliedToBothFaces)
{
    glPolygonMode(GL_FRONT, GL_POINT);
    glPolygonMode(GL_BACK, GL_LINE);
    const std::string bytes = saved(model);
    forget();
    restore(model, bytes);
    EXPECT_EQ(glrecord::matching("glPolygonMode"), Lines{"glPolygonMode(GL_FRONT_AND_BACK,GL_POINT)"});
    EXPECT_EQ(model->polygonMode[1], GL_LINE) << "read, but not applied";
}

TEST_F(StateFile, RestoringSetsTheStateInTheOrderOfTheFile)
{
    number(*model->mTrans);
    glEnable(GL_BLEND);
    const std::string bytes = saved(model);
    model->computeNormals();
    forget();
    restore(model, bytes);
    EXPECT_EQ(glrecord::lines(),
              (Lines{"glShadeModel(GL_FLAT)", "glEnable(GL_BLEND)", "glBlendFunc(GL_SRC_ALPHA,GL_ONE_MINUS_SRC_ALPHA)",
                     "glPolygonMode(GL_FRONT_AND_BACK,GL_FILL)", "glEnable(GL_DEPTH_TEST)", "glDepthFunc(GL_LESS)",
                     "glDepthRange(0,1)"}));
    const Lines lines = printedLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(isTiming(lines[0], "TIME FOR ELM NORMALS=")) << lines[0];
    EXPECT_EQ(lines[1], "DEPTH ENABLE");
}

TEST_F(StateFile, DepthTestingOffComesBackOffWithoutAWord)
{
    const std::string bytes = saved(model);
    glEnable(GL_DEPTH_TEST);
    forget();
    restore(model, bytes);
    EXPECT_FALSE(glrecord::state().enabled.count(GL_DEPTH_TEST));
    EXPECT_EQ(printed().find("DEPTH"), std::string::npos);
    EXPECT_EQ(glrecord::count("glDepthFunc"), 0);
    EXPECT_EQ(glrecord::count("glDepthRange"), 0);
}

TEST_F(StateFile, AnyNonZeroDepthTestSwitchesItOnOnce)
{
    model->mTrans->depthTest = 0x01000000;
    const std::string bytes = saved(model);
    forget();
    restore(model, bytes);
    EXPECT_TRUE(glrecord::state().enabled.count(GL_DEPTH_TEST));
    const std::string text = printed();
    EXPECT_NE(text.find("DEPTH ENABLE\n"), std::string::npos);
    EXPECT_EQ(text.find("DEPTH ENABLE"), text.rfind("DEPTH ENABLE"));
}

TEST_F(StateFile, RestoredCentreIsNotComputedAgainAtTheNextFrame)
{
    number(*model->mTrans);
    const std::string bytes = saved(model);
    model->mTrans->onlyOnce = 2 | 8;
    restore(model, bytes);
    EXPECT_EQ(model->mTrans->onlyOnce, 8) << "only the one bit is cleared";
    model->resizeModel(100, 100);
    model->computeNormals();
    model->renderModel();
    EXPECT_EQ(model->mTrans->centerOfWindow[0], 400);
}

TEST_F(StateFile, RestoringLeavesExtentsStreamAndComputeFlagsAlone)
{
    model.part(1).partFlag = PART_HIDDEN;
    const std::string bytes = saved(model);
    model.part(1).partFlag = PART_SHOWN;
    model->compFlag = NODE_LIST_SELECTED;
    FILE* const stream = model->filePtr;
    forget();
    restore(model, bytes);
    EXPECT_TRUE(model.flags(1) & PART_HIDDEN);
    EXPECT_EQ(model->modelExtents[1], 11) << "still those of both parts";
    EXPECT_EQ(model->compFlag, NODE_LIST_SELECTED);
    EXPECT_EQ(model->filePtr, stream);
    EXPECT_EQ(glrecord::count("glOrtho"), 0);
}

TEST_F(StateFile, RestoringLeavesTheCounterAtTheNumberOfParts)
{
    const std::string bytes = saved(model);
    model->i = 77;
    restore(model, bytes);
    EXPECT_EQ(model->i, 2u);
}

TEST_F(StateFile, ShadeModelComesBackWithItsNormals)
{
    model->shadeModel = GL_SMOOTH;
    const std::string bytes = saved(model);
    TestModel fresh(GL_FLAT);
    fresh.add(quadPart()).add(quadPart(10)).install();
    restore(fresh, bytes);
    EXPECT_EQ(fresh->shadeModel, GL_SMOOTH);
    EXPECT_EQ(glrecord::state().shadeModel, GL_SMOOTH);
    EXPECT_NE(fresh.part(0).partNodes.nodeNormals, nullptr);
}

// --- Flags without arrays ---

TEST_F(StateFile, RestoredSelectionFlagsWithoutMarksDrawWithoutThem)
{
    model.part(0).partFlag |= PART_ELEMENTS_SELECTED | PART_NODES_SELECTED;
    const std::string bytes = saved(model);
    TestModel fresh(GL_FLAT);
    fresh.add(quadPart()).add(quadPart(10)).install();
    restore(fresh, bytes);
    fresh->resizeModel(100, 100);
    forget();
    fresh->renderModel();
    EXPECT_EQ(glrecord::count("glBegin"), int(glrecord::matching("glEnd").size()));
    EXPECT_EQ(glrecord::matching("glColor4fv(0,0,1").size(), 0u) << "nothing in the selection colour";
    EXPECT_EQ(glrecord::count("glPointSize"), 0);
    EXPECT_GE(glrecord::count("glVertex3fv"), 8) << "both parts are drawn";
}

TEST_F(StateFile, RestoredSelectionFlagsWithoutMarksAreSafeToSelectOn)
{
    model.part(0).partFlag |= PART_ELEMENTS_SELECTED | PART_NODES_SELECTED;
    const std::string bytes = saved(model);
    TestModel fresh(GL_FLAT);
    fresh.add(quadPart()).add(quadPart(10)).install();
    restore(fresh, bytes);
    unsigned int part = 2, number = 1;
    fresh->selectElement(&part, &number);
    fresh->selectNode(&part, &number);
    EXPECT_EQ(fresh.part(0).partElements.selectedList[0], NOT_SELECTED_CHAR);
    EXPECT_EQ(fresh.part(1).partNodes.selectedNodes[0], SELECTED_CHAR);
}

TEST_F(StateFile, RestoredNormalsFlagWithoutNormalsDrawsNothingOfThePart)
{
    model->setShadeModel(GL_SMOOTH); // saved smooth, with normals
    const std::string bytes = saved(model);
    TestModel fresh(GL_FLAT);
    fresh.add(quadPart()).add(quadPart(10)).install();
    restore(fresh, bytes);
    EXPECT_EQ(fresh.part(0).partNodes.nodeNormals, nullptr) << "the flag says that they are there";
    fresh->resizeModel(100, 100);
    forget();
    fresh->renderModel();
    EXPECT_EQ(glrecord::count("glDrawElements"), 0);
    EXPECT_LT(glrecord::find("glNormalPointer(GL_FLOAT,0,null)"), 0);
}

TEST_F(StateFile, RestoredNormalsFlagOfASolidWithoutShapesDrawsNothingOfIt)
{
    TestModel source(GL_FLAT), fresh(GL_FLAT);
    source.add(hexaPart()).install();
    source.part(0).partFlag |= PART_ELEMENT_NORMALS_DONE | PART_NODE_NORMALS_DONE | PART_ELEMENTS_SELECTED;
    fresh.add(hexaPart()).install(); // without normals, so without shapes, too
    restore(fresh, saved(source));
    EXPECT_EQ(fresh.part(0).partElements.NPE, nullptr);
    fresh->resizeModel(100, 100);
    forget();
    fresh->renderModel();
    EXPECT_EQ(glrecord::count("glVertex3fv"), 0);
    for (unsigned int type : {PICK_TYPE_PART, PICK_TYPE_ELEMENT}) {
        fresh->setPickType(type);
        fresh->displayPartsByElement();
        EXPECT_EQ(glrecord::count("glVertex3fv"), 0);
    }
}

TEST_F(StateFile, RestoredFlagsWithoutTheNormalsBitComputeThemAgain)
{
    const std::string bytes = saved(model); // before any normals
    model->computeNormals();
    model.part(0).partElements.elmNormals[0] = 42;
    restore(model, bytes);
    EXPECT_TRUE(model.flags(0) & PART_ELEMENT_NORMALS_DONE);
    EXPECT_EQ(model.part(0).partElements.elmNormals[0], 0);
    EXPECT_EQ(model.part(0).partElements.elmNormals[2], 1);
}

TEST_F(StateFile, RestoredFlagsWithoutMarksAreSafeThoughTheListsCountAsMade)
{
    model.part(0).partFlag |= PART_ELEMENTS_SELECTED | PART_NODES_SELECTED;
    restore(model, saved(model));
    model->setComputeFlag(ELEMENT_SELECT_LISTS_CREATED | NODE_SELECT_LISTS_CREATED);
    unsigned int part = 1, number = 1;
    Indices ids = {1}, elements = {101}, parts = {11}, positions = {0};
    model->selectElement(&part, &number);
    model->selectNode(&part, &number);
    model->selectNodes(ids);
    model->selectElements(elements, parts);
    model->selectElementsByIndex(positions, positions);
    EXPECT_EQ(model.part(0).partElements.selectedList, nullptr);
    EXPECT_EQ(model.part(0).partNodes.selectedNodes, nullptr);
    EXPECT_TRUE(model.flags(0) & PART_ELEMENTS_SELECTED);
}

// --- Files that end early or belong to another model ---

TEST_F(StateFile, FilesCutAnywhereLeaveTheFieldsBehindTheCutAsTheyWere)
{
    number(*model->mTrans);
    const std::string bytes = saved(model);
    for (std::size_t cut = namesOffset; cut < bytes.size(); ++cut) {
        TestModel fresh(GL_FLAT);
        fresh.add(quadPart()).add(quadPart(10)).install();
        fresh->mTrans->curQuat[3] = 77;
        fresh->mTrans->centerOfWindow[0] = 88;
        restore(fresh, bytes.substr(0, cut));
        EXPECT_EQ(fresh->mTrans->curQuat[3], 77) << "cut at " << cut;
        if (cut <= namesOffset + 40 + 456) {
            EXPECT_EQ(fresh->mTrans->centerOfWindow[0], 88) << "cut at " << cut;
        }
        EXPECT_EQ(fresh->mTrans->onlyOnce & 2, 0);
    }
}

TEST_F(StateFile, EmptyFileLeavesPartsAndViewAsTheyWere)
{
    model.part(0).partFlag = 0x42;
    model->mView->mViewType = TOP_VIEW;
    fill(model->mTrans->globalTrans, 5.0f);
    restore(model, "");
    EXPECT_EQ(model.flags(0) & 0x42, 0x42u);
    EXPECT_EQ(model.part(0).partColor[1], 0.25f);
    EXPECT_EQ(model->shadeModel, GL_FLAT);
    EXPECT_EQ(model->mView->mViewType, TOP_VIEW);
    EXPECT_EQ(model->mTrans->globalTrans[2], 7);
}

TEST_F(StateFile, EnvironmentWithMorePartsTakesTheFollowingFieldsAsPartData)
{
    model->mView->mViewType = RIGHT_VIEW;
    const std::string bytes = saved(model);
    TestModel larger(GL_FLAT);
    larger.add(quadPart()).add(quadPart(10)).add(makePart(SHELL, 4, {}, {})).install();
    restore(larger, bytes);
    EXPECT_EQ(consumed, bytes.size());
    EXPECT_EQ(larger.flags(2) & GL_FLAT, unsigned(GL_FLAT)) << "the shade model became the flag";
    EXPECT_EQ(bytesOf(larger.part(2).partColor), bytes.substr(namesOffset + 40 + 4, 16))
        << "blend flag, polygon modes and view became the colour";
}

TEST_F(StateFile, ForeignFileNeitherReadsNorWritesOutsideTheRecords)
{
    const std::string noise(2000, '\xA5');
    restore(model, noise);
    EXPECT_EQ(consumed, namesOffset + 40 + stateOffset);
    EXPECT_EQ(model.flags(0), 0xA5A5A5A5u);
    EXPECT_EQ(model->mView->mViewType, int(0xA5A5A5A5u));
    model->resizeModel(100, 100);
    model->renderModel(); // every flag that the file sets without its array is survived
    EXPECT_EQ(model->mTrans->mTransType, NO_TRANSFORM);
}
