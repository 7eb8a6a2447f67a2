// Work in a child process, for libraries that damaged files can make crash or write about to the standard streams.
#ifndef KVO_CONVERT_ISOLATED_H
#define KVO_CONVERT_ISOLATED_H

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
// throws.
IsolatedResult runIsolated(const std::function<std::string()>& work);

} // namespace kvo

#endif
