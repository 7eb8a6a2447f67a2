// Exodus II: a netCDF file with names by convention. Blocks, sets and their members are variables with numbers in their
// names (connect1, node_ns2); ids stand in maps beside them.
#include "container_reader.h"

#include <cctype>

#include "container_elements.h"
#include "mesh_finish.h"
#include "netcdf_file.h"
#include "numbering.h"
#include "polygon.h"
#include "text/fields.h"

namespace kvo {

namespace {

using Ids = std::vector<std::int64_t>;

constexpr int noDirection = -1;

struct Block
{
    std::string number; // in the names of its variables, from "1"
    std::uint32_t part = 0;
    std::string type; // as types are called: "HEX8"
    std::size_t elements = 0;
    std::size_t nodesEach = 0; // of an "nsided" block: all of them
};

struct Exodus
{
    const NetcdfFile& file;
    Mesh& mesh;
    MeshRows& rows;
    ImportLog& log;
    PolygonElements polygons; // of all blocks
    Ids elementIds;           // by position
    std::size_t nextElement = 0;

    std::size_t dimensions() const { return file.length("num_dim"); }
};

// A map of ids, or positions from 1 where there is no usable one.
Ids idMap(const NetcdfFile& file, const std::string& name, std::size_t count, const char* what, ImportLog& log)
{
    Ids ids;
    if (file.hasVariable(name)) {
        ids = file.integers(name, count);
        const std::string fault = numberingFault(ids, count);
        if (fault.empty()) {
            return ids;
        }
        log.warn("id maps that cannot be used", {file.path(), 0},
                 name + " is no numbering, since " + fault + ": " + what + " are numbered by their positions");
    }
    ids.resize(count);
    for (std::size_t k = 0; k < count; ++k) {
        ids[k] = static_cast<std::int64_t>(k + 1);
    }
    return ids;
}

// --- nodes ---

// One array for all directions in older files, one a direction in newer ones.
void readCoordinates(const NetcdfFile& file, std::size_t dimensions, MeshFile& to)
{
    const std::size_t count = to.nodeIds.size();
    to.xyz.assign(3 * count, 0.0);
    const bool together = file.hasVariable("coord");
    const std::vector<double> all = together ? file.reals("coord", dimensions * count) : std::vector<double>();
    for (std::size_t d = 0; d < dimensions; ++d) {
        const std::string name = std::string("coord") + "xyz"[d];
        const std::vector<double> one = together ? std::vector<double>() : file.reals(name, count);
        for (std::size_t k = 0; k < count; ++k) {
            to.xyz[3 * k + d] = together ? all[d * count + k] : one[k];
        }
    }
}

void readNodes(Exodus& exodus)
{
    const NetcdfFile& file = exodus.file;
    const std::size_t dimensions = exodus.dimensions();
    const std::size_t count = file.length("num_nodes");
    if (dimensions < 1 || dimensions > 3) {
        throw ImportError({file.path(), 0}, "damaged: a mesh of " + std::to_string(dimensions) + " dimensions");
    }
    if (count == 0) {
        throw ImportError({file.path(), 0}, "has no nodes");
    }
    checkPlausible(file.path(), count, 4, true);
    MeshFile& to = exodus.mesh.files.emplace_back();
    to.nodeIds = idMap(file, "node_num_map", count, "nodes", exodus.log);
    readCoordinates(file, dimensions, to);
}

// --- blocks ---

// What stands in the list of their nodes depends on degrees that are elsewhere.
bool isBezier(const std::string& type)
{
    return startsWithIgnoringCase(type, "BEX");
}

// "hex", "HEX" and "Hex8" of eight nodes are one type.
std::string typeName(const std::string& written, std::size_t nodes)
{
    const std::string name = upperCase(written.empty() ? "UNNAMED" : written);
    const bool counted = std::isdigit(static_cast<unsigned char>(name.back())) != 0;
    const bool countsDiffer = startsWithIgnoringCase(name, "NSIDED") || isBezier(name) || nodes == 0;
    return counted || countsDiffer ? name : name + std::to_string(nodes);
}

bool agree(const std::vector<double>& table, std::size_t columns, std::size_t column)
{
    for (std::size_t k = column; k < table.size(); k += columns) {
        if (table[k] != table[column]) {
            return false;
        }
    }
    return true;
}

// Where the direction of a beam's cross-section begins among so many attributes: behind area and moments of inertia.
int directionColumn(const ContainerElement& kind, std::size_t attributes, std::size_t dimensions)
{
    return kind.drawn && kind.family == Family::Beam && dimensions == 3 && attributes >= 7 ? 4 : noDirection;
}

// The first attribute is a shell's thickness or a bar's area; the block has it where all its elements agree.
void readAttributes(Exodus& exodus, const Block& block, const ContainerElement& kind, const Ids& ids)
{
    const NetcdfFile& file = exodus.file;
    const std::size_t columns = file.length("num_att_in_blk" + block.number);
    if (columns == 0 || !kind.drawn || !file.hasVariable("attrib" + block.number)) {
        return;
    }
    const std::vector<double> table = file.reals("attrib" + block.number, block.elements * columns);
    SectionData& data = exodus.mesh.parts[block.part].data;
    const bool oneValue = !table.empty() && agree(table, columns, 0);
    if (oneValue && kind.family == Family::Shell) {
        data.thickness = table[0];
    }
    if (oneValue && kind.family == Family::Beam) {
        data.area = table[0];
    }
    const int column = directionColumn(kind, columns, exodus.dimensions());
    for (std::size_t e = 0; column != noDirection && e < block.elements; ++e) {
        const double* v = &table[e * columns + static_cast<std::size_t>(column)];
        if (v[0] != 0 || v[1] != 0 || v[2] != 0) {
            exodus.mesh.files.front().orient(ids[e], {v[0], v[1], v[2]});
        }
    }
}

void addPolygons(Exodus& exodus, const Block& block, const Ids& ids)
{
    MeshFile& to = exodus.mesh.files.front();
    const Ids counts = exodus.file.integers("ebepecnt" + block.number, block.elements);
    const Ids nodes = exodus.file.integers("connect" + block.number, block.nodesEach);
    std::size_t next = 0;
    for (std::size_t e = 0; e < block.elements; ++e) {
        if (counts[e] < 0 || static_cast<std::size_t>(counts[e]) > nodes.size() - next) {
            throw ImportError({exodus.file.path(), 0}, "damaged: polygons with more corners than the file has");
        }
        std::vector<std::uint32_t> corners;
        for (std::int64_t k = 0; k < counts[e]; ++k, ++next) {
            nodeIdAt(exodus.mesh, to, nodes[next]);
            corners.push_back(static_cast<std::uint32_t>(nodes[next] - 1));
        }
        exodus.polygons.add(block.type, ids[e], block.part, 0, corners);
    }
}

// Polyhedra name faces instead of nodes, Bezier elements control points, and blocks may be without any: their elements
// are kept by their ids.
void addWithoutNodes(Exodus& exodus, const Block& block, const Ids& ids)
{
    for (const std::int64_t id : ids) {
        exodus.mesh.files.front().addUndrawn(block.type, id, nullptr, 0);
    }
    exodus.log.count(listElementsNotDrawn, block.type, block.elements, {exodus.file.path(), 0});
}

void addElements(Exodus& exodus, const Block& block, const ContainerElement& kind, const Ids& ids)
{
    MeshFile& to = exodus.mesh.files.front();
    const std::string connect = "connect" + block.number;
    if (block.nodesEach == 0 || isBezier(block.type) || !exodus.file.hasVariable(connect)) {
        addWithoutNodes(exodus, block, ids);
        return;
    }
    const Ids nodes = exodus.file.integers(connect, block.elements * block.nodesEach);
    const std::uint32_t type = kind.drawn ? exodus.rows.type(block.type, kind.family, kind.shape) : 0;
    for (std::size_t e = 0; e < block.elements; ++e) {
        const std::int64_t* positions = &nodes[e * block.nodesEach];
        if (kind.drawn) {
            addElementByPositions(exodus.mesh, to, type, block.part, ids[e], positions);
        } else {
            addUndrawnByPositions(exodus.mesh, to, block.type, ids[e], positions, block.nodesEach);
        }
    }
    if (!kind.drawn) {
        exodus.log.count(listElementsNotDrawn, block.type, block.elements, {exodus.file.path(), 0});
    }
}

// It stands with the list of nodes, or of faces.
std::string writtenType(const NetcdfFile& file, const std::string& number)
{
    for (const char* const list : {"connect", "facconn"}) {
        if (file.hasVariable(list + number)) {
            return file.text(list + number, "elem_type");
        }
    }
    return {};
}

Block blockAt(Exodus& exodus, std::size_t index, std::int64_t id, const std::string& name)
{
    Block block;
    block.number = std::to_string(index + 1);
    block.elements = exodus.file.length("num_el_in_blk" + block.number);
    block.nodesEach = exodus.file.length("num_nod_per_el" + block.number);
    block.type = typeName(writtenType(exodus.file, block.number), block.nodesEach);
    block.part = static_cast<std::uint32_t>(exodus.mesh.parts.size());
    MeshPart& part = exodus.mesh.parts.emplace_back();
    part.id = id;
    part.name = name.empty() ? "block " + std::to_string(id) : name;
    part.section = "element block";
    return block;
}

void readBlock(Exodus& exodus, const Block& block)
{
    if (block.elements > exodus.elementIds.size() - exodus.nextElement) {
        throw ImportError({exodus.file.path(), 0}, "damaged: the blocks have more elements than the file");
    }
    const auto first = exodus.elementIds.begin() + static_cast<std::ptrdiff_t>(exodus.nextElement);
    const Ids ids(first, first + static_cast<std::ptrdiff_t>(block.elements));
    exodus.nextElement += block.elements;
    if (block.elements == 0) {
        return;
    }
    if (startsWithIgnoringCase(block.type, "NSIDED")) {
        addPolygons(exodus, block, ids);
        return;
    }
    const ContainerElement kind = containerElement(block.type, block.nodesEach);
    addElements(exodus, block, kind, ids);
    readAttributes(exodus, block, kind, ids);
}

// The ids of blocks or sets: a property of theirs that newer files have and the oldest may lack.
Ids propertyIds(const NetcdfFile& file, const std::string& variable, std::size_t count)
{
    if (file.hasVariable(variable)) {
        return file.integers(variable, count);
    }
    Ids ids;
    for (std::size_t k = 0; k < count; ++k) {
        ids.push_back(static_cast<std::int64_t>(k + 1));
    }
    return ids;
}

void readBlocks(Exodus& exodus)
{
    const NetcdfFile& file = exodus.file;
    const std::size_t elements = file.length("num_elem");
    checkPlausible(file.path(), elements, 4, true);
    exodus.elementIds = idMap(file, "elem_num_map", elements, "elements", exodus.log);
    const std::size_t count = file.length("num_el_blk");
    const Ids ids = propertyIds(file, "eb_prop1", count);
    const std::vector<std::string> names = file.names("eb_names", count);
    for (std::size_t k = 0; k < count; ++k) {
        readBlock(exodus, blockAt(exodus, k, ids[k], names[k]));
    }
}

// --- sets ---

struct SetRow
{
    const char* title;   // of sets without a name
    const char* count;   // dimension: how many sets
    const char* ids;     // variable: their ids
    const char* names;   // variable: their names
    const char* length;  // dimension, with the set's number behind it: how many members
    const char* members; // variable, likewise: positions of the members
    MeshSet::Of of;
};

const SetRow setRows[] = {
    {"node set", "num_node_sets", "ns_prop1", "ns_names", "num_nod_ns", "node_ns", MeshSet::Of::Nodes},
    {"side set", "num_side_sets", "ss_prop1", "ss_names", "num_side_ss", "elem_ss", MeshSet::Of::Elements},
    {"element set", "num_elem_sets", "els_prop1", "els_names", "num_ele_els", "elem_els", MeshSet::Of::Elements},
};

IdSet membersOf(const Exodus& exodus, const Ids& byPosition, const Ids& positions)
{
    Ids ids;
    for (const std::int64_t position : positions) {
        if (position < 1 || static_cast<std::uint64_t>(position) > byPosition.size()) {
            throw ImportError({exodus.file.path(), 0}, "damaged: a set has the member " + std::to_string(position) +
                                                           " of " + std::to_string(byPosition.size()));
        }
        ids.push_back(byPosition[static_cast<std::size_t>(position - 1)]);
    }
    return idSetOf(ids);
}

void readSets(Exodus& exodus, const SetRow& row)
{
    const NetcdfFile& file = exodus.file;
    const std::size_t count = file.length(row.count);
    const Ids ids = propertyIds(file, row.ids, count);
    const std::vector<std::string> names = file.names(row.names, count);
    const Ids& byPosition = row.of == MeshSet::Of::Nodes ? exodus.mesh.files.front().nodeIds : exodus.elementIds;
    for (std::size_t k = 0; k < count; ++k) {
        const std::string number = std::to_string(k + 1);
        const std::size_t length = file.length(row.length + number);
        MeshSet set;
        set.of = row.of;
        set.id = ids[k];
        set.name = names[k].empty() ? row.title + (" " + std::to_string(ids[k])) : names[k];
        if (length > 0) {
            set.ids = membersOf(exodus, byPosition, file.integers(row.members + number, length));
        }
        exodus.mesh.sets.push_back(std::move(set));
    }
}

// --- the file ---

// Dimensions that count what is not read.
const char* const ignoredCounts[][2] = {
    {"num_ed_blk", "edge blocks"},       {"num_fa_blk", "face blocks"},
    {"num_edge_sets", "edge sets"},      {"num_face_sets", "face sets"},
    {"num_elem_maps", "element maps"},   {"num_node_maps", "node maps"},
    {"num_nod_var", "nodal variables"},  {"num_elem_var", "element variables"},
    {"num_glo_var", "global variables"}, {"num_blob", "blobs"},
};

void countIgnored(const Exodus& exodus)
{
    for (const auto& row : ignoredCounts) {
        if (const std::size_t count = exodus.file.length(row[0])) {
            exodus.log.count(listDataNotRead, row[1], count, {exodus.file.path(), 0});
        }
    }
    if (const std::size_t assemblies = exodus.file.dimensionsBeginning("num_entity_assembly")) { // one per assembly
        exodus.log.count(listDataNotRead, "assemblies", assemblies, {exodus.file.path(), 0});
    }
}

} // namespace

Mesh readExodus(const std::string& path, ImportLog& log)
{
    const NetcdfFile file(path);
    if (!file.hasDimension("num_dim")) {
        throw ImportError({path, 0}, "is a netCDF file without an Exodus II model");
    }
    Mesh mesh;
    MeshRows rows(mesh);
    mesh.sourceFiles = {path};
    const std::string title = file.text("", "title");
    if (!title.empty()) {
        mesh.facts.push_back({"title", title});
    }
    Exodus exodus{file, mesh, rows, log, PolygonElements(mesh, rows, log), {}};
    readNodes(exodus);
    readBlocks(exodus);
    exodus.polygons.finish();
    for (const SetRow& row : setRows) {
        readSets(exodus, row);
    }
    countIgnored(exodus);
    finishMesh(mesh, log);
    return mesh;
}

} // namespace kvo
