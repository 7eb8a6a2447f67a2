// Selection of parts, nodes and elements: flags and flag characters only; nothing is drawn here.
#include "caeenv.h"

#include <GL/gl.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "diagnostics.h"
#include "mtrans.h"
#include "part_access.h"
#include "readids.h"
#include "readnodes.h"

namespace {

char* newFlags(unsigned int count)
{
    char* flags = new char[count];
    std::memset(flags, NOT_SELECTED_CHAR, count);
    return flags;
}

void clearFlags(char* flags, unsigned int count)
{
    if (flags) {
        std::memset(flags, NOT_SELECTED_CHAR, count);
    }
}

// Positions past the flags (and the wrapped position of number 0) set no character.
void markFlag(char* flags, unsigned int count, unsigned int position)
{
    if (flags && position < count) {
        flags[position] = SELECTED_CHAR;
    }
}

void markElement(PartInfoStr& part, unsigned int position)
{
    markFlag(part.partElements.selectedList, elementCount(part.partElements), position);
}

// The flag arrays of all parts are made at once, the first time one is needed.
void needNodeLists(CAEEnv& env)
{
    if (env.compFlag & NODE_SELECT_LISTS_CREATED) {
        return;
    }
    env.createNodeSelectedList();
    env.compFlag |= NODE_SELECT_LISTS_CREATED;
}

void needElementLists(CAEEnv& env)
{
    if (env.compFlag & ELEMENT_SELECT_LISTS_CREATED) {
        return;
    }
    env.createElementSelectedList();
    env.compFlag |= ELEMENT_SELECT_LISTS_CREATED;
}

// Shows a part with the selection; of the others, hides those that were not shown anyway.
void showSelectedKeepShown(PartInfoStr& part, unsigned int selection)
{
    if (part.partFlag & selection) {
        showPart(part);
    } else if ((part.partFlag & PART_SHOWN) == 0) {
        hidePart(part);
    }
}

// The nodes of one part that have this id.
void markNodeByID(PartInfoStr& part, unsigned int id)
{
    PartNodesStr& nodes = part.partNodes;
    if (nodes.numNodes == 0) {
        return;
    }
    const void* found = std::bsearch(&id, nodes.idList, nodes.numNodes, sizeof id, compareIDs);
    if (found == nullptr) {
        return;
    }
    part.partFlag |= PART_NODES_SELECTED;
    markFlag(nodes.selectedNodes, nodes.numNodes,
             static_cast<unsigned int>(static_cast<const unsigned int*>(found) - nodes.idList));
}

// Box of the selected nodes; it is printed and not stored.
struct SelectionBox
{
    float low[3] = {1000000, 1000000, 1000000};
    float high[3] = {-1000000, -1000000, -1000000};

    void add(const float* node)
    {
        for (int axis = 0; axis < 3; ++axis) {
            // deliberate(y-minimum-takes-x): a lower y stores x; the printed line is compared by scripts.
            if (node[axis] < low[axis]) {
                low[axis] = axis == 1 ? node[0] : node[axis];
            }
            if (node[axis] > high[axis]) {
                high[axis] = node[axis];
            }
        }
    }

    void print()
    {
        float extents[6];
        for (int axis = 0; axis < 3; ++axis) {
            extents[2 * axis] = low[axis] == high[axis] ? -low[axis] : low[axis];
            extents[2 * axis + 1] = high[axis];
        }
        diagnostics::printList(label::extents, extents, 6);
    }
};

} // namespace

// --- Parts ---

void CAEEnv::selectPart(unsigned int part_num)
{
    if (part_num != 0 && part_num <= numParts) {
        partsInfoList[part_num - 1].partFlag |= PART_SELECTED;
    }
}

void CAEEnv::highlightPart(unsigned int part_num)
{
    if (part_num != 0 && part_num <= numParts) {
        partsInfoList[part_num - 1].partFlag |= PART_HIGHLIGHTED;
    }
}

