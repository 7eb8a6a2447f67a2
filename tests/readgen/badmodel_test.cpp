// Files whose checksums are right but whose contents cannot be: counts, sizes, ids and references out of range.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cmath>
#include <limits>

#include "modelfixture.h"

using namespace readgen;

namespace {

struct BadModel : testing::Test
{
    BadModel()
    {
        writeTinyModel(folder.path);
        edited = std::make_unique<EditedFolder>(folder.path + "/tiny");
    }
    FileHeader& idHeader() { return edited->header(edited->nodeIds); }
    FileHeader& coordHeader() { return edited->header(edited->nodeCoords); }
    FileHeader& partHeader() { return edited->header(edited->parts); }
    FileHeader& elementHeader() { return edited->header(edited->elements); }
    std::uint32_t* ids() { return edited->payload<std::uint32_t>(edited->nodeIds); }
    float* coords() { return edited->payload<float>(edited->nodeCoords); }
    std::uint32_t* elementIds(std::size_t k) { return block(edited->record(k).idsOffset); }
    std::uint32_t* references(std::size_t k) { return block(edited->record(k).refsOffset); }
    std::uint32_t* block(std::uint64_t offset)
    {
        return reinterpret_cast<std::uint32_t*>(&edited->elements[sizeof(FileHeader) + offset]);
    }

    // The first line of loading the sealed files, without the folder in front.
    std::string problem()
    {
        edited->sealAndSave();
        const LoadReport report = loadAndReport(folder.path);
        EXPECT_EQ(report.numParts, 0u);
        EXPECT_EQ(report.elements, 0);
        const std::string start = "kvoread: " + folder.path + "/tiny/";
        if (report.lines.empty() || report.lines[0].rfind(start, 0) != 0) {
            return "no line";
        }
        return report.lines[0].substr(start.size());
    }

    TempFolder folder;
    std::unique_ptr<EditedFolder> edited;
};

constexpr std::uint64_t hugeCount = 0xFFFFFFFFFFFFFFF0u;

} // namespace

TEST_F(BadModel, SealedWithoutChangeLoads)
{
    edited->sealAndSave();
    const LoadReport report = loadAndReport(folder.path);
    EXPECT_EQ(report.numParts, 4u);
    EXPECT_TRUE(report.lines.empty());
}

// --- Headers ---

TEST_F(BadModel, WrongHeaderSize)
{
    idHeader().headerSize = 32;
    EXPECT_EQ(problem(), "node_ids: offset 12: the header is not one of this version");
}

TEST_F(BadModel, StampsOfAnotherWriting)
{
    const std::string asked = "; was the model replaced while it was read?";
    const EditedFolder good = *edited;
    coordHeader().stamp ^= 1;
    EXPECT_EQ(problem(), "node_coords: offset 48: was written with another model than its node_ids" + asked);
    *edited = good;
    edited->header(edited->elements).stamp ^= 1;
    EXPECT_EQ(problem(), "elements: offset 48: was written with another model than its parts" + asked);
    *edited = good;
    edited->header(edited->elements).stamp ^= 1;
    edited->header(edited->parts).stamp ^= 1;
    EXPECT_EQ(problem(), "parts: offset 48: was written with another model than the nodes that were read" + asked);
}

TEST_F(BadModel, PayloadSizeBeyondTheFile)
{
    coordHeader().payloadSize = hugeCount;
    EXPECT_EQ(problem(),
              "node_coords: offset 24: announces 18446744073709551600 bytes after the header, the file has 144");
}

TEST_F(BadModel, WrongHeaderChecksum)
{
    edited->seal();
    idHeader().headerChecksum ^= 1;
    edited->save();
    EXPECT_EQ(loadAndReport(folder.path).lines[0],
              "kvoread: " + folder.path + "/tiny/node_ids: offset 56: the header does not match its checksum");
}

// --- Nodes ---

TEST_F(BadModel, NodeCountThatDoesNotFit)
{
    for (std::uint64_t count : {std::uint64_t{0}, std::uint64_t{11}, std::uint64_t{13}, hugeCount, hugeCount / 4}) {
        idHeader().count = count;
        EXPECT_EQ(problem(),
                  "node_ids: offset 16: a count of " + std::to_string(count) + " does not fit 48 bytes of 4 each");
    }
}

