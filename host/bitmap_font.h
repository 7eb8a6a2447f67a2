// A bitmap font of the drawing library's hosts as OpenGL display lists: the list of character c is base() + c, for c =
// 0..255 (Latin-1).
//
//   kvo::BitmapFont font(13);
//   env.loadAndInitGL(font.base(), false, nullptr);
//
// Each list draws its glyph with its left end of the base line at the raster position, in the colour of the raster
// position, and moves the raster position to the next character. Characters that the font does not have draw nothing
// and move on by a blank.
#ifndef KVO_HOST_BITMAP_FONT_H
#define KVO_HOST_BITMAP_FONT_H

#include <string>

#include "font.h"

namespace kvo {

class BitmapFont
{
public:
    // Needs a current context. pixelHeight: nominal height of the font, 4..256. Throws FontError without the font.
    explicit BitmapFont(int pixelHeight = 13, const std::string& file = defaultFontFile());
    ~BitmapFont(); // deletes the lists; the same context must be current
    BitmapFont(const BitmapFont&) = delete;
    BitmapFont& operator=(const BitmapFont&) = delete;

    unsigned int base() const { return firstList; }
    int ascent() const { return above; }       // pixels above the base line
    int lineHeight() const { return spacing; } // pixels from one base line to the next

    // How far drawing the text (Latin-1 bytes) moves the raster position, in pixels.
    int width(const std::string& text) const;

private:
    static constexpr int characters = 256;
    unsigned int firstList = 0;
    int above = 0;
    int spacing = 0;
    int advance[characters];
};

} // namespace kvo

#endif
