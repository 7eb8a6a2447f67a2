// Operations on the user's transformation: their values and prints.
#include "transformtest.h"

#include <limits>

#include "trackball.h"

namespace {
class Transform : public TransformTest
{
};
} // namespace

// --- Construction and reset ---
TEST_F(Transform, StartsAtRestWithTheOneShotSet)
{
    const MTransform fresh(extents);
    EXPECT_EQ(fresh.mTransType, NO_TRANSFORM);
    EXPECT_EQ(fresh.onlyOnce, 2);
    EXPECT_EQ(fresh.modelExtents, extents);
    EXPECT_TRUE(fresh.pointsList.empty());
    EXPECT_EQ(triple(fresh.localScale), (Triple{1, 1, 1}));
    EXPECT_EQ(fresh.curQuat[3], 1);
}

TEST_F(Transform, CentresAndRectangleStartAtZero)
{
    const MTransform fresh(extents);
    for (const double* center :
         {fresh.centerOfWindow, fresh.centerOfScaling, fresh.startOfScaling, fresh.endOfScaling}) {
        EXPECT_EQ(triple(center), (DoubleTriple{0, 0, 0}));
    }
    for (float value : fresh.mouseValues) {
        EXPECT_EQ(value, 0);
    }
}

TEST_F(Transform, TriadXIsAFifteenthAndTheOthersATenth)
{
    const MTransform fresh(extents);
    EXPECT_EQ(triple(fresh.axisLength), (Triple{4.0f / 15, 7.0f / 10, 9.0f / 10}));
    EXPECT_EQ(printed(), "AXIS LEN=0.266667,0.7,0.9\n");
}

TEST_F(Transform, TriadIsMeasuredFromMagnitudes)
{
    float negative[6] = {-40, -20, 30, 70, -5, 5};
    const MTransform fresh(negative);
    EXPECT_EQ(triple(fresh.axisLength), (Triple{4, 10, 1}));
}

TEST_F(Transform, TriadDoesNotFollowTheExtents)
{
    std::fill(extents, extents + 6, 1000.0f);
    operate(RESET_TRANSFORM);
    trans->processStart();
    trans->processEnd();
    EXPECT_EQ(triple(trans->axisLength), (Triple{4.0f / 15, 7.0f / 10, 9.0f / 10}));
}

TEST_F(Transform, DestructorLeavesThePointsAlone)
{
    addPoints(2);
    const std::vector<Point3D*> held = trans->getPointsList();
    trans.reset();
    EXPECT_FLOAT_EQ(held[1]->point[0], 0.1f);
    for (Point3D* point : held) {
        delete point;
    }
}

TEST_F(Transform, ResetPutsRotationPanAndScaleBack)
{
    std::fill(trans->curQuat, trans->curQuat + 4, 0.5f);
    std::fill(trans->globalRot, trans->globalRot + 3, 10.0f);
    std::fill(trans->globalTrans, trans->globalTrans + 3, 11.0f);
    std::fill(trans->localTrans, trans->localTrans + 3, 12.0f);
    setScale(2, 3, 4);
    step(RESET_TRANSFORM);
    EXPECT_EQ(triple(trans->curQuat), (Triple{0, 0, 0}));
    EXPECT_EQ(trans->curQuat[3], 1);
    for (const float* zero : {trans->globalRot, trans->globalTrans, trans->localTrans}) {
        EXPECT_EQ(triple(zero), (Triple{0, 0, 0}));
    }
    EXPECT_EQ(triple(trans->localScale), (Triple{1, 1, 1}));
    EXPECT_EQ(printed(), "");
}

TEST_F(Transform, ResetKeepsThePivot)
{
    trans->centerOfWindow[0] = 7;
    step(RESET_TRANSFORM);
    EXPECT_EQ(trans->centerOfWindow[0], 7);
}

TEST_F(Transform, ResetKeepsOperationOneShotCentresRectangleMatricesAndPoints)
{
    addPoints(1);
    operate(START_RUBBER_BAND, {1, 2, 3, 4});
    trans->centerOfScaling[1] = 8;
    trans->mvMatrix[12] = 9;
    trans->resetAll();
    EXPECT_EQ(trans->mTransType, START_RUBBER_BAND);
    EXPECT_EQ(trans->onlyOnce, 2);
    EXPECT_EQ(trans->centerOfScaling[1], 8);
    EXPECT_EQ(trans->mvMatrix[12], 9);
    EXPECT_EQ(trans->mouseValues[3], 4);
    EXPECT_EQ(trans->getPointsList().size(), 1u);
}

