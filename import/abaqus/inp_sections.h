// Section cards: which set they cover, and what they say of thickness, cross-section, direction and stiffness.
#ifndef KVO_IMPORT_ABAQUS_INP_SECTIONS_H
#define KVO_IMPORT_ABAQUS_INP_SECTIONS_H

#include <string_view>

#include "inp_scope.h"
#include "keyword_line.h"

namespace kvo {

class InpSectionReader
{
public:
    // A card begins that makes a section of the scope; kind is what the section is called.
    void begin(InpScope& scope, const char* kind, const KeywordLine& card);
    // index counts the card's data lines from 0, empty ones among them.
    void data(std::string_view line, int index);

private:
    InpSection* section = nullptr; // the card's
};

} // namespace kvo

#endif
