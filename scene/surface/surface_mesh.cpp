#include "surface_mesh.h"

#include <algorithm>
#include <limits>

#include "parallel.h"

namespace kvo {

namespace {

constexpr std::size_t blocksPerChunk = 32;
constexpr std::size_t facesPerChunk = facesPerBlock * blocksPerChunk;

// --- Order in space ---

std::uint32_t spread(std::uint32_t bits) // ten bits to every third
{
    bits = (bits | bits << 16) & 0x030000FF;
    bits = (bits | bits << 8) & 0x0300F00F;
    bits = (bits | bits << 4) & 0x030C30C3;
    return (bits | bits << 2) & 0x09249249;
}

struct Keyed
{
    std::uint32_t key;
    std::uint32_t face;
};

// A cube about the part, cut into 1024 cells a side.
class MortonGrid
{
public:
    explicit MortonGrid(const PartMesh& drawnPart) : part(drawnPart)
    {
        float size = 0;
        for (int axis = 0; axis < 3; ++axis) {
            low[axis] = part.extents[2 * axis];
            size = std::max(size, part.extents[2 * axis + 1] - low[axis]);
        }
        cells = size > 0 ? 1023.99f / size : 0;
    }
    std::uint32_t key(const SurfaceFace& face) const
    {
        // The middle of a diagonal is near enough.
        const float* a = positionOf(part, face.nodes[0]);
        const float* b = positionOf(part, face.nodes[2]);
        std::uint32_t out = 0;
        for (int axis = 0; axis < 3; ++axis) {
            const float at = ((a[axis] + b[axis]) / 2 - low[axis]) * cells;
            out |= spread(at > 0 ? static_cast<std::uint32_t>(std::min(at, 1023.0f)) : 0) << axis;
        }
        return out;
    }

private:
    const PartMesh part;
    float low[3];
    float cells;
};

void radixSort(RawVector<Keyed>& items)
{
    constexpr unsigned int digitBits = 10, digits = 1u << digitBits;
    RawVector<Keyed> other(items.size());
    for (unsigned int shift = 0; shift < 30; shift += digitBits) {
        std::size_t starts[digits + 1] = {};
        for (const Keyed& item : items) {
            ++starts[(item.key >> shift & (digits - 1)) + 1];
        }
        for (unsigned int d = 0; d < digits; ++d) {
            starts[d + 1] += starts[d];
        }
        for (const Keyed& item : items) {
            other[starts[item.key >> shift & (digits - 1)]++] = item;
        }
        items.swap(other);
    }
}

RawVector<std::uint32_t> orderInSpace(const PartMesh& part, const PartSurface& surface, bool quads)
{
    const MortonGrid grid(part);
    RawVector<Keyed> keyed;
    keyed.reserve(surface.faces.size());
    for (std::size_t f = 0; f < surface.faces.size(); ++f) {
        if ((surface.faces[f].nodes[3] != noCorner) == quads) {
            keyed.push_back({0, static_cast<std::uint32_t>(f)});
        }
    }
    if (keyed.size() > facesPerBlock) {
        parallelFor(keyed.size(), 65536, [&](std::size_t begin, std::size_t end) {
            for (std::size_t k = begin; k < end; ++k) {
                keyed[k].key = grid.key(surface.faces[keyed[k].face]);
            }
        });
        radixSort(keyed);
    }
    RawVector<std::uint32_t> out(keyed.size());
    std::transform(keyed.begin(), keyed.end(), out.begin(), [](const Keyed& item) { return item.face; });
    return out;
}

// --- Vertices ---

// Vertices and indices of consecutive faces, with vertex numbers of its own.
struct Chunk
{
    std::vector<SurfaceVertex> vertices;
    std::vector<std::uint32_t> indices;
    std::vector<SurfaceBlock> blocks;
};

class ChunkBuilder
{
public:
    ChunkBuilder(const PartMesh& drawnPart, std::uint32_t partNumber, std::uint32_t firstElementNumber,
                 const PartSurface& drawnSurface, const FaceNormals& faceNormals, const double* meshOrigin)
        : part(drawnPart), partIndex(partNumber), firstElement(firstElementNumber), surface(drawnSurface),
          normals(faceNormals), origin(meshOrigin)
    {
    }
    void build(const std::uint32_t* faces, std::size_t count, FaceKind faceKind, Chunk& out);

private:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    std::uint32_t& slotOf(std::uint32_t node, PackedNormal normal);
    std::uint32_t addVertex(std::uint32_t node, PackedNormal normal);
    std::uint32_t lastVertex(const SurfaceFace& face, std::uint32_t number);
    std::uint32_t sharedVertex(std::uint32_t node, PackedNormal normal);
    void addFace(const std::uint32_t vertices[4]);
    void addBlocks(std::size_t faces);

