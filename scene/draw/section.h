// The section plane: which elements it takes away, and the cross-sections of the solids that it cuts.
#ifndef KVO_SCENE_SECTION_H
#define KVO_SCENE_SECTION_H

#include <cstdint>
#include <vector>

#include "surface_faces.h"
#include "surface_mesh.h"
#include <kvo/part_mesh.h>

namespace kvo {

// plane: what has a x + b y + c z + d >= 0 stays; model coordinates, of any length but 0.

// False for a normal of no length and for entries that are not finite: such a plane cuts nothing.
bool planeCuts(const double plane[4]);

// Per node of a part: the side it is on.
enum class PlaneSide : char
{
    Kept,
    Removed,
    Nowhere // coordinates that are not finite
};
std::vector<PlaneSide> sidesOf(const PartMesh& part, const double plane[4]);

// Elements that lie wholly on the removed side, besides those of absent. Runs on all cores.
ElementMask withoutRemoved(const PartMesh& part, const double plane[4], const ElementMask& absent);

// Per node: not 0 where an element that is there uses it.
std::vector<char> nodesInUse(const PartMesh& part, const ElementMask& absent);

// Cross-sections as triangles, with their outlines as lines; by part.
struct CapMesh
{
    std::vector<SurfaceVertex> triangles; // 3 each
    std::vector<SurfaceVertex> outlines;  // 2 each; where the plane cuts the elements' faces
    std::vector<VertexRange> triangleRanges;
    std::vector<VertexRange> outlineRanges;
};

// Adds the cross-sections of a part's solids, relative to origin, with normals towards the removed side. firstElement:
// number of the part's element 0 over all parts. Runs on all cores.
void addCaps(const PartMesh& part, std::uint32_t partIndex, std::uint32_t firstElement, const ElementMask& absent,
             const double plane[4], const double origin[3], CapMesh& mesh);

} // namespace kvo

#endif
