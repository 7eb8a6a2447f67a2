// Comparing the files of a run.
#include "file_roles.h"

#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

#include "output_file.h"

namespace fs = std::filesystem;

namespace kvo {

std::optional<FileRoles::Identity> FileRoles::identityOf(const std::string& path)
{
    fs::path target;
    try {
        target = behindLinks(path);
    } catch (const HostError&) {
        return std::nullopt; // whoever opens it says why
    }
    struct stat info;
    if (stat(target.c_str(), &info) == 0) {
        return Identity{info.st_dev, info.st_ino, ""};
    }
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    if (stat(folder.c_str(), &info) == 0) {
        return Identity{info.st_dev, info.st_ino, target.filename().string()};
    }
    return std::nullopt;
}

bool FileRoles::Role::liesIn(const Role& folder) const
{
    if (!identity || !folder.identity) {
        return false;
    }
    std::error_code problem;
    for (fs::path at = fs::weakly_canonical(path, problem); at.has_relative_path(); at = at.parent_path()) {
        if (identityOf(at.parent_path().string()) == folder.identity) {
            return true;
        }
    }
    return false;
}

FileRoles::FileRoles()
{
    addStream(STDOUT_FILENO, "standard output");
    addStream(STDERR_FILENO, "standard error");
}

void FileRoles::addStream(int descriptor, const char* what)
{
    struct stat info;
    if (fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode)) {
        outputs.push_back({"", what, Identity{info.st_dev, info.st_ino, ""}});
    }
}

namespace {

[[noreturn]] void conflict(const std::string& what, const std::string& path, const std::string& where)
{
    throw FileConflict(what + ": \"" + path + "\" " + where);
}

} // namespace

void FileRoles::reads(const std::string& path, const std::string& what)
{
    const Role input = {path, what, identityOf(path)};
    for (const Role& output : outputs) {
        if (input.isSame(output)) {
            conflict(output.what, output.path.empty() ? path : output.path, "is also " + what);
        }
    }
    for (const Role& folder : folders) {
        if (input.liesIn(folder)) {
            conflict(what, path, "lies in " + folder.what + ", which is replaced");
        }
    }
    inputs.push_back(input);
}

void FileRoles::checkOutput(const Role& output) const
{
    for (const std::vector<Role>* others : {&inputs, &outputs}) {
        for (const Role& other : *others) {
            if (output.isSame(other) && output.what != other.what) {
                conflict(output.what, output.path, "is also " + other.what);
            }
        }
    }
    for (const Role& folder : folders) {
        if (output.liesIn(folder)) {
            conflict(output.what, output.path, "lies in " + folder.what + ", which is replaced");
        }
    }
}

void FileRoles::writes(const std::string& path, const std::string& what)
{
    const Role output = {path, what, identityOf(path)};
    checkOutput(output);
    outputs.push_back(output);
}

void FileRoles::writesFolder(const std::string& path, const std::string& what)
{
    const Role folder = {path, what, identityOf(path)};
    checkOutput(folder);
    for (const std::vector<Role>* roles : {&inputs, &outputs}) {
        for (const Role& role : *roles) {
            if (role.liesIn(folder)) {
                conflict(role.what, role.path, "lies in " + what + ", which is replaced");
            }
        }
    }
    outputs.push_back(folder);
    folders.push_back(folder);
}

bool sameFile(const std::string& a, const std::string& b)
{
    const auto first = FileRoles::identityOf(a);
    return first && first == FileRoles::identityOf(b);
}

} // namespace kvo
