// The matrices of a frame of the drawing library, made without drawing one.
#include "state_camera.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <GL/gl.h>

#include "caeenv.h"
#include "mtrans.h"
#include "mview.h"
#include "program_error.h"
#include "trackball.h"
#include <kvo/model_frame.h>

namespace kvo {

namespace {

constexpr double closePixels = 0.25;

struct Matrices
{
    double modelview[16];
    double projection[16];
};

// As a SceneView without a camera makes them.
Matrices matricesOf(CAEEnv& env, Viewport viewport)
{
    Matrices out;
    glViewport(0, 0, viewport.width, viewport.height);
    applyFrame(env, viewport.width, viewport.height);
    glMatrixMode(GL_PROJECTION);
    glScaled(1, 1, -1);
    glMatrixMode(GL_MODELVIEW);
    env.getMViewPtr()->update();
    MTransform& transform = *env.getMTransformPtr();
    transform.mTransType = NO_TRANSFORM;
    transform.processStart();
    glGetDoublev(GL_MODELVIEW_MATRIX, out.modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, out.projection);
    glPopMatrix();
    glPopMatrix();
    glPopMatrix();
    return out;
}

// Rows of the rotation in a modelview, and the scale beside it; 0 where directions are scaled differently.
struct Turned
{
    Point3 rows[3];
    double scale;
};

Turned turnedBy(const double m[16])
{
    Turned out = {};
    double lengths[3];
    for (std::size_t row = 0; row < 3; ++row) {
        out.rows[row] = {m[row], m[4 + row], m[8 + row]};
        lengths[row] = std::hypot(m[row], m[4 + row], m[8 + row]);
    }
    const double scale = (lengths[0] + lengths[1] + lengths[2]) / 3;
    bool right = scale > 0;
    for (std::size_t row = 0; row < 3; ++row) {
        const Point3 &a = out.rows[row], &b = out.rows[(row + 1) % 3];
        right = right && std::fabs(lengths[row] - scale) < 1e-4 * scale &&
                std::fabs(a[0] * b[0] + a[1] * b[1] + a[2] * b[2]) < 1e-4 * scale * scale;
    }
    for (Point3& row : out.rows) {
        row = {row[0] / scale, row[1] / scale, row[2] / scale};
    }
    out.scale = right ? scale : 0;
    return out;
}

// The quaternion as the transformation keeps it: its matrix may be that of the inverse.
void setRotation(MTransform& transform, const Rotation& rotation)
{
    const std::array<double, 4>& q = rotation.quaternion();
    float quaternion[4] = {static_cast<float>(q[1]), static_cast<float>(q[2]), static_cast<float>(q[3]),
                           static_cast<float>(q[0])};
    float matrix[4][4], copy[4];
    std::copy(quaternion, quaternion + 4, copy);
    build_rotmatrix(matrix, copy);
    double error = 0;
    for (std::size_t column = 0; column < 3; ++column) {
        Point3 axis = {0, 0, 0};
        axis[column] = 1;
        const Point3 wanted = rotation(axis);
        for (std::size_t row = 0; row < 3; ++row) {
            error += std::fabs(matrix[column][row] - wanted[row]);
        }
    }
    if (error > 1e-3) {
        quaternion[3] = -quaternion[3];
    }
    std::copy(quaternion, quaternion + 4, transform.curQuat);
}

Rotation rotationOf(const Turned& turned) // from the eye's axes to the model's
{
    return Rotation::ofAxes(turned.rows[0], turned.rows[1], turned.rows[2]);
}

// Where the middle of the picture is in eye coordinates.
Point3 middleOf(const Matrices& m)
{
    return {-m.projection[12] / m.projection[0], -m.projection[13] / m.projection[5], 0};
}

Point3 eyeOf(const Matrices& m, const Point3& point)
{
    Point3 out;
    for (std::size_t row = 0; row < 3; ++row) {
        out[row] = m.modelview[row] * point[0] + m.modelview[4 + row] * point[1] + m.modelview[8 + row] * point[2] +
                   m.modelview[12 + row];
    }
    return out;
}

double pixelsPerEyeUnit(const Matrices& m, Viewport viewport)
{
    return std::fabs(m.projection[0]) * viewport.width / 2;
}

[[noreturn]] void fail(const std::string& file, const std::string& why)
{
    throw ProgramError(file, why + "; --contract keeps view states of the drawing library's own views");
}

} // namespace

Camera cameraOfState(CAEEnv& env, Viewport viewport, const std::string& file)
{
    const Matrices m = matricesOf(env, viewport);
    const Turned turned = turnedBy(m.modelview);
    const double pixels = pixelsPerEyeUnit(m, viewport) * turned.scale;
    if (!(pixels > 0) || !std::isfinite(pixels)) {
        fail(file, "its view scales directions differently, which no camera does");
    }
    const Box visible = visibleBox(env);
    Point3 fromTarget = middleOf(m);
    const Point3 middle = {visible.center(0), visible.center(1), visible.center(2)}, seen = eyeOf(m, middle);
    double largest = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        fromTarget[axis] = axis < 2 ? (fromTarget[axis] - seen[axis]) / turned.scale : 0;
        largest = std::max(largest, std::fabs(middle[axis]));
    }
    if (largest * pixels * 1e-7 > closePixels) { // rounding of single precision in the matrices
        fail(file, "the model lies too far from its origin for the single precision of a view state");
    }
    Camera out;
    out.setOrientation(rotationOf(turned));
    out.setScale(std::min(viewport.width, viewport.height) / pixels);
    const Point3 shift = out.orientation()(fromTarget);
    out.setTarget({middle[0] + shift[0], middle[1] + shift[1], middle[2] + shift[2]});
    return out;
}

