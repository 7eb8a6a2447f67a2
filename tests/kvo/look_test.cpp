// kvo render and kvo pick with looks.
#include <algorithm>
#include <cstdlib>
#include <map>

#include <gtest/gtest.h>

#include "picture.h"
#include "run_kvo.h"
#include "sample_deck.h"
#include "small_decks.h"

using kvo::Color;
using kvo::Picture;

namespace {

class Looks : public testing::Test
{
protected:
    Looks() { writeText(deck(), sampleDeck()); }

    std::string deck() const { return folder.file("sample.inp"); }
    std::string picture() const { return folder.file("a.png"); }

    KvoRun render(std::vector<std::string> more)
    {
        more.insert(more.begin(), {"render", deck(), "-o", picture(), "--samples", "1", "--device", "software"});
        const auto add = [&more](const std::string& option, const std::string& value) {
            if (std::find(more.begin(), more.end(), option) == more.end()) {
                more.insert(more.end(), {option, value});
            }
        };
        add("--size", "120x90");
        add("--background", "black");
        return runKvo(more);
    }

    Picture draw(const std::vector<std::string>& more)
    {
        const KvoRun done = render(more);
        EXPECT_EQ(done.status, 0) << done.err;
        return kvo::readPng(picture());
    }

    void expectError(const std::vector<std::string>& more, int status, const std::string& message)
    {
        const KvoRun done = render(more);
        EXPECT_EQ(done.status, status);
        EXPECT_EQ(done.err, "kvo: " + message + "\n");
        EXPECT_FALSE(std::filesystem::exists(picture()));
    }

    TemporaryFolder folder;
};

std::size_t differing(const Picture& a, const Picture& b)
{
    return kvo::compare(a, b).differing;
}

template <class Test> int count(const Picture& picture, Test test)
{
    int out = 0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            out += test(picture.at(x, y)) ? 1 : 0;
        }
    }
    return out;
}

bool isBlack(const Color& c)
{
    return c.r == 0 && c.g == 0 && c.b == 0;
}

int brightness(const Color& c)
{
    return c.r + c.g + c.b;
}

} // namespace

// --- What is drawn at all ---

TEST_F(Looks, TrianglesAndTetrahedraAreLit)
{
    // Part 4: a wedge, a tetrahedron and a pyramid. Through the library alone triangles of solids are dark.
    const std::vector<std::string> mixed = {"--parts", "4", "--shade", "flat", "--background", "white"};
    std::vector<std::string> contract = mixed;
    contract.push_back("--contract");
    const auto dark = [](const Color& c) { return brightness(c) < 200; };
    const int triad = 350; // pixels, at most: all three axes are seen
    EXPECT_LT(count(draw(mixed), dark), triad);
    EXPECT_GT(count(draw(contract), dark), 3 * triad);
}

TEST_F(Looks, BeamsAreLinesInTheColourOfTheirPart)
{
    // The bar is a roof of two beams, 4 wide and 1.4 high, as wide as 95 per cent of the picture.
    const Picture beams = draw({"--parts", "5", "--view", "right"});
    const Color color = beams.at(60, 25);
    EXPECT_GT(brightness(color), 150);
    EXPECT_EQ(count(beams, [&](const Color& c) { return !isBlack(c) && c != color; }), 0);
    for (int x = 5; x < 115; ++x) {
        std::vector<int> rows;
        for (int y = 0; y < beams.height; ++y) {
            if (beams.at(x, y) == color) {
                rows.push_back(y);
            }
        }
        ASSERT_FALSE(rows.empty()) << x;
        EXPECT_LE(rows.back() - rows.front(), 3) << x; // two pixels wide
        const double roof = 45 - 0.7 * 28.5 + std::abs(x + 0.5 - 60) * 0.7;
        EXPECT_NEAR((rows.front() + rows.back() + 1) / 2.0, roof, 1.5) << x;
    }
    // Through the library alone only selected beams show.
    const Picture contract = draw({"--parts", "5", "--view", "front", "--contract"});
    EXPECT_EQ(count(contract, [&](const Color& c) { return c == color; }), 0);
}