    const PartMesh part;
    const std::uint32_t partIndex;
    const std::uint32_t firstElement;
    const PartSurface& surface;
    const FaceNormals& normals;
    const double* const origin;

    Chunk* chunk = nullptr;
    FaceKind kind = Triangles;
    unsigned int corners = 0;
    std::vector<std::uint32_t> table;       // open addressing: a vertex for a node (and normal)
    std::vector<std::uint32_t> nodeOf;      // per vertex
    std::vector<char> taken;                // per vertex: is the last one of a face
    std::vector<std::uint8_t> lastCorner;   // per face
    std::vector<std::uint32_t> lastOfFaces; // per face: its last vertex
};

// Where the vertex for this corner is, or belongs. Flat faces share vertices whatever their normals.
std::uint32_t& ChunkBuilder::slotOf(std::uint32_t node, PackedNormal normal)
{
    std::size_t slot = (node * 0x9E3779B1u) & (table.size() - 1);
    while (table[slot] != none &&
           (nodeOf[table[slot]] != node || (normals.smooth() && !(chunk->vertices[table[slot]].normal == normal)))) {
        slot = (slot + 1) & (table.size() - 1);
    }
    return table[slot];
}

std::uint32_t ChunkBuilder::addVertex(std::uint32_t node, PackedNormal normal)
{
    const float* position = positionOf(part, node);
    SurfaceVertex vertex = {{}, normal, 0, none, partIndex};
    for (int axis = 0; axis < 3; ++axis) {
        vertex.position[axis] = static_cast<float>(position[axis] - origin[axis]);
    }
    chunk->vertices.push_back(vertex);
    nodeOf.push_back(node);
    taken.push_back(0);
    return static_cast<std::uint32_t>(nodeOf.size() - 1);
}

// A quadrilateral's last corner is its fourth, since turning it would change its diagonal; a triangle may be turned so
// that a vertex becomes last that no other face needs.
std::uint32_t ChunkBuilder::lastVertex(const SurfaceFace& face, std::uint32_t number)
{
    std::uint8_t last = static_cast<std::uint8_t>(corners - 1);
    for (std::uint8_t k = 3; corners == 3 && k-- > 0;) {
        const std::uint32_t vertex = slotOf(face.nodes[k], normals.at(number, k));
        if (vertex == none || !taken[vertex]) {
            last = k;
            break;
        }
    }
    lastCorner.push_back(last);
    const PackedNormal normal = normals.at(number, last);
    std::uint32_t& slot = slotOf(face.nodes[last], normal);
    std::uint32_t vertex = slot;
    if (vertex == none || taken[vertex]) {
        vertex = addVertex(face.nodes[last], normal);
        slot = slot == none ? vertex : slot;
    }
    taken[vertex] = 1;
    chunk->vertices[vertex].normal = normal;
    chunk->vertices[vertex].element = firstElement + face.element;
    return vertex;
}

std::uint32_t ChunkBuilder::sharedVertex(std::uint32_t node, PackedNormal normal)
{
    std::uint32_t& slot = slotOf(node, normal);
    if (slot == none) {
        slot = addVertex(node, normal);
    }
    return slot;
}

void ChunkBuilder::addFace(const std::uint32_t vertices[4])
{
    const std::uint32_t* v = vertices;
    if (kind == Quads) {
        chunk->indices.insert(chunk->indices.end(), {v[0], v[1], v[3], v[1], v[2], v[3]});
    } else {
        chunk->indices.insert(chunk->indices.end(), {v[0], v[1], v[2]});
    }
}

void ChunkBuilder::addBlocks(std::size_t faces)
{
    const unsigned int size = indicesOfFace(kind);
    for (std::size_t first = 0; first < faces; first += facesPerBlock) {
        const std::size_t count = std::min(facesPerBlock, faces - first);
        SurfaceBlock block = {
            partIndex, static_cast<std::uint32_t>(first * size), static_cast<std::uint32_t>(count * size), {}, {}};
        std::fill(block.low, block.low + 3, std::numeric_limits<float>::max());
        std::fill(block.high, block.high + 3, -std::numeric_limits<float>::max());
        for (std::uint32_t face = block.firstIndex; face < block.firstIndex + block.indexCount; face += size) {
            for (unsigned int corner = 0; corner < corners; ++corner) {
                const float* position = chunk->vertices[chunk->indices[face + placeOfCorner(kind, corner)]].position;
                for (int axis = 0; axis < 3; ++axis) {
                    block.low[axis] = std::min(block.low[axis], position[axis]);
                    block.high[axis] = std::max(block.high[axis], position[axis]);
                }
            }
        }
        chunk->blocks.push_back(block);
    }
}

void ChunkBuilder::build(const std::uint32_t* faces, std::size_t count, FaceKind faceKind, Chunk& out)
{
    chunk = &out;
    kind = faceKind;
    corners = cornersOfFace(kind);
    std::size_t size = 64;
    while (size < (corners + 1) * count) { // more than there can be different corners
        size *= 2;
    }
    table.assign(size, none);
    nodeOf.clear();
    taken.clear();
    lastCorner.clear();
    lastOfFaces.clear();
    out.vertices.reserve(count + count / 4); // about one a face
    for (std::size_t k = 0; k < count; ++k) {
        lastOfFaces.push_back(lastVertex(surface.faces[faces[k]], faces[k]));
    }
    out.indices.reserve(count * indicesOfFace(kind));
    for (std::size_t k = 0; k < count; ++k) {
        const SurfaceFace& face = surface.faces[faces[k]];
        std::uint32_t vertices[4];
        for (unsigned int step = 1; step < corners; ++step) {
            const unsigned int corner = (lastCorner[k] + step) % corners;
            vertices[step - 1] = sharedVertex(face.nodes[corner], normals.at(faces[k], corner));
        }
        vertices[corners - 1] = lastOfFaces[k];
        addFace(vertices);
    }
    addBlocks(count);
}

// Puts the chunks behind what the mesh has, and empties them.
void append(std::vector<Chunk>& chunks, FaceKind kind, SurfaceMesh& mesh)
{
    std::vector<std::size_t> firstVertices, firstIndices;
    std::size_t vertexCount = mesh.vertices.size(), indexCount = mesh.indices[kind].size();
    for (const Chunk& chunk : chunks) {
        firstVertices.push_back(vertexCount);
        firstIndices.push_back(indexCount);
        vertexCount += chunk.vertices.size();
        indexCount += chunk.indices.size();
        for (SurfaceBlock block : chunk.blocks) {
            block.firstIndex += static_cast<std::uint32_t>(firstIndices.back());
            mesh.blocks[kind].push_back(block);
        }
    }
    mesh.vertices.resize(vertexCount);
    mesh.indices[kind].resize(indexCount);
    parallelFor(chunks.size(), 1, [&](std::size_t begin, std::size_t end) {
        for (std::size_t k = begin; k < end; ++k) {
            const std::uint32_t firstVertex = static_cast<std::uint32_t>(firstVertices[k]);
            std::copy(chunks[k].vertices.begin(), chunks[k].vertices.end(), &mesh.vertices[firstVertex]);
            std::transform(chunks[k].indices.begin(), chunks[k].indices.end(), &mesh.indices[kind][firstIndices[k]],
                           [firstVertex](std::uint32_t index) { return firstVertex + index; });
            chunks[k] = Chunk();
        }
    });
}

} // namespace

void addSurface(const PartMesh& part, std::uint32_t partIndex, std::uint32_t firstElement, const PartSurface& surface,
                const FaceNormals& normals, SurfaceMesh& mesh)
{
    for (const FaceKind kind : {Quads, Triangles}) {
        const RawVector<std::uint32_t> order = orderInSpace(part, surface, kind == Quads);
        const std::size_t chunkCount = (order.size() + facesPerChunk - 1) / facesPerChunk;
        std::vector<Chunk> chunks(chunkCount);
        parallelFor(chunkCount, 1, [&](std::size_t begin, std::size_t end) {
            ChunkBuilder builder(part, partIndex, firstElement, surface, normals, mesh.origin);
            for (std::size_t k = begin; k < end; ++k) {
                const std::size_t first = k * facesPerChunk;
                builder.build(&order[first], std::min(facesPerChunk, order.size() - first), kind, chunks[k]);
            }
        });
        append(chunks, kind, mesh);
    }
}

} // namespace kvo
