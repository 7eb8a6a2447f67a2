// Elements of bulk data into a mesh.
#include "bdf_elements.h"

#include <algorithm>

#include "id_index.h"
#include "node_surplus.h"
#include "text/fields.h"

namespace kvo {

namespace {

constexpr int maxSlots = 9;
constexpr std::int64_t noProperty = 0;

// Sorted ranges that do not touch.
std::vector<IdRange> merged(std::vector<IdRange> ranges)
{
    std::sort(ranges.begin(), ranges.end(), [](const IdRange& a, const IdRange& b) { return a.first < b.first; });
    std::vector<IdRange> result;
    for (const IdRange& range : ranges) {
        if (!result.empty() && range.first <= result.back().last) {
            result.back().last = std::max(result.back().last, range.last);
        } else {
            result.push_back(range);
        }
    }
    return result;
}

bool holds(const std::vector<IdRange>& ranges, std::int64_t id)
{
    const auto after = std::upper_bound(ranges.begin(), ranges.end(), id,
                                        [](std::int64_t value, const IdRange& range) { return value < range.first; });
    return after != ranges.begin() && id <= std::prev(after)->last;
}

} // namespace

std::uint32_t BdfElements::typeOf(const BdfElementRow& row)
{
    if (&row != lastRow) {
        lastRow = &row;
        lastType = rows.type(row.name, row.family, row.shape, row.family == Family::Discrete && row.orientation >= 0);
        if (row.scalar) {
            scalarTypes.insert(lastType);
        }
    }
    return lastType;
}

// --- parts ---

// A blank property id is the element's own id. Cards without a property make one part of all.
std::uint32_t BdfElements::partOf(const BdfElementRow& row, const BdfCard& card, std::size_t first, std::int64_t id)
{
    if (row.property >= 0) {
        const std::int64_t property = card.integer(first + static_cast<std::size_t>(row.property), id);
        const std::uint32_t part = rows.part(property);
        mesh.parts[part].propertyId = property;
        return part;
    }
    const std::uint32_t part = rows.part(std::string(row.name) + " elements");
    mesh.parts[part].section = row.name;
    if (row.value >= 0) {
        noteValue(row, card.real(first + static_cast<std::size_t>(row.value)), part);
    }
    return part;
}

// The part has the value if all its elements agree.
void BdfElements::noteValue(const BdfElementRow& row, double value, std::uint32_t part)
{
    SectionData& data = mesh.parts[part].data;
    double& kept = row.family == Family::Beam ? data.area : row.name[1] == 'D' ? data.damping : data.stiffness;
    const bool first = valued.insert(part).second;
    if (!first && kept != value) {
        mixedValues.insert(part);
    }
    kept = first || mixedValues.count(part) == 0 ? value : 0.0;
}

// --- elements ---

// An integer without two more numbers behind it is a node.
BdfElements::OrientationEntry BdfElements::orientationOf(const BdfCard& card, int field)
{
    OrientationEntry entry;
    const std::size_t first = static_cast<std::size_t>(field);
    std::int64_t node = 0;
    if (card.isInteger(first, node) && card.blank(first + 1) && card.blank(first + 2)) {
        entry.node = node > 0 ? node : noNode;
        return entry;
    }
    for (std::size_t k = 0; k < 3; ++k) {
        entry.isVector = entry.isVector || !card.blank(first + k);
        entry.vector[k] = card.real(first + k);
    }
    return entry;
}

BdfElements::Frame BdfElements::frameOf(const BdfCard& card)
{
    const std::string offt = card.text(7);
    return offt.empty() ? Frame::Blank : offt[0] == 'B' ? Frame::Basic : Frame::OfEndA;
}

namespace {

std::int64_t elementId(const BdfCard& card, std::size_t field)
{
    const std::int64_t id = card.integer(field);
    if (id <= 0) {
        throw ImportError(card.place(), card.name() + ": the id must be above 0, not " + std::to_string(id));
    }
    return id;
}

// Nodes of a solid with all its mid-side nodes; 0: cards of other shapes have other fields behind the nodes.
std::size_t mostNodes(const BdfElementRow& row)
{
    switch (row.family == Family::Solid ? row.shape : Shape::Line) {
    case Shape::Tetra:
        return 10;
    case Shape::Pyramid:
        return 13;
    case Shape::Wedge:
        return 15;
    case Shape::Hexa:
        return 20;
    default:
        return 0;
    }
}

// One end may be the ground: no node, and the element shrinks to the other end. False if there is no end at all.
bool groundEnds(std::int64_t* nodes)
{
    nodes[0] = nodes[0] <= 0 ? nodes[1] : nodes[0];
    nodes[1] = nodes[1] <= 0 ? nodes[0] : nodes[1];
    return nodes[0] > 0;
}

} // namespace

void BdfElements::add(const BdfElementRow& row, const BdfCard& card)
{
    addElement(row, card, 0);
    if (hasSecond(row.second, card)) {
        addElement(row, card, static_cast<std::size_t>(row.second));
    }
}

// What is no integer there is none of the format's: a label, or a remark.
bool BdfElements::hasSecond(int second, const BdfCard& card)
{
    const std::size_t field = static_cast<std::size_t>(second);
    std::int64_t id = 0;
    if (second == 0 || card.blank(field)) {
        return false;
    }
    if (!card.isInteger(field, id)) {
        log.warn("second elements of cards that are none", card.place(),
                 card.name() + ": \"" + card.text(field).substr(0, 40) + "\" in field " + std::to_string(field + 2) +
                     " is no id of a second element");
        return false;
    }
    return true;
}

// first: field of the element's id.
void BdfElements::addElement(const BdfElementRow& row, const BdfCard& card, std::size_t first)
{
    const std::int64_t id = elementId(card, first);
    const std::size_t corners = static_cast<std::size_t>(cornerCount(row.shape));
    std::int64_t nodes[maxSlots];
    for (std::size_t k = 0; k < corners; ++k) {
        const std::size_t field = static_cast<std::size_t>(row.firstNode) + k * static_cast<std::size_t>(row.step);
        nodes[k] = card.integer(first + field);
    }
    if (row.family == Family::Discrete && !groundEnds(nodes)) {
        log.warn("elements without nodes", card.place(),
                 card.name() + " element " + std::to_string(id) + " has no node: left out");
        return;
    }
    OrientationEntry orientation;
    // A bush or gap that names a coordinate system (field 9) lies in it, whatever node or vector it names as well.
    const bool hasSystem = row.family == Family::Discrete && !card.blank(7);
    if (row.orientation >= 0 && !hasSystem) {
        orientation = orientationOf(card, row.orientation);
    }
    nodes[corners] = orientation.node;
    checkSurplus(row, card, id);
    const std::uint32_t type = typeOf(row);
    const std::uint32_t part = partOf(row, card, first, id);
    ElementBlock& block = mesh.files.front().blockFor(type, card.file);
    block.ids.push_back(id);
    block.part.push_back(part);
    block.line.push_back(card.line);
    block.nodes.insert(block.nodes.end(), nodes, nodes + mesh.types[type].slots());
    if (orientation.isVector) {
        vectors.push_back({id, nodes[0], orientation.vector, row.base ? frameOf(card) : Frame::OfEndA, &row});
    }
    if (row.base) {
        noteBlanks(row, card, block, nodes[0], orientation);
    }
}

void BdfElements::checkSurplus(const BdfElementRow& row, const BdfCard& card, std::int64_t id)
{
    const std::size_t most = mostNodes(row);
    std::size_t given = most;
    std::int64_t node = 0;
    while (most > 0 && card.isInteger(static_cast<std::size_t>(row.firstNode) + given, node) && node > 0) {
        ++given;
    }
    if (given > most) {
        warnOfMoreNodes(log, card.place(), row.name, id, most, given);
    }
}

// The last element of the block, if a default may fill something.
void BdfElements::noteBlanks(const BdfElementRow& row, const BdfCard& card, ElementBlock& block, std::int64_t endA,
                             const OrientationEntry& orientation)
{
    const bool property = card.blank(1);
    const bool direction = !orientation.isVector && orientation.node == noNode;
    if (property || direction) {
        unfinished.push_back({&block, block.size() - 1, endA, property, direction, frameOf(card), &row});
    }
}

void BdfElements::addUndrawn(const BdfUndrawnRow& row, const BdfCard& card)
{
    addUndrawnElement(row, card, 0);
    if (hasSecond(row.second, card)) {
        addUndrawnElement(row, card, static_cast<std::size_t>(row.second));
    }
}

void BdfElements::addUndrawnElement(const BdfUndrawnRow& row, const BdfCard& card, std::size_t first)
{
    std::vector<std::int64_t> nodes;
    if (row.nodes) {
        row.nodes(card, first, nodes);
    }
    std::int64_t id = 0;
    card.isInteger(first, id);
    mesh.files.front().addUndrawn(row.name, id, nodes.data(), nodes.size());
    log.count(listElementsNotDrawn, row.name, 1, card.place());
    const auto isRange = [](std::string_view field) { return equalsIgnoringCase(trimmed(field), "THRU"); };
    if (std::any_of(card.fields.begin(), card.fields.end(), isRange)) {
        log.warn("ranges of nodes", card.place(),
                 std::string(row.name) + " " + std::to_string(id) + ": of nodes with THRU only the two ends are kept");
    }
}

// --- defaults ---

void BdfElements::setDefaults(const BdfCard& card)
{
    Defaults& entry = defaults[card.key];
    entry.property = card.integer(1, noProperty);
    entry.orientation = orientationOf(card, 4);
    entry.frame = frameOf(card);
}

// BAROR or BEAMOR if the deck has one, else null.
const BdfElements::Defaults* BdfElements::defaultsOf(const BdfElementRow& row) const
{
    const auto found = row.base ? defaults.find(cardKey(row.base)) : defaults.end();
    return found == defaults.end() ? nullptr : &found->second;
}

void BdfElements::applyDefaults()
{
    for (const Unfinished& element : unfinished) {
        const Defaults* given = defaultsOf(*element.row);
        if (!given) {
            continue;
        }
        ElementBlock& block = *element.block;
        const std::int64_t property = given->property;
        if (element.property && property != noProperty) {
            block.part[element.element] = rows.part(property);
            mesh.parts[block.part[element.element]].propertyId = property;
        }
        const OrientationEntry& orientation = given->orientation;
        if (element.orientation && orientation.isVector) {
            vectors.push_back(
                {block.ids[element.element], element.endA, orientation.vector, element.frame, element.row});
        } else if (element.orientation) {
            block.nodes[3 * element.element + 2] = orientation.node;
        }
    }
    unfinished = {};
}

void BdfElements::applyVectors()
{
    for (const VectorOfElement& row : vectors) {
        const Defaults* given = defaultsOf(*row.row);
        const Frame frame = row.frame == Frame::Blank && given ? given->frame : row.frame;
        mesh.files.front().orient(row.element,
                                  frame == Frame::Basic ? row.vector : coords.toBasic(row.endA, row.vector));
    }
    vectors = {};
}

// --- scalar points ---

// "1, 5, 9" or "1, THRU, 9".
void BdfElements::addScalarPoints(const BdfCard& card)
{
    for (std::size_t k = 0; k < card.fields.size(); ++k) {
        const std::int64_t first = card.integer(k);
        if (first <= 0) {
            continue;
        }
        std::int64_t last = first;
        if (card.text(k + 1) == "THRU") {
            last = card.integer(k + 2);
            k += 2;
        }
        if (last < first) {
            throw ImportError(card.place(), card.name() + ": THRU expects a higher id behind it");
        }
        scalarPoints.addRange(first, last);
    }
}

// A scalar point is nowhere: an end that is one counts as the ground does.
void BdfElements::shrinkScalarElements()
{
    if (scalarPoints.ranges.empty() && scalarTypes.empty()) {
        return;
    }
    MeshFile& file = mesh.files.front();
    const IdIndex grids(file.nodeIds);
    const std::vector<IdRange> points = merged(scalarPoints.ranges);
    for (ElementBlock& block : file.blocks) {
        const ElementType& type = mesh.types[block.type];
        const bool anyIsScalar = scalarTypes.count(block.type) > 0;
        const std::size_t slots = static_cast<std::size_t>(type.slots());
        for (std::size_t e = 0; type.family == Family::Discrete && e < block.size(); ++e) {
            std::int64_t* ends = &block.nodes[e * slots];
            bool scalar[2];
            for (int k = 0; k < 2; ++k) {
                scalar[k] = grids.find(ends[k]) == IdIndex::none && (anyIsScalar || holds(points, ends[k]));
            }
            if (scalar[0] && scalar[1]) {
                block.part[e] = noPart;
                file.addUndrawn(type.name, block.ids[e], ends, ends[0] == ends[1] ? 1 : 2);
                log.count(listElementsNotDrawn, type.name + " between scalar points", 1, mesh.placeOf(block, e));
            } else if (scalar[0] || scalar[1]) {
                ends[scalar[0] ? 0 : 1] = ends[scalar[0] ? 1 : 0];
            }
        }
    }
}

void BdfElements::finish()
{
    applyDefaults();
    applyVectors();
    shrinkScalarElements();
}

} // namespace kvo
