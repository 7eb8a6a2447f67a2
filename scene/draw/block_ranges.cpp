#include "block_ranges.h"

#include <cmath>
#include <cstdint>

namespace kvo {

ViewVolume::ViewVolume(const double modelview[16], const double projection[16])
{
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            rows[row][column] = 0;
            for (int k = 0; k < 4; ++k) {
                rows[row][column] += projection[4 * k + row] * modelview[4 * column + k];
            }
        }
    }
}

// By middle and half sizes. For the plane x <= w, the largest value of w - x over the box must not be negative; a
// little more is let through, since vertices are transformed in single precision.
bool ViewVolume::mayShow(const float low[3], const float high[3]) const
{
    double middle[4], reach[4][3];
    for (int row = 0; row < 4; ++row) {
        middle[row] = rows[row][3];
        for (int axis = 0; axis < 3; ++axis) {
            middle[row] += rows[row][axis] * (double(low[axis]) + high[axis]) / 2;
            reach[row][axis] = rows[row][axis] * (double(high[axis]) - low[axis]) / 2;
        }
    }
    for (int row = 0; row < 3; ++row) {
        for (const double sign : {1.0, -1.0}) {
            double largest = middle[3] - sign * middle[row];
            for (int axis = 0; axis < 3; ++axis) {
                largest += std::fabs(reach[3][axis] - sign * reach[row][axis]);
            }
            if (largest < -1e-3 * std::fabs(middle[3])) {
                return false;
            }
        }
    }
    return true;
}

void DrawRanges::add(std::size_t firstIndex, std::size_t indexCount)
{
    if (!counts.empty() && firstIndex == nextIndex) {
        counts.back() += static_cast<GLsizei>(indexCount);
    } else {
        counts.push_back(static_cast<GLsizei>(indexCount));
        offsets.push_back(bufferOffset(firstIndex * sizeof(std::uint32_t)));
    }
    nextIndex = firstIndex + indexCount;
}

void DrawRanges::clear()
{
    counts.clear();
    offsets.clear();
}

std::size_t DrawRanges::indexCount() const
{
    std::size_t out = 0;
    for (GLsizei count : counts) {
        out += static_cast<std::size_t>(count);
    }
    return out;
}

} // namespace kvo
