// Element cards of bulk data: which fields are nodes, and what of it goes into the mesh.
#ifndef KVO_IMPORT_NASTRAN_BDF_ELEMENTS_H
#define KVO_IMPORT_NASTRAN_BDF_ELEMENTS_H

#include <set>
#include <unordered_map>
#include <vector>

#include "bdf_card.h"
#include "bdf_coords.h"
#include "import_log.h"
#include "mesh.h"

namespace kvo {

// How an element with a picture is written.
struct BdfElementRow
{
    const char* name;
    Family family;
    Shape shape;
    int firstNode;    // field of the first corner
    int step;         // fields from one corner to the next
    int property;     // field of the property id; -1: the card has none
    int value;        // field of stiffness, damping or area, for cards without a property; else -1
    int orientation;  // field of the third node or the vector's first component; else -1
    bool scalar;      // nodes that are no grid points are scalar points
    const char* base; // the card that has defaults for this one ("BAROR"), or null
    int second;       // field of the id of a second element on the card, written as the first; 0: there is none
};

const BdfElementRow* findBdfElement(CardKey key);

// Elements without a picture.
struct BdfUndrawnRow
{
    const char* name;
    // element: field of its id. Null: the nodes are not kept.
    void (*nodes)(const BdfCard& card, std::size_t element, std::vector<std::int64_t>& nodes);
    int second; // as above
};

const BdfUndrawnRow* findBdfUndrawn(CardKey key);

class BdfElements
{
public:
    // The mesh has one file, which coords places.
    BdfElements(Mesh& mesh, BdfCoords& coords, ImportLog& log) : mesh(mesh), coords(coords), log(log), rows(mesh) {}

    void add(const BdfElementRow& row, const BdfCard& card);
    void addUndrawn(const BdfUndrawnRow& row, const BdfCard& card);
    void setDefaults(const BdfCard& card); // BAROR, BEAMOR
    void addScalarPoints(const BdfCard& card);

    // When all cards are read and the nodes are placed: defaults of bars, vectors, scalar points.
    void finish();

    MeshRows& meshRows() { return rows; }

private:
    // What a vector's components are in: OFFT's first letter.
    enum class Frame
    {
        Blank, // what BAROR or BEAMOR say, else as OfEndA
        OfEndA,
        Basic
    };

    // What an element's orientation fields say: a node, a vector, or nothing.
    struct OrientationEntry
    {
        std::int64_t node = noNode;
        bool isVector = false;
        Vec3 vector = {0, 0, 0};
    };

    // BAROR or BEAMOR.
    struct Defaults
    {
        std::int64_t property = 0;
        OrientationEntry orientation;
        Frame frame = Frame::Blank;
    };

    // An element whose property or orientation a default may give.
    struct Unfinished
    {
        ElementBlock* block; // blocks keep their place
        std::size_t element;
        std::int64_t endA;
        bool property;    // was blank
        bool orientation; // was blank
        Frame frame;
        const BdfElementRow* row;
    };

    // An element that is oriented by a vector.
    struct VectorOfElement
    {
        std::int64_t element;
        std::int64_t endA; // whose displacement system the vector is in, unless it is in the basic one
        Vec3 vector;
        Frame frame;
        const BdfElementRow* row;
    };

    static OrientationEntry orientationOf(const BdfCard& card, int field);
    static Frame frameOf(const BdfCard& card);
    const Defaults* defaultsOf(const BdfElementRow& row) const;
    std::uint32_t typeOf(const BdfElementRow& row);
    bool hasSecond(int second, const BdfCard& card);
    void addElement(const BdfElementRow& row, const BdfCard& card, std::size_t first);
    void addUndrawnElement(const BdfUndrawnRow& row, const BdfCard& card, std::size_t first);
    std::uint32_t partOf(const BdfElementRow& row, const BdfCard& card, std::size_t first, std::int64_t id);
    void checkSurplus(const BdfElementRow& row, const BdfCard& card, std::int64_t id);
    void noteBlanks(const BdfElementRow& row, const BdfCard& card, ElementBlock& block, std::int64_t endA,
                    const OrientationEntry& orientation);
    void noteValue(const BdfElementRow& row, double value, std::uint32_t part);
    void applyDefaults();
    void applyVectors();
    void shrinkScalarElements();

    Mesh& mesh;
    BdfCoords& coords;
    ImportLog& log;
    MeshRows rows;
    const BdfElementRow* lastRow = nullptr;
    std::uint32_t lastType = 0;
    std::map<CardKey, Defaults> defaults;
    std::vector<Unfinished> unfinished;
    std::vector<VectorOfElement> vectors;
    IdSet scalarPoints;
    std::set<std::uint32_t> scalarTypes; // types of rows that are scalar
    std::set<std::uint32_t> mixedValues; // parts whose elements have different values
    std::set<std::uint32_t> valued;      // parts that have one
};

} // namespace kvo

#endif
