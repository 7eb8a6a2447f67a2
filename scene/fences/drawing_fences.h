// Keeps Mesa's processor driver, llvmpipe, from freeing what its threads still use.
//
// Each flush of its drawing has a fence. The driver takes a fence for passed when the last of its threads has counted
// itself in, and may then free it while that thread is still inside the call that signals it: about once in a million
// read-backs the program hangs or its memory is damaged. A sync object shares the fence of what was drawn before it, so
// the fence lives as long as the sync object does.
#ifndef KVO_SCENE_DRAWING_FENCES_H
#define KVO_SCENE_DRAWING_FENCES_H

#include <deque>

#include <GL/gl.h>
#include <GL/glext.h>

namespace kvo {

class DrawingFences
{
public:
    DrawingFences() = default;
    // Waits for OpenGL, where there are fences. The context must be current.
    ~DrawingFences();
    DrawingFences(const DrawingFences&) = delete;
    DrawingFences& operator=(const DrawingFences&) = delete;

    // To be called after drawing and before anything that makes the driver finish it: reading pixels or buffers,
    // another framebuffer, glFinish. Costs nothing with other drivers.
    void keep();

private:
    enum class Needed
    {
        Unknown,
        Yes,
        No
    };
    Needed needed = Needed::Unknown;
    std::deque<GLsync> kept; // the newest at the end
};

} // namespace kvo

#endif
