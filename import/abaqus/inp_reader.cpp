// Reading of input decks: which card does what. inp_assemble.cpp makes the mesh of it.
#include "inp_reader.h"

#include <algorithm>

#include "inp_assemble.h"
#include "inp_elements.h"
#include "inp_generate.h"
#include "inp_sections.h"
#include "text/deck_lines.h"
#include "text/fields.h"

namespace kvo {

namespace {

class InpReader
{
public:
    InpReader(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
        : deck(std::move(file), std::move(progress)), log(log), elements(deck, model.types, log),
          generator(model.types, log)
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
    void beginNset(const KeywordLine& line);
    void beginElset(const KeywordLine& line);
    void beginSet(const KeywordLine& line, InpSet& set);
    void dataSet(std::string_view line);
    void beginSection(const KeywordLine& line);
    void dataSection(std::string_view line);
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

    [[noreturn]] void badField(const CommaFields& fields, const char* what);

    DeckLines deck;
    ImportLog& log;
    InpModel model;
    InpElementReader elements;
    InpGenerator generator;
    InpSectionReader sections;
    bool inSection = false;    // the section card covers something
    InpScope* scope = nullptr; // what the current cards belong to
    const Card* card = nullptr;

    InpSet* nodeCardSet = nullptr; // NSET= of the *NODE card
    char nodeSystem = 'R';
    Transform system; // of the last *SYSTEM card
    Vec3 systemPoints[3] = {};
    Place systemPlace;
    bool systemTurned = false;   // more than an origin is given
    InpSet* listedSet = nullptr; // of *NSET / *ELSET
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
    {"SOLIDSECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "solid section"},
    {"SHELLSECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "shell section"},
    {"SHELLGENERALSECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "shell general section"},
    {"MEMBRANESECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "membrane section"},
    {"MEMBRANE", &InpReader::beginSection, &InpReader::dataSection, nullptr, "membrane section"},
    {"SURFACESECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "surface section"},
    {"BEAMSECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "beam section"},
    {"BEAMGENERALSECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "beam general section"},
    {"FRAMESECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "frame section"},
    {"TRUSSSECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "truss section"},
    {"COHESIVESECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "cohesive section"},
    {"GASKETSECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "gasket section"},
    {"EULERIANSECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "eulerian section"},
    {"FLUIDSECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "fluid section"},
    {"CONNECTORSECTION", &InpReader::beginSection, &InpReader::dataSection, nullptr, "connector section"},
    {"SPRING", &InpReader::beginSection, &InpReader::dataSection, nullptr, "spring"},
    {"DASHPOT", &InpReader::beginSection, &InpReader::dataSection, nullptr, "dashpot"},
    {"JOINT", &InpReader::beginSection, &InpReader::dataSection, nullptr, "joint"},
    {"GAP", &InpReader::beginSection, &InpReader::dataSection, nullptr, "gap"},
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
            // An empty line is a data line to *INSTANCE, where it means "not moved", and to sections.
            dataLines += card && (card->data == &InpReader::dataInstance || card->data == &InpReader::dataSection);
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
    return (key != "NSET" && key != "ELSET" && key != "NFILL") || flags.has("GENERATE") || flags.has("INTERNAL") ||
           flags.has("UNSORTED") || flags.has("TWOSTEP");
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

void InpReader::beginInclude(const KeywordLine& line)
{
    const bool elsewise = !line.has("INPUT") && line.has("FILE");
    const std::string name = line.value(elsewise ? "FILE" : "INPUT");
    if (name.empty()) {
        throw ImportError(line.place, "*INCLUDE without INPUT=");
    }
    if (elsewise) {
        log.note(line.place.text() + ": FILE= of *INCLUDE is taken for INPUT=");
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
    checkInpId(id, "node", deck);
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
    scope->mesh.addNode(id, xyz[0], xyz[1], xyz[2], deck.fileIndex(), deck.lineNumber());
    if (nodeCardSet) {
        nodeCardSet->add(id);
    }
}

void InpReader::beginSystem(const KeywordLine& line)
{
    systemPlace = line.place;
    systemTurned = false;
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
            const Field field = fields.nextReal(coordinate);
            if (field == Field::Bad) {
                badField(fields, "coordinate");
            }
            systemTurned = systemTurned || (point > 0 && field != Field::End);
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
    if (!systemTurned) {
        system = Transform::translation(a);
    } else if (!Transform::fromPoints(a, b, c, system)) {
        throw ImportError(systemPlace, "*SYSTEM: the points do not span a plane");
    }
}

// --- elements: inp_elements.cpp ---

void InpReader::beginElement(const KeywordLine& line)
{
    elements.begin(*scope, scope == &model.assembly || scope == &model.deck, line);
    includeInput(line);
}

void InpReader::dataElement(std::string_view line)
{
    elements.data(line);
}

void InpReader::endElement()
{
    elements.end();
}

// --- sets and sections ---

void InpReader::beginNset(const KeywordLine& line)
{
    if (line.value("NSET").empty()) {
        throw ImportError(line.place, "*NSET without NSET=");
    }
    if (line.has("ELSET")) {
        // The nodes of elements: those inside of edges and faces are not kept, so that the set would not be the deck's.
        log.count(listKeywordsNotRead, line.name + ", ELSET", 1, line.place);
    }
    InpSets* foreign = line.has("INSTANCE") ? &scope->foreignSets[nameKey(line.value("INSTANCE"))].nodes : nullptr;
    beginSet(line, foreign ? namedSet(*foreign, line.value("NSET")) : scope->nodeSet(line.value("NSET")));
}

void InpReader::beginElset(const KeywordLine& line)
{
    if (line.value("ELSET").empty()) {
        throw ImportError(line.place, "*ELSET without ELSET=");
    }
    InpSets* foreign = line.has("INSTANCE") ? &scope->foreignSets[nameKey(line.value("INSTANCE"))].elements : nullptr;
    beginSet(line, foreign ? namedSet(*foreign, line.value("ELSET")) : scope->elementSet(line.value("ELSET")));
}

void InpReader::beginSet(const KeywordLine& line, InpSet& set)
{
    generate = line.has("GENERATE");
    set.unsorted = set.unsorted || line.has("UNSORTED");
    set.place = line.place;
    listedSet = &set;
    includeInput(line);
}

void InpReader::dataSet(std::string_view line)
{
    CommaFields fields(line);
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
        if (values[2] < 0 || values[0] < 0 || values[1] < values[0] || values[1] > maxInpId) {
            throw ImportError(deck.place(), "GENERATE expects first, last, step with first <= last and step > 0");
        }
        listedSet->addRange(values[0], values[1], values[2]);
        return;
    }
    std::int64_t id = 0;
    std::string name;
    for (Field field = fields.nextInteger(id); field != Field::End; field = fields.nextInteger(id)) {
        if (field == Field::Value) {
            checkInpId(id, "listed", deck);
            listedSet->add(id);
        } else if (field == Field::Bad) {
            fields.nextText(name);
            listedSet->members.push_back(nameKey(name));
        }
    }
}

void InpReader::beginSection(const KeywordLine& line)
{
    inSection = !line.value("ELSET").empty();
    if (!inSection) {
        log.warn("sections without a set", line.place, line.name + " without ELSET= covers nothing");
        return;
    }
    sections.begin(*scope, card->section, line);
}

void InpReader::dataSection(std::string_view line)
{
    if (inSection) {
        sections.data(line, dataLines);
    }
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
const char* const typicalKeys[] = {"HEADING",  "NODE",      "ELEMENT",      "INCLUDE",      "PART",
                                   "ASSEMBLY", "PREPRINT",  "NSET",         "ELSET",        "RESTART",
                                   "MATERIAL", "SYSTEM",    "NGEN",         "PARAMETER",    "USERELEMENT",
                                   "SURFACE",  "AMPLITUDE", "SOLIDSECTION", "SHELLSECTION", "STEP"};

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
