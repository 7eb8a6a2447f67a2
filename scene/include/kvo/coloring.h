// What colours the elements of a scene: their parts' own colours, a category for each part (property, material, kind,
// any key of the host), or a number for each element (quality, or whatever the host computes), with the legend's texts.
//
//   view.setColoring(kvo::colorByQuality(shown, kvo::Quality::Warpage));
//   view.setColoring(kvo::colorByMaterial(model));
//   view.setColoring(kvo::Coloring());                      // the parts' own colours
//
// Selected and highlighted parts and elements keep the colours of selection and highlight.
#ifndef KVO_SCENE_COLORING_H
#define KVO_SCENE_COLORING_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <kvo/quality.h>
#include <kvo/shown_model.h>
#include <kvoexport.h>

struct ModelInfo;

namespace kvo {

struct Rgb
{
    float r, g, b; // 0..1
};

enum class ColorRamp
{
    Viridis, // perceptually even, dark blue to yellow, readable without telling red from green
    Rainbow, // blue, cyan, green, yellow, red: as many post-processors have it
    Gray
};

// The colour at t, 0..1; beyond that the ends' colours, and for NaN the grey of elements without a value. Between the
// control points colours are linear. Viridis: every tenth of the map by Smith, van der Walt and Firing (2015), which is
// in the public domain (CC0).
KVO_EXPORT Rgb rampColor(ColorRamp ramp, float t);

// Colours for categories: 12, told apart on dark and on white backgrounds, then again from the first.
KVO_EXPORT Rgb categoryColor(std::size_t category);

constexpr Rgb noValueColor = {0.55f, 0.55f, 0.55f};

struct Category
{
    std::string name; // UTF-8; bytes that are none are Latin-1
    Rgb color;
};

struct Coloring
{
    std::string title; // of the legend
    std::string unit;  // behind the title of values; may be empty

    // Categories. A part whose entry is missing or negative keeps its own colour.
    std::vector<Category> categories;
    std::vector<int> categoryOfPart; // index into categories by part index

    // Values by part index and element. Elements whose value is missing keep their category's or part's colour; those
    // with NaN or noQuality are grey. The ramp begins at low and ends at high, which may be the smaller one; values
    // beyond have the ends' colours.
    std::vector<std::vector<float>> values;
    float low = 0;
    float high = 1;
    ColorRamp ramp = ColorRamp::Viridis;
    unsigned int bands = 0; // 0: continuous; else as many even steps

    bool byValue() const { return !values.empty(); }
    bool byCategory() const { return !categories.empty(); }
    // The colour of a value, bands and all.
    KVO_EXPORT Rgb colorOf(float value) const;
};

// One category per draw type that occurs: shell, solid, beam, discrete.
KVO_EXPORT Coloring colorByKind(const ShownModel& model);

// One category per different key, in ascending order; names[k] is the name of keys' k-th smallest different entry,
// where missing the number itself.
KVO_EXPORT Coloring colorByKey(const std::string& title, const std::vector<std::uint32_t>& keyOfPart,
                               const std::vector<std::string>& names = {});

// What a part is of: a number, 0 for none, and the name that goes with it, which may be empty.
using NumberAndName = std::pair<std::uint32_t, std::string>;

// One category per different number, in ascending order, named "NUMBER name"; parts with 0 are in "none".
KVO_EXPORT Coloring colorByNumber(const std::string& title, const std::vector<NumberAndName>& ofParts);
KVO_EXPORT Coloring colorByProperty(const Model& model);
KVO_EXPORT Coloring colorByMaterial(const Model& model);

// By what the model directory says of an environment's parts with these ids. Parts that the directory does not
// know are in the category "none".
KVO_EXPORT Coloring colorByProperty(const CAEEnv& env, const ModelInfo& info);
KVO_EXPORT Coloring colorByMaterial(const CAEEnv& env, const ModelInfo& info);

// The ramp begins at the best possible value and ends at the worst that occurs, but no further than a ratio of 10.
KVO_EXPORT Coloring colorByQuality(const ShownModel& model, Quality quality);

// The ramp spans the finite values.
KVO_EXPORT Coloring colorByValues(const std::string& title, const std::string& unit,
                                  std::vector<std::vector<float>> valuesOfParts);

} // namespace kvo

#endif
