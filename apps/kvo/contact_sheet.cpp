// Laying out and titling the views.
#include "contact_sheet.h"

#include <algorithm>

#include "program_error.h"
#include "text_painter.h"
#include "vocabulary.h"

namespace kvo {

namespace {

const int columns = 4;
const int rows = 2;
const int titleHeight = 26;
const int titleFont = 15;
const int textFont = 13;
const int gap = 8; // around the cells and between them
const int smallestView = 40;

// Dark on light backgrounds, light on dark ones.
Color inkFor(Color background)
{
    const int light = (background.r * 3 + background.g * 6 + background.b) / 10;
    return light > 127 ? Color{30, 34, 40, 255} : Color{225, 229, 235, 255};
}

// What separates the cells: the background, a little towards the ink.
Color frameFor(Color background)
{
    const Color ink = inkFor(background);
    const auto towards = [](int from, int to) { return static_cast<std::uint8_t>(from + (to - from) / 7); };
    return {towards(background.r, ink.r), towards(background.g, ink.g), towards(background.b, ink.b), 255};
}

} // namespace

ContactSheet::ContactSheet(int w, int h, Color b) : width(w), height(h), background(b)
{
    if (viewWidth() < smallestView || viewHeight() < smallestView) {
        throw ProgramError("a contact sheet of " + std::to_string(w) + "x" + std::to_string(h) +
                           " is too small for its views");
    }
    try {
        title = std::make_unique<TextPainter>(titleFont);
        text = std::make_unique<TextPainter>(textFont);
    } catch (const FontError& error) {
        problem = error.what();
    }
}

ContactSheet::~ContactSheet() = default;

int ContactSheet::viewWidth() const
{
    return (width - gap * (columns + 1)) / columns;
}

int ContactSheet::viewHeight() const
{
    return (height - gap * (rows + 1)) / rows - titleHeight;
}

Picture ContactSheet::compose(const std::function<Picture(std::size_t)>& view,
                              const std::vector<std::string>& description) const
{
    Picture sheet(width, height, frameFor(background));
    const Color ink = inkFor(background);
    const std::vector<NamedView>& views = standardViews();
    for (int cell = 0; cell < columns * rows; ++cell) {
        const int x = gap + cell % columns * (viewWidth() + gap);
        const int y = gap + cell / columns * (viewHeight() + titleHeight + gap);
        const bool isView = static_cast<std::size_t>(cell) < views.size();
        const std::string heading = isView ? views[cell].title : description.empty() ? "" : description[0];
        if (problem.empty()) {
            const int titleTop = y + (titleHeight - title->lineHeight()) / 2;
            title->draw(sheet, x + gap / 2, titleTop, title->shorten(heading, viewWidth() - gap), ink);
        }
        if (isView) {
            sheet.paste(view(cell), x, y + titleHeight);
            continue;
        }
        sheet.paste(Picture(viewWidth(), viewHeight(), background), x, y + titleHeight);
        for (std::size_t line = 1; problem.empty() && line < description.size(); ++line) {
            const int top = y + titleHeight + gap + static_cast<int>(line - 1) * (text->lineHeight() + 3);
            if (top + text->lineHeight() <= y + titleHeight + viewHeight()) {
                text->draw(sheet, x + gap, top, text->shorten(description[line], viewWidth() - 2 * gap), ink);
            }
        }
    }
    return sheet;
}

} // namespace kvo
