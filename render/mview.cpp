// Standard views: orientation by the signs of the model's coordinates, then the fit to the viewport.
#include "mview.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <cmath>

#include "diagnostics.h"

namespace {

const double viewMargin = 0.95;

// Which row of a view's table applies. The x test comes first.
enum class SignCase
{
    XPositiveZPositive,
    XPositiveZNot,
    YPositive,
    YNegative,
    Other
};

SignCase signCaseOf(const MView& view)
{
    if (view.xAxisType == X_BOTH_POSITIVE) {
        return view.zAxisType == Z_BOTH_POSITIVE ? SignCase::XPositiveZPositive : SignCase::XPositiveZNot;
    }
    if (view.yAxisType == Y_BOTH_POSITIVE) {
        return SignCase::YPositive;
    }
    return view.yAxisType == Y_BOTH_NEGATIVE ? SignCase::YNegative : SignCase::Other;
}

// Sums and halves of the extents, in float.
struct BoxSums
{
    float sx, sy, sz, dz, t, cy;

    explicit BoxSums(const float* e)
        : sx(e[0] + e[1]), sy(e[2] + e[3]), sz(e[4] + e[5]), dz((e[4] - e[5]) / 2), t((e[3] - e[2]) / 2 - e[3]),
          cy(sy / 2)
    {
    }
    // The z shift of the front and back views of models with positive y.
    float frontShift() const { return static_cast<float>(-static_cast<double>(sz / 2) - static_cast<double>(cy)); }
};

void startOrientation()
{
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}
void rotateX(float degrees)
{
    glRotatef(degrees, 1, 0, 0);
}
void rotateZ(float degrees)
{
    glRotatef(degrees, 0, 0, 1);
}

double smallerOf(double sx, double sy)
{
    return !(sy > sx) ? sy : sx;
}

// deliberate(axis-class-sticks): a range of mixed signs keeps the class that the axis had before.
void classify(float low, float high, int positive, int negative, int& type)
{
    if (low >= 0 && high >= 0) {
        type = positive;
    } else if (low < 0 && high < 0) {
        type = negative;
    }
}

} // namespace

MView::MView(float* extents)
    : modelExtents(extents), xAxisType(AXIS_OTHER_TYPE), yAxisType(AXIS_OTHER_TYPE), zAxisType(AXIS_OTHER_TYPE),
      mViewType(ISO_VIEW)
{
    setExtents(extents);
}

void MView::setExtents(float* exts)
{
    modelExtents = exts;
    classify(exts[0], exts[1], X_BOTH_POSITIVE, X_BOTH_NEGATIVE, xAxisType);
    classify(exts[2], exts[3], Y_BOTH_POSITIVE, Y_BOTH_NEGATIVE, yAxisType);
    classify(exts[4], exts[5], Z_BOTH_POSITIVE, Z_BOTH_NEGATIVE, zAxisType);
}

void MView::update()
{
    typedef void (MView::*Orientation)();
    static constexpr Orientation orientationOf[] = {
        nullptr,          &MView::isoView,   &MView::topView,   &MView::bottomView,
        &MView::leftView, &MView::rightView, &MView::frontView, &MView::backView};
    if (mViewType >= ISO_VIEW && mViewType <= BACK_VIEW) {
        const Orientation orientation = orientationOf[mViewType]; // a step of its own: GCC 12's sanitizer miscounts it
        (this->*orientation)();
    }
    getMatrices();
}

// deliberate(views-irregular): the tables below are tuned by hand for the sign cases; mirrored shifts are -sx and not
// -sx / 2, z is centred in some rows and shifted by dz in others, top and bottom trade roles. Saved views depend on
// them.

void MView::rightView()
{
    startOrientation();
    const BoxSums box(modelExtents);
    switch (signCaseOf(*this)) {
    case SignCase::XPositiveZPositive:
        rotateX(-90);
        glTranslatef(0, 0, -box.sz / 2);
        break;
    case SignCase::XPositiveZNot:
        rotateX(-90);
        rotateZ(180);
        glTranslatef(-box.sx, 0, -box.sz / 2);
        break;
    case SignCase::YPositive:
        rotateX(90);
        break;
    case SignCase::YNegative:
        glTranslatef(0, -box.t, 0);
        rotateX(-90);
        glTranslatef(0, 0, box.dz);
        break;
    case SignCase::Other:
        rotateX(-90);
        glTranslatef(0, 0, box.dz);
        break;
    }
}

void MView::leftView()
{
    startOrientation();
    const BoxSums box(modelExtents);
    switch (signCaseOf(*this)) {
    case SignCase::XPositiveZPositive:
        rotateX(-90);
        rotateZ(180);
        glTranslatef(-box.sx, 0, -box.sz / 2);
        break;
    case SignCase::XPositiveZNot:
        rotateX(-90);
        glTranslatef(0, 0, -box.sz / 2);
        break;
    case SignCase::YPositive:
        rotateX(90);
        rotateZ(-180);
        glTranslatef(-box.sx, 0, 0);
        break;
    case SignCase::YNegative:
        glTranslatef(0, -box.t, 0);
        rotateX(-90);
        rotateZ(-180);
        glTranslatef(-box.sx, 0, box.dz);
        break;
    case SignCase::Other:
        rotateX(-90);
        rotateZ(-180);
        glTranslatef(-box.sx, 0, box.dz);
        break;
    }
}

