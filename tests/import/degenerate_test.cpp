// Collapsed hexahedra: whatever face or edges collapse, the shape has the volume that is left, and the right sign.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "degenerate.h"

namespace {

using Point = std::array<double, 3>;

// Node k of the unit cube, in the order of a hexahedron.
Point cubeNode(std::int64_t k)
{
    static const Point nodes[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                  {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
    return nodes[k];
}

// Triangles of the surface, seen from outside counter-clockwise.
std::vector<std::array<int, 3>> surface(kvo::Shape shape)
{
    switch (shape) {
    case kvo::Shape::Tetra:
        return {{0, 2, 1}, {0, 1, 3}, {1, 2, 3}, {2, 0, 3}};
    case kvo::Shape::Pyramid:
        return {{0, 3, 2}, {0, 2, 1}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}};
    case kvo::Shape::Wedge:
        return {{0, 2, 1}, {3, 4, 5}, {0, 1, 4}, {0, 4, 3}, {1, 2, 5}, {1, 5, 4}, {2, 0, 3}, {2, 3, 5}};
    default:
        return {};
    }
}

double volume(kvo::Shape shape, const std::int64_t* corners)
{
    double sum = 0.0;
    for (const auto& triangle : surface(shape)) {
        const Point a = cubeNode(corners[triangle[0]]);
        const Point b = cubeNode(corners[triangle[1]]);
        const Point c = cubeNode(corners[triangle[2]]);
        sum += a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) +
               a[2] * (b[0] * c[1] - b[1] * c[0]);
    }
    return sum / 6.0;
}

const int faces[6][4] = {{0, 1, 2, 3}, {4, 5, 6, 7}, {0, 1, 5, 4}, {3, 2, 6, 7}, {0, 3, 7, 4}, {1, 2, 6, 5}};

std::array<std::int64_t, 8> cube()
{
    return {0, 1, 2, 3, 4, 5, 6, 7};
}

} // namespace

TEST(CollapsedHexa, AFaceThatIsAPointMakesAPyramid)
{
    for (const auto& face : faces) {
        auto nodes = cube();
        for (int k = 1; k < 4; ++k) {
            nodes[static_cast<std::size_t>(face[k])] = face[0];
        }
        std::int64_t corners[8];
        ASSERT_EQ(kvo::collapsedHexa(nodes.data(), corners), kvo::Shape::Pyramid) << face[0] << face[1] << face[2];
        EXPECT_NEAR(volume(kvo::Shape::Pyramid, corners), 1.0 / 3.0, 1e-12) << face[0] << face[1] << face[2];
    }
}

TEST(CollapsedHexa, TwoEdgesOfAFaceThatArePointsMakeAWedge)
{
    for (const auto& face : faces) {
        for (int turn = 0; turn < 2; ++turn) {
            auto nodes = cube();
            nodes[static_cast<std::size_t>(face[(1 + turn) % 4])] = face[turn];
            nodes[static_cast<std::size_t>(face[(2 + turn) % 4])] = face[(3 + turn) % 4];
            std::int64_t corners[8];
            ASSERT_EQ(kvo::collapsedHexa(nodes.data(), corners), kvo::Shape::Wedge) << face[0] << face[1] << turn;
            EXPECT_NEAR(volume(kvo::Shape::Wedge, corners), 0.5, 1e-12) << face[0] << face[1] << turn;
        }
    }
}

TEST(CollapsedHexa, TetrahedraOfBothConventions)
{
    std::int64_t corners[8];
    const std::int64_t first[] = {0, 1, 3, 4, 4, 4, 4, 4};
    ASSERT_EQ(kvo::collapsedHexa(first, corners), kvo::Shape::Tetra);
    EXPECT_NEAR(volume(kvo::Shape::Tetra, corners), 1.0 / 6.0, 1e-12);
    const std::int64_t second[] = {0, 1, 3, 3, 4, 4, 4, 4};
    ASSERT_EQ(kvo::collapsedHexa(second, corners), kvo::Shape::Tetra);
    EXPECT_NEAR(volume(kvo::Shape::Tetra, corners), 1.0 / 6.0, 1e-12);
}

TEST(CollapsedHexa, WhatHasNoNameStaysAHexahedron)
{
    std::int64_t corners[8];
    const auto whole = cube();
    EXPECT_EQ(kvo::collapsedHexa(whole.data(), corners), kvo::Shape::Hexa);
    const std::int64_t oneEdge[] = {0, 0, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(kvo::collapsedHexa(oneEdge, corners), kvo::Shape::Hexa);
    EXPECT_TRUE(std::equal(oneEdge, oneEdge + 8, corners));
    const std::int64_t twist[] = {0, 0, 2, 3, 4, 5, 6, 6};
    EXPECT_EQ(kvo::collapsedHexa(twist, corners), kvo::Shape::Hexa) << "two edges of no common face";
    const std::int64_t point[] = {1, 1, 1, 1, 1, 1, 1, 1};
    EXPECT_EQ(kvo::collapsedHexa(point, corners), kvo::Shape::Hexa);
}
