// Which faces of a part are seen.
#include <map>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "face_normals.h"
#include "scene_models.h"
#include "surface_faces.h"

namespace {

using namespace kvo;

// The slow, plain way: faces by their set of nodes.
std::size_t plainCount(const PartInfoStr& part, const ElementMask& absent = {})
{
    std::map<std::set<std::uint32_t>, int> users;
    for (std::uint32_t e = 0; e < kvo::PartMesh(part).elementCount; ++e) {
        if (e < absent.size() && absent[e]) {
            continue;
        }
        ElementFace faces[maxFaces];
        const unsigned int count = facesOf(part, e, shapeOf(part, e), faces);
        for (unsigned int k = 0; k < count; ++k) {
            ++users[std::set<std::uint32_t>(faces[k].nodes, faces[k].nodes + 4)];
        }
    }
    std::size_t out = 0;
    for (const auto& user : users) {
        out += user.second == 1;
    }
    return out;
}

void expectOutward(const PartInfoStr& part, const PartSurface& surface)
{
    for (const SurfaceFace& face : surface.faces) {
        float vector[3];
        faceVector(part, face, vector);
        std::uint32_t corners[8];
        const unsigned int count = cornersOf(part, face.element, shapeOf(part, face.element), corners);
        double away = 0;
        for (int axis = 0; axis < 3; ++axis) {
            double center = 0, middle = 0;
            for (unsigned int k = 0; k < count; ++k) {
                center += positionOf(part, corners[k])[axis] / double(count);
            }
            const unsigned int rim = face.nodes[3] == noCorner ? 3 : 4;
            for (unsigned int k = 0; k < rim; ++k) {
                middle += positionOf(part, face.nodes[k])[axis] / double(rim);
            }
            away += (middle - center) * vector[axis];
        }
        EXPECT_GT(away, 0) << face.element << " face " << int(face.number);
    }
}

TEST(SurfaceFaces, ABlockShowsItsSixSides)
{
    for (unsigned int n : {1u, 2u, 5u, 20u}) {
        PartInfoStr part = blockPart(n);
        const PartSurface surface = findSurface(part);
        EXPECT_EQ(surface.faces.size(), 6u * n * n) << n;
        EXPECT_TRUE(surface.closed);
        expectOutward(part, surface);
        releasePart(part);
    }
}

TEST(SurfaceFaces, EverySolidShapeIsTurnedOutward)
{
    PartInfoStr parts[] = {
        hexaPart(), tetraPart(), pentaPart(),
        makePart(SOLID, 8, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0.5, 0.5, 1}, {0, 1, 2, 3, 4, 4, 4, 4}),
        makePart(SOLID, 8, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0.5, 0.5, -1}, {0, 1, 2, 3, 4, 4, 4, 4})};
    for (PartInfoStr& part : parts) {
        const PartSurface surface = findSurface(part);
        EXPECT_EQ(surface.faces.size(), plainCount(part));
        EXPECT_TRUE(surface.closed);
        expectOutward(part, surface);
        releasePart(part);
    }
}

TEST(SurfaceFaces, AbsentElementsOpenTheFacesBehindThem)
{
    PartInfoStr part = blockPart(3);
    ElementMask absent(27, 0);
    absent[13] = 1; // the middle one
    EXPECT_EQ(findSurface(part, absent).faces.size(), 6u * 9 + 6);
    absent.assign(27, 1);
    EXPECT_TRUE(findSurface(part, absent).faces.empty());
    releasePart(part);
}

TEST(SurfaceFaces, RandomMasksAgreeWithThePlainWay)
{
    std::mt19937 random(7);
    PartInfoStr part = blockPart(9);
    for (int round = 0; round < 10; ++round) {
        ElementMask absent(9 * 9 * 9);
        for (char& flag : absent) {
            flag = random() % 3 == 0;
        }
        const PartSurface surface = findSurface(part, absent);
        EXPECT_EQ(surface.faces.size(), plainCount(part, absent));
        EXPECT_TRUE(surface.closed);
    }
    releasePart(part);
}

TEST(SurfaceFaces, MixedShapesMatchFacesOfEqualCorners)
{
    // A cube and a pyramid on it share a quadrilateral; a tetrahedron on the pyramid shares a triangle.
    PartInfoStr part = makePart(
        SOLID, 8, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1, 0.5, 0.5, 2, 2, 0.5, 2},
        {0, 1, 2, 3, 4, 5, 6, 7, 4, 5, 6, 7, 8, 8, 8, 8, 5, 6, 8, 9, 9, 9, 9, 9});
    const PartSurface surface = findSurface(part);
    EXPECT_EQ(surface.faces.size(), 5u + 3u + 3u);
    expectOutward(part, surface);
    releasePart(part);
}

