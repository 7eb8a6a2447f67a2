// The area inside an outline, in the coordinates of a pick volume: -1..1 across the rectangle around it.
#ifndef KVO_SCENE_POLYGON_AREA_H
#define KVO_SCENE_POLYGON_AREA_H

#include <array>
#include <cstdint>
#include <vector>

#include "pick_volume.h"
#include <kvo/pick.h>

namespace kvo {

struct PlanePoint
{
    double x;
    double y;
};

struct PlaneEdge
{
    PlanePoint from;
    PlanePoint to;
};

class PolygonArea
{
public:
    // region must be a polygon.
    explicit PolygonArea(const PickRegion& region);

    bool empty() const { return outlineEdges.empty(); }

    // Inside by the even-odd rule. Either answer for points on the outline.
    bool contains(const PlanePoint& point) const;

    // How the part of a rectangle inside -1..1 lies; Partly may also be the answer close to the outline. O(1).
    Overlap overlap(const PlanePoint& low, const PlanePoint& high) const;

    // The edges of the outline that may reach into a rectangle, each once, in place of what `edges` held.
    void edgesNear(const PlanePoint& low, const PlanePoint& high, std::vector<PlaneEdge>& edges) const;

private:
    static constexpr int cells = 256; // along either axis, of a grid over -1..1

    static int cellOf(double coordinate);
    void sortEdges();
    void fillRow(int row, std::vector<Overlap>& states) const;
    static void markEdge(const PlaneEdge& edge, std::vector<Overlap>& states);
    void countStates(const std::vector<Overlap>& states);

    // Cells of a state below and to the left of a corner of the grid.
    struct Counts
    {
        std::uint32_t inside;
        std::uint32_t partly;
    };

    std::vector<PlaneEdge> outlineEdges;
    std::array<std::vector<std::uint32_t>, cells> edgesOfRow; // positions in outlineEdges
    std::vector<Counts> counts;                               // (cells + 1) x (cells + 1), row after row
};

} // namespace kvo

#endif
