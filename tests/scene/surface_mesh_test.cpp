// The vertex and index arrays: every face is there with its own last vertex, blocks are ranges with boxes.
#include <set>

#include <gtest/gtest.h>

#include "edge_indices.h"
#include "scene_models.h"
#include "surface_mesh.h"

namespace {

using namespace kvo;

SurfaceMesh meshOf(const PartInfoStr& part, bool smooth)
{
    SurfaceMesh mesh;
    const PartSurface surface = findSurface(part);
    addSurface(part, 5, 1000, surface, FaceNormals(part, surface, {NormalSource::Geometry, smooth, 30}), mesh);
    return mesh;
}

// The element of a face as flat attributes see it, and its corners as positions.
void expectFacesOf(const PartInfoStr& part, const SurfaceMesh& mesh)
{
    std::multiset<std::uint32_t> elements;
    for (FaceKind kind : {Triangles, Quads}) {
        const unsigned int corners = cornersOfFace(kind);
        for (std::size_t first = 0; first < mesh.indices[kind].size(); first += indicesOfFace(kind)) {
            const std::uint32_t* face = &mesh.indices[kind][first];
            ASSERT_EQ(face[2], face[indicesOfFace(kind) - 1]) << "both triangles end with the face's last vertex";
            const SurfaceVertex& last = mesh.vertices[face[2]];
            ASSERT_EQ(last.part, 5u);
            ASSERT_GE(last.element, 1000u);
            const std::uint32_t element = last.element - 1000;
            elements.insert(element);
            std::multiset<std::vector<float>> drawn, wanted;
            for (unsigned int k = 0; k < corners; ++k) {
                const float* p = mesh.vertices[face[placeOfCorner(kind, k)]].position;
                const float* q = positionOf(part, slotsOf(part, element)[k]);
                drawn.insert({p[0], p[1], p[2]});
                wanted.insert({q[0], q[1], q[2]});
            }
            ASSERT_EQ(drawn, wanted) << "element " << element;
        }
    }
    EXPECT_EQ(elements.size(), kvo::PartMesh(part).elementCount);
    EXPECT_EQ(std::set<std::uint32_t>(elements.begin(), elements.end()).size(), kvo::PartMesh(part).elementCount);
}

TEST(SurfaceMesh, EveryFaceHasItsOwnLastVertex)
{
    for (bool mixed : {false, true}) {
        for (bool smooth : {false, true}) {
            PartInfoStr part = sheetPart(40, mixed);
            expectFacesOf(part, meshOf(part, smooth));
            releasePart(part);
        }
    }
}

TEST(SurfaceMesh, AboutOneVertexAFace)
{
    PartInfoStr part = sheetPart(200, false);
    for (bool smooth : {false, true}) {
        EXPECT_LT(meshOf(part, smooth).vertices.size(), 1.06 * 200 * 200) << smooth;
    }
    releasePart(part);
}

TEST(SurfaceMesh, QuadrilateralsKeepTheirDiagonal)
{
    PartInfoStr part = quadPart();
    const SurfaceMesh mesh = meshOf(part, false);
    const unsigned int corners[] = {0, 1, 3, 1, 2, 3};
    ASSERT_EQ(mesh.indices[Quads].size(), 6u);
    for (unsigned int k = 0; k < 6; ++k) {
        const float* position = mesh.vertices[mesh.indices[Quads][k]].position;
        EXPECT_EQ(position[0], positionOf(part, corners[k])[0]);
        EXPECT_EQ(position[1], positionOf(part, corners[k])[1]);
    }
    releasePart(part);
}

TEST(SurfaceMesh, EdgesAreThoseOfEveryFaceWithoutTheDiagonals)
{
    const std::uint32_t quads[] = {4, 5, 7, 5, 6, 7, 0, 1, 3, 1, 2, 3}, triangle[] = {2, 0, 1};
    EXPECT_EQ(edgesOf(quads, 12, Quads), (std::vector<std::uint32_t>{4, 5, 5, 6, 6, 7, 7, 4, 0, 1, 1, 2, 2, 3, 3, 0}));
    EXPECT_EQ(edgesOf(triangle, 3, Triangles), (std::vector<std::uint32_t>{2, 0, 0, 1, 1, 2}));
    EXPECT_EQ(edgeIndices(Quads, 6), 8u) << "where the second face's edges begin";
}

TEST(SurfaceMesh, BlocksCoverTheIndicesAndBoundTheirFaces)
{
    PartInfoStr part = sheetPart(150, true);
    const SurfaceMesh mesh = meshOf(part, false);
    for (FaceKind kind : {Triangles, Quads}) {
        std::uint32_t next = 0;
        float area = 0;
        for (const SurfaceBlock& block : mesh.blocks[kind]) {
            EXPECT_EQ(block.firstIndex, next);
            EXPECT_LE(block.indexCount, facesPerBlock * indicesOfFace(kind));
            next += block.indexCount;
            for (std::uint32_t k = 0; k < block.indexCount; ++k) {
                const float* p = mesh.vertices[mesh.indices[kind][block.firstIndex + k]].position;
                for (int axis = 0; axis < 3; ++axis) {
                    EXPECT_GE(p[axis], block.low[axis]);
                    EXPECT_LE(p[axis], block.high[axis]);
                }
            }
            area += (block.high[0] - block.low[0]) * (block.high[1] - block.low[1]);
        }
        EXPECT_EQ(next, mesh.indices[kind].size());
        EXPECT_LT(area, 3 * 150 * 150) << "blocks lie together";
    }
    releasePart(part);
}

TEST(SurfaceMesh, SmoothCornersOfASharpEdgeAreVerticesOfTheirOwn)
{
    PartInfoStr part = hexaPart();
    EXPECT_EQ(meshOf(part, true).vertices.size(), 24u);
    EXPECT_LT(meshOf(part, false).vertices.size(), 15u);
    releasePart(part);
}

TEST(SurfaceMesh, PositionsAreRelativeToTheOrigin)
{
    PartInfoStr part = quadPart(16777216, 0);
    SurfaceMesh mesh;
    mesh.origin[0] = 16777210;
    const PartSurface surface = findSurface(part);
    addSurface(part, 0, 0, surface, FaceNormals(part, surface, {}), mesh);
    EXPECT_EQ(mesh.vertices[mesh.indices[Quads][0]].position[0], 6);
    releasePart(part);
}

} // namespace
