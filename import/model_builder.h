// From a finished mesh to a model directory.
#ifndef KVO_IMPORT_MODEL_BUILDER_H
#define KVO_IMPORT_MODEL_BUILDER_H

#include <string>

#include "import_log.h"
#include "mesh.h"

namespace kvo {

// Writes the model to modelDir (its last component is the model's name) in place of what lies there. Elements of
// several families in one part make several parts: the largest piece keeps the part's id, the others get ids above the
// highest; the log says so. It also says when coordinates lose what elements need in single precision. Throws
// ImportError for a mesh without nodes, for ids beyond 32 bits, for coordinates beyond single precision, and for
// whatever the writer cannot do; nothing is changed at modelDir then.
void writeModelDirectory(const Mesh& mesh, const std::string& modelDir, ImportLog& log);

} // namespace kvo

#endif
