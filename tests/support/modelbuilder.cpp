// Parts and environments for tests.
#include "modelbuilder.h"

#include <algorithm>
#include <cstring>

#include "boundbox.h"
#include "glnames.h"
#include "mtrans.h"
#include "mview.h"

namespace {
template <class T> T* copied(const std::vector<T>& values)
{
    T* array = new T[values.size()];
    std::copy(values.begin(), values.end(), array);
    return array;
}

void setExtents(PartInfoStr& part, const Floats& nodes)
{
    for (int axis = 0; axis < 3; ++axis) {
        float low = nodes.empty() ? 0 : nodes[axis], high = low;
        for (std::size_t k = axis; k < nodes.size(); k += 3) {
            low = std::min(low, nodes[k]);
            high = std::max(high, nodes[k]);
        }
        part.partExtents[2 * axis] = low;
        part.partExtents[2 * axis + 1] = high;
    }
}
} // namespace

PartInfoStr makePart(unsigned int drawType, unsigned int stride, const Floats& nodes, const Indices& indices)
{
    PartInfoStr part = {};
    part.partDrawType = drawType;
    part.partFlag = PART_SHOWN;
    const float color[4] = {0.5f, 0.25f, 0.125f, 1};
    std::copy(color, color + 4, part.partColor);
    setExtents(part, nodes);

    PartNodesStr& n = part.partNodes;
    n.numNodes = static_cast<unsigned int>(nodes.size() / 3);
    n.nodeValues = copied(nodes);
    n.idList = new unsigned int[n.numNodes];
    for (unsigned int k = 0; k < n.numNodes; ++k) {
        n.idList[k] = k + 1;
    }

    PartElementsStr& e = part.partElements;
    e.numElements = static_cast<unsigned int>(indices.size());
    e.nodesPerElement = stride;
    e.elmIndices = copied(indices);
    e.eidMap = new UIUIMap;
    for (unsigned int k = 0; stride && k < e.numElements / stride; ++k) {
        (*e.eidMap)[101 + k] = k;
    }
    return part;
}

void releasePart(PartInfoStr& part)
{
    delete[] part.partNodes.selectedNodes;
    delete[] part.partNodes.idList;
    delete[] part.partNodes.nodeValues;
    delete[] part.partNodes.nodeNormals;
    delete[] part.partElements.selectedList;
    delete[] part.partElements.NPE;
    delete[] part.partElements.elmIndices;
    delete[] part.partElements.elmNormals;
    delete part.partElements.eidMap;
    part = {};
}

PartInfoStr quadPart(float x, float y)
{
    return makePart(SHELL, 4, {x, y, 0, x + 1, y, 0, x + 1, y + 1, 0, x, y + 1, 0}, {0, 1, 2, 3});
}

PartInfoStr trianglePart()
{
    return makePart(SHELL, 4, {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2, 2});
}

PartInfoStr quadStripPart(unsigned int count)
{
    Floats nodes;
    for (float y : {0.0f, 1.0f}) {
        for (unsigned int k = 0; k <= count; ++k) {
            nodes.insert(nodes.end(), {static_cast<float>(k), y, 0});
        }
    }
    Indices indices;
    for (unsigned int k = 0; k < count; ++k) {
        indices.insert(indices.end(), {k, k + 1, count + 2 + k, count + 1 + k});
    }
    return makePart(SHELL, 4, nodes, indices);
}

PartInfoStr hexaPart()
{
    return makePart(SOLID, 8, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1},
                    {0, 1, 2, 3, 4, 5, 6, 7});
}

PartInfoStr tetraPart()
{
    return makePart(SOLID, 8, {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 1, 2, 3, 3, 3, 3, 3});
}

PartInfoStr pentaPart()
{
    return makePart(SOLID, 8, {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 1, 0, 1, 0, 1, 1}, {0, 2, 5, 3, 1, 1, 4, 4});
}

PartInfoStr beamPart(unsigned int third)
{
    return makePart(BEAM, 3, {0, 0, 0, 1, 0, 0, 0, 0, 1}, {0, 1, third});
}

PartInfoStr discretePart()
{
    return makePart(DISCRETE, 3, {0, 0, 0, 1, 0, 0, 0, 0, 1}, {0, 1, 2});
}

char* newChars(const std::string& text)
{
    return copied(std::vector<char>(text.begin(), text.end()));
}

float* newFloats(const Floats& values)
{
    return copied(values);
}

TestModel::TestModel(int shadeModel) : env(new CAEEnv("dir", "model", shadeModel)) {}

TestModel::~TestModel()
{
    PartInfoStr* const parts = env->partsInfoList;
    BoundBox** const boxes = env->boxList;
    if (!parts) {
        std::for_each(added.begin(), added.end(), releasePart); // never installed
    }
    env.reset();
    delete[] parts;
    delete[] boxes;
}

TestModel& TestModel::add(const PartInfoStr& part)
{
    added.push_back(part);
    return *this;
}

TestModel& TestModel::installParts()
{
    env->numParts = static_cast<unsigned int>(added.size());
    env->partsInfoList = copied(added);
    for (unsigned int k = 0; k < env->numParts; ++k) {
        env->pidMap[11 + k] = k;
    }
    if (!added.empty()) {
        unionOfExtents();
    }
    return *this;
}

TestModel& TestModel::install()
{
    installParts();
    env->boxList = new BoundBox*[added.size()];
    for (unsigned int k = 0; k < env->numParts; ++k) {
        env->boxList[k] = new BoundBox(part(k).partExtents);
    }
    env->mView = new MView(env->modelExtents);
    env->mTrans = new MTransform(env->modelExtents);
    env->i = env->numParts;
    return *this;
}

void TestModel::unionOfExtents()
{
    std::copy_n(added[0].partExtents, 6, env->modelExtents);
    for (const PartInfoStr& part : added) {
        for (int k = 0; k < 6; k += 2) {
            env->modelExtents[k] = std::min(env->modelExtents[k], part.partExtents[k]);
            env->modelExtents[k + 1] = std::max(env->modelExtents[k + 1], part.partExtents[k + 1]);
        }
    }
    std::copy_n(env->modelExtents, 6, env->orgModelExtents);
}

std::string vertexLine(const PartInfoStr& part, unsigned int node)
{
    return "glVertex3fv(" + glrecord::vectorArg(part.partNodes.nodeValues + 3 * node, 3) + ")";
}

std::string normalLine(const float* normal)
{
    return "glNormal3fv(" + glrecord::vectorArg(normal, 3) + ")";
}

std::string colorLine(const float* color)
{
    return "glColor4fv(" + glrecord::vectorArg(color, 4) + ")";
}
