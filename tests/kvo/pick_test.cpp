// kvo pick.
#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "picture.h"
#include "run_kvo.h"
#include "sample_deck.h"
#include "small_decks.h"

using Json = nlohmann::json;

namespace {

class Pick : public testing::Test
{
protected:
    Pick() { writeText(deck(), sampleDeck()); }

    std::string deck() const { return folder.file("sample.inp"); }

    KvoRun run(const std::string& type, std::vector<std::string> more)
    {
        more.insert(more.begin(), way.begin(), way.end());
        more.insert(more.begin(), {"pick", deck(), "--type", type, "--size", "240x180", "--device", "software"});
        return runKvo(more);
    }

    Json hits(const std::string& type, std::vector<std::string> more)
    {
        more.push_back("--json");
        const KvoRun done = run(type, more);
        EXPECT_EQ(done.status, 0) << done.err;
        return done.status == 0 ? Json::parse(done.out).at("hits") : Json();
    }

    // Ids of one kind, by part id.
    std::multiset<std::pair<int, int>> ids(const std::string& type, const std::vector<std::string>& more)
    {
        std::multiset<std::pair<int, int>> out;
        for (const Json& hit : hits(type, more)) {
            out.insert({hit.at("part").get<int>(), hit.at(type).get<int>()});
        }
        return out;
    }

    kvo::Picture draw(std::vector<std::string> more)
    {
        more.insert(more.begin(), {"render", deck(), "-o", folder.file("a.png"), "--size", "240x180", "--samples", "1",
                                   "--device", "software"});
        const KvoRun done = runKvo(more);
        EXPECT_EQ(done.status, 0) << done.err;
        return kvo::readPng(folder.file("a.png"));
    }

    void expectError(const std::vector<std::string>& place, int status, const std::string& message)
    {
        const KvoRun done = run("part", place);
        EXPECT_EQ(done.status, status);
        EXPECT_EQ(done.out, "");
        EXPECT_EQ(done.err, "kvo: " + message + "\n");
    }

    TemporaryFolder folder;
    std::vector<std::string> way; // options of every pick
};

// Tests that hold whichever way is taken: what the picture shows, through it, or through the drawing library.
class PickEachWay : public Pick, public testing::WithParamInterface<std::string>
{
protected:
    PickEachWay()
    {
        if (GetParam() != "visible") {
            way = {"--" + GetParam()};
        }
    }
    bool contract() const { return GetParam() == "contract"; }
    std::vector<std::string> drawingWay() const
    {
        return contract() ? std::vector<std::string>{"--contract"} : std::vector<std::string>();
    }
};

// Everything in the region, covered or not.
class PickThrough : public PickEachWay
{
};

const auto nameOfWay = [](const testing::TestParamInfo<std::string>& info) { return info.param; };
INSTANTIATE_TEST_SUITE_P(Ways, PickEachWay, testing::Values("visible", "through", "contract"), nameOfWay);
INSTANTIATE_TEST_SUITE_P(Ways, PickThrough, testing::Values("through", "contract"), nameOfWay);

const char* const everything = "0,0,240,180";

// The part that each pixel shows, from pictures with one part selected each; 0: none, -1: not all of the square around
// the pixel shows the same.
class VisibleParts
{
public:
    template <class Draw> VisibleParts(int numParts, Draw draw)
    {
        const kvo::Picture plain = draw({});
        shown.assign(static_cast<std::size_t>(plain.width) * static_cast<std::size_t>(plain.height), 0);
        width = plain.width;
        for (int part = 1; part <= numParts; ++part) {
            const kvo::Picture selected = draw({"--select-parts", std::to_string(part)});
            for (int y = 0; y < plain.height; ++y) {
                for (int x = 0; x < plain.width; ++x) {
                    if (plain.at(x, y) != selected.at(x, y)) {
                        shown[index(x, y)] = part;
                    }
                }
            }
        }
    }

    int at(int x, int y) const
    {
        const int middle = shown[index(x, y)];
        for (int dy = -3; dy <= 3; ++dy) {
            for (int dx = -3; dx <= 3; ++dx) {
                if (shown[index(x + dx, y + dy)] != middle) {
                    return -1;
                }
            }
        }
        return middle;
    }

private:
    std::size_t index(int x, int y) const { return static_cast<std::size_t>(y * width + x); }
    std::vector<int> shown;
    int width = 0;
};

} // namespace

// --- What is hit ---

