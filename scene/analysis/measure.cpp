// Measures of nodes, faces and elements.
#include <kvo/measure.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "element_shape.h"
#include "parallel.h"
#include "vectors.h"

namespace kvo {

using namespace vectors;

namespace {

// A quantity with its first moment: sums of pieces give the centre of gravity.
struct Moment
{
    double amount = 0;
    Vector3 sum;

    void add(double piece, const Vector3& centre)
    {
        amount += piece;
        sum = sum + piece * centre;
    }
};

double triangleArea(const Vector3& a, const Vector3& b, const Vector3& c)
{
    return 0.5 * length(cross(b - a, c - a));
}

double faceArea(const Vector3* p, unsigned int corners)
{
    if (corners == 3) {
        return triangleArea(p[0], p[1], p[2]);
    }
    return std::min(triangleArea(p[0], p[1], p[2]) + triangleArea(p[0], p[2], p[3]),
                    triangleArea(p[1], p[2], p[3]) + triangleArea(p[1], p[3], p[0]));
}

// Both cuts of a quadrilateral count half. Pieces are signed by the face's mean normal, so that the triangle outside a
// re-entrant quadrilateral is taken away again.
void addFaceArea(const Vector3* p, unsigned int corners, Moment& area)
{
    static constexpr unsigned char cuts[4][3] = {{0, 1, 2}, {0, 2, 3}, {1, 2, 3}, {1, 3, 0}};
    if (corners == 3) {
        area.add(triangleArea(p[0], p[1], p[2]), (1.0 / 3) * (p[0] + p[1] + p[2]));
        return;
    }
    const Vector3 normal = unit(cross(p[2] - p[0], p[3] - p[1]));
    for (const auto& cut : cuts) {
        const Vector3 &a = p[cut[0]], &b = p[cut[1]], &c = p[cut[2]];
        area.add(0.25 * dot(cross(b - a, c - a), normal), (1.0 / 3) * (a + b + c));
    }
}

// Signed volume of the tetrahedra from the origin to both cuts of every face of a hexahedron, seen from outside
// counter-clockwise. Corners that coincide leave pieces without volume, so wedges and pyramids need no table.
void addHexaVolume(const Vector3* p, Moment& volume)
{
    static constexpr unsigned char faces[6][4] = {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                                  {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};
    static constexpr unsigned char cuts[4][3] = {{0, 1, 2}, {0, 2, 3}, {1, 2, 3}, {1, 3, 0}};
    for (const auto& face : faces) {
        for (const auto& cut : cuts) {
            const Vector3 &a = p[face[cut[0]]], &b = p[face[cut[1]]], &c = p[face[cut[2]]];
            volume.add(det(a, b, c) / 12, 0.25 * (a + b + c));
        }
    }
}

void addTetraVolume(const Vector3* p, Moment& volume)
{
    volume.add(det(p[1] - p[0], p[2] - p[0], p[3] - p[0]) / 6, 0.25 * (p[0] + p[1] + p[2] + p[3]));
}

// Corners as the record's slots name them, relative to the first: differences of large coordinates stay exact.
void addVolume(const PartMesh& part, std::uint32_t element, ElementShape shape, const Vector3& origin, Moment& volume)
{
    const unsigned int* slots = slotsOf(part, element);
    Vector3 p[8];
    for (unsigned int k = 0; k < (shape == ElementShape::Tetra ? 4u : 8u); ++k) {
        p[k] = placeOf(part, slots[k]) - origin;
    }
    if (shape == ElementShape::Tetra) {
        addTetraVolume(p, volume);
    } else {
        addHexaVolume(p, volume);
    }
}

Vector3 meanOfCorners(const PartMesh& part, const std::uint32_t* nodes, unsigned int count, const Vector3& origin)
{
    Vector3 sum;
    for (unsigned int k = 0; k < count; ++k) {
        sum = sum + (placeOf(part, nodes[k]) - origin);
    }
    return (1.0 / count) * sum;
}

// Rims and areas of all faces. An edge of a solid belongs to two of its faces.
void addFaces(const PartMesh& part, std::uint32_t element, ElementShape shape, const Vector3& origin, ElementMeasure& m,
              Moment& area)
{
    ElementFace faces[maxFaces];
    const unsigned int count = facesOf(part, element, shape, faces);
    const bool shell = shape == ElementShape::Triangle || shape == ElementShape::Quad;
    for (unsigned int f = 0; f < count; ++f) {
        const unsigned int corners = faces[f].corners;
        Vector3 p[4];
        for (unsigned int k = 0; k < corners; ++k) {
            p[k] = placeOf(part, faces[f].nodes[k]) - origin;
        }
        for (unsigned int k = 0; k < corners; ++k) {
            m.length += (shell ? 1 : 0.5) * length(p[(k + 1) % corners] - p[k]);
        }
        m.area += faceArea(p, corners);
        addFaceArea(p, corners, area);
    }
}

// Sums over elements, with their centres weighted by volume, area, length and number.
struct Sums
{
    ElementMeasure measure;
    Moment weighted[4];

    void add(const Sums& other)
    {
        measure.length += other.measure.length;
        measure.area += other.measure.area;
        measure.volume += other.measure.volume;
        for (int k = 0; k < 4; ++k) {
            weighted[k].amount += other.weighted[k].amount;
            weighted[k].sum = weighted[k].sum + other.weighted[k].sum;
        }
    }

    ElementMeasure result() const
    {
        ElementMeasure m = measure;
        for (const Moment& moment : weighted) {
            if (moment.amount != 0) {
                m.centroid = (1 / moment.amount) * moment.sum;
                break;
            }
        }
        return m;
    }
};

void addElement(const PartMesh& part, std::uint32_t element, Sums& sums)
{
    if (shapeOf(part, element) == ElementShape::None) {
        return;
    }
    const ElementMeasure m = measureElement(part, element);
    const double weights[4] = {m.volume, m.area, m.length, 1};
    Sums one;
    one.measure = m;
    for (int k = 0; k < 4; ++k) {
        one.weighted[k].add(weights[k], m.centroid);
    }
    sums.add(one);
}

} // namespace

bool nodePlace(const PartMesh& part, std::uint32_t node, Vector3& place)
{
    if (part.positions == nullptr || node >= part.nodeCount) {
        return false;
    }
    place = placeOf(part, node);
    return true;
}

Distance distanceOf(const Vector3& from, const Vector3& to)
{
    const Vector3 d = to - from;
    return {length(d), d.x, d.y, d.z};
}

double angleOf(const Vector3& end, const Vector3& middle, const Vector3& otherEnd)
{
    const Vector3 a = end - middle, b = otherEnd - middle;
    // The arc tangent keeps its accuracy near 0 and 180 degrees, where the arc cosine loses half the digits.
    return degreesPerRadian * std::atan2(length(cross(a, b)), dot(a, b));
}

bool circleThrough(const Vector3& a, const Vector3& b, const Vector3& c, Circle& circle)
{
    const Vector3 u = b - a, v = c - a;
    const Vector3 normal = cross(u, v);
    const double uu = dot(u, u), vv = dot(v, v), nn = dot(normal, normal), ww = dot(c - b, c - b);
    // |u x v| = |u| |v| sin: angles below about 1e-6 are what rounded coordinates of points on a line give.
    if (!(nn > 1e-12 * uu * vv) || !(nn > 1e-12 * uu * ww) || !(nn > 1e-12 * vv * ww)) {
        return false;
    }
    const Vector3 toCentre = (0.5 / nn) * (uu * cross(v, normal) + vv * cross(normal, u));
    circle.centre = a + toCentre;
    circle.axis = unit(normal);
    circle.radius = length(toCentre);
    return true;
}

ElementMeasure measureElement(const PartMesh& part, std::uint32_t element)
{
    ElementMeasure m;
    const ElementShape shape = element < part.elementCount ? shapeOf(part, element) : ElementShape::None;
    if (shape == ElementShape::None) {
        return m;
    }
    std::uint32_t nodes[8];
    const unsigned int corners = cornersOf(part, element, shape, nodes);
    const Vector3 origin = placeOf(part, nodes[0]);
    m.centroid = origin + meanOfCorners(part, nodes, corners, origin);
    if (shape == ElementShape::Line) {
        m.length = length(placeOf(part, nodes[1]) - origin);
        return m;
    }
    Moment area;
    addFaces(part, element, shape, origin, m, area);
    Moment moment = area;
    if (shape != ElementShape::Triangle && shape != ElementShape::Quad) {
        moment = {};
        addVolume(part, element, shape, origin, moment);
        m.volume = moment.amount;
    }
    if (moment.amount != 0) {
        m.centroid = origin + (1 / moment.amount) * moment.sum;
    }
    return m;
}

ElementMeasure measureElements(const PartMesh& part, const std::uint8_t* marks)
{
    // Blocks of fixed size, added in order: the same sum on any number of cores.
    constexpr std::size_t blockSize = 4096;
    const std::size_t count = part.elementCount;
    std::vector<Sums> blocks((count + blockSize - 1) / blockSize);
    parallelFor(blocks.size(), 1, [&](std::size_t begin, std::size_t end) {
        for (std::size_t b = begin; b < end; ++b) {
            for (std::size_t e = b * blockSize; e < std::min(count, (b + 1) * blockSize); ++e) {
                if (marks == nullptr || marks[e] != 0) {
                    addElement(part, static_cast<std::uint32_t>(e), blocks[b]);
                }
            }
        }
    });
    Sums sums;
    for (const Sums& block : blocks) {
        sums.add(block);
    }
    return sums.result();
}

double faceArea(const PartMesh& part, std::uint32_t element, unsigned int face)
{
    const ElementShape shape = element < part.elementCount ? shapeOf(part, element) : ElementShape::None;
    ElementFace faces[maxFaces];
    const unsigned int count = shape == ElementShape::None ? 0 : facesOf(part, element, shape, faces);
    for (unsigned int f = 0; f < count; ++f) {
        if (faces[f].number != face) {
            continue;
        }
        Vector3 p[4];
        for (unsigned int k = 0; k < faces[f].corners; ++k) {
            p[k] = placeOf(part, faces[f].nodes[k]);
        }
        return faceArea(p, faces[f].corners);
    }
    return 0;
}

} // namespace kvo
