// Parts and their elements of the files of a model.
#ifndef READELEMENTS_H
#define READELEMENTS_H

#include <map>
#include <vector>

#include "kvoexport.h"
#include "maptypes.h"
#include "partstr.h"
#include "readids.h"
#include "readnodes.h"

class KVO_EXPORT ReadElements
{
public:
    // Keeps the three pointers. ids and nodes hold one loaded reader per model file, in file order, so that elements of
    // one file can use nodes of another. The destructor releases none of them.
    ReadElements(UIUIMap* pidMap, std::vector<ReadIDS*>* ids, std::vector<ReadNodes*>* nodes);
    // A reader for a single file; loads that file's ids and nodes itself when it needs them.
    ReadElements(const char* dir, const char* file, int fileIndex, UIUIMap* pidMap);
    ~ReadElements();

    // Selects the model file to read next; fileIndex is what its parts get as partFileIndex.
    void setValues(const char* dir, const char* file, int fileIndex, ReadIDS* ids, ReadNodes* nodes);

    // Appends every part of the selected file to *parts (*numParts records on entry, 0 and null at first; grown with
    // new[], the old array is released) and enters its id in pidMap. Returns the number of elements read.
    int getAll(unsigned int* numParts, PartInfoStr** parts);
    // As getAll, only the parts whose ids are in pid_list.
    int getPartsByID(std::vector<unsigned int>* pid_list, unsigned int* numParts, PartInfoStr** parts);
    // As getAll, only the parts of the named part name (exact, case-sensitive).
    int get(const char* partName, unsigned int* numParts, PartInfoStr** parts);

    // The next colour of a fixed, well-spread palette into color[4] (RGBA, alpha 1): same model, same colours.
    void randomColor(float* color);
    // Draw type (mantypes.h) for a family name: "shell", "solid", "beam", "discrete", any case; 0 for others.
    int getPartType(const char* family);
    // Fills the nodes of a part whose elmIndices hold positions in the concatenated nodes of all model files:
    // numIndices indices are replaced by indices into the part's own sorted copy.
    void fillNodeDetails(unsigned int numIndices, PartInfoPtr part);

    // A shell part (singly allocated, owned by the caller) from a segment's node ids: four ids a face (a triangle
    // repeats its third id or gives 0 as fourth) when the length is a multiple of 4, else three ids a face when it is a
    // multiple of 3. Null, with one line on standard error, for other lengths and unknown ids.
    PartInfoPtr createPartForSegment(std::vector<unsigned int>& nodeIds);

    const char* dirName; // owned copies
    const char* modelName;
    int fileIndex;
    ReadIDS* readIDS; // of the selected file; not owned unless made here
    ReadNodes* readNodes;
    std::map<unsigned int, unsigned int> uniqIndices; // kept for hosts; not used for compaction
    UIUIMap* pidMap;
    std::vector<ReadIDS*>* m_ReadIDVect;
    std::vector<ReadNodes*>* m_ReadNodeVect;
};

#endif
