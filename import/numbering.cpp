// Checks of id arrays.
#include "numbering.h"

#include <algorithm>
#include <functional>

namespace kvo {

std::string numberingFault(std::vector<std::int64_t> ids, std::size_t count)
{
    if (ids.size() != count) {
        return "there are " + std::to_string(ids.size()) + " ids for " + std::to_string(count);
    }
    if (std::adjacent_find(ids.begin(), ids.end(), std::greater_equal<std::int64_t>()) != ids.end()) {
        std::sort(ids.begin(), ids.end());
    }
    if (!ids.empty() && ids.front() < 1) {
        return "the id " + std::to_string(ids.front()) + " is below 1";
    }
    if (!ids.empty() && ids.back() > maxModelId) {
        return "the id " + std::to_string(ids.back()) + " is above " + std::to_string(maxModelId) +
               ", the highest that a model holds";
    }
    const auto twice = std::adjacent_find(ids.begin(), ids.end());
    return twice == ids.end() ? std::string() : "two have the id " + std::to_string(*twice);
}

} // namespace kvo
