// VTK's XML files.
#include <zlib.h>

#include "hostile.h"
#include "node_surplus.h"
#include "vtk/vtk_reader.h"

namespace {

class Vtu : public HostileTest
{
protected:
    kvo::Mesh readVtu(const std::string& text) { return read(text, "grid.vtu"); }
    std::string error(const std::string& text) { return readError(text, "grid.vtu"); }
    std::string errorWith(std::string text, const std::string& old, const std::string& instead)
    {
        const std::size_t at = text.find(old);
        EXPECT_NE(at, std::string::npos) << old;
        return outcome(text.replace(at, old.size(), instead), "grid.vtu");
    }
};

std::string file(const std::string& pieces, const std::string& attributes = "",
                 const std::string& type = "UnstructuredGrid", const std::string& behind = "")
{
    return "<?xml version=\"1.0\"?>\n<VTKFile type=\"" + type + "\" version=\"0.1\" " + attributes + ">\n<" + type +
           ">\n" + pieces + "</" + type + ">\n" + behind + "</VTKFile>\n";
}

std::string textArray(const std::string& type, const std::string& name, const std::string& values, int components = 1)
{
    return "<DataArray type=\"" + type + "\" Name=\"" + name + "\" NumberOfComponents=\"" + std::to_string(components) +
           "\" format=\"ascii\">\n" + values + "\n</DataArray>\n";
}

// A hexahedron below a wedge, a line and a vertex: points 0 to 9.
const char* const coordinates = "0 0 0 1 0 0 1 1 0 0 1 0\n0 0 1 1 0 1 1 1 1 0 1 1\n.5 0 2 .5 1 2";

std::string cells(const std::string& connectivity, const std::string& offsets, const std::string& types)
{
    return "<Cells>\n" + textArray("Int64", "connectivity", connectivity) + textArray("Int64", "offsets", offsets) +
           textArray("UInt8", "types", types) + "</Cells>\n";
}

std::string piece(int points, int cellCount, const std::string& inside)
{
    return "<Piece NumberOfPoints=\"" + std::to_string(points) + "\" NumberOfCells=\"" + std::to_string(cellCount) +
           "\">\n" + inside + "</Piece>\n";
}

std::string points(const std::string& values)
{
    return "<Points>\n" + textArray("Float32", "Points", values, 3) + "</Points>\n";
}

std::string someCells()
{
    return cells("0 1 2 3 4 5 6 7  4 5 8 7 6 9  0 8  9", "8 14 16 17", "12 13 3 1");
}

std::string textDeck(const std::string& data = "")
{
    return file(piece(10, 4, points(coordinates) + someCells() + data));
}

// --- the same with bytes ---

std::string base64(const std::string& bytes)
{
    static const char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t k = 0; k < bytes.size(); k += 3) {
        std::uint32_t group = 0;
        for (std::size_t c = 0; c < 3; ++c) {
            group = group << 8 | (k + c < bytes.size() ? static_cast<unsigned char>(bytes[k + c]) : 0);
        }
        for (int c = 0; c < 4; ++c) {
            text += k + static_cast<std::size_t>(c) > bytes.size() ? '=' : digits[group >> (18 - 6 * c) & 63];
        }
    }
    return text;
}

struct Encoding
{
    bool bigEndian;
    int headerBytes;
    bool zlib;
    bool appended;
    bool base64;
    bool headerApart; // is encoded by itself
    std::size_t blockBytes = 32;
};

class Encoder
{
public:
    explicit Encoder(const Encoding& encoding) : encoding(encoding) {}

    std::pair<std::string, std::size_t> zeros; // this array is so many bytes of 0 instead

    // The text of an array: its values, or where they are in the appended data.
    std::string array(const std::string& type, const std::string& name, const std::string& values, int components = 1)
    {
        const std::string bytes = name == zeros.first ? std::string(zeros.second, '\0') : values;
        const std::string tag = "<DataArray type=\"" + type + "\" Name=\"" + name + "\" NumberOfComponents=\"" +
                                std::to_string(components) + "\" format=\"";
        std::string head = encoding.zlib ? compressedHead(bytes) : number(bytes.size());
        std::string body = encoding.zlib ? compressedBody(bytes) : bytes;
        if (encoding.base64 && encoding.headerApart) {
            head = base64(head);
            body = base64(body);
        } else if (encoding.base64) {
            head = base64(head + body);
            body.clear();
        }
        if (!encoding.appended) {
            return tag + "binary\">\n  " + head + body + "\n</DataArray>\n";
        }
        const std::string offset = std::to_string(appended.size());
        appended += head + body;
        return tag + "appended\" offset=\"" + offset + "\"/>\n";
    }

