// Distances, angles, circles, lengths, areas, volumes and centres.
#include "toolstest.h"
#include <kvo/measure.h>

namespace {

using namespace kvo;

void expectPlace(const Vector3& place, double x, double y, double z)
{
    EXPECT_NEAR(place.x, x, 1e-6);
    EXPECT_NEAR(place.y, y, 1e-6);
    EXPECT_NEAR(place.z, z, 1e-6);
}

TEST(Measure, NodesOfThePartHaveAPlace)
{
    TestPart part(quadPart(2, 3));
    Vector3 place = {9, 9, 9};
    EXPECT_FALSE(nodePlace(part, 4, place));
    expectPlace(place, 9, 9, 9);
    EXPECT_TRUE(nodePlace(part, 2, place));
    expectPlace(place, 3, 4, 0);
}

TEST(Measure, DistanceWithItsComponents)
{
    const Distance d = distanceOf({1, 2, 3}, {4, -2, 15});
    EXPECT_EQ(d.length, 13);
    EXPECT_EQ(d.dx, 3);
    EXPECT_EQ(d.dy, -4);
    EXPECT_EQ(d.dz, 12);
    EXPECT_EQ(distanceOf({1, 1, 1}, {1, 1, 1}).length, 0);
}

TEST(Measure, FarFromTheOriginDistancesKeepTheirDigits)
{
    EXPECT_EQ(distanceOf({1e7, 1e7, 1e7}, {1e7 + 1, 1e7, 1e7}).length, 1);
}

TEST(Measure, AngleAtTheMiddle)
{
    EXPECT_NEAR(angleOf({2, 0, 0}, {0, 0, 0}, {0, 5, 0}), 90, 1e-12);
    EXPECT_NEAR(angleOf({1, 0, 0}, {0, 0, 0}, {1, 1, 0}), 45, 1e-12);
    EXPECT_NEAR(angleOf({1, 0, 0}, {0, 0, 0}, {-3, 0, 0}), 180, 1e-12);
    EXPECT_NEAR(angleOf({1, 0, 0}, {0, 0, 0}, {1, 1e-9, 0}), 1e-9 * 180 / M_PI, 1e-20) << "small angles are exact";
    EXPECT_EQ(angleOf({0, 0, 0}, {0, 0, 0}, {1, 0, 0}), 0) << "an end on the middle";
}

TEST(Measure, CircleThroughThreePoints)
{
    Circle circle;
    ASSERT_TRUE(circleThrough({3, 0, 2}, {-1, 0, 2}, {1, 2, 2}, circle));
    EXPECT_NEAR(circle.radius, 2, 1e-12);
    expectPlace(circle.centre, 1, 0, 2);
    EXPECT_NEAR(std::fabs(circle.axis.z), 1, 1e-12);
}

TEST(Measure, CircleOfATriangleOfAnyPosition)
{
    // Sides 3, 4, 5: the radius is half the longest.
    TestPart part(SHELL, 4, {0, 0, 0, 3, 0, 0, 0, 4, 0}, {0, 1, 2, 2});
    transform(part.part, 0.7, 2, 10);
    Vector3 p[3];
    for (unsigned int k = 0; k < 3; ++k) {
        nodePlace(part, k, p[k]);
    }
    Circle circle;
    ASSERT_TRUE(circleThrough(p[0], p[1], p[2], circle));
    EXPECT_NEAR(circle.radius, 5, 1e-5);
    for (const Vector3& point : p) {
        EXPECT_NEAR(distanceOf(circle.centre, point).length, circle.radius, 1e-9);
    }
}

TEST(Measure, PointsOnALineHaveNoCircle)
{
    Circle circle;
    circle.radius = 77;
    EXPECT_FALSE(circleThrough({0, 0, 0}, {1, 1, 1}, {3, 3, 3}, circle));
    EXPECT_FALSE(circleThrough({0, 0, 0}, {0, 0, 0}, {3, 3, 3}, circle));
    EXPECT_FALSE(circleThrough({1, 2, 3}, {0, 0, 0}, {1, 2, 3}, circle));
    EXPECT_FALSE(circleThrough({1, 2, 3}, {1, 2, 3}, {1, 2, 3}, circle));
    EXPECT_EQ(circle.radius, 77);
}

TEST(Measure, Line)
{
    const TestPart part(BEAM, 3, {0, 0, 0, 0, 3, 4}, {0, 1, noNode});
    const ElementMeasure m = measureElement(part, 0);
    EXPECT_EQ(m.length, 5);
    EXPECT_EQ(m.area, 0);
    EXPECT_EQ(m.volume, 0);
    expectPlace(m.centroid, 0, 1.5, 2);
}

TEST(Measure, Shells)
{
    const ElementMeasure quad = measureElement(TestPart(quadPart(1, 2)), 0);
    EXPECT_EQ(quad.length, 4);
    EXPECT_EQ(quad.area, 1);
    EXPECT_EQ(quad.volume, 0);
    expectPlace(quad.centroid, 1.5, 2.5, 0);
    const ElementMeasure triangle = measureElement(TestPart(trianglePart()), 0);
    EXPECT_EQ(triangle.area, 0.5);
    EXPECT_NEAR(triangle.length, 2 + std::sqrt(2.0), 1e-12);
    expectPlace(triangle.centroid, 1.0 / 3, 1.0 / 3, 0);
}

TEST(Measure, FlatQuadrilateralsAreExactFromEveryCorner)
{
    // A trapezium of area 1.5 x 1 with its centre of gravity at (7/9, 4/9), and a dart of area 1 with the centre of the
    // whole triangle (area 2, at 2/3 2/3) less the missing one (area 1, at 5/6 5/6).
    for (unsigned int start = 0; start < 4; ++start) {
        const Indices slots = {start, (start + 1) % 4, (start + 2) % 4, (start + 3) % 4};
        const ElementMeasure trapezium =
            measureElement(TestPart(SHELL, 4, {0, 0, 0, 2, 0, 0, 1, 1, 0, 0, 1, 0}, slots), 0);
        EXPECT_NEAR(trapezium.area, 1.5, 1e-12);
        expectPlace(trapezium.centroid, 7.0 / 9, 4.0 / 9, 0);
        const ElementMeasure dart =
            measureElement(TestPart(SHELL, 4, {0, 0, 0, 2, 0, 0, 0.5f, 0.5f, 0, 0, 2, 0}, slots), 0);
        EXPECT_NEAR(dart.area, 1, 1e-12);
        expectPlace(dart.centroid, 0.5, 0.5, 0);
    }
}

TEST(Measure, Solids)
{
    struct Row
    {
        PartInfoStr part;
        double volume, area, x, y, z;
    };
    const double side = std::sqrt(1.25) / 2; // of the pyramid: half its slanted height
    const Row rows[] = {{hexaPart(), 1, 6, 0.5, 0.5, 0.5},
                        {tetraPart(), 1.0 / 6, 1.5 + std::sqrt(3.0) / 2, 0.25, 0.25, 0.25},
                        {pyramidPart(), 1.0 / 3, 1 + 4 * side, 0.5, 0.5, 0.25},
                        {pentaPart(), 0.5, 1 + 2 + std::sqrt(2.0), 1.0 / 3, 1.0 / 3, 0.5}};
    for (const Row& row : rows) {
        const TestPart part(row.part);
        const ElementMeasure m = measureElement(part, 0);
        EXPECT_NEAR(m.volume, row.volume, 1e-12);
        EXPECT_NEAR(m.area, row.area, 1e-12);
        expectPlace(m.centroid, row.x, row.y, row.z);
    }
}

TEST(Measure, CollapsedHexahedronLosesTheCutOffPiece)
{
    // The volume is linear in the place of one corner. Moving all four corners of a face onto the opposite ones takes
    // the whole cube away; moving one of them takes a quarter.
    const ElementMeasure m = measureElement(TestPart(collapsedPart()), 0);
    EXPECT_NEAR(m.volume, 0.75, 1e-12);
}

TEST(Measure, VolumeIsTheIntegralOfTheJacobian)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<float> offset(-0.25f, 0.25f);
    for (int round = 0; round < 50; ++round) {
        TestPart part(hexaPart());
        float* p = part.part.partNodes.nodeValues;
        for (int k = 0; k < 24; ++k) {
            p[k] += offset(random);
        }
        // Two Gauss points an axis are exact for the determinant of the trilinear interpolation.
        static const int signs[8][3] = {{-1, -1, -1}, {1, -1, -1}, {1, 1, -1}, {-1, 1, -1},
                                        {-1, -1, 1},  {1, -1, 1},  {1, 1, 1},  {-1, 1, 1}};
        double volume = 0;
        for (const auto& g : signs) {
            double d[3][3] = {};
            for (int n = 0; n < 8; ++n) {
                for (int axis = 0; axis < 3; ++axis) {
                    double weight = 0.125 * signs[n][axis];
                    for (int other = 0; other < 3; ++other) {
                        weight *= other == axis ? 1 : 1 + signs[n][other] * g[other] / std::sqrt(3.0);
                    }
                    for (int x = 0; x < 3; ++x) {
                        d[axis][x] += weight * p[3 * n + x];
                    }
                }
            }
            volume += d[0][0] * (d[1][1] * d[2][2] - d[1][2] * d[2][1]) -
                      d[0][1] * (d[1][0] * d[2][2] - d[1][2] * d[2][0]) +
                      d[0][2] * (d[1][0] * d[2][1] - d[1][1] * d[2][0]);
        }
        EXPECT_NEAR(measureElement(part, 0).volume, volume, 1e-12);
    }
}

