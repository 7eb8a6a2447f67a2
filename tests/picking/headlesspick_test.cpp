// Part picks in real selection mode: one click and a rectangle, what lies in front, hidden parts, the axis triad that
// is drawn in the pass, a pick before any frame.
#include "headlesspick.h"

namespace {
const WindowPoint corner = {8, 8, 0}; // of the window: outside of every model here

// Three squares above each other, in three colours, that share the spot (0.5, 0.5); given from back to front or not.
std::vector<PartInfoStr> stack(float z1, float z2, float z3)
{
    std::vector<PartInfoStr> parts;
    for (float z : {z1, z2, z3}) {
        const float s = 1 + 0.5f * static_cast<float>(parts.size());
        parts.push_back(makePart(SHELL, 4, {-s, -s, z, s, -s, z, s, s, z, -s, s, z}, {0, 1, 2, 3}));
        const float color[3][4] = {{1, 1, 0, 1}, {0, 1, 1, 1}, {1, 0, 1, 1}};
        std::copy(color[parts.size() - 1], color[parts.size() - 1] + 4, parts.back().partColor);
    }
    return parts;
}

class HeadlessParts : public HeadlessPick
{
protected:
    // The part number with the smallest depth at the given spot of its plane, worked out without OpenGL's depth buffer.
    unsigned int frontmost(float x, float y)
    {
        unsigned int best = 0;
        double smallest = 2;
        for (unsigned int k = 0; k < env->numParts; ++k) {
            const double depth = project(x, y, model->part(k).partNodes.nodeValues[2]).depth;
            if (depth < smallest) {
                smallest = depth;
                best = k + 1;
            }
        }
        return best;
    }

    static kvo::Color colorOf(const PartInfoStr& part)
    {
        kvo::Color color;
        color.r = static_cast<std::uint8_t>(255 * part.partColor[0]);
        color.g = static_cast<std::uint8_t>(255 * part.partColor[1]);
        color.b = static_cast<std::uint8_t>(255 * part.partColor[2]);
        return color;
    }
};
} // namespace

// --- Clicks ---

TEST_F(HeadlessParts, ClickSelectsThePartUnderIt)
{
    show({square(-3, 0, 0), square(3, 0, 1), square(3, 4, 2)});
    for (unsigned int part = 0; part < 3; ++part) {
        clearSelection();
        EXPECT_EQ(click(PICK_TYPE_PART, middle(part, 0)), 1);
        EXPECT_EQ(selectedParts(), Indices{part + 1});
        ASSERT_EQ(pick.zPartMap.size(), 2u);
        EXPECT_EQ(pick.zPartMap.begin()->second.pid, part + 1);
        EXPECT_EQ(pick.zPartMap.begin()->second.eid, 0u);
        EXPECT_NEAR(pick.zPartMap.begin()->first, middle(part, 0).depth, 1e-6);
        EXPECT_NEAR(pick.zPartMap.rbegin()->first, middle(part, 0).depth, 1e-6);
    }
}

TEST_F(HeadlessParts, ClickBesideEveryPartSelectsNothing)
{
    show({square(-3, 0, 0), square(3, 0, 1)});
    EXPECT_EQ(click(PICK_TYPE_PART, corner), 0);
    EXPECT_TRUE(pick.zPartMap.empty());
    EXPECT_TRUE(nothingSelected());
    const std::vector<std::string> lines = splitLines(printed());
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], "MOUSEXY=8,8,3,3");
    EXPECT_EQ(lines[1].find("TIME FOR DISPLAY PARTS="), 0u);
}

TEST_F(HeadlessParts, ClickIsMeasuredUpwardsFromTheLowerLeft)
{
    show({square(0, -3, 0), square(0, 3, 0)});
    const WindowPoint spot = middle(0, 0);
    click(PICK_TYPE_PART, {spot.x, windowHeight - spot.y, 0}); // mirrored: the other part
    EXPECT_EQ(selectedParts(), Indices{2});
}

TEST_F(HeadlessParts, RegionReachesAsFarAsItsSize)
{
    show({square(0, 0, 0), square(5, 5, 0)});
    const WindowPoint left = project(4, 5, 0); // on the second square's edge
    EXPECT_EQ(process(PICK_TYPE_PART, SELECT_PICK, {static_cast<float>(left.x) - 6, static_cast<float>(left.y), 8, 8}),
              0);
    EXPECT_EQ(process(PICK_TYPE_PART, SELECT_PICK, {static_cast<float>(left.x) - 6, static_cast<float>(left.y), 14, 8}),
              1);
    EXPECT_EQ(selectedParts(), Indices{2});
}

