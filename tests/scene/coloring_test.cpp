// Colours by category and value, and the legend's numbers.
#include <cmath>

#include "font.h"
#include "legend.h"
#include "look_pictures.h"
#include "mantypes.h"
#include "modelinfo.h"
#include "scene_fixture.h"
#include <kvo/coloring.h>

namespace {

using kvo::Color;
using kvo::Coloring;
using kvo::Picture;
using kvo::Rgb;
using kvo::SceneView;

float lightness(const Rgb& c)
{
    return 0.2126f * c.r + 0.7152f * c.g + 0.0722f * c.b;
}

TEST(Ramp, EndsControlPointsAndBeyond)
{
    using kvo::rampColor;
    const Rgb low = rampColor(kvo::ColorRamp::Viridis, 0), high = rampColor(kvo::ColorRamp::Viridis, 1);
    EXPECT_FLOAT_EQ(low.b, 0.329f);
    EXPECT_FLOAT_EQ(high.r, 0.993f);
    EXPECT_FLOAT_EQ(rampColor(kvo::ColorRamp::Viridis, -5).b, low.b);
    EXPECT_FLOAT_EQ(rampColor(kvo::ColorRamp::Viridis, 7).r, high.r);
    EXPECT_FLOAT_EQ(rampColor(kvo::ColorRamp::Rainbow, 0.5f).g, 1);
    EXPECT_FLOAT_EQ(rampColor(kvo::ColorRamp::Gray, NAN).r, kvo::noValueColor.r);
}

TEST(Ramp, ViridisGetsLighterAllTheWay)
{
    for (int k = 0; k < 50; ++k) {
        EXPECT_LT(lightness(rampColor(kvo::ColorRamp::Viridis, float(k) / 50)),
                  lightness(rampColor(kvo::ColorRamp::Viridis, float(k + 1) / 50)));
    }
}

TEST(CategoryColors, StandOutFromBlackAndWhiteAndEachOther)
{
    for (std::size_t a = 0; a < 12; ++a) {
        const Rgb c = kvo::categoryColor(a);
        EXPECT_GT(lightness(c), 0.15f) << a;
        EXPECT_LT(lightness(c), 0.75f) << a;
        for (std::size_t b = 0; b < a; ++b) {
            const Rgb d = kvo::categoryColor(b);
            EXPECT_GT(std::fabs(c.r - d.r) + std::fabs(c.g - d.g) + std::fabs(c.b - d.b), 0.25f) << a << " " << b;
        }
    }
    EXPECT_EQ(kvo::categoryColor(12).r, kvo::categoryColor(0).r);
}

TEST(ColoringByKey, CategoriesAscendAndNamesFollow)
{
    const Coloring c = kvo::colorByKey("load", {7, 3, 7, 9}, {"three", "seven"});
    ASSERT_EQ(c.categories.size(), 3u);
    EXPECT_EQ(c.categories[0].name, "three");
    EXPECT_EQ(c.categories[1].name, "seven");
    EXPECT_EQ(c.categories[2].name, "9");
    EXPECT_EQ(c.categoryOfPart, (std::vector<int>{1, 0, 1, 2}));
    EXPECT_TRUE(c.byCategory());
    EXPECT_FALSE(c.byValue());
}

TEST(ColoringValues, ColoursAlongTheRampInBothDirections)
{
    Coloring c;
    c.low = 10;
    c.high = 20;
    EXPECT_FLOAT_EQ(c.colorOf(10).b, 0.329f);
    EXPECT_FLOAT_EQ(c.colorOf(25).r, 0.993f);
    EXPECT_FLOAT_EQ(c.colorOf(NAN).r, kvo::noValueColor.r);
    EXPECT_FLOAT_EQ(c.colorOf(kvo::noQuality).r, kvo::noValueColor.r);
    std::swap(c.low, c.high);
    EXPECT_FLOAT_EQ(c.colorOf(20).b, 0.329f);
    c.low = c.high = 3;
    EXPECT_FLOAT_EQ(c.colorOf(3).b, 0.329f);
}

TEST(ColoringValues, BandsAreEven)
{
    Coloring c;
    c.bands = 4;
    EXPECT_EQ(c.colorOf(0.01f).g, c.colorOf(0.24f).g);
    EXPECT_NE(c.colorOf(0.24f).g, c.colorOf(0.26f).g);
    EXPECT_FLOAT_EQ(c.colorOf(0.99f).r, 0.993f);
    EXPECT_FLOAT_EQ(c.colorOf(0).b, 0.329f);
}

TEST(ColoringByValues, RangeOfTheFiniteOnes)
{
    const Coloring c = kvo::colorByValues("stress", "MPa", {{3, NAN, 8}, {}, {-1, INFINITY}});
    EXPECT_EQ(c.low, -1);
    EXPECT_EQ(c.high, 8);
    EXPECT_TRUE(c.byValue());
}

TEST(LegendNumbers, ShortButDifferent)
{
    EXPECT_EQ(kvo::legendNumbers(0, 1, 4), (std::vector<std::string>{"0", "0.25", "0.5", "0.75", "1"}));
    EXPECT_EQ(kvo::legendNumbers(1, 0, 2), (std::vector<std::string>{"1", "0.5", "0"}));
    const std::vector<std::string> close = kvo::legendNumbers(1000, 1000.5f, 5);
    for (std::size_t k = 1; k < close.size(); ++k) {
        EXPECT_NE(close[k], close[k - 1]);
    }
    EXPECT_EQ(kvo::legendNumbers(2, 2, 1).size(), 2u);
}

class ColoringDraws : public SceneTest
{
protected:
    Color at(const Picture& p, double x, double y, double z)
    {
        const Pixel pixel = pixelOf(*model, x, y, z);
        return p.at(pixel.x, pixel.y);
    }
    // Is the pixel's colour the given one, up to the light's factor?
    static bool has(Color pixel, const Rgb& color)
    {
        const float sum = float(pixel.r) + pixel.g + pixel.b, wanted = color.r + color.g + color.b;
        return sum > 30 && std::fabs(pixel.r / sum - color.r / wanted) < 0.02f &&
               std::fabs(pixel.g / sum - color.g / wanted) < 0.02f;
    }
};

TEST_F(ColoringDraws, CategoriesOfParts)
{
    PartInfoStr other = sheetPart(2), third = sheetPart(2);
    movePart(other, 3, 0, 0);
    movePart(third, 6, 0, 0);
    model.add(sheetPart(2)).add(other).add(third);
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    SceneView view(*model);
    Coloring c = kvo::colorByKey("key", {5, 2});
    view.setColoring(c);
    Picture p = picture(view);
    EXPECT_TRUE(has(at(p, 0.7, 1.3, 0), kvo::categoryColor(1)));
    EXPECT_TRUE(has(at(p, 3.7, 1.3, 0), kvo::categoryColor(0)));
    EXPECT_TRUE(has(at(p, 6.7, 1.3, 0), {0.5f, 0.25f, 0.125f})) << "no key: its own colour";
    model->selectPart(1);
    EXPECT_TRUE(has(at(picture(view), 0.7, 1.3, 0), {0, 0, 1}));
    model->clearSelectedParts();
    view.setColoring({});
    EXPECT_TRUE(has(at(picture(view), 0.7, 1.3, 0), {0.5f, 0.25f, 0.125f}));
}

TEST_F(ColoringDraws, ValuesOfElementsOnFacesLinesAndCaps)
{
    PartInfoStr beam = makePart(BEAM, 3, {0, 4, 0, 1, 4, 0, 2, 4, 0}, {0, 1, noNode, 1, 2, noNode});
    PartInfoStr block = blockPart(2);
    movePart(block, 4, 0, 0);
    model.add(sheetPart(2)).add(beam).add(block);
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    SceneView view(*model);
    view.look().lineWidth = 5;
    Coloring c = kvo::colorByValues("v", "", {{0, 1, NAN, 0.5f}, {0, 1}, {0, 0, 0, 0, 1, 1, 1, 1}});
    view.setColoring(c);
    const Rgb low = c.colorOf(0), high = c.colorOf(1);
    for (const int shade : {GL_FLAT, GL_SMOOTH}) {
        model->setShadeModel(static_cast<unsigned int>(shade));
        const Picture p = picture(view);
        EXPECT_TRUE(has(at(p, 0.4, 0.6, 0), low)) << shade;
        EXPECT_TRUE(has(at(p, 1.4, 0.6, 0), high)) << shade;
        EXPECT_TRUE(has(at(p, 0.4, 1.6, 0), kvo::noValueColor)) << shade;
        EXPECT_TRUE(has(at(p, 1.4, 1.6, 0), c.colorOf(0.5f))) << shade;
        EXPECT_TRUE(has(at(p, 0.5, 4, 0), low));
        EXPECT_TRUE(has(at(p, 1.5, 4, 0), high));
    }
    unsigned int part = 1, element = 2;
    model->selectElement(&part, &element);
    EXPECT_TRUE(has(at(picture(view), 1.4, 0.6, 0), {0, 0, 1})) << "selection wins";
    view.look().section.cut = kvo::SceneCut::Slice;
    for (const double side : {1.0, -1.0}) { // cut off the layer before the viewer, whichever it is
        const double plane[4] = {0, 0, side, side > 0 ? -0.5 : 1.5};
        std::copy(plane, plane + 4, view.look().section.plane);
        const Picture p = picture(view);
        EXPECT_TRUE(has(at(p, 5.4, 0.6, 1), low) || has(at(p, 5.4, 0.6, 1), high)) << side;
    }
}

TEST_F(ColoringDraws, QualityFromItsBestToTheWorstThereIs)
{
    const Floats nodes = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 4, 0, 0, 4, 1, 0};
    model.add(makePart(SHELL, 4, nodes, {0, 1, 2, 3, 1, 4, 5, 2})).add(beamPart());
    load();
    const Coloring c = kvo::colorByQuality(*model, kvo::Quality::EdgeRatio);
    EXPECT_EQ(c.title, "edge-ratio");
    EXPECT_EQ(c.low, 1);
    EXPECT_FLOAT_EQ(c.high, 3);
    EXPECT_EQ(c.values[1], (std::vector<float>{kvo::noQuality}));
    const Coloring perfect = kvo::colorByQuality(*model, kvo::Quality::Warpage);
    EXPECT_GT(perfect.high, perfect.low);
    const Coloring falling = kvo::colorByQuality(*model, kvo::Quality::ScaledJacobian);
    EXPECT_EQ(falling.low, 1);
    EXPECT_LT(falling.high, 1);
}

