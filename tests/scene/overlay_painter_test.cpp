// Rectangles, lines and text over a frame, in contexts of both profiles.
#include <cmath>

#include <gtest/gtest.h>

#include "axes_triad.h"
#include "box_corners.h"
#include "gl_state.h"
#include "headless_context.h"
#include "offscreen.h"
#include "overlay_painter.h"
#include "utf8.h"

namespace {

using kvo::Color;
using kvo::ContextProfile;
using kvo::Picture;
using kvo::Rgb;

constexpr Rgb red = {1, 0, 0}, white = {1, 1, 1};
const Color black = {0, 0, 0, 255};

class OverlayIn : public testing::TestWithParam<ContextProfile>
{
protected:
    static constexpr int width = 200, height = 190;

    OverlayIn() { begin(0, 0, width, height); }

    void begin(int x, int y, int across, int up)
    {
        const int viewport[4] = {x, y, across, up};
        painter.begin(viewport);
    }
    void useFont(int pixels = 24) { painter.setFont(std::make_unique<kvo::Font>(kvo::defaultFontFile(), pixels)); }
    Picture draw()
    {
        glClear(GL_COLOR_BUFFER_BIT);
        painter.draw();
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        return target.read();
    }
    // y upwards, as the painter has it.
    static Color at(const Picture& p, int x, int y) { return p.at(x, height - 1 - y); }
    // The sum of a column's red, in pixels.
    static double redOfColumn(const Picture& p, int x)
    {
        double out = 0;
        for (int y = 0; y < height; ++y) {
            out += at(p, x, y).r / 255.0;
        }
        return out;
    }

    kvo::HeadlessContext context{"software", GetParam()};
    kvo::Offscreen target{width, height};
    kvo::OverlayPainter painter;
};

TEST_P(OverlayIn, RectanglesCoverTheirPixelsExactly)
{
    painter.fill(3, 5, 7, 2, red);
    painter.fill(20, 20, 0, 9, red);
    painter.fill(20, 20, 9, -1, red);
    const Picture p = draw();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool inside = x >= 3 && x < 10 && y >= 5 && y < 7;
            ASSERT_EQ(at(p, x, y), (inside ? Color{255, 0, 0, 255} : black)) << x << " " << y;
        }
    }
}

TEST_P(OverlayIn, NothingIsDrawnOutsideTheViewport)
{
    useFont();
    begin(40, 30, 50, 20);
    painter.fill(-100, -100, 500, 500, red);
    painter.write(-10, 0, "WWWWWWWWWWWW", white);
    painter.line(-50, 10, 300, 10, 5, white);
    const Picture p = draw();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool inside = x >= 40 && x < 90 && y >= 30 && y < 50;
            ASSERT_EQ(at(p, x, y) != black, inside) << x << " " << y;
        }
    }
}

TEST_P(OverlayIn, LaterThingsLieOverEarlierOnes)
{
    useFont();
    painter.write(10, 10, "MMMM", white);
    painter.fill(0, 0, 100, 100, red);
    painter.line(0, 50.5, 100, 50.5, 1, white);
    painter.fill(20, 40, 10, 20, {0, 0, 1});
    const Picture p = draw();
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 100; ++x) {
            ASSERT_EQ(at(p, x, y), (Color{255, 0, 0, 255})) << "text below the rectangle";
        }
    }
    EXPECT_EQ(at(p, 60, 50), (Color{255, 255, 255, 255}));
    EXPECT_EQ(at(p, 25, 50), (Color{0, 0, 255, 255}));
}

TEST_P(OverlayIn, LinesHaveTheirWidthAndSmoothEdges)
{
    painter.line(20, 40, 120, 75, 3, red);
    const Picture p = draw();
    const double slope = 35.0 / 100, upright = 3 * std::hypot(1, slope); // seen in a column
    int between = 0;
    for (int x = 30; x < 110; ++x) {
        EXPECT_NEAR(redOfColumn(p, x), upright, 0.25) << x;
        const int middle = static_cast<int>(40 + slope * (x + 0.5 - 20));
        EXPECT_EQ(at(p, x, middle).r, 255) << x;
        for (int y = 0; y < height; ++y) {
            between += at(p, x, y).r > 0 && at(p, x, y).r < 255;
        }
    }
    EXPECT_GT(between, 100);
    EXPECT_EQ(redOfColumn(p, 17), 0) << "ends are round, no longer than half the width";
    EXPECT_GT(redOfColumn(p, 19), 0);
    EXPECT_EQ(redOfColumn(p, 123), 0);
}

