// Tables of what is read and put back.
#include "gl_state.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace kvo {

namespace {

struct Switch
{
    GLenum name;
    bool first; // in a new context of the core profile
};

// The last ones are of compatibility contexts: they work on what programs draw, too. Points are always sprites in the
// core profile.
constexpr int compatibilitySwitches = 4;
constexpr Switch switchTable[] = {
    {GL_CLIP_DISTANCE0, false},
    {GL_CLIP_DISTANCE1, false},
    {GL_CLIP_DISTANCE2, false},
    {GL_CLIP_DISTANCE3, false},
    {GL_CLIP_DISTANCE4, false},
    {GL_CLIP_DISTANCE5, false},
    {GL_CLIP_DISTANCE6, false},
    {GL_CLIP_DISTANCE7, false},
    {GL_COLOR_LOGIC_OP, false},
    {GL_CULL_FACE, false},
    {GL_DEPTH_CLAMP, false},
    {GL_DEPTH_TEST, false},
    {GL_DITHER, true},
    {GL_FRAMEBUFFER_SRGB, false},
    {GL_LINE_SMOOTH, false},
    {GL_MULTISAMPLE, true},
    {GL_POLYGON_OFFSET_FILL, false},
    {GL_POLYGON_OFFSET_LINE, false},
    {GL_POLYGON_OFFSET_POINT, false},
    {GL_POLYGON_SMOOTH, false},
    {GL_PRIMITIVE_RESTART, false},
    {GL_PROGRAM_POINT_SIZE, false},
    {GL_RASTERIZER_DISCARD, false},
    {GL_SAMPLE_ALPHA_TO_COVERAGE, false},
    {GL_SAMPLE_ALPHA_TO_ONE, false},
    {GL_SAMPLE_COVERAGE, false},
    {GL_SAMPLE_MASK, false},
    {GL_SCISSOR_TEST, false},
    {GL_STENCIL_TEST, false},
    {GL_ALPHA_TEST, false},
    {GL_LINE_STIPPLE, false},
    {GL_POLYGON_STIPPLE, false},
    {GL_POINT_SPRITE, true},
};
static_assert(std::size(switchTable) == GlState::switchCount);

struct Named
{
    GLenum name;
    GLint first;
};
constexpr Named pixelStoreTable[] = {
    {GL_PACK_ALIGNMENT, 4},     {GL_PACK_IMAGE_HEIGHT, 0},   {GL_PACK_LSB_FIRST, 0},   {GL_PACK_ROW_LENGTH, 0},
    {GL_PACK_SKIP_IMAGES, 0},   {GL_PACK_SKIP_PIXELS, 0},    {GL_PACK_SKIP_ROWS, 0},   {GL_PACK_SWAP_BYTES, 0},
    {GL_UNPACK_ALIGNMENT, 4},   {GL_UNPACK_IMAGE_HEIGHT, 0}, {GL_UNPACK_LSB_FIRST, 0}, {GL_UNPACK_ROW_LENGTH, 0},
    {GL_UNPACK_SKIP_IMAGES, 0}, {GL_UNPACK_SKIP_PIXELS, 0},  {GL_UNPACK_SKIP_ROWS, 0}, {GL_UNPACK_SWAP_BYTES, 0},
};
static_assert(std::size(pixelStoreTable) == GlState::pixelStoreCount);

struct BufferTarget
{
    GLenum target;
    GLenum binding;
};
constexpr BufferTarget bufferTable[] = {
    {GL_ARRAY_BUFFER, GL_ARRAY_BUFFER_BINDING},
    {GL_COPY_READ_BUFFER, GL_COPY_READ_BUFFER_BINDING},
    {GL_COPY_WRITE_BUFFER, GL_COPY_WRITE_BUFFER_BINDING},
    {GL_PIXEL_PACK_BUFFER, GL_PIXEL_PACK_BUFFER_BINDING},
    {GL_PIXEL_UNPACK_BUFFER, GL_PIXEL_UNPACK_BUFFER_BINDING},
    {GL_TEXTURE_BUFFER, GL_TEXTURE_BUFFER_BINDING},
};
static_assert(std::size(bufferTable) == GlState::bufferTargets);

GLint number(GLenum name)
{
    GLint out = 0;
    glGetIntegerv(name, &out);
    return out;
}

GLuint object(GLint name)
{
    return static_cast<GLuint>(name);
}

GLenum token(GLint value)
{
    return static_cast<GLenum>(value);
}

void turnTo(GLenum name, bool on)
{
    on ? glEnable(name) : glDisable(name);
}

int switchesOf(bool fixedFunction)
{
    return GlState::switchCount - (fixedFunction ? 0 : compatibilitySwitches);
}

// --- Colour buffers ---

struct FunctionOf
{
    GLenum name;
    GLint GlState::Blending::* value;
};
constexpr FunctionOf functionTable[] = {
    {GL_BLEND_SRC_RGB, &GlState::Blending::sourceColor},
    {GL_BLEND_DST_RGB, &GlState::Blending::targetColor},
    {GL_BLEND_SRC_ALPHA, &GlState::Blending::sourceAlpha},
    {GL_BLEND_DST_ALPHA, &GlState::Blending::targetAlpha},
    {GL_BLEND_EQUATION_RGB, &GlState::Blending::colorEquation},
    {GL_BLEND_EQUATION_ALPHA, &GlState::Blending::alphaEquation},
};

void readBlending(GlState::Blending blending[GlState::drawBuffers], int functions)
{
    for (GLuint k = 0; k < GlState::drawBuffers; ++k) {
        GlState::Blending& buffer = blending[k];
        buffer.on = glIsEnabledi(GL_BLEND, k);
        glGetBooleani_v(GL_COLOR_WRITEMASK, k, buffer.mask);
        for (const FunctionOf& function : functionTable) {
            if (functions > 1) {
                glGetIntegeri_v(function.name, k, &(buffer.*function.value));
            } else {
                glGetIntegerv(function.name, &(buffer.*function.value));
            }
        }
    }
}

void applyFunctions(const GlState::Blending& buffer)
{
    glBlendFuncSeparate(token(buffer.sourceColor), token(buffer.targetColor), token(buffer.sourceAlpha),
                        token(buffer.targetAlpha));
    glBlendEquationSeparate(token(buffer.colorEquation), token(buffer.alphaEquation));
}

void applyFunctions(GLuint k, const GlState::Blending& buffer)
{
    glBlendFuncSeparatei(k, token(buffer.sourceColor), token(buffer.targetColor), token(buffer.sourceAlpha),
                         token(buffer.targetAlpha));
    glBlendEquationSeparatei(k, token(buffer.colorEquation), token(buffer.alphaEquation));
}

void applyBlending(const GlState::Blending blending[GlState::drawBuffers], int functions)
{
    applyFunctions(blending[0]);
    for (GLuint k = 0; k < GlState::drawBuffers; ++k) {
        const GlState::Blending& buffer = blending[k];
        buffer.on ? glEnablei(GL_BLEND, k) : glDisablei(GL_BLEND, k);
        glColorMaski(k, buffer.mask[0], buffer.mask[1], buffer.mask[2], buffer.mask[3]);
        if (functions > 1) {
            applyFunctions(k, buffer);
        }
    }
}

// --- The rest, by subject ---

void readRaster(GlState& s)
{
    s.depthFunction = number(GL_DEPTH_FUNC);
    glGetBooleanv(GL_DEPTH_WRITEMASK, &s.depthMask);
    glGetDoublev(GL_DEPTH_RANGE, s.depthRange);
    s.culledFace = number(GL_CULL_FACE_MODE);
    s.frontFace = number(GL_FRONT_FACE);
    GLint modes[2] = {GL_FILL, 0};
    glGetIntegerv(GL_POLYGON_MODE, modes);
    s.polygonMode[0] = modes[0];
    s.polygonMode[1] = modes[1] ? modes[1] : modes[0]; // core contexts need not give two
    glGetFloatv(GL_POLYGON_OFFSET_FACTOR, &s.polygonOffset[0]);
    glGetFloatv(GL_POLYGON_OFFSET_UNITS, &s.polygonOffset[1]);
    glGetFloatv(GL_LINE_WIDTH, &s.lineWidth);
    glGetFloatv(GL_POINT_SIZE, &s.pointSize);
    s.pointOrigin = number(GL_POINT_SPRITE_COORD_ORIGIN);
    s.provokingVertex = number(GL_PROVOKING_VERTEX);
    GLint64 index = 0; // GLint cannot hold the one that hosts use most
    glGetInteger64v(GL_PRIMITIVE_RESTART_INDEX, &index);
    s.restartIndex = static_cast<GLuint>(index);
    glGetIntegerv(GL_SCISSOR_BOX, s.scissorBox);
    glGetFloatv(GL_VIEWPORT, s.viewport);
    glGetFloatv(GL_COLOR_CLEAR_VALUE, s.clearColor);
    glGetDoublev(GL_DEPTH_CLEAR_VALUE, &s.clearDepth);
}

void applyRaster(const GlState& s)
{
    glDepthFunc(token(s.depthFunction));
    glDepthMask(s.depthMask);
    glDepthRange(s.depthRange[0], s.depthRange[1]);
    glCullFace(token(s.culledFace));
    glFrontFace(token(s.frontFace));
    applyPolygonMode(s.polygonMode);
    glPolygonOffset(s.polygonOffset[0], s.polygonOffset[1]);
    glLineWidth(s.lineWidth);
    glPointSize(s.pointSize);
    glPointParameteri(GL_POINT_SPRITE_COORD_ORIGIN, s.pointOrigin);
    glProvokingVertex(token(s.provokingVertex));
    glPrimitiveRestartIndex(s.restartIndex);
    glScissor(s.scissorBox[0], s.scissorBox[1], s.scissorBox[2], s.scissorBox[3]);
    setViewport(s.viewport);
    glClearColor(s.clearColor[0], s.clearColor[1], s.clearColor[2], s.clearColor[3]);
    glClearDepth(s.clearDepth);
}

void readObjects(GlState& s)
{
    s.program = number(GL_CURRENT_PROGRAM);
    s.vertexArray = number(GL_VERTEX_ARRAY_BINDING);
    for (int k = 0; k < GlState::bufferTargets; ++k) {
        s.buffers[k] = number(bufferTable[k].binding);
    }
    s.activeTexture = number(GL_ACTIVE_TEXTURE);
    for (int k = 0; k < GlState::textureUnits; ++k) {
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(k));
        s.units[k] = {number(GL_TEXTURE_BINDING_2D), number(GL_TEXTURE_BINDING_BUFFER), number(GL_SAMPLER_BINDING)};
    }
    glActiveTexture(token(s.activeTexture));
    s.drawFramebuffer = number(GL_DRAW_FRAMEBUFFER_BINDING);
    s.readFramebuffer = number(GL_READ_FRAMEBUFFER_BINDING);
    s.renderbuffer = number(GL_RENDERBUFFER_BINDING);
}

