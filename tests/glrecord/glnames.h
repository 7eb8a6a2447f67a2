// Arguments of OpenGL calls as text, for the recorder's lines.
#ifndef GLNAMES_H
#define GLNAMES_H

#include <string>

#include <GL/gl.h>

namespace glrecord {
std::string arg(float value);  // %.9g
std::string arg(double value); // %.17g
std::string arg(int value);
std::string arg(unsigned int value);
std::string arg(const void* value); // "data" or "null"

template <class T> std::string vectorArg(const T* values, int count)
{
    if (!values) {
        return "null";
    }
    std::string text;
    for (int k = 0; k < count; ++k) {
        text += (k ? "," : "") + arg(values[k]);
    }
    return text;
}

std::string enumName(GLenum value);      // GL_LIGHTING, ...; 0x1234 if unknown
std::string primitiveName(GLenum value); // GL_POINTS, ... (their values mean other things elsewhere)
std::string blendName(GLenum value);     // GL_ZERO and GL_ONE, else as enumName
std::string clearMaskName(GLbitfield mask);
} // namespace glrecord

#endif