TEST_P(OverlayIn, ALineOfNoLengthIsADot)
{
    painter.line(50, 50, 50, 50, 10, red);
    const Picture p = draw();
    double area = 0;
    for (int x = 0; x < width; ++x) {
        area += redOfColumn(p, x);
    }
    EXPECT_NEAR(area, 3.14159 * 25, 3);
}

TEST_P(OverlayIn, TextHasTheCoverageOfItsGlyphs)
{
    useFont();
    const std::string text = "g\xC3\xA4 8"; // a descender, UTF-8, a blank
    painter.write(30, 60, text, white);
    const Picture p = draw();
    kvo::Font font(kvo::defaultFontFile(), 24);
    Picture wanted(width, height, black);
    int pen = 30;
    for (const char32_t code : kvo::codePoints(text)) {
        const kvo::Glyph& glyph = font.glyph(code);
        for (int k = 0; k < glyph.width * glyph.height; ++k) {
            const std::uint8_t c = glyph.coverage[static_cast<std::size_t>(k)];
            wanted.set(pen + glyph.left + k % glyph.width, height - (60 + glyph.top) + k / glyph.width, {c, c, c, 255});
        }
        pen += glyph.advance;
    }
    EXPECT_EQ(kvo::compare(p, wanted, 1).differing, 0u);
    EXPECT_EQ(painter.widthOf(text), pen - 30);
    EXPECT_EQ(painter.fontHeight(), 24);
}

TEST_P(OverlayIn, FramesWithMoreAndMoreCharactersKeepAll)
{
    useFont();
    painter.write(0, 100, "first", white);
    const Picture first = draw();
    for (char32_t code = 0x100; code < 0x800; ++code) { // many rows of the texture, drawn in between
        painter.writeLetter(-100, -100, code, white);
        if (code % 0x200 == 0) {
            draw();
        }
    }
    painter.write(0, 100, "first", white);
    EXPECT_EQ(kvo::compare(draw(), first).differing, 0u);
    kvo::Font font(kvo::defaultFontFile(), 24);
    const kvo::Glyph& last = font.glyph(0x429);
    painter.writeLetter(50 + last.width / 2.0, 50 + last.height / 2.0, 0x429, white);
    const Picture p = draw();
    for (int row = 0; row < last.height; ++row) {
        for (int column = 0; column < last.width; ++column) {
            ASSERT_NEAR(at(p, 50 + column, 50 + last.height - 1 - row).r,
                        last.coverage[static_cast<std::size_t>(row * last.width + column)], 1);
        }
    }
}

TEST_P(OverlayIn, WithoutAFontTextIsNothing)
{
    EXPECT_FALSE(painter.hasFont());
    EXPECT_EQ(painter.widthOf("text"), 0);
    painter.write(10, 10, "text", white);
    painter.writeLetter(50, 50, U'X', white);
    EXPECT_EQ(kvo::compare(draw(), Picture(width, height, black)).differing, 0u);
}

TEST_P(OverlayIn, WhatTheHostHasSetChangesNothing)
{
    const auto collect = [this] {
        painter.fill(10, 10, 100, 60, red);
        painter.write(20, 30, "host", white);
        painter.line(10, 100, 150, 130, 2, white);
    };
    useFont();
    collect();
    const Picture wanted = draw();
    useFont(); // its glyphs are uploaded anew
    collect();

    kvo::GlBuffer pixels;
    pixels.fill(GL_PIXEL_UNPACK_BUFFER, std::vector<char>(64));
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 4000);
    glClear(GL_COLOR_BUFFER_BIT);
    for (GLenum name : {GL_DEPTH_TEST, GL_SCISSOR_TEST, GL_STENCIL_TEST, GL_RASTERIZER_DISCARD, GL_COLOR_LOGIC_OP,
                        GL_CULL_FACE, GL_SAMPLE_ALPHA_TO_COVERAGE}) {
        glEnable(name);
    }
    glDepthFunc(GL_NEVER);
    glScissor(0, 0, 1, 1);
    glColorMask(GL_TRUE, GL_FALSE, GL_FALSE, GL_FALSE);
    glCullFace(GL_FRONT_AND_BACK);
    glPolygonMode(GL_FRONT_AND_BACK, GL_POINT);
    glBlendEquation(GL_MIN);
    glViewport(3, 4, 5, 6);
    GLuint sampler = 0;
    glGenSamplers(1, &sampler);
    glBindSampler(0, sampler);
    if (GetParam() == ContextProfile::Compatibility) {
        glEnable(GL_ALPHA_TEST);
        glAlphaFunc(GL_NEVER, 0);
        glEnable(GL_POLYGON_STIPPLE);
    }
    const kvo::GlState before = kvo::GlState::read();
    painter.draw();
    const kvo::GlState after = kvo::GlState::read();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_EQ(after.viewport[2], 5);
    EXPECT_EQ(after.depthFunction, GL_NEVER);
    EXPECT_TRUE(after.isOn(GL_RASTERIZER_DISCARD));
    EXPECT_EQ(after.program, before.program);
    EXPECT_EQ(after.vertexArray, before.vertexArray);
    EXPECT_EQ(after.units[0].sampler, before.units[0].sampler);
    before.defaults().apply();
    EXPECT_EQ(kvo::compare(target.read(), wanted).differing, 0u);
}