void MView::backView()
{
    startOrientation();
    const BoxSums box(modelExtents);
    switch (signCaseOf(*this)) {
    case SignCase::XPositiveZPositive:
        rotateX(-90);
        rotateZ(-90);
        glTranslatef(0, box.sx / 2, box.dz);
        break;
    case SignCase::XPositiveZNot:
        rotateX(-90);
        rotateZ(90);
        glTranslatef(0, -box.sx / 2, box.dz);
        break;
    case SignCase::YPositive:
        rotateX(90);
        rotateZ(90);
        glTranslatef(0, -box.cy, box.frontShift());
        break;
    case SignCase::YNegative:
        glTranslatef(0, -box.t, 0);
        rotateX(-90);
        rotateZ(-90);
        glTranslatef(0, box.sx / 2 + box.t, box.dz);
        break;
    case SignCase::Other:
        rotateX(-90);
        rotateZ(-90);
        glTranslatef(0, box.sx / 2, box.dz);
        break;
    }
}

void MView::frontView()
{
    startOrientation();
    const BoxSums box(modelExtents);
    switch (signCaseOf(*this)) {
    case SignCase::XPositiveZPositive:
        rotateX(-90);
        rotateZ(90);
        glTranslatef(0, -box.sx / 2, box.dz);
        break;
    case SignCase::XPositiveZNot:
        rotateX(-90);
        rotateZ(-90);
        glTranslatef(0, box.sx / 2, box.dz);
        break;
    case SignCase::YPositive:
        rotateX(90);
        rotateZ(-90);
        glTranslatef(0, -box.cy, box.frontShift());
        break;
    case SignCase::YNegative:
        glTranslatef(0, -box.t, 0);
        rotateX(-90);
        rotateZ(90);
        glTranslatef(0, -box.sx / 2 + box.t, box.dz);
        break;
    case SignCase::Other:
        rotateX(-90);
        rotateZ(90);
        glTranslatef(0, -box.sx / 2, box.dz);
        break;
    }
}

void MView::topView()
{
    startOrientation();
    const BoxSums box(modelExtents);
    if (yAxisType == Y_BOTH_POSITIVE) {
        return;
    }
    if (yAxisType == Y_BOTH_NEGATIVE) {
        glTranslatef(0, -box.t, 0);
        rotateX(180);
        glTranslatef(0, box.t, 0);
    } else {
        rotateX(180);
    }
}

void MView::bottomView()
{
    startOrientation();
    if (yAxisType != Y_BOTH_POSITIVE) {
        return;
    }
    const BoxSums box(modelExtents);
    glTranslatef(0, box.cy, 0);
    rotateX(180);
    glTranslatef(0, -box.cy, 0);
}

void MView::isoView()
{
    leftView();
    rotateX(10);
}

namespace {

// The matrices in force, for projecting and unprojecting.
struct Matrices
{
    int viewPort[4];
    double modelview[16];
    double projection[16];

    Matrices()
    {
        glGetIntegerv(GL_VIEWPORT, viewPort);
        readMatrices();
    }
    void readMatrices()
    {
        glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
        glGetDoublev(GL_PROJECTION_MATRIX, projection);
    }
};

} // namespace

void MView::getMatrices()
{
    Matrices matrices;
    double low[3] = {0, 0, 0}, high[3] = {0, 0, 0};
    const float* e = modelExtents;
    gluProject(e[0], e[2], e[4], matrices.modelview, matrices.projection, matrices.viewPort, &low[0], &low[1], &low[2]);
    gluProject(e[1], e[3], e[5], matrices.modelview, matrices.projection, matrices.viewPort, &high[0], &high[1],
               &high[2]);
    diagnostics::printList(label::afterViewMin, low, 3);
    diagnostics::printList(label::afterViewMax, high, 3);

    double scale[3] = {std::fabs(high[0] - low[0]), std::fabs(high[1] - low[1]), 1};
    for (int axis = 0; axis < 2; ++axis) {
        if (scale[axis] != 0) {
            scale[axis] = matrices.viewPort[2 + axis] / scale[axis];
        }
        if (scale[axis] == 0) {
            scale[axis] = 1;
        }
    }
    // deliberate(iso-edge-to-edge): the iso view fills the viewport, the other views leave a margin.
    if (mViewType >= ISO_VIEW && mViewType <= BACK_VIEW) {
        const double margin = mViewType == ISO_VIEW ? 1.0 : viewMargin;
        scale[0] = scale[1] = scale[2] = margin * smallerOf(scale[0], scale[1]);
    }
    diagnostics::printList(label::scale, scale, 3);
    glScalef(static_cast<float>(scale[0]), static_cast<float>(scale[1]), static_cast<float>(scale[2]));

    matrices.readMatrices();
    double center[3] = {0, 0, 0}, model[3];
    const int middle[2] = {matrices.viewPort[2] / 2, matrices.viewPort[3] / 2};
    gluUnProject(middle[0], middle[1], 0.5, matrices.modelview, matrices.projection, matrices.viewPort, &center[0],
                 &center[1], &center[2]);
    diagnostics::printList(label::viewCenterOfWindow, center, 3);
    for (int axis = 0; axis < 3; ++axis) {
        const float sum = e[2 * axis] + e[2 * axis + 1];
        model[axis] = sum / 2.0;
    }
    diagnostics::printList(label::viewCenterOfModel, model, 3);
    glTranslatef(static_cast<float>(center[0] - model[0]), static_cast<float>(center[1] - model[1]),
                 static_cast<float>(center[2] - model[2]));
}
