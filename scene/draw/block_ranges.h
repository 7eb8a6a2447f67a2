// Which blocks of faces are drawn in a frame, as ranges of the index arrays.
#ifndef KVO_SCENE_BLOCK_RANGES_H
#define KVO_SCENE_BLOCK_RANGES_H

#include <vector>

#include "gl_objects.h"
#include "surface_mesh.h"

namespace kvo {

// Tells whether a box can be inside the view: not wholly beyond one of the six planes.
class ViewVolume
{
public:
    // Column-major, as OpenGL has them; their product takes the boxes' coordinates to clip coordinates.
    ViewVolume(const double modelview[16], const double projection[16]);

    bool mayShow(const float low[3], const float high[3]) const;

private:
    double rows[4][4]; // of the product
};

// Ranges for glMultiDrawElements; neighbours are joined.
struct DrawRanges
{
    std::vector<GLsizei> counts;
    std::vector<const void*> offsets;
    std::size_t nextIndex = 0; // behind the last range

    void add(std::size_t firstIndex, std::size_t indexCount);
    void clear();
    bool empty() const { return counts.empty(); }
    std::size_t indexCount() const;
};

} // namespace kvo

#endif
