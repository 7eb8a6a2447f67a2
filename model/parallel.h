// Loops on several threads. Where no further thread can be created, those that there are do the work.
#ifndef KVO_MODEL_PARALLEL_H
#define KVO_MODEL_PARALLEL_H

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
// calling thread. An exception of body is thrown on, once all threads have ended: the one from the lowest piece when
// several failed. Some pieces are not done then.
void parallelFor(std::size_t count, std::size_t grain, const std::function<void(std::size_t, std::size_t)>& body);

// Runs task(0) ... task(count - 1) on up to that many threads, this one among them. Exceptions as above.
void runTasks(std::size_t count, unsigned int numThreads, const std::function<void(std::size_t)>& task);

} // namespace kvo

#endif
