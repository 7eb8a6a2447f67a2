// The cell types of VTK.
#ifndef KVO_IMPORT_VTK_CELLS_H
#define KVO_IMPORT_VTK_CELLS_H

#include "mesh.h"

namespace kvo {

enum class VtkDraw
{
    Corners, // an element of the mesh's shapes
    Polygon, // any number of corners
    Lines,   // one after the other
    Strip,   // of triangles
    Nothing  // has no picture
};

struct VtkCellType
{
    int number; // as the files have it
    const char* name;
    VtkDraw draw;
    Family family; // of Corners
    Shape shape;
    int nodes;     // 0: any number from the corners on; the corners come first
    int corner[8]; // per corner of the shape, where it stands among the cell's points
};

// Null for a number that is not known.
const VtkCellType* findVtkCellType(std::int64_t number);

} // namespace kvo

#endif
