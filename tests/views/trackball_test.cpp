// Quaternions of the trackball: a drag's rotation, composition, renormalisation and the rotation matrix.
#include "trackball.h"

#include <array>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "mtrans.h"

namespace {
using Quat = std::array<float, 4>;

const int period = 98; // compositions from one renormalisation to the next
const Quat identity = {0, 0, 0, 1};
const Quat longQuat = {0, 0, 0, 2}; // its product with the identity shows whether it was renormalised

Quat drag(float fromX, float fromY, float toX, float toY)
{
    Quat q = {9, 9, 9, 9};
    trackball(q.data(), fromX, fromY, toX, toY);
    return q;
}

Quat about(const std::array<float, 3>& axis, float phi)
{
    Quat q = {9, 9, 9, 9};
    axis_to_quat(axis.data(), phi, q.data());
    return q;
}

Quat composed(const Quat& first, const Quat& second)
{
    Quat q = {9, 9, 9, 9};
    add_quats(first.data(), second.data(), q.data());
    return q;
}

bool compositionRenormalises()
{
    return composed(longQuat, identity)[3] == 1;
}

// The counter of compositions belongs to the process: whatever ran before, the next period - 1 compositions are left as
// computed.
void startPeriod()
{
    for (int call = 0; call < period; ++call) {
        if (compositionRenormalises()) {
            return;
        }
    }
    FAIL() << "no composition was renormalised";
}

void expectNear(const Quat& actual, double x, double y, double z, double w)
{
    EXPECT_NEAR(actual[0], x, 1e-6);
    EXPECT_NEAR(actual[1], y, 1e-6);
    EXPECT_NEAR(actual[2], z, 1e-6);
    EXPECT_NEAR(actual[3], w, 1e-6);
}
} // namespace

// --- A drag ---
TEST(Trackball, EqualPointsAreExactlyTheIdentity)
{
    EXPECT_EQ(drag(0.3f, -0.7f, 0.3f, -0.7f), identity);
    EXPECT_EQ(drag(0, 0, 0, 0), identity);
}

TEST(Trackball, DragFromTheCentreStaysOnTheSphere)
{
    // (0, 0, 0.8) to (0.5, 0, sqrt(0.39)); the axis is the second point times the first: -y.
    const double z = std::sqrt(0.64 - 0.25);
    const double t = std::sqrt(0.25 + (0.8 - z) * (0.8 - z)) / 1.6;
    expectNear(drag(0, 0, 0.5f, 0), 0, -t, 0, std::sqrt(1 - t * t));
}

TEST(Trackball, UpwardDragTurnsAboutPositiveX)
{
    const Quat q = drag(0, 0, 0, 0.5f);
    EXPECT_GT(q[0], 0.3f);
    EXPECT_EQ(q[1], 0);
    EXPECT_EQ(q[2], 0);
}

TEST(Trackball, OppositeDragIsTheInverse)
{
    const Quat there = drag(0.1f, 0.2f, 0.4f, -0.1f), back = drag(0.4f, -0.1f, 0.1f, 0.2f);
    expectNear(back, -there[0], -there[1], -there[2], there[3]);
}

TEST(Trackball, PointsFarFromTheCentreLieOnTheHyperbola)
{
    // At distance 0.6 z is 0.32 / 0.6; the sphere would give sqrt(0.28).
    const double z = 0.32 / 0.6;
    const double axis[3] = {0.6 * z, 0.6 * z, -0.36};
    const double length = std::sqrt(axis[0] * axis[0] + axis[1] * axis[1] + axis[2] * axis[2]);
    const double t = std::sqrt(0.72) / 1.6;
    expectNear(drag(0.6f, 0, 0, 0.6f), axis[0] / length * t, axis[1] / length * t, axis[2] / length * t,
               std::sqrt(1 - t * t));
}

TEST(Trackball, PointsInsideTheSwitchDistanceLieOnTheSphere)
{
    // At distance 0.4 z is sqrt(0.48); the hyperbola would give 0.8.
    const double z = std::sqrt(0.48);
    const double axis[3] = {0.4 * z, 0.4 * z, -0.16};
    const double length = std::sqrt(axis[0] * axis[0] + axis[1] * axis[1] + axis[2] * axis[2]);
    const double t = std::sqrt(0.32) / 1.6;
    expectNear(drag(0.4f, 0, 0, 0.4f), axis[0] / length * t, axis[1] / length * t, axis[2] / length * t,
               std::sqrt(1 - t * t));
}

TEST(Trackball, DragAcrossMoreThanTheBallIsHalfATurn)
{
    const Quat q = drag(-1, 0, 1, 0); // 2 / 1.6 is cut to 1
    EXPECT_EQ(q[1], -1);
    EXPECT_NEAR(q[3], 0, 1e-6);
}

TEST(Trackball, DiameterIsTwiceTheFloatRadius)
{
    // 1.60000002; the double 1.6 gives 0.279943079.
    EXPECT_EQ(drag(0, 0, 0.43f, 0)[1], -0.279943049f);
}

TEST(Trackball, CollinearPointsGiveNoNumbers)
{
    const Quat q = drag(1e20f, 0, 2e20f, 0); // both project to z = 0
    for (int k = 0; k < 3; ++k) {
        EXPECT_TRUE(std::isnan(q[k])) << "component " << k;
    }
}

