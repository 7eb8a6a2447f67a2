// Definitions of the executable win over libGL's.
#include "gl_calls.h"

#include <dlfcn.h>

#include <cstdio>

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

GlCalls& glCalls()
{
    static GlCalls calls;
    return calls;
}

namespace {

template <class Function> Function next(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

void asked(const char* function, GLenum what)
{
    char text[64];
    std::snprintf(text, sizeof text, "%s(0x%x)", function, what);
    glCalls().queries.push_back(text);
}

} // namespace

#define FORWARD(function, ...) next<decltype(&function)>(#function)(__VA_ARGS__)

extern "C" {

void glDrawArrays(GLenum mode, GLint first, GLsizei count)
{
    ++glCalls().draws;
    FORWARD(glDrawArrays, mode, first, count);
}

void glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices)
{
    ++glCalls().draws;
    FORWARD(glDrawElements, mode, count, type, indices);
}

void glMultiDrawArrays(GLenum mode, const GLint* first, const GLsizei* count, GLsizei draws)
{
    ++glCalls().draws;
    FORWARD(glMultiDrawArrays, mode, first, count, draws);
}

void glMultiDrawElements(GLenum mode, const GLsizei* count, GLenum type, const void* const* indices, GLsizei draws)
{
    ++glCalls().draws;
    FORWARD(glMultiDrawElements, mode, count, type, indices, draws);
}

void glBufferData(GLenum target, GLsizeiptr size, const void* data, GLenum usage)
{
    glCalls().uploadedBytes += static_cast<std::size_t>(size);
    FORWARD(glBufferData, target, size, data, usage);
}

void glBufferSubData(GLenum target, GLintptr offset, GLsizeiptr size, const void* data)
{
    glCalls().uploadedBytes += static_cast<std::size_t>(size);
    FORWARD(glBufferSubData, target, offset, size, data);
}

void glReadPixels(GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type, void* pixels)
{
    ++glCalls().readings;
    FORWARD(glReadPixels, x, y, width, height, format, type, pixels);
}

#define QUERY(function, Value)                                                                                         \
    void function(GLenum name, Value* values)                                                                          \
    {                                                                                                                  \
        asked(#function, name);                                                                                        \
        FORWARD(function, name, values);                                                                               \
    }
QUERY(glGetBooleanv, GLboolean)
QUERY(glGetDoublev, GLdouble)
QUERY(glGetFloatv, GLfloat)
QUERY(glGetIntegerv, GLint)
QUERY(glGetInteger64v, GLint64)

#define INDEXED_QUERY(function, Value)                                                                                 \
    void function(GLenum name, GLuint index, Value* values)                                                            \
    {                                                                                                                  \
        asked(#function, name);                                                                                        \
        FORWARD(function, name, index, values);                                                                        \
    }
INDEXED_QUERY(glGetBooleani_v, GLboolean)
INDEXED_QUERY(glGetIntegeri_v, GLint)
INDEXED_QUERY(glGetBufferParameteriv, GLint)

GLboolean glIsEnabled(GLenum name)
{
    asked("glIsEnabled", name);
    return FORWARD(glIsEnabled, name);
}

GLboolean glIsEnabledi(GLenum name, GLuint index)
{
    asked("glIsEnabledi", name);
    return FORWARD(glIsEnabledi, name, index);
}

GLint glGetUniformLocation(GLuint program, const GLchar* name)
{
    asked("glGetUniformLocation", program);
    return FORWARD(glGetUniformLocation, program, name);
}

const GLubyte* glGetString(GLenum name)
{
    asked("glGetString", name);
    return FORWARD(glGetString, name);
}

GLenum glGetError()
{
    asked("glGetError", 0);
    return FORWARD(glGetError, );
}
}