TEST_F(BadModel, CoordinateCountThatDoesNotFit)
{
    coordHeader().count = 13;
    EXPECT_EQ(problem(), "node_coords: offset 16: a count of 13 does not fit 144 bytes of 12 each");
}

TEST_F(BadModel, CoordinatesOfFewerNodesThanIds)
{
    edited->nodeCoords.resize(edited->nodeCoords.size() - 12);
    coordHeader().count = 11;
    coordHeader().payloadSize -= 12;
    EXPECT_EQ(problem(), "node_coords: offset 16: 11 nodes, but 12 in node_ids");
}

TEST_F(BadModel, CoordinatesWrittenWithOtherIds)
{
    edited->seal();
    coordHeader().partner ^= 1;
    coordHeader().headerChecksum = headerChecksum(coordHeader());
    edited->save();
    EXPECT_EQ(loadAndReport(folder.path).lines[0],
              "kvoread: " + folder.path + "/tiny/node_coords: offset 40: was not written together with its node_ids");
}

TEST_F(BadModel, NodeIdZero)
{
    ids()[0] = 0;
    EXPECT_EQ(problem(), "node_ids: offset 64: node id 0");
}

TEST_F(BadModel, NodeIdsNotAscending)
{
    std::swap(ids()[3], ids()[4]);
    EXPECT_EQ(problem(), "node_ids: offset 80: node ids are not ascending: 14 after 15");
}

TEST_F(BadModel, NodeIdTwice)
{
    ids()[5] = ids()[4];
    EXPECT_EQ(problem(), "node_ids: offset 84: node id 15 occurs twice");
}

TEST_F(BadModel, CoordinateThatIsNoNumber)
{
    for (float bad : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), -INFINITY}) {
        coords()[20] = bad;
        EXPECT_EQ(problem(), "node_coords: offset 64: a coordinate from here on is not a finite number");
    }
}

// A file of that length holds nothing but a hole; no memory may be taken for it.
TEST_F(BadModel, MoreNodesThanAFileMayHave)
{
    const std::uint64_t count = 0x80000000u;
    idHeader().count = count;
    idHeader().payloadSize = 4 * count;
    edited->seal();
    edited->save();
    ASSERT_EQ(truncate((folder.path + "/tiny/node_ids").c_str(), static_cast<off_t>(64 + 4 * count)), 0);
    const LoadReport report = loadAndReport(folder.path);
    EXPECT_EQ(report.ids, 0);
    EXPECT_EQ(report.lines[0], "kvoread: " + folder.path +
                                   "/tiny/node_ids: offset 16: 2147483648 nodes are more than one file may have");
}

// --- Part table ---

TEST_F(BadModel, PartCountThatDoesNotFit)
{
    partHeader().count = hugeCount;
    const std::string size = std::to_string(edited->parts.size() - sizeof(FileHeader));
    EXPECT_EQ(problem(), "parts: offset 16: a count of 18446744073709551600 parts does not fit " + size + " bytes");
}

TEST_F(BadModel, PartCountTooSmall)
{
    partHeader().count = 3;
    EXPECT_EQ(problem(), "parts: offset 24: the texts do not fill the file");
}

TEST_F(BadModel, StrideZero)
{
    edited->record(1).stride = 0;
    EXPECT_EQ(problem(),
              "parts: offset " + std::to_string(64 + 136 + 8) + ": part 20: a stride of 0 does not fit draw type 41");
}

TEST_F(BadModel, StrideOfAnotherFamily)
{
    edited->record(0).stride = 4;
    EXPECT_EQ(problem(), "parts: offset 72: part 10: a stride of 4 does not fit draw type 48");
}

TEST_F(BadModel, StrideZeroOfAnUnknownFamily)
{
    edited->record(0).drawType = 99;
    edited->record(0).stride = 0;
    EXPECT_EQ(problem(), "parts: offset 72: part 10: a stride of 0 does not fit draw type 99");
}

TEST_F(BadModel, MoreElementsThanAPartMayHave)
{
    for (std::uint64_t count : {std::uint64_t{0x20000000}, hugeCount}) {
        edited->record(0).numElements = count;
        EXPECT_EQ(problem(),
                  "parts: offset 128: part 10: " + std::to_string(count) + " elements are more than one part may have");
    }
}

TEST_F(BadModel, MoreElementsThanTheFileHas)
{
    edited->record(3).numElements = 2;
    EXPECT_EQ(problem(), "parts: offset " + std::to_string(64 + 3 * 136 + 72) + ": an element block out of place");
}

