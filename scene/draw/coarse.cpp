#include "coarse.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kvo {

namespace {

constexpr std::uint32_t none = 0xFFFFFFFF;

// Cells that hold a vertex, and the vertex that stands for them. Open addressing, cleared for every part.
class CellTable
{
public:
    CellTable(const SurfaceMesh& surface, float size)
        : mesh(surface), scale(1 / size), standIns(surface.vertices.size(), none)
    {
    }

    // The vertex that stands for this one. A vertex that is a face's last one is preferred: it has an element.
    std::uint32_t standIn(std::uint32_t vertex)
    {
        if (standIns[vertex] == none) {
            standIns[vertex] = slotOf(vertex);
        }
        return table[standIns[vertex]].vertex;
    }
    void nextPart(std::size_t vertices)
    {
        std::size_t size = 64;
        while (size < 2 * vertices) {
            size *= 2;
        }
        table.assign(size, Entry{0, none});
    }

private:
    struct Entry
    {
        std::uint64_t cell;
        std::uint32_t vertex;
    };

    std::uint64_t cellOf(const float* position) const
    {
        std::uint64_t out = 0;
        for (int axis = 0; axis < 3; ++axis) {
            const double at = std::floor(double(position[axis]) * scale);
            out = out << 21 | (static_cast<std::uint64_t>(static_cast<std::int64_t>(at)) & 0x1FFFFF);
        }
        return out;
    }
    std::uint32_t slotOf(std::uint32_t vertex)
    {
        const std::uint64_t cell = cellOf(mesh.vertices[vertex].position);
        std::size_t slot = (cell * 0x9E3779B97F4A7C15ull >> 20) & (table.size() - 1);
        while (table[slot].vertex != none && table[slot].cell != cell) {
            slot = (slot + 1) & (table.size() - 1);
        }
        Entry& entry = table[slot];
        const bool better = entry.vertex == none ||
                            (mesh.vertices[entry.vertex].element == none && mesh.vertices[vertex].element != none);
        if (better) {
            entry = {cell, vertex};
        }
        return static_cast<std::uint32_t>(slot);
    }

    const SurfaceMesh& mesh;
    const double scale;
    std::vector<std::uint32_t> standIns; // per vertex, slot in the table
    std::vector<Entry> table;
};

// Boxes of blocks are those of their vertices.
void setBox(const SurfaceMesh& mesh, const std::vector<std::uint32_t>& indices, SurfaceBlock& block)
{
    std::fill(block.low, block.low + 3, std::numeric_limits<float>::max());
    std::fill(block.high, block.high + 3, -std::numeric_limits<float>::max());
    for (std::uint32_t k = block.firstIndex; k < block.firstIndex + block.indexCount; ++k) {
        const float* position = mesh.vertices[indices[k]].position;
        for (int axis = 0; axis < 3; ++axis) {
            block.low[axis] = std::min(block.low[axis], position[axis]);
            block.high[axis] = std::max(block.high[axis], position[axis]);
        }
    }
}

void addTriangle(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::vector<std::uint32_t>& indices)
{
    if (a != b && b != c && c != a) {
        indices.insert(indices.end(), {a, b, c});
    }
}

// First every vertex finds its cell, so that the best of each cell is known, then faces are written.
void coarsenBlock(const SurfaceMesh& mesh, FaceKind kind, const SurfaceBlock& block, CellTable& cells, CoarseMesh& out)
{
    const std::uint32_t* indices = mesh.indices[kind].data() + block.firstIndex;
    SurfaceBlock coarse = block;
    coarse.firstIndex = static_cast<std::uint32_t>(out.indices.size());
    for (std::uint32_t k = 0; k < block.indexCount; k += 3) {
        addTriangle(cells.standIn(indices[k]), cells.standIn(indices[k + 1]), cells.standIn(indices[k + 2]),
                    out.indices);
    }
    coarse.indexCount = static_cast<std::uint32_t>(out.indices.size()) - coarse.firstIndex;
    if (coarse.indexCount) {
        setBox(mesh, out.indices, coarse);
        out.blocks.push_back(coarse);
    }
}

// The blocks of one part, of both kinds.
struct PartBlocks
{
    std::size_t begin[faceKinds];
    std::size_t end[faceKinds];
};

std::vector<PartBlocks> blocksByPart(const SurfaceMesh& mesh)
{
    std::vector<PartBlocks> out;
    std::size_t at[faceKinds] = {0, 0};
    while (at[Triangles] < mesh.blocks[Triangles].size() || at[Quads] < mesh.blocks[Quads].size()) {
        std::uint32_t part = none;
        for (FaceKind kind : {Triangles, Quads}) {
            part = at[kind] < mesh.blocks[kind].size() ? std::min(part, mesh.blocks[kind][at[kind]].part) : part;
        }
        PartBlocks blocks;
        for (FaceKind kind : {Triangles, Quads}) {
            blocks.begin[kind] = at[kind];
            while (at[kind] < mesh.blocks[kind].size() && mesh.blocks[kind][at[kind]].part == part) {
                ++at[kind];
            }
            blocks.end[kind] = at[kind];
        }
        out.push_back(blocks);
    }
    return out;
}

} // namespace

