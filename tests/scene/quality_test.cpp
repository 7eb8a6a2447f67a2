// Element quality: exact values of known shapes, what degenerate elements give, independence of place and size.
#include <limits>

#include "toolstest.h"
#include <kvo/quality.h>

namespace {

using namespace kvo;

const Quality all[] = {Quality::AspectRatio, Quality::EdgeRatio, Quality::Skew,          Quality::Warpage,
                       Quality::MinAngle,    Quality::MaxAngle,  Quality::ScaledJacobian};
const float root2 = std::sqrt(2.0f), root3 = std::sqrt(3.0f);

void expectAll(const kvo::PartMesh& part, const Floats& expected, const char* what)
{
    ASSERT_EQ(expected.size(), qualityCount);
    for (unsigned int k = 0; k < qualityCount; ++k) {
        EXPECT_NEAR(elementQuality(part, all[k], 0u), expected[k], 2e-4f) << what << " " << qualityInfo(all[k]).name;
    }
}

Floats allOf(const kvo::PartMesh& part, unsigned int element = 0)
{
    Floats values;
    for (Quality quality : all) {
        values.push_back(elementQuality(part, quality, element));
    }
    return values;
}

PartInfoStr shell(const Floats& nodes)
{
    return makePart(SHELL, 4, nodes, nodes.size() == 9 ? Indices{0, 1, 2, 2} : Indices{0, 1, 2, 3});
}

TEST(Quality, RegularShapesAreBest)
{
    // aspect, edge ratio, skew, warpage, smallest and largest angle, scaled Jacobian
    const TestPart triangle(shell({0, 0, 0, 1, 0, 0, 0.5f, root3 / 2, 0}));
    expectAll(triangle, {1, 1, 0, 0, 60, 60, 1}, "triangle");
    expectAll(TestPart(quadPart()), {1, 1, 0, 0, 90, 90, 1}, "square");
    const TestPart tetra(SOLID, 10, {1, 1, 1, 1, -1, -1, -1, -1, 1, -1, 1, -1}, {0, 2, 1, 3, 0, 0, 0, 0, 0, 0});
    expectAll(tetra, {1, 1, 0, 0, 60, 60, elementQuality(tetra, Quality::ScaledJacobian, 0u)}, "tetrahedron");
    EXPECT_NEAR(std::fabs(elementQuality(tetra, Quality::ScaledJacobian, 0u)), 1, 1e-6);
    expectAll(TestPart(pyramidPart(1 / root2)), {1, 1, 0, 0, 60, 90, 1}, "pyramid");
    const TestPart wedge(SOLID, 8, {0, 0, 0, 0.5f, root3 / 2, 0, 0.5f, root3 / 2, 1, 0, 0, 1, 1, 0, 0, 1, 0, 1},
                         {0, 1, 2, 3, 4, 4, 5, 5});
    expectAll(wedge, {1, 1, 0, 0, 60, 90, 1}, "wedge");
    const TestPart turned(SOLID, 8, {0, 0, 0, 0.5f, root3 / 2, 0, 0.5f, root3 / 2, 1, 0, 0, 1, 1, 0, 0, 1, 0, 1},
                          {3, 2, 1, 0, 5, 5, 4, 4});
    expectAll(turned, {1, 1, 0, 0, 60, 90, -1}, "wedge, inside out");
    expectAll(TestPart(hexaPart()), {1, 1, 0, 0, 90, 90, 1}, "cube");
}

TEST(Quality, RightTriangle)
{
    // longest side x perimeter / (4 sqrt 3 area) = sqrt 2 (2 + sqrt 2) / (2 sqrt 3); sine of the sharpest angle 1 /
    // sqrt 2
    expectAll(TestPart(trianglePart()), {root2 * (2 + root2) / (2 * root3), root2, 0.25f, 0, 45, 90, 2 / root3 / root2},
              "right triangle");
}

TEST(Quality, Rectangle)
{
    expectAll(TestPart(shell({0, 0, 0, 2, 0, 0, 2, 1, 0, 0, 1, 0})), {1.5f, 2, 0, 0, 90, 90, 1}, "1 x 2");
}

TEST(Quality, Parallelogram)
{
    // Sides 1 at 60 degrees: longest x perimeter / (4 area) = 4 / (4 sin 60)
    expectAll(TestPart(shell({0, 0, 0, 1, 0, 0, 1.5f, root3 / 2, 0, 0.5f, root3 / 2, 0})),
              {2 / root3, 1, 1.0f / 3, 0, 60, 120, root3 / 2}, "rhombus");
}

TEST(Quality, WarpedSquareHasTheAngleBetweenItsTriangles)
{
    // Unit square with its last corner lifted by h. Cut from the first to the third corner, normals (0, 0, 1) and
    // (h, -h, 1); cut from the second to the fourth, (0, -h, 1) and (h, 0, 1), which fold more.
    const float h = 0.5f;
    const TestPart part(shell({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, h}));
    EXPECT_NEAR(elementQuality(part, Quality::Warpage, 0u), std::acos(1 / (1 + h * h)) * 180 / M_PI, 1e-3);
    // Raised opposite corners: both splits fold by the same angle, 90 degrees for h with normals (h,-h,1), (-h,h,1) at
    // h = sqrt(1/2).
    const TestPart saddle(shell({0, 0, 0, 1, 0, std::sqrt(0.5f), 1, 1, 0, 0, 1, std::sqrt(0.5f)}));
    EXPECT_NEAR(elementQuality(saddle, Quality::Warpage, 0u), 90, 1e-3);
    const TestPart flat(shell({0, 0, 0, 3, 0, 0, 2, 1, 0, 0, 1, 0}));
    EXPECT_NEAR(elementQuality(flat, Quality::Warpage, 0u), 0, 1e-3);
}

TEST(Quality, WarpageOfASolidIsThatOfItsWorstFace)
{
    TestPart part(hexaPart());
    part.part.partNodes.nodeValues[3 * 6 + 2] = 1.5f; // one upper corner lifted
    EXPECT_NEAR(elementQuality(part, Quality::Warpage, 0u), std::acos(0.8) * 180 / M_PI, 1e-3);
}

TEST(Quality, ReentrantQuadrilateralIsNegative)
{
    const TestPart dart(shell({0, 0, 0, 2, 0, 0, 0.5f, 0.5f, 0, 0, 2, 0}));
    EXPECT_LT(elementQuality(dart, Quality::ScaledJacobian, 0u), 0);
    const TestPart bowTie(shell({0, 0, 0, 1, 1, 0, 1, 0, 0, 0, 1, 0}));
    EXPECT_LE(elementQuality(bowTie, Quality::ScaledJacobian, 0u), 0);
}

TEST(Quality, BrickHasItsEdgeRatio)
{
    TestPart part(hexaPart());
    for (unsigned int k = 0; k < 8; ++k) {
        part.part.partNodes.nodeValues[3 * k + 1] *= 4;
    }
    expectAll(part, {4, 4, 0, 0, 90, 90, 1}, "1 x 4 x 1");
}

TEST(Quality, CornerTetrahedron)
{
    // Corner of the unit cube: volume 1/6, surface 3/2 + sqrt(3)/2, inscribed radius 3 V / A = 1 / (3 + sqrt 3); three
    // edges of 1, three of sqrt 2; largest product of lengths at a corner 1 x sqrt 2 x sqrt 2.
    expectAll(TestPart(tetraPart()), {root2 * (3 + root3) / (2 * std::sqrt(6.0f)), root2, 0.25f, 0, 45, 90, root2 / 2},
              "tetrahedron");
}

TEST(Quality, ShearedCube)
{
    TestPart part(hexaPart());
    for (unsigned int k = 4; k < 8; ++k) {
        part.part.partNodes.nodeValues[3 * k] += 1; // 45 degrees
    }
    expectAll(part, {root2, root2, 0.5f, 0, 45, 135, 1 / root2}, "sheared cube");
}

TEST(Quality, InsideOutSolidsAreNegative)
{
    PartInfoStr parts[] = {hexaPart(), pyramidPart(), pentaPart(), tetraPart()};
    for (PartInfoStr& part : parts) {
        const float before = elementQuality(part, Quality::ScaledJacobian, 0u);
        EXPECT_GT(before, 0);
        for (unsigned int k = 0; k < part.partNodes.numNodes; ++k) {
            part.partNodes.nodeValues[3 * k] *= -1; // mirrored
        }
        EXPECT_LE(elementQuality(part, Quality::ScaledJacobian, 0u), -before);
        releasePart(part);
    }
}

TEST(Quality, TwistedHexahedronSeenAtOneCorner)
{
    TestPart part(hexaPart());
    for (int axis = 0; axis < 3; ++axis) {
        part.part.partNodes.nodeValues[3 * 6 + axis] = -0.25f; // the far corner pushed through the near one
    }
    EXPECT_LT(elementQuality(part, Quality::ScaledJacobian, 0u), 0);
}

TEST(Quality, CollapsedHexahedronCountsTheCornersThatAreLeft)
{
    const TestPart part(collapsedPart());
    const float jacobian = elementQuality(part, Quality::ScaledJacobian, 0u);
    EXPECT_GT(jacobian, 0.3f);
    EXPECT_LE(jacobian, 1);
    EXPECT_NEAR(elementQuality(part, Quality::MinAngle, 0u), 45, 1e-4);
}

TEST(Quality, LinesAndUndrawableElementsHaveNone)
{
    TestPart beam(beamPart()), broken(quadPart());
    broken.part.partElements.elmIndices[2] = 4;
    for (Quality quality : all) {
        EXPECT_EQ(elementQuality(beam, quality, 0u), noQuality);
        EXPECT_EQ(elementQuality(broken, quality, 0u), noQuality);
        EXPECT_EQ(elementQuality(beam, quality, 1u), noQuality) << "outside the part";
    }
}

TEST(Quality, DegenerateShapesGiveTheWorstNumbers)
{
    const Floats needle = {worstRatio, worstRatio, 1, 0, 0, 180, 0};
    expectAll(TestPart(shell({1, 1, 1, 1, 1, 1, 1, 1, 1})), needle, "point triangle");
    expectAll(TestPart(shell({1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1})), needle, "point quadrilateral");
    expectAll(TestPart(shell({0, 0, 0, 1, 0, 0, 2, 0, 0})), {worstRatio, 2, 1, 0, 0, 180, 0}, "line triangle");
    const TestPart oneNode(SHELL, 4, {0, 0, 0, 1, 0, 0}, {0, 1, 0, 1});
    expectAll(oneNode, needle, "two nodes");
    expectAll(TestPart(SOLID, 8, Floats(24, 2.0f), {0, 1, 2, 3, 4, 5, 6, 7}), needle, "point hexahedron");
    const TestPart flat(SOLID, 8, {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0}, {0, 1, 2, 3, 3, 3, 3, 3});
    EXPECT_EQ(elementQuality(flat, Quality::AspectRatio, 0u), worstRatio) << "tetrahedron without volume";
    EXPECT_EQ(elementQuality(flat, Quality::ScaledJacobian, 0u), 0);
}

TEST(Quality, NoNumberIsNaNOrInfinite)
{
    std::mt19937 random(7);
    const float strange[] = {0,
                             1,
                             -1,
                             1e-38f,
                             1e38f,
                             std::numeric_limits<float>::infinity(),
                             std::numeric_limits<float>::quiet_NaN(),
                             std::numeric_limits<float>::denorm_min()};
    PartInfoStr parts[] = {hexaPart(), pyramidPart(),  pentaPart(),    tetraPart(),
                           quadPart(), trianglePart(), collapsedPart()};
    for (PartInfoStr& part : parts) {
        for (int round = 0; round < 2000; ++round) {
            for (unsigned int k = 0; k < 3 * part.partNodes.numNodes; ++k) {
                part.partNodes.nodeValues[k] = strange[random() % (round % 2 ? 8 : 4)];
            }
            for (Quality quality : all) {
                const QualityInfo& info = qualityInfo(quality);
                const float value = elementQuality(part, quality, 0u);
                const float low = quality == Quality::ScaledJacobian ? -1 : quality < Quality::Skew ? 0.999f : 0;
                ASSERT_TRUE(value >= low && value <= std::max({info.best, info.worst, 180.0f})) << info.name << value;
            }
        }
        releasePart(part);
    }
}

TEST(Quality, CoordinatesThatAreNoNumbersGiveTheWorstOfTheMeasure)
{
    TestPart part(hexaPart());
    part.part.partNodes.nodeValues[7] = std::numeric_limits<float>::quiet_NaN();
    for (Quality quality : all) {
        EXPECT_EQ(elementQuality(part, quality, 0u), qualityInfo(quality).worst);
    }
}

TEST(Quality, PlaceOrientationAndSizeDoNotMatter)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<float> offset(-0.2f, 0.2f);
    PartInfoStr parts[] = {hexaPart(), pyramidPart(),  pentaPart(),    tetraPart(),
                           quadPart(), trianglePart(), collapsedPart()};
    for (PartInfoStr& part : parts) {
        for (unsigned int k = 0; k < 3 * part.partNodes.numNodes; ++k) {
            part.partNodes.nodeValues[k] += offset(random);
        }
        const Floats before = allOf(part);
        for (double scale : {0.001, 1.0, 5000.0}) {
            transform(part, 0.3 + scale, scale, scale);
            const Floats after = allOf(part);
            for (unsigned int k = 0; k < qualityCount; ++k) {
                EXPECT_NEAR(after[k], before[k], 1e-3 + 1e-4 * before[k]) << qualityInfo(all[k]).name;
            }
            transform(part, 0, 1 / scale, 0);
        }
        releasePart(part);
    }
}

