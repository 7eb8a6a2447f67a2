// Loops on all cores: every item once, failures carried out, fewer threads than wanted.
#include "parallel.h"

#ifndef _GNU_SOURCE
#define _GNU_SOURCE // RTLD_NEXT
#endif
#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

std::atomic<int> threadsLeft{1 << 30}; // that may still be created

class Parallel : public testing::Test
{
protected:
    ~Parallel() override { threadsLeft = 1 << 30; }
};

// How often each item was done, in pieces of 1.
std::vector<int> timesDone(std::size_t count)
{
    std::vector<std::atomic<int>> done(count);
    kvo::parallelFor(count, 1, [&](std::size_t begin, std::size_t end) {
        for (std::size_t k = begin; k < end; ++k) {
            ++done[k];
        }
    });
    return {done.begin(), done.end()};
}

template <class Action> std::string thrownBy(Action action)
{
    try {
        action();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing";
}

} // namespace

// Threads as long as the test lets them be.
extern "C" __attribute__((visibility("default"))) int
pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*), void* argument)
{
    typedef int (*Create)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    return threadsLeft-- > 0 ? create(thread, attributes, start, argument) : EAGAIN;
}

TEST_F(Parallel, EveryItemIsDoneOnce)
{
    for (std::size_t count : {0u, 1u, 2u, 7u, 1000u, 4097u}) {
        EXPECT_EQ(timesDone(count), std::vector<int>(count, 1)) << count;
    }
}

TEST_F(Parallel, ABodyThatThrowsIsHeardOf)
{
    const auto failing = [] {
        kvo::parallelFor(1000, 1, [](std::size_t begin, std::size_t end) {
            if (begin <= 700 && 700 < end) {
                throw std::runtime_error("item 700");
            }
        });
    };
    EXPECT_EQ(thrownBy(failing), "item 700");
    EXPECT_EQ(timesDone(50), std::vector<int>(50, 1)) << "and the next loop is well";
}

TEST_F(Parallel, OfSeveralFailuresTheLowestIsHeardOf)
{
    std::atomic<int> started{0};
    const auto failing = [&](std::size_t k) {
        ++started;
        if (k >= 5) {
            throw std::runtime_error("task " + std::to_string(k));
        }
    };
    for (unsigned int threads : {1u, 2u, 8u}) {
        started = 0;
        EXPECT_EQ(thrownBy([&] { kvo::runTasks(1000, threads, failing); }), "task 5");
        EXPECT_LT(started, 100) << "no more are started after a failure";
    }
}

TEST_F(Parallel, WithoutFurtherThreadsTheOthersDoTheWork)
{
    for (int left : {0, 1, 2}) {
        threadsLeft = left;
        std::vector<std::atomic<int>> done(1000);
        kvo::runTasks(done.size(), 4, [&](std::size_t k) { ++done[k]; });
        EXPECT_EQ(std::vector<int>(done.begin(), done.end()), std::vector<int>(1000, 1));
        EXPECT_EQ(threadsLeft, -1) << "one more was wanted, and none after that";
    }
}
