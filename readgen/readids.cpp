// ReadIDS: the node ids of one model file.
#include "readids.h"

#include <algorithm>

#include "modelfile.h"
#include "names.h"
#include "readstamps.h"

using namespace readgen;

ReadIDS::ReadIDS() : dirName(nullptr), modelName(nullptr), numIDs(0), idList(nullptr) {}

ReadIDS::ReadIDS(const char* dir, const char* file) : ReadIDS()
{
    set(dir, file);
}

ReadIDS::~ReadIDS()
{
    setStamp(this, 0);
    delete[] idList;
    delete[] dirName;
    delete[] modelName;
}

void ReadIDS::set(const char* dir, const char* file)
{
    replaceNames(*this, dir, file);
}

namespace {

// A model file may consist of elements only: then it has neither of the two node files.
bool hasNoNodeFiles(const std::string& folder, const std::string& idPath)
{
    return fileExists(folder) && !fileExists(idPath) && !fileExists(folder + "/" + nodeCoordsFile);
}

} // namespace

int ReadIDS::get(const char* idFileName)
{
    delete[] idList;
    idList = nullptr;
    numIDs = 0;
    setStamp(this, 0);
    const std::string folder = folderOf(dirName, modelName);
    const std::string path = folder + "/" + idFileName;
    return countOrReport(path, [&] {
        checkInside(dirName ? dirName : "", modelName ? modelName : "");
        if (hasNoNodeFiles(folder, path)) {
            return 0;
        }
        const NodeIdFile file(path);
        idList = new unsigned int[file.count()];
        numIDs = file.count();
        std::copy_n(file.ids(), numIDs, idList);
        setStamp(this, file.stamp());
        return static_cast<int>(numIDs);
    });
}
