// Faces' edges as lines, from the faces' own indices and vertices.
#ifndef KVO_SCENE_EDGE_INDICES_H
#define KVO_SCENE_EDGE_INDICES_H

#include <cstdint>
#include <vector>

#include "gl_objects.h"
#include "surface_mesh.h"

namespace kvo {

// Two indices an edge, cornersOfFace edges a face: in the order of the faces.
std::vector<std::uint32_t> edgesOf(const std::uint32_t* faces, std::size_t indexCount, FaceKind kind);

// The part of the edges that a block of faces has.
constexpr std::size_t edgeIndices(FaceKind kind, std::size_t faceIndices)
{
    return faceIndices / indicesOfFace(kind) * 2 * cornersOfFace(kind);
}

// Edges in a buffer, made when they are first wanted.
class EdgeIndices
{
public:
    void make(const GlBuffer& faces, FaceKind kind); // unless they are made since the last drop()
    void drop();
    void bind() const { indices.bind(GL_ELEMENT_ARRAY_BUFFER); }
    std::size_t bytes() const { return indices.bytes(); }

private:
    bool made = false;
    GlBuffer indices;
};

} // namespace kvo

#endif
