// Directory entries by system calls.
#include "folder_removal.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kvo {

namespace {

const int deepest = 100;  // folders in each other
const int mostTimes = 10; // that a folder is looked through: entries may appear meanwhile

class OpenFolder
{
public:
    OpenFolder(int parent, const char* name, int flags = O_NOFOLLOW)
        : number(openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags))
    {
    }
    ~OpenFolder()
    {
        if (number >= 0) {
            close(number);
        }
    }
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;

    const int number;
};

// Calls visit(name) for each entry but the folder itself and its parent. Returns how many there were.
template <class Visit> int visitEntries(int folder, Visit visit)
{
    alignas(dirent64) char buffer[2048];
    int count = 0;
    lseek(folder, 0, SEEK_SET);
    for (long got; (got = syscall(SYS_getdents64, folder, buffer, sizeof buffer)) > 0;) {
        for (long at = 0; at < got;) {
            const dirent64* entry = reinterpret_cast<const dirent64*>(buffer + at);
            at += entry->d_reclen;
            if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
                ++count;
                visit(entry->d_name);
            }
        }
    }
    return count;
}

bool removeTree(int parent, const char* name, int depth)
{
    if (depth > deepest) {
        return false;
    }
    if (unlinkat(parent, name, 0) == 0) {
        return true;
    }
    {
        const OpenFolder folder(parent, name);
        const auto remove = [&](const char* entry) { removeTree(folder.number, entry, depth + 1); };
        for (int k = 0; folder.number >= 0 && k < mostTimes && visitEntries(folder.number, remove) > 0; ++k) {
        }
    }
    return unlinkat(parent, name, AT_REMOVEDIR) == 0;
}

bool holdsOlderModel(int parent, const char* name)
{
    const OpenFolder folder(parent, name);
    bool found = false;
    visitEntries(folder.number, [&](const char* entry) { found = found || std::strncmp(entry, ".old-", 5) == 0; });
    return found;
}

bool sameEntry(int open, int parent, const char* name)
{
    struct stat a = {}, b = {};
    return fstat(open, &a) == 0 && fstatat(parent, name, &b, AT_SYMLINK_NOFOLLOW) == 0 && a.st_dev == b.st_dev &&
           a.st_ino == b.st_ino;
}

// The rest of a name behind a process's number and "-"; null for another name.
const char* behindNumber(const char* name, const char* prefix, long& process)
{
    const std::size_t length = std::strlen(prefix);
    if (std::strncmp(name, prefix, length) != 0) {
        return nullptr;
    }
    const char* p = name + length;
    process = 0;
    while (*p >= '0' && *p <= '9' && process < 1000000000) {
        process = 10 * process + (*p++ - '0');
    }
    return p > name + length && *p == '-' ? p + 1 : nullptr;
}

// An output file that is not whole yet (host/output_file.h).
bool isOutputName(const char* name, long& process)
{
    return behindNumber(name, ".kvo-out-", process) != nullptr;
}

// link: an entry of /proc/self/fd.
void removeIfOwn(int links, const char* link)
{
    char path[4097];
    const ssize_t length = readlinkat(links, link, path, sizeof path - 1);
    if (length <= 0) {
        return;
    }
    path[length] = 0;
    char* slash = std::strrchr(path, '/');
    long process = 0;
    const bool file = slash && isOutputName(slash + 1, process);
    if (!slash || (!file && !isTemporaryName(slash + 1, process)) || process != getpid()) {
        return;
    }
    const int number = std::atoi(link);
    const int flags = fcntl(number, F_GETFL);
    *slash = 0;
    const OpenFolder parent(AT_FDCWD, slash == path ? "/" : path, 0);
    if (flags >= 0 && (flags & O_PATH) == 0 && sameEntry(number, parent.number, slash + 1)) {
        if (file) {
            unlinkat(parent.number, slash + 1, 0);
        } else {
            removeFolder(parent.number, slash + 1);
        }
    }
}

} // namespace

bool isTemporaryName(const char* name, long& process)
{
    for (const char* prefix : {".kvo-model-", "kvo-cgns-", "kvo-"}) {
        if (const char* rest = behindNumber(name, prefix, process)) {
            return std::strlen(rest) == 6;
        }
    }
    return false;
}

bool removeFolder(int parent, const char* name)
{
    return !holdsOlderModel(parent, name) && removeTree(parent, name, 0);
}

void removeOwnFolders()
{
    const OpenFolder links(AT_FDCWD, "/proc/self/fd", 0);
    if (links.number >= 0) {
        visitEntries(links.number, [&](const char* link) { removeIfOwn(links.number, link); });
    }
}

} // namespace kvo
