// kvo import.
#include <gtest/gtest.h>

#include "run_kvo.h"
#include "sample_deck.h"

namespace {

class Import : public testing::Test
{
protected:
    Import() { writeText(deck(), sampleDeck()); }

    std::string deck() const { return folder.file("sample.inp"); }
    std::string model() const { return folder.file("model"); }

    TemporaryFolder folder;
};

} // namespace

TEST_F(Import, SaysWhatTheModelConsistsOf)
{
    const KvoRun run = runKvo({"import", deck(), "-o", model()});
    EXPECT_EQ(run.status, 0) << run.err;
    for (const char* part : {"6 parts", "22 elements", "48 nodes", "shell: 14", "solid: 5", "beam: 2", "discrete: 1"}) {
        EXPECT_TRUE(contains(run.out, part)) << part << " in " << run.out;
    }
    EXPECT_TRUE(std::filesystem::exists(model() + "/part_start"));
}

TEST_F(Import, ListsWhatIsLeftOut)
{
    writeText(deck(),
              sampleDeck() +
                  "*ELEMENT, TYPE=WEIRD9, ELSET=ODD\n81, 101, 102, 103\n82, 101, 102, 103\n*FROBNICATE\n1, 2\n");
    const KvoRun run = runKvo({"import", deck(), "-o", model()});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(contains(run.out, "WEIRD9")) << run.out;
    EXPECT_TRUE(contains(run.out, "FROBNICATE")) << run.out;
    EXPECT_TRUE(contains(run.out, "22 elements")) << run.out;
}

TEST_F(Import, ShowsNoBarInAFile)
{
    const KvoRun run = runKvo({"import", deck(), "-o", model()});
    EXPECT_EQ(run.err, "");
    EXPECT_FALSE(contains(run.out, "\r"));
}

TEST_F(Import, ShowsABarOnATerminalAndWipesItAway)
{
    const KvoRun run = runKvoOnTerminal({"import", deck(), "-o", model()});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(contains(run.err, "[####")) << run.err;
    EXPECT_TRUE(contains(run.err, "%")) << run.err;
    EXPECT_EQ(run.err.substr(run.err.size() - 4), "\r\033[K");
}

TEST_F(Import, LogKeepsTheReport)
{
    const KvoRun run = runKvo({"import", deck(), "-o", model(), "--log", folder.file("log")});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(contains(readText(folder.file("log")), "22 elements"));
}

TEST_F(Import, DeckErrorsNameFileAndLine)
{
    writeText(deck(), "*NODE\n1, 0, 0, 0\n2, x, 0, 0\n");
    const KvoRun run = runKvo({"import", deck(), "-o", model()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err.rfind("kvo: " + deck() + ":3: ", 0), 0u) << run.err;
    EXPECT_EQ(folder.names(), std::vector<std::string>{"sample.inp"});
}

TEST_F(Import, AMissingDeckIsAnError)
{
    const KvoRun run = runKvo({"import", folder.file("none.inp"), "-o", model()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err.rfind("kvo: " + folder.file("none.inp") + ": ", 0), 0u) << run.err;
}

TEST_F(Import, AFailedImportKeepsTheOldModel)
{
    ASSERT_EQ(runKvo({"import", deck(), "-o", model()}).status, 0);
    const std::string before = runKvo({"info", model()}).out;
    writeText(deck(), "*NODE\n1, 0, 0, 0\n2, x, 0, 0\n");
    EXPECT_EQ(runKvo({"import", deck(), "-o", model()}).status, 1);
    EXPECT_EQ(runKvo({"info", model()}).out, before);
}

TEST_F(Import, ASecondImportReplacesTheModel)
{
    ASSERT_EQ(runKvo({"import", deck(), "-o", model()}).status, 0);
    writeText(deck(), "*NODE\n1, 0, 0, 0\n2, 1, 0, 0\n3, 0, 1, 0\n*ELEMENT, TYPE=S3, ELSET=T\n1, 1, 2, 3\n");
    ASSERT_EQ(runKvo({"import", deck(), "-o", model()}).status, 0);
    EXPECT_TRUE(contains(runKvo({"info", model()}).out, "1 element, 3 nodes"));
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"model", "sample.inp"}));
}

TEST_F(Import, WhatIsNoModelDirectoryIsNotReplaced)
{
    std::filesystem::create_directory(model());
    writeText(model() + "/thesis.txt", "do not lose me");
    EXPECT_EQ(runKvo({"import", deck(), "-o", model()}).status, 1);
    EXPECT_EQ(readText(model() + "/thesis.txt"), "do not lose me");
    writeText(folder.file("file"), "a file");
    EXPECT_EQ(runKvo({"import", deck(), "-o", folder.file("file")}).status, 1);
    EXPECT_EQ(readText(folder.file("file")), "a file");
}

TEST_F(Import, UnwritableTargetsAreErrors)
{
    writeText(folder.file("file"), "a file");
    const KvoRun run = runKvo({"import", deck(), "-o", folder.file("file/model")});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(contains(run.err, folder.file("file"))) << run.err;
}
