// Marks and numbers at projected corners.
#include "box_corners.h"

#include <cmath>
#include <string>

namespace kvo {

namespace {

// Per corner: greatest (1) or least (0) x, y and z.
constexpr unsigned int corners[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                        {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
constexpr int mark = 5, gap = 2; // pixels
constexpr Rgb green = {0, 1, 0}, red = {1, 0, 0};

} // namespace

void drawBoxCorners(OverlayPainter& painter, const SceneCamera& camera, const std::array<float, 6>& extents)
{
    for (unsigned int corner = 0; corner < 8; ++corner) {
        double point[3], window[3];
        for (unsigned int axis = 0; axis < 3; ++axis) {
            point[axis] = static_cast<double>(extents[2 * axis + corners[corner][axis]]);
        }
        if (!camera.project(point, window)) {
            continue;
        }
        const int x = static_cast<int>(std::floor(window[0])) - camera.viewport[0];
        const int y = static_cast<int>(std::floor(window[1])) - camera.viewport[1];
        if (corner == 0 || corner == 6) {
            painter.fill(x - mark / 2, y - mark / 2, mark, mark, corner == 0 ? green : red);
        }
        painter.write(x + gap, y + gap, std::to_string(corner), painter.ink());
    }
}

} // namespace kvo
