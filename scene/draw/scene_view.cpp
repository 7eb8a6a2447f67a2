// One frame.
#include "scene_view.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "axes_triad.h"
#include "boundbox.h"
#include "caeenv.h"
#include "far_matrices.h"
#include "legend.h"
#include "loaded.h"
#include "model_frame.h"
#include "mtrans.h"
#include "mview.h"
#include "scene_view_impl.h"
#include "section.h"

namespace kvo {

namespace {

void checkContext()
{
    GLint version[2] = {0, 0};
    glGetIntegerv(GL_MAJOR_VERSION, &version[0]);
    glGetIntegerv(GL_MINOR_VERSION, &version[1]);
    glGetError(); // contexts before 3.0 do not know the question
    if (10 * version[0] + version[1] < 33) {
        const GLubyte* text = glGetString(GL_VERSION);
        throw std::runtime_error(std::string("the scene needs OpenGL 3.3, this context has ") +
                                 (text ? reinterpret_cast<const char*>(text) : "no OpenGL"));
    }
}

void clearViewport(const int viewport[4])
{
    glPushAttrib(GL_SCISSOR_BIT);
    glScissor(viewport[0], viewport[1], viewport[2], viewport[3]);
    glEnable(GL_SCISSOR_TEST);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glPopAttrib();
}

} // namespace

SceneView::Impl::Impl(CAEEnv& environment) : env(environment)
{
    checkContext();
}

void SceneView::Impl::readGeometry()
{
    GLint shade = GL_SMOOTH;
    glGetIntegerv(GL_SHADE_MODEL, &shade);
    env.shadeModel = shade; // as a frame of the environment's own refreshes it
    GeometryKey now;
    now.smooth = shade == GL_SMOOTH;
    now.source = look.light == SceneLight::Contract ? NormalSource::Record : NormalSource::Geometry;
    now.featureAngle = look.featureAngle;
    now.list = env.partsInfoList;
    now.parts = env.numParts;
    now.segment = (env.compFlag & SEGMENT_PART_SET) ? env.segmentPart : nullptr;
    if (look.section.cut == SceneCut::Elements && planeCuts(look.section.plane)) {
        now.withoutRemoved = true;
        std::copy(look.section.plane, look.section.plane + 4, now.plane);
    }
    if (geometryDirty || !(now == key)) {
        findGoneElements(now);
        geometry.build(env, {now.source, now.smooth, now.featureAngle}, gone);
        state.forget();
        coarse.forget();
        exactFrameMs = 0;
        caps.forget();
        surfaceLines.forget();
        elementColors.forget();
        key = now;
        geometryDirty = false;
    }
    state.update(env, geometry, coloring);
    elementColors.update(coloring, geometry);
}

void SceneView::Impl::findGoneElements(const GeometryKey& wanted)
{
    gone = absent;
    if (!wanted.withoutRemoved) {
        return;
    }
    const std::vector<const PartInfoStr*> parts = sceneParts(env);
    gone.resize(parts.size());
    for (std::size_t k = 0; k < parts.size(); ++k) {
        gone[k] = withoutRemoved(*parts[k], wanted.plane, gone[k]);
    }
}

// --- Matrices ---

bool SceneView::Impl::isFar() const
{
    const double* o = geometry.origin();
    return o[0] != 0 || o[1] != 0 || o[2] != 0;
}

// The environment's depth range is the wrong way round: what its views turn away from the viewer is drawn in front, so
// that the picture is the model's mirror image. Turned round, "top" is seen from above, and left is left.
void SceneView::Impl::lookFromTheFront()
{
    glMatrixMode(GL_PROJECTION);
    glScaled(1, 1, -1);
    glMatrixMode(GL_MODELVIEW);
}

// Box of what a frame may draw: parts as their records and their faces say, with room for symbols about lines.
Box SceneView::Impl::drawnBox() const
{
    Box box = kvo::visibleBox(env);
    const auto add = [&box](int axis, double low, double high) {
        if (std::isfinite(low) && std::isfinite(high)) {
            box.low[axis] = std::min(box.low[axis], low);
            box.high[axis] = std::max(box.high[axis], high);
        }
    };
    const bool nodesOfAll = (env.compFlag & NODE_LIST_SELECTED) != 0;
    const std::vector<const PartInfoStr*> parts = sceneParts(env);
    const std::vector<PartShow> shows = partsToShow(env, geometry, drawnLook.ghosts);
    for (std::size_t k = 0; k < parts.size(); ++k) {
        const bool drawn = nodesOfAll || (k < shows.size() && shows[k] != PartShow::No);
        for (int axis = 0; drawn && axis < 3; ++axis) {
            add(axis, parts[k]->partExtents[2 * axis], parts[k]->partExtents[2 * axis + 1]);
        }
    }
    for (const FaceKind kind : {Triangles, Quads}) {
        for (const SurfaceBlock& block : geometry.blocks(kind)) {
            for (int axis = 0; shows[block.part] != PartShow::No && axis < 3; ++axis) {
                const double origin = geometry.origin()[axis];
                add(axis, block.low[axis] + origin, block.high[axis] + origin);
            }
        }
    }
    const double room = 0.05 * std::max({box.size(0), box.size(1), box.size(2)});
    for (int axis = 0; axis < 3; ++axis) {
        box.low[axis] -= room;
        box.high[axis] += room;
    }
    return box;
}

void SceneView::Impl::setMatrices()
{
    if (ownCamera) {
        camera.see(*ownCamera, drawnBox(), geometry.origin());
    } else {
        setContractMatrices();
    }
}

// Projection, view and transformation, as the environment makes them; for far models once more in double precision.
void SceneView::Impl::setContractMatrices()
{
    const Framing framing = applyFrame(env, env.viewPort[2], env.viewPort[3]);
    if (drawnLook.light != SceneLight::Contract) {
        lookFromTheFront();
    }
    const Box visible = kvo::visibleBox(env);
    MTransform& transform = *env.mTrans;
    if (isFar() && (transform.onlyOnce & 2)) { // the pivot of the first frame, which extents can only round
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
    if (isFar() && type >= ISO_VIEW && type <= BACK_VIEW) {
        setFarMatrices(visible, framing, view, transform, camera);
    }
}

void SceneView::Impl::pushMatrices()
{
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    if (!isFar() && !ownCamera) { // the matrices stay to the last bit
        return;
    }
    double modelview[16], projection[16];
    camera.matricesFrom(geometry.origin(), modelview, projection);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(projection);
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(modelview);
}

void SceneView::Impl::popMatrices()
{
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}

// What the transformation captured at the end of a frame, for picks and zooming, with the digits that it lost.
// newPivot: it has just made the middle of the window its pivot.
void SceneView::Impl::keepMatrices(bool newPivot)
{
    if (!isFar()) {
        return;
    }
    std::copy(camera.modelview, camera.modelview + 16, env.mTrans->mvMatrix);
    std::copy(camera.projection, camera.projection + 16, env.mTrans->projMatrix);
    if (newPivot) {
        env.mTrans->computeWindowCenter();
    }
}

// --- Over the model ---

void SceneView::Impl::drawBoxes()
{
    glUseProgram(0);
    glEnableClientState(GL_VERTEX_ARRAY);
    for (unsigned int k = 0; k < env.numParts; ++k) {
        const PartInfoStr& part = env.partsInfoList[k];
        if (!(part.partFlag & PART_BOX_SHOWN) || (part.partFlag & PART_HIDDEN) || !env.boxList) {
            continue;
        }
        BoundBox near = *env.boxList[k];
        for (int v = 0; v < 24; ++v) {
            near.boxVertices[v] = static_cast<float>(near.boxVertices[v] - geometry.origin()[v % 3]);
        }
        near.render();
    }
    glDisableClientState(GL_VERTEX_ARRAY);
}

void SceneView::Impl::drawTexts()
{
    const SceneLabels& wanted = drawnLook.labels;
    const bool labelled = wanted.parts || wanted.elements || wanted.nodes;
    const bool explained = drawnLook.legend && (coloring.byValue() || coloring.byCategory());
    if (drawnLook.fontBase == 0 || !(labelled || explained)) {
        return;
    }
    const std::vector<IdLabel> ids = labelled ? visibleIds() : std::vector<IdLabel>();
    OverlayPainter painter(camera.viewport, drawnLook.fontBase, fontWidths);
    drawLabels(painter, thinOut(ids, painter, drawnLook.fontHeight, wanted.spacing), drawnLook.fontHeight);
    if (explained) {
        drawLegend(painter, coloring, drawnLook.fontHeight);
    }
}

// The environment draws its triad with every overlay. It stands at the origin with its y arm turned round, so it is
// seen only where a frame is to look like the environment's own, or where an operation has an overlay of its own to
// show.
bool SceneView::Impl::showsOverlays() const
{
    const int operation = env.mTrans->mTransType;
    const bool operating = operation != NO_TRANSFORM && operation != GLOBAL_ROTATION && operation != GLOBAL_TRANSLATION;
    return drawnLook.frameOverlays && (operating || !drawnLook.axes || drawnLook.light == SceneLight::Contract);
}

void SceneView::Impl::endTransform()
{
    const bool shown = showsOverlays();
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

// Overlays, and what the environment keeps of the frame.
void SceneView::Impl::endContractFrame()
{
    const bool newPivot = (env.mTrans->onlyOnce & 2) != 0;
    endTransform();
    keepMatrices(newPivot);
}

// --- The public class ---

static_assert(sizeof(SceneView) == sizeof(void*),
              "hosts are compiled with this size: what a view holds goes into Impl");

SceneView::SceneView(CAEEnv& env) : impl(std::make_unique<Impl>(env)) {}

SceneView::~SceneView() = default;

SceneLook& SceneView::look()
{
    return impl->look;
}

const SceneLook& SceneView::look() const
{
    return impl->look;
}

void SceneView::geometryChanged()
{
    impl->geometryDirty = true;
}

void SceneView::setAbsentElements(std::vector<std::vector<char>> absent)
{
    impl->absent = std::move(absent);
    impl->geometryDirty = true;
}

void SceneView::setColoring(Coloring coloring)
{
    impl->coloring = std::move(coloring);
    impl->elementColors.forget();
}

const Coloring& SceneView::coloring() const
{
    return impl->coloring;
}

void SceneView::setCamera(const Camera& camera)
{
    impl->ownCamera = camera;
}

const std::optional<Camera>& SceneView::camera() const
{
    return impl->ownCamera;
}

Box SceneView::visibleBox() const
{
    requireLoaded(impl->env);
    return kvo::visibleBox(impl->env);
}

PickView SceneView::pickView() const
{
    if (!impl->ownCamera) {
        requireLoaded(impl->env);
        return viewOf(*impl->env.mTrans);
    }
    PickView out;
    std::copy_n(impl->camera.modelview, 16, out.modelview);
    std::copy_n(impl->camera.projection, 16, out.projection);
    std::copy_n(impl->camera.viewport, 4, out.viewport);
    std::copy_n(impl->camera.origin, 3, out.origin);
    return out;
}

const SceneFrameStats& SceneView::lastFrame() const
{
    return impl->stats;
}

std::size_t SceneView::bufferBytes() const
{
    return impl->geometry.bufferBytes() + impl->caps.triangles().bytes() + impl->caps.outlines().bytes() +
           impl->surfaceLines.buffer().bytes() + impl->elementColors.bytes();
}

void SceneView::draw()
{
    CAEEnv& env = impl->env;
    requireLoaded(env);
    impl->stats = SceneFrameStats();
    impl->readGeometry();
    glGetIntegerv(GL_VIEWPORT, env.viewPort);
    clearViewport(env.viewPort);
    impl->drawnLook = impl->look;
    impl->setMatrices();
    shiftFrame(impl->drawnLook.pixelShift[0], impl->drawnLook.pixelShift[1]);

    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    impl->pushMatrices();
    const std::vector<PartShow> parts = partsToShow(env, impl->geometry, impl->drawnLook.ghosts);
    ScenePasses passes(impl->geometry, impl->camera, parts, impl->stats);
    passes.useCoarse(impl->chooseSurface());
    passes.useSieve(impl->chooseSieve());
    impl->state.bind();
    impl->elementColors.bind();
    impl->drawSurfaces(passes);
    impl->drawSelectedNodes();
    impl->drawBoxes();
    impl->popMatrices();
    impl->endTiming();
    glUseProgram(0);
    glPopClientAttrib();
    glPopAttrib();

    if (!impl->ownCamera) {
        impl->endContractFrame();
    }
    if (impl->drawnLook.axes && (impl->ownCamera || impl->drawnLook.light != SceneLight::Contract)) {
        drawAxes(impl->camera);
    }
    impl->drawTexts();
    impl->fences.keep();
}

} // namespace kvo
