// Normals of the faces that are drawn, per face or per corner, packed for vertex buffers.
#ifndef KVO_SCENE_FACE_NORMALS_H
#define KVO_SCENE_FACE_NORMALS_H

#include <cstdint>
#include <vector>

#include "surface_faces.h"
#include <kvo/part_mesh.h>

namespace kvo {

// A unit vector in signed 16-bit fractions of 32767, off by 1/65534 at most.
struct PackedNormal
{
    std::int16_t x, y, z;

    bool operator==(const PackedNormal& o) const { return x == o.x && y == o.y && z == o.z; }
};

// Length does not matter; no direction (zero, not a number) becomes +z, so that nothing drawn has a normal that is
// none.
PackedNormal packNormal(const float vector[3]);

// What gives the normals.
enum class NormalSource
{
    Geometry, // the faces that are drawn
    Record    // elmNormals and nodeNormals of the part, as the contract library draws them; Geometry where they miss
};

struct NormalChoice
{
    NormalSource source = NormalSource::Geometry;
    bool smooth = false;
    float featureAngle = 30; // degrees: smooth normals do not run over edges that turn more
};

class FaceNormals
{
public:
    // Computes them for all faces, in parallel. part and faces must outlive this.
    FaceNormals(const PartMesh& part, const PartSurface& surface, const NormalChoice& choice);

    PackedNormal at(std::size_t face, unsigned int corner) const
    {
        return corners.empty() ? flat[face] : corners[4 * face + corner];
    }
    bool smooth() const { return !corners.empty(); }

private:
    void fromRecord();
    void fromFaces();
    void smoothen();

    const PartMesh part;
    const PartSurface& surface;
    const NormalChoice choice;
    RawVector<PackedNormal> flat;    // per face
    RawVector<PackedNormal> corners; // four per face when smooth
};

// Twice the area of a face along its right-handed normal; of a quadrilateral, the cross product of its diagonals.
void faceVector(const PartMesh& part, const SurfaceFace& face, float out[3]);

} // namespace kvo

#endif
