// The door to the CGNS library.
#include "cgns_file.h"

#include <cgnslib.h>

#include <algorithm>

#include "cgns_links.h"
#include "container_elements.h"
#include "place.h"

namespace kvo {

namespace {

constexpr std::size_t longestPath = 4096; // names of families may be paths

struct LocationRow
{
    CGNS_ENUMT(GridLocation_t) location;
    CgnsCondition::On structured;
    CgnsCondition::On unstructured;
};

using On = CgnsCondition::On;

// Faces of structured zones without a direction, and edges of flat ones, are told by the direction in which they lie in
// one plane.
const LocationRow locations[] = {
    {CGNS_ENUMV(Vertex), On::Nodes, On::Nodes},          {CGNS_ENUMV(FaceCenter), On::Unknown, On::Elements},
    {CGNS_ENUMV(EdgeCenter), On::Unknown, On::Elements}, {CGNS_ENUMV(CellCenter), On::Unknown, On::Elements},
    {CGNS_ENUMV(IFaceCenter), On::FacesI, On::Unknown},  {CGNS_ENUMV(JFaceCenter), On::FacesJ, On::Unknown},
    {CGNS_ENUMV(KFaceCenter), On::FacesK, On::Unknown},
};

On placeOf(CGNS_ENUMT(GridLocation_t) location, bool structured)
{
    for (const LocationRow& row : locations) {
        if (row.location == location) {
            return structured ? row.structured : row.unstructured;
        }
    }
    return On::Unknown;
}

// The direction in which all faces lie in one plane. Thin zones and single faces are flat in several: then the one in
// which the indices along the plane count cells, and the plane is the zone's boundary.
On flatDirection(const std::vector<std::array<CgnsCondition::Point, 2>>& ranges, const Lattice& lattice)
{
    const On faces[] = {On::FacesI, On::FacesJ, On::FacesK};
    const std::size_t dimensions = static_cast<std::size_t>(lattice.dimensions);
    CgnsCondition::Point first = ranges.front()[0], last = ranges.front()[1];
    for (const auto& range : ranges) {
        for (std::size_t d = 0; d < dimensions; ++d) {
            first[d] = std::min(first[d], range[0][d]);
            last[d] = std::max(last[d], range[1][d]);
        }
    }
    On best = On::Unknown;
    int bestFit = -1;
    for (std::size_t d = 0; d < dimensions; ++d) {
        bool cells = true;
        for (std::size_t e = 0; e < dimensions; ++e) {
            cells = cells && (e == d || last[e] < lattice.nodes[e]);
        }
        const bool boundary = first[d] == 1 || first[d] == lattice.nodes[d];
        const int fit = (cells ? 2 : 0) + (boundary ? 1 : 0);
        if (first[d] == last[d] && fit > bestFit) {
            best = faces[d];
            bestFit = fit;
        }
    }
    return best;
}

// Which array is for which direction: X, Y and Z have theirs, others get those that are free. "": none.
std::array<std::string, 3> byDirection(const std::vector<std::string>& arrays, int space)
{
    const std::string axes[] = {"CoordinateX", "CoordinateY", "CoordinateZ"};
    std::array<std::string, 3> result;
    for (const bool known : {true, false}) {
        for (const std::string& array : arrays) {
            const std::size_t axis = static_cast<std::size_t>(std::find(axes, axes + 3, array) - axes);
            std::size_t d = axis < 3 ? axis : 0;
            while (axis == 3 && d < 3 && !result[d].empty()) {
                ++d;
            }
            if ((axis < 3) == known && (known || static_cast<int>(d) < space)) {
                result[d] = array;
            }
        }
    }
    return result;
}

} // namespace

CgnsFile::CgnsFile(const std::string& path) : name(path)
{
    if (cg_open(path.c_str(), CG_MODE_READ, &id) == CG_OK) {
        return;
    }
    const std::string error = cg_get_error(); // damaged, or newer than the library
    const CgnsLinks links(path);
    if (links.path().empty() || cg_open(links.path().c_str(), CG_MODE_READ, &id) != CG_OK) {
        fail("cannot be opened: " + error);
    }
}

CgnsFile::~CgnsFile()
{
    cg_close(id);
}

// --- zones ---

std::vector<CgnsZone> CgnsFile::zones() const
{
    std::vector<CgnsZone> result;
    int bases = 0;
    check(cg_nbases(id, &bases), "the number of its bases");
    for (int base = 1; base <= bases; ++base) {
        char baseName[longestPath] = {};
        int dimensions = 0, space = 0, count = 0;
        check(cg_base_read(id, base, baseName, &dimensions, &space), "a base");
        if (dimensions < 1 || dimensions > 3) {
            fail("damaged: a base with cells of " + std::to_string(dimensions) + " dimensions");
        }
        check(cg_nzones(id, base, &count), "the number of its zones");
        for (int zone = 1; zone <= count; ++zone) {
            result.push_back(zoneAt(base, baseName, dimensions, zone));
            result.back().spaceDimensions = space;
        }
    }
    return result;
}

CgnsZone CgnsFile::zoneAt(int base, const std::string& baseName, int dimensions, int zone) const
{
    CgnsZone result;
    result.base = base;
    result.zone = zone;
    result.baseName = baseName;
    char zoneName[longestPath] = {};
    cgsize_t sizes[9] = {};
    CGNS_ENUMT(ZoneType_t) type = CGNS_ENUMV(ZoneTypeNull);
    check(cg_zone_read(id, base, zone, zoneName, sizes), "a zone");
    result.name = zoneName;
    check(cg_zone_type(id, base, zone, &type), "zone \"" + result.name + "\"");
    result.structured = type == CGNS_ENUMV(Structured);
    result.lattice.dimensions = dimensions;
    for (int d = 0; d < (result.structured ? dimensions : 1); ++d) {
        const std::int64_t along = sizes[d];
        if (along < 0 || (along > 0 && result.lattice.nodeCount() > INT32_MAX / along)) {
            fail("damaged: zone \"" + result.name + "\" has " + std::to_string(along) + " nodes along a direction");
        }
        result.lattice.nodes[static_cast<std::size_t>(d)] = along;
    }
    result.nodes = result.lattice.nodeCount();
    checkPlausible(name, static_cast<std::uint64_t>(result.nodes), 1, true);
    if (cg_goto(id, base, "Zone_t", zone, "end") == CG_OK) {
        result.family = familyHere();
    }
    return result;
}

std::string CgnsFile::familyHere() const
{
    char family[longestPath] = {};
    return cg_famname_read(family) == CG_OK ? trimmedName(family) : std::string();
}

std::vector<double> CgnsFile::coordinates(const CgnsZone& zone, std::vector<std::string>& names) const
{
    std::vector<double> xyz(3 * static_cast<std::size_t>(zone.nodes), 0.0);
    int arrays = 0;
    check(cg_ncoords(id, zone.base, zone.zone, &arrays), "the coordinates of zone \"" + zone.name + "\"");
    for (int k = 1; k <= arrays; ++k) {
        char array[longestPath] = {};
        CGNS_ENUMT(DataType_t) type = CGNS_ENUMV(DataTypeNull);
        check(cg_coord_info(id, zone.base, zone.zone, k, &type, array), "coordinates");
        names.push_back(array);
    }
    const std::array<std::string, 3> chosen = byDirection(names, zone.spaceDimensions);
    names.clear();
    for (std::size_t d = 0; d < 3; ++d) {
        if (!chosen[d].empty()) {
            readCoordinate(zone, chosen[d], &xyz[d]);
            names.push_back(chosen[d]);
        }
    }
    return xyz;
}

void CgnsFile::readCoordinate(const CgnsZone& zone, const std::string& array, double* every3rd) const
{
    cgsize_t first[3] = {1, 1, 1}, last[3] = {1, 1, 1};
    for (std::size_t d = 0; d < 3; ++d) {
        last[d] = static_cast<cgsize_t>(zone.lattice.nodes[d]);
    }
    std::vector<double> values(static_cast<std::size_t>(zone.nodes));
    if (values.empty()) {
        return;
    }
    check(cg_coord_read(id, zone.base, zone.zone, array.c_str(), CGNS_ENUMV(RealDouble), first, last, values.data()),
          array + " of zone \"" + zone.name + "\"");
    for (std::size_t n = 0; n < values.size(); ++n) {
        every3rd[3 * n] = values[n];
    }
}

// --- elements ---

std::vector<CgnsSection> CgnsFile::sections(const CgnsZone& zone) const
{
    std::vector<CgnsSection> result;
    int count = 0;
    if (!zone.structured) {
        check(cg_nsections(id, zone.base, zone.zone, &count), "the sections of zone \"" + zone.name + "\"");
    }
    for (int k = 1; k <= count; ++k) {
        result.push_back(sectionAt(zone, k));
    }
    return result;
}

CgnsSection CgnsFile::sectionAt(const CgnsZone& zone, int position) const
{
    CgnsSection section;
    char sectionName[longestPath] = {};
    CGNS_ENUMT(ElementType_t) type = CGNS_ENUMV(ElementTypeNull);
    cgsize_t first = 0, last = 0, size = 0;
    int boundary = 0, parents = 0, nodes = 0;
    check(cg_section_read(id, zone.base, zone.zone, position, sectionName, &type, &first, &last, &boundary, &parents),
          "a section of zone \"" + zone.name + "\"");
    section.name = sectionName;
    section.first = first;
    check(cg_ElementDataSize(id, zone.base, zone.zone, position, &size), "section \"" + section.name + "\"");
    if (last < first || size < 0) {
        fail("damaged: section \"" + section.name + "\" has the range " + std::to_string(first) + " to " +
             std::to_string(last));
    }
    const std::size_t count = static_cast<std::size_t>(last) - static_cast<std::size_t>(first) + 1;
    checkPlausible(name, count + static_cast<std::size_t>(size), 1, true);
    section.types = {cg_ElementTypeName(type)};
    if (type == CGNS_ENUMV(MIXED)) {
        readMixed(zone, position, count, static_cast<std::size_t>(size), section);
        return section;
    }
    if (type == CGNS_ENUMV(NGON_n) || type == CGNS_ENUMV(NFACE_n)) {
        readPolygons(zone, position, count, static_cast<std::size_t>(size), section);
        return section;
    }
    if (cg_npe(type, &nodes) != CG_OK || nodes < 1 || count * static_cast<std::size_t>(nodes) != std::size_t(size)) {
        fail("damaged: section \"" + section.name + "\" has no " + std::to_string(count) + " elements " +
             section.types[0]);
    }
    std::vector<cgsize_t> values(static_cast<std::size_t>(size));
    check(cg_elements_read(id, zone.base, zone.zone, position, values.data(), nullptr),
          "section \"" + section.name + "\"");
    section.nodes.assign(values.begin(), values.end());
    for (std::size_t e = 0; e <= count; ++e) {
        section.starts.push_back(static_cast<std::int64_t>(e) * nodes);
    }
    return section;
}

// Each element's type stands before its nodes.
void CgnsFile::readMixed(const CgnsZone& zone, int position, std::size_t count, std::size_t size,
                         CgnsSection& section) const
{
    std::vector<cgsize_t> values(size), offsets(count + 1);
    check(cg_poly_elements_read(id, zone.base, zone.zone, position, values.data(), offsets.data(), nullptr),
          "section \"" + section.name + "\"");
    section.types.clear();
    section.starts.push_back(0);
    std::size_t next = 0;
    for (std::size_t e = 0; e < count; ++e) {
        int nodes = 0;
        const auto type = next < size ? static_cast<CGNS_ENUMT(ElementType_t)>(values[next]) : CGNS_ENUMV(NGON_n);
        if (cg_npe(type, &nodes) != CG_OK || nodes < 1 || static_cast<std::size_t>(nodes) >= size - next) {
            fail("damaged: element " + std::to_string(e + 1) + " of section \"" + section.name + "\"");
        }
        section.types.push_back(cg_ElementTypeName(type));
        section.nodes.insert(section.nodes.end(), values.begin() + static_cast<std::ptrdiff_t>(next + 1),
                             values.begin() + static_cast<std::ptrdiff_t>(next + 1) + nodes);
        section.starts.push_back(static_cast<std::int64_t>(section.nodes.size()));
        next += static_cast<std::size_t>(nodes) + 1;
    }
    if (count == 1) {
        section.types.resize(1);
    }
}

void CgnsFile::readPolygons(const CgnsZone& zone, int position, std::size_t count, std::size_t size,
                            CgnsSection& section) const
{
    std::vector<cgsize_t> values(size), offsets(count + 1);
    check(cg_poly_elements_read(id, zone.base, zone.zone, position, values.data(), offsets.data(), nullptr),
          "section \"" + section.name + "\"");
    for (std::size_t e = 0; e <= count; ++e) {
        if (offsets[e] < (e == 0 ? 0 : offsets[e - 1]) || static_cast<std::size_t>(offsets[e]) > size) {
            fail("damaged: the offsets of section \"" + section.name + "\"");
        }
    }
    section.starts.assign(offsets.begin(), offsets.end());
    section.nodes.assign(values.begin(), values.end());
}

// --- boundary conditions ---

std::vector<CgnsCondition> CgnsFile::conditions(const CgnsZone& zone) const
{
    std::vector<CgnsCondition> result;
    int count = 0;
    check(cg_nbocos(id, zone.base, zone.zone, &count), "the boundary conditions of zone \"" + zone.name + "\"");
    for (int k = 1; k <= count; ++k) {
        result.push_back(conditionAt(zone, k));
    }
    return result;
}

CgnsCondition CgnsFile::conditionAt(const CgnsZone& zone, int position) const
{
    CgnsCondition condition;
    char conditionName[longestPath] = {};
    CGNS_ENUMT(BCType_t) type = CGNS_ENUMV(BCTypeNull);
    CGNS_ENUMT(PointSetType_t) points = CGNS_ENUMV(PointSetTypeNull);
    CGNS_ENUMT(DataType_t) normalType = CGNS_ENUMV(DataTypeNull);
    CGNS_ENUMT(GridLocation_t) location = CGNS_ENUMV(Vertex);
    cgsize_t count = 0, normals = 0;
    int normalIndex[3] = {}, datasets = 0;
    check(cg_boco_info(id, zone.base, zone.zone, position, conditionName, &type, &points, &count, normalIndex, &normals,
                       &normalType, &datasets),
          "a boundary condition");
    condition.name = conditionName;
    checkPlausible(name, static_cast<std::uint64_t>(std::max<cgsize_t>(count, 0)), 1, true);
    const std::size_t width = zone.structured ? static_cast<std::size_t>(zone.lattice.dimensions) : 1;
    std::vector<cgsize_t> values(static_cast<std::size_t>(std::max<cgsize_t>(count, 0)) * width);
    if (!values.empty()) {
        check(cg_boco_read(id, zone.base, zone.zone, position, values.data(), nullptr),
              "boundary condition \"" + condition.name + "\"");
    }
    const bool range = points == CGNS_ENUMV(PointRange) || points == CGNS_ENUMV(ElementRange);
    const std::size_t each = range ? 2 : 1; // points that make a range
    for (std::size_t k = 0; k + each * width <= values.size(); k += each * width) {
        CgnsCondition::Point first = {1, 1, 1}, last = {1, 1, 1};
        for (std::size_t d = 0; d < width; ++d) {
            const std::int64_t a = values[k + d], b = values[k + (each - 1) * width + d];
            first[d] = std::min(a, b);
            last[d] = std::max(a, b);
        }
        condition.ranges.push_back({first, last});
    }
    check(cg_boco_gridlocation_read(id, zone.base, zone.zone, position, &location), "a boundary condition");
    condition.on = placeOf(location, zone.structured);
    if (points == CGNS_ENUMV(ElementRange) || points == CGNS_ENUMV(ElementList)) {
        condition.on = On::Elements;
    }
    const bool edges = zone.lattice.dimensions == 2 && location == CGNS_ENUMV(EdgeCenter);
    if (zone.structured && (edges || location == CGNS_ENUMV(FaceCenter)) && !condition.ranges.empty()) {
        condition.on = flatDirection(condition.ranges, zone.lattice);
    }
    if (cg_goto(id, zone.base, "Zone_t", zone.zone, "ZoneBC_t", 1, "BC_t", position, "end") == CG_OK) {
        condition.family = familyHere();
    }
    return condition;
}

std::vector<CgnsIgnored> CgnsFile::ignored(const CgnsZone& zone) const
{
    int solutions = 0, connections = 0, oneToOne = 0, discrete = 0;
    cg_nsols(id, zone.base, zone.zone, &solutions);
    cg_nconns(id, zone.base, zone.zone, &connections);
    cg_n1to1(id, zone.base, zone.zone, &oneToOne);
    cg_ndiscrete(id, zone.base, zone.zone, &discrete);
    return {{"FlowSolution_t", solutions},
            {"GridConnectivity_t", connections},
            {"GridConnectivity1to1_t", oneToOne},
            {"DiscreteData_t", discrete}};
}

void CgnsFile::fail(const std::string& what) const
{
    throw ImportError({name, 0}, what);
}

void CgnsFile::check(int status, const std::string& what) const
{
    if (status != CG_OK) {
        fail("damaged: " + what + ": " + cg_get_error());
    }
}

} // namespace kvo
