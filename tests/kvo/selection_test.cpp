// kvo render with selections.
#include <gtest/gtest.h>

#include "picture.h"
#include "run_kvo.h"
#include "sample_deck.h"

namespace {

class Selection : public testing::Test
{
protected:
    Selection() { writeText(deck(), sampleDeck()); }

    std::string deck() const { return folder.file("sample.inp"); }
    std::string picture() const { return folder.file("a.png"); }

    KvoRun render(std::vector<std::string> more)
    {
        more.insert(more.begin(), {"render", deck(), "-o", picture(), "--size", "120x90", "--samples", "1", "--device",
                                   "software", "--view", "left"});
        return runKvo(more);
    }

    kvo::Picture draw(const std::vector<std::string>& more)
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

std::size_t differing(const kvo::Picture& a, const kvo::Picture& b)
{
    return kvo::compare(a, b).differing;
}

// Pixels that are mainly blue (2) or green (1), here and not in the other picture.
int gained(const kvo::Picture& picture, const kvo::Picture& before, int channel)
{
    int out = 0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const kvo::Color c = picture.at(x, y);
            const int levels[] = {c.r, c.g, c.b};
            const bool mainly =
                levels[channel] > 40 + levels[(channel + 1) % 3] && levels[channel] > 40 + levels[(channel + 2) % 3];
            out += mainly && c != before.at(x, y);
        }
    }
    return out;
}

} // namespace

TEST_F(Selection, SelectedPartsAreBlueAndHighlightedOnesGreen)
{
    const kvo::Picture plain = draw({"--hide", "1"});
    EXPECT_GT(gained(draw({"--hide", "1", "--select-parts", "3"}), plain, 2), 100);
    EXPECT_GT(gained(draw({"--hide", "1", "--highlight", "3"}), plain, 1), 100);
    // Selected wins over highlighted.
    EXPECT_EQ(differing(draw({"--hide", "1", "--highlight", "3", "--select-parts", "3"}),
                        draw({"--hide", "1", "--select-parts", "3"})),
              0u);
}

TEST_F(Selection, SelectingEveryElementLooksLikeSelectingThePart)
{
    EXPECT_EQ(
        differing(draw({"--hide", "1", "--select-elements", "41-42"}), draw({"--hide", "1", "--select-parts", "3"})),
        0u);
    EXPECT_GT(differing(draw({"--hide", "1", "--select-elements", "41"}), draw({"--hide", "1", "--select-parts", "3"})),
              50u);
}

TEST_F(Selection, BeamsShowOnceTheyAreSelected)
{
    EXPECT_GT(gained(draw({"--hide", "1", "--select-elements", "61,62"}), draw({"--hide", "1"}), 2), 10);
}

TEST_F(Selection, SelectedNodesArePoints)
{
    const kvo::Picture plain = draw({"--hide", "1"});
    const int one = gained(draw({"--hide", "1", "--select-nodes", "209"}), plain, 2);
    EXPECT_GE(one, 30); // 8 x 8 pixels, less what stands before it
    EXPECT_LE(one, 64);
    EXPECT_GT(gained(draw({"--hide", "1", "--select-nodes", "201-212"}), plain, 2), one);
}

TEST_F(Selection, IdsGoToEveryPartThatHasThemUnlessOneIsNamed)
{
    // Node 305 belongs to part 4 only; element 41 to part 3 only.
    EXPECT_EQ(differing(draw({"--select-nodes", "4:305"}), draw({"--select-nodes", "305"})), 0u);
    EXPECT_EQ(differing(draw({"--select-elements", "3:41,42,4:51"}), draw({"--select-elements", "41-51"})), 0u);
    EXPECT_EQ(differing(draw({"--select-elements", "4:1-100"}), draw({"--select-elements", "51-53"})), 0u);
}

TEST_F(Selection, SelectingLeavesHiddenPartsHidden)
{
    // Colours may be rounded differently as soon as anything is selected.
    const int rounding = 1;
    EXPECT_EQ(kvo::compare(draw({"--hide", "3", "--select-elements", "41", "--select-nodes", "201"}),
                           draw({"--hide", "3"}), rounding)
                  .differing,
              0u);
}

TEST_F(Selection, UnknownIdsAreErrorsUnlessInARange)
{
    expectError({"--select-parts", "1,7"}, 1, "part 7 is not in the model");
    expectError({"--highlight", "0"}, 1, "part 0 is not in the model");
    expectError({"--select-elements", "41,43"}, 1, "element 43 is not in the model");
    expectError({"--select-elements", "4:41"}, 1, "element 41 is not in part 4");
    expectError({"--select-elements", "9:41"}, 1, "part 9 is not in the model");
    expectError({"--select-elements", "9:1-100"}, 1, "part 9 is not in the model");
    expectError({"--select-nodes", "999"}, 1, "node 999 is not in the model");
    EXPECT_EQ(differing(draw({"--select-elements", "43-50", "--select-nodes", "900-4294967295"}), draw({})), 0u);
}

TEST_F(Selection, ListsThatAreNoneAreUsageErrors)
{
    const std::string why = "\" is neither an id nor a range such as 5-9";
    expectError({"--select-parts", "1:2"}, 2, "--select-parts: \"1:2" + why);
    expectError({"--select-elements", "x:2"}, 2, "--select-elements: \"x:2" + why);
    expectError({"--select-elements", "1:2:3"}, 2, "--select-elements: \"1:2:3" + why);
    expectError({"--select-nodes", "5-"}, 2, "--select-nodes: \"5-" + why);
    expectError({"--select-nodes", "9-5"}, 2, "--select-nodes: \"9-5" + why);
    expectError({"--highlight", "1,,2"}, 2, "--highlight: \"" + why);
}
