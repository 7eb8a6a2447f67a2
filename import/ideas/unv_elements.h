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

// How many nodes an element of the type has; drawn types only.
std::size_t unvNodes(const UnvElement& element);

// The order that an element with so many nodes has: writers take a descriptor for another order's, too, so the count
// decides where it is that of an order. Drawn types only.
int unvOrder(const UnvElement& element, std::size_t nodes);

// Which of the entries of an element of that order are its corners, in the order of the shape; cornerCount(shape) of
// them. Drawn types only.
const int* unvCorners(const UnvElement& element, int order);

} // namespace kvo

#endif
