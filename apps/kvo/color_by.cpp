// Colourings by name.
#include "color_by.h"

#include <cmath>

#include "numbers.h"
#include "program_error.h"

namespace kvo {

namespace {

struct KeyRow
{
    const char* name;
    ColorKey key;
};

const KeyRow keys[] = {{"part", ColorKey::Part},
                       {"kind", ColorKey::Kind},
                       {"property", ColorKey::Property},
                       {"material", ColorKey::Material}};

struct RampRow
{
    const char* name;
    ColorRamp ramp;
};

const RampRow ramps[] = {{"viridis", ColorRamp::Viridis}, {"rainbow", ColorRamp::Rainbow}, {"gray", ColorRamp::Gray}};

const std::string qualityWord = "quality:";

bool findQuality(const std::string& name, Quality& out)
{
    for (unsigned int k = 0; k < qualityCount; ++k) {
        if (name == qualityInfo(static_cast<Quality>(k)).name) {
            out = static_cast<Quality>(k);
            return true;
        }
    }
    return false;
}

} // namespace

ColorBy parseColorBy(const std::string& text)
{
    ColorBy out;
    for (const KeyRow& row : keys) {
        if (text == row.name) {
            out.key = row.key;
            return out;
        }
    }
    out.key = ColorKey::Quality;
    if (text.compare(0, qualityWord.size(), qualityWord) != 0 ||
        !findQuality(text.substr(qualityWord.size()), out.quality)) {
        throw UsageError("--color-by: \"" + text +
                         "\" is none of part, kind, property, material, quality:NAME with NAME of " + qualityNames());
    }
    return out;
}

void parseColorRange(const std::string& text, ColorBy& out)
{
    const std::vector<float> numbers = parseNumbers(text, "--color-range", 2, 2, "LOW,HIGH");
    if (!std::isfinite(numbers[0]) || !std::isfinite(numbers[1]) || numbers[0] == numbers[1]) {
        throw UsageError("--color-range: \"" + text + "\" is no range");
    }
    out.ranged = true;
    out.low = numbers[0];
    out.high = numbers[1];
}

std::vector<std::string> rampNames()
{
    std::vector<std::string> out;
    for (const RampRow& row : ramps) {
        out.push_back(row.name);
    }
    return out;
}

ColorRamp rampNamed(const std::string& name)
{
    for (const RampRow& row : ramps) {
        if (name == row.name) {
            return row.ramp;
        }
    }
    return ColorRamp::Viridis;
}

std::string qualityNames()
{
    std::string out;
    for (unsigned int k = 0; k < qualityCount; ++k) {
        out += std::string(k ? ", " : "") + qualityInfo(static_cast<Quality>(k)).name;
    }
    return out;
}

Coloring makeColoring(const ColorBy& wanted, const CAEEnv& env, const ModelInfo& info)
{
    switch (wanted.key) {
    case ColorKey::Part:
        return Coloring();
    case ColorKey::Kind:
        return colorByKind(env);
    case ColorKey::Property:
        return colorByProperty(env, info);
    case ColorKey::Material:
        return colorByMaterial(env, info);
    case ColorKey::Quality:
        break;
    }
    Coloring out = colorByQuality(env, wanted.quality);
    if (wanted.ranged) {
        out.low = wanted.low;
        out.high = wanted.high;
    }
    out.ramp = wanted.ramp;
    out.bands = wanted.bands;
    return out;
}

} // namespace kvo
