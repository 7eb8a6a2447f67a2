// Reading of VTK's legacy files. Values are text or bytes of the order that this machine's is mostly not (big-endian).
// Keywords stand at the beginnings of lines and say how many values follow.
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <iterator>

#include "text/fields.h"
#include "text/number_type.h"
#include "text/token_input.h"
#include "vtk_mesh.h"
#include "vtk_reader.h"

namespace kvo {

namespace {

constexpr const char* signature = "# vtk DataFile Version";
constexpr std::int64_t mostComponents = 1 << 20;

class VtkLegacy
{
public:
    VtkLegacy(const MappedFile& file, ImportLog& log, Progress progress)
        : log(log), input(file, std::move(progress)), mesh(file.path(), log)
    {
    }

    Mesh read();

private:
    struct Keyword
    {
        const char* name;
        void (VtkLegacy::*read)();
    };
    static const Keyword keywords[];

    void readHead();
    void readKeyword(const std::string& name);
    void readDataset();
    void readPoints();
    void readCells();
    void readCellTypes();
    void readVertices() { readPolygons(2); }
    void readLines() { readPolygons(4); }
    void readPolys() { readPolygons(7); }
    void readStrips() { readPolygons(6); }
    void readPolygons(std::int64_t type);
    void sortPolygons();
    void readCellLists(std::int64_t count, std::int64_t size);
    void readOffsets(std::int64_t count, std::int64_t size);
    std::vector<std::int64_t> readNamedIntegers(const char* name, std::int64_t count);

    void beginPointData();
    void beginCellData();
    void readScalars();
    void readColors();
    void readTable();
    void readVectors() { readAttribute(3); }
    void readTensors() { readAttribute(9); }
    void readTensors6() { readAttribute(6); }
    void readTextures();
    void readIds();
    void readPedigree() { readAttribute(1); }
    void readAttribute(int components);
    void readField();
    void skipMetadata();

    void readArray(const std::string& name, const std::string& type, std::int64_t components, std::int64_t tuples,
                   bool globalIds);
    bool keep(const std::string& name, std::int64_t components, bool integers, bool globalIds, VtkUse& use) const;
    void store(VtkUse use, const std::string& name, std::vector<std::int64_t> values);
    void skipValues(const std::string& type, std::int64_t count);
    template <class Out> std::vector<Out> readValues(const std::string& type, std::int64_t count);

    std::string name();
    std::int64_t count(const char* things) { return input.countOf(input.textInteger(), 1, things); }
    // A section of data may have no array, and nothing behind it then.
    std::int64_t dataCount(const char* things)
    {
        const std::int64_t announced = input.textInteger();
        if (announced < 0) {
            input.fail(std::to_string(announced) + " " + things + " announced");
        }
        return announced;
    }
    // The bytes begin behind the line end.
    void beginValues()
    {
        if (binary) {
            input.skipLine();
        }
    }

