// Shapes, faces and corners of elements as records hold them.
#include <set>

#include <gtest/gtest.h>

#include "element_shape.h"
#include "modelbuilder.h"

namespace {

using namespace kvo;

struct Faces
{
    ElementFace faces[maxFaces];
    unsigned int count;
    unsigned int quads = 0;

    explicit Faces(const PartInfoStr& part, std::uint32_t element = 0)
        : count(facesOf(part, element, shapeOf(part, element), faces))
    {
        for (unsigned int k = 0; k < count; ++k) {
            quads += faces[k].corners == 4;
        }
    }
};

// Every edge of a closed surface belongs to two faces.
void expectClosed(const Faces& f)
{
    std::multiset<std::pair<std::uint32_t, std::uint32_t>> edges;
    for (unsigned int k = 0; k < f.count; ++k) {
        for (unsigned int c = 0; c < f.faces[k].corners; ++c) {
            const std::uint32_t a = f.faces[k].nodes[c], b = f.faces[k].nodes[(c + 1) % f.faces[k].corners];
            edges.insert({std::min(a, b), std::max(a, b)});
        }
    }
    for (const auto& edge : edges) {
        EXPECT_EQ(edges.count(edge), 2u) << edge.first << " " << edge.second;
    }
}

PartInfoStr pyramidPart()
{
    return makePart(SOLID, 8, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0.5, 0.5, 1}, {0, 1, 2, 3, 4, 4, 4, 4});
}

TEST(ElementShape, SolidsByTheirRepeatedSlots)
{
    PartInfoStr parts[] = {hexaPart(), tetraPart(), pentaPart(), pyramidPart()};
    const ElementShape shapes[] = {ElementShape::Hexa, ElementShape::Tetra, ElementShape::Wedge, ElementShape::Pyramid};
    const unsigned int faces[] = {6, 4, 5, 5}, quads[] = {6, 0, 3, 1}, corners[] = {8, 4, 6, 5};
    for (int k = 0; k < 4; ++k) {
        EXPECT_EQ(shapeOf(parts[k], 0), shapes[k]) << k;
        const Faces found(parts[k]);
        EXPECT_EQ(found.count, faces[k]) << k;
        EXPECT_EQ(found.quads, quads[k]) << k;
        expectClosed(found);
        std::uint32_t nodes[8];
        EXPECT_EQ(cornersOf(parts[k], 0, shapes[k], nodes), corners[k]) << k;
        releasePart(parts[k]);
    }
}

TEST(ElementShape, FacesAreNumberedAsTheFlatNormals)
{
    PartInfoStr part = pyramidPart();
    const Faces found(part);
    for (unsigned int k = 0; k < found.count; ++k) {
        EXPECT_EQ(found.faces[k].number, k);
    }
    releasePart(part);
    // A hexahedron collapsed to a wedge along another edge loses its first face: the others keep their numbers.
    part = makePart(SOLID, 8, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 0, 1, 1, 0, 1, 1, 1, 1}, {0, 1, 1, 0, 3, 4, 5, 2});
    EXPECT_EQ(shapeOf(part, 0), ElementShape::Collapsed);
    const Faces collapsed(part);
    ASSERT_EQ(collapsed.count, 5u);
    EXPECT_EQ(collapsed.faces[0].number, 1);
    releasePart(part);
}

TEST(ElementShape, SixCollapsedFacesFit)
{
    PartInfoStr part = hexaPart();
    part.partElements.elmIndices[7] = 6; // one edge collapsed: two triangles, four quadrilaterals
    const Faces found(part);
    EXPECT_EQ(found.count, 6u);
    EXPECT_EQ(found.quads, 4u);
    releasePart(part);
}

TEST(ElementShape, ShellsAndLines)
{
    PartInfoStr parts[] = {quadPart(), trianglePart(), beamPart(2), discretePart()};
    const ElementShape shapes[] = {ElementShape::Quad, ElementShape::Triangle, ElementShape::Line, ElementShape::Line};
    const unsigned int faces[] = {1, 1, 0, 0}, corners[] = {4, 3, 2, 2};
    for (int k = 0; k < 4; ++k) {
        EXPECT_EQ(shapeOf(parts[k], 0), shapes[k]) << k;
        EXPECT_EQ(Faces(parts[k]).count, faces[k]) << k;
        std::uint32_t nodes[8];
        EXPECT_EQ(cornersOf(parts[k], 0, shapes[k], nodes), corners[k]) << k;
        releasePart(parts[k]);
    }
}

TEST(ElementShape, IndicesOutsideThePartHaveNoShape)
{
    PartInfoStr part = hexaPart();
    part.partElements.elmIndices[5] = 8;
    EXPECT_EQ(shapeOf(part, 0), ElementShape::None);
    EXPECT_EQ(Faces(part).count, 0u);
    part.partElements.elmIndices[5] = 5;
    part.partDrawType = 7;
    EXPECT_EQ(shapeOf(part, 0), ElementShape::None);
    releasePart(part);
}

TEST(ElementShape, TenSlotTetrahedra)
{
    PartInfoStr part = makePart(SOLID, 10, {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 1, 2, 3, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(shapeOf(part, 0), ElementShape::Tetra);
    const Faces found(part);
    EXPECT_EQ(found.count, 4u);
    expectClosed(found);
    releasePart(part);
}

} // namespace