    std::string deck()
    {
        Bytes xyz(encoding.bigEndian);
        xyz.floats({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1, .5, 0, 2, .5, 1, 2});
        Bytes connectivity(encoding.bigEndian);
        connectivity.ints({0, 1, 2, 3, 4, 5, 6, 7, 4, 5, 8, 7, 6, 9, 0, 8, 9});
        Bytes offsets(encoding.bigEndian);
        offsets.longs({8, 14, 16, 17});
        Bytes types;
        types.plain(std::string("\x0c\x0d\x03\x01", 4));
        Bytes ids(encoding.bigEndian);
        ids.longs({101, 102, 103, 104, 105, 106, 107, 108, 109, 110});
        std::string inside = "<PointData>\n" + array("Int64", "GlobalNodeId", ids.text); // the first appended bytes
        inside += "</PointData>\n<Points>" + array("Float32", "Points", xyz.text, 3) + "</Points>\n<Cells>\n";
        inside += array("Int32", "connectivity", connectivity.text);
        inside += array("Int64", "offsets", offsets.text);
        inside += array("UInt8", "types", types.text) + "</Cells>\n";
        const std::string behind = !encoding.appended
                                       ? ""
                                       : "<AppendedData encoding=\"" + std::string(encoding.base64 ? "base64" : "raw") +
                                             "\">\n _" + appended + "\n</AppendedData>\n";
        return file(piece(10, 4, inside),
                    std::string("byte_order=\"") + (encoding.bigEndian ? "BigEndian" : "LittleEndian") + "\"" +
                        (encoding.headerBytes == 8 ? " header_type=\"UInt64\"" : "") +
                        (encoding.zlib ? " compressor=\"vtkZLibDataCompressor\"" : ""),
                    "UnstructuredGrid", behind);
    }

private:
    std::string number(std::uint64_t value) const
    {
        Bytes bytes(encoding.bigEndian);
        return (encoding.headerBytes == 8 ? bytes.add(value) : bytes.add(static_cast<std::uint32_t>(value))).text;
    }

    std::vector<std::string> blocksOf(const std::string& bytes) const
    {
        std::vector<std::string> blocks;
        for (std::size_t k = 0; k < bytes.size(); k += encoding.blockBytes) {
            const std::string block = bytes.substr(k, encoding.blockBytes);
            uLongf size = compressBound(block.size());
            std::string packed(size, '\0');
            compress(reinterpret_cast<Bytef*>(&packed[0]), &size, reinterpret_cast<const Bytef*>(block.data()),
                     block.size());
            blocks.push_back(packed.substr(0, size));
        }
        return blocks;
    }

    std::string compressedHead(const std::string& bytes) const
    {
        const std::vector<std::string> blocks = blocksOf(bytes);
        std::string head =
            number(blocks.size()) + number(encoding.blockBytes) + number(bytes.size() % encoding.blockBytes);
        for (const std::string& block : blocks) {
            head += number(block.size());
        }
        return head;
    }

    std::string compressedBody(const std::string& bytes) const
    {
        std::string body;
        for (const std::string& block : blocksOf(bytes)) {
            body += block;
        }
        return body;
    }

    Encoding encoding;
    std::string appended;
};

} // namespace

TEST_F(Vtu, PartsAreCellTypesAndIdsCount)
{
    const kvo::Mesh mesh = readVtu(textDeck());
    EXPECT_EQ(mesh.nodeCount(), 10u);
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 9, kvo::noNode}));
    EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"VTK_HEXAHEDRON", "VTK_WEDGE", "VTK_LINE"}));
    EXPECT_EQ(partOf(mesh, 1).id, 12);
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "VTK_VERTEX"), 1u);
    EXPECT_EQ(mesh.files[0].undrawn[0].nodes, Ids{10});
    EXPECT_EQ(mesh.formatName, "VTK XML");
}

