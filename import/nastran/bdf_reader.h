// Nastran bulk data decks (.bdf, .dat, .nas).
//
// Read: GRID with GRDSET and the systems CORD1R/C/S and CORD2R/C/S, SPOINT, the element cards of bdf_element_table.cpp
// with BAROR and BEAMOR, the property cards of bdf_properties.cpp, SET3, INCLUDE. All other cards are counted and
// listed in the log. A part of the mesh is what has one property id; its id is that one.
#ifndef KVO_IMPORT_NASTRAN_BDF_READER_H
#define KVO_IMPORT_NASTRAN_BDF_READER_H

#include <memory>

#include "import_log.h"
#include "mesh.h"
#include "progress.h"
#include "text/mapped_file.h"

namespace kvo {

// Is there BEGIN BULK, CEND, or a card of a mesh before anything that no bulk data deck has?
bool looksLikeBdf(const MappedFile& file);

// The finished mesh. Throws ImportError.
Mesh readBdf(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);

} // namespace kvo

#endif
