// ReadElements: the parts of a model's files, and parts made from segments of nodes.
#include "readelements.h"

#include <algorithm>
#include <climits>
#include <memory>

#include "mantypes.h"
#include "modelfile.h"
#include "modelnodes.h"
#include "names.h"
#include "partbuilder.h"
#include "readstamps.h"

using namespace readgen;

namespace {

// Without further files there is nothing to look into but the selected one. Null vectors mean more: the selected
// readers were made here and are owned.
std::vector<ReadIDS*> noOtherIds;
std::vector<ReadNodes*> noOtherNodes;

// The entry of uniqIndices that counts the colours given out by randomColor.
constexpr unsigned int colorCount = 0;

bool ownsReaders(const ReadElements& reader)
{
    return reader.m_ReadIDVect == nullptr;
}

void releaseOwnReaders(ReadElements& reader)
{
    if (ownsReaders(reader)) {
        delete reader.readIDS;
        delete reader.readNodes;
    }
    reader.readIDS = nullptr;
    reader.readNodes = nullptr;
}

void loadOwnReaders(ReadElements& reader)
{
    if (!ownsReaders(reader) || reader.readIDS) {
        return;
    }
    reader.readIDS = new ReadIDS(reader.dirName, reader.modelName);
    reader.readNodes = new ReadNodes(reader.dirName, reader.modelName);
    if (reader.readIDS->get(nodeIdsFile) > 0) {
        reader.readNodes->getValues();
    }
}

// --- Nodes of the whole model ---

// A file whose two node files do not both load counts as one without nodes.
void addFile(ModelNodes& all, const ReadIDS* ids, const ReadNodes* nodes)
{
    const bool complete = ids && nodes && ids->numIDs == nodes->numNodes && sameWriting(stampOf(ids), stampOf(nodes));
    all.addFile(complete ? ids->idList : nullptr, complete ? nodes->nodeValues : nullptr, complete ? ids->numIDs : 0);
}

// Collects the nodes of all files into *all and returns which of them is the selected file.
std::size_t collectNodes(ReadElements& reader, ModelNodes* all)
{
    loadOwnReaders(reader);
    const std::size_t numFiles =
        ownsReaders(reader) ? 0 : std::min(reader.m_ReadIDVect->size(), reader.m_ReadNodeVect->size());
    std::size_t own = numFiles;
    for (std::size_t k = 0; k < numFiles; ++k) {
        addFile(*all, (*reader.m_ReadIDVect)[k], (*reader.m_ReadNodeVect)[k]);
        if (reader.readIDS && (*reader.m_ReadIDVect)[k] == reader.readIDS) {
            own = k;
        }
    }
    if (own == numFiles) {
        addFile(*all, reader.readIDS, reader.readNodes);
    }
    return own;
}

// A model that is replaced between two steps of loading must not be read half old and half new.
void checkNodesFit(const PartTable& table, const ReadIDS* ids, const ReadNodes* nodes)
{
    for (const void* reader : {static_cast<const void*>(ids), static_cast<const void*>(nodes)}) {
        table.checkStamp(stampOf(reader), "the nodes that were read");
    }
}

void checkAllNodesFit(const PartTable& table, const ReadElements& reader)
{
    checkNodesFit(table, reader.readIDS, reader.readNodes);
    if (ownsReaders(reader)) {
        return;
    }
    for (const ReadIDS* ids : *reader.m_ReadIDVect) {
        checkNodesFit(table, ids, nullptr);
    }
    for (const ReadNodes* nodes : *reader.m_ReadNodeVect) {
        checkNodesFit(table, nullptr, nodes);
    }
}

// --- Parts ---

template <class Wanted> std::vector<std::size_t> chooseParts(const PartTable& table, Wanted wanted)
{
    std::vector<std::size_t> chosen;
    for (std::size_t k = 0; k < table.size(); ++k) {
        if (wanted(table, k)) {
            chosen.push_back(k);
        }
    }
    return chosen;
}

int countElements(const PartTable& table, const std::vector<std::size_t>& chosen)
{
    std::uint64_t count = 0;
    for (std::size_t k : chosen) {
        count += table.record(k).numElements;
    }
    return static_cast<int>(std::min<std::uint64_t>(count, INT_MAX));
}

template <class Wanted> int readParts(ReadElements& reader, Wanted wanted, unsigned int* numParts, PartInfoStr** parts)
{
    const std::string folder = folderOf(reader.dirName, reader.modelName);
    return countOrReport(folder, [&] {
        checkInside(reader.dirName ? reader.dirName : "", reader.modelName ? reader.modelName : "");
        const PartTable table(folder);
        const std::vector<std::size_t> chosen = chooseParts(table, wanted);
        if (chosen.empty()) {
            return 0;
        }
        ModelNodes nodes;
        const std::size_t ownFile = collectNodes(reader, &nodes);
        checkAllNodesFit(table, reader);
        PartBatch batch(chosen.size());
        buildParts(table, chosen, nodes, ownFile, reader.fileIndex, batch);

        unsigned int index = *numParts;
        batch.appendTo(numParts, parts);
        for (std::size_t k : chosen) {
            if (reader.pidMap) {
                (*reader.pidMap)[table.record(k).id] = index++;
            }
        }
        return countElements(table, chosen);
    });
}

} // namespace

// --- Construction ---