TEST_F(Vtu, WedgesOfEitherHandAreTheSame)
{
    // The second wedge of each deck goes round the other way.
    const std::string one = "4 5 8 7 6 9";
    const std::string other = "4 8 5 7 9 6";
    const kvo::Mesh mesh = readVtu(file(piece(10, 2, points(coordinates) + cells(one + " " + other, "6 12", "13 13"))));
    const Ids first = nodesOf(mesh, 1);
    const Ids second = nodesOf(mesh, 2);
    EXPECT_EQ(first, second);
    ASSERT_EQ(log.notes().size(), 1u);
    EXPECT_TRUE(contains(log.notes()[0], "1 wedges have their triangles the other way round"));
}

TEST_F(Vtu, AllEncodingsAreTheSame)
{
    int decks = 0;
    for (int bits = 0; bits < 64; ++bits) {
        const Encoding encoding = {(bits & 1) != 0, bits & 2 ? 8 : 4, (bits & 4) != 0,
                                   (bits & 8) != 0, (bits & 16) != 0, (bits & 32) != 0};
        if ((!encoding.appended && !encoding.base64) || (!encoding.base64 && encoding.headerApart)) {
            continue; // no such files
        }
        ++decks;
        const kvo::Mesh mesh = readVtu(Encoder(encoding).deck());
        EXPECT_EQ(nodesOf(mesh, 1), (Ids{101, 102, 103, 104, 105, 106, 107, 108})) << bits;
        EXPECT_EQ(nodesOf(mesh, 3), (Ids{101, 109, kvo::noNode})) << bits;
        EXPECT_EQ(pointOf(mesh, 110), (Point{.5, 1, 2})) << bits;
        EXPECT_TRUE(log.warnings().empty()) << bits;
    }
    EXPECT_EQ(decks, 40);
}

TEST_F(Vtu, TheOnlyBlockMayBeSmallerThanBlocksAre)
{
    for (const std::size_t blockBytes : {std::size_t(32768), std::size_t(1) << 22}) {
        const kvo::Mesh mesh = readVtu(Encoder({false, 4, true, false, true, true, blockBytes}).deck());
        EXPECT_EQ(nodesOf(mesh, 3), (Ids{101, 109, kvo::noNode}));
        EXPECT_EQ(pointOf(mesh, 110), (Point{.5, 1, 2}));
    }
}

TEST_F(Vtu, EmptyPiecesWithCompression)
{
    // No block, whose size would be 32768.
    const std::string none = base64(Bytes().ints({0, 32768, 0}).text);
    const std::string empty = "<Piece NumberOfPoints=\"0\" NumberOfCells=\"0\"><Points><DataArray type=\"Float32\" "
                              "NumberOfComponents=\"3\" format=\"binary\">" +
                              none + "</DataArray></Points></Piece>\n";
    std::string deck = Encoder({false, 4, true, false, true, true}).deck();
    deck.insert(deck.find("<Piece"), empty);
    EXPECT_EQ(elementIds(readVtu(deck)), (Ids{1, 2, 3}));
}

TEST_F(Vtu, CommentsAndKeysStandBesideTheValues)
{
    const std::string key = "<InformationKey name=\"RANGE\" location=\"data\" length=\"1\"><Value index=\"0\">7</Value>"
                            "</InformationKey>";
    const std::string packed = Encoder({false, 4, false, false, true, false}).deck();
    for (const std::string& deck : {textDeck(), packed}) {
        for (const std::string& aside : {key, key + " " + key, std::string("<!-- 1 2 -->"), "<!-- a -->" + key}) {
            for (const bool before : {true, false}) {
                std::string text = deck;
                const std::size_t tag = text.find("Name=\"Points\"");
                const std::size_t at = before ? text.find('>', tag) + 1 : text.find("</DataArray>", tag);
                const kvo::Mesh mesh = readVtu(text.insert(at, aside));
                EXPECT_EQ(mesh.nodeCount(), 10u) << aside;
                EXPECT_EQ(mesh.files[0].xyz[29], 2.0) << aside;
            }
        }
    }
}

