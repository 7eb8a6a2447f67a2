// The neutral mesh between the deck readers and the model writer. Every reader fills one, every writer takes one.
//
// Life of a mesh: a reader appends nodes and elements, in which elements name their nodes by id; finishMesh()
// (mesh_finish.h) then sorts the nodes, settles ids that occur twice, drops elements whose nodes are missing, and turns
// node ids into positions. Only a finished mesh leaves readDeck().
#ifndef KVO_IMPORT_MESH_H
#define KVO_IMPORT_MESH_H

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "place.h"

namespace kvo {

// How an element is drawn. Its values index familyNames().
enum class Family : std::uint8_t
{
    Shell,
    Solid,
    Beam,
    Discrete
};
constexpr int familyCount = 4;
const char* familyName(Family family); // "shell", ...

// What an element looks like by its corners.
enum class Shape : std::uint8_t
{
    Line,     // 2 corners
    Triangle, // 3
    Quad,     // 4
    Tetra,    // 4: base, apex
    Pyramid,  // 5: base round the rim, apex
    Wedge,    // 6: triangle a b c, triangle d e f with d above a
    Hexa      // 8: bottom round the rim, top above it
};
int cornerCount(Shape shape);

// An element type of the deck's format, as far as the mesh cares.
struct ElementType
{
    std::string name; // as the deck's format spells it ("C3D8R")
    Family family = Family::Shell;
    Shape shape = Shape::Triangle;

    // Node entries per element in ElementBlock::nodes: the corners, and for beams the third node (noNode if none).
    int slots() const { return cornerCount(shape) + (family == Family::Beam ? 1 : 0); }
};

constexpr std::int64_t noNode = -1;
constexpr std::uint32_t noPart = 0xFFFFFFFF;

// Up to ElementBlock::maxElements elements of one type from one source file. Blocks keep the arrays short, so that a
// large deck grows by small steps.
struct ElementBlock
{
    static constexpr std::size_t maxElements = 65536;

    std::uint32_t type = 0;          // index into Mesh::types
    std::uint32_t sourceFile = 0;    // index into Mesh::sourceFiles
    std::vector<std::int64_t> ids;   // element ids
    std::vector<std::uint32_t> part; // per element, index into Mesh::parts; noPart: dropped
    std::vector<std::uint32_t> line; // per element, 1-based line of the source file
    std::vector<std::int64_t> nodes; // slots() entries per element: node ids; positions in the nodes once finished

    std::size_t size() const { return ids.size(); }
};

// One set of nodes with ids of its own: a whole deck, or one instance of it, whose ids may repeat those of another.
struct MeshFile
{
    std::string name;                  // of the instance; empty: the deck itself
    std::vector<std::int64_t> nodeIds; // ascending and unique once finished
    std::vector<double> xyz;           // 3 per node
    std::deque<ElementBlock> blocks;

    void addNode(std::int64_t id, double x, double y, double z);
    // Where the next element of this type and source file goes: the last block, or a new one. The reader appends to its
    // four arrays.
    ElementBlock& blockFor(std::uint32_t type, std::uint32_t sourceFile);
};

struct MeshPart
{
    std::int64_t id = 0; // unique in the mesh, above 0
    std::string name;
    std::string section;         // what gave the elements to the part ("shell section"); may be empty
    std::int64_t propertyId = 0; // 0: none
    std::int64_t materialId = 0; // 0: none
    std::string materialName;
};

struct Mesh
{
    std::string formatName;               // of the deck's format
    std::vector<std::string> sourceFiles; // the deck first, then what it includes
    std::vector<ElementType> types;
    std::vector<MeshPart> parts;
    std::vector<MeshFile> files;

    std::uint64_t nodeCount() const;
    // Elements that are not dropped.
    std::uint64_t elementCount() const;
    Place placeOf(const ElementBlock& block, std::size_t element) const;
};

} // namespace kvo

#endif
