// Points and cells of VTK files on their way into the mesh.
#ifndef KVO_IMPORT_VTK_MESH_H
#define KVO_IMPORT_VTK_MESH_H

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "import_log.h"
#include "mesh.h"
#include "polygon.h"
#include "vtk_cells.h"

namespace kvo {

// What a data array is good for. The lower of two block arrays is the better one.
enum class VtkUse
{
    Ids,
    Ghosts,
    FirstBlock, // and all above
    None = 1000
};
VtkUse useOfPointArray(const std::string& name, int components);
VtkUse useOfCellArray(const std::string& name, int components, bool integers);

// One grid, or one piece of it.
struct VtkPiece
{
    std::vector<double> points;             // 3 per point
    std::vector<std::int64_t> types;        // per cell
    std::vector<std::int64_t> ends;         // per cell, where its points end in connectivity
    std::vector<std::int64_t> connectivity; // from 0
    std::vector<std::int64_t> pointIds;     // one per point; empty: none, here and below
    std::vector<std::int64_t> cellIds;
    std::vector<std::int64_t> blocks; // per cell, its part
    std::vector<std::int64_t> ghosts; // per cell, bits
    std::string blockName;            // of the array of the blocks
    std::vector<std::uint32_t> lines; // per cell; empty: all have the piece's
    std::uint32_t line = 0;           // of the file; 0: bytes have none

    std::size_t pointCount() const { return points.size() / 3; }
    std::size_t cellCount() const { return types.size(); }
};

class VtkMesh
{
public:
    VtkMesh(const std::string& path, ImportLog& log);

    // Throws ImportError for arrays that do not fit each other.
    void add(VtkPiece piece);
    Mesh take(); // what all pieces together are
    void addFact(const std::string& name, const std::string& value) { mesh.facts.push_back({name, value}); }

private:
    struct Cell
    {
        const VtkCellType* type;
        std::int64_t id;
        std::uint32_t part;
        std::uint32_t line;
        const std::int64_t* points;
        std::size_t count;
    };

    void check(const VtkPiece& piece) const;
    std::string pointIdsFault() const;
    std::string cellIdsFault() const;
    bool usable(bool some, const std::string& fault, const char* things) const;
    void settleIds();
    void addPoints(const VtkPiece& piece);
    void addCells(const VtkPiece& piece);
    void addCell(const Cell& cell);
    void addElement(const Cell& cell);
    bool hasPoints(const Cell& cell);
    bool wedgeIsTurned(const std::uint32_t* corners) const;
    std::uint32_t partOf(const VtkPiece& piece, std::size_t cell, std::int64_t type);
    void countNotDrawn(const std::string& name, const Cell& cell);

    Mesh mesh;
    ImportLog& log;
    MeshRows rows;
    PolygonElements polygons;
    std::vector<std::uint32_t> positions;                  // of the piece's points in the mesh
    std::vector<std::uint32_t> corners;                    // of one cell
    std::unordered_map<std::int64_t, std::uint32_t> known; // points by id, where pieces share them
    std::map<std::pair<std::string, std::int64_t>, std::uint32_t> parts;
    std::vector<std::uint32_t> typeRows; // by number; row + 1, or 0
    std::vector<VtkPiece> pieces;
    bool havePointIds = false; // that can be used
    bool haveCellIds = false;
    std::int64_t pointsBefore = 0; // of earlier pieces
    std::int64_t cellsBefore = 0;
    std::int64_t lastValue = 0; // of the last cell: the number of its block, its type, its part
    std::int64_t lastType = 0;
    std::uint32_t lastPart = noPart;
    std::uint64_t wedgesTurned = 0;
};

} // namespace kvo

#endif