void cameraIntoState(CAEEnv& env, const Camera& camera, Viewport viewport, const std::string& file)
{
    if (camera.perspective() > 0) {
        throw ProgramError(file, "a view state keeps no perspective");
    }
    MTransform& transform = *env.getMTransformPtr();
    int& view = env.getMViewPtr()->mViewType;
    view = view < ISO_VIEW || view > BACK_VIEW ? static_cast<int>(ISO_VIEW) : view;
    transform.resetAll();
    const Matrices standard = matricesOf(env, viewport);
    const Turned turned = turnedBy(standard.modelview);
    setRotation(transform, rotationOf(turned) * camera.orientation().inverse());
    const double scale = camera.pixelsPerUnit(viewport) / (pixelsPerEyeUnit(standard, viewport) * turned.scale);
    std::fill(transform.localScale, transform.localScale + 3, static_cast<float>(scale));

    const Matrices unmoved = matricesOf(env, viewport);
    const Point3 at = eyeOf(unmoved, camera.target()), middle = middleOf(unmoved);
    const Point3 shift = camera.orientation()(
        {(middle[0] - at[0]) / turned.scale, (middle[1] - at[1]) / turned.scale, (middle[2] - at[2]) / turned.scale});
    for (std::size_t axis = 0; axis < 3; ++axis) {
        transform.localTrans[axis] = static_cast<float>(shift[axis]);
    }
    const Matrices made = matricesOf(env, viewport);
    std::copy(made.modelview, made.modelview + 16, transform.mvMatrix);
    std::copy(made.projection, made.projection + 16, transform.projMatrix);
    transform.onlyOnce &= ~2; // the pivot is known
    transform.depthTest = glIsEnabled(GL_DEPTH_TEST);

    const Camera back = cameraOfState(env, viewport, file);
    const std::optional<PicturePoint> place = back.project(camera.target(), viewport);
    const double off = std::hypot(place->pixel.x - viewport.width / 2.0, place->pixel.y - viewport.height / 2.0);
    if (!(off < closePixels) || std::fabs(back.scale() / camera.scale() - 1) > 1e-4) {
        fail(file, "a view state cannot keep this view exactly");
    }
}

} // namespace kvo
