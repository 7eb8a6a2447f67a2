// The section plane: cross-sections against areas worked out by hand, and pictures of what stays.
#include <cmath>

#include "element_shape.h"
#include "look_pictures.h"
#include "scene_fixture.h"
#include "section.h"

namespace {

using kvo::CapMesh;
using kvo::Color;
using kvo::Picture;
using kvo::SceneCut;
using kvo::SceneView;
using kvo::SurfaceVertex;

const double noShift[3] = {0, 0, 0};

// Nodes in slot order; repeated slots are left to the caller.
PartInfoStr solidPart(const Floats& nodes, const Indices& slots)
{
    return makePart(SOLID, 8, nodes, slots);
}

PartInfoStr pyramidPart() // base (0,0,0)..(1,1,0), apex (0,0,1)
{
    return solidPart({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1}, {0, 1, 2, 3, 4, 4, 4, 4});
}

struct Cut
{
    PartInfoStr part;
    CapMesh mesh;

    Cut(const PartInfoStr& solid, const double (&plane)[4]) : part(solid)
    {
        kvo::addCaps(part, 0, 0, {}, plane, noShift, mesh);
    }
    ~Cut() { releasePart(part); }

    double area() const
    {
        double sum = 0;
        for (std::size_t k = 0; k + 2 < mesh.triangles.size(); k += 3) {
            const float *a = mesh.triangles[k].position, *b = mesh.triangles[k + 1].position,
                        *c = mesh.triangles[k + 2].position;
            double u[3], v[3];
            for (int axis = 0; axis < 3; ++axis) {
                u[axis] = double(b[axis]) - a[axis];
                v[axis] = double(c[axis]) - a[axis];
            }
            sum += std::hypot(u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]) / 2;
        }
        return sum;
    }
    double outline() const
    {
        double sum = 0;
        for (std::size_t k = 0; k + 1 < mesh.outlines.size(); k += 2) {
            const float *a = mesh.outlines[k].position, *b = mesh.outlines[k + 1].position;
            sum += std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
        }
        return sum;
    }
    bool finite() const
    {
        for (const SurfaceVertex& vertex : mesh.triangles) {
            for (float v : vertex.position) {
                if (!std::isfinite(v)) {
                    return false;
                }
            }
        }
        return true;
    }
};

const double tiny = 1e-6;

// --- Areas ---

TEST(SectionCap, CubeAcrossAnAxis)
{
    const Cut cut(hexaPart(), {1, 0, 0, -0.25});
    EXPECT_NEAR(cut.area(), 1, tiny);
    EXPECT_NEAR(cut.outline(), 4, tiny);
}

TEST(SectionCap, CubeAcrossItsDiagonalIsAHexagon)
{
    const Cut cut(hexaPart(), {1, 1, 1, -1.5});
    const double side = std::sqrt(0.5);
    EXPECT_NEAR(cut.area(), 3 * std::sqrt(3.0) / 2 * side * side, tiny);
    EXPECT_NEAR(cut.outline(), 6 * side, tiny);
}

TEST(SectionCap, LengthOfTheNormalDoesNotMatter)
{
    EXPECT_NEAR(Cut(hexaPart(), {0, 0, 1e-3, -0.5e-3}).area(), 1, tiny);
    EXPECT_NEAR(Cut(hexaPart(), {0, 0, -1e3, 0.5e3}).area(), 1, tiny);
}

TEST(SectionCap, TetrahedronHalfWayUp)
{
    const Cut cut(tetraPart(), {0, 0, -1, 0.5}); // (0,0,0) (1,0,0) (0,1,0) (0,0,1)
    EXPECT_NEAR(cut.area(), 0.125, tiny);
}

TEST(SectionCap, TetrahedronBetweenTwoPairsOfCornersIsAQuadrilateral)
{
    // x + y = 1/2 parts the origin and the top from the other two: a rectangle sqrt(1/2) wide and 1/2 high.
    const Cut cut(tetraPart(), {1, 1, 0, -0.5});
    EXPECT_NEAR(cut.area(), std::sqrt(0.5) * 0.5, tiny);
}

