// A finite-element model in memory: parts with their nodes and elements, and what else a deck says.
//
// Nobody changes a model once it is built, so that threads may share it; a Model is a handle, copies of which are cheap
// and keep the arrays alive. What a view shows of it - visible parts, colours, selections - is the view's.
//
//   const kvo::Model model = kvo::makeModel(kvo::readDeck("bracket.inp", log), log);
//   for (const kvo::Part& part : model.parts()) {
//       std::printf("%u %s: %u elements\n", part.id, part.name.c_str(), part.elementCount());
//   }
//
// Every part has nodes of its own: a node that two parts use is in both, with the same id. Elements name nodes by their
// position in the part.
#ifndef KVO_MODEL_H
#define KVO_MODEL_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <kvo/id_range.h>
#include <kvo/id_table.h>
#include <kvo/span.h>
#include <kvoexport.h>

namespace kvo {

// How an element is drawn.
enum class ElementKind : std::uint8_t
{
    Shell,    // triangles and quadrilaterals
    Solid,    // tetrahedra, pyramids, wedges, hexahedra
    Beam,     // two ends, and a third node that orients the cross-section
    Discrete, // springs and dampers between two nodes
    Other     // kept, not drawn
};
constexpr int elementKindCount = 5;

// "shell", "solid", "beam", "discrete", "other".
KVO_EXPORT const char* elementKindName(ElementKind kind);

// Node positions per element that a part of a kind has in Part::slots: shell 4, solid 8, beam and discrete 3; 0 for
// Other, whose parts choose.
KVO_EXPORT std::uint32_t slotsPerElement(ElementKind kind);

// A slot without a node: the third one of a beam or discrete element that has none.
constexpr std::uint32_t emptySlot = 0xFFFFFFFF;

// What a part is made of, as far as the deck says; in the deck's units.
struct Section
{
    std::string kind;          // what gave the elements to the part ("shell section", "PSHELL"); may be empty
    double thickness = 0;      // of shells; 0: not given
    std::string shape;         // of a beam's cross-section, as the deck's format spells it; may be empty
    std::vector<double> sizes; // of the cross-section, in the order of the format
    double area = 0;           // of a rod's or beam's cross-section; 0: not given
    double stiffness = 0;      // of springs; 0: not given
    double damping = 0;        // of dampers; 0: not given
};

// Elements of one type of the deck's format.
struct ElementTypeUse
{
    std::string name; // as the format spells it ("C3D8R")
    std::uint64_t count = 0;
    std::vector<IdRange> elements; // their ids, where a part has several types; else empty
};

// One part. Made by a ModelBuilder; new members come at the end.
struct Part
{
    std::uint32_t id = 0; // unique in the model
    std::string name;     // may be empty
    ElementKind kind = ElementKind::Shell;
    std::int64_t deckId = 0; // in the deck; 0 where the deck has none. Differs from id where that could not be kept
    std::uint32_t file = 0;  // position in Model::files()
    std::uint32_t propertyId = 0; // 0: none
    std::string propertyName;
    std::uint32_t materialId = 0; // 0: none
    std::string materialName;
    std::array<float, 4> color = {0, 0, 0, 1}; // RGBA, 0 to 1: the deck's, else one of a palette
    Section section;
    std::vector<ElementTypeUse> types;

    // x, y, z of each node, in the order of nodeIds; relative to Model::origin().
    Span<float> positions;
    IdTable nodeIds; // ascending
    // slotCount node positions an element, emptySlot where there is none. Shells: the corners, of a triangle the third
    // one twice. Solids with 8 slots: a hexahedron round its bottom, then its top; slots 4 = 5 (counted from 1) make a
    // tetrahedron, else 5 = 6 and 7 = 8 a wedge or pyramid. Solids with 10 slots: tetrahedra, of which the first 4
    // count. Beams and discrete elements: two ends, then the third node.
    Span<std::uint32_t> slots;
    std::uint32_t slotCount = 0;
    IdTable elementIds;
    // xmin, xmax, ymin, ymax, zmin, zmax of the nodes, relative to Model::origin(); zeros without nodes.
    std::array<float, 6> extents = {0, 0, 0, 0, 0, 0};

    std::uint32_t nodeCount() const { return nodeIds.size(); }
    std::uint32_t elementCount() const { return elementIds.size(); }
    // The slots of an element below elementCount().
    const std::uint32_t* slotsOf(std::uint32_t element) const
    {
        return slots.data() + std::size_t(element) * slotCount;
    }
    const float* positionOf(std::uint32_t node) const { return positions.data() + 3 * std::size_t(node); }

