// The recorder in front of a real OpenGL: calls go through, and the stand-in behaves like the real thing.
#include "glrecord.h"

#include <functional>

#include <gtest/gtest.h>

#include "headless_context.h"
#include "offscreen.h"

using glrecord::Lines;
using glrecord::Mode;

namespace {
class RealOpenGL : public testing::Test
{
protected:
    void TearDown() override { glrecord::stop(); }

    kvo::HeadlessContext context{"software"};
    kvo::Offscreen target{16, 16};
};

using Calls = std::function<void()>;

glrecord::Matrix readMatrix(GLenum name)
{
    glrecord::Matrix matrix;
    glGetDoublev(name, matrix.data());
    return matrix;
}

// The calls, once with the stand-in and once with the real OpenGL: the same matrices and the same error.
void expectSameMatrices(const Calls& calls)
{
    glrecord::Matrix modelview[2], projection[2];
    GLenum error[2];
    for (int real : {0, 1}) {
        glrecord::start(real ? Mode::RecordAndForward : Mode::RecordOnly);
        for (GLenum mode : {GL_PROJECTION, GL_MODELVIEW}) {
            glMatrixMode(mode);
            glLoadIdentity();
        }
        calls();
        error[real] = glGetError();
        modelview[real] = readMatrix(GL_MODELVIEW_MATRIX);
        projection[real] = readMatrix(GL_PROJECTION_MATRIX);
    }
    EXPECT_EQ(error[0], error[1]);
    for (int k = 0; k < 16; ++k) {
        EXPECT_NEAR(modelview[0][k], modelview[1][k], 1e-5) << "modelview " << k;
        EXPECT_NEAR(projection[0][k], projection[1][k], 1e-5) << "projection " << k;
    }
}
} // namespace

TEST_F(RealOpenGL, CallsAreRecordedAndReachIt)
{
    glrecord::start(Mode::RecordAndForward);
    glViewport(1, 2, 30, 40);
    GLint box[4] = {};
    glGetIntegerv(GL_VIEWPORT, box);
    EXPECT_EQ(glrecord::lines(), (Lines{"glViewport(1,2,30,40)", "glGetIntegerv(GL_VIEWPORT)"}));
    EXPECT_EQ(box[2], 30);
    EXPECT_EQ(glrecord::state().viewport[2], 0) << "the stand-in takes no part";
}

TEST_F(RealOpenGL, WhatLibGLUCallsIsNotRecorded)
{
    glrecord::start(Mode::RecordAndForward);
    GLint view[4] = {0, 0, 100, 50};
    const glrecord::Matrix before = readMatrix(GL_MODELVIEW_MATRIX);
    glrecord::clear();
    gluPickMatrix(10, 20, 4, 4, view);
    EXPECT_EQ(glrecord::lines(), Lines{"gluPickMatrix(10,20,4,4,[0,0,100,50])"});
    EXPECT_NE(readMatrix(GL_MODELVIEW_MATRIX), before);
}

TEST_F(RealOpenGL, MatrixProductsAgree)
{
    expectSameMatrices([] {
        glTranslatef(1, 2, 3);
        glRotatef(30, 0, 0, 1);
        glRotatef(-75, 1, 2, -0.5f);
        glScalef(2, 3, 0.5f);
        glPushMatrix();
        glLoadIdentity();
        glPopMatrix();
        const GLfloat turned[16] = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 4, 5, 6, 1};
        glMultMatrixf(turned);
        glRotatef(90, 0, 1, 0);
    });
}

TEST_F(RealOpenGL, LoadedMatricesAgree)
{
    expectSameMatrices([] {
        GLdouble values[16];
        for (int k = 0; k < 16; ++k) {
            values[k] = k * k - 7;
        }
        glLoadMatrixd(values);
        glTranslatef(1, -1, 2);
    });
}

TEST_F(RealOpenGL, ProjectionsAgree)
{
    expectSameMatrices([] {
        glMatrixMode(GL_PROJECTION);
        glOrtho(-1, 3, 0, 2, 9999, -9999);
        GLint view[4] = {10, 20, 100, 50};
        gluPickMatrix(35, 45, 10, 5, view);
        glOrtho(-2, 5, 1, 2, 9999, -9999);
    });
}

TEST_F(RealOpenGL, RefusedProjectionsAgree)
{
    expectSameMatrices([] {
        glMatrixMode(GL_PROJECTION);
        glScalef(2, 2, 2);
        glOrtho(5, 5, 0, 1, 9999, -9999);
    });
}

TEST_F(RealOpenGL, AnEmptyPickRegionAgrees)
{
    expectSameMatrices([] {
        GLint view[4] = {0, 0, 100, 50};
        gluPickMatrix(5, 5, 0, 5, view);
        gluPickMatrix(5, 5, 5, -1, view);
    });
}

TEST_F(RealOpenGL, ErrorsAgree)
{
    const Calls mistakes[] = {[] { glPopMatrix(); },
                              [] { glShadeModel(GL_LINE); },
                              [] { glPolygonMode(GL_FRONT_AND_BACK, GL_FLAT); },
                              [] { glMatrixMode(GL_LINE); },
                              [] { glEnd(); },
                              [] { glBegin(99); },
                              [] { glRenderMode(GL_SELECT); },
                              [] { glViewport(0, 0, -1, 5); },
                              [] {
                                  glBegin(GL_LINES);
                                  glTranslatef(1, 1, 1);
                                  glEnd();
                              }};
    for (const Calls& mistake : mistakes) {
        expectSameMatrices(mistake);
    }
}
