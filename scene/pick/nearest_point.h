// The point nearest to the viewer of what a primitive has inside a pick volume and, for polygons, inside their area.
// In double precision: places of hits, and hits on the outline of a polygon.
#ifndef KVO_SCENE_NEAREST_POINT_H
#define KVO_SCENE_NEAREST_POINT_H

#include <vector>

#include "polygon_area.h"

namespace kvo {

// Clip coordinates in double precision.
struct ClipPosition
{
    double x, y, z, w;
};

// After the division by w: -1..1 inside the volume, z from the near to the far plane.
struct NearestPoint
{
    bool found = false;
    double x = 0, y = 0, z = 0;

    void add(double pointX, double pointY, double pointZ)
    {
        if (!found || pointZ < z) {
            x = pointX;
            y = pointY;
            z = pointZ;
        }
        found = true;
    }
};

// A polygon's area and the edges of its outline that matter to what is looked at.
struct AreaNearby
{
    const PolygonArea* area; // null: the whole volume
    std::vector<PlaneEdge> edges;
};

// Keeps what is nearest among `nearest` and a point (count 1), line (2) or triangle (3) cut by the volume and the area.
// The volume is widened by the factor 1 + slack.
void addNearestPoint(const ClipPosition* corners, unsigned int count, const AreaNearby& nearby, double slack,
                     NearestPoint& nearest);

} // namespace kvo

#endif
