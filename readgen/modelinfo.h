// What a model directory says about its parts, without loading nodes or elements.
#ifndef MODELINFO_H
#define MODELINFO_H

#include <string>
#include <vector>

#include "kvoexport.h"
#include "modelwriter.h"

struct KVO_EXPORT ModelPartInfo
{
    ModelPart part;                        // id, name, kind, colour, property, material
    unsigned long long numElements = 0;    // elements, not index slots
    unsigned long long numNodes = 0;       // distinct nodes that the elements use
    float extents[6] = {0, 0, 0, 0, 0, 0}; // of those nodes; the whole model's for a part without elements
    int fileIndex = 0;                     // position of its file in ModelInfo::files
};

struct KVO_EXPORT ModelInfo
{
    float extents[6] = {0, 0, 0, 0, 0, 0};    // xmin, xmax, ymin, ymax, zmin, zmax
    std::vector<std::string> files;           // model files, relative to dirName
    std::vector<unsigned long long> numNodes; // per file
    std::vector<ModelPartInfo> parts;         // in the order in which loading delivers them
};

// Reads part_start, the part tables and the headers of the node files of dirName/modelName. False on failure, with
// *error (may be null) naming the file, the offset and what is wrong; *info is then empty. Element blocks and
// coordinates are not read, so damage inside them shows only when the model is loaded.
KVO_EXPORT bool readModelInfo(const std::string& dirName, const std::string& modelName, ModelInfo* info,
                              std::string* error);

// "shell", "solid", "beam", "discrete", or "other" for any other draw type.
KVO_EXPORT const char* partFamilyName(unsigned int drawType);

#endif
