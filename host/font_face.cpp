// Finding and opening the font.
#include "font_face.h"

#include "bitmap_font.h"

#include <cstdlib>

#include <unistd.h>

namespace kvo {

std::string defaultFontFile()
{
    if (const char* chosen = std::getenv("KVO_FONT")) {
        return chosen;
    }
    static const char* const places[] = {"/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf",
                                         "/usr/share/fonts/dejavu-sans-mono-fonts/DejaVuSansMono.ttf",
                                         "/usr/share/fonts/dejavu/DejaVuSansMono.ttf",
                                         "/usr/share/fonts/TTF/DejaVuSansMono.ttf"};
    for (const char* place : places) {
        if (access(place, R_OK) == 0) {
            return place;
        }
    }
    return places[0]; // opening it gives the error that names it
}

FontFace::FontFace(int pixelHeight, const std::string& file)
{
    const char* problem = nullptr;
    if (FT_Init_FreeType(&library)) {
        problem = "FreeType cannot be started";
    } else if (FT_New_Face(library, file.c_str(), 0, &face)) {
        problem = "the font cannot be opened (Debian: package fonts-dejavu-core; the variable KVO_FONT names another)";
    } else if (FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(pixelHeight))) {
        problem = "the font has no such size";
    }
    if (!problem) {
        return;
    }
    FT_Done_FreeType(library); // its faces with it
    throw HostError(file + ": " + problem);
}

FontFace::~FontFace()
{
    FT_Done_Face(face);
    FT_Done_FreeType(library);
}

FT_GlyphSlot FontFace::render(unsigned long codePoint, bool mono)
{
    const FT_Int32 flags = FT_LOAD_RENDER | (mono ? FT_LOAD_TARGET_MONO : FT_LOAD_TARGET_NORMAL);
    if (!has(codePoint) || FT_Load_Char(face, codePoint, flags)) {
        return nullptr;
    }
    return face->glyph;
}

int FontFace::ascent() const
{
    return static_cast<int>((face->size->metrics.ascender + 63) >> 6);
}

int FontFace::lineHeight() const
{
    return static_cast<int>((face->size->metrics.height + 63) >> 6);
}

} // namespace kvo
