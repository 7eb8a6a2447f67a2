// Outlines that the user drags over the model.
#ifndef RUBBERBAND_H
#define RUBBERBAND_H

#include <vector>

#include "kvoexport.h"
#include "mtrans.h"

// White rectangle over the model. view_port[4]; mouse_values[4] = start x, start y, end x, end y in window coordinates
// (origin lower left); proj_mat[16] the current projection, column-major. Leaves GL_MODELVIEW as matrix mode.
KVO_EXPORT void createRubberBand(int* view_port, float* mouse_values, double* proj_mat);

// White closed outline through the points, under the modelview in force.
KVO_EXPORT void createPolyline(std::vector<Point3D*>& points_list);

#endif
