// Frames in a given time while the view moves.
#include <chrono>

#include "scene_view_impl.h"

namespace kvo {

namespace {

double millisecondsNow()
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::size_t faceCount(const SceneGeometry& geometry)
{
    std::size_t out = 0;
    for (const FaceKind kind : {Triangles, Quads}) {
        for (const SurfaceBlock& block : geometry.blocks(kind)) {
            out += block.indexCount / indicesOfFace(kind);
        }
    }
    return out;
}

} // namespace

// A frame's time goes with its faces: as many are drawn as fit the budget, with some room. Without a measured frame the
// first one of a movement is exact, and measured.
CoarseSurface* SceneView::Impl::chooseSurface()
{
    frameStart = millisecondsNow();
    const float budget = drawnLook.frameBudget;
    if (!drawnLook.moving || !(budget > 0) || exactFrameMs <= budget) {
        return nullptr;
    }
    const double room = 0.7;
    coarse.build(geometry, static_cast<std::size_t>(double(faceCount(geometry)) * room * budget / exactFrameMs));
    stats.coarse = true;
    return &coarse;
}

PixelSieve* SceneView::Impl::chooseSieve()
{
    const GLint* mode = drawState.polygonMode;
    const bool filled = mode[0] == GL_FILL && mode[1] == GL_FILL && drawnLook.style == SceneStyle::Shaded;
    const bool shifted = drawnLook.pixelShift[0] != 0 || drawnLook.pixelShift[1] != 0; // off the pixels' middles
    if (!filled || shifted || drawState.isOn(GL_POLYGON_SMOOTH) || faceCount(geometry) < PixelSieve::fewFaces ||
        !onProcessor) {
        return nullptr;
    }
    GLint samples = 0;
    glGetIntegerv(GL_SAMPLES, &samples);
    return samples == 0 ? &sieve : nullptr;
}

// Waiting for OpenGL costs a little, so it is done only where a budget asks for it.
void SceneView::Impl::endTiming()
{
    if (drawnLook.frameBudget > 0 && !stats.coarse) {
        fences.keep();
        glFinish();
        exactFrameMs = millisecondsNow() - frameStart;
    }
}

} // namespace kvo
