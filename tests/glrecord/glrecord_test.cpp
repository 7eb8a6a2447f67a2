// The recorder itself: lines, the stand-in's semantics, matrices.
#include "glrecord.h"

#include <cmath>

#include <gtest/gtest.h>

using glrecord::Lines;

namespace {
class Recorder : public testing::Test
{
protected:
    void SetUp() override { glrecord::start(glrecord::Mode::RecordOnly); }
    void TearDown() override { glrecord::stop(); }
};

void expectMatrix(const glrecord::Matrix& actual, const glrecord::Matrix& expected)
{
    for (int k = 0; k < 16; ++k) {
        EXPECT_NEAR(actual[k], expected[k], 1e-12) << "entry " << k;
    }
}

// The model point (x, y, z) in eye space.
std::array<double, 3> transformed(double x, double y, double z)
{
    const glrecord::Matrix& m = glrecord::modelview();
    std::array<double, 3> result;
    for (int row = 0; row < 3; ++row) {
        result[row] = m[row] * x + m[4 + row] * y + m[8 + row] * z + m[12 + row];
    }
    return result;
}

void expectPoint(const std::array<double, 3>& actual, double x, double y, double z)
{
    EXPECT_NEAR(actual[0], x, 1e-12);
    EXPECT_NEAR(actual[1], y, 1e-12);
    EXPECT_NEAR(actual[2], z, 1e-12);
}
} // namespace

TEST_F(Recorder, WritesOneLinePerCallWithEnumsByName)
{
    const float point[3] = {1, 2.5f, 0.1f};
    const float position[4] = {1, -3, -4, 0};
    glBegin(GL_QUADS);
    glVertex3fv(point);
    glEnd();
    glLightfv(GL_LIGHT0, GL_POSITION, position);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    EXPECT_EQ(glrecord::lines(), (Lines{"glBegin(GL_QUADS)", "glVertex3fv(1,2.5,0.100000001)", "glEnd()",
                                        "glLightfv(GL_LIGHT0,GL_POSITION,1,-3,-4,0)",
                                        "glClear(GL_COLOR_BUFFER_BIT|GL_DEPTH_BUFFER_BIT)"}));
}

TEST_F(Recorder, PrintsUnknownEnumsAsHexadecimal)
{
    glEnable(0x1234);
    glBegin(77);
    glClear(0x8);
    EXPECT_EQ(glrecord::lines(), (Lines{"glEnable(0x1234)", "glBegin(0x004D)", "glClear(0x0008)"}));
}

TEST_F(Recorder, TellsApartEnumsThatShareAValue)
{
    glBegin(GL_POINTS);
    glEnd();
    glBlendFunc(GL_ONE, GL_ZERO);
    glGetError();
    EXPECT_EQ(glrecord::lines(),
              (Lines{"glBegin(GL_POINTS)", "glEnd()", "glBlendFunc(GL_ONE,GL_ZERO)", "glGetError()"}));
}

TEST_F(Recorder, WritesArraysAndTextByContent)
{
    const GLuint indices[4] = {3, 2, 1, 0};
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    glDrawElements(GL_QUADS, 4, GL_UNSIGNED_INT, indices);
    glCallLists(2, GL_UNSIGNED_BYTE, "17");
    EXPECT_EQ(glrecord::lines(),
              (Lines{"glVertexPointer(3,GL_FLOAT,0,null)", "glDrawElements(GL_QUADS,4,GL_UNSIGNED_INT,[3,2,1,0])",
                     "glCallLists(2,GL_UNSIGNED_BYTE,\"17\")"}));
}

TEST_F(Recorder, RemembersPointersThatTheLinesDoNotShow)
{
    const float values[3] = {};
    const GLubyte image[4] = {};
    glVertexPointer(3, GL_FLOAT, 0, values);
    glNormalPointer(GL_FLOAT, 0, values + 1);
    glBitmap(8, 1, 0, 0, 0, 0, image);
    EXPECT_EQ(glrecord::vertexPointer(), values);
    EXPECT_EQ(glrecord::normalPointer(), values + 1);
    EXPECT_EQ(glrecord::bitmaps(), std::vector<const unsigned char*>{image});
}

TEST_F(Recorder, ClearForgetsLinesAndKeepsState)
{
    glViewport(1, 2, 30, 40);
    glrecord::clear();
    EXPECT_TRUE(glrecord::lines().empty());
    GLint box[4];
    glGetIntegerv(GL_VIEWPORT, box);
    EXPECT_EQ(box[3], 40);
}

TEST_F(Recorder, StartResetsTheState)
{
    glViewport(1, 2, 30, 40);
    glEnable(GL_BLEND);
    glPushMatrix();
    glrecord::start(glrecord::Mode::RecordOnly);
    EXPECT_EQ(glrecord::state().viewport[2], 0);
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_EQ(glrecord::state().stacks[GL_MODELVIEW].size(), 1u);
}

