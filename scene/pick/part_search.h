// The hits of one part, found through its index or by looking at everything, whichever is quicker.
#ifndef KVO_SCENE_PART_SEARCH_H
#define KVO_SCENE_PART_SEARCH_H

#include <cstdint>
#include <memory>
#include <vector>

#include "block_index.h"
#include "region_test.h"

namespace kvo {

// A hit without the words around it.
struct RawHit
{
    float depth; // as recorded
    std::uint32_t part;
    std::uint32_t entity; // 0-based; of a part the element that is nearest
};

// What is built for one part, and the arrays that it was built from.
struct PartCache
{
    // Drops everything when the part's record holds other arrays than last time.
    void follow(const PartMesh& part);
    void clear();

    const FloatBox& boxOf(const PartMesh& part);
    const BlockIndex& indexOf(const PartMesh& part, PickType type);
    std::size_t bytes() const;

private:
    const void* arrays[2] = {nullptr, nullptr};
    std::uint32_t sizes[4] = {0, 0, 0, 0};
    bool boxKnown = false;
    FloatBox box = {};
    std::unique_ptr<BlockIndex> elements;
    std::unique_ptr<BlockIndex> nodes;
};

// Parts of fewer elements or nodes than this are searched by one thread, so that many parts can be searched at once.
constexpr std::uint32_t largePart = 65536;
// Parts of no more than this have no index.
constexpr std::uint32_t fewEntities = 2048;

// Appends the hits of a part by their numbers; of a part pick at most one. partNumber: 0-based.
void searchPart(const PartMesh& part, std::uint32_t partNumber, PartCache& cache, PickType type, const RegionTest& test,
                std::vector<RawHit>& hits);

} // namespace kvo

#endif
