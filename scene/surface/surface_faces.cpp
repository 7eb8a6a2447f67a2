// Faces that two elements share are found in buckets: every face goes to a bucket by its smallest node, and equal faces
// meet in a small hash table there. Buckets hold 4 bytes a face, and are worked on in parallel.
#include "surface_faces.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <numeric>

#include "bucket_sort.h"
#include "mantypes.h"
#include "parallel.h"

namespace kvo {

namespace {

constexpr std::size_t grain = 4096; // elements
constexpr unsigned int faceBits = 3;
constexpr unsigned int faceMask = (1u << faceBits) - 1;

bool isAbsent(const ElementMask& absent, std::uint32_t element)
{
    return element < absent.size() && absent[element] != 0;
}

// --- Shared faces ---

struct FaceKey
{
    std::uint32_t nodes[4]; // ascending; a triangle's fourth is noCorner, and so is last

    explicit FaceKey(const ElementFace& face)
    {
        std::copy(face.nodes, face.nodes + 4, nodes);
        const auto order = [this](int a, int b) {
            const std::uint32_t low = std::min(nodes[a], nodes[b]), high = std::max(nodes[a], nodes[b]);
            nodes[a] = low;
            nodes[b] = high;
        };
        order(0, 1);
        order(2, 3);
        order(0, 2);
        order(1, 3);
        order(1, 2);
    }
    std::uint32_t hash() const
    {
        std::uint64_t h = nodes[0] * 0x9E3779B97F4A7C15ull;
        h = (h ^ nodes[1]) * 0xC2B2AE3D27D4EB4Full;
        h = (h ^ nodes[2]) * 0x165667B19E3779F9ull;
        h ^= nodes[3];
        return static_cast<std::uint32_t>((h * 0x9E3779B97F4A7C15ull) >> 32);
    }
};

std::uint32_t smallestNode(const ElementFace& face)
{
    return std::min({face.nodes[0], face.nodes[1], face.nodes[2], face.nodes[3]});
}

class SolidSurface
{
public:
    SolidSurface(const PartMesh& solidPart, const ElementMask& absent);

    // Bit k of an element: its face k (as facesOf counts) has no other element.
    std::uint8_t freeFaces(std::size_t element) const { return freeBits[element].load(std::memory_order_relaxed); }
    const std::vector<ElementShape>& elementShapes() const { return shapes; }

private:
    static constexpr std::size_t elementsPerBucket = 4096;

    template <class Visit> void visitFaces(std::size_t begin, std::size_t end, Visit&& visit) const;
    std::size_t bucketOf(std::uint32_t node) const { return static_cast<std::size_t>(node) * buckets / nodes; }
    void findShapes(const ElementMask& absent);
    void fillBuckets();
    void matchBucket(std::size_t bucket);

    const PartMesh part;
    std::size_t elements;
    std::size_t nodes;
    std::size_t buckets;
    std::vector<ElementShape> shapes; // None also for absent elements
    std::unique_ptr<std::atomic<std::uint8_t>[]> freeBits;
    RawVector<std::uint32_t> refs;         // element and face number, by bucket
    std::vector<std::size_t> bucketStarts; // buckets + 1
};

SolidSurface::SolidSurface(const PartMesh& solidPart, const ElementMask& absent)
    : part(solidPart), elements(solidPart.elementCount), nodes(solidPart.nodeCount),
      buckets(elements / elementsPerBucket + 1), shapes(elements), freeBits(new std::atomic<std::uint8_t>[elements]())
{
    findShapes(absent);
    fillBuckets();
    parallelFor(buckets, 1, [this](std::size_t begin, std::size_t end) {
        for (std::size_t bucket = begin; bucket < end; ++bucket) {
            matchBucket(bucket);
        }
    });
}

void SolidSurface::findShapes(const ElementMask& absent)
{
    parallelFor(elements, grain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t e = begin; e < end; ++e) {
            const std::uint32_t element = static_cast<std::uint32_t>(e);
            shapes[e] = isAbsent(absent, element) ? ElementShape::None : shapeOf(part, element);
        }
    });
}

// visit(reference, face)
template <class Visit> void SolidSurface::visitFaces(std::size_t begin, std::size_t end, Visit&& visit) const
{
    ElementFace faces[maxFaces];
    for (std::size_t e = begin; e < end; ++e) {
        const std::uint32_t element = static_cast<std::uint32_t>(e);
        const unsigned int count = facesOf(part, element, shapes[e], faces);
        for (unsigned int k = 0; k < count; ++k) {
            visit(element << faceBits | k, faces[k]);
        }
    }
}

