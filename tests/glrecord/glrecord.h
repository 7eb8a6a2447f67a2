// A recorder of OpenGL calls for tests.
//
// A test program that links the target `glrecord` defines the gl* and glu* entry points that the drawing library uses.
// Being definitions of the executable they win over those of libGL and libGLU, so every call of the library (and of the
// test itself) arrives here and becomes one line of text:
//
//   glBegin(GL_QUADS)                          enums by name, an unknown one as hexadecimal: 0x1234
//   glVertex3fv(1,2,3)                         vectors by value; floats as %.9g, doubles as %.17g
//   glLightfv(GL_LIGHT0,GL_POSITION,1,-3,-4,0)
//   glDrawElements(GL_QUADS,4,GL_UNSIGNED_INT,[0,1,2,3])
//   glVertexPointer(3,GL_FLOAT,0,data)         "null" for a null pointer; see vertexPointer()
//   glCallLists(1,GL_UNSIGNED_BYTE,"7")
//   glBitmap(16,16,8,8,0,0,data)               see bitmaps()
//   glGetDoublev(GL_MODELVIEW_MATRIX)          queries without their answers
//   gluUnProject(400,300,0.5)                  without the matrices
//
// Modes:
//   RecordOnly        No context is needed. A small state machine (state()) stands in for OpenGL: it answers the
//   queries,
//                     keeps the matrix stacks with real arithmetic, the name stack's depth and the error code. Calls
//                     that OpenGL refuses (between glBegin and glEnd, glOrtho with equal planes, stack overflow, ...)
//                     leave it alone and raise the same error.
//   RecordAndForward  Every call also goes to the real libGL/libGLU, which must have a current context; queries are
//                     answered by it, and state() stays as it is.
//   (stopped)         Calls are only forwarded.
// gluProject and gluUnProject always go to the real libGLU for their arithmetic. What libGLU itself calls in OpenGL
// (gluPickMatrix multiplies matrices) is not the caller's doing and is not recorded.
//
// Typical use:
//   glrecord::start(glrecord::Mode::RecordOnly);   // lines and state empty
//   glViewport(0, 0, 800, 600);                    // set up the state with OpenGL's own calls
//   glrecord::clear();                             // forget the lines, keep the state
//   environment.renderModel();
//   EXPECT_EQ(glrecord::count("glBegin"), 3);
//   glrecord::stop();
#ifndef GLRECORD_H
#define GLRECORD_H

#include <array>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <GL/gl.h>
#include <GL/glu.h>

namespace glrecord {
using Lines = std::vector<std::string>;
using Matrix = std::array<double, 16>; // column-major, as OpenGL keeps it

enum class Mode
{
    RecordOnly,
    RecordAndForward
};

// --- Recording ---
void start(Mode mode); // forgets all lines and resets state() to OpenGL's initial values
void stop();           // from here on calls are only forwarded; the lines stay readable
void clear();          // forgets the lines, keeps mode and state

// --- Reading the lines ---
Lines lines();
std::string text();                                // all lines, each with a newline
int count(const std::string& function);            // calls of exactly this function: count("glBegin")
Lines matching(const std::string& prefix);         // lines that begin so: matching("glColor")
Lines matchingAny(const Lines& prefixes);          // lines that begin with any of these, in order
int find(const std::string& prefix, int from = 0); // position of the first such line at or after from, or -1
// Lines from the first that begins with `first` up to and including the next that begins with `last`.
Lines between(const std::string& first, const std::string& last);
// The same lines without the type suffix of vertices, normals, colours, raster positions, translations, rotations and
// scales (glVertex3dv(1,2,3) and glVertex3f(1,2,3) both become glVertex(1,2,3)), for calls whose exact entry point does
// not matter.
Lines plain(const Lines& lines);

// Name of an enum as the lines show it.
std::string enumName(GLenum value);
std::string primitiveName(GLenum value);

// --- The stand-in for OpenGL in RecordOnly ---
struct State
{
    GLint viewport[4] = {0, 0, 0, 0};
    GLint scissor[4] = {0, 0, 0, 0};
    GLint polygonMode[2] = {GL_FILL, GL_FILL}; // front, back
    GLint shadeModel = GL_SMOOTH;
    GLenum depthFunc = GL_LESS;
    double depthRange[2] = {0, 1};
    GLenum blendFunc[2] = {GL_ONE, GL_ZERO};
    std::set<GLenum> enabled;       // glEnable
    std::set<GLenum> clientEnabled; // glEnableClientState
    std::array<float, 4> color = {1, 1, 1, 1};
    float pointSize = 1;
    float lineWidth = 1;
    GLuint listBase = 0;
    GLenum matrixMode = GL_MODELVIEW;
    std::map<GLenum, std::vector<Matrix>> stacks;                  // by matrix mode; the current matrix is the last
    std::map<GLenum, std::map<GLenum, std::vector<float>>> lights; // by light and parameter, as passed
    bool insideBegin = false;
    GLenum renderMode = GL_RENDER;
    std::vector<GLuint> names; // the name stack; changes only in selection mode
    GLenum error = GL_NO_ERROR;
};
State& state(); // may be changed freely, for instance state().error to inject an error
const Matrix& modelview();
const Matrix& projection();

// What leaving selection mode answers the next time: glRenderMode(GL_RENDER) copies `words` into the buffer of
// glSelectBuffer (as many as fit) and returns `hits`. Used up by that call; the answer is 0 otherwise.
void setSelectResult(int hits, const std::vector<GLuint>& words);

// --- Pointers that the lines do not spell out ---
const void* vertexPointer();                 // of the last glVertexPointer
const void* normalPointer();                 // of the last glNormalPointer
std::vector<const unsigned char*> bitmaps(); // of every glBitmap since clear(), in order
} // namespace glrecord

#endif
