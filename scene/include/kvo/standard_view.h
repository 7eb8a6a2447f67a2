// Standard views that show what their names say.
#ifndef KVO_SCENE_STANDARD_VIEW_H
#define KVO_SCENE_STANDARD_VIEW_H

#include <kvoexport.h>

class CAEEnv;

namespace kvo {

// Sets env's MView to the view (_MViewType) and replaces the user's rotation by the one that makes it right: the
// orientations of MView depend on the signs of the model's coordinates, so that top and bottom trade roles, some side
// views stand on their heads, and the iso view looks from below. Afterwards "top" is seen from above with y upwards,
// "bottom" from below, in all others z points upwards, and "iso" looks down. For frames of a SceneView, after loadScene
// or loadAndInitGL, with the context current; pan and scale stay. NO_VIEW only takes the rotation away.
KVO_EXPORT void setStandardView(CAEEnv& env, int viewType);

} // namespace kvo

#endif