void SolidSurface::fillBuckets()
{
    const std::size_t pieces = pieceCount(elements, grain);
    const auto pieceBegin = [&](std::size_t piece) { return piece * elements / pieces; };
    const auto visitPiece = [&](std::size_t piece, const auto& put) {
        visitFaces(pieceBegin(piece), pieceBegin(piece + 1),
                   [&](std::uint32_t ref, const ElementFace& face) { put(bucketOf(smallestNode(face)), ref); });
    };
    sortIntoBuckets(pieces, buckets, visitPiece, bucketStarts, refs);
}

void SolidSurface::matchBucket(std::size_t bucket)
{
    struct Entry
    {
        std::uint32_t nodes[4];
        std::uint32_t ref;
        std::uint32_t users; // 0: empty, and the rest is not set
    };
    const std::size_t begin = bucketStarts[bucket], end = bucketStarts[bucket + 1];
    std::size_t size = 16;
    while (size < 3 * (end - begin) / 2) {
        size *= 2;
    }
    thread_local std::vector<Entry> entries;
    entries.resize(std::max(entries.size(), size));
    Entry* const table = entries.data();
    for (std::size_t slot = 0; slot < size; ++slot) {
        table[slot].users = 0;
    }
    for (std::size_t k = begin; k < end; ++k) {
        const std::uint32_t element = refs[k] >> faceBits;
        const FaceKey key(faceAt(part, element, shapes[element], refs[k] & faceMask));
        std::size_t slot = key.hash() & (size - 1);
        while (table[slot].users != 0 && !std::equal(key.nodes, key.nodes + 4, table[slot].nodes)) {
            slot = (slot + 1) & (size - 1);
        }
        if (table[slot].users++ == 0) {
            std::copy(key.nodes, key.nodes + 4, table[slot].nodes);
            table[slot].ref = refs[k];
        }
    }
    for (std::size_t slot = 0; slot < size; ++slot) {
        const Entry& entry = table[slot];
        if (entry.users == 1) {
            freeBits[entry.ref >> faceBits].fetch_or(static_cast<std::uint8_t>(1u << (entry.ref & faceMask)),
                                                     std::memory_order_relaxed);
        }
    }
}

// --- Outward ---

void addPosition(const PartMesh& part, std::uint32_t node, double sum[3])
{
    const float* position = positionOf(part, node);
    for (int axis = 0; axis < 3; ++axis) {
        sum[axis] += position[axis];
    }
}

// Positive where the face's right-handed normal leads away from the element's centre: six times the volume between
// them.
double outwardness(const PartMesh& part, const ElementFace& face, const double center[3])
{
    double middle[3] = {0, 0, 0}, areaVector[3] = {0, 0, 0};
    for (unsigned int k = 0; k < face.corners; ++k) {
        addPosition(part, face.nodes[k], middle);
    }
    const float* a = positionOf(part, face.nodes[0]);
    for (unsigned int k = 1; k + 1 < face.corners; ++k) {
        const float* b = positionOf(part, face.nodes[k]);
        const float* c = positionOf(part, face.nodes[k + 1]);
        const double u[3] = {double(b[0]) - a[0], double(b[1]) - a[1], double(b[2]) - a[2]};
        const double v[3] = {double(c[0]) - a[0], double(c[1]) - a[1], double(c[2]) - a[2]};
        areaVector[0] += u[1] * v[2] - u[2] * v[1];
        areaVector[1] += u[2] * v[0] - u[0] * v[2];
        areaVector[2] += u[0] * v[1] - u[1] * v[0];
    }
    double volume = 0;
    for (int axis = 0; axis < 3; ++axis) {
        volume += areaVector[axis] * (middle[axis] / face.corners - center[axis]);
    }
    return volume;
}

void turn(SurfaceFace& face, unsigned int corners)
{
    std::swap(face.nodes[1], face.nodes[corners - 1]);
    face.turned = true;
}

// The free faces of a piece of the elements.
struct PieceOfSurface
{
    std::vector<SurfaceFace> faces;
    bool closed = true;
};

