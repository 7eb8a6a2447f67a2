#ifndef GL_GLEXT_PROTOTYPES
#define GL_GLEXT_PROTOTYPES
#endif
#include "drawing_fences.h"

#include <cstring>

namespace kvo {

namespace {

// A thread that is still signalling a fence has not begun the next drawing, and the driver has at most 64 drawings
// under way: older fences than these are left alone.
constexpr std::size_t enough = 128;

bool drawsByThreads()
{
    const char* const name = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    return name && std::strstr(name, "llvmpipe");
}

} // namespace

void DrawingFences::keep()
{
    if (needed == Needed::Unknown) {
        needed = drawsByThreads() ? Needed::Yes : Needed::No;
    }
    if (needed == Needed::No) {
        return;
    }
    // Nobody may wait for it: a sync object that is known to have passed lets its fence go.
    kept.push_back(glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0));
    if (kept.size() > enough) {
        glDeleteSync(kept.front());
        kept.pop_front();
    }
}

// When the newest has passed, all threads are done with the others. The newest itself is left to the context, which
// waits for the threads in a safe way when it ends.
DrawingFences::~DrawingFences()
{
    if (kept.empty()) {
        return;
    }
    keep();
    glFinish();
    kept.pop_back();
    for (GLsync fence : kept) {
        glDeleteSync(fence);
    }
}

} // namespace kvo
