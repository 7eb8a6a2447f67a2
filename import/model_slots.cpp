// Slot orders. A solid's shape is told by repeated slots: 4 = 5 is a tetrahedron, else 5 = 6 a wedge (counted from 1).
#include "model_slots.h"

#include <algorithm>

#include "mantypes.h"

namespace kvo {

namespace {

struct FamilyRow
{
    int stride;
    unsigned int drawType;
};

const FamilyRow families[familyCount] = {{4, SHELL}, {8, SOLID}, {3, BEAM}, {3, DISCRETE}};

constexpr unsigned int noSlot = 0xFFFFFFFF;

// Which corner stands in which slot.
//
//   wedge  a b c | d e f, corners 0..5:      pyramid, corners 0..3 and apex 4:
//   faces by slot 0123, 1264, 3046           the same faces are the base, two triangles
//   are its quads, 014 and 236 its           with the apex doubled, and two plain ones
//   triangles
const int triangleSlots[] = {0, 1, 2, 2};
const int quadSlots[] = {0, 1, 2, 3};
const int tetraSlots[] = {0, 1, 2, 3, 3, 3, 3, 3};
const int pyramidSlots[] = {0, 1, 2, 3, 4, 4, 4, 4};
const int wedgeSlots[] = {0, 2, 5, 3, 1, 1, 4, 4};

// The ways to number a hexahedron: turned about its upright axis, and the same upside down.
const int hexaOrders[][8] = {
    {0, 1, 2, 3, 4, 5, 6, 7}, {1, 2, 3, 0, 5, 6, 7, 4}, {2, 3, 0, 1, 6, 7, 4, 5}, {3, 0, 1, 2, 7, 4, 5, 6},
    {7, 6, 5, 4, 3, 2, 1, 0}, {6, 5, 4, 7, 2, 1, 0, 3}, {5, 4, 7, 6, 1, 0, 3, 2}, {4, 7, 6, 5, 0, 3, 2, 1},
};

void copySlots(const int* order, int count, const std::int64_t* nodes, unsigned int* slots)
{
    for (int k = 0; k < count; ++k) {
        slots[k] = static_cast<unsigned int>(nodes[order[k]]);
    }
}

// Does what the repeated slots make of this hexahedron have all its corners?
bool keepsCorners(const unsigned int* s)
{
    if (s[3] == s[4]) {
        return s[4] == s[5] && s[5] == s[6] && s[6] == s[7];
    }
    return s[4] != s[5] || s[6] == s[7];
}

// A collapsed hexahedron can repeat just the nodes that make another shape of it; then it is turned.
void fillHexa(const std::int64_t* nodes, unsigned int* slots)
{
    for (const auto& order : hexaOrders) {
        copySlots(order, 8, nodes, slots);
        if (keepsCorners(slots)) {
            return;
        }
    }
    copySlots(hexaOrders[0], 8, nodes, slots);
}

} // namespace

int modelStride(Family family)
{
    return families[static_cast<int>(family)].stride;
}

unsigned int modelDrawType(Family family)
{
    return families[static_cast<int>(family)].drawType;
}

void fillModelSlots(const ElementType& type, const std::int64_t* nodes, unsigned int* slots)
{
    switch (type.shape) {
    case Shape::Line:
        slots[0] = static_cast<unsigned int>(nodes[0]);
        slots[1] = static_cast<unsigned int>(nodes[1]);
        slots[2] = type.hasThirdNode() && nodes[2] != noNode ? static_cast<unsigned int>(nodes[2]) : noSlot;
        break;
    case Shape::Triangle:
        copySlots(triangleSlots, 4, nodes, slots);
        break;
    case Shape::Quad:
        copySlots(quadSlots, 4, nodes, slots);
        break;
    case Shape::Tetra:
        copySlots(tetraSlots, 8, nodes, slots);
        break;
    case Shape::Pyramid:
        copySlots(pyramidSlots, 8, nodes, slots);
        break;
    case Shape::Wedge:
        copySlots(wedgeSlots, 8, nodes, slots);
        break;
    case Shape::Hexa:
        fillHexa(nodes, slots);
        break;
    }
}

} // namespace kvo
