// Reading of keyword decks: which keyword is whose.
#include "key_reader.h"

#include <cmath>
#include <filesystem>
#include <map>

#include "key_cards.h"
#include "key_definitions.h"
#include "key_elements.h"
#include "key_includes.h"
#include "key_sets.h"
#include "key_transforms.h"
#include "key_undrawn.h"
#include "mesh_finish.h"
#include "text/fields.h"

namespace kvo {

namespace {

const char* const warnNoEnd = "decks without an end";

class KeyNodes : public KeyCards
{
public:
    using KeyCards::KeyCards;
    bool begin(int) override { return context.keyword.options.empty(); }

    void line(std::string_view text) override
    {
        std::int64_t id = 0;
        double xyz[3];
        if (!scanNodeColumns(text, context.keyword.widths, id, xyz)) {
            if (trimmed(text).empty()) {
                return;
            }
            KeyFields fields = context.fields(text);
            id = fields.integer(8);
            for (double& coordinate : xyz) {
                coordinate = fields.real(16);
            }
            context.refuseBad(fields);
        }
        context.file().addNode(context.lines.shifted(id, KeyOffsets::Node), xyz[0], xyz[1], xyz[2],
                               context.lines.fileIndex(), context.lines.lineNumber());
    }
};

class KeyParameterCards : public KeyCards
{
public:
    enum Kind
    {
        Values,
        Expressions,
        Duplication
    };

    using KeyCards::KeyCards;
    bool begin(int kind) override
    {
        current = static_cast<Kind>(kind);
        local = context.keyword.takeOption("LOCAL");
        return context.keyword.options.empty();
    }

    void line(std::string_view text) override
    {
        if (current == Expressions) {
            return expressionLine(text);
        }
        KeyFields fields = context.fields(text);
        if (current == Duplication) {
            const std::int64_t rule = fields.integer(10);
            lastHolds = context.accept(fields) && (rule == 2 || rule == 4);
        } else {
            while (fields.anyLeft()) {
                const std::string_view name = fields.text(10);
                define(name, fields.text(10), context.lines.place());
            }
        }
    }

    void end() override { defineExpression(); }

private:
    // Name and expression, in columns or behind a comma; commas further on belong to functions. A line without a name
    // goes on with the expression of the line before.
    void expressionLine(std::string_view text)
    {
        const std::size_t width = static_cast<std::size_t>(context.keyword.widths.of(10));
        const std::size_t comma = text.find(',');
        const bool free = comma <= width;
        const std::string name(trimmed(text.substr(0, free ? comma : width)));
        const std::string_view behind = text.substr(std::min(free ? comma + 1 : width, text.size()));
        if (name.empty() && !openName.empty()) {
            openText += behind;
            return;
        }
        defineExpression();
        openName = name;
        openText = behind;
        openPlace = context.lines.place();
    }

    void defineExpression()
    {
        define(openName, openText, openPlace);
        openName.clear();
    }

    // name begins with the letter of its type. Texts are not needed.
    void define(std::string_view name, std::string_view text, const Place& place)
    {
        const char type = name.empty() ? ' ' : upperCase(name.substr(0, 1)).front();
        if (type == 'C' || type == ' ') {
            return;
        }
        const std::string_view bare = trimmed(name.substr(1));
        double value = 0.0;
        if ((type != 'R' && type != 'I') || !context.parameters.evaluate(text, value)) {
            context.log.warn(warnBadField, place,
                             "parameter \"" + std::string(name) + "\" has no value: \"" +
                                 std::string(trimmed(text).substr(0, 40)) + "\"");
            return;
        }
        value = type == 'I' ? std::trunc(value) : value;
        if (local) {
            context.parameters.defineLocal(bare, value);
        } else if (!context.parameters.define(bare, value, lastHolds)) {
            context.log.warn("parameters defined more than once", place,
                             "parameter " + std::string(bare) + " has a value already; that one holds");
        }
    }

