// Camera: where a model is seen from, in double precision, without OpenGL.
//
//   kvo::Camera camera;
//   camera.setOrientation(*kvo::viewOrientation("iso"));
//   camera = camera.fit(box, viewport);
//   const kvo::CameraMatrices m = camera.matrices(viewport, box, origin); // to OpenGL, with coordinates minus origin
//
// A camera is a value: every movement returns the moved camera and leaves this one as it was. While the mouse drags,
// each step is computed from the camera at the beginning of the drag, so that nothing adds up and coming back to the
// beginning gives back the beginning:
//
//   on press:   start = camera, from = position
//   on motion:  camera = start.orbit(from, position, viewport, start.target());
//
// The picture shows `scale` model units across its smaller side, at the distance of the target; that is all the same
// in parallel projection and in perspective, so that switching keeps the size of what is at the target. What lies far
// from the model's origin is no special case: matrices are made for coordinates relative to an origin that the caller
// names, and the differences are taken in double precision.
//
// Pixels are counted from the picture's lower left corner, y upwards, in doubles: the middle of the lower left pixel is
// (0.5, 0.5). A viewport without width or height is taken as one pixel wide or high. Numbers that are not finite change
// nothing: setters and movements then keep what was there.
#ifndef KVO_CAMERA_H
#define KVO_CAMERA_H

#include <array>
#include <optional>

#include <kvo/box.h>
#include <kvo/rotation.h>

namespace kvo {

struct Viewport
{
    int width = 1;
    int height = 1;
};

struct Pixel
{
    double x = 0;
    double y = 0;
};

// A point in the picture. depth: model units behind the target along the line of sight, negative in front of it.
struct PicturePoint
{
    Pixel pixel;
    double depth = 0;
};

// Points begin + t direction, all of which fall on one pixel. In perspective begin is the eye and what is seen has
// t > 0; in parallel projection begin lies at the target's depth, and what is seen has any t.
struct PickRay
{
    Point3 begin;
    Point3 direction; // of length 1, away from the viewer
};

// Column after column, as OpenGL takes them.
struct CameraMatrices
{
    std::array<double, 16> modelview; // a rotation and a shift: lengths stay
    std::array<double, 16> projection;
};

enum class UpAxis
{
    Z,
    Y
};

// The share of the picture that fit() fills along the tighter direction.
constexpr double cameraFill = 0.95;

class KVO_EXPORT Camera
{
public:
    Camera() = default; // front view of +-1 about the origin, parallel

    // --- State ---

    const Point3& target() const { return lookedAt; } // in the middle of the picture
    // From the eye's axes to the model's: x is to the right, y upwards, z towards the viewer.
    const Rotation& orientation() const { return turned; }
    double scale() const { return units; }         // model units across the smaller side of the picture
    double perspective() const { return opening; } // degrees across the smaller side; 0: parallel projection

    void setTarget(const Point3& point);
    void setOrientation(const Rotation& rotation);
    void setScale(double modelUnits); // positive
    // 0 or less: parallel. Others are brought into 1 to 150 degrees.
    void setPerspective(double degrees);

    Point3 right() const { return turned({1, 0, 0}); }
    Point3 up() const { return turned({0, 1, 0}); }
    Point3 towardsViewer() const { return turned({0, 0, 1}); }
    double distance() const; // of the eye from the target; 0 in parallel projection, where there is no eye
    Point3 eye() const;      // in parallel projection the target

    // --- Between model and picture ---

    double pixelsPerUnit(Viewport viewport) const; // at the target's depth
    // Nothing for what is beside or behind the eye in perspective.
    std::optional<PicturePoint> project(const Point3& point, Viewport viewport) const;
    Point3 unproject(const PicturePoint& point, Viewport viewport) const;
    PickRay ray(Pixel pixel, Viewport viewport) const;

    // For coordinates relative to origin. The near and far plane hold the whole box, in perspective what of it lies in
    // front of the eye: from a ten-thousandth of the farthest depth on.
    CameraMatrices matrices(Viewport viewport, const Box& box, const Point3& origin) const;

    // --- Movements; each returns the moved camera ---

    // A drag that turns the model about a pivot, which keeps its place in the picture: what is nearest to the viewer
    // follows the mouse. As long as the smaller side of the picture is half a turn.
    // orbit: about the axis in the picture that stands on the drag; any orientation can be reached.
    Camera orbit(Pixel from, Pixel to, Viewport viewport, const Point3& pivot) const;
    // turntable: about the up axis, and up and down to the poles and no farther; what is upright stays so. Looking
    // along the up axis, it is the lower half of the picture that follows the mouse.
    Camera turntable(Pixel from, Pixel to, Viewport viewport, const Point3& pivot, UpAxis up = UpAxis::Z) const;

    // Turns the model about an axis of the eye (orientation()) through a pivot, right-handed.
    Camera turn(const Point3& eyeAxis, double degrees, const Point3& pivot) const;
    // Turns the picture counterclockwise about its middle.
    Camera roll(double degrees) const { return turn({0, 0, 1}, degrees, lookedAt); }

    // A drag that shifts the picture: what lies at the target's depth stays under the mouse. The second form keeps a
    // grabbed point of the model there, whatever its depth.
    Camera pan(Pixel from, Pixel to, Viewport viewport) const;
    Camera pan(Pixel from, Pixel to, Viewport viewport, const Point3& grabbed) const;

    // Enlarges the picture by a factor. zoomAt: what is under the pixel at the target's depth stays there; the second
    // form keeps a point of the model where it is in the picture.
    Camera zoom(double factor) const;
    Camera zoomAt(Pixel pixel, double factor, Viewport viewport) const;
    Camera zoomAbout(const Point3& point, double factor) const;
    // The rectangle between two corners, at the target's depth, fills the picture as far as its shape allows, with its
    // middle in the middle. Nothing happens for a rectangle without width and height.
    Camera boxZoom(Pixel corner, Pixel opposite, Viewport viewport) const;
    // The target moves along the line of sight to the depth of a point; the picture stays as it is. In front of the eye
    // only. So movements "at the target's depth" can be done at that of the model's surface.
    Camera withTargetDepthOf(const Point3& point) const;

    // The box fills the share of the picture along the tighter direction, in its middle; orientation and perspective
    // stay. A box seen as a point is seen at its largest size; one that is a point has 1 unit. A box whose low end is
    // above its high end, or with numbers that are not finite, changes nothing.
    Camera fit(const Box& box, Viewport viewport, double fill = cameraFill) const;
    // From a point to another one, upwards as far as possible. The size of what is at the new target is that of a
    // perspective with this opening; in parallel projection the scale stays. From a point to itself: nothing changes.
    Camera lookAt(const Point3& from, const Point3& at, const Point3& upwards) const;

private:
    Point3 lookedAt = {0, 0, 0};
    Rotation turned = Rotation::about({1, 0, 0}, 90);
    double units = 2;
    double opening = 0;
};

// Exactly the same numbers.
KVO_EXPORT bool operator==(const Camera& a, const Camera& b);
inline bool operator!=(const Camera& a, const Camera& b)
{
    return !(a == b);
}

} // namespace kvo

#endif
