// What SceneView draws, on Mesa's processor driver.
#include "scene_fixture.h"

#include <unistd.h>

#include <cstdio>

#include "mantypes.h"

namespace {

using kvo::Color;
using kvo::Picture;
using kvo::SceneLight;
using kvo::SceneStyle;
using kvo::SceneView;

// Pixels that are not background.
std::size_t covered(const Picture& picture)
{
    std::size_t out = 0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            out += picture.at(x, y) != Color{0, 0, 0, 255};
        }
    }
    return out;
}

// Pixels of one colour in a rectangle; corners in any order.
std::size_t countOf(const Picture& picture, Color color, Pixel a, Pixel b)
{
    std::size_t out = 0;
    for (int y = std::min(a.y, b.y); y <= std::max(a.y, b.y); ++y) {
        for (int x = std::min(a.x, b.x); x <= std::max(a.x, b.x); ++x) {
            out += picture.at(x, y) == color;
        }
    }
    return out;
}

double residentMiB()
{
    long pages = 0, resident = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2) {
            resident = 0;
        }
        std::fclose(file);
    }
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024 * 1024);
}

// --- The same picture as the drawing library's ---

class SceneEqualsContract : public SceneTest
{
protected:
    // Differing pixels over all views, and after a turn.
    void expectEqual(std::size_t allowed, int tolerance)
    {
        SceneView view(*model);
        view.look().light = SceneLight::Contract;
        for (int viewType = ISO_VIEW; viewType <= BACK_VIEW; ++viewType) {
            model->getMViewPtr()->mViewType = viewType;
            const Picture wanted = contractPicture();
            const Picture drawn = picture(view);
            const kvo::PictureDifference difference = compare(wanted, drawn, tolerance);
            EXPECT_LE(difference.differing, allowed) << "view " << viewType << " largest " << difference.largest;
            EXPECT_GT(covered(drawn), 0u) << "view " << viewType;
        }
    }
};

TEST_F(SceneEqualsContract, FlatQuadrilaterals)
{
    model.add(tubePart(48, 20, 3));
    load(GL_FLAT);
    expectEqual(0, 1);
}

TEST_F(SceneEqualsContract, SmoothQuadrilaterals)
{
    model.add(tubePart(48, 20, 3));
    load(GL_SMOOTH);
    expectEqual(0, 1);
}

TEST_F(SceneEqualsContract, FlatSolidsButForSpecks)
{
    model.add(blockPart(8));
    load(GL_FLAT);
    expectEqual(30, 1);
}

TEST_F(SceneEqualsContract, SelectedElementsPartsAndHighlights)
{
    PartInfoStr sheet = sheetPart(6);
    PartInfoStr other = sheetPart(4), third = sheetPart(2);
    movePart(other, 7, 0, 0);
    movePart(third, 7, 5, 0);
    model.add(sheet).add(other).add(third);
    load(GL_FLAT);
    for (unsigned int element : {1u, 8u, 36u}) {
        unsigned int part = 1, number = element;
        model->selectElement(&part, &number);
    }
    model->selectPart(2);
    model->highlightPart(3);
    expectEqual(0, 1);
}

// Far more faces than pixels: those between the pixels' middles are not sent to OpenGL, and the picture is the same.
TEST_F(SceneEqualsContract, FacesMuchSmallerThanPixels)
{
    model.add(tubePart(600, 300, 3));
    load(GL_FLAT);
    expectEqual(0, 1);
    SceneView view(*model);
    picture(view);
    EXPECT_LT(view.lastFrame().faces, 90000u);
}

TEST_F(SceneEqualsContract, TrianglesMuchSmallerThanPixels)
{
    model.add(sheetPart(340, true));
    load(GL_SMOOTH);
    expectEqual(0, 1);
}

// --- What is shown ---

class SceneDraws : public SceneTest
{
protected:
    Color at(const Picture& p, double x, double y, double z)
    {
        const Pixel pixel = pixelOf(*model, x, y, z);
        return p.at(pixel.x, pixel.y);
    }
};

bool bluish(Color c)
{
    return c.b > 60 && c.r < c.b / 2 && c.g < c.b / 2;
}

bool greenish(Color c)
{
    return c.g > 60 && c.r < c.g / 2 && c.b < c.g / 2;
}

