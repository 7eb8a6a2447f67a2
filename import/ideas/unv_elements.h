// The element types of universal files.
#ifndef KVO_IMPORT_IDEAS_UNV_ELEMENTS_H
#define KVO_IMPORT_IDEAS_UNV_ELEMENTS_H

#include <cstdint>

#include "mesh.h"

namespace kvo {

struct UnvElement
{
    int descriptor;   // number of the type
    const char* name; // after the number
    Family family;
    Shape shape;
    int order;     // 1 linear, 2 parabolic, 3 cubic
    bool beamLine; // a line with the orientation node comes before the nodes
    bool drawn;
};

// Null for a number that is not known.
const UnvElement* findUnvElement(std::int64_t descriptor);

// Which of the element's entries are its corners, in the order of the shape; cornerCount(shape) of them.
const int* unvCorners(const UnvElement& element);

} // namespace kvo

#endif
