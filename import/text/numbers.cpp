// Number scanning. Nearly every real of a deck has few digits and a small exponent; such a number is exact as a
// quotient or product of two doubles. The others go through std::from_chars.
#include "numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "fields.h"

namespace kvo {

namespace {

const double powersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                              1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int maxExactPower = 22;
constexpr std::uint64_t maxExactMantissa = std::uint64_t(1) << 53;
constexpr int maxDigits = 19;         // of a 64-bit mantissa
constexpr int exponentLimit = 100000; // beyond every double; keeps the sum of digits from overflowing

bool isDigit(char c)
{
    return static_cast<unsigned char>(c - '0') < 10;
}

// A number's pieces: value = mantissa x 10^exponent, negative or not.
struct Decimal
{
    bool negative = false;
    std::uint64_t mantissa = 0;
    std::int64_t exponent = 0;
    std::int64_t digits = 0; // significant ones; above maxDigits the mantissa is cut
};

bool scanSign(const char*& p, const char* end)
{
    if (p < end && (*p == '+' || *p == '-')) {
        return *p++ == '-';
    }
    return false;
}

void addDigit(Decimal& number, char c)
{
    if (number.digits < maxDigits) {
        number.mantissa = number.mantissa * 10 + static_cast<unsigned>(c - '0');
        number.digits += number.mantissa != 0; // leading zeros do not count
    } else {
        ++number.digits;
        ++number.exponent;
    }
}

bool scanMantissa(const char*& p, const char* end, Decimal& number)
{
    const char* start = p;
    for (; p < end && isDigit(*p); ++p) {
        addDigit(number, *p);
    }
    bool any = p > start;
    if (p < end && *p == '.') {
        const char* fraction = ++p;
        for (; p < end && isDigit(*p); ++p) {
            addDigit(number, *p);
            --number.exponent;
        }
        any = any || p > fraction;
    }
    return any;
}

// "E5", "d-3", and the bare "+5" / "-3" of old fixed-field decks. A letter without digits behind it is not an exponent.
void scanExponent(const char*& p, const char* end, Decimal& number)
{
    const char* at = p;
    if (at < end && (*at == 'e' || *at == 'E' || *at == 'd' || *at == 'D')) {
        ++at;
    } else if (at == end || (*at != '+' && *at != '-')) {
        return;
    }
    const bool negative = scanSign(at, end);
    if (at == end || !isDigit(*at)) {
        return;
    }
    int exponent = 0;
    for (; at < end && isDigit(*at); ++at) {
        exponent = exponent < exponentLimit ? exponent * 10 + (*at - '0') : exponent;
    }
    number.exponent += negative ? -exponent : exponent;
    p = at;
}

// The correctly rounded value of what does not fit two exact doubles: the digits as they stand, without a sign, and the
// exponent spelt as from_chars wants it. What is too small for a double is 0; what is too large is no number.
bool slowValue(std::string_view digits, std::int64_t exponent, bool small, double& value)
{
    std::string longOne;
    char shortOne[64];
    char* spelt = shortOne;
    const std::size_t room = digits.size() + 24; // "e", a sign and the digits of an exponent
    if (room > sizeof shortOne) {
        longOne.resize(room);
        spelt = longOne.data();
    }
    char* end = std::copy(digits.begin(), digits.end(), spelt);
    *end++ = 'e';
    end = std::to_chars(end, spelt + room, exponent).ptr;
    const auto result = std::from_chars(spelt, end, value);
    if (result.ec == std::errc::result_out_of_range) {
        value = 0.0;
        return small;
    }
    return result.ec == std::errc();
}

// Clinger's fast path; false if it does not apply.
bool exactValue(const Decimal& number, double& value)
{
    if (number.mantissa == 0) {
        value = 0.0;
        return number.digits == 0;
    }
    if (number.digits > maxDigits || number.mantissa > maxExactMantissa || std::abs(number.exponent) > maxExactPower) {
        return false;
    }
    value = static_cast<double>(number.mantissa);
    value = number.exponent < 0 ? value / powersOfTen[-number.exponent] : value * powersOfTen[number.exponent];
    return true;
}

} // namespace

bool scanInteger(const char*& p, const char* end, std::int64_t& value)
{
    const char* at = p;
    const bool negative = scanSign(at, end);
    const char* first = at;
    std::uint64_t magnitude = 0;
    for (; at < end && isDigit(*at); ++at) {
        magnitude = magnitude * 10 + static_cast<unsigned>(*at - '0');
    }
    if (at == first) {
        return false;
    }
    if (at - first > 18) { // may have overflowed: decide exactly
        const char* from = negative ? first - 1 : first;
        const auto result = std::from_chars(from, at, value);
        if (result.ec != std::errc()) {
            return false;
        }
    } else {
        value = negative ? -static_cast<std::int64_t>(magnitude) : static_cast<std::int64_t>(magnitude);
    }
    p = at;
    return true;
}

bool scanReal(const char*& p, const char* end, double& value)
{
    const char* at = p;
    Decimal number;
    number.negative = scanSign(at, end);
    const char* mantissa = at;
    if (!scanMantissa(at, end, number)) {
        return false;
    }
    const std::string_view digits(mantissa, static_cast<std::size_t>(at - mantissa));
    const std::int64_t fractionShift = number.exponent;
    scanExponent(at, end, number);
    double result = 0.0;
    if (!exactValue(number, result)) {
        const bool small = number.exponent + std::min<std::int64_t>(number.digits, maxDigits) < 0;
        if (!slowValue(digits, number.exponent - fractionShift, small, result)) {
            return false;
        }
    }
    value = number.negative ? -result : result;
    p = at;
    return true;
}

bool parseInteger(std::string_view text, std::int64_t& value)
{
    text = trimmed(text);
    const char* p = text.data();
    const char* end = p + text.size();
    if (scanInteger(p, end, value) && p == end) {
        return true;
    }
    double real = 0.0;
    if (!parseReal(text, real) || real != std::floor(real) || std::fabs(real) > 9e15) {
        return false;
    }
    value = static_cast<std::int64_t>(real);
    return true;
}

bool parseReal(std::string_view text, double& value)
{
    text = trimmed(text);
    const char* p = text.data();
    const char* end = p + text.size();
    return scanReal(p, end, value) && p == end;
}

} // namespace kvo
