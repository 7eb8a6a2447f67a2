// Normals of shell and solid parts: one per face for flat shading, one per node for smooth shading.
#include "caeenv.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "diagnostics.h"
#include "face_tables.h"
#include "gentime.h"
#include "mantypes.h"
#include "part_access.h"

namespace {

constexpr unsigned int noFourthCorner = 0x80000000u;
constexpr unsigned int shellSlots = 4;
constexpr unsigned int solidSlots = 8;
constexpr unsigned int floatsPerSolid = 18;

// One face. offsets: four corners as node index x 3, all below limit or nothing is computed. The first three corners
// give the normal N = (p2 - p1) x (p3 - p1); the fourth only receives it.
inline void faceNormal(const unsigned int* offsets, unsigned int limit, const float* values, float* nodeNormals,
                       float* elementNormal)
{
    // deliberate(triangle-without-normal): the missing fourth corner of a triangle is past every limit, so triangles
    // get no flat normal and add nothing to their nodes.
    if (std::max(std::max(offsets[0], offsets[1]), std::max(offsets[2], offsets[3])) >= limit) {
        return;
    }
    const float* p1 = values + offsets[0];
    const float* p2 = values + offsets[1];
    const float* p3 = values + offsets[2];
    const float ax = p2[0] - p1[0], ay = p2[1] - p1[1], az = p2[2] - p1[2];
    const float bx = p3[0] - p1[0], by = p3[1] - p1[1], bz = p3[2] - p1[2];
    const float n[3] = {bz * ay - az * by, az * bx - bz * ax, by * ax - ay * bx};
    if (nodeNormals) {
        for (int corner = 0; corner < 4; ++corner) {
            float* sum = nodeNormals + offsets[corner];
            sum[0] += n[0];
            sum[1] += n[1];
            sum[2] += n[2];
        }
    } else {
        // deliberate(collinear-nan): no guard; collinear corners give NaN.
        const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
        elementNormal[0] = n[0] / length;
        elementNormal[1] = n[1] / length;
        elementNormal[2] = n[2] / length;
    }
}

// Where corner offsets end. Flat: only a missing corner is refused. Smooth: sums go into an array per node.
unsigned int cornerLimit(bool flat, const PartNodesStr& nodes)
{
    const unsigned long long end = 3ULL * nodes.numNodes;
    return flat || end > noFourthCorner ? noFourthCorner : static_cast<unsigned int>(end);
}

// Allocates the array that the shade model needs and sets its flag. False: it was there already.
bool beginNormals(PartInfoStr& part, bool flat, std::size_t flatFloats)
{
    const unsigned int done = flat ? PART_ELEMENT_NORMALS_DONE : PART_NODE_NORMALS_DONE;
    if (part.partFlag & done) {
        return false;
    }
    float*& normals = flat ? part.partElements.elmNormals : part.partNodes.nodeNormals;
    delete[] normals; // a restored view state can lack the flag while the array is there
    normals = new float[flat ? flatFloats : 3 * static_cast<std::size_t>(part.partNodes.numNodes)]();
    part.partFlag |= done;
    return true;
}

char kindOfSolid(const unsigned int* slots, unsigned int stride, char previous)
{
    if (stride == 10) {
        return '4';
    }
    // deliberate(kind-carried): strides other than 8 and 10 keep the kind of the element before.
    if (stride != solidSlots) {
        return previous;
    }
    if (slots[3] == slots[4]) {
        return '4';
    }
    return slots[4] == slots[5] ? '6' : '8';
}

const NormalFaces& facesOf(char kind)
{
    for (const NormalFaces& faces : normalFaces) {
        if (faces.npe == kind) {
            return faces;
        }
    }
    return normalFaces[2];
}

void solidFaceNormals(const NormalFaces& faces, const unsigned int* slots, unsigned int limit, const float* values,
                      float* nodeNormals, float* elementNormals)
{
    for (unsigned int face = 0; face < faces.numFaces; ++face) {
        unsigned int offsets[4];
        for (int corner = 0; corner < 4; ++corner) {
            const unsigned char slot = faces.slots[face][corner];
            offsets[corner] = slot == noCorner ? noFourthCorner : 3 * slots[slot];
        }
        faceNormal(offsets, limit, values, nodeNormals, elementNormals ? elementNormals + 3 * face : nullptr);
    }
}

// The stored kind is written for tetrahedra and pentahedra only.
void noteKind(char kind, unsigned int stride, char& npe)
{
    // deliberate(hexa-npe-kept): a hexahedron leaves what the reader stored.
    if ((stride == solidSlots || stride == 10) && kind != '8') {
        npe = kind;
    }
}

} // namespace

