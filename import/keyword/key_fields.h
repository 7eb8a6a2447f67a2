// The fields of a card's line: columns of a fixed width, or text between commas.
#ifndef KVO_IMPORT_KEYWORD_KEY_FIELDS_H
#define KVO_IMPORT_KEYWORD_KEY_FIELDS_H

#include <cstdint>
#include <string>
#include <string_view>

#include "key_parameters.h"

namespace kvo {

// How wide the columns of a card are. The widths that its description gives (8, 10, 16, 80) hold for the standard
// format; the long format has 20 for each and twice the room for titles, the I10 format 10 instead of 8.
struct KeyWidths
{
    bool wide = false;
    bool ten = false;

    int of(int standard) const
    {
        if (wide) {
            return standard >= 70 ? 2 * standard : 20;
        }
        return ten && standard == 8 ? 10 : standard;
    }
};

// Walks the fields of one line. A blank or missing field is 0. A line with a comma has its fields between commas,
// whatever the widths.
class KeyFields
{
public:
    KeyFields(std::string_view line, KeyWidths widths, const KeyParameters& parameters);
    KeyFields(const KeyFields&) = delete; // left may look into expanded
    KeyFields& operator=(const KeyFields&) = delete;

    std::string_view text(int width); // the next field, trimmed
    std::int64_t integer(int width);
    double real(int width);
    // Anything but blanks and commas in what is left of the line?
    bool anyLeft() const;

    // What is wrong with the first field so far that should have been a number and is none; empty if there is none.
    // Such a field reads 0.
    const std::string& complaint() const { return complaintText; }

private:
    void reject(std::string_view field);

    std::string expanded; // the line, where it had tabs
    std::string_view left;
    KeyWidths widths;
    const KeyParameters& parameters;
    bool commas;
    std::string complaintText;
};

// The quick way for the line of a node: its id and three coordinates. False for any other line.
bool scanNodeColumns(std::string_view line, KeyWidths widths, std::int64_t& id, double* xyz);

// Exactly count numbers with blanks between them and nothing else. False for any other line.
bool scanRealWords(std::string_view line, double* values, std::size_t count);

} // namespace kvo

#endif
