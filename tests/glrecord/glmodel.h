// The stand-in for OpenGL: what the calls do to glrecord::State when there is no real context.
#ifndef GLMODEL_H
#define GLMODEL_H

#include "glrecord.h"

namespace glrecord {
namespace model {
void reset();
void raise(GLenum error); // the first error stays until glGetError fetches it
bool legal();             // false, raising GL_INVALID_OPERATION, between glBegin and glEnd

void begin(GLenum mode);
void end();
void setEnabled(GLenum capability, bool on);
void viewport(const GLint* box);
void polygonMode(GLenum face, GLenum mode);

void matrixMode(GLenum mode);
void loadMatrix(const Matrix& matrix);
void multMatrix(const Matrix& matrix);
void pushMatrix();
void popMatrix();
Matrix identity();
Matrix product(const Matrix& a, const Matrix& b);
Matrix ortho(double left, double right, double bottom, double top, double near, double far);
Matrix translation(double x, double y, double z);
Matrix scaling(double x, double y, double z);
Matrix rotation(double degrees, double x, double y, double z);

void selectBuffer(GLsizei size, GLuint* buffer);
GLint renderMode(GLenum mode);
void initNames();
void loadName(GLuint name);
void pushName(GLuint name);
void popName();

// The values of a query, widened to double; empty (and GL_INVALID_ENUM) when it is not one that the stand-in answers.
std::vector<double> query(GLenum name);
GLenum fetchError();
} // namespace model
} // namespace glrecord

#endif
