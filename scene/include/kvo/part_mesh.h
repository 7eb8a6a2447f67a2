// The nodes and elements of a part, whoever owns them: what is drawn, picked and measured.
//
//   const kvo::ElementMeasure size = kvo::measureElements(model.parts()[0], nullptr); // a Part is one
//
// Borrowed: valid as long as the arrays of the part that it was made of.
#ifndef KVO_SCENE_PART_MESH_H
#define KVO_SCENE_PART_MESH_H

#include <array>
#include <cstdint>

#include <kvo/model.h>

#include <kvoexport.h>

struct _PartInfoStr; // NOLINT(readability-identifier-naming): the drawing library calls it so

namespace kvo {

struct PartMesh
{
    PartMesh() = default;
    PartMesh(const Part& part); // NOLINT(google-explicit-constructor): a part is a mesh
    // A record of the drawing library (partstr.h).
    KVO_EXPORT PartMesh(const _PartInfoStr& record); // NOLINT(google-explicit-constructor): likewise

    ElementKind kind = ElementKind::Other;
    const float* positions = nullptr; // x, y, z a node; may be null
    std::uint32_t nodeCount = 0;
    const std::uint32_t* slots = nullptr; // slotCount node positions an element, as in Part; may name nodes that the
                                          // part has not: such elements are not drawn
    std::uint32_t slotCount = 0;
    std::uint32_t elementCount = 0; // 0 where positions or slots are null
    std::array<float, 6> extents = {0, 0, 0, 0, 0, 0};
    // Normals that a record of the drawing library holds, for SceneLight::Contract; else null.
    const float* elementNormals = nullptr;
    const float* nodeNormals = nullptr;
};

inline PartMesh::PartMesh(const Part& part)
    : kind(part.kind), positions(part.positions.data()), nodeCount(part.nodeCount()), slots(part.slots.data()),
      slotCount(part.slotCount), elementCount(part.elementCount()), extents(part.extents)
{
}

} // namespace kvo

#endif
