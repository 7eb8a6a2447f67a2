// The element types of archive files, by the number at the end of their names.
#ifndef KVO_IMPORT_ANSYS_CDB_ELEMENTS_H
#define KVO_IMPORT_ANSYS_CDB_ELEMENTS_H

#include <cstdint>
#include <string>
#include <vector>

#include "mesh.h"

namespace kvo {

// What the nodes of a type of elements say.
enum class CdbLayout : std::uint8_t
{
    Undrawn,   // masses, contacts, surface effects, rigid elements
    Line,      // two ends, then what nobody draws
    BeamThird, // two ends, the third node
    BeamMid,   // two ends, a middle, the third node
    Spring,    // two ends; a missing one is the ground
    Face,      // three or four corners, the last one repeated for a triangle
    Triangle,  // three corners first
    Brick,     // eight corners first, repeated for other shapes
    Tetra      // four corners first
};

// The layout of type number (185). Unknown numbers go by the name in front of it ("SOLID"); Undrawn if there is none.
CdbLayout cdbLayout(int number, const std::string& name);

// How many nodes an element with this layout can have at most.
std::size_t cdbMostNodes(int number, CdbLayout layout);

// A type whose shape depends on KEYOPT(1).
struct CdbOption
{
    const char* name;
    std::int64_t value;
    CdbLayout layout;
    std::size_t nodes;
};
// Null for types whose shape does not.
const CdbOption* findCdbOption(const std::string& name, std::int64_t value);

// The name that the format's users know: "SOLID185" of "185", "solid185" or 185. The number alone if it is not known.
std::string cdbTypeName(int number, const std::string& name);

// How an element with these nodes is drawn. False if it lacks a corner.
struct CdbShape
{
    Family family = Family::Solid;
    Shape shape = Shape::Hexa;
    std::int64_t nodes[9] = {}; // corners, and the third node of a beam
};
bool cdbShape(CdbLayout layout, const std::vector<std::int64_t>& entries, CdbShape& result);

} // namespace kvo

#endif
