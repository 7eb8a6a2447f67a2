// The door to the MED library.
#include "med_file.h"

#include <med.h>

#include <algorithm>

#include "container_elements.h"
#include "place.h"

namespace kvo {

// What the library counts and reads by: an entity and a geometry type.
struct MedFile::Entity
{
    med_entity_type entity;
    med_geometry_type geometry;
};

namespace {

struct GeometryRow
{
    const char* name;
    med_geometry_type geometry;
    std::size_t nodes; // 0: polygons
};

// The corners of second-order elements come first.
const GeometryRow geometries[] = {
    {"POINT1", MED_POINT1, 1},    {"SEG2", MED_SEG2, 2},         {"SEG3", MED_SEG3, 3},
    {"SEG4", MED_SEG4, 4},        {"TRIA3", MED_TRIA3, 3},       {"TRIA6", MED_TRIA6, 6},
    {"TRIA7", MED_TRIA7, 7},      {"QUAD4", MED_QUAD4, 4},       {"QUAD8", MED_QUAD8, 8},
    {"QUAD9", MED_QUAD9, 9},      {"TETRA4", MED_TETRA4, 4},     {"TETRA10", MED_TETRA10, 10},
    {"PYRA5", MED_PYRA5, 5},      {"PYRA13", MED_PYRA13, 13},    {"PENTA6", MED_PENTA6, 6},
    {"PENTA15", MED_PENTA15, 15}, {"PENTA18", MED_PENTA18, 18},  {"HEXA8", MED_HEXA8, 8},
    {"HEXA20", MED_HEXA20, 20},   {"HEXA27", MED_HEXA27, 27},    {"OCTA12", MED_OCTA12, 12},
    {"POLYGON", MED_POLYGON, 0},  {"POLYGON2", MED_POLYGON2, 0},
};

template <class Number> std::vector<std::int64_t> widened(const std::vector<Number>& values)
{
    return std::vector<std::int64_t>(values.begin(), values.end());
}

// A buffer for count texts of the library, and its rows.
std::string rowOf(const std::vector<char>& text, std::size_t row, std::size_t width)
{
    return trimmedName(std::string(text.data() + row * width, width));
}

} // namespace

MedFile::MedFile(const std::string& path) : name(path)
{
    med_bool hdfOk = MED_FALSE, medOk = MED_FALSE;
    if (MEDfileCompatibility(path.c_str(), &hdfOk, &medOk) < 0 || !hdfOk || !medOk) {
        fail("is damaged, or of a version of MED that cannot be read");
    }
    id = MEDfileOpen(path.c_str(), MED_ACC_RDONLY);
    if (id < 0) {
        fail("cannot be opened as a MED file");
    }
    med_int version = 0, minor = 0, release = 0;
    check(MEDfileNumVersionRd(id, &version, &minor, &release), "its version");
    majorVersion = version;
}

MedFile::~MedFile()
{
    MEDfileClose(id);
}

// --- meshes ---

std::vector<MedMesh> MedFile::meshes() const
{
    const med_int count = MEDnMesh(id);
    check(count, "the number of its meshes");
    std::vector<MedMesh> result;
    for (int k = 1; k <= count; ++k) {
        result.push_back(meshAt(k));
    }
    return result;
}

MedMesh MedFile::meshAt(int position) const
{
    const int axes = MEDmeshnAxis(id, position);
    if (axes < 0 || axes > 3) {
        fail("damaged: a mesh of " + std::to_string(axes) + " axes");
    }
    char meshName[MED_NAME_SIZE + 1] = {}, description[MED_COMMENT_SIZE + 1] = {}, timeUnit[MED_SNAME_SIZE + 1] = {};
    char axisNames[3 * MED_SNAME_SIZE + 1] = {}, axisUnits[3 * MED_SNAME_SIZE + 1] = {};
    med_int space = 0, dimensions = 0, steps = 0;
    med_mesh_type type = MED_UNDEF_MESH_TYPE;
    med_sorting_type sorting = MED_SORT_UNDEF;
    med_axis_type axis = MED_UNDEF_AXIS_TYPE;
    check(MEDmeshInfo(id, position, meshName, &space, &dimensions, &type, description, timeUnit, &sorting, &steps,
                      &axis, axisNames, axisUnits),
          "a mesh");
    MedMesh mesh;
    mesh.name = meshName;
    mesh.description = trimmedName(description);
    mesh.unit = trimmedName(std::string(axisUnits, MED_SNAME_SIZE));
    mesh.steps = steps;
    mesh.structured = type == MED_STRUCTURED_MESH;
    mesh.cartesian = axis != MED_CYLINDRICAL && axis != MED_SPHERICAL;
    mesh.spaceDimensions = space;
    if (space < 1 || space > 3) {
        fail("damaged: a mesh in a space of " + std::to_string(space) + " dimensions");
    }
    med_float time = 0;
    if (steps > 0) {
        check(MEDmeshComputationStepInfo(id, mesh.name.c_str(), 1, &mesh.step[0], &mesh.step[1], &time), "a step");
    }
    mesh.lattice.dimensions = dimensions;
    readLattice(mesh);
    if (!mesh.structured) {
        mesh.nodes = std::max<std::int64_t>(count(mesh, {MED_NODE, MED_NONE}, MED_COORDINATE, MED_NO_CMODE), 0);
    }
    checkPlausible(name, static_cast<std::uint64_t>(mesh.nodes), 1, true);
    return mesh;
}

void MedFile::readLattice(MedMesh& mesh) const
{
    if (!mesh.structured) {
        return;
    }
    med_grid_type grid = MED_UNDEF_GRID_TYPE;
    check(MEDmeshGridTypeRd(id, mesh.name.c_str(), &grid), "a grid");
    if (grid == MED_POLAR_GRID) {
        fail("mesh \"" + mesh.name + "\" is a polar grid, which is not read");
    }
    mesh.curvilinear = grid == MED_CURVILINEAR_GRID;
    if (mesh.lattice.dimensions < 1 || mesh.lattice.dimensions > mesh.spaceDimensions) {
        fail("damaged: a grid of " + std::to_string(mesh.lattice.dimensions) + " dimensions");
    }
    med_int structure[3] = {1, 1, 1};
    if (mesh.curvilinear) {
        check(MEDmeshGridStructRd(id, mesh.name.c_str(), mesh.step[0], mesh.step[1], structure), "a grid");
    }
    const med_data_type axes[] = {MED_COORDINATE_AXIS1, MED_COORDINATE_AXIS2, MED_COORDINATE_AXIS3};
    for (std::size_t d = 0; d < static_cast<std::size_t>(mesh.lattice.dimensions); ++d) {
        mesh.lattice.nodes[d] =
            mesh.curvilinear ? structure[d] : count(mesh, {MED_NODE, MED_NONE}, axes[d], MED_NO_CMODE);
        if (mesh.lattice.nodes[d] < 1 || mesh.lattice.nodes[d] > INT32_MAX / mesh.lattice.nodeCount() + 1) {
            fail("damaged: a grid with " + std::to_string(mesh.lattice.nodes[d]) + " nodes along an axis");
        }
    }
    mesh.nodes = mesh.lattice.nodeCount();
}

// --- families ---

std::vector<MedFamily> MedFile::families(const MedMesh& mesh) const
{
    std::vector<MedFamily> result;
    const med_int count = MEDnFamily(id, mesh.name.c_str());
    for (int k = 1; k <= count; ++k) {
        const med_int groups = std::max(MEDnFamilyGroup(id, mesh.name.c_str(), k), 0);
        checkPlausible(name, static_cast<std::uint64_t>(groups), 1, true);
        std::vector<char> groupNames(static_cast<std::size_t>(groups) * MED_LNAME_SIZE + 1);
        char familyName[MED_NAME_SIZE + 1] = {};
        med_int number = 0;
        if (majorVersion >= 3) {
            check(MEDfamilyInfo(id, mesh.name.c_str(), k, familyName, &number, groupNames.data()), "a family");
        } else { // families of those files have attributes besides groups
            const med_int attributes = std::max(MEDnFamily23Attribute(id, mesh.name.c_str(), k), 0);
            checkPlausible(name, static_cast<std::uint64_t>(attributes), 1, true);
            const std::size_t size = static_cast<std::size_t>(attributes);
            std::vector<med_int> ids(size + 1), values(size + 1);
            std::vector<char> texts(size * MED_COMMENT_SIZE + 1);
            check(MEDfamily23Info(id, mesh.name.c_str(), k, familyName, ids.data(), values.data(), texts.data(),
                                  &number, groupNames.data()),
                  "a family");
        }
        MedFamily family;
        family.number = number;
        family.name = trimmedName(familyName);
        for (std::size_t g = 0; g < static_cast<std::size_t>(groups); ++g) {
            family.groups.push_back(rowOf(groupNames, g, MED_LNAME_SIZE));
        }
        result.push_back(std::move(family));
    }
    return result;
}

// --- nodes ---

std::vector<double> MedFile::coordinates(const MedMesh& mesh) const
{
    if (mesh.structured && !mesh.curvilinear) {
        return latticeCoordinates(mesh);
    }
    const std::size_t dimensions = static_cast<std::size_t>(mesh.spaceDimensions);
    std::vector<med_float> values(static_cast<std::size_t>(mesh.nodes) * dimensions);
    if (!values.empty()) {
        check(MEDmeshNodeCoordinateRd(id, mesh.name.c_str(), mesh.step[0], mesh.step[1], MED_FULL_INTERLACE,
                                      values.data()),
              "the nodes of mesh \"" + mesh.name + "\"");
    }
    std::vector<double> xyz(3 * static_cast<std::size_t>(mesh.nodes), 0.0);
    for (std::size_t k = 0; k < values.size(); ++k) {
        xyz[k / dimensions * 3 + k % dimensions] = values[k];
    }
    return xyz;
}

std::vector<double> MedFile::latticeCoordinates(const MedMesh& mesh) const
{
    std::vector<double> along[3];
    for (std::size_t d = 0; d < 3; ++d) {
        along[d].assign(static_cast<std::size_t>(mesh.lattice.nodes[d]), 0.0);
        if (static_cast<int>(d) < mesh.lattice.dimensions) {
            check(MEDmeshGridIndexCoordinateRd(id, mesh.name.c_str(), mesh.step[0], mesh.step[1],
                                               static_cast<med_int>(d + 1), along[d].data()),
                  "the axes of mesh \"" + mesh.name + "\"");
        }
    }
    std::vector<double> xyz;
    for (const double z : along[2]) {
        for (const double y : along[1]) {
            for (const double x : along[0]) {
                xyz.insert(xyz.end(), {x, y, z});
            }
        }
    }
    return xyz;
}

std::vector<std::int64_t> MedFile::nodeNumbers(const MedMesh& mesh) const
{
    return optional(mesh, {MED_NODE, MED_NONE}, MED_NUMBER, mesh.nodes);
}

std::vector<std::int64_t> MedFile::nodeFamilies(const MedMesh& mesh) const
{
    return optional(mesh, {MED_NODE, MED_NONE}, MED_FAMILY_NUMBER, mesh.nodes);
}

// --- elements ---

std::vector<MedElements> MedFile::elements(const MedMesh& mesh) const
{
    std::vector<MedElements> result;
    if (mesh.structured) {
        const GeometryRow cells[] = {{"SEG2", MED_SEG2, 2}, {"QUAD4", MED_QUAD4, 4}, {"HEXA8", MED_HEXA8, 8}};
        const GeometryRow& row = cells[mesh.lattice.dimensions - 1];
        MedElements elements;
        elements.type = row.name;
        elements.nodesEach = row.nodes;
        elements.nodes = cellCorners(mesh.lattice);
        elements.count = elements.nodes.size() / row.nodes;
        elements.numbers = optional(mesh, {MED_CELL, row.geometry}, MED_NUMBER, mesh.lattice.cellCount());
        elements.families = optional(mesh, {MED_CELL, row.geometry}, MED_FAMILY_NUMBER, mesh.lattice.cellCount());
        return {elements};
    }
    for (const GeometryRow& row : geometries) {
        const Entity entity{MED_CELL, row.geometry};
        MedElements elements = row.nodes > 0 ? fixedElements(mesh, entity, row.nodes) : polygons(mesh, entity);
        if (elements.count > 0) {
            elements.type = row.name;
            const std::int64_t size = static_cast<std::int64_t>(elements.count);
            elements.numbers = optional(mesh, entity, MED_NUMBER, size);
            elements.families = optional(mesh, entity, MED_FAMILY_NUMBER, size);
            result.push_back(std::move(elements));
        }
    }
    return result;
}

MedElements MedFile::fixedElements(const MedMesh& mesh, const Entity& entity, std::size_t nodesEach) const
{
    MedElements elements;
    const std::int64_t size = count(mesh, entity, MED_CONNECTIVITY, MED_NODAL);
    if (size <= 0) {
        return elements;
    }
    checkPlausible(name, static_cast<std::uint64_t>(size), nodesEach, true);
    elements.count = static_cast<std::size_t>(size);
    elements.nodesEach = nodesEach;
    std::vector<med_int> nodes(elements.count * nodesEach);
    check(MEDmeshElementConnectivityRd(id, mesh.name.c_str(), mesh.step[0], mesh.step[1], entity.entity,
                                       entity.geometry, MED_NODAL, MED_FULL_INTERLACE, nodes.data()),
          "the elements of mesh \"" + mesh.name + "\"");
    elements.nodes = widened(nodes);
    return elements;
}

MedElements MedFile::polygons(const MedMesh& mesh, const Entity& entity) const
{
    MedElements elements;
    const std::int64_t starts = count(mesh, entity, MED_INDEX_NODE, MED_NODAL);
    const std::int64_t size = count(mesh, entity, MED_CONNECTIVITY, MED_NODAL);
    if (starts < 2 || size <= 0) {
        return elements;
    }
    checkPlausible(name, static_cast<std::uint64_t>(starts) + static_cast<std::uint64_t>(size), 1, true);
    elements.count = static_cast<std::size_t>(starts - 1);
    std::vector<med_int> index(static_cast<std::size_t>(starts)), nodes(static_cast<std::size_t>(size));
    check(MEDmeshPolygon2Rd(id, mesh.name.c_str(), mesh.step[0], mesh.step[1], entity.entity, entity.geometry,
                            MED_NODAL, index.data(), nodes.data()),
          "the polygons of mesh \"" + mesh.name + "\"");
    for (std::size_t k = 0; k < index.size(); ++k) { // from 1 in the file
        if (index[k] < (k == 0 ? 1 : index[k - 1]) || index[k] - 1 > size) {
            fail("damaged: the polygons of mesh \"" + mesh.name + "\"");
        }
        elements.starts.push_back(index[k] - 1);
    }
    elements.nodes = widened(nodes);
    return elements;
}

// --- what is not read ---

// Elements that are given by their faces only.
std::uint64_t MedFile::descendingElements(const MedMesh& mesh) const
{
    std::uint64_t sum = 0;
    for (const GeometryRow& row : geometries) {
        const std::int64_t size =
            row.nodes > 0 ? count(mesh, {MED_CELL, row.geometry}, MED_CONNECTIVITY, MED_DESCENDING) : 0;
        const bool nodalToo = size > 0 && count(mesh, {MED_CELL, row.geometry}, MED_CONNECTIVITY, MED_NODAL) > 0;
        sum += size > 0 && !nodalToo ? static_cast<std::uint64_t>(size) : 0;
    }
    const std::int64_t polyhedra = count(mesh, {MED_CELL, MED_POLYHEDRON}, MED_INDEX_FACE, MED_NODAL);
    return sum + (polyhedra > 1 ? static_cast<std::uint64_t>(polyhedra - 1) : 0);
}

// Those of an entity other than cells, such as the faces that older files list beside them.
std::uint64_t MedFile::elementsOf(const MedMesh& mesh, int entity) const
{
    std::uint64_t sum = 0;
    for (const GeometryRow& row : geometries) {
        const Entity what{static_cast<med_entity_type>(entity), row.geometry};
        sum += static_cast<std::uint64_t>(std::max<std::int64_t>(count(mesh, what, MED_CONNECTIVITY, MED_NODAL), 0));
    }
    return sum;
}

std::vector<MedIgnored> MedFile::ignored(const MedMesh& mesh) const
{
    const std::uint64_t laterSteps = mesh.steps > 1 ? static_cast<std::uint64_t>(mesh.steps - 1) : 0;
    if (mesh.structured) {
        return {{"later steps of a mesh", laterSteps}};
    }
    return {{"later steps of a mesh", laterSteps},
            {"elements given by their faces", descendingElements(mesh)},
            {"faces beside the elements", elementsOf(mesh, MED_DESCENDING_FACE)},
            {"edges beside the elements", elementsOf(mesh, MED_DESCENDING_EDGE)}};
}

std::vector<MedIgnored> MedFile::ignored() const
{
    return {{"fields", static_cast<std::uint64_t>(std::max<med_int>(MEDnField(id), 0))},
            {"structural elements", static_cast<std::uint64_t>(std::max<med_int>(MEDnStructElement(id), 0))}};
}

// --- the library ---

std::int64_t MedFile::count(const MedMesh& mesh, const Entity& entity, int data, int connectivity) const
{
    med_bool changed = MED_FALSE, moved = MED_FALSE;
    return MEDmeshnEntity(id, mesh.name.c_str(), mesh.step[0], mesh.step[1], entity.entity, entity.geometry,
                          static_cast<med_data_type>(data), static_cast<med_connectivity_mode>(connectivity), &changed,
                          &moved);
}

// Numbers or families, one per entity; empty if the file has none.
std::vector<std::int64_t> MedFile::optional(const MedMesh& mesh, const Entity& entity, int data,
                                            std::int64_t expected) const
{
    const std::int64_t size = count(mesh, entity, data, MED_NODAL);
    if (size <= 0 || expected <= 0) {
        return {};
    }
    if (size != expected) {
        fail("damaged: mesh \"" + mesh.name + "\" has " + std::to_string(size) + " numbers for " +
             std::to_string(expected) + " things");
    }
    std::vector<med_int> values(static_cast<std::size_t>(size));
    const auto read = data == MED_NUMBER ? MEDmeshEntityNumberRd : MEDmeshEntityFamilyNumberRd;
    check(read(id, mesh.name.c_str(), mesh.step[0], mesh.step[1], entity.entity, entity.geometry, values.data()),
          "the numbers of mesh \"" + mesh.name + "\"");
    return widened(values);
}

void MedFile::fail(const std::string& what) const
{
    throw ImportError({name, 0}, what);
}

void MedFile::check(int status, const std::string& what) const
{
    if (status < 0) {
        fail("damaged: " + what + " cannot be read");
    }
}

} // namespace kvo
