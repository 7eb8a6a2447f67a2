// Models that cannot be written and disks that fail: an error that says what, and nothing left behind or changed.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <csignal>
#include <filesystem>

#include "modelfixture.h"

namespace fs = std::filesystem;

// --- A disk that fails on demand ---
// Definitions in the program win over the system's, also for the library.

namespace disk {

int syncsUntilFull = -1;      // the call that fails; -1: none
int renamesUntilFailure = -1; // likewise
bool canExchange = true;

bool countDown(int& calls)
{
    return calls >= 0 && calls-- == 0;
}

} // namespace disk

extern "C" KVO_EXPORT int fdatasync(int file)
{
    if (disk::countDown(disk::syncsUntilFull)) {
        errno = ENOSPC;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fdatasync, file));
}

extern "C" KVO_EXPORT int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                                    unsigned int flags) noexcept
{
    if (!disk::canExchange) {
        errno = EINVAL;
        return -1;
    }
    return static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

extern "C" KVO_EXPORT int rename(const char* from, const char* to) noexcept
{
    if (disk::countDown(disk::renamesUntilFailure)) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0u));
}

namespace {

std::string errorOf(ModelWriter& writer)
{
    std::string error;
    EXPECT_FALSE(writer.write(&error));
    return error;
}

// A model that a test spoils in one place.
struct Spoiled
{
    Spoiled() : writer(folder.path, "m") { addNodes(writer, {1, 2, 3, 4}); }
    void part(const ModelPart& head, const Ids& elements, const Ids& refs,
              NodeReference reference = NodeReference::ById)
    {
        addPart(writer, head, elements, refs, reference);
    }
    std::string error()
    {
        const std::string what = errorOf(writer);
        EXPECT_TRUE(listTree(folder.path).empty());
        return what;
    }
    TempFolder folder;
    ModelWriter writer;
};

// The tree and all bytes below a folder.
std::string snapshot(const std::string& folder)
{
    std::string all;
    for (const std::string& name : listTree(folder)) {
        all += name + "\n" + (name.back() == '/' ? "" : readBytes(folder + "/" + name));
    }
    return all;
}

struct FailingDisk : testing::Test
{
    ~FailingDisk() override
    {
        disk::syncsUntilFull = -1;
        disk::renamesUntilFailure = -1;
        disk::canExchange = true;
    }
    // A model of two files outside the model's folder: three folders to move.
    std::string writeThreeFolders(const std::string& dir, unsigned int partId)
    {
        ModelWriter writer(dir, "m");
        writer.beginFile("parts_a");
        addNodes(writer, {1, 2, 3});
        writer.beginFile("deep/parts_b");
        addPart(writer, makePart(partId, SHELL, 4), {1}, {1, 2, 3, 3});
        std::string error;
        return writer.write(&error) ? "" : error;
    }
    TempFolder folder;
};

} // namespace

// --- Models that are wrong ---

TEST(WriterRefuses, APartIdTwice)
{
    Spoiled model;
    model.part(makePart(5, SHELL, 4), {1}, {1, 2, 3, 4});
    model.writer.beginFile("other");
    model.part(makePart(5, SHELL, 4), {2}, {1, 2, 3, 4});
    EXPECT_EQ(model.error(), "file other: part id 5 occurs twice");
}

TEST(WriterRefuses, ANodeIdTwice)
{
    Spoiled model;
    addNodes(model.writer, {9, 3});
    EXPECT_EQ(model.error(), "node id 3 occurs twice");
}

TEST(WriterRefuses, NodeIdsThatMeanNone)
{
    Spoiled zero, all;
    addNodes(zero.writer, {0});
    EXPECT_EQ(zero.error(), "node id 0 is reserved for \"no node\"");
    addNodes(all.writer, {0xFFFFFFFF});
    EXPECT_EQ(all.error(), "node id 4294967295 is reserved for \"no node\"");
}

TEST(WriterRefuses, ACoordinateThatIsNoNumber)
{
    Spoiled model;
    const unsigned int id = 77;
    const float xyz[] = {0, NAN, 0};
    model.writer.addNodes(1, &id, xyz);
    EXPECT_EQ(model.error(), "a coordinate of node 77 is not a finite number");
}

