// Damaged deck.json, pipes and devices instead of files, files that shrink.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>

#include <sys/stat.h>
#include <unistd.h>

#include "run_kvo.h"
#include "small_decks.h"

namespace {

std::string repeated(const std::string& text, int count)
{
    std::string out;
    for (int k = 0; k < count; ++k) {
        out += text;
    }
    return out;
}

class HostileFiles : public testing::Test
{
protected:
    std::string writeModel() const
    {
        writeText(folder.file("deck.inp"), gridDeck(2));
        const KvoRun run = runKvo({"import", folder.file("deck.inp"), "-o", folder.file("model")});
        EXPECT_EQ(run.status, 0) << run.err;
        return folder.file("model");
    }

    std::string makePipe() const
    {
        const std::string path = folder.file("pipe");
        EXPECT_EQ(mkfifo(path.c_str(), 0600), 0);
        return path;
    }

    // By the shell, with "$KVO" as the program; the output of both streams.
    KvoRun runShell(const std::string& command) const
    {
        setenv("KVO", KVO_PROGRAM, 1);
        const std::string out = folder.file("shell.out");
        KvoRun run;
        run.status = WEXITSTATUS(
            std::system(("( cd '" + folder.path.string() + "'; " + command + " ) >'" + out + "' 2>&1").c_str()));
        run.out = readText(out);
        return run;
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(HostileFiles, DeepListsInDeckJsonAreAnError)
{
    const std::string model = writeModel();
    const std::string json = readText(model + "/deck.json");
    for (const std::string key : {"\"sets\":", "\"unheard\":", "\"version\":"}) {
        writeText(model + "/deck.json", "{" + key + repeated("[", 50000) + repeated("]", 50000) + "," + json.substr(1));
        for (const char* option : {"--json", "--sets"}) {
            const KvoRun run = runKvo({"info", model, option});
            EXPECT_EQ(run.status, 1) << key << option;
            EXPECT_TRUE(contains(run.err, "deck.json: is damaged: its lists are nested deeper")) << run.err;
            EXPECT_LT(run.out.size(), 10000u);
        }
    }
}

TEST_F(HostileFiles, OnlyKnownKeysOfDeckJsonArePassedOn)
{
    const std::string model = writeModel();
    const nlohmann::json before = nlohmann::json::parse(runKvo({"info", model, "--json"}).out).at("deck");
    nlohmann::json deck = nlohmann::json::parse(readText(model + "/deck.json"));
    ASSERT_EQ(before, deck) << "all that is known is passed on";
    deck["extra"] = {{"sets", 1}};
    deck["parts"][0]["extra"] = {{"id", 2}};
    deck["parts"][0]["section"]["ids"] = 3;
    deck["parts"][0]["types"][0]["section"] = 4;
    deck["facts"]["anything"] = "kept";
    writeText(model + "/deck.json", deck.dump());
    nlohmann::json after = nlohmann::json::parse(runKvo({"info", model, "--json"}).out).at("deck");
    EXPECT_EQ(after["facts"]["anything"], "kept");
    after["facts"].erase("anything");
    EXPECT_EQ(after, before);
}

TEST_F(HostileFiles, DamageOfDeckJsonIsSaidInOwnWords)
{
    const std::string model = writeModel();
    for (const char* text : {"", "{", "[]", "{\"version\":1}", "{\"version\":1e999}", "{\"version\":\"\x1B[2J\"}",
                             "{\"version\":1,\"format\":\"\xFF\"}", "{\"version\":1,\"facts\":[1],\"sets\":{\"a\":1}}",
                             "{\"version\":2}", "\x1B[2J"}) {
        writeText(model + "/deck.json", text);
        const KvoRun run = runKvo({"info", model, "--sets"});
        EXPECT_EQ(run.status, 1) << text;
        EXPECT_TRUE(contains(run.err, "deck.json: is ")) << run.err;
        EXPECT_FALSE(contains(run.err, "json.exception")) << run.err;
        EXPECT_FALSE(contains(run.err, "\x1B")) << run.err;
    }
}

TEST_F(HostileFiles, PipesAndDevicesAreNoFiles)
{
    const std::string model = writeModel();
    const std::string png = folder.file("a.png");
    const std::string pipe = makePipe();
    std::filesystem::remove(model + "/deck.json");
    std::filesystem::create_symlink(pipe, model + "/deck.json");
    for (const std::string& file : {pipe, std::string("/dev/zero")}) {
        for (const std::vector<std::string>& words : {std::vector<std::string>{"import", file, "-o", folder.file("m")},
                                                      {"info", file},
                                                      {"info", model, "--sets"},
                                                      {"play", file, model},
                                                      {"render", model, "-o", png, "--ops", file},
                                                      {"render", model, "-o", png, "--state", file}}) {
            const KvoRun run = runKvo(words);
            EXPECT_EQ(run.status, 1) << words[0];
            EXPECT_TRUE(contains(run.err, "pipe or device")) << words[0] << ": " << run.err;
        }
    }
    EXPECT_FALSE(std::filesystem::exists(png));
    EXPECT_FALSE(std::filesystem::exists(folder.file("m")));
}

TEST_F(HostileFiles, DecksComeThroughPipesThatTheShellOpens)
{
    writeText(folder.file("deck.inp"), gridDeck(2));
    for (const char* command :
         {"cat deck.inp | $KVO import - -o m", "$KVO import - -o m < deck.inp",
          "cat deck.inp | $KVO import /dev/stdin -o m", "cat deck.inp | $KVO import /dev/fd/3 -o m 3<&0 </dev/null",
          "$KVO import /dev/fd/3 -o m 3< deck.inp", "cat deck.inp | $KVO import --confine . - -o m",
          "cat deck.inp | $KVO info -"}) {
        const KvoRun run = runShell(command);
        EXPECT_EQ(run.status, 0) << command << ": " << run.out;
        EXPECT_TRUE(contains(run.out, "4 elements")) << command << ": " << run.out;
    }
}

TEST_F(HostileFiles, EndlessDevicesOnStandardInputEnd)
{
    const KvoRun zeros = runShell("$KVO import - -o m < /dev/zero");
    EXPECT_EQ(zeros.status, 1);
    EXPECT_TRUE(contains(zeros.out, "begins with zero bytes")) << zeros.out;
    const KvoRun nothing = runShell("$KVO import - -o m < /dev/null");
    EXPECT_EQ(nothing.status, 1);
    EXPECT_TRUE(contains(nothing.out, "the file is empty")) << nothing.out;
    const KvoRun closed = runShell("$KVO import - -o m <&-");
    EXPECT_EQ(closed.status, 1);
    EXPECT_FALSE(std::filesystem::exists(folder.file("m")));
}