TEST(SectionCap, WedgeAcrossAndAlong)
{
    EXPECT_NEAR(Cut(pentaPart(), {0, 0, 1, -0.3}).area(), 0.5, tiny);
    EXPECT_NEAR(Cut(pentaPart(), {1, 0, 0, -0.25}).area(), 0.75, tiny);
}

TEST(SectionCap, PyramidAcrossAndThroughItsApex)
{
    EXPECT_NEAR(Cut(pyramidPart(), {0, 0, 1, -0.5}).area(), 0.25, tiny);
    EXPECT_NEAR(Cut(pyramidPart(), {1, -1, 0, 0}).area(), std::sqrt(2.0) / 2, tiny);
}

TEST(SectionCap, HexahedronWithOneEdgeCollapsed)
{
    // The cube without its edge 5-6's length: slots 5 and 6 are one node, half way.
    const Floats nodes = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0.5f, 0, 1, 1, 1, 1, 0, 1, 1};
    const Cut cut(solidPart(nodes, {0, 1, 2, 3, 4, 4, 5, 6}), {0, 0, 1, -0.5});
    // 1/2 wide at y = 0 and 1 at y = 1; the two warped sides bulge by 1/4 half way, along the diagonals of their
    // smallest nodes.
    EXPECT_NEAR(cut.area(), (0.5 + 1) / 2 + 2 * 0.25 * 0.5 / 2, tiny);
}

TEST(SectionCap, PlaneInAFaceShowsThatFaceOnce)
{
    // Only the removed half of two cubes can give it: the kept half ends with nothing cut.
    PartInfoStr two = blockPart(2);
    const Cut cut(two, {1, 0, 0, -1});
    EXPECT_NEAR(cut.area(), 4, tiny);
    EXPECT_TRUE(cut.finite());
}

TEST(SectionCap, PlanesBesideTheModelCutNothing)
{
    for (const double offset : {-2.0, 2.0, 0.0}) {
        const double plane[4] = {0, 0, 1, offset};
        EXPECT_EQ(Cut(hexaPart(), plane).area(), 0) << offset;
    }
}

TEST(SectionCap, FlatAndBrokenElementsGiveNoNaN)
{
    PartInfoStr flat = hexaPart();
    for (int k = 0; k < 8; ++k) {
        flat.partNodes.nodeValues[3 * k] = 0.5f;
    }
    EXPECT_TRUE(Cut(flat, {1, 0, 0, -0.5}).finite());
    PartInfoStr tilted = hexaPart();
    for (int k = 0; k < 8; ++k) {
        tilted.partNodes.nodeValues[3 * k + 2] = 0;
    }
    const Cut cut(tilted, {1, 1, 0, -1});
    EXPECT_TRUE(cut.finite());
    EXPECT_NEAR(cut.area(), 0, tiny);
    PartInfoStr broken = hexaPart();
    broken.partNodes.nodeValues[4] = NAN;
    EXPECT_TRUE(Cut(broken, {1, 0, 0, -0.5}).mesh.triangles.empty());
    PartInfoStr outside = hexaPart();
    outside.partElements.elmIndices[3] = 99;
    EXPECT_TRUE(Cut(outside, {1, 0, 0, -0.5}).mesh.triangles.empty());
}

