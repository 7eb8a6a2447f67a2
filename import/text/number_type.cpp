// Numbers from bytes.
#include "number_type.h"

#include <cmath>

#include "fields.h"
#include "token_input.h"

namespace kvo {

namespace {

struct NumberName
{
    const char* name;
    NumberType number;
};

// vtkIdType is an int of 4 bytes: VTK's legacy files are written so whatever size it has in the writing program.
const NumberName numberNames[] = {
    {"Int8", NumberType::Int8},
    {"UInt8", NumberType::UInt8},
    {"Int16", NumberType::Int16},
    {"UInt16", NumberType::UInt16},
    {"Int32", NumberType::Int32},
    {"UInt32", NumberType::UInt32},
    {"Int64", NumberType::Int64},
    {"UInt64", NumberType::UInt64},
    {"Float32", NumberType::Float32},
    {"Float64", NumberType::Float64},
    {"char", NumberType::Int8},
    {"signed_char", NumberType::Int8},
    {"unsigned_char", NumberType::UInt8},
    {"short", NumberType::Int16},
    {"unsigned_short", NumberType::UInt16},
    {"int", NumberType::Int32},
    {"unsigned_int", NumberType::UInt32},
    {"vtkIdType", NumberType::Int32},
    {"long", NumberType::Int64},
    {"unsigned_long", NumberType::UInt64},
    {"vtktypeint64", NumberType::Int64},
    {"vtktypeuint64", NumberType::UInt64},
    {"uchar", NumberType::UInt8},
    {"ushort", NumberType::UInt16},
    {"uint", NumberType::UInt32},
    {"float", NumberType::Float32},
    {"double", NumberType::Float64},
};

constexpr double largestInteger = 9e15;

template <class Out> Out converted(double value)
{
    return static_cast<Out>(value);
}

template <> std::int64_t converted<std::int64_t>(double value)
{
    return std::fabs(value) <= largestInteger ? static_cast<std::int64_t>(value) : -1;
}

template <class Number, class Out>
void append(const char* bytes, std::size_t count, bool swapped, std::vector<Out>& out)
{
    for (std::size_t k = 0; k < count; ++k) {
        const Number number = numberFromBytes<Number>(bytes + k * sizeof(Number), swapped);
        if (std::is_floating_point<Number>::value) {
            out.push_back(converted<Out>(static_cast<double>(number)));
        } else {
            out.push_back(static_cast<Out>(number));
        }
    }
}

// Calls use(a number of that type).
template <class Use> void withNumber(NumberType number, Use use)
{
    switch (number) {
    case NumberType::Int8:
        return use(std::int8_t());
    case NumberType::UInt8:
        return use(std::uint8_t());
    case NumberType::Int16:
        return use(std::int16_t());
    case NumberType::UInt16:
        return use(std::uint16_t());
    case NumberType::Int32:
        return use(std::int32_t());
    case NumberType::UInt32:
        return use(std::uint32_t());
    case NumberType::Int64:
        return use(std::int64_t());
    case NumberType::UInt64:
        return use(std::uint64_t());
    case NumberType::Float32:
        return use(float());
    case NumberType::Float64:
        return use(double());
    }
}

template <class Out>
void appendAny(NumberType number, const char* bytes, std::size_t count, bool swapped, std::vector<Out>& out)
{
    out.reserve(out.size() + count);
    withNumber(number, [&](auto zero) { append<decltype(zero)>(bytes, count, swapped, out); });
}

} // namespace

std::size_t bytesOf(NumberType number)
{
    static const std::size_t bytes[] = {1, 1, 2, 2, 4, 4, 8, 8, 4, 8};
    return bytes[static_cast<int>(number)];
}

bool findNumberType(std::string_view name, NumberType& number)
{
    for (const NumberName& row : numberNames) {
        if (equalsIgnoringCase(row.name, name)) {
            number = row.number;
            return true;
        }
    }
    return false;
}

double numberFrom(NumberType number, const char* bytes, bool swapped)
{
    double value = 0.0;
    withNumber(number,
               [&](auto zero) { value = static_cast<double>(numberFromBytes<decltype(zero)>(bytes, swapped)); });
    return value;
}

void appendNumbers(NumberType number, const char* bytes, std::size_t count, bool swapped, std::vector<double>& out)
{
    appendAny(number, bytes, count, swapped, out);
}

void appendNumbers(NumberType number, const char* bytes, std::size_t count, bool swapped,
                   std::vector<std::int64_t>& out)
{
    appendAny(number, bytes, count, swapped, out);
}

} // namespace kvo
