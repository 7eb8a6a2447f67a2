// Numbers as decks write them: "1.", "-.11", "1.5-3", ".5D0", "+2e4". Independent of the locale.
#ifndef KVO_IMPORT_NUMBERS_H
#define KVO_IMPORT_NUMBERS_H

#include <cstdint>
#include <string_view>

namespace kvo {

// Reads the number that begins at p and moves p behind it. False (p then unchanged) if there is none or it does not
// fit. No blanks are skipped.
bool scanInteger(const char*& p, const char* end, std::int64_t& value);
bool scanReal(const char*& p, const char* end, double& value);

// The whole text as one number, blanks around it allowed. An integer may be written as a real without a fraction.
bool parseInteger(std::string_view text, std::int64_t& value);
bool parseReal(std::string_view text, double& value);

} // namespace kvo

#endif
