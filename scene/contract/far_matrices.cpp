#include "far_matrices.h"

#include <algorithm>
#include <cmath>

#include "mtrans.h"
#include "scene_camera.h"

namespace kvo {

namespace {

struct Matrix3
{
    double m[3][3]; // row, column
};

Matrix3 operator*(const Matrix3& a, const Matrix3& b)
{
    Matrix3 out = {};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            for (int k = 0; k < 3; ++k) {
                out.m[row][column] += a.m[row][k] * b.m[k][column];
            }
        }
    }
    return out;
}

void multiply(const Matrix3& a, const double v[3], double out[3])
{
    for (int row = 0; row < 3; ++row) {
        out[row] = a.m[row][0] * v[0] + a.m[row][1] * v[1] + a.m[row][2] * v[2];
    }
}

Matrix3 aboutAxis(int axis, double degrees)
{
    const double angle = degrees * 3.14159265358979323846 / 180, c = std::cos(angle), s = std::sin(angle);
    const int next = (axis + 1) % 3, last = (axis + 2) % 3;
    Matrix3 out = {};
    out.m[axis][axis] = 1;
    out.m[next][next] = out.m[last][last] = c;
    out.m[last][next] = s;
    out.m[next][last] = -s;
    return out;
}

// In the order of MTransform::processStart.
Matrix3 rotationOf(const MTransform& transform)
{
    Matrix3 ball;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            ball.m[row][column] = transform.rotMatrix[column][row];
        }
    }
    const float* angles = transform.globalRot;
    return aboutAxis(0, angles[0]) * aboutAxis(1, angles[1]) * aboutAxis(2, angles[2]) * ball;
}

// A standard view scales all directions alike.
Matrix3 rotationOf(const double view[16])
{
    const double scale = std::hypot(view[0], view[1], view[2]);
    Matrix3 out;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            out.m[row][column] = view[4 * column + row] / scale;
        }
    }
    return out;
}

} // namespace

// A point p goes to q = pivot + rotation (translation + scale p - pivot), and q to the eye at
// fit x view (q - middle of the box) + middle of the window + pan.
void setFarMatrices(const Box& visible, const Framing& framing, const double view[16], const MTransform& transform,
                    SceneCamera& camera)
{
    const Matrix3 standard = rotationOf(view), turned = rotationOf(transform), both = standard * turned;
    double fromPivot[3], moved[3], toEye[3];
    for (int axis = 0; axis < 3; ++axis) {
        fromPivot[axis] = transform.localTrans[axis] - transform.centerOfWindow[axis];
    }
    multiply(turned, fromPivot, moved);
    for (int axis = 0; axis < 3; ++axis) {
        moved[axis] += transform.centerOfWindow[axis] - visible.center(axis);
    }
    multiply(standard, moved, toEye);
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            camera.modelview[4 * column + row] = framing.fitScale * both.m[row][column] * transform.localScale[column];
        }
        const double middle = row < 2 ? framing.box.center(row) : 0;
        camera.modelview[12 + row] = framing.fitScale * toEye[row] + middle + transform.globalTrans[row];
    }
    for (int axis = 0; axis < 2; ++axis) { // depth stays as captured
        camera.projection[5 * axis] = 2 / framing.box.size(axis);
        camera.projection[12 + axis] = -2 * framing.box.center(axis) / framing.box.size(axis);
    }
}

} // namespace kvo
