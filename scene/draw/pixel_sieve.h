// Faces smaller than pixels: most of them lie between the pixels' middles and draw nothing. Where OpenGL draws on the
// processor it spends as long on such a face as on any other; here they are found much faster, on all cores.
#ifndef KVO_SCENE_PIXEL_SIEVE_H
#define KVO_SCENE_PIXEL_SIEVE_H

#include <cstdint>
#include <vector>

#include "gl_objects.h"
#include "scene_camera.h"
#include "scene_geometry.h"
#include "surface_mesh.h"

namespace kvo {

// Is OpenGL's context one that draws on the processor?
bool drawsOnProcessor();

// From coordinates of a geometry to the window's, by a parallel projection.
struct WindowMap
{
    float x[4], y[4]; // pixels: dot(x, (position, 1))
    double margin[2]; // by how much OpenGL's own single precision may differ, in pixels; at least 1/64
    bool usable = false;

    WindowMap() = default;
    // reach: the largest coordinates by amount. Not usable for a projection that is not parallel, and where single
    // precision cannot tell pixels apart.
    WindowMap(const SceneCamera& camera, const double origin[3], const double reach[3]);
};

// The faces that may hold the middle of a pixel, filled: all indices of each, in the order of the blocks. Faces of
// blocks with several pixels a face are kept without a look. One list per piece of the work.
std::vector<std::vector<std::uint32_t>> facesOnPixels(const SurfaceVertex* vertices, const std::uint32_t* indices,
                                                      FaceKind kind, const std::vector<const SurfaceBlock*>& blocks,
                                                      const WindowMap& map);

// Are these so many faces in so few pixels that looking for those on pixels pays?
bool sievePays(const std::vector<const SurfaceBlock*>& blocks, FaceKind kind, const WindowMap& map);

// Draws what is left of the blocks. One buffer serves all frames.
class PixelSieve
{
public:
    static constexpr std::size_t notDrawn = static_cast<std::size_t>(-1);
    static constexpr std::size_t fewFaces = 50000; // are drawn before they are looked through

    // The number of faces drawn, or notDrawn where it does not pay. The geometry's vertices must be bound.
    std::size_t draw(const SceneGeometry& geometry, FaceKind kind, const std::vector<const SurfaceBlock*>& blocks,
                     const SceneCamera& camera);

private:
    GlBuffer indices;
};

} // namespace kvo

#endif
