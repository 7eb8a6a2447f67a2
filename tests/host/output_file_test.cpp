// Output files: what they take the place of and what they leave alone.
#include <sys/stat.h>
#include <unistd.h>

#include "host_fixture.h"
#include "output_file.h"

namespace fs = std::filesystem;
using kvo::OutputFile;

namespace {

mode_t modeOf(const std::string& path)
{
    struct stat info;
    EXPECT_EQ(stat(path.c_str(), &info), 0) << path;
    return info.st_mode & 07777;
}

std::string refusal(const std::string& path)
{
    return hostError([&] { OutputFile file(path); });
}

} // namespace

TEST(OutputFile, IsNewOrReplacesAFileAndLeavesNothingElse)
{
    Folder folder;
    OutputFile(folder.file("a")).write("new");
    EXPECT_EQ(readText(folder.file("a")), "new");
    OutputFile(folder.file("a")).write("newer");
    EXPECT_EQ(readText(folder.file("a")), "newer");
    EXPECT_EQ(folder.count(), 1u);
}

TEST(OutputFile, HasTheUsualModeOrThatOfTheOldFile)
{
    Folder folder;
    const mode_t mask = umask(027);
    OutputFile(folder.file("a")).write("new");
    EXPECT_EQ(modeOf(folder.file("a")), 0640u);
    chmod(folder.file("a").c_str(), 0604);
    OutputFile(folder.file("a")).write("newer");
    EXPECT_EQ(modeOf(folder.file("a")), 0604u);
    umask(mask);
}

TEST(OutputFile, KeepsTheOwnerWhereItMay)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root may give files away";
    }
    Folder folder;
    writeText(folder.file("a"), "old");
    ASSERT_EQ(chown(folder.file("a").c_str(), 65534, 65534), 0);
    OutputFile(folder.file("a")).write("new");
    struct stat info;
    ASSERT_EQ(stat(folder.file("a").c_str(), &info), 0);
    EXPECT_EQ(info.st_uid, 65534u);
    EXPECT_EQ(readText(folder.file("a")), "new");
}

TEST(OutputFile, WritesThroughLinks)
{
    Folder folder;
    fs::create_directory(folder.path / "deep");
    writeText(folder.file("deep/target"), "old");
    fs::create_symlink("deep/target", folder.path / "link");
    fs::create_symlink("link", folder.path / "link2");
    fs::create_symlink("deep/not-yet", folder.path / "dangling");
    OutputFile(folder.file("link2")).write("new");
    OutputFile(folder.file("dangling")).write("also new");
    EXPECT_TRUE(fs::is_symlink(folder.path / "link"));
    EXPECT_TRUE(fs::is_symlink(folder.path / "link2"));
    EXPECT_TRUE(fs::is_symlink(folder.path / "dangling"));
    EXPECT_EQ(readText(folder.file("deep/target")), "new");
    EXPECT_EQ(readText(folder.file("deep/not-yet")), "also new");
}

TEST(OutputFile, RefusesLinksThatLeadNowhere)
{
    Folder folder;
    fs::create_symlink("round", folder.path / "round");
    fs::create_symlink("no/folder/a", folder.path / "away");
    EXPECT_TRUE(contains(refusal(folder.file("round")), "Too many levels of symbolic links"));
    EXPECT_TRUE(contains(refusal(folder.file("away")), "No such file or directory"));
}

TEST(OutputFile, RefusesWhatIsNoFile)
{
    Folder folder;
    ASSERT_EQ(mkfifo(folder.file("fifo").c_str(), 0600), 0);
    fs::create_symlink("fifo", folder.path / "link");
    EXPECT_EQ(refusal(folder.file("fifo")), folder.file("fifo") + ": is a pipe, where a file is to be written");
    EXPECT_EQ(refusal(folder.file("link")), folder.file("link") + ": is a pipe, where a file is to be written");
    EXPECT_EQ(refusal("/dev/null"), "/dev/null: is a device, where a file is to be written");
    EXPECT_EQ(refusal("/dev/full"), "/dev/full: is a device, where a file is to be written");
    EXPECT_EQ(refusal(folder.path.string()), folder.path.string() + ": is a folder, where a file is to be written");
    EXPECT_EQ(refusal(folder.file("new/")),
              folder.file("new/") + ": is a folder's name, where a file is to be written");
    EXPECT_EQ(refusal(folder.file("no/a")), folder.file("no/a") + ": cannot be written (No such file or directory)");
    EXPECT_EQ(refusal(folder.file("fifo/a")), folder.file("fifo/a") + ": cannot be written (Not a directory)");
    EXPECT_EQ(refusal(""), "a file to write has an empty name");
    EXPECT_TRUE(fs::is_fifo(folder.path / "fifo"));
}

// What was a file when the work began may be none at its end.
TEST(OutputFile, LooksAgainBeforeItWrites)
{
    Folder folder;
    const OutputFile file(folder.file("a"));
    ASSERT_EQ(mkfifo(folder.file("a").c_str(), 0600), 0);
    EXPECT_TRUE(contains(hostError([&] { file.write("text"); }), "is a pipe"));
    EXPECT_TRUE(fs::is_fifo(folder.path / "a"));
}

TEST(OutputFile, AFailureKeepsTheOldFile)
{
    Folder folder;
    writeText(folder.file("a"), "old");
    const auto fail = [](const std::string& temporary) {
        writeText(temporary, "half");
        throw kvo::HostError("stopped");
    };
    EXPECT_EQ(hostError([&] { OutputFile(folder.file("a")).write(fail); }), "stopped");
    EXPECT_EQ(readText(folder.file("a")), "old");
    EXPECT_EQ(folder.count(), 1u);
}

TEST(OutputFile, AFunctionWritesTheFileItself)
{
    Folder folder;
    writeText(folder.file("a"), "old and longer");
    OutputFile(folder.file("a")).write([](const std::string& temporary) { writeText(temporary, "new"); });
    EXPECT_EQ(readText(folder.file("a")), "new");
    EXPECT_EQ(folder.count(), 1u);
}

// In a child process, which gives up root's rights: whether a file and a folder may be written.
TEST(OutputFile, RefusesWhatMayNotBeWritten)
{
    Folder folder;
    writeText(folder.file("readonly"), "old");
    chmod(folder.file("readonly").c_str(), 0444);
    fs::create_directory(folder.path / "closed");
    writeText(folder.file("closed/open"), "old");
    chmod(folder.file("closed/open").c_str(), 0666);
    chmod(folder.path.c_str(), 0777);
    chmod(folder.file("closed").c_str(), 0555);
    const auto inChild = [&] {
        if (geteuid() == 0 && seteuid(65534) != 0) {
            _exit(9);
        }
        const bool told = contains(refusal(folder.file("readonly")), "cannot be written (Permission denied)") &&
                          contains(refusal(folder.file("closed/new")), "no new file in") &&
                          contains(refusal(folder.file("closed/open")), "no new file in");
        _exit(told ? 0 : 1);
    };
    EXPECT_EXIT(inChild(), testing::ExitedWithCode(0), "");
    chmod(folder.file("closed").c_str(), 0755);
    EXPECT_EQ(readText(folder.file("readonly")), "old");
}
