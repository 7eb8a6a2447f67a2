// Recognition of collapsed hexahedra.
//
//        7-------6
//       /|      /|
//      4-------5 |
//      | 3-----|-2
//      |/      |/
//      0-------1
#include "degenerate.h"

#include <algorithm>

namespace kvo {

namespace {

// How formats collapse a hexahedron, with the corners in the order in which those formats number the shape. Nodes of
// equal letters are equal, all others differ.
struct Pattern
{
    const char* letters;
    Shape shape;
    int corners[6];
};

const Pattern patterns[] = {
    {"abcddddd", Shape::Tetra, {0, 1, 2, 3}},       {"abccdddd", Shape::Tetra, {0, 1, 2, 4}},
    {"abcdeeee", Shape::Pyramid, {0, 1, 2, 3, 4}},  {"abccdeff", Shape::Wedge, {0, 1, 2, 4, 5, 6}},
    {"abcdeeff", Shape::Wedge, {0, 4, 1, 3, 6, 2}},
};

// The faces, seen from inside in the same turn as the bottom, and the nodes across from theirs.
struct FacePair
{
    int face[4];
    int across[4];
};

const FacePair facePairs[] = {
    {{0, 1, 2, 3}, {4, 5, 6, 7}}, {{4, 7, 6, 5}, {0, 3, 2, 1}}, {{0, 4, 5, 1}, {3, 7, 6, 2}},
    {{3, 2, 6, 7}, {0, 1, 5, 4}}, {{0, 3, 7, 4}, {1, 2, 6, 5}}, {{1, 5, 6, 2}, {0, 4, 7, 3}},
};

bool fits(const std::int64_t* nodes, const Pattern& pattern)
{
    for (int k = 1; k < 8; ++k) {
        for (int j = 0; j < k; ++j) {
            if ((nodes[k] == nodes[j]) != (pattern.letters[k] == pattern.letters[j])) {
                return false;
            }
        }
    }
    return true;
}

int distinctNodes(const std::int64_t* nodes)
{
    std::int64_t sorted[8];
    std::copy_n(nodes, 8, sorted);
    std::sort(sorted, sorted + 8);
    return static_cast<int>(std::unique(sorted, sorted + 8) - sorted);
}

// Whatever collapses takes an edge with it.
bool anyEdgeCollapsed(const std::int64_t* n)
{
    return n[0] == n[1] || n[1] == n[2] || n[2] == n[3] || n[3] == n[0] || n[4] == n[5] || n[5] == n[6] ||
           n[6] == n[7] || n[7] == n[4] || n[0] == n[4] || n[1] == n[5] || n[2] == n[6] || n[3] == n[7];
}

// One face has become the apex over the one across.
bool pyramid(const std::int64_t* nodes, std::int64_t* corners)
{
    for (const FacePair& pair : facePairs) {
        const int* top = pair.across;
        if (nodes[top[0]] == nodes[top[1]] && nodes[top[1]] == nodes[top[2]] && nodes[top[2]] == nodes[top[3]]) {
            for (int k = 0; k < 4; ++k) {
                corners[k] = nodes[pair.face[k]];
            }
            corners[4] = nodes[top[0]];
            return true;
        }
    }
    return false;
}

// Two opposite edges of a face, a b and c d, have become one node each: the face is the edge between two triangles.
bool wedge(const std::int64_t* nodes, std::int64_t* corners)
{
    for (const FacePair& pair : facePairs) {
        for (int turn = 0; turn < 2; ++turn) {
            const auto face = [&](int k) { return nodes[pair.face[(k + turn) % 4]]; };
            const auto across = [&](int k) { return nodes[pair.across[(k + turn) % 4]]; };
            if (face(0) == face(1) && face(2) == face(3)) {
                const std::int64_t found[] = {face(0), across(0), across(1), face(2), across(3), across(2)};
                std::copy_n(found, 6, corners);
                return true;
            }
        }
    }
    return false;
}

} // namespace

Shape collapsedHexa(const std::int64_t* nodes, std::int64_t* corners)
{
    if (anyEdgeCollapsed(nodes)) {
        const int distinct = distinctNodes(nodes);
        for (const Pattern& pattern : patterns) {
            if (fits(nodes, pattern)) {
                for (int k = 0; k < cornerCount(pattern.shape); ++k) {
                    corners[k] = nodes[pattern.corners[k]];
                }
                return pattern.shape;
            }
        }
        if (distinct == 5 && pyramid(nodes, corners)) {
            return Shape::Pyramid;
        }
        if (distinct == 6 && wedge(nodes, corners)) {
            return Shape::Wedge;
        }
    }
    std::copy_n(nodes, 8, corners);
    return Shape::Hexa;
}

} // namespace kvo
