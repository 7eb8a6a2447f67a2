// The layout that hosts are compiled against: order, offsets and sizes of fields (x86-64), constants and enum values,
// signatures.
#include <cstddef>
#include <type_traits>

#include <gtest/gtest.h>

#include "boundbox.h"
#include "caeenv.h"
#include "gentime.h"
#include "glfuncs.h"
#include "mantypes.h"
#include "mtrans.h"
#include "mview.h"
#include "outputcapture.h"
#include "pickrect.h"
#include "readelements.h"
#include "readids.h"
#include "readnodes.h"
#include "rubberband.h"
#include "trackball.h"
#include "unit_axis.h"

namespace {
// offsetof is only for plain records; this also serves classes with strings and maps.
template <class Class, class Field> std::size_t offsetOf(const Class& object, const Field& field)
{
    return reinterpret_cast<const char*>(&field) - reinterpret_cast<const char*>(&object);
}
} // namespace

#define EXPECT_OFFSET(object, field, offset) EXPECT_EQ(offsetOf(object, (object).field), std::size_t(offset))

TEST(Layout, PartNodes)
{
    const PartNodesStr n = {};
    EXPECT_OFFSET(n, selectedNodes, 0);
    EXPECT_OFFSET(n, numNodes, 8);
    EXPECT_OFFSET(n, idList, 16);
    EXPECT_OFFSET(n, nodeValues, 24);
    EXPECT_OFFSET(n, nodeNormals, 32);
    EXPECT_EQ(sizeof n, 40u);
}

TEST(Layout, PartElements)
{
    const PartElementsStr e = {};
    EXPECT_OFFSET(e, selectedList, 0);
    EXPECT_OFFSET(e, NPE, 8);
    EXPECT_OFFSET(e, numElements, 16);
    EXPECT_OFFSET(e, nodesPerElement, 20);
    EXPECT_OFFSET(e, elmIndices, 24);
    EXPECT_OFFSET(e, elmNormals, 32);
    EXPECT_OFFSET(e, eidMap, 40);
    EXPECT_EQ(sizeof e, 48u);
}

TEST(Layout, PartInfo)
{
    const PartInfoStr p = {};
    EXPECT_OFFSET(p, partDrawType, 0);
    EXPECT_OFFSET(p, partFlag, 4);
    EXPECT_OFFSET(p, partFileIndex, 8);
    EXPECT_OFFSET(p, partExtents, 12);
    EXPECT_OFFSET(p, partColor, 36);
    EXPECT_OFFSET(p, partNodes, 56);
    EXPECT_OFFSET(p, partElements, 96);
    EXPECT_EQ(sizeof p, 144u);
}

TEST(Layout, Environment)
{
    const CAEEnv env("dir", "model", 0x1D00);
    EXPECT_OFFSET(env, charBuff, 0);
    EXPECT_EQ(sizeof env.charBuff, 128u);
    EXPECT_OFFSET(env, selectedNodes, 128);
    EXPECT_OFFSET(env, numParts, 136);
    EXPECT_OFFSET(env, primitiveType, 140);
    EXPECT_OFFSET(env, i, 144);
    EXPECT_OFFSET(env, compFlag, 148);
    EXPECT_OFFSET(env, pickType, 152);
    EXPECT_OFFSET(env, numNodes, 156);
    EXPECT_OFFSET(env, shadeModel, 160);
    EXPECT_OFFSET(env, blendFlag, 164);
    EXPECT_OFFSET(env, polygonMode, 168);
    EXPECT_OFFSET(env, viewPort, 176);
    EXPECT_OFFSET(env, numTrans, 192);
    EXPECT_OFFSET(env, modelExtents, 196);
    EXPECT_OFFSET(env, orgModelExtents, 220);
    EXPECT_OFFSET(env, colorBlue, 244);
    EXPECT_OFFSET(env, colorGreen, 260);
    EXPECT_OFFSET(env, nodeValues, 280);
    EXPECT_OFFSET(env, filePtr, 288);
    EXPECT_OFFSET(env, partsInfoList, 296);
    EXPECT_OFFSET(env, segmentPart, 304);
    EXPECT_OFFSET(env, mView, 312);
    EXPECT_OFFSET(env, mTrans, 320);
    EXPECT_OFFSET(env, boxList, 328);
    EXPECT_OFFSET(env, readIDS, 336);
    EXPECT_OFFSET(env, readNodes, 344);
    EXPECT_OFFSET(env, pidMap, 352);
    EXPECT_OFFSET(env, dirName, 352 + sizeof(UIUIMap));
    EXPECT_OFFSET(env, modelName, 352 + sizeof(UIUIMap) + sizeof(std::string));
    EXPECT_OFFSET(env, fileList, 352 + sizeof(UIUIMap) + 2 * sizeof(std::string));
    EXPECT_EQ(sizeof env, 352 + sizeof(UIUIMap) + 2 * sizeof(std::string) + sizeof(std::vector<std::string>));
}

