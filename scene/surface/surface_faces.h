// The faces of a part that can be seen: every shell, and of the solids the faces that only one element has.
#ifndef KVO_SCENE_SURFACE_FACES_H
#define KVO_SCENE_SURFACE_FACES_H

#include <cstdint>
#include <vector>

#include "element_shape.h"
#include "raw_vector.h"
#include <kvo/part_mesh.h>

namespace kvo {

struct SurfaceFace
{
    std::uint32_t nodes[4]; // of the part, round the rim; noCorner as fourth of a triangle
    std::uint32_t element;  // 0-based
    std::uint8_t number;    // ElementFace::number
    bool turned;            // against the record's winding
};

// One character per element of a part, not 0: as if the element were not there. Empty: all are there.
typedef std::vector<char> ElementMask;

struct PartSurface
{
    RawVector<SurfaceFace> faces; // by element, then face number
    // The faces enclose the elements and turn their right-handed normal outward, so that faces seen from behind need
    // not be drawn. False for shells, and for solids with elements so flat that outward cannot be told.
    bool closed = false;
};

// Shells keep their winding; faces of solids are turned outward. The diagonal from the second to the fourth corner,
// along which a quadrilateral is drawn as two triangles, is the record's. Runs on all cores; O(elements).
PartSurface findSurface(const PartMesh& part, const ElementMask& absent = {});

} // namespace kvo

#endif
