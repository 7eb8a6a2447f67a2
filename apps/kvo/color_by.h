// What colours the elements of a picture, as the command line says it.
#ifndef KVO_COLOR_BY_H
#define KVO_COLOR_BY_H

#include <string>
#include <vector>

#include <kvo/coloring.h>

class CAEEnv;
struct ModelInfo;

namespace kvo {

enum class ColorKey
{
    Part, // the parts' own colours
    Kind,
    Property,
    Material,
    Quality
};

struct ColorBy
{
    ColorKey key = ColorKey::Part;
    Quality quality = Quality::AspectRatio;
    bool ranged = false; // low and high instead of the values' own
    float low = 0;
    float high = 1;
    ColorRamp ramp = ColorRamp::Viridis;
    unsigned int bands = 0; // 0: continuous
};

// "part", "kind", "property", "material" or "quality:NAME". Throws UsageError, naming what there is.
ColorBy parseColorBy(const std::string& text);
// "LOW,HIGH", two different numbers. Throws UsageError.
void parseColorRange(const std::string& text, ColorBy& out);

std::vector<std::string> rampNames();
ColorRamp rampNamed(const std::string& name); // one of them

// "aspect-ratio, edge-ratio, ...": for manuals.
std::string qualityNames();

Coloring makeColoring(const ColorBy& wanted, const CAEEnv& env, const ModelInfo& info);

} // namespace kvo

#endif
