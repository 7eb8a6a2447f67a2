// Gmsh's .msh files: versions 1, 2.0 to 2.2, 4.0 and 4.1; text, and bytes of either order.
//
// A part is a physical group, or the entity of the geometry where an element is in no group. An element that is in
// several groups is one element: the first group has it as a part, and all of its groups become element sets. Points of
// a group become a node set. Elements of higher order are drawn by their corners.
#ifndef KVO_IMPORT_MSH_READER_H
#define KVO_IMPORT_MSH_READER_H

#include <memory>

#include "import_log.h"
#include "mesh.h"
#include "progress.h"
#include "text/mapped_file.h"

namespace kvo {

// Kind of the warning about element types that are not known.
extern const char* const warnMshType;
// Summary list: second copies of an element, which versions 1 and 2 write for each further group that it is in.
extern const char* const listMshCopies;

// The first section is $MeshFormat, or $NOD of version 1, or comments or names before them.
bool looksLikeMsh(const MappedFile& file);

// The finished mesh. Throws ImportError.
Mesh readMsh(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);

} // namespace kvo

#endif
