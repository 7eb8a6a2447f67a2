// The host's OpenGL state around a frame of a scene.
#ifndef KVO_SCENE_FRAME_STATE_H
#define KVO_SCENE_FRAME_STATE_H

#include "gl_state.h"
#include <kvo/scene_view.h>

namespace kvo {

// From its making on the scene's own vertex array is bound, and the state is what frames start from: of an environment
// the host's, else OpenGL's defaults with the host's depth test, multisampling and polygon mode. The host's state is
// back at the end of the scope.
class FrameState
{
public:
    FrameState(HostState host, bool ofEnvironment, GlVertexArray& vertexArray);
    ~FrameState();
    FrameState(const FrameState&) = delete;
    FrameState& operator=(const FrameState&) = delete;

    // What the frame starts from. With HostState::Defaults only its viewport is read from OpenGL.
    const GlState& state() const { return first; }

private:
    const HostState promise;
    GlState before;
    GlState first;
};

// OpenGL's defaults for all that a frame changes but the viewport, with the depth test on.
void putDefaultsBack();

} // namespace kvo

#endif