TEST(SectionCap, VerticesKnowTheirElementAndLookToTheRemovedSide)
{
    PartInfoStr block = blockPart(3);
    CapMesh mesh;
    const double plane[4] = {1, 0, 0, -1.5};
    std::vector<char> absent(27, 0);
    absent[13] = 1;
    kvo::addCaps(block, 4, 100, absent, plane, noShift, mesh);
    std::vector<int> seen(27, 0);
    for (const SurfaceVertex& vertex : mesh.triangles) {
        ASSERT_GE(vertex.element, 100u);
        ASSERT_LT(vertex.element, 127u);
        ++seen[vertex.element - 100];
        EXPECT_EQ(vertex.part, 4u);
        EXPECT_EQ(vertex.normal.x, -32767);
    }
    for (int element = 0; element < 27; ++element) {
        EXPECT_EQ(seen[element] > 0, element % 3 == 1 && element != 13) << element;
    }
    ASSERT_EQ(mesh.triangleRanges.size(), 1u);
    EXPECT_EQ(mesh.triangleRanges[0].part, 4u);
    EXPECT_EQ(mesh.triangleRanges[0].vertexCount, mesh.triangles.size());
    releasePart(block);
}

TEST(SectionCap, AreaOfManyElementsOnAllCores)
{
    PartInfoStr block = blockPart(40);
    const Cut cut(block, {0, 1, 0, -7.3});
    EXPECT_NEAR(cut.area(), 1600, 1e-2);
}

TEST(SectionElements, OnlyThoseWhollyBeyondAreAway)
{
    PartInfoStr block = blockPart(3);
    const double plane[4] = {0, 0, -1, 1.5};
    std::vector<char> absent(27, 0);
    absent[0] = 1;
    const kvo::ElementMask mask = kvo::withoutRemoved(block, plane, absent);
    for (int element = 0; element < 27; ++element) {
        EXPECT_EQ(mask[element] != 0, element == 0 || element >= 18) << element;
    }
    const std::vector<char> nodes = kvo::nodesInUse(block, mask);
    EXPECT_TRUE(nodes[16 * 2 + 5]);
    EXPECT_FALSE(nodes[16 * 3 + 5]);
    releasePart(block);
}

TEST(SectionPlane, ThroughAPoint)
{
    kvo::SceneSection section;
    const double point[3] = {1, 2, 3}, normal[3] = {0, 0, 2};
    section.setPlane(point, normal);
    EXPECT_EQ(section.plane[2], 2);
    EXPECT_EQ(section.plane[3], -6);
    EXPECT_TRUE(kvo::planeCuts(section.plane));
    const double none[4] = {0, 0, 0, 1}, broken[4] = {1, NAN, 0, 0};
    EXPECT_FALSE(kvo::planeCuts(none));
    EXPECT_FALSE(kvo::planeCuts(broken));
}

// --- Pictures ---

class SectionDraws : public SceneTest
{
protected:
    void look(int viewType = TOP_VIEW) { model->getMViewPtr()->mViewType = viewType; }
    Color at(const Picture& p, double x, double y, double z)
    {
        const Pixel pixel = pixelOf(*model, x, y, z);
        return p.at(pixel.x, pixel.y);
    }
    void cut(SceneView& view, SceneCut how, double a, double b, double c, double d)
    {
        view.look().section.cut = how;
        const double plane[4] = {a, b, c, d};
        std::copy(plane, plane + 4, view.look().section.plane);
    }
    const Color none{0, 0, 0, 255};
};

TEST_F(SectionDraws, SlicedShellsEndAtThePlane)
{
    model.add(sheetPart(4));
    load();
    look();
    SceneView view(*model);
    cut(view, SceneCut::Slice, 1, 0, 0, -1.5);
    const Picture p = picture(view);
    EXPECT_EQ(at(p, 1.3, 2.2, 0), none);
    EXPECT_NE(at(p, 1.7, 2.2, 0), none);
}

TEST_F(SectionDraws, WholeElementsStayWhole)
{
    model.add(sheetPart(4));
    load();
    look();
    SceneView view(*model);
    cut(view, SceneCut::Elements, 1, 0, 0, -1.5);
    const Picture p = picture(view);
    EXPECT_EQ(at(p, 0.7, 2.2, 0), none);
    EXPECT_NE(at(p, 1.2, 2.2, 0), none);
    view.look().section.cut = SceneCut::Off;
    EXPECT_NE(at(picture(view), 0.7, 2.2, 0), none);
}

