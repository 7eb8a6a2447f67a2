// Zoom about a point of the window, the centre of the window, polyline points and the printed matrices.
#include "transformtest.h"

#include <GL/glu.h>

namespace {
class Zoom : public TransformTest
{
protected:
    void band(float startX, float startY, float currentX, float currentY)
    {
        const float rectangle[4] = {startX, startY, currentX, currentY};
        std::copy(rectangle, rectangle + 4, trans->mouseValues);
    }
};
} // namespace

// --- updateLocalScaleForWindow ---
TEST_F(Zoom, StepScalesAboutTheMiddleOfTheWindow)
{
    putUnderWindowMiddle(3, 4, 5);
    trans->updateLocalScaleForWindow(0.5f);
    EXPECT_EQ(triple(trans->centerOfScaling), (DoubleTriple{3, 4, 5}));
    EXPECT_EQ(triple(trans->localScale), (Triple{1.5f, 1.5f, 1.5f}));
    EXPECT_EQ(triple(trans->localTrans), (Triple{-1.5f, -2, -2.5f}));
    EXPECT_EQ(glrecord::lines(), (Lines{"gluUnProject(400,300,0.5)"}));
}

TEST_F(Zoom, TheScaledPointStaysWhereItIs)
{
    const float before[3] = {10, -20, 30};
    putUnderWindowMiddle(3, 4, 5);
    trans->setTranslation(std::array<float, 3>{10, -20, 30}.data());
    trans->updateLocalScaleForWindow(0.5f);
    for (int axis = 0; axis < 3; ++axis) {
        const double center = trans->centerOfScaling[axis];
        EXPECT_DOUBLE_EQ(center * trans->localScale[axis] + trans->localTrans[axis], center + before[axis]);
    }
}

TEST_F(Zoom, StepPrintsOldCentreNewCentreAndResult)
{
    putUnderWindowMiddle(3, 4, 5);
    trans->centerOfScaling[0] = 7.25;
    trans->updateLocalScaleForWindow(0.5f);
    EXPECT_EQ(printed(), "local scale w/2=400 h/2=300 SCALE=0.5\nCOS= 7.25\ncos=3,4,5\n"
                         "TRANSX=-1.5 TRANSY=-2 TRANSZ=-2.5\nscaleX=1.5 scaleY=1.5 scaleZ=1.5\n");
}

TEST_F(Zoom, RefusedStepStillPrints)
{
    putUnderWindowMiddle(3, 4, 5);
    trans->updateLocalScaleForWindow(-5);
    EXPECT_EQ(printed(), "local scale w/2=400 h/2=300 SCALE=-5\nCOS= 0\ncos=3,4,5\n"
                         "TRANSX=0 TRANSY=0 TRANSZ=0\nscaleX=1 scaleY=1 scaleZ=1\n");
}

TEST_F(Zoom, OddWindowLosesItsHalfPixel)
{
    trans->setViewport(801, 601);
    forget();
    trans->updateLocalScaleForWindow(0.5f);
    EXPECT_EQ(glrecord::lines(), (Lines{"gluUnProject(400,300,0.5)"}));
    EXPECT_EQ(printedLines()[0], "local scale w/2=400 h/2=300 SCALE=0.5");
}

TEST_F(Zoom, OffsetOfTheViewportIsNotAdded)
{
    trans->viewPort[0] = 100;
    trans->viewPort[1] = 50;
    trans->updateLocalScaleForWindow(0.5f);
    trans->computeWindowCenter();
    trans->moveToCOW();
    EXPECT_EQ(glrecord::lines(), Lines(3, "gluUnProject(400,300,0.5)"));
    EXPECT_DOUBLE_EQ(trans->centerOfScaling[0], -0.25) << "100 pixels left of the middle";
}

TEST_F(Zoom, StepToBelowTheBoundChangesNothing)
{
    putUnderWindowMiddle(3, 4, 5);
    setScale(0.25f, 0.25f, 0.25f);
    trans->updateLocalScaleForWindow(-0.2f);
    EXPECT_EQ(triple(trans->localScale), (Triple{0.25f, 0.25f, 0.25f}));
    EXPECT_EQ(triple(trans->localTrans), (Triple{0, 0, 0}));
}

TEST_F(Zoom, FourStepsDownFromOneAndTheFifthIsRefused)
{
    for (float expected : {0.800000012f, 0.600000024f, 0.400000036f, 0.200000033f, 0.200000033f}) {
        trans->updateLocalScaleForWindow(-0.2f);
        EXPECT_EQ(triple(trans->localScale), (Triple{expected, expected, expected}));
    }
}

