#include "polygon_area.h"

#include <algorithm>
#include <cmath>

namespace kvo {

namespace {

// The x at which an edge crosses a horizontal line that it does cross.
double crossingAt(const PlaneEdge& edge, double y)
{
    return edge.from.x + (y - edge.from.y) / (edge.to.y - edge.from.y) * (edge.to.x - edge.from.x);
}

bool crosses(const PlaneEdge& edge, double y)
{
    return (edge.from.y > y) != (edge.to.y > y);
}

bool allFinite(const std::vector<WindowPosition>& points)
{
    return std::all_of(points.begin(), points.end(),
                       [](const WindowPosition& p) { return std::isfinite(p.x) && std::isfinite(p.y); });
}

} // namespace

PolygonArea::PolygonArea(const PickRegion& region)
{
    const std::vector<WindowPosition>& outline = region.outline;
    if (outline.size() < 3 || !allFinite(outline)) {
        return;
    }
    const auto placed = [&](const WindowPosition& p) {
        return PlanePoint{2 * (p.x - region.x) / region.width, 2 * (p.y - region.y) / region.height};
    };
    for (std::size_t k = 0; k < outline.size(); ++k) {
        outlineEdges.push_back({placed(outline[k]), placed(outline[(k + 1) % outline.size()])});
    }
    sortEdges();
    std::vector<Overlap> states(std::size_t{cells} * cells, Overlap::Outside);
    for (int row = 0; row < cells; ++row) {
        fillRow(row, states);
    }
    for (const PlaneEdge& edge : outlineEdges) {
        markEdge(edge, states);
    }
    countStates(states);
}

void PolygonArea::sortEdges()
{
    for (std::uint32_t k = 0; k < outlineEdges.size(); ++k) {
        const PlaneEdge& edge = outlineEdges[k];
        const auto [low, high] = std::minmax(edge.from.y, edge.to.y);
        for (int row = cellOf(low); row <= cellOf(high); ++row) {
            edgesOfRow[static_cast<std::size_t>(row)].push_back(k);
        }
    }
}

// What lies beyond the grid is reckoned to its rim.
int PolygonArea::cellOf(double coordinate)
{
    const double cell = std::floor((coordinate + 1) / 2 * cells);
    return !(cell > 0) ? 0 : cell < cells - 1 ? static_cast<int>(cell) : cells - 1;
}

// Every cell in the row by whether its middle is inside; right for those that no edge enters.
void PolygonArea::fillRow(int row, std::vector<Overlap>& states) const
{
    const double y = (2 * row + 1.0) / cells - 1;
    std::vector<double> crossings;
    for (std::uint32_t k : edgesOfRow[static_cast<std::size_t>(row)]) {
        if (crosses(outlineEdges[k], y)) {
            crossings.push_back(crossingAt(outlineEdges[k], y));
        }
    }
    std::sort(crossings.begin(), crossings.end());
    std::size_t passed = 0;
    for (int column = 0; column < cells; ++column) {
        const double x = (2 * column + 1.0) / cells - 1;
        while (passed < crossings.size() && crossings[passed] <= x) {
            ++passed;
        }
        if (passed % 2 == 1) {
            states[static_cast<std::size_t>(row * cells + column)] = Overlap::Inside;
        }
    }
}

// The cells that an edge enters, one more on either side in each row to be safe from rounding.
void PolygonArea::markEdge(const PlaneEdge& edge, std::vector<Overlap>& states)
{
    const auto [low, high] = std::minmax(edge.from.y, edge.to.y);
    const int first = std::max(0, cellOf(low) - 1), last = std::min(cells - 1, cellOf(high) + 1);
    for (int row = first; row <= last; ++row) {
        double from = edge.from.x, to = edge.to.x;
        if (high > low) {
            const double bottom = std::clamp((2.0 * row) / cells - 1, low, high);
            const double top = std::clamp((2.0 * row + 2) / cells - 1, low, high);
            from = crossingAt(edge, bottom);
            to = crossingAt(edge, top);
        }
        const int left = std::max(0, cellOf(std::min(from, to)) - 1);
        const int right = std::min(cells - 1, cellOf(std::max(from, to)) + 1);
        std::fill(states.begin() + row * cells + left, states.begin() + row * cells + right + 1, Overlap::Partly);
    }
}

void PolygonArea::countStates(const std::vector<Overlap>& states)
{
    constexpr std::size_t width = cells + 1;
    counts.assign(width * width, {0, 0});
    for (std::size_t row = 0; row < cells; ++row) {
        Counts sum = {0, 0};
        for (std::size_t column = 0; column < cells; ++column) {
            const Overlap state = states[row * cells + column];
            sum.inside += state == Overlap::Inside;
            sum.partly += state == Overlap::Partly;
            const Counts& below = counts[row * width + column + 1];
            counts[(row + 1) * width + column + 1] = {below.inside + sum.inside, below.partly + sum.partly};
        }
    }
}

bool PolygonArea::contains(const PlanePoint& point) const
{
    bool inside = false;
    for (std::uint32_t k : edgesOfRow[static_cast<std::size_t>(cellOf(point.y))]) {
        const PlaneEdge& edge = outlineEdges[k];
        inside ^= crosses(edge, point.y) && point.x < crossingAt(edge, point.y);
    }
    return inside;
}

Overlap PolygonArea::overlap(const PlanePoint& low, const PlanePoint& high) const
{
    if (!(low.x <= 1 && low.y <= 1 && high.x >= -1 && high.y >= -1)) {
        return Overlap::Outside;
    }
    constexpr std::size_t width = cells + 1;
    const auto left = static_cast<std::size_t>(cellOf(low.x)), right = static_cast<std::size_t>(cellOf(high.x)) + 1;
    const auto bottom = static_cast<std::size_t>(cellOf(low.y)), top = static_cast<std::size_t>(cellOf(high.y)) + 1;
    const Counts &a = counts[bottom * width + left], &b = counts[bottom * width + right];
    const Counts &c = counts[top * width + left], &d = counts[top * width + right];
    const std::size_t inside = d.inside - b.inside - c.inside + a.inside;
    const std::size_t partly = d.partly - b.partly - c.partly + a.partly;
    if (inside == (right - left) * (top - bottom)) {
        return Overlap::Inside;
    }
    return inside + partly == 0 ? Overlap::Outside : Overlap::Partly;
}

void PolygonArea::edgesNear(const PlanePoint& low, const PlanePoint& high, std::vector<PlaneEdge>& edges) const
{
    edges.clear();
    const int firstRow = cellOf(low.y), lastRow = cellOf(high.y);
    for (int row = firstRow; row <= lastRow; ++row) {
        for (std::uint32_t k : edgesOfRow[static_cast<std::size_t>(row)]) {
            const PlaneEdge& edge = outlineEdges[k];
            const bool seen = row > firstRow && cellOf(std::min(edge.from.y, edge.to.y)) < row;
            if (!seen && std::max(edge.from.x, edge.to.x) >= low.x && std::min(edge.from.x, edge.to.x) <= high.x) {
                edges.push_back(edge);
            }
        }
    }
}

} // namespace kvo
