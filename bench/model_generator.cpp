#include "model_generator.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "mantypes.h"
#include "modelwriter.h"

namespace {

constexpr float spacing = 1.0f;

std::size_t edgeLength(std::size_t numElements, int dimensions)
{
    std::size_t edge = 1;
    while (std::pow(static_cast<double>(edge), dimensions) < static_cast<double>(numElements)) {
        ++edge;
    }
    return edge;
}

void addNode(GeneratedMesh& mesh, unsigned int id, float x, float y, float z)
{
    mesh.nodeIds.push_back(id);
    mesh.xyz.insert(mesh.xyz.end(), {x, y, z});
}

} // namespace

GeneratedMesh generateHexahedra(std::size_t numElements, unsigned int firstNodeId, unsigned int firstElementId)
{
    GeneratedMesh mesh = {{}, {}, {}, {}, SOLID, 8};
    const std::size_t edge = edgeLength(numElements, 3);
    const std::size_t row = edge + 1;
    const std::size_t layers = (numElements + edge * edge - 1) / (edge * edge);
    for (std::size_t k = 0; k < row * row * (layers + 1); ++k) {
        addNode(mesh, firstNodeId + static_cast<unsigned int>(k), spacing * static_cast<float>(k % row),
                spacing * static_cast<float>(k / row % row), spacing * static_cast<float>(k / (row * row)));
    }
    for (std::size_t e = 0; e < numElements; ++e) {
        const std::size_t corner = e % edge + e / edge % edge * row + e / (edge * edge) * row * row;
        const unsigned int a = firstNodeId + static_cast<unsigned int>(corner);
        const unsigned int r = static_cast<unsigned int>(row);
        const unsigned int up = r * r;
        mesh.elementIds.push_back(firstElementId + static_cast<unsigned int>(e));
        mesh.corners.insert(mesh.corners.end(),
                            {a, a + 1, a + 1 + r, a + r, a + up, a + 1 + up, a + 1 + r + up, a + r + up});
    }
    return mesh;
}

GeneratedMesh generateQuadrilaterals(std::size_t numElements, unsigned int firstNodeId, unsigned int firstElementId)
{
    GeneratedMesh mesh = {{}, {}, {}, {}, SHELL, 4};
    const std::size_t edge = edgeLength(numElements, 2);
    const std::size_t row = edge + 1;
    const std::size_t rows = (numElements + edge - 1) / edge;
    for (std::size_t k = 0; k < row * (rows + 1); ++k) {
        const float x = spacing * static_cast<float>(k % row);
        const float y = spacing * static_cast<float>(k / row);
        addNode(mesh, firstNodeId + static_cast<unsigned int>(k), x, y, 3 * std::sin(0.1f * x) * std::cos(0.07f * y));
    }
    for (std::size_t e = 0; e < numElements; ++e) {
        const unsigned int a = firstNodeId + static_cast<unsigned int>(e % edge + e / edge * row);
        const unsigned int r = static_cast<unsigned int>(row);
        mesh.elementIds.push_back(firstElementId + static_cast<unsigned int>(e));
        mesh.corners.insert(mesh.corners.end(), {a, a + 1, a + 1 + r, a + r});
    }
    return mesh;
}

void writeGeneratedModel(const std::string& dirName, const std::string& modelName, const GeneratedMesh& solids,
                         const GeneratedMesh& shells)
{
    ModelWriter writer(dirName, modelName);
    unsigned int partId = 0;
    for (const GeneratedMesh* mesh : {&solids, &shells}) {
        if (mesh->elementIds.empty()) {
            continue;
        }
        ModelPart part;
        part.id = ++partId;
        part.name = mesh == &solids ? "hexahedra" : "quadrilaterals";
        part.drawType = mesh->drawType;
        part.stride = mesh->stride;
        writer.addNodes(mesh->nodeIds.size(), mesh->nodeIds.data(), mesh->xyz.data());
        writer.addPart(part, mesh->elementIds.size(), mesh->elementIds.data(), mesh->corners.data());
    }
    std::string error;
    if (!writer.write(&error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        std::exit(1);
    }
}
