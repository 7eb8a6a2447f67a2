// Matrices for OpenGL.
#include <kvo/camera.h>

#include "picture_plane.h"
#include "vector_math.h"

namespace kvo {

namespace {

// Depths as seen from the eye, in parallel projection from the target.
struct DepthRange
{
    double nearest;
    double farthest;
};

// With room for OpenGL's single precision, which rounds coordinates relative to the origin.
DepthRange depthsOf(const Camera& camera, const Box& box, const Point3& origin)
{
    if (!isBox(box)) {
        return {camera.distance() - camera.scale(), camera.distance() + camera.scale()};
    }
    const Point3 back = camera.towardsViewer();
    double middle = camera.distance(), reach = 0, largest = 0;
    for (int axis = 0; axis < 3; ++axis) {
        middle += back[axis] * (camera.target()[axis] - box.center(axis));
        reach += std::fabs(back[axis]) * box.size(axis) / 2;
        largest = std::max({largest, std::fabs(box.low[axis] - origin[axis]), std::fabs(box.high[axis] - origin[axis]),
                            std::fabs(camera.target()[axis] - origin[axis])});
    }
    reach += 1e-3 * (reach + camera.scale()) + 1e-6 * largest;
    return {middle - reach, middle + reach};
}

void projectParallel(DepthRange range, CameraMatrices& out)
{
    out.projection[10] = -2 / (range.farthest - range.nearest);
    out.projection[14] = -(range.farthest + range.nearest) / (range.farthest - range.nearest);
    out.projection[15] = 1;
}

void projectFromEye(const Camera& camera, DepthRange range, CameraMatrices& out)
{
    const double far = range.farthest > 0 ? range.farthest : camera.distance();
    const double near = std::max(range.nearest, 1e-4 * far);
    out.projection[0] *= camera.distance();
    out.projection[5] *= camera.distance();
    out.projection[10] = -(far + near) / (far - near);
    out.projection[11] = -1;
    out.projection[14] = -2 * far * near / (far - near);
}

} // namespace

CameraMatrices Camera::matrices(Viewport viewport, const Box& box, const Point3& origin) const
{
    CameraMatrices out = {};
    const Point3 axes[3] = {right(), up(), towardsViewer()}, fromTarget = minus(origin, lookedAt);
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            out.modelview[4 * column + row] = axes[row][column];
        }
        out.modelview[12 + row] = dot(axes[row], fromTarget);
    }
    out.modelview[14] -= distance();
    out.modelview[15] = 1;

    const PictureSize size(viewport);
    out.projection[0] = 2 * pixelsPerUnit(viewport) / size.width;
    out.projection[5] = 2 * pixelsPerUnit(viewport) / size.height;
    const DepthRange range = depthsOf(*this, box, origin);
    if (opening > 0) {
        projectFromEye(*this, range, out);
    } else {
        projectParallel(range, out);
    }
    return out;
}

} // namespace kvo
