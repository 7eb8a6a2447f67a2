// --confine, and model directories that name places outside of themselves.
#include <gtest/gtest.h>

#include "mantypes.h"
#include "modelwriter.h"
#include "run_kvo.h"
#include "small_decks.h"

namespace fs = std::filesystem;

namespace {

const std::string secret = "the-password";

class Confine : public testing::Test
{
protected:
    Confine()
    {
        fs::create_directories(inside("sub"));
        writeText(inside("deck.inp"), gridDeck(2));
        writeText(folder.file("secret"), secret + "\n");
        writeText(folder.file("out.session"), "NO_TRANSFORM\n");
        fs::create_symlink(folder.path, inside("up"));
        fs::create_symlink(folder.file("new"), inside("void"));
    }

    std::string inside(const std::string& name) const { return folder.file("in/" + name); }

    KvoRun confined(std::vector<std::string> words) const
    {
        words.insert(words.end(), {"--confine", folder.file("in")});
        return runKvo(words);
    }

    std::string model() const
    {
        EXPECT_EQ(confined({"import", inside("deck.inp"), "-o", inside("model")}).status, 0);
        return inside("model");
    }

    TemporaryFolder folder;
};

// A model of two files with these names; one square each.
void writeTwoFiles(const std::string& folder, const std::string& first, const std::string& second)
{
    ModelWriter writer(folder, "model");
    unsigned int next = 1;
    for (const std::string& name : {first, second}) {
        writer.beginFile(name);
        const unsigned int ids[] = {next, next + 1, next + 2, next + 3};
        const float xyz[] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
        writer.addNodes(4, ids, xyz);
        ModelPart part;
        part.id = next;
        part.drawType = SHELL;
        part.stride = 4;
        writer.addPart(part, 1, &next, ids, NodeReference::ById);
        next += 10;
    }
    std::string error;
    ASSERT_TRUE(writer.write(&error)) << error;
}

void replaceIn(const std::string& path, const std::string& from, const std::string& to)
{
    std::string text = readText(path);
    ASSERT_EQ(from.size(), to.size());
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos);
    writeText(path, text.replace(at, from.size(), to));
}

} // namespace

TEST_F(Confine, WhatLiesInsideWorks)
{
    const std::string m = model();
    writeText(inside("c.session"), "PICTURE " + inside("b.png") + "\nSAVE " + inside("s.state") + "\n");
    EXPECT_EQ(confined({"info", m}).status, 0);
    EXPECT_EQ(confined({"info", inside("sub/../deck.inp")}).status, 0);
    const KvoRun play = confined({"play", inside("c.session"), m});
    EXPECT_EQ(play.status, 0) << play.err;
    EXPECT_TRUE(fs::exists(inside("b.png")));
    const KvoRun render = confined({"render", m, "-o", inside("sub/c.png"), "--state", inside("s.state")});
    EXPECT_EQ(render.status, 0) << render.err;
    EXPECT_EQ(confined({"pick", m, "--at", "9,9", "--type", "part"}).status, 0);
}

TEST_F(Confine, NothingOutsideIsReadOrWritten)
{
    const std::string m = model();
    const std::string far = folder.file("far");
    writeText(inside("write.session"), "PICTURE " + far + "\n");
    writeText(inside("link.session"), "\nPICTURE " + inside("up/far") + "\n");
    writeText(inside("void.session"), "PICTURE " + inside("void") + "\n");
    writeText(inside("save.session"), "SAVE " + inside("../far") + "\n");
    writeText(inside("restore.session"), "RESTORE " + folder.file("secret") + "\n");
    writeText(inside("model.session"), "MODEL ../secret\n");
    const std::vector<std::vector<std::string>> rows = {
        {"import", folder.file("secret"), "-o", inside("x")},
        {"import", inside("up/secret"), "-o", inside("x")},
        {"import", inside("deck.inp"), "-o", far},
        {"import", inside("deck.inp"), "-o", inside("up/far")},
        {"import", inside("deck.inp"), "-o", inside("x"), "--log", far},
        {"info", folder.file("secret")},
        {"render", m, "-o", far},
        {"render", m, "-o", inside("void")},
        {"render", m, "-o", inside("x.png"), "--save-state", far},
        {"render", m, "-o", inside("x.png"), "--log", far},
        {"render", m, "-o", inside("x.png"), "--state", folder.file("secret")},
        {"render", m, "-o", inside("x.png"), "--ops", folder.file("out.session")},
        {"render", m, "-o", inside("x.png"), "--ops", inside("write.session")},
        {"pick", m, "--at", "9,9", "--type", "part", "--ops", inside("write.session")},
        {"play", folder.file("out.session"), m},
        {"play", inside("write.session"), m},
        {"play", inside("link.session"), m},
        {"play", inside("void.session"), m},
        {"play", inside("save.session"), m},
        {"play", inside("restore.session"), m},
        {"play", inside("model.session")},
        {"play", inside("save.session"), m, "-o", far},
    };
    for (const std::vector<std::string>& row : rows) {
        const KvoRun run = confined(row);
        const std::string what = row[0] + " " + row[1] + " " + row.back();
        EXPECT_EQ(run.status, 1) << what;
        EXPECT_TRUE(contains(run.err, "lies outside of ")) << what << ": " << run.err;
        EXPECT_FALSE(contains(run.err, secret)) << what << ": " << run.err;
    }
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"in", "out.session", "secret"}));
    EXPECT_FALSE(fs::exists(inside("x.png")));
    EXPECT_TRUE(contains(confined({"play", inside("link.session"), m}).err, "link.session:2: ")) << "the place";
}

