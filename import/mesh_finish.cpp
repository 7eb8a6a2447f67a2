// The common end of every deck reader.
#include "mesh_finish.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "id_index.h"

namespace kvo {

const char* const warnNodeTwice = "nodes defined more than once";
const char* const warnElementTwice = "elements defined more than once";
const char* const warnMissingNode = "elements that refer to missing nodes";
const char* const warnMissingThirdNode = "beams whose orientation node is missing";
const char* const warnSetMember = "sets with members that do not exist";

namespace {

bool ascending(const std::vector<std::int64_t>& ids)
{
    return std::adjacent_find(ids.begin(), ids.end(), std::greater_equal<std::int64_t>()) == ids.end();
}

// The positions of the nodes in the order of their ids, of equal ids the last only.
std::vector<std::uint32_t> nodeOrder(const Mesh& mesh, const MeshFile& file, ImportLog& log)
{
    std::vector<std::uint32_t> order(file.nodeIds.size());
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return file.nodeIds[a] < file.nodeIds[b]; });
    std::size_t kept = 0;
    for (std::size_t k = 0; k < order.size(); ++k) {
        const std::int64_t id = file.nodeIds[order[k]];
        if (k + 1 < order.size() && file.nodeIds[order[k + 1]] == id) {
            log.warn(warnNodeTwice, mesh.placeOfNode(file, order[k + 1]),
                     "node " + std::to_string(id) + " is defined more than once; the last definition holds");
        } else {
            order[kept++] = order[k];
        }
    }
    order.resize(kept);
    return order;
}

void sortNodes(const Mesh& mesh, MeshFile& file, ImportLog& log)
{
    if (ascending(file.nodeIds)) {
        return;
    }
    const std::vector<std::uint32_t> order = nodeOrder(mesh, file, log);
    std::vector<std::int64_t> ids(order.size());
    std::vector<double> xyz(3 * order.size());
    NodeLines lines;
    for (std::size_t k = 0; k < order.size(); ++k) {
        lines.add(k, file.nodeLines.at(order[k]));
        ids[k] = file.nodeIds[order[k]];
        std::copy_n(&file.xyz[3 * std::size_t(order[k])], 3, &xyz[3 * k]);
    }
    file.nodeIds = std::move(ids);
    file.xyz = std::move(xyz);
    file.nodeLines = std::move(lines);
}

using TypeFilter = std::function<bool(const ElementType&)>;

bool everyType(const ElementType&)
{
    return true;
}

// The ids of the file's elements of the wanted types, in deck order, without dropped ones.
std::vector<std::int64_t> elementIds(const Mesh& mesh, const MeshFile& file, const TypeFilter& wanted)
{
    std::vector<std::int64_t> ids;
    std::size_t count = 0;
    for (const ElementBlock& block : file.blocks) {
        count += block.size();
    }
    ids.reserve(count);
    for (const ElementBlock& block : file.blocks) {
        if (!wanted(mesh.types[block.type])) {
            continue;
        }
        for (std::size_t e = 0; e < block.size(); ++e) {
            if (block.part[e] != noPart) {
                ids.push_back(block.ids[e]);
            }
        }
    }
    return ids;
}

// The ids that occur more than once among these.
std::unordered_set<std::int64_t> repeatedIds(std::vector<std::int64_t> ids)
{
    std::unordered_set<std::int64_t> repeated;
    if (ascending(ids)) {
        return repeated;
    }
    std::sort(ids.begin(), ids.end());
    for (std::size_t k = 1; k < ids.size(); ++k) {
        if (ids[k] == ids[k - 1]) {
            repeated.insert(ids[k]);
        }
    }
    return repeated;
}

// One of several elements of an id.
struct Definition
{
    ElementBlock* block;
    std::size_t element;
};

// Blocks are in the order in which their types first occur, so that within a file the lines decide.
bool isEarlier(const Definition& a, const Definition& b)
{
    return a.block->sourceFile == b.block->sourceFile && a.block->line[a.element] < b.block->line[b.element];
}

// Of the elements of the wanted types, whose ids are one numbering.
void dropEarlierDefinitions(const Mesh& mesh, MeshFile& file, const TypeFilter& wanted, ImportLog& log)
{
    const std::unordered_set<std::int64_t> repeated = repeatedIds(elementIds(mesh, file, wanted));
    if (repeated.empty()) {
        return;
    }
    std::unordered_map<std::int64_t, Definition> last;
    for (ElementBlock& block : file.blocks) {
        if (!wanted(mesh.types[block.type])) {
            continue;
        }
        for (std::size_t e = 0; e < block.size(); ++e) {
            if (block.part[e] == noPart || repeated.count(block.ids[e]) == 0) {
                continue;
            }
            Definition earlier = {&block, e};
            const auto known = last.emplace(block.ids[e], earlier);
            if (known.second) {
                continue;
            }
            if (!isEarlier(earlier, known.first->second)) {
                std::swap(earlier, known.first->second);
            }
            earlier.block->part[earlier.element] = noPart;
            log.warn(warnElementTwice, mesh.placeOf(*earlier.block, earlier.element),
                     "element " + std::to_string(block.ids[e]) + " is defined again later; that definition holds");
        }
    }
}

void dropRepeatedElements(const Mesh& mesh, MeshFile& file, ImportLog& log)
{
    if (!mesh.idsPerFamily) {
        dropEarlierDefinitions(mesh, file, everyType, log);
        return;
    }
    std::set<std::string> names;
    for (const ElementType& type : mesh.types) {
        names.insert(type.name);
    }
    for (const std::string& name : names) {
        dropEarlierDefinitions(mesh, file, [&](const ElementType& type) { return type.name == name; }, log);
    }
}