TEST_F(Zoom, BoundIsTestedOnTheFloatSum)
{
    setScale(0.3f, 0.3f, 0.3f);
    trans->updateLocalScaleForWindow(-0.2f);
    EXPECT_EQ(triple(trans->localScale), (Triple{0.100000009f, 0.100000009f, 0.100000009f}));
}

TEST_F(Zoom, BoundItselfIsRefused)
{
    setScale(0.2f, 0.2f, 0.2f);
    trans->updateLocalScaleForWindow(-0.1f); // 0.2f - 0.1f is exactly 0.1f
    EXPECT_EQ(trans->localScale[0], 0.2f);
}

TEST_F(Zoom, AxesAreTestedByThemselves)
{
    putUnderWindowMiddle(3, 4, 5);
    setScale(0.25f, 1, 0.5f);
    trans->updateLocalScaleForWindow(-0.25f);
    EXPECT_EQ(triple(trans->localScale), (Triple{0.25f, 0.75f, 0.25f}));
    EXPECT_EQ(triple(trans->localTrans), (Triple{0, 1, 1.25f}));
}

TEST_F(Zoom, TranslationIsComputedInDouble)
{
    // 16777217 is no float: 16777217 * 1 - 16777217 * 1.5 + 8388608 = -0.5.
    putUnderWindowMiddle(16777217, 0, 0);
    trans->localTrans[0] = 8388608;
    trans->updateLocalScaleForWindow(0.5f);
    EXPECT_EQ(trans->localTrans[0], -0.5f);
}

// --- updateScaleForWindow ---
TEST_F(Zoom, StepsPerAxis)
{
    glTranslatef(-3, -4, -5);
    trans->updateScaleForWindow(0.5f, 0.25f, -0.5f);
    EXPECT_EQ(triple(trans->localScale), (Triple{1.5f, 1.25f, 0.5f}));
    EXPECT_EQ(triple(trans->localTrans), (Triple{-1.5f, -1, 2.5f}));
    EXPECT_EQ(printed(), "scale w/2=400 h/2=300\ncos=3,4,5\n"
                         "TRANSX=-1.5 TRANSY=-1 TRANSZ=2.5\nscaleX=1.5 scaleY=1.25 scaleZ=0.5\n");
}

TEST_F(Zoom, StepForXAloneLeavesYAndZ)
{
    glTranslatef(-3, -4, -5);
    trans->setTranslation(std::array<float, 3>{10, 20, 30}.data());
    trans->updateScaleForWindow(0.2f, 0, 0);
    EXPECT_EQ(triple(trans->localScale), (Triple{1.2f, 1, 1}));
    EXPECT_EQ(trans->localTrans[0], static_cast<float>(3.0 - 3.0 * 1.2f + 10));
    EXPECT_EQ(trans->localTrans[1], 20);
    EXPECT_EQ(trans->localTrans[2], 30);
}

TEST_F(Zoom, StepsPerAxisReadTheHostsModelview)
{
    putUnderWindowMiddle(50, 50, 50); // of the last frame
    glTranslatef(-3, -4, -5);
    glrecord::clear();
    trans->updateScaleForWindow(0, 0, 0);
    EXPECT_EQ(glrecord::lines(), (Lines{"glGetDoublev(GL_MODELVIEW_MATRIX)", "gluUnProject(400,300,0.5)"}));
    EXPECT_EQ(trans->mvMatrix[12], -3);
    EXPECT_EQ(triple(trans->centerOfScaling), (DoubleTriple{3, 4, 5}));
}

// --- The rubber band ---
TEST_F(Zoom, RectangleIsUnprojectedAsItStands)
{
    band(800, 0, 400, 600); // y is not flipped
    trans->updateRect();
    EXPECT_EQ(triple(trans->startOfScaling), (DoubleTriple{1, -1, 0}));
    EXPECT_EQ(triple(trans->endOfScaling), (DoubleTriple{0, 1, 0}));
    EXPECT_EQ(triple(trans->centerOfScaling), (DoubleTriple{0.5, 0, 0}));
    EXPECT_EQ(printed(), "start=1,-1,0\ncos=0.5,0,0\nend=0,1,0\n");
    EXPECT_EQ(glrecord::lines(), (Lines{"gluUnProject(800,0,0.5)", "gluUnProject(400,600,0.5)"}));
    EXPECT_EQ(trans->mouseValues[0], 800);
}

TEST_F(Zoom, BandRaisesEveryScaleByOneStepWhateverItsSize)
{
    for (float size : {1.0f, 100.0f, 400.0f}) {
        setScale(1, 2, 0.25f);
        band(400, 300, 400 + size, 300 - size / 2);
        trans->updateLocalScaleForRubberBand();
        EXPECT_EQ(triple(trans->localScale), (Triple{1.2f, 2.2f, 0.25f + 0.2f})) << size << " pixels";
    }
}

