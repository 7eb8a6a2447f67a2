// Coordinate systems that hang on each other and on grid points.
#include "bdf_coords.h"

#include <algorithm>
#include <cmath>

namespace kvo {

namespace {

constexpr std::int64_t maxSystemId = 0x7FFFFFFF;
constexpr int maxDepth = 2000;

// (r, phi, z), or (r, theta from the z axis, phi), in degrees.
Vec3 toRectangular(char kind, const Vec3& p)
{
    if (kind == 'C') {
        return fromCylindrical(p);
    }
    return kind == 'S' ? fromSpherical({p[0], p[2], 90.0 - p[1]}) : p;
}

Vec3 turned(const Transform& transform, const Vec3& v)
{
    Transform onlyTurn = transform;
    onlyTurn.t = {0, 0, 0};
    return onlyTurn.apply(v);
}

// The point in the rectangular coordinates of a system whose rigid motion to the basic one is given.
Vec3 backApplied(const Transform& transform, const Vec3& x)
{
    Vec3 result = {0, 0, 0};
    for (int column = 0; column < 3; ++column) {
        for (int row = 0; row < 3; ++row) {
            result[column] += transform.m[row][column] * (x[row] - transform.t[row]);
        }
    }
    return result;
}

// From components along the curved axes at a point (rectangular coordinates) to those along the straight axes.
Vec3 straightened(char kind, const Vec3& at, const Vec3& v)
{
    if (kind == 'R') {
        return v;
    }
    const double inPlane = std::hypot(at[0], at[1]);
    const double c = inPlane > 0.0 ? at[0] / inPlane : 1.0;
    const double s = inPlane > 0.0 ? at[1] / inPlane : 0.0;
    if (kind == 'C') {
        return {c * v[0] - s * v[1], s * v[0] + c * v[1], v[2]};
    }
    const double r = std::hypot(inPlane, at[2]);
    const double ct = r > 0.0 ? at[2] / r : 1.0;
    const double st = r > 0.0 ? inPlane / r : 0.0;
    const double outward = st * v[0] + ct * v[1]; // in the plane of the z axis and the point, away from the axis
    return {c * outward - s * v[2], s * outward + c * v[2], ct * v[0] - st * v[1]};
}

// A on the origin, B on the z axis, C in the x-z plane. fromPoints() wants its first axis through B and its second
// through C, so that its axes are z, x, y in turn.
bool fromZAxis(const Vec3 points[3], Transform& result)
{
    Transform turnedAxes;
    if (!Transform::fromPoints(points[0], points[1], points[2], turnedAxes)) {
        return false;
    }
    for (int row = 0; row < 3; ++row) {
        result.m[row][0] = turnedAxes.m[row][1];
        result.m[row][1] = turnedAxes.m[row][2];
        result.m[row][2] = turnedAxes.m[row][0];
    }
    result.t = turnedAxes.t;
    return true;
}

} // namespace

std::int32_t BdfCoords::systemId(const BdfCard& card, std::size_t field, std::int32_t ifBlank) const
{
    const std::int64_t id = card.integer(field, ifBlank);
    if (id > maxSystemId || id < notGiven) {
        throw ImportError(card.place(), card.name() + ": coordinate system " + std::to_string(id) + " is out of range");
    }
    return static_cast<std::int32_t>(id);
}

void BdfCoords::addGrid(const BdfCard& card)
{
    const std::int64_t id = card.integer(0);
    if (id <= 0) {
        throw ImportError(card.place(), "GRID: the id must be above 0, not " + std::to_string(id));
    }
    mesh.addNode(id, card.real(2), card.real(3), card.real(4), card.file, card.line);
    systems.push_back({systemId(card, 1, notGiven), systemId(card, 5, notGiven)});
    const std::int32_t position = systems.back().position;
    if (position != basic && position != notGiven && position != lastUsed) {
        firstUse.emplace(position, card.place());
        lastUsed = position;
    }
}

void BdfCoords::setDefaults(const BdfCard& card)
{
    defaultPosition = systemId(card, 1, basic);
    defaultDisplacement = systemId(card, 5, basic);
}

BdfCoords::System& BdfCoords::newSystem(std::int32_t id, const BdfCard& card, char kind)
{
    if (id <= 0) {
        throw ImportError(card.place(), card.name() + ": the id must be above 0, not " + std::to_string(id));
    }
    System& system = byId[id];
    system = System();
    system.kind = kind;
    system.place = card.place();
    return system;
}

void BdfCoords::addByGrids(const BdfCard& card, char kind)
{
    for (std::size_t first = 0; first < 8 && !card.blank(first); first += 4) {
        System& system = newSystem(systemId(card, first, basic), card, kind);
        system.byGrids = true;
        for (std::size_t k = 0; k < 3; ++k) {
            system.grids[k] = card.integer(first + 1 + k);
        }
    }
}

void BdfCoords::addByPoints(const BdfCard& card, char kind)
{
    System& system = newSystem(systemId(card, 0, basic), card, kind);
    system.reference = systemId(card, 1, basic);
    for (std::size_t k = 0; k < 9; ++k) {
        system.points[k / 3][k % 3] = card.real(2 + k);
    }
}

// --- resolving ---

// The system, resolved; null for the basic one and for those that do not exist.
const BdfCoords::System* BdfCoords::find(std::int32_t id)
{
    const auto found = byId.find(id);
    if (id == basic || found == byId.end()) {
        return nullptr;
    }
    if (found->second.state != System::State::Known) {
        resolve(found->second, id);
    }
    return &found->second;
}

void BdfCoords::resolve(System& system, std::int32_t id)
{
    const std::string name = "coordinate system " + std::to_string(id);
    if (system.state == System::State::Busy) {
        throw ImportError(system.place, name + " depends on itself");
    }
    if (depth == maxDepth) {
        throw ImportError(system.place, name + " hangs on too many others");
    }
    ++depth;
    system.state = System::State::Busy;
    Vec3 points[3];
    for (std::size_t k = 0; k < 3; ++k) {
        points[k] = system.byGrids ? gridPosition(system.grids[k], system, id) : system.points[k];
        if (!system.byGrids && !toBasicPoint(system.reference, points[k])) {
            log.warn("unknown coordinate systems", system.place,
                     name + " refers to system " + std::to_string(system.reference) + ", which does not exist");
        }
    }
    if (!fromZAxis(points, system.toBasic)) {
        throw ImportError(system.place, name + ": its three points do not span a plane");
    }
    system.state = System::State::Known;
    --depth;
}

// Position of the node of a grid id, of several the last, or the number of nodes.
std::size_t BdfCoords::nodeOf(std::int64_t grid)
{
    if (sortedNodes.empty()) {
        for (std::size_t k = 0; k < mesh.nodeIds.size(); ++k) {
            sortedNodes.emplace_back(mesh.nodeIds[k], k);
        }
        std::sort(sortedNodes.begin(), sortedNodes.end());
    }
    const auto after =
        std::upper_bound(sortedNodes.begin(), sortedNodes.end(), std::make_pair(grid, mesh.nodeIds.size()));
    return after != sortedNodes.begin() && std::prev(after)->first == grid ? std::prev(after)->second
                                                                           : mesh.nodeIds.size();
}

Vec3 BdfCoords::gridPosition(std::int64_t grid, const System& asker, std::int32_t id)
{
    const std::size_t node = nodeOf(grid);
    if (node == mesh.nodeIds.size()) {
        throw ImportError(asker.place, "coordinate system " + std::to_string(id) + " refers to grid point " +
                                           std::to_string(grid) + ", which does not exist");
    }
    placeNode(node);
    const double* x = &mesh.xyz[3 * node];
    return {x[0], x[1], x[2]};
}

// False if there is no such system; the point then counts as basic.
bool BdfCoords::toBasicPoint(std::int32_t id, Vec3& point)
{
    const System* system = find(id);
    if (system) {
        point = system->toBasic.apply(toRectangular(system->kind, point));
    }
    return system || id == basic;
}

void BdfCoords::warnUnknown(std::int32_t system, std::size_t node)
{
    const char* const kind = "unknown coordinate systems";
    const auto use = firstUse.find(system);
    if (use == firstUse.end() || !use->second.file.empty()) {
        log.warn(kind, use == firstUse.end() ? Place{deck, 0} : use->second,
                 "grid point " + std::to_string(mesh.nodeIds[node]) + " is given in system " + std::to_string(system) +
                     ", which does not exist: taken as basic");
        firstUse[system] = Place(); // said with its line; the system's other points are counted
    } else {
        log.warnMore(kind, 1);
    }
}

void BdfCoords::placeNode(std::size_t node)
{
    if (placed[node]) {
        return;
    }
    const std::int32_t system = systems[node].position;
    double* x = &mesh.xyz[3 * node];
    Vec3 point = {x[0], x[1], x[2]};
    if (!toBasicPoint(system, point)) {
        warnUnknown(system, node);
    }
    std::copy(point.begin(), point.end(), x);
    placed[node] = 1;
}

void BdfCoords::place(const std::string& deckName)
{
    deck = deckName;
    for (Systems& node : systems) {
        node.position = node.position == notGiven ? defaultPosition : node.position;
        node.displacement = node.displacement == notGiven ? defaultDisplacement : node.displacement;
    }
    placed.assign(systems.size(), 0);
    for (std::size_t node = 0; node < systems.size(); ++node) {
        if (systems[node].position != basic) {
            placeNode(node);
        }
    }
}

Vec3 BdfCoords::toBasic(std::int64_t grid, const Vec3& vector)
{
    const std::size_t node = nodeOf(grid);
    const System* system = node < systems.size() ? find(systems[node].displacement) : nullptr;
    if (!system) {
        return vector;
    }
    const double* x = &mesh.xyz[3 * node];
    const Vec3 at = backApplied(system->toBasic, {x[0], x[1], x[2]});
    return turned(system->toBasic, straightened(system->kind, at, vector));
}

} // namespace kvo
