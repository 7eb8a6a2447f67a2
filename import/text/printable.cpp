// Telling printable UTF-8 from all else.
#include "printable.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace kvo {

namespace {

struct Character
{
    std::uint32_t code = 0;
    std::size_t length = 0; // in bytes; 0: no UTF-8
};

Character characterAt(std::string_view text)
{
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    if (byte(0) < 0x80) {
        return {byte(0), 1};
    }
    const std::size_t length = byte(0) >= 0xF0 ? 4 : byte(0) >= 0xE0 ? 3 : 2;
    if (byte(0) < 0xC2 || byte(0) > 0xF4 || text.size() < length) {
        return {};
    }
    std::uint32_t code = byte(0) & (0xFFu >> (length + 1));
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(k) & 0xC0) != 0x80) {
            return {};
        }
        code = code << 6 | (byte(k) & 0x3Fu);
    }
    static const std::uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < least[length] || code > 0x10FFFF || surrogate ? Character{} : Character{code, length};
}

struct CodeRange
{
    std::uint32_t first;
    std::uint32_t last;
};

// Controls; then what turns the direction of writing, so that a line reads otherwise than it is; marks and tags that
// nobody sees.
const CodeRange unprintable[] = {{0x00, 0x1F},     {0x7F, 0x9F},      {0x61C, 0x61C},   {0x200E, 0x200F},
                                 {0x2028, 0x202E}, {0x2066, 0x2069},  {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB},
                                 {0xFFFE, 0xFFFF}, {0xE0000, 0xE007F}};

bool isPrintable(const Character& character)
{
    return character.length > 0 &&
           std::none_of(std::begin(unprintable), std::end(unprintable), [&](const CodeRange& range) {
               return character.code >= range.first && character.code <= range.last;
           });
}

std::string formatted(const char* format, unsigned int value)
{
    char text[16];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string escapedBytes(std::string_view bytes)
{
    std::string out;
    for (const char byte : bytes) {
        out += formatted("\\x%02X", static_cast<unsigned char>(byte));
    }
    return out;
}

std::string escapedJson(const Character& character)
{
    if (character.code < 0x10000) {
        return formatted("\\u%04x", character.code);
    }
    const std::uint32_t rest = character.code - 0x10000;
    return formatted("\\u%04x", 0xD800 + (rest >> 10)) + formatted("\\u%04x", 0xDC00 + (rest & 0x3FF));
}

// Passes on what is printable and what stays, and has escape write the rest.
template <class Escape> std::string withEscapes(std::string_view text, std::string_view stays, Escape escape)
{
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const Character character = characterAt(text);
        const std::string_view bytes = text.substr(0, std::max<std::size_t>(character.length, 1));
        if (isPrintable(character) || stays.find(text[0]) != std::string_view::npos) {
            out += bytes;
        } else {
            out += escape(character, bytes);
        }
        text.remove_prefix(bytes.size());
    }
    return out;
}

} // namespace

std::string printable(std::string_view text)
{
    return withEscapes(text, "", [](const Character&, std::string_view bytes) { return escapedBytes(bytes); });
}

std::string printableLines(std::string_view text)
{
    return withEscapes(text, "\n", [](const Character&, std::string_view bytes) { return escapedBytes(bytes); });
}

std::string printableJson(std::string_view json)
{
    return withEscapes(json, "\n", [](const Character& character, std::string_view bytes) {
        return character.length > 0 ? escapedJson(character) : std::string(bytes);
    });
}

} // namespace kvo
