// Items sorted into numbered buckets by counting, on all cores: no comparison sort, no map, two passes.
#ifndef KVO_SCENE_BUCKETS_H
#define KVO_SCENE_BUCKETS_H

#include <atomic>
#include <cstddef>
#include <vector>

namespace kvo {

template <class Entry> struct Buckets
{
    std::vector<std::size_t> first; // one more than buckets
    std::vector<Entry> entries;     // within a bucket in no fixed order

    const Entry* begin(std::size_t bucket) const { return entries.data() + first[bucket]; }
    const Entry* end(std::size_t bucket) const { return entries.data() + first[bucket + 1]; }
};

// emitAll(put) calls put(bucket, entry) for every entry, from any number of threads; it is called twice and must put
// the same entries both times.
template <class Entry, class EmitAll> Buckets<Entry> fillBuckets(std::size_t count, const EmitAll& emitAll)
{
    Buckets<Entry> buckets;
    std::vector<std::atomic<std::size_t>> next(count);
    emitAll([&](std::size_t bucket, const Entry&) { next[bucket].fetch_add(1, std::memory_order_relaxed); });
    buckets.first.resize(count + 1);
    std::size_t sum = 0;
    for (std::size_t k = 0; k < count; ++k) {
        buckets.first[k] = sum;
        sum += next[k].exchange(sum, std::memory_order_relaxed);
    }
    buckets.first[count] = sum;
    buckets.entries.resize(sum);
    emitAll([&](std::size_t bucket, const Entry& entry) {
        buckets.entries[next[bucket].fetch_add(1, std::memory_order_relaxed)] = entry;
    });
    return buckets;
}

} // namespace kvo

#endif
