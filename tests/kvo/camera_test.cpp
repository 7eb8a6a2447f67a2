// The camera on the command line and in sessions.
#include <cmath>

#include <gtest/gtest.h>

#include "picture.h"
#include "run_kvo.h"
#include "sample_deck.h"

namespace {

class CameraOptions : public testing::Test
{
protected:
    CameraOptions() { writeText(folder.file("a.inp"), sampleDeck()); }

    KvoRun render(const std::vector<std::string>& more, const std::string& operations = "")
    {
        writeText(folder.file("ops"), operations);
        std::vector<std::string> arguments = {"render",  folder.file("a.inp"), "-o", picture(),  "--size",
                                              "200x150", "--samples",          "1",  "--device", "software"};
        if (!operations.empty()) {
            arguments.insert(arguments.end(), {"--ops", folder.file("ops")});
        }
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runKvo(arguments);
    }
    kvo::Picture draw(const std::vector<std::string>& more, const std::string& operations = "")
    {
        const KvoRun run = render(more, operations);
        EXPECT_EQ(run.status, 0) << run.err;
        return kvo::readPng(picture());
    }
    // The same picture but for pixels on edges, where the last digits decide.
    void expectSame(const kvo::Picture& a, const kvo::Picture& b) { EXPECT_LT(kvo::compare(a, b).differing, 60u); }
    void expectOther(const kvo::Picture& a, const kvo::Picture& b) { EXPECT_GT(kvo::compare(a, b).differing, 400u); }
    void expectRefusal(const std::vector<std::string>& more, int status, const std::string& part,
                       const std::string& operations = "")
    {
        const KvoRun run = render(more, operations);
        EXPECT_EQ(run.status, status) << run.err;
        EXPECT_TRUE(contains(run.err, part)) << run.err;
    }
    std::string picture() const { return folder.file("a.png"); }

    TemporaryFolder folder;
};

} // namespace

TEST_F(CameraOptions, ViewsHaveSeveralNames)
{
    const kvo::Picture front = draw({"--view", "front"});
    expectSame(draw({"--view=-y"}), front);
    expectSame(draw({"--view", "0,0"}), front);
    expectSame(draw({"--view", "iso"}), draw({"--view", "45,35.264389682754654"}));
    expectSame(draw({}), draw({"--view", "iso"}));
    expectOther(draw({"--view", "back"}), front);
}

TEST_F(CameraOptions, UpSaysWhichAxisStands)
{
    expectSame(draw({"--up", "y", "--view", "front"}), draw({"--view", "top"}));
    expectOther(draw({"--up", "y"}), draw({}));
}

TEST_F(CameraOptions, ZoomRollAndPerspectiveAreThoseOfOperations)
{
    expectSame(draw({"--zoom", "2"}), draw({}, "ZOOM 2\n"));
    expectSame(draw({"--zoom", "2"}), draw({}, "ZOOM 2 100 75\n"));
    expectSame(draw({"--perspective", "60"}), draw({}, "PERSPECTIVE 60\nFIT visible\n"));
    expectOther(draw({"--perspective", "60"}), draw({}));
    expectSame(draw({"--view", "top", "--roll", "90", "--fit", "3"}), draw({"--view=-90,90", "--fit", "3"}));
}

TEST_F(CameraOptions, FitFillsThePictureWithWhatIsAsked)
{
    expectOther(draw({"--fit", "3"}), draw({}));
    expectSame(draw({"--fit", "3"}), draw({}, "FIT 3\n"));
    expectSame(draw({"--hide", "2-6", "--fit", "all"}), draw({}, "HIDE 2-6\n"));
    expectOther(draw({"--hide", "1"}), draw({"--hide", "1", "--fit", "all"}));
    expectSame(draw({"--select-parts", "3", "--fit", "selection"}), draw({"--select-parts", "3", "--fit", "3"}));
    expectRefusal({"--fit", "selection"}, 1, "nothing is selected");
    expectRefusal({"--fit", "99"}, 1, "part 99");
    expectRefusal({"--fit", "some"}, 2, "--fit");
}

TEST_F(CameraOptions, HidingLeavesTheCamera)
{
    expectSame(draw({"--hide", "1", "--fit", "all"}), draw({}, "HIDE 1\n"));
}

TEST_F(CameraOptions, OlderOperationsAreTheSameMovements)
{
    const std::vector<std::string> none;
    expectSame(draw(none, "GLOBAL_ROTATION 90 80 120 60\n"), draw(none, "ORBIT 90 80 120 60\n"));
    expectSame(draw(none, "GLOBAL_TRANSLATION 20 10 200 150\n"), draw(none, "PAN 50 50 70 60\n"));
    expectSame(draw(none, "GLOBAL_TRANSLATION 40 20 400 300\n"), draw(none, "PAN 50 50 70 60\n"));
    expectSame(draw(none, "TRANS_RIGHT\nTRANS_UP\n"), draw(none, "PAN 50 50 53 47\n"));
    expectSame(draw(none, "TRANS_LEFT\nTRANS_DOWN\n"), draw(none, "PAN 50 50 47 53\n"));
    expectSame(draw(none, "SCALE_INCR\nSCALE_INCR\n"), draw(none, "ZOOM 1.4\n"));
    expectSame(draw(none, "GLOBAL_SCALE 1\nSCALE_DECR\n"), draw(none, "ZOOM 1.8\n"));
    expectSame(draw(none, "START_RUBBER_BAND 60 40 140 100\nRECT_SCALE\n"), draw(none, "BOX_ZOOM 60 40 140 100\n"));
    expectOther(draw(none, "BOX_ZOOM 60 40 140 100\n"), draw(none));
}