TEST_F(HeadlessParts, NextFrameDrawsThePickedPartInTheSelectionColour)
{
    show({colored(square(-3, 0, 0), 1, 1, 0), colored(square(3, 0, 0), 0, 1, 0)});
    const WindowPoint spot = middle(1, 0);
    EXPECT_EQ(pixelAt(spot), (kvo::Color{0, 255, 0, 255}));
    click(PICK_TYPE_PART, spot);
    draw();
    EXPECT_EQ(pixelAt(spot), (kvo::Color{0, 0, 255, 255}));
    EXPECT_EQ(pixelAt(middle(0, 0)), (kvo::Color{255, 255, 0, 255}));
}

TEST_F(HeadlessParts, PickingTwiceGivesTheSameAnswer)
{
    show({square(-3, 0, 0), square(3, 0, 1)});
    for (int k = 0; k < 3; ++k) {
        clearSelection();
        EXPECT_EQ(click(PICK_TYPE_PART, middle(1, 0)), 1);
        EXPECT_EQ(selectedParts(), Indices{2});
    }
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(HeadlessParts, ClickFollowsRotationPanAndScale)
{
    show({square(-3, 0, 0), square(3, 0, 1), square(0, 4, -2)});
    float drag[] = {200, 150, 260, 120};
    env->mTrans->updateValues(GLOBAL_ROTATION, drag);
    env->mTrans->updateValues(TRANS_RIGHT, nullptr);
    draw();
    env->mTrans->updateValues(SCALE_DECR, nullptr);
    draw();
    for (unsigned int part = 0; part < 3; ++part) {
        clearSelection();
        draw(); // a pick leaves its own projection behind
        EXPECT_EQ(click(PICK_TYPE_PART, middle(part, 0)), 1) << part;
        EXPECT_EQ(selectedParts(), Indices{part + 1});
    }
}

TEST_F(HeadlessParts, EveryShadingAndShapeIsPicked)
{
    for (int shadeModel : {GL_FLAT, GL_SMOOTH}) {
        show({square(4, 4, 0), hexaPart(), discretePart()}, ISO_VIEW, shadeModel);
        for (unsigned int part : {0u, 1u}) {
            clearSelection();
            EXPECT_GE(click(PICK_TYPE_PART, middle(part, 0)), 1) << part;
            EXPECT_EQ(selectedParts(), Indices{part + 1});
        }
    }
}

TEST_F(HeadlessParts, DiscretePartsArePickedAndBeamPartsAreNot)
{
    show({makePart(DISCRETE, 3, {4, 1, 0, 8, 1, 0}, {0, 1, 0}), makePart(BEAM, 3, {4, 4, 0, 8, 4, 0}, {0, 1, noNode}),
          hidden(square(0, 0, 0))});
    EXPECT_EQ(click(PICK_TYPE_PART, middle(0, 0)), 1);
    EXPECT_EQ(selectedParts(), Indices{1});
    EXPECT_EQ(click(PICK_TYPE_PART, middle(1, 0)), 0) << "a frame does not draw it either";
}

// --- In front of each other ---

TEST_F(HeadlessParts, WithDepthTestingThePartDrawnOnTopWins)
{
    const float heights[][3] = {{0, 1, 2}, {2, 1, 0}, {1, 2, 0}, {0, 2, 1}, {1, 0, 2}, {2, 0, 1}};
    for (int viewType : {TOP_VIEW, BOTTOM_VIEW}) {
        for (const float* z : heights) {
            show(stack(z[0], z[1], z[2]), viewType);
            const WindowPoint spot = project(0.5f, 0.5f, 0);
            EXPECT_EQ(click(PICK_TYPE_PART, spot), 3);
            const unsigned int front = frontmost(0.5f, 0.5f);
            EXPECT_EQ(selectedParts(), Indices{front});
            clearSelection();
            draw();
            EXPECT_EQ(pixelAt(spot), colorOf(model->part(front - 1))) << "what is seen is what is picked";
        }
    }
}

TEST_F(HeadlessParts, HitsAreOrderedByDepth)
{
    show(stack(1, 2, 0));
    click(PICK_TYPE_PART, project(0.5f, 0.5f, 0));
    Indices byDepth, expected = {1, 2, 3};
    for (const auto& entry : pick.zPartMap) {
        byDepth.push_back(entry.second.pid);
    }
    std::sort(expected.begin(), expected.end(),
              [&](unsigned int a, unsigned int b) { return middle(a - 1, 0).depth < middle(b - 1, 0).depth; });
    EXPECT_EQ(byDepth, (Indices{expected[0], expected[0], expected[1], expected[1], expected[2], expected[2]}));
    const std::string text = printed();
    EXPECT_NE(text.find("FIRST PART=" + std::to_string(expected[0]) + "\n"), std::string::npos);
    EXPECT_NE(text.find("LAST PART=" + std::to_string(expected[2]) + "\n"), std::string::npos);
}

TEST_F(HeadlessParts, SmallerEyeDepthIsInFront)
{
    show(stack(0, 1, 2));
    const float* z = nullptr;
    double eye[2];
    for (unsigned int part : {0u, 2u}) { // the third row of the modelview
        z = model->part(part).partNodes.nodeValues + 2;
        eye[part / 2] = modelview[10] * z[0] + modelview[14];
    }
    click(PICK_TYPE_PART, project(0.5f, 0.5f, 0));
    EXPECT_EQ(selectedParts(), Indices{eye[0] < eye[1] ? 1u : 3u}) << "near and far planes are exchanged";
}

TEST_F(HeadlessParts, WithoutDepthTestingTheLastPartDrawnWins)
{
    for (float top : {0.0f, 5.0f}) {
        show(stack(1, 2, top));
        env->setHideMode(0);
        draw();
        const WindowPoint spot = project(0.5f, 0.5f, 0);
        EXPECT_EQ(click(PICK_TYPE_PART, spot), 3);
        EXPECT_EQ(selectedParts(), Indices{3});
        EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
        clearSelection();
        draw();
        EXPECT_EQ(pixelAt(spot), colorOf(model->part(2))) << "it is painted over the others, too";
    }
}

TEST_F(HeadlessParts, OfEqualDepthsTheEarlierPartWins)
{
    show({square(3, 0, 1), square(3, 0, 1), hidden(square(-3, 0, 0))});
    EXPECT_EQ(click(PICK_TYPE_PART, middle(0, 0)), 2);
    EXPECT_EQ(selectedParts(), Indices{1});
    env->clearSelectedParts();
    env->setHideMode(0);
    EXPECT_EQ(click(PICK_TYPE_PART, middle(0, 0)), 2);
    EXPECT_EQ(selectedParts(), Indices{2});
}

// --- Rectangles ---

TEST_F(HeadlessParts, RectangleSelectsThePartsThatItTouches)
{
    std::vector<PartInfoStr> grid;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 5; ++column) {
            grid.push_back(square(3.0f * static_cast<float>(column) + 3, 3.0f * static_cast<float>(row) + 3,
                                  static_cast<float>((row + column) % 3)));
        }
    }
    show(grid);
    const Region regions[] = {{100, 100, 90, 70}, {200, 150, 300, 60}, {333, 222, 40, 140}, {60, 250, 17, 31}};
    for (const Region& region : regions) {
        clearSelection();
        Indices expected;
        for (unsigned int part = 0; part < env->numParts; ++part) {
            const WindowPoint a = node(part, 0), b = node(part, 2);
            const bool apart =
                std::max(a.x, b.x) < region.x - region.width / 2 || std::min(a.x, b.x) > region.x + region.width / 2 ||
                std::max(a.y, b.y) < region.y - region.height / 2 || std::min(a.y, b.y) > region.y + region.height / 2;
            if (!apart) {
                expected.push_back(part + 1);
            }
        }
        ASSERT_FALSE(expected.empty());
        ASSERT_LT(expected.size(), grid.size());
        EXPECT_EQ(process(PICK_TYPE_PART, RECT_PICK, region), static_cast<int>(expected.size()));
        EXPECT_EQ(selectedParts(), expected);
    }
}

