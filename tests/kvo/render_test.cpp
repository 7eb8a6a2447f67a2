// kvo render.
#include <algorithm>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "picture.h"
#include "run_kvo.h"
#include "sample_deck.h"

using kvo::Color;
using kvo::Picture;

namespace {

const Color background{0x22, 0x27, 0x2e, 255};

class Render : public testing::Test
{
protected:
    Render() { writeText(deck(), sampleDeck()); }

    std::string deck() const { return folder.file("sample.inp"); }
    std::string picture() const { return folder.file("a.png"); }

    KvoRun render(const std::vector<std::string>& more, const std::vector<std::string>& environment = {},
                  const std::string& samples = "1")
    {
        std::vector<std::string> arguments = {"render",    deck(),  "-o",       picture(),
                                              "--samples", samples, "--device", "software"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runKvo(arguments, environment);
    }

    Picture draw(std::vector<std::string> more, const std::string& samples = "1")
    {
        more.insert(more.end(), {"--size", "120x90"});
        const KvoRun run = render(more, {}, samples);
        EXPECT_EQ(run.status, 0) << run.err;
        return kvo::readPng(picture());
    }

    void expectError(const std::vector<std::string>& more, const std::string& part)
    {
        const KvoRun run = render(more);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.err.rfind("kvo: ", 0), 0u) << run.err;
        EXPECT_TRUE(contains(run.err, part)) << run.err;
        EXPECT_EQ(run.out, "");
        EXPECT_FALSE(std::filesystem::exists(picture()));
    }

    TemporaryFolder folder;
};

std::size_t differing(const Picture& a, const Picture& b)
{
    return kvo::compare(a, b).differing;
}

int countOther(const Picture& picture, Color color)
{
    int out = 0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            out += picture.at(x, y) != color;
        }
    }
    return out;
}

} // namespace

TEST_F(Render, PictureHasTheWantedSize)
{
    for (auto [text, width, height] : {std::tuple("33x57", 33, 57), std::tuple("200x100", 200, 100)}) {
        ASSERT_EQ(render({"--size", text}).status, 0);
        const Picture drawn = kvo::readPng(picture());
        EXPECT_EQ(drawn.width, width);
        EXPECT_EQ(drawn.height, height);
        EXPECT_GT(countOther(drawn, background), width * height / 10);
    }
}

