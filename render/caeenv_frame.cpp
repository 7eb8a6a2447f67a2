// One frame, what is visible in it, and the OpenGL state that the host switches.
#include "caeenv.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <algorithm>

#include "boundbox.h"
#include "diagnostics.h"
#include "gentime.h"
#include "mtrans.h"
#include "mview.h"
#include "part_access.h"
#include "part_renderers.h"

namespace {

const float selectedNodeSize = 8;

void clearViewport(const int* viewPort)
{
    glScissor(viewPort[0], viewPort[1], viewPort[2], viewPort[3]);
    glEnable(GL_SCISSOR_TEST);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
}

void drawBox(BoundBox& box)
{
    glDisableClientState(GL_NORMAL_ARRAY);
    box.render();
    glEnableClientState(GL_NORMAL_ARRAY);
}

void drawSelectedNode(const float* position, const float* selectionColor, const float* partColor)
{
    glPointSize(selectedNodeSize);
    glColor4fv(selectionColor);
    glBegin(GL_POINTS);
    glVertex3fv(position);
    glEnd();
    glColor4fv(partColor);
    glPointSize(1.0);
}

void drawSelectedNodes(const PartNodesStr& nodes, const float* selectionColor, const float* partColor)
{
    if (nodes.selectedNodes == nullptr || nodes.nodeValues == nullptr) {
        return;
    }
    for (unsigned int k = 0; k < nodes.numNodes; ++k) {
        const float* position = ofNode(nodes.nodeValues, k);
        if (nodes.selectedNodes[k] == SELECTED_CHAR) {
            drawSelectedNode(position, selectionColor, partColor);
        } else if (nodes.selectedNodes[k] == NOT_SELECTED_CHAR) {
            // deliberate(stray-vertex): outside glBegin/glEnd, draws nothing; call traces of hosts contain it.
            glVertex3fv(position);
        }
    }
}

void drawModelNodeSelection(const CAEEnv& env)
{
    std::cout << label::nodeSelection << env.numNodes << std::endl;
    glColor4fv(env.colorBlue);
    glPointSize(selectedNodeSize);
    glBegin(GL_POINTS);
    if (env.selectedNodes != nullptr && env.nodeValues != nullptr) {
        for (unsigned int k = 0; k < env.numNodes; ++k) {
            if (env.selectedNodes[k] == SELECTED_CHAR) {
                glVertex3fv(ofNode(env.nodeValues, k));
            }
        }
    }
    glEnd();
    glPointSize(1.0);
}

void drawPart(CAEEnv& env, PartInfoStr& part)
{
    float* color = drawColor(env, part);
    if (const PartRenderers* renderers = renderersOf(part.partDrawType)) {
        const bool byElement = (part.partFlag & PART_ELEMENTS_SELECTED) != 0;
        (env.*(byElement ? renderers->byElement : renderers->whole))(&part, color);
    }
    if (part.partFlag & PART_NODES_SELECTED) {
        drawSelectedNodes(part.partNodes, env.colorBlue, color);
    }
}

} // namespace

void CAEEnv::renderModel()
{
    if (mView == nullptr || mTrans == nullptr) { // nothing is loaded
        return;
    }
    glGetIntegerv(GL_VIEWPORT, viewPort);
    // deliberate(viewport-printed): four bare integers every frame; hosts' logs are read by them.
    for (int value : viewPort) {
        std::cout << value << std::endl;
    }
    clearViewport(viewPort);
    mView->update();
    mTrans->processStart();
    // A shade model that the host set on the context itself takes effect here.
    glGetIntegerv(GL_SHADE_MODEL, &shadeModel);
    displayParts(-1);
    mTrans->processEnd();
    // deliberate(one-error-per-frame): further pending errors wait for the next frames.
    if (const GLenum error = glGetError()) {
        const GLubyte* text = gluErrorString(error); // null for codes that the library does not know
        std::cout << label::glError << (text ? reinterpret_cast<const char*>(text) : "") << std::endl;
    }
}

void CAEEnv::displayParts(int file_index)
{
    const unsigned long long start = GenTime::getCurrentMillis();
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    for (i = 0; i < numParts; ++i) {
        PartInfoStr& part = partsInfoList[i];
        if (file_index != -1 && file_index != part.partFileIndex) {
            continue;
        }
        if (part.partFlag & PART_HIDDEN) {
            continue;
        }
        if ((part.partFlag & PART_BOX_SHOWN) && boxList) {
            drawBox(*boxList[i]);
        }
        drawPart(*this, part);
    }
    if ((compFlag & SEGMENT_PART_SET) && segmentPart) {
        renderShellPart(segmentPart, colorBlue);
    }
    glDisableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_VERTEX_ARRAY);
    if (compFlag & NODE_LIST_SELECTED) {
        drawModelNodeSelection(*this);
    }
    diagnostics::print(label::timeForDisplay, GenTime::getCurrentMillis() - start);
}

void CAEEnv::displayAllParts()
{
    if (mView == nullptr || mTrans == nullptr) { // nothing is loaded
        return;
    }
    for (i = 0; i < numParts; ++i) {
        showPart(partsInfoList[i]);
    }
    std::copy(orgModelExtents, orgModelExtents + 6, modelExtents);
    mView->setExtents(modelExtents);
    glGetIntegerv(GL_VIEWPORT, viewPort);
    resizeModel(viewPort[2], viewPort[3]);
    switchOnLights();
}

void CAEEnv::setDisplay(unsigned int num_parts, unsigned int* parts_list, unsigned int on_off)
{
    // The counter counts list entries here and is left at their number.
    for (i = 0; i < num_parts; ++i) {
        const unsigned int index = parts_list[i] - 1; // 0 wraps and is out of range
        if (index < numParts) {
            setPartVisibility(partsInfoList[index], on_off);
        }
    }
}

void CAEEnv::setDisplay(unsigned int part_num, unsigned int on_off)
{
    if (part_num != 0 && part_num <= numParts) {
        setPartVisibility(partsInfoList[part_num - 1], on_off);
    }
}

void CAEEnv::setBoxDisplay(int box_on_off)
{
    for (i = 0; i < numParts; ++i) {
        // deliberate(hidden-box-kept): a hidden part keeps its box bit, so the box comes back with the part.
        if (partsInfoList[i].partFlag & PART_HIDDEN) {
            continue;
        }
        if (box_on_off == static_cast<int>(PART_SHOWN)) {
            partsInfoList[i].partFlag |= PART_BOX_SHOWN;
        } else if (box_on_off == static_cast<int>(PART_HIDDEN)) {
            partsInfoList[i].partFlag &= ~PART_BOX_SHOWN;
        }
    }
}

// deliberate(state-not-stored): blending and polygon mode live in the OpenGL context only; blendFlag and polygonMode
// are written by save and restore alone.
void CAEEnv::setBlend(int flag)
{
    if (flag) {
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    } else {
        glDisable(GL_BLEND);
    }
}

void CAEEnv::setHideMode(int flag)
{
    if (flag) {
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(GL_LESS);
        glDepthRange(0.0, 1.0);
    } else {
        glDisable(GL_DEPTH_TEST);
    }
}

void CAEEnv::setPolygonMode(int mode)
{
    glPolygonMode(GL_FRONT_AND_BACK, static_cast<GLenum>(mode));
}

void CAEEnv::setShadeModel(unsigned int shade)
{
    shadeModel = static_cast<int>(shade);
    glShadeModel(shade);
    computeNormals();
}
