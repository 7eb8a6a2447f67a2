// Safe reading of part records, shared by normals, drawing, picking and selection. Private to render/.
#ifndef PART_ACCESS_H
#define PART_ACCESS_H

#include <GL/gl.h>

#include <cstddef>

#include "partstr.h"

// Whole elements of a part; the remainder of an index array that is no multiple of the stride is dropped.
inline unsigned int elementCount(const PartElementsStr& elements)
{
    return elements.nodesPerElement == 0 ? 0 : elements.numElements / elements.nodesPerElement;
}

// The index slots of element e when elements are read with the given step, or null when they lie past the array. The
// step is fixed by the draw type and may differ from the stride that counts the elements.
inline const unsigned int* elementSlots(const PartElementsStr& elements, unsigned int e, unsigned int step)
{
    const std::size_t first = static_cast<std::size_t>(e) * step;
    if (elements.elmIndices == nullptr || first + step > elements.numElements) {
        return nullptr;
    }
    return elements.elmIndices + first;
}

// The normals that a part is drawn with under a shade model: per element, per node, or none at all (another shade
// model, or normals that were never computed). A part without normals is not drawn.
struct PartNormals
{
    float* perElement;
    float* perNode;

    PartNormals(const PartInfoStr& part, int shadeModel)
        : perElement(shadeModel == GL_FLAT ? part.partElements.elmNormals : nullptr),
          perNode(shadeModel == GL_SMOOTH ? part.partNodes.nodeNormals : nullptr)
    {
    }
    bool none() const { return perElement == nullptr && perNode == nullptr; }
};

// Coordinates or normal of a node.
inline float* ofNode(float* values, unsigned int node)
{
    return values + 3 * static_cast<std::size_t>(node);
}

// PART_SHOWN and PART_HIDDEN change as a pair.
inline void showPart(PartInfoStr& part)
{
    part.partFlag |= PART_SHOWN;
    part.partFlag &= ~PART_HIDDEN;
}
inline void hidePart(PartInfoStr& part)
{
    part.partFlag |= PART_HIDDEN;
    part.partFlag &= ~PART_SHOWN;
}

// The mode values 2 and 4 of the display calls; any other value changes nothing.
inline void setPartVisibility(PartInfoStr& part, unsigned int mode)
{
    if (mode == PART_SHOWN) {
        showPart(part);
    } else if (mode == PART_HIDDEN) {
        hidePart(part);
    }
}

#endif
