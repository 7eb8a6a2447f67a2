// The frame bracket: matrices pushed, overlays drawn, matrices kept, one-shot.
#include "transformtest.h"

#include "unit_axis.h"

namespace {
class TransformFrame : public TransformTest
{
protected:
    // What processEnd calls around the overlay of an operation, the depth test being off.
    Lines endOfFrame(const Lines& overlay)
    {
        Lines lines = {"glIsEnabled(GL_DEPTH_TEST)", "glDisable(GL_DEPTH_TEST)"};
        const Lines triad = triadLines();
        lines.insert(lines.end(), triad.begin(), triad.end());
        lines.insert(lines.end(), overlay.begin(), overlay.end());
        const Lines rest = {"glGetDoublev(GL_MODELVIEW_MATRIX)",
                            "glGetDoublev(GL_PROJECTION_MATRIX)",
                            "glMatrixMode(GL_MODELVIEW)",
                            "glPopMatrix()",
                            "glPopMatrix()",
                            "glPopMatrix()"};
        lines.insert(lines.end(), rest.begin(), rest.end());
        return lines;
    }

    Lines triadLines()
    {
        glrecord::clear();
        UnitAxis::render(trans->axisLength, 0.0f);
        const Lines lines = glrecord::lines();
        glrecord::clear();
        return lines;
    }

    // The lines of processEnd with this operation pending, without the one-shot of the first frame.
    Lines frameEndLines(int operation)
    {
        trans->onlyOnce = 0;
        trans->mTransType = NO_TRANSFORM; // the operation's step itself is not wanted
        trans->processStart();
        trans->mTransType = operation;
        glrecord::clear();
        trans->processEnd();
        return glrecord::lines();
    }
};

const Lines marker = {"glColor3f(1,0,0)",   "glPointSize(15)",           "glEnable(GL_POINT_SMOOTH)",
                      "glBegin(GL_POINTS)", "glVertex3dv(1.5,-2,0.25)",  "glEnd()",
                      "glPointSize(1)",     "glDisable(GL_POINT_SMOOTH)"};
} // namespace

TEST_F(TransformFrame, FrameStartPushesPanRotationsAndScale)
{
    const float globalTrans[3] = {1, 2, 3}, globalRot[3] = {10, 20, 30}, localTrans[3] = {4, 5, 6};
    const double pivot[3] = {7, 8, 9};
    std::copy(globalTrans, globalTrans + 3, trans->globalTrans);
    std::copy(globalRot, globalRot + 3, trans->globalRot);
    std::copy(localTrans, localTrans + 3, trans->localTrans);
    std::copy(pivot, pivot + 3, trans->centerOfWindow);
    setScale(2, 3, 4);
    glTranslatef(100, 200, 300);
    glrecord::clear();
    trans->processStart();
    EXPECT_EQ(glrecord::lines(),
              (Lines{"glGetDoublev(GL_MODELVIEW_MATRIX)", "glMatrixMode(GL_MODELVIEW)", "glPushMatrix()",
                     "glLoadMatrixd(1,0,0,0,0,1,0,0,0,0,1,0,101,202,303,1)", "glPushMatrix()", "glTranslatef(7,8,9)",
                     "glRotatef(10,1,0,0)", "glRotatef(20,0,1,0)", "glRotatef(30,0,0,1)",
                     "glMultMatrixf(1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1)", "glTranslatef(-7,-8,-9)", "glPushMatrix()",
                     "glTranslatef(4,5,6)", "glScalef(2,3,4)"}));
    EXPECT_EQ(triple(trans->mvMatrixLocal + 12), (DoubleTriple{101, 202, 303}));
}

TEST_F(TransformFrame, RotationMatrixGoesOutAsItIsStored)
{
    trans->curQuat[0] = 1; // x = 1, y = 2, z = 3, w = 4
    trans->curQuat[1] = 2;
    trans->curQuat[2] = 3;
    trans->curQuat[3] = 4;
    trans->processStart();
    EXPECT_EQ(glrecord::matching("glMultMatrixf"),
              (Lines{"glMultMatrixf(-25,-20,22,0,28,-19,4,0,-10,20,-9,0,0,0,0,1)"}));
    EXPECT_EQ(trans->rotMatrix[0][2], 22);
}

TEST_F(TransformFrame, EveryFrameStartPrintsPanAndRotationOnStandardError)
{
    OutputCapture errors(2);
    trans->globalTrans[1] = 1.5f;
    operate(ROTATE_Z_CW);
    trans->processStart();
    EXPECT_EQ(errors.take(), "GTRAN=0.000000 1.500000 0.000000\nGTRAN=0.000000 0.000000 -5.000000\n");
    trans->processEnd();
    trans->processStart();
    EXPECT_EQ(errors.take(), "GTRAN=0.000000 1.500000 0.000000\nGTRAN=0.000000 0.000000 -5.000000\n");
    EXPECT_EQ(printed().find("GTRAN"), std::string::npos);
}

TEST_F(TransformFrame, PanActsInEyeSpace)
{
    trans->globalRot[2] = 90;
    trans->globalTrans[0] = 5;
    trans->processStart();
    EXPECT_NEAR(glrecord::modelview()[12], 5, 1e-12);
    EXPECT_NEAR(glrecord::modelview()[13], 0, 1e-12);
}

