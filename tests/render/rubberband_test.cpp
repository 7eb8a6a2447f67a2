// Outlines drawn over the model: the rubber band's rectangle and the polyline.
#include "modelbuilder.h"
#include "recordedtest.h"
#include "rubberband.h"

namespace {
class Outline : public RecordedTest
{
protected:
    int viewPort[4] = {0, 0, 200, 100};
    double projection[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
};
} // namespace

TEST_F(Outline, TheRubberBandIsAWhiteLoopUnderAnIdentityModelview)
{
    glTranslatef(50, 0, 0);
    projection[14] = 0.25; // the window's middle depth is at z = -0.25
    forget();
    float mouse[4] = {50, 25, 150, 100};
    createRubberBand(viewPort, mouse, projection);
    const Lines expected = {"gluUnProject(50,25,0.5)",
                            "gluUnProject(150,100,0.5)",
                            "glGetIntegerv(GL_POLYGON_MODE)",
                            "glPolygonMode(GL_FRONT_AND_BACK,GL_LINE)",
                            "glMatrixMode(GL_MODELVIEW)",
                            "glPushMatrix()",
                            "glLoadIdentity()",
                            "glColor(1,1,1,1)",
                            "glBegin(GL_LINE_LOOP)",
                            "glVertex(-0.5,-0.5,-0.25)",
                            "glVertex(0.5,-0.5,0.25)", // the other three have the start's depth negated
                            "glVertex(0.5,1,0.25)",
                            "glVertex(-0.5,1,0.25)",
                            "glEnd()",
                            "glPopMatrix()",
                            "glPolygonMode(GL_FRONT_AND_BACK,GL_FILL)"};
    EXPECT_EQ(glrecord::plain(glrecord::lines()), expected);
    EXPECT_EQ(glrecord::matching("glVertex").at(0), "glVertex3dv(-0.5,-0.5,-0.25)");
    EXPECT_EQ(printed(), "start world=-0.5,-0.5,-0.25\nend world=0.5,1,-0.25\n");
}

TEST_F(Outline, OnlyTheFirstCornerOfTheBandKeepsTheStartsDepth)
{
    projection[14] = -0.5;
    float mouse[4] = {0, 0, 200, 100};
    createRubberBand(viewPort, mouse, projection);
    EXPECT_EQ(glrecord::plain(glrecord::matching("glVertex")),
              (Lines{"glVertex(-1,-1,0.5)", "glVertex(1,-1,-0.5)", "glVertex(1,1,-0.5)", "glVertex(-1,1,-0.5)"}));
}

TEST_F(Outline, TheDepthOfTheOtherCornersIsTheStartsNotTheEnds)
{
    projection[2] = 0.5; // slanted: the depth of a window point depends on its x
    float mouse[4] = {0, 0, 200, 100};
    createRubberBand(viewPort, mouse, projection);
    EXPECT_EQ(printed(), "start world=-1,-1,0.5\nend world=1,1,-0.5\n");
    EXPECT_EQ(glrecord::plain(glrecord::matching("glVertex")),
              (Lines{"glVertex(-1,-1,0.5)", "glVertex(1,-1,-0.5)", "glVertex(1,1,-0.5)", "glVertex(-1,1,-0.5)"}));
}

TEST_F(Outline, ARubberBandWithoutSizeStillPrintsBothPoints)
{
    float mouse[4] = {150, 75, 150, 75};
    createRubberBand(viewPort, mouse, projection);
    EXPECT_EQ(printed(), "start world=0.5,0.5,0\nend world=0.5,0.5,0\n");
    EXPECT_EQ(glrecord::plain(glrecord::matching("glVertex")),
              (Lines{"glVertex(0.5,0.5,0)", "glVertex(0.5,0.5,-0)", "glVertex(0.5,0.5,-0)", "glVertex(0.5,0.5,-0)"}));
}

TEST_F(Outline, TheRubberBandUsesTheProjectionThatItIsGiven)
{
    glMatrixMode(GL_PROJECTION);
    glScalef(9, 9, 9); // not asked for
    projection[0] = 0.5;
    float mouse[4] = {150, 75, 50, 25};
    createRubberBand(viewPort, mouse, projection);
    EXPECT_EQ(printed(), "start world=1,0.5,0\nend world=-1,-0.5,0\n");
    EXPECT_EQ(glrecord::count("glGetDoublev"), 0);
}

TEST_F(Outline, TheRubberBandLeavesMatrixModeAndColourAndNothingElse)
{
    glMatrixMode(GL_PROJECTION);
    glTranslatef(3, 0, 0);
    const glrecord::Matrix before = glrecord::projection();
    float mouse[4] = {0, 0, 10, 10};
    createRubberBand(viewPort, mouse, projection);
    EXPECT_EQ(glrecord::state().matrixMode, static_cast<GLenum>(GL_MODELVIEW));
    EXPECT_EQ(glrecord::projection(), before);
    EXPECT_EQ(glrecord::state().color, (std::array<float, 4>{1, 1, 1, 1}));
    EXPECT_EQ(glrecord::state().stacks[GL_MODELVIEW].size(), 1u);
    for (const char* untouched : {"glLineWidth", "glEnable", "glDisable", "glDepthFunc", "glBlendFunc"}) {
        EXPECT_EQ(glrecord::count(untouched), 0) << untouched;
    }
}

TEST_F(Outline, ThePolygonModeIsBackAfterwardsForBothFaces)
{
    std::vector<Point3D*> none;
    float mouse[4] = {0, 0, 10, 10};
    for (int outline : {0, 1}) {
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        outline ? createPolyline(none) : createRubberBand(viewPort, mouse, projection);
        EXPECT_EQ(glrecord::state().polygonMode[0], GL_FILL);
        EXPECT_EQ(glrecord::state().polygonMode[1], GL_FILL);
        glPolygonMode(GL_FRONT, GL_POINT); // of two different modes the front one is put back
        outline ? createPolyline(none) : createRubberBand(viewPort, mouse, projection);
        EXPECT_EQ(glrecord::state().polygonMode[0], GL_POINT);
        EXPECT_EQ(glrecord::state().polygonMode[1], GL_POINT);
    }
}

TEST_F(Outline, ThePolylineIsAPolygonInLinesUnderTheModelviewInForce)
{
    Point3D points[4] = {{{0, 0, 0}}, {{1, 0, 2}}, {{1, 1, 0}}, {{0.5f, 2, 0}}};
    std::vector<Point3D*> list = {&points[0], &points[1], &points[2], &points[3]};
    glTranslatef(4, 0, 0);
    const glrecord::Matrix before = glrecord::modelview();
    forget();
    createPolyline(list);
    EXPECT_EQ(glrecord::lines(),
              (Lines{"glGetIntegerv(GL_POLYGON_MODE)", "glPolygonMode(GL_FRONT_AND_BACK,GL_LINE)",
                     "glMatrixMode(GL_MODELVIEW)", "glColor4f(1,1,1,1)", "glBegin(GL_POLYGON)", "glVertex3fv(0,0,0)",
                     "glVertex3fv(1,0,2)", "glVertex3fv(1,1,0)", "glVertex3fv(0.5,2,0)", "glEnd()",
                     "glPolygonMode(GL_FRONT_AND_BACK,GL_FILL)"}));
    EXPECT_EQ(glrecord::modelview(), before);
    EXPECT_EQ(printed(), "");
}

TEST_F(Outline, AShortOrEmptyPolylineIsIssuedAsItIs)
{
    std::vector<Point3D*> list;
    createPolyline(list);
    EXPECT_EQ(glrecord::between("glBegin", "glEnd"), (Lines{"glBegin(GL_POLYGON)", "glEnd()"}));
    Point3D point = {{1, 2, 3}};
    list = {&point, &point};
    forget();
    createPolyline(list);
    EXPECT_EQ(glrecord::count("glVertex3fv"), 2);
}

TEST_F(Outline, ThePolylineLeavesModelviewModeAndWhite)
{
    std::vector<Point3D*> list;
    glMatrixMode(GL_PROJECTION);
    glColor4f(0, 0, 0, 0);
    createPolyline(list);
    EXPECT_EQ(glrecord::state().matrixMode, static_cast<GLenum>(GL_MODELVIEW));
    EXPECT_EQ(glrecord::state().color, (std::array<float, 4>{1, 1, 1, 1}));
}

TEST_F(Outline, ThePolylineSelectsTheModelviewWithoutPushingIt)
{
    std::vector<Point3D*> list;
    glMatrixMode(GL_PROJECTION);
    createPolyline(list);
    EXPECT_EQ(glrecord::state().matrixMode, static_cast<GLenum>(GL_MODELVIEW));
    EXPECT_EQ(glrecord::count("glPushMatrix"), 0);
    EXPECT_EQ(glrecord::count("glLoadIdentity"), 0);
}
