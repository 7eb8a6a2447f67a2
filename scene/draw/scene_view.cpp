// One frame.
#include <kvo/scene_view.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "axes_triad.h"
#include "box_corners.h"
#include "contract_frame.h"
#include "frame_state.h"
#include "legend.h"
#include "scene_view_impl.h"
#include "section.h"
#include <kvo/model_frame.h>

#include <kvo/view_names.h>

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

void clearViewport(const int viewport[4], const GlState& state)
{
    glScissor(viewport[0], viewport[1], viewport[2], viewport[3]);
    glEnable(GL_SCISSOR_TEST);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (state.isOn(GL_SCISSOR_TEST)) {
        glScissor(state.scissorBox[0], state.scissorBox[1], state.scissorBox[2], state.scissorBox[3]);
    } else {
        glDisable(GL_SCISSOR_TEST);
    }
}

} // namespace

SceneView::Impl::Impl(ShownModel shownModel)
    : model(std::move(shownModel)), onProcessor((checkContext(), drawsOnProcessor()))
{
}

void SceneView::Impl::requireLoaded() const
{
    if (contract) {
        contract->requireLoaded();
    }
}

void SceneView::Impl::readGeometry()
{
    ShownModel::Impl& shown = model.read();
    GeometryKey now;
    now.smooth = contract ? contract->readSmooth() : look.smooth;
    now.source = look.light == SceneLight::Contract ? NormalSource::Record : NormalSource::Geometry;
    now.featureAngle = look.featureAngle;
    now.model = shown.identity();
    for (const ShownPart& part : shown.parts) {
        now.hidden.push_back(part.hiddenElements.bytes);
    }
    if (look.section.cut == SceneCut::Elements && planeCuts(look.section.plane)) {
        now.withoutRemoved = true;
        std::copy(look.section.plane, look.section.plane + 4, now.plane);
    }
    if (geometryDirty || !(now == key)) {
        findGoneElements(now);
        geometry.build(shown.meshes, {now.source, now.smooth, now.featureAngle}, gone);
        state.forget();
        coarse.forget();
        exactFrameMs = 0;
        caps.forget();
        surfaceLines.forget();
        elementColors.forget();
        key = now;
        geometryDirty = false;
    }
    state.update(shown, geometry, coloring);
    elementColors.update(coloring, geometry);
}

void SceneView::Impl::findGoneElements(const GeometryKey& wanted)
{
    const ShownModel::Impl& shown = model.asRead();
    gone = absent;
    gone.resize(std::max(gone.size(), shown.meshes.size()));
    for (std::size_t k = 0; k < shown.meshes.size(); ++k) {
        const PartMesh& part = shown.meshes[k];
        const MarkBytes& hidden = shown.parts[k].hiddenElements;
        gone[k].resize(hidden.bytes ? part.elementCount : gone[k].size(), 0);
        for (std::size_t e = 0; hidden.bytes && e < std::min<std::size_t>(hidden.count, part.elementCount); ++e) {
            gone[k][e] = gone[k][e] != 0 || hidden.bytes[e] != 0;
        }
        if (wanted.withoutRemoved) {
            gone[k] = withoutRemoved(part, wanted.plane, gone[k]);
        }
    }
}

// Without a camera of its own a model is seen as a whole from the standard isometric side.
void SceneView::Impl::startFrame()
{
    int viewport[4];
    std::transform(drawState.viewport, drawState.viewport + 4, viewport,
                   [](float v) { return static_cast<int>(std::lround(v)); });
    clearViewport(viewport, drawState);
    std::copy(viewport, viewport + 4, camera.viewport);
    if (contract) {
        contract->setViewport(viewport);
    } else if (!ownCamera) {
        ownCamera = Camera();
        ownCamera->setOrientation(*viewOrientation("iso"));
        ownCamera = ownCamera->fit(model.asRead().visibleBox(), {viewport[2], viewport[3]});
    }
}

// --- Matrices ---

bool SceneView::Impl::isFar() const
{
    const double* o = geometry.origin();
    return o[0] != 0 || o[1] != 0 || o[2] != 0;
}

