// Legend and id labels: where they are, and that they leave the frame alone.
#include <cstring>
#include <numeric>

#include "font.h"
#include "id_labels.h"
#include "legend.h"
#include "look_pictures.h"
#include "mantypes.h"
#include "scene_fixture.h"

namespace {

using kvo::Color;
using kvo::Coloring;
using kvo::IdLabel;
using kvo::OverlayPainter;
using kvo::Picture;
using kvo::SceneView;

class Labels : public SceneTest
{
protected:
    void prepare(SceneView& view, int viewType = TOP_VIEW)
    {
        model->getMViewPtr()->mViewType = viewType;
        view.setFont(kvo::defaultFontFile());
    }
    // Does text (ink on a plate) stand about a model point? Models are brown: grey and white are only text.
    std::size_t inkAbout(const Picture& p, double x, double y, double z, int across = 12, int up = 6)
    {
        const Pixel pixel = pixelOf(*model, x, y, z);
        std::size_t out = 0;
        for (int dy = -up; dy <= up; ++dy) {
            for (int dx = -across; dx <= across; ++dx) {
                if (pixel.x + dx >= 0 && pixel.x + dx < width && pixel.y + dy >= 0 && pixel.y + dy < height) {
                    const Color c = p.at(pixel.x + dx, pixel.y + dy);
                    out += c.r > 100 && c.r == c.g && c.g == c.b;
                }
            }
        }
        return out;
    }
    // A painter with a font, for the whole picture.
    struct Painter : OverlayPainter
    {
        Painter()
        {
            const int viewport[4] = {0, 0, Labels::width, Labels::height};
            setFont(std::make_unique<kvo::Font>(kvo::defaultFontFile(), 13));
            begin(viewport);
        }
    };
};

TEST_F(Labels, ElementsNodesAndPartsAtTheirPlaces)
{
    model.add(sheetPart(2));
    load();
    SceneView view(*model);
    prepare(view);
    EXPECT_EQ(inkAbout(picture(view), 0.5, 0.5, 0), 0u);
    view.look().labels.elements = true;
    Picture p = picture(view);
    EXPECT_GT(inkAbout(p, 0.5, 0.5, 0), 20u);
    EXPECT_GT(inkAbout(p, 1.5, 1.5, 0), 20u);
    EXPECT_EQ(inkAbout(p, 1, 1, 0), 0u);
    view.look().labels.elements = false;
    view.look().labels.nodes = true;
    p = picture(view);
    EXPECT_GT(inkAbout(p, 1, 1, 0), 5u);
    EXPECT_EQ(inkAbout(p, 0.5, 0.5, 0), 0u);
    view.look().labels.nodes = false;
    view.look().labels.parts = true;
    p = picture(view);
    std::size_t white = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            white += p.at(x, y) == Color{255, 255, 255, 255};
        }
    }
    EXPECT_GT(white, 8u);
    EXPECT_LT(white, 60u) << "one short number";
}

TEST_F(Labels, CoveredAndHiddenAndCutOnesHaveNone)
{
    const Floats above = {0, 0, 1, 4, 0, 1, 4, 4, 1, 0, 4, 1}, below = {0, 0, -1, 4, 0, -1, 4, 4, -1, 0, 4, -1};
    model.add(sheetPart(6)).add(makePart(SHELL, 4, above, {0, 1, 2, 3})).add(makePart(SHELL, 4, below, {0, 1, 2, 3}));
    load();
    SceneView view(*model);
    prepare(view);
    view.look().labels.nodes = true;
    Picture p = picture(view);
    EXPECT_EQ(inkAbout(p, 2, 2, 0), 0u) << "covered";
    EXPECT_GT(inkAbout(p, 5, 5, 0), 5u);
    model->setDisplay(2u, PART_HIDDEN);
    model->setDisplay(3u, PART_HIDDEN);
    p = picture(view);
    EXPECT_GT(inkAbout(p, 2, 2, 0), 5u);
    view.look().section.cut = kvo::SceneCut::Slice;
    const double plane[4] = {1, 0, 0, -3};
    std::copy(plane, plane + 4, view.look().section.plane);
    p = picture(view);
    EXPECT_EQ(inkAbout(p, 2, 2, 0), 0u) << "cut off";
    EXPECT_GT(inkAbout(p, 5, 5, 0), 5u);
    model->setDisplay(1u, PART_HIDDEN);
    p = picture(view);
    EXPECT_EQ(inkAbout(p, 5, 5, 0), 0u) << "hidden";
}