TEST_F(Render, IsQuietByDefault)
{
    const KvoRun run = render({"--size", "60x40"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
}

TEST_F(Render, SaysWhatOfADeckIsNotDrawn)
{
    writeText(deck(), sampleDeck() + "*ELEMENT, TYPE=WEIRD9, ELSET=ODD\n81, 101, 102, 103\n");
    const KvoRun run = render({"--size", "60x40"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "kvo: warning: " + deck() + ": 1 element of types that are not drawn (kvo import lists them)\n");
}

TEST_F(Render, LogKeepsTheLibrarysCommentary)
{
    for (const std::vector<std::string>& way : {std::vector<std::string>{}, {"--contract"}}) {
        std::vector<std::string> options = {"--size", "60x40", "--log", folder.file("log")};
        options.insert(options.end(), way.begin(), way.end());
        const KvoRun run = render(options);
        EXPECT_EQ(run.out + run.err, "");
        const std::string log = readText(folder.file("log"));
        EXPECT_TRUE(contains(log, "MODEL EXTS="));
        EXPECT_EQ(contains(log, "TIME FOR DISPLAY PARTS="), !way.empty()); // the library's own frame
        EXPECT_FALSE(contains(log, "GL Error")) << log;
    }
}

TEST_F(Render, EveryStandardViewDiffersAndStaysInside)
{
    std::vector<Picture> drawn;
    for (const char* view : {"iso", "top", "bottom", "left", "right", "front", "back"}) {
        drawn.push_back(draw({"--view", view}));
        EXPECT_EQ(countOther(drawn.back().cut(0, 0, 120, 1), background), 0) << view;
        EXPECT_EQ(countOther(drawn.back().cut(0, 0, 1, 90), background), 0) << view;
        EXPECT_EQ(countOther(drawn.back().cut(119, 0, 1, 90), background), 0) << view;
        EXPECT_EQ(countOther(drawn.back().cut(0, 89, 120, 1), background), 0) << view;
    }
    for (std::size_t a = 0; a < drawn.size(); ++a) {
        for (std::size_t b = a + 1; b < drawn.size(); ++b) {
            EXPECT_GT(differing(drawn[a], drawn[b]), 100u) << a << " " << b;
        }
    }
}

TEST_F(Render, ShadeAndModeChangeThePicture)
{
    const Picture flat = draw({"--shade", "flat"});
    EXPECT_GT(differing(flat, draw({"--shade", "smooth"})), 200u);
    EXPECT_GT(countOther(flat, background), 2 * countOther(draw({"--mode", "line"}), background));
    EXPECT_GT(countOther(draw({"--mode", "line"}), background), 2 * countOther(draw({"--mode", "point"}), background));
}

TEST_F(Render, BackgroundIsWhatIsAskedFor)
{
    EXPECT_EQ(draw({"--background", "#fe8012"}).at(0, 0), (Color{0xfe, 0x80, 0x12, 255}));
    EXPECT_EQ(draw({"--background", "white"}).at(119, 89), (Color{255, 255, 255, 255}));
}

TEST_F(Render, BoxesAddLines)
{
    EXPECT_GT(differing(draw({}), draw({"--boxes"})), 100u);
}

TEST_F(Render, SamplesSoftenEdges)
{
    EXPECT_GT(differing(draw({"--view", "front"}), draw({"--view", "front"}, "4")), 50u);
}

TEST_F(Render, MoreSamplesGiveTheSamePictureSmoother)
{
    // A turned rectangle of one colour: an edge has at most as many levels between as there are samples.
    writeText(folder.file("turn"), "ROTATE_Z_CCW\nROTATE_Z_CCW\n");
    for (const char* way : {"--no-legend", "--contract"}) {
        std::map<int, std::set<int>> levels;
        std::map<int, double> brightness;
        for (const int samples : {1, 2, 4, 8, 16}) {
            const Picture p =
                draw({"--parts", "2", "--view", "top", "--shade", "flat", "--ops", folder.file("turn"), way},
                     std::to_string(samples));
            for (int y = 0; y < p.height / 3; ++y) { // above the axes
                for (int x = 0; x < p.width; ++x) {
                    levels[samples].insert(p.at(x, y).r);
                    brightness[samples] += p.at(x, y).r;
                }
            }
        }
        EXPECT_EQ(levels[1].size(), 2u) << way;
        EXPECT_GT(levels[4].size(), 3u) << way;
        EXPECT_GT(levels[8].size(), levels[4].size() + 1) << way;
        EXPECT_GT(levels[16].size(), levels[8].size() + 2) << way;
        for (const auto& entry : brightness) {
            EXPECT_NEAR(entry.second, brightness[1], brightness[1] / 100) << way << " " << entry.first;
        }
    }
}

// The frames of a picture are one frame: operations count once, the marks of a single frame stay, and what
// reaches over the edge of the picture does so in each of them.
TEST_F(Render, MoreSamplesRepeatTheLastFrameOnly)
{
    const auto changed = [&](const std::string& operations, std::vector<std::string> more, int tolerance = 70) {
        writeText(folder.file("ops"), operations);
        more.insert(more.end(), {"--ops", folder.file("ops")});
        return kvo::compare(draw(more, "4"), draw(more, "16"), tolerance).differing;
    };
    const std::size_t axes = 60; // thin lines in strong colours
    EXPECT_LT(changed("GLOBAL_ROTATION 40 40 80 60\nROTATE_X_CCW\nGLOBAL_TRANSLATION 9 5 120 90\n", {}), axes);
    EXPECT_LT(changed("SCALE_INCR\n", {"--contract"}), axes);
    EXPECT_LT(changed("START_RUBBER_BAND 10 10 100 80\n", {}), axes);
    std::string zoom = "VIEW top\n";
    for (int k = 0; k < 12; ++k) {
        zoom += "GLOBAL_SCALE 1\n";
    }
    EXPECT_EQ(changed(zoom, {"--parts", "2", "--transparent", "2=0.7", "--view", "top"}, 200), 0u);
    const Picture full = draw({"--parts", "2", "--ops", folder.file("ops")}, "16");
    EXPECT_EQ(full.at(0, 45), full.at(20, 45));
    EXPECT_EQ(full.at(119, 20), full.at(20, 45));
    EXPECT_EQ(full.at(60, 0), full.at(20, 45));
}

TEST_F(Render, PartsAndHideChooseWhatIsDrawn)
{
    const Picture rest = draw({"--parts", "2-6"});
    EXPECT_GT(differing(draw({}), rest), 500u);
    EXPECT_EQ(differing(draw({"--hide", "1"}), rest), 0u);
    EXPECT_EQ(differing(draw({"--parts", "1-100", "--hide", "1"}), rest), 0u);
}

TEST_F(Render, ShownPartsFillThePicture)
{
    const Picture block = draw({"--parts", "3", "--view", "left"}); // 1 x 1.8
    EXPECT_EQ(countOther(block.cut(0, 10, 120, 1), background), countOther(block.cut(0, 70, 120, 1), background));
    EXPECT_NEAR(countOther(block.cut(0, 70, 120, 1), background), 0.95 * 90 / 1.8, 2);
}

TEST_F(Render, UnknownPartsAreErrorsUnlessInARange)
{
    expectError({"--parts", "1,99"}, "part 99 is not in the model");
    expectError({"--hide", "7"}, "part 7 is not in the model");
    expectError({"--parts", "90-99"}, "no part is left");
    expectError({"--hide", "1-99"}, "no part is left");
}

TEST_F(Render, AFailedRunLeavesTheOldPicture)
{
    draw({});
    const std::string before = readText(picture());
    EXPECT_EQ(render({"--parts", "99"}).status, 1);
    EXPECT_EQ(readText(picture()), before);
}

TEST_F(Render, UnwritablePicturesAreErrorsThatNameThem)
{
    const KvoRun run = runKvo({"render", deck(), "-o", folder.file("no/a.png"), "--size", "30x30"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err.rfind("kvo: " + folder.file("no/a.png") + ": ", 0), 0u) << run.err;
}

TEST_F(Render, UnwritableLogsAreErrorsThatNameThem)
{
    expectError({"--log", folder.file("no/log")}, folder.file("no/log"));
}

TEST_F(Render, ImpossibleSizesAndDevicesAreErrors)
{
    expectError({"--size", "99999x10"}, "99999x10");
    expectError({"--view", "all", "--size", "100x100"}, "100x100");
    const KvoRun run = runKvo({"render", deck(), "-o", picture(), "--device", "77"});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(contains(run.err, "\"77\"")) << run.err;
}

TEST_F(Render, ADecksModelDirectoryGoesAway)
{
    std::filesystem::create_directory(folder.file("tmp"));
    EXPECT_EQ(render({"--size", "30x30"}, {"TMPDIR=" + folder.file("tmp")}).status, 0);
    EXPECT_TRUE(std::filesystem::is_empty(folder.file("tmp")));
    EXPECT_EQ(render({"--size", "30x30", "--parts", "99"}, {"TMPDIR=" + folder.file("tmp")}).status, 1);
    EXPECT_TRUE(std::filesystem::is_empty(folder.file("tmp")));
}

TEST_F(Render, AModelDirectoryDrawsLikeItsDeck)
{
    ASSERT_EQ(runKvo({"import", deck(), "-o", folder.file("model")}).status, 0);
    const Picture ofDeck = draw({});
    ASSERT_EQ(runKvo({"render", folder.file("model"), "-o", picture(), "--samples", "1", "--device", "software",
                      "--size", "120x90"})
                  .status,
              0);
    EXPECT_EQ(differing(kvo::readPng(picture()), ofDeck), 0u);
}

TEST_F(Render, ModelsUnderPathsOfEveryLengthAreDrawn)
{
    // The drawing library holds a path of 127 characters, "/part_start" included; longer ones get a short name.
    const std::string model = folder.file("model");
    ASSERT_EQ(runKvo({"import", deck(), "-o", model}).status, 0);
    const auto draws = [&](const std::string& directory) {
        const KvoRun run = runKvo({"render", directory, "-o", picture(), "--size", "30x30", "--device", "software"});
        EXPECT_EQ(run.status, 0) << directory.size() << " " << run.err;
        return run.status == 0 ? kvo::readPng(picture()) : Picture(30, 30);
    };
    const Picture wanted = draws(model);
    EXPECT_GT(countOther(wanted, background), 50);
    const std::string beside = std::filesystem::canonical(folder.path).string() + "/";
    const std::size_t rest = std::string("/model/part_start").size();
    for (std::size_t length = 125; length <= 130; ++length) {
        const std::string parent = beside + std::string(length - beside.size() - rest, 'd');
        std::filesystem::create_directory(parent);
        std::filesystem::rename(model, parent + "/model");
        EXPECT_EQ(differing(draws(parent + "/model"), wanted), 0u) << length;
        std::filesystem::rename(parent + "/model", model);
    }
}

TEST_F(Render, DamagedModelsAreErrorsThatNameTheFile)
{
    const std::string model = folder.file("model");
    ASSERT_EQ(runKvo({"import", deck(), "-o", model}).status, 0);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(model)) {
        if (!entry.is_regular_file() || entry.path().filename() == "deck.json") { // drawing does not read that one
            continue;
        }
        const std::string file = entry.path().string(), whole = readText(file);
        writeText(file, whole.substr(0, whole.size() - 3));
        const KvoRun run = runKvo({"render", model, "-o", picture(), "--size", "30x30"});
        EXPECT_EQ(run.status, 1) << file;
        EXPECT_TRUE(contains(run.err, entry.path().filename().string())) << run.err;
        EXPECT_FALSE(std::filesystem::exists(picture()));
        writeText(file, whole);
    }
}

TEST_F(Render, AllViewsMakeATitledSheet)
{
    const KvoRun run = render({"--view", "all", "--size", "800x480", "--background", "black"});
    ASSERT_EQ(run.status, 0) << run.err;
    const Picture sheet = kvo::readPng(picture());
    EXPECT_EQ(sheet.width, 800);
    EXPECT_EQ(sheet.height, 480);
    // Seven cells with a model, an eighth with text; each is what --view draws at the cell's size.
    const int cellWidth = (800 - 5 * 8) / 4, cellHeight = (480 - 3 * 8) / 2 - 26;
    const std::string size = std::to_string(cellWidth) + "x" + std::to_string(cellHeight);
    int cell = 0;
    for (const char* view : {"iso", "top", "bottom", "left", "right", "front", "back"}) {
        ASSERT_EQ(render({"--view", view, "--size", size, "--background", "black"}).status, 0);
        const int x = 8 + cell % 4 * (cellWidth + 8), y = 8 + cell / 4 * (cellHeight + 26 + 8);
        EXPECT_EQ(differing(sheet.cut(x, y + 26, cellWidth, cellHeight), kvo::readPng(picture())), 0u) << view;
        const Picture title = sheet.cut(x, y, cellWidth, 26);
        EXPECT_GT(countOther(title, title.at(cellWidth - 1, 0)), 40) << view;
        ++cell;
    }
    const Picture text = sheet.cut(8 + 3 * (cellWidth + 8), 8 + cellHeight + 26 + 8 + 26, cellWidth, cellHeight);
    EXPECT_GT(countOther(text, {0, 0, 0, 255}), 200);
}

TEST_F(Render, TextOfASheetStandsOutFromItsBackground)
{
    const std::map<std::string, bool> lightInk = {{"black", true},   {"#00007f", true},  {"#ff0000", true},
                                                  {"#0000ff", true}, {"#404040", true},  {"white", false},
                                                  {"grey", false},   {"#00ff00", false}, {"#ffff00", false}};
    for (const auto& entry : lightInk) {
        const KvoRun run = render({"--view", "all", "--size", "400x240", "--background", entry.first});
        ASSERT_EQ(run.status, 0) << run.err;
        const Picture title = kvo::readPng(picture()).cut(8, 8, (400 - 5 * 8) / 4, 26);
        int darkest = 3 * 255, lightest = 0;
        for (int y = 0; y < title.height; ++y) {
            for (int x = 0; x < title.width; ++x) {
                const Color c = title.at(x, y);
                darkest = std::min(darkest, c.r + c.g + c.b);
                lightest = std::max(lightest, c.r + c.g + c.b);
            }
        }
        const Color empty = title.at(title.width - 1, 0);
        const int behind = empty.r + empty.g + empty.b;
        EXPECT_EQ(lightest > behind, entry.second) << entry.first;
        EXPECT_EQ(darkest < behind, !entry.second) << entry.first;
        EXPECT_GT(std::max(lightest - behind, behind - darkest), 110) << entry.first;
    }
}
