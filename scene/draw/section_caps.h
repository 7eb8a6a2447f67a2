// The cross-sections of the cut solids in buffers, made when plane or geometry changes.
#ifndef KVO_SCENE_SECTION_CAPS_H
#define KVO_SCENE_SECTION_CAPS_H

#include <vector>

#include "gl_objects.h"
#include "scene_geometry.h"

namespace kvo {

class SectionCaps
{
public:
    // Makes them anew when the plane is another one than the last time, or after forget(). absent: as in
    // SceneGeometry::build, with which geometry was built.
    void update(const std::vector<PartMesh>& parts, const SceneGeometry& geometry,
                const std::vector<ElementMask>& absent, const double plane[4]);
    void forget() { known = false; }

    const GlBuffer& triangles() const { return triangleBuffer; }
    const GlBuffer& outlines() const { return outlineBuffer; }
    const std::vector<VertexRange>& triangleRanges() const { return triangleParts; }
    const std::vector<VertexRange>& outlineRanges() const { return outlineParts; }

private:
    bool known = false;
    double madeFor[4] = {0, 0, 0, 0};
    GlBuffer triangleBuffer;
    GlBuffer outlineBuffer;
    std::vector<VertexRange> triangleParts;
    std::vector<VertexRange> outlineParts;
};

} // namespace kvo

#endif
