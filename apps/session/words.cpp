// Splitting lines, quoting, numbers.
#include "words.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "program_error.h"

namespace kvo {

namespace {

bool isBlank(char c)
{
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

// From behind the opening quote to behind the closing one.
std::string takeQuoted(const Line& line, const std::string& text, std::size_t& at)
{
    std::string word;
    for (; at < text.size() && text[at] != '"'; ++at) {
        if (text[at] == '\\' && at + 1 < text.size()) {
            ++at;
            word += text[at] == 'n' ? '\n' : text[at];
        } else {
            word += text[at];
        }
    }
    if (at == text.size()) {
        line.fail("a quotation mark is missing at the end of \"" + word);
    }
    ++at;
    return word;
}

std::string takeBare(const std::string& text, std::size_t& at)
{
    const std::size_t from = at;
    while (at < text.size() && !isBlank(text[at]) && text[at] != '#') {
        ++at;
    }
    return text.substr(from, at - from);
}

} // namespace

void Line::fail(const std::string& what) const
{
    throw ProgramError(file, number, what);
}

Line splitLine(const std::string& file, std::size_t number, const std::string& text)
{
    Line line{file, number, {}};
    for (std::size_t at = 0; at < text.size() && text[at] != '#';) {
        if (isBlank(text[at])) {
            ++at;
        } else if (text[at] == '"') {
            line.words.push_back(takeQuoted(line, text, ++at));
        } else {
            line.words.push_back(takeBare(text, at));
        }
    }
    return line;
}

std::string quoteWord(const std::string& word)
{
    bool bare = !word.empty();
    for (char c : word) {
        bare = bare && !isBlank(c) && c != '#' && c != '"';
    }
    if (bare) {
        return word;
    }
    std::string out = "\"";
    for (char c : word) {
        if (c == '"' || c == '\\') {
            out += '\\';
        }
        out += c == '\n' ? std::string("\\n") : std::string(1, c);
    }
    return out + "\"";
}

float parseValue(const Line& line, const std::string& word)
{
    char* end = nullptr;
    const float value = std::strtof(word.c_str(), &end);
    if (end == word.c_str() || *end != '\0' || !std::isfinite(value)) {
        line.fail("\"" + word + "\" is no number");
    }
    return value;
}

std::string formatValue(float value)
{
    char text[32];
    const std::to_chars_result result = std::to_chars(text, text + sizeof text, value);
    return std::string(text, result.ptr);
}

} // namespace kvo
