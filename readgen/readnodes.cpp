// ReadNodes: the node coordinates of one model file.
#include "readnodes.h"

#include <algorithm>
#include <climits>

#include "modelfile.h"
#include "names.h"
#include "partstr.h"
#include "readstamps.h"

using namespace readgen;

namespace {

constexpr int firstRoom = 64; // nodes

void releaseArrays(ReadNodes& nodes)
{
    delete[] nodes.nodeValues;
    delete[] nodes.selectedNodes;
    nodes.nodeValues = nullptr;
    nodes.selectedNodes = nullptr;
    nodes.numNodes = 0;
    nodes.m_MallocCount = 0;
    setStamp(&nodes, 0);
}

// Makes room for that many nodes; new ones lie at the origin, not selected.
void makeRoom(ReadNodes& nodes, std::size_t wanted)
{
    const std::size_t room = static_cast<std::size_t>(nodes.m_MallocCount);
    if (wanted <= room) {
        return;
    }
    const std::size_t grown = std::min<std::size_t>(INT_MAX, std::max<std::size_t>({wanted, 2 * room, firstRoom}));
    float* values = new float[3 * grown]();
    char* selected = new char[grown];
    std::fill_n(selected, grown, NOT_SELECTED_CHAR);
    std::copy_n(nodes.nodeValues, 3 * nodes.numNodes, values);
    std::copy_n(nodes.selectedNodes, nodes.numNodes, selected);
    delete[] nodes.nodeValues;
    delete[] nodes.selectedNodes;
    nodes.nodeValues = values;
    nodes.selectedNodes = selected;
    nodes.m_MallocCount = static_cast<int>(grown);
}

} // namespace

ReadNodes::ReadNodes(const char* dir, const char* file)
    : dirName(nullptr), modelName(nullptr), selectedNodes(nullptr), numNodes(0), nodeValues(nullptr), m_MallocCount(0)
{
    set(dir, file);
}

ReadNodes::~ReadNodes()
{
    releaseArrays(*this);
    delete[] dirName;
    delete[] modelName;
}

void ReadNodes::set(const char* dir, const char* file)
{
    replaceNames(*this, dir, file);
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

int ReadNodes::getValues()
{
    releaseArrays(*this);
    const std::string folder = folderOf(dirName, modelName);
    return countOrReport(folder + "/" + nodeCoordsFile, [&] {
        checkInside(dirName ? dirName : "", modelName ? modelName : "");
        const NodeCoordFile file(folder);
        const std::size_t count = file.count();
        nodeValues = new float[3 * count];
        selectedNodes = new char[count];
        std::copy_n(file.values(), 3 * count, nodeValues);
        std::fill_n(selectedNodes, count, NOT_SELECTED_CHAR);
        numNodes = count;
        m_MallocCount = static_cast<int>(count);
        setStamp(this, file.stamp());
        return static_cast<int>(count);
    });
}

void ReadNodes::addNode(float* xyz, unsigned int index)
{
    if (index >= maxNodes) {
        report("node index " + std::to_string(index) + " is out of range: no node added");
        return;
    }
    makeRoom(*this, std::size_t{index} + 1);
    std::copy_n(xyz, 3, nodeValues + std::size_t{3} * index);
    numNodes = std::max<std::size_t>(numNodes, std::size_t{index} + 1);
}

void ReadNodes::addNode(float* xyz)
{
    addNode(xyz, static_cast<unsigned int>(numNodes));
}
