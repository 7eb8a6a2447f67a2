#include "region_test.h"

#include <algorithm>
#include <cmath>

namespace kvo {

namespace {

// A pixel where a size is none, or not a number.
float sizeOf(float size)
{
    return size > 0 && std::isfinite(size) ? size : 1;
}

// One axis of a polygon's rectangle, cut to the window; no size where they do not meet.
void cutToWindow(float& middle, float& size, int start, int length)
{
    const double low = std::max<double>(start, static_cast<double>(middle) - size / 2.0);
    const double high = std::min<double>(static_cast<double>(start) + length, static_cast<double>(middle) + size / 2.0);
    middle = static_cast<float>((low + high) / 2);
    size = static_cast<float>(std::max(0.0, high - low));
}

// Gauss and Jordan with the largest pivot. Columns of a singular matrix are left as they stand.
void invert(const float* matrix, double* inverse)
{
    double rows[4][8] = {};
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            rows[row][column] = matrix[4 * column + row];
        }
        rows[row][4 + row] = 1;
    }
    for (int pivot = 0; pivot < 4; ++pivot) {
        const auto largest = std::max_element(rows + pivot, rows + 4, [pivot](const double* a, const double* b) {
            return std::fabs(a[pivot]) < std::fabs(b[pivot]);
        });
        std::swap_ranges(*largest, *largest + 8, rows[pivot]);
        if (rows[pivot][pivot] == 0) {
            continue;
        }
        const double scale = 1 / rows[pivot][pivot];
        std::for_each(rows[pivot], rows[pivot] + 8, [scale](double& value) { value *= scale; });
        for (int row = 0; row < 4; ++row) {
            const double factor = rows[row][pivot];
            for (int column = 0; row != pivot && column < 8; ++column) {
                rows[row][column] -= factor * rows[pivot][column];
            }
        }
    }
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            inverse[4 * column + row] = rows[row][4 + column];
        }
    }
}

// How far the volume is widened to find the place of a hit that single precision has just so let in.
constexpr double slacks[] = {0, 1e-6, 1e-4, 1e-2, 1};

} // namespace

// Corners of an element by slot, and the outcodes that any and all of those that count have.
struct RegionTest::Corners
{
    ClipPoint points[8];
    std::uint8_t codes[8];
    unsigned int any = 0;
    unsigned int all = 0xFF;
};

PickRegion effectiveRegion(const PickRegion& region, const PickView& view)
{
    PickRegion effective = region;
    if (region.isPolygon()) {
        cutToWindow(effective.x, effective.width, view.viewport[0], view.viewport[2]);
        cutToWindow(effective.y, effective.height, view.viewport[1], view.viewport[3]);
        if (!(effective.width > 0 && effective.height > 0)) {
            effective.outline.clear(); // outside the window, or no area
        }
    }
    effective.width = sizeOf(effective.width);
    effective.height = sizeOf(effective.height);
    return effective;
}

RegionTest::RegionTest(const PickRegion& wanted, const PickView& view)
    : region(effectiveRegion(wanted, view)), space(region, view)
{
    if (region.isPolygon()) {
        outline.emplace(region);
    }
    invert(space.matrix, inverse);
}

Overlap RegionTest::overlap(const FloatBox& modelBox) const
{
    const Overlap found = space.overlap(modelBox);
    if (!outline || found == Overlap::Outside || !space.affine) {
        return found == Overlap::Inside && outline ? Overlap::Partly : found;
    }
    const FloatBox box = space.fromOrigin(modelBox);
    double low[2], high[2];
    for (int row = 0; row < 2; ++row) {
        double middle = space.matrix[12 + row], reach = 0;
        for (int axis = 0; axis < 3; ++axis) {
            const double m = space.matrix[4 * axis + row];
            middle += m * (static_cast<double>(box.low[axis]) + box.high[axis]) / 2;
            reach += std::fabs(m) * (static_cast<double>(box.high[axis]) - box.low[axis]) / 2;
        }
        low[row] = middle - reach;
        high[row] = middle + reach;
    }
    const Overlap inArea = outline->overlap({low[0], low[1]}, {high[0], high[1]});
    return inArea == Overlap::Outside || found == Overlap::Inside ? inArea : Overlap::Partly;
}

void RegionTest::addNode(const PartMesh& part, std::uint32_t node, DepthMinimum& found) const
{
    const ClipPoint point = space.transform(positionOf(part, node));
    if (outcodeOf(point) != outsideNowhere) {
        return;
    }
    if (!outline ||
        outline->contains({static_cast<double>(point.x) / point.w, static_cast<double>(point.y) / point.w})) {
        found.add(windowDepthOf(point));
    }
}

