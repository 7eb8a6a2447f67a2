// The lines of an archive file: commands with fields between commas, and lines of columns.
#ifndef KVO_IMPORT_ANSYS_CDB_LINES_H
#define KVO_IMPORT_ANSYS_CDB_LINES_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "place.h"

namespace kvo {

// "NBLOCK,6,SOLID": the name in upper case, and its fields.
struct CdbCommand
{
    std::string name;
    std::vector<std::string> fields; // trimmed; without the name
    Place place;

    const std::string& text(std::size_t k) const;
    // 0 for a blank or missing field, and for what is no number.
    std::int64_t integer(std::size_t k) const;
    double real(std::size_t k) const;
    // The same command without its first fields.
    CdbCommand without(std::size_t first) const;
};

// A line of words: a title or a comment, in which no sign but "!" means anything.
bool isCdbText(std::string_view line);

// Without the comment behind a "!". What begins with C*** is the command C***.
CdbCommand parseCdbCommand(std::string_view line, Place place);

// Is the upper-case word this command? Four letters are enough of a name.
bool isCommand(std::string_view word, std::string_view command);

// "(3i9,6e21.13e3)": so many integers, then so many reals (or texts), and their widths. Integers may be of several
// widths: "(1i7,2i9,6e21.13)".
struct CdbFormat
{
    struct Run
    {
        std::size_t count;
        std::size_t width;
    };
    std::vector<Run> runs;         // of integers
    std::size_t integers = 0;      // of all runs
    std::size_t firstWidth = 0;    // of the first integer
    std::size_t integersWidth = 0; // of all of them
    std::size_t others = 0;        // of one width
    std::size_t otherWidth = 0;
};

// False if the line is no such format.
bool parseCdbFormat(std::string_view line, CdbFormat& format);

} // namespace kvo

#endif
