// Reading a deck of whatever format: the door to the importers.
//
//   kvo::ImportLog log;
//   kvo::Mesh mesh = kvo::readDeck("bracket.inp", log);
//   kvo::writeModelDirectory(mesh, "models/bracket", log); // model_builder.h
//   log.print(std::cerr);
#ifndef KVO_IMPORT_DECK_H
#define KVO_IMPORT_DECK_H

#include <memory>
#include <string>
#include <vector>

#include "import_log.h"
#include "mesh.h"
#include "place.h"
#include "progress.h"

namespace kvo {

class MappedFile;

// One row per format that can be read.
struct DeckFormat
{
    const char* name;                          // "Abaqus / CalculiX input deck"
    const char* suffixes;                      // ".inp", several separated by blanks
    const char* summary;                       // one line for a manual: what is read
    bool (*looksLike)(const MappedFile& file); // by content
    Mesh (*read)(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);
};

const std::vector<DeckFormat>& deckFormats();

// The format of a file: by what it contains, else by its suffix, else null.
const DeckFormat* detectDeckFormat(const MappedFile& file);

// Has the path a suffix of a known format? For telling a deck from a model directory without opening it.
bool hasDeckSuffix(const std::string& path);

// Reads the deck. The mesh is finished (mesh.h). Throws ImportError for what cannot be opened, is of no known format,
// or is damaged; all else goes to the log.
Mesh readDeck(const std::string& path, ImportLog& log, Progress progress = {});

} // namespace kvo

#endif
