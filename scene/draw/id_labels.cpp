#include "id_labels.h"

#include <algorithm>
#include <cstdlib>

namespace kvo {

namespace {

constexpr int plate = 2; // pixels around the text

// Labels that are placed, by the cell that their middle is in.
class LabelGrid
{
public:
    LabelGrid(int pixelsAcross, int pixelsUp, int cellPixelsAcross, int cellPixelsUp)
        : cellWidth(cellPixelsAcross), cellHeight(cellPixelsUp), across(pixelsAcross / cellWidth + 1),
          up(pixelsUp / cellHeight + 1), cells(static_cast<std::size_t>(across) * static_cast<std::size_t>(up))
    {
    }
    // x, y: the middle; a cell is at least as large as any label with its free space, so that only neighbours can
    // touch.
    bool place(int x, int y, int width, int height)
    {
        const int cx = x / cellWidth, cy = y / cellHeight;
        for (int j = std::max(cy - 1, 0); j <= std::min(cy + 1, up - 1); ++j) {
            for (int i = std::max(cx - 1, 0); i <= std::min(cx + 1, across - 1); ++i) {
                for (const Placed& other : cellAt(i, j)) {
                    if (2 * std::abs(other.x - x) < other.width + width &&
                        2 * std::abs(other.y - y) < other.height + height) {
                        return false;
                    }
                }
            }
        }
        cellAt(cx, cy).push_back({x, y, width, height});
        return true;
    }

private:
    struct Placed
    {
        int x, y, width, height;
    };
    std::vector<Placed>& cellAt(int i, int j)
    {
        return cells[static_cast<std::size_t>(j) * static_cast<std::size_t>(across) + static_cast<std::size_t>(i)];
    }

    const int cellWidth, cellHeight, across, up;
    std::vector<std::vector<Placed>> cells;
};

} // namespace

std::vector<IdLabel> thinOut(std::vector<IdLabel> labels, const OverlayPainter& painter, int spacing)
{
    std::stable_sort(labels.begin(), labels.end(), [](const IdLabel& a, const IdLabel& b) { return a.rank < b.rank; });
    int widest = 1;
    for (const IdLabel& label : labels) {
        widest = std::max(widest, painter.widthOf(label.text));
    }
    const int height = painter.fontHeight() + 2 * plate;
    LabelGrid grid(painter.width(), painter.height(), widest + 2 * plate + spacing, height + spacing);
    std::vector<IdLabel> out;
    for (IdLabel& label : labels) {
        const int width = painter.widthOf(label.text) + 2 * plate;
        const bool inside = label.x >= width / 2 && label.x + width / 2 <= painter.width() && label.y >= height / 2 &&
                            label.y + height / 2 <= painter.height();
        if (inside && grid.place(label.x, label.y, width + spacing, height + spacing)) {
            out.push_back(std::move(label));
        }
    }
    return out;
}

void drawLabels(OverlayPainter& painter, const std::vector<IdLabel>& labels)
{
    const int fontHeight = painter.fontHeight();
    for (const IdLabel& label : labels) {
        const int width = painter.widthOf(label.text);
        const int left = label.x - width / 2, bottom = label.y - fontHeight / 2;
        painter.fill(left - plate, bottom - plate, width + 2 * plate, fontHeight + 2 * plate, painter.background());
        painter.write(left, bottom + fontHeight / 5, label.text, painter.ink());
    }
}

} // namespace kvo
