// Property cards of bulk data: what the parts are made of.
#ifndef KVO_IMPORT_NASTRAN_BDF_PROPERTIES_H
#define KVO_IMPORT_NASTRAN_BDF_PROPERTIES_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "bdf_card.h"
#include "mesh.h"

namespace kvo {

// How a property card is written.
struct BdfPropertyRow
{
    const char* name;
    Family family;                                                        // of the elements that refer to it
    void (*read)(const BdfCard& card, std::size_t first, MeshPart& part); // first: field of the property id
    int perCard; // fields from one property to the next on one card; 0: one a card
};

const BdfPropertyRow* findBdfProperty(CardKey key);

class BdfProperties
{
public:
    void add(const BdfPropertyRow& row, const BdfCard& card);

    // Gives the parts of the mesh, whose propertyId is set, what their property cards say, and names: those given, else
    // ones made of card and id.
    void apply(Mesh& mesh, const std::map<std::int64_t, std::string>& names) const;

private:
    // A property id may stand for a shell's and a spring's property at once.
    std::map<std::pair<std::int64_t, Family>, MeshPart> properties;
};

} // namespace kvo

#endif
