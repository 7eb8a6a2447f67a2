// View operations of session files, through kvo render --ops.
#include <gtest/gtest.h>

#include "picture.h"
#include "run_kvo.h"
#include "sample_deck.h"

namespace {

class Ops : public testing::Test
{
protected:
    Ops() { writeText(folder.file("a.inp"), sampleDeck()); }

    KvoRun render(const std::string& operations, const std::vector<std::string>& more = {})
    {
        writeText(folder.file("ops"), operations);
        std::vector<std::string> arguments = {
            "render", folder.file("a.inp"), "-o", picture(),  "--ops",   folder.file("ops"), "--size",
            "120x90", "--samples",          "1",  "--device", "software"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runKvo(arguments);
    }

    kvo::Picture draw(const std::string& operations, const std::vector<std::string>& more = {})
    {
        const KvoRun run = render(operations, more);
        EXPECT_EQ(run.status, 0) << run.err;
        return kvo::readPng(picture());
    }

    void expectError(const std::string& operations, int line, const std::string& part)
    {
        const KvoRun run = render(operations);
        EXPECT_EQ(run.status, 1);
        const std::string place = "kvo: " + folder.file("ops") + ":" + std::to_string(line) + ": ";
        EXPECT_EQ(run.err.rfind(place, 0), 0u) << run.err;
        EXPECT_TRUE(contains(run.err, part)) << run.err;
        EXPECT_FALSE(std::filesystem::exists(picture()));
    }

    std::string picture() const { return folder.file("a.png"); }

    TemporaryFolder folder;
};

std::size_t differing(const kvo::Picture& a, const kvo::Picture& b)
{
    return kvo::compare(a, b).differing;
}

} // namespace

TEST_F(Ops, UnknownNamesAreErrorsWithTheirLine)
{
    expectError("# first\n\nSCALE_INCR\nENLARGE 2\n", 4, "ENLARGE");
    expectError("rotate_x_cw\n", 1, "rotate_x_cw");
    expectError("VIEW side\n", 1, "side");
}

TEST_F(Ops, WrongValueCountsAreErrors)
{
    expectError("GLOBAL_ROTATION 1 2 3\n", 1, "takes 4 values, not 3");
    expectError("SCALE_INCR 0.2\n", 1, "takes 0 values, not 1");
    expectError("GLOBAL_SCALE\n", 1, "takes 1 value, not 0");
    expectError("VIEW\n", 1, "VIEW takes one name");
}

TEST_F(Ops, ValuesMustBeNumbers)
{
    expectError("GLOBAL_SCALE big\n", 1, "\"big\"");
    expectError("GLOBAL_SCALE 1e99\n", 1, "\"1e99\"");
    expectError("NO_TRANSFORM\nGLOBAL_SCALE 0.2x\n", 2, "\"0.2x\"");
}

TEST_F(Ops, UnreadableFilesAreErrorsThatNameThem)
{
    for (const std::string& file : {folder.file("none"), folder.path.string()}) {
        const KvoRun run = runKvo({"render", folder.file("a.inp"), "-o", picture(), "--ops", file});
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.err.rfind("kvo: " + file + ": ", 0), 0u) << run.err;
    }
}

TEST_F(Ops, AnEmptyFileChangesNothing)
{
    EXPECT_EQ(differing(draw(""), draw("# nothing\n\n   \t\nNO_TRANSFORM # at all\n")), 0u);
}

TEST_F(Ops, ViewIsTheStandardView)
{
    EXPECT_EQ(differing(draw("VIEW front\n"), draw("", {"--view", "front"})), 0u);
    EXPECT_GT(differing(draw("VIEW front\n"), draw("")), 500u);
}

TEST_F(Ops, EveryLineIsCarriedOut)
{
    const kvo::Picture once = draw("ROTATE_Z_CCW\n"), twice = draw("ROTATE_Z_CCW\nROTATE_Z_CCW\n");
    EXPECT_GT(differing(once, twice), 200u);
    EXPECT_EQ(differing(draw("ROTATE_Z_CCW\nROTATE_Z_CCW\nROTATE_Z_CW\n"), once), 0u);
}