TEST_F(Vtu, IdsAndBlocks)
{
    const std::string data =
        "<PointData GlobalIds=\"my ids\">" + textArray("Int32", "my ids", "11 12 13 14 15 16 17 18 19 20") +
        textArray("Float64", "temperature", "nan 1 2 3 4 5 6 7 8 9") + "</PointData><CellData>" +
        textArray("Int32", "GlobalElementId", "701 702 703 704") + textArray("Int32", "MaterialIds", "1 1 1 1") +
        textArray("Int32", "ObjectId", "5 6 5 5") + textArray("Float32", "region", "1 2 3 4") +
        textArray("Int32", "pid", "1 2 3", 3) + "</CellData>";
    const kvo::Mesh mesh = readVtu(textDeck(data));
    EXPECT_EQ(elementIds(mesh), (Ids{701, 702, 703}));
    EXPECT_EQ(nodesOf(mesh, 703), (Ids{11, 19, kvo::noNode}));
    EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"ObjectId 5", "ObjectId 6"}));
    EXPECT_EQ(partOf(mesh, 702).id, 6);
    EXPECT_EQ(log.listCount(kvo::listVtkArrays, "point array temperature"), 1u);
    EXPECT_EQ(log.listCount(kvo::listVtkArrays, "cell array MaterialIds"), 1u) << "ObjectId is the better one";
    EXPECT_EQ(log.listCount(kvo::listVtkArrays, "cell array region"), 1u) << "no whole numbers";
    EXPECT_EQ(log.listCount(kvo::listVtkArrays, "cell array pid"), 1u) << "more than one component";
}

TEST_F(Vtu, ABlockOfNumber0IsAPartWithANewIdAndSaysSo)
{
    const kvo::Mesh mesh = readVtu(textDeck("<CellData>" + textArray("Int32", "PartId", "0 4 0 4") + "</CellData>"));
    EXPECT_EQ(partOf(mesh, 1).name, "PartId 0");
    ASSERT_FALSE(log.notes().empty());
    EXPECT_TRUE(contains(log.notes()[0], "\"PartId 0\" has the id 0")) << log.notes()[0];
    const auto elements = roundTrip(mesh);
    EXPECT_EQ(elements.at(1).part, 5u);
    EXPECT_EQ(elements.at(2).part, 4u);
}

TEST_F(Vtu, IdsThatCannotBeUsedAreReplaced)
{
    const std::string data = "<PointData>" + textArray("Int32", "GlobalNodeId", "0 1 2 3 4 5 6 7 8 9") + "</PointData>";
    const kvo::Mesh mesh = readVtu(textDeck(data));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 9, kvo::noNode}));
    EXPECT_EQ(log.warningCount("id arrays that cannot be used"), 1u);
}

TEST_F(Vtu, IdsThatRepeatAreNoNumbering)
{
    const std::string cellIds = "<CellData>" + textArray("Int32", "GlobalElementId", "7 7 8 9") + "</CellData>";
    EXPECT_EQ(elementIds(readVtu(textDeck(cellIds))), (Ids{1, 2, 3}));
    ASSERT_EQ(log.warningCount("id arrays that cannot be used"), 1u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "cells are no numbering, since two have the id 7"));
    const std::string pointIds =
        "<PointData>" + textArray("Int32", "GlobalNodeId", "1 2 3 4 5 6 7 8 9 1") + "</PointData>";
    const kvo::Mesh mesh = readVtu(textDeck(pointIds));
    EXPECT_EQ(mesh.nodeCount(), 10u);
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{5, 9, 6, 8, 10, 7})) << "turned; its last point is the tenth";
}

TEST_F(Vtu, IdsThatNoModelHoldsAreReplaced)
{
    const auto ids = [this](const std::string& last) {
        return elementIds(
            readVtu(textDeck("<CellData>" + textArray("Int64", "GlobalElementId", "5 6 7 " + last) + "</CellData>")));
    };
    EXPECT_EQ(ids("2147483647"), (Ids{5, 6, 7}));
    EXPECT_EQ(ids("2147483648"), (Ids{1, 2, 3}));
    EXPECT_EQ(ids("0"), (Ids{1, 2, 3}));
    EXPECT_EQ(ids("-4"), (Ids{1, 2, 3}));
    EXPECT_EQ(ids(""), (Ids{1, 2, 3}));
}

TEST_F(Vtu, RealNumbersAreNoIds)
{
    const kvo::Mesh mesh =
        readVtu(textDeck("<PointData GlobalIds=\"p\">" + textArray("Float32", "p", "1.5 2 3 4 5 6 7 8 9 nan") +
                         "</PointData><CellData GlobalIds=\"c\">" + textArray("Float64", "c", "11 12 13 1e99") +
                         textArray("Int32", "GlobalElementId", "1 2 3 4 5 6 7 8", 2) + "</CellData>"));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3}));
    EXPECT_EQ(mesh.files[0].nodeIds.back(), 10);
    for (const char* array : {"point array p", "cell array c", "cell array GlobalElementId"}) {
        EXPECT_EQ(log.listCount(kvo::listVtkArrays, array), 1u) << array;
    }
}

