// Regions of picks.
#include "picker.h"

#include <algorithm>
#include <string>

#include "program_error.h"
#include "words.h"

namespace kvo {

namespace {

[[noreturn]] void failOutside(const std::string& what, int width, int height)
{
    throw ProgramError(what + " the picture of " + std::to_string(width) + "x" + std::to_string(height) + " pixels");
}

// place: what errors call it.
void checkRectangle(const PictureRegion& region, const std::string& place, int width, int height)
{
    if (!(region.width > 0 && region.height > 0)) {
        throw ProgramError(place + " is empty");
    }
    if (region.left < 0 || region.top < 0 || region.left + region.width > static_cast<float>(width) ||
        region.top + region.height > static_cast<float>(height)) {
        failOutside(place + " reaches out of", width, height);
    }
}

} // namespace

PictureRegion regionAt(float x, float y, float size, int pictureWidth, int pictureHeight)
{
    const std::string place = formatValue(x) + "," + formatValue(y);
    if (!(x >= 0 && y >= 0 && x < static_cast<float>(pictureWidth) && y < static_cast<float>(pictureHeight))) {
        failOutside("the place " + place + " is outside", pictureWidth, pictureHeight);
    }
    if (!(size > 0)) {
        throw ProgramError("the size " + formatValue(size) + " of a pick must be more than 0 pixels");
    }
    return {x + 0.5f - size / 2, y + 0.5f - size / 2, size, size, {}};
}

PictureRegion regionInside(const std::vector<float>& outline, int pictureWidth, int pictureHeight)
{
    std::string place = "the polygon";
    PictureRegion out;
    float right = 0, bottom = 0;
    for (std::size_t k = 0; k + 1 < outline.size(); k += 2) {
        const float x = outline[k], y = outline[k + 1];
        place += " " + formatValue(x) + "," + formatValue(y);
        out.left = k == 0 ? x : std::min(out.left, x);
        out.top = k == 0 ? y : std::min(out.top, y);
        right = k == 0 ? x : std::max(right, x);
        bottom = k == 0 ? y : std::max(bottom, y);
    }
    out.width = right - out.left;
    out.height = bottom - out.top;
    out.outline = outline;
    if (outline.size() < 6) {
        throw ProgramError(place + " has fewer than three corners");
    }
    checkRectangle(out, place, pictureWidth, pictureHeight);
    return out;
}

PictureRegion regionBetween(const float corners[4], int pictureWidth, int pictureHeight)
{
    const PictureRegion out = {std::min(corners[0], corners[2]),
                               std::min(corners[1], corners[3]),
                               std::max(corners[0], corners[2]) - std::min(corners[0], corners[2]),
                               std::max(corners[1], corners[3]) - std::min(corners[1], corners[3]),
                               {}};
    const std::string place = "the rectangle " + formatValue(corners[0]) + "," + formatValue(corners[1]) + "," +
                              formatValue(corners[2]) + "," + formatValue(corners[3]);
    checkRectangle(out, place, pictureWidth, pictureHeight);
    return out;
}

} // namespace kvo
