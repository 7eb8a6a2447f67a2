// ModelWriter: the files it makes, what it replaces.
#include <cstring>
#include <filesystem>
#include <set>

#include "modelfixture.h"
#include "modelinfo.h"

namespace fs = std::filesystem;

namespace {

const std::vector<std::string> tinyTree = {"tiny/",         "tiny/elements",   "tiny/node_coords",
                                           "tiny/node_ids", "tiny/part_start", "tiny/parts"};

std::vector<float> extentsOf(const std::string& partStart)
{
    std::vector<float> extents(6);
    std::memcpy(extents.data(), readBytes(partStart).data(), 24);
    return extents;
}

} // namespace

TEST(Writer, MakesTheFilesOfAModelAndNothingElse)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    EXPECT_EQ(listTree(folder.path), tinyTree);
}

TEST(Writer, MakesTheSameBytesForTheSameModel)
{
    TempFolder a, b;
    writeTinyModel(a.path);
    writeTinyModel(b.path);
    for (const std::string& name : tinyTree) {
        if (name.back() != '/') {
            EXPECT_EQ(readBytes(a.path + "/" + name), readBytes(b.path + "/" + name)) << name;
        }
    }
}

TEST(Writer, WritesThePartStartOfASingleFile)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    const Ids ids = {1, 2, 3, 4};
    const float xyz[] = {-1, 0, 0, 2, 5, 0, 0, 0, -7, 1000, 1000, 1000};
    writer.addNodes(4, ids.data(), xyz);
    addPart(writer, makePart(1, SHELL, 4), {1}, {1, 2, 3, 3}); // node 4 is not used
    writeOrFail(writer);
    EXPECT_EQ(extentsOf(folder.path + "/m/part_start"), (std::vector<float>{-1, 2, 0, 5, -7, 0}));
    EXPECT_EQ(withoutStamp(readBytes(folder.path + "/m/part_start")).substr(24), std::string("\1\0\0\0", 4));
}

TEST(Writer, WritesThePartStartOfSeveralFiles)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    addNodes(writer, {1});
    writer.beginFile("m/xy");
    writeOrFail(writer);
    EXPECT_EQ(withoutStamp(readBytes(folder.path + "/m/part_start")).substr(24),
              std::string("\2\0\0\0\1\0\0\0m\4\0\0\0m/xy", 17));
}

TEST(Writer, StampsAllFilesAlike)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    for (unsigned int k : {1u, 2u}) {
        writer.beginFile("m/file" + std::to_string(k));
        addNodes(writer, {k, k + 10, k + 20});
        addPart(writer, makePart(k, SHELL, 4), {1}, {k, k + 10, k + 20, k + 20});
    }
    writeOrFail(writer);
    const std::uint64_t stamp = stampIn(readBytes(folder.path + "/m/part_start"));
    EXPECT_NE(stamp, 0u);
    int headers = 0;
    for (const std::string& name : listTree(folder.path + "/m")) {
        if (name.back() != '/' && name != "part_start") {
            const std::string bytes = readBytes(folder.path + "/m/" + name);
            EXPECT_EQ(reinterpret_cast<const readgen::FileHeader*>(bytes.data())->stamp, stamp) << name;
            ++headers;
        }
    }
    EXPECT_EQ(headers, 2 + 2 * 4);
}

// Coordinates, references, names and the deck's own text: whatever differs makes another stamp.
TEST(Writer, StampsDifferentModelsDifferently)
{
    std::set<std::uint64_t> stamps;
    const auto write = [&stamps](const char* name, float z, const Ids& corners, const char* deck) {
        TempFolder folder;
        ModelWriter writer(folder.path, "m");
        const Ids ids = {1, 2, 3, 4};
        const float xyz[] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, z};
        writer.addNodes(4, ids.data(), xyz);
        addPart(writer, makePart(1, SHELL, 4, name), {1}, corners);
        writer.setDeck(deck);
        writeOrFail(writer);
        stamps.insert(stampIn(readBytes(folder.path + "/m/part_start")));
    };
    write("a", 0, {1, 2, 3, 4}, "{}");
    write("b", 0, {1, 2, 3, 4}, "{}");
    write("a", 0.5f, {1, 2, 3, 4}, "{}");
    write("a", 0, {1, 2, 4, 4}, "{}");
    write("a", 0, {1, 2, 3, 4}, "{ }");
    write("a", 0, {1, 2, 3, 4}, "{}"); // the first one again
    EXPECT_EQ(stamps.size(), 5u);
}

