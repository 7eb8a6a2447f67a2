// Rectangles and text in window pixels over a finished frame, without matrices, programs or depth.
#ifndef KVO_SCENE_OVERLAY_PAINTER_H
#define KVO_SCENE_OVERLAY_PAINTER_H

#include <string>
#include <vector>

#include "coloring.h"
#include "gl_objects.h"

namespace kvo {

// Widths of a bitmap font's characters (its display lists move the raster position), measured once.
class FontWidths
{
public:
    // fontBase: the list of character c is fontBase + c.
    void measure(unsigned int fontBase);
    int of(const std::string& text) const;

private:
    unsigned int measured = 0;
    int widths[256] = {};
};

// While it lives, OpenGL's state is its own; afterwards it is what it was.
class OverlayPainter
{
public:
    OverlayPainter(const int viewport[4], unsigned int fontBase, FontWidths& widths);
    ~OverlayPainter();
    OverlayPainter(const OverlayPainter&) = delete;
    OverlayPainter& operator=(const OverlayPainter&) = delete;

    // Pixels from the lower left corner of the viewport, y upwards; what lies outside is not drawn.
    void fill(int x, int y, int width, int height, const Rgb& color);
    // x: left end, y: base line.
    void write(int x, int y, const std::string& text, const Rgb& color);
    int widthOf(const std::string& text) const { return widths.of(text); }

    int width() const { return viewport[2]; }
    int height() const { return viewport[3]; }
    Rgb background() const { return back; }
    Rgb ink() const; // black or white, whichever stands out from the background

private:
    const int* const viewport;
    const unsigned int font;
    FontWidths& widths;
    Rgb back;
};

} // namespace kvo

#endif
