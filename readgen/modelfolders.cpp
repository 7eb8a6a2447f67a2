// Staging and replacing model folders.
#include "modelfolders.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "modeldata.h"
#include "modelformat.h"
#include "signal_pause.h"

namespace fs = std::filesystem;

namespace readgen {

namespace {

[[noreturn]] void cannotUse(const std::string& path, const std::string& what)
{
    throw CannotWrite(path + ": " + what);
}

[[noreturn]] void failedCall(const std::string& path, const char* what)
{
    cannotUse(path, std::string(what) + ": " + std::strerror(errno));
}

bool isFolder(const std::string& path)
{
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool exists(const std::string& path)
{
    struct stat info;
    return ::lstat(path.c_str(), &info) == 0;
}

// Every leading part of a path: "a/b/c" -> "a", "a/b", "a/b/c".
std::vector<std::string> leadingPaths(const std::string& path)
{
    std::vector<std::string> paths;
    for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1)) {
        paths.push_back(path.substr(0, end));
    }
    paths.push_back(path);
    return paths;
}

// Swaps two folders in one step. False where the file system cannot.
bool exchange(const std::string& a, const std::string& b)
{
    return ::renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0;
}

bool renamed(const std::string& from, const std::string& to)
{
    return ::rename(from.c_str(), to.c_str()) == 0;
}

// Up to so many files are waited for one by one. A disk takes milliseconds for each, so that models of thousands of
// files wait once, for all that their file system has to write.
constexpr std::size_t manyFiles = 64;

// What cannot be synchronised, as on some network file systems, says EINVAL.
void syncPath(const std::string& path, int (*call)(int))
{
    const int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (number < 0) {
        failedCall(path, "cannot be written");
    }
    const bool done = call(number) == 0 || errno == EINVAL;
    const int reason = errno;
    ::close(number);
    errno = reason;
    if (!done) {
        failedCall(path, "cannot be written");
    }
}

// Best effort: the renaming is then on the disk as well.
void syncFolder(const std::string& path)
{
    const int number = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (number < 0) {
        return;
    }
    ::fsync(number);
    ::close(number);
}

} // namespace

std::string makeFolders(const std::string& root, const std::string& path)
{
    const std::string whole = root + "/" + path;
    std::error_code problem;
    fs::create_directories(whole, problem);
    if (problem) {
        cannotUse(whole, "cannot be created: " + problem.message());
    }
    return whole;
}

StagingFolder::StagingFolder(const std::string& dir) : dirName(dir)
{
    try {
        makeParents(dirName);
        makeStaging();
    } catch (...) {
        for (std::size_t k = madeFolders.size(); k-- > 0;) {
            ::rmdir(madeFolders[k].c_str());
        }
        throw;
    }
}

void StagingFolder::makeStaging()
{
    const kvo::SignalPause pause;
    do {
        staging = dirName + "/.kvo-model-" + std::to_string(::getpid()) + "-XXXXXX";
        if (!::mkdtemp(&staging[0])) {
            failedCall(dirName, "cannot be written into");
        }
    } while (!lockStaging());
}

// False if somebody took the folder for a dead process's before it was locked, and removed it. File systems without
// locks do without.
bool StagingFolder::lockStaging()
{
    lock = ::open(staging.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (lock < 0) {
        return errno != ENOENT;
    }
    while (::flock(lock, LOCK_EX) != 0 && errno == EINTR) {
    }
    struct stat info;
    if (::fstat(lock, &info) == 0 && info.st_nlink > 0 && exists(staging)) {
        return true;
    }
    ::close(lock);
    lock = -1;
    return false;
}

StagingFolder::~StagingFolder()
{
    std::error_code ignored;
    fs::remove_all(staging, ignored);
    if (lock >= 0) {
        ::close(lock);
    }
    if (!finished) {
        for (std::size_t k = madeFolders.size(); k-- > 0;) {
            ::rmdir(madeFolders[k].c_str());
        }
    }
}

void StagingFolder::makeParents(const std::string& path)
{
    for (const std::string& folder : leadingPaths(path)) {
        if (isFolder(folder)) {
            continue;
        }
        if (::mkdir(folder.c_str(), 0777) != 0) {
            failedCall(folder, "cannot be created");
        }
        madeFolders.push_back(folder);
    }
}

void StagingFolder::sync() const
{
    std::vector<std::string> files;
    std::error_code problem;
    for (fs::recursive_directory_iterator entry(staging, problem), end; !problem && entry != end;
         entry.increment(problem)) {
        if (entry->is_regular_file(problem)) {
            files.push_back(entry->path().string());
        }
    }
    if (problem) {
        cannotUse(staging, "cannot be looked through: " + problem.message());
    }
    if (files.size() > manyFiles) {
        return syncPath(staging, ::syncfs);
    }
    for (const std::string& file : files) {
        syncPath(file, ::fdatasync);
    }
}

void StagingFolder::moveOne(const std::string& name)
{
    Move move = {staging + "/" + name, dirName + "/" + name, ""};
    if (exists(move.target)) {
        if (exchange(move.staged, move.target)) {
            move.old = move.staged;
            moves.push_back(move);
            return;
        }
        move.old = staging + "/.old-" + std::to_string(moves.size());
        if (!renamed(move.target, move.old)) {
            failedCall(move.target, "cannot be moved aside");
        }
    }
    if (!renamed(move.staged, move.target)) {
        const int reason = errno;
        if (!move.old.empty()) {
            renamed(move.old, move.target);
        }
        errno = reason;
        failedCall(move.target, "cannot be put in place");
    }
    moves.push_back(move);
}

void StagingFolder::moveBack()
{
    for (std::size_t k = moves.size(); k-- > 0;) {
        const Move& move = moves[k];
        if (move.old == move.staged) {
            exchange(move.staged, move.target);
            continue;
        }
        renamed(move.target, move.staged);
        if (!move.old.empty()) {
            renamed(move.old, move.target);
        }
    }
    moves.clear();
}

void StagingFolder::moveInto(const std::vector<std::string>& names)
{
    const kvo::SignalPause pause;
    try {
        for (const std::string& name : names) {
            const std::string target = dirName + "/" + name;
            makeParents(target.substr(0, target.rfind('/')));
            moveOne(name);
        }
    } catch (...) {
        moveBack();
        throw;
    }
    finished = true;
    syncFolder(dirName);
}

} // namespace readgen
