// Reading of *ELEMENT cards: which entries of the data lines make an element, and what of it goes into the mesh.
#ifndef KVO_IMPORT_ABAQUS_INP_ELEMENTS_H
#define KVO_IMPORT_ABAQUS_INP_ELEMENTS_H

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "element_types.h"
#include "import_log.h"
#include "inp_scope.h"
#include "keyword_line.h"
#include "text/deck_lines.h"
#include "text/fields.h"

namespace kvo {

constexpr std::int64_t maxInpId = 1000000000000000; // leaves room for arithmetic with ids

// Throws ImportError at the deck's current line for an id that is not 1 to maxInpId.
inline void checkInpId(std::int64_t id, const char* what, const DeckLines& deck)
{
    if (id <= 0 || id > maxInpId) {
        throw ImportError(deck.place(), std::string(what) + " id " + std::to_string(id) + " is out of range");
    }
}

class InpElementReader
{
public:
    // types grows with the types that occur.
    InpElementReader(DeckLines& deck, std::vector<ElementType>& types, ImportLog& log)
        : deck(deck), types(types), log(log)
    {
    }

    // A card begins, its data lines follow, it ends. Only where mayNameInstances may a node be given as INSTANCE.ID.
    void begin(InpScope& scope, bool mayNameInstances, const KeywordLine& line);
    void data(std::string_view line);
    void end();

private:
    static constexpr int maxEntries = 32; // id, 27 nodes, an orientation node

    // The card, and the element whose data lines are not complete yet.
    struct ElementCard
    {
        const InpElementType* row = nullptr; // null: a type without a picture
        std::string typeName;
        std::uint32_t type = 0;    // index into types
        std::uint32_t group = 0;   // index into InpScope::groups
        InpSet* set = nullptr;     // ELSET=, or null
        int needed = 0;            // entries of a complete element, id included; 0: nobody knows
        int most = 0;              // entries that an element can have
        std::uint64_t undrawn = 0; // elements of a type without a picture so far

        std::int64_t entries[maxEntries] = {};
        int count = 0;
        std::uint32_t file = 0; // where the element began
        std::uint32_t line = 0;
    };

    bool nextEntry(CommaFields& fields, std::int64_t& entry);
    bool foreignNode(const std::string& text, std::int64_t& entry);
    void add();
    void store(std::int64_t id);
    void endLast();

    DeckLines& deck;
    std::vector<ElementType>& types;
    ImportLog& log;
    InpScope* scope = nullptr;
    bool mayNameInstances = false;
    ElementCard element;
    Place undrawnPlace; // of the card, for a type without a picture
    std::unordered_map<std::string, std::uint32_t> typeIndex;
};

} // namespace kvo

#endif
