#include "scene_models.h"

#include <cmath>

PartInfoStr blockPart(unsigned int n)
{
    Floats nodes;
    Indices indices;
    const unsigned int row = n + 1;
    for (unsigned int k = 0; k < row; ++k) {
        for (unsigned int j = 0; j < row; ++j) {
            for (unsigned int i = 0; i < row; ++i) {
                nodes.insert(nodes.end(), {float(i), float(j), float(k)});
            }
        }
    }
    for (unsigned int k = 0; k < n; ++k) {
        for (unsigned int j = 0; j < n; ++j) {
            for (unsigned int i = 0; i < n; ++i) {
                const unsigned int a = (k * row + j) * row + i, up = row * row;
                indices.insert(indices.end(), {a, a + 1, a + 1 + row, a + row});
                indices.insert(indices.end(), {a + up, a + 1 + up, a + 1 + row + up, a + row + up});
            }
        }
    }
    return makePart(SOLID, 8, nodes, indices);
}

PartInfoStr sheetPart(unsigned int n, bool mixed)
{
    Floats nodes;
    Indices indices;
    for (unsigned int j = 0; j <= n; ++j) {
        for (unsigned int i = 0; i <= n; ++i) {
            nodes.insert(nodes.end(), {float(i), float(j), 0});
        }
    }
    for (unsigned int j = 0; j < n; ++j) {
        for (unsigned int i = 0; i < n; ++i) {
            const unsigned int a = j * (n + 1) + i, b = a + 1, c = b + n + 1, d = c - 1;
            if (mixed && (i + j) % 2) {
                indices.insert(indices.end(), {a, b, c, c, a, c, d, d});
            } else {
                indices.insert(indices.end(), {a, b, c, d});
            }
        }
    }
    return makePart(SHELL, 4, nodes, indices);
}

PartInfoStr tubePart(unsigned int around, unsigned int along, float length)
{
    Floats nodes;
    Indices indices;
    for (unsigned int j = 0; j <= along; ++j) {
        for (unsigned int i = 0; i < around; ++i) {
            const float angle = 6.2831853f * float(i) / float(around);
            nodes.insert(nodes.end(), {std::cos(angle), std::sin(angle), length * float(j) / float(along)});
        }
    }
    for (unsigned int j = 0; j < along; ++j) {
        for (unsigned int i = 0; i < around; ++i) {
            const unsigned int a = j * around + i, b = j * around + (i + 1) % around;
            indices.insert(indices.end(), {a, b, b + around, a + around});
        }
    }
    return makePart(SHELL, 4, nodes, indices);
}

void movePart(PartInfoStr& part, float x, float y, float z)
{
    const float by[3] = {x, y, z};
    for (std::size_t k = 0; k < 3 * std::size_t(part.partNodes.numNodes); ++k) {
        part.partNodes.nodeValues[k] += by[k % 3];
    }
    for (int k = 0; k < 6; ++k) {
        part.partExtents[k] += by[k / 2];
    }
}

void paintPart(PartInfoStr& part, float red, float green, float blue, float alpha)
{
    const float color[4] = {red, green, blue, alpha};
    std::copy(color, color + 4, part.partColor);
}
