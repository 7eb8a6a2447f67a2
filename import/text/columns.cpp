// Scanning of columns.
#include "columns.h"

#include <algorithm>

#include "fields.h"
#include "numbers.h"

namespace kvo {

namespace {

bool isDigit(char c)
{
    return static_cast<unsigned char>(c - '0') < 10;
}

const char* skipSpaces(const char* p, const char* end)
{
    while (p < end && *p == ' ') {
        ++p;
    }
    return p;
}

} // namespace

bool scanIntegerColumn(std::string_view column, std::int64_t& value)
{
    const char* end = column.data() + column.size();
    const char* p = skipSpaces(column.data(), end);
    const bool negative = p < end && *p == '-';
    const bool sign = negative || (p < end && *p == '+');
    const char* digits = p + sign;
    std::int64_t number = 0;
    for (p = digits; p < end && isDigit(*p); ++p) {
        number = number * 10 + (*p - '0');
        if (p - digits == 17) {
            return false; // may not fit
        }
    }
    value = negative ? -number : number;
    return (!sign || p > digits) && skipSpaces(p, end) == end;
}

bool scanRealColumn(std::string_view column, double& value)
{
    const char* end = column.data() + column.size();
    const char* p = skipSpaces(column.data(), end);
    value = 0.0;
    return p == end || (scanReal(p, end, value) && skipSpaces(p, end) == end);
}

bool scanIntegerColumns(std::string_view line, std::size_t width, std::int64_t* values, std::size_t count)
{
    for (std::size_t k = 0; k < count; ++k) {
        const std::size_t room = std::min(width, line.size());
        if (!scanIntegerColumn(line.substr(0, room), values[k])) {
            return false;
        }
        line.remove_prefix(room);
    }
    return true;
}

bool scanRealColumns(std::string_view line, std::size_t width, double* values, std::size_t count)
{
    for (std::size_t k = 0; k < count; ++k) {
        const std::size_t room = std::min(width, line.size());
        if (!scanRealColumn(line.substr(0, room), values[k])) {
            return false;
        }
        line.remove_prefix(room);
    }
    return true;
}

bool scanIntegerWords(std::string_view line, std::int64_t* values, std::size_t count)
{
    const char* p = line.data();
    const char* end = p + line.size();
    std::fill_n(values, count, 0);
    for (std::size_t k = 0; k < count; ++k) {
        while (p < end && isBlank(*p)) {
            ++p;
        }
        if (p == end) {
            return true;
        }
        if (!scanInteger(p, end, values[k]) || (p < end && !isBlank(*p))) {
            return false;
        }
    }
    return true;
}

} // namespace kvo