TEST_F(SectionDraws, CapsHaveTheirElementsColours)
{
    model.add(blockPart(3));
    load();
    look(FRONT_VIEW);
    SceneView view(*model);
    picture(view);
    // The side that faces the viewer goes.
    for (const double side : {1.0, -1.0}) {
        cut(view, SceneCut::Slice, side, 0, 0, -1.5 * side);
        view.look().section.caps = false;
        const Picture hollow = picture(view);
        view.look().section.caps = true;
        unsigned int part = 1, element = 14; // the one in the middle
        model->selectElement(&part, &element);
        const Picture capped = picture(view);
        model->clearSelectedElements();
        const Color middle = at(capped, 1.5, 1.5, 1.5), beside = at(capped, 1.5, 1.5, 2.5);
        if (compare(hollow, capped, 8).differing == 0) {
            continue; // cut away from behind
        }
        EXPECT_GT(middle.b, 2 * middle.r) << side;
        EXPECT_GT(beside.r, beside.b) << side;
        EXPECT_NE(at(hollow, 1.5, 1.5, 1.5), middle);
        return;
    }
    FAIL() << "the cross-section is seen from neither side";
}

TEST_F(SectionDraws, NoSeamsBetweenTheCapsOfManyElements)
{
    PartInfoStr block = blockPart(12);
    movePart(block, 100, 100, 100); // away from the environment's triad
    model.add(block);
    load();
    for (int viewType : {static_cast<int>(ISO_VIEW), static_cast<int>(FRONT_VIEW)}) {
        look(viewType);
        SceneView view(*model);
        view.look().axes = false; // their letters have holes
        cut(view, SceneCut::Slice, 0.3, 1, 0.2, -159);
        Picture first = picture(view);
        cut(view, SceneCut::Slice, -0.3, -1, -0.2, 159);
        Picture second = picture(view);
        for (const Picture* p : {&first, &second}) { // isolated dark pixels inside
            int specks = 0;
            for (int y = 1; y + 1 < height; ++y) {
                for (int x = 1; x + 1 < width; ++x) {
                    specks += p->at(x, y) == none && p->at(x - 1, y) != none && p->at(x + 1, y) != none &&
                              p->at(x, y - 1) != none && p->at(x, y + 1) != none;
                }
            }
            EXPECT_EQ(specks, 0) << viewType;
        }
    }
}

TEST_F(SectionDraws, BeamsAndSelectedNodesAreCutToo)
{
    PartInfoStr beam = beamPart();
    paintPart(beam, 1, 0, 0);
    movePart(beam, 0, 5, 0); // away from the axis triad
    model.add(beam);
    load();
    look();
    std::vector<unsigned int> ids = {1, 2};
    model->selectNodes(ids);
    SceneView view(*model);
    view.look().lineWidth = 5;
    Picture p = picture(view);
    EXPECT_NE(at(p, 0.2, 5, 0), none);
    EXPECT_NE(at(p, 0, 5, 0), none);
    cut(view, SceneCut::Slice, 1, 0, 0, -0.5);
    p = picture(view);
    EXPECT_EQ(at(p, 0.2, 5, 0), none);
    EXPECT_NE(at(p, 0.8, 5, 0), none);
    EXPECT_EQ(at(p, 0, 5, 0), none);
    EXPECT_EQ(at(p, 1, 5, 0), (Color{0, 0, 255, 255}));
    cut(view, SceneCut::Elements, 1, 0, 0, -0.5);
    p = picture(view);
    EXPECT_NE(at(p, 0.2, 5, 0), none) << "the beam reaches over the plane";
    EXPECT_NE(at(p, 0, 5, 0), none) << "and has this node";
}

