#include "pick_elements.h"

#include "mantypes.h"

namespace kvo {

namespace {

constexpr std::uint8_t allSlots[] = {0, 1, 2, 3, 4, 5, 6, 7};
constexpr std::uint8_t wedgeSlots[] = {0, 1, 2, 3, 4, 6};

constexpr PickFace quadFaces[] = {{{0, 1, 2, 3}}};
constexpr PickFace tetraFaces[] = {{{0, 1, 2, 2}}, {{0, 1, 3, 3}}, {{0, 3, 2, 2}}, {{1, 2, 3, 3}}};
constexpr PickFace wedgeFaces[] = {{{0, 1, 2, 3}}, {{1, 2, 6, 4}}, {{3, 0, 4, 6}}, {{0, 1, 4, 4}}, {{2, 3, 6, 6}}};
constexpr PickFace hexaFaces[] = {{{0, 1, 2, 3}}, {{1, 2, 6, 5}}, {{4, 5, 6, 7}},
                                  {{3, 0, 4, 7}}, {{2, 3, 7, 6}}, {{0, 1, 5, 4}}};

constexpr PickForm quadForm = {4, allSlots, 1, quadFaces, false};
constexpr PickForm tetraForm = {4, allSlots, 4, tetraFaces, false};
constexpr PickForm wedgeForm = {6, wedgeSlots, 5, wedgeFaces, false};
constexpr PickForm hexaForm = {8, allSlots, 6, hexaFaces, false};
constexpr PickForm lineForm = {2, allSlots, 0, nullptr, true};

// Told by fewer repeated slots than in a picture: slots 5 = 6 (counted from 1) alone make a wedge.
const PickForm* solidForm(const unsigned int* slots, unsigned int stride)
{
    if (stride == 10) {
        return &tetraForm;
    }
    if (stride != 8) {
        return nullptr;
    }
    if (slots[3] == slots[4]) {
        return &tetraForm;
    }
    return slots[4] == slots[5] ? &wedgeForm : &hexaForm;
}

const PickForm* formBySlots(const PartMesh& part, const unsigned int* slots)
{
    const unsigned int stride = part.slotCount;
    switch (part.kind) {
    case ElementKind::Shell:
        return stride == 4 ? &quadForm : nullptr;
    case ElementKind::Solid:
        return solidForm(slots, stride);
    case ElementKind::Beam:
    case ElementKind::Discrete:
        return stride == 3 ? &lineForm : nullptr;
    default:
        return nullptr;
    }
}

} // namespace

const PickForm* pickFormOf(const PartMesh& part, std::uint32_t element)
{
    const unsigned int* slots = slotsOf(part, element);
    const PickForm* form = formBySlots(part, slots);
    if (form == nullptr) {
        return nullptr;
    }
    unsigned int largest = 0;
    for (unsigned int k = 0; k < form->corners; ++k) {
        const unsigned int node = slots[form->cornerSlots[k]];
        largest = node > largest ? node : largest;
    }
    return largest < part.nodeCount ? form : nullptr;
}

std::uint32_t thirdNodeOf(const PartMesh& part, std::uint32_t element)
{
    if (part.kind != ElementKind::Beam) {
        return noCorner;
    }
    const unsigned int node = slotsOf(part, element)[2];
    return node < part.nodeCount ? node : noCorner;
}

bool isPickable(const PartMesh& part, PickType type)
{
    return entityCountOf(part, type) > 0 && !(type == PickType::Part && part.kind == ElementKind::Beam);
}

std::uint32_t entityCountOf(const PartMesh& part, PickType type)
{
    if (type != PickType::Node) {
        return part.elementCount;
    }
    return part.positions == nullptr ? 0 : part.nodeCount;
}

} // namespace kvo
