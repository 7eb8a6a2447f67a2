// Numbers on the command line.
#ifndef KVO_NUMBERS_H
#define KVO_NUMBERS_H

#include <cstddef>
#include <string>
#include <vector>

namespace kvo {

// "1,2.5,-3": between least and most numbers. Throws UsageError, "OPTION: "..." is not USAGE".
std::vector<float> parseNumbers(const std::string& text, const std::string& option, std::size_t least, std::size_t most,
                                const std::string& usage);

} // namespace kvo

#endif
