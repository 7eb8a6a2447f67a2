#include "parallel.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace kvo {

unsigned int workerCount()
{
    return std::max(1u, std::thread::hardware_concurrency());
}

std::size_t pieceCount(std::size_t count, std::size_t grain)
{
    return std::max<std::size_t>(1, std::min<std::size_t>(4 * workerCount(), count / grain));
}

void parallelFor(std::size_t count, std::size_t grain, const std::function<void(std::size_t, std::size_t)>& body)
{
    grain = std::max<std::size_t>(grain, 1);
    const std::size_t workers = std::min<std::size_t>(workerCount(), count / grain);
    if (workers < 2) {
        if (count > 0) {
            body(0, count);
        }
        return;
    }
    // Several pieces a worker, so that a slow piece does not leave the others waiting.
    const std::size_t piece = std::max(grain, count / (8 * workers));
    std::atomic<std::size_t> next{0};
    const auto work = [&] {
        for (;;) {
            const std::size_t begin = next.fetch_add(piece);
            if (begin >= count) {
                return;
            }
            body(begin, std::min(count, begin + piece));
        }
    };
    std::vector<std::thread> threads;
    for (std::size_t k = 1; k < workers; ++k) {
        threads.emplace_back(work);
    }
    work();
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace kvo
