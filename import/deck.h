// Reading a deck of whatever format: the door to the importers.
//
//   kvo::ImportLog log;
//   kvo::Mesh mesh = kvo::readDeck("bracket.inp", log);
//   kvo::writeModelDirectory(mesh, "models/bracket", log); // model_builder.h
//   log.print(std::cerr);
//
// A further format is a folder of its own and a row in formats.cpp.
#ifndef KVO_IMPORT_DECK_H
#define KVO_IMPORT_DECK_H

#include <memory>
#include <string>
#include <vector>

#include "import_log.h"
#include "mesh.h"
#include "place.h"
#include "progress.h"
#include "text/mapped_file.h"

namespace kvo {

// One row per format that can be read.
struct DeckFormat
{
    const char* key;                           // for command lines: "abaqus"
    const char* name;                          // "Abaqus/CalculiX"
    const char* suffixes;                      // ".inp", several separated by blanks
    const char* summary;                       // one line for a manual: what is read
    bool (*looksLike)(const MappedFile& file); // by content; true only for what no other format's file looks like
    Mesh (*read)(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);
};

// In the order in which they are tried.
const std::vector<DeckFormat>& deckFormats();

// The format of a file: by what it contains; of several formats that it may be the one that has its suffix, else the
// first; if its content says nothing, by its suffix; else null.
const DeckFormat* detectDeckFormat(const MappedFile& file);

// The format of that key, in any case, or null.
const DeckFormat* findDeckFormat(const std::string& key);

// Has the path a suffix of a known format? For telling a deck from a model directory without opening it.
bool hasDeckSuffix(const std::string& path);

// What readDeck throws when memory does not suffice.
extern const char* const deckNeedsMoreMemory;

// Reads the deck, as the given format if it is not null; the rules hold for included files, too. The mesh is finished
// (mesh.h). Throws ImportError for what cannot be opened, is of no known format, or is damaged; all else goes to the
// log.
Mesh readDeck(const std::string& path, ImportLog& log, Progress progress = {}, const DeckFormat* format = nullptr,
              const ReadRules& rules = {});

} // namespace kvo

#endif
