#include "contract_frame.h"

#include <algorithm>

#include "boundbox.h"
#include "caeenv.h"
#include "far_matrices.h"
#include "loaded.h"
#include "mtrans.h"
#include "mview.h"
#include <kvo/model_frame.h>

namespace kvo {

namespace {

// The environment's depth range is the wrong way round: what its views turn away from the viewer is drawn in front, so
// that the picture is the model's mirror image. Turned round, "top" is seen from above, and left is left.
void lookFromTheFront()
{
    glMatrixMode(GL_PROJECTION);
    glScaled(1, 1, -1);
    glMatrixMode(GL_MODELVIEW);
}

// The matrices of what a scene draws, on top of both stacks.
class LoadedMatrices
{
public:
    LoadedMatrices(const SceneCamera& camera, const double origin[3])
    {
        double modelview[16], projection[16];
        camera.matricesFrom(origin, modelview, projection);
        glMatrixMode(GL_PROJECTION);
        glPushMatrix();
        glLoadMatrixd(projection);
        glMatrixMode(GL_MODELVIEW);
        glPushMatrix();
        glLoadMatrixd(modelview);
    }
    ~LoadedMatrices()
    {
        glMatrixMode(GL_PROJECTION);
        glPopMatrix();
        glMatrixMode(GL_MODELVIEW);
        glPopMatrix();
    }
    LoadedMatrices(const LoadedMatrices&) = delete;
    LoadedMatrices& operator=(const LoadedMatrices&) = delete;
};

} // namespace

void ContractFrame::requireLoaded() const
{
    kvo::requireLoaded(env);
}

bool ContractFrame::readSmooth()
{
    GLint shade = GL_SMOOTH;
    glGetIntegerv(GL_SHADE_MODEL, &shade);
    env.shadeModel = shade; // as a frame of the environment's own refreshes it
    return shade == GL_SMOOTH;
}

void ContractFrame::setViewport(const int viewport[4])
{
    std::copy(viewport, viewport + 4, env.viewPort);
}

void ContractFrame::setMatrices(const SceneLook& look, bool far, SceneCamera& camera)
{
    const Framing framing = applyFrame(env, env.viewPort[2], env.viewPort[3]);
    if (look.light != SceneLight::Contract) {
        lookFromTheFront();
    }
    const Box visible = kvo::visibleBox(env);
    MTransform& transform = *env.mTrans;
    if (far && (transform.onlyOnce & 2)) { // the pivot of the first frame, which extents can only round
        for (int axis = 0; axis < 3; ++axis) {
            transform.centerOfWindow[axis] = visible.center(axis);
        }
    }
    env.mView->update();
    double view[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, view);
    transform.processStart();
    camera.capture();
    const int type = env.mView->mViewType;
    if (far && type >= ISO_VIEW && type <= BACK_VIEW) {
        setFarMatrices(visible, framing, view, transform, camera);
    }
}

// Positions are directions in eye coordinates: the lights have no place. They are meant for a viewer who looks along
// +z.
void ContractFrame::setLights(const SceneCamera& camera, SurfaceUniforms& uniforms) const
{
    const GLenum names[2] = {GL_LIGHT0, GL_LIGHT1};
    float global[4], ambient[4], diffuse[4], position[4];
    glGetFloatv(GL_LIGHT_MODEL_AMBIENT, global);
    uniforms.ambient = global[0];
    for (int k = 0; k < 2; ++k) {
        const bool on = glIsEnabled(names[k]);
        glGetLightfv(names[k], GL_AMBIENT, ambient);
        glGetLightfv(names[k], GL_DIFFUSE, diffuse);
        glGetLightfv(names[k], GL_POSITION, position);
        uniforms.ambient += on ? ambient[0] : 0;
        uniforms.diffuse[k] = on ? diffuse[0] : 0;
        const double direction[3] = {position[0], position[1], position[2] * -double(camera.viewer)};
        setUnit(direction, uniforms.lights[k]);
    }
    uniforms.bothSides = false;
}

void ContractFrame::drawBoxes(const SceneCamera& camera, const double origin[3])
{
    glUseProgram(0);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    const LoadedMatrices matrices(camera, origin);
    glEnableClientState(GL_VERTEX_ARRAY);
    for (unsigned int k = 0; k < env.numParts; ++k) {
        const PartInfoStr& part = env.partsInfoList[k];
        if (!(part.partFlag & PART_BOX_SHOWN) || (part.partFlag & PART_HIDDEN) || !env.boxList) {
            continue;
        }
        BoundBox near = *env.boxList[k];
        for (int v = 0; v < 24; ++v) {
            near.boxVertices[v] = static_cast<float>(near.boxVertices[v] - origin[v % 3]);
        }
        near.render();
    }
    glPopClientAttrib();
    glPopAttrib();
}

// The environment draws its triad with every overlay. It stands at the origin with its y arm turned round, so it is
// seen only where a frame is to look like the environment's own, or where an operation has an overlay of its own to
// show.
bool ContractFrame::showsOverlays(const SceneLook& look) const
{
    const int operation = env.mTrans->mTransType;
    const bool operating = operation != NO_TRANSFORM && operation != GLOBAL_ROTATION && operation != GLOBAL_TRANSLATION;
    return look.frameOverlays && (operating || !look.axes || look.light == SceneLight::Contract);
}

void ContractFrame::endTransform(const SceneLook& look)
{
    const bool shown = showsOverlays(look);
    if (!shown) { // they are drawn nowhere
        glPushAttrib(GL_SCISSOR_BIT);
        glScissor(0, 0, 0, 0);
        glEnable(GL_SCISSOR_TEST);
    }
    env.mTrans->processEnd();
    if (!shown) {
        glPopAttrib();
    }
}

void ContractFrame::end(const SceneLook& look, bool far, const SceneCamera& camera)
{
    const bool newPivot = (env.mTrans->onlyOnce & 2) != 0; // the middle of the window is about to become it
    endTransform(look);
    if (!far) {
        return;
    }
    // What the transformation captured, for picks and zooming, with the digits that it lost.
    std::copy(camera.modelview, camera.modelview + 16, env.mTrans->mvMatrix);
    std::copy(camera.projection, camera.projection + 16, env.mTrans->projMatrix);
    if (newPivot) {
        env.mTrans->computeWindowCenter();
    }
}

PickView ContractFrame::pickView() const
{
    return viewOf(*env.mTrans);
}

PickView viewOf(const MTransform& transform)
{
    PickView view;
    std::copy_n(transform.mvMatrix, 16, view.modelview);
    std::copy_n(transform.projMatrix, 16, view.projection);
    std::copy_n(transform.viewPort, 4, view.viewport);
    return view;
}

} // namespace kvo
