// Feeding the model writer.
#include "model_builder.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <filesystem>
#include <new>
#include <set>
#include <utility>

#include "model_origin.h"
#include "model_slots.h"
#include "modelwriter.h"
#include "numbering.h"
#include "side_file.h"

namespace kvo {

namespace {

constexpr std::size_t longestName = 255;

// The elements of one part, family and file: a part of the model.
struct Piece
{
    std::uint32_t part = 0;
    Family family = Family::Shell;
    std::int64_t id = 0;
    std::uint64_t count = 0;
    bool renamed = false; // split off its part
    std::vector<unsigned int> ids;
    std::vector<unsigned int> slots;
};

// The pieces of each file, ordered by part and family. A deck may have as many files and parts as instances: the table
// has room for what is there, not for every part in every file.
using PieceTable = std::vector<std::vector<Piece>>;

std::size_t pieceSlot(std::uint32_t part, Family family)
{
    return std::size_t(part) * familyCount + static_cast<std::size_t>(family);
}

std::string sourceName(const Mesh& mesh)
{
    return mesh.sourceFiles.empty() ? std::string() : mesh.sourceFiles.front();
}

[[noreturn]] void refuseId(const Place& place, const char* what, std::int64_t id, std::int64_t lowest)
{
    throw ImportError(place, std::string(what) + " id " + std::to_string(id) + " cannot be kept: a model's ids are " +
                                 std::to_string(lowest) + " to " + std::to_string(maxModelId));
}

unsigned int modelId(const Mesh& mesh, std::int64_t id, const char* what, std::int64_t lowest)
{
    if (id < lowest || id > maxModelId) {
        refuseId({sourceName(mesh), 0}, what, id, lowest);
    }
    return static_cast<unsigned int>(id);
}

// --- parts ---

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

ModelPart partOf(const Mesh& mesh, const Piece& piece)
{
    const MeshPart& source = mesh.parts[piece.part];
    ModelPart part;
    part.id = modelId(mesh, piece.id, "part", 1);
    part.name = piece.renamed ? source.name + " (" + familyName(piece.family) + ")" : source.name;
    part.drawType = modelDrawType(piece.family);
    part.stride = static_cast<unsigned int>(modelStride(piece.family));
    part.propertyId = modelId(mesh, source.propertyId, "property", 0);
    part.propertyName = source.section;
    part.materialId = modelId(mesh, source.materialId, "material", 0);
    part.materialName = source.materialName;
    return part;
}

// --- elements ---

// pieceAt: the position in pieces of each pieceSlot() that the file has.
void addElements(const Mesh& mesh, const ElementBlock& block, const std::vector<std::uint32_t>& pieceAt,
                 std::vector<Piece>& pieces)
{
    const ElementType& type = mesh.types[block.type];
    const std::size_t entries = static_cast<std::size_t>(type.slots());
    const std::size_t stride = static_cast<std::size_t>(modelStride(type.family));
    unsigned int slots[maxModelSlots];
    for (std::size_t e = 0; e < block.size(); ++e) {
        if (block.part[e] == noPart) {
            continue;
        }
        Piece& piece = pieces[pieceAt[pieceSlot(block.part[e], type.family)]];
        if (block.ids[e] < 1 || block.ids[e] > maxModelId) {
            refuseId(mesh.placeOf(block, e), "element", block.ids[e], 1);
        }
        fillModelSlots(type, &block.nodes[e * entries], slots);
        piece.ids.push_back(static_cast<unsigned int>(block.ids[e]));
        piece.slots.insert(piece.slots.end(), slots, slots + stride);
    }
}

// pieceAt is scratch with one entry a pieceSlot().
void writeParts(const Mesh& mesh, const MeshFile& file, std::vector<std::uint32_t>& pieceAt, std::vector<Piece>& pieces,
                ModelWriter& writer)
{
    for (std::size_t k = 0; k < pieces.size(); ++k) {
        Piece& piece = pieces[k];
        pieceAt[pieceSlot(piece.part, piece.family)] = static_cast<std::uint32_t>(k);
        piece.ids.reserve(piece.count);
        piece.slots.reserve(piece.count * static_cast<std::size_t>(modelStride(piece.family)));
    }
    for (const ElementBlock& block : file.blocks) {
        addElements(mesh, block, pieceAt, pieces);
    }
    for (Piece& piece : pieces) {
        writer.addPart(partOf(mesh, piece), piece.ids.size(), piece.ids.data(), piece.slots.data(),
                       NodeReference::ByIndex);
        piece.ids = {};
        piece.slots = {};
    }
}

// --- nodes ---

void writeNodes(const Mesh& mesh, const MeshFile& file, const Origin& origin, ModelWriter& writer)
{
    constexpr std::size_t chunk = 65536;
    std::vector<unsigned int> ids;
    std::vector<float> xyz;
    for (std::size_t start = 0; start < file.nodeIds.size(); start += chunk) {
        const std::size_t stop = std::min(start + chunk, file.nodeIds.size());
        ids.clear();
        xyz.clear();
        for (std::size_t k = start; k < stop; ++k) {
            if (file.nodeIds[k] < 1 || file.nodeIds[k] > maxModelId) {
                refuseId(mesh.placeOfNode(file, k), "node", file.nodeIds[k], 1);
            }
            ids.push_back(static_cast<unsigned int>(file.nodeIds[k]));
            for (std::size_t c = 3 * k; c < 3 * k + 3; ++c) {
                const double value = file.xyz[c] - origin[c % 3];
                if (!(std::fabs(value) <= FLT_MAX)) {
                    throw ImportError(mesh.placeOfNode(file, k), "node " + std::to_string(file.nodeIds[k]) +
                                                                     ": a coordinate is beyond single precision");
                }
                xyz.push_back(static_cast<float>(value));
            }
        }
        writer.addNodes(ids.size(), ids.data(), xyz.data());
    }
}

// --- names ---

// A folder name below the model's folder for an instance: unique by its number, without what a path must not have.
std::string fileNameOf(const std::string& modelName, std::size_t number, const std::string& name)
{
    std::string result = modelName + "/" + std::to_string(number) + "_";
    for (const char c : name) {
        const bool plain = static_cast<unsigned char>(c) >= 32 && c != '/' && c != 127;
        if (result.size() < longestName) {
            result += plain ? c : '_';
        }
    }
    return result;
}

std::vector<std::string> fileNames(const Mesh& mesh, const std::string& modelName)
{
    std::vector<std::string> names;
    for (std::size_t f = 0; f < mesh.files.size(); ++f) {
        names.push_back(mesh.files.size() > 1 ? fileNameOf(modelName, f + 1, mesh.files[f].name) : modelName);
    }
    return names;
}

// --- the model ---

SideData sideData(const PieceTable& table, std::vector<std::string> names, const Origin& origin)
{
    SideData side;
    side.fileNames = std::move(names);
    side.origin = origin;
    for (std::size_t f = 0; f < table.size(); ++f) {
        for (const Piece& piece : table[f]) {
            side.parts.push_back({piece.id, static_cast<std::uint32_t>(f), piece.part, piece.family});
        }
    }
    return side;
}

void writeModel(const Mesh& mesh, const std::string& folder, const std::string& name, const Origin& origin,
                ImportLog& log)
{
    PieceTable table = countPieces(mesh);
    numberPieces(mesh, table, log);
    ModelWriter writer(folder, name);
    const std::vector<std::string> names = fileNames(mesh, name);
    writer.setDeck(sideFileText(mesh, sideData(table, names, origin)));
    std::vector<std::uint32_t> pieceAt(mesh.parts.size() * familyCount);
    for (std::size_t f = 0; f < mesh.files.size(); ++f) {
        if (mesh.files.size() > 1) {
            writer.beginFile(names[f]);
        }
        writeNodes(mesh, mesh.files[f], origin, writer);
        writeParts(mesh, mesh.files[f], pieceAt, table[f], writer);
    }
    std::string error;
    if (!writer.write(&error)) {
        throw ImportError({}, error);
    }
}

std::filesystem::path modelPath(const std::string& modelDir)
{
    const std::filesystem::path path = std::filesystem::path(modelDir).lexically_normal();
    return path.has_filename() ? path : path.parent_path(); // "models/bracket/"
}

// Drawn or not, dropped or not.
bool hasElements(const Mesh& mesh)
{
    return std::any_of(mesh.files.begin(), mesh.files.end(),
                       [](const MeshFile& file) { return !file.blocks.empty() || !file.undrawn.empty(); });
}

} // namespace

void checkModelName(const std::string& modelDir)
{
    const std::string name = modelPath(modelDir).filename().string();
    if (name.empty() || name == "." || name == "..") {
        throw ImportError({modelDir, 0}, "is no name for a model directory");
    }
    if (name.size() > longestModelName) {
        throw ImportError({modelDir, 0}, "the model's name has " + std::to_string(name.size()) +
                                             " bytes; a model with more than " + std::to_string(longestModelName) +
                                             " could not be loaded");
    }
}

void writeModelDirectory(const Mesh& mesh, const std::string& modelDir, ImportLog& log, const ModelOptions& options)
{
    checkModelName(modelDir);
    const std::filesystem::path path = modelPath(modelDir);
    const std::string folder = path.has_parent_path() ? path.parent_path().string() : ".";
    const std::string name = path.filename().string();
    if (mesh.nodeCount() == 0) {
        throw ImportError({sourceName(mesh), 0}, "the deck has no nodes");
    }
    if (mesh.elementCount() == 0) {
        log.warn("nothing to draw", {sourceName(mesh), 0},
                 hasElements(mesh) ? "no element of the deck can be drawn" : "the deck has nodes, but no elements");
    }
    try {
        writeModel(mesh, folder, name, chooseOrigin(mesh, options.shiftOrigin, log), log);
    } catch (const std::bad_alloc&) {
        throw ImportError({sourceName(mesh), 0}, "its model needs more memory than there is");
    }
}

} // namespace kvo
