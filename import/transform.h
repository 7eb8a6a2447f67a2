// Rigid motions and coordinate systems of deck readers.
#ifndef KVO_IMPORT_TRANSFORM_H
#define KVO_IMPORT_TRANSFORM_H

#include <array>

namespace kvo {

using Vec3 = std::array<double, 3>;

// x -> m x + t.
struct Transform
{
    double m[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    Vec3 t = {0, 0, 0};

    Vec3 apply(const Vec3& x) const;
    // First this one, then next.
    Transform then(const Transform& next) const;
    bool isIdentity() const;

    static Transform translation(const Vec3& by);
    // About the axis from a to b, right-handed. The identity if a and b coincide.
    static Transform rotation(const Vec3& a, const Vec3& b, double degrees);
    // From a local system to the global one: origin a, local x towards b, local x-y plane through c. False if the three
    // points do not span a plane.
    static bool fromPoints(const Vec3& a, const Vec3& b, const Vec3& c, Transform& result);
};

// (r, theta in degrees, z) and (r, theta, phi in degrees; phi from the x-y plane) to (x, y, z).
Vec3 fromCylindrical(const Vec3& p);
Vec3 fromSpherical(const Vec3& p);

} // namespace kvo

#endif
