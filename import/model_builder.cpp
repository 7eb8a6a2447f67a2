// Feeding the model writer.
#include "model_builder.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <utility>

#include "model_origin.h"
#include "model_pieces.h"
#include "model_slots.h"
#include "modelwriter.h"
#include "numbering.h"
#include "side_file.h"

namespace kvo {

namespace {

constexpr std::size_t longestName = 255;

// What the elements of a piece become.
struct PieceArrays
{
    std::vector<unsigned int> ids;
    std::vector<unsigned int> slots;
};

ModelPart partOf(const Mesh& mesh, const Piece& piece)
{
    const MeshPart& source = mesh.parts[piece.part];
    ModelPart part;
    part.id = modelId(mesh, piece.id, "part", 1);
    part.name = pieceName(mesh, piece);
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
                 std::vector<PieceArrays>& arrays)
{
    const ElementType& type = mesh.types[block.type];
    const std::size_t entries = static_cast<std::size_t>(type.slots());
    const std::size_t stride = static_cast<std::size_t>(modelStride(type.family));
    unsigned int slots[maxModelSlots];
    for (std::size_t e = 0; e < block.size(); ++e) {
        if (block.part[e] == noPart) {
            continue;
        }
        PieceArrays& piece = arrays[pieceAt[pieceSlot(block.part[e], type.family)]];
        fillModelSlots(type, &block.nodes[e * entries], slots);
        piece.ids.push_back(modelElementId(mesh, block, e));
        piece.slots.insert(piece.slots.end(), slots, slots + stride);
    }
}

// pieceAt is scratch with one entry a pieceSlot().
void writeParts(const Mesh& mesh, const MeshFile& file, std::vector<std::uint32_t>& pieceAt,
                const std::vector<Piece>& pieces, ModelWriter& writer)
{
    std::vector<PieceArrays> arrays(pieces.size());
    for (std::size_t k = 0; k < pieces.size(); ++k) {
        const Piece& piece = pieces[k];
        pieceAt[pieceSlot(piece.part, piece.family)] = static_cast<std::uint32_t>(k);
        arrays[k].ids.reserve(piece.count);
        arrays[k].slots.reserve(piece.count * static_cast<std::size_t>(modelStride(piece.family)));
    }
    for (const ElementBlock& block : file.blocks) {
        addElements(mesh, block, pieceAt, arrays);
    }
    for (std::size_t k = 0; k < pieces.size(); ++k) {
        writer.addPart(partOf(mesh, pieces[k]), arrays[k].ids.size(), arrays[k].ids.data(), arrays[k].slots.data(),
                       NodeReference::ByIndex);
        arrays[k] = {};
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
            ids.push_back(modelNodeId(mesh, file, k));
            for (std::size_t axis = 0; axis < 3; ++axis) {
                xyz.push_back(modelCoordinate(mesh, file, k, axis, origin[axis]));
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
    const PieceTable table = findPieces(mesh, log);
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
