// Making nodes and elements out of others.
#include "inp_generate.h"

#include <algorithm>

#include "text/fields.h"
#include "text/numbers.h"

namespace kvo {

namespace {

// No set and no line has more members than this.
constexpr std::int64_t maxMade = 100000000;
constexpr std::int64_t maxValue = 10000000000; // of an id or increment; products with maxMade stay inside 64 bits

[[noreturn]] void fail(const Place& place, const std::string& what)
{
    throw ImportError(place, what);
}

// The integers of a data line; blanks and what is missing are as given in values.
void readIntegers(std::string_view line, const Place& place, std::int64_t* values, int count)
{
    CommaFields fields(line);
    for (int k = 0; k < count; ++k) {
        if (fields.nextInteger(values[k]) == Field::Bad) {
            fail(place, "integer expected, found \"" + fields.badField() + "\"");
        }
        if (values[k] > maxValue || values[k] < -maxValue) {
            fail(place, std::to_string(values[k]) + " is too large");
        }
    }
}

void readReals(std::string_view line, const Place& place, double* values, int count)
{
    CommaFields fields(line);
    for (int k = 0; k < count; ++k) {
        if (fields.nextReal(values[k]) == Field::Bad) {
            fail(place, "number expected, found \"" + fields.badField() + "\"");
        }
    }
}

std::int64_t integerParameter(const KeywordLine& card, const char* name)
{
    std::int64_t value = 0;
    if (!parseInteger(card.value(name), value) || value > maxValue || value < -maxValue) {
        fail(card.place, card.name + " needs " + name + "= with an integer");
    }
    return value;
}

Vec3 between(const Vec3& a, const Vec3& b, double f)
{
    return {a[0] + f * (b[0] - a[0]), a[1] + f * (b[1] - a[1]), a[2] + f * (b[2] - a[2])};
}

// A set that grows by copies of itself has ranges that lie over one another.
void uniteRuns(std::vector<IdRange>& ranges)
{
    std::sort(ranges.begin(), ranges.end(), [](const IdRange& a, const IdRange& b) { return a.first < b.first; });
    std::vector<IdRange> united;
    for (const IdRange& range : ranges) {
        const bool joins =
            !united.empty() && united.back().step == 1 && range.step == 1 && range.first <= united.back().last + 1;
        if (joins) {
            united.back().last = std::max(united.back().last, range.last);
        } else {
            united.push_back(range);
        }
    }
    ranges.swap(united);
}

} // namespace

const char* InpGenerator::unsupported(const KeywordLine& card)
{
    for (const char* parameter : {"LINE", "SINGULAR", "TWO STEP", "REFLECT", "POLE", "SYSTEM", "MULTIPLE"}) {
        std::string key = parameter;
        key.erase(std::remove(key.begin(), key.end(), ' '), key.end());
        if (card.has(key)) {
            return parameter;
        }
    }
    double bias = 1.0;
    return card.has("BIAS") && (!parseReal(card.value("BIAS"), bias) || bias != 1.0) ? "BIAS" : nullptr;
}

void InpGenerator::begin(InpScope& newScope, const KeywordLine& newCard)
{
    scope = &newScope;
    card = newCard;
    dataLines = 0;
    copyTransform = Transform();
    if (lookedAt != scope) {
        nodes = Lookup();
        elements = Lookup();
        lookedAt = scope;
    }
    const bool makesNodes = card.key[0] == 'N';
    const std::string name =
        card.value(card.key == "NCOPY" || card.key == "ELCOPY" ? "NEWSET" : (makesNodes ? "NSET" : "ELSET"));
    target = name.empty() ? nullptr : (makesNodes ? &scope->nodeSet(name) : &scope->elementSet(name));
}

void InpGenerator::data(std::string_view line, const Place& place)
{
    if (card.key == "NGEN") {
        nodeLine(line, place);
    } else if (card.key == "NFILL") {
        fillLine(line, place);
    } else if (card.key == "NCOPY") {
        copyLine(line, place);
    } else if (card.key == "ELGEN") {
        elementLine(line, place);
    }
    ++dataLines;
}

void InpGenerator::end()
{
    if (card.key == "NCOPY") {
        copyNodes();
    } else if (card.key == "ELCOPY") {
        copyElements();
    }
}

// --- nodes ---

bool InpGenerator::findNode(std::int64_t id, Vec3& xyz)
{
    const MeshFile& mesh = scope->mesh;
    for (; nodes.known < mesh.nodeIds.size(); ++nodes.known) {
        nodes.position[mesh.nodeIds[nodes.known]] = nodes.known;
    }
    const auto found = nodes.position.find(id);
    if (found == nodes.position.end()) {
        return false;
    }
    std::copy_n(&mesh.xyz[3 * found->second], 3, xyz.begin());
    return true;
}

void InpGenerator::addNode(std::int64_t id, const Vec3& xyz)
{
    if (id <= 0) {
        fail(card.place, card.name + " makes a node with id " + std::to_string(id));
    }
    scope->mesh.addNode(id, xyz[0], xyz[1], xyz[2]);
    if (target) {
        target->add(id);
    }
}

void InpGenerator::make(std::int64_t count, const Place& place)
{
    made += count;
    if (made > most) {
        fail(place, card.name + ": the deck would make more than " + std::to_string(most) + " nodes and elements");
    }
}

// The nodes of a straight line between two nodes; the ends go to the set only.
void InpGenerator::addBetween(std::int64_t first, std::int64_t last, std::int64_t step, std::int64_t intervals,
                              const Place& place)
{
    Vec3 a = {};
    Vec3 b = {};
    if (!findNode(first, a) || !findNode(last, b)) {
        fail(place, card.name + ": node " + std::to_string(findNode(first, a) ? last : first) + " does not exist");
    }
    make(intervals - 1, place);
    if (target) {
        target->add(first);
    }
    for (std::int64_t k = 1; k < intervals; ++k) {
        addNode(first + k * step, between(a, b, static_cast<double>(k) / static_cast<double>(intervals)));
    }
    if (target) {
        target->add(last);
    }
}

// first, last, increment
void InpGenerator::nodeLine(std::string_view line, const Place& place)
{
    std::int64_t values[3] = {0, 0, 1};
    readIntegers(line, place, values, 3);
    const std::int64_t step = values[2];
    const std::int64_t span = values[1] - values[0];
    if (values[0] <= 0 || values[1] <= 0 || step == 0 || span % step != 0 || span / step < 1 || span / step > maxMade) {
        fail(place, "*NGEN expects first, last, increment, the increment leading from first to last");
    }
    addBetween(values[0], values[1], step, span / step, place);
}

// The ids of a set: ascending, or as listed for an unsorted one.
std::vector<std::int64_t> InpGenerator::members(const InpSets& sets, const std::string& name, const Place& place)
{
    const auto set = sets.find(nameKey(name));
    if (set == sets.end()) {
        fail(place, card.name + ": set \"" + name + "\" does not exist");
    }
    std::vector<IdRange> ranges;
    forEachRange(sets, nameKey(name), [&](const IdRange& range) { ranges.push_back(range); });
    if (!set->second.unsorted) {
        uniteRuns(ranges);
    }
    std::vector<std::int64_t> ids;
    for (const IdRange& range : ranges) {
        if ((range.last - range.first) / range.step > maxMade - static_cast<std::int64_t>(ids.size())) {
            fail(place, card.name + ": set \"" + name + "\" is too large");
        }
        for (std::int64_t id = range.first; id <= range.last; id += range.step) {
            ids.push_back(id);
        }
    }
    if (!set->second.unsorted) {
        std::sort(ids.begin(), ids.end());
        ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    }
    return ids;
}

// first set, last set, number of intervals, increment of ids
void InpGenerator::fillLine(std::string_view line, const Place& place)
{
    CommaFields fields(line);
    std::string first;
    std::string last;
    std::int64_t intervals = 1;
    std::int64_t step = 1;
    const bool named = fields.nextText(first) == Field::Value && fields.nextText(last) == Field::Value;
    if (!named || fields.nextInteger(intervals) == Field::Bad || fields.nextInteger(step) == Field::Bad ||
        intervals < 1 || intervals > maxMade || step > maxValue || step < -maxValue) {
        fail(place, "*NFILL expects first set, last set, number of intervals, increment");
    }
    const std::vector<std::int64_t> a = members(scope->nodeSets, first, place);
    const std::vector<std::int64_t> b = members(scope->nodeSets, last, place);
    if (a.size() != b.size()) {
        fail(place, "*NFILL: sets \"" + first + "\" and \"" + last + "\" have " + std::to_string(a.size()) + " and " +
                        std::to_string(b.size()) + " nodes");
    }
    if (static_cast<std::int64_t>(a.size()) > maxMade / intervals) {
        fail(place, "*NFILL would make too many nodes");
    }
    for (std::size_t k = 0; k < a.size(); ++k) {
        addBetween(a[k], b[k], step, intervals, place);
    }
}

// Line 1: a translation; line 2: two points of an axis and an angle in degrees.
void InpGenerator::copyLine(std::string_view line, const Place& place)
{
    double values[7] = {};
    readReals(line, place, values, dataLines == 0 ? 3 : 7);
    const Vec3 a = {values[0], values[1], values[2]};
    const Vec3 b = {values[3], values[4], values[5]};
    if (dataLines == 0) {
        copyTransform = Transform::translation(a);
    } else if (dataLines == 1) {
        copyTransform = copyTransform.then(Transform::rotation(a, b, values[6]));
    }
}

void InpGenerator::copyNodes()
{
    const std::int64_t shift = integerParameter(card, "CHANGENUMBER");
    const std::vector<std::int64_t> ids = members(scope->nodeSets, card.value("OLDSET"), card.place);
    make(static_cast<std::int64_t>(ids.size()), card.place);
    for (const std::int64_t id : ids) {
        Vec3 xyz = {};
        if (findNode(id, xyz)) {
            addNode(id + shift, copyTransform.apply(xyz));
        } else {
            log.warn("copies of missing nodes", card.place,
                     card.name + ": node " + std::to_string(id) + " does not exist");
        }
    }
}

// --- elements ---

bool InpGenerator::findElement(std::int64_t id, std::size_t& block, std::size_t& position)
{
    const MeshFile& mesh = scope->mesh;
    // Blocks only grow at their end, so the elements seen so far keep their place in the order of all.
    std::size_t start = 0;
    for (std::size_t b = 0; b < mesh.blocks.size(); ++b) {
        const std::size_t size = mesh.blocks[b].size();
        for (std::size_t e = elements.known > start ? elements.known - start : 0; e < size; ++e) {
            elements.position[mesh.blocks[b].ids[e]] = (static_cast<std::uint64_t>(b) << 32) | e;
            ++elements.known;
        }
        start += size;
    }
    const auto found = elements.position.find(id);
    if (found == elements.position.end()) {
        return false;
    }
    block = found->second >> 32;
    position = found->second & 0xFFFFFFFF;
    return true;
}

void InpGenerator::addElementCopy(std::size_t from, std::size_t position, std::int64_t idShift, std::int64_t nodeShift)
{
    MeshFile& mesh = scope->mesh;
    const std::uint32_t type = mesh.blocks[from].type;
    ElementBlock& to = mesh.blockFor(type, mesh.blocks[from].sourceFile);
    const ElementBlock& source = mesh.blocks[from]; // blockFor may have added a block, which moves none in a deque
    const std::size_t slots = static_cast<std::size_t>(types[type].slots());
    const std::int64_t id = source.ids[position] + idShift;
    if (id <= 0) {
        fail(card.place, card.name + " makes an element with id " + std::to_string(id));
    }
    to.ids.push_back(id);
    to.part.push_back(source.part[position]);
    to.line.push_back(source.line[position]);
    for (std::size_t k = 0; k < slots; ++k) {
        const std::int64_t node = source.nodes[position * slots + k];
        if (node > 0 && node + nodeShift <= 0) {
            fail(card.place, card.name + " makes an element of node " + std::to_string(node + nodeShift));
        }
        to.nodes.push_back(node > 0 ? node + nodeShift : node);
    }
    if (target) {
        target->add(id);
    }
}

// master, then for rows, columns and layers: count, node increment, element increment
void InpGenerator::elementLine(std::string_view line, const Place& place)
{
    std::int64_t values[10] = {0, 1, 1, 1, 1, 0, 0, 1, 0, 0};
    readIntegers(line, place, values, 10);
    std::size_t block = 0;
    std::size_t position = 0;
    if (!findElement(values[0], block, position)) {
        fail(place, "*ELGEN: element " + std::to_string(values[0]) + " does not exist");
    }
    std::int64_t count = 1;
    for (const int k : {1, 4, 7}) {
        values[k] = std::max<std::int64_t>(values[k], 1);
        if (values[k] > maxMade / count) {
            fail(place, "*ELGEN would make too many elements");
        }
        count *= values[k];
    }
    make(count - 1, place);
    if (target) {
        target->add(values[0]);
    }
    for (std::int64_t n = 1; n < count; ++n) {
        const std::int64_t i = n % values[1];
        const std::int64_t j = n / values[1] % values[4];
        const std::int64_t k = n / values[1] / values[4];
        addElementCopy(block, position, i * values[3] + j * values[6] + k * values[9],
                       i * values[2] + j * values[5] + k * values[8]);
    }
}

void InpGenerator::copyElements()
{
    const std::int64_t idShift = integerParameter(card, "ELEMENTSHIFT");
    const std::int64_t nodeShift = integerParameter(card, "SHIFTNODES");
    const std::vector<std::int64_t> ids = members(scope->elementSets, card.value("OLDSET"), card.place);
    make(static_cast<std::int64_t>(ids.size()), card.place);
    for (const std::int64_t id : ids) {
        std::size_t block = 0;
        std::size_t position = 0;
        if (findElement(id, block, position)) {
            addElementCopy(block, position, idShift, nodeShift);
        } else {
            log.warn("copies of missing elements", card.place,
                     card.name + ": element " + std::to_string(id) + " does not exist");
        }
    }
}

} // namespace kvo