TEST_F(Vtu, EachPieceMayNumberItsOwn)
{
    const auto triangle = [](const std::string& xyz, const std::string& data) {
        return piece(3, 1, points(xyz) + cells("0 1 2", "3", "5") + data);
    };
    const std::string one = "<CellData>" + textArray("Int32", "GlobalElementId", "1") + "</CellData>";
    const std::string own = "<PointData>" + textArray("Int32", "GlobalNodeId", "1 2 3") + "</PointData>";
    kvo::Mesh mesh = readVtu(file(triangle("0 0 0 1 0 0 0 1 0", one) + triangle("1 0 0 1 1 0 0 1 0", one)));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2}));
    mesh = readVtu(file(triangle("0 0 0 1 0 0 0 1 0", own) + triangle("5 0 0 6 0 0 5 1 0", own)));
    EXPECT_EQ(mesh.nodeCount(), 6u) << "other places: other points";
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{4, 5, 6}));
    EXPECT_EQ(log.warningCount("id arrays that cannot be used"), 1u);
    mesh = readVtu(file(triangle("0 0 0 1 0 0 0 1 0", own) + triangle("0 0 0 1.0000001 0 0 0 1 0", own)));
    EXPECT_EQ(mesh.nodeCount(), 3u) << "as far as single precision tells";
    mesh = readVtu(file(triangle("0 0 0 1 0 0 0 1 0", own) + triangle("5 0 0 6 0 0 5 1 0", "")));
    EXPECT_EQ(mesh.nodeCount(), 6u) << "not all have ids";
}

TEST_F(Vtu, CellsOfTooManyPointsHaveTheirFirst)
{
    const kvo::Mesh mesh = readVtu(
        file(piece(10, 3, points(coordinates) + cells("0 1 2 3 4  0 1 4  0 1 4 5 6 7 8", "5 8 15", "9 10 10"))));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2, 5, 6}));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 3})) << "too few are none";
    ASSERT_EQ(log.warningCount(kvo::warnMoreNodes), 2u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "VTK_QUAD element 1 has 4 nodes, 5 are given"));
}

TEST_F(Vtu, BlanksAroundNumbersMeanNothing)
{
    std::string deck = textDeck();
    for (const char* value : {"10", "4", "3", "UnstructuredGrid", "Float32", "ascii"}) {
        const std::string quoted = std::string("\"") + value + "\"";
        const std::size_t at = deck.find(quoted);
        ASSERT_NE(at, std::string::npos) << value;
        deck.replace(at, quoted.size(), "\"   " + std::string(value) + " \"");
    }
    EXPECT_EQ(elementIds(readVtu(deck)), (Ids{1, 2, 3}));
    EXPECT_TRUE(contains(errorWith(deck, "   10 ", "   1 0 "), "NumberOfPoints=\"1 0\" is no number"));
}

// A block table may announce a thousand times the bytes that the file has.
TEST_F(Vtu, BlocksOfMoreThanIsNeededAreNotInflated)
{
    const Encoding encoding = {false, 4, true, true, false, false, 1 << 16};
    for (const char* array : {"Points", "connectivity", "offsets", "types", "GlobalNodeId"}) {
        Encoder encoder(encoding);
        encoder.zeros = {array, 1 << 20};
        const std::string message = outcome(encoder.deck(), "grid.vtu");
        EXPECT_TRUE(contains(message, "\"" + std::string(array) + "\": its blocks announce 1048576 bytes, "))
            << message;
        EXPECT_TRUE(contains(message, " are needed")) << message;
    }
}

