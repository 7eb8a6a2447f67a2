// Node coordinates of one model file.
#ifndef READNODES_H
#define READNODES_H

#include <cstddef>

#include "kvoexport.h"

class KVO_EXPORT ReadNodes
{
public:
    ReadNodes(const char* dir, const char* file); // remembers copies of the names; reads nothing yet
    ~ReadNodes();                                 // releases the arrays

    void set(const char* dir, const char* file);

    // The arrays that getValues read; owned here.
    float* getValuesPtr();
    char* getSelectedPtr();
    int getNumNodes();

    // Reads the coordinates, in the order of ReadIDS::get for the same pair, and makes the selection flags (all '0').
    // Returns the number of nodes, 0 on failure (with one line on standard error).
    int getValues();

    // Append one node (three floats): at a position given by the caller, growing as needed, or at the end.
    void addNode(float* xyz, unsigned int index);
    void addNode(float* xyz);

    const char* dirName; // owned copies
    const char* modelName;
    char* selectedNodes; // numNodes characters
    size_t numNodes;
    float* nodeValues; // 3 x numNodes
    int m_MallocCount; // nodes for which nodeValues and selectedNodes have room
};

#endif
