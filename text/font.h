// A font file at one size: its characters as bitmaps, and where they stand. Needs no OpenGL.
//
//   kvo::Font font(kvo::defaultFontFile(), 13);
//   for (char32_t code : kvo::codePoints(text)) {
//       const kvo::Glyph& glyph = font.glyph(code); // draw its coverage at pen + (left, top), then move the pen
//       pen += glyph.advance;
//   }
#ifndef KVO_TEXT_FONT_H
#define KVO_TEXT_FONT_H

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace kvo {

// One sentence that begins with the font's file.
class FontError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// DejaVu Sans Mono where distributions keep it, or what the environment variable KVO_FONT names.
std::string defaultFontFile();

// A bitmap in whole pixels about the pen, which stands on the base line.
struct Glyph
{
    int left = 0;                       // from the pen to the first column
    int top = 0;                        // from the base line up to the upper edge of the first row
    int width = 0;                      // of the bitmap; 0 for a blank
    int height = 0;                     // likewise
    int advance = 0;                    // from this pen to the next one
    std::vector<std::uint8_t> coverage; // row by row from the top, 255 where the character covers the whole pixel
};

class Font
{
public:
    // pixelHeight: nominal height, 4..256. Throws FontError where there is no such font.
    Font(const std::string& file, int pixelHeight);
    ~Font();
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    int pixelHeight() const;
    int ascent() const;     // pixels above the base line
    int lineHeight() const; // pixels from one base line to the next

    bool has(char32_t code) const;

    // With smooth edges. What the font does not have looks like U+FFFD, or '?', or a blank, whichever it has. Stays
    // valid and as it is while the font lives.
    const Glyph& glyph(char32_t code);

    // With a coverage of 0 or 255, for bitmaps of one bit a pixel. An unknown character is a blank as wide as ' '.
    Glyph sharpGlyph(char32_t code);

    // Pixels that the pen moves by; text is UTF-8 (utf8.h).
    int width(const std::string& text);

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace kvo

#endif
