// The stand-in for the model-reading library.
#include "readerstub.h"

#include <algorithm>
#include <iostream>

#include "readelements.h"
#include "readids.h"
#include "readnodes.h"

namespace readerstub {
std::map<std::string, File> files;
bool watched = false;

void reset()
{
    files.clear();
    watched = false;
}

namespace {
template <class... Args> void watch(const Args&... args)
{
    if (!watched) {
        return;
    }
    std::cout << "reader: ";
    (std::cout << ... << args) << std::endl;
}

const File& fileOf(const char* name)
{
    return files[name];
}

char* ownName(const char* name)
{
    char* copy = new char[std::string(name).size() + 1];
    std::copy_n(name, std::string(name).size() + 1, copy);
    return copy;
}

int append(const File& file, int fileIndex, UIUIMap* pidMap, unsigned int* numParts, PartInfoStr** parts,
           const std::function<bool(unsigned int)>& wanted)
{
    int elements = 0;
    for (const auto& entry : file.parts) {
        if (!wanted(entry.first)) {
            continue;
        }
        PartInfoStr* grown = new PartInfoStr[*numParts + 1]();
        if (*parts) {
            std::copy_n(*parts, *numParts, grown);
        }
        delete[] *parts;
        *parts = grown;
        grown[*numParts] = entry.second();
        grown[*numParts].partFileIndex = fileIndex;
        elements += grown[*numParts].partElements.numElements / grown[*numParts].partElements.nodesPerElement;
        (*pidMap)[entry.first] = (*numParts)++;
    }
    return elements;
}
} // namespace
} // namespace readerstub

using namespace readerstub;

ReadIDS::ReadIDS() : dirName(nullptr), modelName(nullptr), numIDs(0), idList(nullptr) {}

ReadIDS::ReadIDS(const char* dir, const char* file)
    : dirName(ownName(dir)), modelName(ownName(file)), numIDs(0), idList(nullptr)
{
    watch("ReadIDS(", dir, ",", file, ")");
}

ReadIDS::~ReadIDS()
{
    if (modelName) {
        watch("~ReadIDS ", modelName);
    }
    delete[] dirName;
    delete[] modelName;
    delete[] idList;
}

int ReadIDS::get(const char* idFileName)
{
    watch("ReadIDS::get(", idFileName, ") of ", modelName);
    const std::vector<unsigned int>& ids = fileOf(modelName).nodeIds;
    numIDs = static_cast<unsigned int>(ids.size());
    idList = new unsigned int[numIDs];
    std::copy(ids.begin(), ids.end(), idList);
    return static_cast<int>(numIDs);
}

ReadNodes::ReadNodes(const char* dir, const char* file)
    : dirName(ownName(dir)), modelName(ownName(file)), selectedNodes(nullptr), numNodes(0), nodeValues(nullptr),
      m_MallocCount(0)
{
    watch("ReadNodes(", dir, ",", file, ")");
}

ReadNodes::~ReadNodes()
{
    watch("~ReadNodes ", modelName);
    delete[] dirName;
    delete[] modelName;
    delete[] selectedNodes;
    delete[] nodeValues;
}

int ReadNodes::getValues()
{
    watch("ReadNodes::getValues of ", modelName);
    const std::vector<float>& values = fileOf(modelName).nodeValues;
    numNodes = values.size() / 3;
    nodeValues = new float[values.size()];
    std::copy(values.begin(), values.end(), nodeValues);
    selectedNodes = new char[numNodes];
    std::fill_n(selectedNodes, numNodes, NOT_SELECTED_CHAR);
    return static_cast<int>(numNodes);
}

float* ReadNodes::getValuesPtr()
{
    return nodeValues;
}

char* ReadNodes::getSelectedPtr()
{
    return selectedNodes;
}

int ReadNodes::getNumNodes()
{
    return static_cast<int>(numNodes);
}

ReadElements::ReadElements(UIUIMap* pidMap, std::vector<ReadIDS*>* ids, std::vector<ReadNodes*>* nodes)
    : dirName(nullptr), modelName(nullptr), fileIndex(0), readIDS(nullptr), readNodes(nullptr), pidMap(pidMap),
      m_ReadIDVect(ids), m_ReadNodeVect(nodes)
{
    watch("ReadElements(", ids->size(), " ids,", nodes->size(), " nodes)");
}

ReadElements::~ReadElements()
{
    watch("~ReadElements");
    delete[] dirName;
    delete[] modelName;
}

void ReadElements::setValues(const char* dir, const char* file, int index, ReadIDS* ids, ReadNodes* nodes)
{
    delete[] dirName;
    delete[] modelName;
    dirName = ownName(dir);
    modelName = ownName(file);
    fileIndex = index;
    readIDS = ids;
    readNodes = nodes;
    const bool fitting = ids == (*m_ReadIDVect)[index] && nodes == (*m_ReadNodeVect)[index];
    watch("setValues(", dir, ",", file, ",", index, fitting ? ",own readers)" : ",OTHER READERS)");
}

int ReadElements::getAll(unsigned int* numParts, PartInfoStr** parts)
{
    watch("getAll(", *numParts, *parts ? ",array)" : ",null)");
    return append(fileOf(modelName), fileIndex, pidMap, numParts, parts, [](unsigned int) { return true; });
}

int ReadElements::getPartsByID(std::vector<unsigned int>* pids, unsigned int* numParts, PartInfoStr** parts)
{
    watch("getPartsByID(", *numParts, *parts ? ",array)" : ",null)");
    return append(fileOf(modelName), fileIndex, pidMap, numParts, parts,
                  [&](unsigned int pid) { return std::count(pids->begin(), pids->end(), pid) > 0; });
}
