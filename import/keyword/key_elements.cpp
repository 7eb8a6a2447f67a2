// Reading of *ELEMENT_SOLID, _TSHELL, _SHELL, _BEAM, _DISCRETE and _SEATBELT.
#include "key_elements.h"

#include <algorithm>
#include <map>

#include "degenerate.h"
#include "text/columns.h"

namespace kvo {

namespace {

const char* const classNames[] = {"ELEMENT_SOLID", "ELEMENT_TSHELL",   "ELEMENT_SHELL",
                                  "ELEMENT_BEAM",  "ELEMENT_DISCRETE", "ELEMENT_SEATBELT"};

// Options of solids that say how many lines of nodes there are, and what the first nodes are the corners of.
struct SolidOption
{
    const char* word;
    int nodeCards;
    Shape shape;
};

const SolidOption solidNodeOptions[] = {
    {"H20", 2, Shape::Hexa},  {"H27", 3, Shape::Hexa},  {"H64", 7, Shape::Hexa},  {"P21", 3, Shape::Wedge},
    {"P40", 4, Shape::Wedge}, {"T15", 2, Shape::Tetra}, {"T20", 2, Shape::Tetra},
};

std::size_t lastFilled(const std::int64_t* values, std::size_t count)
{
    while (count > 0 && values[count - 1] == 0) {
        --count;
    }
    return count;
}

} // namespace

KeyElements::KeyElements(KeyContext& context) : KeyCards(context)
{
    for (auto& row : types) {
        row.fill(noPart);
    }
}

// --- options ---

bool KeyElements::begin(int kind)
{
    current = static_cast<Class>(kind);
    nodeCards = extraCards = extraCardsOfMidNodes = 0;
    orientationAt = -1;
    oneElement = false;
    collapse = true;
    nodeCardsLeft = extraLeft = 0;
    elementRead = false;
    KeyKeyword& keyword = context.keyword;
    bool known = true;
    if (current == Solid) {
        known = solidOptions();
    } else if (current == ThickShell) {
        extraCards = keyword.takeOption("BETA");
        oneElement = keyword.takeOption("COMPOSITE");
    } else if (current == Shell) {
        known = shellOptions();
    } else if (current == Beam) {
        known = beamOptions();
    } else if (current == Discrete) {
        extraCards = keyword.takeOption("LCO");
    }
    return known && keyword.options.empty();
}

bool KeyElements::solidOptions()
{
    KeyKeyword& keyword = context.keyword;
    collapse = true;
    cornerShape = Shape::Hexa;
    keyword.takeOption("TET4TOTET10");
    keyword.takeOption("H8TOH20");
    keyword.takeOption("H8TOH27");
    keyword.takeOption("H8TOH64");
    for (const SolidOption& option : solidNodeOptions) {
        if (keyword.takeOption(option.word)) {
            nodeCards = option.nodeCards;
            cornerShape = option.shape;
            collapse = option.shape == Shape::Hexa;
        }
    }
    extraCards = (keyword.takeOption("ORTHO") ? 2 : 0) + (keyword.takeOption("DOF") ? 1 : 0);
    return true;
}

// The line of thicknesses has the angle or the material direction at its end: three options, one line.
bool KeyElements::shellOptions()
{
    KeyKeyword& keyword = context.keyword;
    const bool thickness = keyword.takeOption("THICKNESS");
    const bool beta = keyword.takeOption("BETA");
    const bool direction = keyword.takeOption("MCID");
    extraCards = thickness || beta || direction;
    extraCardsOfMidNodes = extraCards;
    extraCards += keyword.takeOption("OFFSET");
    extraCards += keyword.takeOption("DOF");
    oneElement = keyword.takeOption("COMPOSITE");
    keyword.takeOption("LONG");
    if (keyword.takeOption("SHL4")) { // SHL4_TO_SHL8
        keyword.takeOption("TO");
        keyword.takeOption("SHL8");
    }
    return true;
}

bool KeyElements::beamOptions()
{
    // In the order in which their lines follow each other.
    static const char* const words[] = {"THICKNESS", "SECTION",     "SCALAR",  "SCALR", "PID",
                                        "OFFSET",    "ORIENTATION", "WARPAGE", "ELBOW"};
    for (const char* word : words) {
        if (context.keyword.takeOption(word)) {
            orientationAt = word == std::string_view("ORIENTATION") ? extraCards : orientationAt;
            ++extraCards;
        }
    }
    return true;
}

// --- lines ---

void KeyElements::line(std::string_view text)
{
    if (extraLeft > 0) {
        if (extraDone == orientationAt) {
            orientationCard(text);
        }
        ++extraDone;
        --extraLeft;
        return;
    }
    if ((oneElement && elementRead) || text.find_first_not_of(" \t") == std::string_view::npos) {
        return;
    }
    switch (current) {
    case Shell:
        return shell(text);
    case Beam:
        return beam(text);
    case Discrete:
        return discrete(text);
    case Belt:
        return belt(text);
    default:
        return solid(text);
    }
}

void KeyElements::end()
{
    if (nodeCardsLeft > 0) {
        context.log.warn(warnCutCards, headPlace(),
                         "solid " + std::to_string(head.id) + " has no line of nodes: left out");
    }
}

void KeyElements::scan(std::string_view text, std::int64_t* values, std::size_t count)
{
    if (scanIntegerColumns(text, static_cast<std::size_t>(context.keyword.widths.of(8)), values, count)) {
        return;
    }
    KeyFields fields = context.fields(text);
    for (std::size_t k = 0; k < count; ++k) {
        values[k] = fields.integer(8);
    }
    context.refuseBad(fields);
}

void KeyElements::setHead(const std::int64_t* values)
{
    head.id = context.lines.shifted(values[0], KeyOffsets::Element);
    head.part = context.lines.shifted(values[1], KeyOffsets::Part);
    head.file = context.lines.fileIndex();
    head.line = context.lines.lineNumber();
    extraLeft = extraCards;
    extraDone = 0;
    elementRead = true;
}

void KeyElements::emit(Family family, Shape shape, const std::int64_t* corners, std::size_t entries)
{
    std::uint32_t& type = types[current][static_cast<std::size_t>(shape)];
    if (type == noPart) {
        type = context.rows.type(classNames[current], family, shape);
    }
    ElementBlock& block = context.file().blockFor(type, head.file);
    block.ids.push_back(head.id);
    block.part.push_back(context.rows.part(head.part));
    block.line.push_back(head.line);
    for (std::size_t k = 0; k < entries; ++k) {
        const bool none = corners[k] == noNode;
        block.nodes.push_back(none ? noNode : context.lines.shifted(corners[k], KeyOffsets::Node));
    }
}

void KeyElements::tooFewNodes()
{
    context.log.warn(warnTooFewNodes, headPlace(),
                     std::string(classNames[current]) + " " + std::to_string(head.id) + " has too few nodes: left out");
}

// --- solids and thick shells ---

// Ids and nodes on one line, or the ids on the first and the nodes on further ones.
void KeyElements::solid(std::string_view text)
{
    std::int64_t values[maxFields];
    scan(text, values, maxFields);
    if (nodeCardsLeft > 0) {
        solidNodes(values, maxFields);
        return;
    }
    setHead(values);
    nodesRead = 0;
    const bool oneLine = nodeCards == 0 && lastFilled(values, maxFields) > 2;
    nodeCardsLeft = oneLine || nodeCards == 0 ? 1 : nodeCards;
    if (oneLine) {
        solidNodes(values + 2, 8);
    } else if (current == ThickShell) {
        nodeCardsLeft = 0;
        tooFewNodes();
    } else {
        extraLeft = 0; // they come behind the nodes
    }
}

void KeyElements::solidNodes(const std::int64_t* values, std::size_t count)
{
    std::copy_n(values, count, nodes.begin() + static_cast<std::ptrdiff_t>(nodesRead));
    nodesRead += count;
    if (--nodeCardsLeft == 0) {
        finishSolid();
        extraLeft = extraCards;
        extraDone = 0;
    }
}

void KeyElements::finishSolid()
{
    if (!collapse) {
        const std::size_t corners = static_cast<std::size_t>(cornerCount(cornerShape));
        const bool whole = std::find(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(corners), 0) ==
                           nodes.begin() + static_cast<std::ptrdiff_t>(corners);
        return whole ? emit(Family::Solid, cornerShape, nodes.data(), corners) : tooFewNodes();
    }
    // Ten nodes on the second line: a tetrahedron with mid-side nodes.
    if (nodeCards == 0 && nodesRead == maxFields && nodes[8] != 0 && nodes[9] != 0) {
        return emit(Family::Solid, Shape::Tetra, nodes.data(), 4);
    }
    // Written short: the last node, or pair of nodes, stands for the rest.
    const std::size_t filled = lastFilled(nodes.data(), 8);
    if (filled < 4 || std::find(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(filled), 0) !=
                          nodes.begin() + static_cast<std::ptrdiff_t>(filled)) {
        return tooFewNodes();
    }
    if (filled == 6) {
        nodes[7] = nodes[6] = nodes[5];
        nodes[5] = nodes[4];
    } else {
        std::fill(nodes.begin() + static_cast<std::ptrdiff_t>(filled), nodes.begin() + 8, nodes[filled - 1]);
    }
    std::int64_t corners[8];
    const Shape shape = collapsedHexa(nodes.data(), corners);
    emit(Family::Solid, shape, corners, static_cast<std::size_t>(cornerCount(shape)));
}

// --- shells ---

void KeyElements::emitTriangleOrQuad(const std::int64_t* n)
{
    if (n[0] == 0 || n[1] == 0 || n[2] == 0) {
        tooFewNodes();
    } else if (n[3] == 0 || n[3] == n[2]) {
        emit(Family::Shell, Shape::Triangle, n, 3);
    } else {
        emit(Family::Shell, Shape::Quad, n, 4);
    }
}

void KeyElements::shell(std::string_view text)
{
    std::int64_t values[maxFields];
    scan(text, values, maxFields);
    setHead(values);
    std::int64_t* n = values + 2;
    const std::size_t filled = lastFilled(n, 8);
    if (filled > 4) {
        extraLeft += extraCardsOfMidNodes;
    }
    if (filled == 6) { // three corners, then the middles of the sides
        n[3] = 0;
    }
    emitTriangleOrQuad(n);
}

// --- beams, springs, belts ---

void KeyElements::beam(std::string_view text)
{
    std::int64_t values[5];
    scan(text, values, 5);
    setHead(values);
    std::int64_t* n = values + 2;
    if (n[0] == 0 || n[1] == 0) {
        tooFewNodes();
        return;
    }
    n[2] = n[2] == 0 ? noNode : n[2];
    emit(Family::Beam, Shape::Line, n, 3);
}

// Three numbers that blanks part are these three: programs do not agree on the width of the columns.
void KeyElements::orientationCard(std::string_view text)
{
    Vec3 vector;
    if (!scanRealWords(text, vector.data(), vector.size())) {
        KeyFields fields = context.fields(text);
        for (double& component : vector) {
            component = fields.real(8);
        }
        if (!context.accept(fields)) {
            return;
        }
    }
    if (vector != Vec3{0.0, 0.0, 0.0}) {
        oriented.push_back({head.id, Family::Beam, vector});
    }
}

// A missing node is the ground: the element then has its one node twice.
void KeyElements::discrete(std::string_view text)
{
    std::int64_t values[5];
    scan(text, values, 5);
    setHead(values);
    std::int64_t* n = values + 2;
    if (n[0] == 0 && n[1] == 0) {
        tooFewNodes();
        return;
    }
    n[1] = n[1] == 0 ? n[0] : n[1];
    n[0] = n[0] == 0 ? n[1] : n[0];
    if (values[4] != 0) {
        named.push_back({head.id, context.lines.shifted(values[4], KeyOffsets::Define), headPlace()});
    }
    emit(Family::Discrete, Shape::Line, n, 2);
}

// Of two nodes; of four where the belt is a surface, whose nodes then stand behind the length.
void KeyElements::belt(std::string_view text)
{
    KeyFields fields = context.fields(text);
    std::int64_t values[4];
    for (std::int64_t& value : values) {
        value = fields.integer(8);
    }
    setHead(values);
    fields.text(8);  // retractor or slip ring
    fields.text(16); // slack
    const std::int64_t third = fields.integer(8);
    const std::int64_t fourth = fields.integer(8);
    context.refuseBad(fields);
    if (values[2] == 0 || values[3] == 0) {
        tooFewNodes();
    } else if (third != 0 && fourth != 0) {
        const std::int64_t corners[] = {values[2], values[3], third, fourth};
        emitTriangleOrQuad(corners);
    } else {
        emit(Family::Discrete, Shape::Line, values + 2, 2);
    }
}

void KeyElements::resolveVectors()
{
    std::map<std::int64_t, Vec3> vectors;
    for (const DefinedVector& row : defined) {
        vectors[row.id] = row.vector;
    }
    for (const NamedVector& row : named) {
        const auto found = vectors.find(row.vector);
        if (found == vectors.end()) {
            context.log.warn("vectors that do not exist", row.place,
                             "ELEMENT_DISCRETE " + std::to_string(row.element) + ": vector " +
                                 std::to_string(row.vector) + " does not exist");
        } else if (found->second != Vec3{0.0, 0.0, 0.0}) {
            oriented.push_back({row.element, Family::Discrete, found->second});
        }
    }
}

} // namespace kvo
