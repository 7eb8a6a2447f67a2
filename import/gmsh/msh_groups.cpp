// Groups and entities become parts and sets.
#include "msh_groups.h"

namespace kvo {

namespace {

const char* const entityNames[] = {"point", "curve", "surface", "volume"};

std::int64_t magnitude(std::int64_t tag)
{
    return tag < 0 ? -tag : tag;
}

} // namespace

void MshGroups::addEntity(Key entity, std::vector<std::int64_t> groups)
{
    for (std::int64_t& group : groups) {
        group = magnitude(group);
    }
    entities[entity] = std::move(groups);
}

void MshGroups::addPartition(Key entity, Key parent, std::vector<std::int64_t> groups)
{
    addEntity(entity, std::move(groups));
    if (parent.first == entity.first) {
        parents[entity] = parent;
    }
}

const std::vector<std::int64_t>& MshGroups::groupsOf(Key entity) const
{
    static const std::vector<std::int64_t> none;
    const auto found = entities.find(entity);
    if (found != entities.end() && !found->second.empty()) {
        return found->second;
    }
    const auto parent = parents.find(entity);
    const auto whole = parent == parents.end() ? entities.end() : entities.find(parent->second);
    return whole == entities.end() ? none : whole->second;
}

std::uint32_t MshGroups::partOf(int dim, std::int64_t group, std::int64_t entity)
{
    Source source = {group != 0, {dim, group != 0 ? magnitude(group) : entity}};
    if (last.second != noPart && last.first.physical == source.physical && last.first.key == source.key) {
        return last.second;
    }
    last.first = source;
    const auto parent = group == 0 ? parents.find(source.key) : parents.end();
    if (parent != parents.end()) {
        source.key = parent->second;
    }
    const auto known = parts.emplace(source, static_cast<std::uint32_t>(mesh.parts.size()));
    if (known.second) {
        mesh.parts.emplace_back().id = source.key.second;
        sources.push_back(source);
    }
    last.second = known.first->second;
    return last.second;
}

void MshGroups::addMember(std::uint32_t part, std::int64_t element)
{
    if (sources[part].physical) {
        addMember(sources[part].key, element);
    }
}

const std::string* MshGroups::nameOf(Key group) const
{
    auto found = names.find(group);
    found = found == names.end() ? names.find({anyDim, group.second}) : found;
    return found == names.end() || found->second.empty() ? nullptr : &found->second;
}

std::string MshGroups::partName(const Source& source) const
{
    const std::string* name = source.physical ? nameOf(source.key) : nullptr;
    return name ? *name
                : std::string(source.physical ? "physical " : "") + entityNames[source.key.first] + " " +
                      std::to_string(source.key.second);
}

void MshGroups::addElementSet(Key group, IdSet ids)
{
    const auto part = parts.find({true, group});
    for (const ElementBlock& block : mesh.files.front().blocks) {
        for (std::size_t e = 0; part != parts.end() && e < block.size(); ++e) {
            if (block.part[e] == part->second) {
                ids.add(block.ids[e]);
            }
        }
    }
    MeshSet& set = mesh.sets.emplace_back();
    set.of = MeshSet::Of::Elements;
    set.name = partName({true, group});
    set.id = group.second;
    set.ids = std::move(ids);
}

void MshGroups::finish()
{
    for (std::size_t k = 0; k < sources.size(); ++k) {
        mesh.parts[k].name = partName(sources[k]);
        mesh.parts[k].section = sources[k].physical ? "physical group" : "entity";
    }
    for (auto& group : members) {
        addElementSet(group.first, std::move(group.second));
    }
    for (auto& group : nodes) {
        MeshSet& set = mesh.sets.emplace_back();
        set.of = MeshSet::Of::Nodes;
        set.name = partName({true, {0, group.first}});
        set.id = group.first;
        set.ids = std::move(group.second);
    }
}

} // namespace kvo
