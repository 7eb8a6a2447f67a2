// Reading of what has nodes but no picture.
#include "key_undrawn.h"

#include <algorithm>
#include <map>

namespace kvo {

const std::vector<KeyUndrawn::Row>& KeyUndrawn::rows()
{
    constexpr auto element = KeyOffsets::Element;
    constexpr auto node = KeyOffsets::Node;
    constexpr auto part = KeyOffsets::Part;
    static const std::vector<Row> table = {
        {"ELEMENT_MASS", 8, 0, element, 1, 1, -1, 0, false},
        {"ELEMENT_MASS_NODE_SET", 8, 0, element, 0, 0, 1, 0, false},
        {"ELEMENT_INERTIA", 8, 0, element, 1, 1, -1, 1, false},
        {"ELEMENT_SPH", 8, 0, node, 0, 1, -1, 0, false},
        {"ELEMENT_DISCRETE_SPHERE", 8, 0, node, 0, 1, -1, 0, false},
        {"ELEMENT_PLOTEL", 8, 0, element, 1, 2, -1, 0, false},
        {"CONSTRAINED_NODAL_RIGID_BODY", 10, 0, part, 0, 0, 2, 0, false},
        {"CONSTRAINED_EXTRA_NODES_NODE", 10, 0, part, 1, 1, -1, 0, false},
        {"CONSTRAINED_EXTRA_NODES_SET", 10, 0, part, 0, 0, 1, 0, false},
        {"CONSTRAINED_NODE_SET", 10, -1, node, 0, 0, 0, 0, false},
        {"CONSTRAINED_INTERPOLATION", 10, 0, element, 1, 1, -1, 0, true},
        {"CONSTRAINED_SPOTWELD", 10, -1, node, 0, 2, -1, 0, false},
        {"CONSTRAINED_RIVET", 10, -1, node, 0, 2, -1, 0, false},
        {"CONSTRAINED_JOINT_SPHERICAL", 10, -1, node, 0, 6, -1, 0, false},
        {"CONSTRAINED_JOINT_REVOLUTE", 10, -1, node, 0, 6, -1, 0, false},
        {"CONSTRAINED_JOINT_CYLINDRICAL", 10, -1, node, 0, 6, -1, 0, false},
        {"CONSTRAINED_JOINT_PLANAR", 10, -1, node, 0, 6, -1, 0, false},
        {"CONSTRAINED_JOINT_UNIVERSAL", 10, -1, node, 0, 6, -1, 0, false},
        {"CONSTRAINED_JOINT_TRANSLATIONAL", 10, -1, node, 0, 6, -1, 0, false},
        {"CONSTRAINED_JOINT_LOCKING", 10, -1, node, 0, 6, -1, 0, false},
    };
    return table;
}

bool KeyUndrawn::begin(int kind)
{
    row = &rows()[static_cast<std::size_t>(kind)];
    KeyKeyword& keyword = context.keyword;
    extraCards = row->extraCards;
    extraLeft = 0;
    openNodes.clear();
    first = true;
    oneOnly = false;
    keyword.takeOption("VOLUME"); // of spheres: the same line
    if (keyword.base == "ELEMENT_INERTIA") {
        extraCards += keyword.takeOption("OFFSET");
    } else if (keyword.base == "CONSTRAINED_NODAL_RIGID_BODY") {
        extraCards += keyword.takeOption("SPC");
        extraLeft = keyword.takeOption("TITLE") ? 1 : 0;
        oneOnly = keyword.takeOption("INERTIA");
    } else if (keyword.takeOption("ID") || keyword.takeOption("TITLE")) {
        extraLeft = 1;
        oneOnly = true;
    }
    return keyword.options.empty();
}

void KeyUndrawn::line(std::string_view text)
{
    if (extraLeft > 0) {
        --extraLeft;
        return;
    }
    if (first || (!oneOnly && !row->nodePerLine)) {
        first = false;
        extraLeft = extraCards;
        return entry(text);
    }
    if (row->nodePerLine) {
        KeyFields fields = context.fields(text);
        const std::int64_t node = fields.integer(row->width);
        if (context.accept(fields) && node != 0) {
            openNodes.push_back(context.lines.shifted(node, KeyOffsets::Node));
        }
    }
}

void KeyUndrawn::entry(std::string_view text)
{
    KeyFields fields = context.fields(text);
    const int last = std::max({row->idAt, row->firstNode + row->nodeCount - 1, row->setAt});
    std::int64_t id = 0;
    std::int64_t set = 0;
    std::vector<std::int64_t> nodes;
    for (int k = 0; k <= last; ++k) {
        const std::int64_t value = fields.integer(row->width);
        id = k == row->idAt ? context.lines.shifted(value, row->idOf) : id;
        set = k == row->setAt ? context.lines.shifted(value, KeyOffsets::Set) : set;
        if (k >= row->firstNode && k < row->firstNode + row->nodeCount && value != 0) {
            nodes.push_back(context.lines.shifted(value, KeyOffsets::Node));
        }
    }
    if (!context.accept(fields)) {
        return;
    }
    if (row->setAt >= 0) {
        bySet.push_back({row->keyword, id, set, context.lines.place()});
        context.log.count(listElementsNotDrawn, row->keyword, 1, context.lines.place());
    } else if (row->nodePerLine) {
        openId = id;
        openNodes = nodes;
    } else {
        keep(id, nodes);
    }
}

void KeyUndrawn::keep(std::int64_t id, const std::vector<std::int64_t>& nodes)
{
    context.file().addUndrawn(row->keyword, id, nodes.data(), nodes.size());
    context.log.count(listElementsNotDrawn, row->keyword, 1, context.lines.place());
}

void KeyUndrawn::end()
{
    if (row->nodePerLine && !openNodes.empty()) {
        keep(openId, openNodes);
        openNodes.clear();
    }
}

void KeyUndrawn::resolveSets()
{
    std::map<std::int64_t, const MeshSet*> nodeSets;
    for (const MeshSet& set : context.mesh.sets) {
        if (set.of == MeshSet::Of::Nodes) {
            nodeSets[set.id] = &set;
        }
    }
    for (const BySet& entry : bySet) {
        std::vector<std::int64_t> nodes;
        const auto found = nodeSets.find(entry.set);
        if (found != nodeSets.end()) {
            found->second->ids.forEach([&](std::int64_t id) { nodes.push_back(id); });
        }
        if (nodes.empty()) {
            context.log.warn(warnMissingSet, entry.place,
                             std::string(entry.type) + " " + std::to_string(entry.id) + ": node set " +
                                 std::to_string(entry.set) + " does not exist or is empty");
        }
        context.file().addUndrawn(entry.type, entry.id, nodes.data(), nodes.size());
    }
}

} // namespace kvo
