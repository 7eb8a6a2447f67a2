#include "session_model.h"

#include <algorithm>

#include "mantypes.h"

namespace kvo {

unsigned int drawTypeOf(ElementKind kind)
{
    switch (kind) {
    case ElementKind::Shell:
        return SHELL;
    case ElementKind::Solid:
        return SOLID;
    case ElementKind::Beam:
        return BEAM;
    case ElementKind::Discrete:
        return DISCRETE;
    default:
        return 0;
    }
}

namespace {

// The library reads through these pointers only.
PartInfoStr recordOf(const Part& part)
{
    PartInfoStr out = {};
    out.partDrawType = drawTypeOf(part.kind);
    out.partFlag = PART_SHOWN;
    out.partFileIndex = static_cast<int>(part.file);
    std::copy(part.extents.begin(), part.extents.end(), out.partExtents);
    std::copy(part.color.begin(), part.color.end(), out.partColor);
    out.partNodes.numNodes = part.nodeCount();
    out.partNodes.nodeValues = const_cast<float*>(part.positions.data());
    out.partElements.numElements = static_cast<unsigned int>(part.slots.size());
    out.partElements.nodesPerElement = part.slotCount;
    out.partElements.elmIndices = const_cast<unsigned int*>(part.slots.data());
    return out;
}

IdTable elementIdsOf(const PartElementsStr& elements)
{
    std::vector<std::uint32_t> ids(elements.nodesPerElement ? elements.numElements / elements.nodesPerElement : 0, 0);
    if (elements.eidMap) {
        for (const auto& [id, element] : *elements.eidMap) {
            if (element < ids.size() && ids[element] == 0) {
                ids[element] = id;
            }
        }
    }
    return IdTable(std::move(ids));
}

Marks marksOf(bool marked, const char* characters, std::size_t count)
{
    if (!marked || !characters) {
        return nullptr;
    }
    auto out = std::make_shared<std::vector<std::uint8_t>>(count);
    std::transform(characters, characters + count, out->begin(),
                   [](char c) { return static_cast<std::uint8_t>(c == SELECTED_CHAR); });
    return out;
}

} // namespace

SessionModel::SessionModel(const std::string& directory, const std::string& name, int shadeModel)
    : environment(directory.c_str(), name.c_str(), shadeModel)
{
}

// The environment frees what its records point at.
SessionModel::~SessionModel()
{
    for (unsigned int part = 0; taken && part < environment.numParts; ++part) {
        records[part].partNodes.nodeValues = nullptr;
        records[part].partElements.elmIndices = nullptr;
    }
}

void SessionModel::take(const Model& model)
{
    taken = std::make_unique<const Model>(model);
    const Span<Part> parts = taken->parts();
    records = std::make_unique<PartInfoStr[]>(parts.size());
    for (std::size_t k = 0; k < parts.size(); ++k) {
        records[k] = recordOf(parts[k]);
        environment.pidMap[parts[k].id] = static_cast<unsigned int>(k);
    }
    environment.partsInfoList = records.get();
    environment.numParts = static_cast<unsigned int>(parts.size());
    for (const std::string& file : taken->files()) {
        environment.fileList.push_back(file);
    }
    std::copy(taken->extents().begin(), taken->extents().end(), environment.modelExtents);
    std::copy(taken->extents().begin(), taken->extents().end(), environment.orgModelExtents);
}

const IdTable& SessionModel::elementIds(unsigned int part) const
{
    if (taken) {
        return taken->parts()[part].elementIds;
    }
    elements.resize(environment.numParts);
    if (!elements[part]) {
        elements[part] = std::make_unique<IdTable>(elementIdsOf(environment.partsInfoList[part].partElements));
    }
    return *elements[part];
}

const IdTable& SessionModel::nodeIds(unsigned int part) const
{
    if (taken) {
        return taken->parts()[part].nodeIds;
    }
    nodes.resize(environment.numParts);
    if (!nodes[part]) {
        const PartNodesStr& record = environment.partsInfoList[part].partNodes;
        nodes[part] =
            std::make_unique<IdTable>(Span<std::uint32_t>(record.idList, record.idList ? record.numNodes : 0));
    }
    return *nodes[part];
}

void SessionModel::show(ModelView& view) const
{
    for (std::size_t k = 0; k < view.parts.size(); ++k) {
        const PartInfoStr& record = environment.partsInfoList[k];
        const auto has = [&record](unsigned int flag) { return (record.partFlag & flag) != 0; };
        PartLook& look = view.parts[k];
        look.hidden = has(PART_HIDDEN);
        look.selected = has(PART_SELECTED);
        look.highlighted = has(PART_HIGHLIGHTED);
        look.boxShown = has(PART_BOX_SHOWN);
        std::copy_n(record.partColor, 4, look.color.begin());
        const Part& part = view.model.parts()[k];
        look.selectedElements =
            marksOf(has(PART_ELEMENTS_SELECTED), record.partElements.selectedList, part.elementCount());
        look.selectedNodes = marksOf(has(PART_NODES_SELECTED), record.partNodes.selectedNodes, part.nodeCount());
    }
    std::copy_n(environment.colorBlue, 4, view.selectionColor.begin());
    std::copy_n(environment.colorGreen, 4, view.highlightColor.begin());
}

} // namespace kvo
