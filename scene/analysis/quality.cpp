// Element quality: what is asked, which formula answers, and what degenerate elements give.
#include <kvo/quality.h>

#include <algorithm>
#include <cmath>

#include "element_shape.h"
#include "parallel.h"
#include "scaled_jacobian.h"
#include "vectors.h"

namespace kvo {

using namespace vectors;

namespace {

// An element's faces with their corners' places.
struct Faces
{
    unsigned int count;
    unsigned char corners[maxFaces];
    Vector3 p[maxFaces][4];

    Faces(const PartMesh& part, std::uint32_t element, ElementShape shape)
    {
        ElementFace faces[maxFaces];
        count = facesOf(part, element, shape, faces);
        for (unsigned int f = 0; f < count; ++f) {
            corners[f] = faces[f].corners;
            for (unsigned int k = 0; k < corners[f]; ++k) {
                p[f][k] = placeOf(part, faces[f].nodes[k]);
            }
        }
    }
};

// What is not a number, and what exceeds it, becomes the limit.
double upTo(double limit, double value)
{
    return value <= limit ? value : limit;
}

// --- Lengths ---

struct EdgeLengths
{
    double shortest = HUGE_VAL, longest = 0, sum = 0;

    explicit EdgeLengths(const Faces& faces)
    {
        for (unsigned int f = 0; f < faces.count; ++f) {
            for (unsigned int k = 0; k < faces.corners[f]; ++k) {
                const double l = length(faces.p[f][(k + 1) % faces.corners[f]] - faces.p[f][k]);
                shortest = std::min(shortest, l);
                longest = std::max(longest, l);
                sum += l;
            }
        }
    }
};

double edgeRatio(const Faces& faces, ElementShape)
{
    const EdgeLengths edges(faces);
    return faces.count == 0 ? worstRatio : upTo(worstRatio, edges.longest / edges.shortest);
}

double faceArea(const Faces& faces, unsigned int f)
{
    const Vector3* p = faces.p[f];
    return 0.5 * length(faces.corners[f] == 4 ? cross(p[2] - p[0], p[3] - p[1]) : cross(p[1] - p[0], p[2] - p[0]));
}

// Radius of the inscribed sphere: 3 x volume / surface. The fourth corner is the one that the first face lacks; it
// comes last in the second face (element_shape.cpp keeps the order of the flat normals).
double tetraAspect(const Faces& faces)
{
    const Vector3* base = faces.p[0];
    const double volume = std::fabs(det(base[1] - base[0], base[2] - base[0], faces.p[1][2] - base[0])) / 6;
    double surface = 0;
    for (unsigned int f = 0; f < faces.count; ++f) {
        surface += faceArea(faces, f);
    }
    return EdgeLengths(faces).longest * surface / (6 * std::sqrt(6.0) * volume);
}

double aspectRatio(const Faces& faces, ElementShape shape)
{
    if (faces.count == 0) {
        return worstRatio;
    }
    const EdgeLengths edges(faces);
    if (shape == ElementShape::Tetra) {
        return faces.count == 4 ? upTo(worstRatio, tetraAspect(faces)) : worstRatio;
    }
    if (shape != ElementShape::Triangle && shape != ElementShape::Quad) {
        return edgeRatio(faces, shape);
    }
    const double factor = faces.corners[0] == 3 ? 4 * std::sqrt(3.0) : 4;
    return upTo(worstRatio, edges.longest * edges.sum / (factor * faceArea(faces, 0)));
}

// --- Angles ---

// Range of the corner angles of the faces with a number of corners, in degrees. `any` is false when there is no such
// face. A corner at the end of an edge without length makes the range 0 to 180.
struct AngleRange
{
    bool any = false;
    double smallest = 180, largest = 0;

    AngleRange(const Faces& faces, unsigned int corners)
    {
        double cosines[2] = {1, -1}; // of the largest and the smallest angle
        for (unsigned int f = 0; f < faces.count; ++f) {
            if (faces.corners[f] != corners) {
                continue;
            }
            any = true;
            for (unsigned int k = 0; k < corners; ++k) {
                addCorner(faces.p[f][(k + corners - 1) % corners], faces.p[f][k], faces.p[f][(k + 1) % corners],
                          cosines);
            }
        }
        if (any) {
            smallest = degreesPerRadian * std::acos(cosines[1]);
            largest = degreesPerRadian * std::acos(cosines[0]);
        }
    }

