// Decks into model directories, for every command that takes one.
#ifndef KVO_DECK_IMPORT_H
#define KVO_DECK_IMPORT_H

#include <functional>
#include <string>
#include <vector>

#include <optional>

#include <kvo/model.h>

#include "import_log.h"
#include "progress.h"

namespace kvo {

struct DeckOptions
{
    std::string format;       // key of a format (deck.h); empty: by content and suffix
    bool shiftOrigin = false; // ModelOptions::shiftOrigin
    std::string root;         // ReadRules::root
    // Called with the deck and the files that it includes, when they are known and nothing is written yet; not for what
    // kvo-convert reads. What it throws ends the import.
    std::function<void(const std::vector<std::string>& sources)> sourcesKnown;
};

// Reads the deck and writes the model directory. Throws an exception whose message is "FILE:LINE: what"; what stood
// under the model directory's name is then as it was.
void importDeck(const std::string& deck, const std::string& modelDirectory, ImportLog& log, Progress progress,
                const DeckOptions& options = {});

// The same, but where that can be had the model is returned, and nothing is written: not for containers, and not for
// meshes far from the origin, whose coordinates are those of the deck in a directory only. modelDirectory gives the
// name when it is needed.
std::optional<Model> readDeckModel(const std::string& deck, const std::function<std::string()>& modelDirectory,
                                   ImportLog& log, Progress progress, const DeckOptions& options = {});

// The keys of all formats, for options and messages.
std::vector<std::string> deckFormatKeys();

// What the log says that is missing in the model, in a few words: "3 elements of types that are not drawn, 2 warnings";
// "" when nothing is.
std::string summarizeLeftOut(const ImportLog& log);

} // namespace kvo

#endif
