// Pictures that show nothing of the model.
#ifndef KVO_EMPTY_PICTURE_H
#define KVO_EMPTY_PICTURE_H

#include <string>

#include "picture.h"
#include <kvo/scene_view.h>

class CAEEnv;

namespace kvo {

// Does anything but the background show, apart from the corner of the axes?
bool isMarked(const Picture& picture, Color background);

// Are the coordinates of what is shown so large or small that single precision does not hold the matrices of a view?
bool isBeyondDrawing(CAEEnv& env);

// Why nothing of the model is to be seen, as far as that is known: ": all its parts are hidden"; else "".
std::string whyEmpty(CAEEnv& env, const SceneSection& section);

} // namespace kvo

#endif