TEST(Layout, Transformation)
{
    const OutputCapture prints; // "AXIS LEN="
    float extents[6] = {};
    const MTransform t(extents);
    EXPECT_OFFSET(t, mTransType, 0);
    EXPECT_OFFSET(t, depthTest, 4);
    EXPECT_OFFSET(t, onlyOnce, 8);
    EXPECT_OFFSET(t, viewPort, 12);
    EXPECT_OFFSET(t, modelExtents, 32);
    EXPECT_OFFSET(t, mouseValues, 40);
    EXPECT_OFFSET(t, localTrans, 56);
    EXPECT_OFFSET(t, globalRot, 68);
    EXPECT_OFFSET(t, globalTrans, 80);
    EXPECT_OFFSET(t, localScale, 92);
    EXPECT_OFFSET(t, axisLength, 104);
    EXPECT_OFFSET(t, rotMatrix, 116);
    EXPECT_OFFSET(t, curQuat, 180);
    EXPECT_OFFSET(t, mvMatrix, 200);
    EXPECT_OFFSET(t, mvMatrixLocal, 328);
    EXPECT_OFFSET(t, projMatrix, 456);
    EXPECT_OFFSET(t, centerOfScaling, 584);
    EXPECT_OFFSET(t, centerOfWindow, 608);
    EXPECT_OFFSET(t, startOfScaling, 632);
    EXPECT_OFFSET(t, endOfScaling, 656);
    EXPECT_OFFSET(t, pointsList, 680);
    EXPECT_EQ(sizeof t, 680 + sizeof(std::vector<Point3D*>));
}

TEST(Layout, View)
{
    float extents[6] = {};
    const MView v(extents);
    EXPECT_OFFSET(v, modelExtents, 0);
    EXPECT_OFFSET(v, xAxisType, 8);
    EXPECT_OFFSET(v, yAxisType, 12);
    EXPECT_OFFSET(v, zAxisType, 16);
    EXPECT_OFFSET(v, mViewType, 20);
    EXPECT_EQ(sizeof v, 24u);
}

TEST(Layout, Picking)
{
    const PickRect p;
    EXPECT_OFFSET(p, pickType, 0);
    EXPECT_OFFSET(p, pickMethod, 4);
    EXPECT_OFFSET(p, zPartMap, 8);
    EXPECT_EQ(sizeof p, 8 + sizeof(ZPartMap));
    const PidEidStr e = {};
    EXPECT_OFFSET(e, pid, 0);
    EXPECT_OFFSET(e, eid, 4);
    EXPECT_EQ(sizeof e, 8u);
}

TEST(Layout, SmallRecordsAndClasses)
{
    float extents[6] = {};
    const BoundBox box(extents);
    EXPECT_OFFSET(box, boxVertices, 0);
    EXPECT_EQ(sizeof box, 96u);
    EXPECT_EQ(sizeof(Point3D), 12u);
    EXPECT_TRUE(std::is_empty<UnitAxis>::value);
    EXPECT_TRUE(std::is_empty<GLFuncs>::value);
    EXPECT_TRUE(std::is_empty<GenTime>::value);
}

