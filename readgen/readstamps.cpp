// The stamps of the reader objects that live.
#include "readstamps.h"

#include <mutex>
#include <unordered_map>

namespace readgen {

namespace {

struct Stamps
{
    std::mutex mutex;
    std::unordered_map<const void*, std::uint64_t> byReader;
};

// Never destroyed: readers may live in static objects of the program, which end in an order that nobody knows.
Stamps& stamps()
{
    static Stamps& all = *new Stamps;
    return all;
}

} // namespace

void setStamp(const void* reader, std::uint64_t stamp)
{
    const std::lock_guard<std::mutex> lock(stamps().mutex);
    if (stamp == 0) {
        stamps().byReader.erase(reader);
    } else {
        stamps().byReader[reader] = stamp;
    }
}

std::uint64_t stampOf(const void* reader)
{
    const std::lock_guard<std::mutex> lock(stamps().mutex);
    const auto found = stamps().byReader.find(reader);
    return found == stamps().byReader.end() ? 0 : found->second;
}

} // namespace readgen
