#include "modelfixture.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "outputcapture.h"
#include "readelements.h"
#include "readids.h"
#include "readnodes.h"

namespace fs = std::filesystem;
using namespace readgen;

// --- Folders and files ---

TempFolder::TempFolder()
{
    path = (fs::temp_directory_path() / "kvo-readgen-XXXXXX").string();
    if (!mkdtemp(&path[0])) {
        throw std::runtime_error("no temporary folder");
    }
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

std::string readBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void writeBytes(const std::string& path, const std::string& bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    EXPECT_TRUE(file.flush()) << path;
}

std::vector<std::string> listTree(const std::string& folder)
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        names.push_back(fs::relative(entry.path(), folder).string() + (entry.is_directory() ? "/" : ""));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string withoutStamp(const std::string& partStart)
{
    const std::size_t size = partStart.size() - 24;
    EXPECT_EQ(partStart.substr(size, 8), "KVO_STMP");
    return partStart.substr(0, size);
}

std::uint64_t stampIn(const std::string& partStart)
{
    std::uint64_t stamp = 0;
    std::memcpy(&stamp, partStart.data() + withoutStamp(partStart).size() + 8, sizeof stamp);
    return stamp;
}

// --- Writing ---

std::vector<float> coordinatesOf(const Ids& nodeIds)
{
    std::vector<float> xyz;
    for (unsigned int id : nodeIds) {
        xyz.insert(xyz.end(),
                   {0.5f * static_cast<float>(id), static_cast<float>(id % 7) - 3, -2.0f * static_cast<float>(id % 5)});
    }
    return xyz;
}

ModelPart makePart(unsigned int id, unsigned int drawType, unsigned int stride, const std::string& name)
{
    ModelPart part;
    part.id = id;
    part.drawType = drawType;
    part.stride = stride;
    part.name = name;
    return part;
}

void addNodes(ModelWriter& writer, const Ids& nodeIds)
{
    writer.addNodes(nodeIds.size(), nodeIds.data(), coordinatesOf(nodeIds).data());
}

void addPart(ModelWriter& writer, const ModelPart& part, const Ids& elementIds, const Ids& nodeRefs,
             NodeReference reference)
{
    writer.addPart(part, elementIds.size(), elementIds.data(), nodeRefs.data(), reference);
}

void writeOrFail(ModelWriter& writer)
{
    std::string error;
    ASSERT_TRUE(writer.write(&error)) << error;
}

const Ids tinyNodes = {11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22};

void writeTinyModel(const std::string& dir, const std::string& name)
{
    ModelWriter writer(dir, name);
    addNodes(writer, tinyNodes);
    addPart(writer, makePart(10, SOLID, 8, "solids"), {101, 102, 103},
            {11, 12, 13, 14, 15, 16, 17, 18, 11, 12, 13, 15, 15, 15, 15, 15, 11, 14, 13, 12, 15, 15, 16, 16});
    addPart(writer, makePart(20, SHELL, 4, "shells"), {201, 202}, {15, 16, 17, 18, 18, 19, 20, 20});
    addPart(writer, makePart(30, BEAM, 3, "beams"), {301, 302}, {19, 20, 21, 20, 21, noNode});
    addPart(writer, makePart(40, DISCRETE, 3, "springs"), {401}, {11, 22, 0});
    writeOrFail(writer);
}

// --- Loading ---

std::vector<std::string> filesOf(const std::string& dir, const std::string& modelName)
{
    const std::string bytes = readBytes(dir + "/" + modelName + "/part_start");
    const auto numberAt = [&bytes](std::size_t at) {
        std::uint32_t number;
        std::memcpy(&number, &bytes[at], sizeof number);
        return number;
    };
    std::vector<std::string> names;
    const std::uint32_t count = numberAt(24);
    for (std::size_t at = 28; count > 1 && names.size() < count;) {
        names.push_back(bytes.substr(at + 4, numberAt(at)));
        at += 4 + names.back().size();
    }
    return names.empty() ? std::vector<std::string>{modelName} : names;
}

LoadedModel::LoadedModel(const std::string& dir, const std::string& modelName, Ids* partIds)
{
    const std::vector<std::string> files = filesOf(dir, modelName);
    std::vector<ReadIDS*> ids;
    std::vector<ReadNodes*> nodes;
    for (const std::string& file : files) {
        ids.push_back(new ReadIDS(dir.c_str(), file.c_str()));
        idCounts.push_back(ids.back()->get("node_ids"));
        nodes.push_back(new ReadNodes(dir.c_str(), file.c_str()));
        nodeCounts.push_back(idCounts.back() ? nodes.back()->getValues() : -1);
    }
    ReadElements elements(&pidMap, &ids, &nodes);
    for (std::size_t k = 0; k < files.size(); ++k) {
        elements.setValues(dir.c_str(), files[k].c_str(), static_cast<int>(k), ids[k], nodes[k]);
        elementCounts.push_back(partIds ? elements.getPartsByID(partIds, &numParts, &parts)
                                        : elements.getAll(&numParts, &parts));
    }
    for (std::size_t k = 0; k < files.size(); ++k) {
        delete ids[k];
        delete nodes[k];
    }
}

LoadedModel::~LoadedModel()
{
    for (unsigned int k = 0; k < numParts; ++k) {
        releasePart(parts[k]);
    }
    delete[] parts;
}

const PartInfoStr& LoadedModel::part(unsigned int id) const
{
    const auto found = pidMap.find(id);
    if (found == pidMap.end() || found->second >= numParts) {
        throw std::runtime_error("no part " + std::to_string(id));
    }
    return parts[found->second];
}

void releasePart(PartInfoStr& part)
{
    delete[] part.partNodes.idList;
    delete[] part.partNodes.nodeValues;
    delete[] part.partElements.elmIndices;
    delete part.partElements.eidMap;
}

Ids cornersOf(const PartInfoStr& part, unsigned int elementId)
{
    const PartElementsStr& elements = part.partElements;
    const auto found = elements.eidMap->find(elementId);
    if (found == elements.eidMap->end()) {
        return {};
    }
    Ids corners;
    for (unsigned int slot = 0; slot < elements.nodesPerElement; ++slot) {
        const unsigned int index = elements.elmIndices[found->second * elements.nodesPerElement + slot];
        if (static_cast<int>(index) < 0) {
            corners.push_back(noNode);
            continue;
        }
        if (index >= part.partNodes.numNodes) {
            throw std::runtime_error("a node index out of range");
        }
        corners.push_back(part.partNodes.idList[index]);
        const std::vector<float> xyz = coordinatesOf({corners.back()});
        EXPECT_TRUE(std::equal(xyz.begin(), xyz.end(), part.partNodes.nodeValues + 3 * index)) << corners.back();
    }
    return corners;
}

LoadReport loadAndReport(const std::string& dir, const std::string& name)
{
    OutputCapture errors(2);
    const LoadedModel model(dir, name);
    errors.stop();
    return {model.idCounts[0], model.nodeCounts[0], model.elementCounts[0], model.numParts, splitLines(errors.all())};
}

// --- Editing ---

EditedFolder::EditedFolder(const std::string& path)
    : folder(path), nodeIds(readBytes(path + "/node_ids")), nodeCoords(readBytes(path + "/node_coords")),
      parts(readBytes(path + "/parts")), elements(readBytes(path + "/elements"))
{
}

void EditedFolder::seal()
{
    const std::size_t head = sizeof(FileHeader);
    for (std::size_t k = 0; k < (parts.size() - head) / sizeof(PartRecord) && k < header(parts).count; ++k) {
        PartRecord& r = record(k);
        const std::uint64_t idBytes = 4 * r.numElements;
        if (r.refsOffset + idBytes * r.stride > elements.size() - head || idBytes > elements.size()) {
            continue;
        }
        r.idsChecksum = checksum(&elements[head] + r.idsOffset, idBytes);
        r.refsChecksum = checksum(&elements[head] + r.refsOffset, idBytes * r.stride);
    }
    for (std::string* file : {&nodeIds, &nodeCoords, &parts}) {
        header(*file).payloadChecksum = checksum(file->data() + head, file->size() - head);
    }
    header(nodeCoords).partner = header(nodeIds).payloadChecksum;
    header(elements).partner = header(parts).payloadChecksum;
    for (std::string* file : {&nodeIds, &nodeCoords, &parts, &elements}) {
        header(*file).headerChecksum = headerChecksum(header(*file));
    }
}

void EditedFolder::save() const
{
    writeBytes(folder + "/node_ids", nodeIds);
    writeBytes(folder + "/node_coords", nodeCoords);
    writeBytes(folder + "/parts", parts);
    writeBytes(folder + "/elements", elements);
}

void EditedFolder::sealAndSave()
{
    seal();
    save();
}