TEST_F(Transform, SetViewportStartsAtTheOrigin)
{
    std::fill(trans->viewPort, trans->viewPort + 4, 77);
    trans->setViewport(640, 481);
    EXPECT_EQ(printed(), "VIEWPORT=0,0,640,481\n");
    EXPECT_EQ(trans->viewPort[1], 0);
    EXPECT_EQ(trans->viewPort[3], 481);
}

TEST_F(Transform, SetTranslationReplacesTheInnermostTranslation)
{
    float to[3] = {1, 2, 3};
    trans->setTranslation(to);
    trans->setTranslation(to);
    EXPECT_EQ(triple(trans->localTrans), (Triple{1, 2, 3}));
}

// --- setRotation ---
TEST_F(Transform, SetRotationTakesPiAs22Over7)
{
    // 33.3 degrees, in float from left to right: 22 * 33.3 / 1260. Pi would give 0.5811946.
    const float axis[3] = {0, 0, 1};
    float rotation[4] = {0, 0, 1, 33.3f};
    float expected[4];
    axis_to_quat(axis, 0.581428528f, expected);
    trans->setRotation(rotation);
    EXPECT_EQ(trans->curQuat[2], expected[2]);
    EXPECT_EQ(trans->curQuat[3], expected[3]);
}

TEST_F(Transform, SetRotationComesAfterWhatWasThere)
{
    float aboutZ[4] = {0, 0, 1, 90}, aboutX[4] = {1, 0, 0, 90};
    trans->setRotation(aboutZ);
    trans->setRotation(aboutX);
    // The new rotation first, then the accumulated one: x, then z.
    EXPECT_NEAR(trans->curQuat[0], 0.5, 1e-3);
    EXPECT_NEAR(trans->curQuat[1], 0.5, 1e-3);
    EXPECT_NEAR(trans->curQuat[2], 0.5, 1e-3);
}

// --- Steps that wait for the next frame ---
namespace {
struct Step
{
    int operation;
    int axis;
    float change;
};
const Step rotationSteps[] = {{ROTATE_X_CCW, 0, 5}, {ROTATE_X_CW, 0, -5}, {ROTATE_Y_CCW, 1, 5},
                              {ROTATE_Y_CW, 1, -5}, {ROTATE_Z_CCW, 2, 5}, {ROTATE_Z_CW, 2, -5}};

const Step panSteps[] = {
    {TRANS_LEFT, 0, -4.0f / 50}, {TRANS_RIGHT, 0, 4.0f / 50}, {TRANS_UP, 1, 7.0f / 50}, {TRANS_DOWN, 1, -7.0f / 50}};
} // namespace

TEST_F(Transform, RotationStepsAreFiveDegrees)
{
    for (const Step& row : rotationSteps) {
        trans->resetAll();
        step(row.operation);
        Triple expected = {0, 0, 0};
        expected[row.axis] = row.change;
        EXPECT_EQ(triple(trans->globalRot), expected) << "operation " << row.operation;
    }
}

TEST_F(Transform, OnlyCounterClockwiseXPrintsItsAngle)
{
    for (const Step& row : rotationSteps) {
        step(row.operation);
        EXPECT_EQ(printed(), row.operation == ROTATE_X_CCW ? "ROTX=5\n" : "") << "operation " << row.operation;
    }
}

TEST_F(Transform, RotationBeyondAFullTurnWraps)
{
    for (const Step& row : rotationSteps) {
        const float sign = row.change > 0 ? 1.0f : -1.0f;
        trans->globalRot[row.axis] = sign * 357;
        step(row.operation);
        EXPECT_EQ(trans->globalRot[row.axis], sign * 2) << "operation " << row.operation;
    }
}

TEST_F(Transform, FullTurnReads360)
{
    for (const Step& row : rotationSteps) {
        const float sign = row.change > 0 ? 1.0f : -1.0f;
        trans->globalRot[row.axis] = sign * 355;
        step(row.operation);
        EXPECT_EQ(trans->globalRot[row.axis], sign * 360) << "operation " << row.operation;
        step(row.operation);
        EXPECT_EQ(trans->globalRot[row.axis], sign * 5) << "operation " << row.operation;
    }
}

