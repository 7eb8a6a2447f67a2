// From a finished mesh to a model directory.
#ifndef KVO_IMPORT_MODEL_BUILDER_H
#define KVO_IMPORT_MODEL_BUILDER_H

#include <cstddef>
#include <string>

#include "import_log.h"
#include "mesh.h"

namespace kvo {

struct ModelOptions
{
    // Moves the model so that its middle lies near 0, in double precision and by a round vector, which deck.json keeps:
    // coordinates far from 0 lose small edges in single precision.
    bool shiftOrigin = false;
};

// Bytes of a model's name. With a longer one not even a short name for the folder that it lies in makes a path that the
// drawing library can load.
constexpr std::size_t longestModelName = 100;

// Throws ImportError for a path whose last component is no name for a model that can be loaded.
void checkModelName(const std::string& modelDir);

// Writes the model to modelDir (its last component is the model's name) in place of what lies there. Elements of
// several families in one part make several parts: the largest piece keeps the part's id, the others get ids above the
// highest, as do parts whose id is not above 0 or another part's; the log says so. It also says when coordinates lose
// what elements need in single precision. Sets, sections and what has no picture go to deck.json. Throws ImportError
// for a mesh without nodes, for ids beyond 1 to 2^31 - 1, for coordinates beyond single precision, and for whatever the
// writer cannot do; nothing is changed at modelDir then.
void writeModelDirectory(const Mesh& mesh, const std::string& modelDir, ImportLog& log,
                         const ModelOptions& options = {});

} // namespace kvo

#endif
