// Movements: each makes a new camera from an old one.
#include <array>

#include <kvo/camera.h>
#include <kvo/view_names.h>

#include "picture_plane.h"
#include "vector_math.h"

namespace kvo {

namespace {

// Degrees about the axes of the picture that stand on a drag's two directions: the smaller side is half a turn.
struct DragAngles
{
    double across;
    double upwards;
};

DragAngles anglesOf(Pixel from, Pixel to, Viewport viewport)
{
    const PictureSize size(viewport);
    const double degreesPerPixel = 180 / std::min(size.width, size.height);
    return {(to.x - from.x) * degreesPerPixel, (to.y - from.y) * degreesPerPixel};
}

// The camera with another orientation that sees the pivot where this one sees it.
Camera aboutPivot(const Camera& camera, const Rotation& orientation, const Point3& pivot)
{
    if (!isFinite(pivot)) {
        return camera;
    }
    Camera out = camera;
    const Point3 fromPivot = camera.orientation().inverse()(minus(camera.target(), pivot));
    out.setOrientation(orientation);
    out.setTarget(plus(pivot, orientation(fromPivot)));
    return out;
}

// Where on the globe around a model whose z is up the viewer is, in degrees, and how the picture is turned there.
struct GlobePlace
{
    double azimuth;
    double elevation;
    Rotation roll;
};

GlobePlace placeOf(const Rotation& orientation)
{
    const Point3 back = orientation({0, 0, 1}), up = orientation({0, 1, 0});
    const double level = std::hypot(back[0], back[1]);
    GlobePlace out;
    out.elevation = std::atan2(back[2], level) / radiansPerDegree;
    if (level > 1e-9) {
        out.azimuth = std::atan2(back[0], -back[1]) / radiansPerDegree;
    } else { // at a pole the picture's upward direction tells
        const double sign = back[2] > 0 ? 1 : -1;
        out.azimuth = std::atan2(-sign * up[0], sign * up[1]) / radiansPerDegree;
    }
    out.roll = viewOrientation(out.azimuth, out.elevation).inverse() * orientation;
    return out;
}

// Corners of a box about its middle in eye axes. A box that would be seen as a point is made as wide as it is deep, one
// that is a point as wide as 1.
std::array<Point3, 8> cornersSeen(const Camera& camera, const Box& box)
{
    std::array<Point3, 8> out;
    double across = 0, largest = 0;
    for (unsigned int k = 0; k < 8; ++k) {
        Point3 corner;
        for (unsigned int axis = 0; axis < 3; ++axis) {
            corner[axis] = (k >> axis & 1 ? 0.5 : -0.5) * box.size(static_cast<int>(axis));
        }
        out[k] = camera.orientation().inverse()(corner);
        across = std::max({across, std::fabs(out[k][0]), std::fabs(out[k][1])});
        largest = std::max({largest, across, std::fabs(out[k][2])});
    }
    if (across <= 1e-9 * largest) {
        for (unsigned int k = 0; k < 8; ++k) {
            out[k][0] = out[k][1] = (k & 1 ? 1 : -1) * (largest > 0 ? largest : 0.5);
        }
    }
    return out;
}

struct Interval
{
    double low;
    double high;
};

// For the two sides of the picture along an axis that open with a slope from the eye: where each of them touches the
// corners, as its place at the middle's depth.
Interval touching(const std::array<Point3, 8>& corners, std::size_t axis, double slope)
{
    Interval out = {HUGE_VAL, -HUGE_VAL};
    for (const Point3& corner : corners) {
        out.low = std::min(out.low, corner[axis] - slope * corner[2]);
        out.high = std::max(out.high, corner[axis] + slope * corner[2]);
    }
    return out;
}

} // namespace

Camera Camera::orbit(Pixel from, Pixel to, Viewport viewport, const Point3& pivot) const
{
    const DragAngles angles = anglesOf(from, to, viewport);
    return turn({-angles.upwards, angles.across, 0}, std::hypot(angles.across, angles.upwards), pivot);
}

Camera Camera::turntable(Pixel from, Pixel to, Viewport viewport, const Point3& pivot, UpAxis upAxis) const
{
    if (!isFinite(from) || !isFinite(to)) {
        return *this;
    }
    const Rotation upright = viewOrientation(0, 90, upAxis); // from a model whose z is up
    const GlobePlace place = placeOf(upright.inverse() * turned);
    const DragAngles angles = anglesOf(from, to, viewport);
    const Point3 unrolled = place.roll({angles.across, angles.upwards, 0});
    const double azimuth = place.azimuth - unrolled[0];
    const double elevation = std::clamp(place.elevation - unrolled[1], -90.0, 90.0);
    return aboutPivot(*this, upright * viewOrientation(azimuth, elevation) * place.roll, pivot);
}

// The model turns one way, so the camera turns the other way.
Camera Camera::turn(const Point3& eyeAxis, double degrees, const Point3& pivot) const
{
    return aboutPivot(*this, turned * Rotation::about(eyeAxis, -degrees), pivot);
}

Camera Camera::pan(Pixel from, Pixel to, Viewport viewport) const
{
    Camera out = *this;
    out.setTarget(plus(lookedAt, minus(unproject({from, 0}, viewport), unproject({to, 0}, viewport))));
    return out;
}

Camera Camera::pan(Pixel from, Pixel to, Viewport viewport, const Point3& grabbed) const
{
    const std::optional<PicturePoint> at = project(grabbed, viewport);
    if (!at) {
        return *this;
    }
    Camera out = *this;
    out.setTarget(plus(lookedAt, minus(unproject({from, at->depth}, viewport), unproject({to, at->depth}, viewport))));
    return out;
}

Camera Camera::zoom(double factor) const
{
    return zoomAbout(lookedAt, factor);
}

Camera Camera::zoomAt(Pixel pixel, double factor, Viewport viewport) const
{
    return zoomAbout(unproject({pixel, 0}, viewport), factor);
}

// Everything moves towards the point, the eye too, so it stays on its line of sight.
Camera Camera::zoomAbout(const Point3& point, double factor) const
{
    Camera out = *this;
    out.setScale(units / factor);
    if (!(factor > 0) || !isFinite(point) || out.units != units / factor) {
        return *this;
    }
    out.setTarget(plus(point, times(1 / factor, minus(lookedAt, point))));
    return out;
}

Camera Camera::boxZoom(Pixel corner, Pixel opposite, Viewport viewport) const
{
    const PictureSize size(viewport);
    const double width = std::fabs(opposite.x - corner.x), height = std::fabs(opposite.y - corner.y);
    if (!(width > 0 || height > 0)) {
        return *this;
    }
    const Pixel middle = {(corner.x + opposite.x) / 2, (corner.y + opposite.y) / 2};
    const Camera centered = pan(middle, {size.width / 2, size.height / 2}, viewport);
    return centered.zoom(std::min(size.width / width, size.height / height));
}

Camera Camera::withTargetDepthOf(const Point3& point) const
{
    const double depth = dot(minus(lookedAt, point), towardsViewer()), factor = enlargement(*this, depth);
    Camera out = *this;
    out.setScale(units / factor);
    if (!(factor > 0) || !std::isfinite(depth) || out.units != units / factor) {
        return *this;
    }
    out.setTarget(plus(lookedAt, times(-depth, towardsViewer())));
    return out;
}

// In perspective the picture's sides touch the box where their slopes do; the target goes to the middle between the
// two of each direction, and the eye as far away as the tighter direction asks for.
Camera Camera::fit(const Box& box, Viewport viewport, double fill) const
{
    if (!isBox(box) || !(fill > 0 && std::isfinite(fill))) {
        return *this;
    }
    const std::array<Point3, 8> corners = cornersSeen(*this, box);
    const PictureSize size(viewport);
    const double sides[2] = {size.width / std::min(size.width, size.height),
                             size.height / std::min(size.width, size.height)};
    const double slope = opening > 0 ? std::tan(opening / 2 * radiansPerDegree) : 0;
    double wanted = 0; // scale, in perspective the eye's distance from the middle
    Point3 middle = {0, 0, 0};
    for (std::size_t axis = 0; axis < 2; ++axis) {
        const double sideSlope = fill * sides[axis] * slope;
        const Interval ends = touching(corners, axis, sideSlope);
        const double apart = ends.high - ends.low;
        wanted = std::max(wanted, opening > 0 ? apart / (2 * sideSlope) : apart / (fill * sides[axis]));
        middle[axis] = (ends.low + ends.high) / 2;
    }
    if (opening > 0) { // a little before the nearest corner, where that is all that counts
        const double reach = std::max_element(corners.begin(), corners.end(), [](const Point3& a, const Point3& b) {
                                 return a[2] < b[2];
                             })->at(2);
        wanted = 2 * slope * std::max(wanted, 1.001 * reach);
    }
    Camera out = *this;
    out.setScale(wanted);
    out.setTarget(plus({box.center(0), box.center(1), box.center(2)}, turned(middle)));
    return out;
}

Camera Camera::lookAt(const Point3& from, const Point3& at, const Point3& upwards) const
{
    const Point3 back = minus(from, at);
    const double apart = length(back);
    if (!(apart > 0) || !std::isfinite(apart) || !isFinite(at) || !isFinite(upwards)) {
        return *this;
    }
    const Point3 z = times(1 / apart, back);
    Point3 x = {0, 0, 0};
    const Point3 candidates[] = {upwards, up(), right()}; // looking along the upward direction, another one
    for (const Point3& candidate : candidates) {
        const double size = length(candidate);
        x = size > 0 ? times(1 / size, cross(candidate, z)) : Point3{0, 0, 0};
        if (length(x) > 1e-9) {
            break;
        }
    }
    x = times(1 / length(x), x);
    Camera out = *this;
    out.setOrientation(Rotation::ofAxes(x, cross(z, x), z));
    out.setTarget(at);
    if (opening > 0) {
        out.setScale(2 * apart * std::tan(opening / 2 * radiansPerDegree));
    }
    return out;
}

} // namespace kvo
