#include "pick_models.h"

#include <cmath>
#include <iterator>

namespace {

// The numbers of the slots that an element of a kind takes among its `corners` own nodes.
struct Kind
{
    unsigned int drawType;
    unsigned int corners;
    std::vector<unsigned int> slots;
};
const Kind kinds[] = {
    {SHELL, 4, {0, 1, 2, 3}},
    {SHELL, 3, {0, 1, 2, 2}},
    {SOLID, 8, {0, 1, 2, 3, 4, 5, 6, 7}},
    {SOLID, 6, {0, 1, 2, 3, 4, 4, 5, 5}},
    {SOLID, 4, {0, 1, 2, 3, 3, 3, 3, 3}},
    {SOLID, 5, {0, 1, 2, 3, 4, 4, 4, 4}},
    {SOLID, 7, {0, 1, 2, 3, 4, 5, 6, 6}}, // a hexahedron with one collapsed edge
    {SOLID, 7, {0, 1, 2, 3, 4, 4, 5, 6}}, // read as a wedge
    {BEAM, 3, {0, 1, 2}},
    {BEAM, 2, {0, 1, noNode}},
    {DISCRETE, 3, {0, 1, 2}},
};

void addNode(Dice& dice, const double* middle, double size, Floats& nodes)
{
    for (int axis = 0; axis < 3; ++axis) {
        nodes.push_back(static_cast<float>(middle[axis] + size * dice.between(-1, 1)));
    }
}

} // namespace

PartInfoStr randomPart(Dice& dice, const double* centre, double size)
{
    const unsigned int drawTypes[] = {SHELL, SOLID, SOLID, BEAM, DISCRETE};
    const unsigned int drawType = drawTypes[dice.below(5)];
    Floats nodes;
    Indices indices;
    for (unsigned int wanted = 1 + dice.below(12), made = 0; made < wanted;) {
        const Kind& kind = kinds[dice.below(std::size(kinds))];
        if (kind.drawType != drawType) {
            continue;
        }
        ++made;
        double middle[3];
        for (int axis = 0; axis < 3; ++axis) {
            middle[axis] = centre[axis] + size * dice.between(-1, 1);
        }
        const double elementSize = size * std::pow(10, dice.between(-3, 0.7));
        const unsigned int first = static_cast<unsigned int>(nodes.size() / 3);
        for (unsigned int k = 0; k < kind.corners; ++k) {
            addNode(dice, middle, dice.chance(0.1) ? 0 : elementSize, nodes);
        }
        const bool flat = dice.chance(0.1); // every corner the same node
        for (unsigned int slot : kind.slots) {
            indices.push_back(slot == noNode ? noNode : first + (flat ? 0 : slot));
        }
    }
    const unsigned int stride = drawType == SHELL ? 4 : drawType == SOLID ? 8 : 3;
    return makePart(drawType, stride, nodes, indices);
}

kvo::PickView topView(int width, int height)
{
    kvo::PickView view = {};
    for (int k = 0; k < 16; k += 5) {
        view.modelview[k] = view.projection[k] = 1;
    }
    view.projection[0] = 2.0 / width;
    view.projection[5] = 2.0 / height;
    view.projection[10] = 1.0 / 9999;
    view.projection[12] = view.projection[13] = -1;
    view.viewport[2] = width;
    view.viewport[3] = height;
    return view;
}
