// Reading of input decks: which card does what. inp_assemble.cpp makes the mesh of it.
#include "inp_reader.h"

#include <cstring>

#include "element_types.h"
#include "inp_assemble.h"
#include "inp_generate.h"
#include "text/deck_lines.h"
#include "text/fields.h"
#include "text/numbers.h"

namespace kvo {

const char* const listKeywordsNotRead = "keywords not read";
const char* const listElementsNotDrawn = "element types not drawn";

namespace {

constexpr int maxEntries = 32; // id, 27 nodes, an orientation node
constexpr std::int64_t maxId = 1000000000000000; // leaves room for arithmetic with ids

// The *ELEMENT card that is being read, and the element whose data lines are not complete yet.
struct ElementCard
{
    const InpElementType* row = nullptr; // null: a type without a picture
    std::string typeName;
    std::uint32_t type = 0;  // index into Mesh::types
    std::uint32_t group = 0; // index into InpScope::groups
    InpSet* set = nullptr;   // ELSET=, or null
    int needed = 0;          // entries of a complete element, id included; 0: nobody knows
    int most = 0;            // entries that an element can have
    std::uint64_t undrawn = 0; // elements of a type without a picture so far

    std::int64_t entries[maxEntries] = {};
    int count = 0;
    std::uint32_t file = 0; // where the element began
    std::uint32_t line = 0;
};

class InpReader
{
public:
    InpReader(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
        : deck(std::move(file), std::move(progress)), log(log), generator(model.types, log)
    {
    }

    Mesh read();

private:
    struct Card
    {
        const char* key;
        void (InpReader::*begin)(const KeywordLine&); // may be null
        void (InpReader::*data)(std::string_view);    // may be null
        void (InpReader::*end)();                     // may be null
        const char* section;                          // for section cards: what the part is called
    };
    static const Card cards[];
    static const Card unreadCard;

    void keyword(std::string_view line);
    std::string joinKeyword(std::string_view line);
    void includeInput(const KeywordLine& line);

    void beginNode(const KeywordLine& line);
    void dataNode(std::string_view line);
    void beginElement(const KeywordLine& line);
    void dataElement(std::string_view line);
    void endElement();
    void endLastElement();
    void beginNset(const KeywordLine& line);
    void beginElset(const KeywordLine& line);
    void beginSet(const KeywordLine& line, InpSet& set);
    void dataSet(std::string_view line);
    void beginSection(const KeywordLine& line);
    void beginInclude(const KeywordLine& line);
    void beginSystem(const KeywordLine& line);
    void dataSystem(std::string_view line);
    void endSystem();
    void beginPart(const KeywordLine& line);
    void beginInstance(const KeywordLine& line);
    void dataInstance(std::string_view line);
    void beginAssembly(const KeywordLine& line);
    void endScope(const KeywordLine& line);
    void beginGenerate(const KeywordLine& line);
    void dataGenerate(std::string_view line);
    void endGenerate();
    void unread(const KeywordLine& line);

    bool elementEntry(CommaFields& fields, std::int64_t& entry, bool& more);
    std::int64_t foreignNode(const std::string& text);
    void addElement();
    void storeElement(std::int64_t id);
    void checkId(std::int64_t id, const char* what);
    [[noreturn]] void badField(const CommaFields& fields, const char* what);

    DeckLines deck;
    ImportLog& log;
    InpModel model;
    InpGenerator generator;
    InpScope* scope = nullptr; // what the current cards belong to
    const Card* card = nullptr;

    InpSet* nodeCardSet = nullptr; // NSET= of the *NODE card
    char nodeSystem = 'R';
    Transform system; // of the last *SYSTEM card
    Vec3 systemPoints[3] = {};
    Place systemPlace;
    ElementCard element;
    Place undrawnPlace; // of its card, for a type without a picture
    std::unordered_map<std::string, std::uint32_t> typeIndex;
    InpSet* listedSet = nullptr; // of *NSET / *ELSET; null: not kept
    bool generate = false;
    int dataLines = 0; // of the current card
};

// What every card does. A section card needs no more than its row.
const InpReader::Card InpReader::cards[] = {
    {"NODE", &InpReader::beginNode, &InpReader::dataNode, nullptr, nullptr},
    {"ELEMENT", &InpReader::beginElement, &InpReader::dataElement, &InpReader::endElement, nullptr},
    {"NSET", &InpReader::beginNset, &InpReader::dataSet, nullptr, nullptr},
    {"ELSET", &InpReader::beginElset, &InpReader::dataSet, nullptr, nullptr},
    {"SYSTEM", &InpReader::beginSystem, &InpReader::dataSystem, &InpReader::endSystem, nullptr},
    {"PART", &InpReader::beginPart, nullptr, nullptr, nullptr},
    {"ENDPART", &InpReader::endScope, nullptr, nullptr, nullptr},
    {"INSTANCE", &InpReader::beginInstance, &InpReader::dataInstance, nullptr, nullptr},
    {"ENDINSTANCE", &InpReader::endScope, nullptr, nullptr, nullptr},
    {"ASSEMBLY", &InpReader::beginAssembly, nullptr, nullptr, nullptr},
    {"ENDASSEMBLY", &InpReader::endScope, nullptr, nullptr, nullptr},
    {"NGEN", &InpReader::beginGenerate, &InpReader::dataGenerate, &InpReader::endGenerate, nullptr},
    {"NFILL", &InpReader::beginGenerate, &InpReader::dataGenerate, &InpReader::endGenerate, nullptr},
    {"NCOPY", &InpReader::beginGenerate, &InpReader::dataGenerate, &InpReader::endGenerate, nullptr},
    {"ELGEN", &InpReader::beginGenerate, &InpReader::dataGenerate, &InpReader::endGenerate, nullptr},
    {"ELCOPY", &InpReader::beginGenerate, &InpReader::dataGenerate, &InpReader::endGenerate, nullptr},
    {"SOLIDSECTION", &InpReader::beginSection, nullptr, nullptr, "solid section"},
    {"SHELLSECTION", &InpReader::beginSection, nullptr, nullptr, "shell section"},
    {"SHELLGENERALSECTION", &InpReader::beginSection, nullptr, nullptr, "shell general section"},
    {"MEMBRANESECTION", &InpReader::beginSection, nullptr, nullptr, "membrane section"},
    {"MEMBRANE", &InpReader::beginSection, nullptr, nullptr, "membrane section"},
    {"SURFACESECTION", &InpReader::beginSection, nullptr, nullptr, "surface section"},
    {"BEAMSECTION", &InpReader::beginSection, nullptr, nullptr, "beam section"},
    {"BEAMGENERALSECTION", &InpReader::beginSection, nullptr, nullptr, "beam general section"},
    {"FRAMESECTION", &InpReader::beginSection, nullptr, nullptr, "frame section"},
    {"TRUSSSECTION", &InpReader::beginSection, nullptr, nullptr, "truss section"},
    {"COHESIVESECTION", &InpReader::beginSection, nullptr, nullptr, "cohesive section"},
    {"GASKETSECTION", &InpReader::beginSection, nullptr, nullptr, "gasket section"},
    {"EULERIANSECTION", &InpReader::beginSection, nullptr, nullptr, "eulerian section"},
    {"FLUIDSECTION", &InpReader::beginSection, nullptr, nullptr, "fluid section"},
    {"CONNECTORSECTION", &InpReader::beginSection, nullptr, nullptr, "connector section"},
    {"SPRING", &InpReader::beginSection, nullptr, nullptr, "spring"},
    {"DASHPOT", &InpReader::beginSection, nullptr, nullptr, "dashpot"},
    {"JOINT", &InpReader::beginSection, nullptr, nullptr, "joint"},
    {"GAP", &InpReader::beginSection, nullptr, nullptr, "gap"},
    {"INCLUDE", &InpReader::beginInclude, nullptr, nullptr, nullptr},
    {"END", nullptr, nullptr, nullptr, nullptr},
};

const InpReader::Card InpReader::unreadCard = {"", &InpReader::unread, nullptr, nullptr, nullptr};

std::string_view withoutLeadingBlanks(std::string_view line)
{
    while (!line.empty() && isBlank(line.front())) {
        line.remove_prefix(1);
    }
    return line;
}

bool isComment(std::string_view line)
{
    return line.size() >= 2 && line[0] == '*' && line[1] == '*';
}

Mesh InpReader::read()
{
    scope = &model.deck;
    std::string_view line;
    while (deck.next(line)) {
        line = withoutLeadingBlanks(line);
        if (line.empty()) {
            // An empty line is a data line to *INSTANCE only, where it means "not moved".
            dataLines += card && card->data == &InpReader::dataInstance;
        } else if (line[0] != '*') {
            if (card && card->data) {
                (this->*card->data)(line);
                ++dataLines;
            }
        } else if (!isComment(line)) {
            keyword(line);
        }
    }
    if (card && card->end) {
        (this->*card->end)();
    }
    model.sourceFiles = deck.files();
    return assembleInp(model, log);
}

// Is this the second line of a keyword, or already data? Names stand in both, but the data of set cards only.
bool continuesKeyword(const std::string& keyword, std::string_view more)
{
    const bool letter = !more.empty() && ((more[0] >= 'A' && more[0] <= 'Z') || (more[0] >= 'a' && more[0] <= 'z'));
    if (!letter || more.find('=') != std::string_view::npos) {
        return letter;
    }
    const std::string key = parseKeywordLine(keyword, {}).key;
    const KeywordLine flags = parseKeywordLine("*X," + std::string(more), {});
    return (key != "NSET" && key != "ELSET") || flags.has("GENERATE") || flags.has("INTERNAL") || flags.has("UNSORTED");
}

// A keyword line that ends with a comma goes on in the next one, unless that one looks like data.
std::string InpReader::joinKeyword(std::string_view line)
{
    std::string joined(trimmed(line));
    while (!joined.empty() && joined.back() == ',') {
        std::string_view more;
        do {
            if (!deck.next(more)) {
                return joined;
            }
            more = trimmed(more);
        } while (isComment(more));
        if (!continuesKeyword(joined, more)) {
            deck.putBack();
            return joined;
        }
        joined += more;
    }
    return joined;
}

void InpReader::keyword(std::string_view text)
{
    const Place place = deck.place();
    const KeywordLine line = parseKeywordLine(joinKeyword(text), place);
    if (line.key == "INCLUDE") {
        beginInclude(line); // the current card goes on in the included file
        return;
    }
    if (card && card->end) {
        (this->*card->end)();
    }
    card = &unreadCard;
    for (const Card& row : cards) {
        if (line.key == row.key) {
            card = &row;
        }
    }
    dataLines = 0;
    if (card->begin) {
        (this->*card->begin)(line);
    }
}

void InpReader::unread(const KeywordLine& line)
{
    log.count(listKeywordsNotRead, line.name, 1, line.place);
}

void InpReader::badField(const CommaFields& fields, const char* what)
{
    throw ImportError(deck.place(), std::string(what) + " expected, found \"" + fields.badField() + "\"");
}

void InpReader::checkId(std::int64_t id, const char* what)
{
    if (id <= 0 || id > maxId) {
        throw ImportError(deck.place(), std::string(what) + " id " + std::to_string(id) + " is out of range");
    }
}

void InpReader::beginInclude(const KeywordLine& line)
{
    const std::string name = line.value("INPUT");
    if (name.empty()) {
        throw ImportError(line.place, "*INCLUDE without INPUT=");
    }
    deck.include(name);
}

void InpReader::includeInput(const KeywordLine& line)
{
    if (line.has("INPUT")) {
        deck.include(line.value("INPUT"));
    }
}

// --- nodes ---

void InpReader::beginNode(const KeywordLine& line)
{
    const std::string set = line.value("NSET");
    nodeCardSet = set.empty() ? nullptr : &scope->nodeSet(set);
    const std::string kind = upperCase(line.value("SYSTEM"));
    nodeSystem = kind.empty() ? 'R' : kind[0];
    if (nodeSystem != 'R' && nodeSystem != 'C' && nodeSystem != 'S') {
        throw ImportError(line.place, "*NODE: SYSTEM=" + kind + " is none of R, C, S");
    }
    includeInput(line);
}

void InpReader::dataNode(std::string_view line)
{
    CommaFields fields(line);
    std::int64_t id = 0;
    if (fields.nextInteger(id) != Field::Value) {
        badField(fields, "node id");
    }
    checkId(id, "node");
    Vec3 xyz = {0, 0, 0};
    for (double& coordinate : xyz) {
        const Field field = fields.nextReal(coordinate);
        if (field == Field::Bad) {
            badField(fields, "coordinate");
        }
        if (field == Field::End) {
            break;
        }
    }
    if (nodeSystem != 'R') {
        xyz = nodeSystem == 'C' ? fromCylindrical(xyz) : fromSpherical(xyz);
    }
    if (!system.isIdentity()) {
        xyz = system.apply(xyz);
    }
    scope->mesh.addNode(id, xyz[0], xyz[1], xyz[2]);
    if (nodeCardSet) {
        nodeCardSet->add(id);
    }
}

void InpReader::beginSystem(const KeywordLine& line)
{
    systemPlace = line.place;
    system = Transform(); // *SYSTEM without data goes back to the global system
    systemPoints[0] = systemPoints[1] = systemPoints[2] = {0, 0, 0};
}

// Line 1: origin and a point on the local x axis; line 2: a point on the local x-y plane.
void InpReader::dataSystem(std::string_view line)
{
    CommaFields fields(line);
    const int first = dataLines == 0 ? 0 : 2;
    const int past = dataLines == 0 ? 2 : 3;
    for (int point = first; point < past; ++point) {
        for (double& coordinate : systemPoints[point]) {
            if (fields.nextReal(coordinate) == Field::Bad) {
                badField(fields, "coordinate");
            }
        }
    }
}

void InpReader::endSystem()
{
    const Vec3& a = systemPoints[0];
    const Vec3& b = systemPoints[1];
    Vec3 c = systemPoints[2];
    if (dataLines < 2) {
        // Without a third point the local z axis is the global one: a quarter turn of the local x axis about it.
        c = {a[0] - (b[1] - a[1]), a[1] + (b[0] - a[0]), a[2]};
    }
    if (dataLines < 1 || (dataLines < 2 && b == Vec3{0, 0, 0})) {
        system = Transform::translation(a);
    } else if (!Transform::fromPoints(a, b, c, system)) {
        throw ImportError(systemPlace, "*SYSTEM: the points do not span a plane");
    }
}

// --- elements ---

const char* const defaultGroups[familyCount] = {"shell elements", "solid elements", "beam elements",
                                                "discrete elements"};

void InpReader::beginElement(const KeywordLine& line)
{
    element = ElementCard();
    element.typeName = nameKey(line.value("TYPE"));
    if (element.typeName.empty()) {
        throw ImportError(line.place, "*ELEMENT without TYPE=");
    }
    const std::string set = line.value("ELSET");
    element.set = set.empty() ? nullptr : &scope->elementSet(set);
    element.row = findInpElementType(element.typeName);
    if (element.row) {
        const InpElementType& row = *element.row;
        const auto found = typeIndex.emplace(element.typeName, static_cast<std::uint32_t>(model.types.size()));
        if (found.second) {
            model.types.push_back({element.typeName, row.family, row.shape});
        }
        element.type = found.first->second;
        element.group = scope->groupIndex(set.empty() ? defaultGroups[static_cast<int>(row.family)] : set);
        element.needed = 1 + row.nodes;
        element.most = 1 + row.maxNodes + (row.family == Family::Beam);
    } else {
        const int nodes = undrawnNodeCount(element.typeName);
        element.needed = nodes ? 1 + nodes : 0;
        element.most = element.needed;
        undrawnPlace = line.place;
    }
    includeInput(line);
}

// "PLATE-1.12" names node 12 of an instance.
std::int64_t InpReader::foreignNode(const std::string& text)
{
    const std::size_t dot = text.rfind('.');
    std::int64_t id = 0;
    const bool mayName = scope == &model.assembly || scope == &model.deck;
    if (!mayName || dot == std::string::npos || dot == 0 || !parseInteger(std::string_view(text).substr(dot + 1), id) || id <= 0) {
        throw ImportError(deck.place(), "node id expected, found \"" + text + "\"");
    }
    scope->foreignNodes.push_back({nameKey(std::string_view(text).substr(0, dot)), id});
    return foreignNodeId(scope->foreignNodes.size() - 1);
}

// The next entry of an element's data line. more is false behind the last one.
bool InpReader::elementEntry(CommaFields& fields, std::int64_t& entry, bool& more)
{
    entry = 0; // a blank between two commas is "no node"
    const Field field = fields.nextInteger(entry);
    more = field != Field::End;
    if (field == Field::Bad) {
        std::string text;
        fields.nextText(text);
        if (element.count == 0) {
            throw ImportError(deck.place(), "element id expected, found \"" + text + "\"");
        }
        entry = element.row ? foreignNode(text) : 0;
    }
    return more;
}

void InpReader::dataElement(std::string_view line)
{
    CommaFields fields(line);
    const bool continued = element.count > 0;
    if (!continued) {
        element.file = deck.fileIndex();
        element.line = deck.lineNumber();
    }
    std::int64_t entry = 0;
    bool more = true;
    int beyond = 0;
    while (elementEntry(fields, entry, more)) {
        if (element.count < maxEntries) {
            element.entries[element.count++] = entry;
        }
        beyond += element.needed && element.count > element.most;
    }
    checkId(element.entries[0], "element");
    if (beyond && element.needed) {
        log.warn("elements with more nodes than their type has", deck.place(),
                 "element " + std::to_string(element.entries[0]) + " has more nodes than " + element.typeName +
                     "; the first " + std::to_string(element.needed - 1) + " are taken");
    }
    // With a known count the count decides; a trailing comma counts only where inner nodes may be left out, or where
    // nothing else is known.
    const bool variable = element.row && element.row->maxNodes > element.row->nodes;
    const bool open = fields.endedWithComma() && element.count < element.most && variable;
    const bool complete = element.needed ? element.count >= element.needed && !open : !fields.endedWithComma();
    if (complete) {
        addElement();
    }
}

void InpReader::addElement()
{
    const std::int64_t id = element.entries[0];
    if (element.row) {
        storeElement(id);
    } else {
        ++element.undrawn;
    }
    if (element.set) {
        element.set->add(id);
    }
    element.count = 0;
}

void InpReader::storeElement(std::int64_t id)
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

void InpReader::endElement()
{
    if (element.count > 0) {
        endLastElement();
    }
    if (!element.row) {
        log.count(listElementsNotDrawn, element.typeName, element.undrawn, undrawnPlace);
    }
}

// The card ends while an element waits for a further data line.
void InpReader::endLastElement()
{
    if (element.needed == 0 || element.count >= element.needed) {
        addElement(); // the line need not come
        return;
    }
    const Place place = {deck.files()[element.file], element.line};
    log.warn("incomplete elements", place,
             element.typeName + " element " + std::to_string(element.entries[0]) + " has " +
                 std::to_string(element.count - 1) + " of " + std::to_string(element.needed - 1) + " nodes: left out");
    element.count = 0;
}

// --- sets and sections ---

void InpReader::beginNset(const KeywordLine& line)
{
    if (line.value("NSET").empty()) {
        throw ImportError(line.place, "*NSET without NSET=");
    }
    beginSet(line, scope->nodeSet(line.value("NSET")));
}

void InpReader::beginElset(const KeywordLine& line)
{
    if (line.value("ELSET").empty()) {
        throw ImportError(line.place, "*ELSET without ELSET=");
    }
    beginSet(line, scope->elementSet(line.value("ELSET")));
}

void InpReader::beginSet(const KeywordLine& line, InpSet& set)
{
    generate = line.has("GENERATE");
    set.unsorted = set.unsorted || line.has("UNSORTED");
    set.place = line.place;
    // Ids with INSTANCE= count in another scope; nothing that is drawn needs them.
    listedSet = line.has("INSTANCE") ? nullptr : &set;
    includeInput(line);
}

void InpReader::dataSet(std::string_view line)
{
    CommaFields fields(line);
    if (!listedSet) {
        return;
    }
    if (generate) {
        std::int64_t values[3] = {0, 0, 1};
        Field field = Field::Value;
        for (int k = 0; k < 3 && field != Field::End; ++k) {
            field = fields.nextInteger(values[k]);
            if (field == Field::Bad) {
                badField(fields, "id");
            }
        }
        values[2] = values[2] == 0 ? 1 : values[2];
        if (values[2] < 0 || values[0] < 0 || values[1] < values[0] || values[1] > maxId) {
            throw ImportError(deck.place(), "GENERATE expects first, last, step with first <= last and step > 0");
        }
        listedSet->addRange(values[0], values[1], values[2]);
        return;
    }
    std::int64_t id = 0;
    std::string name;
    for (Field field = fields.nextInteger(id); field != Field::End; field = fields.nextInteger(id)) {
        if (field == Field::Value) {
            checkId(id, "listed");
            listedSet->add(id);
        } else if (field == Field::Bad) {
            fields.nextText(name);
            listedSet->members.push_back(nameKey(name));
        }
    }
}

void InpReader::beginSection(const KeywordLine& line)
{
    const std::string elset = line.value("ELSET");
    if (elset.empty()) {
        log.warn("sections without a set", line.place, line.name + " without ELSET= covers nothing");
        return;
    }
    scope->sections.push_back({card->section, elset, line.value("MATERIAL"), line.place});
}

// --- parts, instances, assembly ---

void InpReader::beginPart(const KeywordLine& line)
{
    const std::string name = line.value("NAME");
    InpScope& part = model.parts[nameKey(name)];
    if (!part.empty()) {
        log.warn("parts defined more than once", line.place, "part \"" + name + "\" goes on here");
    }
    part.name = name;
    part.place = line.place;
    scope = &part;
    system = Transform();
}

void InpReader::beginInstance(const KeywordLine& line)
{
    InpScope& instance = model.instances.emplace_back();
    instance.name = line.value("NAME");
    instance.partName = nameKey(line.value("PART"));
    instance.place = line.place;
    scope = &instance;
    system = Transform();
}

// Line 1: a translation; line 2: two points of an axis and an angle in degrees, applied after the translation.
void InpReader::dataInstance(std::string_view line)
{
    CommaFields fields(line);
    double values[7] = {};
    const int wanted = dataLines == 0 ? 3 : 7;
    for (int k = 0; k < wanted; ++k) {
        if (fields.nextReal(values[k]) == Field::Bad) {
            badField(fields, dataLines == 0 ? "translation" : "rotation");
        }
    }
    const Vec3 a = {values[0], values[1], values[2]};
    const Vec3 b = {values[3], values[4], values[5]};
    if (dataLines == 0) {
        scope->placement = Transform::translation(a);
    } else if (dataLines == 1) {
        scope->placement = scope->placement.then(Transform::rotation(a, b, values[6]));
    }
}

void InpReader::beginAssembly(const KeywordLine& line)
{
    model.assembly.name = "Assembly";
    model.assembly.place = line.place;
    scope = &model.assembly;
    system = Transform();
}

void InpReader::endScope(const KeywordLine& line)
{
    scope = line.key == "ENDINSTANCE" && !model.assembly.name.empty() ? &model.assembly : &model.deck;
    system = Transform();
}

// --- generating cards ---

void InpReader::beginGenerate(const KeywordLine& line)
{
    const char* why = InpGenerator::unsupported(line);
    if (why) {
        log.count(listKeywordsNotRead, line.name + ", " + why, 1, line.place);
        card = &unreadCard; // its data lines are passed over
        return;
    }
    generator.begin(*scope, line);
}

void InpReader::dataGenerate(std::string_view line)
{
    generator.data(line, deck.place());
}

void InpReader::endGenerate()
{
    generator.end();
}

// Cards that an input deck of this kind begins with or soon has; decks of other kinds that use stars too have others.
const char* const typicalKeys[] = {"HEADING", "NODE",     "ELEMENT", "INCLUDE", "PART",   "ASSEMBLY", "PREPRINT",
                                   "NSET",    "ELSET",    "RESTART", "MATERIAL", "SYSTEM", "NGEN",     "PARAMETER",
                                   "USERELEMENT", "SURFACE", "AMPLITUDE", "SOLIDSECTION", "SHELLSECTION", "STEP"};

constexpr std::size_t sniffedBytes = 1 << 16;

} // namespace

bool looksLikeInp(const MappedFile& file)
{
    const std::string_view text(file.begin(), std::min(file.size(), sniffedBytes));
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t stop = std::min(text.find('\n', start), text.size());
        const std::string_view line = trimmed(text.substr(start, stop - start));
        start = stop + 1;
        if (line.empty() || isComment(line)) {
            continue;
        }
        if (line[0] != '*') {
            return false; // something else comes before the first keyword
        }
        const std::string key = parseKeywordLine(line, {}).key;
        for (const char* typical : typicalKeys) {
            if (key == typical) {
                return true;
            }
        }
        return false;
    }
    return false;
}

Mesh readInp(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
{
    InpReader reader(std::move(file), log, std::move(progress));
    return reader.read();
}

} // namespace kvo
