// A whole picking pass: its calls and prints in order, what it leaves behind, and the overlays that it draws on the
// way.
#include <algorithm>

#include "modelbuilder.h"
#include "mtrans.h"
#include "mview.h"
#include "pickrect.h"
#include "recordedtest.h"

namespace {
const GLuint half = 0x80000000;

class PickPass : public RecordedTest
{
protected:
    void SetUp() override
    {
        RecordedTest::SetUp();
        errors.reset(new OutputCapture(2));
        model.add(quadPart()).add(quadStripPart(3)).install();
        model->resizeModel(200, 100);
        model->computeNormals();
        model->mTrans->onlyOnce = 0;
        forget();
    }

    int process(unsigned int type = PICK_TYPE_ELEMENT, unsigned int method = SELECT_PICK)
    {
        float region[] = {50, 25.5f, 4, 3};
        return pick.process(static_cast<int>(type), static_cast<int>(method), region);
    }

    // Lines between the drawing of the parts and the end of selection mode.
    static Lines afterParts()
    {
        const Lines all = glrecord::lines();
        const int begin = glrecord::find("glDisableClientState(GL_NORMAL_ARRAY)");
        return Lines(all.begin() + begin, all.begin() + glrecord::find("glRenderMode(GL_RENDER)"));
    }

    static bool has(const Lines& lines, const std::string& line)
    {
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }

    std::unique_ptr<OutputCapture> errors;
    TestModel model{GL_FLAT};
    PickRect pick;
};
} // namespace

// --- The calls in order ---

TEST_F(PickPass, EntersSelectionModeWithOneNameOnTheStack)
{
    process();
    const Lines lines = glrecord::lines();
    ASSERT_GE(lines.size(), 5u);
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 5),
              (Lines{"glGetIntegerv(GL_VIEWPORT)", "glSelectBuffer(524288,data)", "glRenderMode(GL_SELECT)",
                     "glInitNames()", "glPushName(4294967295)"}));
}

TEST_F(PickPass, ProjectsTheExtentsThroughThePickMatrixWithNearAndFarReversed)
{
    process();
    const Lines lines = glrecord::lines();
    const int pickMatrix = glrecord::find("gluPickMatrix");
    ASSERT_GE(pickMatrix, 3);
    EXPECT_EQ(Lines(lines.begin() + pickMatrix - 3, lines.begin() + pickMatrix + 2),
              (Lines{"glMatrixMode(GL_PROJECTION)", "glPushMatrix()", "glLoadIdentity()",
                     "gluPickMatrix(50,25.5,4,3,[0,0,200,100])", "glOrtho(0,3,0,1,9999,-9999)"}));
    EXPECT_GT(glrecord::find("glEnableClientState"), pickMatrix) << "the parts are drawn under it";
    EXPECT_LT(glrecord::find("glTranslatef"), pickMatrix) << "the view is applied before it";
}

TEST_F(PickPass, PutsTheProjectionBackBeforeItLeavesSelectionMode)
{
    process(PICK_TYPE_PART, RECT_PICK);
    const Lines lines = glrecord::lines();
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(Lines(lines.end() - 4, lines.end()),
              (Lines{"glMatrixMode(GL_PROJECTION)", "glPopMatrix()", "glFlush()", "glRenderMode(GL_RENDER)"}));
}

TEST_F(PickPass, LeavesMatricesModeAndErrorsAsTheyWere)
{
    const glrecord::Matrix projection = glrecord::projection(), modelview = glrecord::modelview();
    process();
    EXPECT_EQ(glrecord::projection(), projection);
    EXPECT_EQ(glrecord::modelview(), modelview);
    EXPECT_EQ(glrecord::state().stacks[GL_MODELVIEW].size(), 1u);
    EXPECT_EQ(glrecord::state().stacks[GL_PROJECTION].size(), 1u);
    EXPECT_EQ(glrecord::state().renderMode, GLenum(GL_RENDER));
    EXPECT_EQ(glrecord::state().error, GLenum(GL_NO_ERROR));
}

TEST_F(PickPass, LeavesTheProjectionAsTheCurrentMatrix)
{
    process();
    EXPECT_EQ(glrecord::state().matrixMode, GLenum(GL_PROJECTION));
}

TEST_F(PickPass, CapturesThePickProjectionForLaterUnprojection)
{
    process();
    const glrecord::Matrix projection = glrecord::projection();
    EXPECT_DOUBLE_EQ(model->mTrans->projMatrix[0], projection[0] * 200 / 4) << "enlarged by the region";
    EXPECT_DOUBLE_EQ(model->mTrans->projMatrix[5], projection[5] * 100 / 3);
    model->renderModel();
    EXPECT_DOUBLE_EQ(model->mTrans->projMatrix[0], projection[0]) << "until the next frame";
}

TEST_F(PickPass, UsesUpTheOneComputationOfTheWindowCentre)
{
    model->mTrans->onlyOnce = 2;
    process();
    EXPECT_EQ(model->mTrans->onlyOnce & 2, 0);
}

