// Ranges of ids.
#include "id_set.h"

#include <algorithm>

namespace kvo {

namespace {

bool isKnown(const std::vector<std::int64_t>& known, std::int64_t id)
{
    return std::binary_search(known.begin(), known.end(), id);
}

// Are the ids of the range known, all of them?
bool isRun(const std::vector<std::int64_t>& known, const IdRange& range)
{
    const auto first = std::lower_bound(known.begin(), known.end(), range.first);
    const std::uint64_t beyond = range.size() - 1;
    return range.step == 1 && beyond < static_cast<std::uint64_t>(known.end() - first) && *first == range.first &&
           first[static_cast<std::ptrdiff_t>(beyond)] == range.last;
}

} // namespace

void IdSet::add(std::int64_t id)
{
    if (!ranges.empty() && ranges.back().step == 1 && ranges.back().last < id && ranges.back().last + 1 == id) {
        ranges.back().last = id;
        return;
    }
    ranges.push_back({id, id, 1});
}

void IdSet::addRange(std::int64_t first, std::int64_t last, std::int64_t step)
{
    ranges.push_back({first, last, step});
}

// Looks at the known ids of each range rather than at the ids of the range, which may be wider than any mesh.
std::uint64_t IdSet::keepKnown(const std::vector<std::int64_t>& known)
{
    if (ranges.size() == 1 && isRun(known, ranges.front())) {
        return 0;
    }
    std::vector<std::int64_t> kept;
    std::vector<std::int64_t> unknown;
    for (const IdRange& range : ranges) {
        auto at = std::lower_bound(known.begin(), known.end(), range.first);
        for (; at != known.end() && *at <= range.last; ++at) {
            if (range.contains(*at)) {
                kept.push_back(*at);
            }
        }
        const std::int64_t ends[] = {range.first, range.at(range.size() - 1)};
        for (const std::int64_t end : ends) {
            if (!isKnown(known, end)) {
                unknown.push_back(end);
            }
        }
    }
    for (std::vector<std::int64_t>* list : {&kept, &unknown}) {
        std::sort(list->begin(), list->end());
        list->erase(std::unique(list->begin(), list->end()), list->end());
    }
    ranges.clear();
    for (const std::int64_t id : kept) {
        add(id);
    }
    return unknown.size();
}

std::uint64_t IdSet::size() const
{
    std::uint64_t count = 0;
    for (const IdRange& range : ranges) {
        count += range.size();
    }
    return count;
}

void IdSet::forEach(const std::function<void(std::int64_t)>& visit) const
{
    for (const IdRange& range : ranges) {
        const std::uint64_t count = range.size();
        for (std::uint64_t k = 0; k < count; ++k) {
            visit(range.at(k));
        }
    }
}

} // namespace kvo