TEST_F(SectionDraws, TransparentPartsAreCutAndCapped)
{
    PartInfoStr block = blockPart(2);
    paintPart(block, 1, 0, 0, 0.5f);
    model.add(block);
    load();
    look();
    SceneView view(*model);
    cut(view, SceneCut::Slice, 1, 0, 0, -0.9);
    const Picture p = picture(view);
    EXPECT_EQ(at(p, 0.5, 0.6, 2), none);
    EXPECT_GT(at(p, 1.5, 0.6, 2).r, 40);
}

TEST_F(SectionDraws, CapsShowTheirElementsEdges)
{
    model.add(blockPart(2));
    load();
    look();
    SceneView view(*model);
    cut(view, SceneCut::Slice, 0, 0, -1, 0.5); // seen from above, half through the lower layer
    const float red[4] = {1, 0, 0, 1};
    std::copy(red, red + 4, view.look().edgeColor);
    const auto redAt = [&](double x, double y) { // in the cross-section, or in a pixel beside
        const Picture p = picture(view);
        const Pixel pixel = pixelOf(*model, x, y, 0.5);
        int out = 0;
        for (int k = 0; k < 9; ++k) {
            out += p.at(pixel.x + k % 3 - 1, pixel.y + k / 3 - 1) == Color{255, 0, 0, 255};
        }
        return out > 0;
    };
    EXPECT_FALSE(redAt(1, 0.3));
    view.look().style = kvo::SceneStyle::ShadedEdges;
    EXPECT_TRUE(redAt(1, 0.3)) << "all along, not only at its ends";
    EXPECT_TRUE(redAt(1.7, 1));
    EXPECT_FALSE(redAt(0.4, 0.6));
}

TEST_F(SectionDraws, CapsCoverTransparentPartsBehindThem)
{
    PartInfoStr pane = sheetPart(2);
    movePart(pane, 0, 0, 0.25f);
    paintPart(pane, 0, 1, 0, 0.5f);
    model.add(blockPart(2)).add(pane);
    load();
    look();
    SceneView view(*model);
    cut(view, SceneCut::Slice, 0, 0, -1, 0.5);
    const Color covered = at(picture(view), 0.6, 0.6, 0.5);
    model.part(1).partFlag ^= PART_HIDDEN | PART_SHOWN;
    EXPECT_EQ(at(picture(view), 0.6, 0.6, 0.5), covered);
    model.part(1).partFlag ^= PART_HIDDEN | PART_SHOWN;
    view.look().section.caps = false;
    EXPECT_FALSE(at(picture(view), 0.6, 0.6, 0.25) == covered) << "the pane is there";
}

TEST_F(SectionDraws, CapsFollowPlaneAndGeometry)
{
    model.add(blockPart(2));
    load();
    SceneView view(*model);
    cut(view, SceneCut::Slice, 0, 0, 1, -0.5);
    const Picture first = picture(view);
    cut(view, SceneCut::Slice, 0, 0, 1, -1.5);
    EXPECT_GT(compare(first, picture(view), 8).differing, 100u);
    cut(view, SceneCut::Slice, 0, 0, 1, -0.5);
    EXPECT_EQ(compare(first, picture(view), 0).differing, 0u);
    view.setAbsentElements({{1, 0, 0, 0, 0, 0, 0, 0}});
    const Picture without = picture(view);
    view.setAbsentElements({});
    EXPECT_EQ(compare(first, picture(view), 0).differing, 0u);
    EXPECT_NE(compare(first, without, 8).differing, 0u);
}

TEST_F(SectionDraws, Golden)
{
    model.add(blockPart(6));
    load();
    SceneView view(*model);
    view.look().style = kvo::SceneStyle::ShadedEdges;
    cut(view, SceneCut::Slice, 0.4, 1, 0.3, -4);
    turn(*model, 30, 20);
    shrink(*model);
    EXPECT_PRED1(matchesGolden, (LookPicture{"section_slice", picture(view)}));
    view.look().section.cut = SceneCut::Elements;
    EXPECT_PRED1(matchesGolden, (LookPicture{"section_elements", picture(view)}));
}

} // namespace
