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
    // name, family, shape, first node, step, property, value, orientation, scalar, base, second
    {"CQUAD4", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CQUAD8", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CQUADR", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CQUAD", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CQUADX", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CQUADX4", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CQUADX8", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CPLSTN4", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CPLSTN8", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CPLSTS4", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CPLSTS8", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CSHEAR", shell, Shape::Quad, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CTRIA3", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CTRIA6", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CTRIAR", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CTRIAX", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CTRIAX6", shell, Shape::Triangle, 2, 2, -1, -1, -1, false, nullptr, 0},
    {"CTRAX3", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CTRAX6", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CPLSTN3", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CPLSTN6", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CPLSTS3", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CPLSTS6", shell, Shape::Triangle, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CTETRA", solid, Shape::Tetra, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CPYRAM", solid, Shape::Pyramid, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CPYRA", solid, Shape::Pyramid, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CPENTA", solid, Shape::Wedge, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CHEXA", solid, Shape::Hexa, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CBAR", beam, Shape::Line, 2, 1, 1, -1, 4, false, "BAROR", 0},
    {"CBEAM", beam, Shape::Line, 2, 1, 1, -1, 4, false, "BEAMOR", 0},
    {"CBEAM3", beam, Shape::Line, 2, 1, 1, -1, 5, false, nullptr, 0},
    {"CBEND", beam, Shape::Line, 2, 1, 1, -1, 4, false, nullptr, 0},
    {"CROD", beam, Shape::Line, 2, 1, 1, -1, -1, false, nullptr, 4},
    {"CONROD", beam, Shape::Line, 1, 1, -1, 4, -1, false, nullptr, 0},
    {"CTUBE", beam, Shape::Line, 2, 1, 1, -1, -1, false, nullptr, 4},
    {"PLOTEL", beam, Shape::Line, 1, 1, -1, -1, -1, false, nullptr, 4},
    {"CELAS1", discrete, Shape::Line, 2, 2, 1, -1, -1, false, nullptr, 0},
    {"CELAS2", discrete, Shape::Line, 2, 2, -1, 1, -1, false, nullptr, 0},
    {"CELAS3", discrete, Shape::Line, 2, 1, 1, -1, -1, true, nullptr, 4},
    {"CELAS4", discrete, Shape::Line, 2, 1, -1, 1, -1, true, nullptr, 4},
    {"CDAMP1", discrete, Shape::Line, 2, 2, 1, -1, -1, false, nullptr, 0},
    {"CDAMP2", discrete, Shape::Line, 2, 2, -1, 1, -1, false, nullptr, 0},
    {"CDAMP3", discrete, Shape::Line, 2, 1, 1, -1, -1, true, nullptr, 4},
    {"CDAMP4", discrete, Shape::Line, 2, 1, -1, 1, -1, true, nullptr, 4},
    {"CDAMP5", discrete, Shape::Line, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CVISC", discrete, Shape::Line, 2, 1, 1, -1, -1, false, nullptr, 4},
    {"CBUSH", discrete, Shape::Line, 2, 1, 1, -1, 4, false, nullptr, 0},
    {"CBUSH1D", discrete, Shape::Line, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CBUSH2D", discrete, Shape::Line, 2, 1, 1, -1, -1, false, nullptr, 0},
    {"CGAP", discrete, Shape::Line, 2, 1, 1, -1, 4, false, nullptr, 0},
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
void nodesAt(const BdfCard& card, std::size_t element, std::vector<std::int64_t>& nodes)
{
    for (std::size_t k = 0; k < Count; ++k) {
        addNode(card, element + First + k * Step, nodes);
    }
}

// Independent node, components, dependent nodes.
void rbe2Nodes(const BdfCard& card, std::size_t, std::vector<std::int64_t>& nodes)
{
    addNode(card, 1, nodes);
    for (std::size_t k = 3; k < card.fields.size(); ++k) {
        addNode(card, k, nodes);
    }
}

// Reference node, its components, then per group a weight (a real), components, nodes; words end it.
void rbe3Nodes(const BdfCard& card, std::size_t, std::vector<std::int64_t>& nodes)
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
void rbe1Nodes(const BdfCard& card, std::size_t, std::vector<std::int64_t>& nodes)
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
    {"CONM1", nodesAt<1, 1, 1>, 0},  {"CONM2", nodesAt<1, 1, 1>, 0},  {"CMASS1", nodesAt<2, 2, 2>, 0},
    {"CMASS2", nodesAt<2, 2, 2>, 0}, {"CMASS3", nodesAt<2, 1, 2>, 4}, {"CMASS4", nodesAt<2, 1, 2>, 4},
    {"RBAR", nodesAt<1, 1, 2>, 0},   {"RBAR1", nodesAt<1, 1, 2>, 0},  {"RROD", nodesAt<1, 1, 2>, 0},
    {"RJOINT", nodesAt<1, 1, 2>, 0}, {"RTRPLT", nodesAt<1, 1, 3>, 0}, {"RTRPLT1", nodesAt<1, 1, 3>, 0},
    {"RBE1", rbe1Nodes, 0},          {"RBE2", rbe2Nodes, 0},          {"RBE3", rbe3Nodes, 0},
    {"RSPLINE", nullptr, 0},         {"RSSCON", nullptr, 0},          {"CFAST", nullptr, 0},
    {"CWELD", nullptr, 0},           {"CSEAM", nullptr, 0},           {"CHBDYE", nullptr, 0},
    {"CHBDYG", nullptr, 0},          {"CHBDYP", nullptr, 0},          {"CAABSF", nullptr, 0},
    {"CAERO1", nullptr, 0},          {"GENEL", nullptr, 0},           {"CINTC", nullptr, 0},
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
