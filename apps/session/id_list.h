// Lists of ids as users write them: "1,5-9,12"; for elements and nodes also by part: "1-100,3:205,207".
#ifndef KVO_ID_LIST_H
#define KVO_ID_LIST_H

#include <set>
#include <string>
#include <vector>

namespace kvo {

struct IdPiece
{
    unsigned int first = 0;
    unsigned int last = 0; // the same as first for a single id
    bool single = true;    // written as one number, not as a range
    bool ofPart = false;   // of one part only: "PART:IDS", which holds up to the next PART:
    unsigned int part = 0; // that part's id

    bool operator==(const IdPiece& o) const
    {
        return first == o.first && last == o.last && single == o.single && ofPart == o.ofPart && part == o.part;
    }
};

enum class IdScope
{
    Model, // ids alone
    Parts  // PART:IDS allowed
};

// Throws UsageError, naming the option and the piece that is no id or range.
std::vector<IdPiece> parseIdList(const std::string& text, const std::string& option, IdScope scope = IdScope::Model);

// The text that parses to these ranges. Ranges of all parts must not follow ranges of one part.
std::string formatIdList(const std::vector<IdPiece>& ranges);

// "3:17", "5-9": one range as the user wrote it.
std::string formatIdPiece(const IdPiece& range);

// The known ids that the ranges name. A single id that is not known is an error (ProgramError: "<kind> N is not in the
// model"), a range takes what is there.
std::set<unsigned int> resolveIds(const std::vector<IdPiece>& ranges, const std::set<unsigned int>& known,
                                  const std::string& kind);

} // namespace kvo

#endif
