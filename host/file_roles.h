// What a run reads and what it writes, so that nothing is written over what is read and nothing is written twice.
//
//   kvo::FileRoles roles;
//   roles.reads("bracket.inp", "the deck");
//   roles.writes("bracket.inp", "--log"); // throws: --log: "bracket.inp" is also the deck
//
// Files are compared by what they are (device and inode), not by name: links of both kinds and ways through other
// folders make no difference. All roles are known before the first file is written.
#ifndef KVO_HOST_FILE_ROLES_H
#define KVO_HOST_FILE_ROLES_H

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "host_error.h"

namespace kvo {

// Two roles for one file.
class FileConflict : public HostError
{
public:
    using HostError::HostError;
};

class FileRoles
{
public:
    FileRoles(); // knows the files that standard output and standard error go to

    // `what`, for the message, says what the file is to the user: "the deck", "--log". In any order; each throws
    // FileConflict for what goes against an earlier one.
    void reads(const std::string& path, const std::string& what);
    void writes(const std::string& path, const std::string& what); // the same `what` may write a file more than once
    void writesFolder(const std::string& path, const std::string& what); // all that is in it may go

private:
    // A file that is there, or a name in a folder that is there.
    struct Identity
    {
        dev_t device;
        ino_t inode;
        std::string newName; // "" for what is there
        bool operator==(const Identity& o) const
        {
            return device == o.device && inode == o.inode && newName == o.newName;
        }
    };
    struct Role
    {
        std::string path;
        std::string what;
        std::optional<Identity> identity; // none where not even the folder is there

        bool isSame(const Role& o) const { return identity && identity == o.identity; }
        bool liesIn(const Role& folder) const;
    };
    friend bool sameFile(const std::string& a, const std::string& b);
    static std::optional<Identity> identityOf(const std::string& path);
    void addStream(int descriptor, const char* what);
    void checkOutput(const Role& output) const;

    std::vector<Role> inputs;
    std::vector<Role> outputs; // folders, too
    std::vector<Role> folders;
};

// Are they one file, or one new name?
bool sameFile(const std::string& a, const std::string& b);

} // namespace kvo

#endif
