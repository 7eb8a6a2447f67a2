// Smooth pictures beyond the samples of a driver: the mean of several frames, each moved by fractions of a pixel.
#ifndef KVO_FRAME_MEAN_H
#define KVO_FRAME_MEAN_H

#include <cstdint>
#include <vector>

#include "picture.h"

namespace kvo {

// Where frame k of count (a power of two) is moved, right and up, in pixels, so that all frames' samples lie evenly in
// a pixel; 0, 0 for a single frame. samples: those of each frame, at least 1.
void frameShift(int k, int count, int samples, float out[2]);

class FrameMean
{
public:
    void add(const Picture& frame); // all of one size
    Picture mean() const;

private:
    int width = 0;
    int height = 0;
    unsigned int frames = 0;
    std::vector<std::uint16_t> sums;
};

} // namespace kvo

#endif