TEST_P(OverlayIn, AxesHaveLettersOfTheFontOrStrokes)
{
    kvo::SceneCamera camera;
    for (int k = 0; k < 16; ++k) {
        camera.modelview[k] = camera.projection[k] = k % 5 == 0; // x to the right, y upwards, z to the viewer
    }
    camera.viewport[2] = width;
    camera.viewport[3] = height;
    camera.viewer = 1;
    const auto coloured = [](const Picture& p, int left, int low, int across, int up) {
        int out = 0;
        for (int y = low; y < low + up; ++y) {
            for (int x = left; x < left + across; ++x) {
                out += at(p, x, y) != black;
            }
        }
        return out;
    };
    kvo::drawAxes(painter, camera);
    const Picture strokes = draw();
    useFont(13);
    kvo::drawAxes(painter, camera);
    const Picture letters = draw();
    for (const Picture* p : {&strokes, &letters}) {
        EXPECT_NEAR(at(*p, 60, 45).r, 242, 1) << "the arm of x";
        EXPECT_NEAR(at(*p, 45, 60).g, 204, 1) << "the arm of y";
        EXPECT_GT(coloured(*p, 78, 38, 13, 15), 20) << "its letter";
        EXPECT_GT(coloured(*p, 38, 78, 15, 13), 15) << "that of y";
    }
    EXPECT_GT(kvo::compare(strokes, letters).differing, 20u);
}

TEST_P(OverlayIn, BoxesHaveNumberedCorners)
{
    kvo::SceneCamera camera;
    for (int k = 0; k < 16; ++k) {
        camera.modelview[k] = camera.projection[k] = k % 5 == 0;
    }
    begin(20, 10, 160, 160);
    camera.viewport[0] = 20;
    camera.viewport[1] = 10;
    camera.viewport[2] = camera.viewport[3] = 160;
    useFont(13);
    kvo::drawBoxCorners(painter, camera, {-0.5f, 0.5f, -0.25f, 0.25f, 0.5f, 0.5f}); // flat in z
    const Picture p = draw();
    EXPECT_EQ(at(p, 20 + 39, 10 + 59), (Color{0, 255, 0, 255})) << "the least corner";
    EXPECT_EQ(at(p, 20 + 119, 10 + 99), (Color{255, 0, 0, 255})) << "the greatest";
    painter.write(40 + 2, 100 + 2, "3", white);
    painter.write(40 + 2, 100 + 2, "7", white);
    painter.write(120 + 2, 60 + 2, "1", white);
    painter.write(120 + 2, 60 + 2, "5", white);
    const Picture numbers = draw();
    for (const int left : {60, 140}) { // 3 over 7 and 1 over 5
        const int low = left == 60 ? 110 : 70;
        int ink = 0;
        for (int y = low; y < low + 16; ++y) {
            for (int x = left; x < left + 12; ++x) {
                ink += at(numbers, x, y) != black;
                EXPECT_NEAR(at(p, x, y).r, at(numbers, x, y).r, 1) << x << " " << y;
            }
        }
        EXPECT_GT(ink, 20);
    }
}

INSTANTIATE_TEST_SUITE_P(Profiles, OverlayIn, testing::Values(ContextProfile::Core, ContextProfile::Compatibility),
                         [](const testing::TestParamInfo<ContextProfile>& profile) {
                             return profile.param == ContextProfile::Core ? "Core" : "Compatibility";
                         });

} // namespace
