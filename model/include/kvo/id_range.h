// Ids from one to another, a step apart: how decks list members, and how a host asks for elements and nodes. Ids are 64
// bits wide and may be negative, since decks' are; whoever looks ids up in a model passes over those it cannot hold.
//
//     kvo::IdRange one = {7, 7};
//     kvo::IdRange everyThird = {1, 100, 3}; // 1, 4, ... 100
#ifndef KVO_ID_RANGE_H
#define KVO_ID_RANGE_H

#include <cstdint>

namespace kvo {

struct IdRange
{
    std::int64_t first, last; // both belong to it, the last one if the step meets it; first > last is empty
    std::int64_t step = 1;    // a range with a step below 1 is empty

    bool empty() const { return first > last || step < 1; }

    // How many ids; 0 for an empty range, and for all 2^64 of them, whose number 64 bits do not hold.
    std::uint64_t size() const
    {
        if (empty()) {
            return 0;
        }
        const std::uint64_t length = static_cast<std::uint64_t>(last) - static_cast<std::uint64_t>(first);
        return length / static_cast<std::uint64_t>(step) + 1;
    }

    // The k-th id, for k below the size. Unsigned on the way, since a range may be longer than half of all numbers.
    std::int64_t at(std::uint64_t k) const
    {
        return static_cast<std::int64_t>(static_cast<std::uint64_t>(first) + k * static_cast<std::uint64_t>(step));
    }

    bool contains(std::int64_t id) const
    {
        const std::uint64_t offset = static_cast<std::uint64_t>(id) - static_cast<std::uint64_t>(first);
        return !empty() && id >= first && id <= last && offset % static_cast<std::uint64_t>(step) == 0;
    }
};

} // namespace kvo

#endif
