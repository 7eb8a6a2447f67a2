// Zoom about a point of the window, and the centre of the window.
//
// Everything unprojects with the matrices and viewport of the last frame, at window depth 0.5.
#include "mtrans.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <cstdio>

#include "diagnostics.h"

namespace {

const double windowDepth = 0.5;

void unproject(const MTransform& trans, float x, float y, double* world)
{
    gluUnProject(x, y, windowDepth, trans.mvMatrix, trans.projMatrix, trans.viewPort, &world[0], &world[1], &world[2]);
}

// Middle of the window in integer pixels; the viewport's own offset is not added.
struct HalfWindow
{
    float w;
    float h;

    explicit HalfWindow(const int* viewPort)
        // NOLINTNEXTLINE(bugprone-integer-division): whole pixels are meant
        : w(static_cast<float>(viewPort[2] / 2)), h(static_cast<float>(viewPort[3] / 2))
    {
    }
};

// Middle of an axis's range: the sum in float, the halving in double.
double middleOf(const float* extents, int axis)
{
    const float sum = extents[2 * axis] + extents[2 * axis + 1];
    return sum / 2.0;
}

// Scales one axis so that the model coordinate center stays where it is on screen.
void setScaleAbout(MTransform& trans, int axis, double center, float scale)
{
    float& translation = trans.localTrans[axis];
    translation = static_cast<float>(center * trans.localScale[axis] - center * scale + translation);
    trans.localScale[axis] = scale;
}

// Each axis is tested by itself; near the bound one can change while another does not.
void scaleAboutCenter(MTransform& trans, const float* steps)
{
    for (int axis = 0; axis < 3; ++axis) {
        const float scale = trans.localScale[axis] + steps[axis];
        if (scale > MIN_SCALE_FACTOR) {
            setScaleAbout(trans, axis, trans.centerOfScaling[axis], scale);
        }
    }
}

void printScaling(const MTransform& trans)
{
    const float* t = trans.localTrans;
    const float* s = trans.localScale;
    std::cout << "TRANSX=" << t[0] << " TRANSY=" << t[1] << " TRANSZ=" << t[2] << std::endl;
    std::cout << "scaleX=" << s[0] << " scaleY=" << s[1] << " scaleZ=" << s[2] << std::endl;
}

// Storage order is column-major, so each printed row is a column of the matrix.
void printMatrix(const char* name, const double* matrix)
{
    std::cout << name << "=\n[";
    for (int k = 0; k < 16; ++k) {
        char number[400];
        std::snprintf(number, sizeof number, "%10.6f  ", matrix[k]);
        std::cout << number << (k % 4 == 3 ? "\n" : "");
    }
    std::cout << "]\n";
}

} // namespace

void MTransform::updateLocalScaleForWindow(float scale)
{
    const HalfWindow half(viewPort);
    std::cout << "local scale w/2=" << half.w << " h/2=" << half.h << " SCALE=" << scale << std::endl;
    diagnostics::print(label::oldCenterOfScaling, centerOfScaling[0]);
    unproject(*this, half.w, half.h, centerOfScaling);
    diagnostics::printList(label::centerOfScaling, centerOfScaling, 3);
    const float steps[3] = {scale, scale, scale};
    scaleAboutCenter(*this, steps);
    printScaling(*this);
}

void MTransform::updateScaleForWindow(float sx, float sy, float sz)
{
    // deliberate(scale-reads-host-matrix): outside a frame this is the host's matrix, without this object's transforms.
    glGetDoublev(GL_MODELVIEW_MATRIX, mvMatrix);
    const HalfWindow half(viewPort);
    std::cout << "scale w/2=" << half.w << " h/2=" << half.h << std::endl;
    unproject(*this, half.w, half.h, centerOfScaling);
    diagnostics::printList(label::centerOfScaling, centerOfScaling, 3);
    const float steps[3] = {sx, sy, sz};
    scaleAboutCenter(*this, steps);
    printScaling(*this);
}

void MTransform::updateRect()
{
    unproject(*this, mouseValues[0], mouseValues[1], startOfScaling);
    unproject(*this, mouseValues[2], mouseValues[3], endOfScaling);
    for (int axis = 0; axis < 3; ++axis) {
        centerOfScaling[axis] = (startOfScaling[axis] + endOfScaling[axis]) / 2.0;
    }
    diagnostics::printList(label::rectStart, startOfScaling, 3);
    diagnostics::printList(label::centerOfScaling, centerOfScaling, 3);
    diagnostics::printList(label::rectEnd, endOfScaling, 3);
}

void MTransform::updateLocalScaleForRubberBand()
{
    const float dx = mouseValues[2] - mouseValues[0];
    const float dy = mouseValues[1] - mouseValues[3];
    std::cout << "dx=" << dx << " dy=" << dy << std::endl;
    std::cout << "sx=" << mouseValues[0] << " sy=" << mouseValues[1] << std::endl;
    std::cout << "cx=" << mouseValues[2] << " cy=" << mouseValues[3] << std::endl;
    if (dx == 0 || dy == 0) {
        return;
    }
    updateRect();
    // deliberate(band-fixed-step): one step whatever the band's size, and no lower bound.
    for (int axis = 0; axis < 3; ++axis) {
        setScaleAbout(*this, axis, centerOfScaling[axis], SCALE_FACTOR + localScale[axis]);
    }
    printScaling(*this);
}

void MTransform::computeWindowCenter()
{
    const HalfWindow half(viewPort);
    std::cout << "compute wc w/2=" << half.w << " h/2=" << half.h << std::endl;
    printMatrices();
    unproject(*this, half.w, half.h, centerOfWindow);
    // deliberate(window-center-as-cos): the label of the centre of scaling, here too.
    diagnostics::printList(label::centerOfScaling, centerOfWindow, 3);
}

void MTransform::updateWindowCenter()
{
    for (int axis = 0; axis < 3; ++axis) {
        centerOfWindow[axis] = middleOf(modelExtents, axis);
    }
}

void MTransform::moveToCOW()
{
    const HalfWindow half(viewPort);
    double window[3] = {0, 0, 0};
    unproject(*this, half.w, half.h, window);
    diagnostics::printList(label::viewCenterOfWindow, window, 3);
    const double model[3] = {middleOf(modelExtents, 0), middleOf(modelExtents, 1), middleOf(modelExtents, 2)};
    diagnostics::printList(label::viewCenterOfModel, model, 3);
    // deliberate(move-ignores-scale): exact only while the scale is 1, and repeated calls repeat the shift.
    for (int axis = 0; axis < 3; ++axis) {
        localTrans[axis] = static_cast<float>(localTrans[axis] + (window[axis] - model[axis]));
    }
}

void MTransform::addPoint(float* mouse_values)
{
    double world[3] = {0, 0, 0};
    unproject(*this, mouse_values[0], mouse_values[1], world);
    Point3D* point = new Point3D;
    for (int axis = 0; axis < 3; ++axis) {
        point->point[axis] = static_cast<float>(world[axis]);
    }
    pointsList.push_back(point);
    diagnostics::printList(label::startWorld, point->point, 3);
}

void MTransform::printMatrices()
{
    printMatrix("LOCALMV", mvMatrixLocal);
    printMatrix("MV", mvMatrix);
    printMatrix("PM", projMatrix);
    diagnostics::printList("VP=", viewPort, 4);
    diagnostics::print("depthtest=", depthTest);
    diagnostics::printList("localTrans=", localTrans, 3);
    diagnostics::printList("globalTrans=", globalTrans, 3);
    diagnostics::printList("globalRot=", globalRot, 3);
    diagnostics::printList("localScale=", localScale, 3);
}