void appendFaces(const PartMesh& part, std::uint32_t element, ElementShape shape, unsigned int freeFaces,
                 PieceOfSurface& out)
{
    ElementFace faces[maxFaces];
    const unsigned int count = facesOf(part, element, shape, faces);
    std::uint32_t corners[8];
    const unsigned int cornerCount = cornersOf(part, element, shape, corners);
    double center[3] = {0, 0, 0};
    for (unsigned int k = 0; k < cornerCount; ++k) {
        addPosition(part, corners[k], center);
    }
    for (double& coordinate : center) {
        coordinate /= cornerCount;
    }
    for (unsigned int k = 0; k < count; ++k) {
        if ((freeFaces >> k & 1) == 0) {
            continue;
        }
        const ElementFace& from = faces[k];
        SurfaceFace face{{from.nodes[0], from.nodes[1], from.nodes[2], from.nodes[3]}, element, from.number, false};
        const double volume = outwardness(part, from, center);
        if (volume < 0) {
            turn(face, from.corners);
        }
        out.closed = out.closed && volume != 0;
        out.faces.push_back(face);
    }
}

PartSurface surfaceOfSolids(const PartMesh& part, const ElementMask& absent)
{
    const SolidSurface solids(part, absent);
    const std::size_t elements = solids.elementShapes().size();
    const std::size_t pieces = pieceCount(elements, grain);
    std::vector<PieceOfSurface> found(pieces);
    parallelFor(pieces, 1, [&](std::size_t begin, std::size_t end) {
        for (std::size_t piece = begin; piece < end; ++piece) {
            for (std::size_t e = piece * elements / pieces; e < (piece + 1) * elements / pieces; ++e) {
                if (solids.freeFaces(e) != 0) {
                    appendFaces(part, static_cast<std::uint32_t>(e), solids.elementShapes()[e], solids.freeFaces(e),
                                found[piece]);
                }
            }
        }
    });
    PartSurface out;
    out.closed = true;
    for (const PieceOfSurface& piece : found) {
        out.faces.insert(out.faces.end(), piece.faces.begin(), piece.faces.end());
        out.closed = out.closed && piece.closed;
    }
    return out;
}

// visit(face) for every shell that is drawn.
template <class Visit>
void visitShells(const PartMesh& part, const ElementMask& absent, std::size_t begin, std::size_t end, Visit&& visit)
{
    ElementFace faces[maxFaces];
    for (std::size_t e = begin; e < end; ++e) {
        const std::uint32_t element = static_cast<std::uint32_t>(e);
        if (!isAbsent(absent, element) && facesOf(part, element, shapeOf(part, element), faces) == 1) {
            const std::uint32_t* nodes = faces[0].nodes;
            visit(SurfaceFace{{nodes[0], nodes[1], nodes[2], nodes[3]}, element, faces[0].number, false});
        }
    }
}

// Pieces are counted first, then write where they belong.
PartSurface surfaceOfShells(const PartMesh& part, const ElementMask& absent)
{
    const std::size_t elements = part.elementCount;
    const std::size_t pieces = pieceCount(elements, grain);
    std::vector<std::size_t> starts(pieces + 1, 0);
    const auto eachPiece = [&](const auto& work) {
        parallelFor(pieces, 1, [&](std::size_t begin, std::size_t end) {
            for (std::size_t piece = begin; piece < end; ++piece) {
                work(piece, piece * elements / pieces, (piece + 1) * elements / pieces);
            }
        });
    };
    eachPiece([&](std::size_t piece, std::size_t begin, std::size_t end) {
        std::size_t count = 0;
        visitShells(part, absent, begin, end, [&count](const SurfaceFace&) { ++count; });
        starts[piece + 1] = count;
    });
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    PartSurface out;
    out.faces.resize(starts[pieces]);
    eachPiece([&](std::size_t piece, std::size_t begin, std::size_t end) {
        std::size_t at = starts[piece];
        visitShells(part, absent, begin, end, [&](const SurfaceFace& face) { out.faces[at++] = face; });
    });
    return out;
}

} // namespace

PartSurface findSurface(const PartMesh& part, const ElementMask& absent)
{
    if (part.kind == ElementKind::Shell) {
        return surfaceOfShells(part, absent);
    }
    if (part.kind == ElementKind::Solid && part.elementCount > 0) {
        return surfaceOfSolids(part, absent);
    }
    return {};
}

} // namespace kvo