void applyObjects(const GlState& s)
{
    glUseProgram(object(s.program));
    glBindVertexArray(object(s.vertexArray));
    for (int k = 0; k < GlState::bufferTargets; ++k) {
        glBindBuffer(bufferTable[k].target, object(s.buffers[k]));
    }
    for (int k = 0; k < GlState::textureUnits; ++k) {
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(k));
        glBindTexture(GL_TEXTURE_2D, object(s.units[k].texture2d));
        glBindTexture(GL_TEXTURE_BUFFER, object(s.units[k].bufferTexture));
        glBindSampler(static_cast<GLuint>(k), object(s.units[k].sampler));
    }
    glActiveTexture(token(s.activeTexture));
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, object(s.drawFramebuffer));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, object(s.readFramebuffer));
    glBindRenderbuffer(GL_RENDERBUFFER, object(s.renderbuffer));
}

} // namespace

// Core contexts take both at once only.
void applyPolygonMode(const GLint modes[2])
{
    if (modes[0] == modes[1]) {
        glPolygonMode(GL_FRONT_AND_BACK, token(modes[0]));
    } else {
        glPolygonMode(GL_FRONT, token(modes[0]));
        glPolygonMode(GL_BACK, token(modes[1]));
    }
}

int GlState::switchIndex(GLenum name)
{
    for (int k = 0; k < switchCount; ++k) {
        if (switchTable[k].name == name) {
            return k;
        }
    }
    throw std::logic_error("the scene holds no such switch of OpenGL's");
}

