// Arithmetic of Vector3 (measure.h) for the tools.
#ifndef KVO_SCENE_VECTORS_H
#define KVO_SCENE_VECTORS_H

#include <cmath>
#include <cstdint>

#include "element_shape.h"
#include <kvo/measure.h>

namespace kvo::vectors {

inline Vector3 operator+(const Vector3& a, const Vector3& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vector3 operator-(const Vector3& a, const Vector3& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vector3 operator*(double s, const Vector3& a)
{
    return {s * a.x, s * a.y, s * a.z};
}
inline double dot(const Vector3& a, const Vector3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vector3 cross(const Vector3& a, const Vector3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(const Vector3& a)
{
    return std::sqrt(dot(a, a));
}
// Six times the signed volume of the tetrahedron with these edges from one corner.
inline double det(const Vector3& a, const Vector3& b, const Vector3& c)
{
    return dot(cross(a, b), c);
}
// (0, 0, 0) for a vector without length.
inline Vector3 unit(const Vector3& a)
{
    const double l = length(a);
    return l > 0 ? (1 / l) * a : Vector3{};
}
// The node must be one of the part's.
inline Vector3 placeOf(const PartMesh& part, std::uint32_t node)
{
    const float* p = positionOf(part, node);
    return {p[0], p[1], p[2]};
}
// Twice the area vector of a face, whatever the flatness of a quadrilateral.
inline Vector3 areaVector(const PartMesh& part, const std::uint32_t* nodes, unsigned int corners)
{
    const Vector3 a = placeOf(part, nodes[0]), c = placeOf(part, nodes[2]);
    const Vector3 b = placeOf(part, nodes[1]), d = corners == 4 ? placeOf(part, nodes[3]) : a;
    return cross(c - a, d - b);
}

constexpr double degreesPerRadian = 57.295779513082320877;

} // namespace kvo::vectors

#endif
