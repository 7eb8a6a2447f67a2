// Reading of PLY files. The header says what stands in the file; faces may come before the vertices that they name, so
// that they become elements at the end.
#include "ply_reader.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iterator>

#include "mesh_finish.h"
#include "polygon.h"
#include "text/fields.h"
#include "text/number_type.h"
#include "text/token_input.h"

namespace kvo {

namespace {

constexpr std::int64_t reportEvery = 65536;

struct Property
{
    std::string name;
    NumberType type = NumberType::Int32;
    bool list = false;
    NumberType countType = NumberType::UInt8; // of a list
};

struct Element
{
    std::string name;
    std::int64_t count = 0;
    std::vector<Property> properties;

    // Position in properties, or none.
    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::size_t find(std::initializer_list<const char*> names) const
    {
        for (const char* name : names) {
            for (std::size_t k = 0; k < properties.size(); ++k) {
                if (equalsIgnoringCase(properties[k].name, name)) {
                    return k;
                }
            }
        }
        return none;
    }
};

class PlyReader
{
public:
    PlyReader(const MappedFile& file, ImportLog& log, Progress progress)
        : log(log), input(file, std::move(progress)), rows(mesh), polygons(mesh, rows, log),
          stem(std::filesystem::path(file.path()).stem().string())
    {
        mesh.sourceFiles.push_back(file.path());
        mesh.files.emplace_back();
    }

    Mesh read();

private:
    enum class Kind
    {
        Face,
        Strip,
        Edge
    };

    struct Figure
    {
        Kind kind;
        bool hasPart;
        std::int64_t part; // if it has one
        std::uint32_t line;
        std::size_t end; // of its vertices in indices
    };

    void readHeader();
    void readFormat(std::string_view rest);
    void readElementLine(std::string_view rest);
    void readPropertyLine(std::string_view rest);
    NumberType typeOf(std::string_view name) const;
    [[noreturn]] void failHeader(const std::string& message) const { throw ImportError(headerPlace, message); }
    std::size_t leastBytes(const Element& element) const;

    // To the line of the next value.
    void skipLeading()
    {
        if (!binary) {
            input.skipBlanks();
        }
    }

    std::int64_t integer(NumberType type);
    double real(NumberType type);
    void skip(const Property& property);
    void readElement(const Element& element);
    void readVertices(const Element& element);
    void readFigures(const Element& element, Kind kind, std::size_t list);
    void readEdges(const Element& element);
    void readOthers(const Element& element);
    void listNotRead(const Element& element, std::initializer_list<std::size_t> read);

    void addFigures();
    void addFigure(const Figure& figure, std::int64_t id, std::size_t begin);
    void addStrips(const Figure& figure, std::int64_t id, std::uint32_t part, std::size_t begin);
    std::uint32_t partOf(const Figure& figure);
    bool hasVertices(const Figure& figure, std::int64_t id, std::size_t begin);

