// Faces of solid elements, as rows of node slots. Private to render/.
//
//        7-------6         hexahedron: slots 0-7 as drawn
//       /|      /|         tetrahedron: slots 0-3 (slot 4 repeats slot 3)
//      4-------5 |         pentahedron: slots 0-4 and 6 (5 repeats 4, 7 repeats 6); its edges 0-1-4 and 3-2-6
//      | 3-----|-2         are the two triangles
//      |/      |/
//      0-------1
//
// The face order is also the order of the flat normals (3 floats a face, 18 an element). The winding is not consistent
// from face to face; light comes from stored normals, not from it.
#ifndef FACE_TABLES_H
#define FACE_TABLES_H

// Quadrilaterals first, then triangles, as drawn.
struct SolidShape
{
    char npe;           // its character in PartElementsStr::NPE
    unsigned int quads; // faces of four slots
    unsigned int trias; // faces of three slots
    unsigned char slots[24];

    constexpr unsigned int numFaces() const { return quads + trias; }
    constexpr unsigned int numSlots() const { return 4 * quads + 3 * trias; }
};

// clang-format off
constexpr SolidShape solidShapes[] = {
    {'4', 0, 4, {0, 1, 2,  0, 1, 3,  0, 3, 2,  1, 2, 3}},
    {'6', 3, 2, {0, 1, 2, 3,  1, 2, 6, 4,  3, 0, 4, 6,  0, 1, 4,  2, 3, 6}},
    {'8', 6, 0, {0, 1, 2, 3,  1, 2, 6, 5,  4, 5, 6, 7,  3, 0, 4, 7,  2, 3, 7, 6,  0, 1, 5, 4}},
};
// clang-format on

// The shape of an NPE character, or null.
inline const SolidShape* solidShapeOf(char npe)
{
    for (const SolidShape& shape : solidShapes) {
        if (shape.npe == npe) {
            return &shape;
        }
    }
    return nullptr;
}

// Faces for the normal computation: four slots each, noCorner where a face has three.
constexpr unsigned char noCorner = 255;

struct NormalFaces
{
    char npe;
    unsigned int numFaces;
    unsigned char slots[6][4];
};

// clang-format off
constexpr NormalFaces normalFaces[] = {
    {'4', 4, {{0, 1, 2, noCorner}, {0, 1, 3, noCorner}, {2, 0, 3, noCorner}, {1, 2, 3, noCorner}}},
    // deliberate(penta-normal-slot-5): slot 5, equal to slot 4, where the drawn face has slot 6; the node of slot 6 gets no
    // normal from here, and pictures and stored normals are compared against that.
    {'6', 5, {{0, 1, 2, 3}, {1, 2, 5, 4}, {3, 0, 4, 5}, {0, 1, 4, noCorner}, {2, 3, 5, noCorner}}},
    {'8', 6, {{0, 1, 2, 3}, {1, 2, 6, 5}, {4, 5, 6, 7}, {3, 0, 4, 7}, {2, 3, 7, 6}, {0, 1, 5, 4}}},
};
// clang-format on

#endif
