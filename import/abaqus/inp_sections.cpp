// Data lines of section cards.
#include "inp_sections.h"

#include <algorithm>

#include "text/fields.h"

namespace kvo {

namespace {

constexpr int maxValues = 16; // of a line; longer lines are tables, of which the beginning is enough

// The numbers at the beginning of a line. Values that are no numbers, such as names of distributions, end them.
std::vector<double> numbersOf(std::string_view line)
{
    std::vector<double> values;
    CommaFields fields(line);
    double value = 0.0;
    for (int k = 0; k < maxValues; ++k) {
        const Field field = fields.nextReal(value);
        if (field == Field::Bad || field == Field::End) {
            break;
        }
        values.push_back(field == Field::Blank ? 0.0 : value);
    }
    return values;
}

double firstOf(const std::vector<double>& values)
{
    return values.empty() ? 0.0 : values[0];
}

// Without a material a general section's lines are its stiffnesses; a thickness that is given elsewhere makes the one
// here of no account.
void shellData(const std::vector<double>& values, int index, InpSection& section)
{
    const bool stiffnesses = section.kind == "shell general section" && section.material.empty();
    if (index == 0 && !stiffnesses && !section.varies) {
        section.data.thickness = firstOf(values);
    }
}

// Of the lines of layers, each begins with its layer's thickness.
void layerData(const std::vector<double>& values, int, InpSection& section)
{
    section.data.thickness += firstOf(values);
}

// The area of bars and trusses, or the thickness of plane elements: only the elements know, see settleSolidData() in
// inp_assemble.cpp.
void solidData(const std::vector<double>& values, int index, InpSection& section)
{
    if (index == 0) {
        section.data.area = firstOf(values);
    }
}

// In which line the direction n1 stands; -1: in none.
int directionLine(const InpSection& section)
{
    const std::string& shape = section.data.shape;
    if (shape == "ARBITRARY" && !section.data.sizes.empty()) {
        return static_cast<int>(std::min(std::max(section.data.sizes[0], 1.0), 1e6)); // a line a segment comes before
    }
    if (shape == "ELBOW") {
        return -1; // a point where the tangents meet
    }
    return shape == "MESHED" ? 0 : 1;
}

// Line 1: the sizes of the cross-section, of a general one its area first; then the direction n1.
void beamData(const std::vector<double>& values, int index, InpSection& section)
{
    const std::string& shape = section.data.shape;
    if (index == 0 && (shape.empty() || shape == "GENERAL" || shape == "NONLINEAR GENERAL")) {
        section.data.area = firstOf(values);
    } else if (index == 0 && shape != "MESHED") {
        section.data.sizes = values;
    } else if (index == directionLine(section) && !values.empty()) {
        section.hasDirection = true;
        for (std::size_t k = 0; k < 3; ++k) {
            section.direction[k] = k < values.size() ? values[k] : 0.0;
        }
    }
}

// Line 1: degrees of freedom, or empty; line 2: the value first, where it is no table of forces.
void springData(const std::vector<double>& values, int index, InpSection& section)
{
    if (index == 1 && !section.nonlinear) {
        section.data.stiffness = firstOf(values);
    }
}

void dashpotData(const std::vector<double>& values, int index, InpSection& section)
{
    if (index == 1 && !section.nonlinear) {
        section.data.damping = firstOf(values);
    }
}

struct DataRow
{
    const char* kind;
    void (*read)(const std::vector<double>& values, int index, InpSection& section);
};

const DataRow dataRows[] = {
    {"solid section", solidData},    {"shell section", shellData}, {"shell general section", shellData},
    {"membrane section", shellData}, {"beam section", beamData},   {"beam general section", beamData},
    {"frame section", beamData},     {"truss section", solidData}, {"cohesive section", shellData},
    {"spring", springData},          {"dashpot", dashpotData},
};

} // namespace

void InpSectionReader::begin(InpScope& scope, const char* kind, const KeywordLine& card)
{
    section = &scope.sections.emplace_back();
    section->kind = kind;
    section->elset = card.value("ELSET");
    section->material = card.value("MATERIAL");
    section->place = card.place;
    section->layered = card.has("COMPOSITE");
    section->nonlinear = card.has("NONLINEAR");
    section->varies = card.has("NODALTHICKNESS") || card.has("SHELLTHICKNESS") || card.has("MEMBRANETHICKNESS");
    section->data.shape = upperCase(card.value("SECTION"));
}

void InpSectionReader::data(std::string_view line, int index)
{
    if (section->layered) {
        layerData(numbersOf(line), index, *section);
        return;
    }
    for (const DataRow& row : dataRows) {
        if (section->kind == row.kind) {
            row.read(numbersOf(line), index, *section);
        }
    }
}

} // namespace kvo
