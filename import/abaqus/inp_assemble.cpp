// Instances, parts and sections.
#include "inp_assemble.h"

#include <algorithm>
#include <array>
#include <functional>
#include <set>

#include "id_index.h"
#include "inp_sets.h"
#include "keyword_line.h"
#include "mesh_finish.h"

namespace kvo {

namespace {

// --- instances ---

void placeNodes(InpScope& scope)
{
    if (scope.placement.isIdentity()) {
        return;
    }
    std::vector<double>& xyz = scope.mesh.xyz;
    for (std::size_t k = 0; k + 2 < xyz.size(); k += 3) {
        const Vec3 moved = scope.placement.apply({xyz[k], xyz[k + 1], xyz[k + 2]});
        std::copy(moved.begin(), moved.end(), &xyz[k]);
    }
}

void appendSets(InpSets& to, const InpSets& from)
{
    for (const auto& entry : from) {
        InpSet& set = to[entry.first];
        set.name = entry.second.name;
        set.ranges.insert(set.ranges.end(), entry.second.ranges.begin(), entry.second.ranges.end());
        set.members.insert(set.members.end(), entry.second.members.begin(), entry.second.members.end());
    }
}

// What an instance defines itself comes on top of its part.
void appendScope(InpScope& to, InpScope&& from)
{
    to.mesh.nodeLines.append(from.mesh.nodeLines, to.mesh.nodeIds.size());
    to.mesh.nodeIds.insert(to.mesh.nodeIds.end(), from.mesh.nodeIds.begin(), from.mesh.nodeIds.end());
    to.mesh.xyz.insert(to.mesh.xyz.end(), from.mesh.xyz.begin(), from.mesh.xyz.end());
    for (ElementBlock& block : from.mesh.blocks) {
        for (std::uint32_t& group : block.part) {
            group = to.groupIndex(from.groups[group]);
        }
        to.mesh.blocks.push_back(std::move(block));
    }
    for (const UndrawnElements& undrawn : from.mesh.undrawn) {
        for (std::size_t e = 0; e < undrawn.ids.size(); ++e) {
            const std::size_t stop = e + 1 < undrawn.starts.size() ? undrawn.starts[e + 1] : undrawn.nodes.size();
            to.mesh.addUndrawn(undrawn.type, undrawn.ids[e], undrawn.nodes.data() + undrawn.starts[e],
                               stop - undrawn.starts[e]);
        }
    }
    appendSets(to.nodeSets, from.nodeSets);
    appendSets(to.elementSets, from.elementSets);
    to.sections.insert(to.sections.end(), from.sections.begin(), from.sections.end());
}

// The instance's own content on a copy of its part; the last instance of a part takes the part itself.
InpScope instantiate(InpModel& model, InpScope&& instance, bool lastOfPart, ImportLog& log)
{
    InpScope result;
    const auto part = model.parts.find(instance.partName);
    if (part == model.parts.end()) {
        log.warn("instances of unknown parts", instance.place,
                 "instance \"" + instance.name + "\" is of part \"" + instance.partName + "\", which does not exist");
    } else {
        result = lastOfPart ? std::move(part->second) : part->second;
    }
    result.name = instance.name;
    result.place = instance.place;
    result.placement = instance.placement;
    appendScope(result, std::move(instance));
    placeNodes(result);
    return result;
}

std::vector<InpScope> instantiateAll(InpModel& model, ImportLog& log)
{
    std::vector<InpScope> scopes;
    scopes.reserve(model.instances.size() + model.parts.size() + 2); // growing would copy them; deck, assembly
    std::map<std::string, std::size_t> last;
    for (std::size_t k = 0; k < model.instances.size(); ++k) {
        last[model.instances[k].partName] = k;
    }
    for (std::size_t k = 0; k < model.instances.size(); ++k) {
        const bool lastOfPart = last[model.instances[k].partName] == k;
        scopes.push_back(instantiate(model, std::move(model.instances[k]), lastOfPart, log));
    }
    for (auto& entry : model.parts) {
        InpScope& part = entry.second;
        if (part.empty() || last.count(entry.first)) {
            continue;
        }
        if (model.instances.empty()) {
            scopes.push_back(std::move(part)); // a deck without an assembly: the parts are the model
        } else {
            log.warn("parts without an instance", part.place, "part \"" + part.name + "\" has no instance: left out");
        }
    }
    return scopes;
}

// --- nodes of instances that assembly elements name ---

const InpScope* scopeNamed(const std::vector<InpScope>& scopes, const std::string& key)
{
    for (const InpScope& scope : scopes) {
        if (nameKey(scope.name) == key) {
            return &scope;
        }
    }
    return nullptr;
}

// Makes the nodes of instances that the assembly's elements name nodes of the assembly.
class ForeignNodes
{
public:
    ForeignNodes(InpScope& assembly, const std::vector<InpScope>& scopes, ImportLog& log)
        : assembly(assembly), scopes(scopes), log(log)
    {
        for (const std::int64_t id : assembly.mesh.nodeIds) {
            highest = std::max(highest, id);
        }
        for (const ForeignNode& node : assembly.foreignNodes) {
            highest = std::max(highest, node.id);
        }
    }

