// Arithmetic of points. Private to model/.
#ifndef KVO_VECTOR_MATH_H
#define KVO_VECTOR_MATH_H

#include <algorithm>
#include <cmath>

#include <kvo/rotation.h>

namespace kvo {

inline Point3 plus(const Point3& a, const Point3& b)
{
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

inline Point3 minus(const Point3& a, const Point3& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

inline Point3 times(double s, const Point3& v)
{
    return {s * v[0], s * v[1], s * v[2]};
}

inline double dot(const Point3& a, const Point3& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline Point3 cross(const Point3& a, const Point3& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

inline double length(const Point3& v)
{
    return std::hypot(v[0], v[1], v[2]);
}

inline bool isFinite(const Point3& v)
{
    return std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]);
}

constexpr double radiansPerDegree = 3.14159265358979323846 / 180;

} // namespace kvo

#endif
