// What a model directory says about itself.
#include "modelinfo.h"

#include <algorithm>

#include "modelfile.h"
#include "partstart.h"

using namespace readgen;

namespace {

unsigned long long countNodes(const std::string& folder, std::uint64_t stamp)
{
    const std::string path = folder + "/" + nodeIdsFile;
    if (!fileExists(path) && !fileExists(folder + "/" + nodeCoordsFile)) {
        return 0;
    }
    const ModelFile file(path, nodeIdsMagic);
    file.checkItems(sizeof(std::uint32_t));
    file.checkStamp(stamp, std::string("its ") + partStartFile);
    return file.header().count;
}

ModelPartInfo describePart(const PartTable& table, std::size_t k, int fileIndex)
{
    const PartRecord& r = table.record(k);
    ModelPartInfo info;
    info.part.id = r.id;
    info.part.name = table.name(k);
    info.part.drawType = r.drawType;
    info.part.stride = r.stride;
    info.part.hasColor = r.flags & partHasColor;
    if (info.part.hasColor) {
        std::copy_n(r.color, 4, info.part.color);
    } else {
        paletteColor(r.ordinal, info.part.color);
    }
    info.part.propertyId = r.propertyId;
    info.part.propertyName = table.propertyName(k);
    info.part.materialId = r.materialId;
    info.part.materialName = table.materialName(k);
    info.numElements = r.numElements;
    info.numNodes = r.numNodes;
    std::copy_n(r.extents, 6, info.extents);
    info.fileIndex = fileIndex;
    return info;
}

void readFile(const std::string& folder, std::uint64_t stamp, ModelInfo& info)
{
    const int fileIndex = static_cast<int>(info.numNodes.size());
    info.numNodes.push_back(countNodes(folder, stamp));
    const PartTable table(folder);
    table.checkStamp(stamp, std::string("its ") + partStartFile);
    for (std::size_t k = 0; k < table.size(); ++k) {
        info.parts.push_back(describePart(table, k, fileIndex));
    }
}

// The folder of another model, or one that is made to look so, must not lead anywhere else.
void checkOwner(const std::string& dirName, const std::string& modelName, const std::string& fileName)
{
    const std::string owner = fileName.substr(0, fileName.find('/'));
    if (owner != modelName && isLink(dirName + "/" + owner)) {
        throw BadFile(dirName + "/" + owner + ": is a link out of the model " + modelName);
    }
}

} // namespace

bool readModelInfo(const std::string& dirName, const std::string& modelName, ModelInfo* info, std::string* error)
{
    *info = ModelInfo();
    try {
        const PartStart start = readPartStart(dirName + "/" + modelName + "/" + partStartFile, modelName);
        ModelInfo found;
        std::copy_n(start.extents, 6, found.extents);
        found.files = start.files;
        for (const std::string& file : start.files) {
            checkInside(dirName, file);
            checkOwner(dirName, modelName, file);
            readFile(dirName + "/" + file, start.stamp, found);
        }
        *info = std::move(found);
        return true;
    } catch (const std::exception& problem) {
        if (error) {
            *error = problem.what();
        }
        return false;
    }
}

const char* partFamilyName(unsigned int drawType)
{
    return familyOf(drawType);
}
