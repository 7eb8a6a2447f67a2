// Sets and groups of a scope.
#include "inp_scope.h"

#include <set>

#include "keyword_line.h"

namespace kvo {

InpSet& namedSet(InpSets& sets, const std::string& name)
{
    InpSet& set = sets[nameKey(name)];
    if (set.name.empty()) {
        set.name = name;
    }
    return set;
}

void InpSet::add(std::int64_t id)
{
    if (!ranges.empty()) {
        IdRange& last = ranges.back();
        if (last.step == 1 && last.last + 1 == id) {
            last.last = id;
            return;
        }
    }
    ranges.push_back({id, id, 1});
}

void InpSet::addRange(std::int64_t first, std::int64_t last, std::int64_t step)
{
    ranges.push_back({first, last, step});
}

void forEachRange(const InpSets& sets, const std::string& key, const std::function<void(const IdRange&)>& visit)
{
    std::set<std::string> seen;
    std::vector<std::string> open = {key};
    while (!open.empty()) {
        const std::string current = open.back();
        open.pop_back();
        const auto found = sets.find(current);
        if (found == sets.end() || !seen.insert(current).second) {
            continue;
        }
        for (const IdRange& range : found->second.ranges) {
            visit(range);
        }
        for (const std::string& member : found->second.members) {
            open.push_back(member);
        }
    }
}

std::uint32_t InpScope::groupIndex(const std::string& groupName)
{
    const auto found = groupByKey.emplace(nameKey(groupName), static_cast<std::uint32_t>(groups.size()));
    if (found.second) {
        groups.push_back(groupName);
    }
    return found.first->second;
}

InpSet& InpScope::nodeSet(const std::string& setName)
{
    return namedSet(nodeSets, setName);
}

InpSet& InpScope::elementSet(const std::string& setName)
{
    return namedSet(elementSets, setName);
}

} // namespace kvo
