// From positions to ids, names and coordinates.
#include "picked.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

#include "mantypes.h"
#include "session_model.h"
#include "text/printable.h"

namespace kvo {

namespace {

// How many of an element's slots are its corners. Solids of ten slots are tetrahedra with nodes between; beams and
// discretes are the line between their first two nodes.
unsigned int cornerSlots(const PartInfoStr& part)
{
    constexpr unsigned int tetraSlots = 10;
    const unsigned int stride = part.partElements.nodesPerElement;
    const bool four = part.partDrawType == SHELL || (part.partDrawType == SOLID && stride == tetraSlots);
    return std::min(stride, four ? 4u : part.partDrawType == SOLID ? 8u : 2u);
}

// The element's nodes, each once: shapes with fewer corners repeat some.
std::set<unsigned int> cornersOf(const PartInfoStr& part, unsigned int element)
{
    std::set<unsigned int> out;
    const std::size_t first = static_cast<std::size_t>(element) * part.partElements.nodesPerElement;
    for (unsigned int k = 0; k < cornerSlots(part) && first + k < part.partElements.numElements; ++k) {
        const unsigned int node = part.partElements.elmIndices[first + k];
        if (node < part.partNodes.numNodes) {
            out.insert(node);
        }
    }
    return out;
}

void meanOf(const PartInfoStr& part, const std::set<unsigned int>& nodes, double out[3])
{
    for (int axis = 0; axis < 3; ++axis) {
        double sum = 0;
        for (unsigned int node : nodes) {
            sum += part.partNodes.nodeValues[3 * static_cast<std::size_t>(node) + static_cast<std::size_t>(axis)];
        }
        out[axis] = nodes.empty() ? 0 : sum / static_cast<double>(nodes.size());
    }
}

void placeOf(const PartInfoStr& part, unsigned int type, unsigned int member, double out[3])
{
    if (type == PICK_TYPE_ELEMENT) {
        meanOf(part, cornersOf(part, member), out);
    } else if (type == PICK_TYPE_NODE) {
        meanOf(part, {member}, out);
    } else {
        for (int axis = 0; axis < 3; ++axis) {
            out[axis] = (static_cast<double>(part.partExtents[2 * axis]) + part.partExtents[2 * axis + 1]) / 2;
        }
    }
}

unsigned int idIn(const IdTable& ids, unsigned int position)
{
    return position < ids.size() ? ids[position] : 0;
}

} // namespace

std::vector<Picked> describeHits(const SessionModel& model, const ModelLabels& labels, unsigned int type,
                                 const std::vector<PickHit>& hits)
{
    std::vector<Picked> out;
    for (const PickHit& hit : hits) {
        const PartInfoStr& part = model.env().partsInfoList[hit.part];
        Picked picked;
        if (hit.part < labels.parts.size()) {
            picked.part = labels.parts[hit.part];
        }
        picked.number = hit.part + 1;
        picked.id = hit.id != 0                 ? hit.id
                    : type == PICK_TYPE_ELEMENT ? idIn(model.elementIds(hit.part), hit.member)
                    : type == PICK_TYPE_NODE    ? idIn(model.nodeIds(hit.part), hit.member)
                                                : picked.part.id;
        placeOf(part, type, hit.member, picked.at);
        picked.hit = hit;
        out.push_back(picked);
    }
    return out;
}

std::string formatCoordinate(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value + 0.0);
    return text == std::string("-0") ? "0" : text;
}

std::string formatDepth(float depth)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.4f", static_cast<double>(depth));
    return text;
}

std::string formatPicked(const Picked& picked, unsigned int type)
{
    std::string out = "part " + std::to_string(picked.part.id) + " " + printable(picked.part.name);
    if (type != PICK_TYPE_PART) {
        out += (type == PICK_TYPE_ELEMENT ? ", element " : ", node ") + std::to_string(picked.id);
    }
    return out + ", at " + formatCoordinate(picked.at[0]) + " " + formatCoordinate(picked.at[1]) + " " +
           formatCoordinate(picked.at[2]) + ", depth " + formatDepth(picked.hit.depth);
}

} // namespace kvo
