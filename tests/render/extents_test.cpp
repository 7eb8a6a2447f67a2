// Extents of the shown parts, the projection made of them, and unit normals.
#include <cmath>

#include "modelbuilder.h"
#include "mtrans.h"
#include "recordedtest.h"

namespace {
class Extents : public RecordedTest
{
protected:
    // A shown part whose recorded extents are these (its nodes do not matter here).
    PartInfoStr partWith(const Floats& extents)
    {
        PartInfoStr part = quadPart();
        std::copy(extents.begin(), extents.end(), part.partExtents);
        return part;
    }

    void modify(const std::vector<Floats>& parts)
    {
        for (const Floats& extents : parts) {
            model.add(partWith(extents));
        }
        model.install();
        glViewport(0, 0, 800, 600);
        forget();
        model->modifyExtents();
    }

    void expectExtents(const Floats& expected)
    {
        for (int k = 0; k < 6; ++k) {
            EXPECT_EQ(model->modelExtents[k], expected[k]) << "entry " << k;
        }
    }

    TestModel model{GL_FLAT};
};
} // namespace

TEST_F(Extents, CoverAllShownParts)
{
    modify({{-1, 2, 0, 1, 0, 1}, {5, 9, -3, -2, 0.5f, 4}});
    expectExtents({-1, 9, -3, 1, 0, 4});
}

TEST_F(Extents, ArePrintedOnThreeLines)
{
    modify({{-1.5f, 2, 0, 1e7f, 0.1234567f, 4}});
    EXPECT_EQ(printed().find("xmin=-1.5 xmax=2\nymin=0 ymax=1e+07\nzmin=0.123457 zmax=4\n"), 0u);
}

TEST_F(Extents, APairOfZerosBecomesTheWidestPair)
{
    modify({{0, 0, 0, 3, 0, 0}});
    expectExtents({-2000, 2000, 0, 3, -2000, 2000});
}

TEST_F(Extents, MinusZeroCountsAsZero)
{
    modify({{-0.0f, 0, -0.0f, -0.0f, 0, 1}});
    expectExtents({-2000, 2000, -2000, 2000, 0, 1});
}

TEST_F(Extents, EqualValuesOtherThanZeroStay)
{
    modify({{5, 5, 0, 1, 7, 7}});
    expectExtents({5, 5, 0, 1, 7, 7});
}

TEST_F(Extents, HiddenPartsAndPartsWithNeitherBitDoNotCount)
{
    PartInfoStr hidden = partWith({-100, 100, -100, 100, -100, 100});
    hidden.partFlag = PART_HIDDEN;
    PartInfoStr neither = partWith({-50, 50, -50, 50, -50, 50});
    neither.partFlag = PART_SELECTED;
    model.add(hidden).add(neither);
    modify({{1, 2, 1, 2, 1, 2}});
    expectExtents({1, 2, 1, 2, 1, 2});
}

TEST_F(Extents, WithoutAnyShownPartNothingHappensExceptForTheCounter)
{
    modify({{1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5, 6}});
    model.part(0).partFlag = model.part(1).partFlag = PART_HIDDEN;
    model->i = 0;
    const Floats before(model->modelExtents, model->modelExtents + 6);
    const glrecord::Matrix projection = glrecord::projection();
    forget();
    model->modifyExtents();
    expectExtents(before);
    EXPECT_EQ(glrecord::projection(), projection);
    EXPECT_TRUE(glrecord::lines().empty());
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(model->i, 2u);
}

TEST_F(Extents, LoadedExtentsAreKeptApart)
{
    modify({{1, 2, 3, 4, 5, 6}});
    model->orgModelExtents[0] = -77;
    model->modifyExtents();
    EXPECT_EQ(model->orgModelExtents[0], -77);
    EXPECT_EQ(model->modelExtents[0], 1);
}

TEST_F(Extents, ModifyingSetsViewportProjectionAndLightsAgain)
{
    modify({{1, 2, 3, 4, 5, 6}});
    const Lines lines = glrecord::lines();
    const Lines expected = {
        "glGetIntegerv(GL_VIEWPORT)", "glViewport(0,0,800,600)",     "glMatrixMode(GL_PROJECTION)",
        "glLoadIdentity()",           "glOrtho(1,2,3,4,9999,-9999)", "glMatrixMode(GL_MODELVIEW)",
        "glLoadIdentity()",           "glEnable(GL_COLOR_MATERIAL)", "glLightfv(GL_LIGHT0,GL_POSITION,1.5,-2,-6,0)"};
    ASSERT_GT(lines.size(), expected.size());
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + expected.size()), expected);
    EXPECT_EQ(lines.back(), "glDepthRange(0,1)") << "the lights' set-up is the last";
}

TEST_F(Extents, ModifyingPrintsExtentsThenResizeThenLights)
{
    modify({{1, 2, 3, 4, 5, 6}});
    EXPECT_EQ(printed(), "xmin=1 xmax=2\nymin=3 ymax=4\nzmin=5 zmax=6\n"
                         "RESIZE MODEL EXTS=1,2,3,4,5,6\nVIEWPORT=0,0,800,600\n"
                         "LIGHT xmin=1 xmax=2\nLIGHT ymin=3 ymax=4\nLIGHT zmin=5 zmax=6\n"
                         "Lightpos0=1.5,-2,-6\nLightpos1=4,8,12\n");
}

