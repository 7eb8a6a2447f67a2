// Element and node picks in real selection mode, compared with the window positions of elements and nodes: every
// element and node by itself, rectangles over turned solids, beams, the limit of the selection buffer.
#include "headlesspick.h"

namespace {

// n x n unit squares in z = height from (x, y) on.
PartInfoStr sheet(unsigned int n, float x, float y, float height)
{
    Floats nodes;
    Indices corners;
    for (unsigned int row = 0; row <= n; ++row) {
        for (unsigned int column = 0; column <= n; ++column) {
            nodes.insert(nodes.end(), {x + static_cast<float>(column), y + static_cast<float>(row), height});
        }
    }
    for (unsigned int row = 0; row < n; ++row) {
        for (unsigned int column = 0; column < n; ++column) {
            const unsigned int first = row * (n + 1) + column;
            corners.insert(corners.end(), {first, first + 1, first + n + 2, first + n + 1});
        }
    }
    return makePart(SHELL, 4, nodes, corners);
}

// n x n x n unit cubes from (1, 1, 1) on.
PartInfoStr block(unsigned int n)
{
    const unsigned int m = n + 1;
    Floats nodes;
    Indices corners;
    for (unsigned int k = 0; k < m * m * m; ++k) {
        nodes.insert(nodes.end(), {1 + static_cast<float>(k % m), 1 + static_cast<float>(k / m % m),
                                   1 + static_cast<float>(k / m / m)});
    }
    for (unsigned int k = 0; k < n * n * n; ++k) {
        const unsigned int first = k % n + k / n % n * m + k / n / n * m * m;
        for (unsigned int layer : {first, first + m * m}) {
            corners.insert(corners.end(), {layer, layer + 1, layer + m + 1, layer + m});
        }
    }
    return makePart(SOLID, 8, nodes, corners);
}

using Polygon = std::vector<WindowPoint>;

// Distance by which the lines of a's edges, or the region's sides, keep the polygon and the region apart; 0 or less:
// they overlap. Both are convex.
double gap(const Polygon& polygon, const Region& region)
{
    const double left = region.x - region.width / 2, right = region.x + region.width / 2;
    const double bottom = region.y - region.height / 2, top = region.y + region.height / 2;
    const double box[4][2] = {{left, bottom}, {right, bottom}, {right, top}, {left, top}};
    std::vector<std::pair<double, double>> normals = {{1, 0}, {0, 1}};
    for (std::size_t k = 0; k < polygon.size(); ++k) {
        const WindowPoint &a = polygon[k], &b = polygon[(k + 1) % polygon.size()];
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        if (length > 1e-9) {
            normals.push_back({(b.y - a.y) / length, (a.x - b.x) / length});
        }
    }
    double largest = -1e9;
    for (const auto& [nx, ny] : normals) {
        double low = 1e9, high = -1e9, boxLow = 1e9, boxHigh = -1e9;
        for (const WindowPoint& p : polygon) {
            low = std::min(low, nx * p.x + ny * p.y);
            high = std::max(high, nx * p.x + ny * p.y);
        }
        for (const auto& corner : box) {
            boxLow = std::min(boxLow, nx * corner[0] + ny * corner[1]);
            boxHigh = std::max(boxHigh, nx * corner[0] + ny * corner[1]);
        }
        largest = std::max({largest, low - boxHigh, boxLow - high});
    }
    return largest;
}

const unsigned int hexaFaces[6][4] = {{0, 1, 2, 3}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                      {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};

class HeadlessElements : public HeadlessPick
{
protected:
    // The gap between a region and the nearest face of a hexahedron.
    double gapOfHexa(unsigned int part, unsigned int element, const Region& region)
    {
        const std::vector<WindowPoint> c = corners(part, element);
        double smallest = 1e9;
        for (const auto& face : hexaFaces) {
            smallest = std::min(smallest, gap({c[face[0]], c[face[1]], c[face[2]], c[face[3]]}, region));
        }
        return smallest;
    }

    // The smallest depth of a hexahedron's faces at a point of the window, or 2 where it has none there.
    double depthOfHexaAt(unsigned int part, unsigned int element, const WindowPoint& spot)
    {
        const std::vector<WindowPoint> c = corners(part, element);
        double smallest = 2;
        for (const auto& face : hexaFaces) { // parallelograms: spot = a + u (b - a) + v (d - a)
            const WindowPoint &a = c[face[0]], &b = c[face[1]], &d = c[face[3]];
            const double bx = b.x - a.x, by = b.y - a.y, dx = d.x - a.x, dy = d.y - a.y;
            const double area = bx * dy - by * dx;
            if (std::abs(area) < 1e-6) {
                continue;
            }
            const double u = ((spot.x - a.x) * dy - (spot.y - a.y) * dx) / area;
            const double v = (bx * (spot.y - a.y) - by * (spot.x - a.x)) / area;
            if (u >= 0 && u <= 1 && v >= 0 && v <= 1) {
                smallest = std::min(smallest, a.depth + u * (b.depth - a.depth) + v * (d.depth - a.depth));
            }
        }
        return smallest;
    }

    void turn(float x1, float y1, float x2, float y2)
    {
        float drag[] = {x1, y1, x2, y2};
        env->mTrans->updateValues(GLOBAL_ROTATION, drag);
        draw();
    }
};
} // namespace

// --- Elements ---

TEST_F(HeadlessElements, EveryShellElementIsPickedByAClickOnIt)
{
    for (int shadeModel : {GL_FLAT, GL_SMOOTH}) {
        show({hidden(square(0, 0, 0)), sheet(3, 2, 2, 0), sheet(2, 6, 2, 1)}, TOP_VIEW, shadeModel);
        for (unsigned int part : {1u, 2u}) {
            for (unsigned int element = 0; element < elementsOf(part); ++element) {
                clearSelection();
                EXPECT_EQ(click(PICK_TYPE_ELEMENT, middle(part, element)), 1);
                EXPECT_EQ(partsWith(PART_ELEMENTS_SELECTED), Indices{part + 1});
                EXPECT_EQ(elementMarks(part), marksOf(elementsOf(part), {element}));
                EXPECT_EQ(pick.zPartMap.begin()->second.pid, part + 1);
                EXPECT_EQ(pick.zPartMap.begin()->second.eid, element + 1);
            }
        }
    }
}

TEST_F(HeadlessElements, ClickReportsPartAndElementNumber)
{
    show({square(0, 0, 0), sheet(3, 2, 2, 0)});
    click(PICK_TYPE_ELEMENT, middle(1, 2)); // the third element of the second part
    const std::string text = printed();
    EXPECT_NE(text.find("hits = 1\n number of parts for hit = 2\n"), std::string::npos);
    EXPECT_NE(text.find("   the part is 2 \nFIRST PART=2\nLAST PART=2\nPID=2 EID=3\nNUM PARTS SELECTED=1\n"),
              std::string::npos)
        << text;
}

TEST_F(HeadlessElements, HiddenPartsDoNotShiftTheNumbers)
{
    show({hidden(sheet(3, 2, 2, 0)), sheet(3, 2, 2, 1)});
    EXPECT_EQ(click(PICK_TYPE_ELEMENT, middle(1, 4)), 1);
    EXPECT_EQ(partsWith(PART_ELEMENTS_SELECTED), Indices{2});
    EXPECT_EQ(elementMarks(1), marksOf(9, {4}));
    EXPECT_EQ(elementMarks(0), marksOf(9, {}));
}

TEST_F(HeadlessElements, FrontSheetIsPickedWithDepthTestingAndTheLastWithout)
{
    for (float second : {0.0f, 5.0f}) {
        show({hidden(square(0, 0, 0)), sheet(3, 2, 2, 2), sheet(3, 2, 2, second)});
        const unsigned int front = middle(1, 4).depth < middle(2, 4).depth ? 2 : 3;
        EXPECT_EQ(click(PICK_TYPE_ELEMENT, middle(1, 4)), 2);
        EXPECT_EQ(partsWith(PART_ELEMENTS_SELECTED), Indices{front});
        EXPECT_EQ(elementMarks(front - 1), marksOf(9, {4}));
        clearSelection();
        env->setHideMode(0);
        EXPECT_EQ(click(PICK_TYPE_ELEMENT, middle(1, 4)), 2);
        EXPECT_EQ(partsWith(PART_ELEMENTS_SELECTED), Indices{3});
    }
}

TEST_F(HeadlessElements, OfElementsThatMeetTheEarlierWinsAndWithoutDepthTestingTheLater)
{
    show({hidden(square(0, 0, 0)), sheet(2, 2, 2, 1)});
    const WindowPoint meeting = project(3, 3, 1); // the corner of all four
    EXPECT_EQ(click(PICK_TYPE_ELEMENT, meeting), 4);
    EXPECT_EQ(elementMarks(1), "1000");
    clearSelection();
    env->setHideMode(0);
    EXPECT_EQ(click(PICK_TYPE_ELEMENT, meeting), 4);
    EXPECT_EQ(elementMarks(1), "0001");
}

TEST_F(HeadlessElements, RectangleSelectsTheShellsThatItTouches)
{
    show({hidden(square(0, 0, 0)), sheet(6, 2, 2, 0)});
    turn(150, 120, 190, 150); // so that edges are slanted
    for (const Region& region : {Region{250, 160, 60, 40}, Region{200, 100, 20, 90}, Region{300, 200, 130, 33}}) {
        clearSelection();
        draw();
        std::set<unsigned int> inside, unclear;
        for (unsigned int element = 0; element < elementsOf(1); ++element) {
            const double apart = gap(corners(1, element), region);
            if (apart < -0.01) {
                inside.insert(element);
            } else if (apart < 0.01) {
                unclear.insert(element);
            }
        }
        ASSERT_TRUE(unclear.empty()) << "choose another region";
        ASSERT_GT(inside.size(), 1u);
        ASSERT_LT(inside.size(), 36u);
        EXPECT_EQ(process(PICK_TYPE_ELEMENT, RECT_PICK, region), static_cast<int>(inside.size()));
        EXPECT_EQ(elementMarks(1), marksOf(36, inside));
        for (const auto& entry : pick.zPartMap) {
            EXPECT_EQ(entry.second.eid, 0u);
        }
    }
}

// --- Solids ---

TEST_F(HeadlessElements, ClickOnATurnedBlockPicksTheCubeInFront)
{
    for (int shadeModel : {GL_FLAT, GL_SMOOTH}) {
        show({hidden(square(-2, -2, 0)), block(3)}, ISO_VIEW, shadeModel);
        turn(150, 120, 240, 190);
        int decided = 0;
        for (float x = 20; x < windowWidth; x += 37) {
            for (float y = 15; y < windowHeight; y += 31) {
                clearSelection();
                std::vector<std::pair<double, unsigned int>> order;
                bool clear = true; // no edge near the spot
                for (unsigned int e = 0; e < 27; ++e) {
                    order.push_back({depthOfHexaAt(1, e, {x, y, 0}), e});
                    for (float d : {-2.0f, 2.0f}) {
                        clear = clear && (depthOfHexaAt(1, e, {x + d, y, 0}) < 2) == (order.back().first < 2) &&
                                (depthOfHexaAt(1, e, {x, y + d, 0}) < 2) == (order.back().first < 2);
                    }
                }
                std::sort(order.begin(), order.end());
                if (!clear || order[0].first == 2 || order[1].first - order[0].first < 1e-5) {
                    continue;
                }
                ++decided;
                EXPECT_GE(process(PICK_TYPE_ELEMENT, SELECT_PICK, {x, y, 1, 1}), 1);
                EXPECT_EQ(elementMarks(1), marksOf(27, {order[0].second})) << "at " << x << "," << y;
                EXPECT_NEAR(pick.zPartMap.begin()->first, order[0].first, 3e-6);
            }
        }
        EXPECT_GT(decided, 10) << "enough of the window is tested";
    }
}

TEST_F(HeadlessElements, RectangleSelectsCoveredCubesToo)
{
    show({hidden(square(-2, -2, 0)), block(3)}, ISO_VIEW);
    turn(150, 120, 240, 190);
    const WindowPoint c = project(2.5f, 2.5f, 2.5f);
    const float x = static_cast<float>(c.x), y = static_cast<float>(c.y);
    for (const Region& region :
         {Region{x, y, 30, 30}, Region{x - 20, y + 10, 90, 20}, Region{x + 15, y - 10, 24, 70}}) {
        clearSelection();
        std::set<unsigned int> inside;
        for (unsigned int element = 0; element < 27; ++element) {
            const double apart = gapOfHexa(1, element, region);
            ASSERT_GT(std::abs(apart), 0.01) << "choose another region";
            if (apart < 0) {
                inside.insert(element);
            }
        }
        ASSERT_GT(inside.size(), 2u);
        ASSERT_LT(inside.size(), 27u);
        EXPECT_EQ(process(PICK_TYPE_ELEMENT, RECT_PICK, region), static_cast<int>(inside.size()));
        EXPECT_EQ(elementMarks(1), marksOf(27, inside));
        draw();
    }
}

TEST_F(HeadlessElements, EverySolidShapeIsPicked)
{
    for (PartInfoStr (*shape)() : {tetraPart, pentaPart, hexaPart}) {
        show({shape(), hidden(square(3, 3, 3)), hidden(square(-3, -3, -3))}, ISO_VIEW);
        EXPECT_EQ(process(PICK_TYPE_ELEMENT, SELECT_PICK, Region::around(project(0.3f, 0.3f, 0.3f))), 1);
        EXPECT_EQ(elementMarks(0), "1");
    }
}

// --- Beams and discrete elements ---

TEST_F(HeadlessElements, BeamWithoutThirdNodeIsHitOnItsLineOnly)
{
    show({hidden(square(0, 0, 0)), makePart(BEAM, 3, {4, 1, 0, 8, 1, 0, 6, 4, 0}, {0, 1, noNode})});
    EXPECT_EQ(click(PICK_TYPE_ELEMENT, project(6, 4, 0)), 0);
    EXPECT_TRUE(nothingSelected());
    EXPECT_EQ(click(PICK_TYPE_ELEMENT, project(5, 1, 0)), 1);
    EXPECT_EQ(elementMarks(1), "1");
}

TEST_F(HeadlessElements, BeamWithThirdNodeIsHitAtThatPointToo)
{
    show({hidden(square(0, 0, 0)),
          makePart(BEAM, 3, {4, 1, 0, 8, 1, 0, 6, 4, 0, 4, 2, 0, 8, 2, 0}, {3, 4, noNode, 0, 1, 2})});
    for (const WindowPoint& spot : {project(6, 4, 0), project(5, 1, 0)}) {
        clearSelection();
        EXPECT_EQ(click(PICK_TYPE_ELEMENT, spot), 1);
        EXPECT_EQ(elementMarks(1), "01");
    }
    EXPECT_EQ(process(PICK_TYPE_ELEMENT, RECT_PICK,
                      Region{static_cast<float>(middle(1, 1).x), windowHeight / 2.0f, 100, windowHeight}),
              2)
        << "line and point of a beam are one hit";
}

TEST_F(HeadlessElements, DiscreteElementsAreHitOnTheirLines)
{
    show({hidden(square(0, 0, 0)), makePart(DISCRETE, 3, {4, 1, 0, 8, 1, 0, 4, 4, 0, 8, 4, 0}, {0, 1, 0, 2, 3, 0})});
    for (unsigned int element : {0u, 1u}) {
        clearSelection();
        EXPECT_EQ(click(PICK_TYPE_ELEMENT, middle(1, element)), 1);
        EXPECT_EQ(elementMarks(1), marksOf(2, {element}));
    }
}

// --- Nodes ---

TEST_F(HeadlessElements, EveryNodeIsPickedByAClickOnIt)
{
    show({hidden(square(0, 0, 0)), sheet(3, 2, 2, 0), makePart(BEAM, 3, {7, 7, 1, 8, 8, 1, 7, 3, 0}, {0, 1, 2})});
    for (unsigned int part : {1u, 2u}) {
        const unsigned int count = model->part(part).partNodes.numNodes;
        for (unsigned int n = 0; n < count; ++n) {
            clearSelection();
            EXPECT_EQ(click(PICK_TYPE_NODE, node(part, n)), 1);
            EXPECT_EQ(partsWith(PART_NODES_SELECTED), Indices{part + 1});
            EXPECT_EQ(nodeMarks(part), marksOf(count, {n}));
            EXPECT_EQ(pick.zPartMap.begin()->second.eid, n + 1);
            EXPECT_NEAR(pick.zPartMap.begin()->first, node(part, n).depth, 1e-6);
            EXPECT_NE(printed().find("NODE IDX=" + std::to_string(n + 1) + "\n"), std::string::npos);
        }
    }
}

TEST_F(HeadlessElements, NodeIsMissedBetweenNodes)
{
    show({hidden(square(0, 0, 0)), sheet(3, 2, 2, 0)});
    EXPECT_EQ(click(PICK_TYPE_NODE, middle(1, 4)), 0);
    EXPECT_TRUE(nothingSelected());
}

TEST_F(HeadlessElements, RectangleSelectsTheNodesInsideInEveryVisiblePart)
{
    show({hidden(sheet(4, 2, 2, 3)), sheet(6, 2, 2, 0), block(3)}, ISO_VIEW);
    turn(150, 120, 200, 190);
    const Region region = {220, 150, 140, 120};
    std::set<unsigned int> inside[3];
    std::size_t total = 0;
    for (unsigned int part : {1u, 2u}) {
        for (unsigned int n = 0; n < model->part(part).partNodes.numNodes; ++n) {
            const WindowPoint at = node(part, n);
            ASSERT_EQ(region.grown(0.01f).holds(at), region.grown(-0.01f).holds(at)) << "choose another region";
            if (region.holds(at)) {
                inside[part].insert(n);
            }
        }
        ASSERT_GT(inside[part].size(), 3u);
        total += inside[part].size();
    }
    EXPECT_EQ(process(PICK_TYPE_NODE, RECT_PICK, region), static_cast<int>(total));
    EXPECT_EQ(nodeMarks(1), marksOf(49, inside[1]));
    EXPECT_EQ(nodeMarks(2), marksOf(64, inside[2]));
    EXPECT_EQ(nodeMarks(0), marksOf(25, {}));
    EXPECT_EQ(partsWith(PART_NODES_SELECTED), (Indices{2, 3}));
}

TEST_F(HeadlessElements, NodeInFrontIsPickedWithDepthTestingAndTheLastWithout)
{
    for (float second : {0.0f, 5.0f}) {
        show({hidden(square(0, 0, 0)), sheet(1, 3, 3, 2), sheet(2, 2, 2, second)});
        const unsigned int front = node(1, 0).depth < node(2, 4).depth ? 2 : 3; // both at (3, 3)
        EXPECT_EQ(click(PICK_TYPE_NODE, node(1, 0)), 2);
        EXPECT_EQ(partsWith(PART_NODES_SELECTED), Indices{front});
        EXPECT_EQ(nodeMarks(front - 1), front == 2 ? marksOf(4, {0}) : marksOf(9, {4}));
        clearSelection();
        env->setHideMode(0);
        EXPECT_EQ(click(PICK_TYPE_NODE, node(1, 0)), 2);
        EXPECT_EQ(partsWith(PART_NODES_SELECTED), Indices{3});
        EXPECT_EQ(nodeMarks(2), marksOf(9, {4}));
    }
}

// --- The selection buffer ---

TEST_F(HeadlessElements, BufferTakesJustAsManyElementsAsFit)
{
    show({quadStripPart(104856)}); // 5 words each, and the triad's 4: all but 4 of the buffer's 524288
    EXPECT_EQ(process(PICK_TYPE_ELEMENT, RECT_PICK, wholeWindow()), 104857);
    EXPECT_EQ(elementMarks(0), std::string(104856, SELECTED_CHAR));
}

TEST_F(HeadlessElements, MoreHitsThanTheBufferTakesPickNothing)
{
    show({square(0, 4, 0), quadStripPart(104858)});
    EXPECT_EQ(process(PICK_TYPE_ELEMENT, RECT_PICK, wholeWindow()), 0);
    EXPECT_TRUE(nothingSelected()) << "not even the first, which fitted";
    EXPECT_TRUE(pick.zPartMap.empty());
    const std::string text = printed();
    EXPECT_NE(text.find("ERROR: Too many items got selected. So none got picked\n"), std::string::npos);
    EXPECT_EQ(text.find("hits ="), std::string::npos);
    EXPECT_EQ(click(PICK_TYPE_ELEMENT, middle(0, 0)), 1) << "the next pick is not affected";
}
