// From the lines of a bulk data deck to its cards.
//
//   GRID           5              1.      0.     -1.          small: columns of 8, four to eight fields a line
//   GRID*                  5                              1.  large: columns of 16 after the name
//   *                     0.             -1.                  ... and its second half
//   GRID,5,,1.,0.,-1.                                         free: commas
//   GRID 5 0 1. 0. -1.                                        ... or blanks, which then follow the name at once
//
// A card goes on in lines whose name column is blank or begins with + or *; each line is of the width that it shows
// itself. Which label a continuation has is of no account: it belongs to the card above it.
#ifndef KVO_IMPORT_NASTRAN_BDF_LINES_H
#define KVO_IMPORT_NASTRAN_BDF_LINES_H

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "bdf_card.h"
#include "bdf_headings.h"
#include "import_log.h"
#include "text/deck_lines.h"

namespace kvo {

class BdfLines
{
public:
    BdfLines(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);

    // The next card of the bulk data, whatever its name, with references to the card before as they are written. False
    // behind the last one.
    bool next(BdfCard& card);
    // After next(): may the card that comes then refer to this one?
    bool nextReplicates() const;

    // Names of properties that comments of pre-processors tell.
    const std::map<std::int64_t, std::string>& propertyNames() const { return names; }
    // Comments above the elements of a part.
    const std::vector<BdfHeading>& headings() const { return headingList; }
    const std::vector<std::string>& files() const { return deck.files(); }
    // The text of the TITLE command.
    const std::string& title() const { return titleText; }

private:
    // A line of the bulk data without comment and trailing blanks.
    struct Line
    {
        std::string_view text;
        bool replicates = false; // may refer to the card before
        std::uint32_t file = 0;
        std::uint32_t number = 0;
    };

    bool nextLine(Line& line);
    bool nameCard(const Line& line, BdfCard& card, bool& large);
    bool nextBulkLine(Line& line);
    void begin(std::string_view text);
    bool controlLine(std::string_view text);
    void comment(std::string_view text);
    void propertySet(std::string_view text);
    void include(std::string_view text);
    void addFields(std::string_view text, bool large, BdfCard& card);
    void addFreeFields(std::string_view text, bool large, BdfCard& card);
    void addWords(std::string_view text, BdfCard& card);
    void addFixedFields(std::string_view text, bool large, BdfCard& card);
    std::string_view expandTabs(std::string_view text, std::size_t width);

    DeckLines deck;
    ImportLog& log;
    std::map<std::int64_t, std::string> names;
    std::vector<BdfHeading> headingList;
    std::string titleText;
    std::deque<std::string> expanded; // lines of the current card that had tabs
    Line pending;                     // read ahead
    bool hasPending = false;
    std::size_t lineEnd = 0; // the field behind the last line of the current card
    bool inBulk = false;     // before: file management, executive and case control
    bool inEndedFile = false;
    std::uint32_t endedFile = 0; // ENDDATA was in it
};

// Is this the name of a card that places nodes or makes elements, properties or coordinate systems?
bool isMeshCard(CardKey key);

// The name of a card from the beginning of its first line; large is set if it ends with *. 0 if that is no name.
CardKey cardKeyOf(std::string_view line, bool& large);

} // namespace kvo

#endif
