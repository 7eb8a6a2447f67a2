// Usage: exit statuses, messages, manuals.
#include <gtest/gtest.h>

#include "run_kvo.h"
#include "sample_deck.h"

namespace {

// Every wrong command line says why on standard error, in one line that begins "kvo: ", and exits with 2.
void expectUsageError(const std::vector<std::string>& arguments, const std::string& part)
{
    const KvoRun run = runKvo(arguments);
    EXPECT_EQ(run.status, 2) << run.err;
    EXPECT_EQ(run.err.rfind("kvo: ", 0), 0u) << run.err;
    EXPECT_TRUE(contains(run.err, part)) << run.err;
    EXPECT_EQ(run.out, "");
}

} // namespace

TEST(CommandLine, NeedsACommand)
{
    expectUsageError({}, "subcommand");
    expectUsageError({"paint"}, "subcommand");
}

TEST(CommandLine, UnknownOptionsAreUsageErrors)
{
    expectUsageError({"info", "model", "--colour"}, "--colour");
    expectUsageError({"import", "a.inp", "b.inp", "-o", "x"}, "b.inp");
}

TEST(CommandLine, MissingArgumentsAreUsageErrors)
{
    expectUsageError({"import", "a.inp"}, "--output");
    expectUsageError({"render", "a.inp"}, "--output");
    expectUsageError({"info"}, "model");
}

TEST(CommandLine, BadValuesAreUsageErrors)
{
    const TemporaryFolder folder;
    writeText(folder.file("a.inp"), sampleDeck());
    const std::string deck = folder.file("a.inp"), picture = folder.file("a.png");
    expectUsageError({"render", deck, "-o", picture, "--view", "side"}, "--view");
    expectUsageError({"render", deck, "-o", picture, "--shade", "matt"}, "--shade");
    expectUsageError({"render", deck, "-o", picture, "--mode", "cube"}, "--mode");
    for (const char* size : {"640", "640x", "x480", "0x10", "640x480x2", "-5x5", "640x480 "}) {
        expectUsageError({"render", deck, "-o", picture, "--size", size}, size);
    }
    for (const char* color : {"red", "#12345", "#12345g", "123456", "#1234567"}) {
        expectUsageError({"render", deck, "-o", picture, "--background", color}, color);
    }
    for (const char* ids : {"a", "1,", ",1", "5-2", "1-", "-3", "1 2", "4294967296", "1--2"}) {
        expectUsageError({"render", deck, "-o", picture, std::string("--parts=") + ids}, "--parts");
    }
    expectUsageError({"render", deck, "-o", picture, "--samples", "0"}, "--samples");
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.inp"});
}

TEST(CommandLine, VersionIsPrinted)
{
    const KvoRun run = runKvo({"--version"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.rfind("kvo ", 0), 0u) << run.out;
}

TEST(CommandLine, HelpIsAManual)
{
    const KvoRun all = runKvo({"--help"});
    EXPECT_EQ(all.status, 0);
    for (const char* part : {"EXAMPLES", "EXIT STATUS", "import", "info", "render"}) {
        EXPECT_TRUE(contains(all.out, part)) << part;
    }
    const KvoRun render = runKvo({"render", "--help"});
    EXPECT_EQ(render.status, 0);
    EXPECT_FALSE(contains(render.out, "EXIT STATUS")); // the program's manual, not the command's
    for (const char* part : {"--view", "--ops", "START_RUBBER_BAND X0 Y0 X1 Y1", "software", "EXAMPLES", "DEVICES"}) {
        EXPECT_TRUE(contains(render.out, part)) << part;
    }
    EXPECT_TRUE(contains(runKvo({"import", "--help"}).out, ".inp"));
    EXPECT_TRUE(contains(runKvo({"info", "--help"}).out, "elements_by_kind"));
}
