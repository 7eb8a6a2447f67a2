// Elements or nodes of one part in an order along a space-filling curve, with boxes around blocks of them and boxes
// around blocks of boxes: finds what may lie in a small volume without looking at the rest.
#ifndef KVO_SCENE_BLOCK_INDEX_H
#define KVO_SCENE_BLOCK_INDEX_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "pick_volume.h"
#include <kvo/part_mesh.h>

namespace kvo {

// Of all nodes of a part. On all cores.
FloatBox boxOfNodes(const PartMesh& part);

class BlockIndex
{
public:
    // Of the elements (or nodes) of a part whose nodes lie in `bounds`; on all cores. Elements of no form are in it and
    // in no box.
    BlockIndex(const PartMesh& part, PickType type, const FloatBox& bounds);

    typedef std::function<Overlap(const FloatBox&)> Test;
    // 0-based numbers of all entities in blocks that the test does not call Outside, in no order; false, with a part of
    // them, when there are more than `most`.
    bool find(const Test& test, std::size_t most, std::vector<std::uint32_t>& found) const;

    std::size_t bytes() const;

private:
    void buildBoxes(const PartMesh& part, PickType type);
    bool descend(const Test& test, std::size_t level, std::size_t box, std::size_t most,
                 std::vector<std::uint32_t>& found) const;

    std::vector<std::uint32_t> order;
    std::vector<std::vector<FloatBox>> levels; // the first: blocks of `order`; then boxes of boxes, up to a single one
};

} // namespace kvo

#endif