    Mesh mesh;
    ImportLog& log;
    TokenInput input;
    MeshRows rows;
    PolygonElements polygons;
    std::string stem;
    std::vector<Element> elements;
    std::vector<Figure> figures;
    std::vector<std::int64_t> indices;
    Place headerPlace; // of the header's line that is being read
    bool binary = false;
    bool bigEndian = false;
    std::string partProperty; // that says the part of faces
};

// --- header ---

std::string_view takeWord(std::string_view& text)
{
    text = trimmed(text);
    const std::string_view word = text.substr(0, std::min(text.find_first_of(" \t"), text.size()));
    text.remove_prefix(word.size());
    return word;
}

NumberType PlyReader::typeOf(std::string_view name) const
{
    NumberType type = NumberType::Int32;
    if (!findNumberType(name, type)) {
        failHeader("type \"" + std::string(name.substr(0, 40)) + "\" is not known");
    }
    return type;
}

void PlyReader::readFormat(std::string_view rest)
{
    const std::string format(takeWord(rest));
    if (format == "binary_big_endian" || format == "binary_little_endian") {
        binary = true;
        bigEndian = format == "binary_big_endian";
    } else if (format != "ascii") {
        failHeader("format \"" + format.substr(0, 40) + "\" is not known");
    }
}

void PlyReader::readElementLine(std::string_view rest)
{
    Element& element = elements.emplace_back();
    element.name = takeWord(rest);
    const std::string count(trimmed(rest));
    const bool digits = !count.empty() && std::all_of(count.begin(), count.end(), isTextDigit);
    if (element.name.empty() || !digits || count.size() > 18) {
        failHeader("an element has a name and a count");
    }
    element.count = std::stoll(count);
}

void PlyReader::readPropertyLine(std::string_view rest)
{
    if (elements.empty()) {
        failHeader("a property before the first element");
    }
    Property property;
    std::string_view word = takeWord(rest);
    if (word == "list") {
        property.list = true;
        property.countType = typeOf(takeWord(rest));
        word = takeWord(rest);
        if (!isInteger(property.countType)) {
            failHeader("the count of a list is a whole number");
        }
    }
    property.type = typeOf(word);
    property.name = trimmed(rest);
    elements.back().properties.push_back(property);
}

void PlyReader::readHeader()
{
    input.skipLine(); // ply
    while (true) {
        if (input.bytesLeft() == 0) {
            input.fail("the file is cut off: no end_header");
        }
        headerPlace = input.place();
        std::string_view line = input.lineText();
        const std::string_view word = takeWord(line);
        if (word == "end_header") {
            break;
        }
        if (word == "format") {
            readFormat(line);
        } else if (word == "element") {
            readElementLine(line);
        } else if (word == "property") {
            readPropertyLine(line);
        } else if (word != "comment" && word != "obj_info" && !word.empty()) {
            failHeader("not a statement of a PLY header: \"" + std::string(word.substr(0, 40)) + "\"");
        }
    }
    if (binary) {
        input.setBinary(bigEndian);
    }
}

// --- values ---

std::int64_t PlyReader::integer(NumberType type)
{
    if (!input.isBinary() && isInteger(type)) {
        return input.textInteger();
    }
    const double value = real(type);
    return std::fabs(value) <= 9e15 ? static_cast<std::int64_t>(value) : -1;
}

double PlyReader::real(NumberType type)
{
    if (!input.isBinary()) {
        return input.textReal();
    }
    return numberFrom(type, input.take(bytesOf(type)), bigEndian);
}

std::size_t PlyReader::leastBytes(const Element& element) const
{
    std::size_t bytes = 0;
    for (const Property& property : element.properties) {
        bytes += !input.isBinary() ? 1 : bytesOf(property.list ? property.countType : property.type);
    }
    return std::max<std::size_t>(bytes, 1);
}

void PlyReader::skip(const Property& property)
{
    const std::int64_t count = property.list ? integer(property.countType) : 1;
    input.countOf(count, input.isBinary() ? bytesOf(property.type) : 1, "values");
    if (input.isBinary()) {
        input.take(static_cast<std::size_t>(count) * bytesOf(property.type));
        return;
    }
    for (std::int64_t k = 0; k < count; ++k) {
        if (input.word().empty()) {
            input.failToken("a value");
        }
    }
}

// --- elements ---

void PlyReader::listNotRead(const Element& element, std::initializer_list<std::size_t> read)
{
    for (std::size_t k = 0; k < element.properties.size(); ++k) {
        if (std::find(read.begin(), read.end(), k) == read.end()) {
            log.count(listKeywordsNotRead, element.name + " " + element.properties[k].name, 1,
                      {mesh.sourceFiles.front(), 0});
        }
    }
}

void PlyReader::readVertices(const Element& element)
{
    const std::size_t axes[3] = {element.find({"x"}), element.find({"y"}), element.find({"z"})};
    for (const std::size_t axis : axes) {
        if (axis == Element::none || element.properties[axis].list) {
            input.fail("the vertices have no x, y and z");
        }
    }
    listNotRead(element, {axes[0], axes[1], axes[2]});
    MeshFile& file = mesh.files.front();
    file.nodeIds.reserve(file.nodeIds.size() + static_cast<std::size_t>(element.count));
    file.xyz.reserve(file.xyz.size() + 3 * static_cast<std::size_t>(element.count));
    for (std::int64_t k = 0; k < element.count; ++k) {
        double xyz[3] = {};
        for (std::size_t p = 0; p < element.properties.size(); ++p) {
            const auto* axis = std::find(std::begin(axes), std::end(axes), p);
            if (axis == std::end(axes)) {
                skip(element.properties[p]);
            } else {
                xyz[axis - axes] = real(element.properties[p].type);
            }
        }
        if (!std::isfinite(xyz[0]) || !std::isfinite(xyz[1]) || !std::isfinite(xyz[2])) {
            input.fail("vertex " + std::to_string(k) + " has a coordinate that is no number");
        }
        file.addNode(static_cast<std::int64_t>(file.nodeIds.size()) + 1, xyz[0], xyz[1], xyz[2]);
        if (k % reportEvery == 0) {
            input.report();
        }
    }
}

void PlyReader::readFigures(const Element& element, Kind kind, std::size_t list)
{
    const std::size_t part = element.find({"part", "part_id", "partid", "group", "group_id", "object", "object_id",
                                           "material_index", "material_id", "material", "region", "segment", "label"});
    const bool parts = part != Element::none && !element.properties[part].list;
    listNotRead(element, {list, parts ? part : list});
    partProperty = parts ? element.properties[part].name : partProperty;
    for (std::int64_t k = 0; k < element.count; ++k) {
        Figure figure = {kind, parts, 0, 0, 0};
        skipLeading();
        figure.line = input.line();
        for (std::size_t p = 0; p < element.properties.size(); ++p) {
            const Property& property = element.properties[p];
            if (p == list) {
                const std::int64_t corners = input.countOf(integer(property.countType),
                                                           input.isBinary() ? bytesOf(property.type) : 1, "corners");
                for (std::int64_t c = 0; c < corners; ++c) {
                    indices.push_back(integer(property.type));
                }
            } else if (parts && p == part) {
                figure.part = integer(property.type);
            } else {
                skip(property);
            }
        }
        figure.end = indices.size();
        figures.push_back(figure);
        if (k % reportEvery == 0) {
            input.report();
        }
    }
}

void PlyReader::readEdges(const Element& element)
{
    const std::size_t from = element.find({"vertex1"});
    const std::size_t to = element.find({"vertex2"});
    if (from == Element::none || to == Element::none || element.properties[from].list || element.properties[to].list) {
        readOthers(element);
        return;
    }
    listNotRead(element, {from, to});
    for (std::int64_t k = 0; k < element.count; ++k) {
        std::int64_t ends[2] = {};
        skipLeading();
        const std::uint32_t line = input.line();
        for (std::size_t p = 0; p < element.properties.size(); ++p) {
            if (p == from || p == to) {
                ends[p == to] = integer(element.properties[p].type);
            } else {
                skip(element.properties[p]);
            }
        }
        indices.insert(indices.end(), {ends[0], ends[1]});
        figures.push_back({Kind::Edge, false, 0, line, indices.size()});
    }
}

void PlyReader::readOthers(const Element& element)
{
    log.count(listKeywordsNotRead, "element " + element.name, static_cast<std::uint64_t>(element.count),
              {mesh.sourceFiles.front(), 0});
    for (std::int64_t k = 0; k < element.count && !element.properties.empty(); ++k) {
        for (const Property& property : element.properties) {
            skip(property);
        }
    }
}

void PlyReader::readElement(const Element& element)
{
    if (!element.properties.empty()) {
        input.countOf(element.count, leastBytes(element), "elements");
    }
    const std::size_t list = element.find({"vertex_indices", "vertex_index"});
    const bool lists = list != Element::none && element.properties[list].list;
    if (element.name == "vertex") {
        readVertices(element);
    } else if (element.name == "face" && lists) {
        readFigures(element, Kind::Face, list);
    } else if (element.name == "tristrips" && lists) {
        readFigures(element, Kind::Strip, list);
    } else if (element.name == "edge") {
        readEdges(element);
    } else {
        readOthers(element);
    }
}

// --- figures become elements ---

std::uint32_t PlyReader::partOf(const Figure& figure)
{
    if (!figure.hasPart) {
        return rows.part(stem);
    }
    const std::int64_t value = figure.part;
    const std::uint32_t part = rows.part(value);
    if (mesh.parts[part].name.empty()) {
        mesh.parts[part].name = partProperty + " " + std::to_string(value);
        if (value == 0) {
            log.note("part \"" + mesh.parts[part].name +
                     "\" has the id 0, which cannot be kept: it gets one above the highest");
        }
    }
    return part;
}

bool PlyReader::hasVertices(const Figure& figure, std::int64_t id, std::size_t begin)
{
    const std::int64_t known = static_cast<std::int64_t>(mesh.files.front().nodeIds.size());
    for (std::size_t k = begin; k < figure.end; ++k) {
        const bool separator = figure.kind == Kind::Strip && indices[k] == -1;
        if (!separator && (indices[k] < 0 || indices[k] >= known)) {
            log.warn(warnMissingNode, {mesh.sourceFiles.front(), figure.line},
                     "element " + std::to_string(id) + " refers to vertex " + std::to_string(indices[k]) + " of " +
                         std::to_string(known) + ": left out");
            return false;
        }
    }
    return true;
}

// Strips end at -1; all of one list have one id between them.
void PlyReader::addStrips(const Figure& figure, std::int64_t id, std::uint32_t part, std::size_t begin)
{
    std::vector<std::uint32_t> corners;
    std::vector<std::vector<std::uint32_t>> strips;
    for (std::size_t k = begin; k <= figure.end; ++k) {
        if (k < figure.end && indices[k] != -1) {
            corners.push_back(static_cast<std::uint32_t>(indices[k]));
        } else if (!corners.empty()) {
            strips.push_back(std::move(corners));
            corners.clear();
        }
    }
    polygons.addStrips("strip", id, part, figure.line, strips);
}

void PlyReader::addFigure(const Figure& figure, std::int64_t id, std::size_t begin)
{
    const std::uint32_t part = partOf(figure);
    if (figure.kind == Kind::Strip) {
        addStrips(figure, id, part, begin);
        return;
    }
    std::vector<std::uint32_t> corners;
    for (std::size_t k = begin; k < figure.end; ++k) {
        corners.push_back(static_cast<std::uint32_t>(indices[k]));
    }
    if (figure.kind == Kind::Face) {
        polygons.add("face", id, part, figure.line, corners);
    } else {
        polygons.addLine("edge", id, part, figure.line, corners);
    }
}

void PlyReader::addFigures()
{
    std::size_t begin = 0;
    for (std::size_t k = 0; k < figures.size(); ++k) {
        const std::int64_t id = static_cast<std::int64_t>(k) + 1;
        if (hasVertices(figures[k], id, begin)) {
            addFigure(figures[k], id, begin);
        }
        begin = figures[k].end;
    }
}

Mesh PlyReader::read()
{
    readHeader();
    for (const Element& element : elements) {
        readElement(element);
    }
    addFigures();
    polygons.finish();
    finishMesh(mesh, log);
    return std::move(mesh);
}

} // namespace

bool looksLikePly(const MappedFile& file)
{
    const std::string_view head(file.begin(), std::min<std::size_t>(file.size(), 4096));
    const std::size_t line = head.find('\n');
    return line != std::string_view::npos && trimmed(head.substr(0, line)) == "ply" &&
           head.find("\nformat ") != std::string_view::npos;
}

Mesh readPly(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
{
    return PlyReader(*file, log, std::move(progress)).read();
}

} // namespace kvo
