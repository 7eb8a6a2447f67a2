// The neutral mesh between the deck readers and the model writer. Every reader fills one, every writer takes one.
//
// Life of a mesh: a reader appends nodes and elements, in which elements name their nodes by id; finishMesh()
// (mesh_finish.h) then sorts the nodes, settles ids that occur twice, drops elements whose nodes are missing, turns
// node ids into positions, and takes out of the sets what does not exist. Only a finished mesh leaves readDeck(). Ids
// are not checked by the readers: those that a model cannot keep are the writer's to refuse (model_builder.h).
#ifndef KVO_IMPORT_MESH_H
#define KVO_IMPORT_MESH_H

#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "id_set.h"
#include "node_lines.h"
#include "place.h"

namespace kvo {

// How an element is drawn.
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
    bool oriented = false; // a discrete element with a third node, which beams always have

    // Node entries per element in ElementBlock::nodes: the corners, and the third node (noNode if none).
    int slots() const { return cornerCount(shape) + (hasThirdNode() ? 1 : 0); }
    bool hasThirdNode() const { return family == Family::Beam || (family == Family::Discrete && oriented); }
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

// Things of one type that have no picture: masses, rigid elements, particles. They are kept with ids and nodes as the
// deck has them, neither checked nor counted as elements.
struct UndrawnElements
{
    std::string type;                // as the deck's format spells it ("CONM2")
    std::vector<std::int64_t> ids;   // 0: the deck gives it none
    std::vector<std::size_t> starts; // per element, where its nodes begin in nodes
    std::vector<std::int64_t> nodes; // node ids
};

// The elements whose orientation is a vector instead of a third node.
struct Orientation
{
    static constexpr int anyFamily = -1;

    std::array<double, 3> vector; // global
    IdSet elements;
    int family = anyFamily; // a Family where element ids are unique in their family only
};

// One set of nodes with ids of its own: a whole deck, or one instance of it, whose ids may repeat those of another.
struct MeshFile
{
    std::string name;                  // of the instance; empty: the deck itself
    std::vector<std::int64_t> nodeIds; // ascending and unique once finished
    std::vector<double> xyz;           // 3 per node
    NodeLines nodeLines;               // of those whose reader knows them
    std::deque<ElementBlock> blocks;
    std::vector<UndrawnElements> undrawn;
    std::vector<Orientation> orientations;

    void addNode(std::int64_t id, double x, double y, double z);
    void addNode(std::int64_t id, double x, double y, double z, std::uint32_t sourceFile, std::uint32_t line);
    // Where the next element of this type and source file goes: the last block of the type, or a new one. The reader
    // appends to its four arrays.
    ElementBlock& blockFor(std::uint32_t type, std::uint32_t sourceFile);
    // One element with slots() node entries.
    void addElement(std::uint32_t type, std::uint32_t sourceFile, std::uint32_t line, std::int64_t id,
                    std::uint32_t part, const std::int64_t* nodes, std::size_t entries);
    void addUndrawn(const std::string& type, std::int64_t id, const std::int64_t* nodes, std::size_t count);
    // A beam's third node is for a node of the deck. A vector makes no node, whose id nobody could look up in the deck:
    // it is kept here.
    void orient(std::int64_t element, const std::array<double, 3>& vector, int family = Orientation::anyFamily);

private:
    std::map<std::pair<std::array<double, 3>, int>, std::size_t> orientationIndex;
    std::map<std::string, std::size_t> undrawnIndex; // by type
    std::vector<std::size_t> lastBlock;              // of a type, plus 1; elements of two types may alternate
};

// What a part is made of, as far as the deck says. Values in the deck's units.
struct SectionData
{
    double thickness = 0.0;    // of shells; 0: not given
    std::string shape;         // of a beam's cross-section, as the format spells it ("PIPE", "RECT"); may be empty
    std::vector<double> sizes; // of the cross-section, in the order of the format
    double area = 0.0;         // of a rod's or beam's cross-section; 0: not given
    double stiffness = 0.0;    // of springs; 0: not given
    double damping = 0.0;      // of dampers; 0: not given
};

struct MeshPart
{
    std::int64_t id = 0; // 0: none. The writer gives one to parts without, and to those whose id cannot be kept
    std::string name;
    std::string section;         // what gave the elements to the part ("shell section"); may be empty
    std::int64_t propertyId = 0; // 0: none
    std::int64_t materialId = 0; // 0: none
    std::string materialName;
    SectionData data;
};

// A named set of the deck.
struct MeshSet
{
    enum class Of : std::uint8_t
    {
        Nodes,
        Elements,
        Parts // ids are MeshPart::id
    };
    static constexpr std::uint32_t wholeMesh = 0xFFFFFFFF;
    static constexpr int anyFamily = -1;

    Of of = Of::Nodes;
    std::string name;
    std::int64_t id = 0;            // 0: the format names its sets only
    std::uint32_t file = wholeMesh; // index into Mesh::files whose ids these are; wholeMesh: of all files
    int family = anyFamily;         // a Family where element ids are unique in their family only
    IdSet ids;
};

struct Mesh
{
    std::string formatName;               // of the deck's format
    std::vector<std::string> sourceFiles; // the deck first, then what it includes
    std::vector<ElementType> types;
    std::vector<MeshPart> parts;
    std::vector<MeshFile> files;
    std::vector<MeshSet> sets;
    // What else the deck says about itself: {"title", "Bracket"}, {"units", "mm"}.
    std::vector<std::pair<std::string, std::string>> facts;
    bool idsPerFamily = false; // a shell and a solid may have the same id: ids are unique per ElementType::name only

    std::uint64_t nodeCount() const;
    // Elements that are not dropped.
    std::uint64_t elementCount() const;
    Place placeOf(const ElementBlock& block, std::size_t element) const;
    // The node's line, or the deck as a whole where that is not known.
    Place placeOfNode(const MeshFile& file, std::size_t node) const;
};

// For readers: finds or adds rows of a mesh by what the deck calls them. The mesh must outlive it, and only it may add
// to the mesh's types and parts.
class MeshRows
{
public:
    explicit MeshRows(Mesh& mesh) : mesh(mesh) {}

    // Index into Mesh::types.
    std::uint32_t type(const std::string& name, Family family, Shape shape, bool oriented = false);
    // Index into Mesh::parts; a new part has this id.
    std::uint32_t part(std::int64_t id);
    // The same by name, for parts that have no id in the deck: a new one has 0, and gets one from the writer.
    std::uint32_t part(const std::string& name);

private:
    Mesh& mesh;
    std::map<std::pair<std::string, std::pair<Family, Shape>>, std::uint32_t> types;
    std::unordered_map<std::int64_t, std::uint32_t> partsById;
    std::unordered_map<std::string, std::uint32_t> partsByName;
    std::int64_t lastId = 0; // elements of one part mostly follow each other
    std::uint32_t lastPart = noPart;
};

} // namespace kvo

#endif