TEST(Measure, InsideOutSolidsHaveNegativeVolumeAndTheSameCentre)
{
    for (const PartInfoStr& built : {hexaPart(), tetraPart()}) {
        const TestPart part(built);
        for (unsigned int k = 0; k < part.part.partNodes.numNodes; ++k) {
            part.part.partNodes.nodeValues[3 * k] *= -1;
        }
        const ElementMeasure m = measureElement(part, 0);
        EXPECT_LT(m.volume, 0);
        EXPECT_LT(m.centroid.x, -0.2);
        EXPECT_GT(m.centroid.y, 0.2);
    }
}

TEST(Measure, LargeCoordinatesDoNotCostTheVolume)
{
    TestPart part(hexaPart());
    for (unsigned int k = 0; k < 24; ++k) {
        part.part.partNodes.nodeValues[k] += 1048576; // 1 is 8 units in the last place
    }
    const ElementMeasure m = measureElement(part, 0);
    EXPECT_NEAR(m.volume, 1, 1e-12);
    expectPlace(m.centroid, 1048576.5, 1048576.5, 1048576.5);
}

TEST(Measure, NothingIsMeasuredOfWhatCannotBeDrawn)
{
    TestPart part(hexaPart());
    EXPECT_EQ(measureElement(part, 1).area, 0) << "outside the part";
    part.part.partElements.elmIndices[3] = 8;
    const ElementMeasure m = measureElement(part, 0);
    EXPECT_EQ(m.length + m.area + m.volume, 0);
    expectPlace(m.centroid, 0, 0, 0);
}

