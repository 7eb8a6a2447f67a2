// Files that are missing, cut, changed or something else altogether: zero counts, one line, no crash.
#include <sys/stat.h>

#include <filesystem>

#include "modelfixture.h"

namespace fs = std::filesystem;
using namespace readgen;

namespace {

const char* const fileNames[] = {"node_ids", "node_coords", "parts", "elements"};

struct BadFile : testing::TestWithParam<const char*>
{
    BadFile()
    {
        writeTinyModel(folder.path);
        path = folder.path + "/tiny/" + GetParam();
        whole = readBytes(path);
    }
    bool isNodeFile() const { return std::string(GetParam()).rfind("node_", 0) == 0; }

    // Nothing of the damaged file may be believed: the first line names it, and what it feeds counts zero. Parts that
    // need its nodes then have a line of their own.
    void expectRefused(const std::string& what)
    {
        const LoadReport report = loadAndReport(folder.path);
        ASSERT_FALSE(report.lines.empty()) << what;
        EXPECT_EQ(report.lines[0].rfind("kvoread: " + path + ": offset ", 0), 0u) << what << ": " << report.lines[0];
        EXPECT_EQ(report.lines.size(), isNodeFile() ? 2u : 1u) << what;
        EXPECT_EQ(report.elements, 0) << what;
        EXPECT_EQ(report.numParts, 0u) << what;
        EXPECT_EQ(report.ids, std::string(GetParam()) == "node_ids" ? 0 : 12) << what;
        EXPECT_EQ(report.nodes, std::string(GetParam()) == "node_ids" ? -1 : isNodeFile() ? 0 : 12) << what;
    }

    TempFolder folder;
    std::string path;
    std::string whole;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Each, BadFile, testing::ValuesIn(fileNames),
                         [](const testing::TestParamInfo<const char*>& info) { return std::string(info.param); });

TEST_P(BadFile, Missing)
{
    fs::remove(path);
    expectRefused("missing");
}

TEST_P(BadFile, CutAtEveryLength)
{
    for (std::size_t size = 0; size < whole.size(); ++size) {
        writeBytes(path, whole.substr(0, size));
        expectRefused("cut to " + std::to_string(size));
    }
}

TEST_P(BadFile, LongerThanItShouldBe)
{
    writeBytes(path, whole + '\0');
    expectRefused("one byte more");
    writeBytes(path, whole + whole);
    expectRefused("twice");
}

TEST_P(BadFile, ChangedAtEveryByte)
{
    for (std::size_t k = 0; k < whole.size(); ++k) {
        for (char change : {'\x01', '\x80', '\xFF'}) {
            std::string bytes = whole;
            bytes[k] = static_cast<char>(bytes[k] ^ change);
            writeBytes(path, bytes);
            expectRefused("byte " + std::to_string(k));
        }
    }
}

TEST_P(BadFile, OfZeroes)
{
    writeBytes(path, std::string(whole.size(), '\0'));
    expectRefused("zeroes");
}

TEST_P(BadFile, OfAnotherKind)
{
    for (const char* other : fileNames) {
        if (other != std::string(GetParam())) {
            writeBytes(path, readBytes(folder.path + "/tiny/" + other));
            expectRefused(other);
            writeBytes(path, whole);
        }
    }
}

TEST_P(BadFile, FromAnotherModel)
{
    if (std::string(GetParam()) == "node_ids" || std::string(GetParam()) == "parts") {
        return; // valid by themselves: their partners notice, in the tests below
    }
    ModelWriter writer(folder.path, "other");
    const Ids ids = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    addNodes(writer, ids);
    addPart(writer, makePart(1, SHELL, 4), {1}, {1, 2, 3, 4});
    writeOrFail(writer);
    fs::copy_file(folder.path + "/other/" + GetParam(), path, fs::copy_options::overwrite_existing);
    expectRefused("another model's");
}

TEST_P(BadFile, ThatIsAFolder)
{
    fs::remove(path);
    fs::create_directory(path);
    expectRefused("a folder");
}

TEST_P(BadFile, ThatIsAPipe)
{
    fs::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    expectRefused("a pipe"); // and does not wait for a writer
}

TEST_P(BadFile, OfAnotherVersion)
{
    EditedFolder edited(folder.path + "/tiny");
    for (std::string* file : {&edited.nodeIds, &edited.nodeCoords, &edited.parts, &edited.elements}) {
        edited.header(*file).version = 2;
    }
    const EditedFolder good(folder.path + "/tiny");
    edited.sealAndSave();
    for (const char* other : fileNames) {
        if (other != std::string(GetParam())) {
            writeBytes(folder.path + "/tiny/" + other, other == fileNames[0]   ? good.nodeIds
                                                       : other == fileNames[1] ? good.nodeCoords
                                                       : other == fileNames[2] ? good.parts
                                                                               : good.elements);
        }
    }
    const LoadReport report = loadAndReport(folder.path);
    ASSERT_FALSE(report.lines.empty());
    EXPECT_EQ(report.lines[0], "kvoread: " + path + ": offset 8: format version 2; this library reads version 1");
    EXPECT_EQ(report.numParts, 0u);
}

// --- What is not an error ---

TEST(MissingNodes, OfAFileWithoutNodesAreNoError)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "m");
    addPart(writer, makePart(1, SHELL, 4), {}, {});
    writeOrFail(writer);
    EXPECT_FALSE(fs::exists(folder.path + "/m/node_ids"));
    const LoadReport report = loadAndReport(folder.path, "m");
    EXPECT_EQ(report.ids, 0);
    EXPECT_EQ(report.numParts, 1u);
    EXPECT_TRUE(report.lines.empty());
}

TEST(MissingNodes, OfAMissingFolderAreReported)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    for (const char* file : fileNames) {
        fs::remove(folder.path + "/tiny/" + file);
    }
    writeBytes(folder.path + "/tiny/part_start", readBytes(folder.path + "/tiny/part_start").substr(0, 24) +
                                                     std::string("\2\0\0\0\1\0\0\0a\1\0\0\0b", 14));
    const LoadReport report = loadAndReport(folder.path, "tiny");
    EXPECT_EQ(report.numParts, 0u);
    ASSERT_EQ(report.lines.size(), 4u); // ids and parts of both files
    EXPECT_EQ(report.lines[0],
              "kvoread: " + folder.path + "/a/node_ids: offset 0: cannot be opened: No such file or directory");
}