ReadElements::ReadElements(UIUIMap* map, std::vector<ReadIDS*>* ids, std::vector<ReadNodes*>* nodes)
    : dirName(nullptr), modelName(nullptr), fileIndex(0), readIDS(nullptr), readNodes(nullptr), pidMap(map),
      m_ReadIDVect(ids ? ids : &noOtherIds), m_ReadNodeVect(nodes ? nodes : &noOtherNodes)
{
}

ReadElements::ReadElements(const char* dir, const char* file, int index, UIUIMap* map)
    : dirName(nullptr), modelName(nullptr), fileIndex(index), readIDS(nullptr), readNodes(nullptr), pidMap(map),
      m_ReadIDVect(nullptr), m_ReadNodeVect(nullptr)
{
    replaceNames(*this, dir, file);
}

ReadElements::~ReadElements()
{
    releaseOwnReaders(*this);
    delete[] dirName;
    delete[] modelName;
}

void ReadElements::setValues(const char* dir, const char* file, int index, ReadIDS* ids, ReadNodes* nodes)
{
    releaseOwnReaders(*this);
    if (ownsReaders(*this) && ids) {
        m_ReadIDVect = &noOtherIds;
        m_ReadNodeVect = &noOtherNodes;
    }
    replaceNames(*this, dir, file);
    fileIndex = index;
    readIDS = ids;
    readNodes = nodes;
}

// --- Reading ---

int ReadElements::getAll(unsigned int* numParts, PartInfoStr** parts)
{
    return readParts(*this, [](const PartTable&, std::size_t) { return true; }, numParts, parts);
}

int ReadElements::getPartsByID(std::vector<unsigned int>* pid_list, unsigned int* numParts, PartInfoStr** parts)
{
    std::vector<unsigned int> ids(*pid_list);
    std::sort(ids.begin(), ids.end());
    const auto listed = [&ids](const PartTable& table, std::size_t k) {
        return std::binary_search(ids.begin(), ids.end(), table.record(k).id);
    };
    return readParts(*this, listed, numParts, parts);
}

int ReadElements::get(const char* partName, unsigned int* numParts, PartInfoStr** parts)
{
    const auto named = [partName](const PartTable& table, std::size_t k) { return table.name(k) == partName; };
    return readParts(*this, named, numParts, parts);
}

void ReadElements::randomColor(float* color)
{
    paletteColor(uniqIndices[colorCount]++, color);
}

int ReadElements::getPartType(const char* family)
{
    return static_cast<int>(family ? drawTypeOf(family) : 0);
}

void ReadElements::fillNodeDetails(unsigned int numIndices, PartInfoPtr part)
{
    ModelNodes nodes;
    collectNodes(*this, &nodes);
    const unsigned int* indices = part->partElements.elmIndices;
    for (unsigned int k = 0; k < numIndices; ++k) {
        if (isPosition(indices[k]) && indices[k] >= nodes.numNodes()) {
            report("node position " + std::to_string(indices[k]) + " in slot " + std::to_string(k) +
                   " is past the model's " + std::to_string(nodes.numNodes()) + " nodes: no nodes filled in");
            return;
        }
    }
    makePartNodes(nodes, numIndices, *part);
}

// --- Segments ---

namespace {

constexpr unsigned int shellStride = 4;

// Node ids per face, 0 when the list makes no faces.
std::size_t idsPerFace(std::size_t length)
{
    return length % 4 == 0 ? (length ? 4 : 0) : length % 3 == 0 ? 3 : 0;
}

// The ids of all faces, four each: a triangle repeats its third.
std::vector<std::uint32_t> faceCorners(const std::vector<unsigned int>& ids, std::size_t perFace)
{
    std::vector<std::uint32_t> corners;
    for (std::size_t k = 0; k < ids.size(); k += perFace) {
        const unsigned int fourth = perFace == 4 && ids[k + 3] != 0 ? ids[k + 3] : ids[k + 2];
        corners.insert(corners.end(), {ids[k], ids[k + 1], ids[k + 2], fourth});
    }
    return corners;
}

} // namespace

PartInfoPtr ReadElements::createPartForSegment(std::vector<unsigned int>& nodeIds)
{
    const std::size_t perFace = idsPerFace(nodeIds.size());
    if (perFace == 0) {
        report("segment: " + std::to_string(nodeIds.size()) + " node ids make no faces of four or three");
        return nullptr;
    }
    const std::vector<std::uint32_t> corners = faceCorners(nodeIds, perFace);
    ModelNodes nodes;
    const std::size_t ownFile = collectNodes(*this, &nodes);
    const PartReferences refs = {corners.data(), corners.size(), shellStride, false, false, ownFile};

    std::unique_ptr<unsigned int[]> indices(new unsigned int[corners.size()]);
    const std::size_t done = resolveReferences(nodes, refs, indices.get());
    if (done < corners.size()) {
        report("segment: face " + std::to_string(done / shellStride + 1) + " uses node " +
               std::to_string(corners[done]) + ", which the model does not have");
        return nullptr;
    }
    std::unique_ptr<PartInfoStr> part(new PartInfoStr());
    part->partDrawType = SHELL;
    part->partFlag = PART_SHOWN;
    part->partFileIndex = fileIndex;
    part->partElements.nodesPerElement = shellStride;
    part->partElements.numElements = static_cast<unsigned int>(corners.size());
    part->partElements.elmIndices = indices.release();
    randomColor(part->partColor);
    makePartNodes(nodes, corners.size(), *part);
    return part.release();
}