TEST_F(SceneDraws, EverySolidShapeIsLitOnAllSides)
{
    PartInfoStr parts[] = {hexaPart(), tetraPart(), pentaPart()};
    for (int k = 0; k < 3; ++k) {
        movePart(parts[k], 2.0f * float(k), 0, 0);
        model.add(parts[k]);
    }
    for (int shade : {GL_FLAT, GL_SMOOTH}) {
        if (shade == GL_FLAT) {
            load(shade);
        } else {
            model->setShadeModel(GL_SMOOTH);
        }
        SceneView view(*model);
        view.look().axes = false; // their smooth edges are dark
        for (int viewType = ISO_VIEW; viewType <= BACK_VIEW; ++viewType) {
            model->getMViewPtr()->mViewType = viewType;
            const Picture p = picture(view);
            std::size_t dark = 0;
            for (int y = 0; y < height; ++y) {
                for (int x = 0; x < width; ++x) {
                    const Color c = p.at(x, y);
                    dark += c != Color{0, 0, 0, 255} && std::max({c.r, c.g, c.b}) < 0.25 * 128;
                }
            }
            EXPECT_EQ(dark, 0u) << "view " << viewType << " shade " << shade;
        }
    }
}

TEST_F(SceneDraws, SelectionsOfTheEnvironmentAtTheNextFrame)
{
    model.add(sheetPart(4));
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    SceneView view(*model);
    Picture p = picture(view);
    EXPECT_FALSE(bluish(at(p, 0.5, 0.5, 0)));
    unsigned int part = 1, element = 1;
    model->selectElement(&part, &element);
    p = picture(view);
    EXPECT_TRUE(bluish(at(p, 0.5, 0.5, 0)));
    EXPECT_FALSE(bluish(at(p, 1.5, 0.5, 0)));
    model->clearSelectedElements();
    EXPECT_FALSE(bluish(at(picture(view), 0.5, 0.5, 0)));
    model->highlightPart(1);
    EXPECT_TRUE(greenish(at(picture(view), 0.5, 0.5, 0)));
    model->selectPart(1);
    EXPECT_TRUE(bluish(at(picture(view), 0.5, 0.5, 0)));
}

TEST_F(SceneDraws, OtherSelectionCharactersRepeatTheElementBefore)
{
    model.add(sheetPart(4));
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    model->createElementSelectedList();
    model.part(0).partFlag |= PART_ELEMENTS_SELECTED;
    const char flags[] = {'x', '1', 'x', '0'};
    std::copy(flags, flags + 4, model.part(0).partElements.selectedList);
    SceneView view(*model);
    const Picture p = picture(view);
    EXPECT_FALSE(bluish(at(p, 0.5, 0.5, 0)));
    EXPECT_TRUE(bluish(at(p, 1.5, 0.5, 0)));
    EXPECT_TRUE(bluish(at(p, 2.5, 0.5, 0)));
    EXPECT_FALSE(bluish(at(p, 3.5, 0.5, 0)));
}

TEST_F(SceneDraws, HiddenPartsAreNotThereAndGhostsArePale)
{
    model.add(sheetPart(2));
    PartInfoStr other = sheetPart(2);
    movePart(other, 2.1f, 0, 0);
    model.add(other);
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    SceneView view(*model);
    picture(view);
    model->setDisplay(2u, PART_HIDDEN);
    const Picture one = picture(view);
    EXPECT_NE(at(one, 1, 1, 0), (Color{0, 0, 0, 255}));
    EXPECT_EQ(at(one, 2.3, 0.5, 0), (Color{0, 0, 0, 255}));
    view.look().ghosts = true;
    const Picture ghost = picture(view);
    const Color pale = at(ghost, 2.3, 0.5, 0);
    EXPECT_GT(pale.r, 5);
    EXPECT_LT(pale.r, 60);
    EXPECT_EQ(at(ghost, 0.5, 0.5, 0), at(one, 0.5, 0.5, 0));
}

