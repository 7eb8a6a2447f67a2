// The words of the command line and of sessions, and what the library calls them.
#ifndef KVO_VOCABULARY_H
#define KVO_VOCABULARY_H

#include <string>
#include <vector>

namespace kvo {

struct NamedView
{
    const char* name;  // "iso"
    const char* title; // "Iso"
    int type;          // _MViewType
};

// The seven standard views, in the order of contact sheets.
const std::vector<NamedView>& standardViews();

// Null for a word that is no standard view.
const NamedView* findView(const std::string& name);

// A word and the number that it stands for.
struct NamedCode
{
    const char* name;
    int code;
};

const std::vector<NamedCode>& pickTypes();    // part, element, node: PICK_TYPE_...
const std::vector<NamedCode>& shadeModels();  // flat, smooth: OpenGL's
const std::vector<NamedCode>& polygonModes(); // fill, line, point: OpenGL's

// Null for a word that is not among them.
const NamedCode* findCode(const std::vector<NamedCode>& codes, const std::string& name);

// The words, for checks of command lines.
std::vector<std::string> namesOf(const std::vector<NamedCode>& codes);

// "shell", "solid", "beam", "discrete" for a draw type, "type N" for others.
std::string kindName(unsigned int drawType);

} // namespace kvo

#endif
