// Cards of masses, particles and rigid connections: kept with ids and nodes, not drawn.
#ifndef KVO_IMPORT_KEYWORD_KEY_UNDRAWN_H
#define KVO_IMPORT_KEYWORD_KEY_UNDRAWN_H

#include "key_cards.h"

namespace kvo {

class KeyUndrawn : public KeyCards
{
public:
    using KeyCards::KeyCards;
    bool begin(int kind) override; // an index into the table of keywords
    void line(std::string_view text) override;
    void end() override;

    // Behind the end of the deck, when the mesh is finished: what names its nodes by a set.
    void resolveSets();

    struct Row
    {
        const char* keyword;
        int width;           // of the columns
        int idAt;            // which field is the id; -1: there is none
        KeyOffsets::Of idOf; // what is added to it
        int firstNode;       // the fields of nodes
        int nodeCount;
        int setAt;        // the field that is a set of nodes; -1: there is none
        int extraCards;   // lines behind each
        bool nodePerLine; // the following lines begin with one more node each
        int setsAt;       // the field that tells that these lines name sets of nodes instead; -1: there is none
    };
    static const std::vector<Row>& rows();

private:
    // One definition. Those that name sets wait for the end of the deck.
    struct Entry
    {
        const char* type = nullptr;
        std::int64_t id = 0;
        std::vector<std::int64_t> nodes;
        std::vector<std::int64_t> sets;
        Place place;
    };

    void entryLine(std::string_view text);
    void nodeLine(std::string_view text);
    void extraLine(std::string_view text, int number);
    void keep(Entry& entry);

    const Row* row = nullptr;
    // What the keyword's options ask for.
    int headings = 0;   // lines in front of each definition
    int extraCards = 0; // lines behind each
    int inertiaAt = -1; // which of those tells of one more
    // Where in a definition the reading is.
    int at = 0; // lines so far
    int extraLeft = 0;
    bool bySets = false; // its further lines name sets
    Entry open;          // goes on in the next lines; no type: there is none
    std::vector<Entry> waiting;
};

} // namespace kvo

#endif
