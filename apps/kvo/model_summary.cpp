// Counting.
#include "model_summary.h"

#include <numeric>

#include "model_source.h"
#include "vocabulary.h"

namespace kvo {

ModelTotals countModel(const ModelInfo& info)
{
    ModelTotals out;
    out.nodes = std::accumulate(info.numNodes.begin(), info.numNodes.end(), 0ull);
    for (const ModelPartInfo& part : info.parts) {
        out.elements += part.numElements;
        out.elementsByKind[kindName(part.part.drawType)] += part.numElements;
    }
    return out;
}

std::string counted(unsigned long long count, const std::string& singular)
{
    return std::to_string(count) + " " + singular + (count == 1 ? "" : "s");
}

std::vector<std::string> describeModel(const ModelSource& source)
{
    const ModelTotals totals = countModel(source.info());
    std::vector<std::string> out = {source.title(), counted(source.info().parts.size(), "part"),
                                    counted(totals.nodes, "node"), counted(totals.elements, "element")};
    for (const auto& entry : totals.elementsByKind) {
        out.push_back("  " + std::to_string(entry.second) + " " + entry.first);
    }
    const float* extents = source.info().extents;
    char line[80];
    out.push_back("");
    for (int axis = 0; axis < 3; ++axis) {
        std::snprintf(line, sizeof line, "%c %.5g .. %.5g", "xyz"[axis], extents[2 * axis], extents[2 * axis + 1]);
        out.push_back(line);
    }
    return out;
}

} // namespace kvo
