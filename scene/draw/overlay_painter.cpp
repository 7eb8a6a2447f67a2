// Everything is triangles with a coverage: of the glyph's texel, or of the distance to a line.
#include "overlay_painter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "frame_state.h"
#include "utf8.h"

namespace kvo {

namespace {

const char* const vertexText = R"(#version 330 core
uniform vec2 size;
layout(location = 0) in vec2 position;
layout(location = 1) in vec2 placeHere;
layout(location = 2) in vec2 shapeHere;
layout(location = 3) in vec4 colorHere;
out vec2 place;
flat out vec2 shape;
flat out vec4 color;
void main()
{
    gl_Position = vec4(2.0 * position / size - 1.0, 0.0, 1.0);
    place = placeHere;
    shape = shapeHere;
    color = colorHere;
}
)";

const char* const fragmentText = R"(#version 330 core
uniform sampler2D glyphs;
in vec2 place;
flat in vec2 shape;
flat in vec4 color;
out vec4 pixel;
void main()
{
    float reach = shape.x, radius = shape.y, covered;
    if (reach < 0.0)
        covered = texelFetch(glyphs, ivec2(floor(place)), 0).r;
    else
        covered = clamp(radius + 0.5 - length(vec2(max(abs(place.x) - reach, 0.0), place.y)), 0.0, 1.0);
    pixel = vec4(color.rgb, color.a * covered);
}
)";

constexpr float glyphReach = -1;

std::uint8_t level(float value)
{
    return static_cast<std::uint8_t>(std::lround(255 * std::clamp(value, 0.0f, 1.0f)));
}

} // namespace

void OverlayPainter::begin(const int pixelViewport[4])
{
    std::copy(pixelViewport, pixelViewport + 4, viewport);
    vertices.clear();
    back.reset();
}

Rgb OverlayPainter::background() const
{
    if (!back) {
        float color[4];
        glGetFloatv(GL_COLOR_CLEAR_VALUE, color);
        back = Rgb{color[0], color[1], color[2]};
    }
    return *back;
}

Rgb OverlayPainter::ink() const
{
    const Rgb color = background();
    const bool dark = 0.3f * color.r + 0.59f * color.g + 0.11f * color.b < 0.5f;
    return dark ? Rgb{1, 1, 1} : Rgb{0, 0, 0};
}

void OverlayPainter::add(const Vertex corners[4])
{
    for (const int corner : {0, 1, 2, 2, 1, 3}) {
        vertices.push_back(corners[corner]);
    }
}

// --- What is collected ---

void OverlayPainter::fill(int x, int y, int width, int height, const Rgb& color)
{
    if (width <= 0 || height <= 0) {
        return;
    }
    Vertex corners[4];
    for (int k = 0; k < 4; ++k) {
        corners[k] = {static_cast<float>(x + (k & 1 ? width : 0)),
                      static_cast<float>(y + (k & 2 ? height : 0)),
                      0,
                      0,
                      0,
                      1, // the middle of a line wide enough to cover it
                      {level(color.r), level(color.g), level(color.b), 255}};
    }
    add(corners);
}

void OverlayPainter::line(double fromX, double fromY, double toX, double toY, double width, const Rgb& color)
{
    const double length = std::hypot(toX - fromX, toY - fromY);
    const double alongX = length > 0 ? (toX - fromX) / length : 1, alongY = length > 0 ? (toY - fromY) / length : 0;
    const double reach = length / 2, radius = width / 2, edge = radius + 1; // room for the smooth edge
    Vertex corners[4];
    for (int k = 0; k < 4; ++k) {
        const double along = (k & 1 ? 1 : -1) * (reach + edge), across = (k & 2 ? 1 : -1) * edge;
        corners[k] = {static_cast<float>((fromX + toX) / 2 + along * alongX - across * alongY),
                      static_cast<float>((fromY + toY) / 2 + along * alongY + across * alongX),
                      static_cast<float>(along),
                      static_cast<float>(across),
                      static_cast<float>(reach),
                      static_cast<float>(radius),
                      {level(color.r), level(color.g), level(color.b), 255}};
    }
    add(corners);
}

// left, top: of the bitmap.
void OverlayPainter::addGlyph(int left, int top, const GlyphAtlas::Place& place, const Rgb& color)
{
    Vertex corners[4];
    for (int k = 0; k < 4; ++k) {
        const int right = k & 1 ? place.width : 0, down = k & 2 ? 0 : place.height;
        corners[k] = {static_cast<float>(left + right),
                      static_cast<float>(top - down),
                      static_cast<float>(place.x + right),
                      static_cast<float>(place.y + down),
                      glyphReach,
                      0,
                      {level(color.r), level(color.g), level(color.b), 255}};
    }
    add(corners);
}

void OverlayPainter::write(int x, int y, const std::string& text, const Rgb& color)
{
    if (!hasFont()) {
        return;
    }
    for (const char32_t code : codePoints(text)) {
        const Glyph& glyph = glyphs.font()->glyph(code);
        const GlyphAtlas::Place place = glyphs.place(code);
        if (place.width > 0) {
            addGlyph(x + glyph.left, y + glyph.top, place, color);
        }
        x += glyph.advance;
    }
}

void OverlayPainter::writeLetter(double x, double y, char32_t letter, const Rgb& color)
{
    if (!hasFont()) {
        return;
    }
    const GlyphAtlas::Place place = glyphs.place(letter);
    addGlyph(static_cast<int>(std::lround(x - place.width / 2.0)),
             static_cast<int>(std::lround(y + place.height / 2.0)), place, color);
}

// --- Drawing ---

void OverlayPainter::draw(HostState host)
{
    if (vertices.empty() || viewport[2] < 1 || viewport[3] < 1) {
        return;
    }
    if (host == HostState::Restore) {
        const KeepGlState kept;
        kept.state().defaults().apply();
        glViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
        drawVertices();
    } else {
        glDisable(GL_DEPTH_TEST);
        drawVertices();
        putDefaultsBack();
    }
    vertices.clear();
}

void OverlayPainter::drawVertices()
{
    if (!program) {
        program = std::make_unique<GlProgram>(vertexText, fragmentText, std::vector<GlProgram::Attribute>{});
    }
    glEnable(GL_BLEND);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glyphs.bind();
    program->use();
    glUniform1i(program->uniform("glyphs"), 0);
    glUniform2f(program->uniform("size"), static_cast<float>(viewport[2]), static_cast<float>(viewport[3]));
    array.bind();
    buffer.fill(GL_ARRAY_BUFFER, vertices, GL_STREAM_DRAW);
    const std::size_t places[] = {offsetof(Vertex, x), offsetof(Vertex, placeX), offsetof(Vertex, reach)};
    for (GLuint k = 0; k < 3; ++k) {
        glEnableVertexAttribArray(k);
        glVertexAttribPointer(k, 2, GL_FLOAT, GL_FALSE, sizeof(Vertex), bufferOffset(places[k]));
    }
    glEnableVertexAttribArray(3);
    glVertexAttribPointer(3, 4, GL_UNSIGNED_BYTE, GL_TRUE, sizeof(Vertex), bufferOffset(offsetof(Vertex, color)));
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(vertices.size()));
}

} // namespace kvo
