// Parameters and where they stand for numbers.
#include "cdb_parameters.h"

#include <algorithm>
#include <iterator>

#include "text/fields.h"
#include "text/numbers.h"

namespace kvo {

namespace {

const char* const commandsOfNumbers[] = {"ET", "KEYOP", "KEYOPT", "R",     "RMORE", "TYPE",    "REAL",    "MAT",
                                         "N",  "E",     "EN",     "EMORE", "CSYS",  "SECTYPE", "SECDATA", "SECNUM"};

} // namespace

bool CdbParameters::read(const CdbCommand& command)
{
    if (command.name == "*SET") {
        return set(command.text(0), command.text(1));
    }
    const std::size_t sign = command.name.find('=');
    return sign != std::string::npos && sign > 0 && set(command.name.substr(0, sign), command.name.substr(sign + 1));
}

bool CdbParameters::set(const std::string& name, const std::string& value)
{
    const std::string key = upperCase(trimmed(name));
    double number = 0.0;
    if (parseReal(value, number)) {
        values[key] = trimmed(value);
        return true;
    }
    const auto other = values.find(upperCase(trimmed(value)));
    if (other != values.end()) {
        values[key] = std::string(other->second);
        return true;
    }
    values.erase(key);
    return false;
}

void CdbParameters::resolve(CdbCommand& command) const
{
    const auto named = [&](const char* name) { return isCommand(command.name, name); };
    if (values.empty() || std::none_of(std::begin(commandsOfNumbers), std::end(commandsOfNumbers), named)) {
        return;
    }
    for (std::string& field : command.fields) {
        const auto known = field.empty() ? values.end() : values.find(upperCase(field));
        field = known == values.end() ? field : known->second;
    }
}

} // namespace kvo
