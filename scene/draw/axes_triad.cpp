#include "axes_triad.h"

#include <algorithm>
#include <cmath>

namespace kvo {

namespace {

constexpr double armLength = 30, margin = 45, letterGap = 9, letterSize = 4; // pixels

const float axisColors[3][3] = {{0.95f, 0.25f, 0.2f}, {0.25f, 0.8f, 0.3f}, {0.35f, 0.55f, 1.0f}};

// Strokes of X, Y and Z: pairs of points in a square of +-1.
struct Letter
{
    int points;
    float xy[6][2];
};
const Letter letters[3] = {{4, {{-1, -1}, {1, 1}, {-1, 1}, {1, -1}}},
                           {6, {{-1, 1}, {0, 0}, {1, 1}, {0, 0}, {0, 0}, {0, -1}}},
                           {6, {{-1, 1}, {1, 1}, {1, 1}, {-1, -1}, {-1, -1}, {1, -1}}}};

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

void drawArm(const Arm& arm)
{
    glColor3fv(axisColors[arm.axis]);
    glBegin(GL_LINES);
    glVertex2d(margin, margin);
    glVertex2d(margin + arm.x, margin + arm.y);
    const double length = std::hypot(arm.x, arm.y);
    if (length > armLength / 4) { // an axis seen end on has no place for its letter
        const double x = margin + arm.x * (1 + letterGap / length), y = margin + arm.y * (1 + letterGap / length);
        const Letter& letter = letters[arm.axis];
        for (int k = 0; k < letter.points; ++k) {
            glVertex2d(x + letterSize * letter.xy[k][0], y + letterSize * letter.xy[k][1]);
        }
    }
    glEnd();
}

} // namespace

void drawAxes(const SceneCamera& camera)
{
    if (camera.viewport[2] < 4 * margin || camera.viewport[3] < 4 * margin) {
        return; // it would cover the model
    }
    glPushAttrib(GL_ENABLE_BIT | GL_LINE_BIT | GL_CURRENT_BIT | GL_TRANSFORM_BIT | GL_POLYGON_BIT);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0, camera.viewport[2], 0, camera.viewport[3], -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glLineWidth(2);
    Arm arms[3];
    findArms(camera, arms);
    for (const Arm& arm : arms) {
        drawArm(arm);
    }
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glPopAttrib();
}

} // namespace kvo
