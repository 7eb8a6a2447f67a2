// Names of element types, elements by positions.
#include "container_elements.h"

#include <algorithm>
#include <filesystem>

#include "text/fields.h"

namespace kvo {

const char* const listDataNotRead = "data not read";

namespace {

struct KindRow
{
    const char* beginning;
    std::size_t leastNodes;
    Family family;
    Shape shape;
};

// The first row whose beginning and number of nodes fit.
const KindRow kinds[] = {
    {"HEX", 8, Family::Solid, Shape::Hexa},        {"TET", 4, Family::Solid, Shape::Tetra},
    {"PYR", 5, Family::Solid, Shape::Pyramid},     {"WEDGE", 6, Family::Solid, Shape::Wedge},
    {"PENTA", 6, Family::Solid, Shape::Wedge},     {"PRISM", 6, Family::Solid, Shape::Wedge},
    {"TRI", 3, Family::Shell, Shape::Triangle},    {"QUAD", 4, Family::Shell, Shape::Quad},
    {"SHELL", 8, Family::Shell, Shape::Quad},      {"SHELL", 6, Family::Shell, Shape::Triangle},
    {"SHELL", 4, Family::Shell, Shape::Quad},      {"SHELL", 3, Family::Shell, Shape::Triangle},
    {"SHELL", 2, Family::Beam, Shape::Line},       {"BAR", 2, Family::Beam, Shape::Line},
    {"BEAM", 2, Family::Beam, Shape::Line},        {"TRUSS", 2, Family::Beam, Shape::Line},
    {"ROD", 2, Family::Beam, Shape::Line},         {"EDGE", 2, Family::Beam, Shape::Line},
    {"LINE", 2, Family::Beam, Shape::Line},        {"CURVE", 2, Family::Beam, Shape::Line},
    {"SEG", 2, Family::Beam, Shape::Line},         {"SPRING", 2, Family::Discrete, Shape::Line},
    {"DASHPOT", 2, Family::Discrete, Shape::Line}, {"DAMPER", 2, Family::Discrete, Shape::Line},
};

std::string sourceOf(const Mesh& mesh)
{
    return mesh.sourceFiles.front();
}

} // namespace

ContainerElement containerElement(const std::string& typeName, std::size_t nodes)
{
    for (const KindRow& row : kinds) {
        if (startsWithIgnoringCase(typeName, row.beginning) && nodes >= row.leastNodes) {
            return {true, row.family, row.shape};
        }
    }
    return {};
}

std::int64_t nodeIdAt(const Mesh& mesh, const MeshFile& file, std::int64_t position)
{
    if (position < 1 || static_cast<std::uint64_t>(position) > file.nodeIds.size()) {
        throw ImportError({sourceOf(mesh), 0}, "damaged: it refers to node " + std::to_string(position) + " of " +
                                                   std::to_string(file.nodeIds.size()));
    }
    return file.nodeIds[static_cast<std::size_t>(position - 1)];
}

void addElementByPositions(const Mesh& mesh, MeshFile& file, std::uint32_t type, std::uint32_t part, std::int64_t id,
                           const std::int64_t* positions)
{
    std::int64_t nodes[9];
    const int corners = cornerCount(mesh.types[type].shape);
    for (int k = 0; k < corners; ++k) {
        nodes[k] = nodeIdAt(mesh, file, positions[k]);
    }
    nodes[corners] = noNode;
    file.addElement(type, 0, 0, id, part, nodes, static_cast<std::size_t>(mesh.types[type].slots()));
}

void addUndrawnByPositions(const Mesh& mesh, MeshFile& file, const std::string& type, std::int64_t id,
                           const std::int64_t* positions, std::size_t count)
{
    std::vector<std::int64_t> nodes;
    for (std::size_t k = 0; k < count; ++k) {
        nodes.push_back(nodeIdAt(mesh, file, positions[k]));
    }
    file.addUndrawn(type, id, nodes.data(), count);
}

IdSet idSetOf(std::vector<std::int64_t> ids)
{
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    IdSet set;
    for (const std::int64_t id : ids) {
        set.add(id);
    }
    return set;
}

void checkPlausible(const std::string& path, std::uint64_t values, std::uint64_t bytesEach, bool mayBeCompressed)
{
    // What the densest compression of containers makes of equal bytes.
    constexpr std::uint64_t densest = 1100;
    const std::uint64_t bytes = std::filesystem::file_size(path);
    if (values > bytes * (mayBeCompressed ? densest : 1) / bytesEach) {
        throw ImportError({path, 0}, "damaged: " + std::to_string(values) + " values do not fit into the file");
    }
}

std::string trimmedName(const std::string& text)
{
    return std::string(trimmed(text.substr(0, text.find('\0'))));
}

} // namespace kvo
