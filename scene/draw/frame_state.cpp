#include "frame_state.h"

#include <algorithm>

#include "surface_program.h"

namespace kvo {

namespace {

GlState promised()
{
    GlState out = GlState().defaults();
    out.turn(GL_DEPTH_TEST, true);
    glGetFloatv(GL_VIEWPORT, out.viewport);
    return out;
}

GlState startOf(const GlState& before)
{
    GlState out = before.defaults();
    for (const GLenum kept : {GL_DEPTH_TEST, GL_MULTISAMPLE}) {
        out.turn(kept, before.isOn(kept));
    }
    std::copy(before.polygonMode, before.polygonMode + 2, out.polygonMode);
    return out;
}

} // namespace

FrameState::FrameState(HostState host, bool ofEnvironment, GlVertexArray& vertexArray)
    : promise(host), before(host == HostState::Restore ? GlState::read() : promised()), first(before)
{
    if (promise == HostState::Restore && !ofEnvironment) {
        first = startOf(before);
        first.apply();
    }
    vertexArray.bind();
}

FrameState::~FrameState()
{
    if (promise == HostState::Restore) {
        before.apply();
    } else {
        putDefaultsBack();
        setViewport(before.viewport);
    }
}

void putDefaultsBack()
{
    for (const GLenum off : {GL_CLIP_DISTANCE0, GL_CULL_FACE, GL_POLYGON_OFFSET_FILL, GL_SCISSOR_TEST, GL_BLEND}) {
        glDisable(off);
    }
    glEnable(GL_DEPTH_TEST);
    glBlendFunc(GL_ONE, GL_ZERO);
    glCullFace(GL_BACK);
    glFrontFace(GL_CCW);
    glPolygonOffset(0, 0);
    glPointSize(1);
    glUseProgram(0);
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    for (const unsigned int unit : {colorsUnit, statesUnit, partsUnit, 0u}) {
        glActiveTexture(GL_TEXTURE0 + unit);
        glBindTexture(GL_TEXTURE_BUFFER, 0);
        glBindTexture(GL_TEXTURE_2D, 0);
    }
}

} // namespace kvo
