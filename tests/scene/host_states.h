// What a host may have set in OpenGL, asked for and set without the code under test.
#ifndef SCENE_HOST_STATES_H
#define SCENE_HOST_STATES_H

#include <map>
#include <string>
#include <vector>

#include "gl_state.h"

using Values = std::map<std::string, std::vector<double>>;

// Every value by the name that a failure shows, asked for here and not by the code under test.
class Asked
{
public:
    explicit Asked(bool fixedFunction)
    {
        askSwitches(fixedFunction);
        askColorBuffers();
        askNumbers();
        askTextures();
    }
    Values values;

private:
#define NAMED(name) #name, name
    void isOn(const char* text, GLenum name) { values[text] = {double(glIsEnabled(name))}; }
    void numbers(const char* text, GLenum name, std::size_t count = 1)
    {
        std::vector<double> out(count);
        glGetDoublev(name, out.data());
        values[text] = out;
    }
    void askSwitches(bool fixedFunction)
    {
        for (int k = 0; k < 8; ++k) {
            isOn(("clip distance " + std::to_string(k)).c_str(), GL_CLIP_DISTANCE0 + static_cast<GLenum>(k));
        }
        isOn(NAMED(GL_COLOR_LOGIC_OP));
        isOn(NAMED(GL_CULL_FACE));
        isOn(NAMED(GL_DEPTH_CLAMP));
        isOn(NAMED(GL_DEPTH_TEST));
        isOn(NAMED(GL_DITHER));
        isOn(NAMED(GL_FRAMEBUFFER_SRGB));
        isOn(NAMED(GL_LINE_SMOOTH));
        isOn(NAMED(GL_MULTISAMPLE));
        isOn(NAMED(GL_POLYGON_OFFSET_FILL));
        isOn(NAMED(GL_POLYGON_OFFSET_LINE));
        isOn(NAMED(GL_POLYGON_OFFSET_POINT));
        isOn(NAMED(GL_POLYGON_SMOOTH));
        isOn(NAMED(GL_PRIMITIVE_RESTART));
        isOn(NAMED(GL_PROGRAM_POINT_SIZE));
        isOn(NAMED(GL_RASTERIZER_DISCARD));
        isOn(NAMED(GL_SAMPLE_ALPHA_TO_COVERAGE));
        isOn(NAMED(GL_SAMPLE_ALPHA_TO_ONE));
        isOn(NAMED(GL_SAMPLE_COVERAGE));
        isOn(NAMED(GL_SAMPLE_MASK));
        isOn(NAMED(GL_SCISSOR_TEST));
        isOn(NAMED(GL_STENCIL_TEST));
        if (fixedFunction) {
            isOn(NAMED(GL_ALPHA_TEST));
            isOn(NAMED(GL_LINE_STIPPLE));
            isOn(NAMED(GL_POLYGON_STIPPLE));
            isOn(NAMED(GL_POINT_SPRITE));
        }
    }
    void askColorBuffers()
    {
        for (GLuint k = 0; k < 8; ++k) {
            const std::string buffer = " of colour buffer " + std::to_string(k);
            values["blending" + buffer] = {double(glIsEnabledi(GL_BLEND, k))};
            GLboolean mask[4];
            glGetBooleani_v(GL_COLOR_WRITEMASK, k, mask);
            values["mask" + buffer] = {double(mask[0]), double(mask[1]), double(mask[2]), double(mask[3])};
            for (GLenum name : {GL_BLEND_SRC_RGB, GL_BLEND_DST_RGB, GL_BLEND_SRC_ALPHA, GL_BLEND_DST_ALPHA,
                                GL_BLEND_EQUATION_RGB, GL_BLEND_EQUATION_ALPHA}) {
                GLint value = 0;
                glGetIntegeri_v(name, k, &value);
                values["blend function" + buffer].push_back(value);
            }
        }
    }
    void askNumbers()
    {
        numbers(NAMED(GL_DEPTH_FUNC));
        numbers(NAMED(GL_DEPTH_WRITEMASK));
        numbers(NAMED(GL_DEPTH_RANGE), 2);
        numbers(NAMED(GL_CULL_FACE_MODE));
        numbers(NAMED(GL_FRONT_FACE));
        numbers(NAMED(GL_POLYGON_MODE), 2);
        numbers(NAMED(GL_POLYGON_OFFSET_FACTOR));
        numbers(NAMED(GL_POLYGON_OFFSET_UNITS));
        numbers(NAMED(GL_LINE_WIDTH));
        numbers(NAMED(GL_POINT_SIZE));
        numbers(NAMED(GL_POINT_SPRITE_COORD_ORIGIN));
        numbers(NAMED(GL_PROVOKING_VERTEX));
        GLint64 restart = 0;
        glGetInteger64v(GL_PRIMITIVE_RESTART_INDEX, &restart);
        values["restart index"] = {double(restart)};
        numbers(NAMED(GL_SCISSOR_BOX), 4);
        numbers(NAMED(GL_VIEWPORT), 4);
        numbers(NAMED(GL_COLOR_CLEAR_VALUE), 4);
        numbers(NAMED(GL_DEPTH_CLEAR_VALUE));
        numbers(NAMED(GL_CURRENT_PROGRAM));
        numbers(NAMED(GL_VERTEX_ARRAY_BINDING));
        numbers(NAMED(GL_ARRAY_BUFFER_BINDING));
        numbers(NAMED(GL_COPY_READ_BUFFER_BINDING));
        numbers(NAMED(GL_COPY_WRITE_BUFFER_BINDING));
        numbers(NAMED(GL_PIXEL_PACK_BUFFER_BINDING));
        numbers(NAMED(GL_PIXEL_UNPACK_BUFFER_BINDING));
        numbers(NAMED(GL_TEXTURE_BUFFER_BINDING));
        numbers(NAMED(GL_DRAW_FRAMEBUFFER_BINDING));
        numbers(NAMED(GL_READ_FRAMEBUFFER_BINDING));
        numbers(NAMED(GL_RENDERBUFFER_BINDING));
        for (const char* side : {"pack", "unpack"}) {
            const bool pack = side[0] == 'p';
            for (GLenum name :
                 {pack ? GL_PACK_ALIGNMENT : GL_UNPACK_ALIGNMENT, pack ? GL_PACK_IMAGE_HEIGHT : GL_UNPACK_IMAGE_HEIGHT,
                  pack ? GL_PACK_LSB_FIRST : GL_UNPACK_LSB_FIRST, pack ? GL_PACK_ROW_LENGTH : GL_UNPACK_ROW_LENGTH,
                  pack ? GL_PACK_SKIP_IMAGES : GL_UNPACK_SKIP_IMAGES,
                  pack ? GL_PACK_SKIP_PIXELS : GL_UNPACK_SKIP_PIXELS, pack ? GL_PACK_SKIP_ROWS : GL_UNPACK_SKIP_ROWS,
                  pack ? GL_PACK_SWAP_BYTES : GL_UNPACK_SWAP_BYTES}) {
                numbers((side + std::to_string(name)).c_str(), name);
            }
        }
    }
    void askTextures()
    {
        numbers(NAMED(GL_ACTIVE_TEXTURE));
        GLint active = 0;
        glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
        for (GLenum unit = 0; unit < 4; ++unit) {
            glActiveTexture(GL_TEXTURE0 + unit);
            const std::string text = " of unit " + std::to_string(unit);
            numbers(("texture" + text).c_str(), GL_TEXTURE_BINDING_2D);
            numbers(("buffer texture" + text).c_str(), GL_TEXTURE_BINDING_BUFFER);
            numbers(("sampler" + text).c_str(), GL_SAMPLER_BINDING);
        }
        glActiveTexture(static_cast<GLenum>(active));
    }
#undef NAMED
};

