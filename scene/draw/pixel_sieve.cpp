#include "pixel_sieve.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "parallel.h"

namespace kvo {

namespace {

constexpr double densePixels = 2; // a face, at most, for a block whose faces are looked at
constexpr std::size_t blocksPerPiece = 64;
constexpr double singlePrecision = 16 * 6e-8; // of the sums in a matrix and a transformation

double pixelsOf(const SurfaceBlock& block, const WindowMap& map)
{
    double size[2] = {0, 0};
    for (int axis = 0; axis < 3; ++axis) {
        const double length = double(block.high[axis]) - block.low[axis];
        size[0] += std::fabs(map.x[axis]) * length;
        size[1] += std::fabs(map.y[axis]) * length;
    }
    return (size[0] + 1) * (size[1] + 1);
}

bool isDense(const SurfaceBlock& block, FaceKind kind, const WindowMap& map)
{
    const auto faces = block.indexCount / indicesOfFace(kind);
    return pixelsOf(block, map) < densePixels * faces;
}

// Is there a middle of a pixel, k + 1/2, between them? Beyond largest, where the sum rounds to other than whole
// numbers, there may be.
bool holdsMiddle(float low, float high, float margin)
{
    constexpr float largest = 1 << 22, rounding = 3 << 22; // adding the latter leaves no digits behind the point
    const float from = low - margin - 0.5f, to = high + margin - 0.5f;
    const float nearest = (to + rounding) - rounding;
    return ((nearest > to ? nearest - 1 : nearest) >= from) | !(std::fabs(to) < largest);
}

// Both axes are looked at, and every face is written, whether it is kept or not: which ones are kept is so random that
// jumps would cost more.
template <FaceKind kind>
void sieveBlock(const SurfaceVertex* vertices, const std::uint32_t* indices, const SurfaceBlock& block,
                const WindowMap& map, std::vector<std::uint32_t>& out)
{
    const WindowMap m = map;
    const float marginX = static_cast<float>(m.margin[0]), marginY = static_cast<float>(m.margin[1]);
    constexpr unsigned int corners = cornersOfFace(kind), size = indicesOfFace(kind);
    std::uint32_t kept[facesPerBlock * size];
    std::size_t count = 0;
    const std::uint32_t* face = indices + block.firstIndex;
    for (const std::uint32_t* const end = face + block.indexCount; face != end; face += size) {
        float x[corners], y[corners];
        for (unsigned int k = 0; k < corners; ++k) {
            const float* p = vertices[face[placeOfCorner(kind, k)]].position;
            x[k] = m.x[0] * p[0] + m.x[1] * p[1] + m.x[2] * p[2] + m.x[3];
            y[k] = m.y[0] * p[0] + m.y[1] * p[1] + m.y[2] * p[2] + m.y[3];
        }
        std::copy(face, face + size, kept + count);
        float low[2] = {x[0], y[0]}, high[2] = {x[0], y[0]};
        for (unsigned int k = 1; k < corners; ++k) {
            low[0] = std::min(low[0], x[k]);
            low[1] = std::min(low[1], y[k]);
            high[0] = std::max(high[0], x[k]);
            high[1] = std::max(high[1], y[k]);
        }
        const bool keep = holdsMiddle(low[0], high[0], marginX) & holdsMiddle(low[1], high[1], marginY);
        count += keep ? size : 0;
    }
    out.insert(out.end(), kept, kept + count);
}

} // namespace

bool drawsOnProcessor()
{
    const char* const name = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    return name && (std::strstr(name, "llvmpipe") || std::strstr(name, "softpipe"));
}

WindowMap::WindowMap(const SceneCamera& camera, const double origin[3], const double reach[3])
{
    double modelview[16];
    camera.relativeTo(origin, modelview);
    const double* p = camera.projection;
    double rows[4][4], sums[2] = {0, 0}; // sums: of the amounts that single precision adds up
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            rows[row][column] = 0;
            for (int k = 0; k < 4; ++k) {
                const double term = p[4 * k + row] * modelview[4 * column + k];
                rows[row][column] += term;
                if (row < 2) {
                    sums[row] += std::fabs(term) * (column < 3 ? reach[column] : 1);
                }
            }
        }
    }
    const double w = rows[3][3];
    usable = w > 0 && rows[3][0] == 0 && rows[3][1] == 0 && rows[3][2] == 0;
    for (int row = 0; row < 2 && usable; ++row) {
        const double half = camera.viewport[2 + row] / 2.0;
        float* const out = row == 0 ? x : y;
        for (int column = 0; column < 4; ++column) {
            out[column] = static_cast<float>(rows[row][column] / w * half);
        }
        out[3] = static_cast<float>(rows[row][3] / w * half + half); // whole pixels of the corner do not matter
        margin[row] = 1.0 / 64 + singlePrecision * (sums[row] / w * half + half);
        usable = margin[row] < 0.25;
    }
}