TEST_F(TransformFrame, RotationsTurnAboutThePivot)
{
    trans->centerOfWindow[0] = 2;
    trans->globalRot[2] = 90;
    trans->processStart();
    // The model's (2, 0, 0) stays where it is.
    EXPECT_NEAR(2 * glrecord::modelview()[0] + glrecord::modelview()[12], 2, 1e-12);
    EXPECT_NEAR(2 * glrecord::modelview()[1] + glrecord::modelview()[13], 0, 1e-12);
}

TEST_F(TransformFrame, FrameEndDrawsTheTriadAndPopsThreeMatrices)
{
    EXPECT_EQ(frameEndLines(NO_TRANSFORM), endOfFrame({}));
    EXPECT_EQ(glrecord::state().stacks[GL_MODELVIEW].size(), 1u);
}

TEST_F(TransformFrame, FrameEndSwitchesTheDepthTestBackOnOnlyIfItWasOn)
{
    glEnable(GL_DEPTH_TEST);
    const Lines lines = frameEndLines(NO_TRANSFORM);
    EXPECT_NE(trans->depthTest, 0);
    EXPECT_EQ(lines[lines.size() - 5], "glEnable(GL_DEPTH_TEST)") << "after the matrices were read";
    EXPECT_EQ(lines.size(), endOfFrame({}).size() + 1);
    glDisable(GL_DEPTH_TEST);
    EXPECT_EQ(frameEndLines(NO_TRANSFORM), endOfFrame({}));
    EXPECT_EQ(trans->depthTest, 0);
}

TEST_F(TransformFrame, FrameEndKeepsTheMatricesTheModelWasDrawnWith)
{
    glMatrixMode(GL_PROJECTION);
    glScalef(5, 6, 7);
    glMatrixMode(GL_MODELVIEW);
    trans->setTranslation(std::array<float, 3>{1, 2, 3}.data());
    trans->processStart();
    glrecord::Matrix drawnWith = glrecord::modelview();
    trans->processEnd();
    EXPECT_TRUE(std::equal(drawnWith.begin(), drawnWith.end(), trans->mvMatrix));
    EXPECT_EQ(trans->mvMatrix[13], 2);
    EXPECT_EQ(trans->projMatrix[5], 6);
}

TEST_F(TransformFrame, FiveOperationsMarkTheCentreOfScaling)
{
    const double center[3] = {1.5, -2, 0.25};
    for (int operation = NO_TRANSFORM; operation <= TRANS_MAX; ++operation) {
        const bool marked = operation == SCALE_INCR || operation == SCALE_DECR || operation == GLOBAL_SCALE ||
                            operation == RECT_SCALE || operation == RECT_PICK;
        if (operation == START_RUBBER_BAND) {
            continue;
        }
        std::copy(center, center + 3, trans->centerOfScaling);
        EXPECT_EQ(frameEndLines(operation), endOfFrame(marked ? marker : Lines())) << "operation " << operation;
    }
}

TEST_F(TransformFrame, RubberBandIsDrawnWithThePreviousProjection)
{
    trans->projMatrix[0] = 0.5; // the corner (800, 600) is x = 2 with this one and x = 1 with the one in force
    operate(START_RUBBER_BAND, {400, 300, 800, 600});
    frameEndLines(START_RUBBER_BAND);
    EXPECT_NE(glrecord::find("glVertex3d(2,1,-0)"), -1);
    EXPECT_EQ(trans->projMatrix[0], 1);
}

TEST_F(TransformFrame, PolylineShowsFromItsFourthPoint)
{
    for (int points = 1; points <= 4; ++points) {
        addPoints(1);
        const Lines lines = frameEndLines(START_POLYLINE);
        const auto polygons = std::count(lines.begin(), lines.end(), "glBegin(GL_POLYGON)");
        EXPECT_EQ(polygons, points > 3 ? 1 : 0) << points << " points";
    }
}

TEST_F(TransformFrame, OverlayIsDrawnForOneFrameOnly)
{
    operate(GLOBAL_SCALE, {0.5f});
    trans->processStart();
    trans->processEnd();
    EXPECT_EQ(trans->mTransType, NO_TRANSFORM);
    EXPECT_EQ(glrecord::count("glPointSize"), 2);
    trans->processStart();
    trans->processEnd();
    EXPECT_EQ(glrecord::count("glPointSize"), 2);
}

TEST_F(TransformFrame, FirstFrameEndComputesThePivotOnce)
{
    trans->setTranslation(std::array<float, 3>{-3, -4, -5}.data());
    trans->onlyOnce = 7;
    trans->processStart();
    forget();
    trans->processEnd();
    EXPECT_EQ(trans->onlyOnce, 5) << "only the bit value 2 is cleared";
    EXPECT_EQ(triple(trans->centerOfWindow), (DoubleTriple{3, 4, 5})) << "with the matrices of this frame";
    EXPECT_EQ(glrecord::lines().back(), "gluUnProject(400,300,0.5)");
    EXPECT_EQ(printedLines()[0], "compute wc w/2=400 h/2=300");
    trans->centerOfWindow[0] = 99;
    trans->processStart();
    trans->processEnd();
    EXPECT_EQ(trans->centerOfWindow[0], 99);
}

TEST_F(TransformFrame, FirstFrameOverwritesThePivotSetBefore)
{
    trans->updateWindowCenter();
    EXPECT_EQ(triple(trans->centerOfWindow), (DoubleTriple{1, 1.5, 2.5}));
    trans->processStart();
    trans->processEnd();
    EXPECT_EQ(triple(trans->centerOfWindow), (DoubleTriple{0, 0, 0}));
}
