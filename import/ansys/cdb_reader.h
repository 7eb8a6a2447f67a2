// Archive files: commands, and blocks of nodes, elements and components in columns that a format line describes.
//
// Every combination of type, real constants, material and section with elements becomes a part.
#ifndef KVO_IMPORT_ANSYS_CDB_READER_H
#define KVO_IMPORT_ANSYS_CDB_READER_H

#include <memory>

#include "import_log.h"
#include "mesh.h"
#include "progress.h"
#include "text/mapped_file.h"

namespace kvo {

// A text with a command that begins a block or the preprocessor near its beginning.
bool looksLikeCdb(const MappedFile& file);

// The finished mesh. Throws ImportError.
Mesh readCdb(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);

} // namespace kvo

#endif