    Kind current = Values;
    bool lastHolds = false; // of definitions of one name
    bool local = false;
    std::string openName; // of an expression that may go on in the next line
    std::string openText;
    Place openPlace;
};

// *KEYWORD, *TITLE, *END, and what else is no mesh but worth a word.
class KeyFrame : public KeyCards
{
public:
    enum Kind
    {
        Keyword,
        Title,
        Vector, // of discrete elements
        Comment,
        End
    };

    KeyFrame(KeyContext& context, KeyElements& elements) : KeyCards(context), elements(elements) {}

    bool begin(int kind) override
    {
        current = static_cast<Kind>(kind);
        titled = context.keyword.takeOption("TITLE");
        if (current == Keyword) {
            format();
        } else if (current == End) {
            context.lines.endFile();
        }
        return current == Keyword || context.keyword.options.empty();
    }

    void line(std::string_view text) override
    {
        const std::string_view words = trimmed(text);
        if (current == Title && !words.empty() && context.mesh.facts.empty()) {
            context.mesh.facts.emplace_back("title", words);
        } else if (current == Vector && titled) {
            titled = false;
        } else if (current == Vector) {
            vector(text);
        }
    }

private:
    // "*KEYWORD LONG=Y I10=N": holds for the file.
    void format()
    {
        std::string words;
        for (const char c : context.keyword.rest) {
            words += isBlank(c) ? "" : std::string(1, c);
        }
        KeyWidths& widths = context.lines.fileWidths();
        // LONG=S is about what the solver writes, LONG=K about the deck alone, LONG=Y about both.
        widths.wide =
            widths.wide || words.find("LONG=Y") != std::string::npos || words.find("LONG=K") != std::string::npos;
        widths.ten = widths.ten || words.find("I10=Y") != std::string::npos;
    }

    // Kinds 0 and 1 have a vector; the others take the way between two nodes, which the element shows itself.
    void vector(std::string_view text)
    {
        KeyFields fields = context.fields(text);
        const std::int64_t id = context.lines.shifted(fields.integer(10), KeyOffsets::Define);
        const std::int64_t kind = fields.integer(10);
        Vec3 direction;
        for (double& component : direction) {
            component = fields.real(10);
        }
        if (context.accept(fields)) {
            elements.defined.push_back({id, kind <= 1 ? direction : Vec3{0.0, 0.0, 0.0}});
        }
    }

