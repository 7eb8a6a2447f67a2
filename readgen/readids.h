// Node ids of one model file.
#ifndef READIDS_H
#define READIDS_H

#include <cstdlib>
#include <iostream>

#include "kvoexport.h"

// Three-way comparison of two unsigned 32-bit ids given by pointer: negative, zero, positive for less, equal, greater.
// The order of every idList, for bsearch.
KVO_EXPORT int compareIDs(const void* a, const void* b);

class KVO_EXPORT ReadIDS
{
public:
    ReadIDS();
    ReadIDS(const char* dir, const char* file); // remembers copies of the names; reads nothing yet
    ~ReadIDS();                                 // releases idList

    void set(const char* dir, const char* file);

    // Position of id in idList (the node's index in the matching ReadNodes), or 0x80000000: negative as a signed
    // integer. Reports an unknown id on standard output, except id 0, which stands for "no node".
    // Kept out of line so that it is a real symbol of the libraries that use it.
    __attribute__((noinline, used)) unsigned int find(unsigned int id)
    {
        const void* hit = numIDs ? std::bsearch(&id, idList, numIDs, sizeof(unsigned int), compareIDs) : nullptr;
        if (hit) {
            return static_cast<unsigned int>(static_cast<const unsigned int*>(hit) - idList);
        }
        if (id != 0) {
            std::cout << "Node ID <" << id << "> not found\n";
        }
        return 0x80000000u;
    }

    // Reads the id file of that name ("node_ids") of the (directory, file) pair into idList. Returns the number of ids,
    // 0 when there is no such file, it is empty or it is damaged (then one line on standard error says where and why).
    int get(const char* idFileName);

    const char* dirName; // owned copies
    const char* modelName;
    unsigned int numIDs;
    unsigned int* idList; // ascending, owned
};

#endif
