// From external ids to positions: a plain table where the ids lie close together, a sorted list where they do not.
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
        return table.empty() ? findSorted(id) : table[static_cast<std::uint64_t>(id - low)];
    }

private:
    std::uint32_t findSorted(std::int64_t id) const;

    std::int64_t low = 0;
    std::int64_t high = -1;
    std::vector<std::uint32_t> table; // by id - low
    std::vector<std::pair<std::int64_t, std::uint32_t>> sorted;
};

} // namespace kvo

#endif