void CAEEnv::clearSelectedParts()
{
    for (i = 0; i < numParts; ++i) {
        partsInfoList[i].partFlag &= ~PART_SELECTED;
    }
}

// --- Flag arrays ---

void CAEEnv::createNodeSelectedList()
{
    for (i = 0; i < numParts; ++i) {
        partsInfoList[i].partNodes.selectedNodes = newFlags(partsInfoList[i].partNodes.numNodes);
    }
}

void CAEEnv::createElementSelectedList()
{
    for (i = 0; i < numParts; ++i) {
        partsInfoList[i].partElements.selectedList = newFlags(elementCount(partsInfoList[i].partElements));
    }
}

// --- Single nodes and elements ---

void CAEEnv::selectNode(unsigned int* part_idx, unsigned int* node_idx)
{
    if (*part_idx > numParts) {
        std::cout << "ERROR: CAEEnv::selectNode part index out of bounds\n";
        return;
    }
    if (*part_idx == 0) {
        return;
    }
    PartInfoStr& part = partsInfoList[*part_idx - 1];
    if (*node_idx > part.partNodes.numNodes) {
        std::cout << "ERROR: CAEEnv::selectNode node index out of bounds\n";
        return;
    }
    needNodeLists(*this);
    part.partFlag |= PART_NODES_SELECTED;
    markFlag(part.partNodes.selectedNodes, part.partNodes.numNodes, *node_idx - 1);
}

void CAEEnv::selectElement(unsigned int* part_idx, unsigned int* elm_idx)
{
    // deliberate(element-part-silent): a part number out of range is not reported, unlike in selectNode.
    if (*part_idx == 0 || *part_idx > numParts) {
        return;
    }
    PartInfoStr& part = partsInfoList[*part_idx - 1];
    // deliberate(element-bound-raw): the bound is the number of index entries, not of elements; numbers in between set
    // the part's flag and mark nothing.
    if (*elm_idx > part.partElements.numElements) {
        std::cout << "ERROR: CAEEnv::selectElement element index out of bounds\n";
        return;
    }
    needElementLists(*this);
    part.partFlag |= PART_ELEMENTS_SELECTED;
    markElement(part, *elm_idx - 1);
}

void CAEEnv::clearSelectedNodes()
{
    for (i = 0; i < numParts; ++i) {
        PartInfoStr& part = partsInfoList[i];
        if ((part.partFlag & PART_NODES_SELECTED) == 0) {
            continue;
        }
        part.partFlag &= ~PART_NODES_SELECTED;
        clearFlags(part.partNodes.selectedNodes, part.partNodes.numNodes);
    }
}

void CAEEnv::clearSelectedElements()
{
    for (i = 0; i < numParts; ++i) {
        PartInfoStr& part = partsInfoList[i];
        if ((part.partFlag & PART_ELEMENTS_SELECTED) == 0) {
            continue;
        }
        part.partFlag &= ~PART_ELEMENTS_SELECTED;
        clearFlags(part.partElements.selectedList, elementCount(part.partElements));
    }
}

// --- Lists ---

void CAEEnv::selectNodes(std::vector<unsigned int>& nid_list)
{
    const std::time_t start = std::time(nullptr);
    needNodeLists(*this);
    for (unsigned int id : nid_list) {
        for (i = 0; i < numParts; ++i) {
            markNodeByID(partsInfoList[i], id);
        }
    }
    std::cout << "TIME FOR " << nid_list.size() << " NODES=" << std::difftime(std::time(nullptr), start) << std::endl;
    std::cout << "AFTER NODE PICK\n";
    for (i = 0; i < numParts; ++i) {
        showSelectedKeepShown(partsInfoList[i], PART_NODES_SELECTED);
    }
    modifyExtents();
}

