// From file records to part records: nodes, indices, element id maps.
#include "partbuilder.h"

#include <algorithm>
#include <memory>
#include <numeric>

#include "parallel.h"

namespace readgen {

namespace {

constexpr std::uint64_t workForThreads = 200000; // elements; less is done before a thread has started
constexpr unsigned int maxThreads = 8;

void releaseArrays(PartInfoStr& part)
{
    delete[] part.partNodes.idList;
    delete[] part.partNodes.nodeValues;
    delete[] part.partElements.elmIndices;
    delete part.partElements.eidMap;
}

} // namespace

// --- PartBatch ---

PartBatch::~PartBatch()
{
    for (PartInfoStr& part : records) {
        releaseArrays(part);
    }
}

void PartBatch::appendTo(unsigned int* numParts, PartInfoStr** parts)
{
    const std::size_t before = *numParts;
    PartInfoStr* grown = new PartInfoStr[before + records.size()](); // zero where the caller counts parts but has none
    if (*parts) {
        std::copy(*parts, *parts + before, grown);
    }
    std::copy(records.begin(), records.end(), grown + before);
    delete[] *parts;
    *parts = grown;
    *numParts = static_cast<unsigned int>(before + records.size());
    records.clear();
}

// --- Nodes ---

namespace {

// Sorts the nodes of a part by id and returns where each went. Needed when files whose ids interleave share a part.
std::vector<std::uint32_t> sortNodes(PartNodesStr& nodes)
{
    std::vector<std::uint32_t> order(nodes.numNodes);
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return nodes.idList[a] < nodes.idList[b]; });
    const std::vector<std::uint32_t> ids(nodes.idList, nodes.idList + nodes.numNodes);
    const std::vector<float> values(nodes.nodeValues, nodes.nodeValues + std::size_t{3} * nodes.numNodes);
    std::vector<std::uint32_t> place(nodes.numNodes);
    for (std::uint32_t k = 0; k < nodes.numNodes; ++k) {
        nodes.idList[k] = ids[order[k]];
        std::copy_n(&values[std::size_t{3} * order[k]], 3, nodes.nodeValues + std::size_t{3} * k);
        place[order[k]] = k;
    }
    return place;
}

void copyNodes(const ModelNodes& all, const UsedNodes& used, PartInfoStr& part)
{
    PartNodesStr& nodes = part.partNodes;
    nodes.numNodes = used.count();
    nodes.idList = new unsigned int[nodes.numNodes];
    nodes.nodeValues = new float[std::size_t{3} * nodes.numNodes];
    unsigned int* id = nodes.idList;
    float* xyz = nodes.nodeValues;
    Box box;
    all.visit(used, [&](std::uint32_t, std::uint32_t nodeId, const float* nodeXyz) {
        *id++ = nodeId;
        box.add(nodeXyz);
        xyz = std::copy_n(nodeXyz, 3, xyz);
    });
    box.copyTo(part.partExtents);
}

template <class Place> void replaceIndices(unsigned int* indices, std::size_t length, Place place)
{
    for (std::size_t k = 0; k < length; ++k) {
        if (isPosition(indices[k])) {
            indices[k] = place(indices[k]);
        }
    }
}

} // namespace

void makePartNodes(const ModelNodes& all, std::size_t length, PartInfoStr& part)
{
    unsigned int* indices = part.partElements.elmIndices;
    const UsedNodes used(indices, length);
    copyNodes(all, used, part);
    replaceIndices(indices, length, [&](std::uint32_t position) { return used.rank(position); });

    PartNodesStr& nodes = part.partNodes;
    if (!std::is_sorted(nodes.idList, nodes.idList + nodes.numNodes)) {
        const std::vector<std::uint32_t> place = sortNodes(nodes);
        replaceIndices(indices, length, [&](std::uint32_t index) { return place[index]; });
    }
}

// --- Elements ---

