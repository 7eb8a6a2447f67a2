// Rectangles, lines and text in window pixels over a finished frame: collected, then drawn in one call.
#ifndef KVO_SCENE_OVERLAY_PAINTER_H
#define KVO_SCENE_OVERLAY_PAINTER_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "gl_objects.h"
#include "glyph_atlas.h"
#include <kvo/coloring.h>
#include <kvo/scene_view.h>

namespace kvo {

class OverlayPainter
{
public:
    // Null for none: then texts are nothing, and 0 pixels wide. Needs no current context.
    void setFont(std::unique_ptr<Font> font) { glyphs.setFont(std::move(font)); }
    bool hasFont() const { return glyphs.font() != nullptr; }
    int fontHeight() const { return hasFont() ? glyphs.font()->pixelHeight() : 0; } // its nominal one, pixels

    // Nothing is collected yet, for this viewport.
    void begin(const int pixelViewport[4]);

    // Pixels from the lower left corner of the viewport, y upwards; what lies outside is not drawn. Later things lie
    // over earlier ones.
    void fill(int x, int y, int width, int height, const Rgb& color);
    // With round, smooth ends; a pixel's middle is at n + 0.5.
    void line(double fromX, double fromY, double toX, double toY, double width, const Rgb& color);
    // x: left end, y: base line. UTF-8.
    void write(int x, int y, const std::string& text, const Rgb& color);
    // The middle of the letter's bitmap is as near to (x, y) as whole pixels allow.
    void writeLetter(double x, double y, char32_t letter, const Rgb& color);
    int widthOf(const std::string& text) const { return hasFont() ? glyphs.font()->width(text) : 0; }

    // What was collected, into the bound framebuffer. OpenGL's state stays as it is, or as the host has promised.
    void draw(HostState host = HostState::Restore);

    int width() const { return viewport[2]; }
    int height() const { return viewport[3]; }
    Rgb background() const; // the clear colour
    Rgb ink() const;        // black or white, whichever stands out from the background

private:
    struct Vertex
    {
        float x, y;           // pixels of the viewport
        float placeX, placeY; // of a glyph: texels; else pixels along and across from the middle of a line
        float reach, radius;  // of a line: half its length, half its width; reach is below 0 for glyphs
        std::uint8_t color[4];
    };
    void add(const Vertex corners[4]); // in the order of a strip
    void addGlyph(int left, int top, const GlyphAtlas::Place& place, const Rgb& color);
    void drawVertices();

    int viewport[4] = {0, 0, 0, 0};
    mutable std::optional<Rgb> back; // once it was asked for
    std::vector<Vertex> vertices;    // of triangles
    GlyphAtlas glyphs;
    GlBuffer buffer;
    GlVertexArray array;
    std::unique_ptr<GlProgram> program;
};

} // namespace kvo

#endif
