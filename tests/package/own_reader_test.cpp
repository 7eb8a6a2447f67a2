// A host that brings its own reader: libkvorender calls the definitions in the executable, not those of libkvoread.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <GL/gl.h>

#include "caeenv.h"
#include "modelwriter.h"
#include "own_reader.h"
#include "partstr.h"

namespace {

// A model that libkvoread could read: 3 nodes, one triangle, part 1.
std::string writeModel()
{
    const std::string dir = testing::TempDir() + "own_reader";
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    ModelWriter writer(dir, "model");
    const unsigned int ids[] = {1, 2, 3};
    const unsigned int triangle[] = {1, 2, 3, 3};
    const float xyz[] = {0, 0, 0, 2, 0, 0, 0, 2, 0};
    writer.addNodes(3, ids, xyz);
    ModelPart part;
    part.id = 1;
    part.drawType = 41;
    part.stride = 4;
    writer.addPart(part, 1, ids, triangle);
    std::string error;
    EXPECT_TRUE(writer.write(&error)) << error;
    return dir;
}

} // namespace

TEST(OwnReader, TheHostsReaderWins)
{
    const std::string dir = writeModel();
    CAEEnv env(dir.c_str(), "model", GL_FLAT);
    ownreader::calls = 0;
    ASSERT_EQ(env.getAll(nullptr), 0);
    EXPECT_GT(ownreader::calls, 0);
    ASSERT_EQ(env.getNumParts(), 1);
    EXPECT_EQ(env.getPartsMapPtr()->count(ownreader::partId), 1u);
    EXPECT_EQ(env.getPartsList()->partNodes.numNodes, 4u);
    EXPECT_EQ(env.getPartsList()->partNodes.idList[0], 5u);
}
