// Selecting by what elements and nodes are: ids, parts, types, quality; and sets turned into others of the same model.
#include <algorithm>
#include <cmath>

#include "element_shape.h"
#include "model_joints.h"
#include "select_more.h"

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

// visit(value) for the entries of a map whose keys are in the ranges.
template <class Visit> void lookUp(const UIUIMap& map, const WantedIds& ids, const Visit& visit)
{
    if (map.empty()) {
        return;
    }
    rangesWithin(ids, map.begin()->first, map.rbegin()->first, [&](const IdRange& range, unsigned int from) {
        for (auto entry = map.lower_bound(from); entry != map.end() && entry->first <= range.last; ++entry) {
            if (range.contains(entry->first)) {
                visit(entry->second);
            }
        }
    });
}

void insertAll(MarkSet& set, unsigned int part)
{
    std::fill_n(set.of(part), set.size(part), std::uint8_t{1});
}

template <class Set> Set inverted(CAEEnv& env, const Set& set, Scope scope)
{
    Set result = set.fits(Set(env)) ? set : Set(env);
    for (unsigned int part = 0; part < env.numParts; ++part) {
        if (partInScope(env.partsInfoList[part], scope)) {
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

Selector::Selector(CAEEnv& env) : env(env) {}

Selector::~Selector() = default;

void Selector::modelChanged()
{
    known.reset();
}

// Kept as long as the same parts are in scope and the model has the same counts.
const ModelJoints& Selector::joints()
{
    const ElementSet elements(env);
    const NodeSet nodes(env);
    const std::vector<std::uint8_t> inScope = partsInScope(env, scope);
    if (!known || known->joint != joint || known->inScope != inScope || known->firstElement != elements.first ||
        known->firstNode != nodes.first) {
        known = std::make_unique<ModelJoints>(findJoints(env.partsInfoList, elements, nodes, joint, inScope));
    }
    return *known;
}

// --- Afresh ---

ElementSet Selector::allElements() const
{
    return invert(ElementSet(env));
}

ElementSet Selector::elementsById(const std::vector<IdRange>& ids) const
{
    ElementSet set(env);
    const WantedIds wanted = tidied(ids);
    for (unsigned int part = 0; part < env.numParts; ++part) {
        const UIUIMap* map = env.partsInfoList[part].partElements.eidMap;
        if (map != nullptr && partInScope(env.partsInfoList[part], scope)) {
            lookUp(*map, wanted, [&](unsigned int position) { set.insert(part, position); });
        }
    }
    return set;
}

NodeSet Selector::nodesById(const std::vector<IdRange>& ids) const
{
    NodeSet set(env);
    const WantedIds wanted = tidied(ids);
    for (unsigned int part = 0; part < env.numParts; ++part) {
        const PartNodesStr& nodes = env.partsInfoList[part].partNodes;
        if (nodes.numNodes == 0 || nodes.idList == nullptr || !partInScope(env.partsInfoList[part], scope)) {
            continue;
        }
        const unsigned int *begin = nodes.idList, *end = begin + nodes.numNodes;
        rangesWithin(wanted, begin[0], end[-1], [&](const IdRange& range, unsigned int from) {
            for (const unsigned int* id = std::lower_bound(begin, end, from); id != end && *id <= range.last; ++id) {
                if (range.contains(*id)) {
                    set.insert(part, static_cast<std::size_t>(id - begin));
                }
            }
        });
    }
    return set;
}

ElementSet Selector::elementsOfParts(const std::vector<IdRange>& partIds) const
{
    ElementSet set(env);
    lookUp(env.pidMap, tidied(partIds), [&](unsigned int part) {
        if (part < env.numParts && partInScope(env.partsInfoList[part], scope)) {
            insertAll(set, part);
        }
    });
    return set;
}

ElementSet Selector::elementsOfType(unsigned int partDrawType) const
{
    ElementSet set(env);
    for (unsigned int part = 0; part < env.numParts; ++part) {
        if (env.partsInfoList[part].partDrawType == partDrawType && partInScope(env.partsInfoList[part], scope)) {
            insertAll(set, part);
        }
    }
    return set;
}

ElementSet Selector::elementsByQuality(Quality quality, float low, float high) const
{
    ElementSet set(env);
    const std::vector<std::uint8_t> inScope = partsInScope(env, scope);
    forElements(set.first, inScope, [&](unsigned int part, std::uint32_t element, std::size_t number) {
        const float value = elementQuality(env.partsInfoList[part], quality, element);
        set.marks[number] = value != noQuality && value >= low && value <= high;
    });
    return set;
}

// --- From a set ---

ElementSet Selector::invert(const ElementSet& set) const
{
    return inverted(env, set, scope);
}

NodeSet Selector::invert(const NodeSet& set) const
{
    return inverted(env, set, scope);
}

NodeSet Selector::nodesOf(const ElementSet& set) const
{
    NodeSet result(env);
    if (!set.fits(ElementSet(env))) {
        return result;
    }
    forElements(set.first, partsInScope(env, Scope::AllParts),
                [&](unsigned int part, std::uint32_t element, std::size_t number) {
                    const ElementShape shape =
                        set.marks[number] != 0 ? shapeOf(env.partsInfoList[part], element) : ElementShape::None;
                    if (shape == ElementShape::None) {
                        return;
                    }
                    std::uint32_t nodes[8];
                    const unsigned int count = cornersOf(env.partsInfoList[part], element, shape, nodes);
                    for (unsigned int k = 0; k < count; ++k) {
                        markShared(result.of(part)[nodes[k]]);
                    }
                });
    return result;
}

ElementSet Selector::elementsWithNodes(const NodeSet& set, bool all) const
{
    ElementSet result(env);
    if (!set.fits(NodeSet(env))) {
        return result;
    }
    forElements(result.first, partsInScope(env, scope),
                [&](unsigned int part, std::uint32_t element, std::size_t number) {
                    const ElementShape shape = shapeOf(env.partsInfoList[part], element);
                    std::uint32_t nodes[8];
                    const unsigned int count =
                        shape == ElementShape::None ? 0 : cornersOf(env.partsInfoList[part], element, shape, nodes);
                    result.marks[number] = wants(set, part, nodes, count, all);
                });
    return result;
}

} // namespace kvo
