// Distances, angles, lengths, areas and volumes on a model. Everything is computed in double precision from the
// records' coordinates; units are those of the model (length, length^2, length^3), angles are in degrees.
//
// Nodes and elements are addressed by part record and 0-based position (pick results and selection calls of the
// environment count from 1). A position outside the part gives the result that each function names for it.
#ifndef KVO_SCENE_MEASURE_H
#define KVO_SCENE_MEASURE_H

#include <cstdint>

#include <kvo/part_mesh.h>
#include <kvoexport.h>

namespace kvo {

// A place or a difference of two places, in model coordinates.
struct Vector3
{
    double x = 0, y = 0, z = 0;
};

// The node's place; false (place unchanged) where the part has no such node.
KVO_EXPORT bool nodePlace(const PartMesh& part, std::uint32_t node, Vector3& place);

struct Distance
{
    double length = 0;
    double dx = 0, dy = 0, dz = 0; // to - from
};

KVO_EXPORT Distance distanceOf(const Vector3& from, const Vector3& to);

// The angle at `middle` between the directions to the two ends, 0 to 180 degrees. 0 where an end lies on the middle.
KVO_EXPORT double angleOf(const Vector3& end, const Vector3& middle, const Vector3& otherEnd);

struct Circle
{
    Vector3 centre;
    Vector3 axis; // unit length
    double radius = 0;
};

// The circle through three points. False (circle unchanged) where they lie on one line, within the rounding of single
// precision coordinates, or coincide: there is no circle or no unique one.
KVO_EXPORT bool circleThrough(const Vector3& a, const Vector3& b, const Vector3& c, Circle& circle);

// What an element measures. Values that its kind does not have are 0; an element that cannot be drawn has none.
struct ElementMeasure
{
    // Lines: distance of the end nodes. Shells: length of the rim. Solids: of all edges together.
    double length = 0;
    // Shells: area of the face. Solids: of all faces together. See faceArea.
    double area = 0;
    // Solids: the volume inside faces that are bilinear in their corners, which is the integral of the Jacobian of the
    // usual interpolation. Negative for an element whose nodes are numbered inside out.
    double volume = 0;
    // Lines: the middle. Shells and solids: centre of gravity of the area or volume, exact for flat faces, the mean of
    // both ways of cutting them into triangles otherwise. Mean of the corners where area or volume is 0, and (0, 0, 0)
    // for an element that cannot be drawn.
    Vector3 centroid;
};

KVO_EXPORT ElementMeasure measureElement(const PartMesh& part, std::uint32_t element);

// Sums over the elements of a part whose mark is not 0, one mark per element; null takes all. The centroid is weighted
// by volume when they have any in sum, else by area, else by length; the mean of the centroids when all weights are 0.
// Runs on all cores, with the same result on any number of them.
KVO_EXPORT ElementMeasure measureElements(const PartMesh& part, const std::uint8_t* marks);

// Area of one face of an element, counted from 0 as the record's flat normals are (a shell's face is 0). A
// quadrilateral has two ways of being cut into triangles; the smaller sum counts, which is exact for every flat one,
// also where it is re-entrant. 0 for a face that does not exist.
KVO_EXPORT double faceArea(const PartMesh& part, std::uint32_t element, unsigned int face);

} // namespace kvo

#endif
