// Keeping what is known, refusing what no writer makes.
#include "deck_keys.h"

#include <algorithm>

#include "program_error.h"

namespace kvo {

namespace {

const int knownVersion = 1;
const int deepest = 16; // the format's own lists and objects are 7 deep

struct KnownKeys
{
    const char* owner; // the key whose objects have them; "" for the outermost object
    std::vector<std::string> keys;
};

const std::vector<KnownKeys>& knownKeys()
{
    static const std::vector<KnownKeys> table = {
        {"", {"version", "format", "sources", "origin", "facts", "parts", "sets", "orientations", "undrawn"}},
        {"parts", {"id", "source_id", "file", "section", "types"}},
        {"section", {"kind", "thickness", "shape", "sizes", "area", "stiffness", "damping"}},
        {"types", {"name", "count", "elements"}},
        {"sets", {"name", "of", "id", "file", "kind", "count", "ids"}},
        {"orientations", {"file", "vector", "kind", "elements"}},
        {"undrawn", {"type", "file", "count", "elements"}},
    };
    return table;
}

bool isOneOf(const std::vector<std::string>& words, const std::string& word)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

// The names of facts are the deck's own.
bool isKnown(const std::string& owner, const std::string& key)
{
    const auto row = std::find_if(knownKeys().begin(), knownKeys().end(),
                                  [&](const KnownKeys& known) { return known.owner == owner; });
    return owner == "facts" || (row != knownKeys().end() && isOneOf(row->keys, key));
}

// Sees every key and value before it is kept.
class KeyFilter
{
public:
    KeyFilter(const std::string& shown, const std::vector<std::string>& wanted) : shownFile(shown), only(wanted) {}

    bool keeps(int depth, Json::parse_event_t event, const Json& parsed)
    {
        if (depth > deepest) {
            throw ProgramError(shownFile, "is damaged: its lists are nested deeper than a deck's");
        }
        return event != Json::parse_event_t::key ||
               keepsKey(static_cast<std::size_t>(depth), parsed.get<std::string>());
    }

private:
    bool keepsKey(std::size_t depth, const std::string& key)
    {
        open.resize(depth);
        const auto owner = std::find_if(open.rbegin(), open.rend(), [](const std::string& k) { return !k.empty(); });
        const bool known = isKnown(owner == open.rend() ? "" : *owner, key);
        open.push_back(key);
        return known && (depth != 1 || only.empty() || isOneOf(only, key) || key == "version");
    }

    const std::string& shownFile;
    const std::vector<std::string>& only;
    std::vector<std::string> open; // the key that is open at each depth; "" in lists
};

} // namespace

void failOfDeckValues(const std::string& shownFile)
{
    throw ProgramError(shownFile, "is damaged: a key is missing, or its value is of another kind than it should be");
}

Json parseDeckJson(const std::string& text, const std::string& shownFile, const std::vector<std::string>& only)
{
    KeyFilter filter(shownFile, only);
    const auto keep = [&](int depth, Json::parse_event_t event, Json& parsed) {
        return filter.keeps(depth, event, parsed);
    };
    try {
        Json deck = Json::parse(text, keep);
        const Json& version = deck.at("version");
        if (!version.is_number_integer() || version != knownVersion) {
            throw ProgramError(shownFile, "is of a version that is not known");
        }
        return deck;
    } catch (const Json::parse_error& error) {
        throw ProgramError(shownFile, "is damaged: no JSON from byte " + std::to_string(error.byte) + " on");
    } catch (const Json::exception&) {
        failOfDeckValues(shownFile);
    }
}

} // namespace kvo
