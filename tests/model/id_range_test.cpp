// Ranges of ids, and that importers and scene mean the same ones.
#include <limits>

#include <GL/gl.h>
#include <gtest/gtest.h>

#include "id_set.h"
#include "modelbuilder.h"
#include <kvo/id_range.h>
#include <kvo/select_more.h>

namespace {

using kvo::IdRange;

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

TEST(IdRange, HoldsItsEndsAndWhatTheStepMeets)
{
    const IdRange everyThird = {1, 9, 3}; // 1 4 7
    EXPECT_EQ(everyThird.size(), 3u);
    EXPECT_EQ(everyThird.at(2), 7);
    EXPECT_TRUE(everyThird.contains(1));
    EXPECT_TRUE(everyThird.contains(7));
    EXPECT_FALSE(everyThird.contains(8));
    EXPECT_FALSE(everyThird.contains(10));
    EXPECT_FALSE(everyThird.contains(-2));
    EXPECT_EQ((IdRange{5, 5}).size(), 1u);
}

TEST(IdRange, IsEmptyWhenTurnedRoundOrWithoutAStep)
{
    for (const IdRange range : {IdRange{5, 4}, IdRange{1, 9, 0}, IdRange{1, 9, -1}}) {
        EXPECT_TRUE(range.empty());
        EXPECT_EQ(range.size(), 0u);
        EXPECT_FALSE(range.contains(range.first));
    }
}

TEST(IdRange, MayBeLongerThanHalfOfAllNumbers)
{
    const IdRange even = {lowest, highest, 2};
    EXPECT_EQ(even.size(), std::uint64_t{1} << 63);
    EXPECT_EQ(even.at(even.size() - 1), highest - 1);
    EXPECT_TRUE(even.contains(0));
    EXPECT_FALSE(even.contains(highest));
}

TEST(IdRange, OfADecksSetSelectsInAScene)
{
    TestModel model{GL_FLAT};
    model.add(quadPart()).add(quadPart()).installParts(); // both with element 101
    kvo::IdSet members;
    members.addRange(99, 105, 2);
    members.add(-4);
    EXPECT_EQ(kvo::Selector(*model).elementsById(members.ranges).count(), 2u);
}

} // namespace
