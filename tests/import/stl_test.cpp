// STL files.
#include "import_fixture.h"

#include <cmath>
#include <cstring>
#include <limits>

#include "stl/stl_reader.h"
#include "text/mapped_file.h"

namespace {

class Stl : public ImportTest
{
protected:
    kvo::Mesh readStl(const std::string& text) { return read(text, "part.stl"); }
};

std::string facet(const char* a, const char* b, const char* c)
{
    return std::string("facet normal 0 0 1\n outer loop\n  vertex ") + a + "\n  vertex " + b + "\n  vertex " + c +
           "\n endloop\nendfacet\n";
}

// 80 bytes of header, the count, and facets of nine floats.
std::string binary(const std::string& header, const std::vector<std::vector<float>>& facets)
{
    std::string bytes = header + std::string(80 - header.size(), '\0');
    const std::uint32_t count = static_cast<std::uint32_t>(facets.size());
    bytes.append(reinterpret_cast<const char*>(&count), 4);
    for (const std::vector<float>& f : facets) {
        bytes += std::string(12, '\0');
        bytes.append(reinterpret_cast<const char*>(f.data()), 36);
        bytes += std::string(2, '\0');
    }
    return bytes;
}

const std::vector<float> lower = {0, 0, 0, 1, 0, 0, 0, 1, 0};
const std::vector<float> upper = {1, 0, 0, 1, 1, 0, 0, 1, 0};

} // namespace

TEST_F(Stl, SolidsBecomePartsAndVerticesNodes)
{
    const kvo::Mesh mesh =
        readStl("solid Left Side\n" + facet("0 0 0", "1 0 0", "0 1 0") + facet("1 0 0", "1 1 0", "0 1 -0.0") +
                "endsolid Left Side\nSOLID\n" + facet("0 0 0", "-1.5e0 0 0", "0 1 0") + "ENDSOLID\n");
    EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"Left Side", "part"}));
    EXPECT_EQ(mesh.nodeCount(), 5u);
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{2, 4, 3})) << "equal vertices are one node, -0 is 0";
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 5, 3}));
    EXPECT_EQ(pointOf(mesh, 5), (Point{-1.5, 0, 0}));
    EXPECT_EQ(partOf(mesh, 3).name, "part");
    EXPECT_EQ(mesh.formatName, "STL");
}

TEST_F(Stl, DegenerateFacetsAreLeftOutAndCounted)
{
    const kvo::Mesh mesh =
        readStl("solid\n" + facet("0 0 0", "0 0 0", "0 1 0") + facet("0 0 0", "1 0 0", "0 1 0") + "endsolid\n");
    EXPECT_EQ(elementIds(mesh), Ids{2});
    EXPECT_EQ(log.warningCount(kvo::warnDegenerateFacet), 1u);
}

TEST_F(Stl, Binary)
{
    const kvo::Mesh mesh = readStl(binary("exported", {lower, upper}));
    EXPECT_EQ(mesh.nodeCount(), 4u);
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{2, 4, 3}));
    EXPECT_EQ(partNames(mesh), std::vector<std::string>{"part"});
}

TEST_F(Stl, BinaryThatBeginsWithSolid)
{
    const kvo::Mesh mesh = readStl(binary("solid made by something", {lower, upper}));
    EXPECT_EQ(mesh.elementCount(), 2u);
}

TEST_F(Stl, BinaryThatBeginsWithSolidAndHasNotTheLengthThatItShould)
{
    const std::string whole = binary("solid made by something", {lower, upper});
    EXPECT_EQ(readStl(whole + "more").elementCount(), 2u);
    EXPECT_EQ(log.warningCount("bytes behind the last facet"), 1u);
    EXPECT_EQ(read(whole + "more", "noname").formatName, "STL");
    EXPECT_EQ(readError(whole.substr(0, 150), "part.stl"),
              "part.stl: cut off: a binary STL of 2 facets has 184 bytes, this one has 150");
}

TEST_F(Stl, StatementsThatAreNotKnownAreListed)
{
    const kvo::Mesh mesh = readStl("solid\ncolor 1 0 0\n" + facet("0 0 0", "1 0 0", "0 1 0") + "endsolid\n");
    EXPECT_EQ(mesh.elementCount(), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "color"), 1u);
}

TEST_F(Stl, IsKnownByContentUnderAnyName)
{
    EXPECT_EQ(read("\n solid a\n" + facet("0 0 0", "1 0 0", "0 1 0") + "endsolid\n", "a.txt").formatName, "STL");
    EXPECT_EQ(read(binary("x", {lower}), "noname").formatName, "STL");
}

TEST_F(Stl, ManyVerticesMergeExactly)
{
    // A strip of n squares: 2 (n + 1) distinct vertices, also after the table has grown several times.
    const int n = 5000;
    std::vector<std::vector<float>> facets;
    for (int k = 0; k < n; ++k) {
        const float x = 0.1f * static_cast<float>(k);
        const float y = 0.1f * static_cast<float>(k + 1);
        facets.push_back({x, 0, 0, y, 0, 0, x, 1, 0});
        facets.push_back({y, 0, 0, y, 1, 0, x, 1, 0});
    }
    const kvo::Mesh mesh = readStl(binary("strip", facets));
    EXPECT_EQ(mesh.nodeCount(), 2u * (n + 1));
    EXPECT_EQ(mesh.elementCount(), 2u * n);
    EXPECT_EQ(pointOf(mesh, nodesOf(mesh, 2 * n)[1]), (Point{0.1f * n, 1, 0}));
}

TEST_F(Stl, BadFiles)
{
    const std::string one = facet("0 0 0", "1 0 0", "0 1 0");
    const struct
    {
        std::string text;
        const char* message;
    } rows[] = {
        {binary("x", {lower, upper}).substr(0, 150),
         "part.stl: cut off: a binary STL of 2 facets has 184 bytes, this one has 150"},
        {"abc", "part.stl: cut off: a binary STL of 0 facets has 84 bytes, this one has 3"},
        {"solid\n" + one, "part.stl:8: cut off: no endsolid"},
        {"solid\n" + one.substr(0, 40) + "\n", "part.stl:4: a vertex has three coordinates"},
        {"solid\nfacet normal 0 0 1\nouter loop\nvertex 1 2\n", "part.stl:4: a vertex has three coordinates"},
        {"solid\nfacet normal 0 0 1\nouter loop\nvertex 1 2 3 4\n", "part.stl:4: a vertex has three coordinates"},
        {"solid\nfacet\nouter loop\nvertex 1 2 3\nendloop\nendfacet\n", "part.stl:6: misplaced \"endfacet\""},
        {"solid\nvertex 1 2 3\nfacet\n", "part.stl:2: misplaced \"vertex\""},
        {"solid\nfacet\nfacet\n", "part.stl:3: misplaced \"facet\""},
        {"solid\n" + one + "1 2 3\n", "part.stl:9: not a statement of an STL: \"1 2 3\""},
        {"solid\nfacet\nouter loop\nvertex 1 2 3\n", "part.stl:4: cut off inside a facet"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(readError(row.text, "part.stl"), row.message);
    }
}

TEST_F(Stl, VerticesThatAreNoNumbers)
{
    std::vector<float> bad = lower;
    bad[4] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(readError(binary("x", {lower, bad}), "part.stl"), "part.stl: facet 2 has a vertex that is no number");
}

TEST_F(Stl, BytesBehindTheLastFacetAreWarnedOf)
{
    EXPECT_EQ(readStl(binary("x", {lower}) + "trailer").elementCount(), 1u);
    EXPECT_EQ(log.warningCount("bytes behind the last facet"), 1u);
}
