// The data arrays of VTK XML files: text, base64 or appended bytes, plain or compressed.
#ifndef KVO_IMPORT_VTU_ARRAYS_H
#define KVO_IMPORT_VTU_ARRAYS_H

#include <cstdint>
#include <string>
#include <vector>

#include "place.h"
#include "text/number_type.h"

namespace kvo {

// What stands in a <DataArray>.
struct VtuArray
{
    std::string name;
    NumberType number = NumberType::Float32;
    bool known = false; // the type of its values is
    int components = 1;
    std::string format; // "ascii", "binary" (base64), "appended"
    std::uint64_t offset = 0;
    const char* begin = nullptr; // its text
    const char* end = nullptr;
    std::uint32_t line = 0;
};

// What holds for all arrays of a file.
struct VtuEncoding
{
    std::string path;
    bool swapped = false;
    int headerBytes = 4;    // of the numbers before the bytes, 4 or 8
    std::string compressor; // empty: none
    bool appendedIsBase64 = false;
    const char* appended = nullptr; // behind the underscore; null: the file has no such section
    const char* end = nullptr;      // of the file
};

// All values. Compressed bytes of more than so many values are refused before they are inflated: a small file may
// announce any number. Throws ImportError.
std::vector<double> vtuReals(const VtuArray& array, const VtuEncoding& encoding, std::uint64_t most);
std::vector<std::int64_t> vtuIntegers(const VtuArray& array, const VtuEncoding& encoding, std::uint64_t most);

} // namespace kvo

#endif