TEST_F(Recorder, QuestionsFindLines)
{
    glPointSize(8);
    glBegin(GL_POINTS);
    glVertex3f(1, 2, 3);
    glEnd();
    glPointSize(1);
    EXPECT_EQ(glrecord::count("glPointSize"), 2);
    EXPECT_EQ(glrecord::count("glPoint"), 0) << "count takes whole names";
    EXPECT_EQ(glrecord::matching("glPoint"), (Lines{"glPointSize(8)", "glPointSize(1)"}));
    EXPECT_EQ(glrecord::find("glEnd"), 3);
    EXPECT_EQ(glrecord::find("glPointSize", 1), 4);
    EXPECT_EQ(glrecord::find("glFlush"), -1);
    EXPECT_EQ(glrecord::between("glBegin", "glEnd"), (Lines{"glBegin(GL_POINTS)", "glVertex3f(1,2,3)", "glEnd()"}));
}

TEST_F(Recorder, PlainDropsTheTypeOfVertexAttributesOnly)
{
    EXPECT_EQ(glrecord::plain({"glVertex3dv(1,2,3)", "glColor3f(1,0,0)", "glRasterPos3fv(0,0,0)",
                               "glColorMaterial(a,b)", "glPointSize(1)", "glTranslated(1,2,3)"}),
              (Lines{"glVertex(1,2,3)", "glColor(1,0,0)", "glRasterPos(0,0,0)", "glColorMaterial(a,b)",
                     "glPointSize(1)", "glTranslate(1,2,3)"}));
}

TEST_F(Recorder, LaterMatrixCallsActFirstOnThePoint)
{
    glTranslatef(10, 0, 0);
    glRotatef(90, 0, 0, 1);
    glScalef(2, 3, 4);
    expectPoint(transformed(1, 1, 1), 7, 2, 4); // scaled (2, 3, 4), turned (-3, 2, 4), moved
}

TEST_F(Recorder, RotationsAreCounterClockwiseAboutEachAxis)
{
    glRotatef(90, 1, 0, 0);
    expectPoint(transformed(0, 1, 0), 0, 0, 1);
    glLoadIdentity();
    glRotatef(90, 0, 1, 0);
    expectPoint(transformed(0, 0, 1), 1, 0, 0);
    glLoadIdentity();
    glRotatef(-90, 0, 0, 5);
    expectPoint(transformed(1, 0, 0), 0, -1, 0);
}

TEST_F(Recorder, RotationAboutASlantedAxisFollowsTheFormula)
{
    glRotatef(120, 1, 1, 1); // carries x to y to z
    expectPoint(transformed(1, 2, 3), 3, 1, 2);
    glLoadIdentity();
    glRotatef(30, 0, 0, 1);
    expectPoint(transformed(1, 0, 0), std::sqrt(0.75), 0.5, 0);
}

TEST_F(Recorder, LoadedAndMultipliedMatricesAreColumnMajor)
{
    const GLdouble moved[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1};
    glLoadMatrixd(moved);
    const GLfloat doubled[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1};
    glMultMatrixf(doubled);
    expectPoint(transformed(1, 1, 1), 7, 8, 9);
    GLdouble read[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, read);
    EXPECT_EQ(read[12], 5);
    EXPECT_EQ(read[0], 2);
}

TEST_F(Recorder, OrthoMapsTheBoxToTheUnitCube)
{
    glMatrixMode(GL_PROJECTION);
    glOrtho(-1, 3, 0, 2, 9999, -9999);
    expectMatrix(glrecord::projection(), {0.5, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1.0 / 9999, 0, -0.5, -1, 0, 1});
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(Recorder, OrthoWithEqualPlanesRaisesAnErrorAndLeavesTheMatrixAlone)
{
    glMatrixMode(GL_PROJECTION);
    const glrecord::Matrix before = glrecord::projection();
    glOrtho(5, 5, 0, 1, -1, 1);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    glOrtho(0, 1, 2, 2, -1, 1);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    EXPECT_EQ(glrecord::projection(), before);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << "an error is fetched once";
}

TEST_F(Recorder, PushAndPopKeepTheModesApart)
{
    glTranslatef(1, 0, 0);
    glPushMatrix();
    glMatrixMode(GL_PROJECTION);
    glScalef(2, 2, 2);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(1, 0, 0);
    expectPoint(transformed(0, 0, 0), 2, 0, 0);
    glPopMatrix();
    expectPoint(transformed(0, 0, 0), 1, 0, 0);
    EXPECT_EQ(glrecord::projection()[0], 2);
}

TEST_F(Recorder, StacksHaveABottomAndATop)
{
    glPopMatrix();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_STACK_UNDERFLOW));
    for (int k = 0; k < 31; ++k) {
        glPushMatrix();
    }
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    glPushMatrix();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_STACK_OVERFLOW));
}

TEST_F(Recorder, StateCallsBetweenBeginAndEndAreRefused)
{
    glBegin(GL_LINES);
    glEnable(GL_BLEND);
    glTranslatef(1, 0, 0);
    glEnd();
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_EQ(glrecord::modelview()[12], 0);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
}

