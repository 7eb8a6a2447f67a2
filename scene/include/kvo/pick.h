// What every pick takes and gives: a region of the window, the view it is seen in, and what was hit.
//
//   const PickView view = viewOf(*env.getMTransformPtr());             // as the last frame was drawn
//   ThroughPicker picker(env);                                         // through_picker.h
//   for (const SceneHit& hit : picker.pick(PickType::Element, PickRegion::click(x, y), view)) ...
//
// Window coordinates are pixels from the lower left corner of the window, y upwards, as OpenGL counts them; the middle
// of the lower left pixel is (0.5, 0.5). A host whose mouse counts downwards gives height - y.
#ifndef KVO_SCENE_PICK_H
#define KVO_SCENE_PICK_H

#include <cstdint>
#include <vector>

#include <kvoexport.h>

class MTransform;

namespace kvo {

enum class PickType : std::uint8_t
{
    Part,
    Element,
    Node
};

struct WindowPosition
{
    double x;
    double y;
};

// Where in the window to pick. A region of no or negative width or height is taken as one pixel wide or high.
struct KVO_EXPORT PickRegion
{
    // A square of `size` pixels about (x, y).
    static PickRegion click(double x, double y, double size = 5);
    // Between two opposite corners, in any order.
    static PickRegion rectangle(double x0, double y0, double x1, double y1);
    // The area inside a closed outline: three corners or more, of any shape. Where the outline crosses itself, a point
    // is inside when a ray from it crosses the outline an odd number of times. Fewer corners, or one that is not a
    // finite number, enclose nothing.
    static PickRegion polygon(std::vector<WindowPosition> outline);

    bool isPolygon() const { return outlined; }

    // Centre and size in pixels; of a polygon those of the rectangle around it. Single precision, as PickRect takes
    // them, so that both picks mean exactly the same rectangle.
    float x = 0;
    float y = 0;
    float width = 1;
    float height = 1;
    std::vector<WindowPosition> outline; // of a polygon, else empty
    bool outlined = false;
};

// How the model is seen: what OpenGL was given when the picture was drawn, column after column.
struct PickView
{
    double modelview[16];
    double projection[16];
    int viewport[4];              // x, y, width, height in pixels
    double origin[3] = {0, 0, 0}; // what the matrices take is model coordinates minus this; a float each
};

// The view of the last frame of a host's environment; of a SceneView with a camera SceneView::pickView() gives it.
// After a pick of the contract library (PickRect) the transformation holds that pick's projection until the next frame;
// take the view before it.
KVO_EXPORT PickView viewOf(const MTransform& transform);

// One entity that was hit, at its point nearest to the viewer among those inside the region.
struct SceneHit
{
    std::uint32_t part;     // part number: index in the environment's part list + 1
    std::uint32_t entity;   // element or node number in its part, from 1; 0 for a part
    std::uint32_t partId;   // the deck's part id; 0 where the environment knows none
    std::uint32_t entityId; // the deck's element or node id; 0 for a part and where the record holds none
    float depth;            // 0 (nearest) to 1, as the depth buffer counts
    double window[3];       // x, y in pixels, depth
    double position[3];     // the same point in model coordinates
};

} // namespace kvo

#endif
