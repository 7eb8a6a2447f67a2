// Work in a child process, for libraries that damaged files can make crash or write about to the standard streams.
#ifndef KVO_CONVERT_ISOLATED_H
#define KVO_CONVERT_ISOLATED_H

#include <cstdint>
#include <functional>
#include <string>

namespace kvo {

struct IsolatedResult
{
    bool finished = false; // else ending says how it ended
    std::string text;      // what the work returned
    std::string ending;    // "was ended by signal 11 (Segmentation fault)"
};

// Runs the work in a child process whose standard streams lead nowhere, and waits for it. The work must catch what it
// throws: std::bad_alloc too, where it asks for more than mostBytes of memory beside what is in use.
IsolatedResult runIsolated(const std::function<std::string()>& work, std::uint64_t mostBytes);

// For a file of this size: a thousand times of it, which is what the densest compression makes, and 4 GiB at least; but
// no more memory than the machine has.
std::uint64_t memoryForFile(std::uint64_t fileBytes);

} // namespace kvo

#endif
