// The outer faces of the parts in scope and the edges between them.
#ifndef KVO_SCENE_FACE_SKIN_H
#define KVO_SCENE_FACE_SKIN_H

#include <cstdint>
#include <vector>

#include "buckets.h"
#include <kvo/part_mesh.h>

namespace kvo {

struct ModelJoints;

struct SkinFace
{
    std::uint32_t nodes[4]; // of the part, round the rim
    std::uint32_t part, element;
    std::uint8_t corners; // 3 or 4
    std::uint8_t number;  // among the element's faces
};

// One side of one face. Side k of a face joins its corners k and k + 1.
struct FaceSide
{
    std::uint32_t far; // the joint with the higher number
    std::uint32_t face;
    std::uint32_t side;
};

struct FaceSkin
{
    std::vector<SkinFace> faces;        // by element number, then face number
    std::vector<std::uint32_t> firstOf; // per element of the model, and the end: its faces
    Buckets<FaceSide> sides;            // by the joint with the lower number

    std::uint32_t jointAt(const ModelJoints& joints, std::uint32_t face, unsigned int corner) const;

    // visit(side) for every side that lies on the same edge, the given one included.
    template <class Visit>
    void atEdge(const ModelJoints& joints, std::uint32_t face, unsigned int side, const Visit& visit) const
    {
        const std::uint32_t a = jointAt(joints, face, side), b = jointAt(joints, face, side + 1);
        const std::uint32_t low = a < b ? a : b, high = a < b ? b : a;
        for (const FaceSide* s = sides.begin(low); s != sides.end(low); ++s) {
            if (s->far == high) {
                visit(*s);
            }
        }
    }
};

// All faces of shells; with solidsToo those of solids that one solid has. A shell on a solid's face leaves both.
FaceSkin findSkin(const PartMesh* parts, const ModelJoints& joints, bool solidsToo);

} // namespace kvo

#endif
