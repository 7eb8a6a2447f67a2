// Scaled Jacobians: tables of corners with the three edges that meet there, one loop.
#include "scaled_jacobian.h"

#include <algorithm>
#include <cmath>

#include "vectors.h"

namespace kvo {

using namespace vectors;

namespace {

// A corner's slot and the far slots of three of its edges, right-handed in an element that is not inside out.
struct CornerRow
{
    unsigned char corner, a, b, c;
};

//      7-------6
//     /|      /|      A wedge is left with slots 1 2 3 4 and the edge 5 - 7 (counted from 1), a pyramid with slots 1 2
//     3
//    4-------5 |      4 and the apex 5.
//    | 3-----|-2
//    |/      |/
//    0-------1
constexpr CornerRow hexaCorners[] = {{0, 1, 3, 4}, {1, 2, 0, 5}, {2, 3, 1, 6}, {3, 0, 2, 7},
                                     {4, 7, 5, 0}, {5, 4, 6, 1}, {6, 5, 7, 2}, {7, 6, 4, 3}};
constexpr CornerRow wedgeCorners[] = {{0, 1, 3, 4}, {1, 2, 0, 4}, {2, 3, 1, 6},
                                      {3, 0, 2, 6}, {4, 1, 0, 6}, {6, 3, 2, 4}};
constexpr CornerRow pyramidCorners[] = {{0, 1, 3, 4}, {1, 2, 0, 4}, {2, 3, 1, 4}, {3, 0, 2, 4},
                                        {4, 2, 1, 0}, {4, 3, 2, 1}, {4, 0, 3, 2}, {4, 1, 0, 3}};
constexpr CornerRow tetraCorners[] = {{0, 1, 2, 3}, {1, 2, 0, 3}, {2, 0, 1, 3}, {3, 2, 1, 0}};

double unitDet(const Vector3& a, const Vector3& b, const Vector3& c)
{
    return det(unit(a), unit(b), unit(c));
}

// The smallest over the rows. Rows with an edge between two slots of the same node do not count: that edge is not
// there.
template <std::size_t count>
double smallestDet(const Vector3* p, const unsigned int* slots, const CornerRow (&rows)[count])
{
    double smallest = HUGE_VAL;
    for (const CornerRow& row : rows) {
        const unsigned int here = slots[row.corner];
        if (slots[row.a] == here || slots[row.b] == here || slots[row.c] == here) {
            continue;
        }
        const Vector3& corner = p[row.corner];
        smallest = std::min(smallest, unitDet(p[row.a] - corner, p[row.b] - corner, p[row.c] - corner));
    }
    return smallest == HUGE_VAL ? 0 : smallest;
}

// The edges that join the middles of opposite faces, times four.
double centreDet(const Vector3* p)
{
    const Vector3 along01 = (p[1] - p[0]) + (p[2] - p[3]) + (p[5] - p[4]) + (p[6] - p[7]);
    const Vector3 along03 = (p[3] - p[0]) + (p[2] - p[1]) + (p[7] - p[4]) + (p[6] - p[5]);
    const Vector3 along04 = (p[4] - p[0]) + (p[5] - p[1]) + (p[6] - p[2]) + (p[7] - p[3]);
    return unitDet(along01, along03, along04);
}

double ofSolid(const Vector3* p, const unsigned int* slots, ElementShape shape)
{
    static const double root2 = std::sqrt(2.0), wedgeScale = 2 / std::sqrt(3.0);
    switch (shape) {
    case ElementShape::Tetra:
        return root2 * smallestDet(p, slots, tetraCorners);
    case ElementShape::Pyramid:
        return root2 * smallestDet(p, slots, pyramidCorners);
    case ElementShape::Wedge:
        return wedgeScale * smallestDet(p, slots, wedgeCorners);
    case ElementShape::Hexa:
        return std::min(smallestDet(p, slots, hexaCorners), centreDet(p));
    default:
        return smallestDet(p, slots, hexaCorners);
    }
}

// Sine of the angle at a corner, negative where it turns against the normal.
double cornerSine(const Vector3& before, const Vector3& corner, const Vector3& after, const Vector3& normal)
{
    return dot(normal, cross(unit(corner - before), unit(after - corner)));
}

double ofFace(const Vector3* p, unsigned int corners)
{
    const Vector3 normal = unit(corners == 4 ? cross(p[2] - p[0], p[3] - p[1]) : cross(p[1] - p[0], p[2] - p[0]));
    double smallest = HUGE_VAL;
    for (unsigned int k = 0; k < corners; ++k) {
        smallest = std::min(smallest, cornerSine(p[(k + corners - 1) % corners], p[k], p[(k + 1) % corners], normal));
    }
    return corners == 3 ? 2 / std::sqrt(3.0) * smallest : smallest;
}

} // namespace

double scaledJacobian(const PartMesh& part, std::uint32_t element, ElementShape shape)
{
    Vector3 p[8];
    double result = 0;
    if (shape == ElementShape::Triangle || shape == ElementShape::Quad) {
        ElementFace face[maxFaces];
        if (facesOf(part, element, shape, face) == 1) {
            for (unsigned int k = 0; k < face[0].corners; ++k) {
                p[k] = placeOf(part, face[0].nodes[k]);
            }
            result = ofFace(p, face[0].corners);
        }
    } else {
        const unsigned int* slots = slotsOf(part, element);
        for (unsigned int k = 0; k < (shape == ElementShape::Tetra ? 4u : 8u); ++k) {
            p[k] = placeOf(part, slots[k]);
        }
        result = ofSolid(p, slots, shape);
    }
    return std::isfinite(result) ? std::max(-1.0, std::min(1.0, result)) : 0;
}

} // namespace kvo
