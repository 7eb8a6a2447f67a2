// STL surfaces, ASCII and binary. Every solid becomes a part of triangles; vertices with equal coordinates become one
// node. Nodes and elements are numbered from 1 in the order of the file.
#ifndef KVO_IMPORT_STL_READER_H
#define KVO_IMPORT_STL_READER_H

#include <memory>

#include "import_log.h"
#include "mesh.h"
#include "progress.h"
#include "text/mapped_file.h"

namespace kvo {

// Kind of the warning about facets without an area: two of their vertices are equal. They are left out.
extern const char* const warnDegenerateFacet;

// A binary file whose length fits its count of facets, or a text that begins with "solid" and goes on with "facet".
bool looksLikeStl(const MappedFile& file);

// The finished mesh. Throws ImportError.
Mesh readStl(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);

} // namespace kvo

#endif
