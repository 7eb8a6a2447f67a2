#include <kvo/model.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "modelformat.h"

namespace kvo {

namespace {

struct KindRow
{
    const char* name;
    std::uint32_t slots;
    bool thirdMayBeEmpty;
};
constexpr KindRow kinds[elementKindCount] = {
    {"shell", 4, false}, {"solid", 8, false}, {"beam", 3, true}, {"discrete", 3, true}, {"other", 0, true}};

const KindRow& rowOf(ElementKind kind)
{
    return kinds[static_cast<int>(kind)];
}

// What a part's views look at.
struct PartArrays
{
    std::vector<float> positions;
    std::vector<std::uint32_t> slots;
};

[[noreturn]] void refuse(const Part& part, const std::string& what)
{
    throw std::invalid_argument("part " + std::to_string(part.id) + ": " + what);
}

// --- Checks ---

void checkSizes(const Part& part, const PartArrays& arrays)
{
    const std::uint32_t usual = slotsPerElement(part.kind);
    const bool tenSlots = part.kind == ElementKind::Solid && part.slotCount == 10;
    if (part.slotCount == 0 || (usual != 0 && part.slotCount != usual && !tenSlots)) {
        refuse(part, std::string("elements of kind ") + elementKindName(part.kind) + " do not have " +
                         std::to_string(part.slotCount) + " slots");
    }
    if (arrays.positions.size() != 3 * std::size_t(part.nodeCount())) {
        refuse(part, std::to_string(arrays.positions.size()) + " coordinates for " + std::to_string(part.nodeCount()) +
                         " nodes");
    }
    if (arrays.slots.size() != std::size_t(part.slotCount) * part.elementCount()) {
        refuse(part, std::to_string(arrays.slots.size()) + " slots for " + std::to_string(part.elementCount()) +
                         " elements of " + std::to_string(part.slotCount));
    }
}

void checkIds(const Part& part)
{
    if (!part.nodeIds.ascending()) {
        refuse(part, "node ids are not ascending");
    }
    if (part.elementIds.repeats()) {
        refuse(part, "an element id occurs twice");
    }
}

void checkSlots(const Part& part, const PartArrays& arrays)
{
    const bool mayBeEmpty = rowOf(part.kind).thirdMayBeEmpty;
    for (std::size_t k = 0; k < arrays.slots.size(); ++k) {
        const bool empty =
            arrays.slots[k] == emptySlot && mayBeEmpty && (k % part.slotCount >= 2 || part.kind == ElementKind::Other);
        if (arrays.slots[k] >= part.nodeCount() && !empty) {
            refuse(part, "element " + std::to_string(part.elementIds[static_cast<std::uint32_t>(k / part.slotCount)]) +
                             " has a node that the part has not");
        }
    }
}

std::array<float, 6> extentsOf(const Part& part, const PartArrays& arrays)
{
    std::array<float, 6> out = {0, 0, 0, 0, 0, 0};
    for (std::size_t k = 0; k < arrays.positions.size(); ++k) {
        const float value = arrays.positions[k];
        if (!std::isfinite(value)) {
            refuse(part, "a coordinate of node " + std::to_string(part.nodeIds[static_cast<std::uint32_t>(k / 3)]) +
                             " is not a finite number");
        }
        float* const range = &out[2 * (k % 3)];
        range[0] = k < 3 ? value : std::min(range[0], value);
        range[1] = k < 3 ? value : std::max(range[1], value);
    }
    return out;
}

} // namespace

const char* elementKindName(ElementKind kind)
{
    return rowOf(kind).name;
}

std::uint32_t slotsPerElement(ElementKind kind)
{
    return rowOf(kind).slots;
}

// --- Model ---

struct [[gnu::visibility("hidden")]] Model::Impl
{
    std::vector<Part> parts;
    IdTable partIds;
    std::vector<std::string> files;
    std::array<double, 3> origin = {0, 0, 0};
    std::array<float, 6> extents = {0, 0, 0, 0, 0, 0};
    ModelFacts facts;
};

Model::Model() : impl(std::make_shared<Impl>()) {}

Span<Part> Model::parts() const
{
    return impl->parts;
}

std::size_t Model::findPart(std::uint32_t id) const
{
    const std::uint32_t position = impl->partIds.find(id);
    return position == IdTable::notFound ? notFound : position;
}

Span<std::string> Model::files() const
{
    return impl->files;
}

const std::array<double, 3>& Model::origin() const
{
    return impl->origin;
}

const std::array<float, 6>& Model::extents() const
{
    return impl->extents;
}

const ModelFacts& Model::facts() const
{
    return impl->facts;
}

std::uint64_t Model::elementCount() const
{
    std::uint64_t count = 0;
    for (const Part& part : impl->parts) {
        count += part.elementCount();
    }
    return count;
}

std::uint64_t Model::nodeCount() const
{
    std::uint64_t count = 0;
    for (const Part& part : impl->parts) {
        count += part.nodeCount();
    }
    return count;
}

std::size_t Model::bytes() const
{
    std::size_t bytes = impl->partIds.bytes();
    for (const Part& part : impl->parts) {
        bytes += part.positions.size() * sizeof(float) + part.slots.size() * sizeof(std::uint32_t) +
                 part.nodeIds.bytes() + part.elementIds.bytes();
    }
    return bytes;
}

// --- ModelBuilder ---

ModelBuilder::ModelBuilder(const std::array<double, 3>& origin) : impl(new Model::Impl)
{
    impl->origin = origin;
}

ModelBuilder::~ModelBuilder() = default;

std::uint32_t ModelBuilder::addFile(const std::string& name)
{
    impl->files.push_back(name);
    return static_cast<std::uint32_t>(impl->files.size() - 1);
}

void ModelBuilder::addPart(Part part, bool withColor, std::vector<std::uint32_t> nodeIds, std::vector<float> positions,
                           std::vector<std::uint32_t> elementIds, std::uint32_t slotCount,
                           std::vector<std::uint32_t> slots)
{
    part.nodeIds = IdTable(std::move(nodeIds));
    part.elementIds = IdTable(std::move(elementIds));
    part.slotCount = slotCount;
    const auto arrays = std::make_shared<PartArrays>(PartArrays{std::move(positions), std::move(slots)});
    checkSizes(part, *arrays);
    checkIds(part);
    checkSlots(part, *arrays);
    part.extents = extentsOf(part, *arrays);
    part.positions = arrays->positions;
    part.slots = arrays->slots;
    part.arrays = arrays;
    if (!withColor) {
        readgen::paletteColor(static_cast<unsigned int>(impl->parts.size()), part.color.data());
    }
    impl->parts.push_back(std::move(part));
}

void ModelBuilder::setFacts(ModelFacts facts)
{
    impl->facts = std::move(facts);
}

Model ModelBuilder::build()
{
    if (impl->files.empty()) {
        impl->files.emplace_back();
    }
    std::vector<std::uint32_t> ids;
    bool any = false;
    for (const Part& part : impl->parts) {
        ids.push_back(part.id);
        if (part.file >= impl->files.size()) {
            refuse(part, "its file is not one of the model's");
        }
        for (std::size_t k = 0; k < 6 && part.nodeCount() > 0; ++k) {
            const float mine = part.extents[k], all = impl->extents[k];
            impl->extents[k] = !any ? mine : k % 2 == 0 ? std::min(all, mine) : std::max(all, mine);
        }
        any = any || part.nodeCount() > 0;
    }
    impl->partIds = IdTable(std::move(ids));
    if (impl->partIds.repeats()) {
        throw std::invalid_argument("two parts have the same id");
    }
    std::shared_ptr<const Model::Impl> built = std::move(impl);
    impl.reset(new Model::Impl);
    return Model(std::move(built));
}

} // namespace kvo
