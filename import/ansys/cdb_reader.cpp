// Reading of archive files: which command does what.
#include "cdb_reader.h"

#include <algorithm>
#include <limits>

#include "cdb_attribute_commands.h"
#include "cdb_attributes.h"
#include "cdb_deck.h"
#include "cdb_parameters.h"
#include "mesh_finish.h"
#include "node_surplus.h"
#include "text/columns.h"
#include "text/fields.h"
#include "text/numbers.h"

namespace kvo {

namespace {

constexpr std::size_t sectionColumn = 72;

// Files with geometry begin with IGES lines of 80 columns that end with the letter of a section and a number; those of
// section S hold commands. 0 for any other line.
char geometrySection(std::string_view line)
{
    std::int64_t number = 0;
    if (line.size() != sectionColumn + 8 || !scanIntegerColumn(line.substr(sectionColumn + 1), number) || number < 1) {
        return '\0';
    }
    const char letter = line[sectionColumn];
    return letter == 'S' || letter == 'G' || letter == 'D' || letter == 'P' || letter == 'T' ? letter : '\0';
}

// "N,R5.3,LOC,...", "EN,R5.5,ATTR,...", in newer files "N,UNBL,LOC,...".
bool isUnblocked(const CdbCommand& command)
{
    return startsWithIgnoringCase(command.text(0), "R5") || equalsIgnoringCase(command.text(0), "UNBL");
}

class CdbReader
{
public:
    CdbReader(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
        : deck(std::move(file), log, std::move(progress)), log(log), rows(mesh), attributes(mesh),
          attributeCommands(deck, attributes)
    {
        mesh.files.emplace_back();
    }

    Mesh read();

private:
    struct Row
    {
        const char* name;
        void (CdbReader::*read)(const CdbCommand&);
    };
    static const Row table[];

    void line(std::string_view columns);
    void command(std::string_view text);
    bool acceptNumbers(const CdbCommand& command, std::size_t first);

    void nodeBlock(const CdbCommand& command);
    void node(const CdbCommand& command);
    void systemIs(const CdbCommand& command);

    void elementBlock(const CdbCommand& command);
    void solidElement(std::string_view line, const CdbFormat& format, const CdbCommand& command);
    void plainElement(std::string_view line, const CdbFormat& format);
    void current(const CdbCommand& command);
    void element(const CdbCommand& command);
    void moreNodes(const CdbCommand& command);
    void unblockedElement(const CdbCommand& command);
    void finishElement();
    void emit();
    void checkSurplus(const CdbType& type, const Place& place);

    void componentBlock(const CdbCommand& command);
    void componentMembers(const CdbCommand& command, MeshSet& set);
    void title(const CdbCommand& command);
    void units(const CdbCommand& command);
    void nothing(const CdbCommand&) {}

    CdbDeck deck;
    ImportLog& log;
    Mesh mesh;
    MeshRows rows;
    CdbAttributes attributes;
    CdbAttributeCommands attributeCommands;
    CdbParameters parameters;
    std::int64_t system = 0;            // active coordinate system
    CdbElement state = {0, 1, 1, 1, 1}; // what TYPE, REAL, MAT and SECNUM said last
    CdbElement open;                    // the element whose nodes come together
    std::vector<std::int64_t> entries;
    std::size_t wanted = 0; // nodes of an unblocked element
    bool hasOpen = false;
    std::uint32_t openLine = 0;
    std::int64_t highest = 0; // element id
    std::int64_t highestNode = 0;
    bool nodesBegun = false;
};

const CdbReader::Row CdbReader::table[] = {
    {"NBLOCK", &CdbReader::nodeBlock},    {"N", &CdbReader::node},          {"CSYS", &CdbReader::systemIs},
    {"EBLOCK", &CdbReader::elementBlock}, {"TYPE", &CdbReader::current},    {"REAL", &CdbReader::current},
    {"MAT", &CdbReader::current},         {"SECNUM", &CdbReader::current},  {"E", &CdbReader::element},
    {"EN", &CdbReader::element},          {"EMORE", &CdbReader::moreNodes}, {"CMBLOCK", &CdbReader::componentBlock},
    {"/TITLE", &CdbReader::title},        {"/UNITS", &CdbReader::units},    {"/COM", &CdbReader::nothing},
    {"/PREP7", &CdbReader::nothing},      {"/NOPR", &CdbReader::nothing},   {"/GO", &CdbReader::nothing},
    {"FINISH", &CdbReader::nothing},      {"C***", &CdbReader::nothing},
};

// --- nodes ---

// Number and, with SOLID, two more integers; then the coordinates, of which trailing zeros may be left out.
void CdbReader::nodeBlock(const CdbCommand& command)
{
    const CdbFormat format = deck.blockFormat(command);
    nodesBegun = true;
    for (std::int64_t read = 0;; ++read) {
        const std::string_view line = deck.blockLine(command);
        std::int64_t id = 0;
        double x[3];
        const std::size_t behind = std::min(line.size(), format.integersWidth);
        if (!scanIntegerColumn(line.substr(0, std::min(line.size(), format.firstWidth)), id) || id == -1) {
            if (CdbDeck::endsBlock(line)) {
                deck.checkCount(command, read);
                return;
            }
            deck.refuse("\"" + std::string(trimmed(line).substr(0, 40)) + "\" is no line of a node");
        }
        if (!scanRealColumns(line.substr(behind), format.otherWidth, x, 3)) {
            deck.refuse("node " + std::to_string(id) + " has a coordinate that is no number");
        }
        highestNode = std::max(highestNode, id);
        mesh.files[0].addNode(id, x[0], x[1], x[2], 0, deck.lines.lineNumber());
    }
}

// "N,5,1.,2.,3." and "N,R5.3,LOC,5,0,0,1.,2.,3.". Without a number it is the next one.
void CdbReader::node(const CdbCommand& command)
{
    const bool unblocked = isUnblocked(command);
    if (unblocked && (!equalsIgnoringCase(command.text(1), "LOC") || command.integer(2) <= 0)) {
        return;
    }
    if (!acceptNumbers(command, unblocked ? 2 : 0)) {
        return;
    }
    if (command.text(0).empty() && highestNode == std::numeric_limits<std::int64_t>::max()) {
        throw ImportError(command.place, "N: there is no number above " + std::to_string(highestNode));
    }
    if (!unblocked && system != 0) {
        log.warn("nodes in local systems", command.place,
                 "node " + command.text(0) + " is given in system " + std::to_string(system) +
                     ", which is taken for the global one");
    }
    const std::size_t first = unblocked ? 5 : 1;
    const std::int64_t id = command.text(0).empty() ? highestNode + 1 : command.integer(unblocked ? 2 : 0);
    highestNode = std::max(highestNode, id);
    mesh.files[0].addNode(id, command.real(first), command.real(first + 1), command.real(first + 2), 0,
                          static_cast<std::uint32_t>(command.place.line));
    nodesBegun = true;
}

void CdbReader::systemIs(const CdbCommand& command)
{
    system = command.integer(0);
}

// --- elements ---

void CdbReader::elementBlock(const CdbCommand& command)
{
    finishElement();
    const CdbFormat format = deck.blockFormat(command);
    const bool solid = equalsIgnoringCase(command.text(1), "SOLID");
    if (solid && format.integers < 11) {
        deck.refuse("an EBLOCK with SOLID has 11 columns and those of nodes");
    }
    for (std::int64_t read = 0;; ++read) {
        std::string_view line;
        if (read > 0 && read == command.integer(3)) {
            // All are there: then the file may end without the line of -1.
            if (!deck.lines.next(line)) {
                log.warn("blocks without an end", deck.lines.place(), "EBLOCK ends with the file");
                return;
            }
        } else {
            line = deck.blockLine(command);
        }
        std::int64_t first = 0;
        if (scanIntegerColumn(line.substr(0, std::min(line.size(), format.firstWidth)), first) && first == -1) {
            deck.checkCount(command, read);
            return;
        }
        openLine = deck.lines.lineNumber();
        entries.clear();
        if (solid) {
            solidElement(line, format, command);
        } else {
            plainElement(line, format);
        }
    }
}

// mat, type, real, section, system, birth, solid, shape, count of nodes, -, id, nodes; those over eight on further
// lines.
void CdbReader::solidElement(std::string_view line, const CdbFormat& format, const CdbCommand& command)
{
    constexpr std::size_t headColumns = 11;
    constexpr std::size_t nodesOfFirstLine = 8;
    std::int64_t values[CdbDeck::maxColumns] = {};
    deck.integers(line, format, values, format.integers);
    open = {values[10], values[1], values[2], values[0], values[3]};
    if (values[8] < 0) {
        deck.refuse("element " + std::to_string(open.id) + " has " + std::to_string(values[8]) + " nodes");
    }
    const std::size_t count = static_cast<std::size_t>(values[8]);
    const std::size_t here = std::min({count, format.integers - headColumns, nodesOfFirstLine});
    entries.assign(values + headColumns, values + headColumns + here);
    while (entries.size() < count) {
        line = deck.blockLine(command);
        const std::size_t more = std::min(count - entries.size(), format.integers);
        deck.integers(line, format, values, more);
        if (values[0] == -1) {
            deck.refuse("element " + std::to_string(open.id) + " has " + std::to_string(count) +
                        " nodes, but the block ends before");
        }
        entries.insert(entries.end(), values, values + more);
    }
    emit();
}

// id, type or section, real, mat, system, nodes. Programs that write these blocks for contacts put the type's number
// there; where there is no such type it is what the command TYPE said.
void CdbReader::plainElement(std::string_view line, const CdbFormat& format)
{
    constexpr std::size_t headColumns = 5;
    std::int64_t values[CdbDeck::maxColumns] = {};
    deck.integers(line, format, values, format.integers);
    open = {values[0], attributes.hasType(values[1]) ? values[1] : state.type, values[2], values[3], values[1]};
    for (std::size_t k = headColumns; k < format.integers; ++k) {
        entries.push_back(values[k]);
    }
    while (!entries.empty() && entries.back() == 0) {
        entries.pop_back();
    }
    emit();
}

void CdbReader::current(const CdbCommand& command)
{
    std::int64_t& target = command.name == "TYPE"   ? state.type
                           : command.name == "REAL" ? state.real
                           : command.name == "MAT"  ? state.material
                                                    : state.section;
    target = command.integer(0);
}

// "E,1,2,3" has the next number, "EN,7,1,2,3" its own; EMORE goes on.
void CdbReader::element(const CdbCommand& command)
{
    const bool numbered = command.name == "EN";
    if (numbered && isUnblocked(command)) {
        return unblockedElement(command);
    }
    finishElement();
    if (!acceptNumbers(command, 0)) {
        return;
    }
    if (!numbered && highest == std::numeric_limits<std::int64_t>::max()) {
        throw ImportError(deck.lines.place(), "E: there is no number above " + std::to_string(highest));
    }
    open = state;
    open.id = numbered ? command.integer(0) : highest + 1;
    highest = std::max(highest, open.id);
    openLine = deck.lines.lineNumber();
    hasOpen = true;
    wanted = 0;
    moreNodes(command.without(numbered ? 1 : 0));
}

void CdbReader::moreNodes(const CdbCommand& command)
{
    if (!hasOpen || !acceptNumbers(command, 0)) {
        return;
    }
    for (std::size_t k = 0; k < command.fields.size(); ++k) {
        entries.push_back(command.integer(k));
    }
}

// "EN,R5.5,ATTR,count,mat,type,real,section,system,id,..." then "EN,R5.5,NODE,nodes".
void CdbReader::unblockedElement(const CdbCommand& command)
{
    if (equalsIgnoringCase(command.text(1), "ATTR")) {
        finishElement();
        if (command.integer(2) < 0) { // the end of them
            return;
        }
        open = {command.integer(8), command.integer(4), command.integer(5), command.integer(3), command.integer(6)};
        wanted = static_cast<std::size_t>(std::clamp<std::int64_t>(command.integer(2), 0, 1000));
        openLine = deck.lines.lineNumber();
        hasOpen = true;
        return;
    }
    for (std::size_t k = 2; k < command.fields.size() && hasOpen && entries.size() < wanted; ++k) {
        entries.push_back(command.integer(k));
    }
}

void CdbReader::finishElement()
{
    if (hasOpen) {
        while (!entries.empty() && entries.back() == 0) {
            entries.pop_back();
        }
        emit();
    }
    hasOpen = false;
    entries.clear();
}

void CdbReader::emit()
{
    CdbType& type = attributes.type(open.type);
    const Place place = {deck.lines.files()[0], openLine};
    highest = std::max(highest, open.id);
    if (type.layout == CdbLayout::Undrawn) {
        mesh.files[0].addUndrawn(type.name, open.id, entries.data(), entries.size());
        log.count(listElementsNotDrawn, type.name, 1, place);
        return;
    }
    CdbShape shape;
    if (!cdbShape(type.layout, entries, shape)) {
        log.warn("elements with too few nodes", place,
                 type.name + " element " + std::to_string(open.id) + " lacks a corner: left out");
        return;
    }
    checkSurplus(type, place);
    std::uint32_t& row = type.rows[static_cast<std::size_t>(shape.shape)];
    if (row == noPart) {
        row = rows.type(type.name, shape.family, shape.shape);
    }
    ElementBlock& block = mesh.files[0].blockFor(row, 0);
    block.ids.push_back(open.id);
    block.part.push_back(attributes.part(open));
    block.line.push_back(openLine);
    block.nodes.insert(block.nodes.end(), shape.nodes, shape.nodes + mesh.types[row].slots());
}

void CdbReader::checkSurplus(const CdbType& type, const Place& place)
{
    std::size_t given = entries.size();
    while (given > type.mostNodes && entries[given - 1] == 0) {
        --given;
    }
    if (given > type.mostNodes) {
        warnOfMoreNodes(log, place, type.name, open.id, type.mostNodes, given);
    }
}

// --- components ---

// The mesh is whole without its components: damage costs the rest of one.
void CdbReader::componentBlock(const CdbCommand& command)
{
    MeshSet set;
    set.name = command.text(0);
    const bool nodes = startsWithIgnoringCase(command.text(1), "NODE");
    const bool elements = startsWithIgnoringCase(command.text(1), "ELEM");
    set.of = nodes ? MeshSet::Of::Nodes : MeshSet::Of::Elements;
    try {
        componentMembers(command, set);
    } catch (const ImportError& error) {
        log.warn("damaged components", error.place,
                 error.message + "; component " + set.name + " has what came before");
    }
    if (nodes || elements) {
        mesh.sets.push_back(std::move(set));
    } else {
        log.count(listKeywordsNotRead, "CMBLOCK of " + upperCase(command.text(1).substr(0, 8)), 1, command.place);
    }
}

// Ids; a negative one ends a range that begins with the id before it.
void CdbReader::componentMembers(const CdbCommand& command, MeshSet& set)
{
    const CdbFormat format = deck.blockFormat(command);
    std::int64_t previous = 0;
    for (std::int64_t left = command.integer(2); left > 0;) {
        std::int64_t values[CdbDeck::maxColumns] = {};
        const std::size_t here =
            static_cast<std::size_t>(std::min<std::int64_t>(left, static_cast<std::int64_t>(format.integers)));
        const std::string_view line = deck.blockLine(command);
        if (isName(trimmed(line).substr(0, 1))) {
            deck.lines.putBack();
            deck.refuse("CMBLOCK says " + command.text(2) + " members, but a command comes before the last one");
        }
        deck.integers(line, format, values, here);
        for (std::size_t k = 0; k < here; ++k) {
            if (values[k] >= 0) {
                set.ids.add(values[k]);
            } else if (previous >= 0 && -values[k] > previous) {
                set.ids.addRange(previous + 1, -values[k]);
            } else {
                deck.refuse("no range from " + std::to_string(previous) + " to " + std::to_string(-values[k]));
            }
            previous = std::abs(values[k]);
        }
        left -= static_cast<std::int64_t>(here);
    }
}

// --- the rest ---

void CdbReader::title(const CdbCommand& command)
{
    if (!command.text(0).empty() && mesh.facts.empty()) {
        mesh.facts.emplace_back("title", command.text(0));
    }
}

void CdbReader::units(const CdbCommand& command)
{
    mesh.facts.emplace_back("units", command.text(0));
}

// Words and formulas in place of numbers, which only the program that runs the deck could work out.
bool CdbReader::acceptNumbers(const CdbCommand& command, std::size_t first)
{
    for (std::size_t k = first; k < command.fields.size(); ++k) {
        double value = 0.0;
        if (!command.fields[k].empty() && !parseReal(command.fields[k], value)) {
            log.warn("fields that are no numbers", command.place,
                     command.name + ": \"" + command.fields[k].substr(0, 40) + "\" is no number; the line is not read");
            return false;
        }
    }
    return true;
}

void CdbReader::line(std::string_view columns)
{
    switch (geometrySection(columns)) {
    case '\0':
        break;
    case 'S':
        columns = columns.substr(0, sectionColumn);
        break;
    default:
        log.count(listKeywordsNotRead, "lines of IGES geometry", 1, deck.lines.place());
        return;
    }
    const std::string_view text = trimmed(columns);
    if (isCdbText(text)) {
        return command(text);
    }
    // A dollar sign parts the commands of one line.
    std::string_view rest = text.substr(0, text.find('!'));
    for (std::size_t stop = rest.find('$'); stop != std::string_view::npos; stop = rest.find('$')) {
        command(rest.substr(0, stop));
        rest.remove_prefix(stop + 1);
    }
    command(rest);
}

void CdbReader::command(std::string_view text)
{
    CdbCommand parsed = parseCdbCommand(text, deck.lines.place());
    if (parameters.read(parsed)) {
        return;
    }
    parameters.resolve(parsed);
    for (const Row& row : table) {
        if (isCommand(parsed.name, row.name)) {
            return (this->*row.read)(parsed);
        }
    }
    if (!parsed.name.empty() && !attributeCommands.read(parsed)) {
        const bool assignment = parsed.name.find('=') != std::string::npos;
        log.count(listKeywordsNotRead, assignment ? "values of parameters" : parsed.name.substr(0, 20), 1,
                  parsed.place);
    }
}

Mesh CdbReader::read()
{
    std::string_view text;
    while (deck.lines.next(text)) {
        line(text);
    }
    finishElement();
    if (!nodesBegun) {
        throw ImportError(deck.lines.place(), "the file ends without nodes");
    }
    if (mesh.files[0].blocks.empty() && mesh.files[0].undrawn.empty()) {
        log.warn("files without elements", deck.lines.place(), "the file ends without elements: it may be cut off");
    }
    attributes.describeParts();
    mesh.sourceFiles = deck.lines.files();
    finishMesh(mesh, log);
    return std::move(mesh);
}

} // namespace

bool looksLikeCdb(const MappedFile& file)
{
    constexpr std::size_t enough = 1 << 20;
    std::string_view rest(file.begin(), std::min(file.size(), enough));
    while (!rest.empty()) {
        const std::size_t stop = std::min(rest.find('\n'), rest.size());
        const std::string_view line = rest.substr(0, stop);
        rest.remove_prefix(std::min(stop + 1, rest.size()));
        if (startsWithIgnoringCase(line, "NBLOCK,") || startsWithIgnoringCase(line, "EBLOCK,") ||
            startsWithIgnoringCase(line, "ETBLOCK,") || startsWithIgnoringCase(line, "/PREP7") ||
            startsWithIgnoringCase(line, "/COM,ANSYS")) {
            return true;
        }
    }
    return false;
}

Mesh readCdb(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
{
    return CdbReader(std::move(file), log, std::move(progress)).read();
}

} // namespace kvo
