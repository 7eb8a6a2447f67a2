// The bitmap font in display lists.
#include <GL/gl.h>

#include "bitmap_font.h"
#include "host_fixture.h"

using kvo::BitmapFont;
using kvo::Color;
using kvo::Offscreen;

namespace {

const Color white{255, 255, 255, 255};

// The text at pixel (20, 20) from the bottom left of a 100 x 60 picture.
kvo::Picture drawText(const BitmapFont& font, const std::string& text)
{
    Offscreen target(100, 60);
    glViewport(0, 0, 100, 60);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, 100, 0, 60, -1, 1);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glColor3f(1, 1, 1);
    glRasterPos2i(20, 20);
    glListBase(font.base());
    glCallLists(static_cast<GLsizei>(text.size()), GL_UNSIGNED_BYTE, text.data());
    return target.read();
}

} // namespace

class BitmapFontTest : public Drawing
{
};

TEST_F(BitmapFontTest, HasAListForEveryByte)
{
    BitmapFont font(13);
    for (unsigned int c = 0; c < 256; ++c) {
        EXPECT_TRUE(glIsList(font.base() + c)) << c;
    }
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(BitmapFontTest, ListsGoWithTheFont)
{
    unsigned int base = 0;
    {
        BitmapFont font(13);
        base = font.base();
    }
    EXPECT_FALSE(glIsList(base + 'A'));
}

TEST_F(BitmapFontTest, DigitsStandOnTheBaseLine)
{
    const BitmapFont font(20);
    const Blob one = findColor(drawText(font, "1"), white);
    EXPECT_GT(one.count, 15);
    EXPECT_EQ(one.bottom, 60 - 1 - 20); // the row of the raster position, counted from the top
    EXPECT_NEAR(one.height(), 15, 2);
    EXPECT_GE(one.left, 20);
    EXPECT_LT(one.right, 20 + font.width("1"));
}

TEST_F(BitmapFontTest, GlyphsAreUpright)
{
    // The bar of an L is at its foot, the stem at its left.
    const kvo::Picture picture = drawText(BitmapFont(24), "L");
    const Blob all = findColor(picture, white);
    const Blob foot = findColor(picture.cut(0, all.bottom, 100, 1), white);
    const Blob head = findColor(picture.cut(0, all.top, 100, 1), white);
    EXPECT_GT(foot.count, 2 * head.count);
    EXPECT_EQ(foot.left, head.left);
}

TEST_F(BitmapFontTest, RasterPositionMovesByTheWidth)
{
    const BitmapFont font(13);
    drawText(font, "Ab 1");
    GLfloat position[4];
    glGetFloatv(GL_CURRENT_RASTER_POSITION, position);
    EXPECT_FLOAT_EQ(position[0], 20 + static_cast<float>(font.width("Ab 1")));
    EXPECT_FLOAT_EQ(position[1], 20);
}

TEST_F(BitmapFontTest, EveryCharacterIsEquallyWide)
{
    const BitmapFont font(13);
    EXPECT_GT(font.width("0"), 5);
    for (const char* text : {" ", "i", "W", "\xE4", "\x01"}) {
        EXPECT_EQ(font.width(text), font.width("0")) << text;
    }
}

TEST_F(BitmapFontTest, BlanksAndUnknownCharactersDrawNothing)
{
    EXPECT_EQ(findColor(drawText(BitmapFont(13), " \x01 "), white).count, 0);
}

TEST_F(BitmapFontTest, LeavesTheUnpackingStateAlone)
{
    glPixelStorei(GL_UNPACK_ALIGNMENT, 8);
    glPixelStorei(GL_UNPACK_LSB_FIRST, GL_TRUE);
    const BitmapFont font(13);
    GLint alignment = 0, lsbFirst = 0;
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
    glGetIntegerv(GL_UNPACK_LSB_FIRST, &lsbFirst);
    EXPECT_EQ(alignment, 8);
    EXPECT_EQ(lsbFirst, GL_TRUE);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glPixelStorei(GL_UNPACK_LSB_FIRST, GL_FALSE);
    EXPECT_GT(findColor(drawText(font, "8"), white).count, 15);
}

TEST_F(BitmapFontTest, AMissingFontIsAnErrorThatNamesIt)
{
    EXPECT_TRUE(
        contains(errorOf<kvo::FontError>([] { BitmapFont font(13, "/nowhere/none.ttf"); }), "/nowhere/none.ttf"));
    Folder folder;
    writeText(folder.file("text.ttf"), "this is no font");
    EXPECT_TRUE(contains(errorOf<kvo::FontError>([&] { BitmapFont font(13, folder.file("text.ttf")); }), "text.ttf"));
}

TEST_F(BitmapFontTest, ImpossibleHeightsAreErrors)
{
    for (int height : {-1, 0, 3, 257}) {
        EXPECT_TRUE(contains(errorOf<kvo::FontError>([&] { BitmapFont font(height); }), std::to_string(height)));
    }
}