namespace {

void fillInOrder(const std::uint32_t* ids, std::uint32_t count, UIUIMap& map)
{
    for (std::uint32_t k = 0; k < count; ++k) {
        map.emplace_hint(map.end(), ids[k], k);
    }
}

void fillSorted(const std::uint32_t* ids, std::uint32_t count, UIUIMap& map)
{
    std::vector<std::uint32_t> order(count);
    std::iota(order.begin(), order.end(), 0u);
    std::sort(order.begin(), order.end(),
              [ids](std::uint32_t a, std::uint32_t b) { return ids[a] != ids[b] ? ids[a] < ids[b] : a < b; });
    for (std::uint32_t k : order) {
        map.emplace_hint(map.end(), ids[k], k);
    }
}

std::size_t findRepeated(const std::uint32_t* ids, std::uint32_t count, const UIUIMap& map)
{
    for (std::uint32_t k = 0; k < count; ++k) {
        if (map.find(ids[k])->second != k) {
            return k;
        }
    }
    return count;
}

void fillElementMap(const PartTable& table, std::size_t k, PartInfoStr& part)
{
    const std::uint32_t* ids = table.elementIds(k);
    const std::uint32_t count = static_cast<std::uint32_t>(table.record(k).numElements);
    UIUIMap* map = part.partElements.eidMap = new UIUIMap;
    if (std::is_sorted(ids, ids + count)) {
        fillInOrder(ids, count, *map);
    } else {
        fillSorted(ids, count, *map);
    }
    if (map->size() != count) {
        const std::size_t position = findRepeated(ids, count, *map);
        table.badElementId(k, position, "element id " + std::to_string(ids[position]) + " occurs twice");
    }
}

void fillNodesAndIndices(const PartTable& table, std::size_t k, const ModelNodes& nodes, std::size_t ownFile,
                         PartInfoStr& part)
{
    const PartRecord& r = table.record(k);
    const bool byIndex = r.flags & partRefsByIndex;
    const PartReferences refs = {table.nodeReferences(k),
                                 static_cast<std::size_t>(r.numElements) * r.stride,
                                 r.stride,
                                 byIndex,
                                 thirdSlotMayBeEmpty(r.drawType),
                                 ownFile};
    part.partElements.elmIndices = new unsigned int[refs.count];
    const std::size_t done = resolveReferences(nodes, refs, part.partElements.elmIndices);
    if (done < refs.count) {
        table.badReference(k, done,
                           (byIndex ? "node index " : "node ") + std::to_string(refs.refs[done]) +
                               (byIndex ? " is past the nodes of its file" : " is in no file of the model"));
    }
    part.partElements.numElements = static_cast<unsigned int>(refs.count);
    makePartNodes(nodes, refs.count, part);
    if (part.partNodes.numNodes == 0) {
        std::copy_n(r.extents, 6, part.partExtents);
    }
}

void fillHead(const PartRecord& r, int fileIndex, PartInfoStr& part)
{
    part.partDrawType = r.drawType;
    part.partFlag = PART_SHOWN;
    part.partFileIndex = fileIndex;
    part.partElements.nodesPerElement = r.stride;
    if (r.flags & partHasColor) {
        std::copy_n(r.color, 4, part.partColor);
    } else {
        paletteColor(r.ordinal, part.partColor);
    }
}

unsigned int threadsFor(const PartTable& table, const std::vector<std::size_t>& chosen)
{
    std::uint64_t elements = 0;
    for (std::size_t k : chosen) {
        elements += table.record(k).numElements;
    }
    return elements < workForThreads ? 1 : std::min(kvo::workerCount(), maxThreads);
}

} // namespace

// Two tasks a part: they touch different fields of the record.
void buildParts(const PartTable& table, const std::vector<std::size_t>& chosen, const ModelNodes& nodes,
                std::size_t ownFile, int fileIndex, PartBatch& batch)
{
    kvo::runTasks(2 * chosen.size(), threadsFor(table, chosen), [&](std::size_t task) {
        const std::size_t part = task / 2;
        if (task % 2 == 0) {
            fillHead(table.record(chosen[part]), fileIndex, batch[part]);
            fillNodesAndIndices(table, chosen[part], nodes, ownFile, batch[part]);
        } else {
            fillElementMap(table, chosen[part], batch[part]);
        }
    });
}

} // namespace readgen
