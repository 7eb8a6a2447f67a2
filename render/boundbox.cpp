// The labelled box around one part.
#include "boundbox.h"

#include <GL/gl.h>

#include <cstdio>
#include <cstring>

#include "polygon_mode.h"

unsigned int BoundBox::boxIndices[24] = {0, 1, 2, 3, 1, 2, 6, 5, 4, 5, 6, 7, 3, 0, 4, 7, 2, 3, 7, 6, 0, 1, 5, 4};
unsigned int BoundBox::fontBase = 0;

namespace {

// Per corner: maximum (1) or minimum (0) of x, y and z.
constexpr unsigned char corners[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                         {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};

void drawCornerLabel(const float* corner, int number, unsigned int fontBase)
{
    glRasterPos3fv(corner);
    glListBase(fontBase); // deliberate(list-base-kept): set for every label, never put back
    char text[16];
    std::snprintf(text, sizeof text, "%d", number);
    glCallLists(static_cast<GLsizei>(std::strlen(text)), GL_UNSIGNED_BYTE, text);
}

void drawExtremeCorners(const float* lowest, const float* highest)
{
    glPointSize(5);
    glBegin(GL_POINTS);
    glColor3f(0, 1, 0);
    glVertex3fv(lowest);
    glColor3f(1, 0, 0);
    glVertex3fv(highest);
    glEnd();
    glPointSize(1);
}

} // namespace

BoundBox::BoundBox(float* extents)
{
    for (int corner = 0; corner < 8; ++corner) {
        for (int axis = 0; axis < 3; ++axis) {
            boxVertices[3 * corner + axis] = extents[2 * axis + corners[corner][axis]];
        }
    }
}

BoundBox::~BoundBox() {}

void BoundBox::setFontBase(unsigned int base)
{
    fontBase = base;
}

void BoundBox::render()
{
    glColor4f(1.0f, 1.0f, 1.0f, 0.6f);
    for (int corner = 0; corner < 8; ++corner) {
        drawCornerLabel(boxVertices + 3 * corner, corner, fontBase);
    }
    drawExtremeCorners(boxVertices, boxVertices + 3 * 6);
    glColor4f(1.0f, 1.0f, 1.0f, 0.6f);
    const LineModeScope lineMode;
    glEnableClientState(GL_VERTEX_ARRAY);
    // deliberate(box-pointer-left): the vertex array stays on and on this box; the next array draw sets its own.
    glVertexPointer(3, GL_FLOAT, 0, boxVertices);
    glDrawElements(GL_QUADS, 24, GL_UNSIGNED_INT, boxIndices);
}
