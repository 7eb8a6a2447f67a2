// Splitting of a card's line.
#include "key_fields.h"

#include <algorithm>

#include "text/columns.h"
#include "text/fields.h"
#include "text/numbers.h"

namespace kvo {

namespace {

constexpr std::size_t tabStop = 8;

std::string withoutTabs(std::string_view line)
{
    std::string result;
    for (const char c : line) {
        if (c == '\t') {
            result.append(tabStop - result.size() % tabStop, ' ');
        } else {
            result += c;
        }
    }
    return result;
}

} // namespace

KeyFields::KeyFields(std::string_view line, KeyWidths widths, const KeyParameters& parameters)
    : left(line), widths(widths), parameters(parameters), commas(line.find(',') != std::string_view::npos)
{
    if (!commas && line.find('\t') != std::string_view::npos) {
        expanded = withoutTabs(line);
        left = expanded;
    }
}

std::string_view KeyFields::text(int width)
{
    std::string_view field;
    if (commas) {
        const std::size_t comma = std::min(left.find(','), left.size());
        field = left.substr(0, comma);
        left.remove_prefix(std::min(comma + 1, left.size()));
    } else {
        const std::size_t room = std::min(static_cast<std::size_t>(widths.of(width)), left.size());
        field = left.substr(0, room);
        left.remove_prefix(room);
    }
    return trimmed(field);
}

void KeyFields::reject(std::string_view field)
{
    if (!complaintText.empty()) {
        return;
    }
    complaintText = "\"" + std::string(field.substr(0, 40)) + "\"";
    const std::size_t sign = field.substr(0, 2) == "-&" ? 1 : 0;
    double value = 0.0;
    if (field.substr(sign, 1) == "&" && !parameters.find(field.substr(sign + 1), value)) {
        complaintText += ": parameter " + std::string(field.substr(sign + 1, 40)) + " is not defined";
    } else {
        complaintText += " is no number";
    }
}

std::int64_t KeyFields::integer(int width)
{
    const std::string_view field = text(width);
    std::int64_t value = 0;
    double real = 0.0;
    if (field.empty() || parseInteger(field, value)) {
        return value;
    }
    // A parameter may hold a real; as an id it is cut to whole.
    if (parameters.resolve(field, real) && real > -9e15 && real < 9e15) {
        return static_cast<std::int64_t>(real);
    }
    reject(field);
    return 0;
}

double KeyFields::real(int width)
{
    const std::string_view field = text(width);
    double value = 0.0;
    if (field.empty() || parseReal(field, value) || parameters.resolve(field, value)) {
        return value;
    }
    reject(field);
    return 0.0;
}

bool KeyFields::anyLeft() const
{
    return std::any_of(left.begin(), left.end(), [](char c) { return !isBlank(c) && c != ','; });
}

bool scanNodeColumns(std::string_view line, KeyWidths widths, std::int64_t& id, double* xyz)
{
    const std::size_t idWidth = static_cast<std::size_t>(widths.of(8));
    const std::size_t width = static_cast<std::size_t>(widths.of(16));
    return line.size() > idWidth && scanIntegerColumn(line.substr(0, idWidth), id) &&
           scanRealColumns(line.substr(idWidth), width, xyz, 3);
}

bool scanRealWords(std::string_view line, double* values, std::size_t count)
{
    line = trimmed(line);
    for (std::size_t k = 0; k < count; ++k) {
        const std::size_t stop = std::min(line.find_first_of(" \t"), line.size());
        if (stop == 0 || !parseReal(line.substr(0, stop), values[k])) {
            return false;
        }
        line = trimmed(line.substr(stop));
    }
    return line.empty();
}

} // namespace kvo
