// Cards of elements that are drawn.
#ifndef KVO_IMPORT_KEYWORD_KEY_ELEMENTS_H
#define KVO_IMPORT_KEYWORD_KEY_ELEMENTS_H

#include <array>
#include <vector>

#include "key_cards.h"
#include "transform.h"

namespace kvo {

class KeyElements : public KeyCards
{
public:
    // Element ids are unique in their class only.
    enum Class
    {
        Solid,
        ThickShell,
        Shell,
        Beam,
        Discrete,
        Belt,
        classCount
    };

    explicit KeyElements(KeyContext& context);

    bool begin(int kind) override; // a Class
    void line(std::string_view text) override;
    void end() override;

    // The orientation vectors so far: a transformed include turns those of its elements.
    struct Oriented
    {
        std::int64_t element;
        Family family;
        Vec3 vector;
    };
    std::vector<Oriented> oriented;

    // *DEFINE_SD_ORIENTATION: discrete elements name a vector by id. A transformed include turns its own, too.
    struct DefinedVector
    {
        std::int64_t id;
        Vec3 vector;
    };
    std::vector<DefinedVector> defined;
    // At the end of the deck, when all vectors are known: the discrete elements that have one join the others.
    struct NamedVector
    {
        std::int64_t element;
        std::int64_t vector;
        Place place;
    };
    void resolveVectors();

private:
    static constexpr std::size_t maxFields = 10;
    static constexpr std::size_t maxSolidNodes = 64;

    struct Head
    {
        std::int64_t id = 0;
        std::int64_t part = 0;
        std::uint32_t file = 0; // index into the deck's files
        std::uint32_t line = 0;
    };

    Place headPlace() const { return {context.lines.files()[head.file], head.line}; }
    bool solidOptions();
    bool shellOptions();
    bool beamOptions();

    void scan(std::string_view text, std::int64_t* values, std::size_t count);
    void solid(std::string_view text);
    void solidNodes(const std::int64_t* values, std::size_t count);
    void finishSolid();
    void shell(std::string_view text);
    void beam(std::string_view text);
    void discrete(std::string_view text);
    void belt(std::string_view text);
    void orientationCard(std::string_view text);

    void setHead(const std::int64_t* values);
    void emit(Family family, Shape shape, const std::int64_t* nodes, std::size_t entries);
    void emitTriangleOrQuad(const std::int64_t* nodes);
    void tooFewNodes();

    Class current = Solid;
    // What the keyword's options ask for.
    int nodeCards = 0; // solids: lines of nodes behind the one of the ids; 0: one or none, as it shows
    Shape cornerShape = Shape::Hexa;
    bool collapse = true; // solids of 8 nodes
    int extraCards = 0;   // lines behind every element
    int extraCardsOfMidNodes = 0;
    int orientationAt = -1;  // which of the extra lines has the vector
    bool oneElement = false; // lines until the next keyword belong to one element
    // Where in an element the reading is.
    Head head;
    int nodeCardsLeft = 0;
    int extraLeft = 0;
    int extraDone = 0;
    bool elementRead = false;
    std::array<std::int64_t, maxSolidNodes + maxFields> nodes = {};
    std::size_t nodesRead = 0;

    std::array<std::array<std::uint32_t, 7>, classCount> types; // indices into the mesh's types, by Shape
    std::vector<NamedVector> named;
};

} // namespace kvo

#endif