TEST_F(PickPass, PrintsTheCentreOfTheWindowOnlyIfItIsTheFirst)
{
    model->mTrans->onlyOnce = 2;
    process();
    EXPECT_NE(printed().find("\ncos="), std::string::npos) << "as the first frame does";
    process();
    EXPECT_EQ(printed().find("cos="), std::string::npos);
}

TEST_F(PickPass, WithoutAnEnvironmentItDoesNothing)
{
    CAEEnv::setPtr(nullptr);
    EXPECT_EQ(process(PICK_TYPE_PART, RECT_PICK), 0);
    EXPECT_EQ(glrecord::lines(), Lines{});
    CAEEnv::setPtr(&*model);
}

TEST_F(PickPass, EmptyRegionPicksTheWholeWindow)
{
    const glrecord::Matrix projection = glrecord::projection();
    float region[] = {50, 25, 0, 3};
    pick.process(PICK_TYPE_ELEMENT, RECT_PICK, region);
    EXPECT_TRUE(std::equal(projection.begin(), projection.end(), model->mTrans->projMatrix));
}

// --- Results ---

TEST_F(PickPass, ClickOnEmptySpaceSelectsNothing)
{
    EXPECT_EQ(process(), 0);
    EXPECT_TRUE(pick.zPartMap.empty());
    const Lines lines = printedLines();
    ASSERT_EQ(lines.size(), 2u) << "no hit is reported";
    EXPECT_EQ(lines[0], "MOUSEXY=50,25.5,4,3");
    EXPECT_TRUE(isTiming(lines[1], "TIME FOR DISPLAY PARTS=")) << lines[1];
    EXPECT_EQ(splitLines(errors->all()).size(), 2u) << "the translation and the rotation on standard error";
    EXPECT_EQ(glrecord::count("glIsEnabled"), 1) << "the frame bracket's question, not the choice of a winner";
}

TEST_F(PickPass, HitsAreDecodedAndSelected)
{
    glEnable(GL_DEPTH_TEST);
    glrecord::setSelectResult(1, {2, half, half, 2, 3});
    EXPECT_EQ(process(), 1);
    EXPECT_EQ(std::string(model.part(1).partElements.selectedList, 3), "001");
    EXPECT_NE(printed().find("\nhits = 1\n"), std::string::npos);
}

TEST_F(PickPass, TypeAndMethodAreKeptAndGivenToTheEnvironment)
{
    process(PICK_TYPE_NODE, RECT_PICK);
    EXPECT_EQ(pick.pickType, PICK_TYPE_NODE);
    EXPECT_EQ(pick.pickMethod, unsigned(RECT_PICK));
    EXPECT_EQ(model->pickType, PICK_TYPE_NODE);
    process(0x7777, 99);
    EXPECT_EQ(pick.pickType, 0x7777u);
    EXPECT_EQ(pick.pickMethod, 99u);
    EXPECT_EQ(model->pickType, 0x7777u);
}

TEST_F(PickPass, HitsStayReadableUntilTheNextPass)
{
    glrecord::setSelectResult(1, {1, half, half, 2});
    process(PICK_TYPE_PART);
    EXPECT_EQ(pick.zPartMap.size(), 2u);
    process(PICK_TYPE_PART);
    EXPECT_TRUE(pick.zPartMap.empty());
}

TEST_F(PickPass, OverflowAbandonsThePick)
{
    glrecord::setSelectResult(1, {1, half, half, 2});
    process(PICK_TYPE_PART, POLYLINE_PICK);
    printed();
    glrecord::setSelectResult(-1, {1, half, half, 2}); // earlier hits would have fitted
    EXPECT_EQ(process(PICK_TYPE_PART, RECT_PICK), 0);
    EXPECT_TRUE(pick.zPartMap.empty());
    EXPECT_FALSE(model.flags(1) & PART_SELECTED);
    const Lines lines = printedLines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[2], "ERROR: Too many items got selected. So none got picked");
}

TEST_F(PickPass, OnlyMinusOneMeansOverflow)
{
    glrecord::setSelectResult(-2, {});
    EXPECT_EQ(process(PICK_TYPE_PART), 0);
    const std::string text = printed();
    EXPECT_EQ(text.find("ERROR"), std::string::npos);
    EXPECT_NE(text.find("\nhits = -2\nNUM PARTS SELECTED=0\n"), std::string::npos);
}

TEST_F(PickPass, HitsOfAnEarlierPassDoNotShowThrough)
{
    glrecord::setSelectResult(1, {2, half, half, 2, 3});
    process(PICK_TYPE_ELEMENT, RECT_PICK);
    model->clearSelectedElements();
    glrecord::setSelectResult(1, {1, half, half, 2}); // one name: the word behind it is zero again
    process(PICK_TYPE_ELEMENT, RECT_PICK);
    EXPECT_EQ(std::string(model.part(1).partElements.selectedList, 3), "000");
}

