// OBJ and PLY surfaces, and the dividing of polygons.
#include <cmath>

#include "hostile.h"
#include "polygon.h"

namespace {

class Obj : public HostileTest
{
protected:
    kvo::Mesh readObj(const std::string& text) { return read(text, "part.obj"); }
    std::string error(const std::string& text) { return readError(text, "part.obj"); }
};

class Ply : public HostileTest
{
protected:
    kvo::Mesh readPly(const std::string& text) { return read(text, "part.ply"); }
    std::string errorWith(std::string text, const std::string& old, const std::string& instead)
    {
        const std::size_t at = text.find(old);
        EXPECT_NE(at, std::string::npos) << old;
        return outcome(text.replace(at, old.size(), instead), "part.ply");
    }
};

using Points = std::vector<std::array<double, 3>>;

std::array<double, 3> crossOf(const Points& points, const std::array<std::uint32_t, 3>& t)
{
    std::array<double, 3> u, v;
    for (std::size_t c = 0; c < 3; ++c) {
        u[c] = points[t[1]][c] - points[t[0]][c];
        v[c] = points[t[2]][c] - points[t[0]][c];
    }
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

// Twice the area that the triangles cover, each against the direction of the plane's normal.
double coveredArea(const Points& points, const std::array<double, 3>& normal, bool& allTurnedRight)
{
    double area = 0.0;
    allTurnedRight = true;
    for (const auto& t : kvo::trianglesOf(points)) {
        const std::array<double, 3> cross = crossOf(points, t);
        const double along = cross[0] * normal[0] + cross[1] * normal[1] + cross[2] * normal[2];
        allTurnedRight = allTurnedRight && along > 0.0;
        area += along;
    }
    return area;
}

const char* const square = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 .5 0\n";

} // namespace

// --- polygons ---

TEST(Polygons, AreDividedWithoutOverlapAndGap)
{
    const struct
    {
        const char* what;
        std::vector<std::array<double, 2>> outline;
        double area;
    } rows[] = {
        {"pentagon", {{0, 0}, {2, 0}, {3, 1}, {1, 3}, {-1, 1}}, 7},
        {"arrow", {{0, 0}, {4, -2}, {1, 0}, {4, 2}}, 2},
        {"L", {{0, 0}, {3, 0}, {3, 1}, {1, 1}, {1, 3}, {0, 3}}, 5},
        {"comb", {{0, 0}, {5, 0}, {5, 3}, {4, 3}, {4, 1}, {3, 1}, {3, 3}, {2, 3}, {2, 1}, {1, 1}, {1, 3}, {0, 3}}, 11},
        {"corners in line", {{0, 0}, {1, 0}, {2, 0}, {2, 1}, {2, 2}, {0, 2}}, 4},
        {"square with a square hole behind a seam",
         {{0, 0}, {3, 0}, {3, 3}, {0, 3}, {0, 0}, {1, 1}, {1, 2}, {2, 2}, {2, 1}, {1, 1}},
         8},
    };
    for (const auto& row : rows) {
        for (const bool upright : {false, true}) { // in the plane z = 7 and in x = 7
            Points points;
            for (const auto& p : row.outline) {
                points.push_back(upright ? std::array<double, 3>{7, p[0], p[1]} : std::array<double, 3>{p[0], p[1], 7});
            }
            bool turned = false;
            const std::array<double, 3> normal = {upright ? 1.0 : 0.0, 0.0, upright ? 0.0 : 1.0};
            EXPECT_EQ(kvo::trianglesOf(points).size(), points.size() - 2) << row.what;
            EXPECT_DOUBLE_EQ(coveredArea(points, normal, turned), 2 * row.area) << row.what;
            EXPECT_TRUE(turned || row.what == std::string("corners in line")) << row.what;
        }
    }
}

TEST(Polygons, GoRoundAsTheyDidWhenTheyAreTurned)
{
    const Points clockwise = {{0, 3, 0}, {1, 3, 0}, {1, 1, 0}, {3, 1, 0}, {3, 0, 0}, {0, 0, 0}};
    bool turned = false;
    EXPECT_DOUBLE_EQ(coveredArea(clockwise, {0, 0, -1}, turned), 10.0);
    EXPECT_TRUE(turned);
}

TEST(Polygons, ThatCannotBeDividedWellStillEnd)
{
    // A line there and back, a star that crosses itself, corners that are all one.
    EXPECT_EQ(kvo::trianglesOf({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {1, 0, 0}, {.5, 0, 0}}).size(), 3u);
    EXPECT_EQ(kvo::trianglesOf({{0, 0, 0}, {2, 2, 0}, {0, 2, 0}, {2, 0, 0}, {1, 3, 0}}).size(), 3u);
    EXPECT_EQ(kvo::trianglesOf(Points(6, {1, 1, 1})).size(), 4u);
    EXPECT_TRUE(kvo::trianglesOf({{0, 0, 0}, {1, 1, 1}}).empty());
    Points wave; // more corners than are cut one by one
    for (int k = 0; k < 20000; ++k) {
        wave.push_back({double(k), k % 2 ? 1.0 : 2.0, 0.0});
    }
    wave.push_back({1e4, -1e4, 0.0});
    EXPECT_EQ(kvo::trianglesOf(wave).size(), wave.size() - 2);
}

// --- OBJ ---

TEST_F(Obj, PartsAreObjectGroupsAndMaterial)
{
    const kvo::Mesh mesh = readObj(std::string("# c\n") + square +
                                   "f 1 2 3\no body\nf 1/1/1 3/2/1 4/3/1\ng skin\nusemtl steel\nf 2//1 5//1 3//1\n"
                                   "g a b\nf 1 2 3 4\nusemtl steel\no other\nf 1 2 4\n");
    EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"part", "body", "body / skin / steel", "body / a b / steel",
                                                         "other / a b / steel"}));
    EXPECT_EQ(partOf(mesh, 3).materialName, "steel");
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{2, 5, 3}));
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{1, 2, 3, 4}));
    ASSERT_EQ(mesh.sets.size(), 2u);
    EXPECT_EQ(mesh.sets[0].name, "a");
    EXPECT_EQ(mesh.sets[0].ids.size(), 2u);
    EXPECT_EQ(mesh.formatName, "Wavefront OBJ");
}

