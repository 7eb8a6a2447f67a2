// Keyword decks ("*KEYWORD", "*ELEMENT_SHELL", ...).
//
// Every *PART with elements becomes a part of the same id; its section and material are looked up. Element ids are
// unique in their class only. What a card means that is not read is told by the import's log.
#ifndef KVO_IMPORT_KEYWORD_KEY_READER_H
#define KVO_IMPORT_KEYWORD_KEY_READER_H

#include <memory>

#include "import_log.h"
#include "mesh.h"
#include "progress.h"
#include "text/mapped_file.h"

namespace kvo {

// A text whose first card is *KEYWORD, or that has one that no other format's decks have.
bool looksLikeKeyword(const MappedFile& file);

// The finished mesh. Throws ImportError.
Mesh readKeyword(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);

} // namespace kvo

#endif
