// Names of model files that lead out of the model, and staging folders.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>

#include "modelfixture.h"
#include "modelinfo.h"
#include "readelements.h"
#include "readids.h"
#include "readnodes.h"

namespace fs = std::filesystem;

namespace {

struct Outside : testing::Test
{
    Outside()
    {
        fs::create_directory(folder.path + "/models");
        writeTinyModel(folder.path);             // tiny
        writeTinyModel(folder.path + "/models"); // models/tiny
        fs::copy(folder.path + "/tiny", folder.path + "/models/tiny/own", fs::copy_options::recursive);
    }

    // What the readers say of a model file in models/.
    void expect(const std::string& file, bool refused)
    {
        const std::string models = folder.path + "/models";
        testing::internal::CaptureStderr();
        ReadIDS ids;
        ids.set(models.c_str(), file.c_str());
        const int numIds = ids.get("node_ids");
        ReadNodes nodes(models.c_str(), file.c_str());
        const int numNodes = nodes.getValues();
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_EQ(numIds, refused ? 0 : static_cast<int>(tinyNodes.size())) << file;
        EXPECT_EQ(numNodes, refused ? 0 : static_cast<int>(tinyNodes.size())) << file;
        const std::string line = "kvoread: " + models + "/" + file + ": lies outside of the model\n";
        EXPECT_EQ(said, refused ? line + line : "") << file;
    }

    TempFolder folder;
};

} // namespace

TEST_F(Outside, NamesWithParentStepsAndAbsoluteOnesAreRefused)
{
    expect("tiny", false);
    expect("tiny/own", false);
    expect("../tiny", true);
    expect("tiny/../../tiny", true);
    expect("tiny/..", true);
    expect(folder.path + "/tiny", true);
    fs::create_directory(folder.path + "/models/tiny/a..b");
    fs::copy(folder.path + "/tiny", folder.path + "/models/tiny/a..b", fs::copy_options::recursive);
    expect("tiny/a..b", false);
}

TEST_F(Outside, LinksOutOfAModelAreRefusedButTheModelItselfMayBeOne)
{
    fs::create_directory_symlink(folder.path + "/tiny", folder.path + "/models/linked");
    fs::create_directory_symlink(folder.path + "/tiny", folder.path + "/models/tiny/out");
    fs::create_directory_symlink(folder.path + "/models/tiny/own", folder.path + "/models/tiny/in");
    expect("linked", false);
    expect("tiny/out", true);
    expect("tiny/in", false);
}

TEST_F(Outside, TheModelsDescriptionNamesThem)
{
    const std::string start = folder.path + "/models/tiny/part_start";
    std::string bytes = readBytes(start).substr(0, 24);
    for (const std::string name : {"../tiny", "linked2"}) {
        fs::remove(folder.path + "/models/linked2");
        fs::create_directory_symlink(folder.path + "/tiny", folder.path + "/models/linked2");
        const std::string two("\x02\0\0\0\x04\0\0\0tiny\x07\0\0\0", 16);
        writeBytes(start, bytes + two + name);
        ModelInfo info;
        std::string error;
        EXPECT_FALSE(readModelInfo(folder.path + "/models", "tiny", &info, &error)) << name;
        EXPECT_NE(error.find(name + ": "), std::string::npos) << error;
        EXPECT_NE(error.find("the model"), std::string::npos) << error;
    }
}
