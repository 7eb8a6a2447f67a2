// The records of an environment as a scene reads them.
#include "caeenv.h"
#include "draw_types.h"
#include "shown_parts.h"
#include <kvo/shown_model.h>

namespace kvo {

namespace {

MarkBytes bytesOf(bool marked, const char* characters, std::size_t count)
{
    return marked && characters ? MarkBytes{reinterpret_cast<const std::uint8_t*>(characters), count, true}
                                : MarkBytes();
}

ShownPart shownPart(const PartInfoStr& record, const PartMesh& mesh)
{
    ShownPart part;
    part.hidden = (record.partFlag & PART_HIDDEN) != 0;
    part.selected = (record.partFlag & PART_SELECTED) != 0;
    part.highlighted = (record.partFlag & PART_HIGHLIGHTED) != 0;
    part.boxShown = (record.partFlag & PART_BOX_SHOWN) != 0;
    std::copy_n(record.partColor, 4, part.color.begin());
    part.selectedElements =
        bytesOf((record.partFlag & PART_ELEMENTS_SELECTED) != 0, record.partElements.selectedList, mesh.elementCount);
    part.selectedNodes =
        bytesOf((record.partFlag & PART_NODES_SELECTED) != 0, record.partNodes.selectedNodes, mesh.nodeCount);
    return part;
}

// A table of ids, and what it was made from.
struct KnownIds
{
    const void* source = nullptr;
    std::size_t size = 0;
    IdTable table;

    bool follow(const void* nowSource, std::size_t nowSize)
    {
        const bool same = source == nowSource && size == nowSize;
        source = nowSource;
        size = nowSize;
        return same;
    }
};

struct ContractParts : ShownModel::Impl
{
    explicit ContractParts(const CAEEnv& environment) : env(environment) {}

    void refresh() override;
    std::array<const void*, 3> identity() const override;
    std::uint32_t partId(std::size_t part) const override { return part < partIds.size() ? partIds[part] : 0; }
    const IdTable* elementIds(std::size_t part) override;
    const IdTable* nodeIds(std::size_t part) override;
    void forgetIds() override
    {
        elements.clear();
        nodes.clear();
    }

    const PartInfoStr& record(std::size_t part) const
    {
        return part < partCount ? env.partsInfoList[part] : *env.segmentPart;
    }
    const PartInfoStr* segment() const { return (env.compFlag & SEGMENT_PART_SET) ? env.segmentPart : nullptr; }

    const CAEEnv& env;
    std::vector<std::uint32_t> partIds;
    std::vector<KnownIds> elements, nodes;
};

void ContractParts::refresh()
{
    partCount = env.partsInfoList ? env.numParts : 0;
    meshes.assign(env.partsInfoList, env.partsInfoList + partCount);
    parts.clear();
    for (std::size_t k = 0; k < partCount; ++k) {
        parts.push_back(shownPart(env.partsInfoList[k], meshes[k]));
    }
    if (segment()) {
        meshes.emplace_back(*segment());
        parts.push_back(shownPart(*segment(), meshes.back()));
        parts.back().selected = true; // it shows pieces of others in the colour of selection
        parts.back().color[3] = 1;
    }
    partIds.assign(partCount, 0);
    for (const auto& [id, index] : env.pidMap) {
        if (index < partCount) {
            partIds[index] = id;
        }
    }
    std::copy_n(env.colorBlue, 4, selectionColor.begin());
    std::copy_n(env.colorGreen, 4, highlightColor.begin());
    listedNodesShown = (env.compFlag & NODE_LIST_SELECTED) != 0;
    listedNodes = {env.nodeValues, env.numNodes, bytesOf(listedNodesShown, env.selectedNodes, env.numNodes)};
}

std::array<const void*, 3> ContractParts::identity() const
{
    return {env.partsInfoList, env.partsInfoList ? env.partsInfoList + env.numParts : nullptr, segment()};
}

// Maps hold ids the other way round: elements that none names get 0.
const IdTable* ContractParts::elementIds(std::size_t part)
{
    const UIUIMap* map = record(part).partElements.eidMap;
    if (!map || map->empty()) {
        return nullptr;
    }
    elements.resize(parts.size());
    KnownIds& known = elements[part];
    if (!known.follow(map, map->size())) {
        std::vector<std::uint32_t> ids(meshes[part].elementCount, 0);
        for (const auto& [id, element] : *map) {
            if (element < ids.size() && ids[element] == 0) {
                ids[element] = id;
            }
        }
        known.table = IdTable(std::move(ids));
    }
    return &known.table;
}

const IdTable* ContractParts::nodeIds(std::size_t part)
{
    const PartNodesStr& record = this->record(part).partNodes;
    if (!record.idList) {
        return nullptr;
    }
    nodes.resize(parts.size());
    KnownIds& known = nodes[part];
    if (!known.follow(record.idList, record.numNodes)) {
        known.table = IdTable(Span<std::uint32_t>(record.idList, record.numNodes));
    }
    return &known.table;
}

} // namespace

PartMesh::PartMesh(const _PartInfoStr& record)
    : kind(elementKindOf(record.partDrawType)), positions(record.partNodes.nodeValues),
      nodeCount(record.partNodes.numNodes), slots(record.partElements.elmIndices),
      slotCount(record.partElements.nodesPerElement), elementNormals(record.partElements.elmNormals),
      nodeNormals(record.partNodes.nodeNormals)
{
    if (slots && slotCount && positions) {
        elementCount = record.partElements.numElements / slotCount;
    }
    std::copy_n(record.partExtents, 6, extents.begin());
}

ShownModel::ShownModel(const CAEEnv& env) : impl(std::make_shared<ContractParts>(env)) {}

} // namespace kvo
