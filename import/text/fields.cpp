// Splitting of comma-separated lines.
#include "fields.h"

#include <algorithm>

#include "numbers.h"

namespace kvo {

namespace {

char upper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

} // namespace

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool isName(std::string_view word)
{
    constexpr std::size_t longest = 40;
    const auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    return !word.empty() && word.size() <= longest && letter(word[0]) &&
           std::all_of(word.begin(), word.end(),
                       [&](char c) { return letter(c) || (c >= '0' && c <= '9') || c == '_' || c == '-' || c == '.'; });
}

std::string upperCase(std::string_view text)
{
    std::string result(text);
    for (char& c : result) {
        c = upper(c);
    }
    return result;
}

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix)
{
    if (text.size() < prefix.size()) {
        return false;
    }
    for (std::size_t k = 0; k < prefix.size(); ++k) {
        if (upper(text[k]) != upper(prefix[k])) {
            return false;
        }
    }
    return true;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && startsWithIgnoringCase(a, b);
}

void CommaFields::skipBlanks()
{
    while (p < end && isBlank(*p)) {
        ++p;
    }
}

bool CommaFields::finishField()
{
    skipBlanks();
    commaSeen = p < end && *p == ',';
    p += commaSeen;
    return commaSeen || p == end;
}

Field CommaFields::nextInteger(std::int64_t& value)
{
    skipBlanks();
    if (p == end) {
        return Field::End;
    }
    const char* start = p;
    if (*p == ',') {
        finishField();
        return Field::Blank;
    }
    if (scanInteger(p, end, value) && finishField()) {
        return Field::Value;
    }
    // Not plain digits: "12." is an integer too, all else is not.
    p = start;
    const char* stop = start;
    while (stop < end && *stop != ',') {
        ++stop;
    }
    if (!parseInteger({start, static_cast<std::size_t>(stop - start)}, value)) {
        return Field::Bad;
    }
    p = stop;
    finishField();
    return Field::Value;
}

Field CommaFields::nextReal(double& value)
{
    skipBlanks();
    if (p == end) {
        return Field::End;
    }
    if (*p == ',') {
        finishField();
        return Field::Blank;
    }
    const char* start = p;
    if (scanReal(p, end, value) && finishField()) {
        return Field::Value;
    }
    p = start;
    return Field::Bad;
}

Field CommaFields::nextText(std::string& text)
{
    skipBlanks();
    if (p == end) {
        return Field::End;
    }
    const char* start = p;
    char quote = 0;
    while (p < end && (quote || *p != ',')) {
        if (quote) {
            quote = *p == quote ? 0 : quote;
        } else if (*p == '"' || *p == '\'') {
            quote = *p;
        }
        ++p;
    }
    std::string_view field = trimmed({start, static_cast<std::size_t>(p - start)});
    finishField();
    if (field.empty()) {
        return Field::Blank;
    }
    if (field.size() >= 2 && (field.front() == '"' || field.front() == '\'') && field.back() == field.front()) {
        field = field.substr(1, field.size() - 2);
    }
    text.assign(field);
    return Field::Value;
}

std::string CommaFields::badField() const
{
    const char* stop = p;
    while (stop < end && *stop != ',' && stop - p < 40) {
        ++stop;
    }
    return std::string(trimmed({p, static_cast<std::size_t>(stop - p)}));
}

} // namespace kvo
