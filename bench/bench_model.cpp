#include "bench_model.h"

#include <GL/gl.h>

#include <algorithm>

#include "boundbox.h"
#include "mtrans.h"
#include "mview.h"

namespace {

template <class T> T* copied(const std::vector<T>& values)
{
    T* array = new T[values.size()];
    std::copy(values.begin(), values.end(), array);
    return array;
}

} // namespace

PartInfoStr partOf(const GeneratedMesh& mesh)
{
    PartInfoStr part = {};
    part.partDrawType = mesh.drawType;
    part.partFlag = PART_SHOWN;
    const float color[4] = {0.6f, 0.7f, 0.8f, 1};
    std::copy(color, color + 4, part.partColor);
    part.partNodes.numNodes = static_cast<unsigned int>(mesh.nodeIds.size());
    part.partNodes.idList = copied(mesh.nodeIds);
    part.partNodes.nodeValues = copied(mesh.xyz);
    part.partElements.numElements = static_cast<unsigned int>(mesh.corners.size());
    part.partElements.nodesPerElement = mesh.stride;
    part.partElements.elmIndices = copied(mesh.corners);
    for (std::size_t k = 0; k < mesh.corners.size(); ++k) {
        part.partElements.elmIndices[k] -= mesh.nodeIds[0];
    }
    for (int axis = 0; axis < 3; ++axis) {
        part.partExtents[2 * axis] = part.partExtents[2 * axis + 1] = mesh.xyz[static_cast<std::size_t>(axis)];
        for (std::size_t k = static_cast<std::size_t>(axis); k < mesh.xyz.size(); k += 3) {
            part.partExtents[2 * axis] = std::min(part.partExtents[2 * axis], mesh.xyz[k]);
            part.partExtents[2 * axis + 1] = std::max(part.partExtents[2 * axis + 1], mesh.xyz[k]);
        }
    }
    return part;
}

BenchModel::BenchModel(std::vector<PartInfoStr> parts, int w, int h, int shadeModel, const char* device)
    : width(w), height(h), quiet(""), context(device), target(w, h), records(std::move(parts)),
      env(new CAEEnv("", "", shadeModel))
{
    for (PartInfoStr& record : records) {
        boxes.push_back(new BoundBox(record.partExtents));
    }
    env->numParts = static_cast<unsigned int>(records.size());
    env->partsInfoList = records.data(); // an environment releases what is in these two arrays, not the arrays
    env->boxList = boxes.data();
    for (int k = 0; k < 6; ++k) {
        env->modelExtents[k] = records[0].partExtents[k];
        for (const PartInfoStr& record : records) {
            env->modelExtents[k] = k % 2 ? std::max(env->modelExtents[k], record.partExtents[k])
                                         : std::min(env->modelExtents[k], record.partExtents[k]);
        }
    }
    std::copy(env->modelExtents, env->modelExtents + 6, env->orgModelExtents);
    env->mView = new MView(env->modelExtents);
    env->mTrans = new MTransform(env->modelExtents);
    glViewport(0, 0, w, h);
    env->resizeModel(w, h);
    env->switchOnLights();
    env->setShadeModel(static_cast<unsigned int>(shadeModel));
}

BenchModel::~BenchModel()
{
    env.reset();
}

void BenchModel::makeCurrent()
{
    context.makeCurrent();
    target.bind();
}