TEST_F(Ops, ResetReturnsToTheBeginning)
{
    EXPECT_EQ(differing(draw("TRANS_UP\nROTATE_Y_CW\nRESET_TRANSFORM\n"), draw("")), 0u);
}

TEST_F(Ops, PositionsCountFromTheTopLeft)
{
    // The rubber band's upper edge is drawn near the top of the picture when its y is small.
    const kvo::Picture plain = draw("", {"--view", "top", "--contract"});
    const kvo::Picture band = draw("START_RUBBER_BAND 10 5 110 15\n", {"--view", "top", "--contract"});
    EXPECT_GT(differing(plain.cut(0, 0, 120, 20), band.cut(0, 0, 120, 20)), 60u);
    EXPECT_EQ(differing(plain.cut(0, 20, 120, 70), band.cut(0, 20, 120, 70)), 0u);
}

TEST_F(Ops, PolylinesCountFromTheTopLeft)
{
    const std::vector<std::string> way = {"--view", "top", "--contract"};
    const kvo::Picture plain = draw("", way);
    const kvo::Picture line = draw("START_POLYLINE 10 5\nSTART_POLYLINE 60 15\nSTART_POLYLINE 110 5\n"
                                   "START_POLYLINE 60 8\n",
                                   way);
    EXPECT_GT(differing(plain.cut(0, 0, 120, 20), line.cut(0, 0, 120, 20)), 60u);
    EXPECT_EQ(differing(plain.cut(0, 20, 120, 70), line.cut(0, 20, 120, 70)), 0u);
}

TEST_F(Ops, PanFollowsThePointer)
{
    // 20 pixels to the right and 10 down.
    const kvo::Picture plain = draw("", {"--view", "top"});
    const kvo::Picture panned = draw("GLOBAL_TRANSLATION 20 10 120 90\n", {"--view", "top"});
    const kvo::Picture expected = plain.cut(10, 10, 80, 60), got = panned.cut(30, 20, 80, 60);
    EXPECT_LT(differing(expected, got), 80u * 60 / 20);
}

TEST_F(Ops, ViewLinesDoNotGoWithAllViews)
{
    const KvoRun run = render("SCALE_INCR\nVIEW top\n", {"--view", "all"});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(contains(run.err, folder.file("ops") + ":2: ")) << run.err;
}

TEST_F(Ops, EveryOperationRuns)
{
    for (const std::vector<std::string>& way : {std::vector<std::string>{}, {"--contract"}}) {
        const KvoRun run =
            render("RESET_TRANSFORM\nROTATE_X_CCW\nROTATE_X_CW\nROTATE_Y_CCW\nROTATE_Y_CW\nROTATE_Z_CCW\n"
                   "ROTATE_Z_CW\nTRANS_LEFT\nTRANS_RIGHT\nTRANS_UP\nTRANS_DOWN\nSCALE_INCR\nSCALE_DECR\n"
                   "GLOBAL_TRANSLATION 5 5 120 90\nGLOBAL_SCALE 0.5\nGLOBAL_ROTATION 10 10 30 20\n"
                   "START_RUBBER_BAND 10 10 30 30\nEND_RUBBER_BAND\nSTART_RUBBER_BAND 10 10 30 30\nRECT_SCALE\n"
                   "START_RUBBER_BAND 10 10 30 30\nRECT_PICK\nSTART_POLYLINE 10 10\nSTART_POLYLINE 20 10\n"
                   "START_POLYLINE 20 20\nSTART_POLYLINE 10 20\nPOLYLINE_PICK\nSELECT_PICK\nTRANS_MAX\n"
                   "NO_TRANSFORM\n",
                   way);
        EXPECT_EQ(run.status, 0) << run.err;
    }
}