    Kind current = Keyword;
    bool titled = false;
    KeyElements& elements;
};

class KeyReader
{
public:
    KeyReader(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
        : lines(std::move(file), log, std::move(progress)), rows(mesh), context{lines, parameters, log, mesh, rows, {}}
    {
        mesh.files.emplace_back();
        mesh.idsPerFamily = true;
        fillTable();
    }

    Mesh read();

private:
    struct Row
    {
        KeyCards* cards;
        int kind;
    };
    // Where the reading of an including file goes on.
    struct Frame
    {
        KeyInclude include;
        KeyTransforms::Range from;
        KeyKeyword keyword;
        KeyIncludes::Kind after;
    };

    void fillTable();
    void keyword(std::string_view line);
    bool findRow(Row& row);
    void endCards();
    void opened();
    void closed();
    void finish();
    KeyTransforms::Range reached() const
    {
        return {mesh.files.front().nodeIds.size(), elements.oriented.size(), elements.defined.size()};
    }

    Mesh mesh;
    KeyParameters parameters;
    KeyLines lines;
    MeshRows rows;
    KeyContext context;

    KeyNodes nodes{context};
    KeyElements elements{context};
    KeyDefinitions definitions{context};
    KeySets sets{context};
    KeyUndrawn undrawn{context};
    KeyTransforms transforms{context};
    KeyIncludes includes{context};
    KeyParameterCards parameterCards{context};
    KeyFrame frame{context, elements};

    std::map<std::string, Row> table;
    KeyCards* current = nullptr; // null: lines are not read
    std::vector<Frame> frames;
};

// The longest name that a keyword begins with, word for word, is its row; the other words are options.
void KeyReader::fillTable()
{
    table = {
        {"KEYWORD", {&frame, KeyFrame::Keyword}},
        {"TITLE", {&frame, KeyFrame::Title}},
        {"COMMENT", {&frame, KeyFrame::Comment}},
        {"DEFINE_SD_ORIENTATION", {&frame, KeyFrame::Vector}},
        {"END", {&frame, KeyFrame::End}},
        {"INCLUDE", {&includes, KeyIncludes::Files}},
        {"INCLUDE_PATH", {&includes, KeyIncludes::Folders}},
        {"INCLUDE_TRANSFORM", {&includes, KeyIncludes::Transformed}},
        {"DEFINE_TRANSFORMATION", {&transforms, 0}},
        {"PARAMETER", {&parameterCards, KeyParameterCards::Values}},
        {"PARAMETER_EXPRESSION", {&parameterCards, KeyParameterCards::Expressions}},
        {"PARAMETER_DUPLICATION", {&parameterCards, KeyParameterCards::Duplication}},
        {"NODE", {&nodes, 0}},
        {"NODE_MERGE", {&nodes, 0}},
        {"NODE_RIGID_SURFACE", {&nodes, 0}},
        {"ELEMENT_SOLID", {&elements, KeyElements::Solid}},
        {"ELEMENT_TSHELL", {&elements, KeyElements::ThickShell}},
        {"ELEMENT_SHELL", {&elements, KeyElements::Shell}},
        {"ELEMENT_BEAM", {&elements, KeyElements::Beam}},
        {"ELEMENT_DISCRETE", {&elements, KeyElements::Discrete}},
        {"ELEMENT_SEATBELT", {&elements, KeyElements::Belt}},
        {"PART", {&definitions, KeyDefinitions::Part}},
        {"PART_COMPOSITE", {&definitions, KeyDefinitions::CompositePart}},
        {"SECTION_SHELL", {&definitions, KeyDefinitions::ShellSection}},
        {"SECTION_TSHELL", {&definitions, KeyDefinitions::ShellSection}},
        {"SECTION_BEAM", {&definitions, KeyDefinitions::BeamSection}},
        {"SECTION_SOLID", {&definitions, KeyDefinitions::OtherSection}},
        {"SECTION_DISCRETE", {&definitions, KeyDefinitions::OtherSection}},
        {"SECTION_SEATBELT", {&definitions, KeyDefinitions::OtherSection}},
        {"MAT", {&definitions, KeyDefinitions::Material}},
        {"SET_NODE", {&sets, KeySets::Nodes}},
        {"SET_PART", {&sets, KeySets::Parts}},
        {"SET_SHELL", {&sets, KeySets::Shells}},
        {"SET_SOLID", {&sets, KeySets::Solids}},
        {"SET_TSHELL", {&sets, KeySets::ThickShells}},
        {"SET_BEAM", {&sets, KeySets::Beams}},
        {"SET_DISCRETE", {&sets, KeySets::Discretes}},
    };
    for (std::size_t k = 0; k < KeyUndrawn::rows().size(); ++k) {
        table[KeyUndrawn::rows()[k].keyword] = {&undrawn, static_cast<int>(k)};
    }
}

bool KeyReader::findRow(Row& row)
{
    KeyKeyword& keyword = context.keyword;
    std::string base = keyword.name;
    for (;;) {
        const auto found = table.find(base);
        if (found != table.end()) {
            row = found->second;
            keyword.base = base;
            return true;
        }
        const std::size_t cut = base.rfind('_');
        if (cut == std::string::npos) {
            return false;
        }
        keyword.options.insert(keyword.options.begin(), base.substr(cut + 1));
        base.resize(cut);
    }
}

void KeyReader::endCards()
{
    if (current) {
        current->end();
    }
    current = nullptr;
}

void KeyReader::keyword(std::string_view line)
{
    if (current == &includes && includes.openBeforeKeyword()) {
        current = nullptr;
        return;
    }
    endCards();
    context.keyword = parseKeyKeyword(line, lines.fileWidths(), lines.place());
    Row row = {};
    if (findRow(row) && row.cards->begin(row.kind)) {
        current = row.cards;
    } else {
        context.log.count(listKeywordsNotRead, "*" + context.keyword.name, 1, lines.place());
    }
}

void KeyReader::opened()
{
    parameters.enterFile();
    frames.push_back({lines.currentInclude(), reached(), context.keyword, includes.now()});
    current = nullptr;
}

void KeyReader::closed()
{
    endCards();
    parameters.leaveFile();
    const Frame done = frames.back();
    frames.pop_back();
    transforms.closed(done.include, done.from, reached());
    context.keyword = done.keyword;
    includes.resume(done.after);
    current = &includes;
}

void KeyReader::finish()
{
    mesh.sourceFiles = lines.files();
    transforms.apply(elements);
    elements.resolveVectors();
    for (const KeyElements::Oriented& row : elements.oriented) {
        context.file().orient(row.element, row.vector, static_cast<int>(row.family));
    }
    definitions.describeParts();
    sets.finish();
    finishMesh(mesh, context.log);
    undrawn.resolveSets();
}

Mesh KeyReader::read()
{
    std::string_view line;
    for (;;) {
        switch (lines.next(line)) {
        case KeyLines::Kind::Data:
            if (current) {
                current->line(line);
            }
            break;
        case KeyLines::Kind::Keyword:
            keyword(line);
            break;
        case KeyLines::Kind::Opened:
            opened();
            break;
        case KeyLines::Kind::Closed:
            closed();
            break;
        case KeyLines::Kind::End:
            endCards();
            if (!lines.topFileEnded()) {
                context.log.warn(warnNoEnd, lines.place(), "the deck has no *END: it may be cut off");
            }
            finish();
            return std::move(mesh);
        }
    }
}

// Keywords that no other format's decks have begin so.
const char* const ownKeywords[] = {"*KEYWORD",   "*ELEMENT_", "*SECTION_",   "*MAT_",     "*SET_",         "*CONTROL_",
                                   "*DATABASE_", "*DEFINE_",  "*INCLUDE_",   "*NODE_",    "*CONSTRAINED_", "*BOUNDARY_",
                                   "*LOAD_",     "*CONTACT_", "*PARAMETER_", "*INITIAL_", "*PART_"};

// Other formats' lines of these words go on behind them.
const char* const ownLines[] = {"*INCLUDE", "*TITLE", "*PART", "*END"};

bool isOwnKeyword(std::string_view line)
{
    for (const char* keyword : ownLines) {
        if (equalsIgnoringCase(trimmed(line), keyword)) {
            return true;
        }
    }
    for (const char* keyword : ownKeywords) {
        if (startsWithIgnoringCase(line, keyword)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool looksLikeKeyword(const MappedFile& file)
{
    // A deck of nothing but nodes begins as other formats' do: then the ending tells.
    const std::string ending = upperCase(std::filesystem::path(file.path()).extension().string());
    const bool ownEnding = ending == ".K" || ending == ".KEY" || ending == ".DYN";
    constexpr std::size_t enough = 1 << 20;
    std::string_view rest(file.begin(), std::min(file.size(), enough));
    bool anyKeyword = false;
    bool nodes = false;
    bool parameters = false; // behind a keyword, as other formats have them
    while (!rest.empty()) {
        const std::size_t stop = std::min(rest.find('\n'), rest.size());
        const std::string_view line = rest.substr(0, stop);
        rest.remove_prefix(std::min(stop + 1, rest.size()));
        if (!line.empty() && line.front() == '*') {
            if (isOwnKeyword(line)) {
                return true;
            }
            if (line.substr(0, 2) == "**") {
                return false;
            }
            anyKeyword = true;
            nodes = nodes || equalsIgnoringCase(trimmed(line), "*NODE");
            parameters = parameters || line.find(',') != std::string_view::npos;
        } else if (!anyKeyword && !trimmed(line).empty() && line.front() != '$') {
            return false;
        }
    }
    return ownEnding && nodes && !parameters;
}

Mesh readKeyword(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
{
    return KeyReader(std::move(file), log, std::move(progress)).read();
}

} // namespace kvo
