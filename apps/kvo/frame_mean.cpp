// Places of frames in a pixel, and their mean.
#include "frame_mean.h"

namespace kvo {

void frameShift(int k, int count, int samples, float out[2])
{
    // A frame's samples are a pixel / samples apart in x and in y. The frames' moves divide that distance evenly, in x
    // in order, in y in the order of the reversed bits, so that no two frames share a row or a column.
    int reversed = 0;
    for (int bit = 1; bit < count; bit *= 2) {
        reversed = 2 * reversed + ((k & bit) ? 1 : 0);
    }
    const auto place = [&](int step) {
        return ((static_cast<float>(step) + 0.5f) / static_cast<float>(count) - 0.5f) / static_cast<float>(samples);
    };
    out[0] = place(k);
    out[1] = place(reversed);
}

void FrameMean::add(const Picture& frame)
{
    if (frames == 0) {
        width = frame.width;
        height = frame.height;
        sums.assign(frame.rgba.size(), 0);
    }
    for (std::size_t k = 0; k < sums.size(); ++k) {
        sums[k] = static_cast<std::uint16_t>(sums[k] + frame.rgba[k]);
    }
    ++frames;
}

Picture FrameMean::mean() const
{
    Picture out(width, height);
    for (std::size_t k = 0; k < sums.size(); ++k) {
        out.rgba[k] = static_cast<std::uint8_t>((sums[k] + frames / 2) / frames);
    }
    return out;
}

} // namespace kvo