TEST_F(Labels, ThinnedOutUntilNoTwoTouch)
{
    const Painter painter;
    std::vector<IdLabel> labels;
    for (int k = 0; k < 5000; ++k) {
        labels.push_back({(k * 37) % width, (k * 91) % height, std::to_string(k * k), k % 3});
    }
    const std::vector<IdLabel> placed = thinOut(labels, painter, 4);
    EXPECT_GT(placed.size(), 30u);
    for (std::size_t a = 0; a < placed.size(); ++a) {
        const int half = painter.widthOf(placed[a].text) / 2;
        EXPECT_GE(placed[a].x - half, 0);
        EXPECT_LE(placed[a].x + half, width);
        for (std::size_t b = 0; b < a; ++b) {
            const int across = std::abs(placed[a].x - placed[b].x), up = std::abs(placed[a].y - placed[b].y);
            EXPECT_TRUE(2 * across >= painter.widthOf(placed[a].text) + painter.widthOf(placed[b].text) || up >= 13)
                << placed[a].text << " " << placed[b].text;
        }
    }
    EXPECT_EQ(placed.front().rank, 0);
}

TEST_F(Labels, LegendAtTheRightEdgeOnlyWithAFont)
{
    model.add(tubePart(8, 2, 8)); // slender: the sides stay free
    load();
    SceneView view(*model);
    prepare(view, LEFT_VIEW);
    view.setColoring(kvo::colorByValues("v", "", {{0, 1, 2, 3}}));
    const auto coloured = [&](const Picture& p) {
        std::size_t out = 0;
        for (int y = 0; y < height; ++y) {
            for (int x = width - 80; x < width; ++x) {
                out += p.at(x, y) != Color{0, 0, 0, 255};
            }
        }
        return out;
    };
    EXPECT_GT(coloured(picture(view)), 1000u);
    view.look().legend = false;
    EXPECT_EQ(coloured(picture(view)), 0u);
    view.look().legend = true;
    view.setFont("");
    EXPECT_EQ(coloured(picture(view)), 0u);
}

TEST_F(Labels, AFileThatIsNoFontIsAnErrorAndTheFontBeforeStays)
{
    model.add(sheetPart(2));
    load();
    SceneView view(*model);
    prepare(view);
    view.look().labels.elements = true;
    try {
        view.setFont("/nowhere/none.ttf", 20);
        ADD_FAILURE() << "no such file";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("/nowhere/none.ttf"), std::string::npos) << error.what();
    }
    EXPECT_THROW(view.setFont(kvo::defaultFontFile(), 3), std::runtime_error);
    EXPECT_GT(inkAbout(picture(view), 0.5, 0.5, 0), 20u);
}

TEST_F(Labels, FontsChangeBetweenFrames)
{
    model.add(sheetPart(2));
    load();
    SceneView view(*model);
    prepare(view);
    view.look().labels.elements = true;
    const std::size_t small = inkAbout(picture(view), 0.5, 0.5, 0, 40, 20);
    view.setFont(kvo::defaultFontFile(), 26);
    const std::size_t large = inkAbout(picture(view), 0.5, 0.5, 0, 40, 20);
    EXPECT_GT(large, 2 * small);
    view.setFont(kvo::defaultFontFile(), 13);
    EXPECT_EQ(inkAbout(picture(view), 0.5, 0.5, 0, 40, 20), small);
}

TEST_F(Labels, DepthMatricesAndStateStayTheFrames)
{
    model.add(sheetPart(3));
    load();
    SceneView view(*model);
    prepare(view);
    const auto depths = [&] {
        std::vector<float> out(std::size_t(width) * height);
        target.bind();
        glReadPixels(0, 0, width, height, GL_DEPTH_COMPONENT, GL_FLOAT, out.data());
        return out;
    };
    struct State
    {
        double matrices[4][16];
        int numbers[4];
        State(CAEEnv& env)
        {
            std::memcpy(matrices[0], env.getMTransformPtr()->mvMatrix, sizeof matrices[0]);
            std::memcpy(matrices[1], env.getMTransformPtr()->projMatrix, sizeof matrices[0]);
            glGetDoublev(GL_MODELVIEW_MATRIX, matrices[2]);
            glGetDoublev(GL_PROJECTION_MATRIX, matrices[3]);
            glGetIntegerv(GL_LIST_BASE, &numbers[0]);
            numbers[1] = glIsEnabled(GL_SCISSOR_TEST);
            glGetIntegerv(GL_MATRIX_MODE, &numbers[2]);
            GLint depth = 0;
            glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &depth);
            numbers[3] = depth;
        }
    };
    picture(view);
    picture(view);
    const State without(*model);
    const std::vector<float> plain = depths();
    view.look().labels.elements = view.look().labels.nodes = view.look().labels.parts = true;
    view.setColoring(kvo::colorByKey("k", {1}));
    picture(view);
    const State with(*model);
    EXPECT_EQ(std::memcmp(without.matrices, with.matrices, sizeof with.matrices), 0);
    EXPECT_EQ(std::memcmp(without.numbers, with.numbers, sizeof with.numbers), 0);
    EXPECT_EQ(plain, depths());
}

