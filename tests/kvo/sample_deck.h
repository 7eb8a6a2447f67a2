// A small deck with every kind of element, as text.
#ifndef KVO_TESTS_SAMPLE_DECK_H
#define KVO_TESTS_SAMPLE_DECK_H

#include <string>

// Parts in this order:
//   ARCH     shell    24 quadrilaterals bent to a half pipe, radius 3, along x from 0 to 6
//   FLOOR    shell    2 triangles
//   BLOCK    solid    2 hexahedra
//   MIXED    solid    1 wedge, 1 pyramid, 1 tetrahedron
//   BAR      beam     2
//   SPRING   discrete 1
// The model's box is 0..6, -3..3, 0..3.
std::string sampleDeck();

constexpr int sampleElements = 24 + 2 + 2 + 3 + 2 + 1;
constexpr int sampleNodes = 4 * 9 + 4 + 12 + 7 + 3 + 2;

#endif
