// Characters are put beside each other in rows, as high as the highest of each row.
#include "glyph_atlas.h"

#include <algorithm>

namespace kvo {

namespace {

constexpr std::size_t fewestRows = 64; // of the texture

} // namespace

GlyphAtlas::~GlyphAtlas()
{
    if (texture) {
        glDeleteTextures(1, &texture);
    }
}

void GlyphAtlas::setFont(std::unique_ptr<Font> newFont)
{
    usedFont = std::move(newFont);
    places.clear();
    texels.clear();
    rowX = rowY = rowHeight = 0;
    changed = true;
}

GlyphAtlas::Place GlyphAtlas::makeRoom(int width, int height)
{
    if (mostRows == 0) {
        glGetIntegerv(GL_MAX_TEXTURE_SIZE, &mostRows);
    }
    const bool fits = rowX + width <= columns;
    const int x = fits ? rowX : 0, y = fits ? rowY : rowY + rowHeight;
    if (width > columns || y + height > mostRows) {
        return {};
    }
    rowHeight = fits ? std::max(rowHeight, height) : height;
    rowX = x + width;
    rowY = y;
    const std::size_t needed = static_cast<std::size_t>(columns) * static_cast<std::size_t>(rowY + rowHeight);
    texels.resize(std::max(texels.size(), needed));
    return {x, y, width, height};
}

GlyphAtlas::Place GlyphAtlas::place(char32_t code)
{
    const auto known = places.find(code);
    if (known != places.end()) {
        return known->second;
    }
    const Glyph& glyph = usedFont->glyph(code);
    const Place out = glyph.width > 0 ? makeRoom(glyph.width, glyph.height) : Place();
    for (int row = 0; row < out.height; ++row) {
        std::copy_n(glyph.coverage.begin() + std::ptrdiff_t(row) * out.width, out.width,
                    texels.begin() + std::ptrdiff_t(out.y + row) * columns + out.x);
    }
    places.emplace(code, out);
    changed = changed || out.width > 0;
    return out;
}

void GlyphAtlas::bind()
{
    if (!texture) {
        glGenTextures(1, &texture);
    }
    glBindTexture(GL_TEXTURE_2D, texture);
    if (!changed) {
        return;
    }
    // Rows for more characters, so that few of these make it larger.
    std::size_t rows = fewestRows;
    while (rows * columns < texels.size()) {
        rows *= 2;
    }
    rows = mostRows ? std::min(rows, static_cast<std::size_t>(mostRows)) : rows;
    texels.resize(rows * columns);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_R8, columns, static_cast<GLsizei>(rows), 0, GL_RED, GL_UNSIGNED_BYTE,
                 texels.data());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    changed = false;
}

} // namespace kvo
