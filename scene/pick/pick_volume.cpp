#include "pick_volume.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kvo {

namespace {

constexpr unsigned int planeCount = 6;
// A triangle cut by every plane has nine; rounding can make it concave and add some.
constexpr unsigned int mostCorners = 32;

// As OpenGL multiplies: left times right, in single precision, sums from the first column to the last.
void multiply(const float* left, const float* right, float* product)
{
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            const float* r = right + 4 * column;
            product[4 * column + row] =
                left[row] * r[0] + left[4 + row] * r[1] + left[8 + row] * r[2] + left[12 + row] * r[3];
        }
    }
}

// The enlargement of the region to the whole window: a translation, then a scale, each rounded to single precision.
void pickMatrix(const PickRegion& region, const int* viewport, float* matrix)
{
    const double width = region.width, height = region.height;
    std::fill_n(matrix, 16, 0.0f);
    matrix[0] = static_cast<float>(viewport[2] / width);
    matrix[5] = static_cast<float>(viewport[3] / height);
    matrix[10] = matrix[15] = 1;
    matrix[12] = static_cast<float>((viewport[2] - 2 * (region.x - static_cast<double>(viewport[0]))) / width);
    matrix[13] = static_cast<float>((viewport[3] - 2 * (region.y - static_cast<double>(viewport[1]))) / height);
}

// Distance from a clip plane, negative outside, in the order of the outcode bits.
float distanceFrom(unsigned int plane, const ClipPoint& p)
{
    switch (plane) {
    case 0:
        return p.w - p.x;
    case 1:
        return p.x + p.w;
    case 2:
        return p.w - p.y;
    case 3:
        return p.y + p.w;
    case 4:
        return p.z + p.w;
    default:
        return p.w - p.z;
    }
}

ClipPoint between(const ClipPoint& from, const ClipPoint& to, float t)
{
    return {from.x + t * (to.x - from.x), from.y + t * (to.y - from.y), from.z + t * (to.z - from.z),
            from.w + t * (to.w - from.w)};
}

// Where an edge leaves the volume, reckoned from its nearer end; from the inner one when they are equally near.
ClipPoint crossing(const ClipPoint& inside, float insideDistance, const ClipPoint& outside, float outsideDistance)
{
    if (-outsideDistance < insideDistance) {
        return between(outside, inside, outsideDistance / (outsideDistance - insideDistance));
    }
    return between(inside, outside, insideDistance / (insideDistance - outsideDistance));
}

struct Polygon
{
    ClipPoint corners[mostCorners];
    unsigned int count;
};

// Cuts the corners beyond a plane off. False when a distance is not finite: the polygon then counts for nothing.
bool cut(const Polygon& from, unsigned int plane, Polygon& to)
{
    to.count = 0;
    ClipPoint previous = from.corners[0];
    float previousDistance = distanceFrom(plane, previous);
    for (unsigned int k = 1; k <= from.count; ++k) {
        const ClipPoint& corner = from.corners[k == from.count ? 0 : k];
        const float distance = distanceFrom(plane, corner);
        if (!std::isfinite(distance) || !std::isfinite(previousDistance)) {
            return false;
        }
        const bool inside = distance >= 0, previousInside = previousDistance >= 0;
        if (to.count + 2 > mostCorners) {
            return false;
        }
        if (previousInside) {
            to.corners[to.count++] = previous;
        }
        if (inside != previousInside) {
            to.corners[to.count++] = inside ? crossing(corner, distance, previous, previousDistance)
                                            : crossing(previous, previousDistance, corner, distance);
        }
        previous = corner;
        previousDistance = distance;
    }
    return true;
}

} // namespace

void FloatBox::clear()
{
    std::fill_n(low, 3, std::numeric_limits<float>::infinity());
    std::fill_n(high, 3, -std::numeric_limits<float>::infinity());
}

void FloatBox::add(const FloatBox& box)
{
    for (int axis = 0; axis < 3; ++axis) {
        low[axis] = box.low[axis] < low[axis] ? box.low[axis] : low[axis];
        high[axis] = box.high[axis] > high[axis] ? box.high[axis] : high[axis];
    }
}

PickVolume::PickVolume(const PickRegion& region, const PickView& view)
{
    float modelview[16], projection[16], enlarged[16], pick[16];
    std::transform(view.modelview, view.modelview + 16, modelview, [](double v) { return static_cast<float>(v); });
    std::transform(view.projection, view.projection + 16, projection, [](double v) { return static_cast<float>(v); });
    pickMatrix(region, view.viewport, pick);
    multiply(pick, projection, enlarged);
    multiply(enlarged, modelview, matrix);
    std::transform(view.origin, view.origin + 3, origin, [](double v) { return static_cast<float>(v); });
    affine = matrix[3] == 0 && matrix[7] == 0 && matrix[11] == 0 && matrix[15] == 1;
}

