// From a mesh in memory to a model in memory: nothing is written.
#ifndef KVO_IMPORT_MESH_MODEL_H
#define KVO_IMPORT_MESH_MODEL_H

#include <kvo/model.h>

#include "import_log.h"
#include "mesh.h"

namespace kvo {

// The model of a finished mesh, which is used up: its arrays are released while the model's are filled. Parts, their
// ids, names and order are those of writeModelDirectory() (model_builder.h). The origin is 0, or for a mesh that is
// farther from 0 than single precision bears a round place near its middle. Throws ImportError with the place for ids
// and coordinates that a model cannot keep. May run on any thread.
Model makeModel(Mesh&& mesh, ImportLog& log);

} // namespace kvo

#endif