TEST_F(Recorder, EndWithoutBeginIsAnError)
{
    glEnd();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
}

TEST_F(Recorder, TheFirstErrorStays)
{
    glPopMatrix();
    glShadeModel(GL_LINE);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_STACK_UNDERFLOW));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(Recorder, PolygonModeIsKeptPerFace)
{
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    glPolygonMode(GL_BACK, GL_POINT);
    GLint mode[2];
    glGetIntegerv(GL_POLYGON_MODE, mode);
    EXPECT_EQ(mode[0], GL_LINE);
    EXPECT_EQ(mode[1], GL_POINT);
}

TEST_F(Recorder, ProjectingAndUnprojectingUseTheRealArithmetic)
{
    const GLint view[4] = {0, 0, 800, 600};
    const glrecord::Matrix& one = glrecord::modelview();
    double x, y, z;
    EXPECT_TRUE(gluUnProject(400, 300, 0.5, one.data(), one.data(), view, &x, &y, &z));
    expectPoint({x, y, z}, 0, 0, 0);
    EXPECT_TRUE(gluProject(1, -1, 0, one.data(), one.data(), view, &x, &y, &z));
    expectPoint({x, y, z}, 800, 0, 0.5);
    EXPECT_EQ(glrecord::lines(), (Lines{"gluUnProject(400,300,0.5)", "gluProject(1,-1,0)"}));
}

TEST_F(Recorder, PickMatrixEnlargesTheRegionToTheWholeViewport)
{
    GLint view[4] = {10, 20, 100, 50};
    glMatrixMode(GL_PROJECTION);
    gluPickMatrix(35, 45, 10, 5, view);
    // The region's centre goes to the middle, its right edge to the right edge.
    const glrecord::Matrix& m = glrecord::projection();
    const double centreX = (35 - 10) / 50.0 - 1, rightX = (40 - 10) / 50.0 - 1;
    EXPECT_NEAR(m[0] * centreX + m[12], 0, 1e-12);
    EXPECT_NEAR(m[0] * rightX + m[12], 1, 1e-12);
    EXPECT_NEAR(m[5] * ((45 - 20) / 25.0 - 1) + m[13], 0, 1e-12);
    EXPECT_EQ(glrecord::lines().back(), "gluPickMatrix(35,45,10,5,[10,20,100,50])") << "and nothing of its own calls";
}

TEST_F(Recorder, PickMatrixOfAnEmptyRegionChangesNothing)
{
    GLint view[4] = {0, 0, 100, 50};
    const glrecord::Matrix before = glrecord::modelview();
    gluPickMatrix(5, 5, 0, 5, view);
    EXPECT_EQ(glrecord::modelview(), before);
}

TEST_F(Recorder, NamesCountOnlyInSelectionMode)
{
    GLuint buffer[4] = {};
    glPushName(7);
    EXPECT_TRUE(glrecord::state().names.empty());
    glSelectBuffer(4, buffer);
    glRenderMode(GL_SELECT);
    glInitNames();
    glPushName(7);
    glLoadName(8);
    glPushName(9);
    EXPECT_EQ(glrecord::state().names, (std::vector<GLuint>{8, 9}));
    glPopName();
    glPopName();
    glPopName();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_STACK_UNDERFLOW));
}

TEST_F(Recorder, LeavingSelectionModeGivesThePreparedHitsOnce)
{
    GLuint buffer[4] = {};
    glrecord::setSelectResult(1, {1, 10, 20, 3, 99});
    glSelectBuffer(4, buffer);
    EXPECT_EQ(glRenderMode(GL_SELECT), 0);
    EXPECT_EQ(glRenderMode(GL_RENDER), 1);
    EXPECT_EQ(buffer[3], 3u);
    glRenderMode(GL_SELECT);
    EXPECT_EQ(glRenderMode(GL_RENDER), 0);
}

TEST_F(Recorder, SelectionModeNeedsABuffer)
{
    EXPECT_EQ(glRenderMode(GL_SELECT), 0);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
    EXPECT_EQ(glrecord::state().renderMode, static_cast<GLenum>(GL_RENDER));
}

TEST_F(Recorder, LightsAreKeptAsPassed)
{
    const float color[4] = {0.5f, 0, 0, 1};
    glLightfv(GL_LIGHT1, GL_AMBIENT, color);
    glLighti(GL_LIGHT1, GL_SPOT_EXPONENT, 30);
    EXPECT_EQ(glrecord::state().lights[GL_LIGHT1][GL_AMBIENT], (std::vector<float>{0.5f, 0, 0, 1}));
    EXPECT_EQ(glrecord::state().lights[GL_LIGHT1][GL_SPOT_EXPONENT], std::vector<float>{30});
}

TEST(StoppedRecorder, RecordsNothing)
{
    glrecord::start(glrecord::Mode::RecordOnly);
    glFlush();
    glrecord::stop();
    EXPECT_EQ(gluErrorString(GL_NO_ERROR)[0], 'n'); // the real text, "no error"
    EXPECT_EQ(glrecord::lines(), Lines{"glFlush()"});
}
