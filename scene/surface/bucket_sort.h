// A counting sort into buckets on all cores.
#ifndef KVO_SCENE_BUCKET_SORT_H
#define KVO_SCENE_BUCKET_SORT_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "parallel.h"
#include "raw_vector.h"

namespace kvo {

// visitPiece(piece, put) calls put(bucket, ref) for everything in one piece of the work; it is called twice for every
// piece and must do the same both times. Afterwards the refs of bucket b are refs[starts[b]] to refs[starts[b + 1] -
// 1]. Pieces count into rows of their own, then write without locks.
template <class VisitPiece>
void sortIntoBuckets(std::size_t pieces, std::size_t buckets, const VisitPiece& visitPiece,
                     std::vector<std::size_t>& starts, RawVector<std::uint32_t>& refs)
{
    std::vector<std::size_t> counts(pieces * buckets, 0);
    const auto eachPiece = [&](auto&& work) {
        parallelFor(pieces, 1, [&](std::size_t begin, std::size_t end) {
            for (std::size_t piece = begin; piece < end; ++piece) {
                std::size_t* row = &counts[piece * buckets];
                visitPiece(piece, [&](std::size_t bucket, std::uint32_t ref) { work(row[bucket], ref); });
            }
        });
    };
    eachPiece([](std::size_t& count, std::uint32_t) { ++count; });
    starts.assign(buckets + 1, 0);
    std::size_t total = 0;
    for (std::size_t bucket = 0; bucket < buckets; ++bucket) {
        starts[bucket] = total;
        for (std::size_t piece = 0; piece < pieces; ++piece) {
            const std::size_t count = counts[piece * buckets + bucket];
            counts[piece * buckets + bucket] = total;
            total += count;
        }
    }
    starts[buckets] = total;
    refs.resize(total);
    eachPiece([&refs](std::size_t& at, std::uint32_t ref) { refs[at++] = ref; });
}

} // namespace kvo

#endif
