// Virtual trackball: window drags as unit quaternions. Quaternions are float[4] = x, y, z, w; identity is (0, 0, 0, 1).
#ifndef TRACKBALL_H
#define TRACKBALL_H

#include "kvoexport.h"

// q = the rotation that carries window point p1 to p2, both in normalised coordinates (-1..1, y upwards), on a sphere
// of radius 0.8 that turns into a hyperbolic sheet outside. Equal points give the identity.
KVO_EXPORT void trackball(float q[4], float p1x, float p1y, float p2x, float p2y);

// dest = rotation q1 followed by rotation q2 (Hamilton product q2 q1); dest may be q1 or q2. Every 98th call in the
// process renormalises its result.
KVO_EXPORT void add_quats(const float q1[4], const float q2[4], float dest[4]);

// q = rotation by phi radians about the axis a (any length but 0).
KVO_EXPORT void axis_to_quat(const float a[3], float phi, float q[4]);

// m = the rotation matrix of q, row by row. glMultMatrixf reads it by columns, so OpenGL applies the transpose; the
// sense of rotation of a drag depends on that.
KVO_EXPORT void build_rotmatrix(float m[4][4], const float q[4]);

#endif