GlState GlState::read()
{
    GlState out;
    out.fixedFunction = (number(GL_CONTEXT_PROFILE_MASK) & GL_CONTEXT_COMPATIBILITY_PROFILE_BIT) != 0;
    out.blendFunctions = number(GL_MAJOR_VERSION) >= 4 ? drawBuffers : 1;
    for (int k = 0; k < switchCount; ++k) {
        out.switches[k] = k < switchesOf(out.fixedFunction) ? glIsEnabled(switchTable[k].name) : GL_FALSE;
    }
    for (int k = 0; k < pixelStoreCount; ++k) {
        out.pixelStore[k] = number(pixelStoreTable[k].name);
    }
    readBlending(out.blending, out.blendFunctions);
    readRaster(out);
    readObjects(out);
    return out;
}

GlState GlState::defaults() const
{
    GlState out;
    out.fixedFunction = fixedFunction;
    out.blendFunctions = blendFunctions;
    for (int k = 0; k < switchCount; ++k) {
        out.switches[k] = switchTable[k].first;
    }
    for (int k = 0; k < pixelStoreCount; ++k) {
        out.pixelStore[k] = pixelStoreTable[k].first;
    }
    std::copy(scissorBox, scissorBox + 4, out.scissorBox);
    std::copy(viewport, viewport + 4, out.viewport);
    std::copy(clearColor, clearColor + 4, out.clearColor);
    out.clearDepth = clearDepth;
    out.drawFramebuffer = drawFramebuffer;
    out.readFramebuffer = readFramebuffer;
    return out;
}

void GlState::apply() const
{
    for (int k = 0; k < switchesOf(fixedFunction); ++k) {
        turnTo(switchTable[k].name, switches[k] != GL_FALSE);
    }
    for (int k = 0; k < pixelStoreCount; ++k) {
        glPixelStorei(pixelStoreTable[k].name, pixelStore[k]);
    }
    applyBlending(blending, blendFunctions);
    applyObjects(*this);
    applyRaster(*this);
}

} // namespace kvo
