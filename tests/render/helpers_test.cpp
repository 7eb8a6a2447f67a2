// Look-up of node ids and the millisecond clock.
#include <ctime>

#include <unistd.h>

#include "gentime.h"
#include "readerstub.h"
#include "readids.h"
#include "recordedtest.h"

namespace {
class IdLookup : public RecordedTest
{
protected:
    void SetUp() override
    {
        RecordedTest::SetUp();
        readerstub::reset();
        readerstub::files["f"].nodeIds = {2, 5, 9, 4000000000u};
        ids.get("node_ids");
    }
    ReadIDS ids{"d", "f"};
};
} // namespace

TEST_F(IdLookup, AKnownIdGivesItsPosition)
{
    EXPECT_EQ(ids.find(2), 0u);
    EXPECT_EQ(ids.find(9), 2u);
    EXPECT_EQ(ids.find(4000000000u), 3u);
    EXPECT_EQ(printed(), "");
}

TEST_F(IdLookup, AnUnknownIdIsNegativeAndReportedOnceACall)
{
    EXPECT_EQ(ids.find(6), 0x80000000u);
    EXPECT_EQ(printed(), "Node ID <6> not found\n");
    EXPECT_LT(static_cast<int>(ids.find(6)), 0);
    EXPECT_EQ(printed(), "Node ID <6> not found\n");
}

TEST_F(IdLookup, IdZeroStandsForNoNodeAndIsNotReported)
{
    EXPECT_EQ(ids.find(0), 0x80000000u);
    EXPECT_EQ(printed(), "");
}

TEST_F(IdLookup, AnEmptyListFindsNothing)
{
    ReadIDS empty;
    EXPECT_EQ(empty.find(3), 0x80000000u);
    EXPECT_EQ(printed(), "Node ID <3> not found\n");
}

TEST(Clock, GivesMillisecondsSinceTheEpoch)
{
    const unsigned long long before = 1000ull * static_cast<unsigned long long>(time(nullptr));
    const unsigned long long now = GenTime::getCurrentMillis();
    EXPECT_GE(now, before);
    EXPECT_LT(now, before + 60000);
    usleep(20000);
    EXPECT_GE(GenTime::getCurrentMillis(), now + 15);
}
