// Commands that define types, real constants and sections.
#ifndef KVO_IMPORT_ANSYS_CDB_ATTRIBUTE_COMMANDS_H
#define KVO_IMPORT_ANSYS_CDB_ATTRIBUTE_COMMANDS_H

#include "cdb_attributes.h"
#include "cdb_deck.h"

namespace kvo {

class CdbAttributeCommands
{
public:
    CdbAttributeCommands(CdbDeck& deck, CdbAttributes& attributes) : deck(deck), attributes(attributes) {}

    // False if the command is none of these.
    bool read(const CdbCommand& command);

private:
    struct Row
    {
        const char* name;
        void (CdbAttributeCommands::*read)(const CdbCommand&);
    };
    static const Row table[];

    void typeIs(const CdbCommand& command);
    void typeBlock(const CdbCommand& command);
    void option(const CdbCommand& command);
    void realBlock(const CdbCommand& command);
    void realSet(const CdbCommand& command);
    void moreReals(const CdbCommand& command);
    void sectionType(const CdbCommand& command);
    void sectionData(const CdbCommand& command);
    void sectionBlock(const CdbCommand& command);

    CdbDeck& deck;
    CdbAttributes& attributes;
    std::int64_t reals = 0; // set that RMORE adds to
    std::size_t realsAt = 0;
    std::int64_t section = 0; // that SECDATA belongs to
};

} // namespace kvo

#endif
