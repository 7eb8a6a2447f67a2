// Column widths and padding.
#include "table.h"

#include <algorithm>

#include "text/printable.h"

namespace kvo {

namespace {

std::size_t characters(const std::string& text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](unsigned char c) { return (c & 0xC0) != 0x80; }));
}

std::string formatRow(const std::vector<Column>& columns, const std::vector<std::size_t>& widths,
                      const std::vector<std::string>& cells)
{
    std::string line;
    for (std::size_t k = 0; k < columns.size(); ++k) {
        const std::string padding(widths[k] - characters(cells[k]), ' ');
        line += (k ? "  " : "") + (columns[k].right ? padding + cells[k] : cells[k] + padding);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

} // namespace

std::string formatTable(const std::vector<Column>& columns, const std::vector<std::vector<std::string>>& rows)
{
    std::vector<std::string> titles;
    std::vector<std::size_t> widths;
    for (const Column& column : columns) {
        titles.push_back(column.title);
        widths.push_back(characters(column.title));
    }
    std::vector<std::vector<std::string>> cells = rows;
    for (std::vector<std::string>& row : cells) {
        for (std::size_t k = 0; k < row.size(); ++k) {
            row[k] = printable(row[k]);
            widths[k] = std::max(widths[k], characters(row[k]));
        }
    }
    std::string out = formatRow(columns, widths, titles);
    for (const std::vector<std::string>& row : cells) {
        out += formatRow(columns, widths, row);
    }
    return out;
}

} // namespace kvo
