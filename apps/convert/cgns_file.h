// A CGNS file's zones, element sections and boundary conditions as plain data. What the CGNS library cannot do is an
// ImportError that names the file.
#ifndef KVO_CONVERT_CGNS_FILE_H
#define KVO_CONVERT_CGNS_FILE_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "structured_cells.h"

namespace kvo {

struct CgnsZone
{
    int base = 0; // both as the library counts
    int zone = 0;
    std::string baseName;
    std::string name;
    std::string family; // "" if it is in none
    bool structured = false;
    Lattice lattice;         // of a structured one
    int spaceDimensions = 3; // how many coordinates a node has
    std::int64_t nodes = 0;
};

// Elements with ids from first on.
struct CgnsSection
{
    std::string name;
    std::int64_t first = 1;
    std::vector<std::string> types;   // of each element, or one for all
    std::vector<std::int64_t> starts; // count + 1 positions in nodes
    std::vector<std::int64_t> nodes;  // positions from 1; of polyhedra their faces

    std::size_t count() const { return starts.empty() ? 0 : starts.size() - 1; }
    const std::string& typeOf(std::size_t element) const { return types.size() == 1 ? types[0] : types[element]; }
};

// What a boundary condition is given on. Points of structured zones are i, j, k; of others one number in the first.
struct CgnsCondition
{
    enum class On
    {
        Nodes,
        Elements,
        FacesI, // of structured zones: faces between nodes along the two other directions
        FacesJ,
        FacesK,
        Unknown
    };
    using Point = std::array<std::int64_t, 3>;

    std::string name;
    std::string family;
    On on = On::Nodes;
    std::vector<std::array<Point, 2>> ranges; // first and last, both in
};

// How many things of a zone are not read.
struct CgnsIgnored
{
    const char* what;
    int count;
};

class CgnsFile
{
public:
    explicit CgnsFile(const std::string& path);
    ~CgnsFile();
    CgnsFile(const CgnsFile&) = delete;
    CgnsFile& operator=(const CgnsFile&) = delete;

    std::vector<CgnsZone> zones() const;
    // 3 per node. names gets the names of the arrays that they are from, at most one per direction.
    std::vector<double> coordinates(const CgnsZone& zone, std::vector<std::string>& names) const;
    std::vector<CgnsSection> sections(const CgnsZone& zone) const; // none of structured zones
    std::vector<CgnsCondition> conditions(const CgnsZone& zone) const;
    std::vector<CgnsIgnored> ignored(const CgnsZone& zone) const;

private:
    CgnsZone zoneAt(int base, const std::string& baseName, int dimensions, int zone) const;
    // To the first of every three values.
    void readCoordinate(const CgnsZone& zone, const std::string& array, double* every3rd) const;
    CgnsSection sectionAt(const CgnsZone& zone, int position) const;
    void readMixed(const CgnsZone& zone, int position, std::size_t count, std::size_t size, CgnsSection& section) const;
    void readPolygons(const CgnsZone& zone, int position, std::size_t count, std::size_t size,
                      CgnsSection& section) const;
    CgnsCondition conditionAt(const CgnsZone& zone, int position) const;
    std::string familyHere() const;
    [[noreturn]] void fail(const std::string& what) const;
    void check(int status, const std::string& what) const;

    std::string name;
    int id = -1;
};

} // namespace kvo

#endif
