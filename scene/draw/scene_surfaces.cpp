// The passes of a frame over the model: faces, cross-sections, edges, lines, transparent layers.
#include <algorithm>
#include <cmath>

#include "contract_frame.h"
#include "scene_view_impl.h"
#include "section.h"

namespace kvo {

namespace {

// Faces that give way a little to lines on them.
class FacesGiveWay
{
public:
    explicit FacesGiveWay(bool wanted)
    {
        if (wanted) {
            glEnable(GL_POLYGON_OFFSET_FILL);
            glPolygonOffset(1, 1);
        }
    }
    ~FacesGiveWay() { glDisable(GL_POLYGON_OFFSET_FILL); }
    FacesGiveWay(const FacesGiveWay&) = delete;
    FacesGiveWay& operator=(const FacesGiveWay&) = delete;
};

// Wide lines are filled whatever the host's polygon mode.
class LinesAreFilled
{
public:
    explicit LinesAreFilled(const GlState& state) : modes(state.polygonMode)
    {
        if (changes()) {
            glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        }
    }
    ~LinesAreFilled()
    {
        if (changes()) {
            applyPolygonMode(modes);
        }
    }
    LinesAreFilled(const LinesAreFilled&) = delete;
    LinesAreFilled& operator=(const LinesAreFilled&) = delete;

private:
    bool changes() const { return modes[0] != GL_FILL || modes[1] != GL_FILL; }