TEST_F(Vtu, PiecesShareThePointsThatHaveTheSameId)
{
    const auto triangle = [](const std::string& xyz, const std::string& ids, const std::string& ghost) {
        return piece(3, 1,
                     points(xyz) + cells("0 1 2", "3", "5") + "<PointData>" + textArray("Int64", "GlobalNodeId", ids) +
                         "</PointData><CellData>" + textArray("UInt8", "vtkGhostType", ghost) + "</CellData>");
    };
    const kvo::Mesh mesh =
        readVtu(file(triangle("0 0 0 1 0 0 0 1 0", "10 20 30", "0") + triangle("1 0 0 1 1 0 0 1 0", "20 40 30", "0") +
                     triangle("1 0 0 1 1 0 0 1 0", "20 40 30", "1")));
    EXPECT_EQ(mesh.nodeCount(), 4u);
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{20, 40, 30}));
    EXPECT_EQ(log.listCount("ghost cells left out", "vtkGhostType"), 1u);
    EXPECT_TRUE(log.warnings().empty());
    // Without ids nothing is known of what they share.
    EXPECT_EQ(readVtu(file(piece(3, 1, points("0 0 0 1 0 0 0 1 0") + cells("0 1 2", "3", "5")) +
                           piece(3, 1, points("1 0 0 1 1 0 0 1 0") + cells("0 1 2", "3", "5"))))
                  .nodeCount(),
              6u);
}

TEST_F(Vtu, PixelsVoxelsAndHigherOrder)
{
    const kvo::Mesh mesh = readVtu(file(piece(
        10, 3, points(coordinates) + cells("0 1 3 2  0 1 3 2 4 5 7 6  0 1 4 8 9 2 3 5 6 7", "4 12 22", "8 11 24"))));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2, 5, 9}));
}

TEST_F(Vtu, PolygonsStripsAndLinesAreDivided)
{
    // A pentagon, a strip of two triangles, a line of three points, a polygon that is a quad, one that is a triangle.
    const kvo::Mesh mesh = readVtu(file(piece(
        10, 5, points(coordinates) + cells("0 1 5 8 4  0 1 3 2  0 1 2  0 1 2 3  4 5 6", "5 9 12 16 19", "7 6 4 7 7"))));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 6}));
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(nodesOf(mesh, 5), (Ids{5, 6, 7}));
    EXPECT_EQ(nodesOf(mesh, 6), (Ids{1, 6, 9}));
    EXPECT_EQ(nodesOf(mesh, 7), (Ids{1, 9, 5}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 4}));
    EXPECT_EQ(nodesOf(mesh, 8), (Ids{4, 2, 3})) << "turned as the first";
    EXPECT_EQ(nodesOf(mesh, 9), (Ids{2, 3, kvo::noNode}));
    EXPECT_EQ(partOf(mesh, 6).name, "VTK_POLYGON");
    ASSERT_EQ(log.notes().size(), 1u);
    EXPECT_TRUE(contains(log.notes()[0], "of others there are 4, with ids from 6 on")) << log.notes()[0];
}

TEST_F(Vtu, PolyData)
{
    const auto lists = [](const std::string& element, const std::string& connectivity, const std::string& offsets) {
        return "<" + element + ">" + textArray("Int32", "connectivity", connectivity) +
               textArray("Int32", "offsets", offsets) + "</" + element + ">";
    };
    const std::string text =
        file("<Piece NumberOfPoints=\"10\" NumberOfVerts=\"1\" NumberOfLines=\"1\" NumberOfStrips=\"0\" "
             "NumberOfPolys=\"2\">" +
                 points(coordinates) + lists("Verts", "9", "1") + lists("Lines", "0 1", "2") +
                 lists("Polys", "0 1 2 4 5 6 7", "3 7") + "<CellData>" + textArray("Int32", "GroupIds", "1 1 2 3") +
                 "</CellData></Piece>",
             "", "PolyData");
    const kvo::Mesh mesh = readVtu(text);
    EXPECT_EQ(elementIds(mesh), (Ids{2, 3, 4}));
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{5, 6, 7, 8}));
    EXPECT_EQ(partOf(mesh, 4).name, "GroupIds 3");
}

TEST_F(Vtu, WhatCannotBeDrawnIsCounted)
{
    const kvo::Mesh mesh = readVtu(file(piece(
        10, 5, points(coordinates) + cells("0 1 2 3  0 1 2  0 1 99  0 1 2  4 5 6", "4 7 10 13 16", "42 99 5 10 5"))));
    EXPECT_EQ(elementIds(mesh), Ids{5});
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "VTK_POLYHEDRON"), 1u);
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "cell type 99"), 1u);
    EXPECT_EQ(log.warningCount(kvo::warnMissingNode), 1u);
    EXPECT_EQ(log.warningCount("cells with a wrong number of points"), 1u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "grid.vtu:4: cell 3 refers to point 99 of 10: left out"));
}