bool sievePays(const std::vector<const SurfaceBlock*>& blocks, FaceKind kind, const WindowMap& map)
{
    std::size_t faces = 0, dense = 0;
    for (const SurfaceBlock* block : blocks) {
        const std::size_t count = block->indexCount / indicesOfFace(kind);
        faces += count;
        dense += isDense(*block, kind, map) ? count : 0;
    }
    return dense > PixelSieve::fewFaces && 2 * dense > faces;
}

std::vector<std::vector<std::uint32_t>> facesOnPixels(const SurfaceVertex* vertices, const std::uint32_t* indices,
                                                      FaceKind kind, const std::vector<const SurfaceBlock*>& blocks,
                                                      const WindowMap& map)
{
    const std::size_t pieces = (blocks.size() + blocksPerPiece - 1) / blocksPerPiece;
    std::vector<std::vector<std::uint32_t>> found(pieces);
    parallelFor(pieces, 1, [&](std::size_t begin, std::size_t end) {
        for (std::size_t piece = begin; piece < end; ++piece) {
            const std::size_t stop = std::min(blocks.size(), (piece + 1) * blocksPerPiece);
            for (std::size_t k = piece * blocksPerPiece; k < stop; ++k) {
                const SurfaceBlock& block = *blocks[k];
                if (isDense(block, kind, map)) {
                    (kind == Quads ? sieveBlock<Quads> : sieveBlock<Triangles>)(vertices, indices, block, map,
                                                                                found[piece]);
                } else {
                    const std::uint32_t* const first = indices + block.firstIndex;
                    found[piece].insert(found[piece].end(), first, first + block.indexCount);
                }
            }
        }
    });
    return found;
}

std::size_t PixelSieve::draw(const SceneGeometry& geometry, FaceKind kind,
                             const std::vector<const SurfaceBlock*>& blocks, const SceneCamera& camera)
{
    double reach[3] = {0, 0, 0};
    for (const SurfaceBlock* block : blocks) {
        for (int axis = 0; axis < 3; ++axis) {
            reach[axis] =
                std::max({reach[axis], std::fabs(double(block->low[axis])), std::fabs(double(block->high[axis]))});
        }
    }
    const WindowMap map(camera, geometry.origin(), reach);
    if (!map.usable || !sievePays(blocks, kind, map)) {
        return notDrawn;
    }
    std::vector<std::vector<std::uint32_t>> found;
    {
        const GlMappedBuffer vertices(geometry.vertexBuffer(), GL_COPY_READ_BUFFER);
        const GlMappedBuffer faces(geometry.indexBuffer(kind), GL_COPY_WRITE_BUFFER);
        if (!vertices.data() || !faces.data()) {
            return notDrawn;
        }
        found = facesOnPixels(static_cast<const SurfaceVertex*>(vertices.data()),
                              static_cast<const std::uint32_t*>(faces.data()), kind, blocks, map);
    }
    std::size_t count = 0;
    for (const std::vector<std::uint32_t>& piece : found) {
        count += piece.size();
    }
    indices.fill(GL_ELEMENT_ARRAY_BUFFER, nullptr, count * sizeof(std::uint32_t), GL_STREAM_DRAW);
    std::size_t at = 0;
    for (const std::vector<std::uint32_t>& piece : found) {
        const std::size_t bytes = piece.size() * sizeof(std::uint32_t);
        indices.change(GL_ELEMENT_ARRAY_BUFFER, at, piece.data(), bytes);
        at += bytes;
    }
    glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(count), GL_UNSIGNED_INT, nullptr);
    return count / indicesOfFace(kind);
}

} // namespace kvo
