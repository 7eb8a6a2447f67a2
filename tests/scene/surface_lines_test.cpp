// Lines along sharp, free and branching edges.
#include <algorithm>
#include <cmath>

#include "feature_edges.h"
#include "look_pictures.h"
#include "scene_fixture.h"

namespace {

using kvo::Color;
using kvo::Picture;
using kvo::SceneView;
using kvo::SurfaceEdges;

SurfaceEdges edgesOf(PartInfoStr part, float angle = 30, const kvo::ElementMask& absent = {})
{
    const SurfaceEdges out = kvo::findEdges(part, kvo::findSurface(part, absent), angle);
    releasePart(part);
    return out;
}

// Two unit squares that meet in the y axis, the second one turned up by an angle, degrees. flip: its winding is
// reversed.
PartInfoStr bentPart(float degrees, bool flip = false)
{
    const float a = degrees * 3.14159265f / 180, c = std::cos(a), s = std::sin(a);
    const Floats nodes = {-1, 0, 0, 0, 0, 0, 0, 1, 0, -1, 1, 0, c, 0, s, c, 1, s};
    return makePart(SHELL, 4, nodes, flip ? Indices{0, 1, 2, 3, 1, 2, 5, 4} : Indices{0, 1, 2, 3, 1, 4, 5, 2});
}

TEST(FeatureEdges, RimOfASheet)
{
    for (const bool mixed : {false, true}) {
        const SurfaceEdges edges = edgesOf(sheetPart(5, mixed));
        EXPECT_EQ(edges.free.size(), 20u);
        EXPECT_TRUE(edges.feature.empty());
        EXPECT_TRUE(edges.branching.empty());
    }
}

TEST(FeatureEdges, TwelveOfABlock)
{
    const SurfaceEdges edges = edgesOf(blockPart(4));
    EXPECT_EQ(edges.feature.size(), 48u);
    EXPECT_TRUE(edges.free.empty());
    EXPECT_TRUE(edges.branching.empty());
    EXPECT_TRUE(edgesOf(blockPart(4), 91).feature.empty());
}

TEST(FeatureEdges, ByAngleWhateverTheWinding)
{
    for (const bool flip : {false, true}) {
        EXPECT_EQ(edgesOf(bentPart(40, flip), 39.5f).feature.size(), 1u) << flip;
        EXPECT_EQ(edgesOf(bentPart(40, flip), 40.5f).feature.size(), 0u) << flip;
        EXPECT_EQ(edgesOf(bentPart(170, flip), 160).feature.size(), 1u) << flip;
    }
    const SurfaceEdges edges = edgesOf(bentPart(90));
    ASSERT_EQ(edges.feature.size(), 1u);
    EXPECT_EQ(edges.feature[0].nodes[0], 1u);
    EXPECT_EQ(edges.feature[0].nodes[1], 2u);
    EXPECT_EQ(edges.free.size(), 6u);
}

TEST(FeatureEdges, ThreeFacesAtOneEdge)
{
    const Floats nodes = {0, 0, 0, 0, 1, 0, 1, 0, 0, 1, 1, 0, -1, 0, 0, -1, 1, 0, 0, 0, 1, 0, 1, 1};
    const SurfaceEdges edges = edgesOf(makePart(SHELL, 4, nodes, {0, 2, 3, 1, 0, 4, 5, 1, 0, 6, 7, 1}));
    EXPECT_EQ(edges.branching.size(), 1u);
    EXPECT_EQ(edges.free.size(), 9u);
    EXPECT_TRUE(edges.feature.empty());
}

TEST(FeatureEdges, TwoCubesThatTouchInAnEdge)
{
    kvo::ElementMask absent(8, 1);
    absent[0] = absent[3] = 0; // (0,0,0) and (1,1,0)
    const SurfaceEdges edges = edgesOf(blockPart(2), 30, absent);
    EXPECT_EQ(edges.branching.size(), 1u);
    EXPECT_EQ(edges.feature.size(), 22u);
}

TEST(FeatureEdges, FacesWithoutAreaAreNoCorners)
{
    const Floats nodes = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 1, 0, 0, 1, 1, 0};
    const SurfaceEdges edges = edgesOf(makePart(SHELL, 4, nodes, {0, 1, 2, 3, 1, 4, 5, 2}));
    EXPECT_TRUE(edges.feature.empty());
    EXPECT_TRUE(edgesOf(makePart(SHELL, 4, {}, {})).free.empty());
}

TEST(FeatureEdges, OfManyFacesOnAllCoresInOneOrder)
{
    const SurfaceEdges first = edgesOf(blockPart(60)), second = edgesOf(blockPart(60));
    EXPECT_EQ(first.feature.size(), 12u * 60);
    ASSERT_EQ(first.feature.size(), second.feature.size());
    for (std::size_t k = 0; k < first.feature.size(); ++k) {
        EXPECT_TRUE(std::equal(first.feature[k].nodes, first.feature[k].nodes + 2, second.feature[k].nodes));
    }
    EXPECT_EQ(edgesOf(sheetPart(200)).free.size(), 800u);
}