// --- Looks ---

// A wall of four squares before a smaller one, seen from the front: what of either each style shows.
TEST_F(Looks, StylesShowFacesAndEdges)
{
    writeText(deck(), squaresDeck({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}, {0.8, 0.8, -1}}));
    struct Seen
    {
        bool face;       // the wall's squares are filled
        bool edge;       // there is a line between them
        bool hiddenEdge; // and one of what is behind them
    };
    const std::map<std::string, Seen> styles = {{"shaded", {true, false, false}},
                                                {"edges", {true, true, false}},
                                                {"hidden-line", {false, true, false}},
                                                {"wire", {false, true, true}}};
    const Color white{255, 255, 255, 255};
    for (const auto& entry : styles) {
        // The wall fills 95 per cent of the height: an edge is 57 pixels long.
        const Picture p = draw({"--style", entry.first, "--view", "top", "--background", "white", "--size", "160x120"});
        const auto at = [&](double x, double y) { // in the model
            return std::pair<int, int>(static_cast<int>(80 + 57 * (x - 1)), static_cast<int>(60 - 57 * (y - 1)));
        };
        const auto blackNear = [&](double x, double y) {
            const auto middle = at(x, y);
            int out = 0;
            for (int k = 0; k < 9; ++k) {
                out += isBlack(p.at(middle.first + k % 3 - 1, middle.second + k / 3 - 1)) ? 1 : 0;
            }
            return out > 0;
        };
        const auto face = at(1.3, 1.4);
        EXPECT_EQ(p.at(face.first, face.second) != white, entry.second.face) << entry.first;
        EXPECT_FALSE(isBlack(p.at(face.first, face.second))) << entry.first;
        EXPECT_EQ(blackNear(1, 0.4), entry.second.edge) << entry.first;
        EXPECT_EQ(blackNear(1.6, 1), entry.second.edge) << entry.first;
        EXPECT_EQ(blackNear(2, 1.4), entry.second.edge) << entry.first;
        EXPECT_EQ(blackNear(0.8, 1.4), entry.second.hiddenEdge) << entry.first;
        EXPECT_EQ(blackNear(1.4, 1.8), entry.second.hiddenEdge) << entry.first;
        EXPECT_FALSE(blackNear(1.5, 1.5)) << entry.first << ": a diagonal";
    }
    EXPECT_EQ(differing(draw({"--style", "shaded"}), draw({})), 0u);
}

TEST_F(Looks, EveryLightIsAnother)
{
    const Picture eye = draw({"--light", "eye"}), model = draw({"--light", "model"});
    const Picture contract = draw({"--light", "contract"});
    EXPECT_EQ(differing(eye, draw({})), 0u);
    EXPECT_GT(differing(eye, model), 300u);
    EXPECT_GT(differing(eye, contract), 300u);
    EXPECT_GT(differing(model, contract), 300u);
}

TEST_F(Looks, TheFeatureAngleBreaksSmoothShading)
{
    // The vault's faces meet at 22.5 degrees.
    const std::vector<std::string> vault = {"--parts", "1"};
    const auto at = [&](const char* angle) {
        std::vector<std::string> options = vault;
        options.insert(options.end(), {"--feature-angle", angle});
        return draw(options);
    };
    EXPECT_EQ(differing(at("30"), draw(vault)), 0u);
    EXPECT_EQ(differing(at("23"), at("180")), 0u);
    EXPECT_GT(differing(at("22"), at("23")), 300u);
    EXPECT_EQ(differing(at("22"), at("0")), 0u);
}

TEST_F(Looks, GhostsKeepHiddenPartsPale)
{
    const std::vector<std::string> hidden = {"--hide", "1", "--view", "front"};
    std::vector<std::string> ghosts = hidden;
    ghosts.push_back("--ghosts");
    const Picture without = draw(hidden), with = draw(ghosts);
    int pale = 0, bright = 0;
    for (int y = 0; y < with.height; ++y) {
        for (int x = 0; x < with.width; ++x) {
            pale += isBlack(without.at(x, y)) && !isBlack(with.at(x, y)) ? 1 : 0;
            bright += isBlack(without.at(x, y)) && brightness(with.at(x, y)) > 330 ? 1 : 0;
        }
    }
    EXPECT_GT(pale, 1500);
    EXPECT_EQ(bright, 0);
}