TEST(Layout, ReaderObjects)
{
    const ReadIDS ids("dir", "file");
    EXPECT_OFFSET(ids, dirName, 0);
    EXPECT_OFFSET(ids, modelName, 8);
    EXPECT_OFFSET(ids, numIDs, 16);
    EXPECT_OFFSET(ids, idList, 24);
    const ReadNodes nodes("dir", "file");
    EXPECT_OFFSET(nodes, dirName, 0);
    EXPECT_OFFSET(nodes, modelName, 8);
    EXPECT_OFFSET(nodes, selectedNodes, 16);
    EXPECT_OFFSET(nodes, numNodes, 24);
    EXPECT_OFFSET(nodes, nodeValues, 32);
    EXPECT_OFFSET(nodes, m_MallocCount, 40);
}

TEST(Layout, NothingHasVirtualFunctions)
{
    EXPECT_FALSE(std::is_polymorphic<CAEEnv>::value);
    EXPECT_FALSE(std::is_polymorphic<MTransform>::value);
    EXPECT_FALSE(std::is_polymorphic<MView>::value);
    EXPECT_FALSE(std::is_polymorphic<PickRect>::value);
    EXPECT_FALSE(std::is_polymorphic<BoundBox>::value);
}

TEST(Constants, PartFlags)
{
    EXPECT_EQ(PART_SHOWN, 0x2u);
    EXPECT_EQ(PART_HIDDEN, 0x4u);
    EXPECT_EQ(PART_SELECTED, 0x8u);
    EXPECT_EQ(PART_HIGHLIGHTED, 0x20u);
    EXPECT_EQ(PART_BOX_SHOWN, 0x40u);
    EXPECT_EQ(PART_ELEMENTS_SELECTED, 0x800u);
    EXPECT_EQ(PART_NODES_SELECTED, 0x1000u);
    EXPECT_EQ(PART_ELEMENT_NORMALS_DONE, 0x100000u);
    EXPECT_EQ(PART_NODE_NORMALS_DONE, 0x800000u);
    EXPECT_EQ(NOT_SELECTED_CHAR, '0');
    EXPECT_EQ(SELECTED_CHAR, '1');
}

TEST(Constants, ComputeFlagsAndPickTypes)
{
    EXPECT_EQ(SEGMENT_PART_SET, 0x80u);
    EXPECT_EQ(NODE_LIST_SELECTED, 0x2000u);
    EXPECT_EQ(ELEMENT_SELECT_LISTS_CREATED, 0x200000u);
    EXPECT_EQ(NODE_SELECT_LISTS_CREATED, 0x400000u);
    EXPECT_EQ(PICK_TYPE_PART, 1024u);
    EXPECT_EQ(PICK_TYPE_ELEMENT, 2048u);
    EXPECT_EQ(PICK_TYPE_NODE, 4096u);
    EXPECT_EQ(SELECT_BUFFER_SIZE, 524288u);
}

TEST(Constants, ScalesAndDepths)
{
    EXPECT_EQ(SCALE_FACTOR, 0.2f);
    EXPECT_EQ(MIN_SCALE_FACTOR, 0.1f);
    EXPECT_EQ(NUM_COORDS, 3);
    EXPECT_EQ(Z_MIN_COORD, -9999.0);
    EXPECT_EQ(Z_MAX_COORD, 9999.0);
}

TEST(Constants, DrawTypes)
{
    EXPECT_EQ(SHELL, 41);
    EXPECT_EQ(SOLID, 48);
    EXPECT_EQ(BEAM, 52);
    EXPECT_EQ(DISCRETE, 53);
}

TEST(Constants, TransformationOperations)
{
    const TransType inOrder[] = {NO_TRANSFORM, RESET_TRANSFORM, ROTATE_X_CCW,      ROTATE_X_CW,    ROTATE_Y_CCW,
                                 ROTATE_Y_CW,  ROTATE_Z_CCW,    ROTATE_Z_CW,       TRANS_LEFT,     TRANS_RIGHT,
                                 TRANS_UP,     TRANS_DOWN,      SCALE_INCR,        SCALE_DECR,     GLOBAL_TRANSLATION,
                                 GLOBAL_SCALE, GLOBAL_ROTATION, START_RUBBER_BAND, START_POLYLINE, END_RUBBER_BAND,
                                 RECT_SCALE,   RECT_PICK,       SELECT_PICK,       POLYLINE_PICK,  TRANS_MAX};
    for (int value = 0; value < 25; ++value) {
        EXPECT_EQ(inOrder[value], value);
    }
}

