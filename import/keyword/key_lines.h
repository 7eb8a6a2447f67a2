// The lines of a deck without comments, over its included files, and what holds in each of those: shifted ids, a
// transformation, the width of columns.
#ifndef KVO_IMPORT_KEYWORD_KEY_LINES_H
#define KVO_IMPORT_KEYWORD_KEY_LINES_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "import_log.h"
#include "key_fields.h"
#include "text/deck_lines.h"

namespace kvo {

// What is added to the ids of an included file, in the order of the card.
struct KeyOffsets
{
    enum Of
    {
        Node,
        Element,
        Part,
        Material,
        Set,
        Function,
        Define,
        Other, // sections and all else
        count
    };
    std::int64_t values[count] = {};
};

// How to include a file.
struct KeyInclude
{
    std::string name;
    KeyOffsets offsets; // added to those of the including file
    double lengthFactor = 1.0;
    std::int64_t transformation = 0; // 0: none
    Place place;                     // of the include
};

class KeyLines
{
public:
    KeyLines(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);

    enum class Kind
    {
        Data,
        Keyword, // begins with a star
        Opened,  // no line: an included file begins
        Closed,  // no line: back in the including file, behind the line that included the other
        End
    };
    // Behind Opened and Closed, place() and the rest already speak of the file that goes on.
    Kind next(std::string_view& line);

    // Goes on with an included file. Before, putBack() may give back the last line.
    void include(const KeyInclude& what);
    void putBack() { deck.putBack(); }
    void addSearchFolder(const std::string& folder) { deck.addSearchFolder(folder); }
    // The rest of the current file is not read.
    void endFile()
    {
        sources.back().ended = true;
        topEnded = topEnded || sources.size() == 1;
    }
    bool topFileEnded() const { return topEnded; }

    // A keyword's own format goes on top of its file's (KeyWidths of *KEYWORD).
    KeyWidths& fileWidths() { return sources.back().widths; }

    std::int64_t shifted(std::int64_t id, KeyOffsets::Of of) const;
    // Of the current file; the innermost last.
    const KeyInclude& currentInclude() const { return sources.back().include; }

    std::uint32_t fileIndex() const { return deck.fileIndex(); }
    std::uint32_t lineNumber() const { return deck.lineNumber(); }
    Place place() const { return deck.place(); }
    const std::vector<std::string>& files() const { return deck.files(); }

private:
    struct Source
    {
        std::uint32_t file = 0; // index into files()
        KeyInclude include;     // offsets are absolute
        KeyWidths widths;
        bool ended = false;
    };

    bool moveTo(std::uint32_t file, Kind& kind);
    bool skipEncrypted(std::string_view line);

    DeckLines deck;
    ImportLog& log;
    std::vector<Source> sources; // the open ones, innermost last
    KeyInclude pending;          // file that the next line is from, if it has any
    bool hasPending = false;
    bool hasHeld = false; // the deck's last line is still to be delivered
    bool topEnded = false;
    bool inEncrypted = false;
    std::string_view held;
};

} // namespace kvo

#endif
