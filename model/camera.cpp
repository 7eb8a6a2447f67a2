// State, and the way between model and picture.
#include <kvo/camera.h>

#include "picture_plane.h"
#include "vector_math.h"

namespace kvo {

void Camera::setTarget(const Point3& point)
{
    if (isFinite(point)) {
        lookedAt = point;
    }
}

void Camera::setOrientation(const Rotation& rotation)
{
    turned = rotation;
}

// OpenGL takes the scale in single precision, whose range this is, with room for the model's own.
void Camera::setScale(double modelUnits)
{
    if (modelUnits >= 1e-37 && modelUnits <= 1e38) {
        units = modelUnits;
    }
}

void Camera::setPerspective(double degrees)
{
    if (std::isfinite(degrees)) {
        opening = degrees > 0 ? std::clamp(degrees, 1.0, 150.0) : 0;
    }
}

double Camera::distance() const
{
    return opening > 0 ? units / 2 / std::tan(opening / 2 * radiansPerDegree) : 0;
}

Point3 Camera::eye() const
{
    return plus(lookedAt, times(distance(), towardsViewer()));
}

double Camera::pixelsPerUnit(Viewport viewport) const
{
    const PictureSize size(viewport);
    return std::min(size.width, size.height) / units;
}

std::optional<PicturePoint> Camera::project(const Point3& point, Viewport viewport) const
{
    const Point3 seen = turned.inverse()(minus(point, lookedAt));
    const double factor = enlargement(*this, -seen[2]);
    if (!(factor > 0) || !isFinite(seen)) {
        return std::nullopt;
    }
    const PictureSize size(viewport);
    const double pixels = factor * pixelsPerUnit(viewport);
    return PicturePoint{{size.width / 2 + pixels * seen[0], size.height / 2 + pixels * seen[1]}, -seen[2]};
}

Point3 Camera::unproject(const PicturePoint& point, Viewport viewport) const
{
    const PictureSize size(viewport);
    const double d = distance(), fromEye = d > 0 ? (d + point.depth) / d : 1;
    const double unitsPerPixel = fromEye / pixelsPerUnit(viewport);
    const Point3 seen = {(point.pixel.x - size.width / 2) * unitsPerPixel,
                         (point.pixel.y - size.height / 2) * unitsPerPixel, -point.depth};
    return plus(lookedAt, turned(seen));
}

PickRay Camera::ray(Pixel pixel, Viewport viewport) const
{
    const Point3 through = unproject({pixel, 0}, viewport);
    if (!(opening > 0)) {
        return {through, times(-1, towardsViewer())};
    }
    const Point3 begin = eye(), along = minus(through, begin);
    return {begin, times(1 / length(along), along)};
}

bool operator==(const Camera& a, const Camera& b)
{
    return a.target() == b.target() && a.orientation().quaternion() == b.orientation().quaternion() &&
           a.scale() == b.scale() && a.perspective() == b.perspective();
}

} // namespace kvo
