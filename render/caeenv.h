// CAEEnv: one loaded model, its drawing, its selection state and its view state file.
//
// Order of calls: construct; make an OpenGL context current; loadAndInitGL; resizeModel; then per frame renderModel,
// and view, pick and selection operations in between; destroy. Everything runs on the thread that owns the context,
// except getAll, which touches no OpenGL state and may run on another thread first.
//
// The library comments on what it does on standard output, unconditionally; two lines per frame go to standard error.
// It throws nothing of its own.
#ifndef CAEENV_H
#define CAEENV_H

#include <cstdio>
#include <string>
#include <vector>

#include "kvoexport.h"
#include "maptypes.h"
#include "partstr.h"

class BoundBox;
class MTransform;
class MView;
class ReadIDS;
class ReadNodes;

// Bits of CAEEnv::compFlag.
const unsigned int SEGMENT_PART_SET = 0x80;                 // segmentPart is drawn, in the selection colour
const unsigned int NODE_LIST_SELECTED = 0x2000;             // the model-wide node selection is drawn
const unsigned int ELEMENT_SELECT_LISTS_CREATED = 0x200000; // every part's selectedList is allocated
const unsigned int NODE_SELECT_LISTS_CREATED = 0x400000;    // every part's selectedNodes is allocated

// What picking selects (CAEEnv::pickType, PickRect::pickType).
const unsigned int PICK_TYPE_PART = 0x400;
const unsigned int PICK_TYPE_ELEMENT = 0x800;
const unsigned int PICK_TYPE_NODE = 0x1000;

class KVO_EXPORT CAEEnv
{
public:
    // A model at dirName/modelName (both copied), with extents of +-2000, not loaded yet. shadeModel: GL_FLAT or
    // GL_SMOOTH. The new environment becomes the current one (getPtr()).
    CAEEnv(const char* dirName, const char* modelName, int shadeModel);
    // Releases what the parts hold, the boxes, mView and mTrans. Keeps the two arrays partsInfoList and boxList, and
    // does not clear getPtr().
    ~CAEEnv();

    // --- Loading -----------------------------------------------------------------------------------------------------
    // Reads the model once: every part, or only those whose ids are in pid_list (not owned, may be null).
    // Returns 0, or 1 when part_start cannot be opened. No OpenGL.
    int getAll(std::vector<unsigned int>* pid_list);
    // getAll unless thread_status says that it already ran, then everything that needs the OpenGL context.
    // font_base: first display list of a bitmap font for the corner labels (list of character c = font_base + c).
    void loadAndInitGL(unsigned int font_base, bool thread_status, std::vector<unsigned int>* pid_list);

    // --- Parts: visibility by selection state and by part ids ------------------------------------
    // op 2: show only the parts that have any selection; op 4: hide them (starts at the counter i, see its comment).
    void processParts(unsigned int op);
    // op 2 show only, 4 hide only, 8 select only, 32 highlight only the listed part ids; 256 clears selection and
    // highlight of the first part. Unknown ids are reported and skipped. pid_list is not owned.
    void processPartsByID(unsigned int op, std::vector<unsigned int>* pid_list);
    void selectPartsByID(std::vector<unsigned int>* pid_list); // adds PART_SELECTED
    // An extra shell part drawn over the model in the selection colour; not owned, never released. Null does nothing.
    void setSegmentPart(PartInfoPtr part);

    void setComputeFlag(unsigned int f);
    void clearComputeFlag(unsigned int f);
    int checkComputeFlag(unsigned int f); // compFlag & f
    void setPickType(unsigned int type);

    MView* getMViewPtr();           // null until loadAndInitGL; owned here
    MTransform* getMTransformPtr(); // null until loadAndInitGL; owned here
    int getNumParts();
    PartInfoPtr getPartsList(); // numParts records; owned here
    UIUIMap* getPartsMapPtr();  // &pidMap
    float* getExtents();        // the live modelExtents[6]
    const char* getModelName(); // valid as long as the environment
    static CAEEnv* getPtr();
    static void setPtr(CAEEnv* env);

