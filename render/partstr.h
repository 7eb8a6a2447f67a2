// Part records: the one data model that the reader fills and that drawing, normals and selection read and write.
//
// The parts of a model lie in one contiguous array (CAEEnv::partsInfoList). A part's position in it is its part index
// (0-based); part numbers, as picking and selection use them, are the index + 1. The external part id is not stored in
// the record: CAEEnv::pidMap maps it to the index.
//
// Every array in a record is allocated with new[] by whoever fills it, eidMap with new; the environment's destructor
// releases them all.
#ifndef PARTSTR_H
#define PARTSTR_H

#include "maptypes.h"

// Bits of PartInfoStr::partFlag. Operations change only the bits that they name.
const unsigned int PART_SHOWN = 0x2;                     // drawn, and counts in the model extents
const unsigned int PART_HIDDEN = 0x4;                    // not drawn; set and cleared as a pair with PART_SHOWN
const unsigned int PART_SELECTED = 0x8;                  // drawn in the selection colour (blue)
const unsigned int PART_HIGHLIGHTED = 0x20;              // drawn in the highlight colour (green) unless selected
const unsigned int PART_BOX_SHOWN = 0x40;                // its bounding box is drawn
const unsigned int PART_ELEMENTS_SELECTED = 0x800;       // drawn element by element, by selectedList
const unsigned int PART_NODES_SELECTED = 0x1000;         // its selected nodes are drawn as points
const unsigned int PART_ELEMENT_NORMALS_DONE = 0x100000; // elmNormals is computed
const unsigned int PART_NODE_NORMALS_DONE = 0x800000;    // nodeNormals is computed

// Entries of selectedNodes and selectedList. Any other character means "no change of colour".
const char NOT_SELECTED_CHAR = '0';
const char SELECTED_CHAR = '1';

// The nodes of one part, its own copy.
struct _PartNodesStr
{
    char* selectedNodes; // numNodes flag characters, no terminating NUL; null until nodes are first selected
    unsigned int numNodes;
    unsigned int* idList; // numNodes external node ids, ascending (looked up by binary search with compareIDs)
    float* nodeValues;    // 3 x numNodes: x, y, z of node k at 3k, in the order of idList
    float* nodeNormals;   // 3 x numNodes, unit length; null until smooth normals are computed
};
typedef struct _PartNodesStr PartNodesStr;
typedef struct _PartNodesStr* PartNodesPtr;

// The elements of one part. Element count = numElements / nodesPerElement (integer division; 0 for a stride of 0).
//
//   draw type  stride  slots
//   SHELL      4       corners 1-4; a triangle repeats its third node in the fourth slot
//   SOLID      8       hexahedron corners 1-8; slots 4 = 5: tetrahedron; else slots 5 = 6: pentahedron
//   SOLID      10      ten-slot tetrahedron, slots 1-4 used
//   BEAM       3       end nodes, then a third node index or a value negative as a signed integer (none)
//   DISCRETE   3       end nodes, then a slot that is not read
struct _PartElementsStr
{
    char* selectedList;           // one flag character per element; null until elements are first selected
    char* NPE;                    // solids: '4', '6' or '8' corner nodes per element; null until normals are computed
    unsigned int numElements;     // misleading name, kept: the LENGTH OF elmIndices (element count x stride)
    unsigned int nodesPerElement; // the stride of elmIndices
    unsigned int* elmIndices;     // 0-based indices into this part's nodeValues, never external ids
    float* elmNormals;            // flat normals: 3 floats per shell, 18 (6 faces) per solid; null until computed
    UIUIMap* eidMap;              // external element id -> 0-based element index; may be null
};
typedef struct _PartElementsStr PartElementsStr;
typedef struct _PartElementsStr* PartElementsPtr;

// One part.
struct _PartInfoStr
{
    unsigned int partDrawType; // SHELL, SOLID, BEAM or DISCRETE (mantypes.h); any other type is kept but never drawn
    unsigned int partFlag;     // PART_... bits
    int partFileIndex;         // index in CAEEnv::fileList of the model file that it came from
    float partExtents[6];      // xmin, xmax, ymin, ymax, zmin, zmax in model coordinates
    float partColor[4];        // own colour, RGBA 0..1; used when neither selected nor highlighted
    PartNodesStr partNodes;
    PartElementsStr partElements;
};
typedef struct _PartInfoStr PartInfoStr;
typedef struct _PartInfoStr* PartInfoPtr;

#endif
