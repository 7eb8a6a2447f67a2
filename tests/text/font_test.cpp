// Glyphs of a font file.
#include "font.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

#include <gtest/gtest.h>

using kvo::Font;
using kvo::FontError;
using kvo::Glyph;

namespace {

std::string errorOf(const std::string& file, int height)
{
    try {
        const Font font(file, height);
    } catch (const FontError& error) {
        return error.what();
    }
    return "";
}

std::uint8_t coverageAt(const Glyph& glyph, int x, int y)
{
    return glyph.coverage.at(static_cast<std::size_t>(y * glyph.width + x));
}

} // namespace

class FontOf : public testing::Test
{
protected:
    Font font{kvo::defaultFontFile(), 24};
};

TEST_F(FontOf, GlyphsStandOnTheBaseLineUpright)
{
    const Glyph& l = font.glyph(U'L');
    EXPECT_EQ(l.top, l.height);
    EXPECT_NEAR(l.height, 17, 2);
    EXPECT_GT(l.left, 0);
    EXPECT_LE(l.left + l.width, l.advance);
    EXPECT_EQ(l.coverage.size(), static_cast<std::size_t>(l.width * l.height));
    EXPECT_EQ(coverageAt(l, 0, 0), coverageAt(l, 0, l.height - 1)) << "the stem";
    EXPECT_LT(coverageAt(l, l.width - 1, 0), coverageAt(l, l.width - 2, l.height - 1)) << "the foot";
    EXPECT_LT(font.glyph(U'g').top, font.glyph(U'g').height) << "hangs below";
    EXPECT_LT(font.glyph(U'L').top, font.ascent());
    EXPECT_LT(font.ascent(), font.lineHeight());
    EXPECT_EQ(font.pixelHeight(), 24);
}

TEST_F(FontOf, EdgesAreSmoothOrSharp)
{
    const auto between = [](std::uint8_t c) { return c > 0 && c < 255; };
    const Glyph& smooth = font.glyph(U'O');
    const Glyph sharp = font.sharpGlyph(U'O');
    EXPECT_GT(std::count_if(smooth.coverage.begin(), smooth.coverage.end(), between), 20);
    EXPECT_EQ(std::count_if(sharp.coverage.begin(), sharp.coverage.end(), between), 0);
    EXPECT_GT(std::count(sharp.coverage.begin(), sharp.coverage.end(), 255), 40);
    EXPECT_NEAR(sharp.height, smooth.height, 2);
}

TEST_F(FontOf, UnknownCharactersAreReplaced)
{
    ASSERT_FALSE(font.has(U'\x01'));
    ASSERT_TRUE(font.has(U'\uFFFD'));
    EXPECT_EQ(font.glyph(U'\x01').coverage, font.glyph(U'\uFFFD').coverage);
    EXPECT_EQ(font.glyph(U'\U0010FFFF').coverage, font.glyph(U'\uFFFD').coverage);
    EXPECT_NE(font.glyph(U'\u00E4').coverage, font.glyph(U'\uFFFD').coverage);
    EXPECT_EQ(font.sharpGlyph(U'\x01').coverage.size(), 0u);
    EXPECT_EQ(font.sharpGlyph(U'\x01').advance, font.glyph(U' ').advance);
    EXPECT_EQ(font.glyph(U' ').width, 0);
}

TEST_F(FontOf, GlyphsStayWhileOthersAreMade)
{
    const Glyph& first = font.glyph(U'a');
    const Glyph copy = first;
    for (char32_t code = 0; code < 3000; ++code) {
        font.glyph(code);
    }
    EXPECT_EQ(&first, &font.glyph(U'a'));
    EXPECT_EQ(first.coverage, copy.coverage);
}

TEST_F(FontOf, WidthsAreThoseOfTheCharacters)
{
    EXPECT_EQ(font.width(""), 0);
    EXPECT_EQ(font.width("ab"), font.glyph(U'a').advance + font.glyph(U'b').advance);
    EXPECT_EQ(font.width("\xC3\xA4\xE2\x80\xA6"), font.width("ab")) << "two characters";
}

TEST(FontFile, ErrorsNameIt)
{
    EXPECT_EQ(errorOf("/nowhere/none.ttf", 13).find("/nowhere/none.ttf: the font cannot be opened"), 0u);
    const std::string text = testing::TempDir() + "kvo-no-font.ttf";
    std::ofstream(text) << "this is no font";
    EXPECT_EQ(errorOf(text, 13).find(text + ": "), 0u);
    std::remove(text.c_str());
    for (const int height : {-1, 0, 3, 257}) {
        EXPECT_NE(errorOf(kvo::defaultFontFile(), height).find(" " + std::to_string(height) + " pixels"),
                  std::string::npos);
    }
    EXPECT_EQ(errorOf(kvo::defaultFontFile(), 4), "");
    EXPECT_EQ(errorOf(kvo::defaultFontFile(), 256), "");
}
