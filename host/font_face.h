// A FreeType face at one pixel size, scoped. Internal to host/.
#ifndef KVO_HOST_FONT_FACE_H
#define KVO_HOST_FONT_FACE_H

#include <string>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace kvo {

class FontFace
{
public:
    // Throws HostError, with the file's name, when there is no such font.
    FontFace(int pixelHeight, const std::string& file);
    ~FontFace();
    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;

    // Loads and renders one character into the face's glyph slot. mono: one bit a pixel, else 256 levels.
    // Null when the font has no glyph for it.
    FT_GlyphSlot render(unsigned long codePoint, bool mono);
    bool has(unsigned long codePoint) const { return FT_Get_Char_Index(face, codePoint) != 0; }

    int ascent() const;     // pixels above the base line
    int lineHeight() const; // pixels from one base line to the next

private:
    FT_Library library = nullptr;
    FT_Face face = nullptr;
};

} // namespace kvo

#endif
