// The table of session operations beside the transformations: name, words, how they are read and written. Private to
// the session file.
#ifndef KVO_VERBS_H
#define KVO_VERBS_H

#include <string>
#include <vector>

#include "session_file.h"
#include "words.h"

namespace kvo {

struct VerbRow
{
    const char* name;
    Verb verb;
    const char* arguments;                   // for manuals
    void (*parse)(const Line&, Operation&);  // words after the name
    std::string (*format)(const Operation&); // words after the name, with a blank in front of each
};

const std::vector<VerbRow>& verbRows();

} // namespace kvo

#endif