TEST_F(PickPass, NamesReadPastAFullBufferAreZero)
{
    std::vector<GLuint> words(524288, 0);
    const std::vector<GLuint> last = {3, half, half, 2, 3}; // the third name would be read with a fourth, past the end
    std::copy(last.begin(), last.end(), words.end() - 5);
    const int empty = (524288 - 5) / 3; // records without names before it
    glrecord::setSelectResult(empty + 1, words);
    EXPECT_EQ(process(PICK_TYPE_ELEMENT, RECT_PICK), 2);
    EXPECT_EQ(std::string(model.part(1).partElements.selectedList, 3), "001");
    printed();
}

TEST_F(PickPass, PartLoopUsesTheSharedCounter)
{
    model->i = 77;
    process();
    EXPECT_EQ(model->i, 2u);
}

// --- Overlays ---

TEST_F(PickPass, AxisTriadIsDrawnUnderTheNameOfTheLastVisiblePart)
{
    model.part(1).partFlag = PART_HIDDEN;
    process();
    EXPECT_EQ(glrecord::matching("glLoadName"), Lines{"glLoadName(1)"});
    const Lines overlay = afterParts();
    EXPECT_TRUE(has(overlay, "glBegin(GL_LINES)"));
    EXPECT_EQ(std::count_if(overlay.begin(), overlay.end(),
                            [](const std::string& line) { return line.find("glRasterPos") == 0; }),
              3);
    for (const char* call : {"glLoadName", "glPushName", "glPopName", "glInitNames"}) {
        EXPECT_FALSE(
            std::any_of(overlay.begin(), overlay.end(), [&](const std::string& line) { return line.find(call) == 0; }))
            << call << ": the stack stays as the last part left it";
    }
}

TEST_F(PickPass, AxisTriadHasTheNameOfNoPartWhenAllAreHidden)
{
    model.part(0).partFlag = model.part(1).partFlag = PART_HIDDEN;
    glrecord::setSelectResult(1, {1, half, half, 0xFFFFFFFF}); // what OpenGL then answers on the triad
    EXPECT_EQ(process(PICK_TYPE_PART), 1);
    EXPECT_EQ(glrecord::count("glLoadName"), 0);
    EXPECT_TRUE(has(afterParts(), "glBegin(GL_LINES)"));
    EXPECT_EQ(pick.zPartMap.begin()->second.pid, 0xFFFFFFFFu);
    EXPECT_FALSE((model.flags(0) | model.flags(1)) & PART_SELECTED);
}

TEST_F(PickPass, PendingMarkerIsDrawnInThePassAndNotInTheNextFrame)
{
    model->mTrans->mTransType = RECT_PICK;
    process();
    EXPECT_TRUE(has(afterParts(), "glPointSize(15)"));
    EXPECT_EQ(model->mTrans->mTransType, NO_TRANSFORM);
    forget();
    model->renderModel();
    EXPECT_EQ(glrecord::count("glPointSize"), 0);
}

TEST_F(PickPass, PendingPolylineIsDrawnInThePassAndNotInTheNextFrame)
{
    Point3D points[4] = {};
    for (Point3D& point : points) {
        model->mTrans->pointsList.push_back(&point);
    }
    model->mTrans->mTransType = START_POLYLINE;
    process();
    EXPECT_TRUE(has(afterParts(), "glBegin(GL_POLYGON)"));
    forget();
    model->renderModel();
    EXPECT_LT(glrecord::find("glBegin(GL_POLYGON)"), 0);
}

TEST_F(PickPass, PendingRubberBandIsDrawnInThePassWithTheLastFramesProjection)
{
    model->renderModel();
    float band[] = {50, 25, 150, 75};
    model->mTrans->updateValues(START_RUBBER_BAND, band);
    printed();
    process();
    EXPECT_TRUE(has(afterParts(), "glBegin(GL_LINE_LOOP)"));
    EXPECT_NE(printed().find("start world=0.75,0.25,0\nend world=2.25,0.75,0\n"), std::string::npos)
        << "a quarter and three quarters of the extents, not of the pick region";
}

TEST_F(PickPass, PendingKeyboardStepIsCarriedOutByThePassOnce)
{
    model->mTrans->updateValues(ROTATE_Y_CCW, nullptr);
    process();
    EXPECT_EQ(model->mTrans->globalRot[1], 5);
    model->renderModel();
    EXPECT_EQ(model->mTrans->globalRot[1], 5);
}

TEST_F(PickPass, RightAfterItAFrameWithoutViewFitsOnTheProjection)
{
    model->mView->mViewType = NO_VIEW;
    glMatrixMode(GL_MODELVIEW);
    glScalef(0.5f, 0.5f, 0.5f); // so that there is something to fit
    const glrecord::Matrix projection = glrecord::projection();
    process();
    model->renderModel();
    EXPECT_NE(glrecord::projection(), projection) << "nothing selects the modelview before the fit";
}

TEST_F(PickPass, DepthTestIsTheHostsForTheWinnerThoughTheOverlaysAreDrawnWithoutIt)
{
    glEnable(GL_DEPTH_TEST);
    glrecord::setSelectResult(2, {1, half / 2, half, 1, 1, half, half, 2});
    process(PICK_TYPE_PART);
    EXPECT_TRUE(model.flags(0) & PART_SELECTED);
    EXPECT_FALSE(model.flags(1) & PART_SELECTED);
}
