// Taking keyword lines apart.
#include "keyword_line.h"

#include <algorithm>

#include "text/fields.h"

namespace kvo {

namespace {

constexpr std::size_t shortestAbbreviation = 3;

std::string withoutBlanks(std::string_view text)
{
    std::string result;
    for (const char c : upperCase(text)) {
        if (!isBlank(c)) {
            result += c;
        }
    }
    return result;
}

// Upper case, single blanks.
std::string tidy(std::string_view text)
{
    std::string result;
    for (const char c : upperCase(trimmed(text))) {
        if (!isBlank(c)) {
            result += c;
        } else if (result.empty() || result.back() != ' ') {
            result += ' ';
        }
    }
    return result;
}

// The end of the comma-separated piece that begins at start; commas between quotation marks belong to it.
std::size_t pieceEnd(std::string_view text, std::size_t start)
{
    bool quoted = false;
    std::size_t at = start;
    for (; at < text.size() && (quoted || text[at] != ','); ++at) {
        quoted = quoted != (text[at] == '"');
    }
    return at;
}

std::string_view unquoted(std::string_view text)
{
    text = trimmed(text);
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        text = trimmed(text.substr(1, text.size() - 2));
    }
    return text;
}

} // namespace

const std::string* KeywordLine::find(std::string_view wanted) const
{
    for (const Parameter& parameter : parameters) {
        if (parameter.name == wanted) {
            return &parameter.value;
        }
    }
    for (const Parameter& parameter : parameters) {
        const bool shortened = parameter.name.size() >= shortestAbbreviation && parameter.name.size() < wanted.size() &&
                               wanted.substr(0, parameter.name.size()) == parameter.name;
        if (shortened) {
            return &parameter.value;
        }
    }
    return nullptr;
}

std::string KeywordLine::value(std::string_view wanted) const
{
    const std::string* found = find(wanted);
    return found ? *found : std::string();
}

KeywordLine parseKeywordLine(std::string_view text, Place place)
{
    KeywordLine line;
    line.place = std::move(place);
    text = trimmed(text);
    std::size_t end = pieceEnd(text, 0);
    line.name = "*" + tidy(text.substr(1, end - 1));
    line.key = withoutBlanks(text.substr(1, end - 1));
    while (end < text.size()) {
        const std::size_t start = end + 1;
        end = pieceEnd(text, start);
        const std::string_view piece = text.substr(start, end - start);
        const std::size_t equals = piece.find('=');
        const std::string name = withoutBlanks(piece.substr(0, equals));
        if (!name.empty()) {
            const bool flag = equals == std::string_view::npos;
            line.parameters.push_back({name, flag ? std::string() : std::string(unquoted(piece.substr(equals + 1)))});
        }
    }
    return line;
}

std::string nameKey(std::string_view name)
{
    std::string key = upperCase(trimmed(name));
    key.erase(std::remove(key.begin(), key.end(), '"'), key.end());
    return key;
}

} // namespace kvo
