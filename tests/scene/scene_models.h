// Models of many elements for the tests of scene/.
#ifndef SCENE_MODELS_H
#define SCENE_MODELS_H

#include "modelbuilder.h"

// n x n x n unit cubes; cube (i, j, k) is element (k n + j) n + i.
PartInfoStr blockPart(unsigned int n);

// A sheet of n x n unit squares in z = 0, every other cell cut into two triangles when mixed.
PartInfoStr sheetPart(unsigned int n, bool mixed = false);

// A tube about z, radius 1, of quadrilaterals: around x along, from z = 0 to length.
PartInfoStr tubePart(unsigned int around, unsigned int along, float length);

// Adds (x, y, z) to every node and to the extents.
void movePart(PartInfoStr& part, float x, float y, float z);

void paintPart(PartInfoStr& part, float red, float green, float blue, float alpha = 1);

#endif