    void resolve()
    {
        if (assembly.foreignNodes.empty()) {
            return;
        }
        taken.insert(assembly.mesh.nodeIds.begin(), assembly.mesh.nodeIds.end());
        std::vector<std::int64_t> ids;
        for (const ForeignNode& node : assembly.foreignNodes) {
            ids.push_back(localId(node));
        }
        for (ElementBlock& block : assembly.mesh.blocks) {
            for (std::int64_t& node : block.nodes) {
                node = node <= foreignNodeId(0) ? ids[static_cast<std::size_t>(foreignNodeId(0) - node)] : node;
            }
        }
        for (UndrawnElements& undrawn : assembly.mesh.undrawn) {
            for (std::int64_t& node : undrawn.nodes) {
                node = node <= foreignNodeId(0) ? ids[static_cast<std::size_t>(foreignNodeId(0) - node)] : node;
            }
        }
        if (renumbered > 0) {
            log.note(std::to_string(renumbered) + " nodes of instances that the assembly's elements name got new ids, "
                                                  "since theirs repeat");
        }
    }

private:
    std::int64_t localId(const ForeignNode& node)
    {
        const auto known = local.emplace(std::make_pair(node.instance, node.id), 0);
        if (known.second) {
            known.first->second = copyNode(node);
        }
        return known.first->second;
    }

    // The id of the copy; 0, which no node has, if there is nothing to copy.
    std::int64_t copyNode(const ForeignNode& node)
    {
        const InpScope* scope = scopeNamed(scopes, node.instance);
        const auto index = indices.find(node.instance) != indices.end()
                               ? indices.find(node.instance)
                               : indices.emplace(node.instance, scope ? IdIndex(scope->mesh.nodeIds) : IdIndex()).first;
        const std::uint32_t position = index->second.find(node.id);
        if (position == IdIndex::none) {
            log.warn("nodes of instances that do not exist", assembly.place,
                     "an element of the assembly names node " + node.instance + "." + std::to_string(node.id) +
                         ", which does not exist");
            return 0;
        }
        const bool free = taken.insert(node.id).second;
        const std::int64_t id = free ? node.id : ++highest;
        renumbered += !free;
        const double* xyz = &scope->mesh.xyz[3 * std::size_t(position)];
        assembly.mesh.addNode(id, xyz[0], xyz[1], xyz[2]);
        return id;
    }

