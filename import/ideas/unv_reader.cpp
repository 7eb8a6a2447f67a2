// Reading of universal files.
#include "unv_reader.h"

#include <algorithm>
#include <array>

#include "mesh_finish.h"
#include "node_surplus.h"
#include "text/columns.h"
#include "text/deck_lines.h"
#include "text/fields.h"
#include "text/numbers.h"
#include "unv_elements.h"

namespace kvo {

namespace {

const char* const warnDamagedDataset = "damaged datasets without which the mesh is whole";

constexpr std::size_t fieldsOfLine = 8;
constexpr std::size_t width = 10; // of integers
using Fields = std::array<std::int64_t, fieldsOfLine>;

std::size_t countWords(std::string_view line)
{
    std::size_t words = 0;
    for (std::size_t k = 0; k < line.size(); ++k) {
        words += !isBlank(line[k]) && (k == 0 || isBlank(line[k - 1]));
    }
    return words;
}

class UnvReader
{
public:
    UnvReader(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
        : deck(std::move(file), std::move(progress)), log(log), rows(mesh)
    {
        mesh.files.emplace_back();
    }

    Mesh read();

private:
    struct Dataset
    {
        int number;
        void (UnvReader::*read)();
        int variant;
        bool optional; // the mesh is whole without it
    };
    static const Dataset datasets[];

    struct Group
    {
        MeshSet nodes;
        MeshSet elements;
        std::int64_t others = 0; // members of other kinds
    };

    void complain(const std::string& message);
    bool isDelimiter(std::string_view line) const;
    bool nextLine(std::string_view& line);
    std::string_view needLine(const char* what);
    Fields integers(std::string_view line, std::size_t count = fieldsOfLine);
    std::array<double, 3> reals(std::string_view line);

    void dataset(std::string_view number);
    void readDataset(const Dataset& known);
    void strayLine(std::string_view line);
    void nodes();
    void singleNodes();
    void elements();
    bool elementHead(Fields& head);
    void element(const Fields& head);
    void elementNodes(std::int64_t id, std::size_t count, std::string_view firstLine);
    std::int64_t orientationNode(std::size_t count, std::string_view& line);
    void emit(const UnvElement& type, const Fields& head, std::int64_t third);
    void checkSurplus(const UnvElement& type, std::int64_t id);
    void keepUndrawn(const std::string& name, std::int64_t id);
    std::uint32_t partOf(std::int64_t property, std::int64_t material);
    void groups();
    void group(std::string_view line);
    void groupMembers(Group& group, std::int64_t count);
    void keepGroup(Group& group);
    void units();
    void header();
    void skip();

    DeckLines deck;
    ImportLog& log;
    Mesh mesh;
    MeshRows rows;
    int current = 0; // number of the dataset
    int variant = 0;
    bool binary = false;
    bool optional = false;             // the current dataset, or the one before the current line
    bool inside = false;               // of the current dataset, whose end has not been seen
    std::size_t delimiterAt = 4;       // blanks in front of the -1 that the dataset began with
    std::uint32_t elementLine = 0;     // of the head of the current element
    std::vector<std::int64_t> entries; // nodes of the current element
};

const UnvReader::Dataset UnvReader::datasets[] = {
    {15, &UnvReader::singleNodes, 0, false}, {151, &UnvReader::header, 0, true},
    {164, &UnvReader::units, 0, true},       {780, &UnvReader::elements, 1, false}, // heads with bins
    {781, &UnvReader::nodes, 0, false},      {2411, &UnvReader::nodes, 0, false},
    {2412, &UnvReader::elements, 0, false},  {2429, &UnvReader::groups, 0, true},
    {2430, &UnvReader::groups, 0, true},     {2432, &UnvReader::groups, 0, true},
    {2435, &UnvReader::groups, 0, true},     {2452, &UnvReader::groups, 0, true},
    {2467, &UnvReader::groups, 1, true}, // members of four fields
    {2477, &UnvReader::groups, 1, true},
};

// --- lines ---

// "    -1" ends a dataset; so does a line like the one that it began with. Any other -1 is a value.
bool UnvReader::isDelimiter(std::string_view line) const
{
    const auto dashAt = [&](std::size_t place) { return line.size() > place && line[place] == '-'; };
    // Nearly every line ends this at once.
    return (line.size() < 6 || dashAt(4) || dashAt(0) || dashAt(delimiterAt)) && trimmed(line) == "-1";
}

// Damage of the current dataset, or of what follows it. A mesh that is whole without that is no less whole for it.
void UnvReader::complain(const std::string& message)
{
    if (!optional) {
        throw ImportError(deck.place(), message);
    }
    log.warn(warnDamagedDataset, deck.place(), message);
}

// False at the end of the dataset.
bool UnvReader::nextLine(std::string_view& line)
{
    if (!deck.next(line)) {
        complain("cut off inside dataset " + std::to_string(current));
        inside = false;
        return false;
    }
    inside = !isDelimiter(line);
    return inside;
}

std::string_view UnvReader::needLine(const char* what)
{
    std::string_view line;
    if (!nextLine(line)) {
        throw ImportError(deck.place(), "dataset " + std::to_string(current) + " ends where " + what + " should be");
    }
    return line;
}

// Columns of ten; where those make no sense, whatever blanks part.
Fields UnvReader::integers(std::string_view line, std::size_t count)
{
    Fields values = {};
    if (!scanIntegerColumns(line, width, values.data(), count) && !scanIntegerWords(line, values.data(), count)) {
        throw ImportError(deck.place(), "dataset " + std::to_string(current) + ": \"" +
                                            std::string(trimmed(line).substr(0, 40)) + "\" are no integers");
    }
    return values;
}

std::array<double, 3> UnvReader::reals(std::string_view line)
{
    std::array<double, 3> values = {};
    const char* p = line.data();
    const char* end = p + line.size();
    for (double& value : values) {
        while (p < end && isBlank(*p)) {
            ++p;
        }
        if (!scanReal(p, end, value)) {
            throw ImportError(deck.place(), "dataset " + std::to_string(current) + ": three coordinates expected");
        }
    }
    return values;
}

// --- nodes ---

// 2411, 781: the label's line, then the coordinates in the part's system.
void UnvReader::nodes()
{
    std::string_view line;
    while (nextLine(line)) {
        const std::int64_t id = integers(line, 1)[0];
        const std::uint32_t at = deck.lineNumber();
        const auto x = reals(needLine("coordinates"));
        mesh.files[0].addNode(id, x[0], x[1], x[2], 0, at);
    }
}

// 15: all on one line, and in the system that the node is defined in.
void UnvReader::singleNodes()
{
    constexpr std::size_t integersOfNode = 4;
    std::string_view line;
    while (nextLine(line)) {
        const Fields head = integers(line.substr(0, std::min(line.size(), integersOfNode * width)), integersOfNode);
        if (head[1] > 1) {
            log.warn("nodes in local systems", deck.place(),
                     "node " + std::to_string(head[0]) + " is given in system " + std::to_string(head[1]) +
                         ", which is taken for the global one");
        }
        const auto x = reals(line.substr(std::min(line.size(), integersOfNode * width)));
        mesh.files[0].addNode(head[0], x[0], x[1], x[2], 0, deck.lineNumber());
    }
}

// --- elements ---

// The fields of both kinds of datasets in one order: label, descriptor, property, material, count of nodes.
bool UnvReader::elementHead(Fields& head)
{
    std::string_view line;
    if (!nextLine(line)) {
        return false;
    }
    elementLine = deck.lineNumber();
    const bool bins = variant == 1;
    const Fields fields = integers(line, bins ? 8 : 6);
    head = bins ? Fields{fields[0], fields[1], fields[3], fields[5], fields[7]}
                : Fields{fields[0], fields[1], fields[2], fields[3], fields[5]};
    if (head[4] < 0) {
        throw ImportError(deck.place(),
                          "element " + std::to_string(head[0]) + " has " + std::to_string(head[4]) + " nodes");
    }
    return true;
}

void UnvReader::elements()
{
    Fields head;
    while (elementHead(head)) {
        element(head);
    }
}

void UnvReader::element(const Fields& head)
{
    const std::size_t count = static_cast<std::size_t>(head[4]);
    const UnvElement* type = findUnvElement(head[1]);
    std::int64_t third = noNode;
    std::string_view line;
    if (type && type->beamLine) {
        line = needLine("an orientation node");
        third = orientationNode(count, line);
    } else if (count > 0) {
        line = needLine("nodes");
    }
    elementNodes(head[0], count, line);
    if (!type) {
        keepUndrawn("descriptor " + std::to_string(head[1]), head[0]);
    } else if (!type->drawn) {
        keepUndrawn(std::to_string(type->descriptor) + " " + type->name, head[0]);
    } else {
        emit(*type, head, third);
    }
}

// Some writers leave the line with the orientation node out: it has three numbers or, in older datasets, five; that of
// the nodes has count. Where both have three the next line tells: it has the nodes, or is the head of an element.
std::int64_t UnvReader::orientationNode(std::size_t count, std::string_view& line)
{
    const std::size_t words = countWords(line);
    if (count == 2 && (words == 2 || (words == 1 && trimmed(line).size() > width))) {
        return noNode;
    }
    const std::int64_t node = integers(line, 1)[0];
    if (count == 0) {
        line = {};
        return node > 0 ? node : noNode;
    }
    std::string_view next;
    const bool more = nextLine(next);
    if (count == 3 && words == 3 && (!more || countWords(next) > count)) {
        deck.putBack();
        return noNode;
    }
    if (!more) {
        throw ImportError(deck.place(), "dataset " + std::to_string(current) + " ends where nodes should be");
    }
    line = next;
    return node > 0 ? node : noNode;
}

// Eight a line, from firstLine on.
void UnvReader::elementNodes(std::int64_t id, std::size_t count, std::string_view firstLine)
{
    entries.clear();
    std::string_view line = firstLine;
    while (entries.size() < count) {
        if (!entries.empty() && !nextLine(line)) {
            throw ImportError({deck.files()[0], elementLine}, "element " + std::to_string(id) + " has " +
                                                                  std::to_string(count) +
                                                                  " nodes, but its dataset ends before");
        }
        const std::size_t here = std::min(count - entries.size(), fieldsOfLine);
        const Fields fields = integers(line, here);
        entries.insert(entries.end(), fields.begin(), fields.begin() + static_cast<std::ptrdiff_t>(here));
    }
}

void UnvReader::emit(const UnvElement& type, const Fields& head, std::int64_t third)
{
    std::int64_t corners[9];
    const int* places = unvCorners(type, unvOrder(type, entries.size()));
    const int count = cornerCount(type.shape);
    const bool grounded =
        type.family == Family::Discrete && (entries.size() == 1 || (entries.size() == 2 && entries[1] == 0));
    for (int k = 0; k < count; ++k) {
        const std::size_t place = grounded ? 0 : static_cast<std::size_t>(places[k]);
        if (place >= entries.size()) {
            log.warn("elements with too few nodes", {deck.files()[0], elementLine},
                     "element " + std::to_string(head[0]) + ", a " + type.name + ", has " +
                         std::to_string(entries.size()) + " nodes: left out");
            return;
        }
        corners[k] = entries[place];
    }
    checkSurplus(type, head[0]);
    corners[count] = third;
    const std::uint32_t row = rows.type(std::to_string(type.descriptor) + " " + type.name, type.family, type.shape);
    ElementBlock& block = mesh.files[0].blockFor(row, 0);
    block.ids.push_back(head[0]);
    block.part.push_back(partOf(head[2], head[3]));
    block.line.push_back(elementLine);
    block.nodes.insert(block.nodes.end(), corners, corners + mesh.types[row].slots());
}

void UnvReader::checkSurplus(const UnvElement& type, std::int64_t id)
{
    const std::size_t nodes = unvNodes(type);
    if (entries.size() <= nodes) {
        return;
    }
    const Place place = {deck.files()[0], elementLine};
    if (unvOrder(type, entries.size()) > type.order) {
        log.warn(warnMoreNodes, place,
                 std::string(type.name) + " element " + std::to_string(id) + " has " + std::to_string(nodes) +
                     " nodes, " + std::to_string(entries.size()) + " are given; it is drawn as one of that many nodes");
    } else {
        warnOfMoreNodes(log, place, type.name, id, nodes, entries.size());
    }
}

void UnvReader::keepUndrawn(const std::string& name, std::int64_t id)
{
    mesh.files[0].addUndrawn(name, id, entries.data(), entries.size());
    log.count(listElementsNotDrawn, name, 1, {deck.files()[0], elementLine});
}

std::uint32_t UnvReader::partOf(std::int64_t property, std::int64_t material)
{
    const std::uint32_t index = rows.part(property);
    MeshPart& part = mesh.parts[index];
    if (part.name.empty()) {
        part.name = property == 0 ? "no property" : "property " + std::to_string(property);
        part.section = "physical property";
        part.propertyId = property;
        part.materialId = material;
    }
    return index;
}

// --- groups ---

void UnvReader::groups()
{
    std::string_view line;
    while (nextLine(line)) {
        if (!trimmed(line).empty()) { // some writers leave a line for the members that a group does not have
            group(line);
        }
    }
}

void UnvReader::group(std::string_view line)
{
    // The count stands in the last of seven fields or, in later datasets, of eight.
    const Fields head = integers(line);
    const bool eight = countWords(line) == fieldsOfLine ||
                       trimmed(line.substr(std::min(line.size(), (fieldsOfLine - 1) * width))).size() > 0;
    Group group;
    group.nodes.of = MeshSet::Of::Nodes;
    group.nodes.id = head[0];
    group.nodes.name.assign(trimmed(needLine("the name of a group")));
    if (group.nodes.name.empty()) {
        group.nodes.name = "group " + std::to_string(head[0]);
    }
    group.elements = group.nodes;
    group.elements.of = MeshSet::Of::Elements;
    try {
        groupMembers(group, head[eight ? 7 : 6]);
    } catch (const ImportError&) {
        keepGroup(group);
        throw;
    }
    keepGroup(group);
}

// A group without members is an empty set of nodes: so it keeps its name.
void UnvReader::keepGroup(Group& group)
{
    const bool hasElements = !group.elements.ids.ranges.empty();
    if (!group.nodes.ids.ranges.empty() || (!hasElements && group.others == 0)) {
        mesh.sets.push_back(std::move(group.nodes));
    }
    if (hasElements) {
        mesh.sets.push_back(std::move(group.elements));
    }
}

// Members are kind and id, either four of them on a line, or two with two more fields each that are nearly always 0.
void UnvReader::groupMembers(Group& group, std::int64_t count)
{
    constexpr std::int64_t nodeKind = 7;
    constexpr std::int64_t elementKind = 8;
    std::size_t stride = 0;
    while (count > 0) {
        const Fields fields = integers(needLine("the members of a group"));
        if (stride == 0) {
            stride = variant == 1 || fields[2] == 0 ? 4 : 2;
        }
        for (std::size_t k = 0; k < fieldsOfLine && count > 0; k += stride, --count) {
            if (fields[k] == nodeKind) {
                group.nodes.ids.add(fields[k + 1]);
            } else if (fields[k] == elementKind) {
                group.elements.ids.add(fields[k + 1]);
            } else {
                ++group.others;
                log.count("members of groups not read", "kind " + std::to_string(fields[k]), 1, deck.place());
            }
        }
    }
}

// --- the rest ---

void UnvReader::units()
{
    constexpr std::size_t lengthOfName = 20;
    std::string_view line;
    if (!nextLine(line)) {
        return;
    }
    const std::string_view name = trimmed(line.substr(std::min(line.size(), width), lengthOfName));
    if (!name.empty()) {
        mesh.facts.emplace_back("units", name);
    }
    while (nextLine(line)) { // factors to SI: coordinates stay as they are
    }
}

// The name of the model's file, then a description.
void UnvReader::header()
{
    std::string_view line;
    for (int k = 1; nextLine(line); ++k) {
        if (k == 2 && !trimmed(line).empty()) {
            mesh.facts.emplace_back("title", trimmed(line));
        }
    }
}

void UnvReader::skip()
{
    // Bytes may stand right in front of what ends them.
    constexpr std::string_view end = "    -1";
    std::string_view line;
    while (nextLine(line)) {
        if (binary && line.size() > end.size() && line.substr(line.size() - end.size()) == end) {
            inside = false;
            return;
        }
    }
}

// Damage in what the mesh is whole without costs the rest of that dataset, and no more.
void UnvReader::readDataset(const Dataset& known)
{
    try {
        (this->*known.read)();
    } catch (const ImportError& error) {
        if (!known.optional) {
            throw;
        }
        log.warn(warnDamagedDataset, error.place, error.message + "; the rest of the dataset is not read");
        if (inside) {
            skip();
        }
    }
}

void UnvReader::dataset(std::string_view number)
{
    const Place place = deck.place();
    const char* p = number.data();
    const char* end = p + number.size();
    std::int64_t value = 0;
    if (!scanInteger(p, end, value) || value < 0 || value > 99999) {
        throw ImportError(place, "\"" + std::string(number.substr(0, 40)) + "\" is no number of a dataset");
    }
    current = static_cast<int>(value);
    binary = p < end && (*p == 'b' || *p == 'B');
    inside = true;
    for (const Dataset& known : datasets) {
        if (known.number == current && !binary) {
            variant = known.variant;
            optional = known.optional;
            return readDataset(known);
        }
    }
    optional = true;
    log.count(listKeywordsNotRead, "dataset " + std::to_string(current), 1, place);
    skip();
}

// A line between datasets that begins none. What stands behind a dataset that nobody needs may still be of it: a line
// like its end can be among its values.
void UnvReader::strayLine(std::string_view line)
{
    complain("a dataset should begin here with -1, not \"" + std::string(trimmed(line).substr(0, 40)) + "\"");
    while (deck.next(line)) {
        if (trimmed(line) == "-1") {
            deck.putBack();
            return;
        }
    }
}

Mesh UnvReader::read()
{
    std::string_view line;
    while (deck.next(line)) {
        if (trimmed(line).empty()) {
            continue;
        }
        if (trimmed(line) != "-1") {
            strayLine(line);
            continue;
        }
        delimiterAt = line.find('-');
        if (!deck.next(line)) {
            complain("cut off at the beginning of a dataset");
        } else if (optional && trimmed(line) == "-1") {
            deck.putBack(); // the one before it ended what was passed over
        } else {
            dataset(trimmed(line));
        }
    }
    mesh.sourceFiles = deck.files();
    finishMesh(mesh, log);
    return std::move(mesh);
}

} // namespace

bool looksLikeUnv(const MappedFile& file)
{
    constexpr std::size_t enough = 4096;
    std::string_view rest(file.begin(), std::min(file.size(), enough));
    int lines = 0;
    while (!rest.empty() && lines < 2) {
        const std::size_t stop = std::min(rest.find('\n'), rest.size());
        const std::string_view line = trimmed(rest.substr(0, stop));
        rest.remove_prefix(std::min(stop + 1, rest.size()));
        if (line.empty()) {
            continue;
        }
        std::int64_t number = 0;
        const char* p = line.data();
        const bool good = lines == 0 ? line == "-1" : scanInteger(p, p + line.size(), number) && number > 0;
        if (!good || (lines == 1 && p < line.data() + line.size() && *p != 'b' && *p != ' ')) {
            return false;
        }
        ++lines;
    }
    return lines == 2;
}

Mesh readUnv(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
{
    return UnvReader(std::move(file), log, std::move(progress)).read();
}

} // namespace kvo
