// Fields of a card.
#include "bdf_card.h"

#include "text/fields.h"
#include "text/numbers.h"

namespace kvo {

std::string cardName(CardKey key)
{
    std::string name;
    for (int shift = 56; shift >= 0; shift -= 8) {
        const char c = static_cast<char>(key >> shift & 0xFF);
        if (c == '\0') {
            break;
        }
        name += c;
    }
    return name;
}

bool BdfCard::blank(std::size_t field) const
{
    if (field >= fields.size()) {
        return true;
    }
    for (const char c : fields[field]) {
        if (!isBlank(c)) {
            return false;
        }
    }
    return true;
}

std::string BdfCard::text(std::size_t field) const
{
    return field < fields.size() ? upperCase(trimmed(fields[field])) : std::string();
}

void BdfCard::bad(std::size_t field, const char* what) const
{
    throw ImportError(place(), name() + ": " + what + " expected in field " + std::to_string(field + 2) + ", found \"" +
                                   std::string(trimmed(fields[field])).substr(0, 40) + "\"");
}

std::int64_t BdfCard::integer(std::size_t field, std::int64_t ifBlank) const
{
    if (field >= fields.size()) {
        return ifBlank;
    }
    const std::string_view whole = trimmed(fields[field]);
    if (whole.empty()) {
        return ifBlank;
    }
    std::int64_t value = 0;
    if (!parseInteger(whole, value)) {
        bad(field, "an integer");
    }
    return value;
}

double BdfCard::real(std::size_t field, double ifBlank) const
{
    if (field >= fields.size()) {
        return ifBlank;
    }
    const std::string_view whole = trimmed(fields[field]);
    if (whole.empty()) {
        return ifBlank;
    }
    double value = 0.0;
    const char* p = whole.data();
    const char* end = p + whole.size();
    if (!scanReal(p, end, value) || p != end) {
        bad(field, "a number");
    }
    return value;
}

bool BdfCard::isInteger(std::size_t field, std::int64_t& value) const
{
    if (field >= fields.size()) {
        return false;
    }
    const std::string_view whole = trimmed(fields[field]);
    const char* p = whole.data();
    const char* end = p + whole.size();
    std::int64_t found = 0;
    if (!scanInteger(p, end, found) || p != end) {
        return false;
    }
    value = found;
    return true;
}

bool BdfCard::isReal(std::size_t field, double& value) const
{
    return field < fields.size() && parseReal(fields[field], value);
}

} // namespace kvo
