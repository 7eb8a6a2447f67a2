#include "element_shape.h"

namespace kvo {

namespace {

struct FaceRow
{
    unsigned char slots[4];
};

// In the order of the records' flat normals. A tetrahedron's rows name their third slot twice.
constexpr FaceRow hexaFaces[] = {{{0, 1, 2, 3}}, {{1, 2, 6, 5}}, {{4, 5, 6, 7}},
                                 {{3, 0, 4, 7}}, {{2, 3, 7, 6}}, {{0, 1, 5, 4}}};
constexpr FaceRow tetraFaces[] = {{{0, 1, 2, 2}}, {{0, 1, 3, 3}}, {{0, 3, 2, 2}}, {{1, 2, 3, 3}}};
// What is left of a hexahedron with slots 5 = 6 and 7 = 8 (counted from 1), in the order of a wedge's flat normals.
constexpr FaceRow wedgeFaces[] = {{{0, 1, 2, 3}}, {{1, 2, 6, 4}}, {{3, 0, 4, 6}}, {{0, 1, 4, 4}}, {{2, 3, 6, 6}}};

bool allNodes(const PartMesh& part, const unsigned int* slots, unsigned int count)
{
    for (unsigned int k = 0; k < count; ++k) {
        if (slots[k] >= part.nodeCount) {
            return false;
        }
    }
    return true;
}

ElementShape solidShape(const PartMesh& part, std::uint32_t element)
{
    const unsigned int stride = part.slotCount;
    const unsigned int* s = slotsOf(part, element);
    if (stride == 10) {
        return allNodes(part, s, 4) ? ElementShape::Tetra : ElementShape::None;
    }
    if (stride != 8 || !allNodes(part, s, 8)) {
        return ElementShape::None;
    }
    if (s[3] == s[4]) {
        return ElementShape::Tetra;
    }
    if (s[4] == s[5] && s[6] == s[7]) {
        return s[5] == s[6] ? ElementShape::Pyramid : ElementShape::Wedge;
    }
    for (unsigned int a = 0; a < 8; ++a) {
        for (unsigned int b = a + 1; b < 8; ++b) {
            if (s[a] == s[b]) {
                return ElementShape::Collapsed;
            }
        }
    }
    return ElementShape::Hexa;
}

// Leaves out corners that repeat one before them; false when fewer than three are left.
bool addFace(const unsigned int* slots, const FaceRow& row, unsigned int number, ElementFace& face)
{
    face.corners = 0;
    face.number = static_cast<std::uint8_t>(number);
    face.nodes[3] = noCorner;
    for (unsigned char slot : row.slots) {
        bool known = false;
        for (unsigned int k = 0; k < face.corners; ++k) {
            known = known || face.nodes[k] == slots[slot];
        }
        if (!known) {
            face.nodes[face.corners++] = slots[slot];
        }
    }
    return face.corners >= 3;
}

template <std::size_t count>
unsigned int addFaces(const unsigned int* slots, const FaceRow (&rows)[count], ElementFace* faces)
{
    unsigned int found = 0;
    for (unsigned int k = 0; k < count; ++k) {
        found += addFace(slots, rows[k], k, faces[found]) ? 1 : 0;
    }
    return found;
}

// addFaces needs room for one face more than it keeps.
unsigned int addSolidFaces(const unsigned int* slots, ElementShape shape, ElementFace* faces)
{
    switch (shape) {
    case ElementShape::Tetra:
        return addFaces(slots, tetraFaces, faces);
    case ElementShape::Pyramid:
    case ElementShape::Wedge:
        return addFaces(slots, wedgeFaces, faces);
    default:
        return addFaces(slots, hexaFaces, faces);
    }
}

} // namespace

ElementShape shapeOf(const PartMesh& part, std::uint32_t element)
{
    const unsigned int* slots = slotsOf(part, element);
    const unsigned int stride = part.slotCount;
    switch (part.kind) {
    case ElementKind::Shell:
        if (stride != 4 || !allNodes(part, slots, 4)) {
            return ElementShape::None;
        }
        return slots[2] == slots[3] ? ElementShape::Triangle : ElementShape::Quad;
    case ElementKind::Solid:
        return solidShape(part, element);
    case ElementKind::Beam:
    case ElementKind::Discrete:
        return stride == 3 && allNodes(part, slots, 2) ? ElementShape::Line : ElementShape::None;
    default:
        return ElementShape::None;
    }
}

namespace {

// Of a shape whose slots are all different.
void setFace(const unsigned int* slots, const FaceRow& row, unsigned int corners, unsigned int number,
             ElementFace& face)
{
    for (unsigned int k = 0; k < 3; ++k) {
        face.nodes[k] = slots[row.slots[k]];
    }
    face.nodes[3] = corners == 4 ? slots[row.slots[3]] : noCorner;
    face.corners = static_cast<std::uint8_t>(corners);
    face.number = static_cast<std::uint8_t>(number);
}

} // namespace

unsigned int facesOf(const PartMesh& part, std::uint32_t element, ElementShape shape, ElementFace faces[maxFaces])
{
    if (shape == ElementShape::None || shape == ElementShape::Line) {
        return 0;
    }
    const unsigned int* slots = slotsOf(part, element);
    if (shape == ElementShape::Hexa) {
        for (unsigned int k = 0; k < 6; ++k) {
            setFace(slots, hexaFaces[k], 4, k, faces[k]);
        }
        return 6;
    }
    if (shape == ElementShape::Triangle || shape == ElementShape::Quad) {
        return addFace(slots, {{0, 1, 2, 3}}, 0, faces[0]) ? 1 : 0;
    }
    ElementFace found[maxFaces + 1];
    const unsigned int count = addSolidFaces(slots, shape, found);
    for (unsigned int k = 0; k < count; ++k) {
        faces[k] = found[k];
    }
    return count;
}

ElementFace faceAt(const PartMesh& part, std::uint32_t element, ElementShape shape, unsigned int index)
{
    ElementFace faces[maxFaces];
    if (shape == ElementShape::Hexa) {
        setFace(slotsOf(part, element), hexaFaces[index], 4, index, faces[0]);
        return faces[0];
    }
    facesOf(part, element, shape, faces);
    return faces[index];
}

unsigned int cornersOf(const PartMesh& part, std::uint32_t element, ElementShape shape, std::uint32_t nodes[8])
{
    static constexpr unsigned int slotsThatCount[] = {0, 2, 3, 4, 4, 8, 8, 8, 8};
    const unsigned int* slots = slotsOf(part, element);
    unsigned int count = 0;
    for (unsigned int k = 0; k < slotsThatCount[static_cast<int>(shape)]; ++k) {
        bool known = false;
        for (unsigned int j = 0; j < count; ++j) {
            known = known || nodes[j] == slots[k];
        }
        if (!known || shape == ElementShape::Line) {
            nodes[count++] = slots[k];
        }
    }
    return count;
}

} // namespace kvo
