#include <kvo/coloring.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "shown_parts.h"

namespace kvo {

namespace {

constexpr Rgb viridis[] = {{0.267f, 0.005f, 0.329f}, {0.283f, 0.141f, 0.458f}, {0.254f, 0.265f, 0.530f},
                           {0.207f, 0.372f, 0.553f}, {0.164f, 0.471f, 0.558f}, {0.128f, 0.567f, 0.551f},
                           {0.135f, 0.659f, 0.518f}, {0.267f, 0.749f, 0.441f}, {0.478f, 0.821f, 0.318f},
                           {0.741f, 0.873f, 0.150f}, {0.993f, 0.906f, 0.144f}};
constexpr Rgb rainbow[] = {{0, 0, 1}, {0, 1, 1}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}};
constexpr Rgb gray[] = {{0.15f, 0.15f, 0.15f}, {0.95f, 0.95f, 0.95f}};

// Of middle lightness, so that none is lost before black or white; neighbours differ in hue.
constexpr Rgb categoryColors[] = {{0.22f, 0.52f, 0.85f}, {0.93f, 0.55f, 0.14f}, {0.24f, 0.66f, 0.33f},
                                  {0.84f, 0.28f, 0.30f}, {0.60f, 0.42f, 0.80f}, {0.62f, 0.45f, 0.32f},
                                  {0.90f, 0.48f, 0.75f}, {0.20f, 0.68f, 0.72f}, {0.70f, 0.69f, 0.15f},
                                  {0.38f, 0.42f, 0.70f}, {0.50f, 0.62f, 0.48f}, {0.72f, 0.30f, 0.55f}};

template <std::size_t count> Rgb between(const Rgb (&points)[count], float t)
{
    const float at = std::min(std::max(t, 0.0f), 1.0f) * static_cast<float>(count - 1);
    const std::size_t k = std::min(static_cast<std::size_t>(at), count - 2);
    const float f = at - static_cast<float>(k);
    const Rgb &a = points[k], &b = points[k + 1];
    return {a.r + f * (b.r - a.r), a.g + f * (b.g - a.g), a.b + f * (b.b - a.b)};
}

bool hasValue(float value)
{
    return std::isfinite(value) && value != noQuality;
}

} // namespace

Rgb rampColor(ColorRamp ramp, float t)
{
    if (std::isnan(t)) {
        return noValueColor;
    }
    switch (ramp) {
    case ColorRamp::Rainbow:
        return between(rainbow, t);
    case ColorRamp::Gray:
        return between(gray, t);
    default:
        return between(viridis, t);
    }
}

Rgb categoryColor(std::size_t category)
{
    return categoryColors[category % (sizeof categoryColors / sizeof *categoryColors)];
}

Rgb Coloring::colorOf(float value) const
{
    if (!hasValue(value)) {
        return noValueColor;
    }
    float t = low == high ? 0.0f : (value - low) / (high - low);
    t = std::min(std::max(t, 0.0f), 1.0f);
    if (bands > 1) { // the middle of each step, stretched so that the first and the last have the ends' colours
        const float step = std::min(std::floor(t * static_cast<float>(bands)), static_cast<float>(bands - 1));
        t = step / static_cast<float>(bands - 1);
    }
    return rampColor(ramp, t);
}

Coloring colorByKey(const std::string& title, const std::vector<std::uint32_t>& keyOfPart,
                    const std::vector<std::string>& names)
{
    Coloring out;
    out.title = title;
    std::vector<std::uint32_t> keys = keyOfPart;
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    for (std::size_t k = 0; k < keys.size(); ++k) {
        out.categories.push_back({k < names.size() ? names[k] : std::to_string(keys[k]), categoryColor(k)});
    }
    for (std::uint32_t key : keyOfPart) {
        out.categoryOfPart.push_back(static_cast<int>(std::lower_bound(keys.begin(), keys.end(), key) - keys.begin()));
    }
    return out;
}

Coloring colorByKind(const ShownModel& model)
{
    const ShownModel::Impl& shown = model.read();
    std::vector<std::uint32_t> keys;
    bool occurs[elementKindCount] = {};
    for (std::size_t k = 0; k < shown.partCount; ++k) {
        keys.push_back(static_cast<std::uint32_t>(shown.meshes[k].kind));
        occurs[keys.back()] = true;
    }
    std::vector<std::string> names;
    for (int kind = 0; kind < elementKindCount; ++kind) {
        if (occurs[kind]) {
            names.push_back(elementKindName(static_cast<ElementKind>(kind)));
        }
    }
    return colorByKey("kind", keys, names);
}

Coloring colorByNumber(const std::string& title, const std::vector<NumberAndName>& ofParts)
{
    std::vector<std::uint32_t> keys;
    std::map<std::uint32_t, std::string> nameOf;
    for (const auto& [number, name] : ofParts) {
        keys.push_back(number);
        std::string& text = nameOf[number];
        text = number ? std::to_string(number) : "none";
        if (number && !name.empty()) {
            text += " " + name;
        }
    }
    std::vector<std::string> names;
    for (const auto& entry : nameOf) {
        names.push_back(entry.second);
    }
    return colorByKey(title, keys, names);
}

Coloring colorByProperty(const Model& model)
{
    std::vector<NumberAndName> ofParts;
    for (const Part& part : model.parts()) {
        ofParts.emplace_back(part.propertyId, part.propertyName);
    }
    return colorByNumber("property", ofParts);
}

Coloring colorByMaterial(const Model& model)
{
    std::vector<NumberAndName> ofParts;
    for (const Part& part : model.parts()) {
        ofParts.emplace_back(part.materialId, part.materialName);
    }
    return colorByNumber("material", ofParts);
}

Coloring colorByQuality(const ShownModel& model, Quality quality)
{
    const ShownModel::Impl& shown = model.read();
    const QualityInfo& info = qualityInfo(quality);
    Coloring out;
    out.title = info.name;
    out.unit = info.unit;
    const bool rising = info.worst > info.best;
    const float end = info.worst == worstRatio ? 10 : info.worst;
    float worst = info.best;
    for (std::size_t k = 0; k < shown.partCount; ++k) {
        const PartMesh& part = shown.meshes[k];
        out.values.emplace_back(part.elementCount, noQuality);
        elementQuality(part, quality, out.values.back().data());
        for (float value : out.values.back()) {
            if (hasValue(value)) {
                worst = rising ? std::max(worst, value) : std::min(worst, value);
            }
        }
    }
    const float least = info.best + 0.01f * (end - info.best); // a model of perfect elements has a range too
    worst = rising ? std::min(std::max(worst, least), end) : std::max(std::min(worst, least), end);
    out.low = info.best;
    out.high = worst;
    return out;
}

Coloring colorByValues(const std::string& title, const std::string& unit, std::vector<std::vector<float>> valuesOfParts)
{
    Coloring out;
    out.title = title;
    out.unit = unit;
    bool any = false;
    for (const std::vector<float>& values : valuesOfParts) {
        for (float value : values) {
            if (hasValue(value)) {
                out.low = any ? std::min(out.low, value) : value;
                out.high = any ? std::max(out.high, value) : value;
                any = true;
            }
        }
    }
    out.values = std::move(valuesOfParts);
    return out;
}

} // namespace kvo
