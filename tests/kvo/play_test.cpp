// kvo play, and operations beyond views in kvo render --ops.
#include <gtest/gtest.h>

#include "picture.h"
#include "run_kvo.h"
#include "sample_deck.h"

namespace {

// Runs in the folder of the test, which relative names count from.
class Play : public testing::Test
{
protected:
    Play() : before(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder.path);
        std::filesystem::create_directory("sessions");
        std::filesystem::create_directory("models");
        writeText("models/a.inp", sampleDeck());
    }
    ~Play() override { std::filesystem::current_path(before); }

    KvoRun play(const std::string& session, std::vector<std::string> more = {})
    {
        writeText("sessions/s", session);
        more.insert(more.begin(), {"play", "sessions/s", "--samples", "1", "--device", "software"});
        return runKvo(more);
    }

    // On the sample deck, in a small picture.
    KvoRun playSmall(const std::string& session, const std::vector<std::string>& more = {})
    {
        return play("MODEL ../models/a.inp\nSIZE 120x90\n" + session, more);
    }

    kvo::Picture draw(const std::string& session)
    {
        const KvoRun run = playSmall(session, {"-o", "a.png"});
        EXPECT_EQ(run.status, 0) << run.err;
        return kvo::readPng("a.png");
    }

    // line: in the part of the session after the two lines of its head.
    void expectError(const std::string& session, int line, const std::string& message)
    {
        const KvoRun run = playSmall(session, {"-o", "a.png"});
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.err, "kvo: sessions/s:" + std::to_string(line + 2) + ": " + message + "\n");
        EXPECT_FALSE(std::filesystem::exists("a.png"));
    }

    TemporaryFolder folder;
    std::filesystem::path before;
};

std::size_t differing(const kvo::Picture& a, const kvo::Picture& b)
{
    return kvo::compare(a, b).differing;
}

} // namespace

