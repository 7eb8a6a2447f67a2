// Frames a model in a picture without distortion.
//
// The drawing library's projection is exactly the extents box, stretched to the viewport, and its standard views fit
// that same box uniformly in model units. So nothing is distorted exactly when the box's width:height is the
// viewport's. There are two ways to get there: a viewport shaped like the model's box, from which the picture is cut,
// or a box shaped like the picture. This is the second one: before a frame the environment's modelExtents, which views
// and projection read live, are replaced by a box
//   - about the centre of the visible parts' box, so that pivots and panning stay where they were,
//   - with x:y as width:height of the picture, so that a pixel is as wide as it is high in model units,
//   - of a size, and a depth z, for which the library's own fit lets the visible parts fill the picture up to the
//     margin along the tighter direction; the closed form of that fit is in model_frame.cpp.
// The viewport is then the picture itself: no size of a slender, flat or single-point model makes it explode, zooming
// and panning fill the whole picture, and window coordinates are picture coordinates. (With the first way a flat model
// needs a viewport without bounds, or its extents widened after all.)
//
// The same call spreads the depth range over the model: the library projects depths of +-9999 model units, too few for
// models larger than that and too coarse for small ones. The depth of the last frame's window centre, 0.5, is
// unchanged, and with it every unprojection.
//
// The library computes modelExtents anew when parts are shown or hidden, sets the lights from them and resets viewport
// and projection. Nothing is lost: applyFrame() before every frame measures the visible parts itself. Lights are left
// alone, so they stay where the library placed them for the true extents.
#ifndef KVO_SCENE_MODEL_FRAME_H
#define KVO_SCENE_MODEL_FRAME_H

#include <kvo/box.h>

#include <kvoexport.h>

class CAEEnv;

namespace kvo {

// The share of the picture that the visible parts fill along the tighter direction.
constexpr double frameFill = 0.95;

struct Framing
{
    Box box;                  // what modelExtents becomes
    double pixelsPerUnit = 0; // of the model, before the user's own scaling; the same in x and y
    double fitScale = 0;      // the scale that the library's view applies for this box
};

// visible: box of what is to be seen, any axis may be flat. viewType: _MViewType; NO_VIEW is framed like TOP_VIEW.
KVO_EXPORT Framing frameModel(const Box& visible, int viewType, int width, int height);

// The box of the parts that are not hidden, from their records; of all parts when every part is hidden; of +-1 when
// there is none. Extents that are not numbers are left out.
KVO_EXPORT Box visibleBox(CAEEnv& env);

// Call before every frame, with the context current: sets modelExtents, viewport and projection for the environment's
// visible parts, standard view and transformation. Returns what it chose. Throws std::logic_error before a model is
// loaded.
KVO_EXPORT Framing applyFrame(CAEEnv& env, int width, int height);

// After that, for pictures that are the mean of several frames: what is drawn from here on is moved by fractions of a
// pixel, right and up. Text and other bitmaps stay. Throws std::runtime_error for a context without OpenGL 4.1.
KVO_EXPORT void shiftFrame(float right, float up);

} // namespace kvo

#endif
