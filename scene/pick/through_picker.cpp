#include <kvo/through_picker.h>

#include <algorithm>
#include <cstring>

#include "parallel.h"
#include "part_search.h"
#include "radix_sort.h"
#include "shown_parts.h"

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
    explicit Impl(ShownModel shownModel) : model(std::move(shownModel)) {}

    void follow();
    std::vector<std::uint32_t> visibleParts(PickType type) const;
    std::vector<RawHit> search(PickType type, const RegionTest& test);
    void makeIds(PickType type, const std::vector<RawHit>& hits);
    SceneHit describe(PickType type, const RegionTest& test, const RawHit& raw) const;
    const PartMesh& mesh(std::uint32_t part) const { return model.asRead().meshes[part]; }

    ShownModel model;
    std::vector<PartCache> caches;
};

void ThroughPicker::Impl::follow()
{
    const ShownModel::Impl& shown = model.read();
    caches.resize(shown.partCount);
    for (std::uint32_t k = 0; k < caches.size(); ++k) {
        caches[k].follow(mesh(k));
    }
}

std::vector<std::uint32_t> ThroughPicker::Impl::visibleParts(PickType type) const
{
    std::vector<std::uint32_t> visible;
    for (std::uint32_t k = 0; k < caches.size(); ++k) {
        if (!model.asRead().parts[k].hidden && isPickable(mesh(k), type)) {
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
        searchPart(mesh(number), number, caches[number], type, test, found[k]);
    };
    std::vector<std::size_t> small;
    std::size_t entities = 0;
    for (std::size_t k = 0; k < visible.size() && !test.empty(); ++k) {
        const PartMesh& part = mesh(visible[k]);
        const std::uint32_t count = std::max(entityCountOf(part, type), part.nodeCount);
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

// Tables of ids that are made at the first call must not be made by several threads.
void ThroughPicker::Impl::makeIds(PickType type, const std::vector<RawHit>& hits)
{
    std::vector<char> wanted(caches.size(), 0);
    for (const RawHit& hit : hits) {
        wanted[hit.part] = 1;
    }
    for (std::size_t k = 0; k < wanted.size(); ++k) {
        if (wanted[k] && type == PickType::Element) {
            model.asRead().elementIds(k);
        } else if (wanted[k] && type == PickType::Node) {
            model.asRead().nodeIds(k);
        }
    }
}

SceneHit ThroughPicker::Impl::describe(PickType type, const RegionTest& test, const RawHit& raw) const
{
    ShownModel::Impl& shown = model.asRead();
    const PartMesh& part = mesh(raw.part);
    SceneHit hit = {raw.part + 1, raw.entity + 1, shown.partId(raw.part), 0, raw.depth, {0, 0, 0}, {0, 0, 0}};
    if (type == PickType::Node) {
        hit.entityId = shown.nodeId(raw.part, raw.entity);
        test.locate(part, raw.entity, hit.window, hit.position);
        return hit;
    }
    if (type == PickType::Element) {
        hit.entityId = shown.elementId(raw.part, raw.entity);
    } else {
        hit.entity = 0;
    }
    const PickForm* form = pickFormOf(part, raw.entity);
    test.locate(part, raw.entity, *form, type == PickType::Element, hit.window, hit.position);
    return hit;
}

ThroughPicker::ThroughPicker(ShownModel model) : impl(new Impl(std::move(model))) {}
ThroughPicker::~ThroughPicker() = default;

void ThroughPicker::geometryChanged()
{
    impl->caches.clear();
    impl->model.asRead().forgetIds();
}

std::vector<SceneHit> ThroughPicker::pick(PickType type, const PickRegion& region, const PickView& view)
{
    const RegionTest test(region, view);
    const std::vector<RawHit> raw = impl->search(type, test);
    const std::vector<std::uint32_t> places = placesByDepth(raw);
    impl->makeIds(type, raw);
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
    impl->makeIds(type, {*first});
    return impl->describe(type, test, *first);
}

void ThroughPicker::prepare(PickType type)
{
    impl->follow();
    for (std::uint32_t number : impl->visibleParts(type)) {
        const PartMesh& part = impl->mesh(number);
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