TEST_F(Obj, NegativeAndContinuedIndices)
{
    const kvo::Mesh mesh =
        readObj(std::string(square) + "f -5 -4 \\\r\n  -3\nf 1 \\\n 2 \\\n 6\nv 3 \\\n 3 3 1.0\nf -1 1 2\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 6})) << "a vertex that comes later";
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{6, 1, 2}));
    EXPECT_EQ(pointOf(mesh, 6), (Point{3, 3, 3}));
}

TEST_F(Obj, LinesPointsAndPolygons)
{
    const kvo::Mesh mesh = readObj(std::string(square) + "l 1 2 3\np 4 5\nf 1 2 5 3 4\nf 1 1 2\nf 1 2 3 1\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 6), (Ids{2, 3, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2, 5}));
    EXPECT_EQ(nodesOf(mesh, 5), (Ids{1, 2, 3})) << "the first corner again at the end";
    EXPECT_EQ(elementIds(mesh), (Ids{1, 3, 5, 6, 7, 8}));
    EXPECT_EQ(mesh.files[0].undrawn[0].nodes, (Ids{4, 5}));
    EXPECT_EQ(log.warningCount(kvo::warnDegeneratePolygon), 1u);
}

TEST_F(Obj, WhatIsNotReadIsListed)
{
    readObj("mtllib a.mtl\n" + std::string(square) + "vt 0 0\nvn 0 0 1\nvn 0 1 0\ns off\nf 1 2 3\n");
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "vn"), 2u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "mtllib"), 1u);
    EXPECT_EQ(elementIds(readObj(std::string(square) + "\nface 1 2\nf 1 2 3\n")), Ids{1});
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "face"), 1u) << "no statement of the format";
}

