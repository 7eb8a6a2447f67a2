// Pictures in memory: RGBA, 8 bits a channel, top row first; files of them (PNG); comparing two.
#ifndef KVO_HOST_PICTURE_H
#define KVO_HOST_PICTURE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host_error.h"

namespace kvo {

struct Color
{
    std::uint8_t r = 0, g = 0, b = 0, a = 255;
    bool operator==(const Color& o) const { return r == o.r && g == o.g && b == o.b && a == o.a; }
    bool operator!=(const Color& o) const { return !(*this == o); }
};

struct Picture
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba; // 4 x width x height, rows from the top

    Picture() = default;
    Picture(int w, int h, Color fill = {0, 0, 0, 255});

    // x from the left, y from the top; both must lie inside.
    Color at(int x, int y) const;
    void set(int x, int y, Color color);

    void flipRows(); // top to bottom

    // A picture of w x h pixels whose top left corner is this one's (x, y), which may be negative or outside: what lies
    // outside gets the fill colour. So it crops and pads.
    Picture cut(int x, int y, int w, int h, Color fill = {0, 0, 0, 255}) const;

    // Replaces the pixels from (x, y) on by the other picture; what hangs over the edge is dropped.
    void paste(const Picture& other, int x, int y);
};

// --- Files: errors throw HostError, which names the file and what is wrong ---

// The bytes of a PNG file.
std::string encodePng(const Picture& picture);

// As an OutputFile (output_file.h): the file is whole, or what it was before.
void writePng(const Picture& picture, const std::string& path);

Picture readPng(const std::string& path);

// --- Comparing ---

struct PictureDifference
{
    bool sameSize = false;
    int largest = 0;           // largest difference of a channel, 0..255
    std::size_t differing = 0; // pixels with a channel that differs by more than the tolerance
    Picture picture;           // grey copy of the first with the differing pixels in red; empty when sizes differ
};

// tolerance: the difference of a channel that still counts as equal.
PictureDifference compare(const Picture& a, const Picture& b, int tolerance = 0);

} // namespace kvo

#endif
