// Operations on the user's transformation: rotation, pan, scale steps, mouse drags.
#include "mtrans.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>

#include "binary_io.h"
#include "diagnostics.h"
#include "trackball.h"

namespace {

// Keyboard steps that wait for the next frame.
enum class StepKind
{
    Rotate,
    Pan
};
struct Step
{
    int operation;
    StepKind kind;
    int axis;
    float sign;
    bool printsAngle;
};
constexpr Step steps[] = {
    // deliberate(only-rotx-printed): one of the six rotations comments on itself.
    {ROTATE_X_CCW, StepKind::Rotate, 0, 1, true},  {ROTATE_X_CW, StepKind::Rotate, 0, -1, false},
    {ROTATE_Y_CCW, StepKind::Rotate, 1, 1, false}, {ROTATE_Y_CW, StepKind::Rotate, 1, -1, false},
    {ROTATE_Z_CCW, StepKind::Rotate, 2, 1, false}, {ROTATE_Z_CW, StepKind::Rotate, 2, -1, false},
    {TRANS_LEFT, StepKind::Pan, 0, -1, false},     {TRANS_RIGHT, StepKind::Pan, 0, 1, false},
    {TRANS_UP, StepKind::Pan, 1, 1, false},        {TRANS_DOWN, StepKind::Pan, 1, -1, false},
};
constexpr float rotationStep = 5;
constexpr float panStepsPerSpan = 50;

// deliberate(span-of-magnitudes): abs(min) + abs(max), not max - min; pan and triad sizes are tuned to it.
float spanOf(const float* extents, int axis)
{
    return std::fabs(extents[2 * axis]) + std::fabs(extents[2 * axis + 1]);
}

// deliberate(full-turn-reads-360): only angles beyond a full turn wrap, and by one turn only.
float wrapped(float angle)
{
    if (angle > 360) {
        return angle - 360;
    }
    return angle < -360 ? angle + 360 : angle;
}

void raiseToMinimum(float* scale)
{
    for (int axis = 0; axis < 3; ++axis) {
        scale[axis] = scale[axis] < MIN_SCALE_FACTOR ? MIN_SCALE_FACTOR : scale[axis];
    }
}

void freePoints(std::vector<Point3D*>& points)
{
    for (Point3D* point : points) {
        delete point;
    }
    points.clear();
}

} // namespace

MTransform::MTransform(float* extents)
    : mTransType(NO_TRANSFORM), depthTest(0), onlyOnce(windowCenterPending), viewPort(), modelExtents(extents),
      mouseValues(), rotMatrix(), mvMatrix(), mvMatrixLocal(), projMatrix(), centerOfScaling(), centerOfWindow(),
      startOfScaling(), endOfScaling()
{
    resetAll();
    // deliberate(triad-x-shorter): x is divided by 15, y and z by 10.
    axisLength[0] = spanOf(extents, 0) / 15;
    axisLength[1] = spanOf(extents, 1) / 10;
    axisLength[2] = spanOf(extents, 2) / 10;
    diagnostics::printList(label::axisLength, axisLength, 3);
}

// deliberate(points-outlive-list): points still held are not freed; POLYLINE_PICK frees them.
MTransform::~MTransform() {}

void MTransform::resetAll()
{
    for (int k = 0; k < 3; ++k) {
        curQuat[k] = 0;
        globalRot[k] = localTrans[k] = globalTrans[k] = 0;
        localScale[k] = 1;
    }
    curQuat[3] = 1;
}

void MTransform::setViewport(int w, int h)
{
    viewPort[0] = viewPort[1] = 0;
    viewPort[2] = w;
    viewPort[3] = h;
    diagnostics::printList(label::viewport, viewPort, 4);
}

void MTransform::setTranslation(float* t)
{
    std::copy(t, t + 3, localTrans);
}

void MTransform::setRotation(float* r)
{
    float rotation[4];
    // deliberate(pi-as-22-over-7): 22 / 1260 = (22 / 7) / 180.
    axis_to_quat(r, 22 * r[3] / 1260, rotation);
    add_quats(rotation, curQuat, curQuat);
}