    // --- Extents ---------------------------------------------------------------------------------
    // Recomputes modelExtents from the shown parts and sets viewport, projection, lights and window centre again.
    void modifyExtents();
    // Viewport (0, 0, w, h) and a projection that is exactly the extents box: the host chooses w:h so that nothing is
    // stretched.
    void resizeModel(int w, int h);
    // Unit length for every entry of part->partNodes.nodeNormals; a zero normal becomes NaN.
    void normalize(PartInfoPtr part);

    // --- Normals ---------------------------------------------------------------------------------
    void computeNormals(); // all shell and solid parts, each at most once per shading kind
    void computeShellNormals(PartInfoPtr part);
    void computeSolidNormals(PartInfoPtr part);
    // One face: nodes[4] corner offsets (node index x 3; 0x80000000 in the last: no fourth corner, nothing is
    // computed). Smooth: adds the face's area vector to node_normals at the four corners. Flat: unit normal to
    // elm_normals[3].
    void computeElementNormal(unsigned int* nodes, float* node_values, float* node_normals, float* elm_normals);

    // --- Frame -----------------------------------------------------------------------------------
    void renderModel();                // one complete frame
    void displayParts(int file_index); // -1: the parts of all files
    void displayPartsByElement();      // the picking draw, with names by pickType
    void displayAllParts();            // shows every part and restores the loaded extents and lights
    // on_off: 2 show, 4 hide, anything else nothing. Part numbers are 1-based; those out of range are ignored.
    void setDisplay(unsigned int num_parts, unsigned int* parts_list, unsigned int on_off);
    void setDisplay(unsigned int part_num, unsigned int on_off);
    void setBoxDisplay(int box_on_off); // 2 show, 4 hide; hidden parts keep what they have
    void setBlend(int flag);
    void setHideMode(int flag);             // depth test
    void setPolygonMode(int mode);          // GL_POINT, GL_LINE, GL_FILL
    void setShadeModel(unsigned int shade); // GL_FLAT, GL_SMOOTH; computes the normals that are missing

    // --- Lights ----------------------------------------------------------------------------------
    void switchOnLights(); // both lights, placed by the extents; also switches the depth test on
    void changeLightPositions();

    // --- Elements --------------------------------------------------------------------------------
    // color[4] is RGBA; part_info's normals for the shade model must exist, else it is not drawn.
    void renderShellPart(PartInfoPtr part_info, float* color);
    void renderShells(PartInfoPtr part_info, float* color);
    void renderSolidPart(PartInfoPtr part_info, float* color);
    void renderSolids(PartInfoPtr part_info, float* color);
    void renderBeamPart(PartInfoPtr part_info, float* color); // draws nothing
    void renderBeams(PartInfoPtr part_info, float* color);
    void renderDiscretePart(PartInfoPtr part_info, float* color);
    void renderDiscretes(PartInfoPtr part_info, float* color);

    // Faces of one element, inside glBegin(GL_QUADS). indices are offsets (node index x 3) into node_values and
    // node_normals: 3 per triangle, 4 per quadrilateral; 12, 18 and 24 per tetrahedron, pentahedron and hexahedron.
    // norm_indices are offsets of the faces' normals in elm_normals: 4, 5 and 6.
    void renderTriaByNormal(unsigned int* indices, float* node_values, float* normal_ptr);
    void renderQuadByNormal(unsigned int* indices, float* node_values, float* normal_ptr);
    void renderTriaByNodeNormal(unsigned int* indices, float* node_values, float* node_normals);
    void renderQuadByNodeNormal(unsigned int* indices, float* node_values, float* node_normals);
    void renderTetraByNormal(unsigned int* indices, unsigned int* norm_indices, float* elm_normals, float* node_values);
    void renderPentaByNormal(unsigned int* indices, unsigned int* norm_indices, float* elm_normals, float* node_values);
    void renderHexaByNormal(unsigned int* indices, unsigned int* norm_indices, float* elm_normals, float* node_values);
    void renderTetraByNodeNormal(unsigned int* indices, float* node_values, float* node_normals);
    void renderPentaByNodeNormal(unsigned int* indices, float* node_values, float* node_normals);
    void renderHexaByNodeNormal(unsigned int* indices, float* node_values, float* node_normals);

