// The rubber band and the polyline over the model.
#include "rubberband.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include "diagnostics.h"
#include "polygon_mode.h"

void createRubberBand(int* view_port, float* mouse_values, double* proj_mat)
{
    const double identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    double start[3] = {0, 0, 0}, end[3] = {0, 0, 0};
    gluUnProject(mouse_values[0], mouse_values[1], 0.5, identity, proj_mat, view_port, &start[0], &start[1], &start[2]);
    diagnostics::printList(label::startWorld, start, 3);
    gluUnProject(mouse_values[2], mouse_values[3], 0.5, identity, proj_mat, view_port, &end[0], &end[1], &end[2]);
    diagnostics::printList(label::endWorld, end, 3);

    const LineModeScope lineMode;
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glColor4f(1, 1, 1, 1);
    glBegin(GL_LINE_LOOP);
    // deliberate(band-depth-sign): the first corner keeps the sign of its depth, the others have it negated; flat with
    // the symmetric projection, where the depth is 0.
    glVertex3dv(start);
    glVertex3d(end[0], start[1], -start[2]);
    glVertex3d(end[0], end[1], -start[2]);
    glVertex3d(start[0], end[1], -start[2]);
    glEnd();
    glPopMatrix();
}

void createPolyline(std::vector<Point3D*>& points_list)
{
    const LineModeScope lineMode;
    glMatrixMode(GL_MODELVIEW);
    glColor4f(1, 1, 1, 1);
    glBegin(GL_POLYGON);
    for (const Point3D* point : points_list) {
        if (point) {
            glVertex3fv(point->point);
        }
    }
    glEnd();
}
