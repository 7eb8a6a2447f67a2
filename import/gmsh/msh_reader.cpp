// Reading of .msh files: the sections.
#include "msh_reader.h"

#include <algorithm>
#include <sstream>

#include "mesh_finish.h"
#include "msh_elements.h"
#include "msh_groups.h"
#include "msh_input.h"
#include "text/fields.h"

namespace kvo {

const char* const warnMshType = "element types that are not known";
const char* const listMshCopies = "copies of elements for further physical groups";

namespace {

constexpr std::size_t headBytes = 65536;
constexpr std::int64_t reportEvery = 65536;
constexpr std::uint32_t swappedOne = 0x01000000;

enum class Version
{
    None,
    One,
    Two,
    FourZero,
    FourOne
};

class MshReader
{
public:
    MshReader(const MappedFile& file, ImportLog& log, Progress progress)
        : log(log), input(file, std::move(progress)), groups(mesh), elements(mesh, input, groups, log)
    {
        mesh.sourceFiles.push_back(file.path());
        mesh.files.emplace_back();
    }

    Mesh read();

private:
    struct Section
    {
        const char* name;
        void (MshReader::*read)();
    };
    static const Section sections[];

    void readSection(const std::string& name);
    void readFormat();
    void readNames();
    void readEntities();
    void readPartitions();
    void readEntity(int dim, bool partition);
    void readNodes();
    void readNodes1();
    void readNodes2(bool parametric);
    void readParametricNodes() { readNodes2(true); }
    void readNodes4();
    void readNodeBlock40();
    void readNodeBlock41();
    void readPoint(std::int64_t id);
    void skipPlace2();
    void skipParameters(std::int64_t dim, std::int64_t parametric);
    void readElements();

    bool isFourOne() const { return version == Version::FourOne; }
    MeshFile& nodes() { return mesh.files.front(); }

