// Dividing of polygons.
#include "polygon.h"

#include <algorithm>
#include <cmath>

namespace kvo {

const char* const warnDegeneratePolygon = "polygons without three different corners";

namespace {

using Point = std::array<double, 3>;
using Flat = std::array<double, 2>;
using Triangle = std::array<std::uint32_t, 3>;

constexpr std::size_t mostForEars = 1024; // cutting ears takes the square of the count and more; above, a fan must do

// The normal of a polygon that need not be plane or convex: twice the areas that it covers of the coordinate planes.
Point areaNormal(const std::vector<Point>& points)
{
    Point normal = {0.0, 0.0, 0.0};
    for (std::size_t k = 0; k < points.size(); ++k) {
        const Point& a = points[k];
        const Point& b = points[(k + 1) % points.size()];
        for (int axis = 0; axis < 3; ++axis) {
            const int u = (axis + 1) % 3;
            const int v = (axis + 2) % 3;
            normal[static_cast<std::size_t>(axis)] += a[u] * b[v] - a[v] * b[u];
        }
    }
    return normal;
}

// Seen along the axis that the polygon faces most, so that it goes round counterclockwise.
std::vector<Flat> flattened(const std::vector<Point>& points)
{
    // Differences to the first corner: far from the origin the products would lose their digits.
    std::vector<Point> local = points;
    for (Point& p : local) {
        for (std::size_t c = 0; c < 3; ++c) {
            p[c] -= points[0][c];
        }
    }
    const Point normal = areaNormal(local);
    std::size_t axis = 0;
    for (std::size_t c = 1; c < 3; ++c) {
        axis = std::fabs(normal[c]) > std::fabs(normal[axis]) ? c : axis;
    }
    const std::size_t u = (axis + 1) % 3;
    const std::size_t v = (axis + 2) % 3;
    std::vector<Flat> flat;
    for (const Point& p : local) {
        flat.push_back(normal[axis] < 0.0 ? Flat{p[v], p[u]} : Flat{p[u], p[v]});
    }
    return flat;
}

// Above 0 where a, b, c turn left.
double turn(const Flat& a, const Flat& b, const Flat& c)
{
    return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
}

bool isConvex(const std::vector<Flat>& flat)
{
    const std::size_t n = flat.size();
    for (std::size_t k = 0; k < n; ++k) {
        if (turn(flat[k], flat[(k + 1) % n], flat[(k + 2) % n]) < 0.0) {
            return false;
        }
    }
    return true;
}

std::vector<Triangle> fan(std::size_t count)
{
    std::vector<Triangle> triangles;
    for (std::uint32_t k = 1; k + 1 < count; ++k) {
        triangles.push_back({0, k, k + 1});
    }
    return triangles;
}

// May the corner at position k of what is left be cut off? Its triangle must turn left and hold no other corner.
bool isEar(const std::vector<Flat>& flat, const std::vector<std::uint32_t>& left, std::size_t k)
{
    const std::size_t n = left.size();
    const Flat& a = flat[left[(k + n - 1) % n]];
    const Flat& b = flat[left[k]];
    const Flat& c = flat[left[(k + 1) % n]];
    if (turn(a, b, c) <= 0.0) {
        return false;
    }
    for (std::size_t other = 2; other + 1 < n; ++other) {
        const Flat& q = flat[left[(k + other) % n]];
        const bool touches = q == a || q == b || q == c; // a hole is reached over a seam, whose corners are there twice
        if (!touches && turn(a, b, q) >= 0.0 && turn(b, c, q) >= 0.0 && turn(c, a, q) >= 0.0) {
            return false;
        }
    }
    return true;
}

// The position in left of an ear, looked for from start on; none if there is none.
std::size_t findEar(const std::vector<Flat>& flat, const std::vector<std::uint32_t>& left, std::size_t start)
{
    for (std::size_t k = 0; k < left.size(); ++k) {
        if (isEar(flat, left, (start + k) % left.size())) {
            return (start + k) % left.size();
        }
    }
    return left.size();
}

std::vector<Triangle> ears(const std::vector<Flat>& flat)
{
    std::vector<std::uint32_t> left(flat.size());
    for (std::size_t k = 0; k < left.size(); ++k) {
        left[k] = static_cast<std::uint32_t>(k);
    }
    std::vector<Triangle> triangles;
    std::size_t start = 1; // goes on behind the last cut, so that no corner becomes the tip of all triangles
    while (left.size() > 3) {
        const std::size_t n = left.size();
        const std::size_t ear = findEar(flat, left, start);
        if (ear == n) {
            break; // it crosses itself
        }
        triangles.push_back({left[(ear + n - 1) % n], left[ear], left[(ear + 1) % n]});
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(ear));
        start = ear + 1;
    }
    for (const Triangle& t : fan(left.size())) {
        triangles.push_back({left[t[0]], left[t[1]], left[t[2]]});
    }
    return triangles;
}

} // namespace

std::vector<Triangle> trianglesOf(const std::vector<Point>& points)
{
    if (points.size() < 3) {
        return {};
    }
    const std::vector<Flat> flat = flattened(points);
    return isConvex(flat) || points.size() > mostForEars ? fan(points.size()) : ears(flat);
}

