// The axis triad and its letters.
#include "unit_axis.h"

#include <GL/gl.h>

namespace {

// One arm: its colour, its direction and its letter.
struct Arm
{
    float color[3];
    int axis;
    float sign; // deliberate(y-arm-negative): the y arm and its letter point along negative y
    const unsigned char* letter;
};
const Arm arms[] = {
    {{1, 0, 0}, 0, 1, UnitAxis::xbitmap},
    {{0, 1, 0}, 1, -1, UnitAxis::ybitmap},
    {{0, 0, 1}, 2, 1, UnitAxis::zbitmap},
};

void pointOnArm(const Arm& arm, float distance, float* point)
{
    point[0] = point[1] = point[2] = 0;
    point[arm.axis] = arm.sign * distance;
}

void drawArms(const float* lengths)
{
    glBegin(GL_LINES);
    for (const Arm& arm : arms) {
        float tip[3];
        pointOnArm(arm, lengths[arm.axis], tip);
        glColor3f(arm.color[0], arm.color[1], arm.color[2]);
        glVertex3f(0, 0, 0);
        glVertex3f(tip[0], tip[1], tip[2]);
    }
    glEnd();
}

void drawTriangle(const float* lengths)
{
    glBegin(GL_TRIANGLES);
    glColor3f(1, 1, 0);
    for (const Arm& arm : arms) {
        float corner[3];
        pointOnArm(arm, lengths[arm.axis] / 2, corner);
        glVertex3f(corner[0], corner[1], corner[2]);
    }
    glEnd();
}

void drawLetters(const float* lengths, float offset)
{
    for (const Arm& arm : arms) {
        float position[3];
        pointOnArm(arm, lengths[arm.axis] + offset, position);
        glColor3f(arm.color[0], arm.color[1], arm.color[2]);
        glRasterPos3f(position[0], position[1], position[2]);
        glBitmap(16, 16, 8, 8, 0, 0, arm.letter);
    }
}

} // namespace

void UnitAxis::render(float* axis_length, float letter_offset)
{
    glLineWidth(4);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix(); // deliberate(triad-push-kept): nothing in between changes the matrix; part of the call trace
    drawArms(axis_length);
    drawTriangle(axis_length);
    drawLetters(axis_length, letter_offset);
    glPopMatrix();
    glLineWidth(1);
}

// clang-format off
const unsigned char UnitAxis::xbitmap[64] = {
    0x00, 0x00, 0, 0,  0xc0, 0x03, 0, 0,  0x60, 0x06, 0, 0,  0x30, 0x0c, 0, 0,
    0x18, 0x18, 0, 0,  0x0c, 0x30, 0, 0,  0x06, 0x60, 0, 0,  0x03, 0xc0, 0, 0,
    0x03, 0xc0, 0, 0,  0x06, 0x60, 0, 0,  0x0c, 0x30, 0, 0,  0x18, 0x18, 0, 0,
    0x30, 0x0c, 0, 0,  0x60, 0x06, 0, 0,  0xc0, 0x03, 0, 0,  0x00, 0x00, 0, 0,
};
const unsigned char UnitAxis::ybitmap[64] = {
    0x00, 0x00, 0, 0,  0x01, 0x80, 0, 0,  0x01, 0x80, 0, 0,  0x01, 0x80, 0, 0,
    0x01, 0x80, 0, 0,  0x01, 0x80, 0, 0,  0x01, 0x80, 0, 0,  0x01, 0x80, 0, 0,
    0x03, 0xc0, 0, 0,  0x06, 0x60, 0, 0,  0x0c, 0x30, 0, 0,  0x18, 0x18, 0, 0,
    0x30, 0x0c, 0, 0,  0x60, 0x06, 0, 0,  0xc0, 0x03, 0, 0,  0x00, 0x00, 0, 0,
};
const unsigned char UnitAxis::zbitmap[64] = {
    0x00, 0x00, 0, 0,  0x7f, 0xfe, 0, 0,  0x7f, 0xfe, 0, 0,  0x18, 0x00, 0, 0,
    0x0c, 0x00, 0, 0,  0x06, 0x00, 0, 0,  0x03, 0x00, 0, 0,  0x01, 0x80, 0, 0,
    0x00, 0xc0, 0, 0,  0x00, 0x60, 0, 0,  0x00, 0x30, 0, 0,  0x00, 0x18, 0, 0,
    0x00, 0x0c, 0, 0,  0x7f, 0xfe, 0, 0,  0x7f, 0xfe, 0, 0,  0x00, 0x00, 0, 0,
};
// clang-format on
