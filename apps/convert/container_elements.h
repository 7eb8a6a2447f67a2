// What the readers of all containers share: shapes by the names of element types, and elements whose nodes are
// positions.
#ifndef KVO_CONVERT_CONTAINER_ELEMENTS_H
#define KVO_CONVERT_CONTAINER_ELEMENTS_H

#include <cstdint>
#include <string>
#include <vector>

#include "import_log.h"
#include "mesh.h"

namespace kvo {

// Title of the summary list of what a container has and no reader here looks at.
extern const char* const listDataNotRead;

struct ContainerElement
{
    bool drawn = false; // else the rest means nothing
    Family family = Family::Shell;
    Shape shape = Shape::Triangle;
};

// By the beginning of the type's name in any case ("hex", "HEXA_8", "Tetra10", "SHELL") and the number of its nodes, of
// which the corners come first. Not drawn: names that say nothing, and types with too few nodes.
ContainerElement containerElement(const std::string& typeName, std::size_t nodes);

// Adds an element to a file whose nodes are all in it. positions are those of the corners in the order of the nodes,
// from 1. Throws ImportError for a position beyond the nodes.
void addElementByPositions(const Mesh& mesh, MeshFile& file, std::uint32_t type, std::uint32_t part, std::int64_t id,
                           const std::int64_t* positions);

// The same for what has no picture.
void addUndrawnByPositions(const Mesh& mesh, MeshFile& file, const std::string& type, std::int64_t id,
                           const std::int64_t* positions, std::size_t count);

// The id of the node at a position from 1. Throws ImportError for a position beyond the nodes.
std::int64_t nodeIdAt(const Mesh& mesh, const MeshFile& file, std::int64_t position);

// ids as a set, ascending.
IdSet idSetOf(std::vector<std::int64_t> ids);

// Refuses a number of values that a file of this size cannot hold, before memory is asked for them. Throws ImportError.
void checkPlausible(const std::string& path, std::uint64_t values, std::uint64_t bytesEach, bool mayBeCompressed);

// Text from a container without the blanks and zeros at its end.
std::string trimmedName(const std::string& text);

} // namespace kvo

#endif