// --- Axis and angle ---
TEST(AxisToQuat, AxisNeedNotBeOfUnitLength)
{
    const float quarter = 1.57079633f;
    expectNear(about({0, 0, 5}, quarter), 0, 0, std::sqrt(0.5), std::sqrt(0.5));
    expectNear(about({3, 0, 4}, quarter), 0.6 * std::sqrt(0.5), 0, 0.8 * std::sqrt(0.5), std::sqrt(0.5));
}

TEST(AxisToQuat, AngleZeroIsTheIdentity)
{
    EXPECT_EQ(about({1, 2, 3}, 0), identity);
}

TEST(AxisToQuat, ZeroAxisGivesNoNumbersButKeepsTheCosine)
{
    const Quat q = about({0, 0, 0}, 1);
    for (int k = 0; k < 3; ++k) {
        EXPECT_TRUE(std::isnan(q[k])) << "component " << k;
    }
    EXPECT_FLOAT_EQ(q[3], static_cast<float>(std::cos(0.5)));
}

// --- Composition ---
TEST(AddQuats, IsTheProductOfTheSecondAndTheFirst)
{
    startPeriod();
    EXPECT_EQ(composed({1, 2, 3, 4}, {5, 6, 7, 8}), (Quat{32, 32, 56, -6}));
    EXPECT_EQ(composed({1, 0, 0, 0}, {0, 1, 0, 0}), (Quat{0, 0, -1, 0})) << "j i = -k";
}

TEST(AddQuats, AppliesTheFirstRotationFirst)
{
    startPeriod();
    const float quarter = 1.57079633f;
    const Quat both = composed(about({1, 0, 0}, quarter), about({0, 0, 1}, quarter));
    expectNear(both, 0.5, 0.5, 0.5, 0.5); // about x, then about z: a third of a turn about (1, 1, 1)
}

TEST(AddQuats, ResultMayReplaceEitherInput)
{
    startPeriod();
    Quat first = {1, 2, 3, 4}, second = {5, 6, 7, 8};
    add_quats(first.data(), second.data(), first.data());
    EXPECT_EQ(first, (Quat{32, 32, 56, -6}));
    first = {1, 2, 3, 4};
    add_quats(first.data(), second.data(), second.data());
    EXPECT_EQ(second, (Quat{32, 32, 56, -6}));
}

TEST(AddQuats, AddsTheTwoScaledVectorsBeforeTheCrossProduct)
{
    startPeriod();
    // x: 1e8 - 1e8 + 1, where 1 would be lost beside either of the others.
    EXPECT_EQ(composed({1e4f, 0, 1, -1e4f}, {1e4f, 1, 0, 1e4f})[0], 1);
}

TEST(AddQuats, RenormalisesEvery98thComposition)
{
    startPeriod();
    for (int round = 0; round < 2; ++round) {
        for (int call = 1; call < period; ++call) {
            ASSERT_EQ(composed(longQuat, identity)[3], 2) << "call " << call << " of round " << round;
        }
        EXPECT_EQ(composed(longQuat, identity)[3], 1) << "round " << round;
    }
}

TEST(AddQuats, RenormalisationDividesAllFourComponents)
{
    startPeriod();
    for (int call = 1; call < period; ++call) {
        composed(identity, identity);
    }
    EXPECT_EQ(composed({2, 4, 4, 8}, identity), (Quat{0.2f, 0.4f, 0.4f, 0.8f}));
}

TEST(AddQuats, CounterIsSharedByAllTransforms)
{
    float extents[6] = {-1, 1, -1, 1, -1, 1};
    MTransform one(extents), other(extents);
    float quarterTurn[4] = {0, 0, 1, 90};
    startPeriod();
    for (int call = 0; call < 48; ++call) {
        one.setRotation(quarterTurn);
        other.setRotation(quarterTurn);
    }
    EXPECT_FALSE(compositionRenormalises()) << "97th";
    EXPECT_TRUE(compositionRenormalises()) << "98th";
}

// --- Matrix ---
TEST(BuildRotmatrix, IsFilledRowByRow)
{
    float m[4][4];
    const float q[4] = {1, 2, 3, 4};
    build_rotmatrix(m, q);
    const float expected[4][4] = {{-25, -20, 22, 0}, {28, -19, 4, 0}, {-10, 20, -9, 0}, {0, 0, 0, 1}};
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            EXPECT_EQ(m[row][column], expected[row][column]) << row << "," << column;
        }
    }
}

TEST(BuildRotmatrix, RowsTurnXToYForAQuarterTurnAboutZ)
{
    float m[4][4];
    build_rotmatrix(m, about({0, 0, 1}, 1.57079633f).data());
    EXPECT_NEAR(m[1][0], 1, 1e-6);
    EXPECT_NEAR(m[0][1], -1, 1e-6);
}

TEST(BuildRotmatrix, DiagonalSumsSquaresInFloatAndSubtractsInDouble)
{
    float m[4][4];
    const float q[4] = {0.15f, 0.42f, -0.62f, -0.42f};
    build_rotmatrix(m, q);
    EXPECT_EQ(m[0][0], -0.121600032f); // a sum in double gives -0.121599987
}
