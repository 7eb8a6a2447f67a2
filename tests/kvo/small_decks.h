// Small decks of squares, as text.
#ifndef KVO_TESTS_SMALL_DECKS_H
#define KVO_TESTS_SMALL_DECKS_H

#include <string>
#include <vector>

// A square of 1 x 1 times scale, parallel to the x-y plane, with its lower left corner there. Each is a part of one
// element: the k-th (from 1) has nodes 10 k + 1 .. 10 k + 4 around it and element 100 k.
struct Square
{
    double x, y, z;
};
std::string squaresDeck(const std::vector<Square>& squares, double scale = 1);

// One part of count x count squares in the x-y plane: nodes from 1 on, elements from 1 on.
std::string gridDeck(int count);

#endif
