// kvo info.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "run_kvo.h"
#include "sample_deck.h"

using nlohmann::json;

namespace {

class Info : public testing::Test
{
protected:
    Info() { writeText(folder.file("sample.inp"), sampleDeck()); }

    std::string importModel(const std::string& name)
    {
        const KvoRun run = runKvo({"import", folder.file("sample.inp"), "-o", folder.file(name)});
        EXPECT_EQ(run.status, 0) << run.err;
        return folder.file(name);
    }

    json infoJson(const std::string& model)
    {
        const KvoRun run = runKvo({"info", model, "--json"});
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.err, "");
        return json::parse(run.out);
    }

    TemporaryFolder folder;
};

json partNamed(const json& info, const std::string& name)
{
    for (const json& part : info.at("parts")) {
        if (part.at("name").get<std::string>().find(name) != std::string::npos) {
            return part;
        }
    }
    ADD_FAILURE() << "no part " << name;
    return {};
}

std::vector<std::string> lines(const std::string& text)
{
    std::vector<std::string> out;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = std::min(text.find('\n', from), text.size());
        out.push_back(text.substr(from, end - from));
        from = end + 1;
    }
    return out;
}

} // namespace

TEST_F(Info, JsonCountsEverything)
{
    const json info = infoJson(importModel("model"));
    EXPECT_EQ(info.at("model"), "model");
    EXPECT_EQ(info.at("totals").at("parts"), 6);
    EXPECT_EQ(info.at("totals").at("elements"), sampleElements);
    EXPECT_EQ(info.at("totals").at("nodes"), sampleNodes);
    EXPECT_EQ(info.at("totals").at("elements_by_kind"),
              json({{"shell", 14}, {"solid", 5}, {"beam", 2}, {"discrete", 1}}));
    EXPECT_EQ(info.at("extents"), json({{"min", {-3, -3, 0}}, {"max", {3, 3, 3}}}));
    ASSERT_EQ(info.at("files").size(), 1u);
    EXPECT_EQ(info.at("files")[0].at("nodes"), sampleNodes);
}

TEST_F(Info, JsonDescribesEveryPart)
{
    const json info = infoJson(importModel("model"));
    ASSERT_EQ(info.at("parts").size(), 6u);
    const json block = partNamed(info, "BLOCK");
    EXPECT_EQ(block.at("kind"), "solid");
    EXPECT_EQ(block.at("elements"), 2);
    EXPECT_EQ(block.at("nodes"), 12);
    EXPECT_EQ(block.at("extents").at("min"), json({-2, -1, 0.2}));
    EXPECT_EQ(block.at("extents").at("max"), json({-1, 0, 2.0}));
    EXPECT_EQ(block.at("color").size(), 4u);
    EXPECT_EQ(partNamed(info, "BAR").at("kind"), "beam");
    EXPECT_EQ(partNamed(info, "SPRING").at("kind"), "discrete");
    for (const json& part : info.at("parts")) {
        for (const char* key :
             {"id", "name", "kind", "file", "elements", "nodes", "extents", "color", "property", "material"}) {
            EXPECT_TRUE(part.contains(key)) << key;
        }
    }
}

TEST_F(Info, ADeckSaysTheSameAsItsModel)
{
    json ofModel = infoJson(importModel("sample")), ofDeck = infoJson(folder.file("sample.inp"));
    for (json* info : {&ofModel, &ofDeck}) { // the file is named after its directory
        (*info)["files"][0].erase("name");
        for (json& part : (*info)["parts"]) {
            part.erase("file");
        }
    }
    EXPECT_EQ(ofModel, ofDeck);
}

TEST_F(Info, TableHasALineAPartInAlignedColumns)
{
    const KvoRun run = runKvo({"info", importModel("model")});
    ASSERT_EQ(run.status, 0) << run.err;
    const std::vector<std::string> text = lines(run.out);
    ASSERT_GE(text.size(), 9u);
    const std::size_t elementsEnd = text[0].find("elements") + 8;
    for (std::size_t k = 1; k <= 6; ++k) {
        ASSERT_GT(text[k].size(), elementsEnd) << text[k];
        EXPECT_NE(text[k][elementsEnd - 1], ' ') << text[k]; // numbers end where their title ends
        EXPECT_EQ(text[k][elementsEnd], ' ') << text[k];
    }
    EXPECT_EQ(text[7], "");
    EXPECT_EQ(text[8], "model: 6 parts, 22 elements, 48 nodes");
}

TEST_F(Info, TakesDirectoriesInAnySpelling)
{
    const std::string model = importModel("model");
    const json info = infoJson(model);
    EXPECT_EQ(infoJson(model + "/"), info);
    EXPECT_EQ(infoJson(model + "/."), info);
    EXPECT_EQ(infoJson(folder.file("../" + folder.path.filename().string() + "/model")), info);
}