TEST_F(CameraOptions, StepsTurnTheModelAboutItsAxes)
{
    const struct
    {
        const char* step;
        const char* view;
        const char* turned;
    } rows[] = {{"ROTATE_Z_CW\n", "front", "20,0"},   {"ROTATE_Z_CCW\n", "front", "-20,0"},
                {"ROTATE_X_CCW\n", "front", "0,20"},  {"ROTATE_X_CW\n", "front", "0,-20"},
                {"ROTATE_Y_CCW\n", "right", "90,20"}, {"ROTATE_Y_CW\n", "right", "90,-20"}};
    for (const auto& row : rows) {
        const std::string step = row.step;
        // The scale of the first fit stays, so both pictures are fitted again.
        expectSame(draw({"--view", row.view}, step + step + step + step + "FIT visible\n"),
                   draw({std::string("--view=") + row.turned}));
    }
}

TEST_F(CameraOptions, StepsAddUpInWhateverOrder)
{
    const kvo::Picture wanted = draw({"--view", "20,15"});
    const std::string z = "ROTATE_Z_CW\nROTATE_Z_CW\n", x = "ROTATE_X_CCW\n";
    expectSame(draw({"--view", "front"}, z + z + x + x + x + "FIT visible\n"), wanted);
    expectSame(draw({"--view", "front"}, x + z + x + z + x + "FIT visible\n"), wanted);
}

TEST_F(CameraOptions, ADragToTheRightIsATurnOfTheGlobe)
{
    // A third of half a turn.
    expectSame(draw({"--view", "front"}, "ORBIT 40 75 90 75 turntable\nFIT visible\n"), draw({"--view=-60,0"}));
    expectSame(draw({"--view", "front"}, "ORBIT 40 75 90 75\nFIT visible\n"), draw({"--view=-60,0"}));
}

TEST_F(CameraOptions, ResetAndViewsFitAgain)
{
    expectSame(draw({}, "PAN 0 0 30 30\nZOOM 3\nORBIT 3 4 50 60\nRESET_TRANSFORM\n"), draw({}));
    expectSame(draw({}, "PAN 0 0 30 30\nZOOM 3\nVIEW top\n"), draw({"--view", "top"}));
}

TEST_F(CameraOptions, InPerspectiveDragsHoldWhatIsUnderThem)
{
    const std::vector<std::string> look = {"--perspective", "70", "--zoom", "1.5"};
    const kvo::Picture before = draw(look), panned = draw(look, "PAN 100 60 112 66\n");
    // The surface that was grabbed is where the drag ended.
    EXPECT_EQ(panned.at(112, 66), before.at(100, 60));
    expectOther(panned, before);
}

TEST_F(CameraOptions, AStateKeepsTheCameraButNoPerspective)
{
    const std::string state = folder.file("a.state");
    const std::string moved = "VIEW left\nORBIT 40 40 70 55\nZOOM 1.5\nPAN 0 0 13 -9\n";
    const kvo::Picture saved = draw({"--save-state", state}, moved);
    expectSame(draw({"--state", state}), saved);
    expectOther(draw({}), saved);
    expectSame(draw({"--state", state, "--zoom", "2"}), draw({}, moved + "ZOOM 2\n"));
    expectRefusal({"--perspective", "40", "--save-state", folder.file("b.state")}, 1, "keeps no perspective");
    EXPECT_FALSE(std::filesystem::exists(folder.file("b.state")));
}

TEST_F(CameraOptions, ValuesThatAreNoneAreRefused)
{
    expectRefusal({"--view", "side"}, 2, "\"side\" is no view");
    expectRefusal({"--view", "0,91"}, 2, "is no view");
    for (const char* value : {"-1", "0.5", "151", "nan"}) {
        expectRefusal({std::string("--perspective=") + value}, 2, "--perspective");
    }
    for (const char* value : {"0", "-1", "nan"}) {
        expectRefusal({std::string("--zoom=") + value}, 2, "--zoom");
    }
    expectRefusal({"--up", "x"}, 2, "--up");
    expectRefusal({}, 1, "ops:1: ZOOM takes a factor above 0", "ZOOM 0\n");
    expectRefusal({}, 1, "ops:1: PERSPECTIVE takes 0 or 1 to 150", "PERSPECTIVE 151\n");
    expectRefusal({}, 1, "ops:1: ORBIT takes X0 Y0 X1 Y1", "ORBIT 1 2 3\n");
}

TEST_F(CameraOptions, ContractHasNoCamera)
{
    expectRefusal({"--contract", "--zoom", "2"}, 2, "--zoom is of the scene's camera");
    expectRefusal({"--contract", "--view", "30,20"}, 2, "which --contract does without");
    expectRefusal({"--contract"}, 1, "ORBIT 1 2 3 4 moves the scene's camera", "ORBIT 1 2 3 4\n");
    expectRefusal({"--contract"}, 1, "which --contract does without", "VIEW +x\n");
}
