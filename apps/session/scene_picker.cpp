// Between the picture's regions and the scene's.
#include "scene_picker.h"

#include <algorithm>
#include <optional>
#include <tuple>

#include "caeenv.h"
#include <kvo/scene_view.h>

namespace kvo {

namespace {

PickType typeOf(unsigned int type)
{
    return type == PICK_TYPE_PART ? PickType::Part : type == PICK_TYPE_ELEMENT ? PickType::Element : PickType::Node;
}

// The picture counts downwards, the scene upwards.
PickRegion sceneRegion(const PictureRegion& region, int pictureHeight)
{
    const double height = pictureHeight;
    if (region.outline.empty()) {
        return PickRegion::rectangle(region.left, height - region.top, region.left + region.width,
                                     height - (region.top + region.height));
    }
    std::vector<WindowPosition> outline;
    for (std::size_t k = 0; k + 1 < region.outline.size(); k += 2) {
        outline.push_back({region.outline[k], height - region.outline[k + 1]});
    }
    return PickRegion::polygon(std::move(outline));
}

PickHit hitOf(const SceneHit& hit, PickType type, int pictureHeight)
{
    PickHit out;
    out.part = hit.part - 1;
    out.member = hit.entity ? hit.entity - 1 : 0;
    out.id = type == PickType::Element ? hit.entityId : 0;
    out.depth = hit.depth;
    out.located = true;
    out.pixel[0] = hit.window[0];
    out.pixel[1] = pictureHeight - hit.window[1];
    std::copy_n(hit.position, 3, out.point);
    return out;
}

// Both pickers answer alike; view... are what else they are given.
template <class ScenePickerType, class... View>
std::vector<SceneHit> ask(ScenePickerType& picker, const PickRequest& request, const PickRegion& region,
                          const View&... view)
{
    if (!request.nearestOnly) {
        return picker.pick(typeOf(request.type), region, view...);
    }
    const std::optional<SceneHit> nearest = picker.nearest(typeOf(request.type), region, view...);
    return nearest ? std::vector<SceneHit>{*nearest} : std::vector<SceneHit>();
}

bool inModelOrder(const PickHit& a, const PickHit& b)
{
    return std::tie(a.part, a.member) < std::tie(b.part, b.member);
}

} // namespace

ScenePicker::ScenePicker(SceneView& sceneView, ShownModel shownModel)
    : view(sceneView), model(std::move(shownModel)), visible(sceneView)
{
}

std::vector<PickHit> ScenePicker::pick(CAEEnv&, const PickRequest& request, int pictureHeight)
{
    const PickRegion region = sceneRegion(request.region, pictureHeight);
    if (request.through && !through) {
        through = std::make_unique<ThroughPicker>(model);
    }
    const std::vector<SceneHit> hits =
        request.through ? ask(*through, request, region, view.pickView()) : ask(visible, request, region);
    std::vector<PickHit> out;
    for (const SceneHit& hit : hits) {
        out.push_back(hitOf(hit, typeOf(request.type), pictureHeight));
    }
    std::sort(out.begin(), out.end(), inModelOrder);
    return out;
}

} // namespace kvo