void RegionTest::addThirdNode(const PartMesh& part, std::uint32_t element, DepthMinimum& found) const
{
    const std::uint32_t node = thirdNodeOf(part, element);
    if (node != noCorner) {
        addNode(part, node, found);
    }
}

void RegionTest::place(const PartMesh& part, const unsigned int* slots, const PickForm& form, Corners& corners) const
{
    for (unsigned int k = 0; k < form.corners; ++k) {
        const unsigned int slot = form.cornerSlots[k];
        corners.points[slot] = space.transform(positionOf(part, slots[slot]));
        corners.codes[slot] = outcodeOf(corners.points[slot]);
        corners.any |= corners.codes[slot];
        corners.all &= corners.codes[slot];
    }
}

void RegionTest::addElement(const PartMesh& part, std::uint32_t element, const PickForm& form,
                            DepthMinimum& found) const
{
    Corners corners;
    const unsigned int* slots = slotsOf(part, element);
    place(part, slots, form, corners);
    if (corners.all != 0) {
        return;
    }
    const Overlap inside = outline ? overlapOf(corners, form) : Overlap::Inside;
    if (corners.any == outsideNowhere && inside == Overlap::Inside) {
        for (unsigned int k = 0; k < form.corners; ++k) {
            found.add(windowDepthOf(corners.points[form.cornerSlots[k]]));
        }
    } else if (!outline) {
        addFaces(corners, form, found);
    } else if (inside != Overlap::Outside) {
        const NearestPoint nearest = nearestOf(part, slots, form, nearbyOf(corners, form), 0);
        if (nearest.found) {
            found.add(static_cast<float>(nearest.z / 2 + 0.5));
        }
    }
}

// The rectangle around an element; false where it has none, because a corner may be behind the eye or is no number.
bool RegionTest::surround(const Corners& corners, const PickForm& form, PlanePoint& low, PlanePoint& high) const
{
    if (!space.affine || (corners.any & notFinite) != 0) {
        return false;
    }
    const ClipPoint& first = corners.points[form.cornerSlots[0]];
    low = high = {first.x, first.y};
    for (unsigned int k = 1; k < form.corners; ++k) {
        const ClipPoint& point = corners.points[form.cornerSlots[k]];
        low = {std::min<double>(low.x, point.x), std::min<double>(low.y, point.y)};
        high = {std::max<double>(high.x, point.x), std::max<double>(high.y, point.y)};
    }
    return true;
}

// How an element lies in the polygon.
Overlap RegionTest::overlapOf(const Corners& corners, const PickForm& form) const
{
    PlanePoint low, high;
    return surround(corners, form, low, high) ? outline->overlap(low, high) : Overlap::Partly;
}

AreaNearby RegionTest::nearbyOf(const Corners& corners, const PickForm& form) const
{
    AreaNearby nearby = {nullptr, {}};
    if (outline) {
        PlanePoint low = {-1, -1}, high = {1, 1};
        surround(corners, form, low, high);
        nearby.area = &*outline;
        outline->edgesNear(low, high, nearby.edges);
    }
    return nearby;
}

// Faces as OpenGL draws quadrilaterals: two triangles, corners 1 2 4 and 2 3 4.
void RegionTest::addFaces(const Corners& corners, const PickForm& form, DepthMinimum& found) const
{
    const ClipPoint* p = corners.points;
    const std::uint8_t* codes = corners.codes;
    if (form.line) {
        clipLine(p, codes, found);
    }
    for (unsigned int k = 0; k < form.faces; ++k) {
        const std::uint8_t* s = form.face[k].slots;
        const std::uint8_t first[] = {codes[s[0]], codes[s[1]], codes[s[3]]};
        const std::uint8_t second[] = {codes[s[1]], codes[s[2]], codes[s[3]]};
        clipTriangle(p[s[0]], p[s[1]], p[s[3]], first, found);
        clipTriangle(p[s[1]], p[s[2]], p[s[3]], second, found);
    }
}

ClipPosition RegionTest::exactly(const float* point) const
{
    double sums[4];
    for (int row = 0; row < 4; ++row) {
        sums[row] = space.matrix[12 + row];
        for (int axis = 0; axis < 3; ++axis) {
            sums[row] += static_cast<double>(space.matrix[4 * axis + row]) * (double(point[axis]) - space.origin[axis]);
        }
    }
    return {sums[0], sums[1], sums[2], sums[3]};
}

