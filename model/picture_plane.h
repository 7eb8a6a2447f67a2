// What state and movements share. Private to model/.
#ifndef KVO_PICTURE_PLANE_H
#define KVO_PICTURE_PLANE_H

#include <algorithm>
#include <cmath>

#include <kvo/camera.h>

namespace kvo {

// Of a viewport, at least one pixel.
struct PictureSize
{
    explicit PictureSize(Viewport viewport) : width(std::max(viewport.width, 1)), height(std::max(viewport.height, 1))
    {
    }
    double width;
    double height;
};

// How much larger things look at a depth than at the target; not positive at and behind the eye.
inline double enlargement(const Camera& camera, double depth)
{
    const double d = camera.distance();
    if (!(d > 0)) {
        return 1;
    }
    return d + depth > 0 ? d / (d + depth) : 0;
}

inline bool isFinite(Pixel pixel)
{
    return std::isfinite(pixel.x) && std::isfinite(pixel.y);
}

// Whether the box has numbers, in order.
inline bool isBox(const Box& box)
{
    for (int axis = 0; axis < 3; ++axis) {
        if (!(std::isfinite(box.low[axis]) && std::isfinite(box.high[axis]) && box.low[axis] <= box.high[axis] &&
              std::isfinite(box.size(axis)))) {
            return false;
        }
    }
    return true;
}

} // namespace kvo

#endif
