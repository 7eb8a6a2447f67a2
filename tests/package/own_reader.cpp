// The definitions here must win over those of libkvoread, which the test links, too.
#include "own_reader.h"

#include <algorithm>

#include "mantypes.h"
#include "readelements.h"

namespace ownreader {
int calls = 0;
}

using ownreader::calls;

int compareIDs(const void* a, const void* b)
{
    ++calls;
    return static_cast<int>(*static_cast<const unsigned int*>(a)) -
           static_cast<int>(*static_cast<const unsigned int*>(b));
}

ReadIDS::ReadIDS() : ReadIDS(nullptr, nullptr) {}

ReadIDS::ReadIDS(const char* dir, const char* file) : dirName(dir), modelName(file), numIDs(0), idList(nullptr)
{
    ++calls;
}

ReadIDS::~ReadIDS()
{
    ++calls;
}

int ReadIDS::get(const char*)
{
    ++calls;
    return 4;
}

ReadNodes::ReadNodes(const char* dir, const char* file)
    : dirName(dir), modelName(file), selectedNodes(nullptr), numNodes(0), nodeValues(nullptr), m_MallocCount(0)
{
    ++calls;
}

ReadNodes::~ReadNodes()
{
    ++calls;
}

int ReadNodes::getValues()
{
    ++calls;
    return 4;
}

float* ReadNodes::getValuesPtr()
{
    ++calls;
    return nullptr;
}

char* ReadNodes::getSelectedPtr()
{
    ++calls;
    return nullptr;
}

int ReadNodes::getNumNodes()
{
    ++calls;
    return 0;
}

ReadElements::ReadElements(UIUIMap* pidMap, std::vector<ReadIDS*>* ids, std::vector<ReadNodes*>* nodes)
    : dirName(nullptr), modelName(nullptr), fileIndex(0), readIDS(nullptr), readNodes(nullptr), pidMap(pidMap),
      m_ReadIDVect(ids), m_ReadNodeVect(nodes)
{
    ++calls;
}

ReadElements::~ReadElements()
{
    ++calls;
}

void ReadElements::setValues(const char*, const char*, int index, ReadIDS*, ReadNodes*)
{
    ++calls;
    fileIndex = index;
}

int ReadElements::getAll(unsigned int* numParts, PartInfoStr** parts)
{
    ++calls;
    PartInfoStr part = PartInfoStr();
    part.partDrawType = SHELL;
    part.partFlag = PART_SHOWN;
    part.partFileIndex = fileIndex;
    part.partNodes.numNodes = 4;
    part.partNodes.idList = new unsigned int[4]{5, 6, 7, 8};
    part.partNodes.nodeValues = new float[12]{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    part.partElements.numElements = 4;
    part.partElements.nodesPerElement = 4;
    part.partElements.elmIndices = new unsigned int[4]{0, 1, 2, 3};
    *parts = new PartInfoStr[1]{part};
    *numParts = 1;
    (*pidMap)[ownreader::partId] = 0;
    return 1;
}

int ReadElements::getPartsByID(std::vector<unsigned int>*, unsigned int* numParts, PartInfoStr** parts)
{
    return getAll(numParts, parts);
}
