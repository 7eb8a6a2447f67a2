#include "transparency.h"

namespace kvo {

namespace {

// One triangle that covers the whole viewport.
const char* const vertexText = R"(#version 330 core
void main()
{
    vec2 corner = vec2(gl_VertexID & 1, gl_VertexID >> 1);
    gl_Position = vec4(4.0 * corner - 1.0, 0.0, 1.0);
}
)";

const char* const fragmentText = R"(#version 330 core
uniform sampler2D sums;
uniform sampler2D weights;
uniform ivec2 corner;
out vec4 pixel;
void main()
{
    ivec2 at = ivec2(gl_FragCoord.xy) - corner;
    vec4 sum = texelFetch(sums, at, 0);
    float weight = texelFetch(weights, at, 0).r, seenThrough = sum.a;
    if (seenThrough >= 1.0)
        discard;
    pixel = vec4(sum.rgb / max(weight, 1e-5), 1.0 - seenThrough);
}
)";

} // namespace

void TransparentLayers::draw(const int viewport[4], const std::function<void()>& drawOpaque,
                             const std::function<void()>& drawLayers)
{
    if (viewport[2] < 1 || viewport[3] < 1) {
        return;
    }
    {
        const KeepFramebuffer keep;
        float window[4];
        glGetFloatv(GL_VIEWPORT, window);
        if (!target || target->width() != viewport[2] || target->height() != viewport[3]) {
            target.reset();
            target =
                std::make_unique<GlFramebuffer>(viewport[2], viewport[3], std::vector<GLenum>{GL_RGBA16F, GL_RGBA16F});
        }
        target->bind();
        const float inTarget[4] = {window[0] - static_cast<float>(viewport[0]),
                                   window[1] - static_cast<float>(viewport[1]), window[2], window[3]};
        setViewport(inTarget);
        glDisable(GL_SCISSOR_TEST);
        glDisable(GL_BLEND);
        const float nothing[4] = {0, 0, 0, 1};
        glClearBufferfv(GL_COLOR, 0, nothing);
        glClearBufferfv(GL_COLOR, 1, nothing);
        glClear(GL_DEPTH_BUFFER_BIT);
        glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
        drawOpaque();
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
        glDepthMask(GL_FALSE);
        glEnable(GL_BLEND);
        glBlendFuncSeparate(GL_ONE, GL_ONE, GL_ZERO, GL_ONE_MINUS_SRC_ALPHA);
        drawLayers();
        glDepthMask(GL_TRUE);
    }
    if (!program) {
        program = std::make_unique<GlProgram>(vertexText, fragmentText, std::vector<GlProgram::Attribute>{});
    }
    program->use();
    glUniform1i(program->uniform("sums"), 0);
    glUniform1i(program->uniform("weights"), 1);
    glUniform2i(program->uniform("corner"), viewport[0], viewport[1]);
    layOver();
    glUseProgram(0);
}

void TransparentLayers::layOver()
{
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDisable(GL_DEPTH_TEST);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    for (unsigned int unit : {1u, 0u}) {
        glActiveTexture(GL_TEXTURE0 + unit);
        glBindTexture(GL_TEXTURE_2D, target->color(unit));
    }
    GLint before = 0;
    glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &before);
    noAttributes.bind();
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glBindVertexArray(static_cast<GLuint>(before));
    for (unsigned int unit : {1u, 0u}) {
        glActiveTexture(GL_TEXTURE0 + unit);
        glBindTexture(GL_TEXTURE_2D, 0);
    }
    glDisable(GL_BLEND);
    glEnable(GL_DEPTH_TEST);
}

} // namespace kvo
