// The volume of space behind a region of the window, and what OpenGL's selection mode makes of points, lines and
// triangles in it: computed in single precision and in the order of operations of Mesa's transformation and clipping,
// so that hits and depths come out bit for bit the same.
#ifndef KVO_SCENE_PICK_VOLUME_H
#define KVO_SCENE_PICK_VOLUME_H

#include <cstdint>

#include <kvo/pick.h>

namespace kvo {

// A point in clip coordinates: inside the volume where -w <= x, y, z <= w.
struct ClipPoint
{
    float x, y, z, w;
};

// Bits of an outcode: beyond which of the six planes a point lies.
constexpr std::uint8_t outsideNowhere = 0;
constexpr std::uint8_t outsideNear = 16; // z < -w
constexpr std::uint8_t outsideFar = 32;
// Not a point at all: a coordinate is infinite or not a number. Nothing that it is a corner of can be hit.
constexpr std::uint8_t notFinite = 64;

enum class Overlap : std::uint8_t
{
    Outside,
    Partly,
    Inside
};

// Bounds of coordinates. Empty until something is added.
struct FloatBox
{
    float low[3];
    float high[3];

    void clear();
    // A coordinate that is not a number changes nothing.
    void add(const float* point)
    {
        for (int axis = 0; axis < 3; ++axis) {
            low[axis] = point[axis] < low[axis] ? point[axis] : low[axis];
            high[axis] = point[axis] > high[axis] ? point[axis] : high[axis];
        }
    }
    void add(const FloatBox& box);
    bool empty() const { return !(low[0] <= high[0] && low[1] <= high[1] && low[2] <= high[2]); }
};

// Matrices are column after column.
struct PickVolume
{
    PickVolume(const PickRegion& region, const PickView& view);

    ClipPoint transform(const float* point) const
    {
        const float* m = matrix;
        const float p[3] = {point[0] - origin[0], point[1] - origin[1], point[2] - origin[2]};
        return {p[0] * m[0] + p[1] * m[4] + p[2] * m[8] + m[12], p[0] * m[1] + p[1] * m[5] + p[2] * m[9] + m[13],
                p[0] * m[2] + p[1] * m[6] + p[2] * m[10] + m[14], p[0] * m[3] + p[1] * m[7] + p[2] * m[11] + m[15]};
    }
    // The box in the coordinates that the matrix takes.
    FloatBox fromOrigin(const FloatBox& box) const;

    // Where a box lies. Outside and Inside are certain for every point of the box as transform() places it; the
    // rounding of single precision is allowed for.
    Overlap overlap(const FloatBox& box) const;

    float matrix[16]; // model coordinates minus origin to clip coordinates
    float origin[3];
    bool affine; // w is 1 for every point
};

inline std::uint8_t outcodeOf(const ClipPoint& p)
{
    const bool finite = (p.x - p.x) + (p.y - p.y) + (p.z - p.z) + (p.w - p.w) == 0;
    const int code = (p.x > p.w) | (0 > p.x + p.w) << 1 | (p.y > p.w) << 2 | (0 > p.y + p.w) << 3 |
                     (0 > p.z + p.w) << 4 | (p.z > p.w) << 5;
    return static_cast<std::uint8_t>(finite ? code : notFinite);
}

// Window depth as the viewport transformation gives it.
inline float windowDepthOf(const ClipPoint& p)
{
    return p.z * (1.0f / p.w) * 0.5f + 0.5f;
}

// The depth that a selection record holds: 32 bits of it, 0 to 1.
float recordedDepth(float windowDepth);

// What was hit so far: the smallest window depth.
struct DepthMinimum
{
    bool hit = false;
    float depth = 0;

    void add(float windowDepth)
    {
        if (!hit || windowDepth < depth) {
            depth = windowDepth;
        }
        hit = true;
    }
};

// The parts of primitives inside the volume. codes: outcodeOf of each point.
void clipLine(const ClipPoint points[2], const std::uint8_t codes[2], DepthMinimum& found);
void clipTriangle(const ClipPoint& a, const ClipPoint& b, const ClipPoint& c, const std::uint8_t codes[3],
                  DepthMinimum& found);

} // namespace kvo

#endif