class SurfaceLinesDraw : public SceneTest
{
protected:
    bool near(const Picture& p, Color color, double x, double y, double z)
    {
        const Pixel pixel = pixelOf(*model, x, y, z);
        for (int dx = -1; dx <= 1; ++dx) {
            for (int dy = -1; dy <= 1; ++dy) {
                if (p.at(pixel.x + dx, pixel.y + dy) == color) {
                    return true;
                }
            }
        }
        return false;
    }
};

TEST_F(SurfaceLinesDraw, EachKindInItsColourOnlyWhenAskedFor)
{
    model.add(bentPart(60));
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    SceneView view(*model);
    kvo::SceneLines& lines = view.look().lines;
    const float red[4] = {1, 0, 0, 1}, green[4] = {0, 1, 0, 1};
    std::copy(red, red + 4, lines.featureColor);
    std::copy(green, green + 4, lines.freeColor);
    Picture p = picture(view);
    EXPECT_FALSE(near(p, {255, 0, 0, 255}, 0, 0.5, 0));
    lines.feature = true;
    p = picture(view);
    EXPECT_TRUE(near(p, {255, 0, 0, 255}, 0, 0.5, 0));
    EXPECT_FALSE(near(p, {0, 255, 0, 255}, -1, 0.5, 0));
    lines.free = true;
    p = picture(view);
    EXPECT_TRUE(near(p, {0, 255, 0, 255}, -1, 0.5, 0));
    view.look().featureAngle = 70;
    p = picture(view);
    EXPECT_FALSE(near(p, {255, 0, 0, 255}, 0, 0.5, 0));
    EXPECT_TRUE(near(p, {0, 255, 0, 255}, -1, 0.5, 0));
}

TEST_F(SurfaceLinesDraw, HiddenPartsHaveNoneAndAbsentElementsLeaveNewOnes)
{
    PartInfoStr other = sheetPart(2);
    movePart(other, 3, 0, 0);
    model.add(sheetPart(2)).add(other);
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    SceneView view(*model);
    view.look().lines.free = true;
    const float red[4] = {1, 0, 0, 1};
    std::copy(red, red + 4, view.look().lines.freeColor);
    Picture p = picture(view);
    EXPECT_TRUE(near(p, {255, 0, 0, 255}, 4.5, 2, 0));
    EXPECT_FALSE(near(p, {255, 0, 0, 255}, 3.5, 1, 0));
    view.setAbsentElements({{}, {1, 0, 0, 0}});
    p = picture(view);
    EXPECT_TRUE(near(p, {255, 0, 0, 255}, 3.5, 1, 0));
    model->setDisplay(2u, PART_HIDDEN);
    p = picture(view);
    EXPECT_EQ(p.at(width - 5, height / 2), (Color{0, 0, 0, 255}));
}

TEST_F(SurfaceLinesDraw, APartBetweenTwoOthersIsHiddenAlone)
{
    for (int k = 0; k < 3; ++k) {
        PartInfoStr sheet = sheetPart(2);
        movePart(sheet, 3.0f * float(k), 0, 0);
        model.add(sheet);
    }
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    SceneView view(*model);
    view.look().lines.free = true;
    const float red[4] = {1, 0, 0, 1};
    std::copy(red, red + 4, view.look().lines.freeColor);
    const auto rims = [&] { // of the three sheets: is the left side drawn, is the right?
        const Picture p = picture(view);
        std::vector<bool> out;
        for (const double x : {0.0, 2.0, 3.0, 5.0, 6.0, 8.0}) {
            out.push_back(near(p, {255, 0, 0, 255}, x, 0.5, 0));
        }
        return out;
    };
    EXPECT_EQ(rims(), std::vector<bool>(6, true));
    model.part(1).partFlag ^= PART_HIDDEN | PART_SHOWN; // the frame stays
    EXPECT_EQ(rims(), (std::vector<bool>{true, true, false, false, true, true}));
    model.part(1).partFlag ^= PART_HIDDEN | PART_SHOWN;
    model.part(0).partFlag ^= PART_HIDDEN | PART_SHOWN;
    EXPECT_EQ(rims(), (std::vector<bool>{false, false, true, true, true, true}));
}

TEST_F(SurfaceLinesDraw, Golden)
{
    PartInfoStr block = blockPart(5), tube = tubePart(24, 4, 4);
    movePart(tube, 7, 2, 0);
    const Floats nodes = {9, 0, 0, 9, 4, 0, 11, 0, 0, 11, 4, 0, 9, 0, 2, 9, 4, 2, 10, 0, -2, 10, 4, -2};
    model.add(block).add(tube).add(makePart(SHELL, 4, nodes, {0, 2, 3, 1, 0, 4, 5, 1, 0, 6, 7, 1}));
    load();
    SceneView view(*model);
    view.look().lines.feature = view.look().lines.free = view.look().lines.branching = true;
    const float white[4] = {1, 1, 1, 1};
    std::copy(white, white + 4, view.look().lines.featureColor);
    turn(*model, 20, 25);
    shrink(*model);
    EXPECT_PRED1(matchesGolden, (LookPicture{"surface_lines", picture(view)}));
}

} // namespace
