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
    if (makePages(ids)) {
        return;
    }
    sorted.reserve(ids.size());
    for (std::size_t k = 0; k < ids.size(); ++k) {
        sorted.emplace_back(ids[k], static_cast<std::uint32_t>(k));
    }
    std::sort(sorted.begin(), sorted.end());
}

// False where the ids are too scattered for it.
bool IdIndex::makePages(const std::vector<std::int64_t>& ids)
{
    const std::uint64_t most = tableSlack * ids.size() + smallTable;
    const std::uint64_t span = static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low);
    if (span / pageSize >= most) {
        return false;
    }
    pages.assign(span / pageSize + 1, 0);
    const auto offsetOf = [&](std::int64_t id) {
        return static_cast<std::uint64_t>(id) - static_cast<std::uint64_t>(low);
    };
    std::uint32_t used = 1;
    for (const std::int64_t id : ids) {
        std::uint32_t& page = pages[offsetOf(id) / pageSize];
        used += page == 0;
        page = page == 0 ? used - 1 : page;
    }
    if (used * pageSize > most + pageSize) {
        pages = {};
        return false;
    }
    table.assign(used * pageSize, none);
    for (std::size_t k = 0; k < ids.size(); ++k) {
        const std::uint64_t offset = offsetOf(ids[k]);
        table[pages[offset / pageSize] * pageSize + offset % pageSize] = static_cast<std::uint32_t>(k);
    }
    return true;
}

std::uint32_t IdIndex::findSorted(std::int64_t id) const
{
    // The last of equal ids has the highest position.
    const auto after = std::upper_bound(sorted.begin(), sorted.end(), std::make_pair(id, none));
    return after != sorted.begin() && std::prev(after)->first == id ? std::prev(after)->second : none;
}

} // namespace kvo
