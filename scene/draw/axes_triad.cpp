#include "axes_triad.h"

#include <algorithm>
#include <cmath>

namespace kvo {

namespace {

constexpr double armLength = 30, margin = 45, letterGap = 9, letterSize = 4, lineWidth = 2; // pixels

constexpr Rgb axisColors[3] = {{0.95f, 0.25f, 0.2f}, {0.25f, 0.8f, 0.3f}, {0.35f, 0.55f, 1.0f}};

// Strokes of X, Y and Z: pairs of points in a square of +-1.
struct Letter
{
    char32_t character;
    int points;
    float xy[6][2];
};
const Letter letters[3] = {{U'X', 4, {{-1, -1}, {1, 1}, {-1, 1}, {1, -1}}},
                           {U'Y', 6, {{-1, 1}, {0, 0}, {1, 1}, {0, 0}, {0, 0}, {0, -1}}},
                           {U'Z', 6, {{-1, 1}, {1, 1}, {1, 1}, {-1, -1}, {-1, -1}, {1, -1}}}};

struct Arm
{
    int axis;
    double x, y;  // pixels
    double depth; // less is nearer
};

// Where the axes point on the screen, the longest that an axis can be as long as an arm; the farthest first.
void findArms(const SceneCamera& camera, Arm arms[3])
{
    double longest = 0;
    for (int axis = 0; axis < 3; ++axis) {
        const double* direction = camera.modelview + 4 * axis;
        arms[axis] = {axis, camera.projection[0] * direction[0] * camera.viewport[2],
                      camera.projection[5] * direction[1] * camera.viewport[3], direction[2] * -camera.viewer};
        const double across = std::hypot(arms[axis].x, arms[axis].y);
        const double scale = std::fabs(camera.projection[0]) * camera.viewport[2];
        longest = std::max(longest, std::hypot(across, direction[2] * scale));
    }
    for (int axis = 0; axis < 3; ++axis) {
        arms[axis].x *= longest > 0 ? armLength / longest : 0;
        arms[axis].y *= longest > 0 ? armLength / longest : 0;
    }
    std::sort(arms, arms + 3, [](const Arm& a, const Arm& b) { return a.depth > b.depth; });
}

void drawLetter(OverlayPainter& painter, int axis, double x, double y)
{
    const Letter& letter = letters[axis];
    if (painter.hasFont()) {
        const double room = 0.4 * painter.fontHeight(); // large letters stay in the picture
        painter.writeLetter(std::max(x, room), std::max(y, room), letter.character, axisColors[axis]);
        return;
    }
    for (int k = 0; k < letter.points; k += 2) {
        const float* from = letter.xy[k];
        const float* to = letter.xy[k + 1];
        painter.line(x + letterSize * from[0], y + letterSize * from[1], x + letterSize * to[0], y + letterSize * to[1],
                     lineWidth, axisColors[axis]);
    }
}

void drawArm(OverlayPainter& painter, const Arm& arm)
{
    painter.line(margin, margin, margin + arm.x, margin + arm.y, lineWidth, axisColors[arm.axis]);
    const double length = std::hypot(arm.x, arm.y);
    if (length > armLength / 4) { // an axis seen end on has no place for its letter
        const double factor = 1 + letterGap / length;
        drawLetter(painter, arm.axis, margin + arm.x * factor, margin + arm.y * factor);
    }
}

} // namespace

void drawAxes(OverlayPainter& painter, const SceneCamera& camera)
{
    if (painter.width() < 4 * margin || painter.height() < 4 * margin) {
        return; // it would cover the model
    }
    Arm arms[3];
    findArms(camera, arms);
    for (const Arm& arm : arms) {
        drawArm(painter, arm);
    }
}

} // namespace kvo