// Box of what a frame may draw: parts as their records and their faces say, with room for symbols about lines.
Box SceneView::Impl::drawnBox() const
{
    const ShownModel::Impl& shown = model.asRead();
    Box box = shown.visibleBox();
    const auto add = [&box](int axis, double low, double high) {
        if (std::isfinite(low) && std::isfinite(high)) {
            box.low[axis] = std::min(box.low[axis], low);
            box.high[axis] = std::max(box.high[axis], high);
        }
    };
    const std::vector<PartShow> shows = partsToShow(shown.parts, geometry, drawnLook.ghosts);
    for (std::size_t k = 0; k < shown.meshes.size(); ++k) {
        const bool drawn = shown.listedNodesShown || (k < shows.size() && shows[k] != PartShow::No);
        const std::array<float, 6>& extents = shown.meshes[k].extents;
        for (unsigned int axis = 0; drawn && axis < 3; ++axis) {
            add(static_cast<int>(axis), extents[2 * axis], extents[2 * axis + 1]);
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
        camera.see(*ownCamera, camera.viewport, drawnBox(), geometry.origin());
    } else {
        contract->setMatrices(drawnLook, isFar(), camera);
    }
}

// --- Over the model ---

namespace {

constexpr int boxEdges[12][2] = {{0, 1}, {1, 3}, {3, 2}, {2, 0}, {4, 5}, {5, 7},
                                 {7, 6}, {6, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};

void addBox(const std::array<float, 6>& extents, const double origin[3], std::vector<SurfaceVertex>& lines)
{
    for (const int(&edge)[2] : boxEdges) {
        for (const int corner : edge) {
            SurfaceVertex vertex = {{}, {0, 0, 32767}, 0, 0, 0};
            for (unsigned int axis = 0; axis < 3; ++axis) {
                const unsigned int high = static_cast<unsigned int>(corner) >> axis & 1;
                vertex.position[axis] = static_cast<float>(extents[2 * axis + high] - origin[axis]);
            }
            lines.push_back(vertex);
        }
    }
}

} // namespace

void SceneView::Impl::drawBoxes()
{
    if (contract) {
        contract->drawBoxes(camera, geometry.origin());
        return;
    }
    std::vector<SurfaceVertex> lines;
    const ShownModel::Impl& shown = model.asRead();
    for (std::size_t k = 0; k < shown.partCount; ++k) {
        if (shown.parts[k].boxShown && !shown.parts[k].hidden) {
            addBox(shown.meshes[k].extents, geometry.origin(), lines);
        }
    }
    if (lines.empty()) {
        return;
    }
    boxLines.fill(GL_ARRAY_BUFFER, lines, GL_STREAM_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    SurfaceUniforms values = uniforms();
    overlay.begin(camera.viewport);
    const Rgb ink = overlay.ink(); // as their numbers
    const float color[4] = {ink.r, ink.g, ink.b, 1};
    std::copy_n(color, 4, values.color);
    useUncut(UniformColor | FlatLight, values);
    bindSurfaceVertices(boxLines);
    glDrawArrays(GL_LINES, 0, static_cast<GLsizei>(lines.size()));
    SceneGeometry::unbind();
    ++stats.drawCalls;
}

void SceneView::Impl::drawTexts()
{
    const SceneLabels& wanted = drawnLook.labels;
    const bool labelled = overlay.hasFont() && (wanted.parts || wanted.elements || wanted.nodes);
    const bool explained = overlay.hasFont() && drawnLook.legend && (coloring.byValue() || coloring.byCategory());
    std::vector<IdLabel> ids = labelled ? visibleIds() : std::vector<IdLabel>();
    overlay.begin(camera.viewport);
    if (drawnLook.axes && (ownCamera || drawnLook.light != SceneLight::Contract)) {
        drawAxes(overlay, camera);
    }
    const ShownModel::Impl& shown = model.asRead();
    for (std::size_t k = 0; !contract && k < shown.partCount; ++k) {
        if (shown.parts[k].boxShown && !shown.parts[k].hidden) {
            drawBoxCorners(overlay, camera, shown.meshes[k].extents);
        }
    }
    if (labelled) {
        drawLabels(overlay, thinOut(std::move(ids), overlay, wanted.spacing));
    }
    if (explained) {
        drawLegend(overlay, coloring);
    }
    overlay.draw(contract ? HostState::Restore : hostState);
}

// --- The public class ---

static_assert(sizeof(SceneView) == sizeof(void*),
              "hosts are compiled with this size: what a view holds goes into Impl");

SceneView::SceneView(const ModelView& view) : impl(std::make_unique<Impl>(view)) {}

SceneView::SceneView(CAEEnv& env) : impl(std::make_unique<Impl>(env))
{
    impl->contract = std::make_unique<ContractFrame>(env);
}

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

void SceneView::setFont(const std::string& file, int pixelHeight)
{
    impl->overlay.setFont(file.empty() ? nullptr : std::make_unique<Font>(file, pixelHeight));
}

void SceneView::setCamera(const Camera& camera)
{
    impl->ownCamera = camera;
}

const std::optional<Camera>& SceneView::camera() const
{
    return impl->ownCamera;
}

void SceneView::setHostState(HostState state)
{
    impl->hostState = state;
}

Box SceneView::visibleBox() const
{
    impl->requireLoaded();
    return impl->model.read().visibleBox();
}

PickView SceneView::pickView() const
{
    if (impl->contract && !impl->ownCamera) {
        impl->requireLoaded();
        return impl->contract->pickView();
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

void SceneView::Impl::drawFrame()
{
    const FrameState frame(contract ? HostState::Restore : hostState, contract != nullptr, vertexArray);
    drawState = frame.state();
    readGeometry();
    startFrame();
    drawnLook = look;
    setMatrices();
    shiftFrame(drawnLook.pixelShift[0], drawnLook.pixelShift[1]);
    const std::vector<PartShow> parts = partsToShow(model.asRead().parts, geometry, drawnLook.ghosts);
    ScenePasses passes(geometry, camera, parts, stats);
    CoarseSurface* const surface = chooseSurface();
    passes.useCoarse(surface);
    if (drawnLook.style != SceneStyle::Shaded) {
        surface ? surface->makeEdges() : geometry.makeEdges();
    }
    passes.useSieve(chooseSieve());
    state.bind();
    elementColors.bind();
    drawSurfaces(passes);
    drawSelectedNodes();
    drawBoxes();
    endTiming();
}

void SceneView::draw()
{
    impl->requireLoaded();
    impl->stats = SceneFrameStats();
    impl->drawFrame();
    if (!impl->ownCamera) {
        impl->contract->end(impl->drawnLook, impl->isFar(), impl->camera);
    }
    impl->drawTexts();
    impl->fences.keep();
}

} // namespace kvo
