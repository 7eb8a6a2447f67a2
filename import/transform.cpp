// Rigid motions and coordinate systems.
#include "transform.h"

#include <cmath>

namespace kvo {

namespace {

constexpr double radians = 3.14159265358979323846 / 180.0;

Vec3 minus(const Vec3& a, const Vec3& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Vec3 cross(const Vec3& a, const Vec3& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// False for a vector without a direction.
bool normalise(Vec3& v)
{
    const double length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    if (!(length > 0.0) || !std::isfinite(length)) {
        return false;
    }
    for (double& c : v) {
        c /= length;
    }
    return true;
}

// Sine and cosine that are exact at the quarter turns, which is what decks mostly ask for.
void sineCosine(double degrees, double& sine, double& cosine)
{
    const double quarters = degrees / 90.0;
    if (quarters == std::floor(quarters) && std::fabs(quarters) < 1e9) {
        static const double table[5] = {0, 1, 0, -1, 0};
        const int k = static_cast<int>(static_cast<long long>(quarters) & 3);
        sine = table[k];
        cosine = table[k + 1];
        return;
    }
    sine = std::sin(degrees * radians);
    cosine = std::cos(degrees * radians);
}

} // namespace

Vec3 Transform::apply(const Vec3& x) const
{
    Vec3 result = t;
    for (int row = 0; row < 3; ++row) {
        result[row] += m[row][0] * x[0] + m[row][1] * x[1] + m[row][2] * x[2];
    }
    return result;
}

Transform Transform::then(const Transform& next) const
{
    Transform result;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            result.m[row][column] =
                next.m[row][0] * m[0][column] + next.m[row][1] * m[1][column] + next.m[row][2] * m[2][column];
        }
    }
    result.t = next.apply(t);
    return result;
}

bool Transform::isIdentity() const
{
    const Transform identity;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            if (m[row][column] != identity.m[row][column]) {
                return false;
            }
        }
    }
    return t == identity.t;
}

Transform Transform::translation(const Vec3& by)
{
    Transform result;
    result.t = by;
    return result;
}

Transform Transform::rotation(const Vec3& a, const Vec3& b, double degrees)
{
    Transform result;
    Vec3 u = minus(b, a);
    if (!normalise(u)) {
        return result;
    }
    double s = 0.0;
    double c = 1.0;
    sineCosine(degrees, s, c);
    // Rodrigues' formula: c I + s [u]x + (1 - c) u u^T.
    const double skew[3][3] = {{0, -u[2], u[1]}, {u[2], 0, -u[0]}, {-u[1], u[0], 0}};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            result.m[row][column] = c * (row == column) + s * skew[row][column] + (1 - c) * u[row] * u[column];
        }
    }
    result.t = minus(a, result.apply(a));
    return result;
}

bool Transform::fromPoints(const Vec3& a, const Vec3& b, const Vec3& c, Transform& result)
{
    Vec3 x = minus(b, a);
    Vec3 z = cross(x, minus(c, a));
    if (!normalise(x) || !normalise(z)) {
        return false;
    }
    const Vec3 y = cross(z, x);
    for (int row = 0; row < 3; ++row) {
        result.m[row][0] = x[row];
        result.m[row][1] = y[row];
        result.m[row][2] = z[row];
    }
    result.t = a;
    return true;
}

Vec3 fromCylindrical(const Vec3& p)
{
    double s = 0.0;
    double c = 1.0;
    sineCosine(p[1], s, c);
    return {p[0] * c, p[0] * s, p[2]};
}

Vec3 fromSpherical(const Vec3& p)
{
    double st = 0.0;
    double ct = 1.0;
    double sp = 0.0;
    double cp = 1.0;
    sineCosine(p[1], st, ct);
    sineCosine(p[2], sp, cp);
    return {p[0] * cp * ct, p[0] * cp * st, p[0] * sp};
}

} // namespace kvo
