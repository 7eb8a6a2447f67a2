// What a part's elements look like: their shapes and faces as node indices of the part, whatever slots a record
// repeats.
//
// A solid of eight slots is told by the slots that it repeats (partstr.h): slots 4 = 5 (counted from 1) a tetrahedron,
// else the faces of the hexahedron with repeated corners left out, which gives wedges, pyramids and every other
// collapsed hexahedron. Faces that are left with fewer than three corners vanish.
#ifndef KVO_SCENE_ELEMENT_SHAPE_H
#define KVO_SCENE_ELEMENT_SHAPE_H

#include <cstdint>

#include <kvo/part_mesh.h>

namespace kvo {

enum class ElementShape : std::uint8_t
{
    None, // an element that cannot be drawn: indices outside the part, an unknown draw type
    Line, // beams and discretes
    Triangle,
    Quad,
    Tetra,
    Pyramid,
    Wedge,
    Hexa,
    Collapsed // any other solid: some faces of a hexahedron
};

constexpr unsigned int maxFaces = 6;
constexpr std::uint32_t noCorner = 0xFFFFFFFF;

// One face of one element. Triangles have noCorner as fourth.
struct ElementFace
{
    std::uint32_t nodes[4]; // indices into the part's nodeValues (x 3), round the rim
    std::uint8_t corners;   // 3 or 4
    std::uint8_t number;    // position among the element's faces as the record's flat normals count them
};

// The slots of one element: part.slotCount numbers.
inline const unsigned int* slotsOf(const PartMesh& part, std::uint32_t element)
{
    return part.slots + static_cast<std::size_t>(element) * part.slotCount;
}

inline const float* positionOf(const PartMesh& part, std::uint32_t node)
{
    return part.positions + 3 * static_cast<std::size_t>(node);
}

// None also where a slot that counts is not a node of the part, so that whatever has a shape is safe to read.
ElementShape shapeOf(const PartMesh& part, std::uint32_t element);

// The element's faces (a shell is its only face), 0 for lines and None. The winding is not consistent from face to face
// (the record's order is kept); turn a face outward where that matters. shape must be shapeOf(part, element).
unsigned int facesOf(const PartMesh& part, std::uint32_t element, ElementShape shape, ElementFace faces[maxFaces]);

// faces[index] of what facesOf fills; index must be below the number of faces.
ElementFace faceAt(const PartMesh& part, std::uint32_t element, ElementShape shape, unsigned int index);

// The distinct corner nodes of an element, in slot order: 2 to 8; the two end nodes of a line. Returns their number, 0
// for None.
unsigned int cornersOf(const PartMesh& part, std::uint32_t element, ElementShape shape, std::uint32_t nodes[8]);

} // namespace kvo

#endif
