// Glyphs by FreeType.
#include "font.h"

#include <cstdlib>
#include <unordered_map>

#include <ft2build.h>
#include <unistd.h>
#include FT_FREETYPE_H

#include "utf8.h"

namespace kvo {

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr int smallest = 4, largest = 256; // pixels

// A row of FreeType's, which may run downwards or upwards, as coverage. Other formats (coloured pictures) stay empty.
void copyRow(const FT_Bitmap& bitmap, unsigned int row, std::uint8_t* to)
{
    const unsigned char* from = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
    for (unsigned int k = 0; k < bitmap.width; ++k) {
        if (bitmap.pixel_mode == FT_PIXEL_MODE_GRAY) {
            to[k] = from[k];
        } else if (bitmap.pixel_mode == FT_PIXEL_MODE_MONO) {
            to[k] = (from[k / 8] >> (7 - k % 8)) & 1 ? 255 : 0;
        }
    }
}

Glyph copyOf(FT_GlyphSlot slot)
{
    const FT_Bitmap& bitmap = slot->bitmap;
    Glyph out;
    out.left = slot->bitmap_left;
    out.top = slot->bitmap_top;
    out.width = static_cast<int>(bitmap.width);
    out.height = static_cast<int>(bitmap.rows);
    out.advance = static_cast<int>((slot->advance.x + 32) >> 6);
    out.coverage.resize(static_cast<std::size_t>(bitmap.width) * bitmap.rows);
    for (unsigned int row = 0; bitmap.width > 0 && row < bitmap.rows; ++row) {
        copyRow(bitmap, row, &out.coverage[static_cast<std::size_t>(row) * bitmap.width]);
    }
    return out;
}

int wholePixels(FT_Pos length)
{
    return static_cast<int>((length + 63) >> 6);
}

} // namespace

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

struct Font::Impl
{
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    int height = 0;
    std::unordered_map<char32_t, Glyph> smooth;

    ~Impl() { FT_Done_FreeType(library); } // its faces with it

    // What is wrong, or null.
    const char* open(const std::string& file)
    {
        if (FT_Init_FreeType(&library)) {
            return "FreeType cannot be started";
        }
        if (FT_New_Face(library, file.c_str(), 0, &face)) {
            return "the font cannot be opened (Debian: package fonts-dejavu-core; the variable KVO_FONT names another)";
        }
        if (FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(height))) {
            return "the font has no such size";
        }
        return nullptr;
    }

    bool has(char32_t code) const { return FT_Get_Char_Index(face, code) != 0; }

    Glyph render(char32_t code, FT_Int32 target)
    {
        return has(code) && !FT_Load_Char(face, code, FT_LOAD_RENDER | target) ? copyOf(face->glyph) : blank();
    }

    Glyph blank()
    {
        Glyph out;
        out.advance = has(U' ') && !FT_Load_Char(face, U' ', FT_LOAD_DEFAULT)
                          ? static_cast<int>((face->glyph->advance.x + 32) >> 6)
                          : height / 2;
        return out;
    }
};

Font::Font(const std::string& file, int pixelHeight) : impl(std::make_unique<Impl>())
{
    if (pixelHeight < smallest || pixelHeight > largest) {
        throw FontError(file + ": a font cannot be " + std::to_string(pixelHeight) + " pixels high");
    }
    impl->height = pixelHeight;
    if (const char* problem = impl->open(file)) {
        throw FontError(file + ": " + problem);
    }
}

Font::~Font() = default;

int Font::pixelHeight() const
{
    return impl->height;
}

int Font::ascent() const
{
    return wholePixels(impl->face->size->metrics.ascender);
}

int Font::lineHeight() const
{
    return wholePixels(impl->face->size->metrics.height);
}

bool Font::has(char32_t code) const
{
    return impl->has(code);
}

const Glyph& Font::glyph(char32_t code)
{
    const auto known = impl->smooth.find(code);
    if (known != impl->smooth.end()) {
        return known->second;
    }
    char32_t shown = code;
    for (const char32_t other : {replacement, U'?'}) {
        shown = has(shown) ? shown : other;
    }
    return impl->smooth.emplace(code, impl->render(shown, FT_LOAD_TARGET_NORMAL)).first->second;
}

Glyph Font::sharpGlyph(char32_t code)
{
    return impl->render(code, FT_LOAD_TARGET_MONO);
}

int Font::width(const std::string& text)
{
    int out = 0;
    for (const char32_t code : codePoints(text)) {
        out += glyph(code).advance;
    }
    return out;
}

} // namespace kvo
