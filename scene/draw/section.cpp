// An element is cut as tetrahedra, from every triangle of its faces to its middle: whatever the plane and the element's
// shape, each gives a triangle or a convex quadrilateral, and together they fill what the faces enclose. Neighbours cut
// their common faces into the same triangles, so that there are no gaps between cross-sections.
#include "section.h"

#include <algorithm>
#include <cmath>

#include "face_normals.h"
#include "mantypes.h"
#include "parallel.h"

namespace kvo {

namespace {

constexpr std::size_t grain = 8192; // elements or nodes

struct Point
{
    double p[3];
    double distance; // from the plane, in lengths of its normal
};

// The piece of one element that the plane cuts, relative to the origin.
class ElementCutter
{
public:
    ElementCutter(const PartMesh& drawnPart, const double cuttingPlane[4], const double meshOrigin[3])
        : part(drawnPart), plane(cuttingPlane), origin(meshOrigin)
    {
    }
    void cut(std::uint32_t element, ElementShape shape, std::uint32_t partIndex, std::uint32_t number, CapMesh& out);

private:
    Point pointAt(const double position[3]) const;
    Point nodeAt(std::uint32_t node) const;
    void cutFaceTriangle(const Point corners[3], const Point& middle);
    void addTriangle(const Point& a, const Point& b, const Point& c);
    SurfaceVertex vertexAt(const Point& point) const;

