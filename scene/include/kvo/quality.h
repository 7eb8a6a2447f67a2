// Numbers for the quality of element shapes, for triangles, quadrilaterals, tetrahedra, pyramids, wedges, hexahedra and
// whatever else a hexahedron with repeated corners gives. All are independent of place, orientation and size.
//
// No result is ever NaN or infinite. Where corners coincide and where there is no area or no volume, ratios give
// worstRatio, skew 1, angles 0 and 180, the scaled Jacobian 0, as far as the formula is touched by it. Coordinates that
// are no numbers give the measure's worst value. Lines and elements that cannot be drawn have no quality: noQuality.
#ifndef KVO_SCENE_QUALITY_H
#define KVO_SCENE_QUALITY_H

#include <cstdint>

#include <kvo/part_mesh.h>
#include <kvoexport.h>

namespace kvo {

enum class Quality
{
    // 1 best, up to worstRatio. Triangles: longest side / (2 sqrt 3 x radius of the inscribed circle). Quadrilaterals:
    // longest side x perimeter / (4 x area). Tetrahedra: longest edge / (2 sqrt 6 x radius of the inscribed sphere).
    // These are the aspect ratios of the Verdict geometric quality library's reference manual (Sandia, 2007); it has
    // none for pyramids, wedges and hexahedra, which get the edge ratio. A 1 x 2 rectangle has 1.5.
    AspectRatio,
    // Longest edge / shortest edge, 1 best, up to worstRatio. A 1 x 2 rectangle has 2.
    EdgeRatio,
    // Equiangular skew, 0 best to 1: the largest over all corners of all faces of (angle - ideal) / (180 - ideal) and
    // (ideal - angle) / ideal, with the ideal 60 degrees in triangles and 90 in quadrilaterals. The usual definition of
    // flow meshers.
    Skew,
    // Degrees, 0 (flat) best to 180, the worst over all quadrilateral faces: the larger of the angles between the two
    // triangles that either diagonal cuts the face into. With w this angle, the manual named above calls 1 - cos(w)^3
    // the warpage. 0 for triangles and tetrahedra, and for a diagonal with a triangle that has no area.
    Warpage,
    // Degrees; smallest and largest corner angle of all faces, 0 and 180 worst. An angle is never larger than 180:
    // re-entrant corners show in the scaled Jacobian.
    MinAngle,
    MaxAngle,
    // Minimum scaled Jacobian, 1 best to -1; 0 or less cannot be computed with. The smallest over the corners of the
    // determinant of the unit edge vectors that meet there (solids), or of the sine of the corner angle, negative at
    // re-entrant corners (quadrilaterals). Scaled so that the regular shape has 1: triangles and wedges by 2 / sqrt 3,
    // tetrahedra and pyramids by sqrt 2. Hexahedra count their principal axes at the centre too; pyramids count every
    // three neighbouring edges at the apex. As in the manual named above, which has no pyramids and wedges there; other
    // collapsed hexahedra count the corners that kept three edges. Solids whose nodes are numbered inside out are
    // negative; a shell has no inside, so triangles and convex quadrilaterals never are.
    ScaledJacobian
};

constexpr unsigned int qualityCount = 7;
constexpr float noQuality = -2.0f;   // no measure's value
constexpr float worstRatio = 1.0e6f; // ratios are cut off here

struct QualityInfo
{
    const char* name; // lower case with hyphens, for options and legends: "aspect-ratio"
    const char* unit; // "degrees" or ""
    float best;
    float worst;
};

KVO_EXPORT const QualityInfo& qualityInfo(Quality quality);

// One number per element of the part into out (numElements / nodesPerElement entries, partstr.h). A part without nodes
// or indices is left alone and writes nothing. Runs on all cores.
KVO_EXPORT void elementQuality(const PartMesh& part, Quality quality, float* out);

// The same for one element; noQuality for a position outside the part.
KVO_EXPORT float elementQuality(const PartMesh& part, Quality quality, std::uint32_t element);

} // namespace kvo

#endif
