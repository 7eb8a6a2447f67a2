// Faces between the middles of pixels are left out, and no others.
#include "pixel_sieve.h"

#include <cmath>
#include <random>

#include "scene_fixture.h"

namespace {

using namespace kvo;

constexpr double noOrigin[3] = {0, 0, 0};

// One unit is one pixel; (0, 0) is the window's lower left corner.
SceneCamera pixelCamera(int width, int height)
{
    SceneCamera camera;
    camera.viewport[2] = width;
    camera.viewport[3] = height;
    std::fill(camera.modelview, camera.modelview + 16, 0.0);
    std::fill(camera.projection, camera.projection + 16, 0.0);
    for (int k = 0; k < 4; ++k) {
        camera.modelview[5 * k] = camera.projection[5 * k] = 1;
    }
    camera.projection[0] = 2.0 / width;
    camera.projection[5] = 2.0 / height;
    camera.modelview[12] = -width / 2.0;
    camera.modelview[13] = -height / 2.0;
    return camera;
}

// Faces as a geometry has them: every one with vertices of its own, in blocks.
struct Faces
{
    std::vector<SurfaceVertex> vertices;
    std::vector<std::uint32_t> indices;
    std::vector<SurfaceBlock> blocks;

    void add(double x, double y, double width, double height, FaceKind kind = Quads)
    {
        const double points[4][2] = {{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}};
        const std::uint32_t first = static_cast<std::uint32_t>(vertices.size());
        for (unsigned int k = 0; k < cornersOfFace(kind); ++k) {
            SurfaceVertex vertex = {};
            vertex.position[0] = static_cast<float>(points[k][0]);
            vertex.position[1] = static_cast<float>(points[k][1]);
            vertices.push_back(vertex);
        }
        if (kind == Quads) {
            indices.insert(indices.end(), {first, first + 1, first + 3, first + 1, first + 2, first + 3});
        } else {
            indices.insert(indices.end(), {first, first + 1, first + 2});
        }
    }
    // One block over all of them, a window of size x size pixels wide.
    void close(float size)
    {
        blocks.push_back({0, 0, static_cast<std::uint32_t>(indices.size()), {0, 0, 0}, {size, size, 0}});
    }
    std::vector<std::uint32_t> onPixels(const WindowMap& map, FaceKind kind = Quads) const
    {
        std::vector<const SurfaceBlock*> list;
        for (const SurfaceBlock& block : blocks) {
            list.push_back(&block);
        }
        std::vector<std::uint32_t> all;
        for (const auto& piece : facesOnPixels(vertices.data(), indices.data(), kind, list, map)) {
            all.insert(all.end(), piece.begin(), piece.end());
        }
        return all;
    }
};

WindowMap mapOf(int size)
{
    const double reach[3] = {double(size), double(size), 0};
    return WindowMap(pixelCamera(size, size), noOrigin, reach);
}

} // namespace

TEST(PixelSieve, OnlyFacesThatMayHoldTheMiddleOfAPixelAreLeft)
{
    Faces faces;
    faces.add(3.6, 3.6, 0.8, 0.8);   // between four middles
    faces.add(3.4, 3.4, 0.2, 0.2);   // about one
    faces.add(3.6, 3.4, 0.8, 0.2);   // on a line of them, between two
    faces.add(3.51, 3.49, 0.1, 0.1); // so near that single precision decides
    faces.add(1.6, 1.6, 2, 0.8);     // wide, between two lines
    for (int k = 0; k < 60; ++k) {
        faces.add(5.6, 5.6, 0.1, 0.1); // many, that the block is dense
    }
    faces.close(8);
    const WindowMap map = mapOf(8);
    ASSERT_TRUE(map.usable);
    EXPECT_EQ(faces.onPixels(map), (std::vector<std::uint32_t>{4, 5, 7, 5, 6, 7, 12, 13, 15, 13, 14, 15}));
}

TEST(PixelSieve, TrianglesAndOrder)
{
    Faces faces;
    for (int k = 0; k < 64; ++k) {
        faces.add(k % 8 + (k % 3 ? 0.6 : 0.4), k / 8 + 0.4, 0.2, 0.2, Triangles);
    }
    faces.close(8);
    std::vector<std::uint32_t> wanted;
    for (std::uint32_t k = 0; k < 64; k += 3) {
        wanted.insert(wanted.end(), {3 * k, 3 * k + 1, 3 * k + 2});
    }
    EXPECT_EQ(faces.onPixels(mapOf(8), Triangles), wanted);
}

TEST(PixelSieve, BlocksWithSeveralPixelsAFaceAreKept)
{
    Faces faces;
    faces.add(3.6, 3.6, 0.8, 0.8);
    faces.close(8);
    EXPECT_EQ(faces.onPixels(mapOf(8)).size(), 6u);
}

TEST(PixelSieve, NoFaceThatHoldsAMiddleIsLost)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(0, 100), size(0, 0.9);
    Faces faces;
    for (int k = 0; k < 8000; ++k) {
        faces.add(place(random), place(random), size(random), size(random));
    }
    for (std::uint32_t first = 0; first < faces.indices.size(); first += 6 * facesPerBlock) {
        faces.blocks.push_back(
            {0, first, std::min<std::uint32_t>(6 * facesPerBlock, 48000 - first), {0, 0, 0}, {20, 20, 0}});
    }
    std::vector<char> kept(8000, 0);
    for (const std::uint32_t vertex : faces.onPixels(mapOf(100))) {
        kept[vertex / 4] = 1;
    }
    std::size_t lost = 0, needless = 0;
    for (std::size_t k = 0; k < 8000; ++k) {
        const float* low = faces.vertices[4 * k].position;
        const float* high = faces.vertices[4 * k + 2].position;
        const bool holds = std::floor(high[0] - 0.5) >= std::ceil(low[0] - 0.5) &&
                           std::floor(high[1] - 0.5) >= std::ceil(low[1] - 0.5);
        lost += holds && !kept[k];
        needless += !holds && kept[k];
    }
    EXPECT_EQ(lost, 0u);
    EXPECT_LT(needless, 800u) << "margins";
}

TEST(PixelSieve, OnlyParallelProjectionsThatSinglePrecisionCanHold)
{
    SceneCamera camera = pixelCamera(100, 100);
    const double reach[3] = {100, 100, 100}, far[3] = {1e7, 1e7, 0};
    EXPECT_TRUE(WindowMap(camera, noOrigin, reach).usable);
    EXPECT_FALSE(WindowMap(camera, noOrigin, far).usable);
    camera.projection[11] = -1;
    EXPECT_FALSE(WindowMap(camera, noOrigin, reach).usable);
}

TEST(PixelSieve, PaysForManyFacesInFewPixels)
{
    const WindowMap map = mapOf(100);
    SurfaceBlock dense = {0, 0, 6 * facesPerBlock, {0, 0, 0}, {10, 10, 0}};
    SurfaceBlock open = {0, 0, 6 * facesPerBlock, {0, 0, 0}, {90, 90, 0}};
    std::vector<const SurfaceBlock*> blocks(300, &dense);
    EXPECT_TRUE(sievePays(blocks, Quads, map));
    EXPECT_FALSE(sievePays(std::vector<const SurfaceBlock*>(100, &dense), Quads, map)) << "too few";
    blocks.insert(blocks.end(), 400, &open);
    EXPECT_FALSE(sievePays(blocks, Quads, map)) << "most are large";
}
