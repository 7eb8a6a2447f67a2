// Surfaces for quick frames.
#include "coarse.h"

#include <cmath>

#include <gtest/gtest.h>

#include "scene_models.h"

namespace {

using namespace kvo;

SurfaceMesh meshOf(const std::vector<PartInfoStr>& parts)
{
    SurfaceMesh mesh;
    std::uint32_t number = 0;
    for (const PartInfoStr& part : parts) {
        const PartSurface surface = findSurface(part);
        addSurface(part, number++, 0, surface, FaceNormals(part, surface, {}), mesh);
    }
    return mesh;
}

double areaOf(const SurfaceMesh& mesh, const CoarseMesh& coarse)
{
    double out = 0;
    for (std::size_t k = 0; k < coarse.indices.size(); k += 3) {
        const float* a = mesh.vertices[coarse.indices[k]].position;
        const float* b = mesh.vertices[coarse.indices[k + 1]].position;
        const float* c = mesh.vertices[coarse.indices[k + 2]].position;
        out += std::fabs((b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0])) / 2;
    }
    return out;
}

TEST(Coarse, ASheetStaysCoveredWithFarFewerTriangles)
{
    PartInfoStr part = sheetPart(120, true);
    const SurfaceMesh mesh = meshOf({part});
    const CoarseMesh coarse = coarsen(mesh, 6);
    EXPECT_LT(coarse.indices.size() / 3, 1500u);
    EXPECT_GT(coarse.indices.size() / 3, 300u);
    EXPECT_NEAR(areaOf(mesh, coarse), 120 * 120, 0.12 * 120 * 120);
    releasePart(part);
}

TEST(Coarse, CellsSmallerThanFacesKeepThemAll)
{
    PartInfoStr part = sheetPart(10);
    const SurfaceMesh mesh = meshOf({part});
    const CoarseMesh coarse = coarsen(mesh, 0.5f);
    EXPECT_EQ(coarse.indices.size(), 10u * 10 * 6);
    EXPECT_FLOAT_EQ(static_cast<float>(areaOf(mesh, coarse)), 100);
    releasePart(part);
}

TEST(Coarse, PartsStayApart)
{
    PartInfoStr parts[] = {sheetPart(40), sheetPart(40, true), blockPart(6)};
    const SurfaceMesh mesh = meshOf({parts[0], parts[1], parts[2]});
    const CoarseMesh coarse = coarsen(mesh, 4);
    std::uint32_t next = 0;
    for (const SurfaceBlock& block : coarse.blocks) {
        EXPECT_EQ(block.firstIndex, next);
        next += block.indexCount;
        for (std::uint32_t k = 0; k < block.indexCount; ++k) {
            const SurfaceVertex& vertex = mesh.vertices[coarse.indices[block.firstIndex + k]];
            EXPECT_EQ(vertex.part, block.part);
            for (int axis = 0; axis < 3; ++axis) {
                EXPECT_GE(vertex.position[axis], block.low[axis]);
                EXPECT_LE(vertex.position[axis], block.high[axis]);
            }
        }
    }
    EXPECT_EQ(next, coarse.indices.size());
    for (PartInfoStr& part : parts) {
        releasePart(part);
    }
}

} // namespace
