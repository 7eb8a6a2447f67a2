// The environment object: construction, destruction, accessors.
#include "caeenv.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstddef>

#include "boundbox.h"
#include "mtrans.h"
#include "mview.h"
#include "readids.h"
#include "readnodes.h"

// Weak: a host may bring its own storage, and one that does not still links.
__attribute__((weak)) CAEEnv* CAEEnv::cae_Env = nullptr;

namespace {

// Releases the arrays inside one record, not the record, which lies in the model's array.
void deletePartInfoPtr(PartInfoPtr part)
{
    PartNodesStr& nodes = part->partNodes;
    delete[] nodes.nodeValues;
    delete[] nodes.nodeNormals;
    delete[] nodes.selectedNodes;
    delete[] nodes.idList;
    nodes.numNodes = 0;

    PartElementsStr& elements = part->partElements;
    delete[] elements.elmIndices;
    delete[] elements.elmNormals;
    delete[] elements.selectedList;
    delete elements.eidMap;
    delete[] elements.NPE;
    elements.NPE = nullptr;
    elements.numElements = 0;
}

} // namespace

CAEEnv::CAEEnv(const char* dirName, const char* modelName, int shadeModel)
    : charBuff(), selectedNodes(nullptr), numParts(0), primitiveType(0), i(0), compFlag(0), pickType(PICK_TYPE_PART),
      numNodes(0), shadeModel(shadeModel), blendFlag(0), polygonMode(), viewPort(), numTrans(0),
      modelExtents{-2000, 2000, -2000, 2000, -2000, 2000}, orgModelExtents{-2000, 2000, -2000, 2000, -2000, 2000},
      colorBlue{0, 0, 1, 1}, colorGreen{0, 1, 0, 1}, nodeValues(nullptr), filePtr(nullptr), partsInfoList(nullptr),
      segmentPart(nullptr), mView(nullptr), mTrans(nullptr), boxList(nullptr), readIDS(nullptr), readNodes(nullptr),
      dirName(dirName), modelName(modelName)
{
    cae_Env = this;
}

CAEEnv::~CAEEnv()
{
    // deliberate(arrays-kept): partsInfoList and boxList themselves are never released, only what they hold; hosts keep
    // using the pointer from getPartsList() after the environment is gone.
    while (numParts != 0) {
        --numParts;
        if (partsInfoList) {
            deletePartInfoPtr(&partsInfoList[numParts]);
        }
        if (boxList) {
            delete boxList[numParts];
        }
    }
    delete mView;
    delete mTrans;
    // deliberate(reader-kept-without-nodes): readers of a node list that could not be loaded stay allocated.
    if (numNodes != 0) {
        delete readNodes;
        delete readIDS;
    }
}

void CAEEnv::setComputeFlag(unsigned int f)
{
    compFlag |= f;
}
void CAEEnv::clearComputeFlag(unsigned int f)
{
    compFlag &= ~f;
}
int CAEEnv::checkComputeFlag(unsigned int f)
{
    return static_cast<int>(compFlag & f);
}
void CAEEnv::setPickType(unsigned int type)
{
    pickType = type;
}

MView* CAEEnv::getMViewPtr()
{
    return mView;
}
MTransform* CAEEnv::getMTransformPtr()
{
    return mTrans;
}
int CAEEnv::getNumParts()
{
    return static_cast<int>(numParts);
}
PartInfoPtr CAEEnv::getPartsList()
{
    return partsInfoList;
}
UIUIMap* CAEEnv::getPartsMapPtr()
{
    return &pidMap;
}
float* CAEEnv::getExtents()
{
    return modelExtents;
}
const char* CAEEnv::getModelName()
{
    return modelName.c_str();
}
CAEEnv* CAEEnv::getPtr()
{
    return cae_Env;
}
void CAEEnv::setPtr(CAEEnv* env)
{
    cae_Env = env;
}
