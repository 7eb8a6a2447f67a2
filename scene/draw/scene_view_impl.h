// What a SceneView holds. Private to scene/draw.
#ifndef KVO_SCENE_SCENE_VIEW_IMPL_H
#define KVO_SCENE_SCENE_VIEW_IMPL_H

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "drawing_fences.h"
#include "element_colors.h"
#include "gl_state.h"
#include "id_labels.h"
#include "number_picture.h"
#include "overlay_painter.h"
#include "scene_camera.h"
#include "scene_geometry.h"
#include "scene_passes.h"
#include "scene_state.h"
#include "section_caps.h"
#include "shown_parts.h"
#include "surface_lines.h"
#include "surface_program.h"
#include "transparency.h"
#include <kvo/coloring.h>
#include <kvo/scene_view.h>

namespace kvo {

class ContractFrame;

// What the geometry was built for; it is built anew when this changes.
struct GeometryKey
{
    bool smooth = false;
    NormalSource source = NormalSource::Geometry;
    float featureAngle = 0;
    std::array<const void*, 3> model = {};
    std::vector<const void*> hidden; // a part's marks of hidden elements
    bool withoutRemoved = false;     // whole elements are cut away, by this plane
    double plane[4] = {0, 0, 0, 0};

    bool operator==(const GeometryKey& o) const
    {
        return smooth == o.smooth && source == o.source && featureAngle == o.featureAngle && model == o.model &&
               hidden == o.hidden && withoutRemoved == o.withoutRemoved && std::equal(plane, plane + 4, o.plane);
    }
};

struct [[gnu::visibility("hidden")]] SceneView::Impl
{
    explicit Impl(ShownModel shownModel); // throws std::runtime_error when the context cannot do it

    void requireLoaded() const;
    void drawFrame();
    void readGeometry();
    void startFrame();
    void findGoneElements(const GeometryKey& wanted);
    bool isFar() const; // the geometry is relative to an origin of its own
    void setMatrices();
    Box drawnBox() const; // of what a frame may draw
    void drawBoxes();

    // scene_surfaces.cpp: passes over the model with drawnLook.
    bool slices() const; // everything ends at the section plane
    SurfaceUniforms uniforms() const;
    void use(unsigned int features, const SurfaceUniforms& values); // and what the section needs
    void useUncut(unsigned int features, const SurfaceUniforms& values);
    unsigned int faceFeatures() const;
    unsigned int pieceFeatures() const;
    unsigned int elementFeatures() const;
    bool seesBacks() const; // faces seen from behind must be drawn
    void drawSurfaces(ScenePasses& passes);
    void drawFaces(ScenePasses& passes, const SurfaceUniforms& values);
    unsigned int widen(SurfaceUniforms& values, float width) const; // features of lines so wide
    void drawEdges(ScenePasses& passes, const SurfaceUniforms& values);
    void drawSurfaceLines(ScenePasses& passes, const SurfaceUniforms& values);
    void drawLines(ScenePasses& passes, SurfaceUniforms values);
    void drawTransparent(ScenePasses& passes, const SurfaceUniforms& values);
    void drawCaps(ScenePasses& passes, PartShow show, unsigned int features, const SurfaceUniforms& values);

    // motion.cpp: the surface for this frame, null for the exact one, and how long that takes.
    CoarseSurface* chooseSurface();
    // The sieve, where faces are drawn on the processor, filled and without multisampling; else null.
    PixelSieve* chooseSieve();
    void endTiming();

    void drawSelectedNodes();          // selected_nodes.cpp
    void drawTexts();                  // axes, labels and legend over the finished frame
    std::vector<IdLabel> visibleIds(); // visible_ids.cpp

    // number_picture.cpp: the last frame once more, for visible_picker.h.
    NumberPicture drawNumbers(const PixelBox& box);
    void drawNumberedPieces(const PixelBox& box, bool rims); // rims: of faces only the sides

    ShownModel model;
    std::unique_ptr<ContractFrame> contract; // null for a ModelView
    DrawingFences fences;
    bool geometryDirty = true;
    GeometryKey key;
    std::vector<ElementMask> absent; // as the host said
    std::vector<ElementMask> gone;   // and those that the section takes away
    SceneGeometry geometry;
    GlBuffer boxLines;
    std::vector<float> nodePoints; // of selected nodes, as they are in the buffer
    GlBuffer nodeVertices;
    SectionCaps caps;
    SurfaceLines surfaceLines;
    Coloring coloring;
    ElementColorTexture elementColors;
    OverlayPainter overlay;
    SceneState state;
    SurfacePrograms programs;
    TransparentLayers layers;
    PixelSieve sieve;
    const bool onProcessor; // OpenGL draws there
    HostState hostState = HostState::Restore;
    GlVertexArray vertexArray;
    GlState drawState;               // from which the frame started
    SceneLook look;                  // of the next frame, as the host has it
    std::optional<Camera> ownCamera; // else the environment's MView and MTransform
    SceneCamera camera;              // of the last frame
    SceneLook drawnLook;             // likewise
    SceneFrameStats stats;
    CoarseSurface coarse;
    double frameStart = 0;   // milliseconds
    double exactFrameMs = 0; // of the last exact frame; 0 before
};

} // namespace kvo

#endif
