// The values of a file one after the other, wherever the lines end: numbers and words as text, or numbers as bytes of
// either order. For formats that are not made of lines; the others have DeckLines.
#ifndef KVO_IMPORT_TOKEN_INPUT_H
#define KVO_IMPORT_TOKEN_INPUT_H

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

#include "mapped_file.h"
#include "place.h"
#include "progress.h"

namespace kvo {

inline bool isTextDigit(char c)
{
    return static_cast<unsigned char>(c - '0') < 10;
}

// Blanks and control characters.
inline bool endsToken(char c)
{
    return static_cast<unsigned char>(c) <= ' ';
}

class TokenInput
{
public:
    // The file must outlive it.
    TokenInput(const MappedFile& file, Progress progress);

    // From here on messages name the byte instead of the line. swapped: numbers have the other order of bytes than this
    // machine's.
    void setBinary(bool swappedBytes);
    bool isBinary() const { return binary; }

    // --- text ---

    void skipBlanks();
    std::int64_t textInteger();
    double textReal();           // finite
    std::string_view word();     // up to the next blank; empty at the end of the file
    std::string_view lineText(); // the rest of this line, trimmed; moves behind it
    void skipLine() { lineText(); }

    // --- bytes ---

    template <class Number> Number bytes();
    const char* take(std::size_t count); // that many bytes, of which the first is here

    // --- messages ---

    // A count of things of which each takes that many bytes at least, so that no count exceeds what the file can hold.
    std::int64_t countOf(std::int64_t count, std::size_t leastBytes, const char* things) const;
    std::uint32_t line() const { return lineNumber; } // 0 where values are bytes
    std::size_t bytesLeft() const { return static_cast<std::size_t>(end - p); }
    Place place() const { return {path, lineNumber}; }
    void report() const; // how far it is
    [[noreturn]] void fail(const std::string& message) const;
    // "expected a number, found ..."
    [[noreturn]] void failToken(const std::string& expected) const;

protected:
    const char* here() const { return p; }
    const char* stop() const { return end; }
    void goTo(const char* at); // forward

private:
    std::string path;
    const char* begin;
    const char* p;
    const char* end;
    std::uint32_t lineNumber = 1;
    bool binary = false;
    bool swapped = false;
    Progress progress;
};

// --- the ones that a large file spends its time in ---

inline void TokenInput::skipBlanks()
{
    for (; p < end; ++p) {
        if (*p == '\n') {
            ++lineNumber;
        } else if (*p != ' ' && *p != '\t' && *p != '\r') {
            return;
        }
    }
}

inline std::int64_t TokenInput::textInteger()
{
    skipBlanks();
    const char* at = p;
    const bool negative = at < end && *at == '-';
    at += negative || (at < end && *at == '+');
    const char* first = at;
    std::int64_t value = 0;
    for (; at < end && isTextDigit(*at) && at - first < 18; ++at) {
        value = value * 10 + (*at - '0');
    }
    if (at == first || (at < end && !endsToken(*at))) {
        failToken("a whole number");
    }
    p = at;
    return negative ? -value : value;
}

// A number from bytes of either order.
template <class Number> Number numberFromBytes(const char* bytes, bool swapped)
{
    static_assert(std::is_arithmetic<Number>::value, "a number");
    char copy[sizeof(Number)];
    for (std::size_t k = 0; k < sizeof(Number); ++k) {
        copy[k] = bytes[swapped ? sizeof(Number) - 1 - k : k];
    }
    Number number;
    std::memcpy(&number, copy, sizeof number);
    return number;
}

template <class Number> Number TokenInput::bytes()
{
    return numberFromBytes<Number>(take(sizeof(Number)), swapped);
}

} // namespace kvo

#endif
