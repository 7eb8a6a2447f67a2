// Glyphs blended onto pixels.
#include "text_painter.h"

#include "utf8.h"

namespace kvo {

namespace {

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

void blendGlyph(Picture& picture, int left, int top, const Glyph& glyph, Color color)
{
    for (int row = 0; row < glyph.height; ++row) {
        for (int column = 0; column < glyph.width; ++column) {
            const std::size_t pixel = static_cast<std::size_t>(row) * static_cast<std::size_t>(glyph.width) +
                                      static_cast<std::size_t>(column);
            blend(picture, left + column, top + row, color, glyph.coverage[pixel]);
        }
    }
}

} // namespace

TextPainter::TextPainter(int pixelHeight, const std::string& file) : font(file, pixelHeight) {}

int TextPainter::lineHeight() const
{
    return font.lineHeight();
}

int TextPainter::width(const std::string& text)
{
    return font.width(text);
}

void TextPainter::draw(Picture& picture, int x, int y, const std::string& text, Color color)
{
    const int baseLine = y + font.ascent();
    for (const char32_t code : codePoints(text)) {
        const Glyph& glyph = font.glyph(code);
        blendGlyph(picture, x + glyph.left, baseLine - glyph.top, glyph, color);
        x += glyph.advance;
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
