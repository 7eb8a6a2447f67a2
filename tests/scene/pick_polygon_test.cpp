// Regions: sizes, outlines of any shape, and polygon picks against samples of the window. No OpenGL.
#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "outputcapture.h"
#include "pick_models.h"
#include "polygon_area.h"
#include <kvo/through_picker.h>

using kvo::Overlap;
using kvo::PickRegion;
using kvo::PickType;
using kvo::SceneHit;
using kvo::WindowPosition;

namespace {

typedef std::vector<WindowPosition> Outline;
typedef std::pair<std::uint32_t, std::uint32_t> Name;

// Even-odd, with a ray of its own: downwards.
bool insideOf(const Outline& outline, double x, double y)
{
    bool inside = false;
    for (std::size_t k = 0; k < outline.size(); ++k) {
        const WindowPosition &a = outline[k], &b = outline[(k + 1) % outline.size()];
        if ((a.x > x) != (b.x > x) && a.y + (x - a.x) / (b.x - a.x) * (b.y - a.y) < y) {
            inside = !inside;
        }
    }
    return inside;
}

double distanceTo(const Outline& outline, double x, double y)
{
    double least = 1e9;
    for (std::size_t k = 0; k < outline.size(); ++k) {
        const WindowPosition &a = outline[k], &b = outline[(k + 1) % outline.size()];
        const double dx = b.x - a.x, dy = b.y - a.y;
        const double t = std::clamp(((x - a.x) * dx + (y - a.y) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
        least = std::min(least, std::hypot(x - a.x - t * dx, y - a.y - t * dy));
    }
    return least;
}

Outline randomOutline(Dice& dice)
{
    Outline outline;
    for (unsigned int k = 3 + dice.below(8); k > 0; --k) {
        outline.push_back({dice.between(-50, 450), dice.between(-50, 350)});
    }
    return outline;
}

class PolygonPick : public testing::Test
{
protected:
    void load(const std::vector<PartInfoStr>& parts)
    {
        const OutputCapture quiet(1);
        model.reset(new TestModel(GL_FLAT));
        for (const PartInfoStr& part : parts) {
            model->add(part);
        }
        model->install();
        picker.reset(new kvo::ThroughPicker(**model));
    }

    std::map<Name, SceneHit> pick(PickType type, const PickRegion& region)
    {
        std::map<Name, SceneHit> all;
        for (const SceneHit& hit : picker->pick(type, region, view)) {
            all[{hit.part, hit.entity}] = hit;
        }
        return all;
    }

    // Nodes on every whole pixel of the window.
    void loadGrid()
    {
        Floats nodes;
        for (int y = 0; y < 300; y += 2) {
            for (int x = 0; x < 400; x += 2) {
                nodes.insert(nodes.end(), {static_cast<float>(x), static_cast<float>(y), 0});
            }
        }
        load({makePart(SHELL, 4, nodes, {})});
    }

    // Compares a polygon pick of the grid's nodes with the samples' own answer.
    void expectNodesInside(const Outline& outline)
    {
        const std::map<Name, SceneHit> hits = pick(PickType::Node, PickRegion::polygon(outline));
        std::size_t wrong = 0;
        const PartNodesStr& nodes = model->part(0).partNodes;
        for (unsigned int k = 0; k < nodes.numNodes; ++k) {
            wrong += insideOf(outline, nodes.nodeValues[3 * k] + 1e-9, nodes.nodeValues[3 * k + 1] + 1e-9) !=
                     (hits.count({1, k + 1}) == 1);
        }
        EXPECT_LE(wrong, nodes.numNodes / 2000) << "but for nodes on the outline";
    }

    std::unique_ptr<TestModel> model;
    std::unique_ptr<kvo::ThroughPicker> picker;
    kvo::PickView view = topView(400, 300);
};

} // namespace

// --- Regions ---

TEST(PickRegions, RectanglesTakeCornersInAnyOrder)
{
    const PickRegion region = PickRegion::rectangle(30, 5, 10, 25);
    EXPECT_EQ(region.x, 20);
    EXPECT_EQ(region.y, 15);
    EXPECT_EQ(region.width, 20);
    EXPECT_EQ(region.height, 20);
    EXPECT_FALSE(region.isPolygon());
}

TEST_F(PolygonPick, RegionsOfNoSizeAreOnePixel)
{
    load({makePart(SHELL, 4, {100, 100, 0, 100.4f, 100, 0, 200, 200, 0}, {})});
    for (const PickRegion& region : {PickRegion::click(100, 100, 0), PickRegion::click(100, 100, -7),
                                     PickRegion::rectangle(100, 100, 100, 100), PickRegion::click(100, 100, NAN)}) {
        EXPECT_EQ(pick(PickType::Node, region).size(), 2u);
    }
}

TEST_F(PolygonPick, OutlinesThatEncloseNothing)
{
    loadGrid();
    const double none = std::numeric_limits<double>::quiet_NaN(), endless = std::numeric_limits<double>::infinity();
    const Outline outlines[] = {{},
                                {{1, 1}},
                                {{1, 1}, {300, 200}},
                                {{1, 1}, {300, 200}, {none, 5}},
                                {{1, 1}, {300, 200}, {5, endless}},
                                {{10, 10}, {10, 100}, {10, 50}},
                                {{-10, -10}, {-100, -10}, {-50, -100}},
                                {{500, 10}, {600, 10}, {550, 200}}};
    for (const Outline& outline : outlines) {
        EXPECT_TRUE(pick(PickType::Node, PickRegion::polygon(outline)).empty());
    }
}

TEST_F(PolygonPick, OutlinesOfAnyShape)
{
    loadGrid();
    expectNodesInside({{50.3, 40.2}, {350.1, 60.4}, {200.7, 280.9}});
    expectNodesInside({{50.3, 40.2}, {200.7, 280.9}, {350.1, 60.4}}); // the other way round
    expectNodesInside({{20.5, 20.5}, {380.5, 20.5}, {380.5, 280.5}, {200.3, 100.9}, {20.5, 280.5}}); // not convex
    expectNodesInside({{50.3, 50.1}, {350.3, 250.1}, {350.3, 50.1}, {50.3, 250.1}});                 // a bow tie
    expectNodesInside({{-100.5, -100.5}, {500.5, -100.5}, {500.5, 500.5}, {-100.5, 500.5}}); // more than the window
    for (unsigned int seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        expectNodesInside(randomOutline(dice));
    }
}

TEST_F(PolygonPick, WhatIsInsideTwiceIsOutside)
{
    loadGrid();
    Outline star;
    for (int k = 0; k < 5; ++k) {
        star.push_back({200 + 120 * std::sin(k * 0.8 * M_PI), 150 + 120 * std::cos(k * 0.8 * M_PI)});
    }
    expectNodesInside(star);
    const std::map<Name, SceneHit> hits = pick(PickType::Node, PickRegion::polygon(star));
    EXPECT_EQ(hits.count({1, 75 * 200 + 100 + 1}), 0u) << "the middle";
    EXPECT_EQ(hits.count({1, 125 * 200 + 100 + 1}), 1u) << "a point of the star";
}

TEST(PolygonAreas, OverlapOfRectanglesIsNeverWrong)
{
    std::size_t inside = 0, outside = 0;
    for (unsigned int seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        Outline outline = randomOutline(dice);
        const PickRegion region = PickRegion::polygon(outline);
        const kvo::PolygonArea area(region);
        for (int k = 0; k < 300; ++k) {
            const kvo::PlanePoint low = {dice.between(-1.1, 1), dice.between(-1.1, 1)};
            const double size = std::pow(10, dice.between(-4, 0));
            const kvo::PlanePoint high = {low.x + size * dice.between(0, 1), low.y + size * dice.between(0, 1)};
            const Overlap overlap = area.overlap(low, high);
            inside += overlap == Overlap::Inside;
            outside += overlap == Overlap::Outside;
            for (int sample = 0; sample < 10 && overlap != Overlap::Partly; ++sample) {
                const double x = dice.between(std::max(low.x, -1.0), std::min(high.x, 1.0));
                const double y = dice.between(std::max(low.y, -1.0), std::min(high.y, 1.0));
                if (x < -1 || x > 1 || y < -1 || y > 1) {
                    continue;
                }
                const bool isIn = insideOf(outline, region.x + x * region.width / 2, region.y + y * region.height / 2);
                EXPECT_EQ(isIn, overlap == Overlap::Inside);
                EXPECT_EQ(area.contains({x, y}), isIn);
            }
        }
    }
    EXPECT_GT(inside, 300u);
    EXPECT_GT(outside, 300u);
}

// --- Elements ---

TEST_F(PolygonPick, AnOutlineOfFourCornersIsTheRectangle)
{
    std::size_t hitCount = 0;
    for (unsigned int seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        const double centre[3] = {200, 150, 0};
        load({randomPart(dice, centre, 80), randomPart(dice, centre, 80)});
        const double x0 = dice.between(0, 400), y0 = dice.between(0, 300);
        const double x1 = dice.between(0, 400), y1 = dice.between(0, 300);
        for (PickType type : {PickType::Part, PickType::Element, PickType::Node}) {
            const std::map<Name, SceneHit> rectangle = pick(type, PickRegion::rectangle(x0, y0, x1, y1));
            const std::map<Name, SceneHit> outline =
                pick(type, PickRegion::polygon({{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}}));
            ASSERT_EQ(rectangle.size(), outline.size());
            for (const auto& [name, hit] : rectangle) {
                ASSERT_EQ(outline.count(name), 1u);
                const SceneHit& other = outline.at(name);
                EXPECT_NEAR(other.depth, hit.depth, 4e-7);
                EXPECT_EQ(other.entityId, hit.entityId);
                ++hitCount;
            }
        }
    }
    EXPECT_GT(hitCount, 1500u);
}

TEST_F(PolygonPick, ShellsAgainstSamplesOfTheWindow)
{
    // What a sample sees is hit and no farther; what is hit lies where it says, inside the outline.
    std::size_t hitCount = 0, sampleCount = 0;
    for (unsigned int seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        Floats nodes;
        Indices indices;
        for (unsigned int k = 0; k < 12; ++k) {
            const double x = dice.between(0, 400), y = dice.between(0, 300), size = dice.between(2, 150);
            for (unsigned int corner = 0; corner < 3; ++corner) {
                nodes.insert(nodes.end(), {static_cast<float>(x + size * dice.between(-1, 1)),
                                           static_cast<float>(y + size * dice.between(-1, 1)),
                                           static_cast<float>(dice.between(-500, 500))});
            }
            indices.insert(indices.end(), {3 * k, 3 * k + 1, 3 * k + 2, 3 * k + 2});
        }
        load({makePart(SHELL, 4, nodes, indices)});
        const Outline outline = randomOutline(dice);
        const std::map<Name, SceneHit> hits = pick(PickType::Element, PickRegion::polygon(outline));
        for (unsigned int e = 0; e < 12; ++e) {
            const float *a = &nodes[9 * e], *b = a + 3, *c = a + 6;
            const auto hit = hits.find({1, e + 1});
            for (int sample = 0; sample < 200; ++sample) {
                double u = dice.between(0, 1), v = dice.between(0, 1);
                if (u + v > 1) {
                    u = 1 - u;
                    v = 1 - v;
                }
                const double x = a[0] + u * (b[0] - a[0]) + v * (c[0] - a[0]);
                const double y = a[1] + u * (b[1] - a[1]) + v * (c[1] - a[1]);
                const double z = a[2] + u * (b[2] - a[2]) + v * (c[2] - a[2]);
                if (x < 0 || x > 400 || y < 0 || y > 300 || !insideOf(outline, x, y)) {
                    continue;
                }
                ++sampleCount;
                ASSERT_NE(hit, hits.end()) << "element " << e + 1;
                EXPECT_LE(hit->second.depth, z / 19998 + 0.5 + 1e-6);
            }
            if (hit == hits.end()) {
                continue;
            }
            ++hitCount;
            const double *w = hit->second.window, *p = hit->second.position;
            EXPECT_NEAR(w[0], p[0], 1e-3);
            EXPECT_NEAR(w[1], p[1], 1e-3);
            EXPECT_NEAR(p[2], (hit->second.depth - 0.5) * 19998, 2e-2);
            EXPECT_TRUE(insideOf(outline, w[0], w[1]) || distanceTo(outline, w[0], w[1]) < 1e-3);
            EXPECT_GE(w[0], -1e-3);
            EXPECT_LE(w[0], 400 + 1e-3);
            // In the triangle's plane.
            const double area = (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
            const double u = ((p[0] - a[0]) * (c[1] - a[1]) - (p[1] - a[1]) * (c[0] - a[0])) / area;
            const double v = ((b[0] - a[0]) * (p[1] - a[1]) - (b[1] - a[1]) * (p[0] - a[0])) / area;
            if (std::abs(area) > 100) {
                EXPECT_GE(std::min({u, v, 1 - u - v}), -1e-3);
                EXPECT_NEAR(a[2] + u * (b[2] - a[2]) + v * (c[2] - a[2]), p[2], 0.5);
            }
        }
    }
    EXPECT_GT(hitCount, 500u);
    EXPECT_GT(sampleCount, 20000u);
}

TEST_F(PolygonPick, AnElementThatSurroundsTheOutline)
{
    load({makePart(SHELL, 4, {-1000, -1000, 0, 1400, -1000, 240, 1400, 1300, 240, -1000, 1300, 0}, {0, 1, 2, 3})});
    const std::map<Name, SceneHit> hits =
        pick(PickType::Element, PickRegion::polygon({{100, 100}, {140, 110}, {120, 150}}));
    ASSERT_EQ(hits.size(), 1u);
    EXPECT_NEAR(hits.begin()->second.position[0], 100, 1e-2);
    EXPECT_NEAR(hits.begin()->second.position[2], 110, 1e-2);
}

TEST_F(PolygonPick, LinesThroughAndBesideTheOutline)
{
    load({makePart(DISCRETE, 3, {0, 120, 0, 400, 120, 40, 0, 160, 0, 400, 160, 40}, {0, 1, 0, 2, 3, 0})});
    const std::map<Name, SceneHit> hits =
        pick(PickType::Element, PickRegion::polygon({{100, 100}, {200, 100}, {200, 140}, {100, 140}}));
    ASSERT_EQ(hits.size(), 1u);
    EXPECT_EQ(hits.begin()->first, (Name{1, 1}));
    EXPECT_NEAR(hits.begin()->second.window[0], 100, 1e-3);
    EXPECT_NEAR(hits.begin()->second.position[2], 10, 1e-2);
}

TEST_F(PolygonPick, ElementsSeenEdgeOn)
{
    load({makePart(SHELL, 4, {100, 100, 0, 200, 100, 0, 200, 100, 50, 100, 100, 50}, {0, 1, 2, 3})});
    EXPECT_EQ(pick(PickType::Element, PickRegion::polygon({{140, 50}, {160, 50}, {150, 150}})).size(), 1u);
    EXPECT_EQ(pick(PickType::Element, PickRegion::polygon({{140, 110}, {160, 110}, {150, 150}})).size(), 0u);
}
