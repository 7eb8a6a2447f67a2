// The number types of binary files, and arrays of them.
#ifndef KVO_IMPORT_NUMBER_TYPE_H
#define KVO_IMPORT_NUMBER_TYPE_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kvo {

enum class NumberType
{
    Int8,
    UInt8,
    Int16,
    UInt16,
    Int32,
    UInt32,
    Int64,
    UInt64,
    Float32,
    Float64
};

std::size_t bytesOf(NumberType number);
inline bool isInteger(NumberType number)
{
    return number < NumberType::Float32;
}

// By the names that VTK's XML files ("Int32"), its legacy files ("unsigned_int") and PLY ("uint") have for them, in any
// case. False for others, strings and bits among them.
bool findNumberType(std::string_view name, NumberType& number);

// One number from bytes.
double numberFrom(NumberType number, const char* bytes, bool swapped);

// Appends numbers from bytes.
void appendNumbers(NumberType number, const char* bytes, std::size_t count, bool swapped, std::vector<double>& out);
void appendNumbers(NumberType number, const char* bytes, std::size_t count, bool swapped,
                   std::vector<std::int64_t>& out);

} // namespace kvo

#endif
