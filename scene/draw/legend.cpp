#include "legend.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace kvo {

namespace {

constexpr int margin = 10; // pixels to the window's edge
constexpr int gap = 6;     // between a colour and its text
constexpr int barWidth = 16;
constexpr int barSteps = 5; // between numbers, where there is room
constexpr int smallestBar = 24;

int lineHeightOf(int fontHeight)
{
    return fontHeight + fontHeight / 3;
}

std::string number(float value, int digits)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.*g", digits, double(value == 0 ? 0 : value)); // no "-0"
    return text;
}

std::string titleOf(const Coloring& coloring)
{
    return coloring.unit.empty() ? coloring.title : coloring.title + " [" + coloring.unit + "]";
}

int widest(const OverlayPainter& painter, const std::vector<std::string>& texts)
{
    int out = 0;
    for (const std::string& text : texts) {
        out = std::max(out, painter.widthOf(text));
    }
    return out;
}

// Covers what is behind the legend. right: of the text.
void plate(OverlayPainter& painter, int left, int bottom, int right, int top)
{
    painter.fill(left - gap, bottom - gap, right - left + 2 * gap, top - bottom + 2 * gap, painter.background());
}

void frame(OverlayPainter& painter, int x, int y, int width, int height)
{
    painter.fill(x - 1, y - 1, width + 2, height + 2, painter.ink());
}

void drawBar(OverlayPainter& painter, const Coloring& coloring)
{
    const int fontHeight = painter.fontHeight();
    const int line = lineHeightOf(fontHeight);
    const int top = painter.height() - margin - 2 * line;
    const int height = std::min(top - margin - line, std::max(smallestBar, painter.height() / 2));
    if (height < smallestBar) {
        return;
    }
    const unsigned int steps = coloring.bands > 1 && static_cast<int>(coloring.bands) * line <= height
                                   ? coloring.bands
                                   : static_cast<unsigned int>(std::min(barSteps, std::max(1, height / (2 * line))));
    const std::vector<std::string> numbers = legendNumbers(coloring.low, coloring.high, steps);
    const std::string title = titleOf(coloring);
    const int left =
        painter.width() - margin - std::max(barWidth + gap + widest(painter, numbers), painter.widthOf(title));
    const int bottom = top - height;
    plate(painter, left, bottom - fontHeight / 2, painter.width() - margin, painter.height() - margin);
    frame(painter, left, bottom, barWidth, height);
    for (int y = 0; y < height; ++y) {
        const float t = (static_cast<float>(y) + 0.5f) / static_cast<float>(height);
        painter.fill(left, bottom + y, barWidth, 1,
                     coloring.colorOf(coloring.low + t * (coloring.high - coloring.low)));
    }
    for (unsigned int k = 0; k <= steps; ++k) {
        const int y = bottom + height * static_cast<int>(k) / static_cast<int>(steps) - fontHeight / 3;
        painter.write(left + barWidth + gap, y, numbers[k], painter.ink());
    }
    painter.write(left, top + line - fontHeight / 3, title, painter.ink());
}

void drawList(OverlayPainter& painter, const Coloring& coloring)
{
    const int fontHeight = painter.fontHeight();
    const int line = lineHeightOf(fontHeight);
    const int rows = (painter.height() - 2 * margin) / line - 1; // below the title
    if (rows < 1) {
        return;
    }
    std::size_t shown = std::min<std::size_t>(coloring.categories.size(), static_cast<std::size_t>(rows));
    std::string rest;
    if (shown < coloring.categories.size()) {
        --shown;
        rest = "and " + std::to_string(coloring.categories.size() - shown) + " more";
    }
    std::vector<std::string> names = {rest};
    for (std::size_t k = 0; k < shown; ++k) {
        names.push_back(coloring.categories[k].name);
    }
    const int box = fontHeight - 2;
    const int width = std::max(box + gap + widest(painter, names), painter.widthOf(coloring.title));
    const int left = std::max(margin, painter.width() - margin - width);
    int y = painter.height() - margin - fontHeight;
    const int lines = static_cast<int>(shown) + (rest.empty() ? 0 : 1);
    plate(painter, left, y - lines * line, left + width, painter.height() - margin);
    painter.write(left, y, coloring.title, painter.ink());
    for (std::size_t k = 0; k < shown; ++k) {
        y -= line;
        frame(painter, left + 1, y - 1, box - 2, box - 2);
        painter.fill(left + 1, y - 1, box - 2, box - 2, coloring.categories[k].color);
        painter.write(left + box + gap, y, coloring.categories[k].name, painter.ink());
    }
    if (!rest.empty()) {
        painter.write(left + box + gap, y - line, rest, painter.ink());
    }
}

} // namespace

std::vector<std::string> legendNumbers(float low, float high, unsigned int steps)
{
    std::vector<std::string> out;
    for (int digits = 3; digits <= 9; ++digits) {
        out.clear();
        bool different = true;
        for (unsigned int k = 0; k <= steps; ++k) {
            const float t = static_cast<float>(k) / static_cast<float>(steps);
            out.push_back(number(k == steps ? high : low + t * (high - low), digits));
            different = different && (k == 0 || out[k] != out[k - 1]);
        }
        if (different) {
            break;
        }
    }
    return out;
}

void drawLegend(OverlayPainter& painter, const Coloring& coloring)
{
    if (coloring.byValue()) {
        drawBar(painter, coloring);
    } else if (coloring.byCategory()) {
        drawList(painter, coloring);
    }
}

} // namespace kvo
