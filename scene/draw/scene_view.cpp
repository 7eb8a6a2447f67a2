// One frame.
#include "scene_view.h"

#include <algorithm>
#include <stdexcept>

#include "boundbox.h"
#include "caeenv.h"
#include "model_frame.h"
#include "mtrans.h"
#include "mview.h"
#include "scene_view_impl.h"

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

// Selected nodes as points in the selection colour.
void drawSelectedNodes(const CAEEnv& env, float size, SceneFrameStats& stats)
{
    std::vector<float> points;
    const auto gather = [&points](const char* flags, const float* values, unsigned int count) {
        for (unsigned int k = 0; flags && values && k < count; ++k) {
            if (flags[k] == SELECTED_CHAR) {
                points.insert(points.end(), values + 3 * std::size_t(k), values + 3 * std::size_t(k) + 3);
            }
        }
    };
    for (unsigned int k = 0; k < env.numParts; ++k) {
        const PartInfoStr& part = env.partsInfoList[k];
        if ((part.partFlag & PART_NODES_SELECTED) && !(part.partFlag & PART_HIDDEN)) {
            gather(part.partNodes.selectedNodes, part.partNodes.nodeValues, part.partNodes.numNodes);
        }
    }
    if (env.compFlag & NODE_LIST_SELECTED) {
        gather(env.selectedNodes, env.nodeValues, env.numNodes);
    }
    if (points.empty()) {
        return;
    }
    glUseProgram(0);
    glDisable(GL_LIGHTING);
    glPointSize(size);
    glColor4fv(env.colorBlue);
    glDepthRange(0, nearerDepth);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, points.data());
    glDrawArrays(GL_POINTS, 0, static_cast<GLsizei>(points.size() / 3));
    glDisableClientState(GL_VERTEX_ARRAY);
    glDepthRange(0, 1);
    ++stats.drawCalls;
}

void drawBoxes(const CAEEnv& env)
{
    glUseProgram(0);
    glEnableClientState(GL_VERTEX_ARRAY);
    for (unsigned int k = 0; k < env.numParts; ++k) {
        const unsigned int flags = env.partsInfoList[k].partFlag;
        if ((flags & PART_BOX_SHOWN) && !(flags & PART_HIDDEN) && env.boxList) {
            env.boxList[k]->render();
        }
    }
    glDisableClientState(GL_VERTEX_ARRAY);
}

} // namespace

SceneView::Impl::Impl(CAEEnv& environment) : env(environment)
{
    checkContext();
}

void SceneView::Impl::readGeometry(const SceneLook& look)
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
    if (geometryDirty || !(now == key)) {
        geometry.build(env, {now.source, now.smooth, now.featureAngle}, absent);
        state.forget();
        key = now;
        geometryDirty = false;
    }
    state.update(env, geometry);
}

void SceneView::Impl::pushShiftedMatrix()
{
    double modelview[16];
    camera.relativeTo(geometry.origin(), modelview);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    const double* o = geometry.origin();
    if (o[0] != 0 || o[1] != 0 || o[2] != 0) { // else the matrix stays to the last bit
        glLoadMatrixd(modelview);
    }
}

SurfaceUniforms SceneView::Impl::uniformsOf(const SceneLook& look) const
{
    SurfaceUniforms out;
    std::copy(env.colorBlue, env.colorBlue + 4, out.selected);
    setLights(look.light, camera, out);
    return out;
}

unsigned int SceneView::Impl::features(bool smooth) const
{
    return (smooth ? 0u : FlatLight) | (state.anyElementSelected() ? ElementStates : VertexColors) |
           (camera.unitScale != 0 ? UnitNormals : 0u);
}

// Edges are drawn again as lines over the faces, which give way a little.
void SceneView::Impl::drawEdges(const SceneLook& look, ScenePasses& passes, const SurfaceUniforms& uniforms)
{
    SurfaceUniforms edges = uniforms;
    std::copy(look.edgeColor, look.edgeColor + 4, edges.color);
    programs.use(UniformColor | FlatLight, edges);
    glLineWidth(look.edgeWidth);
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    passes.faces(PartShow::Opaque, look.style != SceneStyle::Wire);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
}