    const PartMesh part;
    const double* const plane;
    const double* const origin;
    CapMesh* mesh = nullptr;
    std::uint32_t partNumber = 0;
    std::uint32_t elementNumber = 0;
};

Point ElementCutter::pointAt(const double position[3]) const
{
    Point out;
    out.distance = plane[3];
    for (int axis = 0; axis < 3; ++axis) {
        out.p[axis] = position[axis] - origin[axis];
        out.distance += plane[axis] * position[axis];
    }
    return out;
}

Point ElementCutter::nodeAt(std::uint32_t node) const
{
    const float* from = positionOf(part, node);
    const double position[3] = {from[0], from[1], from[2]};
    return pointAt(position);
}

// Where the plane crosses from a kept point to a removed one.
Point crossing(const Point& kept, const Point& removed)
{
    const double along = kept.distance / (kept.distance - removed.distance);
    Point out;
    out.distance = 0;
    for (int axis = 0; axis < 3; ++axis) {
        out.p[axis] = kept.p[axis] + along * (removed.p[axis] - kept.p[axis]);
    }
    return out;
}

SurfaceVertex ElementCutter::vertexAt(const Point& point) const
{
    const float towardsRemoved[3] = {static_cast<float>(-plane[0]), static_cast<float>(-plane[1]),
                                     static_cast<float>(-plane[2])};
    SurfaceVertex out = {{}, packNormal(towardsRemoved), 0, elementNumber, partNumber};
    for (int axis = 0; axis < 3; ++axis) {
        out.position[axis] = static_cast<float>(point.p[axis]);
    }
    return out;
}

// Triangles without area are left out: a plane through corners gives many.
void ElementCutter::addTriangle(const Point& a, const Point& b, const Point& c)
{
    double u[3], v[3];
    for (int axis = 0; axis < 3; ++axis) {
        u[axis] = b.p[axis] - a.p[axis];
        v[axis] = c.p[axis] - a.p[axis];
    }
    const bool flat = u[1] * v[2] == u[2] * v[1] && u[2] * v[0] == u[0] * v[2] && u[0] * v[1] == u[1] * v[0];
    if (!flat) {
        mesh->triangles.insert(mesh->triangles.end(), {vertexAt(a), vertexAt(b), vertexAt(c)});
    }
}

void ElementCutter::cutFaceTriangle(const Point corners[3], const Point& middle)
{
    Point kept[4], removed[4];
    int keptCount = 0, removedCount = 0;
    const auto sort = [&](const Point& point) {
        (point.distance >= 0 ? kept[keptCount++] : removed[removedCount++]) = point;
    };
    for (int k = 0; k < 3; ++k) {
        sort(corners[k]);
    }
    if (keptCount > 0 && removedCount > 0) { // two edges of the face cross
        const bool one = keptCount == 1;
        const Point from = crossing(kept[0], removed[0]);
        const Point to = one ? crossing(kept[0], removed[1]) : crossing(kept[1], removed[0]);
        mesh->outlines.insert(mesh->outlines.end(), {vertexAt(from), vertexAt(to)});
    }
    sort(middle);
    if (keptCount == 2) {
        const Point a = crossing(kept[0], removed[0]), b = crossing(kept[0], removed[1]);
        const Point c = crossing(kept[1], removed[1]), d = crossing(kept[1], removed[0]);
        addTriangle(a, b, c);
        addTriangle(a, c, d);
    } else if (keptCount == 1) {
        addTriangle(crossing(kept[0], removed[0]), crossing(kept[0], removed[1]), crossing(kept[0], removed[2]));
    } else if (keptCount == 3) {
        addTriangle(crossing(kept[0], removed[0]), crossing(kept[1], removed[0]), crossing(kept[2], removed[0]));
    }
}

void ElementCutter::cut(std::uint32_t element, ElementShape shape, std::uint32_t partIndex, std::uint32_t number,
                        CapMesh& out)
{
    mesh = &out;
    partNumber = partIndex;
    elementNumber = number;
    std::uint32_t nodes[8];
    const unsigned int corners = cornersOf(part, element, shape, nodes);
    double middle[3] = {0, 0, 0};
    for (unsigned int k = 0; k < corners; ++k) {
        for (int axis = 0; axis < 3; ++axis) {
            middle[axis] += double(positionOf(part, nodes[k])[axis]) / corners;
        }
    }
    const Point center = pointAt(middle);
    ElementFace faces[maxFaces];
    const unsigned int faceCount = facesOf(part, element, shape, faces);
    for (unsigned int f = 0; f < faceCount; ++f) {
        Point rim[4];
        for (unsigned int k = 0; k < faces[f].corners; ++k) {
            rim[k] = nodeAt(faces[f].nodes[k]);
        }
        if (faces[f].corners == 3) {
            cutFaceTriangle(rim, center);
        } else { // along the diagonal of the smallest node: for the element behind the face it is the same one
            const std::uint32_t* n = faces[f].nodes;
            const int first = static_cast<int>(std::min_element(n, n + 4) - n);
            const Point &a = rim[first], &b = rim[(first + 1) % 4], &c = rim[(first + 2) % 4],
                        &d = rim[(first + 3) % 4];
            const Point halves[2][3] = {{a, b, c}, {c, d, a}};
            cutFaceTriangle(halves[0], center);
            cutFaceTriangle(halves[1], center);
        }
    }
}

// Both sides among an element's slots, and no slot that cannot be read.
bool straddles(const std::vector<PlaneSide>& sides, const unsigned int* slots, unsigned int stride)
{
    bool kept = false, removed = false;
    const unsigned int count = stride == 10 ? 4 : stride;
    for (unsigned int k = 0; k < count; ++k) {
        if (slots[k] >= sides.size() || sides[slots[k]] == PlaneSide::Nowhere) {
            return false;
        }
        (sides[slots[k]] == PlaneSide::Kept ? kept : removed) = true;
    }
    return kept && removed;
}

void append(std::vector<SurfaceVertex>& to, const std::vector<SurfaceVertex>& from)
{
    to.insert(to.end(), from.begin(), from.end());
}

void endRange(std::uint32_t part, std::size_t first, const std::vector<SurfaceVertex>& vertices,
              std::vector<VertexRange>& ranges)
{
    if (vertices.size() > first) {
        ranges.push_back(
            {part, static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(vertices.size() - first)});
    }
}

} // namespace

bool planeCuts(const double plane[4])
{
    const bool finite = std::all_of(plane, plane + 4, [](double v) { return std::isfinite(v); });
    return finite && (plane[0] != 0 || plane[1] != 0 || plane[2] != 0);
}

std::vector<PlaneSide> sidesOf(const PartMesh& part, const double plane[4])
{
    std::vector<PlaneSide> out(part.positions ? part.nodeCount : 0);
    parallelFor(out.size(), grain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t node = begin; node < end; ++node) {
            const float* p = positionOf(part, static_cast<std::uint32_t>(node));
            const double distance = plane[0] * p[0] + plane[1] * p[1] + plane[2] * p[2] + plane[3];
            out[node] = !std::isfinite(distance) ? PlaneSide::Nowhere
                        : distance >= 0          ? PlaneSide::Kept
                                                 : PlaneSide::Removed;
        }
    });
    return out;
}

