// The element types of Abaqus and CalculiX input decks that have a picture.
#ifndef KVO_IMPORT_ABAQUS_ELEMENT_TYPES_H
#define KVO_IMPORT_ABAQUS_ELEMENT_TYPES_H

#include <string_view>

#include "mesh.h"

namespace kvo {

struct InpElementType
{
    // The type's name up to its node count and its formulation letters: "C3D8" stands for C3D8, C3D8R, C3D8RH, ... A
    // name that ends in a digit is never followed by another one: "C3D1" would not match C3D10.
    const char* name;
    Family family;
    Shape shape;
    int nodes;        // node entries of a data line
    int maxNodes;     // above nodes for types whose inner nodes may be left out
    int secondCorner; // position of a line's second corner among the entries: 1, or 2 for end-mid-end lines
};

// The row for a type as the deck spells it (any case), or null.
const InpElementType* findInpElementType(std::string_view name);

// Node entries of a type that has no picture (mass, rotary inertia, ...), so that its elements are counted right; 0 for
// a type that nobody knows.
int undrawnNodeCount(std::string_view name);

} // namespace kvo

#endif
