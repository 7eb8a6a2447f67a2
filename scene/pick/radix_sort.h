// Stable sorting of numbered things by an unsigned key, on all cores.
#ifndef KVO_SCENE_RADIX_SORT_H
#define KVO_SCENE_RADIX_SORT_H

#include <cstdint>
#include <vector>

namespace kvo {

struct KeyedNumber
{
    std::uint32_t key;
    std::uint32_t number;
};

// Bits that a number takes: 0 for 0.
unsigned int bitsOf(std::uint32_t value);

// By the lowest `bits` bits of the keys; the others must be 0. Equal keys keep their order. O(items * bits / 11).
void sortByKey(std::vector<KeyedNumber>& items, unsigned int bits);

} // namespace kvo

#endif
