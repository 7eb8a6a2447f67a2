// The parts of a model that a mesh becomes: the elements of one part, family and file, and their ids.
#ifndef KVO_IMPORT_MODEL_PIECES_H
#define KVO_IMPORT_MODEL_PIECES_H

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "id_set.h"
#include "import_log.h"
#include "mesh.h"
#include "numbering.h"

namespace kvo {

// The elements of one part, family and file: a part of the model.
struct Piece
{
    std::uint32_t part = 0;
    Family family = Family::Shell;
    std::int64_t id = 0;
    std::uint64_t count = 0; // elements
    bool renamed = false;    // split off its part
};

// The pieces of each file, ordered by part and family. A deck may have as many files and parts as instances: the table
// has room for what is there, not for every part in every file.
using PieceTable = std::vector<std::vector<Piece>>;

// Numbers of a part's families over all parts.
inline std::size_t pieceSlot(std::uint32_t part, Family family)
{
    return std::size_t(part) * familyCount + static_cast<std::size_t>(family);
}

// The pieces with the ids that they have in the model. The log says which parts were split, and which got other ids.
PieceTable findPieces(const Mesh& mesh, ImportLog& log);

// Ids of elements by index into Mesh::types.
using TypeElements = std::map<std::uint32_t, IdSet>;
// The types of one file's pieces, by part and family.
using PieceTypes = std::map<std::pair<std::uint32_t, Family>, TypeElements>;
PieceTypes typesOfPieces(const Mesh& mesh, const MeshFile& file);

std::string pieceName(const Mesh& mesh, const Piece& piece);

// The deck, or "" where the mesh does not come from one.
std::string sourceName(const Mesh& mesh);

// An id as models hold it. Throws ImportError for one below lowest or beyond maxModelId; what: "part", "element" ...
unsigned int modelId(const Mesh& mesh, std::int64_t id, const char* what, std::int64_t lowest);
unsigned int modelElementId(const Mesh& mesh, const ElementBlock& block, std::size_t element);
unsigned int modelNodeId(const Mesh& mesh, const MeshFile& file, std::size_t node);

// One coordinate of a node less the origin, in single precision. Throws ImportError for what it cannot hold.
float modelCoordinate(const Mesh& mesh, const MeshFile& file, std::size_t node, std::size_t axis, double origin);

} // namespace kvo

#endif
