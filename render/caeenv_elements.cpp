// Element renderers: one part record into OpenGL primitives, as a whole or element by element.
#include "caeenv.h"

#include <GL/gl.h>

#include "element_drawing.h"

namespace {

// The colour of an element by its selection character; any other character leaves the colour alone.
void setElementColor(const CAEEnv& env, const PartElementsStr& elements, unsigned int e, const float* color)
{
    if (elements.selectedList == nullptr) {
        return;
    }
    if (elements.selectedList[e] == NOT_SELECTED_CHAR) {
        glColor4fv(color);
    } else if (elements.selectedList[e] == SELECTED_CHAR) {
        glColor4fv(env.colorBlue);
    }
}

typedef void (CAEEnv::*ShapeByNormal)(unsigned int*, unsigned int*, float*, float*);
typedef void (CAEEnv::*ShapeByNodeNormal)(unsigned int*, float*, float*);

// The routines of each row of solidShapes.
struct ShapeRoutines
{
    ShapeByNormal byNormal;
    ShapeByNodeNormal byNodeNormal;
};
constexpr ShapeRoutines shapeRoutines[] = {
    {&CAEEnv::renderTetraByNormal, &CAEEnv::renderTetraByNodeNormal},
    {&CAEEnv::renderPentaByNormal, &CAEEnv::renderPentaByNodeNormal},
    {&CAEEnv::renderHexaByNormal, &CAEEnv::renderHexaByNodeNormal},
};

void drawFacesByNormal(CAEEnv& env, const SolidShape& shape, unsigned int* indices, const unsigned int* norm_indices,
                       float* elm_normals, float* node_values)
{
    for (unsigned int face = 0; face < shape.quads; ++face, indices += 4) {
        env.renderQuadByNormal(indices, node_values, elm_normals + *norm_indices++);
    }
    for (unsigned int face = 0; face < shape.trias; ++face, indices += 3) {
        env.renderTriaByNormal(indices, node_values, elm_normals + *norm_indices++);
    }
}

void drawFacesByNodeNormal(CAEEnv& env, const SolidShape& shape, unsigned int* indices, float* node_values,
                           float* node_normals)
{
    for (unsigned int face = 0; face < shape.quads; ++face, indices += 4) {
        env.renderQuadByNodeNormal(indices, node_values, node_normals);
    }
    for (unsigned int face = 0; face < shape.trias; ++face, indices += 3) {
        env.renderTriaByNodeNormal(indices, node_values, node_normals);
    }
}

void drawSolids(CAEEnv& env, const PartInfoStr& part, const float* color, bool byElement)
{
    const PartNormals normals(part, env.shadeModel);
    const unsigned int count = elementCount(part.partElements);
    glColor4fv(color);
    glBegin(GL_QUADS);
    for (unsigned int e = 0; e < count; ++e) {
        if (normals.none()) {
            break;
        }
        if (byElement) {
            setElementColor(env, part.partElements, e, color);
        }
        drawSolid(env, part, e, normals);
    }
    glEnd();
}

} // namespace

// --- Single elements ---

void drawShellFlat(const PartInfoStr& part, unsigned int e)
{
    const unsigned int* slots = elementSlots(part.partElements, e, shellStep);
    if (slots == nullptr) {
        return;
    }
    glNormal3fv(ofNode(part.partElements.elmNormals, e));
    for (unsigned int corner = 0; corner < shellStep; ++corner) {
        glVertex3fv(ofNode(part.partNodes.nodeValues, slots[corner]));
    }
}

void drawShellSmooth(const PartInfoStr& part, unsigned int e)
{
    const unsigned int* slots = elementSlots(part.partElements, e, shellStep);
    if (slots == nullptr) {
        return;
    }
    for (unsigned int corner = 0; corner < shellStep; ++corner) {
        glNormal3fv(ofNode(part.partNodes.nodeNormals, slots[corner]));
        glVertex3fv(ofNode(part.partNodes.nodeValues, slots[corner]));
    }
}