// Turns the node ids of one element into positions. False if a corner does not exist. missing is the id of a node that
// was not found, corner or third node, or stays as it is.
bool resolveElement(const ElementType& type, std::int64_t* nodes, const IdIndex& index, std::int64_t& missing)
{
    const int corners = cornerCount(type.shape);
    for (int k = 0; k < type.slots(); ++k) {
        if (k >= corners && nodes[k] == noNode) {
            continue;
        }
        const std::uint32_t position = index.find(nodes[k]);
        if (position != IdIndex::none) {
            nodes[k] = position;
            continue;
        }
        missing = nodes[k];
        nodes[k] = noNode;
        if (k < corners) {
            return false;
        }
    }
    return true;
}

void reportUnresolved(const Mesh& mesh, const ElementBlock& block, std::size_t e, std::int64_t missing, ImportLog& log)
{
    const std::string name = mesh.types[block.type].name + " element " + std::to_string(block.ids[e]);
    if (block.part[e] == noPart) {
        log.warn(warnMissingNode, mesh.placeOf(block, e),
                 name + " refers to node " + std::to_string(missing) + ", which does not exist: left out");
    } else {
        log.warn(warnMissingThirdNode, mesh.placeOf(block, e),
                 name + ": orientation node " + std::to_string(missing) + " does not exist");
    }
}

void resolveNodes(const Mesh& mesh, MeshFile& file, ImportLog& log)
{
    const IdIndex index(file.nodeIds);
    for (ElementBlock& block : file.blocks) {
        const ElementType& type = mesh.types[block.type];
        const std::size_t slots = static_cast<std::size_t>(type.slots());
        for (std::size_t e = 0; e < block.size(); ++e) {
            std::int64_t missing = noNode;
            if (block.part[e] == noPart) {
                continue;
            }
            if (!resolveElement(type, &block.nodes[e * slots], index, missing)) {
                block.part[e] = noPart;
            }
            if (missing != noNode) {
                reportUnresolved(mesh, block, e, missing, log);
            }
        }
    }
}

// What a set may hold: ascending and unique.
std::vector<std::int64_t> knownIds(const Mesh& mesh, const MeshSet& set)
{
    std::vector<std::int64_t> ids;
    if (set.of == MeshSet::Of::Parts) {
        for (const MeshPart& part : mesh.parts) {
            ids.push_back(part.id);
        }
    }
    for (std::size_t f = 0; f < mesh.files.size() && set.of != MeshSet::Of::Parts; ++f) {
        const MeshFile& file = mesh.files[f];
        if (set.file != MeshSet::wholeMesh && set.file != f) {
            continue;
        }
        if (set.of == MeshSet::Of::Nodes) {
            ids.insert(ids.end(), file.nodeIds.begin(), file.nodeIds.end());
            continue;
        }
        const std::vector<std::int64_t> drawn = elementIds(mesh, file, [&](const ElementType& type) {
            return set.family == MeshSet::anyFamily || set.family == static_cast<int>(type.family);
        });
        ids.insert(ids.end(), drawn.begin(), drawn.end());
        for (const UndrawnElements& undrawn : file.undrawn) {
            ids.insert(ids.end(), undrawn.ids.begin(), undrawn.ids.end());
        }
    }
    if (!ascending(ids)) {
        std::sort(ids.begin(), ids.end());
        ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    }
    return ids;
}

// Sets one after the other mostly ask for the same ids.
void cleanSets(Mesh& mesh, ImportLog& log)
{
    std::vector<std::int64_t> known;
    const MeshSet* previous = nullptr;
    for (MeshSet& set : mesh.sets) {
        if (!previous || previous->of != set.of || previous->file != set.file || previous->family != set.family) {
            known = knownIds(mesh, set);
        }
        previous = &set;
        const std::uint64_t unknown = set.ids.keepKnown(known);
        if (unknown > 0) {
            const std::string name = set.name.empty() ? std::to_string(set.id) : "\"" + set.name + "\"";
            log.warn(warnSetMember, {mesh.sourceFiles.empty() ? std::string() : mesh.sourceFiles.front(), 0},
                     "set " + name + " lists " + std::to_string(unknown) + " ids or more that do not exist");
        }
    }
}

void removeEmptyParts(Mesh& mesh)
{
    std::vector<char> used(mesh.parts.size(), 0);
    for (const MeshFile& file : mesh.files) {
        for (const ElementBlock& block : file.blocks) {
            for (const std::uint32_t part : block.part) {
                if (part != noPart) {
                    used[part] = 1;
                }
            }
        }
    }
    std::vector<std::uint32_t> newIndex(mesh.parts.size(), noPart);
    std::size_t kept = 0;
    for (std::size_t k = 0; k < mesh.parts.size(); ++k) {
        if (used[k]) {
            newIndex[k] = static_cast<std::uint32_t>(kept);
            if (kept != k) {
                mesh.parts[kept] = std::move(mesh.parts[k]);
            }
            ++kept;
        }
    }
    mesh.parts.resize(kept);
    for (MeshFile& file : mesh.files) {
        for (ElementBlock& block : file.blocks) {
            for (std::uint32_t& part : block.part) {
                part = part == noPart ? noPart : newIndex[part];
            }
        }
    }
}

} // namespace

void finishMesh(Mesh& mesh, ImportLog& log)
{
    for (MeshFile& file : mesh.files) {
        sortNodes(mesh, file, log);
        dropRepeatedElements(mesh, file, log);
        resolveNodes(mesh, file, log);
    }
    removeEmptyParts(mesh);
    cleanSets(mesh, log);
}

} // namespace kvo
