// Which elements and nodes of a part lie in a pick region, and how near.
#ifndef KVO_SCENE_REGION_TEST_H
#define KVO_SCENE_REGION_TEST_H

#include <optional>

#include "nearest_point.h"
#include "pick_elements.h"
#include "pick_volume.h"

namespace kvo {

// The region that is really looked at: of a size, and a polygon's rectangle cut to the window.
PickRegion effectiveRegion(const PickRegion& region, const PickView& view);

class RegionTest
{
public:
    RegionTest(const PickRegion& region, const PickView& view);

    // Nothing can be hit.
    bool empty() const { return outline && outline->empty(); }
    const PickVolume& volume() const { return space; }
    bool isPolygon() const { return outline.has_value(); }

    Overlap overlap(const FloatBox& box) const;

    // A node, or what an element consists of. form must be pickFormOf(part, element).
    void addNode(const PartMesh& part, std::uint32_t node, DepthMinimum& found) const;
    void addElement(const PartMesh& part, std::uint32_t element, const PickForm& form, DepthMinimum& found) const;
    // The third node of a beam, if there is one.
    void addThirdNode(const PartMesh& part, std::uint32_t element, DepthMinimum& found) const;

    // The nearest point of a hit entity in window and model coordinates.
    void locate(const PartMesh& part, std::uint32_t node, double* window, double* position) const;
    void locate(const PartMesh& part, std::uint32_t element, const PickForm& form, bool withThirdNode, double* window,
                double* position) const;

private:
    struct Corners;
    void place(const PartMesh& part, const unsigned int* slots, const PickForm& form, Corners& corners) const;
    bool surround(const Corners& corners, const PickForm& form, PlanePoint& low, PlanePoint& high) const;
    Overlap overlapOf(const Corners& corners, const PickForm& form) const;
    void addFaces(const Corners& corners, const PickForm& form, DepthMinimum& found) const;
    ClipPosition exactly(const float* point) const;
    NearestPoint nearestOf(const PartMesh& part, const unsigned int* slots, const PickForm& form,
                           const AreaNearby& nearby, double slack) const;
    void addTriangle(const ClipPosition* corners, const AreaNearby& nearby, double slack, NearestPoint& nearest) const;
    AreaNearby nearbyOf(const Corners& corners, const PickForm& form) const;
    void toWindow(const NearestPoint& point, double* window) const;
    void toModel(const NearestPoint& point, double* position) const;

    PickRegion region;
    PickVolume space;
    std::optional<PolygonArea> outline;
    double inverse[16]; // clip to model coordinates
};

} // namespace kvo

#endif
