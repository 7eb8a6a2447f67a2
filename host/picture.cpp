// Pixels: cutting, pasting and comparing.
#include "picture.h"

#include <algorithm>
#include <cstdlib>

namespace kvo {

namespace {

std::size_t offset(const Picture& picture, int x, int y)
{
    return 4 * (static_cast<std::size_t>(y) * picture.width + x);
}

int largestChannelDifference(Color a, Color b)
{
    return std::max({std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b), std::abs(a.a - b.a)});
}

// Pale grey, so that the red marks stand out on it.
Color paleGrey(Color c)
{
    const int level = 160 + (c.r * 3 + c.g * 6 + c.b) / 10 * 95 / 255;
    const auto grey = static_cast<std::uint8_t>(level);
    return {grey, grey, grey, 255};
}

} // namespace

Picture::Picture(int w, int h, Color fill) : width(w), height(h)
{
    if (w < 0 || h < 0) {
        throw HostError("a picture cannot be " + std::to_string(w) + "x" + std::to_string(h));
    }
    rgba.resize(4 * static_cast<std::size_t>(w) * h);
    for (std::size_t k = 0; k < rgba.size(); k += 4) {
        rgba[k] = fill.r;
        rgba[k + 1] = fill.g;
        rgba[k + 2] = fill.b;
        rgba[k + 3] = fill.a;
    }
}

Color Picture::at(int x, int y) const
{
    const std::uint8_t* p = &rgba[offset(*this, x, y)];
    return {p[0], p[1], p[2], p[3]};
}

void Picture::set(int x, int y, Color color)
{
    std::uint8_t* p = &rgba[offset(*this, x, y)];
    p[0] = color.r;
    p[1] = color.g;
    p[2] = color.b;
    p[3] = color.a;
}

void Picture::flipRows()
{
    const std::size_t row = 4 * static_cast<std::size_t>(width);
    for (int top = 0, bottom = height - 1; top < bottom; ++top, --bottom) {
        std::swap_ranges(rgba.begin() + row * top, rgba.begin() + row * (top + 1), rgba.begin() + row * bottom);
    }
}

Picture Picture::cut(int x, int y, int w, int h, Color fill) const
{
    Picture out(w, h, fill);
    out.paste(*this, -x, -y);
    return out;
}

void Picture::paste(const Picture& other, int x, int y)
{
    const int left = std::max(0, x);
    const int right = std::min(width, x + other.width);
    if (left >= right) {
        return;
    }
    for (int row = std::max(0, y); row < std::min(height, y + other.height); ++row) {
        const auto from = other.rgba.begin() + offset(other, left - x, row - y);
        std::copy(from, from + 4 * static_cast<std::ptrdiff_t>(right - left), rgba.begin() + offset(*this, left, row));
    }
}

PictureDifference compare(const Picture& a, const Picture& b, int tolerance)
{
    PictureDifference out;
    out.sameSize = a.width == b.width && a.height == b.height;
    if (!out.sameSize) {
        return out;
    }
    out.picture = Picture(a.width, a.height);
    for (int y = 0; y < a.height; ++y) {
        for (int x = 0; x < a.width; ++x) {
            const int difference = largestChannelDifference(a.at(x, y), b.at(x, y));
            out.largest = std::max(out.largest, difference);
            const bool differs = difference > tolerance;
            out.differing += differs;
            out.picture.set(x, y, differs ? Color{220, 0, 0, 255} : paleGrey(a.at(x, y)));
        }
    }
    return out;
}

} // namespace kvo
