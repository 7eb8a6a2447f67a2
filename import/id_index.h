// From external ids to positions: a table in pages where the ids lie in groups, as decks number their assemblies, a
// sorted list where they are scattered.
#ifndef KVO_IMPORT_ID_INDEX_H
#define KVO_IMPORT_ID_INDEX_H

#include <cstdint>
#include <utility>
#include <vector>

namespace kvo {

class IdIndex
{
public:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    IdIndex() = default;
    // Position k belongs to ids[k]; of several equal ids the last one counts.
    explicit IdIndex(const std::vector<std::int64_t>& ids);

    std::uint32_t find(std::int64_t id) const
    {
        if (id < low || id > high) {
            return none;
        }
        if (pages.empty()) {
            return findSorted(id);
        }
        const std::uint64_t offset = static_cast<std::uint64_t>(id) - static_cast<std::uint64_t>(low);
        return table[(static_cast<std::uint64_t>(pages[offset / pageSize]) * pageSize) + offset % pageSize];
    }

private:
    static constexpr std::uint64_t pageSize = 1024;

    bool makePages(const std::vector<std::int64_t>& ids);
    std::uint32_t findSorted(std::int64_t id) const;

    std::int64_t low = 0;
    std::int64_t high = -1;
    std::vector<std::uint32_t> pages; // by (id - low) / pageSize; 0: the empty page
    std::vector<std::uint32_t> table; // positions, a page after the other
    std::vector<std::pair<std::int64_t, std::uint32_t>> sorted;
};

} // namespace kvo

#endif
