// Comments that head the elements of a part and name it.
#ifndef KVO_IMPORT_NASTRAN_BDF_HEADINGS_H
#define KVO_IMPORT_NASTRAN_BDF_HEADINGS_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "mesh.h"

namespace kvo {

struct BdfHeading
{
    std::uint32_t file = 0; // index into Mesh::sourceFiles
    std::uint32_t line = 0;
    std::string name;
};

// The name in "$       Shell element data for family    RIBS/RIB.00"; empty for any other comment.
std::string headingName(std::string_view comment);

// Names the properties whose elements begin under a heading that no other property's elements begin under, and that
// have no name yet. headings: in the order of each file's lines.
void nameByHeadings(const Mesh& mesh, const std::vector<BdfHeading>& headings,
                    std::map<std::int64_t, std::string>& names);

} // namespace kvo

#endif
