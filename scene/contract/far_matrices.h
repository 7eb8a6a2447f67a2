// The matrices of a frame in double precision, for models that are small against their distance from the origin.
//
// OpenGL's matrix stacks multiply in single precision: a model of size 100 at 10,000,000 from the origin would jump by
// pixels at every step of a rotation, since each of the turned translations is rounded by itself. The same product is
// made here in double precision from what goes into it: the framed box, the standard view's rotation, and the rotation,
// translation and scale of MTransform. What MTransform itself keeps in single precision stays as it is: after zooming,
// localTrans rounds to the grid that single precision has at the model's coordinates.
#ifndef KVO_SCENE_FAR_MATRICES_H
#define KVO_SCENE_FAR_MATRICES_H

#include <kvo/model_frame.h>

class MTransform;

namespace kvo {

struct SceneCamera;

// Replaces modelview and projection of a camera that has captured the frame. visible: the box that framing is for.
// view: OpenGL's modelview after MView::update and before MTransform::processStart, of a standard view: its rotation is
// read.
void setFarMatrices(const Box& visible, const Framing& framing, const double view[16], const MTransform& transform,
                    SceneCamera& camera);

} // namespace kvo

#endif