TEST_P(PickEachWay, APickedPartIsTheOneThatThePixelShows)
{
    for (const std::string view : {"iso", "front", "top"}) {
        const std::vector<std::string> scene = {"--view", view, "--hide", "1"};
        const VisibleParts visible(6, [&](std::vector<std::string> more) {
            more.insert(more.end(), scene.begin(), scene.end());
            for (const std::string& option : drawingWay()) {
                more.push_back(option);
            }
            return draw(more);
        });
        std::string session;
        std::vector<int> expected;
        std::set<int> seen;
        for (int y = 10; y < 170; y += 8) {
            for (int x = 10; x < 230; x += 8) {
                if (visible.at(x, y) < 0) {
                    continue;
                }
                session += (GetParam() == "through" ? "PICK part through at " : "PICK part at ") + std::to_string(x) +
                           " " + std::to_string(y) + " 1\n";
                expected.push_back(visible.at(x, y));
                seen.insert(expected.back());
            }
        }
        ASSERT_GE(seen.size(), 3u) << view;
        ASSERT_GE(expected.size(), 50u) << view;
        writeText(folder.file("picks"), session);
        std::vector<std::string> command = {"render",   deck(),    "-o",    folder.file("b.png"),
                                            "--size",   "240x180", "--ops", folder.file("picks"),
                                            "--device", "software"};
        command.insert(command.end(), scene.begin(), scene.end());
        for (const std::string& option : drawingWay()) {
            command.push_back(option);
        }
        const KvoRun played = runKvo(command);
        ASSERT_EQ(played.status, 0) << played.err;
        std::istringstream out(played.out);
        for (int part : expected) {
            std::string place, hit;
            std::getline(out, place);
            std::getline(out, hit);
            const std::string wanted = part ? "  part " + std::to_string(part) + " " : "  nothing";
            EXPECT_EQ(hit.rfind(wanted, 0), 0u) << view << ": " << place << ": " << hit;
        }
    }
}

TEST_P(PickThrough, ARectangleFindsEverythingInIt)
{
    std::multiset<std::pair<int, int>> elements = {{2, 31}, {2, 32}, {3, 41}, {3, 42}, {4, 51},
                                                   {4, 52}, {4, 53}, {5, 61}, {5, 62}, {6, 71}};
    for (int id = 1; id <= 12; ++id) {
        elements.insert({1, id});
    }
    EXPECT_EQ(ids("element", {"--rect", everything}), elements);
    EXPECT_EQ(ids("node", {"--rect", everything}).size(), static_cast<std::size_t>(sampleNodes));
    // Beams (part 5) are elements, but no parts.
    std::vector<int> parts;
    for (const Json& hit : hits("part", {"--rect", everything})) {
        parts.push_back(hit.at("part"));
    }
    EXPECT_EQ(parts, (std::vector<int>{1, 2, 3, 4, 6}));
}

