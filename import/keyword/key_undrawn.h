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
    };
    static const std::vector<Row>& rows();

private:
    void entry(std::string_view text);
    void keep(std::int64_t id, const std::vector<std::int64_t>& nodes);

    struct BySet
    {
        const char* type;
        std::int64_t id;
        std::int64_t set;
        Place place;
    };

    const Row* row = nullptr;
    int extraCards = 0;
    int extraLeft = 0;
    bool oneOnly = false; // the keyword's options bring lines whose number is not known
    bool first = true;
    std::int64_t openId = 0; // of an entry that goes on in the next lines
    std::vector<std::int64_t> openNodes;
    std::vector<BySet> bySet;
};

} // namespace kvo

#endif