TEST_F(SceneDraws, BeamsAndSpringsInTheirColours)
{
    PartInfoStr beam = beamPart();
    paintPart(beam, 1, 0, 0);
    PartInfoStr spring = discretePart();
    movePart(spring, 0, 1, 0);
    paintPart(spring, 0, 1, 0);
    model.add(beam).add(spring);
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    SceneView view(*model);
    view.look().lineWidth = 5;
    Picture p = picture(view);
    EXPECT_EQ(at(p, 0.5, 0, 0), (Color{255, 0, 0, 255}));
    EXPECT_EQ(at(p, 0.05, 1, 0), (Color{0, 255, 0, 255}));
    const Pixel low = pixelOf(*model, 0.2, 0.975, 0), high = pixelOf(*model, 0.8, 0.955, 0);
    EXPECT_GT(countOf(p, {0, 255, 0, 255}, low, high), 20u) << "a coil";
    unsigned int part = 1, element = 1;
    model->selectElement(&part, &element);
    model->highlightPart(2);
    p = picture(view);
    EXPECT_TRUE(bluish(at(p, 0.5, 0, 0)));
    EXPECT_TRUE(greenish(at(p, 0.05, 1, 0)));
}

TEST_F(SceneDraws, SelectedNodes)
{
    model.add(sheetPart(2));
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    std::vector<unsigned int> ids = {5};
    model->selectNodes(ids);
    SceneView view(*model);
    const Picture p = picture(view);
    EXPECT_TRUE(bluish(at(p, 1, 1, 0)));
}

TEST_F(SceneDraws, SelectedNodesOfHiddenPartsAreNotThere)
{
    PartInfoStr above = sheetPart(2); // so that the frame stays when it is hidden
    movePart(above, 0, 0, 1);
    model.add(sheetPart(2)).add(above);
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    unsigned int part = 2, node = 5;
    model->selectNode(&part, &node);
    SceneView view(*model);
    EXPECT_TRUE(bluish(at(picture(view), 1, 1, 1)));
    model.part(1).partFlag ^= PART_HIDDEN | PART_SHOWN;
    EXPECT_FALSE(bluish(at(picture(view), 1, 1, 1)));
}

// The selection of the whole model's nodes, which no part holds.
TEST_F(SceneDraws, NodesSelectedInTheModelsOwnList)
{
    model.add(sheetPart(2));
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    SceneView view(*model);
    float nodes[] = {0.5f, 1.5f, 0, 1.5f, 0.5f, 0};
    char flags[] = {'0', SELECTED_CHAR};
    model->nodeValues = nodes;
    model->selectedNodes = flags;
    model->numNodes = 2;
    const Picture off = picture(view);
    model->compFlag |= NODE_LIST_SELECTED;
    const Picture on = picture(view);
    model->compFlag &= ~NODE_LIST_SELECTED;
    model->nodeValues = nullptr; // they belong to this test
    model->selectedNodes = nullptr;
    model->numNodes = 0;
    EXPECT_FALSE(bluish(at(off, 1.5, 0.5, 0)));
    EXPECT_TRUE(bluish(at(on, 1.5, 0.5, 0)));
    EXPECT_FALSE(bluish(at(on, 0.5, 1.5, 0)));
}

TEST_F(SceneDraws, TransparentAndGhostlyBeamsAreLines)
{
    PartInfoStr beam = beamPart(), other = beamPart();
    paintPart(beam, 1, 0, 0, 0.5f);
    movePart(other, 0, 0.3f, 0);
    model.add(beam).add(other);
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    SceneView view(*model);
    view.look().lineWidth = 5;
    const auto reds = [&](double y) { // across the beam
        const Picture p = picture(view);
        const Pixel middle = pixelOf(*model, 0.5, y, 0);
        std::vector<int> out;
        for (int k = -3; k <= 3; ++k) {
            out.push_back(p.at(middle.x, middle.y + k).r);
        }
        return out;
    };
    const auto wide = [&](double y, int red) {
        const std::vector<int> seen = reds(y);
        return std::count_if(seen.begin(), seen.end(), [red](int value) { return std::abs(value - red) < 8; });
    };
    EXPECT_EQ(wide(0, 124), 5) << "half of its colour, within the blend's precision";
    model.part(1).partFlag ^= PART_HIDDEN | PART_SHOWN;
    EXPECT_EQ(wide(0.3, 0), 7);
    view.look().ghosts = true;
    EXPECT_EQ(wide(0.3, static_cast<int>(0.12 * 0.7 * 255)), 5);
}

