// Wavefront OBJ surfaces: polygons and lines. A part is what has the same object, groups and material. Vertices are
// numbered from 1 in the order of the file, faces, lines and points together as well. Polygons of more than four
// corners become triangles (polygon.h).
#ifndef KVO_IMPORT_OBJ_READER_H
#define KVO_IMPORT_OBJ_READER_H

#include <memory>

#include "import_log.h"
#include "mesh.h"
#include "progress.h"
#include "text/mapped_file.h"

namespace kvo {

// Every line of the beginning is a statement of the format or a comment, and there is a vertex among them.
bool looksLikeObj(const MappedFile& file);

// The finished mesh. Throws ImportError.
Mesh readObj(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);

} // namespace kvo

#endif