    InpScope& assembly;
    const std::vector<InpScope>& scopes;
    ImportLog& log;
    std::set<std::int64_t> taken;
    std::map<std::pair<std::string, std::int64_t>, std::int64_t> local;
    std::map<std::string, IdIndex> indices;
    std::int64_t highest = 0;
    std::uint64_t renumbered = 0;
};

// --- parts ---

// Finds elements of a scope by their ids.
class ElementLookup
{
public:
    explicit ElementLookup(MeshFile& mesh) : mesh(mesh)
    {
        std::vector<std::int64_t> ids;
        for (const ElementBlock& block : mesh.blocks) {
            starts.push_back(ids.size());
            ids.insert(ids.end(), block.ids.begin(), block.ids.end());
        }
        count = ids.size();
        index = IdIndex(ids);
        const bool ascending = std::adjacent_find(ids.begin(), ids.end(), std::greater_equal<>()) == ids.end();
        for (std::size_t k = 0; !ascending && k < ids.size(); ++k) {
            if (index.find(ids[k]) != k) {
                repeated.emplace(ids[k], k);
            }
        }
    }

    void assign(const IdRange& range, std::uint32_t part)
    {
        const std::uint64_t steps = (static_cast<std::uint64_t>(range.last) - static_cast<std::uint64_t>(range.first)) /
                                    static_cast<std::uint64_t>(range.step);
        if (steps > count) {
            assignByScan(range, part);
            return;
        }
        for (std::uint64_t k = 0; k <= steps; ++k) {
            const std::int64_t id = range.first + static_cast<std::int64_t>(k) * range.step;
            const std::uint32_t position = index.find(id);
            if (position != IdIndex::none) {
                assignAt(position, part);
            }
            const auto others =
                repeated.empty() ? std::make_pair(repeated.end(), repeated.end()) : repeated.equal_range(id);
            for (auto other = others.first; other != others.second; ++other) {
                assignAt(other->second, part);
            }
        }
    }

private:
    void assignAt(std::size_t position, std::uint32_t part)
    {
        const auto after = std::upper_bound(starts.begin(), starts.end(), position);
        const std::size_t block = static_cast<std::size_t>(after - starts.begin()) - 1;
        mesh.blocks[block].part[position - starts[block]] = part;
    }

    // For a range that is wider than there are elements.
    void assignByScan(const IdRange& range, std::uint32_t part)
    {
        for (ElementBlock& block : mesh.blocks) {
            for (std::size_t e = 0; e < block.size(); ++e) {
                const std::int64_t id = block.ids[e];
                if (id >= range.first && id <= range.last && (id - range.first) % range.step == 0) {
                    block.part[e] = part;
                }
            }
        }
    }