TEST_F(SceneDraws, TransparencyDoesNotDependOnTheOrderOfParts)
{
    // Two panes before an opaque sheet, in both orders of the list.
    Picture pictures[2];
    for (int order = 0; order < 2; ++order) {
        std::optional<kvo::OutputRedirect> quiet("");
        TestModel panes(GL_FLAT);
        PartInfoStr sheet = sheetPart(4), red = sheetPart(3), green = sheetPart(3);
        movePart(red, 0, 0, 1);
        movePart(green, 1, 1, -1);
        paintPart(sheet, 1, 1, 1);
        paintPart(red, 1, 0, 0, 0.5f);
        paintPart(green, 0, 1, 0, 0.5f);
        panes.add(order ? green : red).add(sheet).add(order ? red : green);
        panes.install();
        glViewport(0, 0, width, height);
        panes->resizeModel(width, height);
        panes->switchOnLights();
        panes->setShadeModel(GL_FLAT);
        quiet.reset();
        SceneView view(*panes);
        pictures[order] = picture(view);
    }
    EXPECT_EQ(compare(pictures[0], pictures[1], 1).differing, 0u);
}

TEST_F(SceneDraws, AbsentElementsShowWhatIsBehind)
{
    model.add(blockPart(3));
    load();
    SceneView view(*model);
    picture(view);
    EXPECT_EQ(view.lastFrame().faces, 54u);
    view.setAbsentElements({std::vector<char>(27, 0)});
    std::vector<char> absent(27, 0);
    absent[26] = 1;
    view.setAbsentElements({absent});
    picture(view);
    EXPECT_EQ(view.lastFrame().faces, 54u) << "three faces gone, three come to light";
    absent[13] = 1;
    view.setAbsentElements({absent});
    picture(view);
    EXPECT_EQ(view.lastFrame().faces, 60u);
}

TEST_F(SceneDraws, EdgesOverFaces)
{
    model.add(sheetPart(4));
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    SceneView view(*model);
    view.look().edgeColor[0] = 1;
    view.look().style = SceneStyle::ShadedEdges;
    Picture p = picture(view);
    const auto red = [&](double x, double y) {
        const Pixel pixel = pixelOf(*model, x, y, 0);
        for (int dx = -1; dx <= 1; ++dx) {
            for (int dy = -1; dy <= 1; ++dy) {
                if (p.at(pixel.x + dx, pixel.y + dy) == Color{255, 0, 0, 255}) {
                    return true;
                }
            }
        }
        return false;
    };
    EXPECT_TRUE(red(1, 1.5));
    EXPECT_TRUE(red(1.5, 3));
    EXPECT_FALSE(red(1.5, 1.5)) << "no diagonals";
    for (SceneStyle style : {SceneStyle::HiddenLine, SceneStyle::Wire}) {
        view.look().style = style;
        p = picture(view);
        EXPECT_TRUE(red(1, 1.5));
        EXPECT_EQ(at(p, 1.5, 1.5, 0), (Color{0, 0, 0, 255}));
    }
}

// --- Cost ---

TEST_F(SceneDraws, ManyPartsInAsManyCallsAsOne)
{
    for (int k = 0; k < 50; ++k) {
        PartInfoStr part = sheetPart(2);
        movePart(part, 2.0f * float(k % 10), 2.0f * float(k / 10), 0);
        paintPart(part, float(k) / 50, 0.5, 0.5);
        model.add(part);
    }
    load();
    SceneView view(*model);
    picture(view);
    EXPECT_EQ(view.lastFrame().drawCalls, 1u);
    EXPECT_EQ(view.lastFrame().faces, 200u);
}

TEST_F(SceneDraws, BlocksOutsideTheViewAreSkipped)
{
    model.add(sheetPart(100));
    load();
    SceneView view(*model);
    model->getMViewPtr()->mViewType = TOP_VIEW;
    picture(view);
    EXPECT_EQ(view.lastFrame().culledBlocks, 0u);
    float zoom[4] = {0.2f, 0, 0, 0};
    for (int k = 0; k < 100; ++k) {
        model->getMTransformPtr()->updateValues(GLOBAL_SCALE, zoom);
    }
    picture(view);
    EXPECT_GT(view.lastFrame().culledBlocks, 20u);
    EXPECT_GT(view.lastFrame().faces, 0u);
}

