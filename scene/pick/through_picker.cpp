#include "through_picker.h"

#include <algorithm>
#include <cstring>

#include "caeenv.h"
#include "mtrans.h"
#include "parallel.h"
#include "part_search.h"
#include "radix_sort.h"

namespace kvo {

namespace {

constexpr std::size_t describeGrain = 4096;
constexpr std::size_t entitiesPerThread = 16384; // at least, when parts are spread over threads

bool isNearer(const RawHit& a, const RawHit& b)
{
    return a.depth < b.depth;
}

std::uint32_t bitsOfFloat(float value)
{
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

// The place of each hit in the order of depths; hits of equal depth keep the order in which they come, that of parts
// and elements.
std::vector<std::uint32_t> placesByDepth(const std::vector<RawHit>& hits)
{
    std::vector<std::uint32_t> places(hits.size());
    if (hits.empty()) {
        return places;
    }
    // Depths are 0 to 1, whose bits count up with them.
    const auto [nearest, farthest] = std::minmax_element(hits.begin(), hits.end(), isNearer);
    const std::uint32_t lowest = bitsOfFloat(nearest->depth);
    const std::uint32_t range = bitsOfFloat(farthest->depth) - lowest;
    std::vector<KeyedNumber> order(hits.size());
    for (std::size_t k = 0; k < hits.size(); ++k) {
        order[k] = {bitsOfFloat(hits[k].depth) - lowest, static_cast<std::uint32_t>(k)};
    }
    sortByKey(order, bitsOf(range));
    for (std::size_t k = 0; k < order.size(); ++k) {
        places[order[k].number] = static_cast<std::uint32_t>(k);
    }
    return places;
}

} // namespace

struct [[gnu::visibility("hidden")]] ThroughPicker::Impl
{
    explicit Impl(CAEEnv& environment) : env(environment) {}

    void follow();
    std::vector<std::uint32_t> visibleParts(PickType type) const;
    std::vector<RawHit> search(PickType type, const RegionTest& test);
    void learnIds(PickType type, const std::vector<RawHit>& hits);
    SceneHit describe(PickType type, const RegionTest& test, const RawHit& raw) const;

    CAEEnv& env;
    std::vector<PartCache> caches;
    std::vector<std::uint32_t> partIds;
};

void ThroughPicker::Impl::follow()
{
    const std::uint32_t count = env.partsInfoList == nullptr ? 0 : env.numParts;
    caches.resize(count);
    partIds.assign(count, 0);
    for (std::uint32_t k = 0; k < count; ++k) {
        caches[k].follow(env.partsInfoList[k]);
    }
    for (const auto& [id, index] : env.pidMap) {
        if (index < count) {
            partIds[index] = id;
        }
    }
}

std::vector<std::uint32_t> ThroughPicker::Impl::visibleParts(PickType type) const
{
    std::vector<std::uint32_t> visible;
    for (std::uint32_t k = 0; k < caches.size(); ++k) {
        const PartInfoStr& part = env.partsInfoList[k];
        if ((part.partFlag & PART_HIDDEN) == 0 && isPickable(part, type)) {
            visible.push_back(k);
        }
    }
    return visible;
}

// Large parts one after another, each on all cores; then the small ones side by side.
std::vector<RawHit> ThroughPicker::Impl::search(PickType type, const RegionTest& test)
{
    follow();
    const std::vector<std::uint32_t> visible = visibleParts(type);
    std::vector<std::vector<RawHit>> found(visible.size());
    const auto searchOne = [&](std::size_t k) {
        const std::uint32_t number = visible[k];
        searchPart(env.partsInfoList[number], number, caches[number], type, test, found[k]);
    };
    std::vector<std::size_t> small;
    std::size_t entities = 0;
    for (std::size_t k = 0; k < visible.size() && !test.empty(); ++k) {
        const PartInfoStr& part = env.partsInfoList[visible[k]];
        const std::uint32_t count = std::max(entityCountOf(part, type), part.partNodes.numNodes);
        if (count >= largePart) {
            searchOne(k);
        } else {
            small.push_back(k);
            entities += count;
        }
    }
    const std::size_t grain = small.size() * entitiesPerThread / std::max<std::size_t>(entities, 1) + 1;
    parallelFor(small.size(), grain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t k = begin; k < end; ++k) {
            searchOne(small[k]);
        }
    });
    if (found.size() == 1) {
        return std::move(found[0]);
    }
    std::vector<RawHit> all;
    for (const std::vector<RawHit>& hits : found) {
        all.insert(all.end(), hits.begin(), hits.end());
    }
    return all;
}

