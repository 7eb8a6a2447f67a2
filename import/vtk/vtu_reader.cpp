// Reading of VTK's XML files. The tags go through expat; what stands between them is looked at in the file itself, so
// that no copy of a large array is made. Raw appended data are no XML: the parser stops before them.
#include "vtk_reader.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <exception>
#include <map>

#include <expat.h>

#include "text/fields.h"
#include "text/token_input.h"
#include "vtk_mesh.h"
#include "vtu_arrays.h"

namespace kvo {

const char* const listVtkArrays = "data arrays not read";

namespace {

constexpr std::size_t headBytes = 4096;
constexpr std::size_t chunkBytes = 1 << 24;
constexpr std::uint64_t mostComponents = 1 << 20;
constexpr std::size_t tailBytes = 4096;
constexpr std::uint64_t mostThings = std::uint64_t(1) << 32; // points or cells of a piece

class Attributes
{
public:
    explicit Attributes(const XML_Char** pairs) : pairs(pairs) {}

    // Without the blanks around it: writers align numbers.
    std::string text(const char* name, const char* otherwise = "") const
    {
        for (const XML_Char** pair = pairs; pair[0]; pair += 2) {
            if (std::string_view(pair[0]) == name) {
                return std::string(trimmed(pair[1]));
            }
        }
        return otherwise;
    }

private:
    const XML_Char** pairs;
};

struct Piece
{
    std::uint32_t line = 0;
    std::map<std::string, std::uint64_t> counts;         // "NumberOfPoints", ...
    std::map<std::string, std::vector<VtuArray>> arrays; // by the element that they stand in
    std::map<std::string, std::string> globalIds;        // names of arrays, by the element that they stand in
};

// The tags of a file.
class VtuXml
{
public:
    VtuXml(const MappedFile& file, const Progress& progress);

    VtuEncoding encoding;
    std::string dataset; // "UnstructuredGrid", ...
    std::vector<Piece> pieces;
    std::vector<VtuArray> fields; // data of the whole file

private:
    static void XMLCALL onStart(void* self, const XML_Char* name, const XML_Char** attributes);
    static void XMLCALL onEnd(void* self, const XML_Char* name);
    static void XMLCALL onComment(void* self, const XML_Char* text);

    void parse(const Progress& progress);
    void start(const std::string& name, const Attributes& attributes);
    void end(const std::string& name);
    void passInArray();
    void startFile(const Attributes& attributes);
    void startPiece(const Attributes& attributes);
    void startArray(const Attributes& attributes, VtuArray& fresh) const;
    void startAppended(const Attributes& attributes);
    const char* tagBegin() const { return file.begin() + XML_GetCurrentByteIndex(parser); }
    const char* tagEnd() const { return tagBegin() + XML_GetCurrentByteCount(parser); }
    std::uint32_t line() const { return static_cast<std::uint32_t>(XML_GetCurrentLineNumber(parser)); }
    std::uint64_t number(const Attributes& attributes, const char* name) const;
    [[noreturn]] void fail(const std::string& message) const { throw ImportError({file.path(), line()}, message); }

