#include "surface_lines.h"

#include "feature_edges.h"

namespace kvo {

namespace {

struct LineWriter
{
    const PartMesh part;
    std::uint32_t partNumber;
    std::uint32_t firstElement;
    const double* origin;

    void add(const std::vector<SurfaceEdge>& edges, std::vector<SurfaceVertex>& out,
             std::vector<VertexRange>& ranges) const
    {
        const std::uint32_t first = static_cast<std::uint32_t>(out.size());
        for (const SurfaceEdge& edge : edges) {
            for (std::uint32_t node : edge.nodes) {
                SurfaceVertex vertex = {{}, {0, 0, 32767}, 0, firstElement + edge.element, partNumber};
                for (int axis = 0; axis < 3; ++axis) {
                    vertex.position[axis] = static_cast<float>(positionOf(part, node)[axis] - origin[axis]);
                }
                out.push_back(vertex);
            }
        }
        if (!edges.empty()) {
            ranges.push_back({partNumber, first, static_cast<std::uint32_t>(2 * edges.size())});
        }
    }
};

} // namespace

void SurfaceLines::update(const std::vector<PartMesh>& parts, const SceneGeometry& geometry,
                          const std::vector<ElementMask>& absent, float featureAngle)
{
    if (known && angle == featureAngle) {
        return;
    }
    for (std::vector<VertexRange>& ranges : lineRanges) {
        ranges.clear();
    }
    std::vector<SurfaceVertex> lines;
    const ElementMask none;
    for (std::uint32_t number = 0; number < parts.size() && number < geometry.partCount(); ++number) {
        const PartMesh& part = parts[number];
        const PartSurface surface = findSurface(part, number < absent.size() ? absent[number] : none);
        const SurfaceEdges edges = findEdges(part, surface, featureAngle);
        const LineWriter writer = {part, number, geometry.elementStarts()[number], geometry.origin()};
        writer.add(edges.feature, lines, lineRanges[FeatureLines]);
        writer.add(edges.free, lines, lineRanges[FreeLines]);
        writer.add(edges.branching, lines, lineRanges[BranchingLines]);
    }
    vertices.fill(GL_ARRAY_BUFFER, lines);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    known = true;
    angle = featureAngle;
}

} // namespace kvo