FloatBox PickVolume::fromOrigin(const FloatBox& box) const
{
    FloatBox out;
    for (int axis = 0; axis < 3; ++axis) {
        out.low[axis] = box.low[axis] - origin[axis];
        out.high[axis] = box.high[axis] - origin[axis];
    }
    return out;
}

Overlap PickVolume::overlap(const FloatBox& modelBox) const
{
    const FloatBox box = fromOrigin(modelBox);
    // Four roundings a sum and one comparison, with room to spare.
    constexpr double rounding = 16.0 / (1 << 24);
    double middle[4], error[4];
    for (int row = 0; row < 4; ++row) {
        middle[row] = matrix[12 + row];
        error[row] = rounding * std::fabs(middle[row]);
        for (int axis = 0; axis < 3; ++axis) {
            const double m = matrix[4 * axis + row], low = box.low[axis], high = box.high[axis];
            middle[row] += m * (low + high) / 2;
            error[row] += rounding * std::fabs(m) * std::max(std::fabs(low), std::fabs(high));
        }
    }
    bool inside = true;
    for (int plane = 0; plane < 6; ++plane) {
        const int row = plane / 2;
        const double sign = plane % 2 == 0 ? -1 : 1;
        double spread = error[row] + error[3];
        for (int axis = 0; axis < 3; ++axis) {
            const double m = matrix[4 * axis + 3] + sign * matrix[4 * axis + row];
            spread += std::fabs(m) * (static_cast<double>(box.high[axis]) - box.low[axis]) / 2;
        }
        const double distance = middle[3] + sign * middle[row];
        if (distance < -spread) {
            return Overlap::Outside;
        }
        inside = inside && distance > spread; // false, too, where infinite coordinates leave no number
    }
    return inside ? Overlap::Inside : Overlap::Partly;
}

float recordedDepth(float windowDepth)
{
    if (!(windowDepth > 0)) {
        return 0;
    }
    if (windowDepth >= 1) {
        return 1;
    }
    constexpr float steps = 4294967296.0f;
    return static_cast<float>(static_cast<std::uint32_t>(windowDepth * steps)) / steps;
}

void clipLine(const ClipPoint points[2], const std::uint8_t codes[2], DepthMinimum& found)
{
    const unsigned int beyond = codes[0] | codes[1];
    if ((codes[0] & codes[1]) != 0 || (beyond & notFinite) != 0) {
        return;
    }
    // How much of the line is cut off from either end.
    float cutOff[2] = {0, 0};
    for (unsigned int plane = 0; plane < planeCount; ++plane) {
        if ((beyond >> plane & 1) == 0) {
            continue;
        }
        const float distances[2] = {distanceFrom(plane, points[0]), distanceFrom(plane, points[1])};
        for (int end = 0; end < 2; ++end) {
            if (distances[end] < 0) {
                cutOff[end] = std::max(cutOff[end], distances[end] / (distances[end] - distances[1 - end]));
            }
        }
        if (cutOff[0] + cutOff[1] >= 1) {
            return;
        }
    }
    for (int end = 0; end < 2; ++end) {
        found.add(windowDepthOf(codes[end] ? between(points[end], points[1 - end], cutOff[end]) : points[end]));
    }
}

void clipTriangle(const ClipPoint& a, const ClipPoint& b, const ClipPoint& c, const std::uint8_t codes[3],
                  DepthMinimum& found)
{
    const unsigned int beyond = codes[0] | codes[1] | codes[2];
    if ((codes[0] & codes[1] & codes[2]) != 0 || (beyond & notFinite) != 0) {
        return;
    }
    Polygon polygons[2];
    polygons[0].corners[0] = a;
    polygons[0].corners[1] = b;
    polygons[0].corners[2] = c;
    polygons[0].count = 3;
    int current = 0;
    for (unsigned int plane = 0; plane < planeCount; ++plane) {
        if ((beyond >> plane & 1) == 0) {
            continue;
        }
        if (!cut(polygons[current], plane, polygons[1 - current]) || polygons[1 - current].count < 3) {
            return;
        }
        current = 1 - current;
    }
    for (unsigned int k = 0; k < polygons[current].count; ++k) {
        found.add(windowDepthOf(polygons[current].corners[k]));
    }
}

} // namespace kvo