    // --- Pick drawing: one name per element (its 1-based position) -------------------------------
    void renderShellsForPick(PartInfoPtr part_info, float* color);
    void renderSolidsForPick(PartInfoPtr part_info, float* color);
    void renderBeamsForPick(PartInfoPtr part_info, float* color);
    void renderDiscretesForPick(PartInfoPtr part_info, float* color);

    // --- Selection: part, element and node numbers are 1-based positions; ids are the model's own ---
    void selectPart(unsigned int part_num);
    void highlightPart(unsigned int part_num);
    void clearSelectedParts();
    void selectNode(unsigned int* part_idx, unsigned int* node_idx);
    void clearSelectedNodes();
    void selectElement(unsigned int* part_idx, unsigned int* elm_idx);
    void clearSelectedElements();
    void selectNodes(std::vector<unsigned int>& nid_list);    // ids; in every part that holds them
    void selectNodeList(std::vector<unsigned int>& nid_list); // ids; model-wide, through the reader
    // Parallel lists of element ids and part ids; group them by part for speed.
    void selectElements(std::vector<unsigned int>& eid_list, std::vector<unsigned int>& pid_list);
    // Parallel lists of 0-based positions; afterwards only parts with selected elements are visible.
    void selectElementsByIndex(std::vector<unsigned int>& eis_list, std::vector<unsigned int>& pis_list);
    void printNode(unsigned int idx, float* n);
    // Allocate every part's flag arrays, all '0'. They neither free earlier arrays nor set the compFlag bit.
    void createNodeSelectedList();
    void createElementSelectedList();

    // --- View state file -------------------------------------------------------------------------
    int save(const char* file_name); // 0, or 1 when the file cannot be opened
    // fp stands behind the two names; the environment must hold the same parts. Does not close fp.
    void restore(FILE* fp);

    // --- Data, in the fixed order that hosts rely on ---------------------------------------------
    char charBuff[128];         // scratch text; the part_start path while loading
    char* selectedNodes;        // model-wide node flags, numNodes long, owned by readNodes; null until selectNodeList
    unsigned int numParts;      // records in partsInfoList
    unsigned int primitiveType; // 7 (GL_QUADS) once loading has started; informative
    unsigned int i;           // loop counter of every loop over parts; its leftover value is observable (processParts)
    unsigned int compFlag;    // SEGMENT_PART_SET, ...
    unsigned int pickType;    // PICK_TYPE_...; PICK_TYPE_PART at construction
    unsigned int numNodes;    // nodes in the model-wide list
    int shadeModel;           // GL_FLAT or GL_SMOOTH; re-read from OpenGL every frame
    int blendFlag;            // written by save and restore only
    int polygonMode[2];       // written by save and restore only
    int viewPort[4];          // as last read back from OpenGL
    int numTrans;             // not used
    float modelExtents[6];    // xmin, xmax, ymin, ymax, zmin, zmax; mView and mTrans point at it
    float orgModelExtents[6]; // as loaded
    float colorBlue[4];       // selection colour, RGBA
    float colorGreen[4];      // highlight colour, RGBA
    float* nodeValues;        // model-wide coordinates, 3 per node, owned by readNodes
    FILE* filePtr;            // the stream of the file being read or written; stale afterwards
    PartInfoStr* partsInfoList; // numParts records
    PartInfoPtr segmentPart;    // not owned
    MView* mView;
    MTransform* mTrans;
    BoundBox** boxList;   // one box per part
    ReadIDS* readIDS;     // model-wide, made by selectNodeList
    ReadNodes* readNodes; // model-wide, made by selectNodeList
    UIUIMap pidMap;       // part id -> part index
    std::string dirName;
    std::string modelName;
    std::vector<std::string> fileList; // model files, in file-index order

    // The current environment: how picking reaches the model. The library holds a weak definition, so that a host may
    // define it itself. Not cleared by the destructor.
    static CAEEnv* cae_Env;
};

#endif
