#include <kvo/rotation.h>

#include <algorithm>
#include <cmath>

#include "vector_math.h"

namespace kvo {

Rotation Rotation::about(const Point3& axis, double degrees)
{
    const double size = length(axis);
    if (!(size > 0) || !std::isfinite(size) || !std::isfinite(degrees)) {
        return Rotation();
    }
    const double half = std::remainder(degrees, 720) / 2 * radiansPerDegree, s = std::sin(half) / size;
    return ofQuaternion(std::cos(half), s * axis[0], s * axis[1], s * axis[2]);
}

// Shepperd, Journal of Guidance and Control 1(3), 1978: from the largest of the four squares.
Rotation Rotation::ofAxes(const Point3& x, const Point3& y, const Point3& z)
{
    const double squares[4] = {1 + x[0] + y[1] + z[2], 1 + x[0] - y[1] - z[2], 1 - x[0] + y[1] - z[2],
                               1 - x[0] - y[1] + z[2]};
    const double wx = y[2] - z[1], wy = z[0] - x[2], wz = x[1] - y[0];
    const double xy = y[0] + x[1], xz = z[0] + x[2], yz = z[1] + y[2];
    switch (std::max_element(squares, squares + 4) - squares) {
    case 0:
        return ofQuaternion(squares[0], wx, wy, wz);
    case 1:
        return ofQuaternion(wx, squares[1], xy, xz);
    case 2:
        return ofQuaternion(wy, xy, squares[2], yz);
    default:
        return ofQuaternion(wz, xz, yz, squares[3]);
    }
}

Rotation Rotation::ofQuaternion(double w, double x, double y, double z)
{
    const double size = std::hypot(std::hypot(w, x), std::hypot(y, z));
    Rotation out;
    if (size > 0 && std::isfinite(size)) {
        out.q = {w / size, x / size, y / size, z / size};
    }
    return out;
}

Point3 Rotation::operator()(const Point3& v) const
{
    const Point3 axis = {q[1], q[2], q[3]}, twice = times(2, cross(axis, v));
    return plus(plus(v, times(q[0], twice)), cross(axis, twice));
}

Rotation Rotation::operator*(const Rotation& other) const
{
    const Point3 a = {q[1], q[2], q[3]}, b = {other.q[1], other.q[2], other.q[3]};
    const Point3 v = plus(plus(times(q[0], b), times(other.q[0], a)), cross(a, b));
    return ofQuaternion(q[0] * other.q[0] - dot(a, b), v[0], v[1], v[2]);
}

Rotation Rotation::inverse() const
{
    Rotation out;
    out.q = {q[0], -q[1], -q[2], -q[3]};
    return out;
}

} // namespace kvo
