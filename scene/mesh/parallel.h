// Loops over ranges on all cores.
#ifndef KVO_SCENE_PARALLEL_H
#define KVO_SCENE_PARALLEL_H

#include <cstddef>
#include <functional>

namespace kvo {

// Cores that parallelFor uses, at least 1.
unsigned int workerCount();

// Into how many pieces work on `count` items is divided where each piece has results of its own: a few per core, of at
// least `grain` items, and at least 1.
std::size_t pieceCount(std::size_t count, std::size_t grain);

// Calls body(begin, end) for pieces of [0, count) of at least `grain` items each, on all cores, and returns when all
// are done. Pieces are disjoint and cover the range; their number and order are not fixed. Small counts run on the
// calling thread. body must not throw.
void parallelFor(std::size_t count, std::size_t grain, const std::function<void(std::size_t, std::size_t)>& body);

} // namespace kvo

#endif
