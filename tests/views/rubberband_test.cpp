// The rubber band and the polyline: points, polygon mode and matrix calls.
#include "rubberband.h"

#include "recordedtest.h"

namespace {
class Outline : public RecordedTest
{
protected:
    void SetUp() override
    {
        RecordedTest::SetUp();
        glMatrixMode(GL_PROJECTION); // neither outline may count on the matrix mode
        forget();
    }

    void drawBand(float startX, float startY, float endX, float endY)
    {
        int viewPort[4] = {0, 0, 800, 600};
        float mouse[4] = {startX, startY, endX, endY};
        createRubberBand(viewPort, mouse, projection);
    }

    void drawPolyline(const std::vector<Point3D>& points)
    {
        std::vector<Point3D> copies = points;
        std::vector<Point3D*> list;
        for (Point3D& point : copies)
            list.push_back(&point);
        createPolyline(list);
    }

    void expectMode(GLint front, GLint back)
    {
        EXPECT_EQ(glrecord::state().polygonMode[0], front);
        EXPECT_EQ(glrecord::state().polygonMode[1], back);
    }

    double projection[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
};
} // namespace

TEST_F(Outline, bandIsALoopOfFourCornersUnderTheIdentity)
{
    projection[14] = -0.25; // window depth 0.5 is then z = 0.25
    drawBand(400, 300, 800, 450);
    EXPECT_EQ(glrecord::lines(),
              (Lines{"gluUnProject(400,300,0.5)", "gluUnProject(800,450,0.5)", "glGetIntegerv(GL_POLYGON_MODE)",
                     "glPolygonMode(GL_FRONT_AND_BACK,GL_LINE)", "glMatrixMode(GL_MODELVIEW)", "glPushMatrix()",
                     "glLoadIdentity()", "glColor4f(1,1,1,1)", "glBegin(GL_LINE_LOOP)", "glVertex3dv(0,0,0.25)",
                     "glVertex3d(1,0,-0.25)", "glVertex3d(1,0.5,-0.25)", "glVertex3d(0,0.5,-0.25)", "glEnd()",
                     "glPopMatrix()", "glPolygonMode(GL_FRONT_AND_BACK,GL_FILL)"}));
}

TEST_F(Outline, bandPrintsBothCornersAsDoubles)
{
    projection[14] = -0.25;
    drawBand(400, 300, 800, 450);
    EXPECT_EQ(printed(), "start world=0,0,0.25\nend world=1,0.5,0.25\n");
}

TEST_F(Outline, bandOfOnePointIsFourTimesThatPoint)
{
    drawBand(800, 600, 800, 600);
    EXPECT_EQ(glrecord::matching("glVertex"),
              (Lines{"glVertex3dv(1,1,0)", "glVertex3d(1,1,-0)", "glVertex3d(1,1,-0)", "glVertex3d(1,1,-0)"}));
    EXPECT_EQ(printed(), "start world=1,1,0\nend world=1,1,0\n");
}

TEST_F(Outline, bandIgnoresTheModelviewInForceAndPutsItBack)
{
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(5, 6, 7);
    drawBand(800, 600, 400, 300);
    EXPECT_EQ(glrecord::matching("glVertex3dv"), (Lines{"glVertex3dv(1,1,0)"}));
    EXPECT_EQ(glrecord::modelview()[13], 6);
}

TEST_F(Outline, bandUsesTheGivenProjectionAndNotTheOneInForce)
{
    glScalef(2, 2, 2); // the projection
    drawBand(800, 600, 400, 300);
    EXPECT_EQ(glrecord::matching("glVertex3dv"), (Lines{"glVertex3dv(1,1,0)"}));
    EXPECT_EQ(glrecord::projection()[0], 2) << "left as it is";
}

TEST_F(Outline, polylineIsAPolygonOfItsPointsUnderTheModelviewInForce)
{
    drawPolyline({{{1, 2, 3}}, {{4, 5, 6}}, {{7, 8, 9}}, {{1, 0, 0.5f}}});
    EXPECT_EQ(glrecord::lines(),
              (Lines{"glGetIntegerv(GL_POLYGON_MODE)", "glPolygonMode(GL_FRONT_AND_BACK,GL_LINE)",
                     "glMatrixMode(GL_MODELVIEW)", "glColor4f(1,1,1,1)", "glBegin(GL_POLYGON)", "glVertex3fv(1,2,3)",
                     "glVertex3fv(4,5,6)", "glVertex3fv(7,8,9)", "glVertex3fv(1,0,0.5)", "glEnd()",
                     "glPolygonMode(GL_FRONT_AND_BACK,GL_FILL)"}));
    EXPECT_EQ(printed(), "");
}

TEST_F(Outline, polylineOfTwoPointsIsSentAsItIs)
{
    drawPolyline({{{1, 2, 3}}, {{4, 5, 6}}});
    EXPECT_EQ(glrecord::between("glBegin", "glEnd"),
              (Lines{"glBegin(GL_POLYGON)", "glVertex3fv(1,2,3)", "glVertex3fv(4,5,6)", "glEnd()"}));
}

TEST_F(Outline, emptyPolylineIsAnEmptyPolygon)
{
    drawPolyline({});
    EXPECT_EQ(glrecord::between("glBegin", "glEnd"), (Lines{"glBegin(GL_POLYGON)", "glEnd()"}));
}

TEST_F(Outline, polygonModeComesBackForBothFaces)
{
    for (GLint mode : {GL_FILL, GL_LINE, GL_POINT}) {
        glPolygonMode(GL_FRONT_AND_BACK, static_cast<GLenum>(mode));
        drawBand(0, 0, 1, 1);
        expectMode(mode, mode);
        drawPolyline({});
        expectMode(mode, mode);
    }
}

TEST_F(Outline, frontModeComesBackForTheBackToo)
{
    glPolygonMode(GL_FRONT, GL_POINT);
    drawBand(0, 0, 1, 1);
    expectMode(GL_POINT, GL_POINT);
    glPolygonMode(GL_BACK, GL_FILL);
    drawPolyline({});
    expectMode(GL_POINT, GL_POINT);
}

TEST_F(Outline, leavesTheModelviewModeAndWhite)
{
    drawBand(0, 0, 1, 1);
    EXPECT_EQ(glrecord::state().matrixMode, static_cast<GLenum>(GL_MODELVIEW));
    EXPECT_EQ(glrecord::state().color, (std::array<float, 4>{1, 1, 1, 1}));
    glMatrixMode(GL_PROJECTION);
    glColor4f(0, 0, 0, 0);
    drawPolyline({});
    EXPECT_EQ(glrecord::state().matrixMode, static_cast<GLenum>(GL_MODELVIEW));
    EXPECT_EQ(glrecord::state().color, (std::array<float, 4>{1, 1, 1, 1}));
}
