#include <kvo/visible_picker.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <unordered_map>

#include "element_shape.h"
#include "number_picture.h"
#include "scene_view_impl.h"

namespace kvo {

namespace {

// Even-odd, for polygons; edges between pixel middles count by the half-open rule.
bool insideOutline(const std::vector<WindowPosition>& outline, double x, double y)
{
    bool inside = false;
    for (std::size_t k = 0, last = outline.size() - 1; k < outline.size(); last = k++) {
        const WindowPosition& a = outline[k];
        const WindowPosition& b = outline[last];
        if ((a.y > y) != (b.y > y) && x < (b.x - a.x) * (y - a.y) / (b.y - a.y) + a.x) {
            inside = !inside;
        }
    }
    return inside;
}

bool contains(const PickRegion& region, double x, double y)
{
    if (region.isPolygon()) {
        return region.outline.size() >= 3 && insideOutline(region.outline, x, y);
    }
    return std::fabs(x - region.x) <= region.width / 2 && std::fabs(y - region.y) <= region.height / 2;
}

// The pixels whose middles lie between the ends, at least the one in the middle.
void pixelsAcross(double middle, double size, int& first, int& count)
{
    const double low = middle - size / 2, high = middle + size / 2;
    first = static_cast<int>(std::ceil(low - 0.5));
    count = static_cast<int>(std::floor(high - 0.5)) - first + 1;
    if (count < 1) {
        first = static_cast<int>(std::floor(middle));
        count = 1;
    }
}

// Empty when the region and the viewport have nothing in common.
PixelBox pixelsOf(const PickRegion& region, const int viewport[4])
{
    const double farOff = 1e6;
    const double x = std::min(std::max<double>(region.x, -farOff), farOff);
    const double y = std::min(std::max<double>(region.y, -farOff), farOff);
    PixelBox box;
    pixelsAcross(x, std::min<double>(region.width, farOff), box.left, box.width);
    pixelsAcross(y, std::min<double>(region.height, farOff), box.bottom, box.height);
    const int right = std::min(box.left + box.width, viewport[0] + viewport[2]);
    const int top = std::min(box.bottom + box.height, viewport[1] + viewport[3]);
    box.left = std::max(box.left, viewport[0]);
    box.bottom = std::max(box.bottom, viewport[1]);
    box.width = std::max(0, right - box.left);
    box.height = std::max(0, top - box.bottom);
    return box;
}

// A pixel that shows an entity, the nearest one so far.
struct Found
{
    float depth;
    double x;
    double y;
};

typedef std::unordered_map<std::uint64_t, Found> FoundMap; // by part << 32 | entity

void keepNearest(FoundMap& found, std::uint32_t part, std::uint32_t entity, const Found& at)
{
    const auto entry = found.emplace(std::uint64_t(part) << 32 | entity, at);
    if (!entry.second && at.depth < entry.first->second.depth) {
        entry.first->second = at;
    }
}

// Does the element show in the pixel that a corner of it falls on, or in one beside, no nearer than the corner? The
// element's depths two pixels around say how steep it is, and so how much deeper than all of them the corner may be.
bool shownAt(const NumberPicture& picture, const double corner[3], std::uint32_t number)
{
    const int px = static_cast<int>(std::floor(corner[0])), py = static_cast<int>(std::floor(corner[1]));
    float low = 2, high = -1;
    bool beside = false;
    for (int step = 0; step < 25; ++step) {
        const int dx = step % 5 - 2, dy = step / 5 - 2, x = px + dx, y = py + dy;
        if (picture.box.contains(x, y) && picture.at(x, y) == number) {
            beside = beside || (std::abs(dx) <= 1 && std::abs(dy) <= 1);
            low = std::min(low, picture.depthAt(x, y));
            high = std::max(high, picture.depthAt(x, y));
        }
    }
    const double depthError = 1e-5;
    return beside && corner[2] <= high + (high - low) + depthError;
}

} // namespace

struct [[gnu::visibility("hidden")]] VisiblePicker::Impl
{
    explicit Impl(SceneView::Impl& sceneView) : view(sceneView) {}

    void elementsIn(const PickRegion& region, const NumberPicture& picture, bool wholeParts, FoundMap& found) const;
    void nodesIn(const PickRegion& region, const NumberPicture& picture, FoundMap& found) const;
    std::vector<SceneHit> describe(PickType type, const FoundMap& found);

