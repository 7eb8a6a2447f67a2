// Scanning of tokens and bytes.
#include "token_input.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "fields.h"
#include "numbers.h"

namespace kvo {

namespace {

constexpr std::ptrdiff_t longestWord = 1 << 20; // bytes; what goes on is no text
constexpr std::size_t longestLine = 16 << 20;
constexpr std::ptrdiff_t longestQuote = 40; // of a token in a message

} // namespace

TokenInput::TokenInput(const MappedFile& file, Progress progressCall)
    : path(file.path()), begin(file.begin()), p(file.begin()), end(file.end()), progress(std::move(progressCall))
{
}

void TokenInput::fail(const std::string& message) const
{
    if (binary) {
        throw ImportError({path, 0}, "byte " + std::to_string(p - begin) + ": " + message);
    }
    throw ImportError(place(), message);
}

void TokenInput::failToken(const std::string& expected) const
{
    if (p == end) {
        fail("the file is cut off where " + expected + " should be");
    }
    const char* last = std::find_if(p, p + std::min(longestQuote, end - p), endsToken);
    fail("expected " + expected + ", found \"" + std::string(p, last) + "\"");
}

void TokenInput::setBinary(bool swappedBytes)
{
    binary = true;
    swapped = swappedBytes;
    lineNumber = 0;
}

double TokenInput::textReal()
{
    skipBlanks();
    const char* from = p < end && *p == '+' ? p + 1 : p;
    double value = 0.0;
    const auto result = std::from_chars(from, end, value);
    const char* at = result.ptr;
    if (result.ec != std::errc()) { // too small or too large for from_chars, or no number
        at = p;
        if (!scanReal(at, end, value)) {
            failToken("a number");
        }
    }
    if ((at < end && !endsToken(*at)) || !std::isfinite(value)) {
        failToken("a number");
    }
    p = at;
    return value;
}

std::string_view TokenInput::word()
{
    skipBlanks();
    const char* start = p;
    p = std::find_if(p, p + std::min(longestWord, end - p), endsToken);
    return {start, static_cast<std::size_t>(p - start)};
}

std::string_view TokenInput::lineText()
{
    const void* found = p < end ? std::memchr(p, '\n', std::min(bytesLeft(), longestLine)) : nullptr;
    if (!found && bytesLeft() > longestLine) {
        fail("a line of more than 16 MiB: this is no text");
    }
    const char* last = found ? static_cast<const char*>(found) : end;
    const std::string_view text(p, static_cast<std::size_t>(last - p));
    p = found ? last + 1 : end;
    lineNumber += found != nullptr && !binary;
    return trimmed(text);
}

const char* TokenInput::take(std::size_t count)
{
    if (bytesLeft() < count) {
        fail("the file is cut off: " + std::to_string(count) + " bytes should follow, " + std::to_string(bytesLeft()) +
             " are left");
    }
    const char* at = p;
    p += count;
    return at;
}

std::int64_t TokenInput::countOf(std::int64_t count, std::size_t leastBytes, const char* things) const
{
    if (count < 0 || static_cast<std::uint64_t>(count) > bytesLeft() / leastBytes) {
        fail(std::to_string(count) + " " + things + " announced; the rest of the file cannot hold them");
    }
    return count;
}

void TokenInput::goTo(const char* at)
{
    lineNumber += binary ? 0 : static_cast<std::uint32_t>(std::count(p, at, '\n'));
    p = at;
}

void TokenInput::report() const
{
    if (progress) {
        progress(static_cast<std::uint64_t>(p - begin), static_cast<std::uint64_t>(end - begin));
    }
}

} // namespace kvo