TEST_F(SceneDraws, CoarselyWhileMovingAndExactlyAtRest)
{
    model.add(sheetPart(200));
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    SceneView view(*model);
    const Picture exact = picture(view);
    view.look().frameBudget = 1e-3f; // no exact frame is as quick
    view.look().moving = true;
    picture(view);
    EXPECT_FALSE(view.lastFrame().coarse) << "nothing was measured yet";
    const Picture moving = picture(view);
    EXPECT_TRUE(view.lastFrame().coarse);
    EXPECT_LT(view.lastFrame().faces, 1000u);
    EXPECT_GT(covered(moving), covered(exact) * 8 / 10);
    view.look().moving = false;
    EXPECT_EQ(compare(picture(view), exact).differing, 0u);
    view.look().moving = true;
    view.look().frameBudget = 1e6f;
    picture(view);
    EXPECT_FALSE(view.lastFrame().coarse) << "there is time enough";
}

// A coarse frame says nothing about how long an exact one takes: all frames of a movement are equally coarse.
TEST_F(SceneDraws, CoarseFramesAreNotTakenForExactOnes)
{
    model.add(sheetPart(500));
    load();
    model->getMViewPtr()->mViewType = TOP_VIEW;
    SceneView view(*model);
    view.look().style = SceneStyle::ShadedEdges; // every face is sent, so that exact frames are slow
    view.look().moving = true;
    view.look().frameBudget = 0.1f;
    picture(view); // measured
    std::vector<std::size_t> faces;
    for (int k = 0; k < 6; ++k) {
        picture(view);
        ASSERT_TRUE(view.lastFrame().coarse);
        faces.push_back(view.lastFrame().faces);
    }
    EXPECT_EQ(faces, std::vector<std::size_t>(6, faces[0]));
}

TEST_F(SceneDraws, WithoutOverlaysOnRequest)
{
    model.add(quadPart());
    load();
    SceneView view(*model);
    model->setDisplay(1u, PART_HIDDEN);
    EXPECT_GT(covered(picture(view)), 0u) << "the axes in the corner";
    view.look().axes = false;
    EXPECT_GT(covered(picture(view)), 0u) << "the environment's triad";
    view.look().frameOverlays = false;
    EXPECT_EQ(covered(picture(view)), 0u);
}

// Nothing is left behind in the context by many frames whose selections change.
TEST_F(SceneDraws, TenThousandFramesKeepNoMemory)
{
    PartInfoStr glass = blockPart(2);
    paintPart(glass, 1, 1, 1, 0.5f);
    model.add(sheetPart(6)).add(glass).add(beamPart());
    load();
    SceneView view(*model);
    const auto frames = [&](int count) {
        for (int k = 0; k < count; ++k) {
            unsigned int part = 1, element = 1 + static_cast<unsigned int>(k) % 36;
            model->selectElement(&part, &element);
            if (k % 50 == 0) {
                model->clearSelectedElements();
            }
            model.part(2).partFlag ^= PART_HIDDEN | PART_SHOWN;
            view.draw();
        }
        glFinish();
    };
    const kvo::OutputRedirect quiet("");
    glViewport(0, 0, 16, 16);
    frames(1000);
    const double before = residentMiB();
    frames(9000);
#ifndef KVO_SANITIZED // which keeps what is freed for a while
    EXPECT_LT(residentMiB() - before, 4);
#else
    (void)before;
#endif
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(SceneDraws, LeavesTheContextAsItWas)
{
    model.add(blockPart(2));
    load();
    glPolygonOffset(3, 0);
    SceneView view(*model);
    view.look().style = SceneStyle::ShadedEdges;
    picture(view);
    float factor = 0;
    glGetFloatv(GL_POLYGON_OFFSET_FACTOR, &factor);
    EXPECT_EQ(factor, 3);
    EXPECT_FALSE(glIsEnabled(GL_CULL_FACE));
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
    GLint program = 1;
    glGetIntegerv(0x8B8D, &program); // GL_CURRENT_PROGRAM
    EXPECT_EQ(program, 0);
}

} // namespace