TEST_F(Zoom, BandScalesAboutItsMiddle)
{
    putUnderWindowMiddle(3, 4, 5);
    band(400, 300, 600, 450); // middle (3.25, 4.25, 5)
    trans->updateLocalScaleForRubberBand();
    EXPECT_EQ(triple(trans->centerOfScaling), (DoubleTriple{3.25, 4.25, 5}));
    const float scale = 0.2f + 1.0f;
    EXPECT_EQ(triple(trans->localTrans),
              (Triple{static_cast<float>(3.25 - 3.25 * scale), static_cast<float>(4.25 - 4.25 * scale),
                      static_cast<float>(5.0 - 5.0 * scale)}));
}

TEST_F(Zoom, BandAddsItsStepInFloat)
{
    putUnderWindowMiddle(0, 0, 5.1799999999999997);
    trans->localScale[2] = 0.7f;
    trans->localTrans[2] = 0.1f;
    band(400, 300, 600, 450);
    trans->updateLocalScaleForRubberBand();
    EXPECT_EQ(trans->localTrans[2], -0.93599993f); // a sum in double gives -0.93599999
}

TEST_F(Zoom, BandHasNoLowerBound)
{
    setScale(-3, -0.5f, 0.01f);
    band(400, 300, 600, 450);
    trans->updateLocalScaleForRubberBand();
    EXPECT_EQ(triple(trans->localScale), (Triple{-3 + 0.2f, -0.5f + 0.2f, 0.01f + 0.2f}));
}

TEST_F(Zoom, BandPrintsItsSizesCornersCentreAndResult)
{
    band(400, 300, 600, 450); // dy is start minus current
    trans->updateLocalScaleForRubberBand();
    EXPECT_EQ(printed(), "dx=200 dy=-150\nsx=400 sy=300\ncx=600 cy=450\n"
                         "start=0,0,0\ncos=0.25,0.25,0\nend=0.5,0.5,0\n"
                         "TRANSX=-0.05 TRANSY=-0.05 TRANSZ=0\nscaleX=1.2 scaleY=1.2 scaleZ=1.2\n");
}

TEST_F(Zoom, BandWithoutWidthOrHeightOnlyPrintsItsThreeLines)
{
    band(400, 300, 400, 450);
    trans->updateLocalScaleForRubberBand();
    EXPECT_EQ(printed(), "dx=0 dy=-150\nsx=400 sy=300\ncx=400 cy=450\n");
    band(400, 300, 600, 300);
    trans->updateLocalScaleForRubberBand();
    EXPECT_EQ(printed(), "dx=200 dy=0\nsx=400 sy=300\ncx=600 cy=300\n");
    EXPECT_EQ(triple(trans->localScale), (Triple{1, 1, 1}));
    EXPECT_EQ(triple(trans->endOfScaling), (DoubleTriple{0, 0, 0}));
    EXPECT_TRUE(glrecord::lines().empty());
}

// --- The pivot ---
TEST_F(Zoom, WindowCentreIsThePointUnderTheMiddle)
{
    putUnderWindowMiddle(3, 4, 5);
    trans->computeWindowCenter();
    EXPECT_EQ(triple(trans->centerOfWindow), (DoubleTriple{3, 4, 5}));
    EXPECT_EQ(triple(trans->centerOfScaling), (DoubleTriple{0, 0, 0}));
    EXPECT_EQ(glrecord::lines(), (Lines{"gluUnProject(400,300,0.5)"}));
}

TEST_F(Zoom, WindowCentreIsPrintedAsCosAfterTheMatrices)
{
    trans->printMatrices();
    const std::string matrices = printed();
    trans->computeWindowCenter();
    EXPECT_EQ(printed(), "compute wc w/2=400 h/2=300\n" + matrices + "cos=0,0,0\n");
}

TEST_F(Zoom, UpdatedWindowCentreIsTheMiddleOfTheBoxWithoutAPrint)
{
    extents[0] = 0.1f;
    extents[1] = 0.7f;
    trans->updateWindowCenter();
    const float sum = 0.1f + 0.7f;
    EXPECT_EQ(triple(trans->centerOfWindow), (DoubleTriple{sum / 2.0, 1.5, 2.5}));
    EXPECT_EQ(printed(), "");
    EXPECT_TRUE(glrecord::lines().empty());
}

