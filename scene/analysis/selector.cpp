// Selecting by what elements and nodes are: ids, parts, types, quality; and sets turned into others of the same model.
#include <algorithm>
#include <cmath>

#include "element_shape.h"
#include "model_joints.h"
#include "parallel.h"
#include <kvo/select_more.h>

namespace kvo {

namespace {

// The ranges of a list. Ranges that take every id ascend and lie apart from each other, those with wider steps are as
// they were given.
struct WantedIds
{
    std::vector<IdRange> runs, stepped;
};

WantedIds tidied(std::vector<IdRange> ranges)
{
    std::sort(ranges.begin(), ranges.end(), [](const IdRange& a, const IdRange& b) { return a.first < b.first; });
    WantedIds result;
    for (const IdRange& range : ranges) {
        if (range.empty()) {
            continue;
        }
        if (range.step != 1) {
            result.stepped.push_back(range);
        } else if (!result.runs.empty() && range.first <= result.runs.back().last) {
            result.runs.back().last = std::max(result.runs.back().last, range.last);
        } else {
            result.runs.push_back(range);
        }
    }
    return result;
}

// visit(range, its first id of the model or a lower bound of it) for the ranges that reach into [lowest, highest].
template <class Visit>
void rangesWithin(const WantedIds& ids, unsigned int lowest, unsigned int highest, const Visit& visit)
{
    const auto show = [&](const IdRange& range) {
        visit(range, static_cast<unsigned int>(std::max<std::int64_t>(range.first, lowest)));
    };
    const auto before = [](const IdRange& range, std::int64_t id) { return range.last < id; };
    for (auto range = std::lower_bound(ids.runs.begin(), ids.runs.end(), lowest, before);
         range != ids.runs.end() && range->first <= highest; ++range) {
        show(*range);
    }
    for (const IdRange& range : ids.stepped) {
        if (range.first <= highest && range.last >= lowest) {
            show(range);
        }
    }
}

std::size_t countOf(const WantedIds& ids)
{
    const std::uint64_t many = std::uint64_t(1) << 32; // more than a model has
    std::uint64_t out = ids.stepped.empty() ? 0 : many;
    for (const IdRange& run : ids.runs) {
        out = std::min(many, out + std::min(many, run.size() == 0 ? many : run.size()));
    }
    return static_cast<std::size_t>(out);
}

bool contains(const WantedIds& ids, std::uint32_t id)
{
    const auto behind = std::upper_bound(ids.runs.begin(), ids.runs.end(), id,
                                         [](std::int64_t value, const IdRange& range) { return value < range.first; });
    if (behind != ids.runs.begin() && (behind - 1)->contains(id)) {
        return true;
    }
    return std::any_of(ids.stepped.begin(), ids.stepped.end(),
                       [id](const IdRange& range) { return range.contains(id); });
}

// Marks the positions whose ids are in the ranges: few ids are looked up, many positions are asked one by one. An id of
// 0 stands for none.
void markIds(const IdTable& table, const WantedIds& ids, std::uint8_t* marks, std::size_t count)
{
    if (table.empty()) {
        return;
    }
    const std::uint32_t lowest = std::max(table.lowest(), 1u), highest = table.highest();
    const std::size_t size = std::min<std::size_t>(table.size(), count);
    if (table.ascending() && countOf(ids) < size / 8) {
        rangesWithin(ids, lowest, highest, [&](const IdRange& range, unsigned int from) {
            for (std::int64_t id = from; id <= std::min<std::int64_t>(range.last, highest); ++id) {
                const std::uint32_t position = table.find(static_cast<std::uint32_t>(id));
                if (position < size) {
                    marks[position] = 1;
                }
            }
        });
        return;
    }
    parallelFor(size, 16384, [&](std::size_t begin, std::size_t end) {
        std::vector<std::uint32_t> some(end - begin);
        table.copy(static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(some.size()), some.data());
        for (std::size_t k = begin; k < end; ++k) {
            const std::uint32_t id = some[k - begin];
            marks[k] = marks[k] != 0 || (id != 0 && contains(ids, id));
        }
    });
}

void insertAll(MarkSet& set, unsigned int part)
{
    std::fill_n(set.of(part), set.size(part), std::uint8_t{1});
}

template <class Set> Set inverted(const ShownModel& model, const Set& set, Scope scope)
{
    const Set none(model);
    Set result = set.fits(none) ? set : none;
    for (unsigned int part = 0; part < none.numParts(); ++part) {
        if (partInScope(model.asRead().parts[part], scope)) {
            std::uint8_t* marks = result.of(part);
            std::transform(marks, marks + result.size(part), marks, [](std::uint8_t m) { return m == 0 ? 1 : 0; });
        }
    }
    return result;
}

bool wants(const MarkSet& nodes, unsigned int part, const std::uint32_t* corners, unsigned int count, bool all)
{
    const std::uint8_t* marks = nodes.of(part);
    const auto marked = [marks](std::uint32_t node) { return marks[node] != 0; };
    return all ? count > 0 && std::all_of(corners, corners + count, marked)
               : std::any_of(corners, corners + count, marked);
}

} // namespace

Selector::Selector(ShownModel shownModel) : model(std::move(shownModel)) {}

Selector::~Selector() = default;

void Selector::modelChanged()
{
    known.reset();
    model.asRead().forgetIds();
}

// Kept as long as the same parts are in scope and the model has the same counts.
const ModelJoints& Selector::joints()
{
    const ElementSet elements(model);
    const NodeSet nodes(model);
    const std::vector<std::uint8_t> inScope = partsInScope(model.read(), scope);
    if (!known || known->joint != joint || known->inScope != inScope || known->firstElement != elements.first ||
        known->firstNode != nodes.first) {
        known = std::make_unique<ModelJoints>(findJoints(model.asRead(), elements, nodes, joint, inScope));
    }
    return *known;
}

// --- Afresh ---

ElementSet Selector::allElements() const
{
    return invert(ElementSet(model));
}

namespace {

template <class Set, class IdsOf>
Set itemsById(const ShownModel& model, const std::vector<IdRange>& ids, Scope scope, const IdsOf& idsOf)
{
    Set set(model);
    const WantedIds wanted = tidied(ids);
    for (unsigned int part = 0; part < set.numParts(); ++part) {
        const IdTable* table = partInScope(model.asRead().parts[part], scope) ? idsOf(part) : nullptr;
        if (table) {
            markIds(*table, wanted, set.of(part), set.size(part));
        }
    }
    return set;
}

// All elements of the parts that are wanted.
template <class Wants> ElementSet elementsOf(const ShownModel& model, Scope scope, const Wants& wants)
{
    ElementSet set(model);
    for (unsigned int part = 0; part < set.numParts(); ++part) {
        if (partInScope(model.asRead().parts[part], scope) && wants(part)) {
            insertAll(set, part);
        }
    }
    return set;
}

} // namespace

ElementSet Selector::elementsById(const std::vector<IdRange>& ids) const
{
    return itemsById<ElementSet>(model, ids, scope,
                                 [this](unsigned int part) { return model.asRead().elementIds(part); });
}

NodeSet Selector::nodesById(const std::vector<IdRange>& ids) const
{
    return itemsById<NodeSet>(model, ids, scope, [this](unsigned int part) { return model.asRead().nodeIds(part); });
}

ElementSet Selector::elementsOfParts(const std::vector<IdRange>& partIds) const
{
    const WantedIds wanted = tidied(partIds);
    return elementsOf(model, scope, [&](unsigned int part) {
        const std::uint32_t id = model.asRead().partId(part);
        return id != 0 && contains(wanted, id);
    });
}

ElementSet Selector::elementsOfKind(ElementKind kind) const
{
    return elementsOf(model, scope, [&](unsigned int part) { return model.asRead().meshes[part].kind == kind; });
}

ElementSet Selector::elementsByQuality(Quality quality, float low, float high) const
{
    ElementSet set(model);
    const std::vector<std::uint8_t> inScope = partsInScope(model.read(), scope);
    forElements(set.first, inScope, [&](unsigned int part, std::uint32_t element, std::size_t number) {
        const float value = elementQuality(model.asRead().meshes[part], quality, element);
        set.marks[number] = value != noQuality && value >= low && value <= high;
    });
    return set;
}

// --- From a set ---

ElementSet Selector::invert(const ElementSet& set) const
{
    return inverted(model, set, scope);
}

NodeSet Selector::invert(const NodeSet& set) const
{
    return inverted(model, set, scope);
}

NodeSet Selector::nodesOf(const ElementSet& set) const
{
    NodeSet result(model);
    if (!set.fits(ElementSet(model))) {
        return result;
    }
    forElements(set.first, partsInScope(model.read(), Scope::AllParts),
                [&](unsigned int part, std::uint32_t element, std::size_t number) {
                    const ElementShape shape =
                        set.marks[number] != 0 ? shapeOf(model.asRead().meshes[part], element) : ElementShape::None;
                    if (shape == ElementShape::None) {
                        return;
                    }
                    std::uint32_t nodes[8];
                    const unsigned int count = cornersOf(model.asRead().meshes[part], element, shape, nodes);
                    for (unsigned int k = 0; k < count; ++k) {
                        markShared(result.of(part)[nodes[k]]);
                    }
                });
    return result;
}

ElementSet Selector::elementsWithNodes(const NodeSet& set, bool all) const
{
    ElementSet result(model);
    if (!set.fits(NodeSet(model))) {
        return result;
    }
    forElements(result.first, partsInScope(model.read(), scope),
                [&](unsigned int part, std::uint32_t element, std::size_t number) {
                    const ElementShape shape = shapeOf(model.asRead().meshes[part], element);
                    std::uint32_t nodes[8];
                    const unsigned int count =
                        shape == ElementShape::None ? 0 : cornersOf(model.asRead().meshes[part], element, shape, nodes);
                    result.marks[number] = wants(set, part, nodes, count, all);
                });
    return result;
}

} // namespace kvo
