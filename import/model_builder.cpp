// Feeding the model writer.
#include "model_builder.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <filesystem>
#include <limits>
#include <sstream>

#include "model_slots.h"
#include "modelwriter.h"

namespace kvo {

namespace {

constexpr std::int64_t maxModelId = 0xFFFFFFFE; // the highest 32-bit value means "none"
constexpr double floatSteps = 8388608.0;        // 2^23: a float's resolution
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

// pieces[file][part * familyCount + family]; those without elements stay empty.
using PieceTable = std::vector<std::vector<Piece>>;

std::string sourceName(const Mesh& mesh)
{
    return mesh.sourceFiles.empty() ? std::string() : mesh.sourceFiles.front();
}

unsigned int modelId(const Mesh& mesh, std::int64_t id, const char* what, std::int64_t lowest)
{
    if (id < lowest || id > maxModelId) {
        throw ImportError({sourceName(mesh), 0}, std::string(what) + " id " + std::to_string(id) +
                                                     " cannot be kept: a model's ids are " + std::to_string(lowest) +
                                                     " to " + std::to_string(maxModelId));
    }
    return static_cast<unsigned int>(id);
}

// --- parts ---

PieceTable countPieces(const Mesh& mesh)
{
    PieceTable table(mesh.files.size(), std::vector<Piece>(mesh.parts.size() * familyCount));
    for (std::size_t f = 0; f < mesh.files.size(); ++f) {
        for (const ElementBlock& block : mesh.files[f].blocks) {
            const Family family = mesh.types[block.type].family;
            for (const std::uint32_t part : block.part) {
                if (part != noPart) {
                    Piece& piece = table[f][std::size_t(part) * familyCount + static_cast<std::size_t>(family)];
                    piece.part = part;
                    piece.family = family;
                    ++piece.count;
                }
            }
        }
    }
    return table;
}

std::vector<Piece*> piecesOfPart(PieceTable& table, std::size_t part)
{
    std::vector<Piece*> pieces;
    for (std::vector<Piece>& file : table) {
        for (std::size_t family = 0; family < familyCount; ++family) {
            Piece& piece = file[part * familyCount + family];
            if (piece.count > 0) {
                pieces.push_back(&piece);
            }
        }
    }
    return pieces;
}

// The largest piece of a part keeps its id.
void numberPieces(const Mesh& mesh, PieceTable& table, ImportLog& log)
{
    std::int64_t highest = 0;
    for (const MeshPart& part : mesh.parts) {
        highest = std::max(highest, part.id);
    }
    for (std::size_t p = 0; p < mesh.parts.size(); ++p) {
        std::vector<Piece*> pieces = piecesOfPart(table, p);
        std::stable_sort(pieces.begin(), pieces.end(),
                         [](const Piece* a, const Piece* b) { return a->count > b->count; });
        const std::string name = "part " + std::to_string(mesh.parts[p].id) + " \"" + mesh.parts[p].name + "\"";
        for (Piece* piece : pieces) {
            piece->renamed = piece != pieces.front();
            piece->id = piece->renamed ? ++highest : mesh.parts[p].id;
            if (piece->renamed) {
                log.note(name + " is split: its " + std::to_string(piece->count) + " " + familyName(piece->family) +
                         " elements are part " + std::to_string(piece->id));
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

void addElements(const Mesh& mesh, const ElementBlock& block, std::vector<Piece>& pieces)
{
    const ElementType& type = mesh.types[block.type];
    const std::size_t family = static_cast<std::size_t>(type.family);
    const std::size_t entries = static_cast<std::size_t>(type.slots());
    const std::size_t stride = static_cast<std::size_t>(modelStride(type.family));
    unsigned int slots[maxModelSlots];
    for (std::size_t e = 0; e < block.size(); ++e) {
        if (block.part[e] == noPart) {
            continue;
        }
        Piece& piece = pieces[std::size_t(block.part[e]) * familyCount + family];
        if (block.ids[e] < 1 || block.ids[e] > maxModelId) {
            throw ImportError(mesh.placeOf(block, e), "element id " + std::to_string(block.ids[e]) +
                                                          " cannot be kept: a model's ids are 1 to " +
                                                          std::to_string(maxModelId));
        }
        fillModelSlots(type, &block.nodes[e * entries], slots);
        piece.ids.push_back(static_cast<unsigned int>(block.ids[e]));
        piece.slots.insert(piece.slots.end(), slots, slots + stride);
    }
}

void writeParts(const Mesh& mesh, const MeshFile& file, std::vector<Piece>& pieces, ModelWriter& writer)
{
    for (Piece& piece : pieces) {
        piece.ids.reserve(piece.count);
        piece.slots.reserve(piece.count * static_cast<std::size_t>(modelStride(piece.family)));
    }
    for (const ElementBlock& block : file.blocks) {
        addElements(mesh, block, pieces);
    }
    for (Piece& piece : pieces) {
        if (piece.count > 0) {
            writer.addPart(partOf(mesh, piece), piece.ids.size(), piece.ids.data(), piece.slots.data(),
                           NodeReference::ByIndex);
        }
        piece.ids = {};
        piece.slots = {};
    }
}

// --- nodes ---

void writeNodes(const Mesh& mesh, const MeshFile& file, ModelWriter& writer)
{
    constexpr std::size_t chunk = 65536;
    std::vector<unsigned int> ids;
    std::vector<float> xyz;
    for (std::size_t start = 0; start < file.nodeIds.size(); start += chunk) {
        const std::size_t stop = std::min(start + chunk, file.nodeIds.size());
        ids.clear();
        xyz.clear();
        for (std::size_t k = start; k < stop; ++k) {
            ids.push_back(modelId(mesh, file.nodeIds[k], "node", 1));
            for (std::size_t c = 3 * k; c < 3 * k + 3; ++c) {
                if (!(std::fabs(file.xyz[c]) <= FLT_MAX)) {
                    throw ImportError({sourceName(mesh), 0}, "node " + std::to_string(file.nodeIds[k]) +
                                                                 ": a coordinate is beyond single precision");
                }
                xyz.push_back(static_cast<float>(file.xyz[c]));
            }
        }
        writer.addNodes(ids.size(), ids.data(), xyz.data());
    }
}

// The shortest edge, of those along the corners in their order, that has a length; squared.
double shortestEdgeSquared(const Mesh& mesh, const MeshFile& file)
{
    double shortest = std::numeric_limits<double>::infinity();
    for (const ElementBlock& block : file.blocks) {
        const ElementType& type = mesh.types[block.type];
        const std::size_t corners = static_cast<std::size_t>(cornerCount(type.shape));
        const std::size_t entries = static_cast<std::size_t>(type.slots());
        for (std::size_t e = 0; e < block.size(); ++e) {
            const std::int64_t* nodes = &block.nodes[e * entries];
            for (std::size_t k = 1; k < corners && block.part[e] != noPart; ++k) {
                const double* a = &file.xyz[3 * static_cast<std::size_t>(nodes[k - 1])];
                const double* b = &file.xyz[3 * static_cast<std::size_t>(nodes[k])];
                const double squared =
                    (a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1]) + (a[2] - b[2]) * (a[2] - b[2]);
                shortest = squared > 0.0 ? std::min(shortest, squared) : shortest;
            }
        }
    }
    return shortest;
}

void reportPrecision(const Mesh& mesh, ImportLog& log)
{
    double farthest = 0.0;
    double shortest = std::numeric_limits<double>::infinity();
    for (const MeshFile& file : mesh.files) {
        for (const double c : file.xyz) {
            farthest = std::max(farthest, std::fabs(c));
        }
        shortest = std::min(shortest, shortestEdgeSquared(mesh, file));
    }
    shortest = std::sqrt(shortest);
    if (farthest > floatSteps * shortest) {
        std::ostringstream text;
        text << "coordinates reach " << farthest << " and the shortest element edge is " << shortest
             << ": single precision cannot keep such edges";
        log.note(text.str());
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

void writeFiles(const Mesh& mesh, const std::string& modelName, PieceTable& table, ModelWriter& writer)
{
    for (std::size_t f = 0; f < mesh.files.size(); ++f) {
        if (mesh.files.size() > 1) {
            writer.beginFile(fileNameOf(modelName, f + 1, mesh.files[f].name));
        }
        writeNodes(mesh, mesh.files[f], writer);
        writeParts(mesh, mesh.files[f], table[f], writer);
    }
}

} // namespace

void writeModelDirectory(const Mesh& mesh, const std::string& modelDir, ImportLog& log)
{
    std::filesystem::path path = std::filesystem::path(modelDir).lexically_normal();
    if (!path.has_filename()) {
        path = path.parent_path(); // "models/bracket/"
    }
    const std::string folder = path.has_parent_path() ? path.parent_path().string() : ".";
    const std::string name = path.filename().string();
    if (name.empty() || name == "." || name == "..") {
        throw ImportError({modelDir, 0}, "is no name for a model directory");
    }
    if (mesh.nodeCount() == 0) {
        throw ImportError({sourceName(mesh), 0}, "the deck has no nodes");
    }
    if (mesh.elementCount() == 0) {
        log.warn("nothing to draw", {sourceName(mesh), 0}, "no element of the deck can be drawn");
    }
    reportPrecision(mesh, log);
    PieceTable table = countPieces(mesh);
    numberPieces(mesh, table, log);
    ModelWriter writer(folder, name);
    writeFiles(mesh, name, table, writer);
    std::string error;
    if (!writer.write(&error)) {
        throw ImportError({}, error);
    }
}

} // namespace kvo
