// The lines of an archive file, and what all its blocks have in common.
#ifndef KVO_IMPORT_ANSYS_CDB_DECK_H
#define KVO_IMPORT_ANSYS_CDB_DECK_H

#include <memory>
#include <string>
#include <string_view>

#include "cdb_lines.h"
#include "import_log.h"
#include "text/deck_lines.h"

namespace kvo {

class CdbDeck
{
public:
    static constexpr std::size_t maxColumns = 64;

    CdbDeck(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
        : lines(std::move(file), std::move(progress)), log(log)
    {
    }

    // "-1", and "N,R5.3,LOC,-1," behind nodes.
    static bool endsBlock(std::string_view line);

    // The next line of the command's block. Throws at the end of the file.
    std::string_view blockLine(const CdbCommand& command);
    // The line of the format that the block begins with; it has at most maxColumns integers.
    CdbFormat blockFormat(const CdbCommand& command);
    // Columns that hold anything but integers are an error. Beyond those of the format they are as wide as its last
    // ones.
    void integers(std::string_view line, const CdbFormat& format, std::int64_t* values, std::size_t count);
    // Blocks of nodes and elements say how many they have, mostly. Warns if these are read instead.
    void checkCount(const CdbCommand& command, std::int64_t read);
    [[noreturn]] void refuse(const std::string& message) const { throw ImportError(lines.place(), message); }

    DeckLines lines;

private:
    ImportLog& log;
};

} // namespace kvo

#endif