TEST_F(Zoom, HalvingOfABoxMiddleIsInDouble)
{
    extents[0] = 0;
    extents[1] = 1.4e-45f; // the smallest float: its half exists in double only
    trans->updateWindowCenter();
    EXPECT_GT(trans->centerOfWindow[0], 0);
}

// --- moveToCOW ---
TEST_F(Zoom, MoveBringsTheBoxMiddleToTheWindowMiddle)
{
    putUnderWindowMiddle(11, 21.5, 32.5);
    trans->moveToCOW();
    EXPECT_EQ(triple(trans->localTrans), (Triple{10, 20, 30}));
    EXPECT_EQ(printed(), "VIEW cow=11,21.5,32.5\nVIEW COM=1,1.5,2.5\n");
    EXPECT_EQ(triple(trans->centerOfWindow), (DoubleTriple{0, 0, 0}));
}

TEST_F(Zoom, MoveTwiceShiftsTwice)
{
    putUnderWindowMiddle(11, 21.5, 32.5);
    trans->moveToCOW();
    trans->moveToCOW();
    EXPECT_EQ(triple(trans->localTrans), (Triple{20, 40, 60}));
}

TEST_F(Zoom, MoveDoesNotCorrectForTheScale)
{
    setScale(2, 3, 4);
    putUnderWindowMiddle(11, 21.5, 32.5);
    trans->moveToCOW();
    EXPECT_EQ(triple(trans->localTrans), (Triple{10, 20, 30}));
}

// --- Polyline points ---
TEST_F(Zoom, PointIsUnprojectedAppendedAndPrinted)
{
    trans->addPoint(std::array<float, 2>{800, 300}.data());
    trans->addPoint(std::array<float, 2>{400, 600}.data());
    ASSERT_EQ(trans->pointsList.size(), 2u);
    EXPECT_EQ(triple(trans->pointsList[0]->point), (Triple{1, 0, 0}));
    EXPECT_EQ(triple(trans->pointsList[1]->point), (Triple{0, 1, 0}));
    EXPECT_EQ(printed(), "start world=1,0,0\nstart world=0,1,0\n");
    EXPECT_EQ(glrecord::lines(), (Lines{"gluUnProject(800,300,0.5)", "gluUnProject(400,600,0.5)"}));
}

TEST_F(Zoom, PointKeepsAndPrintsFloats)
{
    putUnderWindowMiddle(16777217, 0, 0); // one more than a float holds
    trans->addPoint(std::array<float, 2>{400, 300}.data());
    EXPECT_EQ(trans->pointsList[0]->point[0], 16777216);
    EXPECT_EQ(printed(), "start world=1.67772e+07,0,0\n");
}

// --- printMatrices ---
TEST_F(Zoom, MatricesArePrintedInStorageOrderOneColumnARow)
{
    for (int k = 0; k < 16; ++k) {
        trans->mvMatrixLocal[k] = k;
        trans->mvMatrix[k] = k == 5 ? 1234567.5 : -k;
        trans->projMatrix[k] = k / 1024.0;
    }
    trans->depthTest = 1;
    trans->setTranslation(std::array<float, 3>{1, 2, 3}.data());
    std::fill(trans->globalTrans, trans->globalTrans + 3, 0.5f);
    std::fill(trans->globalRot, trans->globalRot + 3, -5.0f);
    setScale(1, 1.5f, 2);
    trans->viewPort[0] = 3;
    trans->viewPort[1] = 4;
    trans->printMatrices();
    EXPECT_EQ(printed(), "LOCALMV=\n[  0.000000    1.000000    2.000000    3.000000  \n"
                         "  4.000000    5.000000    6.000000    7.000000  \n"
                         "  8.000000    9.000000   10.000000   11.000000  \n"
                         " 12.000000   13.000000   14.000000   15.000000  \n]\n"
                         "MV=\n[  0.000000   -1.000000   -2.000000   -3.000000  \n"
                         " -4.000000  1234567.500000   -6.000000   -7.000000  \n"
                         " -8.000000   -9.000000  -10.000000  -11.000000  \n"
                         "-12.000000  -13.000000  -14.000000  -15.000000  \n]\n"
                         "PM=\n[  0.000000    0.000977    0.001953    0.002930  \n"
                         "  0.003906    0.004883    0.005859    0.006836  \n"
                         "  0.007812    0.008789    0.009766    0.010742  \n"
                         "  0.011719    0.012695    0.013672    0.014648  \n]\n"
                         "VP=3,4,800,600\ndepthtest=1\nlocalTrans=1,2,3\nglobalTrans=0.5,0.5,0.5\n"
                         "globalRot=-5,-5,-5\nlocalScale=1,1.5,2\n");
}
