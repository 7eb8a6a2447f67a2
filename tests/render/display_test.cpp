// The calls that switch parts, boxes and render state.
#include "framefixture.h"
#include "mtrans.h"
#include "mview.h"

// --- Switching parts ---

TEST_F(Frame, DisplayAllPartsShowsEveryPartAndRestoresTheLoadedExtents)
{
    install({quadPart(), quadPart(5), quadPart(9)});
    part(0).partFlag = H | PART_SELECTED;
    part(1).partFlag = PART_BOX_SHOWN;
    const Floats loaded = {1, 2, 3, 4, 5, 6};
    std::copy(loaded.begin(), loaded.end(), env->orgModelExtents);
    env->displayAllParts();
    EXPECT_EQ(part(0).partFlag & (S | H | PART_SELECTED), S | PART_SELECTED);
    EXPECT_EQ(part(1).partFlag & (S | H), S);
    EXPECT_EQ(Floats(env->modelExtents, env->modelExtents + 6), loaded);
    EXPECT_EQ(env->i, 3u);
}

TEST_F(Frame, DisplayAllPartsSetsProjectionThenLights)
{
    install({quadPart()});
    glViewport(5, 6, 300, 200);
    forget();
    env->displayAllParts();
    const Lines lines = glrecord::lines();
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 8),
              (Lines{"glGetIntegerv(GL_VIEWPORT)", "glViewport(0,0,300,200)", "glMatrixMode(GL_PROJECTION)",
                     "glLoadIdentity()", "glOrtho(0,1,0,1,9999,-9999)", "glMatrixMode(GL_MODELVIEW)",
                     "glLoadIdentity()", "glEnable(GL_COLOR_MATERIAL)"}));
    EXPECT_EQ(printed().find("RESIZE MODEL EXTS=0,1,0,1,0,0\nVIEWPORT=0,0,300,200\nLIGHT xmin=0 xmax=1\n"), 0u)
        << "the extents are not recomputed from the parts";
}

TEST_F(Frame, DisplayAllPartsClassifiesTheAxesAgainButKeepsThePivot)
{
    install({quadPart(5, 5)});
    ASSERT_EQ(env->mView->xAxisType, X_BOTH_POSITIVE);
    const Floats loaded = {-3, -2, -1, 1, 0, 0};
    std::copy(loaded.begin(), loaded.end(), env->orgModelExtents);
    env->mTrans->centerOfWindow[0] = 42;
    env->displayAllParts();
    EXPECT_EQ(env->mView->xAxisType, X_BOTH_NEGATIVE);
    EXPECT_EQ(env->mView->yAxisType, Y_BOTH_POSITIVE) << "a mixed range keeps the class before";
    EXPECT_EQ(env->mTrans->centerOfWindow[0], 42);
}

TEST_F(Frame, ExtentsModifiedByVisibilityDoNotReclassifyTheAxes)
{
    install({quadPart(5, 5), quadPart(-9, -9)});
    ASSERT_EQ(env->mView->xAxisType, AXIS_OTHER_TYPE);
    Indices ids = {11};
    env->processPartsByID(2, &ids);
    ASSERT_EQ(env->modelExtents[0], 5);
    EXPECT_EQ(env->mView->xAxisType, AXIS_OTHER_TYPE);
}

TEST_F(Frame, SetDisplayByListShowsAndHides)
{
    install({quadPart(), quadPart(5), quadPart(9)});
    unsigned int list[] = {3, 1};
    env->setDisplay(2u, list, 4);
    EXPECT_EQ(part(0).partFlag & (S | H), H);
    EXPECT_EQ(part(1).partFlag & (S | H), S);
    EXPECT_EQ(part(2).partFlag & (S | H), H);
    env->setDisplay(1u, list, 2);
    EXPECT_EQ(part(2).partFlag & (S | H), S);
    EXPECT_EQ(part(0).partFlag & (S | H), H);
}

TEST_F(Frame, SetDisplayByListIgnoresNumbersOutOfRange)
{
    install({quadPart(), quadPart(5)});
    unsigned int list[] = {0, 3, 0xFFFFFFFFu, 2};
    env->setDisplay(4u, list, 4);
    EXPECT_EQ(part(0).partFlag & (S | H), S);
    EXPECT_EQ(part(1).partFlag & (S | H), H);
    EXPECT_EQ(env->i, 4u) << "the counter counted the list's entries";
}

