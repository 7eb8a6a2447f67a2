// What the commands write: never over what they read, nor in place of what is no file; and results that nobody gets.
#include <atomic>
#include <thread>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "picture.h"
#include "run_kvo.h"
#include "small_decks.h"

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

namespace {

class Outputs : public testing::Test
{
protected:
    Outputs()
    {
        writeText(deck, squaresDeck({{0, 0, 0}, {2, 0, 0}}));
        EXPECT_EQ(runKvo({"import", deck, "-o", model}).status, 0);
    }

    std::string file(const std::string& name) const { return folder.file(name); }

    KvoRun run(const std::string& command, const Words& words, const Words& more) const
    {
        Words all = {command};
        all.insert(all.end(), words.begin(), words.end());
        all.insert(all.end(), {"--size", "40x30", "--device", "software"});
        all.insert(all.end(), more.begin(), more.end());
        return runKvo(all);
    }
    KvoRun render(const std::string& input, const Words& more) const { return run("render", {input}, more); }

    // Everything in the folder as one text.
    std::string snapshot() const
    {
        std::string all;
        for (const auto& entry : fs::recursive_directory_iterator(folder.path)) {
            all += entry.path().string() + (entry.is_regular_file() ? readText(entry.path().string()) : "") + "\n";
        }
        return all;
    }
    // The run fails with that message and changes nothing.
    void expectRefused(const std::string& before, const KvoRun& done, const std::string& message, int status = 2)
    {
        EXPECT_EQ(done.status, status) << done.err;
        EXPECT_TRUE(contains(done.err, message)) << done.err;
        EXPECT_TRUE(snapshot() == before) << message;
    }

    TemporaryFolder folder;
    const std::string deck = file("d.inp");
    const std::string model = file("m");
};

} // namespace

TEST_F(Outputs, NoCommandWritesOverWhatItReads)
{
    fs::create_hard_link(deck, file("hard.inp"));
    fs::create_symlink("m/parts", folder.path / "soft");
    writeText(file("ops"), "VIEW top\n");
    EXPECT_EQ(render(model, {"-o", file("a.png"), "--save-state", file("s")}).status, 0);
    const std::string before = snapshot();
    for (const std::string& name : {deck, file("hard.inp")}) {
        expectRefused(before, render(deck, {"-o", name}), "is also the model");
        expectRefused(before, render(deck, {"-o", file("x"), "--log", name}), "is also the model");
        expectRefused(before, render(deck, {"-o", file("x"), "--save-state", name}), "is also the model");
        expectRefused(before, runKvo({"import", deck, "-o", file("n"), "--log", name}), "is also the deck");
        expectRefused(before, runKvo({"import", deck, "-o", name}), "is also the deck");
    }
    for (const char* name : {"m/parts", "m/deck.json", "m/part_start", "soft"}) {
        expectRefused(before, render(model, {"-o", file(name)}), "is also a file of the model");
        expectRefused(before, run("pick", {model, "--at", "1,1", "--type", "part"}, {"--log", file(name)}),
                      "is also a file of the model");
    }
    expectRefused(before, render(model, {"-o", file("s"), "--state", file("s")}), "is also --state");
    expectRefused(before, render(model, {"-o", file("s"), "--state", file("s"), "--save-state", file("s")}),
                  "is also --output");
    expectRefused(before, render(model, {"-o", file("ops"), "--ops", file("ops")}), "is also --ops");
    expectRefused(before, run("play", {file("ops"), model}, {"--log", file("ops")}), "is also the session");
}

TEST_F(Outputs, IncludedFilesOfADeckAreRead)
{
    writeText(file("main.inp"), "*INCLUDE, INPUT=d.inp\n");
    const std::string before = snapshot();
    expectRefused(before, runKvo({"import", file("main.inp"), "-o", file("n"), "--log", deck}),
                  "is also a file of the deck");
    expectRefused(before, render(file("main.inp"), {"-o", deck}), "is also a file of the deck");
}