TEST(Writer, GivesTheOnlyFileTheModelsName)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    writer.beginFile("elsewhere");
    addNodes(writer, {1, 2, 3});
    addPart(writer, makePart(1, SHELL, 4), {1}, {1, 2, 3, 3});
    writeOrFail(writer);
    EXPECT_FALSE(fs::exists(folder.path + "/elsewhere"));
    EXPECT_EQ(LoadedModel(folder.path, "m").numParts, 1u);
}

TEST(Writer, MeasuresAllNodesWhenNoPartUsesAny)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    addNodes(writer, {1, 2});
    writeOrFail(writer);
    EXPECT_EQ(extentsOf(folder.path + "/m/part_start"), (std::vector<float>{0.5f, 1, -2, -1, -4, -2}));
}

TEST(Writer, WritesAnEmptyModel)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    writeOrFail(writer);
    const LoadedModel model(folder.path, "m");
    EXPECT_EQ(model.numParts, 0u);
    EXPECT_EQ(extentsOf(folder.path + "/m/part_start"), std::vector<float>(6, 0.0f));
}

TEST(Writer, MakesTheFoldersOnTheWay)
{
    TempFolder folder;
    writeTinyModel(folder.path + "/a/b");
    EXPECT_EQ(LoadedModel(folder.path + "/a/b", "tiny").numParts, 4u);
    writeTinyModel(folder.path, "deep/er/tiny");
    EXPECT_EQ(LoadedModel(folder.path, "deep/er/tiny").numParts, 4u);
}

TEST(Writer, CanWriteTwice)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    addNodes(writer, {3, 2, 1});
    addPart(writer, makePart(1, SHELL, 4), {1}, {1, 2, 3, 3});
    writeOrFail(writer);
    addPart(writer, makePart(2, SHELL, 4), {1}, {3, 2, 1, 1});
    writeOrFail(writer);
    EXPECT_EQ(LoadedModel(folder.path, "m").numParts, 2u);
}

TEST(Writer, AcceptsAFileNameOf255Bytes)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    addNodes(writer, {1});
    writer.beginFile(std::string(255, 'f'));
    writeOrFail(writer);
    EXPECT_EQ(filesOf(folder.path, "m")[1], std::string(255, 'f'));
}

// --- Replacing ---

TEST(WriterReplaces, AnOlderModelWhole)
{
    TempFolder folder;
    ModelWriter older(folder.path, "tiny");
    older.beginFile("tiny/one");
    addNodes(older, {1});
    older.beginFile("tiny/two");
    writeOrFail(older);
    writeTinyModel(folder.path);
    EXPECT_EQ(listTree(folder.path), tinyTree); // also nothing of the old one
    EXPECT_EQ(LoadedModel(folder.path, "tiny").numParts, 4u);
}

TEST(WriterReplaces, ADamagedModel)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    writeBytes(folder.path + "/tiny/parts", "damaged");
    fs::remove(folder.path + "/tiny/elements");
    writeTinyModel(folder.path);
    EXPECT_EQ(LoadedModel(folder.path, "tiny").numParts, 4u);
}

// As they were written before files carried stamps.
TEST(WriterReplaces, AModelWithoutAStamp)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    const std::string index = folder.path + "/tiny/part_start";
    writeBytes(index, withoutStamp(readBytes(index)));
    writeTinyModel(folder.path);
    EXPECT_NE(stampIn(readBytes(index)), 0u);
}

TEST(WriterReplaces, AnEmptyFolder)
{
    TempFolder folder;
    fs::create_directory(folder.path + "/tiny");
    writeTinyModel(folder.path);
    EXPECT_EQ(listTree(folder.path), tinyTree);
}

TEST(WriterReplaces, FilesOutsideTheModelsFolderToo)
{
    TempFolder folder;
    for (unsigned int round = 1; round <= 2; ++round) {
        ModelWriter writer(folder.path, "m");
        writer.beginFile("shared/a");
        addNodes(writer, {1, 2, 3});
        writer.beginFile("b");
        addPart(writer, makePart(round, SHELL, 4), {1}, {1, 2, 3, 3});
        writeOrFail(writer);
        const LoadedModel model(folder.path, "m");
        EXPECT_EQ(model.pidMap.count(round), 1u);
    }
}

TEST(WriterReplaces, NoNeighbouringModel)
{
    TempFolder folder;
    writeTinyModel(folder.path, "tiny");
    writeTinyModel(folder.path, "tiny2");
    writeTinyModel(folder.path, "group/tiny");
    writeTinyModel(folder.path, "tiny");
    for (const char* name : {"tiny", "tiny2", "group/tiny"}) {
        EXPECT_EQ(LoadedModel(folder.path, name).numParts, 4u) << name;
    }
}