// A host that has set everything to something else than the scene needs.
class Hostile
{
public:
    explicit Hostile(bool fixedFunction)
        : program("#version 330 core\nvoid main() { gl_Position = vec4(0); }\n",
                  "#version 330 core\nout vec4 pixel;\nvoid main() { pixel = vec4(1); }\n", {})
    {
        turnSwitches(fixedFunction);
        setColorBuffers();
        setNumbers(fixedFunction);
        bindObjects();
        setPixelStore();
    }

private:
    static void turnSwitches(bool fixedFunction)
    {
        for (GLenum name : {GL_CLIP_DISTANCE0,       GL_CLIP_DISTANCE1,
                            GL_CLIP_DISTANCE2,       GL_CLIP_DISTANCE3,
                            GL_CLIP_DISTANCE4,       GL_CLIP_DISTANCE5,
                            GL_CLIP_DISTANCE6,       GL_CLIP_DISTANCE7,
                            GL_COLOR_LOGIC_OP,       GL_CULL_FACE,
                            GL_DEPTH_CLAMP,          GL_DEPTH_TEST,
                            GL_FRAMEBUFFER_SRGB,     GL_LINE_SMOOTH,
                            GL_POLYGON_OFFSET_FILL,  GL_POLYGON_OFFSET_LINE,
                            GL_POLYGON_OFFSET_POINT, GL_POLYGON_SMOOTH,
                            GL_PRIMITIVE_RESTART,    GL_PROGRAM_POINT_SIZE,
                            GL_RASTERIZER_DISCARD,   GL_SAMPLE_ALPHA_TO_COVERAGE,
                            GL_SAMPLE_ALPHA_TO_ONE,  GL_SAMPLE_COVERAGE,
                            GL_SAMPLE_MASK,          GL_SCISSOR_TEST,
                            GL_STENCIL_TEST}) {
            glEnable(name);
        }
        glDisable(GL_DITHER);
        glDisable(GL_MULTISAMPLE);
        if (fixedFunction) {
            for (GLenum name : {GL_ALPHA_TEST, GL_LINE_STIPPLE, GL_POLYGON_STIPPLE, GL_POINT_SPRITE}) {
                glEnable(name);
            }
        }
    }
    static void setColorBuffers()
    {
        const GLenum functions[] = {GL_DST_COLOR,           GL_SRC_COLOR,           GL_DST_ALPHA,
                                    GL_SRC_ALPHA,           GL_ONE_MINUS_DST_COLOR, GL_ONE_MINUS_SRC_COLOR,
                                    GL_ONE_MINUS_DST_ALPHA, GL_ONE_MINUS_SRC_ALPHA};
        for (GLuint k = 0; k < 8; ++k) {
            glEnablei(GL_BLEND, k);
            glColorMaski(k, k % 2 == 0, k % 3 == 0, GL_FALSE, k % 5 == 0);
            glBlendFuncSeparatei(k, functions[k], functions[(k + 1) % 8], functions[(k + 2) % 8],
                                 functions[(k + 3) % 8]);
            glBlendEquationSeparatei(k, k % 2 ? GL_MIN : GL_MAX, k % 2 ? GL_FUNC_SUBTRACT : GL_FUNC_REVERSE_SUBTRACT);
        }
    }
    static void setNumbers(bool fixedFunction)
    {
        glDepthFunc(GL_NOTEQUAL);
        glDepthMask(GL_FALSE);
        glDepthRange(0.75, 0.25);
        glCullFace(GL_FRONT);
        glFrontFace(GL_CW);
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
        if (fixedFunction) {
            glPolygonMode(GL_BACK, GL_POINT);
        }
        glPolygonOffset(-3, 7);
        glLineWidth(3);
        glPointSize(5);
        glPointParameteri(GL_POINT_SPRITE_COORD_ORIGIN, GL_LOWER_LEFT);
        glProvokingVertex(GL_FIRST_VERTEX_CONVENTION);
        glPrimitiveRestartIndex(0xFFFFFFFFu);
        glScissor(3, 4, 5, 6);
        glViewport(7, 8, 9, 10);
        glClearColor(0.125f, 0.25f, 0.375f, 0.5f);
        glClearDepth(0.625);
    }
    void bindObjects()
    {
        program.use();
        GLuint buffers[6], textures[8], samplers[4];
        glGenBuffers(6, buffers);
        glGenTextures(8, textures);
        glGenSamplers(4, samplers);
        GLuint array = 0;
        glGenVertexArrays(1, &array);
        glBindVertexArray(array);
        const GLenum targets[] = {GL_ARRAY_BUFFER,      GL_COPY_READ_BUFFER,    GL_COPY_WRITE_BUFFER,
                                  GL_PIXEL_PACK_BUFFER, GL_PIXEL_UNPACK_BUFFER, GL_TEXTURE_BUFFER};
        for (int k = 0; k < 6; ++k) {
            glBindBuffer(targets[k], buffers[k]);
        }
        for (GLuint unit = 0; unit < 4; ++unit) {
            glActiveTexture(GL_TEXTURE0 + unit);
            glBindTexture(GL_TEXTURE_2D, textures[2 * unit]);
            glBindTexture(GL_TEXTURE_BUFFER, textures[2 * unit + 1]);
            glBindSampler(unit, samplers[unit]);
        }
        glActiveTexture(GL_TEXTURE5);
        GLuint framebuffers[2], renderbuffer = 0;
        glGenFramebuffers(2, framebuffers);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffers[0]);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffers[1]);
        glGenRenderbuffers(1, &renderbuffer);
        glBindRenderbuffer(GL_RENDERBUFFER, renderbuffer);
    }
    static void setPixelStore()
    {
        int value = 2;
        for (GLenum name : {GL_PACK_IMAGE_HEIGHT, GL_PACK_ROW_LENGTH, GL_PACK_SKIP_IMAGES, GL_PACK_SKIP_PIXELS,
                            GL_PACK_SKIP_ROWS, GL_UNPACK_IMAGE_HEIGHT, GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_IMAGES,
                            GL_UNPACK_SKIP_PIXELS, GL_UNPACK_SKIP_ROWS}) {
            glPixelStorei(name, ++value);
        }
        for (GLenum name : {GL_PACK_LSB_FIRST, GL_PACK_SWAP_BYTES, GL_UNPACK_LSB_FIRST, GL_UNPACK_SWAP_BYTES}) {
            glPixelStorei(name, GL_TRUE);
        }
        glPixelStorei(GL_PACK_ALIGNMENT, 8);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    }

    kvo::GlProgram program; // the other objects go with the context
};

#endif