void ThroughPicker::Impl::learnIds(PickType type, const std::vector<RawHit>& hits)
{
    if (type != PickType::Element) {
        return;
    }
    std::vector<std::vector<std::uint32_t>> elements(caches.size());
    for (const RawHit& hit : hits) {
        elements[hit.part].push_back(hit.entity);
    }
    for (std::size_t k = 0; k < elements.size(); ++k) {
        const PartInfoStr& part = env.partsInfoList[k];
        if (!elements[k].empty()) {
            caches[k].ids.learn(part.partElements.eidMap, elementCountOf(part), elements[k]);
        }
    }
}

SceneHit ThroughPicker::Impl::describe(PickType type, const RegionTest& test, const RawHit& raw) const
{
    const PartInfoStr& part = env.partsInfoList[raw.part];
    SceneHit hit = {raw.part + 1, raw.entity + 1, partIds[raw.part], 0, raw.depth, {0, 0, 0}, {0, 0, 0}};
    if (type == PickType::Node) {
        hit.entityId = part.partNodes.idList == nullptr ? 0 : part.partNodes.idList[raw.entity];
        test.locate(part, raw.entity, hit.window, hit.position);
        return hit;
    }
    if (type == PickType::Element) {
        hit.entityId = caches[raw.part].ids.idOf(raw.entity);
    } else {
        hit.entity = 0;
    }
    const PickForm* form = pickFormOf(part, raw.entity);
    test.locate(part, raw.entity, *form, type == PickType::Element, hit.window, hit.position);
    return hit;
}

ThroughPicker::ThroughPicker(CAEEnv& env) : impl(new Impl(env)) {}
ThroughPicker::~ThroughPicker() = default;

void ThroughPicker::geometryChanged()
{
    impl->caches.clear();
}

std::vector<SceneHit> ThroughPicker::pick(PickType type, const PickRegion& region, const PickView& view)
{
    const RegionTest test(region, view);
    const std::vector<RawHit> raw = impl->search(type, test);
    const std::vector<std::uint32_t> places = placesByDepth(raw);
    impl->learnIds(type, raw);
    std::vector<SceneHit> hits(raw.size());
    // In the order of the elements, whose memory lies together.
    parallelFor(raw.size(), describeGrain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t k = begin; k < end; ++k) {
            hits[places[k]] = impl->describe(type, test, raw[k]);
        }
    });
    return hits;
}

std::optional<SceneHit> ThroughPicker::nearest(PickType type, const PickRegion& region, const PickView& view)
{
    const RegionTest test(region, view);
    const std::vector<RawHit> raw = impl->search(type, test);
    const auto first = std::min_element(raw.begin(), raw.end(), isNearer);
    if (first == raw.end()) {
        return std::nullopt;
    }
    impl->learnIds(type, {*first});
    return impl->describe(type, test, *first);
}

void ThroughPicker::prepare(PickType type)
{
    impl->follow();
    for (std::uint32_t number : impl->visibleParts(type)) {
        const PartInfoStr& part = impl->env.partsInfoList[number];
        if (entityCountOf(part, type) > fewEntities) {
            impl->caches[number].indexOf(part, type);
        } else {
            impl->caches[number].boxOf(part);
        }
    }
}

std::size_t ThroughPicker::indexBytes() const
{
    std::size_t sum = 0;
    for (const PartCache& cache : impl->caches) {
        sum += cache.bytes();
    }
    return sum;
}

} // namespace kvo
