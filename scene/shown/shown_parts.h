// What a ShownModel holds: the parts of a model or of an environment in one form. Private to the scene.
#ifndef KVO_SCENE_SHOWN_PARTS_H
#define KVO_SCENE_SHOWN_PARTS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <kvo/part_mesh.h>
#include <kvo/shown_model.h>

namespace kvo {

// One byte an element or node as its owner keeps it.
struct MarkBytes
{
    const std::uint8_t* bytes = nullptr; // null: none is marked
    std::size_t count = 0;
    bool characters = false; // '1' and '0', others repeat the state before; else what is not 0 is marked

    // 1 for marked; for `wanted` items, those beyond count are unmarked.
    void states(std::size_t wanted, std::uint8_t* out) const;
};

// How a part is shown.
struct ShownPart
{
    bool hidden = false;
    bool selected = false;
    bool highlighted = false;
    bool boxShown = false;
    std::array<float, 4> color = {0, 0, 0, 1};
    MarkBytes selectedElements;
    MarkBytes selectedNodes;
    MarkBytes hiddenElements;
};

// Nodes that are selected beside those of parts.
struct ShownNodes
{
    const float* positions = nullptr;
    std::size_t count = 0;
    MarkBytes selected;
};

struct [[gnu::visibility("hidden")]] ShownModel::Impl
{
    virtual ~Impl() = default;

    virtual void refresh() = 0;
    // What tells whether the geometry is the same: the list of parts and what was added to it.
    virtual std::array<const void*, 3> identity() const = 0;
    // The deck's ids; null, or 0, where there are none. Tables may be made at the first call.
    virtual std::uint32_t partId(std::size_t part) const = 0;
    virtual const IdTable* elementIds(std::size_t part) = 0;
    virtual const IdTable* nodeIds(std::size_t part) = 0;
    virtual void forgetIds() {} // ids have changed

    std::uint32_t elementId(std::size_t part, std::uint32_t element)
    {
        const IdTable* ids = elementIds(part);
        return ids && element < ids->size() ? (*ids)[element] : 0;
    }
    std::uint32_t nodeId(std::size_t part, std::uint32_t node)
    {
        const IdTable* ids = nodeIds(part);
        return ids && node < ids->size() ? (*ids)[node] : 0;
    }
    // The box of the parts that are not hidden, of all where all are, of +-1 where there is none.
    Box visibleBox() const;

    std::vector<PartMesh> meshes;
    std::vector<ShownPart> parts; // as many
    std::size_t partCount = 0;    // of the model; a segment part, which only points at pieces of others, comes behind
    std::array<float, 4> selectionColor = {0, 0, 1, 1};
    std::array<float, 4> highlightColor = {0, 1, 0, 1};
    bool listedNodesShown = false;
    ShownNodes listedNodes;
};

} // namespace kvo

#endif
