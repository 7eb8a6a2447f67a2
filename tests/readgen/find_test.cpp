// ReadIDS and the order of ids.
#include <filesystem>

#include "modelfixture.h"
#include "outputcapture.h"
#include "readids.h"

namespace {

std::string printedBy(ReadIDS& ids, unsigned int id)
{
    OutputCapture output(1);
    ids.find(id);
    std::cout.flush();
    return output.all();
}

} // namespace

TEST(CompareIds, IsAscendingAndUnsigned)
{
    const unsigned int ids[] = {1, 2, 0xFFFFFFFFu};
    EXPECT_LT(compareIDs(&ids[0], &ids[1]), 0);
    EXPECT_GT(compareIDs(&ids[1], &ids[0]), 0);
    EXPECT_EQ(compareIDs(&ids[1], &ids[1]), 0);
    EXPECT_LT(compareIDs(&ids[0], &ids[2]), 0);
    EXPECT_GT(compareIDs(&ids[2], &ids[0]), 0);
}

TEST(ReadIds, FindsEveryIdAtItsPlace)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    ReadIDS ids(folder.path.c_str(), "tiny");
    ASSERT_EQ(ids.get("node_ids"), 12);
    for (unsigned int k = 0; k < 12; ++k) {
        EXPECT_EQ(ids.idList[k], tinyNodes[k]);
        EXPECT_EQ(ids.find(tinyNodes[k]), k);
    }
}

TEST(ReadIds, ReadsNothingBeforeGet)
{
    ReadIDS ids("/nowhere", "nothing");
    EXPECT_EQ(ids.numIDs, 0u);
    EXPECT_EQ(ids.idList, nullptr);
    EXPECT_STREQ(ids.dirName, "/nowhere");
    EXPECT_STREQ(ids.modelName, "nothing");
}

TEST(ReadIds, KeepsCopiesOfItsNames)
{
    std::string dir = "dir", file = "file";
    ReadIDS ids(dir.c_str(), file.c_str());
    dir[0] = file[0] = 'X';
    EXPECT_STREQ(ids.dirName, "dir");
    ids.set(ids.modelName, ids.dirName);
    EXPECT_STREQ(ids.dirName, "file");
    EXPECT_STREQ(ids.modelName, "dir");
}

TEST(ReadIds, GetReplacesWhatItHeld)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    ReadIDS ids(folder.path.c_str(), "tiny");
    EXPECT_EQ(ids.get("node_ids"), 12);
    EXPECT_EQ(ids.get("node_ids"), 12);
    std::filesystem::remove(folder.path + "/tiny/node_ids");
    std::filesystem::remove(folder.path + "/tiny/node_coords");
    EXPECT_EQ(ids.get("node_ids"), 0);
    EXPECT_EQ(ids.numIDs, 0u);
}

TEST(ReadIds, AbsentIdIsNegativeAndPrintedOncePerCall)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    ReadIDS ids(folder.path.c_str(), "tiny");
    ids.get("node_ids");
    EXPECT_EQ(printedBy(ids, 99), "Node ID <99> not found\n");
    EXPECT_EQ(printedBy(ids, 99), "Node ID <99> not found\n");
    EXPECT_EQ(printedBy(ids, 4294967295u), "Node ID <4294967295> not found\n");
    OutputCapture quiet(1);
    EXPECT_EQ(ids.find(99), 0x80000000u);
    EXPECT_LT(static_cast<int>(ids.find(10)), 0);
    std::cout.flush();
}

TEST(ReadIds, IdZeroIsNotFoundWithoutAWord)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    ReadIDS ids(folder.path.c_str(), "tiny");
    ids.get("node_ids");
    EXPECT_EQ(printedBy(ids, 0), "");
    EXPECT_EQ(ids.find(0), 0x80000000u);
}

TEST(ReadIds, EmptyListFindsNothing)
{
    ReadIDS ids;
    EXPECT_EQ(printedBy(ids, 7), "Node ID <7> not found\n");
    OutputCapture quiet(1);
    EXPECT_EQ(ids.find(7), 0x80000000u);
    std::cout.flush();
}

TEST(ReadIds, FoundIdPrintsNothing)
{
    TempFolder folder;
    writeTinyModel(folder.path);
    ReadIDS ids(folder.path.c_str(), "tiny");
    ids.get("node_ids");
    EXPECT_EQ(printedBy(ids, 15), "");
}
