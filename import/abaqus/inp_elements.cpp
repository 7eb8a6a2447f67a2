// *ELEMENT cards.
#include "inp_elements.h"

#include "node_surplus.h"
#include "text/numbers.h"

namespace kvo {

namespace {

const char* const defaultGroups[familyCount] = {"shell elements", "solid elements", "beam elements",
                                                "discrete elements"};

} // namespace

void InpElementReader::begin(InpScope& newScope, bool instancesAllowed, const KeywordLine& line)
{
    scope = &newScope;
    mayNameInstances = instancesAllowed;
    element = ElementCard();
    element.typeName = nameKey(line.value("TYPE"));
    if (element.typeName.empty()) {
        throw ImportError(line.place, "*ELEMENT without TYPE=");
    }
    const std::string set = line.value("ELSET");
    element.set = set.empty() ? nullptr : &scope->elementSet(set);
    element.row = findInpElementType(element.typeName);
    if (!element.row) {
        const int nodes = undrawnNodeCount(element.typeName);
        element.needed = nodes ? 1 + nodes : 0;
        element.most = element.needed;
        undrawnPlace = line.place;
        return;
    }
    const InpElementType& row = *element.row;
    const auto found = typeIndex.emplace(element.typeName, static_cast<std::uint32_t>(types.size()));
    if (found.second) {
        types.push_back({element.typeName, row.family, row.shape});
    }
    element.type = found.first->second;
    element.group = scope->groupIndex(set.empty() ? defaultGroups[static_cast<int>(row.family)] : set);
    element.needed = 1 + row.nodes;
    element.most = 1 + row.maxNodes + (row.family == Family::Beam);
}

// "PLATE-1.12" names node 12 of an instance. False if the text is nothing like that.
bool InpElementReader::foreignNode(const std::string& text, std::int64_t& entry)
{
    const std::size_t dot = text.rfind('.');
    std::int64_t id = 0;
    if (!mayNameInstances || dot == std::string::npos || dot == 0 ||
        !parseInteger(std::string_view(text).substr(dot + 1), id) || id <= 0 || id > maxInpId) {
        return false;
    }
    scope->foreignNodes.push_back({nameKey(std::string_view(text).substr(0, dot)), id});
    entry = foreignNodeId(scope->foreignNodes.size() - 1);
    return true;
}

// The next entry of an element's data line. False behind the last one.
bool InpElementReader::nextEntry(CommaFields& fields, std::int64_t& entry)
{
    entry = 0; // a blank between two commas is "no node"
    const Field field = fields.nextInteger(entry);
    if (field == Field::Bad) {
        std::string text;
        fields.nextText(text);
        if (element.count == 0) {
            throw ImportError(deck.place(), "element id expected, found \"" + text + "\"");
        }
        if (!foreignNode(text, entry) && element.row) {
            throw ImportError(deck.place(), "node id expected, found \"" + text + "\"");
        }
    } else if (entry < 0 || entry > maxInpId) {
        throw ImportError(deck.place(), "id " + std::to_string(entry) + " is out of range");
    }
    return field != Field::End;
}

void InpElementReader::data(std::string_view line)
{
    CommaFields fields(line);
    const bool continued = element.count > 0;
    if (!continued) {
        element.file = deck.fileIndex();
        element.line = deck.lineNumber();
    }
    std::int64_t entry = 0;
    int beyond = 0;
    while (nextEntry(fields, entry)) {
        if (element.count < maxEntries) {
            element.entries[element.count++] = entry;
        }
        beyond += element.needed && element.count > element.most;
    }
    checkInpId(element.entries[0], "element", deck);
    if (beyond && element.needed) {
        const std::size_t most = static_cast<std::size_t>(element.most) - 1;
        warnOfMoreNodes(log, deck.place(), element.typeName, element.entries[0], most,
                        most + static_cast<std::size_t>(beyond));
    }
    // With a known count the count decides; a trailing comma counts only where inner nodes may be left out, or where
    // nothing else is known.
    const bool variable = element.row && element.row->maxNodes > element.row->nodes;
    const bool open = fields.endedWithComma() && element.count < element.most && variable;
    const bool complete = element.needed ? element.count >= element.needed && !open : !fields.endedWithComma();
    if (complete) {
        add();
    }
}

void InpElementReader::add()
{
    const std::int64_t id = element.entries[0];
    if (element.row) {
        store(id);
    } else {
        ++element.undrawn;
        scope->mesh.addUndrawn(element.typeName, id, element.entries + 1, static_cast<std::size_t>(element.count) - 1);
    }
    if (element.set) {
        element.set->add(id);
    }
    element.count = 0;
}

void InpElementReader::store(std::int64_t id)
{
    const InpElementType& row = *element.row;
    const std::int64_t* nodes = element.entries + 1;
    ElementBlock& block = scope->mesh.blockFor(element.type, element.file);
    block.ids.push_back(id);
    block.part.push_back(element.group);
    block.line.push_back(element.line);
    if (row.shape != Shape::Line) {
        block.nodes.insert(block.nodes.end(), nodes, nodes + cornerCount(row.shape));
        return;
    }
    std::int64_t ends[2] = {nodes[0], nodes[row.secondCorner]};
    if (row.family == Family::Discrete) {
        // One end may be the ground: no node, and the element shrinks to the other end.
        ends[0] = ends[0] == 0 ? ends[1] : ends[0];
        ends[1] = ends[1] == 0 ? ends[0] : ends[1];
    }
    block.nodes.insert(block.nodes.end(), ends, ends + 2);
    if (row.family == Family::Beam) {
        const bool third = element.count > element.needed && nodes[row.nodes] != 0;
        block.nodes.push_back(third ? nodes[row.nodes] : noNode);
    }
}

void InpElementReader::end()
{
    if (element.count > 0) {
        endLast();
    }
    if (!element.row) {
        log.count(listElementsNotDrawn, element.typeName, element.undrawn, undrawnPlace);
    }
}

// The card ends while an element waits for a further data line.
void InpElementReader::endLast()
{
    if (element.needed == 0 || element.count >= element.needed) {
        add(); // the line need not come
        return;
    }
    const Place place = {deck.files()[element.file], element.line};
    log.warn("incomplete elements", place,
             element.typeName + " element " + std::to_string(element.entries[0]) + " has " +
                 std::to_string(element.count - 1) + " of " + std::to_string(element.needed - 1) + " nodes: left out");
    element.count = 0;
}

} // namespace kvo
