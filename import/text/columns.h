// Lines of columns: numbers that may touch each other, so that only their places part them.
#ifndef KVO_IMPORT_COLUMNS_H
#define KVO_IMPORT_COLUMNS_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kvo {

// One column: blanks, a number, blanks. A blank column is 0. False if it holds anything else.
bool scanIntegerColumn(std::string_view column, std::int64_t& value);
bool scanRealColumn(std::string_view column, double& value);

// count columns of one width; those behind the end of the line are 0. False if one holds something else than a number.
bool scanIntegerColumns(std::string_view line, std::size_t width, std::int64_t* values, std::size_t count);
bool scanRealColumns(std::string_view line, std::size_t width, double* values, std::size_t count);

// The numbers of a line with blanks between them, at most count; false if it holds something else.
bool scanIntegerWords(std::string_view line, std::int64_t* values, std::size_t count);

} // namespace kvo

#endif
