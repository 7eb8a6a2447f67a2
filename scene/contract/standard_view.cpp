#include <kvo/standard_view.h>

#include <algorithm>
#include <cmath>

#include <GL/gl.h>

#include "caeenv.h"
#include "loaded.h"
#include "mtrans.h"
#include "mview.h"
#include "trackball.h"

namespace kvo {

namespace {

// Rows: the eye's axes (right, up, towards the viewer) in model coordinates.
struct Orientation
{
    double rows[3][3];
};

// What MView's orientation of a view is, without its shifts.
Orientation orientationOf(MView& view, int viewType)
{
    typedef void (MView::*View)();
    static constexpr View views[] = {nullptr,          &MView::isoView,   &MView::topView,   &MView::bottomView,
                                     &MView::leftView, &MView::rightView, &MView::frontView, &MView::backView};
    const View orient = views[viewType];
    GLint mode = GL_MODELVIEW;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    (view.*orient)();
    double m[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, m);
    glPopMatrix();
    glMatrixMode(static_cast<GLenum>(mode));
    Orientation out;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            out.rows[row][column] = m[4 * column + row];
        }
    }
    return out;
}

// How well an orientation shows what the view's name says.
double rightness(const Orientation& o, int viewType)
{
    const double upward = o.rows[2][2]; // the viewer is above the model
    switch (viewType) {
    case TOP_VIEW:
        return 4 * upward + 2 * o.rows[1][1] + o.rows[0][0];
    case BOTTOM_VIEW:
        return -4 * upward + 2 * o.rows[0][0];
    default:
        return o.rows[1][2]; // z upwards
    }
}

// Half a turn about one of the eye's axes turns the other two round.
Orientation halfTurn(const Orientation& o, int axis)
{
    Orientation out = o;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3 && row != axis; ++column) {
            out.rows[row][column] = -out.rows[row][column];
        }
    }
    return out;
}

Orientation upright(const Orientation& o, int viewType)
{
    Orientation best = o;
    for (int axis = 2; axis >= 0; --axis) { // about the line of sight first: it keeps the side that is seen
        const Orientation turned = halfTurn(o, axis);
        if (rightness(turned, viewType) > rightness(best, viewType) + 0.1) {
            best = turned;
        }
    }
    if (viewType == ISO_VIEW && best.rows[2][2] < 0) { // from as much below as it should be above
        const double angle = 2 * std::asin(std::min(1.0, -best.rows[2][2]));
        const double c = std::cos(angle), s = std::sin(angle);
        const Orientation from = best;
        for (int k = 0; k < 3; ++k) {
            best.rows[1][k] = c * from.rows[1][k] - s * from.rows[2][k];
            best.rows[2][k] = s * from.rows[1][k] + c * from.rows[2][k];
        }
    }
    return best;
}

// The quaternion (x, y, z, w) of a rotation matrix given by rows. Shepperd, Journal of Guidance and Control 1(3), 1978.
void quaternionOf(const double r[3][3], double q[4])
{
    const double squares[4] = {1 + r[0][0] - r[1][1] - r[2][2], 1 - r[0][0] + r[1][1] - r[2][2],
                               1 - r[0][0] - r[1][1] + r[2][2], 1 + r[0][0] + r[1][1] + r[2][2]};
    const int largest = static_cast<int>(std::max_element(squares, squares + 4) - squares);
    const double l = std::sqrt(squares[largest]) / 2;
    const double wx = r[2][1] - r[1][2], wy = r[0][2] - r[2][0], wz = r[1][0] - r[0][1];
    const double xy = r[0][1] + r[1][0], xz = r[0][2] + r[2][0], yz = r[1][2] + r[2][1];
    const double rows[4][4] = {{0, xy, xz, wx}, {xy, 0, yz, wy}, {xz, yz, 0, wz}, {wx, wy, wz, 0}};
    for (int k = 0; k < 4; ++k) {
        q[k] = k == largest ? l : rows[largest][k] / (4 * l);
    }
}

// Whether the transformation's matrix of a quaternion is this rotation.
bool makes(const float q[4], const double r[3][3])
{
    float matrix[4][4], copy[4] = {q[0], q[1], q[2], q[3]};
    build_rotmatrix(matrix, copy);
    double error = 0;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            error += std::fabs(matrix[column][row] - r[row][column]); // OpenGL takes it column after column
        }
    }
    return error < 1e-3;
}

} // namespace

void setStandardView(CAEEnv& env, int viewType)
{
    requireLoaded(env);
    MTransform& transform = *env.mTrans;
    env.mView->mViewType = viewType;
    std::fill(transform.globalRot, transform.globalRot + 3, 0.0f);
    const float none[4] = {0, 0, 0, 1};
    std::copy(none, none + 4, transform.curQuat);
    if (viewType < ISO_VIEW || viewType > BACK_VIEW) {
        return;
    }
    // The rotation acts on the model before the view: view x rotation = wanted.
    const Orientation view = orientationOf(*env.mView, viewType), wanted = upright(view, viewType);
    double rotation[3][3] = {};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            for (int k = 0; k < 3; ++k) {
                rotation[row][column] += view.rows[k][row] * wanted.rows[k][column];
            }
        }
    }
    double q[4];
    quaternionOf(rotation, q);
    float quaternion[4] = {static_cast<float>(q[0]), static_cast<float>(q[1]), static_cast<float>(q[2]),
                           static_cast<float>(q[3])};
    if (!makes(quaternion, rotation)) { // the trackball's convention is the inverse one
        quaternion[3] = -quaternion[3];
    }
    std::copy(quaternion, quaternion + 4, transform.curQuat);
}

} // namespace kvo
