// Filling the parts of a model, file by file.
#include "mesh_model.h"

#include <algorithm>
#include <utility>

#include "model_origin.h"
#include "model_pieces.h"
#include "model_slots.h"

namespace kvo {

namespace {

constexpr std::uint32_t unplaced = 0xFFFFFFFF;

ElementKind kindOf(Family family)
{
    static constexpr ElementKind kinds[familyCount] = {ElementKind::Shell, ElementKind::Solid, ElementKind::Beam,
                                                       ElementKind::Discrete};
    return kinds[static_cast<int>(family)];
}

// The elements of a piece; slots are positions in the file's nodes until the piece has nodes of its own.
struct PieceElements
{
    std::vector<std::uint32_t> ids;
    std::vector<std::uint32_t> slots;
};

// --- Elements ---

// Blocks go when they are read: a mesh holds several times what a model does.
std::vector<PieceElements> takeElements(const Mesh& mesh, MeshFile& file, const std::vector<Piece>& pieces,
                                        std::vector<std::uint32_t>& pieceAt)
{
    std::vector<PieceElements> out(pieces.size());
    for (std::size_t k = 0; k < pieces.size(); ++k) {
        pieceAt[pieceSlot(pieces[k].part, pieces[k].family)] = static_cast<std::uint32_t>(k);
        out[k].ids.reserve(pieces[k].count);
        out[k].slots.reserve(pieces[k].count * static_cast<std::size_t>(modelStride(pieces[k].family)));
    }
    for (; !file.blocks.empty(); file.blocks.pop_front()) {
        const ElementBlock& block = file.blocks.front();
        const ElementType& type = mesh.types[block.type];
        const std::size_t entries = static_cast<std::size_t>(type.slots());
        const std::size_t stride = static_cast<std::size_t>(modelStride(type.family));
        for (std::size_t e = 0; e < block.size(); ++e) {
            if (block.part[e] == noPart) {
                continue;
            }
            PieceElements& piece = out[pieceAt[pieceSlot(block.part[e], type.family)]];
            piece.ids.push_back(modelElementId(mesh, block, e));
            piece.slots.resize(piece.slots.size() + stride);
            fillModelSlots(type, &block.nodes[e * entries], &*piece.slots.end() - stride);
        }
    }
    return out;
}

// --- Nodes ---

// The nodes that slots name, ascending. Marks them in places, which is all unplaced before.
std::vector<std::uint32_t> usedNodes(const std::vector<std::uint32_t>& slots, std::vector<std::uint32_t>& places)
{
    std::vector<std::uint32_t> used;
    std::uint32_t low = unplaced, high = 0;
    for (const std::uint32_t slot : slots) {
        if (slot != emptySlot && places[slot] == unplaced) {
            places[slot] = 0;
            used.push_back(slot);
            low = std::min(low, slot);
            high = std::max(high, slot);
        }
    }
    if (used.size() < (high - low) / 16) {
        std::sort(used.begin(), used.end());
        return used;
    }
    used.clear();
    for (std::uint32_t node = low; node <= high && low != unplaced; ++node) {
        if (places[node] != unplaced) {
            used.push_back(node);
        }
    }
    return used;
}

struct PieceNodes
{
    std::vector<std::uint32_t> ids;
    std::vector<float> positions;
};

// Gives a piece nodes of its own, which its slots name from then on. places is scratch: unplaced for every node of the
// file, and so again afterwards.
PieceNodes takeNodes(const Mesh& mesh, const MeshFile& file, const Origin& origin, std::vector<std::uint32_t>& places,
                     std::vector<std::uint32_t>& slots)
{
    const std::vector<std::uint32_t> used = usedNodes(slots, places);
    PieceNodes out;
    out.ids.reserve(used.size());
    out.positions.reserve(3 * used.size());
    for (const std::uint32_t node : used) {
        places[node] = static_cast<std::uint32_t>(out.ids.size());
        out.ids.push_back(modelNodeId(mesh, file, node));
        for (std::size_t axis = 0; axis < 3; ++axis) {
            out.positions.push_back(modelCoordinate(mesh, file, node, axis, origin[axis]));
        }
    }
    for (std::uint32_t& slot : slots) {
        slot = slot == emptySlot ? emptySlot : places[slot];
    }
    for (const std::uint32_t node : used) {
        places[node] = unplaced;
    }
    return out;
}

// --- What a part says of itself ---

Section sectionOf(const MeshPart& part)
{
    Section out;
    out.kind = part.section;
    out.thickness = part.data.thickness;
    out.shape = part.data.shape;
    out.sizes = part.data.sizes;
    out.area = part.data.area;
    out.stiffness = part.data.stiffness;
    out.damping = part.data.damping;
    return out;
}

std::vector<ElementTypeUse> typesOf(const Mesh& mesh, const TypeElements& types)
{
    std::vector<ElementTypeUse> out;
    for (const auto& entry : types) {
        out.push_back({mesh.types[entry.first].name, entry.second.size(), {}});
        if (types.size() > 1) {
            out.back().elements = entry.second.ranges;
        }
    }
    return out;
}

Part partOf(const Mesh& mesh, const Piece& piece, std::size_t file, const PieceTypes& types)
{
    const MeshPart& source = mesh.parts[piece.part];
    Part part;
    part.id = modelId(mesh, piece.id, "part", 1);
    part.name = pieceName(mesh, piece);
    part.kind = kindOf(piece.family);
    part.deckId = source.id;
    part.file = static_cast<std::uint32_t>(file);
    part.propertyId = modelId(mesh, source.propertyId, "property", 0);
    part.propertyName = source.section;
    part.materialId = modelId(mesh, source.materialId, "material", 0);
    part.materialName = source.materialName;
    part.section = sectionOf(source);
    part.types = typesOf(mesh, types.at({piece.part, piece.family}));
    return part;
}

// --- What has no part ---

ModelSet setOf(MeshSet& set)
{
    ModelSet out;
    out.of = static_cast<ModelSet::Of>(set.of);
    out.name = std::move(set.name);
    out.id = set.id;
    out.file = set.file == MeshSet::wholeMesh ? ModelSet::wholeModel : set.file;
    out.oneKind = set.family != MeshSet::anyFamily;
    out.kind = out.oneKind ? kindOf(static_cast<Family>(set.family)) : ElementKind::Shell;
    out.ids = std::move(set.ids.ranges);
    return out;
}

void addOrientations(MeshFile& file, std::uint32_t number, ModelFacts& facts)
{
    for (Orientation& row : file.orientations) {
        ModelOrientation out;
        out.vector = row.vector;
        out.file = number;
        out.oneKind = row.family != Orientation::anyFamily;
        out.kind = out.oneKind ? kindOf(static_cast<Family>(row.family)) : ElementKind::Beam;
        out.elements = std::move(row.elements.ranges);
        facts.orientations.push_back(std::move(out));
    }
}

void addUndrawn(MeshFile& file, std::uint32_t number, ModelFacts& facts)
{
    for (UndrawnElements& row : file.undrawn) {
        ModelUndrawn out;
        out.type = std::move(row.type);
        out.file = number;
        out.ids = std::move(row.ids);
        out.starts.assign(row.starts.begin(), row.starts.end());
        out.starts.push_back(row.nodes.size());
        out.nodes = std::move(row.nodes);
        facts.undrawn.push_back(std::move(out));
    }
}

ModelFacts factsOf(Mesh& mesh)
{
    ModelFacts facts;
    facts.format = std::move(mesh.formatName);
    facts.sources = mesh.sourceFiles; // messages name them
    facts.facts = std::move(mesh.facts);
    facts.idsPerKind = mesh.idsPerFamily;
    for (MeshSet& set : mesh.sets) {
        facts.sets.push_back(setOf(set));
    }
    for (std::size_t f = 0; f < mesh.files.size(); ++f) {
        addOrientations(mesh.files[f], static_cast<std::uint32_t>(f), facts);
        addUndrawn(mesh.files[f], static_cast<std::uint32_t>(f), facts);
    }
    return facts;
}

// --- The model ---

void addFile(const Mesh& mesh, std::size_t number, MeshFile& file, const std::vector<Piece>& pieces,
             const Origin& origin, std::vector<std::uint32_t>& pieceAt, ModelBuilder& builder)
{
    const PieceTypes types = typesOfPieces(mesh, file);
    std::vector<PieceElements> elements = takeElements(mesh, file, pieces, pieceAt);
    std::vector<std::uint32_t> places(file.nodeIds.size(), unplaced);
    for (std::size_t k = 0; k < pieces.size(); ++k) {
        PieceNodes nodes = takeNodes(mesh, file, origin, places, elements[k].slots);
        const std::uint32_t slotCount = static_cast<std::uint32_t>(modelStride(pieces[k].family));
        builder.addPart(partOf(mesh, pieces[k], number, types), false, std::move(nodes.ids), std::move(nodes.positions),
                        std::move(elements[k].ids), slotCount, std::move(elements[k].slots));
    }
    file.nodeIds = {};
    file.xyz = {};
}

} // namespace

Model makeModel(Mesh&& mesh, ImportLog& log)
{
    const PieceTable pieces = findPieces(mesh, log);
    const Origin origin = chooseFarOrigin(mesh);
    ModelBuilder builder(origin);
    std::vector<std::uint32_t> pieceAt(mesh.parts.size() * familyCount);
    for (std::size_t f = 0; f < mesh.files.size(); ++f) {
        builder.addFile(mesh.files[f].name);
        addFile(mesh, f, mesh.files[f], pieces[f], origin, pieceAt, builder);
    }
    builder.setFacts(factsOf(mesh));
    return builder.build();
}

} // namespace kvo
