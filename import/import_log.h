// What an import has to say beside its result: warnings with their places, remarks, and lists of what was left out.
// Nothing here stops an import; what does is an ImportError.
#ifndef KVO_IMPORT_LOG_H
#define KVO_IMPORT_LOG_H

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "place.h"

namespace kvo {

// Titles of summary lists that every reader has.
extern const char* const listKeywordsNotRead;  // "*BOUNDARY" and how many of them
extern const char* const listElementsNotDrawn; // types without a picture, and how many elements of them

class ImportLog
{
public:
    // All warnings that have the same kind, the first few of them in full.
    struct Warnings
    {
        std::string kind;
        std::uint64_t count = 0;
        std::vector<std::string> lines; // "FILE:LINE: text", at most maxPerKind
    };

    // One line of a summary list: how often, and where first.
    struct Entry
    {
        std::string name;
        std::uint64_t count = 0;
        std::string firstPlace; // may be empty
    };

    struct List
    {
        std::string title;
        std::vector<Entry> entries; // in order of first appearance
    };

    explicit ImportLog(std::size_t maxPerKind = 5) : maxPerKind(maxPerKind) {}

    // kind groups warnings ("elements that refer to missing nodes"); text is the single case.
    void warn(const std::string& kind, const Place& place, const std::string& text);

    // Counts cases of a kind whose text nobody needs.
    void warnMore(const std::string& kind, std::uint64_t count);

    // Something the user should know that is no fault of the deck ("part 3 was split").
    void note(const std::string& text);

    // Adds count to an entry of a summary list ("keywords not read", "element types not drawn").
    void count(const std::string& list, const std::string& name, std::uint64_t count, const Place& place);

    const std::vector<Warnings>& warnings() const { return kinds; }
    const std::vector<std::string>& notes() const { return remarks; }
    const std::vector<List>& lists() const { return summaries; }

    // How often a kind was warned of; 0 for a kind never seen.
    std::uint64_t warningCount(const std::string& kind) const;
    // The entry's count, 0 if there is none.
    std::uint64_t listCount(const std::string& list, const std::string& name) const;

    // Everything as text lines: warnings ("warning: FILE:LINE: ..."), notes, lists. Of many notes or entries of a list
    // the first ones and how many more there are, unless maxPerKind is unlimited.
    std::vector<std::string> lines() const;
    void print(std::ostream& out) const;

private:
    Warnings& kindOf(const std::string& kind);

    std::size_t maxPerKind;
    std::vector<Warnings> kinds;
    std::map<std::string, std::size_t> kindIndex;
    std::vector<std::string> remarks;
    std::vector<List> summaries;
    std::map<std::pair<std::string, std::string>, std::pair<std::size_t, std::size_t>> entryIndex;
};

} // namespace kvo

#endif
