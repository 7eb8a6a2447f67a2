// Model extents of the shown parts, the projection that they frame, and node normals of unit length.
#include "caeenv.h"

#include <GL/gl.h>

#include <cmath>

#include "diagnostics.h"
#include "mtrans.h"
#include "part_access.h"

namespace {

const float emptyRange = 2000;

// Smallest and largest of the values seen. Of equal values (0 and -0) the first one seen stays.
struct Range
{
    bool empty = true;
    float low = 0;
    float high = 0;

    void add(float value)
    {
        if (empty || value < low) {
            low = value;
        }
        if (empty || value > high) {
            high = value;
        }
        empty = false;
    }
};

// Nodes whose lengths and quotients are computed side by side; the compiler makes vector instructions of it.
constexpr unsigned int blockSize = 8;

// deliberate(zero-normal-nan): no guard; a node that no four-cornered face touched becomes NaN.
template <unsigned int count> void normalizeNodes(float* normals)
{
    float lengths[3 * count];
    for (unsigned int k = 0; k < count; ++k) {
        const float* n = normals + 3 * k;
        const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
        lengths[3 * k] = lengths[3 * k + 1] = lengths[3 * k + 2] = length;
    }
    for (unsigned int k = 0; k < 3 * count; ++k) {
        normals[k] /= lengths[k];
    }
}

} // namespace

void CAEEnv::modifyExtents()
{
    Range ranges[3];
    for (i = 0; i < numParts; ++i) {
        if ((partsInfoList[i].partFlag & PART_SHOWN) == 0) {
            continue;
        }
        for (int k = 0; k < 6; ++k) {
            ranges[k / 2].add(partsInfoList[i].partExtents[k]);
        }
    }
    if (ranges[0].empty) {
        return;
    }
    for (int axis = 0; axis < 3; ++axis) {
        const bool zero = ranges[axis].low == 0 && ranges[axis].high == 0;
        modelExtents[2 * axis] = zero ? -emptyRange : ranges[axis].low;
        modelExtents[2 * axis + 1] = zero ? emptyRange : ranges[axis].high;
    }
    diagnostics::printRanges("", modelExtents);
    glGetIntegerv(GL_VIEWPORT, viewPort);
    // deliberate(viewport-offset-lost): only width and height are kept, the origin becomes 0, 0.
    resizeModel(viewPort[2], viewPort[3]);
    switchOnLights();
    if (mTrans) {
        mTrans->updateWindowCenter();
    }
}

void CAEEnv::resizeModel(int w, int h)
{
    glViewport(0, 0, w, h);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    diagnostics::printList(label::resizeExtents, modelExtents, 6);
    // deliberate(near-far-reversed): near positive, far negative; window depth then grows with eye z, and picking's
    // nearest hit follows from it.
    glOrtho(modelExtents[0], modelExtents[1], modelExtents[2], modelExtents[3], Z_MAX_COORD, Z_MIN_COORD);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    if (mTrans) {
        mTrans->setViewport(w, h);
    }
}

void CAEEnv::normalize(PartInfoPtr part)
{
    float* normals = part->partNodes.nodeNormals;
    if (normals == nullptr) {
        return;
    }
    const unsigned int numNodes = part->partNodes.numNodes;
    const unsigned int blocks = numNodes / blockSize;
    for (unsigned int k = 0; k < blocks; ++k, normals += 3 * blockSize) {
        normalizeNodes<blockSize>(normals);
    }
    for (unsigned int k = blocks * blockSize; k < numNodes; ++k, normals += 3) {
        normalizeNodes<1>(normals);
    }
}
