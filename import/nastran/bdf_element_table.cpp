// The table of element cards.
#include "bdf_elements.h"

#include <algorithm>

namespace kvo {

namespace {

constexpr Family shell = Family::Shell;
constexpr Family solid = Family::Solid;
constexpr Family beam = Family::Beam;
constexpr Family discrete = Family::Discrete;

// Second-order elements list their corners first, so that a row needs no more than the shape; CTRIAX6 goes round the
// rim instead.
const BdfElementRow elements[] = {
    // name, family, shape, first node, step, property, value, orientation, scalar, base
    {"CQUAD4", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr},
    {"CQUAD8", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr},
    {"CQUADR", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr},
    {"CQUAD", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr},
    {"CQUADX", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr},
    {"CQUADX4", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr},
    {"CQUADX8", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr},
    {"CPLSTN4", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr},
    {"CPLSTN8", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr},
    {"CPLSTS4", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr},
    {"CPLSTS8", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr},
    {"CSHEAR", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr},
    {"CTRIA3", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr},
    {"CTRIA6", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr},
    {"CTRIAR", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr},
    {"CTRIAX", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr},
    {"CTRIAX6", shell, Shape::Triangle, 2, 2, -1, -1, -1, false, nullptr},
    {"CTRAX3", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr},
    {"CTRAX6", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr},
    {"CPLSTN3", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr},
    {"CPLSTN6", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr},
    {"CPLSTS3", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr},
    {"CPLSTS6", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr},
    {"CTETRA", solid, Shape::Tetra, 2, 1, 1, -1, -1, false, nullptr},
    {"CPYRAM", solid, Shape::Pyramid, 2, 1, 1, -1, -1, false, nullptr},
    {"CPYRA", solid, Shape::Pyramid, 2, 1, 1, -1, -1, false, nullptr},
    {"CPENTA", solid, Shape::Wedge, 2, 1, 1, -1, -1, false, nullptr},
    {"CHEXA", solid, Shape::Hexa, 2, 1, 1, -1, -1, false, nullptr},
    {"CBAR", beam, Shape::Line, 2, 1, 1, -1, 4, false, "BAROR"},
    {"CBEAM", beam, Shape::Line, 2, 1, 1, -1, 4, false, "BEAMOR"},
    {"CBEAM3", beam, Shape::Line, 2, 1, 1, -1, 5, false, nullptr},
    {"CBEND", beam, Shape::Line, 2, 1, 1, -1, 4, false, nullptr},
    {"CROD", beam, Shape::Line, 2, 1, 1, -1, -1, false, nullptr},
    {"CONROD", beam, Shape::Line, 1, 1, -1, 4, -1, false, nullptr},
    {"CTUBE", beam, Shape::Line, 2, 1, 1, -1, -1, false, nullptr},
    {"PLOTEL", beam, Shape::Line, 1, 1, -1, -1, -1, false, nullptr},
    {"CELAS1", discrete, Shape::Line, 2, 2, 1, -1, -1, false, nullptr},
    {"CELAS2", discrete, Shape::Line, 2, 2, -1, 1, -1, false, nullptr},
    {"CELAS3", discrete, Shape::Line, 2, 1, 1, -1, -1, true, nullptr},
    {"CELAS4", discrete, Shape::Line, 2, 1, -1, 1, -1, true, nullptr},
    {"CDAMP1", discrete, Shape::Line, 2, 2, 1, -1, -1, false, nullptr},
    {"CDAMP2", discrete, Shape::Line, 2, 2, -1, 1, -1, false, nullptr},
    {"CDAMP3", discrete, Shape::Line, 2, 1, 1, -1, -1, true, nullptr},
    {"CDAMP4", discrete, Shape::Line, 2, 1, -1, 1, -1, true, nullptr},
    {"CDAMP5", discrete, Shape::Line, 2, 1, 1, -1, -1, false, nullptr},
    {"CVISC", discrete, Shape::Line, 2, 1, 1, -1, -1, false, nullptr},
    {"CBUSH", discrete, Shape::Line, 2, 1, 1, -1, 4, false, nullptr},
    {"CBUSH1D", discrete, Shape::Line, 2, 1, 1, -1, -1, false, nullptr},
    {"CBUSH2D", discrete, Shape::Line, 2, 1, 1, -1, -1, false, nullptr},
    {"CGAP", discrete, Shape::Line, 2, 1, 1, -1, 4, false, nullptr},
};

// --- elements without a picture ---

void addNode(const BdfCard& card, std::size_t field, std::vector<std::int64_t>& nodes)
{
    std::int64_t id = 0;
    if (card.isInteger(field, id) && id > 0) {
        nodes.push_back(id);
    }
}

template <std::size_t First, std::size_t Step, std::size_t Count>
void nodesAt(const BdfCard& card, std::vector<std::int64_t>& nodes)
{
    for (std::size_t k = 0; k < Count; ++k) {
        addNode(card, First + k * Step, nodes);
    }
}

// Independent node, components, dependent nodes.
void rbe2Nodes(const BdfCard& card, std::vector<std::int64_t>& nodes)
{
    addNode(card, 1, nodes);
    for (std::size_t k = 3; k < card.fields.size(); ++k) {
        addNode(card, k, nodes);
    }
}

// Reference node, its components, then per group a weight (a real), components, nodes; words end it.
void rbe3Nodes(const BdfCard& card, std::vector<std::int64_t>& nodes)
{
    addNode(card, 2, nodes);
    bool components = false;
    for (std::size_t k = 4; k < card.fields.size(); ++k) {
        std::int64_t integer = 0;
        double weight = 0.0;
        if (card.isInteger(k, integer)) {
            if (!components) {
                addNode(card, k, nodes);
            }
            components = false;
        } else if (card.isReal(k, weight)) {
            components = true;
        } else if (!card.blank(k)) {
            return;
        }
    }
}

// Pairs of node and components, with UM in between.
void rbe1Nodes(const BdfCard& card, std::vector<std::int64_t>& nodes)
{
    bool components = false;
    for (std::size_t k = 1; k < card.fields.size(); ++k) {
        std::int64_t integer = 0;
        if (!card.isInteger(k, integer)) {
            components = false;
            continue;
        }
        if (!components) {
            addNode(card, k, nodes);
        }
        components = !components;
    }
}

const BdfUndrawnRow undrawn[] = {
    {"CONM1", nodesAt<1, 1, 1>},  {"CONM2", nodesAt<1, 1, 1>},  {"CMASS1", nodesAt<2, 2, 2>},
    {"CMASS2", nodesAt<2, 2, 2>}, {"CMASS3", nodesAt<2, 1, 2>}, {"CMASS4", nodesAt<2, 1, 2>},
    {"RBAR", nodesAt<1, 1, 2>},   {"RBAR1", nodesAt<1, 1, 2>},  {"RROD", nodesAt<1, 1, 2>},
    {"RJOINT", nodesAt<1, 1, 2>}, {"RTRPLT", nodesAt<1, 1, 3>}, {"RTRPLT1", nodesAt<1, 1, 3>},
    {"RBE1", rbe1Nodes},          {"RBE2", rbe2Nodes},          {"RBE3", rbe3Nodes},
    {"RSPLINE", nullptr},         {"RSSCON", nullptr},          {"CFAST", nullptr},
    {"CWELD", nullptr},           {"CSEAM", nullptr},           {"CHBDYE", nullptr},
    {"CHBDYG", nullptr},          {"CHBDYP", nullptr},          {"CAABSF", nullptr},
    {"CAERO1", nullptr},          {"GENEL", nullptr},           {"CINTC", nullptr},
};

template <class Row, std::size_t Count> const Row* findRow(const Row (&table)[Count], CardKey key)
{
    const Row* found =
        std::find_if(std::begin(table), std::end(table), [&](const Row& row) { return cardKey(row.name) == key; });
    return found == std::end(table) ? nullptr : found;
}

} // namespace

const BdfElementRow* findBdfElement(CardKey key)
{
    return findRow(elements, key);
}

const BdfUndrawnRow* findBdfUndrawn(CardKey key)
{
    return findRow(undrawn, key);
}

} // namespace kvo
