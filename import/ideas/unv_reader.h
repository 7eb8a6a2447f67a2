// Universal files: datasets between lines of "    -1".
//
// Every physical property number with elements becomes a part of that id. Second-order elements run round their rims.
#ifndef KVO_IMPORT_IDEAS_UNV_READER_H
#define KVO_IMPORT_IDEAS_UNV_READER_H

#include <memory>

#include "import_log.h"
#include "mesh.h"
#include "progress.h"
#include "text/mapped_file.h"

namespace kvo {

// A first line of -1, then the number of a dataset.
bool looksLikeUnv(const MappedFile& file);

// The finished mesh. Throws ImportError.
Mesh readUnv(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);

} // namespace kvo

#endif
