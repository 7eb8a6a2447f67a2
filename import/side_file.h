// What a deck has and a model's parts have no room for: the file deck.json of a model directory
// (docs/model-directory.md).
#ifndef KVO_IMPORT_SIDE_FILE_H
#define KVO_IMPORT_SIDE_FILE_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "mesh.h"

namespace kvo {

// A part of the model and where it comes from.
struct SidePart
{
    std::int64_t id = 0;      // in the model
    std::uint32_t file = 0;   // index into Mesh::files
    std::uint32_t source = 0; // index into Mesh::parts
    Family family = Family::Shell;
};

struct SideData
{
    std::vector<SidePart> parts;
    std::vector<std::string> fileNames;    // the model files of Mesh::files
    std::array<double, 3> origin{0, 0, 0}; // what was taken off all coordinates
};

// The text of the file. The mesh is finished.
std::string sideFileText(const Mesh& mesh, const SideData& model);

} // namespace kvo

#endif
