// Text in pictures, with smooth edges: the titles of contact sheets.
#ifndef KVO_HOST_TEXT_PAINTER_H
#define KVO_HOST_TEXT_PAINTER_H

#include <string>

#include "font.h"
#include "picture.h"

namespace kvo {

class TextPainter
{
public:
    // Needs no context. Throws FontError without the font.
    explicit TextPainter(int pixelHeight, const std::string& file = defaultFontFile());

    int width(const std::string& text); // pixels; text is UTF-8
    int lineHeight() const;

    // Draws one line over what is there. (x, y): left end and top of the line. What hangs over the edge is cut.
    void draw(Picture& picture, int x, int y, const std::string& text, Color color);

    // The text, or its beginning with an ellipsis, so that it is at most that wide.
    std::string shorten(const std::string& text, int maximumWidth);

private:
    Font font;
};

} // namespace kvo

#endif