    static void addCorner(const Vector3& before, const Vector3& corner, const Vector3& after, double (&cosines)[2])
    {
        const Vector3 a = before - corner, b = after - corner;
        const double lengths = std::sqrt(dot(a, a) * dot(b, b));
        const double cosine = dot(a, b) / lengths;
        if (!(lengths > 0) || !std::isfinite(cosine)) {
            cosines[0] = -1;
            cosines[1] = 1;
            return;
        }
        cosines[0] = std::min(cosines[0], std::max(cosine, -1.0));
        cosines[1] = std::max(cosines[1], std::min(cosine, 1.0));
    }
};

double skewOf(const AngleRange& range, double ideal)
{
    return range.any ? std::max((range.largest - ideal) / (180 - ideal), (ideal - range.smallest) / ideal) : 0;
}

double skew(const Faces& faces, ElementShape)
{
    return faces.count == 0 ? 1 : std::max(skewOf(AngleRange(faces, 3), 60), skewOf(AngleRange(faces, 4), 90));
}

double minAngle(const Faces& faces, ElementShape)
{
    return faces.count == 0 ? 0 : std::min(AngleRange(faces, 3).smallest, AngleRange(faces, 4).smallest);
}

double maxAngle(const Faces& faces, ElementShape)
{
    return faces.count == 0 ? 180 : std::max(AngleRange(faces, 3).largest, AngleRange(faces, 4).largest);
}

// --- Warpage ---

// Cosine of the angle between the triangles at corners k and k + 2, which lie on either side of the other diagonal.
double warpCosine(const Vector3* p, unsigned int k)
{
    const Vector3 here = cross(p[k + 1] - p[k], p[(k + 3) % 4] - p[k]);
    const Vector3 there = cross(p[(k + 3) % 4] - p[k + 2], p[k + 1] - p[k + 2]);
    const double lengths = length(here) * length(there);
    const double cosine = dot(here, there) / lengths;
    return lengths > 0 && std::isfinite(cosine) ? cosine : 1;
}

double warpage(const Faces& faces, ElementShape)
{
    double cosine = 1;
    for (unsigned int f = 0; f < faces.count; ++f) {
        if (faces.corners[f] == 4) {
            cosine = std::min({cosine, warpCosine(faces.p[f], 0), warpCosine(faces.p[f], 1)});
        }
    }
    return degreesPerRadian * std::acos(std::max(cosine, -1.0));
}

// --- Choice ---

struct QualityRow
{
    QualityInfo info;
    double (*ofFaces)(const Faces&, ElementShape); // null: from the record's corners instead
};

// In the order of the enumeration.
const QualityRow rows[qualityCount] = {
    {{"aspect-ratio", "", 1, worstRatio}, aspectRatio},
    {{"edge-ratio", "", 1, worstRatio}, edgeRatio},
    {{"skew", "", 0, 1}, skew},
    {{"warpage", "degrees", 0, 180}, warpage},
    {{"min-angle", "degrees", 90, 0}, minAngle},
    {{"max-angle", "degrees", 60, 180}, maxAngle},
    {{"scaled-jacobian", "", 1, -1}, nullptr},
};

bool finite(const PartMesh& part, std::uint32_t element, ElementShape shape)
{
    const bool solid = shape != ElementShape::Triangle && shape != ElementShape::Quad && shape != ElementShape::Tetra;
    const unsigned int* slots = slotsOf(part, element);
    for (unsigned int k = 0; k < (solid ? 8u : 4u); ++k) {
        const float* p = positionOf(part, slots[k]);
        if (!std::isfinite(p[0]) || !std::isfinite(p[1]) || !std::isfinite(p[2])) {
            return false;
        }
    }
    return true;
}

float qualityOf(const PartMesh& part, const QualityRow& row, std::uint32_t element)
{
    const ElementShape shape = shapeOf(part, element);
    if (shape == ElementShape::None || shape == ElementShape::Line) {
        return noQuality;
    }
    if (!finite(part, element, shape)) {
        return row.info.worst;
    }
    return static_cast<float>(row.ofFaces ? row.ofFaces(Faces(part, element, shape), shape)
                                          : scaledJacobian(part, element, shape));
}

} // namespace

const QualityInfo& qualityInfo(Quality quality)
{
    return rows[static_cast<unsigned int>(quality)].info;
}

void elementQuality(const PartMesh& part, Quality quality, float* out)
{
    const QualityRow& row = rows[static_cast<unsigned int>(quality)];
    parallelFor(part.elementCount, 2048, [&](std::size_t begin, std::size_t end) {
        for (std::size_t e = begin; e < end; ++e) {
            out[e] = qualityOf(part, row, static_cast<std::uint32_t>(e));
        }
    });
}

float elementQuality(const PartMesh& part, Quality quality, std::uint32_t element)
{
    return element < part.elementCount ? qualityOf(part, rows[static_cast<unsigned int>(quality)], element) : noQuality;
}

} // namespace kvo
