// Points and rotations in double precision.
#ifndef KVO_ROTATION_H
#define KVO_ROTATION_H

#include <array>

#include <kvoexport.h>

namespace kvo {

using Point3 = std::array<double, 3>; // also differences of points, and directions

// A rotation as a unit quaternion. A value.
class KVO_EXPORT Rotation
{
public:
    Rotation() = default; // none
    // Right-handed about an axis of any length; none about an axis without length, or with numbers that are not finite.
    static Rotation about(const Point3& axis, double degrees);
    // The rotation that takes the x, y and z axis to these three, which must stand on each other, right-handed, with
    // length 1 within rounding.
    static Rotation ofAxes(const Point3& x, const Point3& y, const Point3& z);
    // Of any length but 0; no rotation for what is no quaternion.
    static Rotation ofQuaternion(double w, double x, double y, double z);

    Point3 operator()(const Point3& v) const;
    // First the right one, then the left one. The product is brought back to length 1.
    Rotation operator*(const Rotation& other) const;
    Rotation inverse() const;

    // w, x, y, z.
    const std::array<double, 4>& quaternion() const { return q; }

private:
    std::array<double, 4> q = {1, 0, 0, 0};
};

} // namespace kvo

#endif
