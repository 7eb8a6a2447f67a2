// From the sets of an input deck's scopes to those of the mesh.
#ifndef KVO_IMPORT_ABAQUS_INP_SETS_H
#define KVO_IMPORT_ABAQUS_INP_SETS_H

#include "import_log.h"
#include "inp_scope.h"

namespace kvo {

// A set of the assembly may have members in several instances: its own (INSTANCE=), and those that it lists by name
// ("PLATE-1.12", "PLATE-1.EDGE"). Since ids are those of a file, it becomes one set of its name in each of their files.
class InpSetTable
{
public:
    // The scopes stay as they are while the table is in use, but for their meshes.
    InpSetTable(const std::vector<InpScope>& scopes, ImportLog& log);

    // Warns of names that are no sets and no instances.
    void check();

    // files: of the scopes, an index into mesh.files; MeshSet::wholeMesh for scopes without a file.
    void add(const std::vector<std::uint32_t>& files, Mesh& mesh);

private:
    // Set of another scope that a card of this one has made.
    struct Foreign
    {
        std::size_t owner;
        const InpSet* set;
    };
    using ForeignIndex = std::map<std::string, std::vector<Foreign>>; // by nameKey()

    // Sets of one kind, seen from one scope.
    struct View
    {
        std::size_t scope;
        MeshSet::Of of;
        const InpSets* own;
        ForeignIndex foreign;
    };
    using Members = std::map<std::size_t, std::vector<IdRange>>; // by scope

    const InpSets& setsOf(std::size_t scope, MeshSet::Of of) const;
    void indexForeign(const std::string& instance, const InpSets& sets, View& view);
    bool addOutside(const std::string& member, MeshSet::Of of, Members& members) const;
    Members membersOf(const View& view, const std::string& key) const;
    void checkMembers(const View& view, const InpSet& set, const InpSets* instance);
    void addView(const View& view, const std::vector<std::uint32_t>& files, Mesh& mesh) const;

    const std::vector<InpScope>& scopes;
    ImportLog& log;
    std::map<std::string, std::size_t> byName; // of instances: nameKey()
    std::vector<View> views;
};

} // namespace kvo

#endif
