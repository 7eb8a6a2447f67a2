// Entry points for render state, matrices, selection mode, queries, and libGLU's.
#include <algorithm>

// Definitions with default visibility, so that they win over the real libraries' for every shared library of the
// program.
#pragma GCC visibility push(default)
#include <GL/gl.h>
#include <GL/glu.h>

#include "glmodel.h"
#include "recorder.h"

using namespace glrecord;

namespace {
Matrix matrixOf(const GLdouble* m)
{
    Matrix matrix;
    std::copy(m, m + 16, matrix.begin());
    return matrix;
}

Matrix matrixOf(const GLfloat* m)
{
    Matrix matrix;
    std::copy(m, m + 16, matrix.begin());
    return matrix;
}

template <class T> void answer(GLenum name, T* values)
{
    const std::vector<double> result = model::query(name);
    std::transform(result.begin(), result.end(), values, [](double value) { return static_cast<T>(value); });
}
} // namespace

extern "C" {
// --- Render state ---
void glEnable(GLenum capability)
{
    RECORD(glEnable, (enumName(capability)));
    FORWARD(glEnable, (capability))
    model::setEnabled(capability, true);
}

void glDisable(GLenum capability)
{
    RECORD(glDisable, (enumName(capability)));
    FORWARD(glDisable, (capability))
    model::setEnabled(capability, false);
}

GLboolean glIsEnabled(GLenum capability)
{
    RECORD(glIsEnabled, (enumName(capability)));
    FORWARD(glIsEnabled, (capability))
    return model::legal() && state().enabled.count(capability) ? GL_TRUE : GL_FALSE;
}

void glShadeModel(GLenum mode)
{
    RECORD(glShadeModel, (enumName(mode)));
    FORWARD(glShadeModel, (mode))
    if (!model::legal()) {
        return;
    }
    if (mode != GL_FLAT && mode != GL_SMOOTH) {
        return model::raise(GL_INVALID_ENUM);
    }
    state().shadeModel = static_cast<GLint>(mode);
}

void glPolygonMode(GLenum face, GLenum mode)
{
    RECORD(glPolygonMode, (enumName(face), enumName(mode)));
    FORWARD(glPolygonMode, (face, mode))
    model::polygonMode(face, mode);
}

void glPointSize(GLfloat size)
{
    RECORD(glPointSize, (arg(size)));
    FORWARD(glPointSize, (size))
    if (model::legal()) {
        state().pointSize = size;
    }
}

void glLineWidth(GLfloat width)
{
    RECORD(glLineWidth, (arg(width)));
    FORWARD(glLineWidth, (width))
    if (model::legal()) {
        state().lineWidth = width;
    }
}

void glDepthFunc(GLenum func)
{
    RECORD(glDepthFunc, (enumName(func)));
    FORWARD(glDepthFunc, (func))
    if (model::legal()) {
        state().depthFunc = func;
    }
}

void glDepthRange(GLclampd near, GLclampd far)
{
    RECORD(glDepthRange, (arg(near), arg(far)));
    FORWARD(glDepthRange, (near, far))
    if (!model::legal()) {
        return;
    }
    state().depthRange[0] = near;
    state().depthRange[1] = far;
}

void glBlendFunc(GLenum source, GLenum destination)
{
    RECORD(glBlendFunc, (blendName(source), blendName(destination)));
    FORWARD(glBlendFunc, (source, destination))
    if (!model::legal()) {
        return;
    }
    state().blendFunc[0] = source;
    state().blendFunc[1] = destination;
}

void glScissor(GLint x, GLint y, GLsizei width, GLsizei height)
{
    RECORD(glScissor, (arg(x), arg(y), arg(width), arg(height)));
    FORWARD(glScissor, (x, y, width, height))
    const GLint box[4] = {x, y, width, height};
    if (model::legal()) {
        std::copy(box, box + 4, state().scissor);
    }
}

void glViewport(GLint x, GLint y, GLsizei width, GLsizei height)
{
    RECORD(glViewport, (arg(x), arg(y), arg(width), arg(height)));
    FORWARD(glViewport, (x, y, width, height))
    const GLint box[4] = {x, y, width, height};
    model::viewport(box);
}

void glClearColor(GLclampf red, GLclampf green, GLclampf blue, GLclampf alpha)
{
    RECORD(glClearColor, (arg(red), arg(green), arg(blue), arg(alpha)));
    FORWARD(glClearColor, (red, green, blue, alpha))
    model::legal();
}

void glClearDepth(GLclampd depth)
{
    RECORD(glClearDepth, (arg(depth)));
    FORWARD(glClearDepth, (depth))
    model::legal();
}

void glClear(GLbitfield mask)
{
    RECORD(glClear, (clearMaskName(mask)));
    FORWARD(glClear, (mask))
    model::legal();
}

void glFlush()
{
    RECORD(glFlush, ());
    FORWARD(glFlush, ())
    model::legal();
}

void glFinish()
{
    RECORD(glFinish, ());
    FORWARD(glFinish, ())
    model::legal();
}

// --- Matrices ---
void glMatrixMode(GLenum mode)
{
    RECORD(glMatrixMode, (enumName(mode)));
    FORWARD(glMatrixMode, (mode))
    model::matrixMode(mode);
}

void glLoadIdentity()
{
    RECORD(glLoadIdentity, ());
    FORWARD(glLoadIdentity, ())
    model::loadMatrix(model::identity());
}

void glLoadMatrixf(const GLfloat* m)
{
    RECORD(glLoadMatrixf, (vectorArg(m, 16)));
    FORWARD(glLoadMatrixf, (m))
    model::loadMatrix(matrixOf(m));
}

void glLoadMatrixd(const GLdouble* m)
{
    RECORD(glLoadMatrixd, (vectorArg(m, 16)));
    FORWARD(glLoadMatrixd, (m))
    model::loadMatrix(matrixOf(m));
}

void glMultMatrixf(const GLfloat* m)
{
    RECORD(glMultMatrixf, (vectorArg(m, 16)));
    FORWARD(glMultMatrixf, (m))
    model::multMatrix(matrixOf(m));
}

void glMultMatrixd(const GLdouble* m)
{
    RECORD(glMultMatrixd, (vectorArg(m, 16)));
    FORWARD(glMultMatrixd, (m))
    model::multMatrix(matrixOf(m));
}

void glPushMatrix()
{
    RECORD(glPushMatrix, ());
    FORWARD(glPushMatrix, ())
    model::pushMatrix();
}

void glPopMatrix()
{
    RECORD(glPopMatrix, ());
    FORWARD(glPopMatrix, ())
    model::popMatrix();
}

void glTranslatef(GLfloat x, GLfloat y, GLfloat z)
{
    RECORD(glTranslatef, (arg(x), arg(y), arg(z)));
    FORWARD(glTranslatef, (x, y, z))
    model::multMatrix(model::translation(x, y, z));
}

void glTranslated(GLdouble x, GLdouble y, GLdouble z)
{
    RECORD(glTranslated, (arg(x), arg(y), arg(z)));
    FORWARD(glTranslated, (x, y, z))
    model::multMatrix(model::translation(x, y, z));
}

void glRotatef(GLfloat angle, GLfloat x, GLfloat y, GLfloat z)
{
    RECORD(glRotatef, (arg(angle), arg(x), arg(y), arg(z)));
    FORWARD(glRotatef, (angle, x, y, z))
    model::multMatrix(model::rotation(angle, x, y, z));
}

void glRotated(GLdouble angle, GLdouble x, GLdouble y, GLdouble z)
{
    RECORD(glRotated, (arg(angle), arg(x), arg(y), arg(z)));
    FORWARD(glRotated, (angle, x, y, z))
    model::multMatrix(model::rotation(angle, x, y, z));
}

void glScalef(GLfloat x, GLfloat y, GLfloat z)
{
    RECORD(glScalef, (arg(x), arg(y), arg(z)));
    FORWARD(glScalef, (x, y, z))
    model::multMatrix(model::scaling(x, y, z));
}

void glScaled(GLdouble x, GLdouble y, GLdouble z)
{
    RECORD(glScaled, (arg(x), arg(y), arg(z)));
    FORWARD(glScaled, (x, y, z))
    model::multMatrix(model::scaling(x, y, z));
}

void glOrtho(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble near, GLdouble far)
{
    RECORD(glOrtho, (arg(left), arg(right), arg(bottom), arg(top), arg(near), arg(far)));
    FORWARD(glOrtho, (left, right, bottom, top, near, far))
    if (!model::legal()) {
        return;
    }
    if (left == right || bottom == top || near == far) {
        return model::raise(GL_INVALID_VALUE);
    }
    model::multMatrix(model::ortho(left, right, bottom, top, near, far));
}

// --- Selection mode ---
void glSelectBuffer(GLsizei size, GLuint* buffer)
{
    RECORD(glSelectBuffer, (arg(size), arg(static_cast<const void*>(buffer))));
    FORWARD(glSelectBuffer, (size, buffer))
    model::selectBuffer(size, buffer);
}

GLint glRenderMode(GLenum mode)
{
    RECORD(glRenderMode, (enumName(mode)));
    FORWARD(glRenderMode, (mode))
    return model::renderMode(mode);
}

void glInitNames()
{
    RECORD(glInitNames, ());
    FORWARD(glInitNames, ())
    model::initNames();
}

void glLoadName(GLuint name)
{
    RECORD(glLoadName, (arg(name)));
    FORWARD(glLoadName, (name))
    model::loadName(name);
}

void glPushName(GLuint name)
{
    RECORD(glPushName, (arg(name)));
    FORWARD(glPushName, (name))
    model::pushName(name);
}

void glPopName()
{
    RECORD(glPopName, ());
    FORWARD(glPopName, ())
    model::popName();
}

// --- Queries ---
void glGetIntegerv(GLenum name, GLint* values)
{
    RECORD(glGetIntegerv, (enumName(name)));
    FORWARD(glGetIntegerv, (name, values))
    answer(name, values);
}

void glGetFloatv(GLenum name, GLfloat* values)
{
    RECORD(glGetFloatv, (enumName(name)));
    FORWARD(glGetFloatv, (name, values))
    answer(name, values);
}

void glGetDoublev(GLenum name, GLdouble* values)
{
    RECORD(glGetDoublev, (enumName(name)));
    FORWARD(glGetDoublev, (name, values))
    answer(name, values);
}

void glGetBooleanv(GLenum name, GLboolean* values)
{
    RECORD(glGetBooleanv, (enumName(name)));
    FORWARD(glGetBooleanv, (name, values))
    answer(name, values);
}

GLenum glGetError()
{
    RECORD(glGetError, ());
    FORWARD(glGetError, ())
    return model::fetchError();
}

// --- libGLU ---
const GLubyte* gluErrorString(GLenum error)
{
    RECORD(gluErrorString, (enumName(error)));
    static auto* const real = realFunction<decltype(gluErrorString)>("gluErrorString");
    return real(error);
}

GLint gluProject(GLdouble objX, GLdouble objY, GLdouble objZ, const GLdouble* model, const GLdouble* proj,
                 const GLint* view, GLdouble* winX, GLdouble* winY, GLdouble* winZ)
{
    RECORD(gluProject, (arg(objX), arg(objY), arg(objZ)));
    static auto* const real = realFunction<decltype(gluProject)>("gluProject");
    return real(objX, objY, objZ, model, proj, view, winX, winY, winZ);
}

GLint gluUnProject(GLdouble winX, GLdouble winY, GLdouble winZ, const GLdouble* model, const GLdouble* proj,
                   const GLint* view, GLdouble* objX, GLdouble* objY, GLdouble* objZ)
{
    RECORD(gluUnProject, (arg(winX), arg(winY), arg(winZ)));
    static auto* const real = realFunction<decltype(gluUnProject)>("gluUnProject");
    return real(winX, winY, winZ, model, proj, view, objX, objY, objZ);
}

void gluPickMatrix(GLdouble x, GLdouble y, GLdouble delX, GLdouble delY, GLint* viewport)
{
    RECORD(gluPickMatrix, (arg(x), arg(y), arg(delX), arg(delY), "[" + vectorArg(viewport, 4) + "]"));
    if (isForwarding()) {
        static auto* const real = realFunction<decltype(gluPickMatrix)>("gluPickMatrix");
        const InternalCalls libraryAtWork;
        return real(x, y, delX, delY, viewport);
    }
    if (delX <= 0 || delY <= 0) {
        return;
    }
    model::multMatrix(model::translation((viewport[2] - 2 * (x - viewport[0])) / delX,
                                         (viewport[3] - 2 * (y - viewport[1])) / delY, 0));
    model::multMatrix(model::scaling(viewport[2] / delX, viewport[3] / delY, 1));
}
} // extern "C"
#pragma GCC visibility pop
