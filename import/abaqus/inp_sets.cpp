// Sets of several instances.
#include "inp_sets.h"

#include <algorithm>
#include <set>
#include <tuple>

#include "keyword_line.h"
#include "text/numbers.h"

namespace kvo {

InpSetTable::InpSetTable(const std::vector<InpScope>& allScopes, ImportLog& log) : scopes(allScopes), log(log)
{
    for (std::size_t k = 0; k < scopes.size(); ++k) {
        if (!scopes[k].name.empty()) {
            byName.emplace(nameKey(scopes[k].name), k); // the assembly comes last: an instance of its name goes before
        }
    }
    for (std::size_t k = 0; k < scopes.size(); ++k) {
        for (const MeshSet::Of of : {MeshSet::Of::Nodes, MeshSet::Of::Elements}) {
            View& view = views.emplace_back(View{k, of, &setsOf(k, of), {}});
            for (const auto& entry : scopes[k].foreignSets) {
                indexForeign(entry.first, of == MeshSet::Of::Nodes ? entry.second.nodes : entry.second.elements, view);
            }
        }
    }
}

const InpSets& InpSetTable::setsOf(std::size_t scope, MeshSet::Of of) const
{
    return of == MeshSet::Of::Nodes ? scopes[scope].nodeSets : scopes[scope].elementSets;
}

void InpSetTable::indexForeign(const std::string& instance, const InpSets& sets, View& view)
{
    const auto owner = byName.find(instance);
    for (const auto& entry : sets) {
        if (owner == byName.end()) {
            log.warn("sets of unknown instances", entry.second.place,
                     "set \"" + entry.second.name + "\" is of instance \"" + instance + "\", which does not exist");
        } else {
            view.foreign[entry.first].push_back({owner->second, &entry.second});
        }
    }
}

// "PLATE-1.12" or "PLATE-1.EDGE"; both names may have dots themselves. False if there is no such thing.
bool InpSetTable::addOutside(const std::string& member, MeshSet::Of of, Members& members) const
{
    for (std::size_t dot = member.find('.'); dot != std::string::npos; dot = member.find('.', dot + 1)) {
        const auto owner = byName.find(nameKey(member.substr(0, dot)));
        if (owner == byName.end()) {
            continue;
        }
        const std::string rest = member.substr(dot + 1);
        std::vector<IdRange>& ranges = members[owner->second];
        std::int64_t id = 0;
        if (parseInteger(rest, id)) {
            ranges.push_back({id, id, 1});
            return true;
        }
        const InpSets& sets = setsOf(owner->second, of);
        forEachRange(sets, nameKey(rest), [&](const IdRange& range) { ranges.push_back(range); });
        return sets.count(nameKey(rest)) > 0;
    }
    return false;
}

// What a set and the sets in it list, scope by scope.
InpSetTable::Members InpSetTable::membersOf(const View& view, const std::string& key) const
{
    Members members;
    std::set<std::string> seen;
    std::vector<std::string> open = {key};
    while (!open.empty()) {
        const std::string current = open.back();
        open.pop_back();
        if (!seen.insert(current).second) {
            continue;
        }
        const auto own = view.own->find(current);
        const auto foreign = view.foreign.find(current);
        if (own != view.own->end()) {
            std::vector<IdRange>& ranges = members[view.scope];
            ranges.insert(ranges.end(), own->second.ranges.begin(), own->second.ranges.end());
            open.insert(open.end(), own->second.members.begin(), own->second.members.end());
        } else if (foreign == view.foreign.end()) {
            addOutside(current, view.of, members);
        }
        for (std::size_t k = 0; foreign != view.foreign.end() && k < foreign->second.size(); ++k) {
            const Foreign& part = foreign->second[k];
            std::vector<IdRange>& ranges = members[part.owner];
            ranges.insert(ranges.end(), part.set->ranges.begin(), part.set->ranges.end());
            for (const std::string& name : part.set->members) {
                forEachRange(setsOf(part.owner, view.of), name, [&](const IdRange& r) { ranges.push_back(r); });
            }
        }
    }
    return members;
}

// instance: the sets of the instance that the set is of; null: of none.
void InpSetTable::checkMembers(const View& view, const InpSet& set, const InpSets* instance)
{
    for (const std::string& member : set.members) {
        Members unused;
        const bool known = instance ? instance->count(member) > 0
                                    : view.own->count(member) > 0 || view.foreign.count(member) > 0 ||
                                          addOutside(member, view.of, unused);
        if (!known) {
            log.warn("sets that refer to unknown sets", set.place,
                     "set \"" + set.name + "\" refers to set \"" + member + "\", which does not exist");
        }
    }
}

void InpSetTable::check()
{
    for (const View& view : views) {
        for (const auto& entry : *view.own) {
            checkMembers(view, entry.second, nullptr);
        }
        for (const auto& entry : view.foreign) {
            for (const Foreign& part : entry.second) {
                checkMembers(view, *part.set, &setsOf(part.owner, view.of));
            }
        }
    }
}

// One mesh set per file that has members; a set without any stays one, of its own scope's file.
void InpSetTable::addView(const View& view, const std::vector<std::uint32_t>& files, Mesh& mesh) const
{
    std::map<std::string, std::string> names;
    for (const auto& entry : *view.own) {
        names.emplace(entry.first, entry.second.name);
    }
    for (const auto& entry : view.foreign) {
        names.emplace(entry.first, entry.second.front().set->name);
    }
    for (const auto& name : names) {
        Members members = membersOf(view, name.first);
        if (members.size() > 1 && members[view.scope].empty()) {
            members.erase(view.scope);
        }
        for (const auto& part : members) {
            if (files[part.first] == MeshSet::wholeMesh) {
                continue;
            }
            MeshSet& set = mesh.sets.emplace_back();
            set.name = name.second;
            set.of = view.of;
            set.file = files[part.first];
            for (const IdRange& range : part.second) {
                set.ids.addRange(range.first, range.last, range.step);
            }
        }
    }
}

namespace {

// A set of the assembly and one of the instance itself may have one name in one file. From outside a deck calls the
// instance's "PLATE-1.EDGE", and so it is called here.
void tellApart(std::vector<MeshSet>& sets, const std::vector<std::string>& owners, std::size_t firstOfAssembly)
{
    std::set<std::pair<std::uint32_t, std::string>> taken[2];
    const auto keyOf = [](const MeshSet& set) { return std::make_pair(set.file, nameKey(set.name)); };
    for (std::size_t k = firstOfAssembly; k < sets.size(); ++k) {
        taken[static_cast<int>(sets[k].of)].insert(keyOf(sets[k]));
    }
    for (std::size_t k = 0; k < firstOfAssembly; ++k) {
        if (taken[static_cast<int>(sets[k].of)].count(keyOf(sets[k])) > 0) {
            sets[k].name = owners[sets[k].file] + "." + sets[k].name;
        }
    }
}

} // namespace

void InpSetTable::add(const std::vector<std::uint32_t>& files, Mesh& mesh)
{
    std::vector<std::string> owners(mesh.files.size());
    for (std::size_t k = 0; k < scopes.size(); ++k) {
        if (files[k] != MeshSet::wholeMesh) {
            owners[files[k]] = scopes[k].name;
        }
    }
    std::size_t firstOfAssembly = 0;
    for (const View& view : views) {
        if (view.scope + 1 == scopes.size() && view.of == MeshSet::Of::Nodes) {
            firstOfAssembly = mesh.sets.size();
        }
        addView(view, files, mesh);
    }
    // File by file, as the sets of the instances are: a file's ids are then looked at once.
    std::stable_sort(
        mesh.sets.begin() + static_cast<std::ptrdiff_t>(firstOfAssembly), mesh.sets.end(),
        [](const MeshSet& a, const MeshSet& b) { return std::tie(a.of, a.file) < std::tie(b.of, b.file); });
    tellApart(mesh.sets, owners, firstOfAssembly);
    if (mesh.files.size() < 2) {
        for (MeshSet& set : mesh.sets) {
            set.file = MeshSet::wholeMesh;
        }
    }
}

} // namespace kvo
