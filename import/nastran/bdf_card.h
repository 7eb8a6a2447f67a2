// One bulk data card with all its continuation lines.
#ifndef KVO_IMPORT_NASTRAN_BDF_CARD_H
#define KVO_IMPORT_NASTRAN_BDF_CARD_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "place.h"

namespace kvo {

// A card's name of up to 8 characters, upper case, as a number that is quick to compare: its bytes, the first one
// highest.
using CardKey = std::uint64_t;

constexpr CardKey cardKey(std::string_view name)
{
    CardKey key = 0;
    for (std::size_t k = 0; k < 8; ++k) {
        const char c = k < name.size() ? name[k] : '\0';
        key = key << 8 | static_cast<unsigned char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    }
    return key;
}

std::string cardName(CardKey key);

constexpr CardKey replicatedName = cardKey("=");

// The data fields are counted from 0, the card's name not among them: field 0 of a GRID is its id, field 8 of a CHEXA
// is the first one of its second line, whatever widths the lines are written in.
class BdfCard
{
public:
    CardKey key = 0;                      // replicatedName: that of the card before
    std::vector<std::string_view> fields; // with the blanks around them
    const std::vector<std::string>* files = nullptr;
    std::uint32_t file = 0; // where the card begins: an index into files
    std::uint32_t line = 0;
    bool replicates = false;   // its name or a field may refer to the card before
    std::uint64_t repeats = 0; // "=5": no card but so many more like the one before

    Place place() const { return {(*files)[file], line}; }
    std::string name() const { return cardName(key); }

    // Nothing is there, or only blanks.
    bool blank(std::size_t field) const;
    // Trimmed, upper case.
    std::string text(std::size_t field) const;
    // A blank field has the value given; what is no number throws ImportError.
    std::int64_t integer(std::size_t field, std::int64_t ifBlank = 0) const;
    double real(std::size_t field, double ifBlank = 0.0) const;
    // False if the field is no such number; value is left alone then. An integer has neither point nor exponent.
    bool isInteger(std::size_t field, std::int64_t& value) const;
    bool isReal(std::size_t field, double& value) const;

private:
    [[noreturn]] void bad(std::size_t field, const char* what) const;
};

} // namespace kvo

#endif
