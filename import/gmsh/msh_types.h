// The element types of .msh files.
#ifndef KVO_IMPORT_MSH_TYPES_H
#define KVO_IMPORT_MSH_TYPES_H

#include "mesh.h"

namespace kvo {

struct MshType
{
    int number;       // as the files have it
    const char* name; // as the format's manual calls it
    Family family;
    Shape shape;
    int nodes; // the corners come first
    int dim;   // 0: a point, which is not drawn
};

// Null for a number that is not known.
const MshType* findMshType(std::int64_t number);

} // namespace kvo

#endif
