// Decks into model directories, for every command that takes one.
#ifndef KVO_DECK_IMPORT_H
#define KVO_DECK_IMPORT_H

#include <string>

#include "import_log.h"
#include "progress.h"

namespace kvo {

// Reads the deck and writes the model directory. Throws an exception whose message is "FILE:LINE: what"; what stood
// under the model directory's name is then as it was.
void importDeck(const std::string& deck, const std::string& modelDirectory, ImportLog& log, Progress progress);

// What the log says that is missing in the model, in a few words: "3 elements of types that are not drawn, 2 warnings";
// "" when nothing is.
std::string summarizeLeftOut(const ImportLog& log);

} // namespace kvo

#endif
