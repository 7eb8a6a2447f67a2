// Aligned columns of text.
#ifndef KVO_TABLE_H
#define KVO_TABLE_H

#include <string>
#include <vector>

namespace kvo {

struct Column
{
    std::string title;
    bool right = false; // aligned to the right: numbers
};

// One line per row under the titles; columns two blanks apart, no blanks at the ends of lines. Every row has as many
// cells as there are columns. Widths count UTF-8 characters.
std::string formatTable(const std::vector<Column>& columns, const std::vector<std::vector<std::string>>& rows);

} // namespace kvo

#endif
