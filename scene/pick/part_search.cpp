#include "part_search.h"

#include <algorithm>
#include <mutex>

#include "parallel.h"
#include "radix_sort.h"

namespace kvo {

namespace {

constexpr std::size_t grain = largePart / 2; // items a thread takes at least when it looks at each

constexpr std::uint32_t shareByIndex = 8; // one in so many may be looked at through the index; more go one by one
constexpr std::size_t candidateGrain = 8192;

// Hits of pieces of a part, found on several threads.
class HitCollector
{
public:
    struct Piece
    {
        std::size_t begin;
        std::vector<RawHit> hits;
    };

    // onlyNearest: of all hits, the nearest is kept.
    HitCollector(std::uint32_t partNumber, bool onlyNearest) : part(partNumber), nearestOnly(onlyNearest) {}

    void add(Piece& piece, std::uint32_t entity, const DepthMinimum& found) const
    {
        if (!found.hit) {
            return;
        }
        const float depth = recordedDepth(found.depth);
        if (nearestOnly && !piece.hits.empty()) {
            if (depth < piece.hits[0].depth) {
                piece.hits[0] = {depth, part, entity};
            }
            return;
        }
        piece.hits.push_back({depth, part, entity});
    }

    void take(Piece&& piece)
    {
        if (!piece.hits.empty()) {
            const std::lock_guard<std::mutex> lock(mutex);
            pieces.push_back(std::move(piece));
        }
    }

    // All of them, in the order of the pieces.
    void appendTo(std::vector<RawHit>& hits)
    {
        std::sort(pieces.begin(), pieces.end(), [](const Piece& a, const Piece& b) { return a.begin < b.begin; });
        const auto first = static_cast<std::ptrdiff_t>(hits.size());
        for (const Piece& piece : pieces) {
            hits.insert(hits.end(), piece.hits.begin(), piece.hits.end());
        }
        if (nearestOnly && !pieces.empty()) {
            const auto nearest = std::min_element(hits.begin() + first, hits.end(),
                                                  [](const RawHit& a, const RawHit& b) { return a.depth < b.depth; });
            hits[static_cast<std::size_t>(first)] = *nearest;
            hits.resize(static_cast<std::size_t>(first) + 1);
        }
    }

private:
    std::uint32_t part;
    bool nearestOnly;
    std::mutex mutex;
    std::vector<Piece> pieces;
};

// Runs look(entity, found) for a range of entities in pieces; of(k) is the k-th entity.
template <class EntityOf, class Look>
void lookAtEach(std::size_t count, std::size_t pieceSize, HitCollector& collector, const EntityOf& of, const Look& look)
{
    parallelFor(count, pieceSize, [&](std::size_t begin, std::size_t end) {
        HitCollector::Piece piece = {begin, {}};
        for (std::size_t k = begin; k < end; ++k) {
            DepthMinimum found;
            const std::uint32_t entity = of(k);
            look(entity, found);
            collector.add(piece, entity, found);
        }
        collector.take(std::move(piece));
    });
}

// Looks at one entity of the type by itself.
void lookAt(const PartMesh& part, PickType type, const RegionTest& test, std::uint32_t entity, DepthMinimum& found)
{
    if (type == PickType::Node) {
        test.addNode(part, entity, found);
        return;
    }
    const PickForm* form = pickFormOf(part, entity);
    if (form == nullptr) {
        return;
    }
    test.addElement(part, entity, *form, found);
    if (type == PickType::Element) {
        test.addThirdNode(part, entity, found);
    }
}

// Outcodes and window depths of all nodes of a part.
struct NodeTable
{
    NodeTable(const PartMesh& part, const PickVolume& volume)
        : codes(new std::uint8_t[part.nodeCount]), depths(new float[part.nodeCount])
    {
        parallelFor(part.nodeCount, grain, [&](std::size_t begin, std::size_t end) {
            for (std::size_t node = begin; node < end; ++node) {
                const ClipPoint point = volume.transform(positionOf(part, static_cast<std::uint32_t>(node)));
                codes[node] = outcodeOf(point);
                depths[node] = windowDepthOf(point);
            }
        });
    }

