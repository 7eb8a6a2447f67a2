// The pixels of a region of the frame, with the numbers of the elements that they show.
#ifndef KVO_SCENE_NUMBER_PICTURE_H
#define KVO_SCENE_NUMBER_PICTURE_H

#include <cstdint>
#include <vector>

namespace kvo {

struct PixelBox
{
    int left = 0; // window pixels, y upwards
    int bottom = 0;
    int width = 0;
    int height = 0;

    bool contains(int x, int y) const { return x >= left && x < left + width && y >= bottom && y < bottom + height; }
};

struct NumberPicture
{
    PixelBox box;
    std::vector<std::uint32_t> numbers; // element number over all parts + 1, row by row upwards; 0: nothing
    std::vector<float> depths;          // of the depth buffer

    std::uint32_t at(int x, int y) const
    {
        return numbers[static_cast<std::size_t>(y - box.bottom) * static_cast<std::size_t>(box.width) +
                       static_cast<std::size_t>(x - box.left)];
    }
    float depthAt(int x, int y) const
    {
        return depths[static_cast<std::size_t>(y - box.bottom) * static_cast<std::size_t>(box.width) +
                      static_cast<std::size_t>(x - box.left)];
    }
};

} // namespace kvo

#endif
