// What a model's parts look like, in buffers: faces, lines, and where each part's pieces are.
#ifndef KVO_SCENE_SCENE_GEOMETRY_H
#define KVO_SCENE_SCENE_GEOMETRY_H

#include <cstdint>
#include <vector>

#include "edge_indices.h"
#include "face_normals.h"
#include "gl_objects.h"
#include "surface_mesh.h"
#include <kvo/part_mesh.h>

namespace kvo {

// Positions, normals and the element and part numbers come from a buffer of SurfaceVertex, as the bound vertex array
// has it from now on. SceneGeometry::unbind ends it.
void bindSurfaceVertices(const GlBuffer& buffer);

class SceneGeometry
{
public:
    // Reads all parts and fills the buffers. absent: per part, elements that are not there; may be shorter than the
    // list of parts. The parts may be changed or freed afterwards.
    void build(const std::vector<PartMesh>& parts, const NormalChoice& choice, const std::vector<ElementMask>& absent);

    std::size_t partCount() const { return firstElements.size() - 1; }
    // Elements of all parts are numbered through; [partCount()] is their number.
    const std::vector<std::uint32_t>& elementStarts() const { return firstElements; }
    std::uint32_t elementCount() const { return firstElements.back(); }
    // The part of an element number, which must be below elementCount().
    std::uint32_t partOf(std::uint32_t element) const;

    // The faces' vertices of a part: [starts[part], starts[part + 1]).
    const std::vector<std::uint32_t>& vertexStarts() const { return firstVertices; }
    bool closed(std::uint32_t part) const { return closedParts[part] != 0; }
    const std::vector<SurfaceBlock>& blocks(FaceKind kind) const { return surfaceBlocks[kind]; }
    const std::vector<VertexRange>& lines() const { return lineRanges; }
    const double* origin() const { return shift; }
    // Vertices, indices and blocks of the faces, from OpenGL's buffers.
    SurfaceMesh readBack() const;
    // Bytes in OpenGL's buffers.
    std::size_t bufferBytes() const;

    // Positions, normals and the element and part numbers come from the faces' buffer.
    void bindSurface() const;
    const GlBuffer& lineBuffer() const { return lineVertices; }
    const GlBuffer& vertexBuffer() const { return vertices; }
    const GlBuffer& indexBuffer(FaceKind kind) const { return indices[kind]; }
    static void unbind();
    void bindIndices(FaceKind kind) const { indices[kind].bind(GL_ELEMENT_ARRAY_BUFFER); }
    void makeEdges(); // before they are bound; they live as long as the faces
    void bindEdges(FaceKind kind) const { edges[kind].bind(); }

private:
    void numberElements(const std::vector<PartMesh>& parts);
    void chooseOrigin(const std::vector<PartMesh>& parts);
    void addLines(const PartMesh& part, std::uint32_t number, const ElementMask& absent,
                  std::vector<SurfaceVertex>& out);

    double shift[3] = {0, 0, 0};
    std::vector<std::uint32_t> firstElements = {0};
    std::vector<std::uint32_t> firstVertices = {0};
    std::vector<char> closedParts;
    std::vector<SurfaceBlock> surfaceBlocks[faceKinds];
    std::vector<VertexRange> lineRanges;
    GlBuffer vertices;
    GlBuffer indices[faceKinds];
    EdgeIndices edges[faceKinds];
    GlBuffer lineVertices;
};

} // namespace kvo

#endif
