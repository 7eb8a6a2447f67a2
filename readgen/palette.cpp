// The colours of parts that bring none: evenly spread hues of like strength, the same for the same place in the model.
#include <algorithm>
#include <cmath>

#include "modelformat.h"

namespace readgen {

namespace {

// Lightness and chroma in the Oklab space (Ottosson, "A perceptual color space for image processing", 2020). The
// chroma stays far from that of pure blue and pure green, which mean "selected" and "highlighted".
struct Tone
{
    double lightness;
    double chroma;
};
constexpr Tone tones[] = {{0.74, 0.125}, {0.63, 0.135}, {0.83, 0.095}};

constexpr double goldenRatioFraction = 0.61803398874989485; // the step that keeps hues apart for any number of them
constexpr double firstHue = 0.68;                           // turns; a steel blue
constexpr double turn = 6.283185307179586;

double encodeGamma(double linear)
{
    const double v = std::clamp(linear, 0.0, 1.0);
    return v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1 / 2.4) - 0.055;
}

double cube(double v)
{
    return v * v * v;
}

} // namespace

void paletteColor(unsigned int ordinal, float* color)
{
    const Tone& tone = tones[ordinal % (sizeof tones / sizeof tones[0])];
    const double turns = firstHue + ordinal * goldenRatioFraction;
    const double hue = turn * (turns - std::floor(turns));
    const double a = tone.chroma * std::cos(hue);
    const double b = tone.chroma * std::sin(hue);

    const double l = cube(tone.lightness + 0.3963377774 * a + 0.2158037573 * b);
    const double m = cube(tone.lightness - 0.1055613458 * a - 0.0638541728 * b);
    const double s = cube(tone.lightness - 0.0894841775 * a - 1.2914855480 * b);
    color[0] = static_cast<float>(encodeGamma(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s));
    color[1] = static_cast<float>(encodeGamma(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s));
    color[2] = static_cast<float>(encodeGamma(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s));
    color[3] = 1;
}

} // namespace readgen
