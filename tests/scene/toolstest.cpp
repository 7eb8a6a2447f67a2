// Meshes for the tests of the tools.
#include "toolstest.h"

namespace toolstest {

PartInfoStr gridPart(unsigned int nx, unsigned int ny)
{
    Floats nodes;
    for (unsigned int j = 0; j <= ny; ++j) {
        for (unsigned int i = 0; i <= nx; ++i) {
            nodes.insert(nodes.end(), {static_cast<float>(i), static_cast<float>(j), 0});
        }
    }
    Indices indices;
    for (unsigned int j = 0; j < ny; ++j) {
        for (unsigned int i = 0; i < nx; ++i) {
            const unsigned int a = j * (nx + 1) + i;
            indices.insert(indices.end(), {a, a + 1, a + nx + 2, a + nx + 1});
        }
    }
    return makePart(SHELL, 4, nodes, indices);
}

PartInfoStr blockPart(unsigned int n)
{
    Floats nodes;
    const unsigned int m = n + 1;
    for (unsigned int k = 0; k < m * m * m; ++k) {
        nodes.insert(nodes.end(),
                     {static_cast<float>(k % m), static_cast<float>(k / m % m), static_cast<float>(k / m / m)});
    }
    Indices indices;
    for (unsigned int e = 0; e < n * n * n; ++e) {
        const unsigned int a = (e / n / n * m + e / n % n) * m + e % n;
        indices.insert(indices.end(),
                       {a, a + 1, a + m + 1, a + m, a + m * m, a + m * m + 1, a + m * m + m + 1, a + m * m + m});
    }
    return makePart(SOLID, 8, nodes, indices);
}

void transform(PartInfoStr& part, double angle, double scale, double shift)
{
    const double c = std::cos(angle), s = std::sin(angle);
    for (unsigned int k = 0; k < part.partNodes.numNodes; ++k) {
        float* p = part.partNodes.nodeValues + 3 * k;
        const double x = c * p[0] - s * p[1], y = s * p[0] + c * p[1], z = p[2];
        p[0] = static_cast<float>(scale * (c * x + s * z) + shift);
        p[1] = static_cast<float>(scale * y - shift);
        p[2] = static_cast<float>(scale * (c * z - s * x) + shift);
    }
}

} // namespace toolstest