TEST_F(Frame, SetDisplayTakesNoOtherModes)
{
    install({quadPart(), quadPart(5)});
    part(1).partFlag = H;
    const unsigned int before[] = {part(0).partFlag, part(1).partFlag};
    unsigned int list[] = {1, 2};
    for (unsigned int mode : {0u, 1u, 3u, 6u, 64u}) {
        env->setDisplay(2u, list, mode);
        env->setDisplay(1u, mode);
        env->setDisplay(2u, mode);
        EXPECT_EQ(part(0).partFlag, before[0]) << mode;
        EXPECT_EQ(part(1).partFlag, before[1]) << mode;
    }
}

TEST_F(Frame, SetDisplayOfOnePartIgnoresNumbersOutOfRange)
{
    install({quadPart(), quadPart(5)});
    env->setDisplay(3u, 4u);
    env->setDisplay(0u, 4u);
    EXPECT_EQ(part(0).partFlag & (S | H), S);
    EXPECT_EQ(part(1).partFlag & (S | H), S);
    env->setDisplay(2u, 4u);
    EXPECT_EQ(part(1).partFlag & (S | H), H);
    env->setDisplay(2u, 2u);
    EXPECT_EQ(part(1).partFlag & (S | H), S);
}

TEST_F(Frame, SetDisplayDoesNotRecomputeTheExtents)
{
    install({quadPart(), quadPart(50)});
    unsigned int list[] = {2};
    env->setDisplay(1u, list, 4);
    env->setDisplay(1u, 4u);
    EXPECT_EQ(env->modelExtents[1], 51);
    EXPECT_EQ(printed(), "");
    EXPECT_TRUE(glrecord::lines().empty());
}

TEST_F(Frame, BoxesGoOnAndOffForPartsThatAreNotHidden)
{
    install({quadPart(), quadPart(5), quadPart(9)});
    part(1).partFlag = H;
    part(2).partFlag = PART_SELECTED; // neither shown nor hidden
    env->setBoxDisplay(2);
    EXPECT_TRUE(part(0).partFlag & PART_BOX_SHOWN);
    EXPECT_FALSE(part(1).partFlag & PART_BOX_SHOWN);
    EXPECT_TRUE(part(2).partFlag & PART_BOX_SHOWN);
    part(1).partFlag |= PART_BOX_SHOWN;
    env->setBoxDisplay(4);
    EXPECT_FALSE(part(0).partFlag & PART_BOX_SHOWN);
    EXPECT_TRUE(part(1).partFlag & PART_BOX_SHOWN) << "a hidden part keeps its box for when it comes back";
    env->setBoxDisplay(3);
    EXPECT_FALSE(part(0).partFlag & PART_BOX_SHOWN);
    EXPECT_EQ(env->i, 3u);
}

// --- Render state ---

TEST_F(Frame, BlendingIsSwitchedInTheContextOnly)
{
    install({});
    env->blendFlag = 77;
    env->setBlend(5);
    EXPECT_EQ(glrecord::lines(), (Lines{"glEnable(GL_BLEND)", "glBlendFunc(GL_SRC_ALPHA,GL_ONE_MINUS_SRC_ALPHA)"}));
    forget();
    env->setBlend(0);
    EXPECT_EQ(glrecord::lines(), Lines{"glDisable(GL_BLEND)"});
    EXPECT_EQ(env->blendFlag, 77);
}

TEST_F(Frame, HiddenSurfaceRemovalIsTheDepthTest)
{
    install({});
    env->setHideMode(1);
    EXPECT_EQ(glrecord::lines(), (Lines{"glEnable(GL_DEPTH_TEST)", "glDepthFunc(GL_LESS)", "glDepthRange(0,1)"}));
    forget();
    env->setHideMode(0);
    EXPECT_EQ(glrecord::lines(), Lines{"glDisable(GL_DEPTH_TEST)"});
}

TEST_F(Frame, ThePolygonModeIsPassedOnAndNotStored)
{
    install({});
    env->polygonMode[0] = 77;
    env->setPolygonMode(GL_LINE);
    EXPECT_EQ(glrecord::lines(), Lines{"glPolygonMode(GL_FRONT_AND_BACK,GL_LINE)"});
    EXPECT_EQ(env->polygonMode[0], 77);
}

TEST_F(Frame, TheShadeModelIsStoredAppliedAndItsNormalsComputed)
{
    install({quadPart()}, GL_FLAT);
    env->setShadeModel(GL_SMOOTH);
    EXPECT_EQ(env->shadeModel, GL_SMOOTH);
    EXPECT_EQ(glrecord::lines(), Lines{"glShadeModel(GL_SMOOTH)"});
    EXPECT_TRUE(part(0).partFlag & PART_NODE_NORMALS_DONE);
    const Lines lines = printedLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(isTiming(lines[0], "TIME FOR ELM NORMALS="));
}