TEST(WriterRefuses, StridesThatDoNotFitTheDrawType)
{
    const unsigned int pairs[][2] = {{SHELL, 3}, {SHELL, 8},    {SOLID, 4}, {SOLID, 6},
                                     {BEAM, 2},  {DISCRETE, 4}, {77, 0},    {77, 65}};
    for (const auto& pair : pairs) {
        Spoiled model;
        model.part(makePart(5, pair[0], pair[1]), {1}, Ids(100, 1));
        const std::string expected =
            "part 5: a stride of " + std::to_string(pair[1]) + " does not fit draw type " + std::to_string(pair[0]);
        EXPECT_EQ(model.error().substr(0, expected.size()), expected);
    }
}

TEST(WriterRefuses, AReferenceToNoNode)
{
    Spoiled model;
    model.part(makePart(5, SHELL, 4), {11, 12}, {1, 2, 3, 4, 1, 2, 8, 4});
    EXPECT_EQ(model.error(), "part 5: element 12 uses node 8, which does not exist");
}

TEST(WriterRefuses, AnIndexPastTheNodes)
{
    Spoiled model;
    model.part(makePart(5, SHELL, 4), {11}, {0, 1, 2, 4}, NodeReference::ByIndex);
    EXPECT_EQ(model.error(), "part 5: element 11 uses node index 4, which does not exist");
}

TEST(WriterRefuses, AnEmptySlotInAShell)
{
    Spoiled model;
    model.part(makePart(5, SHELL, 4), {11}, {1, 2, 0xFFFFFFFF, 4});
    EXPECT_EQ(model.error(), "part 5: element 11 uses node 4294967295, which does not exist");
}

TEST(WriterRefuses, AnEmptyEndOfABeam)
{
    Spoiled model;
    model.part(makePart(5, BEAM, 3), {11}, {1, 0xFFFFFFFF, 2});
    EXPECT_EQ(model.error(), "part 5: element 11 uses node 4294967295, which does not exist");
}

TEST(WriterRefuses, AnElementIdTwiceInAPart)
{
    Spoiled model;
    model.part(makePart(5, SHELL, 4), {7, 6, 7}, {1, 2, 3, 4, 1, 2, 3, 4, 1, 2, 3, 4});
    EXPECT_EQ(model.error(), "part 5: element id 7 occurs twice");
}

TEST(WriterRefuses, AColorOutOfRange)
{
    Spoiled model;
    ModelPart part = makePart(5, SHELL, 4);
    part.hasColor = true;
    part.color[2] = 1.5f;
    model.part(part, {1}, {1, 2, 3, 4});
    EXPECT_EQ(model.error(), "part 5: a colour outside 0 to 1");
}

TEST(WriterRefuses, AFileNameOf256Bytes)
{
    Spoiled model;
    model.writer.beginFile(std::string(256, 'f'));
    EXPECT_NE(model.error().find("has 256 bytes; at most 255 are allowed"), std::string::npos);
}

TEST(WriterRefuses, NamesThatLeaveTheDirectoryOrCollide)
{
    for (const char* name : {"", "/tmp/x", "../x", "a/../b", "a//b", "a/", ".", "m/parts", "part_start"}) {
        Spoiled model;
        model.writer.beginFile(name);
        EXPECT_EQ(model.error(), std::string("file name \"") + name + "\" is no name that a model can have");
    }
    TempFolder folder;
    ModelWriter up(folder.path, "..");
    EXPECT_EQ(errorOf(up), "model name \"..\" is no name that a model can have");
    ModelWriter nowhere("", "m");
    EXPECT_EQ(errorOf(nowhere), "no directory to write into");
}

TEST(WriterRefuses, AFileNameTwice)
{
    Spoiled model;
    model.writer.beginFile("x");
    model.writer.beginFile("x");
    EXPECT_EQ(model.error(), "file name \"x\" is used twice");
}

TEST(WriterRefuses, APlainFileInPlaceOfTheModel)
{
    TempFolder folder;
    writeBytes(folder.path + "/m", "text");
    ModelWriter writer(folder.path, "m");
    EXPECT_EQ(errorOf(writer), folder.path + "/m: exists and is not a folder");
    EXPECT_EQ(snapshot(folder.path), "m\ntext");
}

TEST(WriterRefuses, AFolderWithAUsersFiles)
{
    TempFolder folder;
    writeTinyModel(folder.path, "m");
    fs::create_directory(folder.path + "/m/notes");
    writeBytes(folder.path + "/m/notes/thesis.txt", "years of work");
    const std::string before = snapshot(folder.path);
    ModelWriter writer(folder.path, "m");
    EXPECT_EQ(errorOf(writer), folder.path + "/m: exists and holds \"notes\", which is no part of a model; it is not "
                                             "replaced");
    EXPECT_TRUE(snapshot(folder.path) == before);
}