TEST_F(BadModel, ElementBlocksThatOverlap)
{
    edited->record(2).idsOffset -= 4;
    EXPECT_EQ(problem(), "parts: offset " + std::to_string(64 + 2 * 136 + 72) + ": an element block out of place");
}

TEST_F(BadModel, ElementFileThatIsTooLong)
{
    edited->elements += "more";
    elementHeader().payloadSize += 4;
    EXPECT_EQ(problem(), "elements: offset 16: 8 elements in 200 bytes, but the parts need 8 in 196");
}

TEST_F(BadModel, ElementFileWithAnotherCount)
{
    elementHeader().count = 9;
    EXPECT_EQ(problem(), "elements: offset 16: 9 elements in 196 bytes, but the parts need 8 in 196");
}

TEST_F(BadModel, ElementFileOfOtherParts)
{
    edited->seal();
    elementHeader().partner ^= 1;
    elementHeader().headerChecksum = headerChecksum(elementHeader());
    edited->save();
    EXPECT_EQ(loadAndReport(folder.path).lines[0],
              "kvoread: " + folder.path + "/tiny/elements: offset 40: was not written together with its parts");
}

TEST_F(BadModel, UnknownFlags)
{
    edited->record(0).flags = 4;
    EXPECT_EQ(problem(), "parts: offset 76: part 10: unknown flags");
}

TEST_F(BadModel, TextOutOfPlace)
{
    edited->record(1).textOffset = 0;
    EXPECT_EQ(problem(), "parts: offset " + std::to_string(64 + 136 + 56) + ": a text out of place");
}

TEST_F(BadModel, TextBeyondTheFile)
{
    edited->record(3).nameLength = 0xFFFFFFFF;
    EXPECT_EQ(problem(), "parts: offset 24: the texts do not fill the file");
}

TEST_F(BadModel, PartIdTwice)
{
    edited->record(3).id = 10;
    EXPECT_EQ(problem(), "parts: offset 64: part id 10 occurs twice");
}

// --- Elements ---

TEST_F(BadModel, ElementIdTwice)
{
    elementIds(1)[1] = 201;
    EXPECT_EQ(problem(), "elements: offset " + std::to_string(64 + edited->record(1).idsOffset + 4) +
                             ": part 20: element id 201 occurs twice");
}

TEST_F(BadModel, ElementIdTwiceAmongUnsortedOnes)
{
    elementIds(0)[0] = 103; // 103, 102, 103
    EXPECT_EQ(problem(), "elements: offset 72: part 10: element id 103 occurs twice");
}

TEST_F(BadModel, NodeThatNoFileHas)
{
    references(1)[5] = 99;
    EXPECT_EQ(problem(), "elements: offset " + std::to_string(64 + edited->record(1).refsOffset + 20) +
                             ": part 20, element 202: node 99 is in no file of the model");
}

TEST_F(BadModel, EmptySlotWhereNoneMayBe)
{
    references(1)[2] = noNode;
    EXPECT_NE(problem().find("part 20, element 201: node 4294967295 is in no file"), std::string::npos);
    references(1)[2] = 0;
    EXPECT_NE(problem().find("part 20, element 201: node 0 is in no file"), std::string::npos);
}

TEST_F(BadModel, IndexPastTheNodes)
{
    edited->record(3).flags = partRefsByIndex;
    references(3)[0] = 0;
    references(3)[1] = 12;
    EXPECT_NE(problem().find("part 40, element 401: node index 12 is past the nodes of its file"), std::string::npos);
}

TEST_F(BadModel, NegativeIndex)
{
    edited->record(3).flags = partRefsByIndex;
    references(3)[0] = 0x80000000u;
    EXPECT_NE(problem().find("node index 2147483648 is past"), std::string::npos);
}

TEST_F(BadModel, DamageInOneBlockNamesItsPart)
{
    edited->seal();
    references(2)[0] ^= 1;
    edited->save();
    const LoadReport report = loadAndReport(folder.path);
    ASSERT_EQ(report.lines.size(), 1u);
    EXPECT_EQ(report.lines[0], "kvoread: " + folder.path + "/tiny/elements: offset " +
                                   std::to_string(64 + edited->record(2).refsOffset) +
                                   ": the node references of part 30 do not match their checksum");
}
