// Sections, comments, includes, and the splitting of lines into fields.
#include "bdf_lines.h"

#include <algorithm>
#include <cstring>

#include "bdf_elements.h"
#include "bdf_properties.h"
#include "text/fields.h"
#include "text/numbers.h"

namespace kvo {

namespace {

const char* const propertySetPrefix = "$ Pset: \"";

constexpr std::size_t nameWidth = 8;
constexpr std::size_t smallWidth = 8;
constexpr std::size_t largeWidth = 16;
constexpr std::size_t fieldsPerLine = 8; // small fields; a large line has half as many
constexpr std::size_t lastColumn = 72;   // behind it stands a label
constexpr int maxIncludeLines = 32;      // of one name

bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// Free fields have their first comma near the beginning; further on it is part of a remark behind fixed fields.
bool hasFreeFields(std::string_view text)
{
    return text.substr(0, std::min(nameWidth + 2, text.size())).find(',') != std::string_view::npos;
}

// Comment and trailing blanks taken off.
std::string_view stripped(std::string_view text)
{
    const void* dollar = text.empty() ? nullptr : std::memchr(text.data(), '$', text.size());
    if (dollar) {
        text = text.substr(0, static_cast<std::size_t>(static_cast<const char*>(dollar) - text.data()));
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// Where a comment begins behind the unquoted name of a file.
std::size_t commentStart(std::string_view text)
{
    std::size_t at = text.find('$');
    while (at != std::string_view::npos && at > 0 && !isBlank(text[at - 1])) {
        at = text.find('$', at + 1);
    }
    return std::min(at, text.size());
}

// "GRID 5 0 1. 0.": free fields may be parted by blanks, too. Fixed ones have nothing but the name in the name's field.
bool hasBlanksForCommas(std::string_view text)
{
    const std::string_view name = text.substr(0, std::min(text.find_first_of(" \t"), text.size()));
    const std::string_view rest = text.substr(name.size());
    const std::size_t next = std::min(rest.find_first_not_of(' '), rest.size());
    const bool replicated = !name.empty() && name[0] == '=';
    return !name.empty() && (isLetter(name[0]) || replicated) && next < rest.size() && rest[next] != '\t' &&
           (rest[next] != '*' || replicated) && name.size() + next < nameWidth;
}

bool isContinuation(std::string_view text)
{
    const char first = text.front();
    if (first == '+' || first == '*' || first == ',' || first == '\t') {
        return true;
    }
    for (std::size_t k = 0; k < std::min(nameWidth, text.size()); ++k) {
        if (text[k] == ',' || text[k] == '\t') {
            return true;
        }
        if (text[k] != ' ') {
            return false;
        }
    }
    return true;
}

bool beginsWithEquals(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    return first != std::string_view::npos && text[first] == '=';
}

// "=" or "=3" where the name should be.
std::string_view replicatedNameOf(std::string_view text)
{
    text = trimmed(text);
    return text.substr(0, std::min(text.find_first_of(", \t"), text.size()));
}

// "=" as a name, or a "=" or "*" where fields are: the card may refer to the one before it. Large fields have a "*" of
// their own behind the name, and in the label.
bool mayReplicate(std::string_view text)
{
    if (beginsWithEquals(text)) {
        return true;
    }
    const bool free = hasFreeFields(text);
    const std::size_t from = free ? text.find(',') : std::min(nameWidth + 1, text.size());
    const std::size_t to = free ? text.size() : std::min(lastColumn, text.size());
    const void* star = to > from ? std::memchr(text.data() + from, '*', to - from) : nullptr;
    return star || (to > from && std::memchr(text.data() + from, '=', to - from));
}

// "=5", "=(5)" as 5; 0 for anything else.
std::uint64_t repeatsOf(std::string_view name)
{
    name = trimmed(name.substr(1));
    if (name.size() > 2 && name.front() == '(' && name.back() == ')') {
        name = trimmed(name.substr(1, name.size() - 2));
    }
    std::int64_t count = 0;
    return parseInteger(name, count) && count > 0 ? static_cast<std::uint64_t>(count) : 0;
}

// The first word of a control statement, upper case: "BEGIN" of "BEGIN_BULK" and "begin bulk".
std::string firstWord(std::string_view text)
{
    text = trimmed(text);
    std::size_t length = 0;
    while (length < text.size() && isLetter(text[length])) {
        ++length;
    }
    return upperCase(text.substr(0, length));
}

// Cards of a mesh that are neither elements nor properties.
const char* const otherMeshCards[] = {"GRID",   "GRDSET", "SPOINT", "BAROR", "BEAMOR", "CORD1R", "CORD1C", "CORD1S",
                                      "CORD2R", "CORD2C", "CORD2S", "MAT1",  "MAT2",   "MAT8",   "MAT9"};

} // namespace

bool isMeshCard(CardKey key)
{
    return findBdfElement(key) || findBdfUndrawn(key) || findBdfProperty(key) ||
           std::any_of(std::begin(otherMeshCards), std::end(otherMeshCards),
                       [&](const char* name) { return cardKey(name) == key; });
}

CardKey cardKeyOf(std::string_view line, bool& large)
{
    std::size_t length = 0;
    while (length < line.size() && length < nameWidth && line[length] != ',' && line[length] != '\t') {
        ++length;
    }
    length += length == nameWidth && line.size() > length && line[length] == '*';
    std::string_view name = trimmed(line.substr(0, length));
    large = !name.empty() && name.back() == '*';
    if (large) {
        name = trimmed(name.substr(0, name.size() - 1));
    }
    name = name.substr(0, std::min(name.find(' '), name.size()));
    const bool plain = !name.empty() && isLetter(name[0]) && std::all_of(name.begin(), name.end(), [](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '_' || c == '-' || c == '.';
    });
    return plain ? cardKey(name) : 0;
}

BdfLines::BdfLines(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
    : deck(std::move(file), std::move(progress)), log(log)
{
}

// --- sections ---

// BEGIN BULK, or BEGIN SUPER=7 and the like, whose cards are read as if they stood with the others.
void BdfLines::begin(std::string_view text)
{
    inBulk = true;
    if (text.find('=') != std::string_view::npos) {
        log.count(listKeywordsNotRead, std::string(trimmed(text)), 1, deck.place());
    }
}

// A line before the bulk data. True if the bulk data begins with it: with BEGIN BULK, or, where there is no such line,
// with the first card of a mesh.
bool BdfLines::controlLine(std::string_view text)
{
    const std::string word = firstWord(text);
    if (word == "BEGIN") {
        begin(text);
        return false;
    }
    if (word == "INCLUDE") {
        include(text);
        return false;
    }
    const std::size_t equals = text.find('=');
    if (equals != std::string_view::npos) {
        if (word == "TITLE" && titleText.empty()) {
            titleText = trimmed(text.substr(equals + 1));
        }
        return false;
    }
    bool large = false;
    const bool fields = hasFreeFields(text) || text.size() > nameWidth;
    inBulk = fields && !isContinuation(text) && isMeshCard(cardKeyOf(text, large));
    return inBulk;
}

// INCLUDE 'name', "name" or name; a quoted name may go on in the next lines.
void BdfLines::include(std::string_view text)
{
    const Place where = deck.place();
    std::string name(trimmed(trimmed(text).substr(std::strlen("INCLUDE"))));
    if (!name.empty() && (name[0] == '=' || name[0] == ',')) {
        name = trimmed(std::string_view(name).substr(1));
    }
    const char quote = name.empty() ? '\0' : name[0];
    if (quote == '\'' || quote == '"') {
        std::string_view more;
        for (int k = 0; name.find(quote, 1) == std::string::npos; ++k) {
            if (k == maxIncludeLines || !deck.next(more)) {
                throw ImportError(where, "INCLUDE: the name's closing quotation mark is missing");
            }
            name += trimmed(more);
        }
        name = name.substr(1, name.find(quote, 1) - 1);
    } else {
        name = trimmed(std::string_view(name).substr(0, commentStart(name))); // $ may be in a name, " $" is a comment
    }
    if (name.empty()) {
        throw ImportError(where, "INCLUDE without a file name");
    }
    deck.include(name);
}

// The name up to the quote, and at the end of the line, behind the last dot, the id.
void BdfLines::propertySet(std::string_view text)
{
    const std::size_t quote = text.find('"'), dot = text.rfind('.');
    std::int64_t id = 0;
    if (quote == std::string_view::npos || dot == std::string_view::npos || dot < quote) {
        return;
    }
    const char* p = text.data() + dot + 1;
    if (scanInteger(p, text.data() + text.size(), id)) {
        names[id] = trimmed(text.substr(0, quote));
    }
}

// Names of properties as pre-processors note them:
//   $HMNAME PROP         77"Skin Top" 4
//   $ANSA_NAME_COMMENT;77;PSHELL;Skin Top;;NO;
//   $ Femap Property 77 : Skin Top
//   $ Pset: "Skin Top" will be imported as: "pshell.77"
void BdfLines::comment(std::string_view text)
{
    struct Style
    {
        const char* prefix;
        char open;  // before the name
        char close; // behind it; 0: the end of the line
    };
    static const Style styles[] = {
        {"$HMNAME PROP", '"', '"'}, {"$ANSA_NAME_COMMENT;", ';', ';'}, {"$ Femap Property ", ':', '\0'}};
    std::string heading = headingName(text);
    if (!heading.empty()) {
        headingList.push_back({deck.fileIndex(), deck.lineNumber(), std::move(heading)});
        return;
    }
    if (startsWithIgnoringCase(text, propertySetPrefix)) {
        return propertySet(text.substr(std::strlen(propertySetPrefix)));
    }
    for (const Style& style : styles) {
        if (!startsWithIgnoringCase(text, style.prefix)) {
            continue;
        }
        std::string_view rest = trimmed(text.substr(std::strlen(style.prefix)));
        const char* p = rest.data();
        std::int64_t id = 0;
        if (!scanInteger(p, rest.data() + rest.size(), id)) {
            return;
        }
        rest = rest.substr(static_cast<std::size_t>(p - rest.data()));
        if (style.open == ';') { // ";PSHELL;Skin Top;": a property's kind comes first
            if (rest.size() < 2 || rest[1] != 'P') {
                return;
            }
            rest = rest.substr(std::min(rest.find(';', 1), rest.size()));
        }
        const std::size_t from = rest.find(style.open);
        if (from == std::string_view::npos) {
            return;
        }
        rest = rest.substr(from + 1);
        names[id] = trimmed(style.close ? rest.substr(0, std::min(rest.find(style.close), rest.size())) : rest);
        return;
    }
}

// --- lines ---

bool BdfLines::nextBulkLine(Line& line)
{
    std::string_view text;
    while (deck.next(text)) {
        if (inEndedFile) {
            if (deck.fileIndex() == endedFile) {
                continue; // what stands behind ENDDATA
            }
            inEndedFile = false;
        }
        if (!text.empty() && text[0] == '$') {
            comment(text);
            continue;
        }
        const std::string_view whole = text;
        text = stripped(text);
        if (text.empty()) {
            continue;
        }
        if (!inBulk && !controlLine(text)) {
            continue;
        }
        const char first = text.front();
        if ((first == 'E' || first == 'e' || first == ' ') && firstWord(text) == "ENDDATA") {
            inEndedFile = true;
            endedFile = deck.fileIndex();
            continue;
        }
        if ((first == 'B' || first == 'b') && firstWord(text) == "BEGIN") {
            begin(text);
            continue;
        }
        if ((first == 'I' || first == 'i') && firstWord(text) == "INCLUDE") {
            include(whole); // a name may have a $
            continue;
        }
        line = {text, mayReplicate(text), deck.fileIndex(), deck.lineNumber()};
        return true;
    }
    return false;
}

bool BdfLines::nextLine(Line& line)
{
    if (hasPending) {
        hasPending = false;
        line = pending;
        return true;
    }
    return nextBulkLine(line);
}

// False if the line does not begin with a name.
bool BdfLines::nameCard(const Line& line, BdfCard& card, bool& large)
{
    card.repeats = 0;
    card.replicates = line.replicates;
    if (!beginsWithEquals(line.text)) {
        card.key = cardKeyOf(line.text, large);
        return card.key != 0;
    }
    const std::string_view name = replicatedNameOf(line.text);
    card.key = replicatedName;
    large = name == "=*";
    if (name != "=" && name != "==" && !large) {
        card.repeats = repeatsOf(name);
        card.key = card.repeats > 0 ? card.key : 0;
    }
    return card.key != 0;
}

bool BdfLines::nextReplicates() const
{
    return hasPending && pending.replicates;
}

bool BdfLines::next(BdfCard& card)
{
    Line line;
    bool large = false;
    do {
        if (!nextLine(line)) {
            return false;
        }
        if (isContinuation(line.text)) {
            log.warn("continuation lines without a card", {deck.files()[line.file], line.number},
                     "there is no card that this line could continue");
            continue;
        }
        if (!nameCard(line, card, large)) {
            log.warn("lines that are no cards", {deck.files()[line.file], line.number},
                     "no name of a card: \"" + std::string(line.text.substr(0, 40)) + "\"");
        }
    } while (isContinuation(line.text) || card.key == 0);
    card.files = &deck.files();
    card.file = line.file;
    card.line = line.number;
    card.fields.clear();
    lineEnd = 0;
    expanded.clear();
    addFields(line.text, large, card);
    while (nextBulkLine(pending)) {
        if (!isContinuation(pending.text)) {
            hasPending = true;
            break;
        }
        card.replicates = card.replicates || pending.replicates;
        addFields(pending.text, pending.text.front() == '*', card);
    }
    if (card.key == replicatedName && card.fields.empty()) {
        card.fields.emplace_back("=="); // "=" alone, or "==": nothing is to differ
    }
    return true;
}

// --- fields ---

void BdfLines::addFields(std::string_view text, bool large, BdfCard& card)
{
    // Large lines come in pairs; a second half that is left out is blank. A line with nothing behind its first field
    // counts like any other.
    const std::size_t whole = large ? fieldsPerLine / 2 : fieldsPerLine;
    const std::size_t start = (std::max(lineEnd, card.fields.size()) + whole - 1) / whole * whole;
    lineEnd = start + whole;
    card.fields.resize(start);
    if (hasFreeFields(text)) {
        addFreeFields(text, large, card);
    } else if (hasBlanksForCommas(text)) {
        addWords(text, card);
    } else {
        addFixedFields(text, large, card);
    }
}

// Behind the last field stands a label, and behind that perhaps a comma. Only lines with more behind it have data in
// its place.
void BdfLines::addFreeFields(std::string_view text, bool large, BdfCard& card)
{
    const std::size_t most = large ? fieldsPerLine / 2 : fieldsPerLine;
    const std::size_t before = card.fields.size();
    const char* end = text.data() + text.size();
    const char* p = static_cast<const char*>(std::memchr(text.data(), ',', text.size())) + 1;
    while (true) {
        const std::size_t left = static_cast<std::size_t>(end - p);
        const void* found = left > 0 ? std::memchr(p, ',', left) : nullptr;
        const char* stop = found ? static_cast<const char*>(found) : end;
        card.fields.emplace_back(p, static_cast<std::size_t>(stop - p));
        if (!found) {
            break;
        }
        p = stop + 1;
    }
    while (card.fields.size() - before > most + 1 && card.blank(card.fields.size() - 1)) {
        card.fields.pop_back();
    }
    if (card.fields.size() - before == most + 1) {
        card.fields.pop_back();
    }
}

// The words behind the card's name.
void BdfLines::addWords(std::string_view text, BdfCard& card)
{
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = std::min(text.find_first_of(" \t", at), text.size());
        if (end > at && at > 0) {
            card.fields.push_back(text.substr(at, end - at));
        }
        at = end + 1;
    }
}

void BdfLines::addFixedFields(std::string_view text, bool large, BdfCard& card)
{
    const std::size_t width = large ? largeWidth : smallWidth;
    if (std::memchr(text.data(), '\t', text.size())) {
        text = expandTabs(text, width);
    }
    for (std::size_t at = nameWidth; at < lastColumn && at < text.size(); at += width) {
        card.fields.push_back(text.substr(at, std::min(width, lastColumn - at)));
    }
}

// A tab moves to the next field.
std::string_view BdfLines::expandTabs(std::string_view text, std::size_t width)
{
    std::string& result = expanded.emplace_back();
    for (const char c : text) {
        if (c != '\t') {
            result += c;
            continue;
        }
        const std::size_t at = result.size();
        result.append(at < nameWidth ? nameWidth - at : width - (at - nameWidth) % width, ' ');
    }
    return result;
}

} // namespace kvo