TEST_F(Play, TheSessionNamesModelAndSize)
{
    const KvoRun run = play("MODEL ../models/a.inp\nSIZE 77x55\n", {"-o", "a.png"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out + run.err, "");
    EXPECT_EQ(kvo::readPng("a.png").width, 77);
    EXPECT_EQ(kvo::readPng("a.png").height, 55);
}

TEST_F(Play, TheCommandLineWinsOverTheSession)
{
    const KvoRun run = play("MODEL none.inp\nSIZE 77x55\n", {"models/a.inp", "--size", "30x40", "-o", "a.png"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(kvo::readPng("a.png").width, 30);
}

TEST_F(Play, ASessionWithoutAModelNeedsOne)
{
    const KvoRun run = play("SIZE 77x55\n");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "kvo: sessions/s: the session has no MODEL line, so the command line must name a model\n");
    EXPECT_EQ(play("MODEL none.inp\n").err, "kvo: sessions/none.inp: No such file or directory\n");
}

TEST_F(Play, PicksPrintWhatTheyFindAndSelectIt)
{
    const KvoRun run = playSmall("HIDE 1\nVIEW left\nPICK element through rect 0 0 120 90\nPICK node at 1 1\n");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out.rfind("PICK element through rect 0 0 120 90\n  part 2 FLOOR, element 31, at 1 -1 0, depth 0.", 0),
              0u)
        << run.out;
    EXPECT_TRUE(contains(run.out, "\n  part 6 SPRING, element 71, at -1.5 -0.5 2.45, depth 0."));
    EXPECT_TRUE(contains(run.out, "\nPICK node at 1 1\n  nothing\n"));
    EXPECT_EQ(differing(draw("HIDE 1\nVIEW left\nPICK element through rect 0 0 120 90\n"),
                        draw("HIDE 1\nVIEW left\nSELECT elements 1-1000\nCLEAR parts\n")),
              0u);
}

TEST_F(Play, PicksFindWhatThePictureShowsUnlessThrough)
{
    // From below, the floor covers everything that stands on it.
    const std::string head = "VIEW bottom\nPICK part ";
    const std::string shown = playSmall(head + "rect 0 0 120 90\n").out;
    EXPECT_TRUE(contains(shown, "part 2 FLOOR")) << shown;
    EXPECT_FALSE(contains(shown, "part 6 SPRING")) << shown;
    EXPECT_TRUE(contains(playSmall(head + "through rect 0 0 120 90\n").out, "part 6 SPRING"));
    EXPECT_EQ(playSmall(head + "polygon 0 0 120 0 120 90 0 90\n").out.substr(40), shown.substr(26));
}

TEST_F(Play, TheLibrarysPathPlaysSessionsToo)
{
    const std::string session = "MODEL ../models/a.inp\nSIZE 120x90\nVIEW top\nPICK part rect 0 0 120 90\n";
    const KvoRun run = play(session, {"--contract", "-o", "a.png"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(contains(run.out, "part 6 SPRING")) << run.out; // its picks are always through
    const kvo::Picture contract = kvo::readPng("a.png");
    EXPECT_GT(differing(contract, draw("VIEW top\nPICK part rect 0 0 120 90\n")), 200u);
    EXPECT_EQ(play(session + "PICK part polygon 0 0 9 0 9 9\n", {"--contract"}).err,
              "kvo: sessions/s:5: the drawing library's own pick takes no polygons\n");
}

TEST_F(Play, PicksAddToTheSelectionAndClearTakesItAway)
{
    const std::string hide = "HIDE 1\nVIEW left\n";
    EXPECT_EQ(differing(draw(hide + "SELECT elements 41\nPICK node at 1 1\nPICK element at 2 2\n"),
                        draw(hide + "SELECT elements 41\n")),
              0u);
    const std::string all = hide + "SELECT parts 3\nSELECT elements 31,61\nSELECT nodes 209\nHIGHLIGHT 4\n";
    EXPECT_EQ(differing(draw(all + "CLEAR\n"), draw(hide)), 0u);
    EXPECT_EQ(differing(draw(all + "CLEAR parts\nCLEAR highlight\n"),
                        draw(hide + "SELECT elements 31,61\nSELECT nodes 209\n")),
              0u);
    EXPECT_EQ(differing(draw(all + "CLEAR elements\nCLEAR nodes\n"), draw(hide + "SELECT parts 3\nHIGHLIGHT 4\n")), 0u);
}

TEST_F(Play, OperationsDoWhatTheOptionsOfRenderDo)
{
    const struct
    {
        const char* session;
        std::vector<std::string> options;
    } pairs[] = {
        {"HIDE 1,4-5\nFIT visible\n", {"--hide", "1,4-5"}},
        {"HIDE all\nSHOW 3\nFIT visible\n", {"--parts", "3"}},
        {"SHADE flat\n", {"--shade", "flat"}},
        {"MODE line\n", {"--mode", "line"}},
        {"SELECT parts 1\n", {"--select-parts", "1"}},
        {"SELECT nodes 1-20\n", {"--select-nodes", "1-20"}},
        {"HIGHLIGHT 2,3\n", {"--highlight", "2,3"}},
        {"HIDE 1\nSHOW all\nVIEW top\n", {"--view", "top", "--parts", "1-6"}},
    };
    for (const auto& pair : pairs) {
        std::vector<std::string> command = {"render", "models/a.inp", "-o", "b.png",    "--size",
                                            "120x90", "--samples",    "1",  "--device", "software"};
        command.insert(command.end(), pair.options.begin(), pair.options.end());
        ASSERT_EQ(runKvo(command).status, 0);
        EXPECT_EQ(differing(draw(pair.session), kvo::readPng("b.png")), 0u) << pair.session;
    }
}

TEST_F(Play, SavedStatesComeBack)
{
    const kvo::Picture saved = draw("VIEW back\nSCALE_INCR\nHIDE 2\nSAVE a.state\nNO_TRANSFORM\n");
    EXPECT_EQ(differing(draw("ROTATE_X_CW\nHIGHLIGHT 1\nSHADE flat\nRESTORE a.state\n"), saved), 0u);
    EXPECT_EQ(differing(draw("SELECT elements 1-20\nCLEAR\nRESTORE a.state\nRESTORE a.state\n"), saved), 0u);
}

TEST_F(Play, PicturesAndStatesGoToTheCurrentFolder)
{
    ASSERT_EQ(playSmall("PICTURE b.png\nSAVE \"c d.state\"\nVIEW top\nPICTURE e.png\n").status, 0);
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"b.png", "c d.state", "e.png", "models", "sessions"}));
    EXPECT_EQ(differing(kvo::readPng("b.png"), draw("")), 0u);
    EXPECT_EQ(differing(kvo::readPng("e.png"), draw("VIEW top\n")), 0u);
}