void CAEEnv::selectElements(std::vector<unsigned int>& eid_list, std::vector<unsigned int>& pid_list)
{
    needElementLists(*this);
    // A part id is looked up only when it differs from the one before; 0 as the first counts as not found.
    unsigned int previous = 0;
    UIUIMap::const_iterator found = pidMap.end();
    for (i = 0; i < pid_list.size(); ++i) {
        if (pid_list[i] != previous) {
            found = pidMap.find(pid_list[i]);
            previous = pid_list[i];
        }
        if (found == pidMap.end() || found->second >= numParts) {
            continue;
        }
        PartInfoStr& part = partsInfoList[found->second];
        part.partFlag |= PART_ELEMENTS_SELECTED;
        if (i >= eid_list.size() || part.partElements.eidMap == nullptr) {
            continue;
        }
        const UIUIMap::const_iterator element = part.partElements.eidMap->find(eid_list[i]);
        if (element != part.partElements.eidMap->end()) {
            markElement(part, element->second);
        }
    }
    for (i = 0; i < numParts; ++i) {
        showSelectedKeepShown(partsInfoList[i], PART_ELEMENTS_SELECTED);
    }
    modifyExtents();
}

void CAEEnv::selectElementsByIndex(std::vector<unsigned int>& eis_list, std::vector<unsigned int>& pis_list)
{
    needElementLists(*this);
    for (std::size_t k = 0; k < pis_list.size(); ++k) {
        // deliberate(index-bound-by-map): the bound is the number of part ids, which two parts of one id make smaller.
        if (pis_list[k] >= pidMap.size() || pis_list[k] >= numParts) {
            continue;
        }
        PartInfoStr& part = partsInfoList[pis_list[k]];
        part.partFlag |= PART_ELEMENTS_SELECTED;
        if (k < eis_list.size()) {
            markElement(part, eis_list[k]);
        }
    }
    // deliberate(index-selection-isolates): stricter than the other lists; every part without the flag is hidden.
    for (i = 0; i < numParts; ++i) {
        const bool selected = (partsInfoList[i].partFlag & PART_ELEMENTS_SELECTED) != 0;
        setPartVisibility(partsInfoList[i], selected ? PART_SHOWN : PART_HIDDEN);
    }
    modifyExtents();
}

void CAEEnv::selectNodeList(std::vector<unsigned int>& nid_list)
{
    // deliberate(list-flag-first): set before anything can fail. Earlier readers are never released, because after a
    // failed call the arrays in use still belong to them.
    compFlag |= NODE_LIST_SELECTED;
    readNodes = new ReadNodes(dirName.c_str(), modelName.c_str());
    if (readNodes->getValues() == 0) {
        return;
    }
    selectedNodes = readNodes->getSelectedPtr();
    nodeValues = readNodes->getValuesPtr();
    numNodes = static_cast<unsigned int>(readNodes->getNumNodes());
    readIDS = new ReadIDS(dirName.c_str(), modelName.c_str());
    if (readIDS->get("node_ids") == 0) {
        return;
    }

    SelectionBox box;
    for (unsigned int id : nid_list) {
        const unsigned int index = readIDS->find(id);
        if (static_cast<int>(index) < 0) {
            diagnostics::print(label::nodeNotFound, id);
        } else if (index < numNodes) {
            selectedNodes[index] = SELECTED_CHAR;
            box.add(ofNode(nodeValues, index));
        }
    }
    box.print();
    glGetIntegerv(GL_VIEWPORT, viewPort);
    resizeModel(viewPort[2], viewPort[3]);
    switchOnLights();
    if (mTrans) {
        mTrans->updateWindowCenter();
    }
}

void CAEEnv::printNode(unsigned int idx, float* n)
{
    char line[160];
    std::snprintf(line, sizeof line, "%8d %16.6f %16.6f %16.6f\n", static_cast<int>(idx), static_cast<double>(n[0]),
                  static_cast<double>(n[1]), static_cast<double>(n[2]));
    std::cout << line;
}
