// Picks what the picture shows, and nothing else.
//
//   view.draw();
//   kvo::VisiblePicker picker(view);
//   picker.pick(kvo::PickType::Element, kvo::PickRegion::click(x, y));
//
// One rule: the frame is drawn once more with the elements' numbers in place of colours, for the pixels whose middle
// lies in the region, with the last frame's matrices, hidden parts and cutting plane. An element is hit when one of
// these pixels shows it, a part when one of its elements is. A node is hit when it lies in the region and the pixel
// that it falls on, or one beside that, shows an element of its part that has it, at a depth that can be the node's. So
// what is hidden, cut off, covered or seen from behind on a closed surface is never hit. Transparent parts are hit like
// others, ghosts never.
#ifndef KVO_SCENE_VISIBLE_PICKER_H
#define KVO_SCENE_VISIBLE_PICKER_H

#include <memory>
#include <optional>
#include <vector>

#include <kvo/pick.h>
#include <kvoexport.h>

namespace kvo {

class SceneView;

class KVO_EXPORT VisiblePicker
{
public:
    // The view must outlive the picker. Its context must be current in all calls, and in the destructor.
    explicit VisiblePicker(SceneView& view);
    ~VisiblePicker();
    VisiblePicker(const VisiblePicker&) = delete;
    VisiblePicker& operator=(const VisiblePicker&) = delete;

    // By depth, the nearest first, equal depths by part and number. Nothing before the first frame; std::logic_error
    // before a model is loaded. What lies outside the viewport is not in the region; a click smaller than a pixel takes
    // the pixel that it is in.
    std::vector<SceneHit> pick(PickType type, const PickRegion& region);
    std::optional<SceneHit> nearest(PickType type, const PickRegion& region);

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace kvo

#endif