    const MappedFile& file;
    XML_Parser parser = nullptr;
    std::vector<std::string> open; // elements, the innermost last
    VtuArray* array = nullptr;     // the one that is open
    bool haveValues = false;       // of that one, with something else behind them
    bool stopped = false;          // before raw data
    std::exception_ptr error;      // must not fly through the parser
};

VtuXml::VtuXml(const MappedFile& file, const Progress& progress) : file(file)
{
    encoding.path = file.path();
    encoding.end = file.end();
    const std::unique_ptr<std::remove_pointer<XML_Parser>::type, void (*)(XML_Parser)> owner(XML_ParserCreate(nullptr),
                                                                                             XML_ParserFree);
    parser = owner.get();
    if (!parser) {
        throw std::bad_alloc();
    }
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, onStart, onEnd);
    XML_SetCommentHandler(parser, onComment);
    parse(progress);
    if (dataset.empty()) {
        throw ImportError({file.path(), 1}, "the file has no <VTKFile>");
    }
}

void VtuXml::parse(const Progress& progress)
{
    for (std::size_t at = 0; !stopped; at += chunkBytes) {
        const std::size_t count = std::min(chunkBytes, file.size() - at);
        const bool last = at + count == file.size();
        const XML_Status status = XML_Parse(parser, file.begin() + at, static_cast<int>(count), last);
        if (error) {
            std::rethrow_exception(error);
        }
        if (status == XML_STATUS_ERROR && !stopped) {
            fail(std::string("damaged or cut off: ") + XML_ErrorString(XML_GetErrorCode(parser)));
        }
        if (progress) {
            progress(at + count, file.size());
        }
        if (last) {
            return;
        }
    }
}

void VtuXml::onStart(void* self, const XML_Char* name, const XML_Char** attributes)
{
    VtuXml& xml = *static_cast<VtuXml*>(self);
    try {
        xml.start(name, Attributes(attributes));
    } catch (...) {
        xml.error = std::current_exception();
        XML_StopParser(xml.parser, XML_FALSE);
    }
}

void VtuXml::onEnd(void* self, const XML_Char* name)
{
    VtuXml& xml = *static_cast<VtuXml*>(self);
    try {
        xml.end(name);
    } catch (...) {
        xml.error = std::current_exception();
        XML_StopParser(xml.parser, XML_FALSE);
    }
}

void XMLCALL VtuXml::onComment(void* self, const XML_Char*)
{
    VtuXml& xml = *static_cast<VtuXml*>(self);
    if (xml.array && !xml.stopped) {
        xml.passInArray();
    }
}

// A comment or an element inside an array, which says something about it: the values stand before all of them or
// behind.
void VtuXml::passInArray()
{
    const bool direct = open.back() == "DataArray" || open.back() == "Array";
    const char* text = std::find_if_not(array->begin, tagBegin(), [](char c) { return endsToken(c); });
    if (direct && !haveValues && text != tagBegin()) {
        array->end = tagBegin();
        haveValues = true;
    }
    if (!haveValues) {
        array->begin = tagEnd();
    }
}

void VtuXml::start(const std::string& name, const Attributes& attributes)
{
    if (array) {
        passInArray();
    }
    const std::string parent = open.empty() ? "" : open.back();
    open.push_back(name);
    if (name == "VTKFile") {
        startFile(attributes);
    } else if (name == "Piece") {
        startPiece(attributes);
    } else if (name == "DataArray" || name == "Array") {
        array = &(parent == "FieldData" || pieces.empty() ? fields : pieces.back().arrays[parent]).emplace_back();
        haveValues = false;
        startArray(attributes, *array);
    } else if ((name == "PointData" || name == "CellData") && !pieces.empty()) {
        pieces.back().globalIds[name] = attributes.text("GlobalIds");
    } else if (name == "AppendedData") {
        startAppended(attributes);
    }
}

void VtuXml::end(const std::string& name)
{
    open.pop_back();
    if (!array) {
        return;
    }
    const bool whole = name == "DataArray" || name == "Array";
    if (!whole && !haveValues) {
        array->begin = tagEnd();
    } else if (whole && !haveValues) {
        array->end = std::max(array->begin, tagBegin()); // both are one tag where the array is empty
    }
    array = whole ? nullptr : array;
}

void VtuXml::startFile(const Attributes& attributes)
{
    dataset = attributes.text("type");
    const std::string order = attributes.text("byte_order", "LittleEndian");
    const std::string header = attributes.text("header_type", "UInt32");
    encoding.compressor = attributes.text("compressor");
    encoding.swapped = order == "BigEndian";
    encoding.headerBytes = header == "UInt64" ? 8 : 4;
    if (order != "BigEndian" && order != "LittleEndian") {
        fail("byte_order \"" + order + "\" is neither LittleEndian nor BigEndian");
    }
    if (header != "UInt64" && header != "UInt32") {
        fail("header_type \"" + header + "\" is neither UInt32 nor UInt64");
    }
    if (dataset != "UnstructuredGrid" && dataset != "PolyData") {
        fail("a VTK file of type \"" + dataset + "\" is not read; known are UnstructuredGrid and PolyData");
    }
}

std::uint64_t VtuXml::number(const Attributes& attributes, const char* name) const
{
    const std::string text = attributes.text(name, "0");
    char* rest = nullptr;
    const unsigned long long value = std::strtoull(text.c_str(), &rest, 10);
    if (text.empty() || !std::isdigit(static_cast<unsigned char>(text[0])) || *rest != '\0') {
        fail(std::string(name) + "=\"" + text + "\" is no number");
    }
    return value;
}

void VtuXml::startPiece(const Attributes& attributes)
{
    Piece& piece = pieces.emplace_back();
    piece.line = line();
    for (const char* name :
         {"NumberOfPoints", "NumberOfCells", "NumberOfVerts", "NumberOfLines", "NumberOfPolys", "NumberOfStrips"}) {
        piece.counts[name] = number(attributes, name);
        if (piece.counts[name] >= mostThings) {
            fail(std::string(name) + "=\"" + attributes.text(name) + "\" is more than can be read");
        }
    }
}

void VtuXml::startArray(const Attributes& attributes, VtuArray& fresh) const
{
    const std::uint64_t components = number(attributes, "NumberOfComponents");
    fresh.name = attributes.text("Name");
    fresh.format = attributes.text("format", "ascii");
    fresh.components = static_cast<int>(std::clamp<std::uint64_t>(components, 1, mostComponents));
    fresh.offset = number(attributes, "offset");
    fresh.known = findNumberType(attributes.text("type"), fresh.number);
    fresh.begin = tagEnd();
    fresh.end = fresh.begin;
    fresh.line = line();
}

void VtuXml::startAppended(const Attributes& attributes)
{
    const std::string kind = attributes.text("encoding", "base64");
    if (kind != "raw" && kind != "base64") {
        fail("encoding \"" + kind + "\" of the appended data is neither raw nor base64");
    }
    encoding.appendedIsBase64 = kind == "base64";
    const char* underscore =
        std::find_if_not(tagEnd(), file.end(), [](char c) { return static_cast<unsigned char>(c) <= ' '; });
    if (underscore == file.end() || *underscore != '_') {
        fail("the appended data do not begin with an underscore");
    }
    encoding.appended = underscore + 1;
    const std::size_t tail = std::min(tailBytes, static_cast<std::size_t>(file.end() - encoding.appended));
    if (std::string_view(file.end() - tail, tail).find("</VTKFile>") == std::string_view::npos) {
        fail("cut off: no </VTKFile> behind the appended data");
    }
    stopped = true;
    XML_StopParser(parser, XML_FALSE);
}

// --- a piece's arrays become points and cells ---

class VtuReader
{
public:
    VtuReader(const VtuXml& xml, ImportLog& log) : xml(xml), log(log), mesh(xml.encoding.path, log) {}