TEST_F(HeadlessParts, RectangleSelectsWhatIsCoveredToo)
{
    show(stack(0, 1, 2));
    EXPECT_EQ(process(PICK_TYPE_PART, RECT_PICK, Region::around(project(0.5f, 0.5f, 0))), 3);
    EXPECT_EQ(selectedParts(), (Indices{1, 2, 3}));
}

TEST_F(HeadlessParts, RectangleOverTheWindowSelectsEveryVisiblePart)
{
    for (bool depthTest : {true, false}) {
        show({square(-3, 0, 0), hidden(square(3, 0, 1)), square(3, 4, 2)});
        env->setHideMode(depthTest);
        EXPECT_EQ(process(PICK_TYPE_PART, RECT_PICK, wholeWindow()), 2)
            << "the triad's hit is in the last part's record";
        EXPECT_EQ(selectedParts(), (Indices{1, 3}));
    }
}

TEST_F(HeadlessParts, RegionWithoutSizeIsTheWholeWindow)
{
    show({square(-3, 0, 0), square(3, 4, 2)});
    for (const Region& region : {Region{10, 10, 0, 5}, Region{10, 10, 5, 0}, Region{10, 10, -5, 5}}) {
        clearSelection();
        EXPECT_EQ(process(PICK_TYPE_PART, RECT_PICK, region), 2);
        EXPECT_EQ(selectedParts(), (Indices{1, 2}));
    }
}