TEST(Measure, ElementsWithoutAreaHaveTheMeanOfTheirCorners)
{
    const TestPart part(SHELL, 4, {0, 0, 0, 1, 0, 0, 5, 0, 0}, {0, 1, 2, 2});
    const ElementMeasure m = measureElement(part, 0);
    EXPECT_EQ(m.area, 0);
    expectPlace(m.centroid, 2, 0, 0);
}

TEST(Measure, SumsOfAPart)
{
    const TestPart part(gridPart(4, 3));
    const ElementMeasure all = measureElements(part, nullptr);
    EXPECT_NEAR(all.area, 12, 1e-12);
    expectPlace(all.centroid, 2, 1.5, 0);
    std::vector<std::uint8_t> marks(12, 0);
    marks[3] = marks[11] = 1; // last column, first and last row
    const ElementMeasure some = measureElements(part, marks.data());
    EXPECT_NEAR(some.area, 2, 1e-12);
    expectPlace(some.centroid, 3.5, 1.5, 0);
    marks[3] = marks[11] = 0;
    EXPECT_EQ(measureElements(part, marks.data()).area, 0);
    const ElementMeasure large = measureElements(TestPart(gridPart(100, 90)), nullptr);
    EXPECT_NEAR(large.area, 9000, 1e-6);
    EXPECT_NEAR(large.length, 36000, 1e-6);
    expectPlace(large.centroid, 50, 45, 0);
    const TestPart block(blockPart(3));
    EXPECT_NEAR(measureElements(block, nullptr).volume, 27, 1e-9);
}

TEST(Measure, FaceAreas)
{
    TestPart brick(hexaPart());
    for (unsigned int k = 0; k < 8; ++k) {
        brick.part.partNodes.nodeValues[3 * k] *= 3; // 3 x 1 x 1
    }
    const double areas[] = {3, 1, 3, 1, 3, 3}; // bottom, +x, top, -x, +y, -y
    for (unsigned int face = 0; face < 6; ++face) {
        EXPECT_EQ(faceArea(brick, 0, face), areas[face]) << face;
    }
    EXPECT_EQ(faceArea(brick, 0, 6), 0);
    EXPECT_EQ(faceArea(brick, 1, 0), 0);
    EXPECT_EQ(faceArea(TestPart(trianglePart()), 0, 0), 0.5);
    EXPECT_EQ(faceArea(TestPart(trianglePart()), 0, 1), 0);
    EXPECT_EQ(faceArea(TestPart(beamPart()), 0, 0), 0);
}

} // namespace
