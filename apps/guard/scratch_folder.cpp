// Making, locking and clearing away.
#include "scratch_folder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "folder_removal.h"
#include "signal_pause.h"

namespace fs = std::filesystem;

namespace kvo {

namespace {

int openFolder(const std::string& path)
{
    return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
}

bool isStill(int folder, const std::string& path)
{
    struct stat a = {}, b = {};
    return fstat(folder, &a) == 0 && lstat(path.c_str(), &b) == 0 && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Between making and locking somebody may have taken the folder for a dead one's.
bool lockNew(const std::string& path, int& lock)
{
    lock = openFolder(path);
    if (lock < 0) {
        return false;
    }
    while (flock(lock, LOCK_EX) != 0 && errno == EINTR) {
    }
    if (isStill(lock, path)) {
        return true;
    }
    close(lock);
    return false;
}

void removeIfDead(const std::string& parent, const std::string& name)
{
    const std::string path = parent + "/" + name;
    struct stat info = {};
    if (lstat(path.c_str(), &info) != 0 || !S_ISDIR(info.st_mode) || info.st_uid != geteuid()) {
        return;
    }
    const int folder = openFolder(path);
    const int directory = open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0 && directory >= 0 && flock(folder, LOCK_EX | LOCK_NB) == 0 && isStill(folder, path)) {
        removeFolder(directory, name.c_str());
    }
    for (const int number : {folder, directory}) {
        if (number >= 0) {
            close(number);
        }
    }
}

} // namespace

std::string parentOf(const std::string& modelDirectory)
{
    fs::path path = fs::path(modelDirectory).lexically_normal();
    path = path.has_filename() ? path : path.parent_path();
    return path.has_parent_path() ? path.parent_path().string() : ".";
}

ScratchFolder::ScratchFolder(const std::string& prefix)
{
    const fs::path parent = fs::temp_directory_path();
    removeDeadFolders(parent.string());
    const SignalPause pause;
    do {
        name = (parent / (prefix + std::to_string(getpid()) + "-XXXXXX")).string();
        if (!mkdtemp(&name[0])) {
            throw std::runtime_error(name + ": cannot be made (" + std::strerror(errno) + ")");
        }
    } while (!lockNew(name, lock));
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    fs::remove_all(name, ignored);
    close(lock);
}

void removeDeadFolders(const std::string& directory)
{
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error)) {
        long process = 0;
        const std::string name = entry->path().filename().string();
        if (isTemporaryName(name.c_str(), process)) {
            names.push_back(name);
        }
    }
    for (const std::string& name : names) {
        removeIfDead(directory, name);
    }
}

} // namespace kvo