    const GLint* const modes;
};

} // namespace

// --- What every pass is drawn with ---

bool SceneView::Impl::slices() const
{
    return drawnLook.section.cut == SceneCut::Slice && planeCuts(drawnLook.section.plane);
}

SurfaceUniforms SceneView::Impl::uniforms() const
{
    SurfaceUniforms out;
    std::copy_n(model.asRead().selectionColor.data(), 4, out.selected);
    if (contract && drawnLook.light == SceneLight::Contract) {
        contract->setLights(camera, out);
    } else {
        setLights(drawnLook.light, camera, out);
    }
    lightTheModel(camera, out);
    camera.setMatrices(geometry.origin(), out);
    out.lineSize[1] = static_cast<float>(std::max(camera.viewport[2], 1)) / 2;
    out.lineSize[2] = static_cast<float>(std::max(camera.viewport[3], 1)) / 2;
    if (slices()) { // relative to the geometry's origin; of unit length, for single precision's sake
        const double* plane = drawnLook.section.plane;
        const double* o = geometry.origin();
        const double offset = plane[3] + plane[0] * o[0] + plane[1] * o[1] + plane[2] * o[2];
        const double length = std::hypot(plane[0], plane[1], plane[2]);
        for (int k = 0; k < 4; ++k) {
            out.plane[k] = static_cast<float>((k < 3 ? plane[k] : offset) / length);
        }
    }
    return out;
}

void SceneView::Impl::use(unsigned int features, const SurfaceUniforms& values)
{
    if (slices()) {
        glEnable(GL_CLIP_DISTANCE0);
        features |= Cut;
    }
    programs.use(features, values);
}

// For what lies in the section plane itself.
void SceneView::Impl::useUncut(unsigned int features, const SurfaceUniforms& values)
{
    glDisable(GL_CLIP_DISTANCE0);
    programs.use(features, values);
}

unsigned int SceneView::Impl::faceFeatures() const
{
    const unsigned int looks = elementFeatures();
    return (key.smooth ? 0u : FlatLight) | (looks ? looks : VertexColors) | (camera.unitScale != 0 ? UnitNormals : 0u);
}

// Lines and cross-sections: they have no colour attribute.
unsigned int SceneView::Impl::pieceFeatures() const
{
    return FlatLight | elementFeatures() | (camera.unitScale != 0 ? UnitNormals : 0u);
}

// What differs from element to element.
unsigned int SceneView::Impl::elementFeatures() const
{
    return (state.anyElementSelected() ? ElementStates : 0u) | (elementColors.any() ? ElementColors : 0u);
}

bool SceneView::Impl::seesBacks() const
{
    return slices() || camera.inside || drawnLook.light == SceneLight::Contract;
}

// --- The passes ---

void SceneView::Impl::drawSurfaces(ScenePasses& passes)
{
    const SurfaceUniforms values = uniforms();
    const SceneLines& lines = drawnLook.lines;
    glLineWidth(1); // wider ones are made of triangles
    glDisable(GL_CULL_FACE);
    if (slices() && drawnLook.section.caps) {
        caps.update(model.asRead().meshes, geometry, gone, drawnLook.section.plane);
    }
    if (lines.feature || lines.free || lines.branching) {
        surfaceLines.update(model.asRead().meshes, geometry, gone, drawnLook.featureAngle);
    }
    drawFaces(passes, values);
    if (drawnLook.style != SceneStyle::Shaded) {
        drawEdges(passes, values);
    }
    drawSurfaceLines(passes, values);
    drawLines(passes, values);
    if (passes.any(PartShow::Transparent) || passes.any(PartShow::Ghost)) {
        drawTransparent(passes, values);
    }
    glDisable(GL_CLIP_DISTANCE0);
}

void SceneView::Impl::drawFaces(ScenePasses& passes, const SurfaceUniforms& values)
{
    if (drawnLook.style == SceneStyle::Wire) {
        return;
    }
    const SceneLines& lines = drawnLook.lines;
    const FacesGiveWay giveWay(drawnLook.style != SceneStyle::Shaded || lines.feature || lines.free || lines.branching);
    const bool hiddenLine = drawnLook.style == SceneStyle::HiddenLine;
    if (hiddenLine) { // nothing but the background is there yet: faces in its colour are their depths
        glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    }
    const unsigned int features = hiddenLine ? UniformColor | FlatLight : faceFeatures();
    state.bindVertexColors();
    if (drawState.polygonMode[0] == GL_LINE && !hiddenLine) {
        const LinesAreFilled filled(drawState);
        passes.faces(PartShow::Opaque, false,
                     [&](FaceKind kind) { use(features | (kind == Quads ? QuadRims : TriangleRims), values); });
    } else {
        use(features, values);
        passes.faces(PartShow::Opaque, drawState.polygonMode[0] == GL_FILL && !seesBacks());
    }
    SceneState::unbindVertexColors();
    drawCaps(passes, PartShow::Opaque, hiddenLine ? UniformColor | FlatLight : pieceFeatures(), values);
    if (hiddenLine) {
        const GLboolean* mask = drawState.blending[0].mask;
        glColorMask(mask[0], mask[1], mask[2], mask[3]);
    }
}

void SceneView::Impl::drawCaps(ScenePasses& passes, PartShow show, unsigned int features, const SurfaceUniforms& values)
{
    if (slices() && drawnLook.section.caps) {
        useUncut(features, values);
        passes.pieces(caps.triangles(), caps.triangleRanges(), GL_TRIANGLES, show);
    }
}

unsigned int SceneView::Impl::widen(SurfaceUniforms& values, float width) const
{
    values.lineSize[0] = width / 2;
    return width > 1 ? WideLines : 0u;
}

// Of the faces, and of the cross-sections the elements' outlines.
void SceneView::Impl::drawEdges(ScenePasses& passes, const SurfaceUniforms& values)
{
    SurfaceUniforms edges = values;
    std::copy(drawnLook.edgeColor, drawnLook.edgeColor + 4, edges.color);
    const unsigned int features = UniformColor | FlatLight | widen(edges, drawnLook.edgeWidth);
    const LinesAreFilled filled(drawState);
    use(features, edges);
    passes.edges(PartShow::Opaque);
    if (slices() && drawnLook.section.caps) {
        useUncut(features, edges);
        passes.pieces(caps.outlines(), caps.outlineRanges(), GL_LINES, PartShow::Opaque);
    }
}

// Also of transparent parts, whose layers then lie over them.
void SceneView::Impl::drawSurfaceLines(ScenePasses& passes, const SurfaceUniforms& values)
{
    const SceneLines& lines = drawnLook.lines;
    const struct
    {
        bool shown;
        SurfaceLineKind kind;
        const float* color;
    } rows[] = {{lines.feature, FeatureLines, lines.featureColor},
                {lines.free, FreeLines, lines.freeColor},
                {lines.branching, BranchingLines, lines.branchingColor}};
    const LinesAreFilled filled(drawState);
    for (const auto& row : rows) {
        if (!row.shown) {
            continue;
        }
        SurfaceUniforms colored = values;
        std::copy(row.color, row.color + 4, colored.color);
        use(UniformColor | FlatLight | widen(colored, lines.width), colored);
        passes.pieces(surfaceLines.buffer(), surfaceLines.ranges(row.kind), GL_LINES, PartShow::Opaque);
        passes.pieces(surfaceLines.buffer(), surfaceLines.ranges(row.kind), GL_LINES, PartShow::Transparent);
    }
}

// Beams and springs. Lines have no sides: they show their colour as it is.
void SceneView::Impl::drawLines(ScenePasses& passes, SurfaceUniforms values)
{
    values.ambient = 1;
    values.diffuse[0] = values.diffuse[1] = 0;
    const DrawnNearer nearer(camera, 1, values);
    const LinesAreFilled filled(drawState);
    use(pieceFeatures() | widen(values, drawnLook.lineWidth), values);
    passes.lines(PartShow::Opaque);
}

// What draws the layers together knows no cutting plane.
void SceneView::Impl::drawTransparent(ScenePasses& passes, const SurfaceUniforms& values)
{
    const auto drawOpaque = [&] {
        use(UniformColor | FlatLight, values);
        passes.faces(PartShow::Opaque, !slices());
        drawCaps(passes, PartShow::Opaque, UniformColor | FlatLight, values);
        glDisable(GL_CLIP_DISTANCE0);
    };
    const auto drawLines = [&](PartShow show, unsigned int features, SurfaceUniforms lines) {
        const LinesAreFilled filled(drawState);
        use(features | widen(lines, drawnLook.lineWidth) | Layers, lines);
        passes.lines(show);
    };
    const auto drawLayers = [&] {
        use(faceFeatures() | Layers, values);
        state.bindVertexColors();
        passes.faces(PartShow::Transparent, false);
        SceneState::unbindVertexColors();
        drawCaps(passes, PartShow::Transparent, pieceFeatures() | Layers, values);
        drawLines(PartShow::Transparent, pieceFeatures(), values);
        SurfaceUniforms ghost = values;
        std::copy(drawnLook.ghostColor, drawnLook.ghostColor + 4, ghost.color);
        use(UniformColor | FlatLight | Layers, ghost);
        passes.faces(PartShow::Ghost, false);
        drawLines(PartShow::Ghost, UniformColor | FlatLight, ghost);
        glDisable(GL_CLIP_DISTANCE0);
        fences.keep();
    };
    fences.keep();
    layers.draw(camera.viewport, drawOpaque, drawLayers);
}

} // namespace kvo
