// The ids of what the picture shows, with their places in the window.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "element_shape.h"
#include "id_labels.h"
#include "number_picture.h"
#include "scene_view_impl.h"

namespace kvo {

namespace {

// An element that the picture shows: how many pixels, and where they are on average.
struct ShownElement
{
    std::uint32_t number; // over all parts
    std::uint32_t pixels;
    double x, y;
};

std::vector<ShownElement> shownElements(const NumberPicture& picture)
{
    std::unordered_map<std::uint32_t, ShownElement> found;
    for (int y = 0; y < picture.box.height; ++y) {
        for (int x = 0; x < picture.box.width; ++x) {
            const std::uint32_t number = picture.at(picture.box.left + x, picture.box.bottom + y);
            if (number != 0) {
                ShownElement& element = found[number];
                element.number = number - 1;
                ++element.pixels;
                element.x += x;
                element.y += y;
            }
        }
    }
    std::vector<ShownElement> out;
    for (auto& entry : found) {
        entry.second.x /= entry.second.pixels;
        entry.second.y /= entry.second.pixels;
        out.push_back(entry.second);
    }
    std::sort(out.begin(), out.end(), [](const ShownElement& a, const ShownElement& b) { return a.number < b.number; });
    return out;
}

// Does one of the pixels about a place show one of these elements?
template <class Shows> bool shownNear(const NumberPicture& picture, int x, int y, Shows&& shows)
{
    for (int step = 0; step < 9; ++step) {
        const int px = picture.box.left + x + step % 3 - 1, py = picture.box.bottom + y + step / 3 - 1;
        if (picture.box.contains(px, py) && picture.at(px, py) != 0 && shows(picture.at(px, py) - 1)) {
            return true;
        }
    }
    return false;
}

class LabelFinder
{
public:
    LabelFinder(ShownModel::Impl& shownModel, const SceneGeometry& sceneGeometry, const SceneCamera& sceneCamera,
                const NumberPicture& numberPicture)
        : model(shownModel), geometry(sceneGeometry), camera(sceneCamera), picture(numberPicture),
          shown(shownElements(numberPicture))
    {
    }
    void addParts(std::vector<IdLabel>& out) const;
    void addElements(std::vector<IdLabel>& out) const;
    void addNodes(std::vector<IdLabel>& out) const;

private:
    std::uint32_t partOf(const ShownElement& element) const { return geometry.partOf(element.number); }
    std::uint32_t indexIn(std::uint32_t part, std::uint32_t number) const
    {
        return number - geometry.elementStarts()[part];
    }

    ShownModel::Impl& model;
    const SceneGeometry& geometry;
    const SceneCamera& camera;
    const NumberPicture& picture;
    const std::vector<ShownElement> shown; // by number
};

// At the part's element nearest to the middle of what is seen of the part: there the part is, whatever its shape.
void LabelFinder::addParts(std::vector<IdLabel>& out) const
{
    struct Middle
    {
        double x = 0, y = 0, pixels = 0;
    };
    std::vector<Middle> middles(model.meshes.size());
    for (const ShownElement& element : shown) {
        Middle& middle = middles[partOf(element)];
        middle.x += element.pixels * element.x;
        middle.y += element.pixels * element.y;
        middle.pixels += element.pixels;
    }
    std::vector<const ShownElement*> nearest(model.meshes.size(), nullptr);
    const auto away = [](const ShownElement& element, const Middle& middle) {
        return std::hypot(element.x - middle.x / middle.pixels, element.y - middle.y / middle.pixels);
    };
    for (const ShownElement& element : shown) {
        const std::uint32_t part = partOf(element);
        if (!nearest[part] || away(element, middles[part]) < away(*nearest[part], middles[part])) {
            nearest[part] = &element;
        }
    }
    std::vector<std::pair<std::uint32_t, const ShownElement*>> byId;
    for (std::size_t part = 0; part < model.partCount; ++part) {
        if (nearest[part] && model.partId(part) != 0) {
            byId.emplace_back(model.partId(part), nearest[part]);
        }
    }
    std::sort(byId.begin(), byId.end());
    for (const auto& [id, at] : byId) {
        out.push_back({static_cast<int>(at->x), static_cast<int>(at->y), std::to_string(id), 0});
    }
}

// At the middle of its pixels, if it is seen there.
void LabelFinder::addElements(std::vector<IdLabel>& out) const
{
    for (std::size_t first = 0, end; first < shown.size(); first = end) {
        const std::uint32_t part = partOf(shown[first]);
        end = first;
        while (end < shown.size() && partOf(shown[end]) == part) {
            ++end;
        }
        for (std::size_t k = first; k < end; ++k) {
            const int x = static_cast<int>(shown[k].x), y = static_cast<int>(shown[k].y);
            const std::uint32_t number = shown[k].number, id = model.elementId(part, indexIn(part, number));
            if (id != 0 && shownNear(picture, x, y, [number](std::uint32_t other) { return other == number; })) {
                out.push_back({x, y, std::to_string(id), 1});
            }
        }
    }
}

// Where one of the pixels about it shows an element that has it.
void LabelFinder::addNodes(std::vector<IdLabel>& out) const
{
    std::unordered_set<std::uint64_t> done;
    for (const ShownElement& element : shown) {
        const std::uint32_t partIndex = partOf(element);
        const PartMesh& part = model.meshes[partIndex];
        const std::uint32_t index = indexIn(partIndex, element.number);
        std::uint32_t nodes[8];
        const unsigned int count = cornersOf(part, index, shapeOf(part, index), nodes);
        for (unsigned int k = 0; model.nodeIds(partIndex) && k < count; ++k) {
            const std::uint64_t key = std::uint64_t(partIndex) << 32 | nodes[k];
            if (done.count(key)) {
                continue;
            }
            const float* p = positionOf(part, nodes[k]);
            const double corner[3] = {p[0], p[1], p[2]};
            double at[3];
            if (!camera.project(corner, at)) {
                continue;
            }
            const int x = static_cast<int>(std::floor(at[0])) - camera.viewport[0];
            const int y = static_cast<int>(std::floor(at[1])) - camera.viewport[1];
            const std::uint32_t number = element.number;
            if (shownNear(picture, x, y, [number](std::uint32_t other) { return other == number; })) {
                done.insert(key);
                out.push_back({x, y, std::to_string(model.nodeId(partIndex, nodes[k])), 2});
            }
        }
    }
}

} // namespace

std::vector<IdLabel> SceneView::Impl::visibleIds()
{
    const SceneLabels& wanted = drawnLook.labels;
    std::vector<IdLabel> out;
    if (camera.viewport[2] < 1 || camera.viewport[3] < 1) {
        return out;
    }
    const NumberPicture picture =
        drawNumbers({camera.viewport[0], camera.viewport[1], camera.viewport[2], camera.viewport[3]});
    const LabelFinder finder(model.asRead(), geometry, camera, picture);
    if (wanted.parts) {
        finder.addParts(out);
    }
    if (wanted.elements) {
        finder.addElements(out);
    }
    if (wanted.nodes) {
        finder.addNodes(out);
    }
    return out;
}

} // namespace kvo
