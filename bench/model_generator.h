// Models of any size for the benchmarks: a block of hexahedra and a wavy sheet of quadrilaterals.
#ifndef MODEL_GENERATOR_H
#define MODEL_GENERATOR_H

#include <cstddef>
#include <string>
#include <vector>

// One part with its nodes. Node ids, element ids: consecutive from the given first ones.
struct GeneratedMesh
{
    std::vector<unsigned int> nodeIds;
    std::vector<float> xyz; // 3 a node
    std::vector<unsigned int> elementIds;
    std::vector<unsigned int> corners; // node ids, `stride` an element
    unsigned int drawType;
    unsigned int stride;
};

// At least numElements hexahedra in a block as near to a cube as whole layers allow, cut to exactly that many.
GeneratedMesh generateHexahedra(std::size_t numElements, unsigned int firstNodeId, unsigned int firstElementId);
// Quadrilaterals of a square sheet whose height is a wave, so that their normals differ.
GeneratedMesh generateQuadrilaterals(std::size_t numElements, unsigned int firstNodeId, unsigned int firstElementId);

// Writes dirName/modelName with two parts: numHexahedra solids (id 1), numQuadrilaterals shells (id 2). Exits with a
// message when it cannot.
void writeGeneratedModel(const std::string& dirName, const std::string& modelName, const GeneratedMesh& solids,
                         const GeneratedMesh& shells);

#endif