// --- PolygonElements ---

std::uint32_t PolygonElements::rowOf(const std::string& type, Family family, Shape shape)
{
    if (shape != lastShape || type != lastType) {
        lastRow = rows.type(type, family, shape);
        lastType = type;
        lastShape = shape;
    }
    return lastRow;
}

void PolygonElements::put(std::uint32_t type, std::int64_t id, std::uint32_t part, std::uint32_t line,
                          const std::uint32_t* corners)
{
    MeshFile& file = mesh.files[fileIndex];
    ElementBlock& block = file.blockFor(type, 0);
    block.ids.push_back(id);
    block.part.push_back(part);
    block.line.push_back(line);
    for (int k = 0; k < cornerCount(mesh.types[type].shape); ++k) {
        block.nodes.push_back(file.nodeIds[corners[k]]);
    }
    if (mesh.types[type].hasThirdNode()) {
        block.nodes.push_back(noNode);
    }
}

void PolygonElements::putPieces(std::int64_t id, const std::vector<Piece>& pieces)
{
    for (std::size_t k = 0; k < pieces.size(); ++k) {
        if (k == 0) {
            put(pieces[k].type, id, pieces[k].part, pieces[k].line, pieces[k].corners.data());
        } else {
            more.push_back(pieces[k]);
        }
    }
    divided += pieces.size() > 1;
}

void PolygonElements::add(const std::string& type, std::int64_t id, std::uint32_t part, std::uint32_t line,
                          std::vector<std::uint32_t> corners)
{
    corners.erase(std::unique(corners.begin(), corners.end()), corners.end());
    while (corners.size() > 1 && corners.front() == corners.back()) {
        corners.pop_back();
    }
    if (corners.size() < 3) {
        log.warn(warnDegeneratePolygon, {mesh.sourceFiles.front(), line},
                 "polygon " + std::to_string(id) + " has fewer than three different corners: left out");
        return;
    }
    if (corners.size() <= 4) {
        const Shape shape = corners.size() == 3 ? Shape::Triangle : Shape::Quad;
        put(rowOf(type, Family::Shell, shape), id, part, line, corners.data());
        return;
    }
    std::vector<Point> points;
    const std::vector<double>& xyz = mesh.files[fileIndex].xyz;
    for (const std::uint32_t corner : corners) {
        points.push_back(
            {xyz[3 * std::size_t(corner)], xyz[3 * std::size_t(corner) + 1], xyz[3 * std::size_t(corner) + 2]});
    }
    const std::uint32_t row = rowOf(type, Family::Shell, Shape::Triangle);
    std::vector<Piece> pieces;
    for (const Triangle& t : trianglesOf(points)) {
        pieces.push_back({row, part, line, {corners[t[0]], corners[t[1]], corners[t[2]]}});
    }
    putPieces(id, pieces);
}

void PolygonElements::addLine(const std::string& type, std::int64_t id, std::uint32_t part, std::uint32_t line,
                              const std::vector<std::uint32_t>& corners)
{
    const std::uint32_t row = rowOf(type, Family::Beam, Shape::Line);
    std::vector<Piece> pieces;
    for (std::size_t k = 1; k < corners.size(); ++k) {
        pieces.push_back({row, part, line, {corners[k - 1], corners[k], 0}});
    }
    putPieces(id, pieces);
}

// Every second triangle of a strip goes round the other way. Repeated corners only turn the strip.
void PolygonElements::addStrips(const std::string& type, std::int64_t id, std::uint32_t part, std::uint32_t line,
                                const std::vector<std::vector<std::uint32_t>>& strips)
{
    const std::uint32_t row = rowOf(type, Family::Shell, Shape::Triangle);
    std::vector<Piece> pieces;
    for (const std::vector<std::uint32_t>& corners : strips) {
        for (std::size_t k = 2; k < corners.size(); ++k) {
            const std::uint32_t a = corners[k - 2];
            const std::uint32_t b = corners[k - 1];
            const std::uint32_t c = corners[k];
            if (a != b && b != c && c != a) {
                pieces.push_back({row, part, line, k % 2 == 0 ? Triangle{a, b, c} : Triangle{b, a, c}});
            }
        }
    }
    putPieces(id, pieces);
}

void PolygonElements::finish()
{
    std::int64_t highest = 0;
    for (const ElementBlock& block : mesh.files[fileIndex].blocks) {
        highest =
            block.ids.empty() ? highest : std::max(highest, *std::max_element(block.ids.begin(), block.ids.end()));
    }
    for (const UndrawnElements& undrawn : mesh.files[fileIndex].undrawn) {
        highest = undrawn.ids.empty() ? highest
                                      : std::max(highest, *std::max_element(undrawn.ids.begin(), undrawn.ids.end()));
    }
    if (divided > 0) {
        log.note("polygons, lines or strips that are drawn as several triangles or lines: " + std::to_string(divided) +
                 "; the first of each has its id, of others there are " + std::to_string(more.size()) +
                 ", with ids from " + std::to_string(highest + 1) + " on");
    }
    for (const Piece& piece : more) {
        put(piece.type, ++highest, piece.part, piece.line, piece.corners.data());
    }
    more.clear();
}

} // namespace kvo