TEST_F(Outputs, NothingIsWrittenTwice)
{
    const std::string before = snapshot();
    expectRefused(before, render(model, {"-o", file("x"), "--log", file("./x")}), "is also --output");
    expectRefused(before, render(model, {"-o", file("x"), "--save-state", file("m/../x")}), "is also --output");
    expectRefused(before, runKvo({"import", deck, "-o", file("n"), "--log", file("n")}), "is also --output");
    expectRefused(before, runKvo({"import", deck, "-o", model, "--log", file("m/log")}), "lies in --output");
}

TEST_F(Outputs, ADeckInsideTheModelDirectoryIsKept)
{
    fs::rename(deck, model + "/elements.inp");
    const std::string before = snapshot();
    expectRefused(before, runKvo({"import", model + "/elements.inp", "-o", model}), "lies in --output");
}

TEST_F(Outputs, FoldersOfModelsAreKept)
{
    fs::create_directory(folder.path / "models");
    fs::rename(model, folder.path / "models/a");
    const std::string before = snapshot();
    expectRefused(before, runKvo({"import", deck, "-o", file("models")}), "is no model directory", 1);
}

TEST_F(Outputs, SessionsAreLookedThroughFirst)
{
    writeText(file("tour"), "PICTURE " + file("a.png") + "\nSAVE " + file("a.png") + "\n");
    expectRefused(snapshot(), run("play", {file("tour"), model}, {}), file("tour") + ":2: SAVE: \"" + file("a.png"), 1);
    writeText(file("tour"), "PICTURE " + file("a.png") + "\nPICTURE " + deck + "\n");
    expectRefused(snapshot(), run("play", {file("tour"), deck}, {}), file("tour") + ":2: PICTURE: \"" + deck, 1);
    writeText(file("tour"), "PICTURE " + file("a.png") + "\n");
    expectRefused(snapshot(), run("play", {file("tour"), model}, {"-o", file("a.png")}), "is also PICTURE");
    writeText(file("tour"), "PICTURE " + file("a.png") + "\nSAVE /dev/null\n");
    expectRefused(snapshot(), run("play", {file("tour"), model}, {}), ":2: /dev/null: is a device", 1);
}

TEST_F(Outputs, ASessionMayUseItsOwnFilesAgain)
{
    const std::string state = file("s"), picture = file("a.png");
    writeText(file("tour"), "SAVE " + state + "\nVIEW top\nRESTORE " + state + "\nSAVE " + state + "\nPICTURE " +
                                picture + "\nPICTURE " + picture + "\n");
    EXPECT_EQ(run("play", {file("tour"), model}, {}).status, 0);
}

TEST_F(Outputs, WhatIsNoFileIsKept)
{
    ASSERT_EQ(mkfifo(file("fifo").c_str(), 0600), 0);
    for (const std::string& name : {file("fifo"), std::string("/dev/null")}) {
        const std::string what = name + (name == "/dev/null" ? ": is a device" : ": is a pipe");
        EXPECT_TRUE(contains(render(model, {"-o", name}).err, what));
        EXPECT_TRUE(contains(render(model, {"-o", file("x"), "--log", name}).err, what));
        EXPECT_TRUE(contains(render(model, {"-o", file("x"), "--save-state", name}).err, what));
        EXPECT_TRUE(contains(runKvo({"import", deck, "-o", file("n"), "--log", name}).err, what));
    }
    EXPECT_TRUE(fs::is_fifo(folder.path / "fifo"));
    EXPECT_EQ(folder.names(), (Words{"d.inp", "fifo", "m"}));
}