TEST(WriterRefuses, AFolderOfModels)
{
    TempFolder folder;
    writeTinyModel(folder.path + "/models", "a");
    writeTinyModel(folder.path + "/models", "b");
    const std::string before = snapshot(folder.path);
    ModelWriter writer(folder.path, "models");
    EXPECT_EQ(errorOf(writer), folder.path + "/models: exists and is no model directory (it has no part_start); it is "
                                             "not replaced");
    EXPECT_TRUE(snapshot(folder.path) == before);
}

TEST(WriterRefuses, AModelWithAnotherModelInIt)
{
    TempFolder folder;
    writeTinyModel(folder.path, "m");
    writeTinyModel(folder.path, "m/inner");
    const std::string before = snapshot(folder.path);
    ModelWriter writer(folder.path, "m");
    EXPECT_EQ(errorOf(writer), folder.path + "/m: exists and holds \"inner\", which is no part of a model; it is not "
                                             "replaced");
    EXPECT_TRUE(snapshot(folder.path) == before);
}

// Each could be a user's own file.
TEST(WriterRefuses, AFolderWithAFileOfAModelsName)
{
    for (const char* name : {"parts", "elements", "node_ids", "node_coords", "deck.json", "part_start"}) {
        TempFolder folder;
        fs::create_directory(folder.path + "/u");
        writeBytes(folder.path + "/u/" + name, "thirty bytes of a user's own text");
        const std::string before = snapshot(folder.path);
        ModelWriter writer(folder.path, "u");
        EXPECT_EQ(errorOf(writer).rfind(folder.path + "/u: exists and ", 0), 0u) << name;
        EXPECT_TRUE(snapshot(folder.path) == before) << name;
    }
}

TEST(WriterRefuses, APartStartThatIsCutOrGoesOn)
{
    TempFolder folder;
    writeTinyModel(folder.path, "m");
    const std::string whole = readBytes(folder.path + "/m/part_start");
    for (const std::string& damaged :
         {whole.substr(0, 27), whole.substr(0, whole.size() - 1), whole + "text", withoutStamp(whole) + "text"}) {
        writeBytes(folder.path + "/m/part_start", damaged);
        ModelWriter writer(folder.path, "m");
        EXPECT_NE(errorOf(writer).find("/m: exists and "), std::string::npos) << damaged.size();
        EXPECT_EQ(readBytes(folder.path + "/m/part_start"), damaged);
    }
}

// A folder outside the model's own is replaced only where the older model says that it is one of its files.
TEST(WriterRefuses, AFileFolderOfAnotherModel)
{
    TempFolder folder;
    const auto write = [&folder](const char* model, const char* file) {
        ModelWriter writer(folder.path, model);
        writer.beginFile("common");
        addNodes(writer, {1, 2, 3});
        writer.beginFile(file);
        addPart(writer, makePart(1, SHELL, 4), {1}, {1, 2, 3, 3});
        std::string error;
        return writer.write(&error) ? "" : error;
    };
    EXPECT_EQ(write("first", "first/parts_a"), "");
    EXPECT_EQ(write("first", "first/parts_a"), "");
    const std::string before = snapshot(folder.path);
    EXPECT_EQ(write("second", "second/parts_a"), folder.path +
                                                     "/common: exists and holds \"elements\", which is no part "
                                                     "of a model; it is not replaced");
    EXPECT_TRUE(snapshot(folder.path) == before);
}

TEST(WriterRefuses, ALinkAmongAModelsFiles)
{
    TempFolder folder;
    writeTinyModel(folder.path, "m");
    fs::rename(folder.path + "/m/parts", folder.path + "/elsewhere");
    fs::create_symlink(folder.path + "/elsewhere", folder.path + "/m/parts");
    ModelWriter writer(folder.path, "m");
    EXPECT_NE(errorOf(writer).find("/m: exists and holds \"parts\""), std::string::npos);
}

TEST(WriterRefuses, ALinkInPlaceOfTheModel)
{
    TempFolder folder;
    writeTinyModel(folder.path, "real");
    fs::create_directory_symlink(folder.path + "/real", folder.path + "/m");
    ModelWriter writer(folder.path, "m");
    EXPECT_EQ(errorOf(writer), folder.path + "/m: exists and is not a folder");
    EXPECT_EQ(LoadedModel(folder.path, "m").numParts, 4u);
}

