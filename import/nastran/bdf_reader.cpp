// Reading of bulk data: which card does what.
#include "bdf_reader.h"

#include <algorithm>
#include <unordered_map>

#include "bdf_coords.h"
#include "bdf_elements.h"
#include "bdf_lines.h"
#include "bdf_properties.h"
#include "bdf_replication.h"
#include "mesh_finish.h"
#include "text/fields.h"

namespace kvo {

namespace {

class BdfReader
{
public:
    BdfReader(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
        : lines(std::move(file), log, std::move(progress)), cardsOfDeck(lines, log), log(log),
          coords(mesh.files.emplace_back(), log), elements(mesh, coords, log)
    {
    }

    Mesh read();

private:
    struct Card
    {
        const char* name;
        void (BdfReader::*read)(const BdfCard&);
    };
    static const Card cards[];

    // What is done with the cards of one name; one of the rows is set, or none.
    struct Action
    {
        void (BdfReader::*read)(const BdfCard&) = nullptr;
        const BdfElementRow* element = nullptr;
        const BdfUndrawnRow* undrawn = nullptr;
        const BdfPropertyRow* property = nullptr;
        std::uint64_t notRead = 0;
        Place firstNotRead;
    };

    Action& actionOf(CardKey key);
    void readCard(Action& action, const BdfCard& card);
    void listNotRead();

    void grid(const BdfCard& card) { coords.addGrid(card); }
    void gridDefaults(const BdfCard& card) { coords.setDefaults(card); }
    void barDefaults(const BdfCard& card) { elements.setDefaults(card); }
    void scalarPoints(const BdfCard& card) { elements.addScalarPoints(card); }
    void cord1r(const BdfCard& card) { coords.addByGrids(card, 'R'); }
    void cord1c(const BdfCard& card) { coords.addByGrids(card, 'C'); }
    void cord1s(const BdfCard& card) { coords.addByGrids(card, 'S'); }
    void cord2r(const BdfCard& card) { coords.addByPoints(card, 'R'); }
    void cord2c(const BdfCard& card) { coords.addByPoints(card, 'C'); }
    void cord2s(const BdfCard& card) { coords.addByPoints(card, 'S'); }
    void set3(const BdfCard& card);
    void readSet3(const BdfCard& card);

    Mesh mesh;
    BdfLines lines;
    BdfReplication cardsOfDeck;
    ImportLog& log;
    BdfCoords coords;
    BdfElements elements;
    BdfProperties properties;
    std::unordered_map<CardKey, Action> actions;
    std::vector<CardKey> order; // of the names' first appearance
};

const BdfReader::Card BdfReader::cards[] = {
    {"GRID", &BdfReader::grid},         {"GRDSET", &BdfReader::gridDefaults}, {"SPOINT", &BdfReader::scalarPoints},
    {"CORD1R", &BdfReader::cord1r},     {"CORD1C", &BdfReader::cord1c},       {"CORD1S", &BdfReader::cord1s},
    {"CORD2R", &BdfReader::cord2r},     {"CORD2C", &BdfReader::cord2c},       {"CORD2S", &BdfReader::cord2s},
    {"BAROR", &BdfReader::barDefaults}, {"BEAMOR", &BdfReader::barDefaults},  {"SET3", &BdfReader::set3},
};

BdfReader::Action& BdfReader::actionOf(CardKey key)
{
    const auto found = actions.emplace(key, Action());
    Action& action = found.first->second;
    if (found.second) {
        order.push_back(key);
        for (const Card& row : cards) {
            action.read = cardKey(row.name) == key ? row.read : action.read;
        }
        action.element = findBdfElement(key);
        action.undrawn = findBdfUndrawn(key);
        action.property = findBdfProperty(key);
    }
    return action;
}

void BdfReader::readCard(Action& action, const BdfCard& card)
{
    if (action.read) {
        (this->*action.read)(card);
    } else if (action.element) {
        elements.add(*action.element, card);
    } else if (action.undrawn) {
        elements.addUndrawn(*action.undrawn, card);
    } else if (action.property) {
        properties.add(*action.property, card);
    } else if (action.notRead++ == 0) {
        action.firstNotRead = card.place();
    }
}

void BdfReader::listNotRead()
{
    for (const CardKey key : order) {
        const Action& action = actions[key];
        if (action.notRead > 0) {
            log.count(listKeywordsNotRead, cardName(key), action.notRead, action.firstNotRead);
        }
    }
}

// The mesh is whole without a set.
void BdfReader::set3(const BdfCard& card)
{
    try {
        readSet3(card);
    } catch (const ImportError& error) {
        log.warn("sets that are left out", error.place, error.message + "; the set is left out");
    }
}

// SID, what the ids are of, ids with THRU.
void BdfReader::readSet3(const BdfCard& card)
{
    const std::string of = card.text(1);
    MeshSet set;
    set.id = card.integer(0);
    set.name = "SET3 " + std::to_string(set.id);
    set.of = of == "GRID" ? MeshSet::Of::Nodes : of == "PROP" ? MeshSet::Of::Parts : MeshSet::Of::Elements;
    if (of != "GRID" && of != "ELEM" && of != "PROP") {
        log.count(listKeywordsNotRead, "SET3, " + of, 1, card.place());
        return;
    }
    for (std::size_t k = 2; k < card.fields.size(); ++k) {
        const std::string word = card.text(k);
        if (word == "ALL" || word == "EXCEPT" || word == "BY") {
            log.count(listKeywordsNotRead, "SET3 with " + word, 1, card.place());
            return;
        }
        const std::int64_t first = card.integer(k);
        if (card.text(k + 1) == "THRU") {
            const std::int64_t last = card.integer(k + 2);
            if (last < first) {
                throw ImportError(card.place(), "SET3: THRU expects a higher id behind it");
            }
            set.ids.addRange(first, last);
            k += 2;
        } else if (!card.blank(k)) {
            set.ids.add(first);
        }
    }
    mesh.sets.push_back(std::move(set));
}

Mesh BdfReader::read()
{
    BdfCard card;
    Action* action = nullptr;
    CardKey key = 0;
    while (cardsOfDeck.next(card)) {
        if (card.key != key) {
            key = card.key;
            action = &actionOf(key);
        }
        readCard(*action, card);
    }
    mesh.sourceFiles = lines.files();
    coords.place(mesh.sourceFiles.front());
    elements.finish();
    std::map<std::int64_t, std::string> names = lines.propertyNames();
    nameByHeadings(mesh, lines.headings(), names);
    properties.apply(mesh, names);
    listNotRead();
    if (!lines.title().empty()) {
        mesh.facts.emplace_back("title", lines.title());
    }
    finishMesh(mesh, log);
    return std::move(mesh);
}

constexpr std::size_t sniffedBytes = 1 << 16;

} // namespace

bool looksLikeBdf(const MappedFile& file)
{
    const std::string_view text(file.begin(), std::min(file.size(), sniffedBytes));
    for (std::size_t start = 0, stop = 0; start < text.size(); start = stop + 1) {
        stop = std::min(text.find('\n', start), text.size());
        const std::string_view line = text.substr(start, stop - start);
        const std::string word = upperCase(trimmed(line).substr(0, 10));
        if (word.empty() || word[0] == '$') {
            continue;
        }
        if (word[0] == '*' || word[0] == '<' || line.find('\0') != std::string_view::npos) {
            return false;
        }
        if (word == "BEGIN BULK" || word == "BEGIN_BULK" || word == "CEND") {
            return true;
        }
        bool large = false;
        const bool fields = line.find(',') != std::string_view::npos || trimmed(line).size() > 8;
        if (fields && line.find('=') == std::string_view::npos && isMeshCard(cardKeyOf(line, large))) {
            return true;
        }
    }
    return false;
}

Mesh readBdf(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
{
    return BdfReader(std::move(file), log, std::move(progress)).read();
}

} // namespace kvo
