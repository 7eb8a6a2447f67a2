// OpenGL's state that a frame changes, or that would change a frame, in one block: read, set to what drawing starts
// from, put back. Core entry points only; what a compatibility context has in addition that changes what programs draw
// is in it, too.
//
//   const KeepGlState host;               // puts everything back at the end of the scope
//   host.state().defaults().apply();
//
#ifndef KVO_SCENE_GL_STATE_H
#define KVO_SCENE_GL_STATE_H

#include "gl_objects.h"

namespace kvo {

struct GlState
{
    static constexpr int drawBuffers = 8; // that every driver has
    static constexpr int textureUnits = 4;
    static constexpr int switchCount = 33;
    static constexpr int pixelStoreCount = 16;
    static constexpr int bufferTargets = 6;

    static GlState read(); // of the current context

    // What a new context of the core profile has. Where to draw stays as it is here: framebuffers, viewport, scissor
    // box and clear values.
    GlState defaults() const;

    void apply() const;

    // What glEnable takes but GL_BLEND, which every colour buffer has its own of. Throws std::logic_error for what this
    // block does not hold.
    bool isOn(GLenum name) const { return switches[switchIndex(name)]; }
    void turn(GLenum name, bool on) { switches[switchIndex(name)] = on; }

    // Per colour buffer; the functions are one for all before OpenGL 4.0.
    struct Blending
    {
        GLboolean on = GL_FALSE;
        GLint sourceColor = GL_ONE, targetColor = GL_ZERO;
        GLint sourceAlpha = GL_ONE, targetAlpha = GL_ZERO;
        GLint colorEquation = GL_FUNC_ADD, alphaEquation = GL_FUNC_ADD;
        GLboolean mask[4] = {GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE}; // colours that are written
    };
    Blending blending[drawBuffers];

    GLint depthFunction = GL_LESS;
    GLboolean depthMask = GL_TRUE;
    double depthRange[2] = {0, 1};
    GLint culledFace = GL_BACK;
    GLint frontFace = GL_CCW;
    GLint polygonMode[2] = {GL_FILL, GL_FILL}; // of front and back faces, which differ in compatibility contexts only
    float polygonOffset[2] = {0, 0};           // factor, units
    float lineWidth = 1;
    float pointSize = 1;
    GLint pointOrigin = GL_UPPER_LEFT;
    GLint provokingVertex = GL_LAST_VERTEX_CONVENTION;
    GLuint restartIndex = 0;

    GLint scissorBox[4] = {0, 0, 0, 0};
    float viewport[4] = {0, 0, 0, 0}; // may have fractions
    float clearColor[4] = {0, 0, 0, 0};
    double clearDepth = 1;

    GLint program = 0;
    GLint vertexArray = 0;
    GLint buffers[bufferTargets] = {};
    GLint activeTexture = GL_TEXTURE0;
    struct Unit
    {
        GLint texture2d = 0;
        GLint bufferTexture = 0;
        GLint sampler = 0;
    };
    Unit units[textureUnits];
    GLint drawFramebuffer = 0;
    GLint readFramebuffer = 0;
    GLint renderbuffer = 0;

private:
    static int switchIndex(GLenum name);

    bool fixedFunction = false; // a compatibility context
    int blendFunctions = 1;     // colour buffers with functions of their own
    GLboolean switches[switchCount] = {};
    GLint pixelStore[pixelStoreCount] = {};
};

// Of front and back faces.
void applyPolygonMode(const GLint modes[2]);

class KeepGlState
{
public:
    KeepGlState() : before(GlState::read()) {}
    ~KeepGlState() { before.apply(); }
    KeepGlState(const KeepGlState&) = delete;
    KeepGlState& operator=(const KeepGlState&) = delete;

    const GlState& state() const { return before; }

private:
    const GlState before;
};

} // namespace kvo

#endif
