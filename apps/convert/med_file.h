// A MED file's meshes, their elements and families, as plain data. What the MED library cannot do is an ImportError
// that names the file.
#ifndef KVO_CONVERT_MED_FILE_H
#define KVO_CONVERT_MED_FILE_H

#include <cstdint>
#include <string>
#include <vector>

#include "structured_cells.h"

namespace kvo {

// One mesh of the file, at its first computation step.
struct MedMesh
{
    std::string name;
    std::string description;
    std::string unit; // of the first axis
    bool structured = false;
    bool curvilinear = false; // of a structured one
    bool cartesian = true;    // its axes are x, y, z
    int spaceDimensions = 3;
    int step[2] = {-1, -1}; // of the library: time step and iteration
    int steps = 0;
    Lattice lattice; // of a structured one
    std::int64_t nodes = 0;
};

// All elements of one geometry type.
struct MedElements
{
    std::string type; // "HEXA8"
    std::size_t count = 0;
    std::size_t nodesEach = 0;          // 0: starts says
    std::vector<std::int64_t> nodes;    // positions from 1
    std::vector<std::int64_t> starts;   // of polygons: count + 1 positions in nodes, from 0
    std::vector<std::int64_t> numbers;  // empty: the file has none
    std::vector<std::int64_t> families; // empty: all 0
};

struct MedFamily
{
    std::int64_t number = 0; // below 0 for elements, above 0 for nodes
    std::string name;
    std::vector<std::string> groups;
};

// How many things are not read.
struct MedIgnored
{
    const char* what;
    std::uint64_t count;
};

class MedFile
{
public:
    explicit MedFile(const std::string& path);
    ~MedFile();
    MedFile(const MedFile&) = delete;
    MedFile& operator=(const MedFile&) = delete;

    std::vector<MedMesh> meshes() const;
    std::vector<MedFamily> families(const MedMesh& mesh) const;

    std::vector<double> coordinates(const MedMesh& mesh) const;        // 3 per node
    std::vector<std::int64_t> nodeNumbers(const MedMesh& mesh) const;  // empty: none
    std::vector<std::int64_t> nodeFamilies(const MedMesh& mesh) const; // empty: all 0
    std::vector<MedElements> elements(const MedMesh& mesh) const;
    std::vector<MedIgnored> ignored(const MedMesh& mesh) const;
    std::vector<MedIgnored> ignored() const; // of the whole file

private:
    struct Entity;
    std::uint64_t descendingElements(const MedMesh& mesh) const;
    std::uint64_t elementsOf(const MedMesh& mesh, int entity) const;
    MedMesh meshAt(int position) const;
    void readLattice(MedMesh& mesh) const;
    std::int64_t count(const MedMesh& mesh, const Entity& entity, int data, int connectivity) const;
    std::vector<std::int64_t> optional(const MedMesh& mesh, const Entity& entity, int data, std::int64_t count) const;
    MedElements fixedElements(const MedMesh& mesh, const Entity& entity, std::size_t nodesEach) const;
    MedElements polygons(const MedMesh& mesh, const Entity& entity) const;
    std::vector<double> latticeCoordinates(const MedMesh& mesh) const;
    [[noreturn]] void fail(const std::string& what) const;
    void check(int status, const std::string& what) const;

    std::string name;
    std::int64_t id = -1;
    int majorVersion = 0;
};

} // namespace kvo

#endif