    Mesh mesh;
    ImportLog& log;
    MshInput input;
    MshGroups groups;
    MshElements elements;
    Version version = Version::None;
    bool haveNodes = false;
    bool haveElements = false;
};

const MshReader::Section MshReader::sections[] = {
    {"MeshFormat", &MshReader::readFormat}, {"PhysicalNames", &MshReader::readNames},
    {"Entities", &MshReader::readEntities}, {"PartitionedEntities", &MshReader::readPartitions},
    {"Nodes", &MshReader::readNodes},       {"ParametricNodes", &MshReader::readParametricNodes},
    {"NOD", &MshReader::readNodes1},        {"Elements", &MshReader::readElements},
    {"ELM", &MshReader::readElements},
};

// --- header ---

void MshReader::readFormat()
{
    const double number = input.textReal();
    const std::int64_t fileType = input.textInteger();
    const std::int64_t sizeBytes = input.textInteger();
    version = number >= 4.05 ? Version::FourOne : number >= 4.0 ? Version::FourZero : Version::Two;
    if (number < 2.0 || number >= 5.0 || (number >= 3.0 && number < 4.0)) {
        input.fail("version " + std::to_string(number).substr(0, 3) + " is not known; known are 1, 2, 4.0 and 4.1");
    }
    if (fileType != 0 && fileType != 1) {
        input.fail("file type " + std::to_string(fileType) + " is neither 0 (text) nor 1 (binary)");
    }
    if (fileType == 1 && sizeBytes != 4 && sizeBytes != 8) {
        input.fail("a data size of " + std::to_string(sizeBytes) + " bytes is neither 4 nor 8");
    }
    input.skipLine();
    if (fileType == 1) {
        const int sizes = version == Version::FourOne ? static_cast<int>(sizeBytes) : 8;
        input.setLayout(false, sizes);
        const std::uint32_t word = input.bytes<std::uint32_t>();
        if (word != 1 && word != swappedOne) {
            input.fail("the number that tells the order of bytes is not 1");
        }
        input.setLayout(word != 1, sizes);
    }
}

// DIMENSION NUMBER "NAME"; the first files of version 2 have no dimension.
void MshReader::readNames()
{
    const std::int64_t count = input.countOf(input.textInteger(), 4, "names");
    input.skipLine();
    for (std::int64_t k = 0; k < count; ++k) {
        input.skipBlanks();
        const Place place = input.place();
        const std::string_view line = input.lineText();
        const std::size_t open = line.find('"');
        const std::size_t close = line.rfind('"');
        if (open == std::string_view::npos || close == open) {
            throw ImportError(place, "a physical group's name stands in quotation marks");
        }
        const std::string name(line.substr(open + 1, close - open - 1));
        std::istringstream numbers(std::string(line.substr(0, open)));
        MshGroups::Key group = {MshGroups::anyDim, 0};
        if (!(numbers >> group.second)) {
            throw ImportError(place, "a physical group has a number");
        }
        std::int64_t second = 0;
        if (numbers >> second) {
            group = {static_cast<int>(group.second), second};
        }
        groups.setName(group, name);
    }
}

// --- entities of version 4 ---

void MshReader::readEntities()
{
    std::int64_t counts[4];
    for (std::int64_t& count : counts) {
        count = input.countOf(input.size(), 4, "entities");
    }
    for (int dim = 0; dim < 4; ++dim) {
        for (std::int64_t k = 0; k < counts[dim]; ++k) {
            readEntity(dim, false);
        }
    }
}

void MshReader::readPartitions()
{
    input.size(); // partitions
    input.skipValues(2 * input.countOf(input.size(), 4, "ghost entities"), 0);
    std::int64_t counts[4];
    for (std::int64_t& count : counts) {
        count = input.countOf(input.size(), 4, "entities");
    }
    for (int dim = 0; dim < 4; ++dim) {
        for (std::int64_t k = 0; k < counts[dim]; ++k) {
            readEntity(dim, true);
        }
    }
}

void MshReader::readEntity(int dim, bool partition)
{
    const std::int64_t tag = input.integer();
    MshGroups::Key parent = {MshGroups::anyDim, 0};
    if (partition) {
        parent.first = static_cast<int>(input.integer());
        parent.second = input.integer();
        input.skipValues(input.countOf(input.size(), 2, "partitions"), 0);
    }
    input.skipValues(0, dim == 0 && isFourOne() ? 3 : 6); // the point, or the box around it
    std::vector<std::int64_t> in(static_cast<std::size_t>(input.countOf(input.size(), 2, "physical groups")));
    for (std::int64_t& group : in) {
        group = input.integer();
    }
    if (dim > 0) {
        input.skipValues(input.countOf(input.size(), 2, "bounding entities"), 0);
    }
    if (partition) {
        groups.addPartition({dim, tag}, parent, std::move(in));
    } else {
        groups.addEntity({dim, tag}, std::move(in));
    }
}

// --- nodes ---

void MshReader::readPoint(std::int64_t id)
{
    const double x = input.real();
    const std::uint32_t line = input.line();
    const double y = input.real();
    const double z = input.real();
    nodes().addNode(id, x, y, z, 0, line);
}

void MshReader::readNodes1()
{
    version = Version::One;
    readNodes2(false);
}

void MshReader::readNodes()
{
    if (version == Version::FourZero || isFourOne()) {
        readNodes4();
    } else {
        readNodes2(false);
    }
}

void MshReader::readNodes2(bool parametric)
{
    haveNodes = true;
    const std::int64_t count = input.countOf(input.textInteger(), input.isBinary() ? 28 : 8, "nodes");
    if (input.isBinary()) {
        input.skipLine();
    }
    nodes().nodeIds.reserve(static_cast<std::size_t>(count));
    nodes().xyz.reserve(3 * static_cast<std::size_t>(count));
    for (std::int64_t k = 0; k < count; ++k) {
        readPoint(input.integer());
        if (parametric) {
            skipPlace2();
        }
        if (k % reportEvery == 0) {
            input.report();
        }
    }
}

// Behind the coordinates: dimension and tag of an entity; the coordinates on it if that is a curve or surface.
void MshReader::skipPlace2()
{
    if (!input.isBinary()) {
        input.skipLine();
        return;
    }
    const std::int64_t dim = input.integer();
    input.integer();
    input.skipValues(0, dim == 1 || dim == 2 ? dim : 0);
}

void MshReader::readNodes4()
{
    haveNodes = true;
    std::int64_t blocks = input.countOf(input.size(), input.isBinary() ? 16 : 8, "blocks of nodes");
    const std::int64_t count = input.countOf(input.size(), input.isBinary() ? 24 : 6, "nodes");
    if (isFourOne()) {
        input.size(); // lowest and highest id
        input.size();
    }
    nodes().nodeIds.reserve(static_cast<std::size_t>(count));
    nodes().xyz.reserve(3 * static_cast<std::size_t>(count));
    for (; blocks > 0; --blocks) {
        isFourOne() ? readNodeBlock41() : readNodeBlock40();
        input.report();
    }
}

// Behind the coordinates: those on the curve or surface.
void MshReader::skipParameters(std::int64_t dim, std::int64_t parametric)
{
    if (parametric == 0) {
        return;
    }
    if (input.isBinary()) {
        input.skipValues(0, std::clamp<std::int64_t>(dim, 0, 3));
    } else {
        input.skipLine();
    }
}

void MshReader::readNodeBlock40()
{
    input.integer(); // tag
    const std::int64_t dim = input.integer();
    const std::int64_t parametric = input.integer();
    const std::int64_t count = input.countOf(input.size(), input.isBinary() ? 28 : 8, "nodes");
    for (std::int64_t k = 0; k < count; ++k) {
        readPoint(input.integer());
        skipParameters(dim, parametric);
    }
}

// First all ids, then all coordinates.
void MshReader::readNodeBlock41()
{
    const std::int64_t dim = input.integer();
    input.integer(); // tag
    const std::int64_t parametric = input.integer();
    const std::int64_t count = input.countOf(input.size(), input.isBinary() ? 28 : 8, "nodes");
    std::vector<std::int64_t> ids(static_cast<std::size_t>(count));
    for (std::int64_t& id : ids) {
        id = input.size();
    }
    for (const std::int64_t id : ids) {
        readPoint(id);
        skipParameters(dim, parametric);
    }
}

void MshReader::readElements()
{
    haveElements = true;
    switch (version) {
    case Version::One:
        elements.readVersion1();
        break;
    case Version::FourZero:
        elements.readVersion40();
        break;
    case Version::FourOne:
        elements.readVersion41();
        break;
    default:
        elements.readVersion2();
    }
}

// --- all of it ---

void MshReader::readSection(const std::string& name)
{
    if (name.rfind("End", 0) == 0) {
        input.fail("$" + name + " ends no section");
    }
    for (const Section& section : sections) {
        if (name != section.name) {
            continue;
        }
        if (version == Version::None && name != "MeshFormat" && name != "NOD" && name != "PhysicalNames") {
            input.fail("section $" + name + " before $MeshFormat");
        }
        (this->*section.read)();
        if (log.warningCount(warnMshType) != 0 && input.isBinary() && name == "Elements") {
            input.skipSection(name); // the rest of it could not be read
        } else {
            input.expectEnd(name);
        }
        return;
    }
    if (name != "Comments") {
        log.count(listKeywordsNotRead, "$" + name, 1, input.place());
    }
    input.skipSection(name);
}

Mesh MshReader::read()
{
    std::string name;
    while (input.nextSection(name)) {
        readSection(name);
        input.report();
    }
    if (!haveNodes) {
        input.fail("no nodes: the file has no section $Nodes");
    }
    if (!haveElements) {
        log.warn("sections that are missing", input.place(), "the file has no section $Elements");
    }
    elements.finish();
    groups.finish();
    finishMesh(mesh, log);
    return std::move(mesh);
}

} // namespace

bool looksLikeMsh(const MappedFile& file)
{
    std::string_view head(file.begin(), std::min(file.size(), headBytes));
    head.remove_prefix(std::min(head.find_first_not_of(" \t\r\n"), head.size()));
    const std::string_view first = trimmed(head.substr(0, head.find('\n')));
    if (first == "$MeshFormat" || first == "$NOD") {
        return true;
    }
    return (first == "$Comments" || first == "$PhysicalNames") && head.find("\n$MeshFormat") != std::string_view::npos;
}

Mesh readMsh(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
{
    return MshReader(*file, log, std::move(progress)).read();
}

} // namespace kvo
