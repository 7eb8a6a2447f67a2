// The model itself.
//
//   z ^   9 . apex of the pyramid, 15 and 16 above it (bar, spring)
//     |
//     5---6---11     bottom layer z = 0: 1 2 3 4, 10, 12, and 13, 14 at y = 2
//     1---2---10     cube 1-8, wedge 2 10 3 | 6 11 7, tetrahedron 10 12 3 | 11
#include "tiny_model.h"

const std::vector<std::array<double, 3>>& tinyNodes()
{
    static const std::vector<std::array<double, 3>> nodes = {
        {0, 0, 0},   {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1},   {0, 1, 1},
        {.5, .5, 2}, {2, 0, 0}, {2, 0, 1}, {2, 1, 0}, {1, 2, 0}, {0, 2, 0}, {.5, .5, 3}, {.5, .5, 4},
    };
    return nodes;
}

const std::vector<TinyElement>& tinyElements()
{
    static const std::vector<TinyElement> elements = {
        {"hexa", 501, {1, 2, 3, 4, 5, 6, 7, 8}, 1.0},
        {"pyramid", 402, {5, 6, 7, 8, 9}, 1.0 / 3},
        {"wedge", 303, {2, 10, 3, 6, 11, 7}, 0.5},
        {"tetra", 204, {10, 12, 3, 11}, 1.0 / 6},
        {"quad", 105, {4, 3, 13, 14}, 0},
        {"tria", 96, {3, 12, 13}, 0},
        {"beam", 87, {9, 15}, 0},
        {"spring", 78, {15, 16}, 0},
        {"point", 69, {16}, 0},
    };
    return elements;
}
