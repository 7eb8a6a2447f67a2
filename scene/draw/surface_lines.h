// Lines along the edges that tell a surface's shape, in a buffer of their own.
#ifndef KVO_SCENE_SURFACE_LINES_H
#define KVO_SCENE_SURFACE_LINES_H

#include <vector>

#include "gl_objects.h"
#include "scene_geometry.h"

namespace kvo {

enum SurfaceLineKind
{
    FeatureLines,
    FreeLines,
    BranchingLines,
    surfaceLineKinds
};

class SurfaceLines
{
public:
    // Finds the lines of all parts, unless they are known since the last forget() for the same angle. absent: as in
    // SceneGeometry::build, with which geometry was built.
    void update(const std::vector<PartMesh>& parts, const SceneGeometry& geometry,
                const std::vector<ElementMask>& absent, float featureAngle);
    void forget() { known = false; }

    const GlBuffer& buffer() const { return vertices; }
    const std::vector<VertexRange>& ranges(SurfaceLineKind kind) const { return lineRanges[kind]; }

private:
    bool known = false;
    float angle = 0;
    GlBuffer vertices;
    std::vector<VertexRange> lineRanges[surfaceLineKinds];
};

} // namespace kvo

#endif
