// The palette and where part colours come from.
#include <algorithm>
#include <array>
#include <cmath>

#include "modelfixture.h"
#include "readelements.h"

namespace {

typedef std::array<float, 4> Color;

double distance(const Color& a, const Color& b)
{
    return std::sqrt(std::pow(a[0] - b[0], 2) + std::pow(a[1] - b[1], 2) + std::pow(a[2] - b[2], 2));
}

std::vector<Color> firstColors(int count)
{
    ReadElements reader(nullptr, nullptr, nullptr);
    std::vector<Color> colors(count);
    for (Color& color : colors) {
        reader.randomColor(color.data());
    }
    return colors;
}

Color colorOf(const PartInfoStr& part)
{
    Color color;
    std::copy_n(part.partColor, 4, color.begin());
    return color;
}

void writeManyParts(const std::string& dir)
{
    ModelWriter writer(dir, "many");
    addNodes(writer, {1, 2, 3, 4});
    for (unsigned int id = 1; id <= 6; ++id) {
        addPart(writer, makePart(id, SHELL, 4), {id}, {1, 2, 3, 4});
    }
    writer.beginFile("many/more");
    for (unsigned int id = 7; id <= 9; ++id) {
        addPart(writer, makePart(id, SHELL, 4), {id}, {1, 2, 3, 4});
    }
    writeOrFail(writer);
}

} // namespace

TEST(Palette, GivesTheSameColorsInTheSameOrder)
{
    EXPECT_EQ(firstColors(50), firstColors(50));
}

TEST(Palette, StaysInRangeAndOpaque)
{
    for (const Color& color : firstColors(1000)) {
        for (float v : color) {
            EXPECT_TRUE(v >= 0 && v <= 1) << v;
        }
        EXPECT_EQ(color[3], 1);
    }
}

TEST(Palette, KeepsOffTheColorsOfSelectionAndHighlight)
{
    for (const Color& color : firstColors(1000)) {
        EXPECT_GT(distance(color, {0, 0, 1, 1}), 0.4);
        EXPECT_GT(distance(color, {0, 1, 0, 1}), 0.4);
        EXPECT_GT(color[0] + color[1] + color[2], 1.0); // visible on black
    }
}

TEST(Palette, SpreadsItsFirstColors)
{
    const std::vector<Color> colors = firstColors(12);
    for (std::size_t a = 0; a < colors.size(); ++a) {
        for (std::size_t b = 0; b < a; ++b) {
            EXPECT_GT(distance(colors[a], colors[b]), 0.1) << a << " " << b;
        }
    }
    for (std::size_t a = 1; a < colors.size(); ++a) {
        EXPECT_GT(distance(colors[a], colors[a - 1]), 0.25) << a;
    }
}

TEST(PartColors, FollowThePlaceInTheModelAcrossFiles)
{
    TempFolder folder;
    writeManyParts(folder.path);
    const LoadedModel model(folder.path, "many");
    const std::vector<Color> palette = firstColors(9);
    ASSERT_EQ(model.numParts, 9u);
    for (unsigned int k = 0; k < 9; ++k) {
        EXPECT_EQ(colorOf(model.parts[k]), palette[k]) << k;
    }
}

TEST(PartColors, AreTheSameWhenOnlySomePartsAreLoaded)
{
    TempFolder folder;
    writeManyParts(folder.path);
    const LoadedModel whole(folder.path, "many");
    Ids wanted = {8, 3};
    const LoadedModel some(folder.path, "many", &wanted);
    ASSERT_EQ(some.numParts, 2u);
    for (unsigned int id : wanted) {
        EXPECT_EQ(colorOf(some.part(id)), colorOf(whole.part(id)));
    }
}

TEST(PartColors, AreTheModelsOwnWhereItHasThem)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    addNodes(writer, {1, 2, 3});
    ModelPart part = makePart(1, SHELL, 4);
    part.hasColor = true;
    std::copy_n(std::array<float, 4>{0.25f, 0.5f, 0.75f, 0.5f}.begin(), 4, part.color);
    addPart(writer, part, {1}, {1, 2, 3, 3});
    writeOrFail(writer);
    EXPECT_EQ(colorOf(LoadedModel(folder.path, "m").part(1)), (Color{0.25f, 0.5f, 0.75f, 0.5f}));
}
