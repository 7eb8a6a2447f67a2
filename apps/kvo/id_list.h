// Lists of ids as users write them: "1,5-9,12".
#ifndef KVO_ID_LIST_H
#define KVO_ID_LIST_H

#include <set>
#include <string>
#include <vector>

namespace kvo {

struct IdRange
{
    unsigned int first = 0;
    unsigned int last = 0; // the same as first for a single id
    bool single = true;    // written as one number, not as a range
};

// Throws UsageError, naming the option and the piece that is no id or range.
std::vector<IdRange> parseIdList(const std::string& text, const std::string& option);

// The known ids that the ranges name. A single id that is not known is an error (ProgramError: "<kind> N is not in the
// model"), a range takes what is there.
std::set<unsigned int> resolveIds(const std::vector<IdRange>& ranges, const std::set<unsigned int>& known,
                                  const std::string& kind);

} // namespace kvo

#endif