    SceneView::Impl& view;
};

void VisiblePicker::Impl::elementsIn(const PickRegion& region, const NumberPicture& picture, bool wholeParts,
                                     FoundMap& found) const
{
    const std::vector<std::uint32_t>& starts = view.geometry.elementStarts();
    for (int y = picture.box.bottom; y < picture.box.bottom + picture.box.height; ++y) {
        for (int x = picture.box.left; x < picture.box.left + picture.box.width; ++x) {
            const std::uint32_t number = picture.at(x, y);
            if (number == 0 || (region.isPolygon() && !contains(region, x + 0.5, y + 0.5))) {
                continue;
            }
            const std::uint32_t part = view.geometry.partOf(number - 1);
            keepNearest(found, part, wholeParts ? 0 : number - 1 - starts[part],
                        {picture.depthAt(x, y), x + 0.5, y + 0.5});
        }
    }
}

// Candidates are the corners of the elements that are seen.
void VisiblePicker::Impl::nodesIn(const PickRegion& region, const NumberPicture& picture, FoundMap& found) const
{
    const std::vector<std::uint32_t>& starts = view.geometry.elementStarts();
    const std::vector<PartMesh>& parts = view.model.asRead().meshes;
    std::vector<std::uint32_t> seen(picture.numbers);
    std::sort(seen.begin(), seen.end());
    seen.erase(std::unique(seen.begin(), seen.end()), seen.end());
    for (std::uint32_t number : seen) {
        if (number == 0) {
            continue;
        }
        const std::uint32_t part = view.geometry.partOf(number - 1), element = number - 1 - starts[part];
        std::uint32_t corners[8];
        const unsigned int count = cornersOf(parts[part], element, shapeOf(parts[part], element), corners);
        for (unsigned int k = 0; k < count; ++k) {
            const float* p = positionOf(parts[part], corners[k]);
            const double corner[3] = {p[0], p[1], p[2]};
            double at[3];
            if (!view.camera.project(corner, at) || !contains(region, at[0], at[1])) {
                continue;
            }
            if (shownAt(picture, at, number)) {
                keepNearest(found, part, corners[k], {static_cast<float>(at[2]), at[0], at[1]});
            }
        }
    }
}

std::vector<SceneHit> VisiblePicker::Impl::describe(PickType type, const FoundMap& found)
{
    ShownModel::Impl& model = view.model.asRead();
    std::vector<SceneHit> hits;
    hits.reserve(found.size());
    for (const auto& [key, at] : found) {
        const std::uint32_t part = static_cast<std::uint32_t>(key >> 32), entity = static_cast<std::uint32_t>(key);
        SceneHit hit = {part + 1, entity + 1, model.partId(part), 0, at.depth, {at.x, at.y, at.depth}, {0, 0, 0}};
        if (type == PickType::Part) {
            hit.entity = 0;
        } else if (type == PickType::Element) {
            hit.entityId = model.elementId(part, entity);
        } else {
            hit.entityId = model.nodeId(part, entity);
        }
        view.camera.unproject(hit.window, hit.position);
        if (type == PickType::Node) {
            std::copy_n(positionOf(model.meshes[part], entity), 3, hit.position);
        }
        hits.push_back(hit);
    }
    std::sort(hits.begin(), hits.end(), [](const SceneHit& a, const SceneHit& b) {
        return a.depth != b.depth ? a.depth < b.depth : a.part != b.part ? a.part < b.part : a.entity < b.entity;
    });
    return hits;
}

VisiblePicker::VisiblePicker(SceneView& view) : impl(std::make_unique<Impl>(*view.impl)) {}

VisiblePicker::~VisiblePicker() = default;

std::vector<SceneHit> VisiblePicker::pick(PickType type, const PickRegion& region)
{
    impl->view.requireLoaded();
    const int* viewport = impl->view.camera.viewport;
    PixelBox box = pixelsOf(region, viewport);
    if (box.width == 0 || box.height == 0) {
        return {};
    }
    if (type == PickType::Node) { // and the pixels beside
        box = {box.left - 2, box.bottom - 2, box.width + 4, box.height + 4};
    }
    const NumberPicture picture = impl->view.drawNumbers(box);
    FoundMap found;
    if (type == PickType::Node) {
        impl->nodesIn(region, picture, found);
    } else {
        impl->elementsIn(region, picture, type == PickType::Part, found);
    }
    return impl->describe(type, found);
}

std::optional<SceneHit> VisiblePicker::nearest(PickType type, const PickRegion& region)
{
    const std::vector<SceneHit> hits = pick(type, region);
    return hits.empty() ? std::nullopt : std::optional<SceneHit>(hits.front());
}

} // namespace kvo
