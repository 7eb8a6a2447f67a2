// The words of the command line and of operation files, and what the library calls them.
#ifndef KVO_NAMES_H
#define KVO_NAMES_H

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

// "shell", "solid", "beam", "discrete" for a draw type, "type N" for others.
std::string kindName(unsigned int drawType);

} // namespace kvo

#endif
