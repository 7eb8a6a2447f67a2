// Lines of blocks.
#include "cdb_deck.h"

#include <algorithm>

#include "text/columns.h"
#include "text/fields.h"

namespace kvo {

bool CdbDeck::endsBlock(std::string_view line)
{
    const std::string_view text = trimmed(line);
    return text == "-1" || (!text.empty() && (text.front() == 'N' || text.front() == 'n'));
}

std::string_view CdbDeck::blockLine(const CdbCommand& command)
{
    std::string_view line;
    if (!lines.next(line)) {
        throw ImportError(lines.place(),
                          "cut off inside the " + command.name + " of line " + std::to_string(command.place.line));
    }
    return line;
}

CdbFormat CdbDeck::blockFormat(const CdbCommand& command)
{
    CdbFormat format;
    if (!parseCdbFormat(blockLine(command), format) || format.integers == 0 || format.integers > maxColumns) {
        refuse("behind " + command.name + " a format like (3i9,6e21.13e3) should be");
    }
    return format;
}

void CdbDeck::integers(std::string_view line, const CdbFormat& format, std::int64_t* values, std::size_t count)
{
    std::string_view rest = line;
    for (std::size_t k = 0; k < format.runs.size() && count > 0; ++k) {
        const CdbFormat::Run& run = format.runs[k];
        const std::size_t here = k + 1 == format.runs.size() ? count : std::min(count, run.count);
        if (!scanIntegerColumns(rest, run.width, values, here)) {
            refuse("\"" + std::string(trimmed(line).substr(0, 40)) + "\": columns of integers expected");
        }
        rest.remove_prefix(std::min(rest.size(), here * run.width));
        values += here;
        count -= here;
    }
}

void CdbDeck::checkCount(const CdbCommand& command, std::int64_t read)
{
    if (command.integer(3) > 0 && command.integer(3) != read) {
        log.warn("blocks with another count than they say", command.place,
                 command.name + " should have " + command.text(3) + " entries, and has " + std::to_string(read));
    }
}

} // namespace kvo
