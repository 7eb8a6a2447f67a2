// Temporary folders, and those that dead programs left.
#ifndef KVO_GUARD_SCRATCH_FOLDER_H
#define KVO_GUARD_SCRATCH_FOLDER_H

#include <string>

namespace kvo {

// A new folder below $TMPDIR, else /tmp, that is removed with this object, or when a signal ends the program
// (signal_guard.h). Its name is prefix, the process's number, and six letters. A lock on it says that its owner lives.
class ScratchFolder
{
public:
    explicit ScratchFolder(const std::string& prefix); // "kvo-" or "kvo-cgns-"; throws std::runtime_error
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& path() const { return name; }

private:
    std::string name;
    int lock = -1;
};

// Removes the temporary folders in a directory that belong to this user and whose owner is dead: whoever lives has a
// lock on it. Those of other users, and on file systems without locks all, stay.
void removeDeadFolders(const std::string& directory);

// The folder in which a model directory of that name is written.
std::string parentOf(const std::string& modelDirectory);

} // namespace kvo

#endif
