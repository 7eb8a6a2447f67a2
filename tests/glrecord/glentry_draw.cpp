// Entry points that draw: primitives, arrays, text and bitmaps, lights.
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
    if (model::legal()) {
        state().lights[light][name] = std::vector<float>(values, values + count);
    }
}

template <class T> void setColor(T red, T green, T blue, T alpha)
{
    state().color = {red, green, blue, alpha};
}

std::string quoted(const void* text, GLsizei length)
{
    return '"' + std::string(static_cast<const char*>(text), length) + '"';
}
} // namespace

extern "C" {
// --- Primitives ---
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

// --- Arrays ---
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
    if (model::legal() && count < 0) {
        model::raise(GL_INVALID_VALUE);
    }
}

// --- Text and bitmaps ---
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
    if (model::legal()) {
        state().listBase = base;
    }
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

// --- Lights ---
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
} // extern "C"
#pragma GCC visibility pop
