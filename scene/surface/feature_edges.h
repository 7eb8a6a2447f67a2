// Edges of a surface that tell its shape: sharp ones, free ones, and those where more than two faces meet.
#ifndef KVO_SCENE_FEATURE_EDGES_H
#define KVO_SCENE_FEATURE_EDGES_H

#include <cstdint>
#include <vector>

#include "surface_faces.h"
#include <kvo/part_mesh.h>

namespace kvo {

struct SurfaceEdge
{
    std::uint32_t nodes[2]; // of the part, ascending
    std::uint32_t element;  // of one of its faces
};

struct SurfaceEdges
{
    std::vector<SurfaceEdge> feature;   // two faces that turn more than the feature angle
    std::vector<SurfaceEdge> free;      // one face
    std::vector<SurfaceEdge> branching; // more than two faces
};

// Each edge once, in an order that is the same every time. featureAngle: degrees, between the normals of the two faces
// as if both had the same winding. Faces without area turn nowhere. Runs on all cores; O(faces).
SurfaceEdges findEdges(const PartMesh& part, const PartSurface& surface, float featureAngle);

} // namespace kvo

#endif
