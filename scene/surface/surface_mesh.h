// The vertex and index arrays of the faces that are drawn, in blocks that are close together in space.
//
// A face is told from its neighbours by what its last vertex carries (the vertex that flat attributes are taken from):
// its element and part, and for flat shading its normal. So a vertex serves as the last one of one face at most and is
// otherwise shared by the faces around its node, which leaves about one vertex a face.
#ifndef KVO_SCENE_SURFACE_MESH_H
#define KVO_SCENE_SURFACE_MESH_H

#include <cstdint>
#include <vector>

#include "face_normals.h"
#include "surface_faces.h"
#include <kvo/part_mesh.h>

namespace kvo {

struct SurfaceVertex
{
    float position[3]; // model coordinates minus SurfaceMesh::origin
    PackedNormal normal;
    std::uint16_t padding;
    std::uint32_t element; // flat: number of the element, counted over all parts from 0
    std::uint32_t part;    // part index; the same for all vertices of a face
};
static_assert(sizeof(SurfaceVertex) == 28, "the vertex buffer's layout");

// Faces of one part that lie together: a range of an index array and their box.
struct SurfaceBlock
{
    std::uint32_t part;
    std::uint32_t firstIndex;
    std::uint32_t indexCount;
    float low[3]; // model coordinates minus origin
    float high[3];
};

// Lines or triangles of one part: a range of vertices of a buffer.
struct VertexRange
{
    std::uint32_t part;
    std::uint32_t firstVertex;
    std::uint32_t vertexCount;
};

enum FaceKind
{
    Triangles,
    Quads,
    faceKinds
};

// Quadrilaterals are two triangles, of the corners 0, 1, 3 and 1, 2, 3: both end with the face's last vertex.
constexpr unsigned int indicesOfFace(FaceKind kind)
{
    return kind == Quads ? 6 : 3;
}
constexpr unsigned int cornersOfFace(FaceKind kind)
{
    return kind == Quads ? 4 : 3;
}
// The place of a face's corner among its indices.
constexpr unsigned int placeOfCorner(FaceKind kind, unsigned int corner)
{
    constexpr unsigned int inQuad[4] = {0, 1, 4, 2};
    return kind == Quads ? inQuad[corner] : corner;
}

struct SurfaceMesh
{
    double origin[3] = {0, 0, 0};
    RawVector<SurfaceVertex> vertices;
    RawVector<std::uint32_t> indices[faceKinds]; // indicesOfFace a face
    std::vector<SurfaceBlock> blocks[faceKinds]; // by part
};

constexpr std::size_t facesPerBlock = 256;

// Adds the faces of a part. firstElement: number of the part's element 0 over all parts.
void addSurface(const PartMesh& part, std::uint32_t partIndex, std::uint32_t firstElement, const PartSurface& surface,
                const FaceNormals& normals, SurfaceMesh& mesh);

} // namespace kvo

#endif
