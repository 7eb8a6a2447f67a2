// CGNS: zones with sections of elements, or structured ones, each with node and element numbers of its own.
#include "container_reader.h"

#include <algorithm>
#include <map>

#include "cgns_file.h"
#include "container_elements.h"
#include "mesh_finish.h"
#include "numbering.h"
#include "polygon.h"
#include "solid_sense.h"

namespace kvo {

namespace {

using Ids = std::vector<std::int64_t>;
using On = CgnsCondition::On;

// What one zone becomes.
struct ZoneTarget
{
    const CgnsZone& zone;
    Mesh& mesh;
    MeshRows& rows;
    ImportLog& log;
    std::size_t fileIndex;
    bool severalZones;
    bool renumbered = false; // its elements: what refers to their numbers means nothing

    MeshFile& file() { return mesh.files[fileIndex]; }
    Place place() const { return {mesh.sourceFiles.front(), 0}; }
};

// --- nodes ---

void readNodes(const CgnsFile& from, ZoneTarget& target)
{
    std::vector<std::string> names;
    MeshFile& to = target.file();
    to.xyz = from.coordinates(target.zone, names);
    for (std::int64_t id = 1; id <= target.zone.nodes; ++id) {
        to.nodeIds.push_back(id);
    }
    for (const std::string& name : names) {
        if (name != "CoordinateX" && name != "CoordinateY" && name != "CoordinateZ") {
            target.log.warn("coordinates that are not x, y, z", target.place(),
                            "zone \"" + target.zone.name + "\": " + name + " is taken as if it were one of them");
        }
    }
    if (names.empty() && target.zone.nodes > 0) {
        throw ImportError(target.place(), "zone \"" + target.zone.name + "\" has no coordinates");
    }
}

// --- elements ---

std::uint32_t addPart(ZoneTarget& target, const std::string& name, const char* section)
{
    MeshPart& part = target.mesh.parts.emplace_back();
    const bool zoneItself = name.empty();
    part.name = zoneItself ? target.zone.name : target.severalZones ? target.zone.name + "/" + name : name;
    part.section = section;
    return static_cast<std::uint32_t>(target.mesh.parts.size() - 1);
}

void addStructuredCells(ZoneTarget& target)
{
    const Lattice& lattice = target.zone.lattice;
    const Shape shape = cellShape(lattice);
    const ContainerElement kinds[] = {
        {true, Family::Beam, Shape::Line}, {true, Family::Shell, Shape::Quad}, {true, Family::Solid, Shape::Hexa}};
    const char* const names[] = {"BAR_2", "QUAD_4", "HEXA_8"};
    const std::size_t row = static_cast<std::size_t>(lattice.dimensions - 1);
    const std::uint32_t type = target.rows.type(names[row], kinds[row].family, shape);
    const std::uint32_t part = addPart(target, "", "structured zone");
    const Ids corners = cellCorners(lattice);
    const std::size_t each = static_cast<std::size_t>(cornerCount(shape));
    for (std::size_t e = 0; e * each < corners.size(); ++e) {
        addElementByPositions(target.mesh, target.file(), type, part, static_cast<std::int64_t>(e + 1),
                              &corners[e * each]);
    }
}

// One element of a section that is neither polygon nor polyhedron.
void addElement(ZoneTarget& target, const std::string& type, std::uint32_t part, std::int64_t id,
                const std::int64_t* nodes, std::size_t count)
{
    const ContainerElement kind = containerElement(type, count);
    if (kind.drawn) {
        addElementByPositions(target.mesh, target.file(), target.rows.type(type, kind.family, kind.shape), part, id,
                              nodes);
        return;
    }
    addUndrawnByPositions(target.mesh, target.file(), type, id, nodes, count);
    target.log.count(listElementsNotDrawn, type, 1, target.place());
}

void addPolygons(ZoneTarget& target, const CgnsSection& section, std::uint32_t part, PolygonElements& polygons)
{
    for (std::size_t e = 0; e < section.count(); ++e) {
        std::vector<std::uint32_t> corners;
        for (std::int64_t k = section.starts[e]; k < section.starts[e + 1]; ++k) {
            const std::int64_t position = section.nodes[static_cast<std::size_t>(k)];
            nodeIdAt(target.mesh, target.file(), position);
            corners.push_back(static_cast<std::uint32_t>(position - 1));
        }
        polygons.add(section.typeOf(e), section.first + static_cast<std::int64_t>(e), part, 0, corners);
    }
}

void addPolyhedra(ZoneTarget& target, const CgnsSection& section)
{
    for (std::size_t e = 0; e < section.count(); ++e) {
        target.file().addUndrawn(section.typeOf(e), section.first + static_cast<std::int64_t>(e), nullptr, 0);
    }
    target.log.count(listElementsNotDrawn, section.types[0], section.count(), target.place());
}

void addFixed(ZoneTarget& target, const CgnsSection& section, std::uint32_t part)
{
    for (std::size_t e = 0; e < section.count(); ++e) {
        const std::size_t start = static_cast<std::size_t>(section.starts[e]);
        addElement(target, section.typeOf(e), part, section.first + static_cast<std::int64_t>(e), &section.nodes[start],
                   static_cast<std::size_t>(section.starts[e + 1]) - start);
    }
}

// Sections are ranges of one numbering. Where they are not, elements are numbered in the order of the sections.
void settleNumbers(ZoneTarget& target, std::vector<CgnsSection>& sections)
{
    std::vector<std::array<std::int64_t, 2>> ranges;
    bool fit = true;
    for (const CgnsSection& section : sections) {
        const std::int64_t count = static_cast<std::int64_t>(section.count());
        fit = fit && section.first >= 1 && section.first <= maxModelId - count + 1;
        ranges.push_back({section.first, fit ? section.first + count - 1 : 0});
    }
    std::sort(ranges.begin(), ranges.end());
    for (std::size_t k = 1; k < ranges.size(); ++k) {
        fit = fit && ranges[k][0] > ranges[k - 1][1];
    }
    if (fit) {
        return;
    }
    target.renumbered = true;
    target.log.warn("numbers that cannot be used", target.place(),
                    "zone \"" + target.zone.name +
                        "\": sections have the same numbers, or such as no model holds: their elements are numbered by "
                        "their positions");
    std::int64_t next = 1;
    for (CgnsSection& section : sections) {
        section.first = next;
        next += static_cast<std::int64_t>(section.count());
    }
}

// What polygons are divided into has ids above those of all sections.
void addSections(ZoneTarget& target, std::vector<CgnsSection> sections)
{
    settleNumbers(target, sections);
    PolygonElements polygons(target.mesh, target.rows, target.log, target.fileIndex);
    for (const CgnsSection& section : sections) {
        if (section.types[0] == "NFACE_n") {
            addPolyhedra(target, section);
        } else if (section.types[0] == "NGON_n") {
            addPolygons(target, section, addPart(target, section.name, "section"), polygons);
        } else {
            addFixed(target, section, addPart(target, section.name, "section"));
        }
    }
    polygons.finish();
}

// --- sets ---

// The nodes of a range in a structured zone; a range of faces reaches one node further along its face. Returns false if
// the range reaches out of the zone: of that only what is in it counts.
bool addLatticeNodes(const Lattice& lattice, On on, std::array<CgnsCondition::Point, 2> range, Ids& ids)
{
    const On faces[] = {On::FacesI, On::FacesJ, On::FacesK};
    bool inside = true;
    for (std::size_t d = 0; d < 3; ++d) {
        const bool along = on != On::Nodes && on != faces[d] && static_cast<int>(d) < lattice.dimensions;
        const std::int64_t beyond = lattice.nodes[d] + (along ? 0 : 1);
        inside = inside && range[0][d] >= 1 && range[1][d] < beyond;
        range[0][d] = std::max<std::int64_t>(range[0][d], 1);
        range[1][d] = std::min(range[1][d], beyond - 1) + (along ? 1 : 0);
    }
    for (std::int64_t k = range[0][2]; k <= range[1][2]; ++k) {
        for (std::int64_t j = range[0][1]; j <= range[1][1]; ++j) {
            for (std::int64_t i = range[0][0]; i <= range[1][0]; ++i) {
                ids.push_back(lattice.position(i, j, k));
            }
        }
    }
    return inside;
}

// Sets of a zone by kind and name. A boundary condition and its family may have one name.
using SetTable = std::map<std::pair<MeshSet::Of, std::string>, IdSet>;

void addTo(SetTable& sets, MeshSet::Of of, const std::string& name, const IdSet& ids)
{
    if (!name.empty()) {
        IdSet& set = sets[{of, name}];
        set.ranges.insert(set.ranges.end(), ids.ranges.begin(), ids.ranges.end());
    }
}

IdSet latticeNodes(ZoneTarget& target, const CgnsCondition& condition)
{
    Ids nodes;
    bool inside = true;
    for (const auto& range : condition.ranges) {
        inside = addLatticeNodes(target.zone.lattice, condition.on, range, nodes) && inside;
    }
    if (!inside) {
        target.log.warn(warnSetMember, target.place(),
                        "boundary condition \"" + condition.name + "\" reaches out of zone \"" + target.zone.name +
                            "\": only what is in it is kept");
    }
    return idSetOf(std::move(nodes));
}

void addCondition(ZoneTarget& target, const CgnsCondition& condition, SetTable& sets)
{
    if (condition.on == On::Unknown || (target.zone.structured && condition.on == On::Elements)) {
        target.log.count(listDataNotRead, "boundary conditions on other things than nodes and elements", 1,
                         target.place());
        return;
    }
    if (target.renumbered && condition.on == On::Elements) {
        target.log.warn(warnSetMember, target.place(),
                        "boundary condition \"" + condition.name +
                            "\" names elements by numbers that several have: left out");
        return;
    }
    IdSet ids;
    if (target.zone.structured) {
        ids = latticeNodes(target, condition);
    } else {
        for (const auto& range : condition.ranges) {
            ids.addRange(range[0][0], range[1][0]);
        }
    }
    const MeshSet::Of of = condition.on == On::Elements ? MeshSet::Of::Elements : MeshSet::Of::Nodes;
    addTo(sets, of, condition.name, ids);
    if (condition.family != condition.name) {
        addTo(sets, of, condition.family, ids);
    }
}

// Of a zone that belongs to a family: all its elements.
void addZoneFamily(ZoneTarget& target, SetTable& sets)
{
    Ids ids;
    for (const ElementBlock& block : target.file().blocks) {
        ids.insert(ids.end(), block.ids.begin(), block.ids.end());
    }
    if (!ids.empty()) {
        addTo(sets, MeshSet::Of::Elements, target.zone.family, idSetOf(ids));
    }
}

void readSets(const CgnsFile& from, ZoneTarget& target)
{
    SetTable sets;
    for (const CgnsCondition& condition : from.conditions(target.zone)) {
        addCondition(target, condition, sets);
    }
    addZoneFamily(target, sets);
    for (const auto& entry : sets) {
        MeshSet set;
        set.of = entry.first.first;
        set.name = entry.first.second;
        set.file = static_cast<std::uint32_t>(target.fileIndex);
        set.ids = entry.second;
        target.mesh.sets.push_back(std::move(set));
    }
}

// --- zones ---

void readZone(const CgnsFile& from, ZoneTarget& target)
{
    readNodes(from, target);
    if (target.zone.structured) {
        addStructuredCells(target);
    } else {
        addSections(target, from.sections(target.zone));
    }
    readSets(from, target);
    for (const CgnsIgnored& ignored : from.ignored(target.zone)) {
        if (ignored.count > 0) {
            target.log.count(listDataNotRead, ignored.what, static_cast<std::uint64_t>(ignored.count), target.place());
        }
    }
}

// The directions of a structured zone may go round either way.
void turnStructured(Mesh& mesh, const std::vector<CgnsZone>& zones, ImportLog& log)
{
    for (std::size_t k = 0; k < zones.size(); ++k) {
        const std::uint64_t turned = zones[k].structured ? turnNegativeSolids(mesh, mesh.files[k]) : 0;
        if (turned > 0) {
            log.note("zone \"" + zones[k].name + "\": i, j, k of " + std::to_string(turned) +
                     " cells are left-handed; their corners are taken the other way round");
        }
    }
}

std::string fileName(const CgnsZone& zone, bool severalBases)
{
    return severalBases ? zone.baseName + "/" + zone.name : zone.name;
}

} // namespace

Mesh readCgns(const std::string& path, ImportLog& log)
{
    const CgnsFile file(path);
    const std::vector<CgnsZone> zones = file.zones();
    if (zones.empty()) {
        throw ImportError({path, 0}, "has no zone");
    }
    Mesh mesh;
    MeshRows rows(mesh);
    mesh.sourceFiles = {path};
    for (const CgnsZone& zone : zones) {
        mesh.files.emplace_back().name = fileName(zone, zones.back().base > 1);
        ZoneTarget target{zone, mesh, rows, log, mesh.files.size() - 1, zones.size() > 1};
        readZone(file, target);
    }
    finishMesh(mesh, log);
    turnStructured(mesh, zones, log);
    return mesh;
}

} // namespace kvo
