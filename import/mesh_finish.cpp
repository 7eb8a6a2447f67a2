// The common end of every deck reader.
#include "mesh_finish.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

#include "id_index.h"

namespace kvo {

const char* const warnNodeTwice = "nodes defined more than once";
const char* const warnElementTwice = "elements defined more than once";
const char* const warnMissingNode = "elements that refer to missing nodes";
const char* const warnMissingThirdNode = "beams whose orientation node is missing";

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
            log.warn(warnNodeTwice, {mesh.sourceFiles.empty() ? std::string() : mesh.sourceFiles.front(), 0},
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
    for (std::size_t k = 0; k < order.size(); ++k) {
        ids[k] = file.nodeIds[order[k]];
        std::copy_n(&file.xyz[3 * std::size_t(order[k])], 3, &xyz[3 * k]);
    }
    file.nodeIds = std::move(ids);
    file.xyz = std::move(xyz);
}

// The ids that occur more than once among all elements of the file.
std::unordered_map<std::int64_t, std::uint32_t> repeatedElementIds(const MeshFile& file)
{
    std::vector<std::int64_t> ids;
    std::size_t count = 0;
    for (const ElementBlock& block : file.blocks) {
        count += block.size();
    }
    ids.reserve(count);
    for (const ElementBlock& block : file.blocks) {
        ids.insert(ids.end(), block.ids.begin(), block.ids.end());
    }
    std::unordered_map<std::int64_t, std::uint32_t> repeated;
    if (ascending(ids)) {
        return repeated;
    }
    std::sort(ids.begin(), ids.end());
    for (std::size_t k = 1; k < ids.size(); ++k) {
        if (ids[k] == ids[k - 1]) {
            ++repeated[ids[k]];
        }
    }
    return repeated;
}

void dropEarlierDefinitions(const Mesh& mesh, MeshFile& file, ImportLog& log)
{
    auto repeated = repeatedElementIds(file);
    if (repeated.empty()) {
        return;
    }
    // In deck order: every definition but the last goes.
    for (ElementBlock& block : file.blocks) {
        for (std::size_t e = 0; e < block.size(); ++e) {
            const auto found = repeated.find(block.ids[e]);
            if (found != repeated.end() && found->second > 0) {
                --found->second;
                block.part[e] = noPart;
                log.warn(warnElementTwice, mesh.placeOf(block, e),
                         "element " + std::to_string(block.ids[e]) + " is defined again later; that definition holds");
            }
        }
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
        dropEarlierDefinitions(mesh, file, log);
        resolveNodes(mesh, file, log);
    }
    removeEmptyParts(mesh);
}

} // namespace kvo
