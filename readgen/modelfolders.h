// Folders that appear under their final names all at once or not at all. Private to readgen/.
#ifndef MODELFOLDERS_H
#define MODELFOLDERS_H

#include <string>
#include <vector>

namespace readgen {

// Makes root/path with all folders on the way and returns it. Throws CannotWrite.
std::string makeFolders(const std::string& root, const std::string& path);

// A temporary folder beside the final ones, removed at the end with all that is left in it. Its name has the number of
// the process, and a lock on it says that the process lives: programs remove those that dead ones left behind.
class StagingFolder
{
public:
    explicit StagingFolder(const std::string& dirName); // makes dirName too; throws CannotWrite
    ~StagingFolder();
    StagingFolder(const StagingFolder&) = delete;
    StagingFolder& operator=(const StagingFolder&) = delete;

    const std::string& path() const { return staging; }
    // Has the disk take all that lies in path(): a renaming must not get there first. Throws CannotWrite.
    void sync() const;
    // Moves path()/name to dirName/name for every name, in place of what lies there (replaceable.h says what may). On
    // failure throws CannotWrite and everything is as it was before.
    void moveInto(const std::vector<std::string>& names);

private:
    // A folder that took its place, and whether an old one lies at `old` (equal to `staged` after an exchange).
    struct Move
    {
        std::string staged;
        std::string target;
        std::string old;
    };
    void makeParents(const std::string& path);
    void makeStaging();
    bool lockStaging();
    void moveOne(const std::string& name);
    void moveBack();

    std::string dirName;
    std::string staging;
    int lock = -1;                        // the open folder
    std::vector<std::string> madeFolders; // on the way to dirName and the targets
    std::vector<Move> moves;
    bool finished = false;
};

} // namespace readgen

#endif