void CAEEnv::computeNormals()
{
    const unsigned long long start = GenTime::getCurrentMillis();
    for (i = 0; i < numParts; ++i) {
        PartInfoPtr part = &partsInfoList[i];
        if (part->partDrawType == SHELL) {
            computeShellNormals(part);
        } else if (part->partDrawType == SOLID) {
            computeSolidNormals(part);
        }
    }
    diagnostics::print(label::timeForNormals, GenTime::getCurrentMillis() - start);
}

void CAEEnv::computeElementNormal(unsigned int* nodes, float* node_values, float* node_normals, float* elm_normals)
{
    const bool flat = shadeModel == GL_FLAT;
    faceNormal(nodes, noFourthCorner, node_values, flat ? nullptr : node_normals, elm_normals);
}

void CAEEnv::computeShellNormals(PartInfoPtr part)
{
    const bool flat = shadeModel == GL_FLAT;
    const PartElementsStr& elements = part->partElements;
    const unsigned int count = elementCount(elements);
    if (!beginNormals(*part, flat, 3 * static_cast<std::size_t>(count))) {
        return;
    }
    float* nodeNormals = flat ? nullptr : part->partNodes.nodeNormals;
    float* elementNormals = flat ? elements.elmNormals : nullptr;
    const unsigned int limit = cornerLimit(flat, part->partNodes);
    for (unsigned int e = 0; e < count; ++e) {
        const std::size_t first = static_cast<std::size_t>(e) * elements.nodesPerElement;
        if (first + shellSlots > elements.numElements) {
            break;
        }
        const unsigned int* slots = elements.elmIndices + first;
        const bool triangle = slots[2] == slots[3];
        const unsigned int offsets[4] = {3 * slots[0], 3 * slots[1], 3 * slots[2],
                                         triangle ? noFourthCorner : 3 * slots[3]};
        faceNormal(offsets, limit, part->partNodes.nodeValues, nodeNormals,
                   flat ? elementNormals + 3 * std::size_t{e} : nullptr);
    }
    // deliberate(smooth-exactly): only GL_SMOOTH itself normalises; any other value that is not GL_FLAT leaves sums.
    if (shadeModel == GL_SMOOTH) {
        normalize(part);
    }
}

void CAEEnv::computeSolidNormals(PartInfoPtr part)
{
    const bool flat = shadeModel == GL_FLAT;
    PartElementsStr& elements = part->partElements;
    const unsigned int count = elementCount(elements);
    const unsigned int stride = elements.nodesPerElement;
    if (!beginNormals(*part, flat, floatsPerSolid * static_cast<std::size_t>(count))) {
        return;
    }
    if (elements.NPE == nullptr) {
        elements.NPE = new char[count];
        std::memset(elements.NPE, '8', count);
    }
    float* nodeNormals = flat ? nullptr : part->partNodes.nodeNormals;
    float* elementNormals = flat ? elements.elmNormals : nullptr;
    const unsigned int limit = cornerLimit(flat, part->partNodes);
    char kind = '8';
    for (unsigned int e = 0; e < count; ++e) {
        const std::size_t first = static_cast<std::size_t>(e) * stride;
        if (first + solidSlots > elements.numElements) {
            break;
        }
        const unsigned int* slots = elements.elmIndices + first;
        kind = kindOfSolid(slots, stride, kind);
        noteKind(kind, stride, elements.NPE[e]);
        solidFaceNormals(facesOf(kind), slots, limit, part->partNodes.nodeValues, nodeNormals,
                         flat ? elementNormals + floatsPerSolid * std::size_t{e} : nullptr);
    }
    if (shadeModel == GL_SMOOTH) {
        normalize(part);
    }
}