TEST_F(Looks, TransparentPartsShowWhatIsBehindThem)
{
    writeText(deck(), squaresDeck({{0, 0, 0}, {0, 0, 1}}));
    const auto middle = [&](const std::vector<std::string>& more) {
        std::vector<std::string> options = {"--view", "top", "--color-by", "quality:edge-ratio", "--no-legend"};
        options.insert(options.end(), more.begin(), more.end());
        return draw(options).at(75, 20);
    };
    // One is coloured by its quality, and so are both; a picture without the nearer shows the farther.
    const auto mixed = [&](double opacity, const Color& front, const Color& back) {
        return static_cast<int>(opacity * brightness(front) + (1 - opacity) * brightness(back));
    };
    const Color black{0, 0, 0, 255}, one = middle({"--parts", "1"});
    ASSERT_GT(brightness(one), 100);
    EXPECT_NEAR(brightness(middle({"--parts", "1", "--transparent", "1=0.5"})), mixed(0.5, one, black), 8);
    EXPECT_NEAR(brightness(middle({"--parts", "1", "--transparent", "1"})), mixed(0.35, one, black), 8);
    EXPECT_NEAR(brightness(middle({"--transparent", "1-2=0.5"})), mixed(0.75, one, black), 8);
    EXPECT_NEAR(brightness(middle({"--transparent", "2=0.5"})), brightness(one), 8);
    EXPECT_EQ(middle({"--parts", "1", "--transparent", "1=1"}), one);
    // The last word counts.
    EXPECT_EQ(middle({"--parts", "1", "--transparent", "1=0.1", "--transparent", "1-2=1"}), one);
}

TEST_F(Looks, SectionsTakeAwayOneSide)
{
    const auto columns = [&](const std::vector<std::string>& more) { // drawn columns of the picture, left and right
        std::vector<std::string> options = {"--view", "top", "--parts", "2", "--size", "121x121"};
        options.insert(options.end(), more.begin(), more.end());
        const Picture drawn = draw(options);
        return std::pair<bool, bool>(!isBlack(drawn.at(20, 80)), !isBlack(drawn.at(100, 80)));
    };
    const std::pair<bool, bool> both(true, true), left(true, false), right(false, true);
    EXPECT_EQ(columns({}), both);
    EXPECT_EQ(columns({"--section", "x=..0"}), left);
    EXPECT_EQ(columns({"--section", "x=0.."}), right);
    EXPECT_EQ(columns({"--section", "x=-0.5.."}), right);
    EXPECT_EQ(columns({"--section", "0,0,0,-1,0,0"}), left);
    EXPECT_EQ(columns({"--section", "0,0,0,2,0,0"}), right);
    EXPECT_EQ(columns({"--section", "y=..10"}), both);
    EXPECT_EQ(columns({"--section", "x=..0", "--section-mode", "elements"}), both); // they reach over the plane
}

TEST_F(Looks, SectionModesDiffer)
{
    std::vector<Picture> drawn;
    for (const char* mode : {"slice", "open", "elements"}) {
        std::vector<std::string> options = {"--view",    "left",     "--parts",        "3",
                                            "--section", "y=..-0.5", "--section-mode", mode};
        writeText(folder.file("ops"), "GLOBAL_ROTATION 60 45 80 60\n");
        options.insert(options.end(), {"--ops", folder.file("ops")});
        drawn.push_back(draw(options));
    }
    EXPECT_GT(differing(drawn[0], drawn[2]), 50u);
    EXPECT_GT(differing(drawn[1], drawn[2]), 50u);
}