TEST_F(Vtu, FilesThatEndEarly)
{
    const auto never = [](const std::string&) { return false; };
    expectErrorsWhenCutOff(textDeck(), "grid.vtu", false, never);
    expectErrorsWhenCutOff(Encoder({false, 4, true, true, false, false}).deck(), "grid.vtu", false, never);
    expectErrorsWhenCutOff(Encoder({false, 8, false, true, true, false}).deck(), "grid.vtu", false, never);
}

TEST_F(Vtu, FilesThatLie)
{
    const std::string deck = textDeck();
    EXPECT_EQ(errorWith(deck, "NumberOfPoints=\"10\"", "NumberOfPoints=\"11\""),
              "grid.vtu:6: 11 points announced, 30 coordinates are there");
    EXPECT_EQ(errorWith(deck, "NumberOfPoints=\"10\"", "NumberOfPoints=\"99999999999\""),
              "grid.vtu:4: NumberOfPoints=\"99999999999\" is more than can be read");
    EXPECT_EQ(errorWith(deck, "NumberOfCells=\"4\"", "NumberOfCells=\"5\""),
              "grid.vtu:4: 5 cells announced, 4 offsets and 4 types are there");
    EXPECT_EQ(errorWith(deck, "NumberOfCells=\"4\"", "NumberOfCells=\"four\""),
              "grid.vtu:4: NumberOfCells=\"four\" is no number");
    EXPECT_EQ(errorWith(deck, "8 14 16 17", "8 14 16 18"),
              "grid.vtu:4: the cells' offsets do not fit the 17 points that the cells have");
    EXPECT_EQ(errorWith(deck, "8 14 16 17", "8 4 16 17"),
              "grid.vtu:4: the cells' offsets do not fit the 17 points that the cells have");
    EXPECT_EQ(errorWith(deck, "0 0 1 1", "0 zero 1 1"), "grid.vtu:7: array \"Points\": no number: \"zero\"");
    EXPECT_EQ(errorWith(deck, "0 0 1 1", "0 nan 1 1"), "grid.vtu:4: a point's coordinate is no number");
    EXPECT_EQ(errorWith(deck, "connectivity", "connections"),
              "grid.vtu:4: the piece has no array \"connectivity\" in <Cells>");
    EXPECT_EQ(errorWith(deck, "format=\"ascii\"", "format=\"appended\""),
              "grid.vtu:6: array \"Points\": its bytes begin at byte 0 of the appended data, which do not reach there");
    EXPECT_EQ(errorWith(deck, "UnstructuredGrid\"", "ImageData\""),
              "grid.vtu:2: a VTK file of type \"ImageData\" is not read; known are UnstructuredGrid and PolyData");
    EXPECT_TRUE(contains(errorWith(deck, "</Cells>", "</Cell>"), "grid.vtu:22: damaged or cut off: mismatched tag"));
    EXPECT_EQ(error("<VTKFile type=\"UnstructuredGrid\"></VTKFile>"), "grid.vtu:1: the file has no <Piece>");
    const std::string packed = Encoder({false, 4, true, true, false, false}).deck();
    EXPECT_TRUE(contains(errorWith(packed, "vtkZLib", "vtkLZ4"), "compressor vtkLZ4DataCompressor is not known"));
    EXPECT_TRUE(contains(errorWith(packed, std::string("_\x03\x00\x00\x00", 5), std::string("_\xff\xff\xff\x7f", 5)),
                         "2147483647 blocks announced; the rest of the file cannot hold them"));
    EXPECT_TRUE(contains(errorWith(packed, std::string("_\x03\x00\x00\x00\x20\x00\x00\x00", 9),
                                   std::string("_\x03\x00\x00\x00\x00\x00\x00\xf0", 9)),
                         "the sizes of its blocks do not fit the file"));
    EXPECT_TRUE(contains(errorWith(packed, "offset=\"0\"", "offset=\"9999999\""), "begin at byte 9999999"));
    const std::string plain = Encoder({false, 4, false, true, false, false}).deck();
    EXPECT_TRUE(contains(errorWith(plain, std::string("_\x50\x00\x00\x00", 5), std::string("_\x50\x00\x00\x7f", 5)),
                         "bytes announced"));
}
