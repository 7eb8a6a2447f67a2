// Counts of the OpenGL calls that a program makes itself, with libkvoscene's objects in it; they reach OpenGL as ever.
#ifndef SCENE_GL_CALLS_H
#define SCENE_GL_CALLS_H

#include <cstddef>
#include <string>
#include <vector>

struct GlCalls
{
    std::size_t draws = 0;
    std::size_t uploadedBytes = 0;
    std::size_t readings = 0;         // of pixels
    std::vector<std::string> queries; // "glGetFloatv(0xba2)"
};

// Since the last reset.
GlCalls& glCalls();
inline void resetGlCalls()
{
    glCalls() = GlCalls();
}

#endif