TEST_F(Extents, ModifyingMovesThePivotToTheBoxCentre)
{
    modify({{1, 2, 3, 5, 5, 8}});
    EXPECT_EQ(model->mTrans->centerOfWindow[0], 1.5);
    EXPECT_EQ(model->mTrans->centerOfWindow[1], 4);
    EXPECT_EQ(model->mTrans->centerOfWindow[2], 6.5);
}

TEST_F(Extents, ModifyingLosesAViewportOffset)
{
    modify({{1, 2, 3, 4, 5, 6}});
    glViewport(30, 40, 200, 100);
    model->modifyExtents();
    EXPECT_EQ(model->viewPort[0], 30) << "as read back";
    EXPECT_EQ(glrecord::state().viewport[0], 0);
    EXPECT_EQ(glrecord::state().viewport[1], 0);
    EXPECT_EQ(glrecord::state().viewport[2], 200);
}

TEST_F(Extents, AFlatModelKeepsTheIdentityProjectionAndTheNextFrameReportsIt)
{
    modify({{5, 5, 0, 1, 0, 1}});
    EXPECT_EQ(glrecord::projection(), (glrecord::Matrix{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
    EXPECT_EQ(glrecord::state().error, static_cast<GLenum>(GL_INVALID_VALUE));
    forget();
    model->renderModel();
    const Lines lines = printedLines();
    EXPECT_EQ(lines.back(), "GL Error: invalid value");
}

// --- resizeModel ---

class Resize : public Extents
{
protected:
    void SetUp() override
    {
        Extents::SetUp();
        model.install();
        const float extents[6] = {-1, 3, 0, 2, -5, 4};
        std::copy(extents, extents + 6, model->modelExtents);
        forget();
    }
};

TEST_F(Resize, SetsTheProjectionToTheExtentsBoxWithReversedDepth)
{
    model->resizeModel(640, 480);
    EXPECT_EQ(glrecord::lines(),
              (Lines{"glViewport(0,0,640,480)", "glMatrixMode(GL_PROJECTION)", "glLoadIdentity()",
                     "glOrtho(-1,3,0,2,9999,-9999)", "glMatrixMode(GL_MODELVIEW)", "glLoadIdentity()"}));
}

TEST_F(Resize, PrintsExtentsThenViewport)
{
    model->resizeModel(640, 480);
    EXPECT_EQ(printed(), "RESIZE MODEL EXTS=-1,3,0,2,-5,4\nVIEWPORT=0,0,640,480\n");
    EXPECT_EQ(model->mTrans->viewPort[2], 640);
    EXPECT_EQ(model->mTrans->viewPort[3], 480);
}

TEST_F(Resize, TheShapeOfTheWindowDoesNotEnterTheProjection)
{
    model->resizeModel(100, 100);
    const glrecord::Matrix square = glrecord::projection();
    model->resizeModel(1000, 10);
    EXPECT_EQ(glrecord::projection(), square);
}

TEST_F(Resize, ASizeOfZeroIsPassedOn)
{
    model->resizeModel(0, 0);
    EXPECT_EQ(glrecord::lines()[0], "glViewport(0,0,0,0)");
    EXPECT_NE(printed().find("VIEWPORT=0,0,0,0\n"), std::string::npos);
}

TEST_F(Resize, ZeroAndMinusZeroExtentsLeaveTheIdentityProjection)
{
    model->modelExtents[0] = 0;
    model->modelExtents[1] = -0.0f;
    model->resizeModel(10, 10);
    EXPECT_EQ(glrecord::projection()[0], 1);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    EXPECT_EQ(printed().find("RESIZE MODEL EXTS=0,-0,0,2,-5,4\n"), 0u);
}

// --- normalize ---

TEST_F(Extents, NormalizeMakesUnitLength)
{
    PartInfoStr part = quadPart();
    part.partNodes.nodeNormals = newFloats({3, 0, 4, 0, -2, 0, 1, 1, 1, 0, 0, 0.5f});
    model->normalize(&part);
    const float* n = part.partNodes.nodeNormals;
    EXPECT_FLOAT_EQ(n[0], 0.6f);
    EXPECT_FLOAT_EQ(n[2], 0.8f);
    EXPECT_EQ(n[4], -1);
    EXPECT_FLOAT_EQ(n[7], 1 / std::sqrt(3.0f));
    EXPECT_EQ(n[11], 1);
    releasePart(part);
}

TEST_F(Extents, NormalizeTurnsAZeroNormalIntoNotANumber)
{
    PartInfoStr part = quadPart();
    part.partNodes.nodeNormals = newFloats({0, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0});
    model->normalize(&part);
    for (int k = 0; k < 3; ++k) {
        EXPECT_TRUE(std::isnan(part.partNodes.nodeNormals[k]));
    }
    EXPECT_EQ(part.partNodes.nodeNormals[3], 1);
    releasePart(part);
}