std::vector<Point3D*>& MTransform::getPointsList()
{
    return pointsList;
}

void MTransform::update()
{
    if (mTransType >= GLOBAL_TRANSLATION) {
        return;
    }
    if (mTransType == RESET_TRANSFORM) {
        resetAll();
    } else if (mTransType == SCALE_INCR) {
        updateLocalScaleForWindow(SCALE_FACTOR);
    } else if (mTransType == SCALE_DECR) {
        updateLocalScaleForWindow(-SCALE_FACTOR);
        raiseToMinimum(localScale);
    }
    for (const Step& step : steps) {
        if (step.operation != mTransType) {
            continue;
        }
        if (step.kind == StepKind::Rotate) {
            globalRot[step.axis] = wrapped(globalRot[step.axis] + step.sign * rotationStep);
        } else {
            globalTrans[step.axis] += step.sign * (spanOf(modelExtents, step.axis) / panStepsPerSpan);
        }
        if (step.printsAngle) {
            diagnostics::print(label::rotationX, globalRot[step.axis]);
        }
    }
}

void MTransform::updateValues(int trans_type, float* values)
{
    mTransType = trans_type;
    switch (trans_type) {
    case GLOBAL_TRANSLATION:
        for (int axis = 0; axis < 2; ++axis) {
            const float pixelsPerUnit = values[2 + axis] / spanOf(modelExtents, axis);
            globalTrans[axis] += values[axis] / pixelsPerUnit;
        }
        break;
    case GLOBAL_SCALE:
        updateLocalScaleForWindow(values[0]);
        raiseToMinimum(localScale);
        break;
    case GLOBAL_ROTATION: {
        const double w = viewPort[2], h = viewPort[3];
        float rotation[4];
        trackball(rotation, static_cast<float>((2.0 * values[0] - w) / w),
                  static_cast<float>((h - 2.0 * values[1]) / h), static_cast<float>((2.0 * values[2] - w) / w),
                  static_cast<float>((h - 2.0 * values[3]) / h));
        add_quats(rotation, curQuat, curQuat);
        break;
    }
    case START_RUBBER_BAND:
        std::copy(values, values + 4, mouseValues);
        break;
    case START_POLYLINE:
        addPoint(values);
        break;
    case RECT_SCALE:
        updateLocalScaleForRubberBand();
        std::fill(mouseValues, mouseValues + 4, 0.0f);
        break;
    case RECT_PICK:
        updateRect();
        std::fill(mouseValues, mouseValues + 4, 0.0f);
        break;
    case END_RUBBER_BAND:
        std::fill(mouseValues, mouseValues + 4, 0.0f);
        break;
    case POLYLINE_PICK:
        freePoints(pointsList);
        break;
    default: // waits for the next frame, or nothing to do
        break;
    }
}

void MTransform::setValues(float* values)
{
    for (int axis = 0; axis < 2; ++axis) {
        globalTrans[axis] = values[3 + axis] * spanOf(modelExtents, axis) / viewPort[2 + axis];
    }
    diagnostics::printTransform(globalTrans);
    diagnostics::printTransform(globalRot);
    if (values[0] != 0 || values[1] != 0 || values[2] != 0) {
        for (int axis = 0; axis < 3; ++axis) {
            globalRot[axis] = wrapped(values[axis]);
        }
    }
    diagnostics::printRanges("", modelExtents);
    updateWindowCenter();
    diagnostics::printList(label::centerOfWindow, centerOfWindow, 3);
    glGetDoublev(GL_PROJECTION_MATRIX, projMatrix);
    glGetDoublev(GL_MODELVIEW_MATRIX, mvMatrix);
    glGetIntegerv(GL_VIEWPORT, viewPort);
    printMatrices();
    updateLocalScaleForWindow(values[6]);
    mTransType = TRANS_MAX;
}
