// The passes of a frame over faces and lines: which pieces of which parts, and the calls that draw them.
#ifndef KVO_SCENE_SCENE_PASSES_H
#define KVO_SCENE_SCENE_PASSES_H

#include <functional>
#include <vector>

#include "block_ranges.h"
#include "coarse.h"
#include "pixel_sieve.h"
#include "scene_camera.h"
#include "scene_geometry.h"
#include "shown_parts.h"
#include "surface_program.h"
#include <kvo/scene_view.h>

namespace kvo {

// How a part takes part in a frame.
enum class PartShow : char
{
    No,
    Opaque,
    Transparent,
    Ghost
};

std::vector<PartShow> partsToShow(const std::vector<ShownPart>& shown, const SceneGeometry& geometry, bool ghosts);

// Draws pieces of one geometry with the matrices that are current (model coordinates relative to the geometry's
// origin).
class ScenePasses
{
public:
    ScenePasses(const SceneGeometry& sceneGeometry, const SceneCamera& sceneCamera, const std::vector<PartShow>& parts,
                SceneFrameStats& frameStats);

    // From now on faces are those of a coarser surface of the same geometry; null: its own.
    void useCoarse(const CoarseSurface* surface) { coarse = surface; }
    // From now on filled faces between the pixels' middles are left out where that is quicker; null: none. What is
    // drawn must fill single samples.
    void useSieve(PixelSieve* pixelSieve) { sieve = pixelSieve; }

    // Faces of the parts that are shown so. Faces seen from behind are left out where the surface is closed; filled:
    // only then. Returns whether there were any.
    // prepare: called before the faces of a kind.
    bool faces(PartShow show, bool cullClosed, const std::function<void(FaceKind)>& prepare = {});
    // The faces' edges, which the geometry or the coarser surface has made. Also those on far sides.
    bool edges(PartShow show);
    bool lines(PartShow show);
    // Triangles or lines of another buffer of SurfaceVertex.
    bool pieces(const GlBuffer& vertices, const std::vector<VertexRange>& ranges, GLenum mode, PartShow show);
    bool any(PartShow show) const;

private:
    std::vector<const SurfaceBlock*> visibleBlocks(FaceKind kind, PartShow show, bool closedOnly);
    bool drawBlocks(FaceKind kind, const std::vector<const SurfaceBlock*>& blocks);
    void drawRanges(FaceKind kind, const DrawRanges& ranges);
    bool drawEdges(FaceKind kind, PartShow show);

    const SceneGeometry& geometry;
    const std::vector<PartShow>& parts;
    SceneFrameStats& stats;
    ViewVolume volume;
    const SceneCamera& camera;
    const CoarseSurface* coarse = nullptr;
    PixelSieve* sieve = nullptr;
};

} // namespace kvo

#endif