    Mesh read()
    {
        if (xml.pieces.empty()) {
            throw ImportError({xml.encoding.path, 1}, "the file has no <Piece>");
        }
        for (const VtuArray& array : xml.fields) {
            notRead("field array", array);
        }
        for (const Piece& piece : xml.pieces) {
            mesh.add(gridOf(piece));
        }
        return mesh.take();
    }

private:
    VtkPiece gridOf(const Piece& piece);
    void readPoints(const Piece& piece, VtkPiece& grid);
    void readCells(const Piece& piece, VtkPiece& grid);
    void readPolygons(const Piece& piece, VtkPiece& grid);
    void readPointData(const Piece& piece, VtkPiece& grid);
    void readCellData(const Piece& piece, VtkPiece& grid);
    const VtuArray* find(const Piece& piece, const char* element, const char* name) const;
    std::vector<std::int64_t> integers(const Piece& piece, const char* element, const char* name, std::uint64_t most);
    std::vector<std::int64_t> perThing(const VtuArray& array, std::uint64_t things) const;
    void notRead(const char* what, const VtuArray& array);

    const VtuXml& xml;
    ImportLog& log;
    VtkMesh mesh;
};

const std::vector<VtuArray>& arraysOf(const Piece& piece, const std::string& element)
{
    static const std::vector<VtuArray> none;
    const auto found = piece.arrays.find(element);
    return found == piece.arrays.end() ? none : found->second;
}

// How many points the cells have that end there.
std::uint64_t pointsUpTo(const std::vector<std::int64_t>& ends)
{
    return ends.empty() || ends.back() < 0 ? 0 : static_cast<std::uint64_t>(ends.back());
}

const VtuArray* VtuReader::find(const Piece& piece, const char* element, const char* name) const
{
    for (const VtuArray& array : arraysOf(piece, element)) {
        if (array.name == name) {
            return &array;
        }
    }
    return nullptr;
}

std::vector<std::int64_t> VtuReader::integers(const Piece& piece, const char* element, const char* name,
                                              std::uint64_t most)
{
    const VtuArray* array = find(piece, element, name);
    if (!array) {
        throw ImportError({xml.encoding.path, piece.line},
                          std::string("the piece has no array \"") + name + "\" in <" + element + ">");
    }
    return vtuIntegers(*array, xml.encoding, most);
}

std::vector<std::int64_t> VtuReader::perThing(const VtuArray& array, std::uint64_t things) const
{
    return vtuIntegers(array, xml.encoding, things * static_cast<std::uint64_t>(array.components));
}

void VtuReader::notRead(const char* what, const VtuArray& array)
{
    log.count(listVtkArrays, std::string(what) + " " + array.name, 1, {xml.encoding.path, array.line});
}

void VtuReader::readPoints(const Piece& piece, VtkPiece& grid)
{
    const std::uint64_t count = piece.counts.at("NumberOfPoints");
    const std::vector<VtuArray>& arrays = arraysOf(piece, "Points");
    if (arrays.empty() && count > 0) {
        throw ImportError({xml.encoding.path, piece.line}, "the piece has no array in <Points>");
    }
    if (!arrays.empty()) {
        grid.points = vtuReals(arrays.front(), xml.encoding, 3 * count);
    }
    if (grid.points.size() != 3 * count) {
        throw ImportError({xml.encoding.path, arrays.empty() ? piece.line : arrays.front().line},
                          std::to_string(count) + " points announced, " + std::to_string(grid.points.size()) +
                              " coordinates are there");
    }
}

void VtuReader::readCells(const Piece& piece, VtkPiece& grid)
{
    const std::uint64_t count = piece.counts.at("NumberOfCells");
    if (count == 0) {
        return;
    }
    grid.ends = integers(piece, "Cells", "offsets", count);
    grid.types = integers(piece, "Cells", "types", count);
    if (grid.ends.size() != count || grid.types.size() != count) {
        throw ImportError({xml.encoding.path, piece.line}, std::to_string(count) + " cells announced, " +
                                                               std::to_string(grid.ends.size()) + " offsets and " +
                                                               std::to_string(grid.types.size()) + " types are there");
    }
    grid.connectivity = integers(piece, "Cells", "connectivity", pointsUpTo(grid.ends));
}

// Cell data come in this order.
void VtuReader::readPolygons(const Piece& piece, VtkPiece& grid)
{
    static const struct
    {
        const char* element;
        const char* count;
        std::int64_t type;
    } rows[] = {{"Verts", "NumberOfVerts", 2},
                {"Lines", "NumberOfLines", 4},
                {"Polys", "NumberOfPolys", 7},
                {"Strips", "NumberOfStrips", 6}};
    for (const auto& row : rows) {
        const std::uint64_t count = piece.counts.at(row.count);
        if (count == 0) {
            continue;
        }
        const std::int64_t base = static_cast<std::int64_t>(grid.connectivity.size());
        const std::vector<std::int64_t> ends = integers(piece, row.element, "offsets", count);
        if (ends.size() != count) {
            throw ImportError({xml.encoding.path, piece.line}, std::string(row.count) + " is " + std::to_string(count) +
                                                                   ", " + std::to_string(ends.size()) +
                                                                   " offsets are there");
        }
        const std::vector<std::int64_t> connectivity = integers(piece, row.element, "connectivity", pointsUpTo(ends));
        grid.connectivity.insert(grid.connectivity.end(), connectivity.begin(), connectivity.end());
        for (const std::int64_t end : ends) {
            const bool fits = end >= 0 && end <= static_cast<std::int64_t>(connectivity.size());
            grid.ends.push_back(fits ? base + end : -1); // refused as a whole
            grid.types.push_back(row.type);
        }
    }
}

void VtuReader::readPointData(const Piece& piece, VtkPiece& grid)
{
    const auto global = piece.globalIds.find("PointData");
    for (const VtuArray& array : arraysOf(piece, "PointData")) {
        const bool marked = global != piece.globalIds.end() && !array.name.empty() && array.name == global->second;
        const bool numbers = array.known && isInteger(array.number) && array.components == 1;
        if (numbers && (marked || useOfPointArray(array.name, array.components) == VtkUse::Ids)) {
            grid.pointIds = perThing(array, grid.pointCount());
        } else {
            notRead("point array", array);
        }
    }
}

void VtuReader::readCellData(const Piece& piece, VtkPiece& grid)
{
    const auto global = piece.globalIds.find("CellData");
    const VtuArray* block = nullptr;
    VtkUse best = VtkUse::None;
    for (const VtuArray& array : arraysOf(piece, "CellData")) {
        const bool marked = global != piece.globalIds.end() && !array.name.empty() && array.name == global->second;
        const bool numbers = array.known && isInteger(array.number) && array.components == 1;
        const VtkUse use = !numbers ? VtkUse::None
                           : marked ? VtkUse::Ids
                                    : useOfCellArray(array.name, array.components, isInteger(array.number));
        if (use == VtkUse::Ids) {
            grid.cellIds = perThing(array, grid.cellCount());
        } else if (use == VtkUse::Ghosts) {
            grid.ghosts = perThing(array, grid.cellCount());
        } else if (use < best) {
            if (block) {
                notRead("cell array", *block);
            }
            block = &array;
            best = use;
        } else {
            notRead("cell array", array);
        }
    }
    if (block) {
        grid.blocks = perThing(*block, grid.cellCount());
        grid.blockName = block->name;
    }
}

VtkPiece VtuReader::gridOf(const Piece& piece)
{
    VtkPiece grid;
    grid.line = piece.line;
    readPoints(piece, grid);
    if (xml.dataset == "PolyData") {
        readPolygons(piece, grid);
    } else {
        readCells(piece, grid);
    }
    readPointData(piece, grid);
    readCellData(piece, grid);
    return grid;
}

} // namespace

bool looksLikeVtu(const MappedFile& file)
{
    std::string_view head(file.begin(), std::min(file.size(), headBytes));
    head.remove_prefix(std::min(head.find_first_not_of(" \t\r\n"), head.size()));
    return head.substr(0, 1) == "<" && head.find("<VTKFile") != std::string_view::npos;
}

Mesh readVtu(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
{
    const VtuXml xml(*file, progress);
    return VtuReader(xml, log).read();
}

} // namespace kvo