TEST_F(Transform, AngleIsPrintedAfterWrapping)
{
    trans->globalRot[0] = 357;
    step(ROTATE_X_CCW);
    EXPECT_EQ(printed(), "ROTX=2\n");
}

TEST_F(Transform, PanStepsAreAFiftiethOfTheSpan)
{
    for (const Step& row : panSteps) {
        trans->resetAll();
        step(row.operation);
        Triple expected = {0, 0, 0};
        expected[row.axis] = row.change;
        EXPECT_EQ(triple(trans->globalTrans), expected) << "operation " << row.operation;
    }
    EXPECT_EQ(printed(), "");
}

TEST_F(Transform, PanSpanIsTheSumOfMagnitudes)
{
    extents[0] = 10; // 10 to 30: the span is 40, not 20
    extents[1] = 30;
    step(TRANS_RIGHT);
    EXPECT_EQ(trans->globalTrans[0], 40.0f / 50);
}

TEST_F(Transform, PanStepIsAddedInFloat)
{
    trans->globalTrans[0] = 0.1f * 3;
    step(TRANS_RIGHT);
    EXPECT_EQ(trans->globalTrans[0], 0.379999995f); // in double 0.380000025
}

TEST_F(Transform, PanFollowsTheExtents)
{
    extents[1] = 99;
    step(TRANS_RIGHT);
    EXPECT_EQ(trans->globalTrans[0], 2);
}

TEST_F(Transform, StepWaitsForTheNextFrame)
{
    operate(ROTATE_Y_CCW);
    EXPECT_EQ(trans->globalRot[1], 0);
    trans->processStart();
    EXPECT_EQ(trans->globalRot[1], 5);
}

TEST_F(Transform, OnlyTheLastOfTwoWaitingStepsActs)
{
    operate(ROTATE_Y_CCW);
    operate(TRANS_UP);
    trans->processStart();
    EXPECT_EQ(trans->globalRot[1], 0);
    EXPECT_EQ(trans->globalTrans[1], 7.0f / 50);
}

TEST_F(Transform, StepActsForOneFrameOnly)
{
    operate(ROTATE_Y_CCW);
    for (int frames = 0; frames < 3; ++frames) {
        trans->processStart();
        trans->processEnd();
    }
    EXPECT_EQ(trans->globalRot[1], 5);
}

TEST_F(Transform, ScaleStepsPrintTheirStep)
{
    step(SCALE_INCR);
    EXPECT_EQ(printedLines()[0], "local scale w/2=400 h/2=300 SCALE=0.2");
    EXPECT_EQ(triple(trans->localScale), (Triple{1.2f, 1.2f, 1.2f}));
    trans->resetAll();
    step(SCALE_DECR);
    EXPECT_EQ(printedLines()[0], "local scale w/2=400 h/2=300 SCALE=-0.2");
    EXPECT_EQ(triple(trans->localScale), (Triple{0.8f, 0.8f, 0.8f}));
}

TEST_F(Transform, ScaleDownIsRefusedNearTheBound)
{
    setScale(0.25f, 0.35f, 1);
    step(SCALE_DECR);
    EXPECT_EQ(triple(trans->localScale), (Triple{0.25f, 0.35f - 0.2f, 1 - 0.2f}));
}

TEST_F(Transform, RepeatedScaleDownStopsAfterFourSteps)
{
    const float expected[] = {0.800000012f, 0.600000024f, 0.400000036f, 0.200000033f, 0.200000033f, 0.200000033f};
    for (float scale : expected) {
        step(SCALE_DECR);
        EXPECT_EQ(triple(trans->localScale), (Triple{scale, scale, scale}));
    }
}

TEST_F(Transform, ScaleDownRaisesWhatIsBelowTheBound)
{
    setScale(0.05f, -3, 1);
    step(SCALE_DECR);
    EXPECT_EQ(triple(trans->localScale), (Triple{0.1f, 0.1f, 0.8f}));
}

TEST_F(Transform, ScaleUpRaisesNothing)
{
    setScale(-3, -3, -3);
    step(SCALE_INCR);
    EXPECT_EQ(triple(trans->localScale), (Triple{-3, -3, -3}));
}

