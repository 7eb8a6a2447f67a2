// What a model directory says about itself.
#include "modelinfo.h"

#include <algorithm>
#include <cstring>

#include "modelfile.h"

using namespace readgen;

namespace {

constexpr std::uint64_t extentsSize = 6 * sizeof(float);
constexpr std::uint64_t namesOffset = extentsSize + sizeof(std::uint32_t);
constexpr std::uint32_t longestName = 255;

// Takes fixed-size values and texts off a mapped file, never past its end.
class Cursor
{
public:
    explicit Cursor(const MappedFile& file) : file(file) {}
    void take(void* to, std::uint64_t size)
    {
        if (size > file.size - offset) {
            badFile(file.path, offset, "the file ends where " + std::to_string(size) + " bytes are due");
        }
        std::memcpy(to, file.bytes + offset, size);
        offset += size;
    }
    std::uint32_t takeNumber()
    {
        std::uint32_t value;
        take(&value, sizeof value);
        return value;
    }
    std::uint64_t offset = 0;

private:
    const MappedFile& file;
};

std::string takeName(Cursor& cursor, const std::string& path)
{
    const std::uint64_t start = cursor.offset;
    const std::uint32_t length = cursor.takeNumber();
    if (length == 0 || length > longestName) {
        badFile(path, start, "a file name of " + std::to_string(length) + " bytes; 1 to 255 are allowed");
    }
    std::string name(length, '\0');
    cursor.take(&name[0], length);
    return name;
}

void readPartStart(const std::string& path, const std::string& modelName, ModelInfo& info)
{
    const MappedFile file(path);
    Cursor cursor(file);
    cursor.take(info.extents, extentsSize);
    const std::uint32_t numFiles = cursor.takeNumber();
    if (numFiles > 1 && numFiles > (file.size - namesOffset) / sizeof(std::uint32_t)) {
        badFile(path, extentsSize, std::to_string(numFiles) + " file names do not fit the file");
    }
    if (numFiles <= 1) {
        info.files.push_back(modelName);
    } else {
        for (std::uint32_t k = 0; k < numFiles; ++k) {
            info.files.push_back(takeName(cursor, path));
        }
    }
}

unsigned long long countNodes(const std::string& folder)
{
    const std::string path = folder + "/" + nodeIdsFile;
    if (!fileExists(path) && !fileExists(folder + "/" + nodeCoordsFile)) {
        return 0;
    }
    const ModelFile file(path, nodeIdsMagic);
    file.checkItems(sizeof(std::uint32_t));
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

void readFile(const std::string& folder, ModelInfo& info)
{
    const int fileIndex = static_cast<int>(info.numNodes.size());
    info.numNodes.push_back(countNodes(folder));
    const PartTable table(folder);
    for (std::size_t k = 0; k < table.size(); ++k) {
        info.parts.push_back(describePart(table, k, fileIndex));
    }
}

} // namespace

bool readModelInfo(const std::string& dirName, const std::string& modelName, ModelInfo* info, std::string* error)
{
    *info = ModelInfo();
    try {
        ModelInfo found;
        readPartStart(dirName + "/" + modelName + "/" + partStartFile, modelName, found);
        for (const std::string& file : found.files) {
            readFile(dirName + "/" + file, found);
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