// Where there is not room for all, elements come before nodes.
TEST_F(Labels, NodesTakeNoRoomFromElements)
{
    model.add(sheetPart(16));
    load();
    SceneView view(*model);
    prepare(view);
    view.look().labels.elements = true;
    const Picture elements = picture(view);
    view.look().labels.nodes = true;
    const Picture both = picture(view);
    std::size_t ink = 0, lost = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool written = elements.at(x, y) == Color{255, 255, 255, 255};
            ink += written;
            lost += written && elements.at(x, y) != both.at(x, y);
        }
    }
    EXPECT_GT(ink, 500u);
    EXPECT_EQ(lost, 0u);
}

TEST_F(Labels, Golden)
{
    model.add(blockPart(3)).add([] {
        PartInfoStr tube = tubePart(12, 3, 3);
        movePart(tube, 5, 1, 0);
        return tube;
    }());
    load();
    SceneView view(*model);
    prepare(view, ISO_VIEW);
    view.look().style = kvo::SceneStyle::ShadedEdges;
    turn(*model, 20, 30);
    shrink(*model);
    view.look().labels.elements = true;
    EXPECT_PRED1(matchesGolden, (LookPicture{"labels_elements", picture(view)}));
    view.look().labels.elements = false;
    view.look().labels.nodes = view.look().labels.parts = true;
    EXPECT_PRED1(matchesGolden, (LookPicture{"labels_nodes_parts", picture(view)}));
}

// --- A legend that has no room ---

class LongLegend : public Labels
{
protected:
    // Category k is (k + 1, 255, 0) in the picture, so that its box tells which one it is.
    static Coloring categories(std::size_t count, const std::string& lastName = "")
    {
        Coloring out;
        out.title = "key";
        for (std::size_t k = 0; k < count; ++k) {
            out.categories.push_back({"category " + std::to_string(k), {float(k + 1) / 255, 1, 0}});
        }
        if (!lastName.empty()) {
            out.categories.back().name = lastName;
        }
        return out;
    }
    Picture legend(const Coloring& coloring)
    {
        glClear(GL_COLOR_BUFFER_BIT);
        Painter painter;
        kvo::drawLegend(painter, coloring);
        painter.draw();
        return target.read();
    }
    // The categories that have a box, from the top.
    static std::vector<int> boxes(const Picture& p)
    {
        std::vector<int> out;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const Color c = p.at(x, y);
                if (c.g == 255 && c.b == 0 && (out.empty() || out.back() != c.r - 1)) {
                    out.push_back(c.r - 1);
                }
            }
        }
        return out;
    }
    static std::vector<int> upTo(int count)
    {
        std::vector<int> out(static_cast<std::size_t>(count));
        std::iota(out.begin(), out.end(), 0);
        return out;
    }
};

TEST_F(LongLegend, WhatDoesNotFitIsCountedInTheLastLine)
{
    // Eleven lines fit below the title.
    EXPECT_EQ(boxes(legend(categories(3))), upTo(3));
    EXPECT_EQ(boxes(legend(categories(11))), upTo(11));
    for (const int count : {12, 13, 100}) {
        const Picture cut = legend(categories(static_cast<std::size_t>(count)));
        EXPECT_EQ(boxes(cut), upTo(10)) << count;
        // The same but for the last box as a list that fits and ends with these words.
        const Picture fits = legend(categories(11, "and " + std::to_string(count - 10) + " more"));
        ASSERT_EQ(boxes(fits), upTo(11));
        const kvo::PictureDifference difference = compare(cut, fits);
        EXPECT_GE(difference.differing, 81u) << count;
        EXPECT_LE(difference.differing, 121u) << count;
    }
}

TEST_F(LongLegend, NothingIsDrawnOverThePicturesEdge)
{
    for (const std::size_t count : {11u, 12u, 100u}) {
        const Picture p = legend(categories(count));
        std::size_t drawn = 0;
        for (int x = 0; x < width; ++x) {
            for (int y = height - 4; y < height; ++y) {
                drawn += p.at(x, y) != Color{0, 0, 0, 255};
            }
        }
        EXPECT_EQ(drawn, 0u) << count;
    }
}

} // namespace
