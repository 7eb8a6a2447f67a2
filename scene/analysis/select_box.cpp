// Selecting by a box in model coordinates.
#include <algorithm>

#include "box_overlap.h"
#include "model_joints.h"
#include "vectors.h"
#include <kvo/select_more.h>

namespace kvo {

namespace {

bool allInside(const PartMesh& part, std::uint32_t element, ElementShape shape, const ModelBox& box)
{
    std::uint32_t nodes[8];
    const unsigned int count = cornersOf(part, element, shape, nodes);
    return std::all_of(nodes, nodes + count,
                       [&](std::uint32_t node) { return insideBox(box, vectors::placeOf(part, node)); });
}

} // namespace

ElementSet Selector::elementsInBox(const ModelBox& box, InBox rule) const
{
    ElementSet set(model);
    forElements(set.first, partsInScope(model.read(), scope),
                [&](unsigned int part, std::uint32_t element, std::size_t number) {
                    const PartMesh& info = model.asRead().meshes[part];
                    const ElementShape shape = shapeOf(info, element);
                    if (shape != ElementShape::None) {
                        set.marks[number] = rule == InBox::Inside ? allInside(info, element, shape, box)
                                                                  : elementTouchesBox(info, element, shape, box);
                    }
                });
    return set;
}

NodeSet Selector::nodesInBox(const ModelBox& box) const
{
    NodeSet set(model);
    forElements(set.first, partsInScope(model.read(), scope),
                [&](unsigned int part, std::uint32_t node, std::size_t number) {
                    Vector3 place;
                    set.marks[number] = nodePlace(model.asRead().meshes[part], node, place) && insideBox(box, place);
                });
    return set;
}

} // namespace kvo
