// The entry points themselves: record a line, then forward the call or apply it to the stand-in.
#include <algorithm>

// Definitions with default visibility, so that they win over the real libraries' for every shared library of the
// program.
#pragma GCC visibility push(default)
#include <GL/gl.h>
#include <GL/glu.h>

#include "glmodel.h"
#include "recorder.h"

using namespace glrecord;

// Ends the entry point by calling the real one while forwarding; the arguments stand in parentheses.
#define FORWARD(function, arguments)                                                                                   \
    if (isForwarding()) {                                                                                              \
        static auto* const real = realFunction<decltype(function)>(#function);                                         \
        return real arguments;                                                                                         \
    }

// Records "function(arguments)"; the arguments are texts in parentheses.
#define RECORD(function, arguments) record(std::string(#function "(") + joined arguments + ")")

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

int lightParameterLength(GLenum name)
{
    switch (name) {
    case GL_AMBIENT:
    case GL_DIFFUSE:
    case GL_SPECULAR:
    case GL_POSITION:
        return 4;
    case GL_SPOT_DIRECTION:
        return 3;
    default:
        return 1;
    }
}

template <class T> void setLight(GLenum light, GLenum name, const T* values, int count)
{
    if (model::legal())
        state().lights[light][name] = std::vector<float>(values, values + count);
}

template <class T> void setColor(T red, T green, T blue, T alpha)
{
    state().color = {red, green, blue, alpha};
}

template <class T> void answer(GLenum name, T* values)
{
    const std::vector<double> result = model::query(name);
    std::transform(result.begin(), result.end(), values, [](double value) { return static_cast<T>(value); });
}

std::string quoted(const void* text, GLsizei length)
{
    return '"' + std::string(static_cast<const char*>(text), length) + '"';
}
} // namespace

