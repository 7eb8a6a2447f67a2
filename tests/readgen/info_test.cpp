// readModelInfo: what a model says about itself.
#include "modelinfo.h"

#include <algorithm>

#include "modelfixture.h"

namespace {

std::string errorOf(const std::string& dir, const std::string& name)
{
    ModelInfo info;
    std::string error;
    EXPECT_FALSE(readModelInfo(dir, name, &info, &error));
    EXPECT_TRUE(info.files.empty() && info.parts.empty());
    return error;
}

} // namespace

TEST(ModelInfo, DescribesTheTinyModel)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    ModelInfo info;
    std::string error;
    ASSERT_TRUE(readModelInfo(folder.path, "tiny", &info, &error)) << error;
    EXPECT_EQ(info.files, std::vector<std::string>{"tiny"});
    EXPECT_EQ(info.numNodes, std::vector<unsigned long long>{12});
    ASSERT_EQ(info.parts.size(), 4u);
    EXPECT_EQ(info.parts[2].part.id, 30u);
    EXPECT_EQ(info.parts[2].part.name, "beams");
    EXPECT_EQ(info.parts[2].part.drawType, unsigned(BEAM));
    EXPECT_EQ(info.parts[2].part.stride, 3u);
    EXPECT_FALSE(info.parts[2].part.hasColor);
    EXPECT_EQ(info.parts[2].numElements, 2u);
    EXPECT_EQ(info.parts[2].numNodes, 3u);
}

TEST(ModelInfo, AgreesWithWhatLoadingGives)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    ModelInfo info;
    ASSERT_TRUE(readModelInfo(folder.path, "tiny", &info, nullptr));
    const LoadedModel model(folder.path, "tiny");
    float extents[6] = {1e9f, -1e9f, 1e9f, -1e9f, 1e9f, -1e9f};
    for (unsigned int k = 0; k < 4; ++k) {
        const PartInfoStr& part = model.parts[k];
        EXPECT_EQ(model.pidMap.at(info.parts[k].part.id), k);
        EXPECT_EQ(info.parts[k].numNodes, part.partNodes.numNodes);
        EXPECT_TRUE(std::equal(part.partExtents, part.partExtents + 6, info.parts[k].extents));
        EXPECT_TRUE(std::equal(part.partColor, part.partColor + 4, info.parts[k].part.color));
        for (int side = 0; side < 6; ++side) {
            extents[side] = side % 2 ? std::max(extents[side], part.partExtents[side])
                                     : std::min(extents[side], part.partExtents[side]);
        }
    }
    EXPECT_TRUE(std::equal(extents, extents + 6, info.extents));
}

TEST(ModelInfo, KeepsAllThatAPartCanSay)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    addNodes(writer, {1, 2, 3});
    ModelPart part = makePart(4000000000u, SHELL, 4,
                              "Blech \xC3\xA4u\xC3\x9F"
                              "en");
    part.hasColor = true;
    part.color[1] = 0.5f;
    part.propertyId = 12;
    part.propertyName = "t = 1.5";
    part.materialId = 13;
    part.materialName = std::string("DP600");
    addPart(writer, makePart(1, SHELL, 4), {9}, {1, 2, 3, 3}); // without any text, in front
    addPart(writer, part, {1}, {1, 2, 3, 3});
    writeOrFail(writer);
    ModelInfo info;
    ASSERT_TRUE(readModelInfo(folder.path, "m", &info, nullptr));
    const ModelPart& read = info.parts[1].part;
    EXPECT_EQ(read.id, part.id);
    EXPECT_EQ(read.name, part.name);
    EXPECT_TRUE(read.hasColor);
    EXPECT_TRUE(std::equal(read.color, read.color + 4, part.color));
    EXPECT_EQ(read.propertyId, 12u);
    EXPECT_EQ(read.propertyName, "t = 1.5");
    EXPECT_EQ(read.materialId, 13u);
    EXPECT_EQ(read.materialName, "DP600");
    EXPECT_EQ(info.parts[0].part.name, "");
}

TEST(ModelInfo, ListsFilesAndTheirNodes)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    writer.beginFile("m/a");
    addNodes(writer, {1, 2, 3});
    writer.beginFile("m/b");
    addPart(writer, makePart(5, SHELL, 4), {1}, {1, 2, 3, 3});
    writeOrFail(writer);
    ModelInfo info;
    ASSERT_TRUE(readModelInfo(folder.path, "m", &info, nullptr));
    EXPECT_EQ(info.files, (std::vector<std::string>{"m/a", "m/b"}));
    EXPECT_EQ(info.numNodes, (std::vector<unsigned long long>{3, 0}));
    ASSERT_EQ(info.parts.size(), 1u);
    EXPECT_EQ(info.parts[0].fileIndex, 1);
}

TEST(ModelInfo, OfAMissingModelNamesTheFile)
{
    TempFolder folder;
    EXPECT_EQ(errorOf(folder.path, "none"),
              folder.path + "/none/part_start: offset 0: cannot be opened: No such file or directory");
}

TEST(ModelInfo, OfACutIndexFailsAtEveryLength)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    writer.beginFile("m/first");
    addNodes(writer, {1});
    writer.beginFile("m/second");
    writeOrFail(writer);
    const std::string path = folder.path + "/m/part_start";
    const std::string whole = readBytes(path);
    const std::size_t withoutTheStamp = 28u + 4 + 7 + 4 + 8; // whole as older files go
    ASSERT_EQ(whole.size(), withoutTheStamp + 24);
    for (std::size_t size = 0; size < whole.size(); size += size + 1 == withoutTheStamp ? 2 : 1) {
        writeBytes(path, whole.substr(0, size));
        EXPECT_EQ(errorOf(folder.path, "m").rfind(path + ": offset ", 0), 0u) << size;
    }
}

TEST(ModelInfo, OfAnIndexWithAChangedByteNamesTheIndex)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    const std::string path = folder.path + "/tiny/part_start";
    const std::string whole = readBytes(path);
    const std::size_t magicStart = 28, magicEnd = 36; // changed there, it is others' text behind an older file
    for (std::size_t k = 0; k < whole.size(); k = k + 1 == magicStart ? magicEnd : k + 1) {
        std::string bytes = whole;
        bytes[k] = static_cast<char>(bytes[k] ^ 1);
        writeBytes(path, bytes);
        EXPECT_EQ(errorOf(folder.path, "tiny").rfind(path + ": offset ", 0), 0u) << k;
    }
}

TEST(ModelInfo, RefusesAnAbsurdNumberOfFiles)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    const std::string path = folder.path + "/tiny/part_start";
    std::string bytes = readBytes(path);
    bytes.replace(24, 4, "\xFF\xFF\xFF\xFF", 4);
    writeBytes(path, bytes);
    EXPECT_EQ(errorOf(folder.path, "tiny"), path + ": offset 24: 4294967295 file names do not fit the file");
}

TEST(ModelInfo, PassesOnWhatIsWrongWithThePartTable)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    const std::string path = folder.path + "/tiny/parts";
    std::string bytes = readBytes(path);
    bytes[80] ^= 1;
    writeBytes(path, bytes);
    EXPECT_EQ(errorOf(folder.path, "tiny"), path + ": offset 64: the contents do not match their checksum");
}

TEST(FamilyNames, AreWhatGetPartTypeTakes)
{
    EXPECT_STREQ(partFamilyName(SHELL), "shell");
    EXPECT_STREQ(partFamilyName(DISCRETE), "discrete");
    EXPECT_STREQ(partFamilyName(1), "other");
}
