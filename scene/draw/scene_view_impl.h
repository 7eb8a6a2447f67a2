// What a SceneView holds. Private to scene/draw.
#ifndef KVO_SCENE_SCENE_VIEW_IMPL_H
#define KVO_SCENE_SCENE_VIEW_IMPL_H

#include <vector>

#include "number_picture.h"
#include "scene_camera.h"
#include "scene_geometry.h"
#include "scene_passes.h"
#include "scene_state.h"
#include "scene_view.h"
#include "surface_program.h"
#include "transparency.h"

namespace kvo {

// Upper end of the depth range of nodes and lines that lie on faces: they are drawn a little nearer.
constexpr double nearerDepth = 0.9995;

// What the geometry was built for; it is built anew when this changes.
struct GeometryKey
{
    bool smooth = false;
    NormalSource source = NormalSource::Geometry;
    float featureAngle = 0;
    const PartInfoStr* list = nullptr;
    unsigned int parts = 0;
    const PartInfoStr* segment = nullptr;

    bool operator==(const GeometryKey& o) const
    {
        return smooth == o.smooth && source == o.source && featureAngle == o.featureAngle && list == o.list &&
               parts == o.parts && segment == o.segment;
    }
};

struct SceneView::Impl
{
    explicit Impl(CAEEnv& environment); // throws std::runtime_error when the context cannot do it

    void readGeometry(const SceneLook& look);
    void pushShiftedMatrix();
    SurfaceUniforms uniformsOf(const SceneLook& look) const;
    unsigned int features(bool smooth) const;
    void drawSurfaces(const SceneLook& look, ScenePasses& passes);
    void drawEdges(const SceneLook& look, ScenePasses& passes, const SurfaceUniforms& uniforms);
    void drawLines(const SceneLook& look, ScenePasses& passes, SurfaceUniforms uniforms);
    void drawTransparent(const SceneLook& look, ScenePasses& passes, const SurfaceUniforms& uniforms);

    // number_picture.cpp: the last frame once more, for visible_picker.h.
    NumberPicture drawNumbers(const PixelBox& box);
    void drawNumberedPieces(const PixelBox& box);

    CAEEnv& env;
    bool geometryDirty = true;
    GeometryKey key;
    std::vector<ElementMask> absent;
    SceneGeometry geometry;
    SceneState state;
    SurfacePrograms programs;
    TransparentLayers layers;
    SceneCamera camera;  // of the last frame
    SceneLook drawnLook; // likewise
    SceneFrameStats stats;
};

} // namespace kvo

#endif
