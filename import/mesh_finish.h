// What every format needs after reading: one order of nodes, one element per id, no element without its nodes.
#ifndef KVO_IMPORT_MESH_FINISH_H
#define KVO_IMPORT_MESH_FINISH_H

#include "import_log.h"
#include "mesh.h"

namespace kvo {

// Kinds of the warnings below.
extern const char* const warnNodeTwice;
extern const char* const warnElementTwice;
extern const char* const warnMissingNode;
extern const char* const warnMissingThirdNode;
extern const char* const warnSetMember;

// Per file of the mesh: sorts the nodes by id; of a node or element that is defined more than once the last definition
// stays; an element with a corner that does not exist is dropped (a beam only loses its third node); node ids become
// positions. Parts without elements are removed. Sets keep what exists, ascending. What is dropped or lost is warned
// of.
void finishMesh(Mesh& mesh, ImportLog& log);

} // namespace kvo

#endif
