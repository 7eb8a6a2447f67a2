// deck.json of a model directory: sets, sections and what has no picture.
#ifndef KVO_DECK_FILE_H
#define KVO_DECK_FILE_H

#include <string>

#include "json.h"
#include "model_source.h"

namespace kvo {

// Its content; null for a model directory without it, which need not come from a deck. Throws ProgramError for one that
// is damaged.
Json readDeckFile(const ModelSource& source);

// Tables of sets, of what parts are made of, and of what is not drawn; what there is nothing of is left out.
std::string formatDeckFile(const Json& deck);

} // namespace kvo

#endif
