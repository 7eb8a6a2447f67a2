// Which part an element of a .msh file belongs to: its physical group, or else the entity of the geometry.
#ifndef KVO_IMPORT_MSH_GROUPS_H
#define KVO_IMPORT_MSH_GROUPS_H

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "mesh.h"

namespace kvo {

class MshGroups
{
public:
    static constexpr int anyDim = -1;
    using Key = std::pair<int, std::int64_t>; // dimension 0 to 3, tag

    explicit MshGroups(Mesh& mesh) : mesh(mesh) {}

    // Of a physical group. anyDim: the file does not say its dimension.
    void setName(Key group, const std::string& name) { names[group] = name; }
    // The physical groups of an entity; a tag below 0 is the group turned round.
    void addEntity(Key entity, std::vector<std::int64_t> groups);
    // A partition of an entity stands for it.
    void addPartition(Key entity, Key parent, std::vector<std::int64_t> groups);
    // Empty: in none.
    const std::vector<std::int64_t>& groupsOf(Key entity) const;

    // The part of an element: group is 0 where it is in none. Index into Mesh::parts.
    std::uint32_t partOf(int dim, std::int64_t group, std::int64_t entity);
    // An element that is in a group beside that of its part.
    void addMember(Key group, std::int64_t element) { members[group].add(element); }
    // The same for an element of which the file has a second copy with this part.
    void addMember(std::uint32_t part, std::int64_t element);
    // A point of a group: points have no picture, but their nodes make a node set.
    void addNode(std::int64_t group, std::int64_t node) { nodes[group].add(node); }

    // When all is read: names the parts and makes the sets. A group becomes a set where its part is not all of it.
    void finish();

private:
    struct Source // of a part
    {
        bool physical;
        Key key;
        bool operator<(const Source& other) const
        {
            return std::tie(physical, key) < std::tie(other.physical, other.key);
        }
    };

    const std::string* nameOf(Key group) const;
    std::string partName(const Source& source) const;
    void addElementSet(Key group, IdSet ids);

    Mesh& mesh;
    std::map<Key, std::string> names;
    std::map<Key, std::vector<std::int64_t>> entities;
    std::map<Key, Key> parents;
    std::map<Source, std::uint32_t> parts;
    std::vector<Source> sources; // of Mesh::parts, same order
    std::map<Key, IdSet> members;
    std::map<std::int64_t, IdSet> nodes;
    std::pair<Source, std::uint32_t> last = {{false, {anyDim, 0}}, noPart};
};

} // namespace kvo

#endif
