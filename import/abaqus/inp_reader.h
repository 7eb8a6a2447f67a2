// Abaqus and CalculiX input decks (.inp).
//
// Read: *NODE, *ELEMENT, *NSET, *ELSET, section cards, *INCLUDE and INPUT=, *SYSTEM, *PART / *INSTANCE / *ASSEMBLY,
// *NGEN, *NFILL, *NCOPY, *ELGEN, *ELCOPY. All other cards are counted and listed in the log.
// A part of the mesh is what one section card covers; elements without a section go by the ELSET of their *ELEMENT
// card, and by family if there is none.
#ifndef KVO_IMPORT_ABAQUS_INP_READER_H
#define KVO_IMPORT_ABAQUS_INP_READER_H

#include <memory>

#include "import_log.h"
#include "mesh.h"
#include "progress.h"
#include "text/mapped_file.h"

namespace kvo {

// Does the text begin like an input deck?
bool looksLikeInp(const MappedFile& file);

// The finished mesh. Throws ImportError.
Mesh readInp(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);

} // namespace kvo

#endif