TEST_F(Transform, UpdateDoesNothingFrom14On)
{
    operate(START_RUBBER_BAND, {1, 2, 3, 4});
    forget();
    for (int operation = GLOBAL_TRANSLATION; operation <= TRANS_MAX + 1; ++operation) {
        trans->mTransType = operation;
        trans->update();
    }
    EXPECT_EQ(printed(), "");
    EXPECT_TRUE(glrecord::lines().empty());
    EXPECT_EQ(triple(trans->globalTrans), (Triple{0, 0, 0}));
    EXPECT_EQ(triple(trans->localScale), (Triple{1, 1, 1}));
    EXPECT_EQ(trans->mouseValues[3], 4);
}

// --- Operations that act at once ---
TEST_F(Transform, EveryValueIsKeptAsTheOperation)
{
    for (int operation : {-7, 0, 5, 19, 22, 24, 99}) {
        trans->updateValues(operation, nullptr);
        EXPECT_EQ(trans->mTransType, operation);
    }
    EXPECT_EQ(printed(), "");
}

TEST_F(Transform, DragAcrossTheWindowPansByTheSpan)
{
    operate(GLOBAL_TRANSLATION, {800, -600, 800, 600});
    EXPECT_EQ(triple(trans->globalTrans), (Triple{4, -7, 0}));
    operate(GLOBAL_TRANSLATION, {400, 0, 800, 600});
    EXPECT_EQ(triple(trans->globalTrans), (Triple{6, -7, 0})) << "added";
}

TEST_F(Transform, MousePanLeavesDepthAlone)
{
    trans->globalTrans[2] = 42;
    operate(GLOBAL_TRANSLATION, {10, 10, 800, 600});
    EXPECT_EQ(trans->globalTrans[2], 42);
}

TEST_F(Transform, MousePanOfAModelWithoutSpanMovesNothing)
{
    std::fill(extents, extents + 6, 0.0f);
    operate(GLOBAL_TRANSLATION, {100, 50, 800, 600});
    EXPECT_EQ(triple(trans->globalTrans), (Triple{0, 0, 0}));
}

TEST_F(Transform, MouseZoomTakesTheGivenStep)
{
    operate(GLOBAL_SCALE, {0.5f});
    EXPECT_EQ(triple(trans->localScale), (Triple{1.5f, 1.5f, 1.5f}));
    EXPECT_EQ(printedLines()[0], "local scale w/2=400 h/2=300 SCALE=0.5");
}

TEST_F(Transform, MouseZoomOfMinusFiveChangesNothing)
{
    operate(GLOBAL_SCALE, {-5});
    EXPECT_EQ(triple(trans->localScale), (Triple{1, 1, 1}));
}

TEST_F(Transform, MouseZoomRaisesWhatIsBelowTheBound)
{
    setScale(0.05f, 1, -2);
    operate(GLOBAL_SCALE, {-5});
    EXPECT_EQ(triple(trans->localScale), (Triple{0.1f, 1, 0.1f}));
}

TEST_F(Transform, DragCountsYDownwards)
{
    // From the middle to three quarters of the width: (0, 0) to (0.5, 0).
    float expected[4];
    operate(GLOBAL_ROTATION, {400, 300, 600, 300});
    trackball(expected, 0, 0, 0.5f, 0);
    for (int k = 0; k < 4; ++k) {
        EXPECT_FLOAT_EQ(trans->curQuat[k], expected[k]) << "component " << k;
    }
    // Upwards on screen: from y 300 to y 150 is (0, 0) to (0, 0.5).
    trans->resetAll();
    operate(GLOBAL_ROTATION, {400, 300, 400, 150});
    trackball(expected, 0, 0, 0, 0.5f);
    for (int k = 0; k < 4; ++k) {
        EXPECT_FLOAT_EQ(trans->curQuat[k], expected[k]) << "component " << k;
    }
}

TEST_F(Transform, DragOfNoLengthKeepsTheRotation)
{
    operate(GLOBAL_ROTATION, {123, 45, 123, 45});
    EXPECT_EQ(triple(trans->curQuat), (Triple{0, 0, 0}));
    EXPECT_EQ(trans->curQuat[3], 1);
}

TEST_F(Transform, DragComesBeforeTheAccumulatedRotation)
{
    float expected[4], dragged[4];
    float aboutZ[4] = {0, 0, 1, 90};
    trans->setRotation(aboutZ);
    trackball(dragged, 0, 0, 0.5f, 0);
    add_quats(dragged, trans->curQuat, expected);
    operate(GLOBAL_ROTATION, {400, 300, 600, 300});
    for (int k = 0; k < 4; ++k) {
        EXPECT_FLOAT_EQ(trans->curQuat[k], expected[k]) << "component " << k;
    }
}

