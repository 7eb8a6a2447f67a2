// Reading and showing deck.json.
#include "deck_file.h"

#include <cerrno>

#include <sys/stat.h>

#include "deck_keys.h"
#include "input_file.h"
#include "program_error.h"
#include "table.h"
#include "text/printable.h"

namespace kvo {

namespace {

using Rows = std::vector<std::vector<std::string>>;

const std::size_t longestFile = std::size_t{512} << 20; // bytes

std::string shortNumber(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

std::string textOf(const Json& object, const char* key)
{
    const auto found = object.find(key);
    if (found == object.end() || found->is_null()) {
        return "";
    }
    return found->is_string() ? found->get<std::string>() : found->dump();
}

// A table under a title, or nothing.
std::string titled(const std::string& title, const std::vector<Column>& columns, const Rows& rows)
{
    return rows.empty() ? "" : "\n" + title + "\n" + formatTable(columns, rows);
}

std::string idsText(const Json& ids)
{
    const std::size_t most = 6; // of ranges in a table
    std::string text;
    for (std::size_t k = 0; k < std::min(ids.size(), most); ++k) {
        const Json& range = ids[k];
        text += k ? ", " : "";
        text += range.is_array() ? range.at(0).dump() + "-" + range.at(1).dump() : range.dump();
    }
    return text + (ids.size() > most ? ", ..." : "");
}

std::string setsTable(const Json& deck)
{
    Rows rows;
    for (const Json& set : deck.at("sets")) {
        rows.push_back({textOf(set, "name"),
                        textOf(set, "kind") + (set.contains("kind") ? " " : "") + textOf(set, "of"), textOf(set, "id"),
                        textOf(set, "count"), idsText(set.at("ids"))});
    }
    return titled("sets", {{"name"}, {"of"}, {"id", true}, {"count", true}, {"ids"}}, rows);
}

std::string sectionText(const Json& section)
{
    std::string text;
    for (const auto& entry : section.items()) {
        if (entry.key() == "kind") {
            continue;
        }
        text += text.empty() ? "" : ", ";
        text += entry.key() + " ";
        if (entry.value().is_array()) {
            std::string list;
            for (const Json& value : entry.value()) {
                list += (list.empty() ? "" : " x ") + shortNumber(value);
            }
            text += list;
        } else {
            text += entry.value().is_number() ? shortNumber(entry.value()) : textOf(section, entry.key().c_str());
        }
    }
    return text;
}

std::string partsTable(const Json& deck)
{
    Rows rows;
    for (const Json& part : deck.at("parts")) {
        std::string types;
        for (const Json& type : part.at("types")) {
            types += (types.empty() ? "" : ", ") + textOf(type, "name") + " " + textOf(type, "count");
        }
        rows.push_back({textOf(part, "id"), textOf(part, "source_id"), textOf(part.at("section"), "kind"),
                        sectionText(part.at("section")), types});
    }
    return titled("sections", {{"part", true}, {"in the deck", true}, {"section"}, {"values"}, {"element types"}},
                  rows);
}

std::string undrawnTable(const Json& deck)
{
    Rows rows;
    for (const Json& undrawn : deck.at("undrawn")) {
        rows.push_back({textOf(undrawn, "type"), textOf(undrawn, "count")});
    }
    return titled("not drawn", {{"type"}, {"count", true}}, rows);
}

std::string shownFile(const ModelSource& source)
{
    return source.shownName() + "/deck.json";
}

// "" without the file.
std::string readDeckText(const ModelSource& source)
{
    const std::string path = source.dirName() + "/" + source.modelName() + "/deck.json";
    struct stat info = {};
    const bool missing = stat(path.c_str(), &info) != 0 && errno == ENOENT;
    std::string text = missing ? "" : readInputFile(path, "the data of a deck", longestFile);
    source.checkUnchanged();
    if (text.size() > longestFile) {
        throw ProgramError(shownFile(source),
                           "is longer than the " + std::to_string(longestFile >> 20) + " MiB that are read");
    }
    if (text.empty() && !missing) {
        throw ProgramError(shownFile(source), "is empty");
    }
    return text;
}

// Null without the file. Of its outermost keys those of only, all if there are none.
Json readDeckJson(const ModelSource& source, const std::vector<std::string>& only)
{
    const std::string text = readDeckText(source);
    return text.empty() ? Json() : parseDeckJson(text, shownFile(source), only);
}

// Lists of elements can be long: of the file only the version and this member.
template <class Value> Value readMember(const ModelSource& source, const char* key)
{
    const Json deck = readDeckJson(source, {key});
    return fromDeckJson(shownFile(source), [&] { return deck.is_null() ? Value{} : deck.at(key).get<Value>(); });
}

} // namespace

Json readDeckFile(const ModelSource& source)
{
    return readDeckJson(source, {});
}

std::array<double, 3> readOrigin(const ModelSource& source)
{
    if (source.model()) {
        return source.model()->origin();
    }
    return readMember<std::array<double, 3>>(source, "origin");
}

std::vector<std::string> readSources(const ModelSource& source)
{
    if (source.model()) {
        return source.model()->facts().sources;
    }
    return readMember<std::vector<std::string>>(source, "sources");
}

std::string formatOrigin(const std::array<double, 3>& origin)
{
    if (origin == std::array<double, 3>{}) {
        return "";
    }
    char text[120];
    std::snprintf(text, sizeof text, "coordinates are the deck's less (%.12g, %.12g, %.12g)\n", origin[0], origin[1],
                  origin[2]);
    return text;
}

std::string formatDeckFile(const Json& deck)
{
    if (deck.is_null()) {
        return "\nno deck.json: the model directory does not come from a deck\n";
    }
    return fromDeckJson("deck.json", [&] {
        std::string facts;
        for (const auto& fact : deck.at("facts").items()) {
            facts += printable(fact.key() + ": " + fact.value().get<std::string>()) + "\n";
        }
        return "\ndeck: " + printable(textOf(deck, "format")) + "\n" + facts + setsTable(deck) + partsTable(deck) +
               undrawnTable(deck);
    });
}

} // namespace kvo