void drawSolid(CAEEnv& env, const PartInfoStr& part, unsigned int e, const PartNormals& normals)
{
    const PartElementsStr& elements = part.partElements;
    const SolidShape* shape = elements.NPE ? solidShapeOf(elements.NPE[e]) : nullptr;
    const unsigned int* slots = elementSlots(elements, e, solidStep);
    if (shape == nullptr || slots == nullptr) {
        return;
    }
    unsigned int offsets[24];
    for (unsigned int k = 0; k < shape->numSlots(); ++k) {
        offsets[k] = 3 * slots[shape->slots[k]];
    }
    const ShapeRoutines& routines = shapeRoutines[shape - solidShapes];
    if (normals.perElement) {
        unsigned int faceNormals[6] = {0, 3, 6, 9, 12, 15};
        float* elementNormals = normals.perElement + 18 * static_cast<std::size_t>(e);
        (env.*routines.byNormal)(offsets, faceNormals, elementNormals, part.partNodes.nodeValues);
    } else {
        (env.*routines.byNodeNormal)(offsets, part.partNodes.nodeValues, normals.perNode);
    }
}

void drawLineVertices(const PartInfoStr& part, const unsigned int* slots)
{
    glVertex3fv(ofNode(part.partNodes.nodeValues, slots[0]));
    glVertex3fv(ofNode(part.partNodes.nodeValues, slots[1]));
}

void drawBeam(const PartInfoStr& part, unsigned int e)
{
    const unsigned int* slots = elementSlots(part.partElements, e, lineStep);
    if (slots == nullptr) {
        return;
    }
    glBegin(GL_LINES);
    drawLineVertices(part, slots);
    glEnd();
    if (static_cast<int>(slots[2]) < 0) {
        return;
    }
    glBegin(GL_POINTS);
    glVertex3fv(ofNode(part.partNodes.nodeValues, slots[2]));
    glEnd();
}

void drawDiscrete(const PartInfoStr& part, unsigned int e)
{
    const unsigned int* slots = elementSlots(part.partElements, e, lineStep);
    if (slots == nullptr) {
        return;
    }
    glBegin(GL_LINES);
    drawLineVertices(part, slots);
    glEnd();
}

// --- Shells ---

void CAEEnv::renderShellPart(PartInfoPtr part_info, float* color)
{
    const PartNormals normals(*part_info, shadeModel);
    const PartElementsStr& elements = part_info->partElements;
    if (normals.perElement) {
        const unsigned int count = elementCount(elements);
        glColor4fv(color);
        glBegin(GL_QUADS);
        for (unsigned int e = 0; e < count; ++e) {
            drawShellFlat(*part_info, e);
        }
        glEnd();
    } else if (normals.perNode) {
        glVertexPointer(3, GL_FLOAT, 0, part_info->partNodes.nodeValues);
        glNormalPointer(GL_FLOAT, 0, normals.perNode);
        glColor4fv(color);
        glDrawElements(GL_QUADS, static_cast<GLsizei>(elements.numElements), GL_UNSIGNED_INT, elements.elmIndices);
    }
}

void CAEEnv::renderShells(PartInfoPtr part_info, float* color)
{
    glColor4fv(color);
    const PartNormals normals(*part_info, shadeModel);
    if (normals.none()) {
        return;
    }
    const unsigned int count = elementCount(part_info->partElements);
    glBegin(GL_QUADS);
    for (unsigned int e = 0; e < count; ++e) {
        setElementColor(*this, part_info->partElements, e, color);
        if (normals.perElement) {
            drawShellFlat(*part_info, e);
        } else {
            drawShellSmooth(*part_info, e);
        }
    }
    glEnd();
}

// --- Solids ---

void CAEEnv::renderSolidPart(PartInfoPtr part_info, float* color)
{
    drawSolids(*this, *part_info, color, false);
}
void CAEEnv::renderSolids(PartInfoPtr part_info, float* color)
{
    drawSolids(*this, *part_info, color, true);
}

// --- Beams and discrete elements ---

// deliberate(beam-part-invisible): beams show only once one of the part's elements is selected.
void CAEEnv::renderBeamPart(PartInfoPtr, float*) {}

