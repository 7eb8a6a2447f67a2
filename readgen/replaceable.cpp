// What belongs to the model that stands where a new one is to go.
#include "replaceable.h"

#include <filesystem>
#include <set>

#include "modeldata.h"
#include "modelfile.h"
#include "partstart.h"

namespace fs = std::filesystem;

namespace readgen {

namespace {

[[noreturn]] void refuse(const std::string& path, const std::string& what)
{
    throw CannotWrite(path + ": exists and " + what);
}

// Paths relative to dirName.
struct Belongings
{
    std::set<std::string> files;
    std::set<std::string> folders;

    void add(const std::string& folder, std::initializer_list<const char*> names)
    {
        for (const char* name : names) {
            files.insert(folder + "/" + name);
        }
        for (fs::path path = folder; !path.empty(); path = path.parent_path()) {
            folders.insert(path.string());
        }
    }
};

Belongings belongingsOf(const std::string& modelName, const PartStart& start)
{
    Belongings own;
    own.add(modelName, {partStartFile, deckFile, nodeIdsFile, nodeCoordsFile});
    for (const std::string& file : start.files) {
        own.add(file, {nodeIdsFile, nodeCoordsFile, partsFile, elementsFile});
    }
    return own;
}

// Nothing belongs to a model that is not there.
Belongings readBelongings(const std::string& dirName, const std::string& modelName)
{
    const std::string folder = dirName + "/" + modelName;
    const std::string path = folder + "/" + partStartFile;
    std::error_code problem;
    if (!fs::exists(fs::symlink_status(path, problem))) {
        return {};
    }
    try {
        const PartStart start = readPartStart(path, modelName);
        if (!start.whole) {
            refuse(folder, std::string("its ") + partStartFile + " is none of a model; it is not replaced");
        }
        return belongingsOf(modelName, start);
    } catch (const BadFile& bad) {
        refuse(folder, std::string("is no model directory; it is not replaced (") + bad.what() + ")");
    }
}

void checkContents(const std::string& dirName, const std::string& folder, const Belongings& own)
{
    const std::string target = dirName + "/" + folder;
    std::error_code problem;
    for (fs::recursive_directory_iterator entry(target, problem), end; !problem && entry != end;
         entry.increment(problem)) {
        const fs::file_status status = entry->symlink_status(problem);
        const std::string inside = entry->path().lexically_relative(target).string();
        const std::string name = folder + "/" + inside;
        const bool known = fs::is_directory(status) ? own.folders.count(name) != 0
                                                    : fs::is_regular_file(status) && own.files.count(name) != 0;
        if (!problem && !known) {
            refuse(target, "holds \"" + inside + "\", which is no part of a model; it is not replaced");
        }
    }
    if (problem) {
        throw CannotWrite(target + ": cannot be looked through: " + problem.message());
    }
}

} // namespace

void checkReplaceable(const std::string& dirName, const std::string& modelName, const std::vector<std::string>& names)
{
    const Belongings own = readBelongings(dirName, modelName);
    for (const std::string& name : names) {
        const std::string target = dirName + "/" + name;
        std::error_code problem;
        const fs::file_status status = fs::symlink_status(target, problem);
        if (!fs::exists(status)) {
            continue;
        }
        if (!fs::is_directory(status)) {
            refuse(target, "is not a folder");
        }
        if (fs::is_empty(target, problem) && !problem) {
            continue;
        }
        if (own.files.empty() && name == modelName) {
            refuse(target, std::string("is no model directory (it has no ") + partStartFile + "); it is not replaced");
        }
        checkContents(dirName, name, own);
    }
}

} // namespace readgen