NearestPoint RegionTest::nearestOf(const PartMesh& part, const unsigned int* slots, const PickForm& form,
                                   const AreaNearby& nearby, double slack) const
{
    NearestPoint nearest;
    ClipPosition corners[8] = {};
    bool finite[8] = {};
    for (unsigned int k = 0; k < form.corners; ++k) {
        const unsigned int slot = form.cornerSlots[k];
        const float* point = positionOf(part, slots[slot]);
        corners[slot] = exactly(point);
        finite[slot] = std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]);
    }
    if (form.line && finite[0] && finite[1]) {
        addNearestPoint(corners, 2, nearby, slack, nearest);
    }
    for (unsigned int k = 0; k < form.faces; ++k) {
        const std::uint8_t* s = form.face[k].slots;
        for (int half = 0; half < 2; ++half) {
            const ClipPosition triangle[] = {corners[s[half]], corners[s[half + 1]], corners[s[3]]};
            if (finite[s[half]] && finite[s[half + 1]] && finite[s[3]]) {
                addTriangle(triangle, nearby, slack, nearest);
            }
        }
    }
    return nearest;
}

// Most triangles of an element need no cutting: they lie behind what was found, or beside the polygon.
void RegionTest::addTriangle(const ClipPosition* c, const AreaNearby& nearby, double slack, NearestPoint& nearest) const
{
    if (space.affine) {
        if (nearest.found && std::min({c[0].z, c[1].z, c[2].z}) >= nearest.z) {
            return;
        }
        const PlanePoint low = {std::min({c[0].x, c[1].x, c[2].x}), std::min({c[0].y, c[1].y, c[2].y})};
        const PlanePoint high = {std::max({c[0].x, c[1].x, c[2].x}), std::max({c[0].y, c[1].y, c[2].y})};
        if (outline && outline->overlap(low, high) == Overlap::Outside) {
            return;
        }
    }
    addNearestPoint(c, 3, nearby, slack, nearest);
}

void RegionTest::toWindow(const NearestPoint& point, double* window) const
{
    window[0] = region.x + point.x * region.width / 2;
    window[1] = region.y + point.y * region.height / 2;
    window[2] = point.z / 2 + 0.5;
}

void RegionTest::toModel(const NearestPoint& point, double* position) const
{
    double sums[4];
    for (int row = 0; row < 4; ++row) {
        sums[row] =
            inverse[row] * point.x + inverse[4 + row] * point.y + inverse[8 + row] * point.z + inverse[12 + row];
    }
    for (int axis = 0; axis < 3; ++axis) {
        position[axis] = sums[axis] / sums[3] + space.origin[axis];
    }
}

void RegionTest::locate(const PartMesh& part, std::uint32_t node, double* window, double* position) const
{
    const float* point = positionOf(part, node);
    const ClipPosition clip = exactly(point);
    NearestPoint nearest;
    nearest.add(clip.x / clip.w, clip.y / clip.w, clip.z / clip.w);
    toWindow(nearest, window);
    std::copy_n(point, 3, position);
}

void RegionTest::locate(const PartMesh& part, std::uint32_t element, const PickForm& form, bool withThirdNode,
                        double* window, double* position) const
{
    const unsigned int* slots = slotsOf(part, element);
    Corners corners;
    place(part, slots, form, corners);
    DepthMinimum ofElement, ofNode;
    if (withThirdNode && thirdNodeOf(part, element) != noCorner) {
        addElement(part, element, form, ofElement);
        addThirdNode(part, element, ofNode);
        if (ofNode.hit && (!ofElement.hit || ofNode.depth < ofElement.depth)) {
            locate(part, thirdNodeOf(part, element), window, position);
            return;
        }
    }
    if (corners.any == outsideNowhere && (!outline || overlapOf(corners, form) == Overlap::Inside)) {
        unsigned int best = form.cornerSlots[0];
        for (unsigned int k = 1; k < form.corners; ++k) {
            const unsigned int slot = form.cornerSlots[k];
            best = windowDepthOf(corners.points[slot]) < windowDepthOf(corners.points[best]) ? slot : best;
        }
        locate(part, slots[best], window, position);
        return;
    }
    NearestPoint nearest;
    const AreaNearby nearby = nearbyOf(corners, form);
    for (std::size_t k = 0; k < std::size(slacks) && !nearest.found; ++k) {
        nearest = nearestOf(part, slots, form, nearby, slacks[k]);
    }
    if (!nearest.found) {
        locate(part, slots[form.cornerSlots[0]], window, position);
        return;
    }
    toWindow(nearest, window);
    toModel(nearest, position);
}

} // namespace kvo