TEST(Constants, ViewsAndAxisTypes)
{
    const MViewType views[] = {NO_VIEW, ISO_VIEW, TOP_VIEW, BOTTOM_VIEW, LEFT_VIEW, RIGHT_VIEW, FRONT_VIEW, BACK_VIEW};
    for (int value = 0; value < 8; ++value) {
        EXPECT_EQ(views[value], value);
    }
    const AxisType axes[] = {AXIS_OTHER_TYPE, X_BOTH_POSITIVE, Y_BOTH_POSITIVE, Z_BOTH_POSITIVE,
                             X_BOTH_NEGATIVE, Y_BOTH_NEGATIVE, Z_BOTH_NEGATIVE};
    for (int value = 0; value < 7; ++value) {
        EXPECT_EQ(axes[value], value);
    }
}

// Signatures are checked by the compiler: a changed one does not convert.
TEST(Signatures, Environment)
{
    using Env = CAEEnv;
    using Ids = std::vector<unsigned int>;
    int (Env::*getAll)(Ids*) = &Env::getAll;
    void (Env::*load)(unsigned int, bool, Ids*) = &Env::loadAndInitGL;
    void (Env::*byId)(unsigned int, Ids*) = &Env::processPartsByID;
    void (Env::*select)(Ids*) = &Env::selectPartsByID;
    void (Env::*list)(unsigned int, unsigned int*, unsigned int) = &Env::setDisplay;
    void (Env::*one)(unsigned int, unsigned int) = &Env::setDisplay;
    void (Env::*resize)(int, int) = &Env::resizeModel;
    void (Env::*normal)(unsigned int*, float*, float*, float*) = &Env::computeElementNormal;
    void (Env::*node)(unsigned int*, unsigned int*) = &Env::selectNode;
    void (Env::*elements)(Ids&, Ids&) = &Env::selectElements;
    int (Env::*check)(unsigned int) = &Env::checkComputeFlag;
    int (Env::*save)(const char*) = &Env::save;
    void (Env::*restore)(FILE*) = &Env::restore;
    const char* (Env::*name)() = &Env::getModelName;
    CAEEnv* (*current)() = &Env::getPtr;
    void (*setCurrent)(CAEEnv*) = &Env::setPtr;
    EXPECT_TRUE(getAll && load && byId && select && list && one && resize && normal && node && elements && check &&
                save && restore && name && current && setCurrent);
    const bool constructible = std::is_constructible<CAEEnv, const char*, const char*, int>::value;
    EXPECT_TRUE(constructible);
}

TEST(Signatures, ViewAndDrawingAids)
{
    void (MTransform::*update)(int, float*) = &MTransform::updateValues;
    std::vector<Point3D*>& (MTransform::*points)() = &MTransform::getPointsList;
    int (PickRect::*process)(int, int, float*) = &PickRect::process;
    int (PickRect::*hits)(GLint, GLuint*) = &PickRect::processHits;
    void (*axis)(float*, float) = &UnitAxis::render;
    void (*font)(unsigned int) = &BoundBox::setFontBase;
    void (*toggle)(int) = &GLFuncs::process;
    unsigned long long (*clock)() = &GenTime::getCurrentMillis;
    void (*band)(int*, float*, double*) = &createRubberBand;
    void (*polyline)(std::vector<Point3D*>&) = &createPolyline;
    void (*ball)(float*, float, float, float, float) = &trackball;
    void (*add)(const float*, const float*, float*) = &add_quats;
    EXPECT_TRUE(update && points && process && hits && axis && font && toggle && clock && band && polyline && ball &&
                add);
}