    std::unique_ptr<std::uint8_t[]> codes;
    std::unique_ptr<float[]> depths;
};

// Looks at one element where its corners' outcodes are known: most lie quite inside or quite outside.
void lookAtCorners(const PartMesh& part, const NodeTable& nodes, PickType type, const RegionTest& test,
                   std::uint32_t element, DepthMinimum& found)
{
    const PickForm* form = pickFormOf(part, element);
    if (form == nullptr) {
        return;
    }
    const unsigned int* slots = slotsOf(part, element);
    unsigned int any = 0, all = 0xFF;
    for (unsigned int k = 0; k < form->corners; ++k) {
        const unsigned int code = nodes.codes[slots[form->cornerSlots[k]]];
        any |= code;
        all &= code;
    }
    if (any == outsideNowhere && !test.isPolygon()) {
        for (unsigned int k = 0; k < form->corners; ++k) {
            found.add(nodes.depths[slots[form->cornerSlots[k]]]);
        }
    } else if (all == 0) {
        test.addElement(part, element, *form, found);
    }
    if (type == PickType::Element) {
        test.addThirdNode(part, element, found);
    }
}

void searchAll(const PartMesh& part, PickType type, const RegionTest& test, HitCollector& collector)
{
    const auto itself = [](std::size_t k) { return static_cast<std::uint32_t>(k); };
    const std::size_t count = entityCountOf(part, type);
    if (type == PickType::Node) {
        lookAtEach(count, grain, collector, itself,
                   [&](std::uint32_t entity, DepthMinimum& found) { lookAt(part, type, test, entity, found); });
        return;
    }
    const NodeTable nodes(part, test.volume());
    lookAtEach(count, grain, collector, itself, [&](std::uint32_t element, DepthMinimum& found) {
        lookAtCorners(part, nodes, type, test, element, found);
    });
}

void searchCandidates(const PartMesh& part, PickType type, const RegionTest& test,
                      const std::vector<std::uint32_t>& found, HitCollector& collector)
{
    std::vector<KeyedNumber> candidates(found.size());
    std::transform(found.begin(), found.end(), candidates.begin(), [](std::uint32_t k) { return KeyedNumber{k, 0}; });
    sortByKey(candidates, bitsOf(entityCountOf(part, type)));
    lookAtEach(
        candidates.size(), candidateGrain, collector, [&](std::size_t k) { return candidates[k].key; },
        [&](std::uint32_t entity, DepthMinimum& minimum) { lookAt(part, type, test, entity, minimum); });
}

} // namespace

void PartCache::follow(const PartMesh& part)
{
    const void* const nowArrays[] = {part.positions, part.slots};
    const std::uint32_t nowSizes[] = {part.nodeCount, part.elementCount, part.slotCount,
                                      static_cast<std::uint32_t>(part.kind)};
    if (!std::equal(arrays, arrays + 2, nowArrays) || !std::equal(sizes, sizes + 4, nowSizes)) {
        clear();
        std::copy_n(nowArrays, 2, arrays);
        std::copy_n(nowSizes, 4, sizes);
    }
}

void PartCache::clear()
{
    *this = PartCache();
}

const FloatBox& PartCache::boxOf(const PartMesh& part)
{
    if (!boxKnown) {
        box = boxOfNodes(part);
        boxKnown = true;
    }
    return box;
}

const BlockIndex& PartCache::indexOf(const PartMesh& part, PickType type)
{
    std::unique_ptr<BlockIndex>& index = type == PickType::Node ? nodes : elements;
    if (!index) {
        index = std::make_unique<BlockIndex>(part, type, boxOf(part));
    }
    return *index;
}

std::size_t PartCache::bytes() const
{
    return sizeof(*this) + (elements ? elements->bytes() : 0) + (nodes ? nodes->bytes() : 0);
}

void searchPart(const PartMesh& part, std::uint32_t partNumber, PartCache& cache, PickType type, const RegionTest& test,
                std::vector<RawHit>& hits)
{
    const FloatBox& box = cache.boxOf(part);
    const Overlap whole = box.empty() ? Overlap::Outside : test.overlap(box);
    if (whole == Overlap::Outside) {
        return;
    }
    HitCollector collector(partNumber, type == PickType::Part);
    const std::uint32_t count = entityCountOf(part, type);
    std::vector<std::uint32_t> candidates;
    const auto overlap = [&test](const FloatBox& block) { return test.overlap(block); };
    if (whole == Overlap::Partly && count > fewEntities &&
        cache.indexOf(part, type).find(overlap, count / shareByIndex, candidates)) {
        searchCandidates(part, type, test, candidates, collector);
    } else {
        searchAll(part, type, test, collector);
    }
    collector.appendTo(hits);
}

} // namespace kvo