void SceneView::Impl::drawSurfaces(const SceneLook& look, ScenePasses& passes)
{
    const SurfaceUniforms uniforms = uniformsOf(look);
    GLint mode[2];
    glGetIntegerv(GL_POLYGON_MODE, mode);
    const bool withEdges = look.style == SceneStyle::ShadedEdges || look.style == SceneStyle::HiddenLine;
    if (withEdges) {
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(1, 1);
    }
    if (look.style == SceneStyle::HiddenLine) {
        SurfaceUniforms background = uniforms;
        glGetFloatv(GL_COLOR_CLEAR_VALUE, background.color);
        programs.use(UniformColor | FlatLight, background);
    } else {
        programs.use(features(key.smooth), uniforms);
        state.bindVertexColors();
    }
    if (look.style != SceneStyle::Wire) {
        passes.faces(PartShow::Opaque, mode[0] == GL_FILL && look.light != SceneLight::Contract);
    }
    SceneState::unbindVertexColors();
    glDisable(GL_POLYGON_OFFSET_FILL);
    if (look.style != SceneStyle::Shaded) {
        drawEdges(look, passes, uniforms);
    }
    drawLines(look, passes, uniforms);
    if (passes.any(PartShow::Transparent) || passes.any(PartShow::Ghost)) {
        drawTransparent(look, passes, uniforms);
    }
}

// Lines have no sides: they show their colour as it is.
void SceneView::Impl::drawLines(const SceneLook& look, ScenePasses& passes, SurfaceUniforms uniforms)
{
    uniforms.ambient = 1;
    uniforms.diffuse[0] = uniforms.diffuse[1] = 0;
    programs.use(FlatLight | (state.anyElementSelected() ? ElementStates : 0u), uniforms);
    glLineWidth(look.lineWidth);
    glDepthRange(0, nearerDepth);
    passes.lines(PartShow::Opaque);
    glDepthRange(0, 1);
    glLineWidth(1);
}

void SceneView::Impl::drawTransparent(const SceneLook& look, ScenePasses& passes, const SurfaceUniforms& uniforms)
{
    const auto drawOpaque = [&] {
        programs.use(UniformColor | FlatLight, uniforms);
        passes.faces(PartShow::Opaque, true);
    };
    const auto drawLayers = [&] {
        programs.use(features(key.smooth) | Layers, uniforms);
        state.bindVertexColors();
        passes.faces(PartShow::Transparent, false);
        SceneState::unbindVertexColors();
        programs.use(FlatLight | Layers | (state.anyElementSelected() ? ElementStates : 0u), uniforms);
        passes.lines(PartShow::Transparent);
        SurfaceUniforms ghost = uniforms;
        std::copy(look.ghostColor, look.ghostColor + 4, ghost.color);
        programs.use(UniformColor | FlatLight | Layers, ghost);
        passes.faces(PartShow::Ghost, false);
        passes.lines(PartShow::Ghost);
    };
    layers.draw(camera.viewport, drawOpaque, drawLayers);
}

// --- The public class
// ------------------------------------------------------------------------------------------------------

SceneView::SceneView(CAEEnv& env) : impl(std::make_unique<Impl>(env)) {}

SceneView::~SceneView() = default;

void SceneView::geometryChanged()
{
    impl->geometryDirty = true;
}

void SceneView::setAbsentElements(std::vector<std::vector<char>> absent)
{
    impl->absent = std::move(absent);
    impl->geometryDirty = true;
}

SceneFrameStats SceneView::lastFrame() const
{
    return impl->stats;
}

std::size_t SceneView::bufferBytes() const
{
    return impl->geometry.bufferBytes();
}

void SceneView::draw()
{
    CAEEnv& env = impl->env;
    impl->stats = SceneFrameStats();
    impl->readGeometry(look);
    glGetIntegerv(GL_VIEWPORT, env.viewPort);
    clearViewport(env.viewPort);
    applyFrame(env, env.viewPort[2], env.viewPort[3]);
    env.mView->update();
    env.mTrans->processStart();
    impl->camera.capture();
    impl->drawnLook = look;

    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    impl->pushShiftedMatrix();
    const std::vector<PartShow> parts = partsToShow(env, impl->geometry, look.ghosts);
    ScenePasses passes(impl->geometry, impl->camera, parts, impl->stats);
    impl->state.bind();
    impl->drawSurfaces(look, passes);
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
    drawBoxes(env);
    drawSelectedNodes(env, look.nodeSize, impl->stats);
    glUseProgram(0);
    glPopClientAttrib();
    glPopAttrib();

    env.mTrans->processEnd();
}

} // namespace kvo
