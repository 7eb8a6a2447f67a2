// Checking the place of an output file, and putting it there.
#include "output_file.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace kvo {

namespace {

[[noreturn]] void cannotWrite(const std::string& path, const std::string& why)
{
    throw HostError(path + ": cannot be written (" + why + ")");
}

std::string systemError()
{
    return std::strerror(errno);
}

// Null for a regular file.
const char* otherKind(mode_t mode)
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return nullptr;
    case S_IFDIR:
        return "a folder";
    case S_IFIFO:
        return "a pipe";
    case S_IFSOCK:
        return "a socket";
    default:
        return "a device";
    }
}

std::string folderOf(const std::string& path)
{
    const std::string folder = fs::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

bool mayWrite(const std::string& path, int mode)
{
    return faccessat(AT_FDCWD, path.c_str(), mode, AT_EACCESS) == 0;
}

void checkFolder(const std::string& shown, const std::string& folder)
{
    struct stat info;
    if (stat(folder.c_str(), &info) != 0) {
        cannotWrite(shown, systemError());
    }
    if (!S_ISDIR(info.st_mode)) {
        cannotWrite(shown, folder + " is no folder");
    }
    if (!mayWrite(folder, W_OK | X_OK)) {
        cannotWrite(shown, "no new file in " + folder + ": " + systemError());
    }
}

void checkTarget(const std::string& shown, const std::string& target)
{
    struct stat info;
    if (stat(target.c_str(), &info) == 0) {
        if (const char* kind = otherKind(info.st_mode)) {
            throw HostError(shown + ": is " + kind + ", where a file is to be written");
        }
        if (!mayWrite(target, W_OK)) {
            cannotWrite(shown, systemError());
        }
    } else if (errno != ENOENT) {
        cannotWrite(shown, systemError());
    }
    checkFolder(shown, folderOf(target));
}

// A new file beside the target, which goes away unless it takes the target's place.
class TemporaryFile
{
public:
    TemporaryFile(const std::string& shownName, const std::string& targetName) : shown(shownName), target(targetName)
    {
        replaces = stat(target.c_str(), &old) == 0;
        const std::string start = folderOf(target) + "/.kvo-out-" + std::to_string(getpid()) + "-";
        for (int k = 0; descriptor < 0; ++k) {
            name = start + std::to_string(k);
            descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, replaces ? 0600 : 0666);
            if (descriptor < 0 && errno != EEXIST) {
                cannotWrite(shown, systemError());
            }
        }
    }
    ~TemporaryFile()
    {
        close(descriptor);
        if (!renamed) {
            std::remove(name.c_str());
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& path() const { return name; }

    void write(const std::string& bytes)
    {
        for (std::size_t done = 0; done < bytes.size();) {
            const ssize_t count = ::write(descriptor, bytes.data() + done, bytes.size() - done);
            if (count < 0 && errno != EINTR) {
                cannotWrite(shown, systemError());
            }
            done += count > 0 ? static_cast<std::size_t>(count) : 0;
        }
    }

    // The disk has the bytes before they replace older ones.
    void putInPlace()
    {
        if (replaces) {
            takeOver();
        }
        if ((replaces && fdatasync(descriptor) != 0) || std::rename(name.c_str(), target.c_str()) != 0) {
            cannotWrite(shown, systemError());
        }
        renamed = true;
    }

private:
    // Owner first: changing it takes some bits of the mode away. That others' files change hands cannot be helped where
    // it is not allowed.
    void takeOver()
    {
        if ((old.st_uid != geteuid() || old.st_gid != getegid()) && fchown(descriptor, old.st_uid, old.st_gid) != 0) {
            errno = 0;
        }
        if (fchmod(descriptor, old.st_mode & 07777) != 0) {
            cannotWrite(shown, systemError());
        }
    }

    const std::string& shown;
    const std::string& target;
    std::string name;
    struct stat old;
    bool replaces = false;
    bool renamed = false;
    int descriptor = -1;
};

} // namespace

std::string behindLinks(const std::string& path)
{
    struct stat info;
    if (stat(path.c_str(), &info) == 0) {
        char* found = realpath(path.c_str(), nullptr);
        const std::string real = found ? found : path;
        std::free(found);
        return real;
    }
    // A new name, or a link to one; links in a circle are another error.
    int reason = errno;
    fs::path at = path;
    std::error_code problem;
    while (reason == ENOENT && fs::is_symlink(at, problem)) {
        at = at.parent_path() / fs::read_symlink(at, problem);
        reason = stat(at.c_str(), &info) == 0 ? 0 : errno;
    }
    if (reason != ENOENT && reason != 0) {
        cannotWrite(path, std::strerror(reason));
    }
    return at.string();
}

OutputFile::OutputFile(const std::string& path) : shown(path), target(behindLinks(path))
{
    if (path.empty()) {
        throw HostError("a file to write has an empty name");
    }
    if (path.back() == '/') {
        throw HostError(path + ": is a folder's name, where a file is to be written");
    }
    checkTarget(shown, target);
}

void OutputFile::write(const std::function<void(const std::string& temporary)>& fill) const
{
    checkTarget(shown, target); // the work before may have taken long
    TemporaryFile file(shown, target);
    fill(file.path());
    file.putInPlace();
}

void OutputFile::write(const std::string& bytes) const
{
    checkTarget(shown, target);
    TemporaryFile file(shown, target);
    file.write(bytes);
    file.putInPlace();
}

} // namespace kvo
