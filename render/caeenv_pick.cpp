// The picking draw: every visible part with its OpenGL selection names.
//
// Names, all 1-based: level 1 the part's number, level 2 the element's or node's number. What is drawn must match the
// visible drawing, so that what the user clicks is what is hit.
#include "caeenv.h"

#include <GL/gl.h>

#include "diagnostics.h"
#include "element_drawing.h"
#include "gentime.h"
#include "part_renderers.h"

namespace {

void drawNodesForPick(const PartNodesStr& nodes, const float* color)
{
    glColor4fv(color);
    for (unsigned int k = 0; k < nodes.numNodes; ++k) {
        glPushName(k + 1);
        glBegin(GL_POINTS);
        glVertex3fv(ofNode(nodes.nodeValues, k));
        glEnd();
        glPopName();
    }
}

void drawPartForPick(CAEEnv& env, PartInfoStr& part, float* color)
{
    if (env.pickType == PICK_TYPE_NODE) {
        drawNodesForPick(part.partNodes, color);
        return;
    }
    const PartRenderers* renderers = renderersOf(part.partDrawType);
    if (renderers == nullptr) {
        return;
    }
    if (env.pickType == PICK_TYPE_PART) {
        (env.*renderers->whole)(&part, color);
    } else if (env.pickType == PICK_TYPE_ELEMENT) {
        (env.*renderers->forPick)(&part, color);
    }
}

} // namespace

void CAEEnv::displayPartsByElement()
{
    const unsigned long long start = GenTime::getCurrentMillis();
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    for (i = 0; i < numParts; ++i) {
        PartInfoStr& part = partsInfoList[i];
        if (part.partFlag & PART_HIDDEN) {
            continue;
        }
        glLoadName(i + 1);
        drawPartForPick(*this, part, drawColor(*this, part));
    }
    // deliberate(client-states-reversed): off in the reverse order of displayParts; harmless, part of the call trace.
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_NORMAL_ARRAY);
    diagnostics::print(label::timeForDisplay, GenTime::getCurrentMillis() - start);
}

void CAEEnv::renderShellsForPick(PartInfoPtr part_info, float* color)
{
    glColor4fv(color);
    const PartNormals normals(*part_info, shadeModel);
    if (normals.none()) {
        return;
    }
    const unsigned int count = elementCount(part_info->partElements);
    for (unsigned int e = 0; e < count; ++e) {
        glPushName(e + 1);
        glBegin(GL_QUADS);
        if (normals.perElement) {
            drawShellFlat(*part_info, e);
        } else {
            drawShellSmooth(*part_info, e);
        }
        glEnd();
        glPopName();
    }
}

void CAEEnv::renderSolidsForPick(PartInfoPtr part_info, float* color)
{
    glColor4fv(color);
    const PartNormals normals(*part_info, shadeModel);
    const unsigned int count = elementCount(part_info->partElements);
    for (unsigned int e = 0; e < count; ++e) {
        // deliberate(empty-named-block): a name and an empty block also for what cannot be drawn.
        glPushName(e + 1);
        glBegin(GL_QUADS);
        if (!normals.none()) {
            drawSolid(*this, *part_info, e, normals);
        }
        glEnd();
        glPopName();
    }
}

void CAEEnv::renderBeamsForPick(PartInfoPtr part_info, float* color)
{
    const unsigned int count = elementCount(part_info->partElements);
    glColor4fv(color);
    glLineWidth(beamWidth);
    glPointSize(beamWidth);
    for (unsigned int e = 0; e < count; ++e) {
        glPushName(e + 1);
        drawBeam(*part_info, e);
        glPopName();
    }
    glLineWidth(1.0);
    glPointSize(1.0);
}

void CAEEnv::renderDiscretesForPick(PartInfoPtr part_info, float* color)
{
    const unsigned int count = elementCount(part_info->partElements);
    glColor4fv(color);
    glLineWidth(discreteWidth);
    for (unsigned int e = 0; e < count; ++e) {
        glPushName(e + 1);
        drawDiscrete(*part_info, e);
        glPopName();
    }
    glLineWidth(1.0);
}
