#include "parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <limits>
#include <mutex>
#include <thread>
#include <vector>

namespace kvo {

namespace {

// What the threads share: the next task, and the failure with the lowest number. Tasks start in order, so that every
// task below a failed one is done or under way when no more are started.
class TaskList
{
public:
    TaskList(std::size_t tasks, const std::function<void(std::size_t)>& what) : count(tasks), task(what) {}

    void work()
    {
        for (std::size_t k = next++; k < count && !stopped; k = next++) {
            try {
                task(k);
            } catch (...) {
                fail(k);
            }
        }
    }

    void rethrow() const
    {
        if (failure) {
            std::rethrow_exception(failure);
        }
    }

private:
    void fail(std::size_t k)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        stopped = true;
        if (k < failed) {
            failed = k;
            failure = std::current_exception();
        }
    }

    const std::size_t count;
    const std::function<void(std::size_t)>& task;
    std::atomic<std::size_t> next{0};
    std::atomic<bool> stopped{false};
    std::mutex mutex;
    std::size_t failed = std::numeric_limits<std::size_t>::max();
    std::exception_ptr failure;
};

// False where no further thread is to be had.
bool startThread(std::vector<std::thread>& threads, TaskList& list)
{
    try {
        threads.emplace_back([&list] { list.work(); });
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

unsigned int workerCount()
{
    return std::max(1u, std::thread::hardware_concurrency());
}

std::size_t pieceCount(std::size_t count, std::size_t grain)
{
    return std::max<std::size_t>(1, std::min<std::size_t>(4 * workerCount(), count / grain));
}

void runTasks(std::size_t count, unsigned int numThreads, const std::function<void(std::size_t)>& task)
{
    TaskList list(count, task);
    std::vector<std::thread> threads;
    const std::size_t wanted = std::min<std::size_t>(numThreads, count);
    while (threads.size() + 1 < wanted && startThread(threads, list)) {
    }
    list.work();
    for (std::thread& thread : threads) {
        thread.join();
    }
    list.rethrow();
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
    runTasks((count + piece - 1) / piece, static_cast<unsigned int>(workers),
             [&](std::size_t k) { body(k * piece, std::min(count, (k + 1) * piece)); });
}

} // namespace kvo
