// Virtual trackball and quaternion arithmetic.
//
// Single precision except where a double is written out; the mixture is kept because views that hosts replay from
// logged drags must come out bit for bit.
#include "trackball.h"

#include <algorithm>
#include <cmath>

namespace {

const float trackballRadius = 0.8f;
const double halfSqrt2 = 0.70710678118654752;
const double sqrt2 = 1.41421356237309505;
const int renormaliseAfter = 97;

void vsub(const float* src1, const float* src2, float* dst)
{
    for (int k = 0; k < 3; ++k) {
        dst[k] = src1[k] - src2[k];
    }
}

void vadd(const float* src1, const float* src2, float* dst)
{
    for (int k = 0; k < 3; ++k) {
        dst[k] = src1[k] + src2[k];
    }
}

// Source first.
void vcopy(const float* v1, float* v2)
{
    std::copy(v1, v1 + 3, v2);
}

// cross may be one of the inputs.
void vcross(const float* v1, const float* v2, float* cross)
{
    const float temp[3] = {v1[1] * v2[2] - v1[2] * v2[1], v1[2] * v2[0] - v1[0] * v2[2], v1[0] * v2[1] - v1[1] * v2[0]};
    vcopy(temp, cross);
}

float vdot(const float* v1, const float* v2)
{
    return v1[0] * v2[0] + v1[1] * v2[1] + v1[2] * v2[2];
}
float vlength(const float* v)
{
    return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

void vscale(float* v, float factor)
{
    for (int k = 0; k < 3; ++k) {
        v[k] *= factor;
    }
}

// deliberate(zero-axis-nan): a zero vector is not guarded; a drag through collinear points gives non-numbers.
void vnormal(float* v)
{
    vscale(v, static_cast<float>(1.0 / vlength(v)));
}

// z of a point on the sphere of radius r, or on the hyperbolic sheet around it.
float tb_project_to_sphere(float r, float x, float y)
{
    const float d = std::sqrt(x * x + y * y);
    if (d < r * halfSqrt2) {
        return std::sqrt(r * r - d * d);
    }
    const float t = static_cast<float>(r / sqrt2);
    return t * t / d;
}

void normalize_quat(float q[4])
{
    const float mag = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
    for (int k = 0; k < 4; ++k) {
        q[k] /= mag;
    }
}

} // namespace

void trackball(float q[4], float p1x, float p1y, float p2x, float p2y)
{
    if (p1x == p2x && p1y == p2y) {
        q[0] = q[1] = q[2] = 0;
        q[3] = 1;
        return;
    }
    const float p1[3] = {p1x, p1y, tb_project_to_sphere(trackballRadius, p1x, p1y)};
    const float p2[3] = {p2x, p2y, tb_project_to_sphere(trackballRadius, p2x, p2y)};
    float axis[3], difference[3];
    vcross(p2, p1, axis); // this order and the transpose in build_rotmatrix give the sense of rotation
    vsub(p1, p2, difference);
    const double diameter = 2 * trackballRadius;
    float t = static_cast<float>(vlength(difference) / diameter);
    t = std::min(std::max(t, -1.0f), 1.0f);
    const float phi = static_cast<float>(2.0 * std::asin(t));
    axis_to_quat(axis, phi, q);
}

void axis_to_quat(const float a[3], float phi, float q[4])
{
    vcopy(a, q);
    vnormal(q);
    vscale(q, static_cast<float>(std::sin(phi / 2.0)));
    q[3] = static_cast<float>(std::cos(phi / 2.0));
}

void add_quats(const float q1[4], const float q2[4], float dest[4])
{
    static int count = 0; // shared by all callers in the process
    float t1[3], t2[3], t3[3], sum[3];
    vcopy(q1, t1);
    vscale(t1, q2[3]);
    vcopy(q2, t2);
    vscale(t2, q1[3]);
    vcross(q2, q1, t3);
    vadd(t1, t2, sum);
    vadd(t3, sum, sum);
    const float scalar = q1[3] * q2[3] - vdot(q1, q2);
    vcopy(sum, dest);
    dest[3] = scalar;
    // deliberate(renormalise-every-98): against the growth of rounding errors; the period shows in replayed drags.
    if (++count > renormaliseAfter) {
        count = 0;
        normalize_quat(dest);
    }
}

void build_rotmatrix(float m[4][4], const float q[4])
{
    const float x = q[0], y = q[1], z = q[2], w = q[3];
    m[0][0] = static_cast<float>(1.0 - 2.0 * (y * y + z * z));
    m[0][1] = 2 * (x * y - z * w);
    m[0][2] = 2 * (z * x + y * w);
    m[1][0] = 2 * (x * y + z * w);
    m[1][1] = static_cast<float>(1.0 - 2.0 * (z * z + x * x));
    m[1][2] = 2 * (y * z - x * w);
    m[2][0] = 2 * (z * x - y * w);
    m[2][1] = 2 * (y * z + x * w);
    m[2][2] = static_cast<float>(1.0 - 2.0 * (y * y + x * x));
    for (int k = 0; k < 3; ++k) {
        m[k][3] = m[3][k] = 0;
    }
    m[3][3] = 1;
}