TEST_P(PickEachWay, HitsOfARectangleComeInTheOrderOfTheModel)
{
    std::vector<std::pair<int, int>> order;
    for (const Json& hit : hits("element", {"--rect", "0,0,240,180"})) {
        order.emplace_back(hit.at("part_number").get<int>(), hit.at("number").get<int>());
    }
    EXPECT_GT(order.size(), 6u);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST_P(PickEachWay, CornersOfARectangleMayComeInAnyOrder)
{
    const auto wanted = ids("node", {"--rect", "20,30,150,120"});
    EXPECT_FALSE(wanted.empty());
    for (const char* corners : {"150,120,20,30", "20,120,150,30", "150,30,20,120"}) {
        EXPECT_EQ(ids("node", {"--rect", corners}), wanted) << corners;
    }
}

TEST_P(PickThrough, HalvesOfThePictureShareItsNodes)
{
    // y counts downwards: the upper half of the front view has the nodes with large z.
    const Json upper = hits("node", {"--rect", "0,0,240,89", "--view", "front"});
    const Json lower = hits("node", {"--rect", "0,89,240,180", "--view", "front"});
    EXPECT_EQ(upper.size() + lower.size(), static_cast<std::size_t>(sampleNodes));
    for (const Json& hit : upper) {
        EXPECT_GT(hit.at("at").at(2), 1.4);
    }
    for (const Json& hit : lower) {
        EXPECT_LT(hit.at("at").at(2), 1.6);
    }
}

TEST_P(PickEachWay, TheNearestOfARectangleIsWhatAClickNames)
{
    for (const std::string type : {"part", "element", "node"}) {
        const Json all = hits(type, {"--rect", "40,10,201,171"});
        const Json nearest = hits(type, {"--at", "120,90,161"});
        ASSERT_GE(all.size(), GetParam() == "visible" ? 1u : 2u);
        ASSERT_EQ(nearest.size(), 1u);
        double least = 2;
        for (const Json& hit : all) {
            least = std::min(least, hit.at("depth").get<double>());
        }
        EXPECT_EQ(nearest[0].at("depth").get<double>(), least) << type;
        EXPECT_NE(std::find(all.begin(), all.end(), nearest[0]), all.end()) << type;
    }
}

TEST_P(PickThrough, HiddenPartsAreNotFound)
{
    const auto shown = ids("element", {"--rect", everything, "--hide", "1,3"});
    EXPECT_EQ(shown.size(), 8u);
    EXPECT_EQ(shown.count({3, 41}), 0u);
    EXPECT_EQ(ids("element", {"--rect", everything, "--parts", "3"}),
              (std::multiset<std::pair<int, int>>{{3, 41}, {3, 42}}));
}

TEST_P(PickThrough, OperationsMoveWhatIsPicked)
{
    writeText(folder.file("ops"), "VIEW top\nGLOBAL_TRANSLATION 100 0 240 180\n");
    const auto before = ids("node", {"--rect", "0,0,120,180", "--view", "top"});
    const auto after = ids("node", {"--rect", "100,0,220,180", "--ops", folder.file("ops")});
    EXPECT_EQ(before, after);
    EXPECT_LT(before.size(), static_cast<std::size_t>(sampleNodes));
}

// --- What is said about it ---

TEST_P(PickThrough, JsonNamesPartsIdsAndCoordinates)
{
    const Json parts = hits("part", {"--rect", everything});
    EXPECT_EQ(parts[2].at("part_name"), "BLOCK");
    EXPECT_EQ(parts[2].at("part_number"), 3);
    EXPECT_EQ(parts[2].at("at"), Json({-1.5, -0.5, 1.1})); // the middle of its box
    std::map<int, Json> elements, nodes;
    for (const Json& hit : hits("element", {"--rect", everything})) {
        elements[hit.at("element")] = hit.at("at");
        EXPECT_GE(hit.at("depth"), 0);
        EXPECT_LE(hit.at("depth"), 1);
    }
    EXPECT_EQ(elements[31], Json({1.0, -1.0, 0.0})); // a triangle: its third corner counts once
    EXPECT_NEAR(elements[51][1], -2.0 / 3, 1e-6);    // a wedge
    EXPECT_NEAR(elements[51][2], 0.7, 1e-6);
    EXPECT_EQ(elements[61], Json({2.0, -1.0, 0.8}));
    for (const Json& hit : hits("node", {"--rect", everything})) {
        nodes[hit.at("node")] = hit.at("at");
    }
    EXPECT_EQ(nodes[502], Json({-1.5, -0.5, 2.9}));
}

TEST_F(Pick, JsonSaysWhatWasAsked)
{
    const KvoRun done = run("node", {"--at", "7,9", "--json"});
    const Json all = Json::parse(done.out);
    EXPECT_EQ(all.at("model"), "sample");
    EXPECT_EQ(all.at("type"), "node");
    EXPECT_EQ(all.at("size"), Json({240, 180}));
    EXPECT_EQ(all.at("through"), false);
    EXPECT_EQ(all.at("region"), Json({{"left", 5.0}, {"top", 7.0}, {"width", 5.0}, {"height", 5.0}}));
}

TEST_P(PickThrough, TablesAreAligned)
{
    const KvoRun done = run("element", {"--rect", everything, "--parts", "3,6"});
    EXPECT_EQ(done.status, 0);
    EXPECT_EQ(done.err, "");
    std::istringstream out(done.out);
    std::string line;
    std::getline(out, line);
    EXPECT_EQ(line, "part  name    number  element     x     y     z   depth");
    std::getline(out, line);
    EXPECT_EQ(line.rfind("   3  BLOCK        3       41  -1.5  -0.5  0.65  0.", 0), 0u) << line;
}

TEST_P(PickEachWay, NothingHitIsNoError)
{
    const KvoRun table = run("element", {"--at", "1,1"});
    EXPECT_EQ(table.status, 0);
    EXPECT_EQ(table.out, "nothing is there\n");
    EXPECT_EQ(table.err, "");
    for (const std::string type : {"part", "element", "node"}) {
        EXPECT_EQ(hits(type, {"--at", "1,1"}), Json::array());
        EXPECT_EQ(hits(type, {"--rect", "0,0,3,3"}), Json::array());
    }
}

// --- What the selection pass of the library does beside ---

TEST_P(PickEachWay, TheAxisTriadIsNoHit)
{
    // Two squares left and right of the origin, where the triad is drawn.
    writeText(deck(), squaresDeck({{-3, -0.5, 0}, {2, -0.5, 0}}));
    const std::string log = folder.file("log");
    for (const std::string type : {"part", "element", "node"}) {
        EXPECT_EQ(hits(type, {"--view", "top", "--at", "120,90,21", "--log", log}), Json::array());
        if (contract()) {
            EXPECT_TRUE(contains(readText(log), "\nhits = 1\n")) << "the triad was not in the region";
        }
        EXPECT_EQ(hits(type, {"--view", "top", "--rect", "100,70,140,110"}), Json::array());
    }
    // A rectangle over everything finds each square once, a click on the triad what is near it.
    EXPECT_EQ(hits("part", {"--view", "top", "--rect", everything}).size(), 2u);
    EXPECT_EQ(hits("element", {"--view", "top", "--rect", everything}).size(), 2u);
    EXPECT_EQ(hits("node", {"--view", "top", "--rect", everything}).size(), 8u);
    EXPECT_EQ(hits("element", {"--view", "top", "--at", "120,90,170"})[0].at("element"), 100);
}

TEST_P(PickEachWay, AHiddenLastPartDoesNotGetTheTriadsHits)
{
    writeText(deck(), squaresDeck({{-3, -0.5, 0}, {2, -0.5, 0}, {0, 3, 0}}));
    EXPECT_EQ(hits("part", {"--view", "top", "--at", "120,90,31", "--parts", "1-2"}), Json::array());
}

TEST_P(PickEachWay, TheNearerOfTwoFacesWinsInLargeAndSmallModels)
{
    // The library's pass has depths of +-9999 in steps of about 0.001; the picture has neither limit.
    for (double scale : {1e6, 1.0, 1e-5}) {
        for (double z : {0.01, -0.01}) {
            writeText(deck(), squaresDeck({{0, 0, 0}, {0, 0, z}}, scale));
            for (const std::string view : {"top", "bottom"}) {
                std::vector<std::string> plainly = drawingWay(), selected = {"--select-parts", "1"};
                plainly.insert(plainly.end(), {"--view", view});
                selected.insert(selected.end(), plainly.begin(), plainly.end());
                const int inFront = draw(selected).at(150, 70) != draw(plainly).at(150, 70) ? 1 : 2;
                const Json hit = hits("part", {"--view", view, "--at", "150,70"});
                EXPECT_EQ(hit.at(0).at("part"), inFront) << scale << " " << z << " " << view;
                const std::size_t found = GetParam() == "visible" ? 1 : 2;
                EXPECT_EQ(hits("part", {"--view", view, "--rect", everything}).size(), found) << scale;
            }
        }
    }
}

TEST_P(PickEachWay, OfEquallyNearFacesTheOneDrawnFirstWins)
{
    writeText(deck(), squaresDeck({{0, 0, 0}, {0, 0, 0}}));
    EXPECT_EQ(hits("element", {"--view", "top", "--at", "150,70"})[0].at("element"), 100);
}

TEST_F(Pick, OnlyTheLibrarysPassHasALimit)
{
    writeText(deck(), gridDeck(330)); // 108,900 elements
    ASSERT_EQ(runKvo({"import", deck(), "-o", folder.file("grid")}).status, 0);
    const auto pick = [this](std::vector<std::string> more) {
        more.insert(more.begin(), {"pick", folder.file("grid"), "--view", "top", "--size", "240x180", "--type",
                                   "element", "--device", "software", "--json"});
        return runKvo(more);
    };
    const KvoRun over = pick({"--rect", everything, "--contract"});
    EXPECT_EQ(over.status, 1);
    EXPECT_EQ(over.out, "");
    EXPECT_TRUE(contains(over.err, "104857 hits")) << over.err;
    EXPECT_TRUE(contains(over.err, "smaller region")) << over.err;
    const KvoRun fits = pick({"--rect", "0,0,120,180", "--contract"});
    ASSERT_EQ(fits.status, 0) << fits.err;
    const std::size_t count = Json::parse(fits.out).at("hits").size();
    EXPECT_GE(count, 330u * 165);
    EXPECT_LE(count, 330u * 167);
    EXPECT_EQ(Json::parse(pick({"--rect", everything, "--through"}).out).at("hits").size(), 108900u);
}

// --- What the picture shows ---

TEST_F(Pick, CoveredThingsAreFoundOnlyThrough)
{
    writeText(deck(), squaresDeck({{0, 0, 0}, {0, 0, 1}, {0, 0, 2}}));
    std::set<int> fronts;
    for (const std::string view : {"top", "bottom"}) {
        const int front = hits("part", {"--view", view, "--at", "120,90", "--through"}).at(0).at("part");
        fronts.insert(front);
        for (const std::string type : {"part", "element"}) {
            const Json visible = hits(type, {"--view", view, "--rect", everything});
            ASSERT_EQ(visible.size(), 1u);
            EXPECT_EQ(visible[0].at("part"), front);
            EXPECT_EQ(hits(type, {"--view", view, "--rect", everything, "--through"}).size(), 3u);
        }
        const int node = 10 * front;
        EXPECT_EQ(ids("node", {"--view", view, "--rect", everything}),
                  (std::multiset<std::pair<int, int>>{
                      {front, node + 1}, {front, node + 2}, {front, node + 3}, {front, node + 4}}));
        EXPECT_EQ(ids("part", {"--view", view, "--rect", everything, "--hide", std::to_string(front), "--ghosts"}),
                  (std::multiset<std::pair<int, int>>{{2, 2}}));
    }
    EXPECT_EQ(fronts, (std::set<int>{1, 3}));
}

TEST_F(Pick, BeamsAreFoundAsParts)
{
    EXPECT_EQ(ids("part", {"--rect", everything, "--parts", "5"}), (std::multiset<std::pair<int, int>>{{5, 5}}));
}

TEST_F(Pick, HitsSayWhereTheyAre)
{
    writeText(deck(), squaresDeck({{0, 0, 0}}));
    const Json hit = hits("element", {"--view", "top", "--at", "120,30,1"}).at(0);
    EXPECT_EQ(hit.at("number"), 1);
    EXPECT_NEAR(hit.at("pixel").at(0), 120.5, 1e-3);
    EXPECT_NEAR(hit.at("pixel").at(1), 30.5, 1e-3);
    // The square is 0.95 x 180 pixels; x and y of the pixel's middle from the picture's middle.
    EXPECT_NEAR(hit.at("point").at(0), 0.5 + 0.5 / 171, 1e-4);
    EXPECT_NEAR(hit.at("point").at(1), 0.5 + 59.5 / 171, 1e-4);
    EXPECT_NEAR(hit.at("point").at(2), 0, 1e-4);
    EXPECT_FALSE(hits("element", {"--view", "top", "--at", "120,30,1", "--contract"}).at(0).contains("point"));
}

TEST_F(Pick, PolygonsTakeWhatIsInside)
{
    writeText(deck(), gridDeck(10));
    const std::vector<std::string> scene = {"--view", "top"};
    // The grid fills 171 pixels around (120, 90). The triangle is its lower left half; the hypotenuse runs just below
    // the nodes of the diagonal, through the elements there.
    const std::vector<std::string> triangle = {"--polygon", "30,8", "30,179", "203,179"};
    for (const std::string type : {"node", "element"}) {
        for (const char* through : {"", "--through"}) {
            auto options = scene;
            options.insert(options.end(), triangle.begin(), triangle.end());
            if (*through) {
                options.push_back(through);
            }
            std::size_t below = 0;
            for (const Json& hit : hits(type, options)) {
                EXPECT_LE(hit.at("at").at(1).get<double>(), hit.at("at").at(0).get<double>() * -1 + 10.01) << type;
                ++below;
            }
            EXPECT_EQ(below, 55u) << through;
        }
    }
}

TEST_F(Pick, PolygonsAreNamedInJson)
{
    const KvoRun done = run("node", {"--polygon", "7,9", "17,9", "12,30", "--json"});
    ASSERT_EQ(done.status, 0) << done.err;
    EXPECT_EQ(Json::parse(done.out).at("region"), Json({{"left", 7.0},
                                                        {"top", 9.0},
                                                        {"width", 10.0},
                                                        {"height", 21.0},
                                                        {"polygon", {{7.0, 9.0}, {17.0, 9.0}, {12.0, 30.0}}}}));
}

// --- Wrong places ---

TEST_F(Pick, PlacesThatMakeNoSenseAreUsageErrors)
{
    expectError({}, 2, "one of --at, --rect and --polygon is needed");
    expectError({"--at", "1,2", "--rect", "1,2,3,4"}, 2, "one of --at, --rect and --polygon is needed");
    expectError({"--at", "1,2", "--polygon", "1,2", "3,4", "5,9"}, 2, "one of --at, --rect and --polygon is needed");
    expectError({"--polygon", "1,2", "3,4"}, 2, "--polygon: three corners or more are needed");
    expectError({"--polygon", "1,2", "3,4", "5"}, 2, "--polygon: \"5\" is not X,Y");
    expectError({"--polygon", "1,2", "3,4", "5,1", "--contract"}, 2,
                "--polygon goes through the scene, which --contract does without");
    for (const char* text : {"1", "1,2,3,4", "1,2,", ",1,2", "a,b", "1;2", "1,2x", "1,,2"}) {
        expectError({"--at", text}, 2, "--at: \"" + std::string(text) + "\" is not X,Y or X,Y,SIZE");
    }
    expectError({"--rect", "1,2,3"}, 2, "--rect: \"1,2,3\" is not X0,Y0,X1,Y1");
    EXPECT_EQ(runKvo({"pick", deck(), "--at", "1,2", "--type", "face"}).status, 2);
    EXPECT_EQ(runKvo({"pick", deck(), "--at", "1,2"}).status, 2);
}

TEST_F(Pick, PlacesOutsideThePictureAreErrors)
{
    for (const char* place : {"240,5", "-1,5", "5,180", "5,-0.5"}) {
        expectError({"--at", place}, 1,
                    "the place " + std::string(place) + " is outside the picture of 240x180 pixels");
    }
    for (const char* place : {"0,0,241,5", "-1,0,5,5", "0,170,5,181", "300,300,310,310"}) {
        expectError({"--rect", place}, 1,
                    "the rectangle " + std::string(place) + " reaches out of the picture of 240x180 pixels");
    }
    expectError({"--polygon", "1,2", "3,4", "5,181"}, 1,
                "the polygon 1,2 3,4 5,181 reaches out of the picture of 240x180 pixels");
}

TEST_F(Pick, RegionsWithoutAreaAreErrors)
{
    expectError({"--rect", "5,5,5,9"}, 1, "the rectangle 5,5,5,9 is empty");
    expectError({"--rect", "5,9,8,9"}, 1, "the rectangle 5,9,8,9 is empty");
    expectError({"--polygon", "5,9", "8,9", "12,9"}, 1, "the polygon 5,9 8,9 12,9 is empty");
    expectError({"--at", "5,5,0"}, 1, "the size 0 of a pick must be more than 0 pixels");
    expectError({"--at", "5,5,-2"}, 1, "the size -2 of a pick must be more than 0 pixels");
}

TEST_F(Pick, SaysWhatWasTakenOffTheCoordinates)
{
    writeText(folder.file("far.inp"), "*NODE\n1, 1e7\n2, 10000001\n3, 10000001, 1\n4, 1e7, 1\n"
                                      "*ELEMENT, TYPE=S4\n9, 1, 2, 3, 4\n");
    const std::string model = folder.file("far");
    EXPECT_EQ(runKvo({"import", folder.file("far.inp"), "-o", model, "--shift-origin"}).status, 0);
    const std::vector<std::string> pick = {"pick",    model,    "--at",    "120,90",   "--type",
                                           "element", "--size", "240x180", "--device", "software"};
    const KvoRun table = runKvo(pick);
    EXPECT_TRUE(contains(table.out, "\ncoordinates are the deck's less (10000001, 0, 0)\n")) << table.out << table.err;
    std::vector<std::string> asJson = pick;
    asJson.push_back("--json");
    const Json found = Json::parse(runKvo(asJson).out);
    EXPECT_EQ(found.at("origin"), Json({10000001.0, 0.0, 0.0}));
    EXPECT_EQ(found.at("hits").at(0).at("at"), Json({-0.5, 0.5, 0.0}));
    EXPECT_FALSE(contains(run("element", {"--at", "120,90"}).out, "less"));
}
