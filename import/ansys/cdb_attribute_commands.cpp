// Reading of types, real constants and sections.
#include "cdb_attribute_commands.h"

#include <algorithm>

#include "text/columns.h"
#include "text/fields.h"

namespace kvo {

const CdbAttributeCommands::Row CdbAttributeCommands::table[] = {
    {"ET", &CdbAttributeCommands::typeIs},           {"ETBLOCK", &CdbAttributeCommands::typeBlock},
    {"KEYOP", &CdbAttributeCommands::option},        {"KEYOPT", &CdbAttributeCommands::option},
    {"RLBLOCK", &CdbAttributeCommands::realBlock},   {"R", &CdbAttributeCommands::realSet},
    {"RMORE", &CdbAttributeCommands::moreReals},     {"SECTYPE", &CdbAttributeCommands::sectionType},
    {"SECDATA", &CdbAttributeCommands::sectionData}, {"SECBLOCK", &CdbAttributeCommands::sectionBlock},
};

bool CdbAttributeCommands::read(const CdbCommand& command)
{
    for (const Row& row : table) {
        if (isCommand(command.name, row.name)) {
            (this->*row.read)(command);
            return true;
        }
    }
    return false;
}

void CdbAttributeCommands::typeIs(const CdbCommand& command)
{
    attributes.defineType(command.integer(0), command.text(1));
    attributes.setFirstOption(command.integer(0), command.integer(2));
}

// Number of the type, number of the library's element, options.
void CdbAttributeCommands::typeBlock(const CdbCommand& command)
{
    const CdbFormat format = deck.blockFormat(command);
    for (;;) {
        const std::string_view line = deck.blockLine(command);
        if (CdbDeck::endsBlock(line)) {
            return;
        }
        std::int64_t values[3] = {};
        deck.integers(line, format, values, 3);
        attributes.defineType(values[0], std::to_string(values[1]));
        attributes.setFirstOption(values[0], values[2]);
    }
}

void CdbAttributeCommands::option(const CdbCommand& command)
{
    if (command.integer(1) == 1) {
        attributes.setFirstOption(command.integer(0), command.integer(2));
    }
}

// Two formats: the first line of a set has its number and how many values there are, the others values only.
void CdbAttributeCommands::realBlock(const CdbCommand& command)
{
    const CdbFormat first = deck.blockFormat(command);
    CdbFormat next;
    if (!parseCdbFormat(deck.blockLine(command), next) || next.others == 0) {
        deck.refuse("RLBLOCK has two lines of formats");
    }
    for (std::int64_t set = 0; set < command.integer(0); ++set) {
        std::string_view line = deck.blockLine(command);
        std::int64_t head[2] = {};
        deck.integers(line, first, head, 2);
        std::size_t at = 0;
        const CdbFormat* format = &first;
        line.remove_prefix(std::min(line.size(), first.integersWidth));
        while (static_cast<std::int64_t>(at) < head[1]) {
            if (at > 0) {
                line = deck.blockLine(command);
                format = &next;
            }
            std::vector<double> values(std::max<std::size_t>(format->others, 1), 0.0);
            if (!scanRealColumns(line, std::max<std::size_t>(format->otherWidth, 1), values.data(), values.size())) {
                deck.refuse("set " + std::to_string(head[0]) + " of real constants: a value is no number");
            }
            attributes.addReals(head[0], at, values);
            at += values.size();
        }
    }
}

// "R,5,1000.,0.1": six values, and six more with every RMORE.
void CdbAttributeCommands::realSet(const CdbCommand& command)
{
    reals = command.integer(0);
    realsAt = 0;
    moreReals(command.without(1));
}

void CdbAttributeCommands::moreReals(const CdbCommand& command)
{
    constexpr std::size_t valuesOfLine = 6;
    std::vector<double> values;
    for (std::size_t k = 0; k < valuesOfLine; ++k) {
        values.push_back(command.real(k));
    }
    attributes.addReals(reals, realsAt, values);
    realsAt += valuesOfLine;
}

void CdbAttributeCommands::sectionType(const CdbCommand& command)
{
    section = command.integer(0);
    CdbSection& target = attributes.section(section);
    target = {};
    target.type = upperCase(command.text(1));
    target.subtype = upperCase(command.text(2));
    target.name = command.text(3);
}

// Sizes of beams; of shells one layer: thickness, material, angle, points.
void CdbAttributeCommands::sectionData(const CdbCommand& command)
{
    CdbSection& target = attributes.section(section);
    if (target.type == "SHELL") {
        target.thickness += command.real(0);
        return;
    }
    std::size_t last = command.fields.size();
    while (last > 0 && command.text(last - 1).empty()) {
        --last;
    }
    for (std::size_t k = 0; k < last; ++k) {
        target.data.push_back(command.real(k));
    }
}

void CdbAttributeCommands::sectionBlock(const CdbCommand& command)
{
    CdbSection& target = attributes.section(section);
    for (std::int64_t layer = 0; layer < command.integer(0); ++layer) {
        const CdbCommand line = parseCdbCommand(deck.blockLine(command), deck.lines.place());
        double thickness = 0.0;
        if (!scanRealColumn(line.name, thickness)) {
            deck.refuse("section " + std::to_string(section) + ": a layer's thickness is no number");
        }
        target.thickness += thickness;
    }
}

} // namespace kvo
