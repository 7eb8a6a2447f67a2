// Polygons of surface formats as elements: triangles and quads as they are, larger ones as triangles.
#ifndef KVO_IMPORT_POLYGON_H
#define KVO_IMPORT_POLYGON_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "import_log.h"
#include "mesh.h"

namespace kvo {

// Kind of the warning about polygons of fewer than three different corners. They are left out.
extern const char* const warnDegeneratePolygon;

// The triangles of a polygon whose corners are points, as positions in the list: a fan from the first corner where the
// polygon is convex; else its ears are cut off one by one. Corners may lie off one plane a little. Of n corners that
// are all different always n - 2 triangles, turned as the polygon is.
std::vector<std::array<std::uint32_t, 3>> trianglesOf(const std::vector<std::array<double, 3>>& points);

// Collects polygons into one file of a mesh.
class PolygonElements
{
public:
    PolygonElements(Mesh& mesh, MeshRows& rows, ImportLog& log, std::size_t file = 0)
        : mesh(mesh), rows(rows), log(log), fileIndex(file)
    {
    }

    // corners are positions in the file's nodes so far. A polygon of more than four corners becomes triangles, of which
    // the first has the id.
    void add(const std::string& type, std::int64_t id, std::uint32_t part, std::uint32_t line,
             std::vector<std::uint32_t> corners);
    // A line of more than two corners becomes elements of two, of which the first has the id.
    void addLine(const std::string& type, std::int64_t id, std::uint32_t part, std::uint32_t line,
                 const std::vector<std::uint32_t>& corners);
    // The triangles of strips.
    void addStrips(const std::string& type, std::int64_t id, std::uint32_t part, std::uint32_t line,
                   const std::vector<std::vector<std::uint32_t>>& strips);

    // When all elements are in: the triangles and lines that are without an id get one above the highest.
    void finish();

private:
    struct Piece
    {
        std::uint32_t type;
        std::uint32_t part;
        std::uint32_t line;
        std::array<std::uint32_t, 3> corners;
    };

    void put(std::uint32_t type, std::int64_t id, std::uint32_t part, std::uint32_t line, const std::uint32_t* corners);
    void putPieces(std::int64_t id, const std::vector<Piece>& pieces);
    std::uint32_t rowOf(const std::string& type, Family family, Shape shape);

    Mesh& mesh;
    MeshRows& rows;
    ImportLog& log;
    std::size_t fileIndex;   // index into Mesh::files
    std::vector<Piece> more; // all but the first of what was divided
    std::uint64_t divided = 0;
    std::string lastType;
    Shape lastShape = Shape::Hexa;
    std::uint32_t lastRow = 0;
};

} // namespace kvo

#endif
