// Volumes by faces; mirrored orders of corners.
//
//        7-------6
//       /|      /|      bottom 0 1 2 3 counted counterclockwise as seen from the top 4 5 6 7;
//      4-------5 |      wedge: bottom 0 1 2, top 3 4 5; pyramid: base 0 1 2 3, apex 4;
//      | 3-----|-2      tetrahedron: base 0 1 2, apex 3
//      |/      |/
//      0-------1
#include "solid_sense.h"

#include <array>
#include <utility>
#include <vector>

namespace kvo {

namespace {

using Corners = std::vector<int>;

struct SolidRow
{
    Shape shape;
    std::vector<Corners> faces;            // outward by the right-hand rule
    std::vector<std::pair<int, int>> swap; // makes the mirror image's order
};

const std::vector<SolidRow>& solidRows()
{
    static const std::vector<SolidRow> rows = {
        {Shape::Tetra, {{0, 2, 1}, {0, 1, 3}, {1, 2, 3}, {2, 0, 3}}, {{1, 2}}},
        {Shape::Pyramid, {{0, 3, 2, 1}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}}, {{1, 3}}},
        {Shape::Wedge, {{0, 2, 1}, {3, 4, 5}, {0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}}, {{1, 2}, {4, 5}}},
        {Shape::Hexa,
         {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}},
         {{1, 3}, {5, 7}}},
    };
    return rows;
}

const SolidRow* solidRow(Shape shape)
{
    for (const SolidRow& row : solidRows()) {
        if (row.shape == shape) {
            return &row;
        }
    }
    return nullptr;
}

using Vector = std::array<double, 3>;

// From the solid's first corner, so that a place far from the origin costs no digits.
Vector cornerAt(const MeshFile& file, const std::int64_t* nodes, int corner)
{
    const double* first = &file.xyz[3 * static_cast<std::size_t>(nodes[0])];
    const double* point = &file.xyz[3 * static_cast<std::size_t>(nodes[corner])];
    return {point[0] - first[0], point[1] - first[1], point[2] - first[2]};
}

double tripleProduct(const Vector& a, const Vector& b, const Vector& c)
{
    return a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) + a[2] * (b[0] * c[1] - b[1] * c[0]);
}

// The mean over both diagonals, which is exact for a ruled face. With one diagonal a thin layer of cells along a curved
// wall can come out below 0, since the faces on its two sides bend apart.
double warpedFace(const std::array<Vector, 4>& p)
{
    return 0.5 * (tripleProduct(p[0], p[1], p[2]) + tripleProduct(p[0], p[2], p[3]) + tripleProduct(p[0], p[1], p[3]) +
                  tripleProduct(p[1], p[2], p[3]));
}

} // namespace

void mirrorSolid(Shape shape, std::int64_t* corners)
{
    if (const SolidRow* row = solidRow(shape)) {
        for (const auto& pair : row->swap) {
            std::swap(corners[pair.first], corners[pair.second]);
        }
    }
}

double solidVolume(const MeshFile& file, Shape shape, const std::int64_t* nodes)
{
    const SolidRow* row = solidRow(shape);
    double sum = 0;
    for (const Corners& face : row ? row->faces : std::vector<Corners>()) {
        std::array<Vector, 4> corners;
        for (std::size_t k = 0; k < face.size(); ++k) {
            corners[k] = cornerAt(file, nodes, face[k]);
        }
        sum += face.size() == 3 ? tripleProduct(corners[0], corners[1], corners[2]) : warpedFace(corners);
    }
    return sum / 6;
}

std::uint64_t turnNegativeSolids(const Mesh& mesh, MeshFile& file)
{
    std::uint64_t turned = 0;
    for (ElementBlock& block : file.blocks) {
        const ElementType& type = mesh.types[block.type];
        const std::size_t slots = static_cast<std::size_t>(type.slots());
        for (std::size_t e = 0; type.family == Family::Solid && e < block.size(); ++e) {
            std::int64_t* nodes = &block.nodes[e * slots];
            if (block.part[e] != noPart && solidVolume(file, type.shape, nodes) < 0) {
                mirrorSolid(type.shape, nodes);
                ++turned;
            }
        }
    }
    return turned;
}

} // namespace kvo
