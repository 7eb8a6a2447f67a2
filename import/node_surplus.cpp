// The warning of elements with too many nodes.
#include "node_surplus.h"

namespace kvo {

const char* const warnMoreNodes = "elements with more nodes than their type has";

void warnOfMoreNodes(ImportLog& log, const Place& place, const std::string& type, std::int64_t element, std::size_t has,
                     std::size_t given)
{
    const std::string nodes = std::to_string(has);
    log.warn(warnMoreNodes, place,
             type + " element " + std::to_string(element) + " has " + nodes + " nodes, " + std::to_string(given) +
                 " are given; the first " + nodes + " are used");
}

} // namespace kvo
