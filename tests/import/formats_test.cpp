// Which format a file has.
#include "import_fixture.h"

#include <set>

#include "text/mapped_file.h"

namespace {

class Formats : public ImportTest
{
};

} // namespace

TEST_F(Formats, FormatsAreKnownByContentThenBySuffix)
{
    const struct
    {
        const char* name;
        const char* text;
        const char* format; // null: none
    } rows[] = {
        {"a.inp", "*NODE\n1\n", "Abaqus/CalculiX"},
        {"a.txt", "\n** comment\n\r\n*Heading\nx\n", "Abaqus/CalculiX"},
        {"a.stl", "*NODE\n1\n", "Abaqus/CalculiX"},
        {"a.inp", "solid x\nfacet normal 0 0 1\n", "STL"},
        {"a.INP", "\n\n*MYSTERY\n", "Abaqus/CalculiX"},
        {"a.xyz", "*MYSTERY\n*NODE\n", nullptr},
        {"a.txt", "solid ground under our feet\n", nullptr},
        {"a.txt", "words\n*NODE\n", nullptr},
        {"a.txt", "$ a comment\nGRID           1\n", "Nastran bulk data"},
        {"a.txt", "SOL 101\nCEND\n", "Nastran bulk data"},
        {"a.txt", "PRODUCT, price\nGRIDS, 5\n", nullptr},
        {"a.dat", "1 2 3\n", "Nastran bulk data"}, // by its ending
        {"a", "\n", nullptr},
        {"a", "$PhysicalNames\n0\n$EndPhysicalNames\n$MeshFormat\n2.2 0 8\n", "Gmsh"},
        {"a.stl", "$Comments\n$EndComments\n$MeshFormat\n2.2 0 8\n", "Gmsh"},
        {"a.bdf", "$MeshFormat\n2.2 0 8\n", "Gmsh"},
        {"a.vtk", "<?xml version=\"1.0\"?>\n<VTKFile type=\"PolyData\">", "VTK XML"},
        {"a.vtu", "# vtk DataFile Version 3.0\n", "VTK legacy"},
        {"a.obj", "ply\r\nformat ascii 1.0\r\n", "PLY"},
        {"a.ply", "v 0 0 0\nf 1 1 1\n", "Wavefront OBJ"},
    };
    for (const auto& row : rows) {
        const kvo::MappedFile file(write(row.name, row.text));
        const kvo::DeckFormat* format = kvo::detectDeckFormat(file);
        EXPECT_EQ(format ? std::string(format->name) : "none", row.format ? row.format : "none")
            << row.name << row.text;
    }
    EXPECT_TRUE(kvo::hasDeckSuffix("x/y.Inp"));
    EXPECT_FALSE(kvo::hasDeckSuffix("x.inp/y"));
}

TEST_F(Formats, AMarkOfUtf8BeforeATextIsNoPartOfIt)
{
    const std::string mark = "\xEF\xBB\xBF";
    const struct
    {
        const char* text;
        const char* format;
    } rows[] = {
        {"*NODE\n1\n*ELEMENT, TYPE=MASS\n1, 1\n", "Abaqus/CalculiX"},
        {"GRID, 1\n", "Nastran bulk data"},
        {"*KEYWORD\n*NODE\n1, 0, 0, 0\n", "Keyword"},
        {"# x\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n", "Wavefront OBJ"},
        {"solid\nfacet\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\nendsolid\n", "STL"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(read(mark + row.text, "a.txt").formatName, row.format);
    }
    EXPECT_EQ(readError(mark, "a.stl"), "a.stl: the file is empty");
}

TEST_F(Formats, FilesThatAreNoDecks)
{
    EXPECT_EQ(readError("", "empty.inp"), "empty.inp: the file is empty");
    EXPECT_TRUE(contains(readError("words", "a.txt"), "a.txt: no known deck format; known are "));
    EXPECT_TRUE(contains(readError("words", "a.txt"), "Abaqus/CalculiX (.inp)"));
    EXPECT_TRUE(contains(readError("words", "a.txt"), "CGNS (.cgns "));
    try {
        readFile(path("none.inp"));
        FAIL() << "no error";
    } catch (const kvo::ImportError& error) {
        EXPECT_EQ(error.message, "cannot open: No such file or directory");
        EXPECT_EQ(error.place.file, path("none.inp"));
    }
    try {
        readFile(folder.string());
        FAIL() << "no error";
    } catch (const kvo::ImportError& error) {
        EXPECT_EQ(error.message, "is a directory, not a deck");
    }
}

TEST_F(Formats, AFormatCanBeForced)
{
    // By its content an input deck; as STL it is a damaged one.
    const std::string file = write("a.inp", "*NODE\n1\n");
    const kvo::DeckFormat* stl = kvo::findDeckFormat("Stl");
    ASSERT_NE(stl, nullptr);
    EXPECT_EQ(kvo::readDeck(file, log).formatName, "Abaqus/CalculiX");
    EXPECT_THROW(kvo::readDeck(file, log, {}, stl), kvo::ImportError);
    EXPECT_EQ(kvo::findDeckFormat("nothing"), nullptr);
}

TEST_F(Formats, KeysAreUniqueAndEveryRowIsWhole)
{
    std::set<std::string> keys;
    for (const kvo::DeckFormat& format : kvo::deckFormats()) {
        EXPECT_TRUE(keys.insert(format.key).second) << format.key;
        EXPECT_TRUE(format.looksLike && format.read) << format.key;
        EXPECT_EQ(format.suffixes[0], '.') << format.key;
        EXPECT_NE(std::string(format.summary), "") << format.key;
    }
    EXPECT_TRUE(keys.count("abaqus") && keys.count("stl"));
}
