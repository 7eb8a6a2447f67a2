// Loss of precision and the shift of the origin.
#include "model_origin.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

namespace kvo {

namespace {

constexpr double floatSteps = 8388608.0; // 2^23: a float's resolution

// Corners at the ends of edges, two digits each.
const char* edgesOf(Shape shape)
{
    switch (shape) {
    case Shape::Line:
        return "01";
    case Shape::Triangle:
        return "011220";
    case Shape::Quad:
        return "01122330";
    case Shape::Tetra:
        return "011220031323";
    case Shape::Pyramid:
        return "0112233004142434";
    case Shape::Wedge:
        return "011220344553031425";
    case Shape::Hexa:
        break;
    }
    return "011223304556677404152637";
}

// The shortest edge that has a length; squared.
double shortestEdgeSquared(const Mesh& mesh, const MeshFile& file)
{
    double shortest = std::numeric_limits<double>::infinity();
    for (const ElementBlock& block : file.blocks) {
        const ElementType& type = mesh.types[block.type];
        const char* edges = edgesOf(type.shape);
        const std::size_t entries = static_cast<std::size_t>(type.slots());
        for (std::size_t e = 0; e < block.size(); ++e) {
            const std::int64_t* nodes = &block.nodes[e * entries];
            for (const char* edge = edges; *edge && block.part[e] != noPart; edge += 2) {
                const double* a = &file.xyz[3 * static_cast<std::size_t>(nodes[edge[0] - '0'])];
                const double* b = &file.xyz[3 * static_cast<std::size_t>(nodes[edge[1] - '0'])];
                const double squared =
                    (a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1]) + (a[2] - b[2]) * (a[2] - b[2]);
                shortest = squared > 0.0 ? std::min(shortest, squared) : shortest;
            }
        }
    }
    return shortest;
}

// Lowest and highest coordinates; {inf, -inf} without nodes.
struct Box
{
    Origin low;
    Origin high;
};

Box boxOf(const Mesh& mesh)
{
    constexpr double inf = std::numeric_limits<double>::infinity();
    Box box = {{inf, inf, inf}, {-inf, -inf, -inf}};
    for (const MeshFile& file : mesh.files) {
        for (std::size_t c = 0; c + 2 < file.xyz.size(); c += 3) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                box.low[axis] = std::min(box.low[axis], file.xyz[c + axis]);
                box.high[axis] = std::max(box.high[axis], file.xyz[c + axis]);
            }
        }
    }
    return box;
}

// The middle of the box, rounded to a power of ten not above its size. An axis whose range holds 0 stays.
Origin roundMiddle(const Box& box)
{
    Origin middle = {0, 0, 0};
    double size = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        middle[axis] = box.low[axis] * box.high[axis] > 0.0 ? box.low[axis] / 2 + box.high[axis] / 2 : 0.0;
        size = std::max(size, box.high[axis] - box.low[axis]);
    }
    const double unit = size > 0.0 && std::isfinite(size) ? std::pow(10.0, std::floor(std::log10(size))) : 1.0;
    for (double& c : middle) {
        c = std::isfinite(c) ? std::round(c / unit) * unit : 0.0;
    }
    return middle;
}

double farthestFrom(const Box& box, const Origin& origin)
{
    double farthest = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        farthest =
            std::max({farthest, std::fabs(box.low[axis] - origin[axis]), std::fabs(box.high[axis] - origin[axis])});
    }
    return farthest;
}

} // namespace

Origin chooseOrigin(const Mesh& mesh, bool shift, ImportLog& log)
{
    const Box box = boxOf(mesh);
    const Origin middle = roundMiddle(box);
    const Origin origin = shift ? middle : Origin{0, 0, 0};
    double shortest = std::numeric_limits<double>::infinity();
    for (const MeshFile& file : mesh.files) {
        shortest = std::min(shortest, shortestEdgeSquared(mesh, file));
    }
    shortest = std::sqrt(shortest);
    const double farthest = farthestFrom(box, origin);
    std::ostringstream text;
    text.precision(12);
    if (shift) {
        text << "the origin is moved to (" << origin[0] << ", " << origin[1] << ", " << origin[2] << ")";
        log.note(text.str());
        text.str("");
    }
    if (farthest > floatSteps * shortest) {
        text << "coordinates reach " << farthest << " and the shortest element edge is " << shortest
             << ": single precision cannot keep such edges";
        if (!shift && farthestFrom(box, middle) <= floatSteps * shortest) {
            text << "; with a shifted origin (--shift-origin) it can";
        }
        log.note(text.str());
    }
    return origin;
}

Origin chooseFarOrigin(const Mesh& mesh)
{
    const Box box = boxOf(mesh);
    double size = 0.0, distance = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        size = std::max(size, box.high[axis] - box.low[axis]);
        distance = std::max(distance, std::fabs(box.low[axis] / 2 + box.high[axis] / 2));
    }
    return distance > 16 * size ? roundMiddle(box) : Origin{0, 0, 0};
}

} // namespace kvo