TEST_F(Info, LongPathsAreNoObstacle)
{
    // The drawing library's own path buffer has 128 bytes.
    const std::string deep = folder.file(std::string(120, 'd') + "/" + std::string(120, 'e'));
    std::filesystem::create_directories(deep);
    const std::string model = importModel("model");
    std::filesystem::rename(model, deep + "/model");
    EXPECT_EQ(infoJson(deep + "/model").at("totals").at("elements"), sampleElements);
    // Messages name the place that the user knows.
    writeText(deep + "/model/elements", "damaged");
    const KvoRun run = runKvo({"info", deep + "/model"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err.rfind("kvo: " + deep + "/model/elements: ", 0), 0u) << run.err;
}

TEST_F(Info, WhatIsNoModelIsAnErrorThatNamesIt)
{
    const KvoRun missing = runKvo({"info", folder.file("none")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "kvo: " + folder.file("none") + ": No such file or directory\n");
    std::filesystem::create_directory(folder.file("empty"));
    const KvoRun empty = runKvo({"info", folder.file("empty")});
    EXPECT_EQ(empty.status, 1);
    EXPECT_EQ(empty.err.rfind("kvo: " + folder.file("empty") + ": ", 0), 0u) << empty.err;
    EXPECT_TRUE(contains(empty.err, "part_start"));
}

TEST_F(Info, ADamagedModelIsAnErrorThatNamesTheFile)
{
    const std::string model = importModel("model");
    int damaged = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(model)) {
        if (!entry.is_regular_file()) {
            continue;
        }
        const std::string file = entry.path().string(), whole = readText(file);
        std::string flipped = whole;
        flipped.back() = static_cast<char>(flipped.back() ^ 0x55);
        for (const std::string& content : {whole.substr(0, whole.size() / 2), flipped, std::string()}) {
            writeText(file, content);
            const KvoRun run = runKvo({"info", model, "--json"}); // reads deck.json as well
            EXPECT_EQ(run.status, 1) << file << " with " << content.size() << " bytes";
            EXPECT_EQ(run.err.rfind("kvo: " + file + ": ", 0), 0u) << run.err;
            EXPECT_EQ(run.out, "");
        }
        writeText(file, whole);
        ++damaged;
    }
    EXPECT_GE(damaged, 3);
    EXPECT_EQ(runKvo({"info", model}).status, 0);
}

TEST_F(Info, SaysWhatWasTakenOffTheCoordinates)
{
    writeText(folder.file("far.inp"),
              "*NODE\n1, 12345678\n2, 12345679\n3, 12345678, 1\n*ELEMENT, TYPE=S3\n1, 1, 2, 3\n");
    const std::string model = folder.file("far");
    EXPECT_EQ(runKvo({"import", folder.file("far.inp"), "-o", model}).status, 0);
    EXPECT_FALSE(contains(runKvo({"info", model}).out, "less"));
    EXPECT_EQ(runKvo({"import", folder.file("far.inp"), "-o", model, "--shift-origin"}).status, 0);
    EXPECT_TRUE(contains(runKvo({"info", model}).out, "\ncoordinates are the deck's less (12345679, 0, 0)\n"))
        << runKvo({"info", model}).out;
    const json info = infoJson(model);
    EXPECT_EQ(info.at("deck").at("origin"), json({12345679.0, 0.0, 0.0}));
    EXPECT_EQ(info.at("extents").at("min"), json({-1.0, 0.0, 0.0}));
}

TEST_F(Info, SetsShowsWhatThePartsHaveNoRoomFor)
{
    writeText(folder.file("sets.inp"), sampleDeck() + "*ELEMENT, TYPE=MASS, ELSET=M\n9001, 1\n"
                                                      "*NSET, NSET=Fixed nodes\n1, 2, 3\n");
    const KvoRun run = runKvo({"info", folder.file("sets.inp"), "--sets"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(contains(run.out, "deck: Abaqus/CalculiX"));
    EXPECT_TRUE(contains(run.out, "\nFixed nodes  nodes")) << run.out;
    EXPECT_TRUE(contains(run.out, "shell section  thickness 0.1")) << run.out;
    EXPECT_TRUE(contains(run.out, "\nMASS      1\n")) << run.out;

    const json deck = infoJson(importModel("model")).at("deck");
    EXPECT_EQ(deck.at("parts").size(), 6u);
    std::filesystem::remove(folder.file("model") + "/deck.json");
    EXPECT_EQ(infoJson(folder.file("model")).at("deck"), json());
    EXPECT_TRUE(contains(runKvo({"info", folder.file("model"), "--sets"}).out, "no deck.json"));
}
