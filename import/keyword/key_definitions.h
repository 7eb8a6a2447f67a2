// Cards of parts, sections and materials.
#ifndef KVO_IMPORT_KEYWORD_KEY_DEFINITIONS_H
#define KVO_IMPORT_KEYWORD_KEY_DEFINITIONS_H

#include <map>

#include "key_cards.h"

namespace kvo {

class KeyDefinitions : public KeyCards
{
public:
    enum Kind
    {
        Part,
        CompositePart,
        ShellSection, // of thick shells too
        BeamSection,
        OtherSection,
        Material
    };

    using KeyCards::KeyCards;
    bool begin(int kind) override;
    void line(std::string_view text) override;
    void end() override;

    // At the end of the deck: the parts of the mesh get names, sections and materials.
    void describeParts();

private:
    struct PartCard
    {
        std::string title;
        std::string section; // of parts that are their own section
        std::int64_t sectionId = 0;
        std::int64_t materialId = 0;
        double thickness = 0.0;
    };
    struct SectionCard
    {
        std::string name;
        SectionData data;
    };
    struct MaterialCard
    {
        std::string name;
        double stiffness = 0.0;
        double damping = 0.0;
    };

    bool partOptions();
    void partLine(std::string_view text);
    void partHead(std::string_view text);
    void layers(std::string_view text);
    void sectionLine(std::string_view text);
    void sectionHead(KeyFields& fields);
    void sectionSizes(KeyFields& fields);
    void beamSizes(KeyFields& fields);
    void materialLine(std::string_view text);

    Kind current = Part;
    bool titled = false;
    int at = 0; // lines of the current definition so far
    std::string title;
    // parts
    int optionCards = 0; // lines that the keyword's options add to every part
    int extraCards = 0;  // those of the current part
    bool inertia = false;
    bool longLayers = false;
    PartCard* part = nullptr;
    // sections
    SectionCard* section = nullptr;
    std::int64_t sectionId = 0;
    int form = 0;       // of the element formulation
    int angleCards = 0; // of layers, behind the thicknesses
    bool oneOnly = false;

    std::map<std::int64_t, PartCard> parts;
    std::map<std::int64_t, SectionCard> sections;
    std::map<std::int64_t, MaterialCard> materials;
};

} // namespace kvo

#endif
