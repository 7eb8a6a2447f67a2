// PLY surfaces, ASCII and binary of either byte order. Vertices are numbered from 1 in the order of the file; faces,
// strips and edges too, one kind after the other. A part is a value of a property of the faces that says so ("part",
// "material_index" and the like), else the file. Polygons of more than four corners become triangles (polygon.h).
#ifndef KVO_IMPORT_PLY_READER_H
#define KVO_IMPORT_PLY_READER_H

#include <memory>

#include "import_log.h"
#include "mesh.h"
#include "progress.h"
#include "text/mapped_file.h"

namespace kvo {

// The first line is "ply", the next one says the format.
bool looksLikePly(const MappedFile& file);

// The finished mesh. Throws ImportError.
Mesh readPly(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);

} // namespace kvo

#endif
