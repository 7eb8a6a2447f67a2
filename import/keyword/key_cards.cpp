// Keyword lines and the complaints that all cards have.
#include "key_cards.h"

#include <algorithm>

#include "text/fields.h"

namespace kvo {

const char* const warnBadField = "fields that are no numbers";
const char* const warnCutCards = "definitions that are cut off";
const char* const warnTooFewNodes = "elements with too few nodes";
const char* const warnMissingSet = "sets that do not exist";

bool KeyKeyword::takeOption(std::string_view word)
{
    const auto found = std::find(options.begin(), options.end(), word);
    if (found == options.end()) {
        return false;
    }
    options.erase(found);
    return true;
}

KeyKeyword parseKeyKeyword(std::string_view line, KeyWidths fileWidths, Place place)
{
    KeyKeyword keyword;
    keyword.place = std::move(place);
    keyword.widths = fileWidths;
    const std::string text = upperCase(trimmed(line.substr(1)));
    const std::size_t stop = std::min(text.find_first_of(" \t,+-%("), text.size());
    keyword.name = text.substr(0, stop);
    keyword.rest = std::string(trimmed(std::string_view(text).substr(stop)));
    switch (keyword.rest.empty() ? '\0' : keyword.rest.front()) {
    case '+':
        keyword.widths = {true, false};
        break;
    case '-':
        keyword.widths = {false, false};
        break;
    case '%':
        keyword.widths = {false, true};
        break;
    default:
        break;
    }
    return keyword;
}

void KeyContext::refuseBad(const KeyFields& fields) const
{
    if (!fields.complaint().empty()) {
        throw ImportError(lines.place(), "*" + keyword.name + ": " + fields.complaint());
    }
}

bool KeyContext::accept(const KeyFields& fields) const
{
    if (fields.complaint().empty()) {
        return true;
    }
    log.warn(warnBadField, lines.place(), "*" + keyword.name + ": " + fields.complaint() + "; the line is not read");
    return false;
}

} // namespace kvo
