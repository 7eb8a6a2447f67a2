// Elements with more nodes than their type has: every format takes the first ones, and says so in the same words.
#ifndef KVO_IMPORT_NODE_SURPLUS_H
#define KVO_IMPORT_NODE_SURPLUS_H

#include <cstdint>
#include <string>

#include "import_log.h"

namespace kvo {

extern const char* const warnMoreNodes; // kind of the warning

// "S4 element 7 has 4 nodes, 5 are given; the first 4 are used". type: as the format's users call it.
void warnOfMoreNodes(ImportLog& log, const Place& place, const std::string& type, std::int64_t element, std::size_t has,
                     std::size_t given);

} // namespace kvo

#endif