    MeshFile& mesh;
    std::vector<std::size_t> starts; // of the blocks, counted over all elements
    std::size_t count = 0;
    IdIndex index;
    std::multimap<std::int64_t, std::size_t> repeated; // further elements of an id: which one holds is settled later
};

// The ids of materials, numbered as sections name them.
class Materials
{
public:
    std::int64_t idOf(const std::string& name)
    {
        return name.empty() ? 0 : ids.emplace(nameKey(name), static_cast<std::int64_t>(ids.size()) + 1).first->second;
    }

private:
    std::map<std::string, std::int64_t> ids;
};

void addGroupParts(InpScope& scope, const std::string& prefix, Mesh& mesh)
{
    const std::uint32_t first = static_cast<std::uint32_t>(mesh.parts.size());
    for (const std::string& group : scope.groups) {
        MeshPart part;
        part.name = prefix + group;
        mesh.parts.push_back(part);
    }
    for (ElementBlock& block : scope.mesh.blocks) {
        for (std::uint32_t& group : block.part) {
            group += first;
        }
    }
}

// Beams without a third node have the direction of their section, which turns with the instance.
void addDirections(InpScope& scope, const Mesh& mesh, std::uint32_t firstSection)
{
    Transform turn = scope.placement;
    turn.t = {0, 0, 0};
    for (const ElementBlock& block : scope.mesh.blocks) {
        if (mesh.types[block.type].family != Family::Beam) {
            continue;
        }
        for (std::size_t e = 0; e < block.size(); ++e) {
            const std::size_t section = std::size_t(block.part[e]) - firstSection;
            if (block.nodes[3 * e + 2] == noNode && section < scope.sections.size() &&
                scope.sections[section].hasDirection) {
                scope.mesh.orient(block.ids[e], turn.apply(scope.sections[section].direction));
            }
        }
    }
}

// The number of a solid section is the area of lines and the thickness of plane elements; to solids it means nothing.
void settleSolidData(const InpScope& scope, std::uint32_t first, Mesh& mesh)
{
    std::vector<std::array<bool, familyCount>> families(scope.sections.size());
    for (const ElementBlock& block : scope.mesh.blocks) {
        for (const std::uint32_t part : block.part) {
            if (part - first < families.size()) {
                families[part - first][static_cast<std::size_t>(mesh.types[block.type].family)] = true;
            }
        }
    }
    for (std::size_t k = 0; k < families.size(); ++k) {
        SectionData& data = mesh.parts[first + k].data;
        if (scope.sections[k].kind == "solid section" && !families[k][static_cast<std::size_t>(Family::Beam)]) {
            data.thickness = families[k][static_cast<std::size_t>(Family::Shell)] ? data.area : 0.0;
            data.area = 0.0;
        }
    }
}

void addSectionParts(InpScope& scope, const std::string& prefix, Mesh& mesh, Materials& materials, ImportLog& log)
{
    const std::uint32_t first = static_cast<std::uint32_t>(mesh.parts.size());
    for (const InpSection& section : scope.sections) {
        MeshPart part;
        part.name = prefix + section.elset;
        part.section = section.kind;
        part.propertyId = static_cast<std::int64_t>(mesh.parts.size()) + 1;
        part.materialId = materials.idOf(section.material);
        part.materialName = section.material;
        part.data = section.data;
        mesh.parts.push_back(part);
    }
    // The section parts come first, so the elements' group parts are added behind them before sections take elements
    // over.
    addGroupParts(scope, prefix, mesh);
    if (scope.sections.empty()) {
        return;
    }
    ElementLookup elements(scope.mesh);
    for (std::size_t k = 0; k < scope.sections.size(); ++k) {
        const InpSection& section = scope.sections[k];
        const std::uint32_t part = first + static_cast<std::uint32_t>(k);
        if (scope.elementSets.count(nameKey(section.elset)) == 0) {
            log.warn("sections of unknown sets", section.place,
                     section.kind + " of element set \"" + section.elset + "\", which does not exist");
        }
        forEachRange(scope.elementSets, nameKey(section.elset),
                     [&](const IdRange& range) { elements.assign(range, part); });
    }
    addDirections(scope, mesh, first);
    settleSolidData(scope, first, mesh);
}

} // namespace

Mesh assembleInp(InpModel& model, ImportLog& log)
{
    std::vector<InpScope> scopes = instantiateAll(model, log);
    ForeignNodes(model.assembly, scopes, log).resolve();
    ForeignNodes(model.deck, scopes, log).resolve();
    scopes.insert(scopes.begin(), std::move(model.deck));
    scopes.push_back(std::move(model.assembly));
    const auto filled = std::count_if(scopes.begin(), scopes.end(), [](const InpScope& s) { return !s.empty(); });

    InpSetTable sets(scopes, log);
    sets.check();
    Mesh mesh;
    mesh.sourceFiles = std::move(model.sourceFiles);
    mesh.types = std::move(model.types);
    Materials materials;
    std::vector<std::uint32_t> files;
    mesh.files.reserve(scopes.size());
    for (InpScope& scope : scopes) {
        const bool alone = filled < 2 || scope.name.empty();
        addSectionParts(scope, alone ? std::string() : scope.name + ".", mesh, materials, log);
        files.push_back(scope.empty() ? MeshSet::wholeMesh : static_cast<std::uint32_t>(mesh.files.size()));
        if (!scope.empty()) {
            scope.mesh.name = alone ? std::string() : scope.name;
            mesh.files.push_back(std::move(scope.mesh));
        }
    }
    sets.add(files, mesh);
    finishMesh(mesh, log);
    for (std::size_t k = 0; k < mesh.parts.size(); ++k) {
        mesh.parts[k].id = static_cast<std::int64_t>(k) + 1;
    }
    return mesh;
}

} // namespace kvo
