// A coarser surface for frames that must be quick: the faces' vertices moved together in the cells of a grid.
#ifndef KVO_SCENE_COARSE_H
#define KVO_SCENE_COARSE_H

#include <cstdint>
#include <vector>

#include "edge_indices.h"
#include "gl_objects.h"
#include "scene_geometry.h"
#include "surface_mesh.h"

namespace kvo {

// Of all vertices of a part in one cell, one stands for all; faces that keep three different ones stay, as triangles.
// blocks: of the mesh's faces; the result's blocks lie where they lay. indices: of the mesh's vertices.
struct CoarseMesh
{
    std::vector<std::uint32_t> indices; // 3 a triangle
    std::vector<SurfaceBlock> blocks;
};

// Grid cells are cubes of that size, in model units. Only vertices, indices and blocks of the mesh are read.
CoarseMesh coarsen(const SurfaceMesh& mesh, float cellSize);

class CoarseSurface
{
public:
    // Makes a surface of at most about `triangles` triangles from the geometry's buffers, unless the one that is there
    // has between a third and all of that. forget() first when the geometry has changed.
    void build(const SceneGeometry& geometry, std::size_t triangles);
    void forget() { made = false; }

    const std::vector<SurfaceBlock>& blocks() const { return coarseBlocks; }
    void bindIndices() const { indices.bind(GL_ELEMENT_ARRAY_BUFFER); }
    void makeEdges() { edges.make(indices, Triangles); } // before they are bound
    void bindEdges() const { edges.bind(); }
    std::size_t triangleCount() const { return triangleNumber; }

private:
    bool made = false;
    std::size_t triangleNumber = 0;
    std::vector<SurfaceBlock> coarseBlocks;
    GlBuffer indices;
    EdgeIndices edges;
};

} // namespace kvo

#endif
