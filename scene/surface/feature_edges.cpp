// Faces that share an edge are found in buckets: every side of every face goes to a bucket by its smaller node, and
// equal sides stand together when a bucket is sorted. Buckets are worked on in parallel.
#include "feature_edges.h"

#include <algorithm>
#include <cmath>

#include "bucket_sort.h"
#include "face_normals.h"
#include "parallel.h"

namespace kvo {

namespace {

constexpr std::size_t grain = 8192; // faces
constexpr std::size_t facesPerBucket = 2048;

unsigned int cornersOf(const SurfaceFace& face)
{
    return face.nodes[3] == noCorner ? 3 : 4;
}

// One side of a face; k = from corner k to the next.
struct Side
{
    std::uint32_t low, high; // nodes
    std::uint32_t ref;       // 4 x face + k

    bool operator<(const Side& o) const
    {
        return low != o.low ? low < o.low : high != o.high ? high < o.high : ref < o.ref;
    }
    bool sameEdge(const Side& o) const { return low == o.low && high == o.high; }
};

class EdgeFinder
{
public:
    EdgeFinder(const PartMesh& drawnPart, const PartSurface& drawnSurface, float featureAngle)
        : part(drawnPart), faces(drawnSurface.faces), buckets(faces.size() / facesPerBucket + 1),
          sharpCosine(std::cos(double(featureAngle) * 3.14159265358979323846 / 180) - 1e-6)
    {
        fillBuckets();
    }
    SurfaceEdges find() const;

private:
    Side sideAt(std::uint32_t ref) const;
    void fillBuckets();
    template <class Visit> void visitSides(std::size_t begin, std::size_t end, Visit&& visit) const;
    void sortIntoKinds(std::size_t bucket, SurfaceEdges& out) const;
    bool isSharp(const Side& a, const Side& b) const;

    const PartMesh part;
    const RawVector<SurfaceFace>& faces;
    const std::size_t buckets;
    const double sharpCosine;
    RawVector<std::uint32_t> refs; // by bucket
    std::vector<std::size_t> bucketStarts;
};

Side EdgeFinder::sideAt(std::uint32_t ref) const
{
    const SurfaceFace& face = faces[ref / 4];
    const std::uint32_t a = face.nodes[ref % 4], b = face.nodes[(ref % 4 + 1) % cornersOf(face)];
    return {std::min(a, b), std::max(a, b), ref};
}

// visit(bucket, ref)
template <class Visit> void EdgeFinder::visitSides(std::size_t begin, std::size_t end, Visit&& visit) const
{
    const std::size_t nodes = part.nodeCount;
    for (std::size_t face = begin; face < end; ++face) {
        for (unsigned int k = 0; k < cornersOf(faces[face]); ++k) {
            const std::uint32_t ref = static_cast<std::uint32_t>(4 * face + k);
            visit(static_cast<std::size_t>(sideAt(ref).low) * buckets / nodes, ref);
        }
    }
}

// A counting sort: pieces of the faces count into rows of their own, then write without locks.
void EdgeFinder::fillBuckets()
{
    const std::size_t pieces = pieceCount(faces.size(), grain);
    const auto visitPiece = [&](std::size_t piece, const auto& put) {
        visitSides(piece * faces.size() / pieces, (piece + 1) * faces.size() / pieces, put);
    };
    sortIntoBuckets(pieces, buckets, visitPiece, bucketStarts, refs);
}

// Faces of one winding run along their common edge in opposite directions; else one is seen from its other side.
bool EdgeFinder::isSharp(const Side& a, const Side& b) const
{
    float u[3], v[3];
    faceVector(part, faces[a.ref / 4], u);
    faceVector(part, faces[b.ref / 4], v);
    double product = 0, squareU = 0, squareV = 0;
    for (int axis = 0; axis < 3; ++axis) {
        product += double(u[axis]) * v[axis];
        squareU += double(u[axis]) * u[axis];
        squareV += double(v[axis]) * v[axis];
    }
    const bool aUp = faces[a.ref / 4].nodes[a.ref % 4] == a.low;
    const bool bUp = faces[b.ref / 4].nodes[b.ref % 4] == b.low;
    const double lengths = std::sqrt(squareU) * std::sqrt(squareV);
    return lengths > 0 && (aUp == bUp ? -product : product) < sharpCosine * lengths;
}

void EdgeFinder::sortIntoKinds(std::size_t bucket, SurfaceEdges& out) const
{
    thread_local std::vector<Side> sides;
    sides.clear();
    for (std::size_t k = bucketStarts[bucket]; k < bucketStarts[bucket + 1]; ++k) {
        sides.push_back(sideAt(refs[k]));
    }
    std::sort(sides.begin(), sides.end());
    for (std::size_t first = 0, end; first < sides.size(); first = end) {
        for (end = first + 1; end < sides.size() && sides[end].sameEdge(sides[first]);) {
            ++end;
        }
        const Side& side = sides[first];
        const SurfaceEdge edge = {{side.low, side.high}, faces[side.ref / 4].element};
        if (end - first == 1) {
            out.free.push_back(edge);
        } else if (end - first > 2) {
            out.branching.push_back(edge);
        } else if (isSharp(side, sides[first + 1])) {
            out.feature.push_back(edge);
        }
    }
}

void append(std::vector<SurfaceEdge>& to, const std::vector<SurfaceEdge>& from)
{
    to.insert(to.end(), from.begin(), from.end());
}

SurfaceEdges EdgeFinder::find() const
{
    std::vector<SurfaceEdges> found(buckets);
    parallelFor(buckets, 1, [&](std::size_t begin, std::size_t end) {
        for (std::size_t bucket = begin; bucket < end; ++bucket) {
            sortIntoKinds(bucket, found[bucket]);
        }
    });
    SurfaceEdges out;
    for (const SurfaceEdges& bucket : found) {
        append(out.feature, bucket.feature);
        append(out.free, bucket.free);
        append(out.branching, bucket.branching);
    }
    return out;
}

} // namespace

SurfaceEdges findEdges(const PartMesh& part, const PartSurface& surface, float featureAngle)
{
    return surface.faces.empty() ? SurfaceEdges() : EdgeFinder(part, surface, featureAngle).find();
}

} // namespace kvo
