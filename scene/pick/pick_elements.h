// The points, lines and faces that elements are picked by, as slots of their records.
//
// This is what the contract library draws in a pick, degenerate faces included; faces that a picture shows are another
// matter (element_shape.h).
#ifndef KVO_SCENE_PICK_ELEMENTS_H
#define KVO_SCENE_PICK_ELEMENTS_H

#include <cstdint>

#include "element_shape.h"
#include <kvo/part_mesh.h>
#include <kvo/pick.h>

namespace kvo {

struct PickFace
{
    std::uint8_t slots[4]; // triangles name their third slot twice
};

// What an element consists of.
struct PickForm
{
    unsigned int corners;            // slots that count
    const std::uint8_t* cornerSlots; // `corners` of them
    unsigned int faces;              // 0 for a line
    const PickFace* face;            // `faces` of them
    bool line;                       // between corners 0 and 1
};

// The form of an element of the part, null where it has none: another draw type, or slots that are no nodes of the
// part. A part pick sees no beams.
const PickForm* pickFormOf(const PartMesh& part, std::uint32_t element);

// The node that a beam is picked by besides its line, or noCorner.
std::uint32_t thirdNodeOf(const PartMesh& part, std::uint32_t element);

// Whether picks of the type can hit the part at all.
bool isPickable(const PartMesh& part, PickType type);

// Elements or nodes, whichever the type looks at.
std::uint32_t entityCountOf(const PartMesh& part, PickType type);

} // namespace kvo

#endif
