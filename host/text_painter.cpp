// Text by FreeType, blended onto pixels.
#include "text_painter.h"

#include <vector>

#include "font_face.h"

namespace kvo {

namespace {

const unsigned long replacement = 0xFFFD;

// One character of UTF-8 from at on; a byte that cannot be read as such counts as one replacement character.
unsigned long nextCodePoint(const std::string& text, std::size_t& at)
{
    const auto lead = static_cast<unsigned char>(text[at++]);
    if (lead < 0x80) {
        return lead;
    }
    const int following = lead >= 0xF0 && lead < 0xF8   ? 3
                          : lead >= 0xE0 && lead < 0xF0 ? 2
                                                        : lead >= 0xC0 && lead < 0xE0;
    if (following == 0 || at + following > text.size()) {
        return replacement;
    }
    unsigned long code = lead & (0x3Fu >> following);
    for (int k = 0; k < following; ++k) {
        const auto byte = static_cast<unsigned char>(text[at + k]);
        if ((byte & 0xC0) != 0x80) {
            return replacement;
        }
        code = code << 6 | (byte & 0x3F);
    }
    at += following;
    return code;
}

std::vector<unsigned long> codePoints(const std::string& text)
{
    std::vector<unsigned long> out;
    for (std::size_t at = 0; at < text.size();) {
        out.push_back(nextCodePoint(text, at));
    }
    return out;
}

std::uint8_t mix(std::uint8_t below, std::uint8_t above, int coverage)
{
    return static_cast<std::uint8_t>((below * (255 - coverage) + above * coverage + 127) / 255);
}

void blend(Picture& picture, int x, int y, Color color, int coverage)
{
    if (x < 0 || y < 0 || x >= picture.width || y >= picture.height || coverage == 0) {
        return;
    }
    const Color below = picture.at(x, y);
    picture.set(x, y,
                {mix(below.r, color.r, coverage), mix(below.g, color.g, coverage), mix(below.b, color.b, coverage),
                 mix(below.a, 255, coverage)});
}

void blendGlyph(Picture& picture, int left, int top, const FT_Bitmap& bitmap, Color color)
{
    for (unsigned int row = 0; row < bitmap.rows; ++row) {
        const unsigned char* levels = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
        for (unsigned int column = 0; column < bitmap.width; ++column) {
            blend(picture, left + static_cast<int>(column), top + static_cast<int>(row), color, levels[column]);
        }
    }
}

} // namespace

struct TextPainter::Impl
{
    FontFace face;

    FT_GlyphSlot glyph(unsigned long code)
    {
        FT_GlyphSlot found = face.render(code, false);
        return found ? found : face.render('?', false);
    }
};

TextPainter::TextPainter(int pixelHeight, const std::string& file) : impl(new Impl{{pixelHeight, file}}) {}

TextPainter::~TextPainter() = default;

int TextPainter::lineHeight() const
{
    return impl->face.lineHeight();
}

int TextPainter::width(const std::string& text)
{
    long out = 0;
    for (unsigned long code : codePoints(text)) {
        if (FT_GlyphSlot glyph = impl->glyph(code)) {
            out += glyph->advance.x;
        }
    }
    return static_cast<int>((out + 63) >> 6);
}

void TextPainter::draw(Picture& picture, int x, int y, const std::string& text, Color color)
{
    const int baseLine = y + impl->face.ascent();
    long pen = 64L * x; // in 64ths of a pixel
    for (unsigned long code : codePoints(text)) {
        FT_GlyphSlot glyph = impl->glyph(code);
        if (!glyph) {
            continue;
        }
        blendGlyph(picture, static_cast<int>(pen >> 6) + glyph->bitmap_left, baseLine - glyph->bitmap_top,
                   glyph->bitmap, color);
        pen += glyph->advance.x;
    }
}

std::string TextPainter::shorten(const std::string& text, int maximumWidth)
{
    static const char* const ellipsis = "\xE2\x80\xA6";
    if (width(text) <= maximumWidth) {
        return text;
    }
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t from = at;
        nextCodePoint(text, at);
        const std::string longer = out + text.substr(from, at - from);
        if (width(longer + ellipsis) > maximumWidth) {
            break;
        }
        out = longer;
    }
    return out + ellipsis;
}

} // namespace kvo