extern "C" {
// --- Primitives
// --------------------------------------------------------------------------------------------------------
void glBegin(GLenum mode)
{
    RECORD(glBegin, (primitiveName(mode)));
    FORWARD(glBegin, (mode))
    model::begin(mode);
}

void glEnd()
{
    RECORD(glEnd, ());
    FORWARD(glEnd, ())
    model::end();
}

void glVertex3f(GLfloat x, GLfloat y, GLfloat z)
{
    RECORD(glVertex3f, (arg(x), arg(y), arg(z)));
    FORWARD(glVertex3f, (x, y, z))
}

void glVertex3fv(const GLfloat* v)
{
    RECORD(glVertex3fv, (vectorArg(v, 3)));
    FORWARD(glVertex3fv, (v))
}

void glVertex3d(GLdouble x, GLdouble y, GLdouble z)
{
    RECORD(glVertex3d, (arg(x), arg(y), arg(z)));
    FORWARD(glVertex3d, (x, y, z))
}

void glVertex3dv(const GLdouble* v)
{
    RECORD(glVertex3dv, (vectorArg(v, 3)));
    FORWARD(glVertex3dv, (v))
}

void glNormal3f(GLfloat x, GLfloat y, GLfloat z)
{
    RECORD(glNormal3f, (arg(x), arg(y), arg(z)));
    FORWARD(glNormal3f, (x, y, z))
}

void glNormal3fv(const GLfloat* v)
{
    RECORD(glNormal3fv, (vectorArg(v, 3)));
    FORWARD(glNormal3fv, (v))
}

void glColor3f(GLfloat red, GLfloat green, GLfloat blue)
{
    RECORD(glColor3f, (arg(red), arg(green), arg(blue)));
    FORWARD(glColor3f, (red, green, blue))
    setColor(red, green, blue, 1.0f);
}

void glColor3fv(const GLfloat* v)
{
    RECORD(glColor3fv, (vectorArg(v, 3)));
    FORWARD(glColor3fv, (v))
    setColor(v[0], v[1], v[2], 1.0f);
}

void glColor4f(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha)
{
    RECORD(glColor4f, (arg(red), arg(green), arg(blue), arg(alpha)));
    FORWARD(glColor4f, (red, green, blue, alpha))
    setColor(red, green, blue, alpha);
}

void glColor4fv(const GLfloat* v)
{
    RECORD(glColor4fv, (vectorArg(v, 4)));
    FORWARD(glColor4fv, (v))
    setColor(v[0], v[1], v[2], v[3]);
}

// --- Arrays
// --------------------------------------------------------------------------------------------------------------
void glEnableClientState(GLenum array)
{
    RECORD(glEnableClientState, (enumName(array)));
    FORWARD(glEnableClientState, (array))
    state().clientEnabled.insert(array);
}

void glDisableClientState(GLenum array)
{
    RECORD(glDisableClientState, (enumName(array)));
    FORWARD(glDisableClientState, (array))
    state().clientEnabled.erase(array);
}

void glVertexPointer(GLint size, GLenum type, GLsizei stride, const GLvoid* pointer)
{
    RECORD(glVertexPointer, (arg(size), enumName(type), arg(stride), arg(pointer)));
    noteVertexPointer(pointer);
    FORWARD(glVertexPointer, (size, type, stride, pointer))
}

void glNormalPointer(GLenum type, GLsizei stride, const GLvoid* pointer)
{
    RECORD(glNormalPointer, (enumName(type), arg(stride), arg(pointer)));
    noteNormalPointer(pointer);
    FORWARD(glNormalPointer, (type, stride, pointer))
}

void glDrawElements(GLenum mode, GLsizei count, GLenum type, const GLvoid* indices)
{
    const bool readable = type == GL_UNSIGNED_INT && indices;
    const std::string list =
        readable ? "[" + vectorArg(static_cast<const GLuint*>(indices), count) + "]" : arg(indices);
    RECORD(glDrawElements, (primitiveName(mode), arg(count), enumName(type), list));
    FORWARD(glDrawElements, (mode, count, type, indices))
    if (model::legal() && count < 0)
        model::raise(GL_INVALID_VALUE);
}

// --- Text and bitmaps
// ------------------------------------------------------------------------------------------------------
void glRasterPos3f(GLfloat x, GLfloat y, GLfloat z)
{
    RECORD(glRasterPos3f, (arg(x), arg(y), arg(z)));
    FORWARD(glRasterPos3f, (x, y, z))
    model::legal();
}

void glRasterPos3fv(const GLfloat* v)
{
    RECORD(glRasterPos3fv, (vectorArg(v, 3)));
    FORWARD(glRasterPos3fv, (v))
    model::legal();
}

void glBitmap(GLsizei width, GLsizei height, GLfloat xorig, GLfloat yorig, GLfloat xmove, GLfloat ymove,
              const GLubyte* bitmap)
{
    RECORD(glBitmap, (arg(width), arg(height), arg(xorig), arg(yorig), arg(xmove), arg(ymove), arg(bitmap)));
    noteBitmap(bitmap);
    FORWARD(glBitmap, (width, height, xorig, yorig, xmove, ymove, bitmap))
    model::legal();
}

void glListBase(GLuint base)
{
    RECORD(glListBase, (arg(base)));
    FORWARD(glListBase, (base))
    if (model::legal())
        state().listBase = base;
}

void glCallLists(GLsizei n, GLenum type, const GLvoid* lists)
{
    RECORD(glCallLists, (arg(n), enumName(type), type == GL_UNSIGNED_BYTE ? quoted(lists, n) : arg(lists)));
    FORWARD(glCallLists, (n, type, lists))
}

void glCallList(GLuint list)
{
    RECORD(glCallList, (arg(list)));
    FORWARD(glCallList, (list))
}

// --- Lights
// --------------------------------------------------------------------------------------------------------------
void glLightfv(GLenum light, GLenum name, const GLfloat* values)
{
    const int length = lightParameterLength(name);
    RECORD(glLightfv, (enumName(light), enumName(name), vectorArg(values, length)));
    FORWARD(glLightfv, (light, name, values))
    setLight(light, name, values, length);
}

void glLightiv(GLenum light, GLenum name, const GLint* values)
{
    const int length = lightParameterLength(name);
    RECORD(glLightiv, (enumName(light), enumName(name), vectorArg(values, length)));
    FORWARD(glLightiv, (light, name, values))
    setLight(light, name, values, length);
}

void glLightf(GLenum light, GLenum name, GLfloat value)
{
    RECORD(glLightf, (enumName(light), enumName(name), arg(value)));
    FORWARD(glLightf, (light, name, value))
    setLight(light, name, &value, 1);
}

void glLighti(GLenum light, GLenum name, GLint value)
{
    RECORD(glLighti, (enumName(light), enumName(name), arg(value)));
    FORWARD(glLighti, (light, name, value))
    setLight(light, name, &value, 1);
}

void glLightModelfv(GLenum name, const GLfloat* values)
{
    RECORD(glLightModelfv, (enumName(name), vectorArg(values, name == GL_LIGHT_MODEL_AMBIENT ? 4 : 1)));
    FORWARD(glLightModelfv, (name, values))
}

void glLightModeli(GLenum name, GLint value)
{
    RECORD(glLightModeli, (enumName(name), arg(value)));
    FORWARD(glLightModeli, (name, value))
}

void glMaterialfv(GLenum face, GLenum name, const GLfloat* values)
{
    RECORD(glMaterialfv, (enumName(face), enumName(name), vectorArg(values, name == GL_SHININESS ? 1 : 4)));
    FORWARD(glMaterialfv, (face, name, values))
}

void glColorMaterial(GLenum face, GLenum mode)
{
    RECORD(glColorMaterial, (enumName(face), enumName(mode)));
    FORWARD(glColorMaterial, (face, mode))
}

// --- Render state
// ----------------------------------------------------------------------------------------------------------
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
    if (!model::legal())
        return;
    if (mode != GL_FLAT && mode != GL_SMOOTH)
        return model::raise(GL_INVALID_ENUM);
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
    if (model::legal())
        state().pointSize = size;
}