TEST_F(Play, ErrorsOfTheFormatComeBeforeAnythingIsDone)
{
    expectError(
        "PICTURE b.png\nPICK part\n", 2,
        "PICK takes part, element or node, [through], then at X Y [SIZE], rect X0 Y0 X1 Y1 or polygon X Y X Y X Y ...");
    expectError("VIEW side\n", 1, "\"side\" is no view (iso, top, ..., +x, ..., or AZ,EL in degrees)");
    EXPECT_FALSE(std::filesystem::exists("b.png"));
}

TEST_F(Play, ErrorsOfALineNameItsPlace)
{
    expectError("\nSELECT parts 1,9\n", 2, "part 9 is not in the model");
    expectError("SELECT elements 4:41\n", 1, "element 41 is not in part 4");
    expectError("SELECT nodes 999\n", 1, "node 999 is not in the model");
    expectError("HIGHLIGHT 8\n", 1, "part 8 is not in the model");
    expectError("HIDE 1-3,8\n", 1, "part 8 is not in the model");
    expectError("SHOW 8\n", 1, "part 8 is not in the model");
    expectError("CLEAR\nPICK part at 120 1\n", 2, "the place 120,1 is outside the picture of 120x90 pixels");
    expectError("PICK node rect 5 5 5 9\n", 1, "the rectangle 5,5,5,9 is empty");
    expectError("PICK node rect 5 5 50 91\n", 1, "the rectangle 5,5,50,91 reaches out of the picture of 120x90 pixels");
    expectError("PICK node polygon 5 5 50 91 9 9\n", 1,
                "the polygon 5,5 50,91 9,9 reaches out of the picture of 120x90 pixels");
    expectError("RESTORE none.state\n", 1, "none.state: cannot be opened (No such file or directory)");
    expectError("SAVE no/a.state\n", 1, "no/a.state: cannot be written (No such file or directory)");
    expectError("PICTURE no/a.png\n", 1, "no/a.png: cannot be written (No such file or directory)");
    writeText("bad.state", "bad");
    expectError("RESTORE bad.state\n", 1, "bad.state: byte 3: the file ends here");
}

TEST_F(Play, WhatWasPrintedBeforeAnErrorStays)
{
    const KvoRun run = playSmall("PICK part at 1 1\nSELECT parts 9\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "PICK part at 1 1\n  nothing\n");
}

TEST_F(Play, UnreadableSessionsAreErrorsThatNameThem)
{
    EXPECT_EQ(runKvo({"play", "none"}).err, "kvo: none: cannot be opened (No such file or directory)\n");
    EXPECT_EQ(runKvo({"play", "sessions"}).err, "kvo: sessions: is a directory, not a session file\n");
}

TEST_F(Play, RenderPlaysSessionsToo)
{
    const std::string session = "MODEL other.inp\nSIZE 120x90\nHIDE 1\nPICK part at 1 1\nVIEW front\n";
    writeText("sessions/ops", session);
    const KvoRun run = runKvo(
        {"render", "models/a.inp", "-o", "b.png", "--ops", "sessions/ops", "--samples", "1", "--device", "software"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "PICK part at 1 1\n  nothing\n");
    EXPECT_EQ(differing(kvo::readPng("b.png"), draw("HIDE 1\nVIEW front\n")), 0u);
}

TEST_F(Play, OnlyViewOperationsGoWithAllViews)
{
    for (const std::string line : {"VIEW top", "PICK part at 1 1", "SELECT parts 1", "HIDE 1", "PICTURE c.png"}) {
        writeText("sessions/ops", "SCALE_INCR\n" + line + "\n");
        const KvoRun run = runKvo({"render", "models/a.inp", "-o", "b.png", "--view", "all", "--ops", "sessions/ops"});
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.err, "kvo: sessions/ops:2: " + line + " cannot be used with --view all\n");
    }
}
