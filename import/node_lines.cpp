#include "node_lines.h"

#include <algorithm>

namespace kvo {

bool NodeLines::Run::takes(std::size_t next, Line nextLine) const
{
    return next == node + count && nextLine.sourceFile == line.sourceFile &&
           (count == 1 ? nextLine.number >= line.number : nextLine.number == line.number + step * count);
}

void NodeLines::add(std::size_t node, Line line)
{
    if (runs.empty() || !runs.back().takes(node, line)) {
        runs.push_back({node, 1, line, 0});
        return;
    }
    Run& run = runs.back();
    run.step = run.count == 1 ? line.number - run.line.number : run.step;
    ++run.count;
}

void NodeLines::append(const NodeLines& others, std::size_t firstNode)
{
    for (Run run : others.runs) {
        run.node += firstNode;
        runs.push_back(run);
    }
}

NodeLines::Line NodeLines::at(std::size_t node) const
{
    const auto behind =
        std::upper_bound(runs.begin(), runs.end(), node, [](std::size_t n, const Run& run) { return n < run.node; });
    if (behind == runs.begin() || node - (behind - 1)->node >= (behind - 1)->count) {
        return {};
    }
    const Run& run = *(behind - 1);
    return {run.line.sourceFile, run.line.number + run.step * static_cast<std::uint32_t>(node - run.node)};
}

} // namespace kvo