CoarseMesh coarsen(const SurfaceMesh& mesh, float cellSize)
{
    CoarseMesh out;
    CellTable cells(mesh, cellSize);
    for (const PartBlocks& part : blocksByPart(mesh)) {
        std::size_t indexCount = 0;
        for (FaceKind kind : {Triangles, Quads}) {
            for (std::size_t k = part.begin[kind]; k < part.end[kind]; ++k) {
                indexCount += mesh.blocks[kind][k].indexCount;
            }
        }
        cells.nextPart(indexCount);
        for (FaceKind kind : {Triangles, Quads}) {
            for (std::size_t k = part.begin[kind]; k < part.end[kind]; ++k) {
                const SurfaceBlock& block = mesh.blocks[kind][k];
                for (std::uint32_t i = 0; i < block.indexCount; ++i) {
                    cells.standIn(mesh.indices[kind][block.firstIndex + i]);
                }
            }
        }
        for (FaceKind kind : {Triangles, Quads}) {
            for (std::size_t k = part.begin[kind]; k < part.end[kind]; ++k) {
                coarsenBlock(mesh, kind, mesh.blocks[kind][k], cells, out);
            }
        }
    }
    return out;
}

// The number of triangles goes with the square of the cells' number along a side; the second try corrects the first.
void CoarseSurface::build(const SceneGeometry& geometry, std::size_t triangles)
{
    triangles = std::max<std::size_t>(triangles, 100);
    if (made && triangleNumber <= triangles && 3 * triangleNumber >= triangles) {
        return;
    }
    const SurfaceMesh mesh = geometry.readBack();
    double size = 0;
    for (const FaceKind kind : {Triangles, Quads}) {
        for (const SurfaceBlock& block : mesh.blocks[kind]) {
            for (int axis = 0; axis < 3; ++axis) {
                size = std::max(size, std::fabs(double(block.low[axis])));
                size = std::max(size, std::fabs(double(block.high[axis])));
            }
        }
    }
    double cells = std::sqrt(double(triangles) / 4);
    CoarseMesh coarse;
    for (int tries = 0; tries < 4 && size > 0; ++tries) {
        coarse = coarsen(mesh, static_cast<float>(2 * size / cells));
        const double found = double(coarse.indices.size()) / 3;
        if (found <= double(triangles) && 3 * found >= double(triangles)) {
            break;
        }
        cells *= std::sqrt(0.7 * double(triangles) / std::max(found, 1.0));
    }
    indices.fill(GL_ELEMENT_ARRAY_BUFFER, coarse.indices);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    edges.drop();
    triangleNumber = coarse.indices.size() / 3;
    coarseBlocks = std::move(coarse.blocks);
    made = true;
}

} // namespace kvo
