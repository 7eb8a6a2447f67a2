// The JSON of deck.json: docs/model-directory.md lists its keys.
#ifndef KVO_DECK_KEYS_H
#define KVO_DECK_KEYS_H

#include <string>
#include <vector>

#include "json.h"

namespace kvo {

// Parses the text of a deck.json. What the format does not know is left out; of the outermost keys those of `only`, all
// without it. Throws ProgramError, with the file's name as it is to be shown, for damage and for another version.
Json parseDeckJson(const std::string& text, const std::string& shownFile, const std::vector<std::string>& only = {});

// Runs what takes deck.json apart; values of another kind than the format's become a ProgramError.
template <class Work> auto fromDeckJson(const std::string& shownFile, Work work) -> decltype(work());

[[noreturn]] void failOfDeckValues(const std::string& shownFile);

template <class Work> auto fromDeckJson(const std::string& shownFile, Work work) -> decltype(work())
{
    try {
        return work();
    } catch (const Json::exception&) { // its text may quote whatever is in the file
        failOfDeckValues(shownFile);
    }
}

} // namespace kvo

#endif
