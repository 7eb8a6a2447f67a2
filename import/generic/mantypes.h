// Keyword categories of a finite-element deck. Their values are the draw types of parts (PartInfoStr::partDrawType).
#ifndef MANTYPES_H
#define MANTYPES_H

enum _ManType
{
    SHELL = 41,   // triangles and quadrilaterals
    SOLID = 48,   // tetrahedra, pentahedra (wedges), hexahedra
    BEAM = 52,    // two-node line elements
    DISCRETE = 53 // springs and dampers
};
typedef enum _ManType ManType;

#endif