TEST(Quality, StartingCornerOfAShellDoesNotMatter)
{
    const TestPart a(shell({0, 0, 0, 3, 0, 0.5f, 2, 1, 0, 0, 1, 0.2f}));
    const TestPart b(SHELL, 4, {0, 0, 0, 3, 0, 0.5f, 2, 1, 0, 0, 1, 0.2f}, {2, 3, 0, 1});
    const TestPart c(SHELL, 4, {0, 0, 0, 3, 0, 0.5f, 2, 1, 0, 0, 1, 0.2f}, {3, 2, 1, 0});
    for (Quality quality : all) {
        EXPECT_NEAR(elementQuality(a, quality, 0u), elementQuality(b, quality, 0u), 1e-5);
        EXPECT_NEAR(elementQuality(a, quality, 0u), elementQuality(c, quality, 0u), 1e-5);
    }
}

TEST(Quality, WholePartGivesTheNumbersOfItsElements)
{
    TestPart part(gridPart(150, 100));
    for (unsigned int k = 0; k < 3 * part.part.partNodes.numNodes; ++k) {
        part.part.partNodes.nodeValues[k] += static_cast<float>(k * 7919 % 101) * 0.004f;
    }
    for (Quality quality : all) {
        Floats values(15001, -77);
        elementQuality(part, quality, values.data());
        for (unsigned int e = 0; e < 15000; ++e) {
            ASSERT_EQ(values[e], elementQuality(part, quality, e));
        }
        EXPECT_EQ(values[15000], -77) << "nothing past the elements";
    }
}

TEST(Quality, PartWithoutElementsWritesNothing)
{
    const TestPart part(SHELL, 4, {0, 0, 0}, {});
    float untouched = 5;
    elementQuality(part, Quality::Skew, &untouched);
    EXPECT_EQ(untouched, 5);
}

} // namespace