    ImportLog& log;
    TokenInput input;
    VtkMesh mesh;
    VtkPiece grid;
    bool binary = false;
    bool haveDataset = false;
    bool polygons = false; // is it POLYDATA
    bool haveCells = false;
    enum class Data
    {
        None,
        Points,
        Cells
    } data = Data::None;
    std::int64_t tuples = 0; // of the data that are being read
    VtkUse bestBlock = VtkUse::None;
};

const VtkLegacy::Keyword VtkLegacy::keywords[] = {
    {"DATASET", &VtkLegacy::readDataset},       {"POINTS", &VtkLegacy::readPoints},
    {"CELLS", &VtkLegacy::readCells},           {"CELL_TYPES", &VtkLegacy::readCellTypes},
    {"VERTICES", &VtkLegacy::readVertices},     {"LINES", &VtkLegacy::readLines},
    {"POLYGONS", &VtkLegacy::readPolys},        {"TRIANGLE_STRIPS", &VtkLegacy::readStrips},
    {"POINT_DATA", &VtkLegacy::beginPointData}, {"CELL_DATA", &VtkLegacy::beginCellData},
    {"SCALARS", &VtkLegacy::readScalars},       {"COLOR_SCALARS", &VtkLegacy::readColors},
    {"LOOKUP_TABLE", &VtkLegacy::readTable},    {"VECTORS", &VtkLegacy::readVectors},
    {"NORMALS", &VtkLegacy::readVectors},       {"TENSORS", &VtkLegacy::readTensors},
    {"TENSORS6", &VtkLegacy::readTensors6},     {"TEXTURE_COORDINATES", &VtkLegacy::readTextures},
    {"GLOBAL_IDS", &VtkLegacy::readIds},        {"PEDIGREE_IDS", &VtkLegacy::readPedigree},
    {"FIELD", &VtkLegacy::readField},           {"METADATA", &VtkLegacy::skipMetadata},
};

// --- head ---

void VtkLegacy::readHead()
{
    input.skipLine(); // the signature
    const std::string title(input.lineText());
    if (!title.empty()) {
        mesh.addFact("title", title);
    }
    const std::string encoding(input.word());
    binary = equalsIgnoringCase(encoding, "BINARY");
    if (!binary && !equalsIgnoringCase(encoding, "ASCII")) {
        input.fail("\"" + encoding.substr(0, 40) + "\" is neither ASCII nor BINARY");
    }
    if (binary) {
        input.setBinary(true);
    }
}

void VtkLegacy::readDataset()
{
    const std::string kind(input.word());
    if (!equalsIgnoringCase(kind, "UNSTRUCTURED_GRID") && !equalsIgnoringCase(kind, "POLYDATA")) {
        input.fail("a dataset of kind \"" + kind.substr(0, 40) +
                   "\" is not read; known are UNSTRUCTURED_GRID and POLYDATA");
    }
    haveDataset = true;
    polygons = equalsIgnoringCase(kind, "POLYDATA");
}

// Names have their blanks and the like as %20.
std::string VtkLegacy::name()
{
    const std::string coded(input.word());
    std::string plain;
    for (std::size_t k = 0; k < coded.size(); ++k) {
        const bool escape = coded[k] == '%' && k + 2 < coded.size() &&
                            std::isxdigit(static_cast<unsigned char>(coded[k + 1])) &&
                            std::isxdigit(static_cast<unsigned char>(coded[k + 2]));
        plain += escape ? static_cast<char>(std::stoi(coded.substr(k + 1, 2), nullptr, 16)) : coded[k];
        k += escape ? 2 : 0;
    }
    return plain;
}

// --- values ---

template <class Out> Out textValue(TokenInput& input);
template <> double textValue<double>(TokenInput& input)
{
    return input.textReal();
}
template <> std::int64_t textValue<std::int64_t>(TokenInput& input)
{
    return input.textInteger();
}

template <class Out> std::vector<Out> VtkLegacy::readValues(const std::string& type, std::int64_t count)
{
    NumberType number = NumberType::Float64;
    if (!findNumberType(type, number)) {
        input.fail("values of type \"" + type.substr(0, 40) + "\" are not known");
    }
    beginValues();
    std::vector<Out> values;
    input.countOf(count, binary ? bytesOf(number) : 1, "values");
    values.reserve(static_cast<std::size_t>(count));
    if (binary) {
        const std::size_t total = static_cast<std::size_t>(count);
        appendNumbers(number, input.take(total * bytesOf(number)), total, true, values);
    } else {
        for (std::int64_t k = 0; k < count; ++k) {
            values.push_back(textValue<Out>(input));
        }
    }
    input.report();
    return values;
}

// Also what cannot be read: bits, strings.
void VtkLegacy::skipValues(const std::string& type, std::int64_t count)
{
    NumberType number = NumberType::Float64;
    const bool known = findNumberType(type, number);
    const bool strings = equalsIgnoringCase(type, "string") || equalsIgnoringCase(type, "utf8_string");
    if (!known && !strings && !equalsIgnoringCase(type, "bit")) {
        input.fail("values of type \"" + type.substr(0, 40) + "\" are not known");
    }
    if (strings && binary) {
        input.fail("strings as bytes are not known");
    }
    beginValues();
    if (binary) {
        input.countOf(count, known ? bytesOf(number) : 1, "values");
        input.take(known ? static_cast<std::size_t>(count) * bytesOf(number)
                         : static_cast<std::size_t>((count + 7) / 8));
        return;
    }
    input.countOf(count, 1, "values");
    if (strings) {
        input.skipLine();
    }
    for (std::int64_t k = 0; k < count; ++k) {
        if (strings) {
            input.skipLine();
        } else if (input.word().empty()) {
            input.failToken("a value");
        }
    }
}

// --- points and cells ---

void VtkLegacy::readPoints()
{
    const std::int64_t points = count("points");
    const std::string type(input.word());
    input.countOf(points, binary ? 3 : 6, "points");
    grid.points = readValues<double>(type, 3 * points);
}

// Per cell the count of its points, then its points.
void VtkLegacy::readCellLists(std::int64_t cells, std::int64_t size)
{
    if (size < cells) {
        input.fail(std::to_string(cells) + " cells in " + std::to_string(size) + " values");
    }
    beginValues();
    input.countOf(size, binary ? 4 : 1, "values");
    grid.ends.reserve(grid.ends.size() + static_cast<std::size_t>(cells));
    grid.connectivity.reserve(grid.connectivity.size() + static_cast<std::size_t>(size - cells));
    const auto next = [&] { return binary ? input.bytes<std::int32_t>() : input.textInteger(); };
    std::int64_t left = size;
    for (std::int64_t cell = 0; cell < cells; ++cell) {
        const std::int64_t points = next();
        if (points < 0 || points > left - 1) {
            input.fail("a cell of " + std::to_string(points) + " points; the cells' values are " +
                       std::to_string(size));
        }
        grid.lines.push_back(input.line());
        for (std::int64_t k = 0; k < points; ++k) {
            grid.connectivity.push_back(next());
        }
        grid.ends.push_back(static_cast<std::int64_t>(grid.connectivity.size()));
        left -= points + 1;
    }
    if (left != 0) {
        input.fail(std::to_string(size) + " values announced for the cells, which have " + std::to_string(size - left));
    }
}

std::vector<std::int64_t> VtkLegacy::readNamedIntegers(const char* wanted, std::int64_t count)
{
    const std::string found(input.word());
    if (!equalsIgnoringCase(found, wanted)) {
        input.fail("expected " + std::string(wanted) + ", found \"" + found.substr(0, 40) + "\"");
    }
    return readValues<std::int64_t>(std::string(input.word()), count);
}

// Version 5: where each cell begins, and one more; then the points of all.
void VtkLegacy::readOffsets(std::int64_t count, std::int64_t size)
{
    const std::uint32_t line = input.line();
    const std::vector<std::int64_t> offsets = readNamedIntegers("OFFSETS", count);
    const std::vector<std::int64_t> points = readNamedIntegers("CONNECTIVITY", size);
    const std::int64_t base = static_cast<std::int64_t>(grid.connectivity.size());
    grid.connectivity.insert(grid.connectivity.end(), points.begin(), points.end());
    for (std::size_t k = 1; k < offsets.size(); ++k) {
        if (offsets[k] < offsets[k - 1] || offsets[k - 1] < 0 || offsets[k] > size) {
            input.fail("the cells' offsets do not fit the " + std::to_string(size) + " points that the cells have");
        }
        grid.ends.push_back(base + offsets[k]);
        grid.lines.push_back(line);
    }
}

void VtkLegacy::readCells()
{
    haveCells = true;
    const std::int64_t first = count("cells");
    const std::int64_t size = count("values");
    // What follows tells the version better than the first line of the file, which some writers do not mean.
    TokenInput ahead = input;
    if (equalsIgnoringCase(ahead.word(), "OFFSETS")) {
        readOffsets(first, size);
    } else {
        readCellLists(first, size);
    }
}

void VtkLegacy::readCellTypes()
{
    const std::int64_t cells = count("cell types");
    grid.types = readValues<std::int64_t>("int", cells);
}

void VtkLegacy::readPolygons(std::int64_t type)
{
    readCells();
    grid.types.resize(grid.ends.size(), type);
}

// Data of cells are for vertices, lines, polygons and strips one after the other, whichever of them the file has first.
void VtkLegacy::sortPolygons()
{
    static const std::int64_t order[] = {2, 4, 7, 6};
    const auto rank = [](std::int64_t type) { return std::find(std::begin(order), std::end(order), type); };
    if (std::is_sorted(grid.types.begin(), grid.types.end(),
                       [&](std::int64_t a, std::int64_t b) { return rank(a) < rank(b); })) {
        return;
    }
    VtkPiece sorted;
    for (const std::int64_t type : order) {
        std::int64_t begin = 0;
        for (std::size_t k = 0; k < grid.types.size(); begin = grid.ends[k], ++k) {
            if (grid.types[k] == type) {
                sorted.connectivity.insert(sorted.connectivity.end(), grid.connectivity.begin() + begin,
                                           grid.connectivity.begin() + grid.ends[k]);
                sorted.ends.push_back(static_cast<std::int64_t>(sorted.connectivity.size()));
                sorted.types.push_back(type);
                sorted.lines.push_back(grid.lines[k]);
            }
        }
    }
    grid.connectivity = std::move(sorted.connectivity);
    grid.ends = std::move(sorted.ends);
    grid.types = std::move(sorted.types);
    grid.lines = std::move(sorted.lines);
}

// --- data ---

void VtkLegacy::beginPointData()
{
    tuples = dataCount("point data");
    data = Data::Points;
}

void VtkLegacy::beginCellData()
{
    tuples = dataCount("cell data");
    data = Data::Cells;
}

bool VtkLegacy::keep(const std::string& name, std::int64_t components, bool integers, bool globalIds, VtkUse& use) const
{
    use = VtkUse::None;
    if (data == Data::Points) {
        use = globalIds ? VtkUse::Ids : useOfPointArray(name, static_cast<int>(components));
    } else if (data == Data::Cells) {
        use = globalIds ? VtkUse::Ids : useOfCellArray(name, static_cast<int>(components), integers);
    }
    return use != VtkUse::None && integers && components == 1 && (use < VtkUse::FirstBlock || use < bestBlock);
}

void VtkLegacy::store(VtkUse use, const std::string& name, std::vector<std::int64_t> values)
{
    if (data == Data::Points) {
        grid.pointIds = std::move(values);
    } else if (use == VtkUse::Ids) {
        grid.cellIds = std::move(values);
    } else if (use == VtkUse::Ghosts) {
        grid.ghosts = std::move(values);
    } else {
        if (!grid.blocks.empty()) {
            log.count(listVtkArrays, "cell array " + grid.blockName, 1, input.place());
        }
        grid.blocks = std::move(values);
        grid.blockName = name;
        bestBlock = use;
    }
}

void VtkLegacy::readArray(const std::string& name, const std::string& type, std::int64_t components, std::int64_t count,
                          bool globalIds)
{
    NumberType number = NumberType::Float64;
    VtkUse use = VtkUse::None;
    if (components < 0 || components > mostComponents) {
        input.fail("an array of " + std::to_string(components) + " components");
    }
    input.countOf(count, 1, "values");
    const bool integers = findNumberType(type, number) && isInteger(number);
    if (keep(name, components, integers, globalIds, use)) {
        store(use, name, readValues<std::int64_t>(type, count));
        return;
    }
    const char* of = data == Data::Points ? "point array " : data == Data::Cells ? "cell array " : "field array ";
    log.count(listVtkArrays, of + name, 1, input.place());
    skipValues(type, components * count);
}

// NAME TYPE [COMPONENTS], then the line LOOKUP_TABLE NAME, which some writers leave out.
void VtkLegacy::readScalars()
{
    const std::string array = name();
    const std::string type(input.word());
    std::int64_t components = 1;
    TokenInput ahead = input;
    const std::string_view rest = ahead.lineText();
    if (!rest.empty() && isTextDigit(rest[0])) {
        components = std::atoi(std::string(input.word()).c_str());
    }
    ahead = input;
    if (equalsIgnoringCase(ahead.word(), "LOOKUP_TABLE")) {
        ahead.word();
        input = ahead;
    }
    readArray(array, type, components, tuples, false);
}

void VtkLegacy::readColors()
{
    const std::string array = name();
    const std::int64_t components = input.textInteger();
    readArray(array, binary ? "unsigned_char" : "float", components, tuples, false);
}

// A table of colours: four values each.
void VtkLegacy::readTable()
{
    name();
    const std::int64_t colors = count("colours");
    skipValues(binary ? "unsigned_char" : "float", 4 * colors);
}

void VtkLegacy::readAttribute(int components)
{
    const std::string array = name();
    readArray(array, std::string(input.word()), components, tuples, false);
}

void VtkLegacy::readTextures()
{
    const std::string array = name();
    const std::int64_t components = input.textInteger();
    readArray(array, std::string(input.word()), components, tuples, false);
}

void VtkLegacy::readIds()
{
    const std::string array = name();
    readArray(array, std::string(input.word()), 1, tuples, true);
}

void VtkLegacy::readField()
{
    name();
    const std::int64_t arrays = count("arrays");
    for (std::int64_t k = 0; k < arrays; ++k) {
        const std::string array = name();
        if (array == "METADATA") {
            skipMetadata();
            --k;
            continue;
        }
        const std::int64_t components = input.textInteger();
        const std::int64_t of = input.textInteger();
        readArray(array, std::string(input.word()), components, of, false);
    }
}

// Up to an empty line.
void VtkLegacy::skipMetadata()
{
    input.skipLine();
    while (input.bytesLeft() > 0 && !input.lineText().empty()) {
    }
}

// --- all of it ---

void VtkLegacy::readKeyword(const std::string& name)
{
    for (const Keyword& keyword : keywords) {
        if (equalsIgnoringCase(name, keyword.name)) {
            if (!haveDataset && !equalsIgnoringCase(name, "DATASET") && !equalsIgnoringCase(name, "FIELD")) {
                input.fail(name + " before DATASET");
            }
            (this->*keyword.read)();
            return;
        }
    }
    input.fail("not a keyword of VTK's legacy files: \"" + name.substr(0, 40) + "\"");
}

Mesh VtkLegacy::read()
{
    readHead();
    while (true) {
        const std::string keyword(input.word());
        if (keyword.empty()) {
            break;
        }
        readKeyword(keyword);
    }
    if (!haveDataset) {
        input.fail("cut off: no DATASET");
    }
    if (!haveCells) {
        input.fail("the file has no cells, or is cut off");
    }
    if (grid.types.size() != grid.ends.size()) {
        input.fail(std::to_string(grid.types.size()) + " cell types for " + std::to_string(grid.ends.size()) +
                   " cells");
    }
    if (polygons) {
        sortPolygons();
    }
    grid.line = input.line();
    mesh.add(std::move(grid));
    return mesh.take();
}

} // namespace

bool looksLikeVtk(const MappedFile& file)
{
    const std::string_view head(file.begin(), std::min<std::size_t>(file.size(), 64));
    return startsWithIgnoringCase(head, signature);
}

Mesh readVtk(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
{
    return VtkLegacy(*file, log, std::move(progress)).read();
}

} // namespace kvo
