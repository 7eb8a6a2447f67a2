#include "element_ids.h"

#include <algorithm>

namespace kvo {

namespace {

constexpr std::size_t fewElements = 1000; // looked up one by one in the map

bool holds(const UIUIMap& byId, std::uint32_t id, std::uint32_t element)
{
    const auto entry = byId.find(id);
    return entry != byId.end() && entry->second == element;
}

bool countUp(const UIUIMap& byId, std::uint32_t first, std::uint32_t elementCount)
{
    return byId.size() == elementCount && std::all_of(byId.begin(), byId.end(), [first](const auto& entry) {
               return entry.first - first == entry.second;
           });
}

} // namespace

void ElementIds::learn(const UIUIMap* byId, std::uint32_t elementCount, const std::vector<std::uint32_t>& elements)
{
    known = byId != nullptr && !byId->empty();
    if (!known || complete) {
        return;
    }
    // The lowest id tells which one element 0 would have; wrong guesses are found out.
    first = byId->begin()->first - byId->begin()->second;
    const bool few = elements.size() <= fewElements;
    if (few && std::all_of(elements.begin(), elements.end(),
                           [&](std::uint32_t element) { return holds(*byId, first + element, element); })) {
        return;
    }
    complete = true;
    if (!countUp(*byId, first, elementCount)) {
        makeTable(*byId, elementCount);
    }
}

void ElementIds::makeTable(const UIUIMap& byId, std::uint32_t elementCount)
{
    table.assign(std::max(elementCount, 1u), 0);
    for (const auto& [id, element] : byId) {
        if (element < elementCount && table[element] == 0) {
            table[element] = id;
        }
    }
}

} // namespace kvo
