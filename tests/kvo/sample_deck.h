// A small deck with every kind of element, as text.
#ifndef KVO_TESTS_SAMPLE_DECK_H
#define KVO_TESTS_SAMPLE_DECK_H

#include <string>

// Parts in this order:
//   ARCH     shell    12 quadrilaterals, a quarter of a pipe of radius 3, over y >= 0 along x
//   FLOOR    shell    2 triangles
//   BLOCK    solid    2 hexahedra
//   MIXED    solid    1 wedge, 1 pyramid, 1 tetrahedron
//   BAR      beam     2
//   SPRING   discrete 1
// The model's box is -3..3, -3..3, 0..3.
std::string sampleDeck();

constexpr int sampleElements = 12 + 2 + 2 + 3 + 2 + 1;
constexpr int sampleNodes = 4 * 5 + 4 + 12 + 7 + 3 + 2;

#endif
