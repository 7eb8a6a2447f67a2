// Building and searching of an id index.
#include "id_index.h"

#include <algorithm>

namespace kvo {

namespace {

// A table may be this many times longer than its ids before a sorted list (16 bytes an id) is the better choice.
constexpr std::uint64_t tableSlack = 4;
constexpr std::uint64_t smallTable = 4096;

} // namespace

IdIndex::IdIndex(const std::vector<std::int64_t>& ids)
{
    if (ids.empty()) {
        return;
    }
    const auto range = std::minmax_element(ids.begin(), ids.end());
    low = *range.first;
    high = *range.second;
    const std::uint64_t span = static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low);
    if (span < tableSlack * ids.size() + smallTable) {
        table.assign(span + 1, none);
        for (std::size_t k = 0; k < ids.size(); ++k) {
            table[static_cast<std::uint64_t>(ids[k] - low)] = static_cast<std::uint32_t>(k);
        }
        return;
    }
    sorted.reserve(ids.size());
    for (std::size_t k = 0; k < ids.size(); ++k) {
        sorted.emplace_back(ids[k], static_cast<std::uint32_t>(k));
    }
    std::sort(sorted.begin(), sorted.end());
}

std::uint32_t IdIndex::findSorted(std::int64_t id) const
{
    // The last of equal ids has the highest position.
    const auto after = std::upper_bound(sorted.begin(), sorted.end(), std::make_pair(id, none));
    return after != sorted.begin() && std::prev(after)->first == id ? std::prev(after)->second : none;
}

} // namespace kvo
