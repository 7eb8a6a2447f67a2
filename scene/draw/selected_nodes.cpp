// Selected nodes as points in the selection colour.
#include <algorithm>
#include <vector>

#include "scene_view_impl.h"
#include "section.h"

namespace kvo {

namespace {

// Gathers the selected ones among nodes that can be seen.
class NodePoints
{
public:
    // plane: null where nothing is sliced.
    NodePoints(const double slicingPlane[4], const double sceneOrigin[3]) : plane(slicingPlane), origin(sceneOrigin) {}

    // there: per node, 0 where it is not; may be empty.
    void gather(const MarkBytes& selected, const float* values, std::size_t count, const std::vector<char>& there)
    {
        if (!selected.bytes || !values) {
            return;
        }
        for (std::size_t k = 0; k < std::min(count, selected.count); ++k) {
            const float* at = values + 3 * k;
            const bool marked = selected.characters ? selected.bytes[k] == '1' : selected.bytes[k] != 0;
            if (marked && (there.empty() || there[k]) && kept(at)) {
                for (int axis = 0; axis < 3; ++axis) {
                    points.push_back(static_cast<float>(at[axis] - origin[axis]));
                }
            }
        }
    }
    const std::vector<float>& found() const { return points; }

private:
    bool kept(const float* p) const
    {
        return !plane || plane[0] * p[0] + plane[1] * p[1] + plane[2] * p[2] + plane[3] >= 0;
    }

    const double* const plane;
    const double* const origin;
    std::vector<float> points;
};

} // namespace

// Where whole elements are away, so are nodes that no other element has.
void SceneView::Impl::drawSelectedNodes()
{
    NodePoints points(slices() ? drawnLook.section.plane : nullptr, geometry.origin());
    const ShownModel::Impl& shown = model.asRead();
    for (std::size_t k = 0; k < shown.partCount; ++k) {
        const PartMesh& part = shown.meshes[k];
        const MarkBytes& selected = shown.parts[k].selectedNodes;
        if (selected.bytes && !shown.parts[k].hidden) {
            const std::vector<char> there =
                key.withoutRemoved ? nodesInUse(part, k < gone.size() ? gone[k] : ElementMask()) : std::vector<char>();
            points.gather(selected, part.positions, part.nodeCount, there);
        }
    }
    points.gather(shown.listedNodes.selected, shown.listedNodes.positions, shown.listedNodes.count, {});
    if (points.found().empty()) {
        return;
    }
    if (points.found() != nodePoints) {
        nodePoints = points.found();
        nodeVertices.fill(GL_ARRAY_BUFFER, nodePoints);
    }
    SurfaceUniforms values = uniforms();
    std::copy_n(shown.selectionColor.data(), 4, values.color);
    const DrawnNearer nearer(camera, 2, values); // before lines
    useUncut(UniformColor | FlatLight, values);
    glPointSize(drawnLook.nodeSize);
    nodeVertices.bind(GL_ARRAY_BUFFER);
    glEnableVertexAttribArray(positionAttribute);
    glVertexAttribPointer(positionAttribute, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glDrawArrays(GL_POINTS, 0, static_cast<GLsizei>(nodePoints.size() / 3));
    glDisableVertexAttribArray(positionAttribute);
    ++stats.drawCalls;
}

} // namespace kvo