    std::shared_ptr<const void> arrays; // keeps positions and slots
};

// A named set of the deck.
struct ModelSet
{
    enum class Of : std::uint8_t
    {
        Nodes,
        Elements,
        Parts // ids are Part::deckId
    };
    static constexpr std::uint32_t wholeModel = 0xFFFFFFFF;

    Of of = Of::Nodes;
    std::string name;
    std::int64_t id = 0;             // 0: the format names its sets only
    std::uint32_t file = wholeModel; // position in Model::files() whose ids these are
    bool oneKind = false;            // element ids are unique per kind only: these are of `kind`
    ElementKind kind = ElementKind::Shell;
    std::vector<IdRange> ids; // ascending
};

// Things of one type that have no picture: masses, rigid elements, particles.
struct ModelUndrawn
{
    std::string type;       // as the deck's format spells it ("CONM2")
    std::uint32_t file = 0; // position in Model::files()
    std::vector<std::int64_t> ids;
    std::vector<std::uint64_t> starts; // per element, where its nodes begin in nodes; one more for the end
    std::vector<std::int64_t> nodes;   // node ids
};

// Beams and springs that are oriented by a vector instead of a third node.
struct ModelOrientation
{
    std::array<double, 3> vector = {0, 0, 0}; // global
    std::uint32_t file = 0;
    bool oneKind = false; // as in ModelSet
    ElementKind kind = ElementKind::Beam;
    std::vector<IdRange> elements;
};

// What a model has besides its parts.
struct ModelFacts
{
    std::string format;                                     // of the deck
    std::vector<std::string> sources;                       // the deck, then the files that it includes
    std::vector<std::pair<std::string, std::string>> facts; // {"title", "Bracket"}
    bool idsPerKind = false;                                // a shell and a solid may have the same id
    std::vector<ModelSet> sets;
    std::vector<ModelOrientation> orientations;
    std::vector<ModelUndrawn> undrawn;
};

class KVO_EXPORT Model
{
public:
    static constexpr std::size_t notFound = static_cast<std::size_t>(-1);

    Model(); // without parts

    Span<Part> parts() const;
    // Position of the part with that id, or notFound. O(log n).
    std::size_t findPart(std::uint32_t id) const;
    // Model files, or instances of an assembly; their node and element ids may repeat one another's. The name of a
    // model's only file is empty.
    Span<std::string> files() const;
    // What was taken off all coordinates of the deck: deck coordinates are origin + position. So a model far from zero
    // keeps its digits.
    const std::array<double, 3>& origin() const;
    // xmin, xmax, ymin, ymax, zmin, zmax of all parts, relative to origin(); zeros without nodes.
    const std::array<float, 6>& extents() const;
    const ModelFacts& facts() const;

    std::uint64_t elementCount() const; // of all parts
    std::uint64_t nodeCount() const;    // of all parts; nodes that parts share count in each
    std::size_t bytes() const;          // of the arrays

private:
    friend class ModelBuilder;
    struct Impl;
    explicit Model(std::shared_ptr<const Impl> built) : impl(std::move(built)) {}
    std::shared_ptr<const Impl> impl;
};

// Makes a model. Parts come with arrays that are given away; add() checks them and throws std::invalid_argument that
// names the part and the element: slots past the nodes, coordinates that are no numbers, ids that occur twice (of
// parts in the model, of elements and nodes in the part), arrays of odd lengths.
class KVO_EXPORT ModelBuilder
{
public:
    explicit ModelBuilder(const std::array<double, 3>& origin = {0, 0, 0});
    ~ModelBuilder();
    ModelBuilder(const ModelBuilder&) = delete;
    ModelBuilder& operator=(const ModelBuilder&) = delete;

    // Returns its position. Without a call the model has one file without a name.
    std::uint32_t addFile(const std::string& name);
    // part: all but its arrays, ids, extents. nodeIds: ascending; positions: 3 a node; slots: slotCount an element.
    // slotCount: slotsPerElement(part.kind), for solids also 10, for Other any. withColor: part.color is the deck's;
    // else the part gets one of the palette.
    void addPart(Part part, bool withColor, std::vector<std::uint32_t> nodeIds, std::vector<float> positions,
                 std::vector<std::uint32_t> elementIds, std::uint32_t slotCount, std::vector<std::uint32_t> slots);
    void setFacts(ModelFacts facts);
    // The model; the builder is empty afterwards.
    Model build();

private:
    std::unique_ptr<Model::Impl> impl;
};

} // namespace kvo

#endif
