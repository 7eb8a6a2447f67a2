// Cells become elements.
#include "vtk_mesh.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "mesh_finish.h"
#include "node_surplus.h"
#include "numbering.h"
#include "text/fields.h"

namespace kvo {

namespace {

constexpr std::int64_t ghostBits = 1 | 32; // a copy of another piece's cell, a hidden cell
constexpr std::size_t mostTypes = 256;

// Names of arrays that say which part a cell belongs to, the better ones first; compared without what separates words.
const char* const blockNames[] = {"objectid",   "blockid",       "blockids",     "elementblockid", "elementblockids",
                                  "partid",     "partids",       "part",         "propertyid",     "propertyids",
                                  "pid",        "cellentityids", "gmshphysical", "physicalid",     "physicalids",
                                  "materialid", "materialids",   "matid",        "material",       "groupid",
                                  "groupids",   "regionid",      "region",       "zoneid",         "attribute",
                                  "attributes", "meditref"};

std::string plainName(const std::string& name)
{
    std::string plain;
    for (const char c : name) {
        if (std::isalnum(static_cast<unsigned char>(c))) {
            plain += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
    }
    return plain;
}

bool isGhost(const VtkPiece& piece, std::size_t cell)
{
    return !piece.ghosts.empty() && (piece.ghosts[cell] & ghostBits) != 0;
}

struct PointOfPiece
{
    std::int64_t id;
    const double* xyz;
};

// But for what is lost where a writer rounds.
bool samePlace(const double* a, const double* b)
{
    constexpr double rounding = 1e-6;
    double size = 0.0, distance = 0.0;
    for (int c = 0; c < 3; ++c) {
        size = std::max({size, std::fabs(a[c]), std::fabs(b[c])});
        distance = std::max(distance, std::fabs(a[c] - b[c]));
    }
    return distance <= rounding * size;
}

bool fitsCells(const std::vector<std::int64_t>& values, const VtkPiece& piece)
{
    return values.empty() || values.size() == piece.cellCount();
}

} // namespace

VtkUse useOfPointArray(const std::string& name, int components)
{
    return components == 1 && equalsIgnoringCase(name, "GlobalNodeId") ? VtkUse::Ids : VtkUse::None;
}

VtkUse useOfCellArray(const std::string& name, int components, bool integers)
{
    if (components != 1 || !integers) {
        return VtkUse::None;
    }
    if (equalsIgnoringCase(name, "GlobalElementId")) {
        return VtkUse::Ids;
    }
    if (name == "vtkGhostType") {
        return VtkUse::Ghosts;
    }
    const auto* row = std::find(std::begin(blockNames), std::end(blockNames), plainName(name));
    return row == std::end(blockNames)
               ? VtkUse::None
               : static_cast<VtkUse>(static_cast<int>(VtkUse::FirstBlock) + (row - std::begin(blockNames)));
}

VtkMesh::VtkMesh(const std::string& path, ImportLog& log)
    : log(log), rows(mesh), polygons(mesh, rows, log), typeRows(mostTypes, 0)
{
    mesh.sourceFiles.push_back(path);
    mesh.files.emplace_back();
}

// --- checks ---

void VtkMesh::check(const VtkPiece& piece) const
{
    const Place place = {mesh.sourceFiles.front(), piece.line};
    if (piece.points.size() % 3 != 0) {
        throw ImportError(place, "the points' coordinates are no multiple of three");
    }
    for (const double value : piece.points) {
        if (!std::isfinite(value)) {
            throw ImportError(place, "a point's coordinate is no number");
        }
    }
    if (piece.ends.size() != piece.types.size()) {
        throw ImportError(place, std::to_string(piece.types.size()) + " cell types for " +
                                     std::to_string(piece.ends.size()) + " cells");
    }
    if (!fitsCells(piece.blocks, piece) || !fitsCells(piece.ghosts, piece)) {
        throw ImportError(place, "a data array of the cells does not have " + std::to_string(piece.cellCount()) +
                                     " values, one per cell");
    }
    std::int64_t last = 0;
    for (const std::int64_t end : piece.ends) {
        if (end < last || end > static_cast<std::int64_t>(piece.connectivity.size())) {
            throw ImportError(place, "the cells' offsets do not fit the " + std::to_string(piece.connectivity.size()) +
                                         " points that the cells have");
        }
        last = end;
    }
}

// --- ids ---

// Of all pieces together, without copies of cells. Empty: they are a numbering.
std::string VtkMesh::cellIdsFault() const
{
    std::vector<std::int64_t> ids;
    for (const VtkPiece& piece : pieces) {
        if (piece.cellIds.size() != piece.cellCount()) {
            return numberingFault(piece.cellIds, piece.cellCount());
        }
        for (std::size_t k = 0; k < piece.cellCount(); ++k) {
            if (!isGhost(piece, k)) {
                ids.push_back(piece.cellIds[k]);
            }
        }
    }
    const std::size_t count = ids.size();
    return numberingFault(std::move(ids), count);
}

// Each piece's points are different ones; those of different pieces are the same where they share an id and a place.
std::string VtkMesh::pointIdsFault() const
{
    std::vector<PointOfPiece> all;
    for (const VtkPiece& piece : pieces) {
        const std::string fault = numberingFault(piece.pointIds, piece.pointCount());
        if (!fault.empty()) {
            return fault;
        }
        for (std::size_t k = 0; k < piece.pointCount() && pieces.size() > 1; ++k) {
            all.push_back({piece.pointIds[k], &piece.points[3 * k]});
        }
    }
    std::sort(all.begin(), all.end(), [](const PointOfPiece& a, const PointOfPiece& b) { return a.id < b.id; });
    const auto apart = std::adjacent_find(all.begin(), all.end(), [](const PointOfPiece& a, const PointOfPiece& b) {
        return a.id == b.id && !samePlace(a.xyz, b.xyz);
    });
    return apart == all.end() ? std::string() : "points in different places have the id " + std::to_string(apart->id);
}

bool VtkMesh::usable(bool some, const std::string& fault, const char* things) const
{
    if (some && !fault.empty()) {
        log.warn("id arrays that cannot be used", {mesh.sourceFiles.front(), 0},
                 std::string("the ids of the ") + things + " are no numbering, since " + fault +
                     ": they are numbered by their positions");
    }
    return some && fault.empty();
}

void VtkMesh::settleIds()
{
    bool points = false, cells = false;
    for (const VtkPiece& piece : pieces) {
        points = points || !piece.pointIds.empty();
        cells = cells || !piece.cellIds.empty();
    }
    havePointIds = usable(points, points ? pointIdsFault() : "", "points");
    haveCellIds = usable(cells, cells ? cellIdsFault() : "", "cells");
}

// --- points ---

// Pieces of one grid share points; where they have ids, a point that is known already is not added again.
void VtkMesh::addPoints(const VtkPiece& piece)
{
    MeshFile& file = mesh.files.front();
    positions.resize(piece.pointCount());
    file.nodeIds.reserve(file.nodeIds.size() + piece.pointCount());
    file.xyz.reserve(file.xyz.size() + piece.points.size());
    for (std::size_t k = 0; k < piece.pointCount(); ++k) {
        positions[k] = static_cast<std::uint32_t>(file.nodeIds.size());
        if (havePointIds && pieces.size() > 1) {
            const auto found = known.emplace(piece.pointIds[k], positions[k]);
            positions[k] = found.first->second;
            if (!found.second) {
                continue;
            }
        }
        const std::int64_t id = havePointIds ? piece.pointIds[k] : pointsBefore + static_cast<std::int64_t>(k) + 1;
        file.addNode(id, piece.points[3 * k], piece.points[3 * k + 1], piece.points[3 * k + 2]);
    }
    pointsBefore += static_cast<std::int64_t>(piece.pointCount());
}

// --- cells ---

std::uint32_t VtkMesh::partOf(const VtkPiece& piece, std::size_t cell, std::int64_t type)
{
    const bool blocks = !piece.blocks.empty();
    const std::int64_t value = blocks ? piece.blocks[cell] : type;
    if (lastPart != noPart && value == lastValue && type == lastType) { // cells of one part mostly follow each other
        return lastPart;
    }
    const auto key = std::make_pair(piece.blockName, value);
    const auto known = parts.emplace(key, static_cast<std::uint32_t>(mesh.parts.size()));
    if (known.second) {
        const VtkCellType* row = findVtkCellType(type);
        MeshPart& part = mesh.parts.emplace_back();
        part.id = value;
        part.name = blocks ? piece.blockName + " " + std::to_string(value) : row ? row->name : "cells";
        part.section = blocks ? "block" : "cell type";
        if (value == 0) {
            log.note("part \"" + part.name + "\" has the id 0, which cannot be kept: it gets one above the highest");
        }
    }
    lastValue = value;
    lastType = type;
    lastPart = known.first->second;
    return lastPart;
}

void VtkMesh::countNotDrawn(const std::string& name, const Cell& cell)
{
    std::vector<std::int64_t> nodes;
    for (std::size_t k = 0; k < cell.count; ++k) {
        nodes.push_back(mesh.files.front().nodeIds[positions[static_cast<std::size_t>(cell.points[k])]]);
    }
    mesh.files.front().addUndrawn(name, cell.id, nodes.data(), nodes.size());
    log.count(listElementsNotDrawn, name, 1, {mesh.sourceFiles.front(), cell.line});
}

bool VtkMesh::hasPoints(const Cell& cell)
{
    for (std::size_t k = 0; k < cell.count; ++k) {
        if (cell.points[k] < 0 || cell.points[k] >= static_cast<std::int64_t>(positions.size())) {
            log.warn(warnMissingNode, {mesh.sourceFiles.front(), cell.line},
                     "cell " + std::to_string(cell.id) + " refers to point " + std::to_string(cell.points[k]) + " of " +
                         std::to_string(positions.size()) + ": left out");
            return false;
        }
    }
    return true;
}

// Some writers count the triangles of wedges one way round and some the other way. Has this one the wrong way?
bool VtkMesh::wedgeIsTurned(const std::uint32_t* w) const
{
    const double* base = mesh.files.front().xyz.data();
    double edge[3][3]; // from the first corner to the two others of its triangle; between the triangles' centres
    for (std::size_t c = 0; c < 3; ++c) {
        const auto at = [&](int corner) { return base[3 * std::size_t(w[corner]) + c]; };
        edge[0][c] = at(1) - at(0);
        edge[1][c] = at(2) - at(0);
        edge[2][c] = at(3) + at(4) + at(5) - at(0) - at(1) - at(2);
    }
    const double volume = edge[2][0] * (edge[0][1] * edge[1][2] - edge[0][2] * edge[1][1]) +
                          edge[2][1] * (edge[0][2] * edge[1][0] - edge[0][0] * edge[1][2]) +
                          edge[2][2] * (edge[0][0] * edge[1][1] - edge[0][1] * edge[1][0]);
    return volume < 0.0;
}

void VtkMesh::addElement(const Cell& cell)
{
    const VtkCellType& type = *cell.type;
    const std::size_t count = static_cast<std::size_t>(cornerCount(type.shape));
    corners.resize(count);
    for (std::size_t k = 0; k < count; ++k) {
        corners[k] = positions[static_cast<std::size_t>(cell.points[type.corner[k]])];
    }
    if (type.shape == Shape::Wedge && wedgeIsTurned(corners.data())) {
        std::swap(corners[1], corners[2]);
        std::swap(corners[4], corners[5]);
        ++wedgesTurned;
    }
    std::uint32_t& row = typeRows[static_cast<std::size_t>(type.number)];
    row = row == 0 ? rows.type(type.name, type.family, type.shape) + 1 : row;
    MeshFile& file = mesh.files.front();
    ElementBlock& block = file.blockFor(row - 1, 0);
    block.ids.push_back(cell.id);
    block.part.push_back(cell.part);
    block.line.push_back(cell.line);
    for (const std::uint32_t corner : corners) {
        block.nodes.push_back(file.nodeIds[corner]);
    }
    if (type.family == Family::Beam) {
        block.nodes.push_back(noNode);
    }
}

void VtkMesh::addCell(const Cell& cell)
{
    if (!hasPoints(cell)) {
        return;
    }
    const VtkCellType& type = *cell.type;
    if (type.draw == VtkDraw::Nothing) {
        countNotDrawn(type.name, cell);
        return;
    }
    const std::size_t least = type.draw == VtkDraw::Corners ? static_cast<std::size_t>(cornerCount(type.shape))
                              : type.draw == VtkDraw::Lines ? 2
                                                            : 3;
    const std::size_t nodes = static_cast<std::size_t>(type.nodes); // 0: any number
    if (nodes != 0 && cell.count > nodes) {
        warnOfMoreNodes(log, {mesh.sourceFiles.front(), cell.line}, type.name, cell.id, nodes, cell.count);
    } else if (cell.count < least || (nodes != 0 && cell.count < nodes)) {
        log.warn("cells with a wrong number of points", {mesh.sourceFiles.front(), cell.line},
                 std::string(type.name) + " cell " + std::to_string(cell.id) + " has " + std::to_string(cell.count) +
                     " points: left out");
        return;
    }
    if (type.draw == VtkDraw::Corners) {
        addElement(cell);
        return;
    }
    corners.clear();
    for (std::size_t k = 0; k < cell.count; ++k) {
        corners.push_back(positions[static_cast<std::size_t>(cell.points[k])]);
    }
    if (type.draw == VtkDraw::Polygon) {
        polygons.add(type.name, cell.id, cell.part, cell.line, corners);
    } else if (type.draw == VtkDraw::Lines) {
        polygons.addLine(type.name, cell.id, cell.part, cell.line, corners);
    } else {
        polygons.addStrips(type.name, cell.id, cell.part, cell.line, {corners});
    }
}

void VtkMesh::addCells(const VtkPiece& piece)
{
    std::int64_t start = 0;
    for (std::size_t k = 0; k < piece.cellCount(); ++k) {
        Cell cell;
        cell.type = findVtkCellType(piece.types[k]);
        cell.id = haveCellIds ? piece.cellIds[k] : cellsBefore + static_cast<std::int64_t>(k) + 1;
        cell.line = piece.lines.empty() ? piece.line : piece.lines[k];
        cell.points = piece.connectivity.data() + start;
        cell.count = static_cast<std::size_t>(piece.ends[k] - start);
        start = piece.ends[k];
        if (isGhost(piece, k)) {
            log.count("ghost cells left out", "vtkGhostType", 1, {mesh.sourceFiles.front(), cell.line});
        } else if (!cell.type) {
            log.count(listElementsNotDrawn, "cell type " + std::to_string(piece.types[k]), 1,
                      {mesh.sourceFiles.front(), cell.line});
        } else {
            cell.part = partOf(piece, k, piece.types[k]);
            addCell(cell);
        }
    }
    cellsBefore += static_cast<std::int64_t>(piece.cellCount());
}

void VtkMesh::add(VtkPiece piece)
{
    check(piece);
    pieces.push_back(std::move(piece));
}

Mesh VtkMesh::take()
{
    settleIds();
    for (VtkPiece& piece : pieces) {
        lastPart = noPart;
        addPoints(piece);
        addCells(piece);
        piece = VtkPiece(); // its memory is wanted now
    }
    polygons.finish();
    if (wedgesTurned > 0) {
        log.note(std::to_string(wedgesTurned) + " wedges have their triangles the other way round: they are turned");
    }
    finishMesh(mesh, log);
    return std::move(mesh);
}

} // namespace kvo