ElementMask withoutRemoved(const PartMesh& part, const double plane[4], const ElementMask& absent)
{
    const std::vector<PlaneSide> sides = sidesOf(part, plane);
    ElementMask out(part.elementCount, 0);
    parallelFor(out.size(), grain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t e = begin; e < end; ++e) {
            const std::uint32_t element = static_cast<std::uint32_t>(e);
            std::uint32_t nodes[8];
            const unsigned int corners = cornersOf(part, element, shapeOf(part, element), nodes);
            const bool removed = corners > 0 && std::all_of(nodes, nodes + corners, [&](std::uint32_t node) {
                                     return sides[node] == PlaneSide::Removed;
                                 });
            out[e] = removed || (e < absent.size() && absent[e]) ? 1 : 0;
        }
    });
    return out;
}

std::vector<char> nodesInUse(const PartMesh& part, const ElementMask& absent)
{
    std::vector<char> out(part.nodeCount, 0);
    const std::uint32_t elements = part.elementCount;
    for (std::uint32_t element = 0; element < elements; ++element) {
        if (element < absent.size() && absent[element]) {
            continue;
        }
        std::uint32_t nodes[8];
        const unsigned int corners = cornersOf(part, element, shapeOf(part, element), nodes);
        for (unsigned int k = 0; k < corners; ++k) {
            out[nodes[k]] = 1;
        }
    }
    return out;
}

void addCaps(const PartMesh& part, std::uint32_t partIndex, std::uint32_t firstElement, const ElementMask& absent,
             const double plane[4], const double origin[3], CapMesh& mesh)
{
    const std::size_t elements = part.elementCount;
    if (part.kind != ElementKind::Solid || elements == 0) {
        return;
    }
    const std::vector<PlaneSide> sides = sidesOf(part, plane);
    const std::size_t pieces = pieceCount(elements, grain);
    std::vector<CapMesh> found(pieces);
    parallelFor(pieces, 1, [&](std::size_t begin, std::size_t end) {
        ElementCutter cutter(part, plane, origin);
        for (std::size_t piece = begin; piece < end; ++piece) {
            for (std::size_t e = piece * elements / pieces; e < (piece + 1) * elements / pieces; ++e) {
                const std::uint32_t element = static_cast<std::uint32_t>(e);
                if ((e < absent.size() && absent[e]) || !straddles(sides, slotsOf(part, element), part.slotCount)) {
                    continue;
                }
                const ElementShape shape = shapeOf(part, element);
                if (shape != ElementShape::None) {
                    cutter.cut(element, shape, partIndex, firstElement + element, found[piece]);
                }
            }
        }
    });
    const std::size_t firstTriangle = mesh.triangles.size(), firstOutline = mesh.outlines.size();
    for (const CapMesh& piece : found) {
        append(mesh.triangles, piece.triangles);
        append(mesh.outlines, piece.outlines);
    }
    endRange(partIndex, firstTriangle, mesh.triangles, mesh.triangleRanges);
    endRange(partIndex, firstOutline, mesh.outlines, mesh.outlineRanges);
}

} // namespace kvo