void glLineWidth(GLfloat width)
{
    RECORD(glLineWidth, (arg(width)));
    FORWARD(glLineWidth, (width))
    if (model::legal())
        state().lineWidth = width;
}

void glDepthFunc(GLenum func)
{
    RECORD(glDepthFunc, (enumName(func)));
    FORWARD(glDepthFunc, (func))
    if (model::legal())
        state().depthFunc = func;
}

void glDepthRange(GLclampd near, GLclampd far)
{
    RECORD(glDepthRange, (arg(near), arg(far)));
    FORWARD(glDepthRange, (near, far))
    if (!model::legal())
        return;
    state().depthRange[0] = near;
    state().depthRange[1] = far;
}

void glBlendFunc(GLenum source, GLenum destination)
{
    RECORD(glBlendFunc, (blendName(source), blendName(destination)));
    FORWARD(glBlendFunc, (source, destination))
    if (!model::legal())
        return;
    state().blendFunc[0] = source;
    state().blendFunc[1] = destination;
}

void glScissor(GLint x, GLint y, GLsizei width, GLsizei height)
{
    RECORD(glScissor, (arg(x), arg(y), arg(width), arg(height)));
    FORWARD(glScissor, (x, y, width, height))
    const GLint box[4] = {x, y, width, height};
    if (model::legal())
        std::copy(box, box + 4, state().scissor);
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

// --- Matrices
// --------------------------------------------------------------------------------------------------------------
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
    if (!model::legal())
        return;
    if (left == right || bottom == top || near == far)
        return model::raise(GL_INVALID_VALUE);
    model::multMatrix(model::ortho(left, right, bottom, top, near, far));
}

// --- Selection mode
// --------------------------------------------------------------------------------------------------------
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

// --- Queries
// ---------------------------------------------------------------------------------------------------------------
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

// --- libGLU
// ----------------------------------------------------------------------------------------------------------------
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
    if (delX <= 0 || delY <= 0)
        return;
    model::multMatrix(model::translation((viewport[2] - 2 * (x - viewport[0])) / delX,
                                         (viewport[3] - 2 * (y - viewport[1])) / delY, 0));
    model::multMatrix(model::scaling(viewport[2] / delX, viewport[3] / delY, 1));
}
} // extern "C"
#pragma GCC visibility pop
