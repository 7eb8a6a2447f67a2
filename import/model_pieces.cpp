// Which parts a mesh becomes, and their ids.
#include "model_pieces.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <set>
#include <utility>

namespace kvo {

namespace {

[[noreturn]] void refuseId(const Place& place, const char* what, std::int64_t id, std::int64_t lowest)
{
    throw ImportError(place, std::string(what) + " id " + std::to_string(id) + " cannot be kept: a model's ids are " +
                                 std::to_string(lowest) + " to " + std::to_string(maxModelId));
}

// Adds the file's elements to counts, which has one entry a pieceSlot(); the result is the slots that have any, sorted.
std::vector<std::size_t> countSlots(const Mesh& mesh, const MeshFile& file, std::vector<std::uint64_t>& counts)
{
    std::vector<std::size_t> used;
    for (const ElementBlock& block : file.blocks) {
        const Family family = mesh.types[block.type].family;
        for (const std::uint32_t part : block.part) {
            if (part != noPart && counts[pieceSlot(part, family)]++ == 0) {
                used.push_back(pieceSlot(part, family));
            }
        }
    }
    std::sort(used.begin(), used.end());
    return used;
}

PieceTable countPieces(const Mesh& mesh)
{
    PieceTable table(mesh.files.size());
    std::vector<std::uint64_t> counts(mesh.parts.size() * familyCount);
    for (std::size_t f = 0; f < mesh.files.size(); ++f) {
        for (const std::size_t slot : countSlots(mesh, mesh.files[f], counts)) {
            Piece piece;
            piece.part = static_cast<std::uint32_t>(slot / familyCount);
            piece.family = static_cast<Family>(slot % familyCount);
            piece.count = std::exchange(counts[slot], 0);
            table[f].push_back(std::move(piece));
        }
    }
    return table;
}

std::vector<std::vector<Piece*>> piecesByPart(const Mesh& mesh, PieceTable& table)
{
    std::vector<std::vector<Piece*>> parts(mesh.parts.size());
    for (std::vector<Piece>& file : table) {
        for (Piece& piece : file) {
            parts[piece.part].push_back(&piece);
        }
    }
    return parts;
}

std::string quotedPart(const MeshPart& part)
{
    return (part.id == 0 ? "part \"" : "part " + std::to_string(part.id) + " \"") + part.name + "\"";
}

std::int64_t highestPartId(const Mesh& mesh)
{
    std::int64_t highest = 0;
    for (const MeshPart& part : mesh.parts) {
        highest = part.id <= maxModelId ? std::max(highest, part.id) : highest;
    }
    return highest;
}

// The ids that the parts have in the model: their own where that can be, else one above the highest.
std::vector<std::int64_t> partIds(const Mesh& mesh, std::int64_t& highest, ImportLog& log)
{
    std::vector<std::int64_t> ids;
    std::set<std::int64_t> taken;
    for (const MeshPart& part : mesh.parts) {
        const bool possible = part.id > 0 && part.id <= maxModelId;
        const bool free = possible && taken.insert(part.id).second;
        ids.push_back(free ? part.id : ++highest);
        if (!free && part.id != 0) {
            log.note(quotedPart(part) + (possible ? " has the id of another part" : " has an id that cannot be kept") +
                     ": it is part " + std::to_string(ids.back()));
        }
    }
    return ids;
}

// The largest piece of a part keeps its id.
void numberPieces(const Mesh& mesh, PieceTable& table, ImportLog& log)
{
    std::int64_t highest = highestPartId(mesh);
    const std::vector<std::int64_t> ids = partIds(mesh, highest, log);
    std::vector<std::vector<Piece*>> parts = piecesByPart(mesh, table);
    for (std::size_t p = 0; p < parts.size(); ++p) {
        std::vector<Piece*>& pieces = parts[p];
        std::stable_sort(pieces.begin(), pieces.end(),
                         [](const Piece* a, const Piece* b) { return a->count > b->count; });
        for (Piece* piece : pieces) {
            piece->renamed = piece != pieces.front();
            piece->id = piece->renamed ? ++highest : ids[p];
            if (piece->renamed) {
                log.note(quotedPart(mesh.parts[p]) + " is split: its " + std::to_string(piece->count) + " " +
                         familyName(piece->family) + (piece->count == 1 ? " element is part " : " elements are part ") +
                         std::to_string(piece->id));
            }
        }
    }
}

} // namespace

std::string sourceName(const Mesh& mesh)
{
    return mesh.sourceFiles.empty() ? std::string() : mesh.sourceFiles.front();
}

unsigned int modelId(const Mesh& mesh, std::int64_t id, const char* what, std::int64_t lowest)
{
    if (id < lowest || id > maxModelId) {
        refuseId({sourceName(mesh), 0}, what, id, lowest);
    }
    return static_cast<unsigned int>(id);
}

unsigned int modelElementId(const Mesh& mesh, const ElementBlock& block, std::size_t element)
{
    const std::int64_t id = block.ids[element];
    if (id < 1 || id > maxModelId) {
        refuseId(mesh.placeOf(block, element), "element", id, 1);
    }
    return static_cast<unsigned int>(id);
}

unsigned int modelNodeId(const Mesh& mesh, const MeshFile& file, std::size_t node)
{
    const std::int64_t id = file.nodeIds[node];
    if (id < 1 || id > maxModelId) {
        refuseId(mesh.placeOfNode(file, node), "node", id, 1);
    }
    return static_cast<unsigned int>(id);
}

float modelCoordinate(const Mesh& mesh, const MeshFile& file, std::size_t node, std::size_t axis, double origin)
{
    const double value = file.xyz[3 * node + axis] - origin;
    if (!(std::fabs(value) <= FLT_MAX)) {
        throw ImportError(mesh.placeOfNode(file, node),
                          "node " + std::to_string(file.nodeIds[node]) + ": a coordinate is beyond single precision");
    }
    return static_cast<float>(value);
}

PieceTable findPieces(const Mesh& mesh, ImportLog& log)
{
    PieceTable table = countPieces(mesh);
    numberPieces(mesh, table, log);
    return table;
}

PieceTypes typesOfPieces(const Mesh& mesh, const MeshFile& file)
{
    PieceTypes parts;
    for (const ElementBlock& block : file.blocks) {
        const Family family = mesh.types[block.type].family;
        std::uint32_t part = noPart;
        IdSet* set = nullptr;
        for (std::size_t e = 0; e < block.size(); ++e) {
            if (block.part[e] == noPart) {
                continue;
            }
            if (block.part[e] != part) {
                part = block.part[e];
                set = &parts[{part, family}][block.type];
            }
            set->add(block.ids[e]);
        }
    }
    return parts;
}

std::string pieceName(const Mesh& mesh, const Piece& piece)
{
    const std::string& name = mesh.parts[piece.part].name;
    return piece.renamed ? name + " (" + familyName(piece.family) + ")" : name;
}

} // namespace kvo