TEST(SurfaceFaces, FacesThatThreeElementsHaveAreInside)
{
    PartInfoStr part = makePart(SOLID, 8, {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 2, 0, 0, 3},
                                {0, 1, 2, 3, 3, 3, 3, 3, 0, 1, 2, 4, 4, 4, 4, 4, 0, 1, 2, 5, 5, 5, 5, 5});
    EXPECT_EQ(findSurface(part).faces.size(), 9u);
    releasePart(part);
}

TEST(SurfaceFaces, FlatElementsAreNotCalledClosed)
{
    PartInfoStr part = makePart(SOLID, 8, {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0}, {0, 1, 2, 3, 3, 3, 3, 3});
    const PartSurface surface = findSurface(part);
    EXPECT_EQ(surface.faces.size(), 4u);
    EXPECT_FALSE(surface.closed);
    releasePart(part);
}

TEST(SurfaceFaces, ShellsAreShownAllAndKeepTheirWinding)
{
    PartInfoStr part = quadStripPart(3);
    const PartSurface surface = findSurface(part);
    ASSERT_EQ(surface.faces.size(), 3u);
    EXPECT_FALSE(surface.closed);
    for (unsigned int k = 0; k < 4; ++k) {
        EXPECT_EQ(surface.faces[1].nodes[k], part.partElements.elmIndices[4 + k]);
    }
    releasePart(part);
}

TEST(SurfaceFaces, PartsWithNothingToShow)
{
    PartInfoStr beam = beamPart();
    EXPECT_TRUE(findSurface(beam).faces.empty());
    releasePart(beam);
    PartInfoStr empty = makePart(SOLID, 8, {}, {});
    EXPECT_TRUE(findSurface(empty).faces.empty());
    releasePart(empty);
}

// --- Normals ---

TEST(FaceNormals, SmoothOnesStopAtTheFeatureAngle)
{
    PartInfoStr part = blockPart(2);
    const PartSurface surface = findSurface(part);
    const FaceNormals sharp(part, surface, {NormalSource::Geometry, true, 30});
    const FaceNormals flat(part, surface, {NormalSource::Geometry, false, 30});
    const FaceNormals round(part, surface, {NormalSource::Geometry, true, 100});
    bool differs = false;
    for (std::size_t f = 0; f < surface.faces.size(); ++f) {
        for (unsigned int k = 0; k < 4; ++k) {
            EXPECT_TRUE(sharp.at(f, k) == flat.at(f, k));
            differs = differs || !(round.at(f, k) == flat.at(f, k));
        }
    }
    EXPECT_TRUE(differs);
    releasePart(part);
}

TEST(FaceNormals, ShellsWoundEitherWayLookSmooth)
{
    // Two quadrilaterals with a bend of 20 degrees, the second wound the other way.
    const float c = 0.9397f, s = 0.3420f;
    PartInfoStr part =
        makePart(SHELL, 4, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 1 + c, 0, s, 1 + c, 1, s}, {0, 1, 2, 3, 1, 2, 5, 4});
    const PartSurface surface = findSurface(part);
    const FaceNormals normals(part, surface, {NormalSource::Geometry, true, 30});
    const PackedNormal first = normals.at(0, 1), second = normals.at(1, 0); // both at node 1
    EXPECT_NEAR(first.x, -second.x, 2);
    EXPECT_NEAR(first.z, -second.z, 2);
    EXPECT_NEAR(first.x, -32767 * 0.1736, 40); // half the bend
    releasePart(part);
}

TEST(FaceNormals, FacesWithoutAreaHaveANormalAllTheSame)
{
    PartInfoStr part = makePart(SHELL, 4, {0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 1, 0}, {0, 1, 2, 2, 0, 1, 3, 3});
    const PartSurface surface = findSurface(part);
    ASSERT_EQ(surface.faces.size(), 2u);
    for (bool smooth : {false, true}) {
        const FaceNormals normals(part, surface, {NormalSource::Geometry, smooth, 30});
        for (unsigned int k = 0; k < 3; ++k) {
            EXPECT_EQ(normals.at(0, k).z, 32767) << smooth;
            EXPECT_EQ(normals.at(1, k).z, 32767) << smooth;
        }
    }
    const float nan[3] = {NAN, 0, 0};
    EXPECT_EQ(packNormal(nan).z, 32767);
    releasePart(part);
}

} // namespace