// --- Hidden parts ---

TEST_F(HeadlessParts, HiddenPartsAreClickedThrough)
{
    show(stack(0, 1, 2));
    const WindowPoint spot = project(0.5f, 0.5f, 0);
    const unsigned int front = frontmost(0.5f, 0.5f);
    env->setDisplay(front, 4);
    EXPECT_EQ(click(PICK_TYPE_PART, spot), 2);
    EXPECT_EQ(selectedParts(), Indices{2}) << "the one in the middle; numbers are places in the list";
    EXPECT_FALSE(model->flags(front - 1) & PART_SELECTED);
}

TEST_F(HeadlessParts, WithEveryPartHiddenThereIsNothingToPick)
{
    for (unsigned int type : {PICK_TYPE_PART, PICK_TYPE_ELEMENT, PICK_TYPE_NODE}) {
        show({square(3, 3, 0), square(8, 8, 0)});
        const WindowPoint spot = middle(1, 0);
        env->setDisplay(1, 4);
        env->setDisplay(2, 4);
        EXPECT_EQ(click(type, spot), 0);
        EXPECT_TRUE(nothingSelected());
    }
}

TEST_F(HeadlessParts, ModelWithoutPartsHasOnlyTheTriad)
{
    show({});
    EXPECT_EQ(click(PICK_TYPE_PART, corner), 0);
    EXPECT_EQ(process(PICK_TYPE_PART, RECT_PICK, wholeWindow()), 1);
    EXPECT_EQ(pick.zPartMap.begin()->second.pid, 0xFFFFFFFFu);
}

// --- The axis triad ---

namespace {
// The triad stands at the model's origin, where a hidden part keeps the place free; the visible parts lie elsewhere.
class HeadlessTriad : public HeadlessPick
{
protected:
    void SetUp() override
    {
        HeadlessPick::SetUp();
        show({hidden(square(0, 0, 0)), square(5, 0, 0), quadStripAt(6), hidden(square(0, 6, 0))});
    }

    static PartInfoStr quadStripAt(float y)
    {
        PartInfoStr part = quadStripPart(3);
        for (unsigned int k = 0; k < part.partNodes.numNodes; ++k) {
            part.partNodes.nodeValues[3 * k] += 4;
            part.partNodes.nodeValues[3 * k + 1] += y;
        }
        return part;
    }

    WindowPoint triad() { return project(0, 0, 0); }
    Region triadAnd(const WindowPoint& other) // a rectangle that holds both
    {
        const WindowPoint t = triad();
        return Region{static_cast<float>((t.x + other.x) / 2), static_cast<float>((t.y + other.y) / 2),
                      static_cast<float>(std::abs(t.x - other.x)), static_cast<float>(std::abs(t.y - other.y))}
            .grown(2);
    }
};
} // namespace

TEST_F(HeadlessTriad, ClickOnItSelectsTheLastVisiblePart)
{
    for (int depthTest : {1, 0}) {
        clearSelection();
        env->setHideMode(depthTest);
        EXPECT_EQ(click(PICK_TYPE_PART, triad()), 1);
        EXPECT_EQ(selectedParts(), Indices{3});
    }
}

TEST_F(HeadlessTriad, WithEveryPartHiddenItCountsAsAHitOfNoPart)
{
    env->setDisplay(2, 4);
    env->setDisplay(3, 4);
    for (unsigned int type : {PICK_TYPE_PART, PICK_TYPE_ELEMENT}) {
        EXPECT_EQ(click(type, triad()), 1);
        EXPECT_EQ(pick.zPartMap.begin()->second.pid, 0xFFFFFFFFu);
        EXPECT_TRUE(nothingSelected());
    }
    EXPECT_EQ(click(PICK_TYPE_NODE, triad()), 0) << "a record of one name is no node";
    EXPECT_NE(printed().find("PART IDX=4294967295\n"), std::string::npos);
    EXPECT_TRUE(nothingSelected());
}

TEST_F(HeadlessTriad, ElementClickOnItFlagsTheLastVisiblePartAndMarksNoElement)
{
    for (int depthTest : {1, 0}) {
        clearSelection();
        env->setHideMode(depthTest);
        EXPECT_EQ(click(PICK_TYPE_ELEMENT, triad()), 1);
        EXPECT_EQ(partsWith(PART_ELEMENTS_SELECTED), Indices{3});
        EXPECT_EQ(elementMarks(2), "000");
        EXPECT_EQ(pick.zPartMap.begin()->second.eid, 0u) << "the word behind the record is zero";
    }
}