TEST_F(Transform, DragToTheRightCarriesTheFrontToTheRight)
{
    operate(GLOBAL_ROTATION, {400, 300, 600, 300});
    trans->processStart();
    EXPECT_GT(glrecord::modelview()[8], 0.3) << "x of the turned z axis";
}

TEST_F(Transform, RubberBandIsReplacedByEveryCall)
{
    operate(START_RUBBER_BAND, {1, 2, 3, 4});
    operate(START_RUBBER_BAND, {1, 2, 30, 40});
    const float expected[4] = {1, 2, 30, 40};
    EXPECT_TRUE(std::equal(expected, expected + 4, trans->mouseValues));
}

TEST_F(Transform, RectangleIsClearedByItsLastOperation)
{
    for (int operation : {END_RUBBER_BAND, RECT_SCALE, RECT_PICK}) {
        operate(START_RUBBER_BAND, {100, 200, 300, 400});
        operate(operation);
        for (float value : trans->mouseValues) {
            EXPECT_EQ(value, 0) << "operation " << operation;
        }
    }
}

TEST_F(Transform, EndOfTheRubberBandDoesNothingElse)
{
    operate(START_RUBBER_BAND, {100, 200, 300, 400});
    operate(END_RUBBER_BAND);
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(triple(trans->localScale), (Triple{1, 1, 1}));
}

TEST_F(Transform, RectScaleZoomsBeforeItClears)
{
    operate(START_RUBBER_BAND, {400, 300, 500, 200});
    operate(RECT_SCALE);
    EXPECT_EQ(triple(trans->localScale), (Triple{1.2f, 1.2f, 1.2f}));
    EXPECT_EQ(printedLines()[0], "dx=100 dy=100");
}

TEST_F(Transform, RectPickUnprojectsBeforeItClears)
{
    operate(START_RUBBER_BAND, {400, 300, 800, 600});
    operate(RECT_PICK);
    EXPECT_EQ(triple(trans->endOfScaling), (DoubleTriple{1, 1, 0}));
    EXPECT_EQ(triple(trans->centerOfScaling), (DoubleTriple{0.5, 0.5, 0}));
    EXPECT_EQ(triple(trans->localScale), (Triple{1, 1, 1}));
}

TEST_F(Transform, SelectPickDoesNothing)
{
    operate(START_RUBBER_BAND, {1, 2, 3, 4});
    addPoints(1);
    forget();
    trans->updateValues(SELECT_PICK, nullptr);
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(trans->mouseValues[3], 4);
    EXPECT_EQ(trans->getPointsList().size(), 1u);
}

TEST_F(Transform, PolylinePickFreesPointsAndSkipsEmptyEntries)
{
    addPoints(2);
    trans->getPointsList().push_back(nullptr);
    trans->updateValues(POLYLINE_PICK, nullptr);
    EXPECT_TRUE(trans->pointsList.empty());
}

TEST_F(Transform, PointsListIsTheListItself)
{
    EXPECT_EQ(&trans->getPointsList(), &trans->pointsList);
}

// --- setValues ---
namespace {
class SetValues : public TransformTest
{
protected:
    void SetUp() override
    {
        TransformTest::SetUp();
        glViewport(0, 0, 400, 200);
        forget();
    }

    void setValues(const std::array<float, 7>& values)
    {
        std::array<float, 7> copy = values;
        trans->setValues(copy.data());
    }
};
} // namespace

TEST_F(SetValues, PanIsAbsoluteAndUsesTheOldViewport)
{
    trans->globalTrans[0] = trans->globalTrans[1] = trans->globalTrans[2] = 50;
    setValues({0, 0, 0, 80, 60, 99, 0});
    EXPECT_EQ(triple(trans->globalTrans), (Triple{80 * 4.0f / 800, 60 * 7.0f / 600, 50}));
    EXPECT_EQ(trans->viewPort[2], 400) << "read afterwards";
}

TEST_F(SetValues, PanIsComputedInFloatFromLeftToRight)
{
    extents[0] = -6;
    extents[1] = 7;
    trans->setViewport(102, 600);
    setValues({0, 0, 0, 7.3f, 0, 0, 0});
    EXPECT_EQ(trans->globalTrans[0], 0.930392146f); // in double 0.930392206
}