TEST_F(ColoringDraws, KindsPropertiesAndMaterials)
{
    model.add(hexaPart()).add(quadPart()).add(beamPart()).add(quadPart(2, 2));
    load();
    const Coloring kinds = kvo::colorByKind(*model);
    ASSERT_EQ(kinds.categories.size(), 3u);
    EXPECT_EQ(kinds.categories[0].name, "shell");
    EXPECT_EQ(kinds.categoryOfPart, (std::vector<int>{1, 0, 2, 0}));
    ModelInfo info;
    info.parts.resize(3);
    info.parts[0].part.id = 12; // the second part
    info.parts[0].part.materialId = 8;
    info.parts[0].part.materialName = "steel";
    info.parts[0].part.propertyId = 3;
    info.parts[1].part.id = 11;
    info.parts[1].part.materialId = 4;
    info.parts[2].part.id = 99; // not loaded
    const Coloring materials = kvo::colorByMaterial(*model, info);
    ASSERT_EQ(materials.categories.size(), 3u);
    EXPECT_EQ(materials.categories[0].name, "none");
    EXPECT_EQ(materials.categories[1].name, "4");
    EXPECT_EQ(materials.categories[2].name, "8 steel");
    EXPECT_EQ(materials.categoryOfPart, (std::vector<int>{1, 2, 0, 0}));
    EXPECT_EQ(kvo::colorByProperty(*model, info).categories.back().name, "3");
}

TEST_F(ColoringDraws, Golden)
{
    model.add(tubePart(36, 12, 4));
    load(GL_SMOOTH);
    SceneView view(*model);
    view.setFont(kvo::defaultFontFile());
    std::vector<float> values;
    for (int k = 0; k < 36 * 12; ++k) {
        values.push_back(k == 100 ? NAN : std::sin(0.3f * float(k % 36)) * float(k / 36));
    }
    view.setColoring(kvo::colorByValues("load", "kN", {values}));
    turn(*model, 30, 20);
    shrink(*model);
    EXPECT_PRED1(matchesGolden, (LookPicture{"color_values", picture(view)}));
    view.setColoring(kvo::colorByKey("key", {5}, {"a tube"}));
    EXPECT_PRED1(matchesGolden, (LookPicture{"color_category", picture(view)}));
}

} // namespace