TEST_F(Confine, IncludesStayInside)
{
    for (const std::string& name : {folder.file("secret"), std::string("../secret"), inside("up/secret")}) {
        const std::vector<std::pair<std::string, std::string>> decks = {
            {"a.inp", "*INCLUDE, INPUT=" + name + "\n"},
            {"a.k", "*KEYWORD\n*INCLUDE\n" + name + "\n*END\n"},
            {"b.k", "*KEYWORD\n*INCLUDE_PATH\n" + folder.path.string() + "\n*INCLUDE\nsecret\n*END\n"},
            {"a.bdf", "BEGIN BULK\nINCLUDE '" + name + "'\nENDDATA\n"}};
        for (const auto& deck : decks) {
            writeText(inside(deck.first), deck.second);
            const KvoRun open = runKvo({"info", inside(deck.first)});
            EXPECT_FALSE(contains(open.err, "confined")) << open.err;
            const KvoRun run = confined({"info", inside(deck.first)});
            EXPECT_EQ(run.status, 1) << deck.first;
            EXPECT_TRUE(contains(run.err, "to which reading is confined")) << deck.second << run.err;
            EXPECT_FALSE(contains(run.err, secret)) << run.err;
        }
    }
    writeText(inside("sub/part.inp"), gridDeck(1));
    writeText(inside("good.inp"), "*INCLUDE, INPUT=sub/part.inp\n");
    EXPECT_EQ(confined({"info", inside("good.inp")}).status, 0);
}

TEST_F(Confine, LinksOutOfModelsAreRefused)
{
    const std::string m = model();
    fs::rename(m + "/elements", folder.file("elements"));
    fs::create_symlink(folder.file("elements"), m + "/elements");
    EXPECT_EQ(runKvo({"info", m}).status, 0) << "a user's own link";
    const KvoRun run = confined({"info", m});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(contains(run.err, "model/elements: lies outside of ")) << run.err;
}

TEST_F(Confine, TheFolderMustBeOne)
{
    EXPECT_EQ(runKvo({"info", inside("deck.inp"), "--confine", inside("nowhere")}).status, 2);
    EXPECT_EQ(runKvo({"info", inside("deck.inp"), "--confine", inside("deck.inp")}).status, 2);
}

TEST_F(Confine, ModelFilesOutsideOfTheModelAreRefusedAlways)
{
    writeTwoFiles(inside("m"), "model/a1", "model/b1");
    ASSERT_EQ(runKvo({"info", inside("m/model")}).status, 0);
    // As it was written before it had a checksum.
    const std::string start = readText(inside("m/model/part_start"));
    fs::resize_file(inside("m/model/part_start"), start.find("KVO_STMP"));
    replaceIn(inside("m/model/part_start"), "model/b1", "../x/y/z");
    KvoRun run = runKvo({"info", inside("m/model")});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(contains(run.err, "../x/y/z: lies outside of the model")) << run.err;

    replaceIn(inside("m/model/part_start"), "../x/y/z", "/tmp/mod");
    EXPECT_TRUE(contains(runKvo({"info", inside("m/model")}).err, "lies outside of the model"));

    replaceIn(inside("m/model/part_start"), "/tmp/mod", "model/b1");
    fs::rename(inside("m/model/b1"), folder.file("elsewhere"));
    fs::create_symlink(folder.file("elsewhere"), inside("m/model/b1"));
    run = runKvo({"info", inside("m/model")});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(contains(run.err, "model/b1: lies outside of the model")) << run.err;
}
