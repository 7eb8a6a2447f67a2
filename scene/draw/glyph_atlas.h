// Characters of a font in one texture, each put there when it is first needed.
#ifndef KVO_SCENE_GLYPH_ATLAS_H
#define KVO_SCENE_GLYPH_ATLAS_H

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "font.h"
#include "gl_objects.h"

namespace kvo {

class GlyphAtlas
{
public:
    GlyphAtlas() = default;
    ~GlyphAtlas();
    GlyphAtlas(const GlyphAtlas&) = delete;
    GlyphAtlas& operator=(const GlyphAtlas&) = delete;

    // Null for none. Needs no current context: the texture changes when it is next bound.
    void setFont(std::unique_ptr<Font> newFont);
    Font* font() const { return usedFont.get(); }

    // Where a character of the font is: texels, from the glyph's upper left one. Its place stays while the font does.
    struct Place
    {
        int x = 0;
        int y = 0;
        int width = 0; // 0: nothing to draw, also where the texture has no room left
        int height = 0;
    };
    Place place(char32_t code);

    // To the active texture unit, with every character that has a place.
    void bind();

private:
    Place makeRoom(int width, int height);

    static constexpr int columns = 1024; // that every driver has
    std::unique_ptr<Font> usedFont;
    std::unordered_map<char32_t, Place> places;
    std::vector<std::uint8_t> texels; // rows of `columns`
    int rowX = 0, rowY = 0, rowHeight = 0;
    int mostRows = 0; // 0: not asked yet
    bool changed = true;
    GLuint texture = 0;
};

} // namespace kvo

#endif
