// The deck's ids of a part's elements by their numbers: the other way round than records hold them.
#ifndef KVO_SCENE_ELEMENT_IDS_H
#define KVO_SCENE_ELEMENT_IDS_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "maptypes.h"

namespace kvo {

// Ids that count up with the elements, as in most decks, need no memory and no look at the whole map; any others a
// table of 4 bytes an element, made when first asked for.
class ElementIds
{
public:
    // Makes idOf valid for these 0-based elements. byId may be null.
    void learn(const UIUIMap* byId, std::uint32_t elementCount, const std::vector<std::uint32_t>& elements);

    // 0 for an element without an id. Only after learn() of the element.
    std::uint32_t idOf(std::uint32_t element) const
    {
        return !known ? 0 : table.empty() ? first + element : table[element];
    }

    std::size_t bytes() const { return table.capacity() * sizeof(table[0]); }

private:
    void makeTable(const UIUIMap& byId, std::uint32_t elementCount);

    bool known = false;      // there are ids
    bool complete = false;   // idOf is right for every element
    std::uint32_t first = 0; // id of element 0 where ids count up
    std::vector<std::uint32_t> table;
};

} // namespace kvo

#endif
