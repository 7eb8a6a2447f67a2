// Cards of sets: *SET_NODE, *SET_PART and those of elements.
#ifndef KVO_IMPORT_KEYWORD_KEY_SETS_H
#define KVO_IMPORT_KEYWORD_KEY_SETS_H

#include <map>
#include <set>
#include <utility>

#include "key_cards.h"

namespace kvo {

class KeySets : public KeyCards
{
public:
    enum Kind // what the set is of; each kind has its own ids
    {
        Nodes,
        Parts,
        Shells,
        Solids,
        ThickShells,
        Beams,
        Discretes
    };

    using KeyCards::KeyCards;
    bool begin(int kind) override;
    void line(std::string_view text) override;

    // At the end of the deck: the sets go to the mesh, those made of other sets with their members.
    void finish();

private:
    enum class Form
    {
        List,      // ids, eight a line
        Column,    // one id a line
        Generate,  // pairs of first and last
        Increment, // first, last, step
        General,   // an option and what it takes
        Add        // other sets
    };
    struct SetCard
    {
        std::string name;
        IdSet ids;
        std::vector<std::int64_t> others;
        Place place;
    };
    using Key = std::pair<int, std::int64_t>; // kind and id

    bool takeForm();
    void members(std::string_view text);
    void general(KeyFields& fields);
    void addRange(std::int64_t first, std::int64_t last, std::int64_t step);
    std::int64_t shiftedMember(std::int64_t id) const;
    void collect(Key key, std::set<Key>& visited, IdSet& ids);

    Kind current = Nodes;
    Form form = Form::List;
    bool titled = false;
    int at = 0; // lines so far
    std::string title;
    SetCard* card = nullptr;
    std::map<Key, SetCard> sets;
};

} // namespace kvo

#endif
