// deck.json of a model directory: sets, sections and what has no picture.
#ifndef KVO_DECK_FILE_H
#define KVO_DECK_FILE_H

#include <array>
#include <string>
#include <vector>

#include "json.h"
#include "model_source.h"

namespace kvo {

// Its content; null for a model directory without it, which need not come from a deck. Throws ProgramError for one that
// is damaged.
Json readDeckFile(const ModelSource& source);

// What was taken off all coordinates of the deck (kvo import --shift-origin); zeros mostly. Throws as readDeckFile
// does.
std::array<double, 3> readOrigin(const ModelSource& source);
// What a user has to add to the model's coordinates, in one line with its end; "" for zeros.
std::string formatOrigin(const std::array<double, 3>& origin);

// The deck and the files that it includes, as they were named when it was read.
std::vector<std::string> readSources(const ModelSource& source);

// Tables of sets, of what parts are made of, and of what is not drawn; what there is nothing of is left out.
std::string formatDeckFile(const Json& deck);

} // namespace kvo

#endif
