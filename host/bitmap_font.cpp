// Glyphs of one bit a pixel, compiled into display lists.
#include "bitmap_font.h"

#include <vector>

#include <GL/gl.h>

namespace kvo {

namespace {

// One bit a pixel, the lowest row first, rows of whole bytes.
std::vector<GLubyte> bitsOf(const Glyph& glyph)
{
    const auto rows = static_cast<std::size_t>(glyph.height), columns = static_cast<std::size_t>(glyph.width);
    const std::size_t rowBytes = (columns + 7) / 8;
    std::vector<GLubyte> out(rowBytes * rows);
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t column = 0; column < columns; ++column) {
            if (glyph.coverage[row * columns + column]) {
                out[rowBytes * (rows - 1 - row) + column / 8] |= static_cast<GLubyte>(0x80 >> column % 8);
            }
        }
    }
    return out;
}

// Moves the raster position and draws nothing. One clear pixel: Mesa takes an empty bitmap in a list for an allocation
// that failed.
void compileBlank(int advance)
{
    const GLubyte clear = 0;
    glBitmap(1, 1, 0, 0, static_cast<GLfloat>(advance), 0, &clear);
}

void compileGlyph(const Glyph& glyph)
{
    if (glyph.height == 0 || glyph.width == 0) {
        return compileBlank(glyph.advance);
    }
    const auto down = static_cast<GLfloat>(glyph.height - glyph.top);
    glBitmap(glyph.width, glyph.height, static_cast<GLfloat>(-glyph.left), down, static_cast<GLfloat>(glyph.advance), 0,
             bitsOf(glyph).data());
}

} // namespace

BitmapFont::BitmapFont(int pixelHeight, const std::string& file)
{
    Font font(file, pixelHeight);
    above = font.ascent();
    spacing = font.lineHeight();
    firstList = glGenLists(characters);
    if (firstList == 0) {
        throw FontError(file + ": OpenGL gives no display lists for the font");
    }

    // glBitmap reads its bits when it is compiled: the unpacking state of that moment counts.
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    glPixelStorei(GL_UNPACK_SKIP_ROWS, 0);
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, 0);
    glPixelStorei(GL_UNPACK_LSB_FIRST, GL_FALSE);
    for (int c = 0; c < characters; ++c) {
        const Glyph glyph = font.sharpGlyph(static_cast<char32_t>(c));
        glNewList(firstList + c, GL_COMPILE);
        advance[c] = glyph.advance;
        compileGlyph(glyph);
        glEndList();
    }
    glPopClientAttrib();
}

BitmapFont::~BitmapFont()
{
    glDeleteLists(firstList, characters);
}

int BitmapFont::width(const std::string& text) const
{
    int out = 0;
    for (unsigned char c : text) {
        out += advance[c];
    }
    return out;
}

} // namespace kvo
