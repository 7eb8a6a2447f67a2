// Preloaded into a test: Mesa's drawing threads stay a while in the call that says "drawn", and the program ends with a
// message when anybody takes what they say it with away meanwhile. At its end it says how often that could have
// happened.
#ifndef _GNU_SOURCE
#define _GNU_SOURCE // RTLD_NEXT
#endif
#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int slots = 64;
std::atomic<pthread_cond_t*> speaking[slots]; // conditions that a drawing thread is signalling
std::atomic<int> signals;

struct AtTheEnd
{
    ~AtTheEnd() { std::printf("fences lived through %d signals\n", signals.load()); }
} atTheEnd;

bool isDrawingThread()
{
    char name[16] = "";
    pthread_getname_np(pthread_self(), name, sizeof name);
    return std::strncmp(name, "llvmpipe", 8) == 0;
}

template <class Function> Function theirs(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" __attribute__((visibility("default"))) int pthread_cond_broadcast(pthread_cond_t* condition)
{
    static const auto broadcast = theirs<int (*)(pthread_cond_t*)>("pthread_cond_broadcast");
    if (!isDrawingThread()) {
        return broadcast(condition);
    }
    int slot = 0;
    pthread_cond_t* none = nullptr;
    while (!speaking[slot].compare_exchange_strong(none, condition)) {
        none = nullptr;
        slot = (slot + 1) % slots;
    }
    ++signals;
    usleep(200);
    const int result = broadcast(condition);
    speaking[slot] = nullptr;
    return result;
}

extern "C" __attribute__((visibility("default"))) int pthread_cond_destroy(pthread_cond_t* condition)
{
    static const auto destroy = theirs<int (*)(pthread_cond_t*)>("pthread_cond_destroy");
    for (const std::atomic<pthread_cond_t*>& one : speaking) {
        if (one == condition) {
            std::fprintf(stderr, "a fence was destroyed while it was signalled\n");
            std::_Exit(99);
        }
    }
    return destroy(condition);
}
