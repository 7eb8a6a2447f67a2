// Reading of STL.
#include "stl_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>

#include "mesh_finish.h"
#include "text/deck_lines.h"
#include "text/fields.h"
#include "text/numbers.h"

namespace kvo {

const char* const warnDegenerateFacet = "degenerate facets";

namespace {

// Binary layout: 80 bytes of text, a 32-bit count, then per facet 12 floats (normal, 3 vertices) and 2 bytes.
constexpr std::size_t headerBytes = 84;
constexpr std::size_t facetBytes = 50;
constexpr std::size_t normalBytes = 12;

std::uint32_t little32(const char* p)
{
    const auto* b = reinterpret_cast<const unsigned char*>(p);
    return b[0] | std::uint32_t(b[1]) << 8 | std::uint32_t(b[2]) << 16 | std::uint32_t(b[3]) << 24;
}

float littleFloat(const char* p)
{
    const std::uint32_t bits = little32(p);
    float value = 0.0f;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

std::uint64_t binaryFacets(const MappedFile& file)
{
    return file.size() < headerBytes ? 0 : little32(file.begin() + 80);
}

bool fitsBinary(const MappedFile& file)
{
    return file.size() >= headerBytes && file.size() == headerBytes + facetBytes * binaryFacets(file);
}

std::string_view headOf(const MappedFile& file)
{
    return {file.begin(), std::min<std::size_t>(file.size(), 4096)};
}

bool beginsWithSolid(const MappedFile& file)
{
    const std::string_view text = headOf(file);
    return startsWithIgnoringCase(trimmed(text.substr(std::min(text.find_first_not_of(" \t\r\n"), text.size()))),
                                  "solid");
}

// Many binary files begin with "solid", too. Theirs is a length that fits, or, where something follows the facets or
// the end is missing, zeros among the first numbers.
bool isBinary(const MappedFile& file)
{
    return fitsBinary(file) || !beginsWithSolid(file) || headOf(file).find('\0') != std::string_view::npos;
}

// Finds the node of a vertex: an open hash table of node positions, keyed by the coordinates' bits.
class VertexMerger
{
public:
    explicit VertexMerger(MeshFile& mesh) : mesh(mesh), slots(1024, empty) {}

    std::int64_t idOf(std::array<double, 3> p)
    {
        for (double& c : p) {
            c += 0.0; // -0 and 0 are one coordinate
        }
        std::size_t slot = hash(p) & (slots.size() - 1);
        while (slots[slot] != empty && !equal(slots[slot], p)) {
            slot = (slot + 1) & (slots.size() - 1);
        }
        if (slots[slot] != empty) {
            return std::int64_t(slots[slot]) + 1;
        }
        slots[slot] = static_cast<std::uint32_t>(mesh.nodeIds.size());
        const std::int64_t id = static_cast<std::int64_t>(mesh.nodeIds.size()) + 1;
        mesh.addNode(id, p[0], p[1], p[2]);
        if (2 * mesh.nodeIds.size() > slots.size()) {
            grow();
        }
        return id;
    }

private:
    static constexpr std::uint32_t empty = 0xFFFFFFFF;

    bool equal(std::uint32_t node, const std::array<double, 3>& p) const
    {
        return std::equal(p.begin(), p.end(), &mesh.xyz[3 * std::size_t(node)]);
    }

    static std::size_t hash(const std::array<double, 3>& p)
    {
        std::uint64_t h = 0;
        for (const double c : p) {
            std::uint64_t bits = 0;
            std::memcpy(&bits, &c, sizeof bits);
            h = (h ^ bits) * 0x9E3779B97F4A7C15u;
            h ^= h >> 29;
        }
        return h;
    }

    void grow()
    {
        slots.assign(2 * slots.size(), empty);
        for (std::size_t node = 0; node < mesh.nodeIds.size(); ++node) {
            const double* x = &mesh.xyz[3 * node];
            std::size_t slot = hash({x[0], x[1], x[2]}) & (slots.size() - 1);
            while (slots[slot] != empty) {
                slot = (slot + 1) & (slots.size() - 1);
            }
            slots[slot] = static_cast<std::uint32_t>(node);
        }
    }

    MeshFile& mesh;
    std::vector<std::uint32_t> slots; // a power of two of them
};

// Facets into a mesh, of either encoding.
class StlMesh
{
public:
    StlMesh(const std::string& path, ImportLog& log) : log(log), path(path), merger(newFile())
    {
        mesh.sourceFiles.push_back(path);
        mesh.types.push_back({"facet", Family::Shell, Shape::Triangle});
    }

    void addPart(const std::string& name)
    {
        MeshPart part;
        part.id = static_cast<std::int64_t>(mesh.parts.size()) + 1;
        part.name = name;
        mesh.parts.push_back(part);
    }

    // where is a line, or 0 for binary files. The facet's id counts every facet, left out or not.
    void addFacet(const std::array<std::array<double, 3>, 3>& corners, std::uint32_t where)
    {
        ++facets;
        for (const auto& corner : corners) {
            if (!std::isfinite(corner[0]) || !std::isfinite(corner[1]) || !std::isfinite(corner[2])) {
                throw ImportError({path, where}, "facet " + std::to_string(facets) + " has a vertex that is no number");
            }
        }
        const std::int64_t a = merger.idOf(corners[0]);
        const std::int64_t b = merger.idOf(corners[1]);
        const std::int64_t c = merger.idOf(corners[2]);
        if (a == b || b == c || c == a) {
            log.warn(warnDegenerateFacet, {path, where},
                     "facet " + std::to_string(facets) + " has two equal vertices: left out");
            return;
        }
        ElementBlock& block = mesh.files.front().blockFor(0, 0);
        block.ids.push_back(facets);
        block.part.push_back(static_cast<std::uint32_t>(mesh.parts.size()) - 1);
        block.line.push_back(where);
        block.nodes.insert(block.nodes.end(), {a, b, c});
    }

    Mesh take()
    {
        finishMesh(mesh, log);
        return std::move(mesh);
    }

private:
    MeshFile& newFile() { return mesh.files.emplace_back(); }

    Mesh mesh;
    ImportLog& log;
    std::string path;
    VertexMerger merger;
    std::int64_t facets = 0;
};

std::string stemOf(const std::string& path)
{
    return std::filesystem::path(path).stem().string();
}

Mesh readBinary(const MappedFile& file, ImportLog& log, const Progress& progress)
{
    const std::uint64_t count = binaryFacets(file);
    const std::uint64_t need = headerBytes + facetBytes * count;
    if (file.size() < headerBytes || file.size() < need) {
        throw ImportError({file.path(), 0}, "cut off: a binary STL of " + std::to_string(count) + " facets has " +
                                                std::to_string(need) + " bytes, this one has " +
                                                std::to_string(file.size()));
    }
    if (file.size() > need) {
        log.warn("bytes behind the last facet", {file.path(), 0},
                 std::to_string(file.size() - need) + " bytes behind the last facet are not read");
    }
    StlMesh stl(file.path(), log);
    stl.addPart(stemOf(file.path()));
    for (std::uint64_t k = 0; k < count; ++k) {
        const char* p = file.begin() + headerBytes + facetBytes * k + normalBytes;
        std::array<std::array<double, 3>, 3> corners;
        for (int value = 0; value < 9; ++value) {
            corners[value / 3][value % 3] = littleFloat(p + 4 * value);
        }
        stl.addFacet(corners, 0);
        if (progress && k % 65536 == 0) {
            progress(headerBytes + facetBytes * k, file.size());
        }
    }
    return stl.take();
}

// The text of an ASCII STL: "solid NAME", then facets of one loop of three vertices, then "endsolid".
class AsciiStl
{
public:
    AsciiStl(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
        : log(log), stem(stemOf(file->path())), stl(file->path(), log), lines(std::move(file), std::move(progress))
    {
    }

    Mesh read()
    {
        std::string_view line;
        while (lines.next(line)) {
            line = trimmed(line);
            if (!line.empty()) {
                statement(line);
            }
        }
        if (insideFacet) {
            throw ImportError(lines.place(), "cut off inside a facet");
        }
        if (insideSolid) {
            throw ImportError(lines.place(), "cut off: no endsolid");
        }
        return stl.take();
    }

private:
    void statement(std::string_view line)
    {
        if (startsWithIgnoringCase(line, "vertex")) {
            vertex(line.substr(6));
        } else if (startsWithIgnoringCase(line, "facet")) {
            expect(insideSolid && !insideFacet, "facet");
            insideFacet = true;
            corners = 0;
            facetLine = lines.lineNumber();
        } else if (startsWithIgnoringCase(line, "endfacet")) {
            expect(insideFacet && corners == 3, "endfacet");
            insideFacet = false;
            stl.addFacet(facet, facetLine);
        } else if (startsWithIgnoringCase(line, "solid")) {
            expect(!insideSolid, "solid");
            insideSolid = true;
            const std::string_view name = trimmed(line.substr(5));
            stl.addPart(name.empty() ? stem : std::string(name));
        } else if (startsWithIgnoringCase(line, "endsolid") || startsWithIgnoringCase(line, "end solid")) {
            expect(insideSolid && !insideFacet, "endsolid");
            insideSolid = false;
        } else if (startsWithIgnoringCase(line, "outer") || startsWithIgnoringCase(line, "endloop")) {
            return;
        } else if (const std::string_view word = line.substr(0, line.find_first_of(" \t")); isName(word)) {
            log.count(listKeywordsNotRead, std::string(word), 1, lines.place());
        } else {
            throw ImportError(lines.place(), "not a statement of an STL: \"" + std::string(line.substr(0, 40)) + "\"");
        }
    }

    void vertex(std::string_view values)
    {
        expect(insideFacet && corners < 3, "vertex");
        const char* p = values.data();
        const char* end = p + values.size();
        for (double& coordinate : facet[corners]) {
            const char* blank = p;
            while (p < end && isBlank(*p)) {
                ++p;
            }
            if (p == blank || !scanReal(p, end, coordinate)) {
                throw ImportError(lines.place(), "a vertex has three coordinates");
            }
        }
        if (!trimmed({p, static_cast<std::size_t>(end - p)}).empty()) {
            throw ImportError(lines.place(), "a vertex has three coordinates");
        }
        ++corners;
    }

    void expect(bool condition, const char* what)
    {
        if (!condition) {
            throw ImportError(lines.place(), std::string("misplaced \"") + what + "\"");
        }
    }

    ImportLog& log;
    std::string stem;
    StlMesh stl;
    DeckLines lines;
    std::array<std::array<double, 3>, 3> facet = {};
    int corners = 0;
    std::uint32_t facetLine = 0;
    bool insideSolid = false;
    bool insideFacet = false;
};

} // namespace

bool looksLikeStl(const MappedFile& file)
{
    if (fitsBinary(file)) {
        return true;
    }
    if (!beginsWithSolid(file)) {
        return false;
    }
    const std::string upper = upperCase(headOf(file));
    return isBinary(file) || upper.find("FACET") != std::string::npos || upper.find("ENDSOLID") != std::string::npos;
}

Mesh readStl(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
{
    if (isBinary(*file)) {
        return readBinary(*file, log, progress);
    }
    return AsciiStl(std::move(file), log, std::move(progress)).read();
}

} // namespace kvo