TEST_F(SetValues, ThreeZeroAnglesKeepTheOldOnes)
{
    setValues({10, 20, 30, 0, 0, 0, 0});
    setValues({0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(triple(trans->globalRot), (Triple{10, 20, 30}));
}

TEST_F(SetValues, OneAngleReplacesAllThreeAndWraps)
{
    setValues({10, 20, 30, 0, 0, 0, 0});
    setValues({0, 0, 400, 0, 0, 0, 0});
    EXPECT_EQ(triple(trans->globalRot), (Triple{0, 0, 40}));
}

TEST_F(SetValues, WrappingTakesOffOneTurnOnly)
{
    setValues({800, -800, 360, 0, 0, 0, 0});
    EXPECT_EQ(triple(trans->globalRot), (Triple{440, -440, 360}));
}

TEST_F(SetValues, PrintsPanAndOldRotationUnderOneLabelOnStandardError)
{
    setValues({1, 2, 3, 0, 0, 0, 0});
    OutputCapture errors(2);
    setValues({10, 20, 30, 80, 60, 0, 0});
    // The viewport is 400 by 200 by now.
    EXPECT_EQ(errors.all(), "GTRAN=0.800000 2.100000 0.000000\nGTRAN=1.000000 2.000000 3.000000\n");
}

TEST_F(SetValues, PrintsExtentsPivotMatricesAndScaleInOrder)
{
    setValues({0, 0, 40, 80, 60, 0, 0.5f});
    const std::string identity = "  1.000000    0.000000    0.000000    0.000000  \n"
                                 "  0.000000    1.000000    0.000000    0.000000  \n"
                                 "  0.000000    0.000000    1.000000    0.000000  \n"
                                 "  0.000000    0.000000    0.000000    1.000000  \n]\n";
    EXPECT_EQ(printed(), "xmin=-1 xmax=3\nymin=-2 ymax=5\nzmin=-2 zmax=7\ncow=1,1.5,2.5\n"
                         "LOCALMV=\n[" +
                             identity + "MV=\n[" + identity + "PM=\n[" + identity +
                             "VP=0,0,400,200\ndepthtest=0\nlocalTrans=0,0,0\nglobalTrans=0.4,0.7,0\n"
                             "globalRot=0,0,40\nlocalScale=1,1,1\n"
                             "local scale w/2=200 h/2=100 SCALE=0.5\nCOS= 0\ncos=0,0,0\n"
                             "TRANSX=0 TRANSY=0 TRANSZ=0\nscaleX=1.5 scaleY=1.5 scaleZ=1.5\n");
}

TEST_F(SetValues, PivotBecomesTheMiddleOfTheBox)
{
    extents[0] = 0.1f;
    extents[1] = 0.7f;
    setValues({0, 0, 0, 0, 0, 0, 0});
    const float sum = 0.1f + 0.7f;
    EXPECT_EQ(triple(trans->centerOfWindow), (DoubleTriple{sum / 2.0, 1.5, 2.5}));
}

TEST_F(SetValues, ScalesAboutAPointOfTheHostsMatrices)
{
    glTranslatef(-3, 0, 0); // the middle of the window is x = 3 under this matrix
    putUnderWindowMiddle(50, 50, 50);
    glrecord::clear();
    setValues({0, 0, 0, 0, 0, 0, 1});
    EXPECT_EQ(glrecord::lines(), (Lines{"glGetDoublev(GL_PROJECTION_MATRIX)", "glGetDoublev(GL_MODELVIEW_MATRIX)",
                                        "glGetIntegerv(GL_VIEWPORT)", "gluUnProject(200,100,0.5)"}));
    EXPECT_EQ(triple(trans->centerOfScaling), (DoubleTriple{3, 0, 0}));
    EXPECT_EQ(triple(trans->localTrans), (Triple{-3, 0, 0}));
}

TEST_F(SetValues, MarksItselfAsAnOperation)
{
    setValues({0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(trans->mTransType, TRANS_MAX);
}

TEST_F(SetValues, ZeroViewportDividesByZero)
{
    trans->setViewport(0, 0);
    setValues({0, 0, 0, 1, -1, 0, 0});
    EXPECT_EQ(trans->globalTrans[0], std::numeric_limits<float>::infinity());
    EXPECT_EQ(trans->globalTrans[1], -std::numeric_limits<float>::infinity());
}