TEST_F(Obj, CommentsBehindFacesAndTheOldNameOfFaces)
{
    const kvo::Mesh mesh =
        readObj(std::string(square) + "usemtl #ff0000\nf 1 2 3 # lower\nfo 1 3 4#upper\nl 1 2 # x\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 3, 4}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(partNames(mesh), std::vector<std::string>{"#ff0000"}) << "names may begin so";
}

TEST_F(Obj, LinesThatAreNoStatementsAreCounted)
{
    const kvo::Mesh mesh =
        readObj("$ a remark\nv 0 0 0\nv 1 0 0\nv 0 1 0\n[face] 1 2 3\n\x1b[2J\x07 1\nf 1 2 3\n1 2 3\n");
    EXPECT_EQ(elementIds(mesh), Ids{1});
    EXPECT_EQ(log.warningCount("lines that are no statements"), 4u);
    EXPECT_TRUE(contains(log.warnings()[0].lines.at(0), "part.obj:1: not a statement of an OBJ file: \"$\""));
    EXPECT_TRUE(
        contains(log.warnings()[0].lines.at(2), "part.obj:6: not a statement of an OBJ file: \"\\x1B[2J\\x07\""));
}

TEST_F(Obj, BadFiles)
{
    EXPECT_EQ(error("v 0 0 0\nv 1 0\n"), "part.obj:2: a vertex has three coordinates");
    EXPECT_EQ(error("v 0 0 0\nv 1 0 x\n"), "part.obj:2: a vertex has three coordinates");
    EXPECT_EQ(error(std::string(square) + "f 1 2\n"), "part.obj:6: \"f\" with too few vertices: 2");
    EXPECT_EQ(error(std::string(square) + "f 1 2 x\n"), "part.obj:6: no number of a vertex: \"x\"");
    EXPECT_EQ(error("\n\x1b[2J\x07 1\n1 2 3\n"), "part.obj:2: not a statement of an OBJ file: \"\\x1B[2J\\x07\"")
        << "nothing of the file is one";
    const kvo::Mesh mesh = readObj(std::string(square) + "f 1 2 99999999999\nf 1 2 0\nf -9 1 2\nf 1 2 3\n");
    EXPECT_EQ(elementIds(mesh), Ids{4});
    EXPECT_EQ(log.warningCount("elements that refer to missing nodes"), 3u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "part.obj:6: vertex 99999999999 of 5 does not exist: left out"));
    expectErrorsWhenCutOff(std::string(square) + "g a\nf 1 2 3\nf 1 3 \\\n 4\n", "part.obj", false,
                           [](const std::string&) { return true; }); // a text without an end
}

TEST_F(Obj, IsKnownByContent)
{
    EXPECT_EQ(read(std::string("# x\nmtllib a\n") + square + "f 1 2 \\\n3\n", "a.txt").formatName, "Wavefront OBJ");
    EXPECT_NE(outcome("v is a letter\nf too\n", "a.txt"), "ok");
    EXPECT_NE(outcome(std::string(square) + "words\n", "a.txt"), "ok");
}

// --- PLY ---

namespace {

std::string plyHead(const std::string& format, int faces = 3)
{
    return "ply\nformat " + format +
           " 1.0\ncomment c\nelement vertex 5\nproperty float x\nproperty uchar red\nproperty float y\nproperty double "
           "z\n"
           "element extra 2\nproperty list uchar short values\nproperty int n\nelement face " +
           std::to_string(faces) +
           "\nproperty list uchar int vertex_indices\nproperty int part\nelement edge 1\nproperty int vertex1\n"
           "property int vertex2\nend_header\n";
}

std::string plyText()
{
    return plyHead("ascii") +
           "0 255 0 0\n1 255 0 0\n1 0 1 0\n0 0 1 0\n2 0 .5 0\n2 7 8 1\n0 1\n4 0 1 2 3 77\n3 1 4 2 78\n5 0 1 4 2 3 77\n"
           "0 4\n";
}

std::string plyBytes(bool bigEndian)
{
    Bytes out(bigEndian);
    out.plain(plyHead(bigEndian ? "binary_big_endian" : "binary_little_endian"));
    const float xy[5][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {2, .5}};
    for (const auto& p : xy) {
        out.floats({p[0]}).plain("r").floats({p[1]}).reals({0});
    }
    out.plain("\x02").add(std::int16_t(7)).add(std::int16_t(8)).ints({1}).plain(std::string(1, '\0')).ints({1});
    out.plain("\x04").ints({0, 1, 2, 3, 77}).plain("\x03").ints({1, 4, 2, 78}).plain("\x05").ints({0, 1, 4, 2, 3, 77});
    return out.ints({0, 4}).text;
}

} // namespace

