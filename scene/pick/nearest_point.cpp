#include "nearest_point.h"

#include <algorithm>
#include <cmath>

namespace kvo {

namespace {

constexpr unsigned int planeCount = 6;
constexpr unsigned int mostCorners = 32;

struct SpacePoint
{
    double x, y, z;
};

// Distance from a plane of the volume, negative outside.
double distanceFrom(unsigned int plane, const ClipPosition& p, double widening)
{
    const double coordinates[] = {p.x, p.y, p.z};
    const double coordinate = coordinates[plane / 2];
    return p.w * widening + (plane % 2 == 0 ? -coordinate : coordinate);
}

ClipPosition between(const ClipPosition& from, const ClipPosition& to, double t)
{
    return {from.x + t * (to.x - from.x), from.y + t * (to.y - from.y), from.z + t * (to.z - from.z),
            from.w + t * (to.w - from.w)};
}

// Cuts off what lies beyond one plane; returns the number of corners left.
unsigned int cutByPlane(ClipPosition* corners, unsigned int count, const double* distances)
{
    ClipPosition kept[mostCorners];
    unsigned int keptCount = 0;
    // A line has one edge, not two.
    const unsigned int edges = count <= 2 ? count - 1 : count;
    for (unsigned int k = 0; k < count && keptCount + 2 <= mostCorners; ++k) {
        const unsigned int next = (k + 1) % count;
        if (distances[k] >= 0) {
            kept[keptCount++] = corners[k];
        }
        if (k < edges && (distances[k] >= 0) != (distances[next] >= 0)) {
            kept[keptCount++] = between(corners[k], corners[next], distances[k] / (distances[k] - distances[next]));
        }
    }
    std::copy_n(kept, keptCount, corners);
    return keptCount;
}

// Corners of what the volume leaves of a point, line or triangle; returns their number.
unsigned int cutByVolume(ClipPosition* corners, unsigned int count, double widening)
{
    for (unsigned int plane = 0; plane < planeCount; ++plane) {
        double distances[mostCorners];
        unsigned int inside = 0;
        for (unsigned int k = 0; k < count; ++k) {
            distances[k] = distanceFrom(plane, corners[k], widening);
            inside += distances[k] >= 0;
        }
        if (inside == 0) {
            return 0;
        }
        if (inside < count) {
            count = cutByPlane(corners, count, distances);
        }
    }
    return count;
}

void addCornersInside(const SpacePoint* points, unsigned int count, const PolygonArea& area, NearestPoint& nearest)
{
    for (unsigned int k = 0; k < count; ++k) {
        if (area.contains({points[k].x, points[k].y})) {
            nearest.add(points[k].x, points[k].y, points[k].z);
        }
    }
}

double crossProduct(double ax, double ay, double bx, double by)
{
    return ax * by - ay * bx;
}

// Where an edge of the primitive crosses an edge of the outline.
void addCrossing(const SpacePoint& a, const SpacePoint& b, const PlaneEdge& edge, NearestPoint& nearest)
{
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double ex = edge.to.x - edge.from.x, ey = edge.to.y - edge.from.y;
    const double determinant = crossProduct(dx, dy, ex, ey);
    if (determinant == 0) {
        return;
    }
    const double t = crossProduct(edge.from.x - a.x, edge.from.y - a.y, ex, ey) / determinant;
    const double s = crossProduct(edge.from.x - a.x, edge.from.y - a.y, dx, dy) / determinant;
    if (t >= 0 && t <= 1 && s >= 0 && s <= 1) {
        nearest.add(a.x + t * dx, a.y + t * dy, a.z + t * (b.z - a.z));
    }
}

// The place on a triangle over a corner of the outline.
void addCornerOver(const SpacePoint& a, const SpacePoint& b, const SpacePoint& c, const PlanePoint& corner,
                   NearestPoint& nearest)
{
    const double area = crossProduct(b.x - a.x, b.y - a.y, c.x - a.x, c.y - a.y);
    if (area == 0) {
        return; // seen edge-on: its edges say everything
    }
    const double u = crossProduct(corner.x - a.x, corner.y - a.y, c.x - a.x, c.y - a.y) / area;
    const double v = crossProduct(b.x - a.x, b.y - a.y, corner.x - a.x, corner.y - a.y) / area;
    if (u >= 0 && v >= 0 && u + v <= 1) {
        nearest.add(corner.x, corner.y, a.z + u * (b.z - a.z) + v * (c.z - a.z));
    }
}

// A depth over a plane figure is least at one of the figure's corners: corners of the primitive inside the area,
// corners of the outline over the primitive, and crossings of their edges.
void addInsideArea(const SpacePoint* points, unsigned int count, const AreaNearby& nearby, NearestPoint& nearest)
{
    addCornersInside(points, count, *nearby.area, nearest);
    const unsigned int edgeCount = count <= 2 ? count - 1 : count;
    for (const PlaneEdge& edge : nearby.edges) {
        for (unsigned int k = 0; k < edgeCount; ++k) {
            addCrossing(points[k], points[(k + 1) % count], edge, nearest);
        }
        for (unsigned int k = 1; k + 1 < count; ++k) {
            addCornerOver(points[0], points[k], points[k + 1], edge.from, nearest);
        }
    }
}

} // namespace

void addNearestPoint(const ClipPosition* corners, unsigned int count, const AreaNearby& nearby, double slack,
                     NearestPoint& nearest)
{
    ClipPosition cut[mostCorners];
    std::copy_n(corners, count, cut);
    count = cutByVolume(cut, count, 1 + slack);
    SpacePoint points[mostCorners];
    for (unsigned int k = 0; k < count; ++k) {
        points[k] = {cut[k].x / cut[k].w, cut[k].y / cut[k].w, cut[k].z / cut[k].w};
    }
    if (count > 0 && nearby.area != nullptr) {
        addInsideArea(points, count, nearby, nearest);
        return;
    }
    for (unsigned int k = 0; k < count; ++k) {
        nearest.add(points[k].x, points[k].y, points[k].z);
    }
}

} // namespace kvo