void CAEEnv::renderBeams(PartInfoPtr part_info, float* color)
{
    const unsigned int count = elementCount(part_info->partElements);
    glColor4fv(color);
    glLineWidth(beamWidth);
    glPointSize(beamWidth);
    for (unsigned int e = 0; e < count; ++e) {
        setElementColor(*this, part_info->partElements, e, color);
        drawBeam(*part_info, e);
    }
    glLineWidth(1.0);
    glPointSize(1.0);
}

void CAEEnv::renderDiscretePart(PartInfoPtr part_info, float* color)
{
    const PartElementsStr& elements = part_info->partElements;
    const unsigned int count = elementCount(elements);
    glColor4fv(color);
    glLineWidth(discreteWidth);
    glBegin(GL_LINES);
    for (unsigned int e = 0; e < count; ++e) {
        if (const unsigned int* slots = elementSlots(elements, e, lineStep)) {
            drawLineVertices(*part_info, slots);
        }
    }
    glEnd();
    glLineWidth(1.0);
}

void CAEEnv::renderDiscretes(PartInfoPtr part_info, float* color)
{
    const unsigned int count = elementCount(part_info->partElements);
    glColor4fv(color);
    glLineWidth(discreteWidth);
    for (unsigned int e = 0; e < count; ++e) {
        setElementColor(*this, part_info->partElements, e, color);
        drawDiscrete(*part_info, e);
    }
    glLineWidth(1.0);
}

// --- Faces ---

void CAEEnv::renderTriaByNormal(unsigned int* indices, float* node_values, float* normal_ptr)
{
    glNormal3fv(normal_ptr);
    glVertex3fv(node_values + indices[0]);
    glVertex3fv(node_values + indices[1]);
    glVertex3fv(node_values + indices[2]);
    glVertex3fv(node_values + indices[2]);
}

void CAEEnv::renderQuadByNormal(unsigned int* indices, float* node_values, float* normal_ptr)
{
    glNormal3fv(normal_ptr);
    for (int corner = 0; corner < 4; ++corner) {
        glVertex3fv(node_values + indices[corner]);
    }
}

void CAEEnv::renderTriaByNodeNormal(unsigned int* indices, float* node_values, float* node_normals)
{
    unsigned int corners[4] = {indices[0], indices[1], indices[2], indices[2]};
    renderQuadByNodeNormal(corners, node_values, node_normals);
}

void CAEEnv::renderQuadByNodeNormal(unsigned int* indices, float* node_values, float* node_normals)
{
    for (int corner = 0; corner < 4; ++corner) {
        glNormal3fv(node_normals + indices[corner]);
        glVertex3fv(node_values + indices[corner]);
    }
}

void CAEEnv::renderTetraByNormal(unsigned int* indices, unsigned int* norm_indices, float* elm_normals,
                                 float* node_values)
{
    drawFacesByNormal(*this, solidShapes[0], indices, norm_indices, elm_normals, node_values);
}

void CAEEnv::renderPentaByNormal(unsigned int* indices, unsigned int* norm_indices, float* elm_normals,
                                 float* node_values)
{
    drawFacesByNormal(*this, solidShapes[1], indices, norm_indices, elm_normals, node_values);
}

void CAEEnv::renderHexaByNormal(unsigned int* indices, unsigned int* norm_indices, float* elm_normals,
                                float* node_values)
{
    drawFacesByNormal(*this, solidShapes[2], indices, norm_indices, elm_normals, node_values);
}

void CAEEnv::renderTetraByNodeNormal(unsigned int* indices, float* node_values, float* node_normals)
{
    drawFacesByNodeNormal(*this, solidShapes[0], indices, node_values, node_normals);
}

void CAEEnv::renderPentaByNodeNormal(unsigned int* indices, float* node_values, float* node_normals)
{
    drawFacesByNodeNormal(*this, solidShapes[1], indices, node_values, node_normals);
}

void CAEEnv::renderHexaByNodeNormal(unsigned int* indices, float* node_values, float* node_normals)
{
    drawFacesByNodeNormal(*this, solidShapes[2], indices, node_values, node_normals);
}
