// The frame bracket: the model transform pushed before drawing, overlays and captured matrices after it.
#include "mtrans.h"

#include <GL/gl.h>

#include "binary_io.h"
#include "diagnostics.h"
#include "rubberband.h"
#include "trackball.h"
#include "unit_axis.h"

namespace {

const float markerSize = 15;
// deliberate(polyline-from-four-points): a polyline of three points or fewer is not drawn.
const std::size_t pointsNotDrawn = 3;

void translateTo(const double* center, double sign)
{
    glTranslatef(static_cast<float>(sign * center[0]), static_cast<float>(sign * center[1]),
                 static_cast<float>(sign * center[2]));
}

void drawScalingMarker(const double* center)
{
    glColor3f(1, 0, 0);
    glPointSize(markerSize);
    glEnable(GL_POINT_SMOOTH);
    glBegin(GL_POINTS);
    glVertex3dv(center);
    glEnd();
    glPointSize(1);
    glDisable(GL_POINT_SMOOTH);
}

bool marksCenterOfScaling(int operation)
{
    return operation == SCALE_INCR || operation == SCALE_DECR || operation == GLOBAL_SCALE || operation == RECT_SCALE ||
           operation == RECT_PICK;
}

} // namespace

void MTransform::processStart()
{
    update();
    glGetDoublev(GL_MODELVIEW_MATRIX, mvMatrixLocal);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    for (int axis = 0; axis < 3; ++axis) {
        mvMatrixLocal[12 + axis] += globalTrans[axis];
    }
    glLoadMatrixd(mvMatrixLocal);
    diagnostics::printTransform(globalTrans);
    diagnostics::printTransform(globalRot);

    glPushMatrix();
    translateTo(centerOfWindow, 1);
    glRotatef(globalRot[0], 1, 0, 0);
    glRotatef(globalRot[1], 0, 1, 0);
    glRotatef(globalRot[2], 0, 0, 1);
    build_rotmatrix(rotMatrix, curQuat);
    glMultMatrixf(&rotMatrix[0][0]);
    translateTo(centerOfWindow, -1);

    glPushMatrix();
    glTranslatef(localTrans[0], localTrans[1], localTrans[2]);
    glScalef(localScale[0], localScale[1], localScale[2]);
}

void MTransform::processEnd()
{
    depthTest = glIsEnabled(GL_DEPTH_TEST);
    glDisable(GL_DEPTH_TEST);
    UnitAxis::render(axisLength, 0);
    // The band is unprojected with the previous frame's projection; this frame's is read below.
    if (marksCenterOfScaling(mTransType)) {
        drawScalingMarker(centerOfScaling);
    } else if (mTransType == START_RUBBER_BAND) {
        createRubberBand(viewPort, mouseValues, projMatrix);
    } else if (mTransType == START_POLYLINE && pointsList.size() > pointsNotDrawn) {
        createPolyline(pointsList);
    }
    glGetDoublev(GL_MODELVIEW_MATRIX, mvMatrix);
    glGetDoublev(GL_PROJECTION_MATRIX, projMatrix);
    if (depthTest) {
        glEnable(GL_DEPTH_TEST);
    }
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
    glPopMatrix();
    glPopMatrix();
    mTransType = NO_TRANSFORM;
    if (onlyOnce & windowCenterPending) {
        onlyOnce &= ~windowCenterPending;
        computeWindowCenter();
    }
}
