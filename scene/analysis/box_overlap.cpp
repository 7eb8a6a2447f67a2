// Boxes against triangles by separating axes, and from there against elements.
#include "box_overlap.h"

#include <algorithm>
#include <cmath>

#include "vectors.h"

namespace kvo {

using namespace vectors;

namespace {

Vector3 centreOf(const ModelBox& box)
{
    return {0.5 * (box.low[0] + box.high[0]), 0.5 * (box.low[1] + box.high[1]), 0.5 * (box.low[2] + box.high[2])};
}

// Both are convex, so they are apart when their shadows on some axis are. An axis without length separates nothing.
bool separates(const Vector3& axis, const Vector3* triangle, const Vector3& half)
{
    const double reach = half.x * std::fabs(axis.x) + half.y * std::fabs(axis.y) + half.z * std::fabs(axis.z);
    const double p[3] = {dot(axis, triangle[0]), dot(axis, triangle[1]), dot(axis, triangle[2])};
    return std::min({p[0], p[1], p[2]}) > reach || std::max({p[0], p[1], p[2]}) < -reach;
}

// The box that the corners span.
ModelBox spanOf(const Vector3* p, unsigned int count)
{
    ModelBox span = {{p[0].x, p[0].y, p[0].z}, {p[0].x, p[0].y, p[0].z}};
    for (unsigned int k = 1; k < count; ++k) {
        const double at[3] = {p[k].x, p[k].y, p[k].z};
        for (int axis = 0; axis < 3; ++axis) {
            span.low[axis] = std::min(span.low[axis], at[axis]);
            span.high[axis] = std::max(span.high[axis], at[axis]);
        }
    }
    return span;
}

// False when nothing is left. Makes endless boxes finite, too.
bool cutTo(const ModelBox& span, ModelBox& box)
{
    for (int axis = 0; axis < 3; ++axis) {
        box.low[axis] = std::max(box.low[axis], span.low[axis]);
        box.high[axis] = std::min(box.high[axis], span.high[axis]);
        if (!(box.low[axis] <= box.high[axis])) {
            return false;
        }
    }
    return true;
}

// Inside one of the tetrahedra between the middle and the triangles of the faces: on the inner side of each of its
// faces.
bool insideTetra(const Vector3& p, const Vector3* t)
{
    const double whole = det(t[1] - t[0], t[2] - t[0], t[3] - t[0]);
    const double parts[4] = {det(t[1] - p, t[2] - p, t[3] - p), det(p - t[0], t[2] - t[0], t[3] - t[0]),
                             det(t[1] - t[0], p - t[0], t[3] - t[0]), det(t[1] - t[0], t[2] - t[0], p - t[0])};
    return whole != 0 && std::all_of(parts, parts + 4, [&](double d) { return d * whole >= 0; });
}

} // namespace

bool insideBox(const ModelBox& box, const Vector3& p)
{
    return p.x >= box.low[0] && p.x <= box.high[0] && p.y >= box.low[1] && p.y <= box.high[1] && p.z >= box.low[2] &&
           p.z <= box.high[2];
}

bool triangleTouchesBox(const ModelBox& box, const Vector3& a, const Vector3& b, const Vector3& c)
{
    const Vector3 middle = centreOf(box);
    const Vector3 half = {box.high[0] - middle.x, box.high[1] - middle.y, box.high[2] - middle.z};
    const Vector3 triangle[3] = {a - middle, b - middle, c - middle};
    const Vector3 edges[3] = {b - a, c - b, a - c};
    static const Vector3 axes[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    if (separates(cross(edges[0], edges[1]), triangle, half)) {
        return false;
    }
    for (const Vector3& axis : axes) {
        if (separates(axis, triangle, half)) {
            return false;
        }
        for (const Vector3& edge : edges) {
            if (separates(cross(axis, edge), triangle, half)) {
                return false;
            }
        }
    }
    return true;
}

bool elementTouchesBox(const PartMesh& part, std::uint32_t element, ElementShape shape, const ModelBox& box)
{
    std::uint32_t nodes[8];
    Vector3 p[8], middle;
    const unsigned int corners = cornersOf(part, element, shape, nodes);
    for (unsigned int k = 0; k < corners; ++k) {
        p[k] = placeOf(part, nodes[k]);
        middle = middle + (1.0 / corners) * p[k];
    }
    ModelBox common = box;
    if (!cutTo(spanOf(p, corners), common)) {
        return false;
    }
    if (std::any_of(p, p + corners, [&](const Vector3& corner) { return insideBox(box, corner); })) {
        return true;
    }
    if (shape == ElementShape::Line) {
        return triangleTouchesBox(common, p[0], p[1], p[1]);
    }
    // The middle of the box is inside a solid that has the whole box in it.
    const bool solid = shape != ElementShape::Triangle && shape != ElementShape::Quad;
    ElementFace faces[maxFaces];
    const unsigned int count = facesOf(part, element, shape, faces);
    for (unsigned int f = 0; f < count; ++f) {
        for (unsigned int k = 2; k < faces[f].corners; ++k) {
            const Vector3 t[4] = {placeOf(part, faces[f].nodes[0]), placeOf(part, faces[f].nodes[k - 1]),
                                  placeOf(part, faces[f].nodes[k]), middle};
            if (triangleTouchesBox(common, t[0], t[1], t[2]) || (solid && insideTetra(centreOf(common), t))) {
                return true;
            }
        }
    }
    return false;
}

} // namespace kvo
