// Everything in a region of the window, covered or not: parts, elements or nodes by click, rectangle or polygon.
//
// The answer to a click or rectangle is that of the contract library's pick in OpenGL's selection mode (pickrect.h)
// drawn by Mesa on the processor, element for element and depth for depth, without OpenGL, without a limit on the hits
// and without the axis triad:
//   - all faces of all elements count, filled, whatever the polygon mode; quadrilaterals are two triangles that
//     share the diagonal from the second to the fourth corner; what only touches the region's border is inside
//   - beams are lines with a point at their third node in element picks, and nothing in part picks; discrete
//     elements are lines; nodes are points, used by an element or not
//   - what lies before the near plane or behind the far one is cut off
//   - a primitive with a coordinate that is not finite is not there
// Only here: ten-slot tetrahedra are picked where they are (the contract library reads them shifted), elements with
// indices outside their part are left out, parts need no normals, depths at the near and far plane are 0 and 1 (a
// record of selection mode wraps round there), and a region of no size is one pixel and not the whole window.
#ifndef KVO_SCENE_THROUGH_PICKER_H
#define KVO_SCENE_THROUGH_PICKER_H

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include <kvo/pick.h>
#include <kvo/shown_model.h>

namespace kvo {

class KVO_EXPORT ThroughPicker
{
public:
    // What is picked on must outlive the picker. Nothing is built before the first pick that needs it: per part an
    // order of its elements or nodes along a space-filling curve with boxes around blocks of them (about 6 bytes an
    // element; 20 to 60 ms for 1,000,000), and a table of element ids where the numbers do not tell them.
    explicit ThroughPicker(ShownModel model);
    ~ThroughPicker();
    ThroughPicker(const ThroughPicker&) = delete;
    ThroughPicker& operator=(const ThroughPicker&) = delete;

    // After a change of coordinates, indices or ids: drops what was built. Parts that are added, removed or given other
    // arrays are noticed without; flags are read anew by every pick.
    void geometryChanged();

    // What is in the region of a view (viewOf, SceneView::pickView), in parts that are not hidden; by depth, the
    // nearest first, equal depths by part and number. Runs on all cores; any thread may call, one at a time.
    std::vector<SceneHit> pick(PickType type, const PickRegion& region, const PickView& view);

    // The first of what pick gives, without making the others; nothing when nothing is hit.
    std::optional<SceneHit> nearest(PickType type, const PickRegion& region, const PickView& view);

    // Builds now what picks of the type need later. A host may do it on another thread while the model is first looked
    // at; no pick may run meanwhile.
    void prepare(PickType type);

    // Bytes held by what was built.
    std::size_t indexBytes() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace kvo

#endif