TEST_F(Ply, TextAndBytesOfEitherOrderAreTheSame)
{
    for (const std::string& deck : {plyText(), plyBytes(true), plyBytes(false)}) {
        const kvo::Mesh mesh = readPly(deck);
        EXPECT_EQ(mesh.nodeCount(), 5u);
        EXPECT_EQ(pointOf(mesh, 5), (Point{2, .5, 0}));
        EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3, 4, 5, 6}));
        EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3, 4}));
        EXPECT_EQ(nodesOf(mesh, 2), (Ids{2, 5, 3}));
        EXPECT_EQ(nodesOf(mesh, 4), (Ids{1, 5, kvo::noNode})) << "the edge";
        EXPECT_EQ(partOf(mesh, 2).name, "part 78");
        EXPECT_EQ(partOf(mesh, 5).id, 77) << "a triangle of the pentagon";
        EXPECT_EQ(partOf(mesh, 4).name, "part") << "edges have no such property: the file's name";
        EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "element extra"), 2u);
        EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "vertex red"), 1u);
        EXPECT_EQ(mesh.formatName, "PLY");
    }
}

TEST_F(Ply, APartOfNumber0GetsANewIdAndSaysSo)
{
    const kvo::Mesh mesh =
        readPly("ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
                "property float z\nelement face 2\nproperty list uchar int vertex_indices\n"
                "property int material_index\nend_header\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2 0\n3 0 2 1 6\n");
    EXPECT_EQ(partOf(mesh, 1).name, "material_index 0");
    EXPECT_EQ(partOf(mesh, 2).id, 6);
    ASSERT_EQ(log.notes().size(), 1u);
    EXPECT_TRUE(contains(log.notes()[0], "\"material_index 0\" has the id 0")) << log.notes()[0];
    EXPECT_EQ(roundTrip(mesh).at(1).part, 7u);
}

TEST_F(Ply, StripsAndFacesBeforeVertices)
{
    const kvo::Mesh mesh =
        readPly("ply\r\nformat ascii 1.0\r\nelement tristrips 1\r\nproperty list int int vertex_indices\r\n"
                "element vertex 5\r\nproperty float x\r\nproperty float y\r\nproperty float z\r\n"
                "end_header\r\n9 0 1 2 3 -1 1 4 2 -1\r\n0 0 0\r\n1 0 0\r\n0 1 0\r\n1 1 0\r\n2 0 0\r\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{3, 2, 4}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{2, 5, 3}));
    EXPECT_EQ(partNames(mesh), std::vector<std::string>{"part"});
}

TEST_F(Ply, FilesThatEndEarly)
{
    const auto never = [](const std::string&) { return false; };
    expectErrorsWhenCutOff(plyText(), "part.ply", false, never);
    expectErrorsWhenCutOff(plyBytes(true), "part.ply", true, never);
    expectErrorsWhenCutOff(plyBytes(false), "part.ply", true, never);
}

TEST_F(Ply, FilesThatLie)
{
    const std::string deck = plyText();
    EXPECT_EQ(errorWith(deck, "vertex 5", "vertex 500"),
              "part.ply:19: 500 elements announced; the rest of the file cannot hold them");
    EXPECT_EQ(errorWith(deck, "vertex 5", "vertex five"), "part.ply:4: an element has a name and a count");
    EXPECT_EQ(errorWith(deck, "vertex 5", "vertex -5"), "part.ply:4: an element has a name and a count");
    EXPECT_EQ(errorWith(deck, "3 1 4 2 78", "300000 1 4 2 78"),
              "part.ply:27: 300000 corners announced; the rest of the file cannot hold them");
    EXPECT_EQ(errorWith(deck, "property float y", "property float b"), "part.ply:19: the vertices have no x, y and z");
    EXPECT_EQ(errorWith(deck, "property float y", "property real y"), "part.ply:7: type \"real\" is not known");
    EXPECT_EQ(errorWith(deck, "ascii", "binary"), "part.ply:2: format \"binary\" is not known");
    EXPECT_EQ(errorWith(deck, "comment c", "remark c"), "part.ply:3: not a statement of a PLY header: \"remark\"");
    EXPECT_EQ(errorWith(deck, "3 1 4 2 78", "3 1 4 9 78"), "ok");
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "part.ply:27: element 2 refers to vertex 9 of 5: left out"));
}