TEST_F(Outputs, LinksStayAndModesAreKept)
{
    writeText(file("a.png"), "old");
    fs::permissions(file("a.png"), fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("a.png", folder.path / "link");
    EXPECT_EQ(render(model, {"-o", file("link")}).status, 0);
    EXPECT_TRUE(fs::is_symlink(folder.path / "link"));
    EXPECT_EQ(fs::status(file("a.png")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(kvo::readPng(file("a.png")).width, 40);
}

TEST_F(Outputs, ADashIsStandardOutput)
{
    EXPECT_EQ(render(model, {"-o", file("a.png")}).status, 0);
    const KvoRun done = render(model, {"-o", "-"});
    EXPECT_EQ(done.status, 0) << done.err;
    EXPECT_TRUE(done.out == readText(file("a.png")));
    writeText(file("tour"), "VIEW top\n");
    EXPECT_EQ(run("play", {file("tour"), model}, {"-o", "-"}).out.substr(1, 3), "PNG");
    writeText(file("tour"), "PICK part at 1 1\n");
    EXPECT_EQ(run("play", {file("tour"), model}, {"-o", "-"}).status, 2);
    EXPECT_FALSE(fs::exists("-"));
}

// --- Results that nobody gets ---

TEST_F(Outputs, AClosedOrFullStandardOutputIsAnError)
{
    const std::string pick = "--size=40x30";
    for (const Words& command : {Words{"info", model}, Words{"info", model, "--json"},
                                 Words{"pick", model, "--at", "1,1", "--type", "part", "--device", "software"},
                                 Words{"import", deck, "-o", model}, Words{"--help"}}) {
        for (const char* way : {">&-", "> /dev/full"}) {
            const KvoRun done = runKvoRedirected(command, way);
            EXPECT_EQ(done.status, 1) << command[0] << way;
            EXPECT_EQ(done.err, "kvo: standard output cannot be written\n") << command[0] << way;
        }
    }
    const Words picture = {"render", model, "-o", "-", "--size", "40x30", "--device", "software"};
    EXPECT_EQ(runKvoRedirected(picture, "> /dev/full").status, 1);
    EXPECT_EQ(runKvoRedirected(picture, ">&-").status, 1);
}

// Nothing that is opened later may get a standard stream's number: the picture would hold what the program says.
TEST_F(Outputs, ClosedStreamsDoNotMixIntoFiles)
{
    const Words words = {"render", model, "--size", "40x30", "--device", "software", "-o"};
    Words whole = words, closed = words;
    whole.push_back(file("a.png"));
    closed.push_back(file("b.png"));
    EXPECT_EQ(runKvoRedirected(whole, "").status, 0);
    EXPECT_EQ(runKvoRedirected(closed, "<&- >&- 2>&-").status, 0);
    EXPECT_TRUE(readText(file("a.png")) == readText(file("b.png")));
    EXPECT_EQ(runKvoRedirected({"import", deck, "-o", file("n")}, "2>&- <&-").status, 0);
    EXPECT_EQ(runKvo({"info", file("n")}).status, 0);
}

// --- Names ---

TEST_F(Outputs, NamesTooLongToLoadAreNotWritten)
{
    const std::string before = snapshot();
    expectRefused(before, runKvo({"import", deck, "-o", file(std::string(101, 'n'))}),
                  "the model's name has 101 bytes; a model with more than 100 could not be loaded", 1);
    EXPECT_EQ(runKvo({"import", deck, "-o", file(std::string(100, 'n'))}).status, 0);
    EXPECT_EQ(runKvo({"info", file(std::string(100, 'n'))}).status, 0);
    const std::string deep = std::string(150, 'd') + "/" + std::string(150, 'e');
    fs::create_directories(folder.path / deep);
    EXPECT_EQ(runKvo({"import", deck, "-o", file(deep + "/m")}).status, 0);
    EXPECT_EQ(runKvo({"info", file(deep + "/m")}).status, 0);
}

// --- Models that are replaced meanwhile ---

TEST_F(Outputs, AModelThatIsReplacedIsNotReadHalf)
{
    writeText(file("big.inp"), gridDeck(12));
    const std::string small = runKvo({"info", model, "--sets"}).out;
    ASSERT_EQ(runKvo({"import", file("big.inp"), "-o", file("other")}).status, 0);
    fs::rename(model, folder.path / "kept");
    fs::rename(file("other"), model);
    const std::string large = runKvo({"info", model, "--sets"}).out;
    ASSERT_NE(small, large);
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (int k = 0; k < 20; ++k) {
            runKvo({"import", k % 2 ? deck : file("big.inp"), "-o", model});
        }
        done = true;
    });
    int whole = 0;
    while (!done) {
        const KvoRun read = runKvo({"info", model, "--sets"});
        if (read.status == 0) {
            EXPECT_TRUE(read.out == small || read.out == large) << read.out;
            ++whole;
        }
    }
    writer.join();
    EXPECT_GT(whole, 0);
}
