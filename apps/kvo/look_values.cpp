// Reading values of looks.
#include "look_values.h"

#include <cmath>

#include <CLI/CLI.hpp>

#include "numbers.h"
#include "program_error.h"

namespace kvo {

namespace {

const float usualAlpha = 0.35f;
const char* const sectionUsage = "x=FROM.., x=..TO (or y, z) or X,Y,Z,NX,NY,NZ";

// "x=10.." or "x=..10": the axis, and the sign of the side that stays.
bool parseAxisSection(const std::string& text, SceneSection& out)
{
    const std::size_t axis = std::string("xyz").find(text.empty() ? ' ' : text[0]);
    if (axis == std::string::npos || text.size() < 5 || text[1] != '=') {
        return false;
    }
    const bool upTo = text.compare(2, 2, "..") == 0;
    const bool from = text.compare(text.size() - 2, 2, "..") == 0;
    const std::string number = text.substr(upTo ? 4 : 2, text.size() - 4);
    double value = 0;
    if (upTo == from || !CLI::detail::lexical_cast(number, value) || !std::isfinite(value)) {
        return false;
    }
    double point[3] = {0, 0, 0}, normal[3] = {0, 0, 0};
    point[axis] = value;
    normal[axis] = upTo ? -1 : 1;
    out.setPlane(point, normal);
    return true;
}

} // namespace

TransparentParts parseTransparent(const std::string& text)
{
    TransparentParts out;
    out.alpha = usualAlpha;
    const std::size_t sign = text.find('=');
    if (sign != std::string::npos) {
        const std::string number = text.substr(sign + 1);
        if (!CLI::detail::lexical_cast(number, out.alpha) || !(out.alpha > 0 && out.alpha <= 1)) {
            throw UsageError("--transparent: \"" + number + "\" is no opacity above 0 and up to 1");
        }
    }
    out.ids = parseIdList(text.substr(0, sign), "--transparent", IdScope::Model);
    return out;
}

void parseSection(const std::string& text, SceneSection& out)
{
    if (parseAxisSection(text, out)) {
        return;
    }
    const std::vector<float> numbers = parseNumbers(text, "--section", 6, 6, sectionUsage);
    bool finite = true, directed = false;
    double point[3], normal[3];
    for (std::size_t axis = 0; axis < 3; ++axis) {
        point[axis] = numbers[axis];
        normal[axis] = numbers[axis + 3];
        finite = finite && std::isfinite(point[axis]) && std::isfinite(normal[axis]);
        directed = directed || normal[axis] != 0;
    }
    if (!finite || !directed) {
        throw UsageError("--section: \"" + text + "\" has no direction towards what stays");
    }
    out.setPlane(point, normal);
}

} // namespace kvo