TEST_F(HeadlessTriad, RectangleOfElementsCountsOneTooMany)
{
    EXPECT_EQ(process(PICK_TYPE_ELEMENT, RECT_PICK, wholeWindow()), 1 + 3 + 1);
    EXPECT_EQ(elementMarks(1), "1");
    EXPECT_EQ(elementMarks(2), "111");
    EXPECT_EQ(partsWith(PART_ELEMENTS_SELECTED), (Indices{2, 3}));
    EXPECT_NE(printed().find("NUM PARTS SELECTED=5\n"), std::string::npos);
}

TEST_F(HeadlessTriad, WithoutDepthTestingItTakesThePickFromTheElement)
{
    env->setHideMode(0);
    const Region both = triadAnd(project(4.5f, 0, 0)); // the first visible part
    EXPECT_EQ(process(PICK_TYPE_ELEMENT, SELECT_PICK, both), 2);
    EXPECT_EQ(partsWith(PART_ELEMENTS_SELECTED), Indices{3});
    EXPECT_EQ(elementMarks(1), "0");
    EXPECT_EQ(elementMarks(2), "000");
}

TEST_F(HeadlessTriad, WithoutDepthTestingItTakesTheNodeIntoTheLastVisiblePart)
{
    env->setHideMode(0);
    const Region both = triadAnd(project(4, 0, 0)).grown(40); // and the square's left nodes, number 1 and 4
    EXPECT_EQ(process(PICK_TYPE_NODE, SELECT_PICK, both), 2);
    EXPECT_EQ(partsWith(PART_NODES_SELECTED), Indices{3});
    EXPECT_EQ(nodeMarks(1), "0000");
    EXPECT_EQ(nodeMarks(2), "00010000") << "the node read last, in the part read last";
}

TEST_F(HeadlessTriad, WithDepthTestingItDoesNotTakeTheNode)
{
    EXPECT_EQ(process(PICK_TYPE_NODE, SELECT_PICK, triadAnd(project(4, 0, 0)).grown(40)), 2);
    EXPECT_EQ(partsWith(PART_NODES_SELECTED), Indices{2});
    EXPECT_EQ(nodeMarks(1), "1000") << "the first of equal depths";
}

TEST_F(HeadlessTriad, PendingRubberBandIsHitLikeIt)
{
    const WindowPoint spot = project(0, 5, 0); // nothing there
    EXPECT_EQ(click(PICK_TYPE_PART, spot), 0);
    draw();
    float band[] = {static_cast<float>(spot.x), static_cast<float>(spot.y), static_cast<float>(spot.x) + 30,
                    static_cast<float>(spot.y) + 30};
    env->mTrans->updateValues(START_RUBBER_BAND, band);
    EXPECT_EQ(click(PICK_TYPE_PART, spot), 1);
    EXPECT_EQ(selectedParts(), Indices{3});
    EXPECT_EQ(env->mTrans->mTransType, NO_TRANSFORM) << "used up";
}

// --- Before the first frame ---

TEST_F(HeadlessParts, PickBeforeTheFirstFrameSeesTheExtentsStretchedOverTheWindow)
{
    load({square(2, 2, 0), square(6, 8, 0)});
    const float* e = env->modelExtents; // no view is applied yet
    const WindowPoint spot = {(6 - e[0]) / (e[1] - e[0]) * windowWidth, (8 - e[2]) / (e[3] - e[2]) * windowHeight, 0};
    EXPECT_EQ(click(PICK_TYPE_PART, spot), 1);
    EXPECT_EQ(selectedParts(), Indices{2});
}

TEST_F(HeadlessParts, PickBeforeTheFirstFrameUsesUpTheCentreOfTheWindow)
{
    load({square(2, 2, 0), square(6, 8, 0)});
    const float* e = env->modelExtents;
    click(PICK_TYPE_PART, {40, 30, 0});
    const double unit[2] = {(e[1] - e[0]) / windowWidth, (e[3] - e[2]) / windowHeight};
    // The middle of the window under a projection enlarged to the region: the region's own middle.
    EXPECT_NEAR(env->mTrans->centerOfWindow[0], e[0] + 40 * unit[0], 1e-4);
    EXPECT_NEAR(env->mTrans->centerOfWindow[1], e[2] + 30 * unit[1], 1e-4);
    draw();
    EXPECT_NEAR(env->mTrans->centerOfWindow[0], e[0] + 40 * unit[0], 1e-4) << "not computed again";
}
