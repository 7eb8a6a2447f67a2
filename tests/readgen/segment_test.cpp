// Parts made from segments of nodes, and the single-file reader that makes them.
#include <memory>

#include "modelfixture.h"
#include "outputcapture.h"
#include "readelements.h"

namespace {

struct Segment
{
    Segment(const std::string& dir, Ids nodeIds)
    {
        UIUIMap pidMap;
        ReadElements reader(dir.c_str(), "tiny", 3, &pidMap);
        OutputCapture errors(2);
        part.reset(reader.createPartForSegment(nodeIds));
        errors.stop();
        lines = splitLines(errors.all());
    }
    ~Segment()
    {
        if (part) {
            releasePart(*part);
        }
    }
    Ids corners() const
    {
        Ids ids;
        for (unsigned int k = 0; k < part->partElements.numElements; ++k) {
            ids.push_back(part->partNodes.idList[part->partElements.elmIndices[k]]);
        }
        return ids;
    }
    std::unique_ptr<PartInfoStr> part;
    std::vector<std::string> lines;
};

} // namespace

TEST(Segment, OfFourIdsAFaceIsAShellPart)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    const Segment segment(folder.path, {18, 17, 16, 15, 20, 19, 18, 17});
    ASSERT_NE(segment.part, nullptr);
    const PartInfoStr& part = *segment.part;
    EXPECT_EQ(part.partDrawType, unsigned(SHELL));
    EXPECT_EQ(part.partFlag, PART_SHOWN);
    EXPECT_EQ(part.partFileIndex, 3);
    EXPECT_EQ(part.partElements.nodesPerElement, 4u);
    EXPECT_EQ(part.partElements.numElements, 8u);
    EXPECT_EQ(segment.corners(), (Ids{18, 17, 16, 15, 20, 19, 18, 17}));
    EXPECT_EQ(Ids(part.partNodes.idList, part.partNodes.idList + part.partNodes.numNodes),
              (Ids{15, 16, 17, 18, 19, 20}));
    EXPECT_EQ(part.partExtents[0], 7.5f);
    EXPECT_EQ(part.partExtents[1], 10.0f);
    EXPECT_EQ(part.partNodes.nodeNormals, nullptr);
    EXPECT_EQ(part.partElements.elmNormals, nullptr);
    EXPECT_TRUE(segment.lines.empty());
}

TEST(Segment, TakesTrianglesAsRepeatedThirdOrZeroFourth)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    EXPECT_EQ(Segment(folder.path, {11, 12, 13, 13}).corners(), (Ids{11, 12, 13, 13}));
    EXPECT_EQ(Segment(folder.path, {11, 12, 13, 0}).corners(), (Ids{11, 12, 13, 13}));
}

TEST(Segment, OfThreeIdsAFaceIsMadeOfTriangles)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    EXPECT_EQ(Segment(folder.path, {11, 12, 13, 14, 15, 16}).corners(), (Ids{11, 12, 13, 13, 14, 15, 16, 16}));
}

TEST(Segment, OfTwelveIdsIsThreeQuadrilaterals)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    const Segment segment(folder.path, tinyNodes);
    EXPECT_EQ(segment.part->partElements.numElements, 12u);
}

TEST(Segment, OfAnyOtherLengthIsRefused)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    for (const Ids& ids : {Ids{}, Ids{11}, Ids{11, 12}, Ids{11, 12, 13, 14, 15}}) {
        const Segment segment(folder.path, ids);
        EXPECT_EQ(segment.part, nullptr);
        ASSERT_EQ(segment.lines.size(), 1u);
        EXPECT_EQ(segment.lines[0],
                  "kvoread: segment: " + std::to_string(ids.size()) + " node ids make no faces of four or three");
    }
}

TEST(Segment, WithAnUnknownNodeIsRefused)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    const Segment segment(folder.path, {11, 12, 13, 14, 11, 12, 99, 14});
    EXPECT_EQ(segment.part, nullptr);
    ASSERT_EQ(segment.lines.size(), 1u);
    EXPECT_EQ(segment.lines[0], "kvoread: segment: face 2 uses node 99, which the model does not have");
}

TEST(Segment, WithIdZeroAsACornerIsRefused)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    EXPECT_EQ(Segment(folder.path, {0, 12, 13, 14}).part, nullptr);
    EXPECT_EQ(Segment(folder.path, {11, 12, 0, 0}).part, nullptr);
}

TEST(SingleFileReader, LoadsItsOwnNodes)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    UIUIMap pidMap;
    unsigned int numParts = 0;
    PartInfoStr* parts = nullptr;
    {
        ReadElements reader(folder.path.c_str(), "tiny", 5, &pidMap);
        EXPECT_EQ(reader.getAll(&numParts, &parts), 8);
    }
    ASSERT_EQ(numParts, 4u);
    EXPECT_EQ(parts[0].partFileIndex, 5);
    EXPECT_EQ(cornersOf(parts[1], 202), (Ids{18, 19, 20, 20}));
    for (unsigned int k = 0; k < numParts; ++k) {
        releasePart(parts[k]);
    }
    delete[] parts;
}

TEST(SingleFileReader, CanBeGivenAnotherFile)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    writeTinyModel(folder.path, "twin");
    ReadIDS ids(folder.path.c_str(), "twin");
    ReadNodes nodes(folder.path.c_str(), "twin");
    ids.get("node_ids");
    nodes.getValues();
    UIUIMap pidMap;
    Ids face = {11, 12, 13, 14};
    ReadElements reader(folder.path.c_str(), "tiny", 0, &pidMap);
    PartInfoPtr own = reader.createPartForSegment(face);
    reader.setValues(folder.path.c_str(), "twin", 1, &ids, &nodes); // not owned: released by this test
    PartInfoPtr given = reader.createPartForSegment(face);
    reader.setValues(folder.path.c_str(), "tiny", 2, nullptr, nullptr);
    ASSERT_NE(own, nullptr);
    ASSERT_NE(given, nullptr);
    EXPECT_EQ(given->partFileIndex, 1);
    for (PartInfoPtr part : {own, given}) {
        releasePart(*part);
        delete part;
    }
}
