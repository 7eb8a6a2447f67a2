// Reading of what has nodes but no picture.
#include "key_undrawn.h"

#include <algorithm>
#include <map>

#include "text/fields.h"

namespace kvo {

namespace {

constexpr int inertiaCards = 3; // centre and mass, inertia, velocities

} // namespace

const std::vector<KeyUndrawn::Row>& KeyUndrawn::rows()
{
    constexpr auto element = KeyOffsets::Element;
    constexpr auto node = KeyOffsets::Node;
    constexpr auto part = KeyOffsets::Part;
    static const std::vector<Row> table = {
        {"ELEMENT_MASS", 8, 0, element, 1, 1, -1, 0, false, -1},
        {"ELEMENT_MASS_NODE_SET", 8, 0, element, 0, 0, 1, 0, false, -1},
        {"ELEMENT_INERTIA", 8, 0, element, 1, 1, -1, 1, false, -1},
        {"ELEMENT_SPH", 8, 0, node, 0, 1, -1, 0, false, -1},
        {"ELEMENT_DISCRETE_SPHERE", 8, 0, node, 0, 1, -1, 0, false, -1},
        {"ELEMENT_PLOTEL", 8, 0, element, 1, 2, -1, 0, false, -1},
        {"CONSTRAINED_NODAL_RIGID_BODY", 10, 0, part, 0, 0, 2, 0, false, -1},
        {"CONSTRAINED_EXTRA_NODES_NODE", 10, 0, part, 1, 1, -1, 0, false, -1},
        {"CONSTRAINED_EXTRA_NODES_SET", 10, 0, part, 0, 0, 1, 0, false, -1},
        {"CONSTRAINED_NODE_SET", 10, -1, node, 0, 0, 0, 0, false, -1},
        {"CONSTRAINED_INTERPOLATION", 10, 0, element, 1, 1, -1, 0, true, 4},
        {"CONSTRAINED_SPOTWELD", 10, -1, node, 0, 2, -1, 0, false, -1},
        {"CONSTRAINED_RIVET", 10, -1, node, 0, 2, -1, 0, false, -1},
        {"CONSTRAINED_JOINT_SPHERICAL", 10, -1, node, 0, 6, -1, 0, false, -1},
        {"CONSTRAINED_JOINT_REVOLUTE", 10, -1, node, 0, 6, -1, 0, false, -1},
        {"CONSTRAINED_JOINT_CYLINDRICAL", 10, -1, node, 0, 6, -1, 0, false, -1},
        {"CONSTRAINED_JOINT_PLANAR", 10, -1, node, 0, 6, -1, 0, false, -1},
        {"CONSTRAINED_JOINT_UNIVERSAL", 10, -1, node, 0, 6, -1, 0, false, -1},
        {"CONSTRAINED_JOINT_TRANSLATIONAL", 10, -1, node, 0, 6, -1, 0, false, -1},
        {"CONSTRAINED_JOINT_LOCKING", 10, -1, node, 0, 6, -1, 0, false, -1},
    };
    return table;
}

bool KeyUndrawn::begin(int kind)
{
    row = &rows()[static_cast<std::size_t>(kind)];
    KeyKeyword& keyword = context.keyword;
    extraCards = row->extraCards;
    headings = 0;
    inertiaAt = -1;
    at = extraLeft = 0;
    open = {};
    keyword.takeOption("VOLUME"); // of spheres: the same line
    if (keyword.base == "ELEMENT_INERTIA") {
        extraCards += keyword.takeOption("OFFSET");
    } else if (keyword.base == "CONSTRAINED_NODAL_RIGID_BODY") {
        extraCards += keyword.takeOption("SPC");
        if (keyword.takeOption("INERTIA")) {
            inertiaAt = extraCards;
            extraCards += inertiaCards;
        }
    }
    if (keyword.takeOption("TITLE") || keyword.takeOption("ID")) {
        headings = 1;
    }
    return keyword.options.empty();
}

void KeyUndrawn::line(std::string_view text)
{
    if (at < headings) {
        ++at;
    } else if (at == headings) {
        if (!trimmed(text).empty()) {
            ++at;
            extraLeft = extraCards;
            entryLine(text);
        }
    } else if (row->nodePerLine) {
        return nodeLine(text);
    } else {
        extraLine(text, at - headings - 1);
        ++at;
        --extraLeft;
    }
    if (at > headings && extraLeft == 0 && !row->nodePerLine) {
        at = 0;
    }
}

void KeyUndrawn::entryLine(std::string_view text)
{
    KeyFields fields = context.fields(text);
    const int last = std::max({row->idAt, row->firstNode + row->nodeCount - 1, row->setAt, row->setsAt});
    Entry entry;
    entry.type = row->keyword;
    entry.place = context.lines.place();
    for (int k = 0; k <= last; ++k) {
        const std::int64_t value = fields.integer(row->width);
        if (k == row->idAt) {
            entry.id = context.lines.shifted(value, row->idOf);
        } else if (k == row->setAt) {
            entry.sets.push_back(context.lines.shifted(value, KeyOffsets::Set));
        } else if (k == row->setsAt) {
            bySets = value == 1;
        }
        if (k >= row->firstNode && k < row->firstNode + row->nodeCount && value != 0) {
            entry.nodes.push_back(context.lines.shifted(value, KeyOffsets::Node));
        }
    }
    if (!context.accept(fields)) {
        return;
    }
    if (row->nodePerLine) {
        open = std::move(entry);
    } else {
        keep(entry);
    }
}

void KeyUndrawn::nodeLine(std::string_view text)
{
    KeyFields fields = context.fields(text);
    const std::int64_t id = fields.integer(row->width);
    if (context.accept(fields) && id != 0) {
        (bySets ? open.sets : open.nodes)
            .push_back(context.lines.shifted(id, bySets ? KeyOffsets::Set : KeyOffsets::Node));
    }
}

// With a local system of its own, an inertia has one line more.
void KeyUndrawn::extraLine(std::string_view text, int number)
{
    if (number == inertiaAt) {
        KeyFields fields = context.fields(text);
        for (int k = 0; k < 4; ++k) {
            fields.text(10);
        }
        extraLeft += fields.integer(10) == 1;
    }
}

void KeyUndrawn::keep(Entry& entry)
{
    context.log.count(listElementsNotDrawn, entry.type, 1, entry.place);
    if (entry.sets.empty()) {
        context.file().addUndrawn(entry.type, entry.id, entry.nodes.data(), entry.nodes.size());
    } else {
        waiting.push_back(std::move(entry));
    }
}

void KeyUndrawn::end()
{
    if (open.type) {
        keep(open);
        open = {};
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
    for (Entry& entry : waiting) {
        for (const std::int64_t set : entry.sets) {
            const auto found = nodeSets.find(set);
            if (found != nodeSets.end() && !found->second->ids.ranges.empty()) {
                found->second->ids.forEach([&](std::int64_t id) { entry.nodes.push_back(id); });
                continue;
            }
            context.log.warn(warnMissingSet, entry.place,
                             std::string(entry.type) + " " + std::to_string(entry.id) + ": node set " +
                                 std::to_string(set) + " does not exist or is empty");
        }
        context.file().addUndrawn(entry.type, entry.id, entry.nodes.data(), entry.nodes.size());
    }
}

} // namespace kvo
