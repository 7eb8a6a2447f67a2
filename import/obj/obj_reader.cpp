// Reading of OBJ files: the statements in a first step, in which faces may name vertices that come later; then the
// faces become elements.
#include "obj_reader.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

#include "mesh_finish.h"
#include "polygon.h"
#include "text/deck_lines.h"
#include "text/fields.h"
#include "text/numbers.h"

namespace kvo {

namespace {

constexpr std::size_t headBytes = 65536;

// Statements of the format, those that are read and all others.
const char* const statements[] = {
    "v",     "vt",    "vn",       "vp",       "f",          "fo",        "l",      "p",     "o",    "g",
    "s",     "mg",    "mtllib",   "usemtl",   "maplib",     "usemap",    "cstype", "deg",   "bmat", "step",
    "curv",  "curv2", "surf",     "parm",     "trim",       "hole",      "scrv",   "sp",    "end",  "con",
    "bevel", "lod",   "c_interp", "d_interp", "shadow_obj", "trace_obj", "ctech",  "stech", "call", "csh"};

bool isStatement(std::string_view word)
{
    return std::find(std::begin(statements), std::end(statements), word) != std::end(statements);
}

// Takes the first word off the text.
std::string_view takeWord(std::string_view& text)
{
    text = trimmed(text);
    const std::string_view word = text.substr(0, std::min(text.find_first_of(" \t"), text.size()));
    text.remove_prefix(word.size());
    return word;
}

class ObjReader
{
public:
    ObjReader(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
        : log(log), rows(mesh), polygons(mesh, rows, log), stem(std::filesystem::path(file->path()).stem().string()),
          lines(std::move(file), std::move(progress))
    {
        mesh.sourceFiles = lines.files();
        mesh.files.emplace_back();
    }

    Mesh read();

private:
    struct Statement
    {
        const char* name;
        void (ObjReader::*read)(std::string_view rest);
    };
    static const Statement readers[];

    // A face, line or point whose vertices are not looked up yet.
    struct Figure
    {
        char kind; // 'f', 'l', 'p'
        std::uint32_t line;
        std::uint32_t part;
        std::size_t end; // of its vertices in indices
    };

    bool nextStatement(std::string_view& text);
    void vertex(std::string_view rest);
    void face(std::string_view rest) { figure('f', rest); }
    void lineFigure(std::string_view rest) { figure('l', rest); }
    void point(std::string_view rest) { figure('p', rest); }
    void object(std::string_view rest);
    void group(std::string_view rest);
    void closeGroups();
    void material(std::string_view rest);
    void figure(char kind, std::string_view rest);
    void stray(std::string_view word);
    std::uint32_t currentPart();
    void addFigures();
    void addFigure(const Figure& figure, std::int64_t id, const std::vector<std::uint32_t>& corners);
    void addGroupSets();

    Mesh mesh;
    ImportLog& log;
    MeshRows rows;
    PolygonElements polygons;
    std::string stem;
    DeckLines lines;
    std::string joined; // a statement of several lines
    Place place;        // of the statement
    std::string objectName;
    std::vector<std::string> groups;
    std::size_t grouped = 0; // figures that are in groupSets, as far as they are in several groups
    std::string materialName;
    std::string firstStray; // complaint about the first line that is no statement
    Place strayPlace;
    std::uint32_t part = noPart; // of these; noPart: not looked up yet
    std::vector<Figure> figures;
    std::vector<std::int64_t> indices;      // from 1; what cannot be is left as it is
    std::map<std::string, IdSet> groupSets; // of figures that are in several groups
};

const ObjReader::Statement ObjReader::readers[] = {
    {"v", &ObjReader::vertex},     {"f", &ObjReader::face},          {"fo", &ObjReader::face}, // its old name
    {"l", &ObjReader::lineFigure}, {"p", &ObjReader::point},         {"o", &ObjReader::object},
    {"g", &ObjReader::group},      {"usemtl", &ObjReader::material},
};

// The next line that says something, with those that continue it.
bool ObjReader::nextStatement(std::string_view& text)
{
    while (lines.next(text)) {
        place = lines.place();
        text = trimmed(text);
        if (text.empty() || text[0] == '#') {
            continue;
        }
        if (text.back() != '\\') {
            return true;
        }
        joined.assign(text.data(), text.size() - 1);
        bool more = true;
        while (more && lines.next(text)) {
            text = trimmed(text);
            more = !text.empty() && text.back() == '\\';
            joined += ' ';
            joined.append(text.data(), text.size() - more);
        }
        text = trimmed(joined);
        if (!text.empty()) {
            return true;
        }
    }
    return false;
}

// A fourth value is a weight, more are colours.
void ObjReader::vertex(std::string_view rest)
{
    const char* p = rest.data();
    const char* end = p + rest.size();
    double xyz[3];
    for (double& value : xyz) {
        while (p < end && isBlank(*p)) {
            ++p;
        }
        if (!scanReal(p, end, value) || (p < end && !isBlank(*p))) {
            throw ImportError(place, "a vertex has three coordinates");
        }
    }
    MeshFile& file = mesh.files.front();
    file.addNode(static_cast<std::int64_t>(file.nodeIds.size()) + 1, xyz[0], xyz[1], xyz[2]);
}

void ObjReader::object(std::string_view rest)
{
    objectName = trimmed(rest);
    part = noPart;
}

// The figures since the last statement of groups are in its groups.
void ObjReader::closeGroups()
{
    if (groups.size() > 1 && figures.size() > grouped) {
        for (const std::string& name : groups) {
            groupSets[name].addRange(static_cast<std::int64_t>(grouped) + 1, static_cast<std::int64_t>(figures.size()));
        }
    }
    grouped = figures.size();
}

void ObjReader::group(std::string_view rest)
{
    closeGroups();
    groups.clear();
    for (std::string_view word = takeWord(rest); !word.empty(); word = takeWord(rest)) {
        groups.emplace_back(word);
    }
    part = noPart;
}

void ObjReader::material(std::string_view rest)
{
    materialName = trimmed(rest);
    part = noPart;
}

std::uint32_t ObjReader::currentPart()
{
    if (part != noPart) {
        return part;
    }
    std::string name;
    const auto add = [&](const std::string& piece, const char* between) {
        name += (name.empty() || piece.empty() ? "" : between) + piece;
    };
    add(objectName, "");
    for (std::size_t k = 0; k < groups.size(); ++k) {
        add(groups[k], k == 0 ? " / " : " ");
    }
    add(materialName, " / ");
    part = rows.part(name.empty() ? stem : name);
    mesh.parts[part].materialName = materialName;
    return part;
}

// VERTEX[/TEXTURE[/NORMAL]] each; below 0 they count back from the last vertex so far. A comment may follow.
void ObjReader::figure(char kind, std::string_view rest)
{
    const std::int64_t known = static_cast<std::int64_t>(mesh.files.front().nodeIds.size());
    std::size_t count = 0;
    rest = rest.substr(0, rest.find('#'));
    for (std::string_view word = takeWord(rest); !word.empty(); word = takeWord(rest), ++count) {
        std::int64_t index = 0;
        const char* p = word.data();
        const char* end = p + word.size();
        if (!scanInteger(p, end, index) || (p < end && *p != '/')) {
            throw ImportError(place, "no number of a vertex: \"" + std::string(word.substr(0, 40)) + "\"");
        }
        indices.push_back(index < 0 ? known + 1 + index : index);
    }
    if (count < (kind == 'f' ? 3u : kind == 'l' ? 2u : 1u)) {
        throw ImportError(place, std::string("\"") + kind + "\" with too few vertices: " + std::to_string(count));
    }
    figures.push_back({kind, static_cast<std::uint32_t>(place.line), currentPart(), indices.size()});
}

void ObjReader::addFigure(const Figure& figure, std::int64_t id, const std::vector<std::uint32_t>& corners)
{
    if (figure.kind == 'f') {
        polygons.add("face", id, figure.part, figure.line, corners);
    } else if (figure.kind == 'l') {
        polygons.addLine("line", id, figure.part, figure.line, corners);
    } else {
        std::vector<std::int64_t> nodes(corners.begin(), corners.end());
        for (std::int64_t& node : nodes) {
            ++node;
        }
        mesh.files.front().addUndrawn("point", id, nodes.data(), nodes.size());
        log.count(listElementsNotDrawn, "point", 1, {mesh.sourceFiles.front(), figure.line});
    }
}

void ObjReader::addFigures()
{
    const std::int64_t known = static_cast<std::int64_t>(mesh.files.front().nodeIds.size());
    std::vector<std::uint32_t> corners;
    std::size_t at = 0;
    for (std::size_t k = 0; k < figures.size(); ++k) {
        corners.clear();
        bool whole = true;
        for (; at < figures[k].end; ++at) {
            if (whole && (indices[at] < 1 || indices[at] > known)) {
                log.warn(warnMissingNode, {mesh.sourceFiles.front(), figures[k].line},
                         "vertex " + std::to_string(indices[at]) + " of " + std::to_string(known) +
                             " does not exist: left out");
                whole = false;
            }
            corners.push_back(static_cast<std::uint32_t>(indices[at] - 1));
        }
        if (whole) {
            addFigure(figures[k], static_cast<std::int64_t>(k) + 1, corners);
        }
    }
}

void ObjReader::addGroupSets()
{
    closeGroups();
    for (auto& group : groupSets) {
        MeshSet& set = mesh.sets.emplace_back();
        set.of = MeshSet::Of::Elements;
        set.name = group.first;
        set.ids = std::move(group.second);
    }
}

Mesh ObjReader::read()
{
    std::string_view text;
    while (nextStatement(text)) {
        const std::string_view word = takeWord(text);
        const auto* row = std::find_if(std::begin(readers), std::end(readers),
                                       [&](const Statement& statement) { return word == statement.name; });
        if (row != std::end(readers)) {
            (this->*row->read)(text);
        } else if (isStatement(word) || isName(word)) {
            log.count(listKeywordsNotRead, std::string(word), 1, place);
        } else {
            stray(word);
        }
    }
    if (mesh.files.front().nodeIds.empty() && !firstStray.empty()) {
        throw ImportError(strayPlace, firstStray); // no OBJ file at all
    }
    addFigures();
    polygons.finish();
    addGroupSets();
    finishMesh(mesh, log);
    return std::move(mesh);
}

// Remarks of programs, or damage: what the lines around it say still holds.
void ObjReader::stray(std::string_view word)
{
    const std::string message = "not a statement of an OBJ file: \"" + std::string(word.substr(0, 40)) + "\"";
    if (firstStray.empty()) {
        firstStray = message;
        strayPlace = place;
    }
    log.warn("lines that are no statements", place, message);
}

bool hasThreeNumbers(std::string_view text)
{
    double value = 0.0;
    for (int k = 0; k < 3; ++k) {
        if (!parseReal(takeWord(text), value)) {
            return false;
        }
    }
    return true;
}

} // namespace

bool looksLikeObj(const MappedFile& file)
{
    std::string_view head(file.begin(), std::min(file.size(), headBytes));
    if (head.size() == headBytes) {
        head = head.substr(0, head.rfind('\n')); // whole lines only
    }
    bool vertices = false;
    bool continued = false;
    while (!head.empty()) {
        const std::size_t stop = std::min(head.find('\n'), head.size());
        std::string_view line = trimmed(head.substr(0, stop));
        head.remove_prefix(std::min(stop + 1, head.size()));
        const bool first = !continued;
        continued = !line.empty() && line.back() == '\\';
        if (!first || line.empty() || line[0] == '#') {
            continue;
        }
        const std::string_view word = takeWord(line);
        if (!isStatement(word) || (word == "v" && !hasThreeNumbers(line))) {
            return false;
        }
        vertices = vertices || word == "v";
    }
    return vertices;
}

Mesh readObj(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
{
    return ObjReader(std::move(file), log, std::move(progress)).read();
}

} // namespace kvo
