// Rectangles are cleared pieces of the window, text is bitmaps at window positions: neither passes through the
// matrices.
#include "overlay_painter.h"

#include <algorithm>

namespace kvo {

void FontWidths::measure(unsigned int fontBase)
{
    if (fontBase == measured) {
        return;
    }
    measured = fontBase;
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    glListBase(fontBase);
    for (int c = ' '; c < 256; ++c) {
        const GLubyte text = static_cast<GLubyte>(c);
        glWindowPos2i(0, 0);
        glCallLists(1, GL_UNSIGNED_BYTE, &text);
        float position[4] = {0, 0, 0, 0};
        glGetFloatv(GL_CURRENT_RASTER_POSITION, position);
        widths[c] = static_cast<int>(position[0] + 0.5f);
    }
    glPopAttrib();
}

int FontWidths::of(const std::string& text) const
{
    int out = 0;
    for (unsigned char c : text) {
        out += widths[c];
    }
    return out;
}

OverlayPainter::OverlayPainter(const int pixelViewport[4], unsigned int fontBase, FontWidths& fontWidths)
    : viewport(pixelViewport), font(fontBase), widths(fontWidths)
{
    float color[4];
    glGetFloatv(GL_COLOR_CLEAR_VALUE, color);
    back = {color[0], color[1], color[2]};
    widths.measure(fontBase);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glUseProgram(0);
    for (GLenum off : {GL_DEPTH_TEST, GL_LIGHTING, GL_BLEND, GL_FOG, GL_ALPHA_TEST, GL_STENCIL_TEST, GL_TEXTURE_2D}) {
        glDisable(off);
    }
    glDepthMask(GL_FALSE);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glListBase(font);
}

OverlayPainter::~OverlayPainter()
{
    glPopAttrib();
}

Rgb OverlayPainter::ink() const
{
    const bool dark = 0.3f * back.r + 0.59f * back.g + 0.11f * back.b < 0.5f;
    return dark ? Rgb{1, 1, 1} : Rgb{0, 0, 0};
}

void OverlayPainter::fill(int x, int y, int w, int h, const Rgb& color)
{
    const int right = std::min(x + w, viewport[2]), top = std::min(y + h, viewport[3]);
    x = std::max(x, 0);
    y = std::max(y, 0);
    if (right <= x || top <= y) {
        return;
    }
    glEnable(GL_SCISSOR_TEST);
    glScissor(viewport[0] + x, viewport[1] + y, right - x, top - y);
    glClearColor(color.r, color.g, color.b, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glScissor(viewport[0], viewport[1], viewport[2], viewport[3]); // of text
}

void OverlayPainter::write(int x, int y, const std::string& text, const Rgb& color)
{
    glEnable(GL_SCISSOR_TEST);
    glScissor(viewport[0], viewport[1], viewport[2], viewport[3]);
    glColor3f(color.r, color.g, color.b);
    glWindowPos2i(viewport[0] + x, viewport[1] + y); // takes the colour that is current now
    glCallLists(static_cast<GLsizei>(text.size()), GL_UNSIGNED_BYTE, text.data());
}

} // namespace kvo
