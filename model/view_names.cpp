// The table of standard views.
#include <kvo/view_names.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <sstream>

#include "vector_math.h"

namespace kvo {

namespace {

// A model whose y is up is one whose z is up, turned about x.
Rotation fromZUp(UpAxis up)
{
    return up == UpAxis::Y ? Rotation::about({1, 0, 0}, -90) : Rotation();
}

struct ViewRow
{
    const char* name;
    const char* fromWithZUp;
    const char* fromWithYUp;
    double azimuth;
    double elevation;
};

const double isoElevation = std::atan(std::sqrt(0.5)) / radiansPerDegree; // all three axes are equally long

const ViewRow rows[] = {{"iso", "", "", 45, isoElevation}, {"top", "+z", "+y", 0, 90},   {"bottom", "-z", "-y", 0, -90},
                        {"left", "-x", "-x", 270, 0},      {"right", "+x", "+x", 90, 0}, {"front", "-y", "+z", 0, 0},
                        {"back", "+y", "-z", 180, 0}};

// A decimal number that is the whole text, whatever the locale.
std::optional<double> numberIn(const std::string& text)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    double out = 0;
    stream >> std::noskipws >> out;
    return stream && stream.eof() && std::isfinite(out) ? std::optional<double>(out) : std::nullopt;
}

} // namespace

const std::array<const char*, 7>& standardViewWords()
{
    static const std::array<const char*, 7> words = {rows[0].name, rows[1].name, rows[2].name, rows[3].name,
                                                     rows[4].name, rows[5].name, rows[6].name};
    return words;
}

Rotation viewOrientation(double azimuth, double elevation, UpAxis up)
{
    return fromZUp(up) * Rotation::about({0, 0, 1}, azimuth) *
           Rotation::about({1, 0, 0}, 90 - std::clamp(elevation, -90.0, 90.0));
}

std::optional<Rotation> viewOrientation(const std::string& text, UpAxis up)
{
    for (const ViewRow& row : rows) {
        const char* const from = up == UpAxis::Y ? row.fromWithYUp : row.fromWithZUp;
        if (!text.empty() && (text == row.name || text == from)) {
            return viewOrientation(row.azimuth, row.elevation, up);
        }
    }
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) {
        return std::nullopt;
    }
    const std::optional<double> azimuth = numberIn(text.substr(0, comma)), elevation = numberIn(text.substr(comma + 1));
    if (!azimuth || !elevation || std::fabs(*elevation) > 90) {
        return std::nullopt;
    }
    return viewOrientation(*azimuth, *elevation, up);
}

} // namespace kvo
