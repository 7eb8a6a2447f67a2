#include "section_caps.h"

#include <algorithm>
#include <utility>

#include "section.h"

namespace kvo {

void SectionCaps::update(const std::vector<PartMesh>& parts, const SceneGeometry& geometry,
                         const std::vector<ElementMask>& absent, const double plane[4])
{
    if (known && std::equal(plane, plane + 4, madeFor)) {
        return;
    }
    CapMesh mesh;
    const ElementMask none;
    for (std::uint32_t number = 0; number < parts.size() && number < geometry.partCount(); ++number) {
        addCaps(parts[number], number, geometry.elementStarts()[number], number < absent.size() ? absent[number] : none,
                plane, geometry.origin(), mesh);
    }
    triangleBuffer.fill(GL_ARRAY_BUFFER, mesh.triangles);
    outlineBuffer.fill(GL_ARRAY_BUFFER, mesh.outlines);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    triangleParts = std::move(mesh.triangleRanges);
    outlineParts = std::move(mesh.outlineRanges);
    std::copy(plane, plane + 4, madeFor);
    known = true;
}

} // namespace kvo