TEST_F(Looks, PicksDoNotFindWhatIsCutOff)
{
    const auto parts = [&](const std::vector<std::string>& more) {
        std::vector<std::string> options = {"pick",   deck(),   "--type", "part", "--rect",   "0,0,120,90",
                                            "--size", "120x90", "--view", "top",  "--device", "software"};
        options.insert(options.end(), more.begin(), more.end());
        return runKvo(options).out;
    };
    EXPECT_TRUE(contains(parts({}), "SPRING"));
    EXPECT_FALSE(contains(parts({"--section", "z=..1.9"}), "SPRING"));
    EXPECT_TRUE(contains(parts({"--section", "z=..1.9"}), "BLOCK"));
}

TEST_F(Looks, EdgesAreColoredByKind)
{
    const auto red = [](const Color& c) { return c.r > 150 && c.g < 60 && c.b < 60; };
    // The floor has a rim and no sharp edge; the block has sharp edges and no rim.
    const std::vector<std::string> view = {"--view", "top", "--background", "white"};
    const auto count2 = [&](const char* part, const char* kinds) {
        std::vector<std::string> options = view;
        options.insert(options.end(), {"--parts", part, "--edges", kinds});
        const Picture drawn = draw(options);
        return std::pair<int, int>(count(drawn, red), count(drawn, isBlack));
    };
    EXPECT_GT(count2("2", "free").first, 200);
    EXPECT_LT(count2("2", "feature").second, 20);
    EXPECT_LT(count2("3", "free").first, 60); // the triad's
    EXPECT_GT(count2("3", "feature,free,multi").second, 100);
}

TEST_F(Looks, ColorsFollowKindPropertyMaterialAndQuality)
{
    // From both sides, since not every part is seen from one.
    std::vector<std::pair<Picture, Picture>> drawn;
    for (const char* what : {"part", "kind", "property", "material", "quality:aspect-ratio", "quality:max-angle"}) {
        drawn.emplace_back(draw({"--view", "iso", "--color-by", what, "--no-legend"}),
                           draw({"--view", "bottom", "--color-by", what, "--no-legend"}));
    }
    const auto differences = [&](std::size_t a, std::size_t b) {
        return differing(drawn[a].first, drawn[b].first) + differing(drawn[a].second, drawn[b].second);
    };
    for (std::size_t a = 0; a < drawn.size(); ++a) {
        for (std::size_t b = a + 1; b < drawn.size(); ++b) {
            EXPECT_GT(differences(a, b), 100u) << a << " " << b;
        }
    }
    EXPECT_EQ(differing(drawn[0].first, draw({"--view", "iso"})), 0u);
}

TEST_F(Looks, RangesRampsAndBandsChangeTheColors)
{
    const std::vector<std::string> quality = {"--color-by", "quality:aspect-ratio", "--no-legend"};
    const auto with = [&](const std::vector<std::string>& more) {
        std::vector<std::string> options = quality;
        options.insert(options.end(), more.begin(), more.end());
        return draw(options);
    };
    const Picture plain = with({});
    EXPECT_GT(differing(plain, with({"--color-range", "1,9"})), 300u);
    EXPECT_GT(differing(with({"--color-range", "9,1"}), with({"--color-range", "1,9"})), 300u);
    EXPECT_GT(differing(plain, with({"--color-ramp", "rainbow"})), 300u);
    EXPECT_GT(differing(plain, with({"--color-bands", "3"})), 300u);
}

TEST_F(Looks, LegendsAndLabelsAreWritten)
{
    const auto large = [&](std::vector<std::string> more) {
        more.insert(more.end(), {"--size", "480x360"});
        return draw(more);
    };
    EXPECT_GT(differing(large({"--color-by", "kind"}), large({"--color-by", "kind", "--no-legend"})), 300u);
    const Picture plain = large({});
    for (const char* what : {"parts", "elements", "nodes"}) {
        EXPECT_GT(differing(plain, large({"--labels", what})), 50u) << what;
    }
    EXPECT_GT(differing(large({"--labels", "parts"}), large({"--labels", "parts,nodes"})), 50u);
}

TEST_F(Looks, SheetsTakeLooks)
{
    const auto sheet = [&](const char* style) {
        EXPECT_EQ(render({"--view", "all", "--size", "600x400", "--style", style}).status, 0);
        return kvo::readPng(picture());
    };
    EXPECT_GT(differing(sheet("shaded"), sheet("edges")), 1000u);
}

