// What an input deck defines between its keywords: the deck itself, a part, an instance, or the assembly each have
// nodes, elements, sets and sections of their own.
#ifndef KVO_IMPORT_ABAQUS_INP_SCOPE_H
#define KVO_IMPORT_ABAQUS_INP_SCOPE_H

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "mesh.h"
#include "transform.h"

namespace kvo {

// Ids and names of further sets. Runs of consecutive ids take one range.
struct InpSet
{
    std::string name; // as first written
    std::vector<IdRange> ranges;
    std::vector<std::string> members; // names of sets, as nameKey()
    bool unsorted = false;            // keeps the deck's order where order matters
    Place place;                      // of the card that last added to it by name

    void add(std::int64_t id);
    void addRange(std::int64_t first, std::int64_t last, std::int64_t step);
};

using InpSets = std::map<std::string, InpSet>; // by nameKey()

// The set of that name, made if there is none.
InpSet& namedSet(InpSets& sets, const std::string& name);

// Calls visit for every range of the set and of the sets in it, each set once. Members that are no sets are passed
// over.
void forEachRange(const InpSets& sets, const std::string& key, const std::function<void(const IdRange&)>& visit);

struct InpSection
{
    std::string kind;  // "solid section"
    std::string elset; // as written
    std::string material;
    Place place;
    bool layered = false;   // its data lines are layers
    bool nonlinear = false; // they are a table of forces
    bool varies = false;    // its thickness is given node by node or element by element
    SectionData data;
    bool hasDirection = false;
    Vec3 direction = {0, 0, 0}; // n1 of beams
};

// Sets of another scope's ids.
struct ForeignSets
{
    InpSets nodes;
    InpSets elements;
};

// The node of another scope that an element of the assembly names ("PLATE-1.12").
struct ForeignNode
{
    std::string instance; // nameKey()
    std::int64_t id;
};

// Elements name their k-th foreign node by this id.
constexpr std::int64_t foreignNodeId(std::size_t k)
{
    return -2 - static_cast<std::int64_t>(k);
}

struct InpScope
{
    std::string name;     // of the part or instance, as written; empty for the deck
    std::string partName; // instances only: nameKey() of the part
    Place place;
    Transform placement; // instances only
    MeshFile mesh;       // ElementBlock::part is an index into groups here
    InpSets nodeSets;
    InpSets elementSets;
    std::vector<std::string> groups; // elements by the set of their own *ELEMENT card, or by family; as written
    std::vector<InpSection> sections;
    std::vector<ForeignNode> foreignNodes;
    std::map<std::string, ForeignSets> foreignSets; // by nameKey() of the instance

    bool empty() const { return mesh.nodeIds.empty() && mesh.blocks.empty(); }
    std::uint32_t groupIndex(const std::string& name);
    InpSet& nodeSet(const std::string& name);
    InpSet& elementSet(const std::string& name);

private:
    std::unordered_map<std::string, std::uint32_t> groupByKey;
};

} // namespace kvo

#endif
