// A keyword line of an input deck: "*Element, type=C3D8, elset="Skin Top"".
#ifndef KVO_IMPORT_ABAQUS_KEYWORD_LINE_H
#define KVO_IMPORT_ABAQUS_KEYWORD_LINE_H

#include <string>
#include <string_view>
#include <vector>

#include "place.h"

namespace kvo {

struct KeywordLine
{
    struct Parameter
    {
        std::string name;  // upper case, without blanks
        std::string value; // as written, without quotation marks; empty for a flag
    };

    std::string key;  // upper case, without blanks and the star: "SOLIDSECTION"
    std::string name; // for messages: "*SOLID SECTION"
    std::vector<Parameter> parameters;
    Place place;

    // The value of a parameter, null if it is not there. Parameters may be shortened to three letters or more.
    const std::string* find(std::string_view wanted) const;
    bool has(std::string_view wanted) const { return find(wanted) != nullptr; }
    // The value, or nothing.
    std::string value(std::string_view wanted) const;
};

// text begins with the star; continuation lines have been joined.
KeywordLine parseKeywordLine(std::string_view text, Place place);

// Names of sets, parts and materials do not care about case, nor about quotation marks around them or their pieces
// ("Left Plate".12).
std::string nameKey(std::string_view name);

} // namespace kvo

#endif