TEST_F(Looks, SelectionsShowInEveryStyle)
{
    for (const char* style : {"shaded", "edges"}) {
        const Picture plain = draw({"--style", style, "--hide", "1", "--view", "left"});
        EXPECT_GT(
            differing(plain, draw({"--style", style, "--hide", "1", "--view", "left", "--select-elements", "41"})), 50u)
            << style;
    }
}

// --- What makes no sense ---

TEST_F(Looks, LooksDoNotGoWithContract)
{
    for (const std::vector<std::string>& look : {std::vector<std::string>{"--style", "shaded"},
                                                 {"--light", "eye"},
                                                 {"--feature-angle", "30"},
                                                 {"--ghosts"},
                                                 {"--transparent", "1"},
                                                 {"--section", "x=..1"},
                                                 {"--color-by", "kind"},
                                                 {"--labels", "parts"},
                                                 {"--edges", "free"}}) {
        std::vector<std::string> options = look;
        options.push_back("--contract");
        expectError(options, 2, look[0] + " is a look of the scene, which --contract does without");
    }
    EXPECT_EQ(runKvo({"pick", deck(), "--type", "part", "--at", "1,1", "--contract", "--ghosts"}).status, 2);
    writeText(folder.file("s"), "VIEW top\n");
    EXPECT_EQ(runKvo({"play", folder.file("s"), deck(), "--contract", "--style", "edges"}).status, 2);
}

TEST_F(Looks, BadValuesAreUsageErrors)
{
    for (const std::vector<std::string>& look : {std::vector<std::string>{"--style", "pretty"},
                                                 {"--light", "sun"},
                                                 {"--feature-angle", "181"},
                                                 {"--feature-angle", "-1"},
                                                 {"--feature-angle", "sharp"},
                                                 {"--feature-angle", "nan"}}) {
        const KvoRun done = render(look);
        EXPECT_EQ(done.status, 2) << look[1];
        EXPECT_TRUE(contains(done.err, look[0])) << done.err;
        EXPECT_FALSE(std::filesystem::exists(picture()));
    }
    for (const char* plane :
         {"x", "x=", "x=..", "x=1", "x=..1..", "w=..1", "x=..a", "x=nan..", "1,2,3", "1,2,3,4,5,6,7"}) {
        expectError({"--section", plane}, 2,
                    "--section: \"" + std::string(plane) + "\" is not x=FROM.., x=..TO (or y, z) or X,Y,Z,NX,NY,NZ");
    }
    expectError({"--section", "1,2,3,0,0,0"}, 2, "--section: \"1,2,3,0,0,0\" has no direction towards what stays");
    for (const char* what : {"parts", "quality", "quality:", "quality:beauty"}) {
        const KvoRun done = render({"--color-by", what});
        EXPECT_EQ(done.status, 2);
        EXPECT_EQ(done.err.rfind("kvo: --color-by: \"" + std::string(what) + "\" is none of part, kind", 0), 0u);
        EXPECT_TRUE(contains(done.err, "scaled-jacobian")) << done.err;
    }
    expectError({"--color-range", "1,2"}, 2, "--color-range needs --color-by quality:NAME");
    expectError({"--color-by", "quality:skew", "--color-range", "1,1"}, 2, "--color-range: \"1,1\" is no range");
    expectError({"--color-by", "quality:skew", "--color-range", "1"}, 2, "--color-range: \"1\" is not LOW,HIGH");
    for (const char* alpha : {"0", "-0.1", "1.1", "x", "", "0.5x", "nan", "1e9"}) {
        expectError({"--transparent", std::string("1=") + alpha}, 2,
                    "--transparent: \"" + std::string(alpha) + "\" is no opacity above 0 and up to 1");
    }
    expectError({"--transparent", "a"}, 2, "--transparent: \"a\" is neither an id nor a range such as 5-9");
    expectError({"--transparent", "1,7=0.5"}, 1, "part 7 is not in the model");
}
