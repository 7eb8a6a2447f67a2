// What is left behind when kvo is ended from outside.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include "run_kvo.h"
#include "scratch_folder.h"
#include "signal_guard.h"
#include "small_decks.h"
#include "text/mapped_file.h"

namespace fs = std::filesystem;

namespace {

// "kvo info -" that waits for its deck and has its temporary folder in `scratch`.
class WaitingKvo
{
public:
    explicit WaitingKvo(const std::string& scratch, bool ignoringHangUps = false)
    {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        deck = ends[1];
        child = fork();
        if (child == 0) {
            dup2(ends[0], STDIN_FILENO);
            setenv("TMPDIR", scratch.c_str(), 1);
            if (ignoringHangUps) {
                signal(SIGHUP, SIG_IGN);
            }
            const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
            dup2(nowhere, STDOUT_FILENO);
            dup2(nowhere, STDERR_FILENO);
            execl(KVO_PROGRAM, "kvo", "info", "-", nullptr);
            _exit(127);
        }
        close(ends[0]);
        const std::string begin = "kvo-" + std::to_string(child) + "-";
        while (folder.empty() && waitpid(child, &status, WNOHANG) == 0) {
            for (const auto& entry : fs::directory_iterator(scratch)) {
                const std::string name = entry.path().filename().string();
                folder = name.compare(0, begin.size(), begin) == 0 ? entry.path().string() : folder;
            }
            usleep(2000);
        }
    }
    ~WaitingKvo() { end(SIGKILL); }
    WaitingKvo(const WaitingKvo&) = delete;
    WaitingKvo& operator=(const WaitingKvo&) = delete;

    // The signal that it died by; 0: it ended by itself.
    int end(int signal)
    {
        if (child > 0) {
            kill(child, signal);
            waitpid(child, &status, 0);
            close(deck);
            child = -1;
        }
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

    pid_t child = -1;
    int deck = -1;
    int status = 0;
    std::string folder;
};

class Signals : public testing::Test
{
protected:
    Signals() { writeText(folder.file("deck.inp"), gridDeck(40)); }

    std::string scratch() const
    {
        fs::create_directories(folder.file("scratch"));
        return folder.file("scratch");
    }
    bool scratchIsEmpty() const { return fs::is_empty(folder.file("scratch")); }

    KvoRun import(const std::string& model) const
    {
        return runKvo({"import", folder.file("deck.inp"), "-o", folder.file(model)});
    }

    TemporaryFolder folder;
};

std::string oldName(const std::string& letters)
{
    return ".kvo-model-4000001-" + letters;
}

} // namespace

TEST_F(Signals, TheTemporaryFolderGoesAndTheShellSeesTheSignal)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ, SIGQUIT}) {
        WaitingKvo kvo(scratch());
        ASSERT_NE(kvo.folder, "");
        writeText(kvo.folder + "/more", "text");
        fs::create_directories(kvo.folder + "/a/b/c");
        fs::create_symlink(folder.path, kvo.folder + "/a/out");
        EXPECT_EQ(kvo.end(signal), signal);
        EXPECT_TRUE(scratchIsEmpty()) << signal;
        EXPECT_TRUE(fs::exists(folder.file("deck.inp"))) << "links are not followed";
    }
}

TEST_F(Signals, WhatIsIgnoredFromTheStartStaysIgnored)
{
    WaitingKvo kvo(scratch(), true);
    ASSERT_NE(kvo.folder, "");
    kill(kvo.child, SIGHUP);
    EXPECT_EQ(kvo.end(SIGTERM), SIGTERM);
}

TEST_F(Signals, TheNextStartRemovesWhatAKilledOneLeft)
{
    WaitingKvo living(scratch());
    WaitingKvo dead(scratch());
    ASSERT_NE(dead.folder, "");
    dead.end(SIGKILL);
    ASSERT_TRUE(fs::exists(dead.folder));
    EXPECT_EQ(runKvo({"info", folder.file("deck.inp")}, {"TMPDIR=" + scratch()}).status, 0);
    EXPECT_FALSE(fs::exists(dead.folder));
    EXPECT_TRUE(fs::exists(living.folder));
}

TEST_F(Signals, AModelThatGrowsTooLargeLeavesNothing)
{
    const std::string command = "cd '" + folder.path.string() + "'; mkdir out; ulimit -f 1; exec '" + KVO_PROGRAM +
                                "' import deck.inp -o out/model >/dev/null 2>&1";
    const int status = std::system(command.c_str());
    EXPECT_TRUE(WIFSIGNALED(status) ? WTERMSIG(status) == SIGXFSZ : WEXITSTATUS(status) == 128 + SIGXFSZ) << status;
    EXPECT_TRUE(fs::is_empty(folder.file("out")));
}

TEST_F(Signals, StagedModelsOfDeadProcessesAreRemoved)
{
    for (const char* name : {"abcdef", "locked", "oldold"}) {
        fs::create_directories(folder.file(oldName(name) + "/model"));
        writeText(folder.file(oldName(name) + "/model/parts"), "x");
    }
    fs::create_directories(folder.file(oldName("oldold") + "/.old-0"));
    fs::create_directories(folder.file(".kvo-model-mine"));
    fs::create_directory_symlink(scratch(), folder.file(oldName("linked")));
    const int lock = open(folder.file(oldName("locked")).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    EXPECT_EQ(import("model").status, 0);
    EXPECT_EQ(folder.names(), (std::vector<std::string>{oldName("linked"), oldName("locked"), oldName("oldold"),
                                                        ".kvo-model-mine", "deck.inp", "model", "scratch"}));
    close(lock);
    EXPECT_EQ(import("model").status, 0);
    EXPECT_FALSE(fs::exists(folder.file(oldName("locked")))) << "its owner is dead now";
}

TEST_F(Signals, AFileThatShrinksIsNamed)
{
    const std::string deck = folder.file("deck.inp");
    const auto readCutOff = [&] {
        kvo::installSignalGuard("kvo");
        const kvo::MappedFile file(deck);
        if (truncate(deck.c_str(), 0) != 0) {
            _exit(3);
        }
        _exit(std::count(file.begin(), file.end(), '\n') > 0 ? 4 : 5);
    };
    EXPECT_EXIT(readCutOff(), testing::ExitedWithCode(1), "^kvo: .*/deck.inp: became shorter while it was read");
}

TEST_F(Signals, ABusErrorOfAnotherKindIsNotHidden)
{
    const auto die = [] {
        kvo::installSignalGuard("kvo");
        raise(SIGBUS);
    };
    EXPECT_EXIT(die(), testing::KilledBySignal(SIGBUS), "");
}

TEST_F(Signals, LockedFoldersOutliveTheirClearance)
{
    setenv("TMPDIR", scratch().c_str(), 1);
    std::string path;
    {
        const kvo::ScratchFolder held("kvo-");
        path = held.path();
        kvo::removeDeadFolders(scratch());
        EXPECT_TRUE(fs::exists(path));
    }
    unsetenv("TMPDIR");
    EXPECT_FALSE(fs::exists(path));
}
