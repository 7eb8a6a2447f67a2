// A labelled wireframe box around one part.
#ifndef BOUNDBOX_H
#define BOUNDBOX_H

#include "kvoexport.h"

class KVO_EXPORT BoundBox
{
public:
    // Builds the 8 corners from extents[6] = xmin, xmax, ymin, ymax, zmin, zmax (copied).
    explicit BoundBox(float* extents);
    ~BoundBox();

    // Draws corner numbers, the green minimum and red maximum corner, and the six faces as outlines. Needs a current
    // context, the normal array disabled and the vertex array enabled; leaves the vertex pointer on boxVertices.
    void render();

    // First display list of a bitmap font whose list for character code c is base + c; shared by every box.
    static void setFontBase(unsigned int base);

    float boxVertices[24];              // 8 corners x (x, y, z), numbered as a hexahedron's slots
    static unsigned int boxIndices[24]; // 6 quadrilaterals
    static unsigned int fontBase;       // 0 until setFontBase
};

#endif
