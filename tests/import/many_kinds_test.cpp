// Decks that are large only in what nobody reads, and files that are no decks at all.
#include "import_fixture.h"

#include <algorithm>
#include <fstream>

#include "text/confined.h"

using ManyKinds = ImportTest;

namespace {

std::string cards(const std::string& before, int count, const std::string& after)
{
    std::string out;
    for (int k = 0; k < count; ++k) {
        out += before + std::to_string(k) + after;
    }
    return out;
}

const std::string triangle = "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n*ELEMENT,TYPE=S3\n1,1,2,3\n";

} // namespace

TEST_F(ManyKinds, ListsOfKindsAreCutOff)
{
    kvo::ImportLog few, all(std::numeric_limits<std::size_t>::max());
    for (kvo::ImportLog* log : {&few, &all}) {
        for (int k = 0; k < 1234567 / 100; ++k) {
            log->count(kvo::listKeywordsNotRead, "KW" + std::to_string(k), 2, {"deck", 1});
            log->note("note " + std::to_string(k));
        }
    }
    EXPECT_EQ(all.lines().size(), 12345u * 2 + 1);
    const std::vector<std::string> lines = few.lines();
    EXPECT_EQ(lines.size(), 203u);
    EXPECT_EQ(lines[100], "note: and 12,245 more notes");
    EXPECT_EQ(lines.back(), "  and 12,245 more kinds");
    EXPECT_EQ(few.listCount(kvo::listKeywordsNotRead, "KW12344"), 2u) << "counted all the same";
}

TEST_F(ManyKinds, ElementTypesWithoutPictureAreFoundByName)
{
    // Looking through the list for each of them would be five thousand million comparisons.
    const kvo::Mesh mesh = read(triangle + cards("*ELEMENT,TYPE=T", 100000, "\n7,1,2,3\n"));
    ASSERT_EQ(mesh.files[0].undrawn.size(), 100000u);
    EXPECT_EQ(mesh.files[0].undrawn[99999].type, "T99999");
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "T5"), 1u);
}

TEST_F(ManyKinds, LongTextsAreQuotedInPart)
{
    const std::string megabytes(3 << 20, 'x');
    read(triangle + "*ELEMENT,TYPE=" + megabytes + "\n7,1,2,3\n*" + megabytes + "\n");
    for (const std::string& line : log.lines()) {
        EXPECT_LT(line.size(), 3000u);
    }
    EXPECT_LT(std::string(kvo::ImportError({"f", 1}, megabytes).what()).size(), 6000u);
}

TEST_F(ManyKinds, LinesWithoutEndAreNoText)
{
    const std::string endless(17 << 20, '1');
    const std::string longest(15 << 20, ' ');
    for (const char* name : {"a.inp", "a.k", "a.bdf", "a.cdb", "a.unv", "a.obj"}) {
        try {
            kvo::readDeck(write(name, (name == std::string("a.unv") ? "    -1\n  2411\n" : "\n") + endless), log);
            ADD_FAILURE() << name;
        } catch (const kvo::ImportError& error) {
            EXPECT_NE(std::string(error.what()).find("a line of more than 16 MiB"), std::string::npos) << error.what();
        }
    }
    EXPECT_EQ(read(triangle + longest + "\n").elementCount(), 1u);
}

TEST_F(ManyKinds, ZerosAreNoDeckWhateverTheirNumber)
{
    const std::string file = write("zeros", "");
    std::filesystem::resize_file(file, std::uintmax_t{8} << 30); // takes no room
    for (const char* suffix :
         {"", ".inp", ".k", ".bdf", ".cdb", ".unv", ".obj", ".stl", ".ply", ".msh", ".vtk", ".vtu"}) {
        const std::string named = file + suffix;
        std::filesystem::rename(file, named);
        try {
            kvo::readDeck(named, log);
            ADD_FAILURE() << suffix;
        } catch (const kvo::ImportError& error) {
            EXPECT_EQ(error.what(), named + ": begins with zero bytes, as no deck does");
        }
        std::filesystem::rename(named, file);
    }
}

TEST_F(ManyKinds, ZerosBehindAFirstLineAreALineWithoutEnd)
{
    for (const auto& head : {std::pair<const char*, const char*>{"a.inp", "*NODE\n1,0,0,0\n"},
                             {"a.k", "*KEYWORD\n*NODE\n"},
                             {"a.bdf", "BEGIN BULK\nGRID,1,,0.,0.,0.\n"},
                             {"a.cdb", "/PREP7\n"},
                             {"a.unv", "    -1\n  2411\n"},
                             {"a.obj", "v 0 0 0\n"},
                             {"a.ply", "ply\nformat ascii 1.0\n"},
                             {"a.msh", "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n"},
                             {"a.vtk", "# vtk DataFile Version 3.0\nt\nASCII\n"},
                             {"a.vtu", "<VTKFile type=\"UnstructuredGrid\">\n"}}) {
        const std::string file = write(head.first, head.second);
        std::filesystem::resize_file(file, std::uintmax_t{1} << 28);
        EXPECT_THROW(kvo::readDeck(file, log), kvo::ImportError) << head.first;
    }
}

TEST_F(ManyKinds, PlacesAreResolvedBeforeTheyAreCompared)
{
    namespace fs = std::filesystem;
    fs::create_directories(path("in/sub"));
    fs::create_directories(path("inner"));
    fs::create_symlink(path("inner"), path("in/link"));
    fs::create_symlink(path("nowhere"), path("in/void"));
    fs::create_symlink(path("in"), path("alias"));
    const struct
    {
        const char* name;
        bool within;
    } rows[] = {{"in", true},           {"in/", true},         {"in/sub", true},          {"in/new", true},
                {"in/new/newer", true}, {"in/sub/../a", true}, {"alias/sub", true},       {"in/new/", true},
                {"inner", false},       {"in/..", false},      {"in/../x", false},        {"in/link", false},
                {"in/link/a", false},   {"in/void", false},    {"in/new/../../x", false}, {"in/void/a", false},
                {"in/new/..", false},   {".", false}};
    for (const auto& row : rows) {
        EXPECT_EQ(kvo::liesWithin(path(row.name), path("in")), row.within) << row.name;
        EXPECT_EQ(kvo::liesWithin(path(row.name), path("alias/")), row.within) << row.name;
    }
    EXPECT_TRUE(kvo::liesWithin("/etc/passwd", ""));
    EXPECT_TRUE(kvo::liesWithin("/etc/passwd", "/"));
    EXPECT_FALSE(kvo::liesWithin("/etc/passwd", path("none")));
}

TEST_F(ManyKinds, IncludesStayInTheRoot)
{
    std::filesystem::create_directory(path("in"));
    write("out.inp", triangle);
    const std::string deck = write("in/a.inp", "*INCLUDE, INPUT=../out.inp\n");
    EXPECT_EQ(kvo::readDeck(deck, log).elementCount(), 1u);
    kvo::ReadRules rules;
    rules.root = path("in");
    EXPECT_THROW(kvo::readDeck(deck, log, {}, nullptr, rules), kvo::ImportError);
    EXPECT_THROW(kvo::readDeck(path("out.inp"), log, {}, nullptr, rules), kvo::ImportError);
    rules.root = path("");
    EXPECT_EQ(kvo::readDeck(deck, log, {}, nullptr, rules).elementCount(), 1u);
}