TEST(WriterRefuses, ADirectoryThatCannotBeMade)
{
    TempFolder folder;
    writeBytes(folder.path + "/file", "");
    ModelWriter below(folder.path + "/file/dir", "m");
    EXPECT_EQ(errorOf(below), folder.path + "/file: cannot be created: File exists");
    ModelWriter kernel("/proc", "m");
    EXPECT_NE(errorOf(kernel).find("/proc: cannot be written into: "), std::string::npos);
}

TEST(WriterRefuses, WithoutAPlaceForTheError)
{
    TempFolder folder;
    ModelWriter writer(folder.path, "..");
    EXPECT_FALSE(writer.write(nullptr));
}

// --- Disks that fail ---

TEST_F(FailingDisk, FullAtEveryFileLeavesNothing)
{
    int failures = 0;
    for (;; ++failures) {
        disk::syncsUntilFull = failures;
        const std::string error = writeThreeFolders(folder.path + "/new/dir", 1);
        if (error.empty()) {
            break;
        }
        EXPECT_NE(error.find("cannot be written: No space left on device"), std::string::npos);
        EXPECT_TRUE(listTree(folder.path).empty()) << failures;
    }
    // ids and coordinates of file one and of the model, parts and elements of both, the index
    EXPECT_EQ(failures, 2 + 2 + 2 + 2 + 1);
}

TEST_F(FailingDisk, FullAtEveryFileKeepsTheOldModel)
{
    ASSERT_EQ(writeThreeFolders(folder.path, 1), "");
    const std::string before = snapshot(folder.path);
    for (int k = 0; k < 9; ++k) {
        disk::syncsUntilFull = k;
        EXPECT_NE(writeThreeFolders(folder.path, 2), "");
        EXPECT_TRUE(snapshot(folder.path) == before) << k;
    }
}

TEST_F(FailingDisk, WithAFileSizeLimitLeavesNothing)
{
    rlimit old;
    getrlimit(RLIMIT_FSIZE, &old);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small = {100, old.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string error = writeThreeFolders(folder.path, 1);
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, handler);
    EXPECT_NE(error.find("cannot be written: File too large"), std::string::npos) << error;
    EXPECT_TRUE(listTree(folder.path).empty());
}

// Every renaming that can fail, without the exchange in one step.
TEST_F(FailingDisk, FailingToRenameKeepsTheOldModel)
{
    ASSERT_EQ(writeThreeFolders(folder.path, 1), "");
    const std::string before = snapshot(folder.path);
    disk::canExchange = false;
    int failures = 0;
    for (;; ++failures) {
        disk::renamesUntilFailure = failures;
        const std::string error = writeThreeFolders(folder.path, 2);
        if (error.empty()) {
            break;
        }
        EXPECT_NE(error.find("Input/output error"), std::string::npos) << error;
        EXPECT_TRUE(snapshot(folder.path) == before) << failures;
    }
    EXPECT_EQ(failures, 6); // aside and into place, three folders
    EXPECT_EQ(LoadedModel(folder.path, "m").pidMap.count(2), 1u);
}

TEST_F(FailingDisk, FailingToRenameANewModelLeavesNothing)
{
    for (int k = 0; k < 3; ++k) {
        disk::renamesUntilFailure = k;
        EXPECT_NE(writeThreeFolders(folder.path, 1), "");
        EXPECT_TRUE(listTree(folder.path).empty()) << k;
    }
}

TEST_F(FailingDisk, AnObstacleForTheLastFolderRestoresTheFirst)
{
    ASSERT_EQ(writeThreeFolders(folder.path, 1), "");
    fs::remove_all(folder.path + "/deep");
    writeBytes(folder.path + "/deep", "in the way");
    const std::string before = snapshot(folder.path);
    EXPECT_EQ(writeThreeFolders(folder.path, 2), folder.path + "/deep: cannot be created: File exists");
    EXPECT_TRUE(snapshot(folder.path) == before);
}

TEST_F(FailingDisk, WithoutExchangeStillReplaces)
{
    disk::canExchange = false;
    ASSERT_EQ(writeThreeFolders(folder.path, 1), "");
    ASSERT_EQ(writeThreeFolders(folder.path, 2), "");
    const LoadedModel model(folder.path, "m");
    EXPECT_EQ(model.pidMap, (UIUIMap{{2, 0}}));
    EXPECT_EQ(listTree(folder.path).front(), "deep/"); // no temporary folder in front
}
