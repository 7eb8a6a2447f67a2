// Glyphs by FreeType, one bit a pixel, compiled into display lists.
#include "bitmap_font.h"

#include <cstring>
#include <vector>

#include <GL/gl.h>

#include "font_face.h"

namespace kvo {

namespace {

// FreeType's rows run downwards with any pitch, OpenGL's upwards, here without padding between them.
std::vector<GLubyte> bottomUp(const FT_Bitmap& bitmap)
{
    const std::size_t rowBytes = (bitmap.width + 7) / 8;
    std::vector<GLubyte> out(rowBytes * bitmap.rows);
    for (unsigned int row = 0; row < bitmap.rows; ++row) {
        const unsigned char* from = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
        std::memcpy(&out[rowBytes * (bitmap.rows - 1 - row)], from, rowBytes);
    }
    return out;
}

int advanceOf(FT_GlyphSlot glyph)
{
    return static_cast<int>((glyph->advance.x + 32) >> 6);
}

// Moves the raster position and draws nothing. One clear pixel: Mesa takes an empty bitmap in a list for an allocation
// that failed.
void compileBlank(int advance)
{
    const GLubyte clear = 0;
    glBitmap(1, 1, 0, 0, static_cast<GLfloat>(advance), 0, &clear);
}

void compileGlyph(FT_GlyphSlot glyph)
{
    const FT_Bitmap& bitmap = glyph->bitmap;
    if (bitmap.rows == 0 || bitmap.width == 0) {
        return compileBlank(advanceOf(glyph));
    }
    const auto down = static_cast<GLfloat>(static_cast<int>(bitmap.rows) - glyph->bitmap_top);
    glBitmap(static_cast<GLsizei>(bitmap.width), static_cast<GLsizei>(bitmap.rows),
             static_cast<GLfloat>(-glyph->bitmap_left), down, static_cast<GLfloat>(advanceOf(glyph)), 0,
             bottomUp(bitmap).data());
}

} // namespace

BitmapFont::BitmapFont(int pixelHeight, const std::string& file)
{
    if (pixelHeight < 4 || pixelHeight > 256) {
        throw HostError("a font cannot be " + std::to_string(pixelHeight) + " pixels high");
    }
    FontFace face(pixelHeight, file);
    above = face.ascent();
    spacing = face.lineHeight();
    FT_GlyphSlot blank = face.render(' ', true);
    const int blankAdvance = blank ? advanceOf(blank) : pixelHeight / 2;
    firstList = glGenLists(characters);
    if (firstList == 0) {
        throw HostError("OpenGL gives no display lists for the font");
    }

    // glBitmap reads its bits when it is compiled: the unpacking state of that moment counts.
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    glPixelStorei(GL_UNPACK_SKIP_ROWS, 0);
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, 0);
    glPixelStorei(GL_UNPACK_LSB_FIRST, GL_FALSE);
    for (int c = 0; c < characters; ++c) {
        FT_GlyphSlot glyph = face.render(static_cast<unsigned long>(c), true);
        glNewList(firstList + c, GL_COMPILE);
        advance[c] = glyph ? advanceOf(glyph) : blankAdvance;
        if (glyph) {
            compileGlyph(glyph);
        } else {
            compileBlank(blankAdvance);
        }
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
