// Finding nodes by id and choosing those of a part: every representation must give the plain answer.
#include "modelnodes.h"

#include <algorithm>
#include <set>

#include "modelfixture.h"

using namespace readgen;

namespace {

Ids everyNth(unsigned int first, unsigned int count, unsigned int step)
{
    Ids ids;
    for (unsigned int k = 0; k < count; ++k) {
        ids.push_back(first + k * step);
    }
    return ids;
}

// Looks up every id of the list, its neighbours and the ends of the number range.
void expectPlainAnswers(const Ids& ids)
{
    const IdIndex index(ids.data(), static_cast<std::uint32_t>(ids.size()));
    const std::set<unsigned int> members(ids.begin(), ids.end());
    for (std::uint32_t k = 0; k < ids.size(); ++k) {
        EXPECT_EQ(index.find(ids[k]), k) << ids[k];
        for (unsigned int neighbour : {ids[k] - 1, ids[k] + 1}) {
            EXPECT_EQ(isPosition(index.find(neighbour)), members.count(neighbour) == 1) << neighbour;
        }
    }
    for (unsigned int id : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(isPosition(index.find(id)), members.count(id) == 1) << id;
    }
}

// Clusters with gaps that grow: crowded and empty buckets.
Ids clusters()
{
    Ids ids;
    unsigned int id = 5;
    for (unsigned int gap = 3; gap < 500000000; gap *= 3) {
        for (unsigned int k = 0; k < 40; ++k) {
            ids.push_back(id += 1 + k % 3);
        }
        id += gap;
    }
    return ids;
}

Ids positionsOf(const UsedNodes& used)
{
    Ids positions;
    used.forEach([&](std::uint32_t p) { positions.push_back(p); });
    return positions;
}

void expectDistinctAscending(const Ids& positions)
{
    Ids expected;
    std::copy_if(positions.begin(), positions.end(), std::back_inserter(expected), isPosition);
    std::sort(expected.begin(), expected.end());
    expected.erase(std::unique(expected.begin(), expected.end()), expected.end());

    const UsedNodes used(positions.data(), positions.size());
    EXPECT_EQ(used.count(), expected.size());
    EXPECT_EQ(positionsOf(used), expected);
    for (std::uint32_t k = 0; k < expected.size(); ++k) {
        EXPECT_EQ(used.rank(expected[k]), k);
    }
}

} // namespace

TEST(IdIndex, FindsContiguousIds)
{
    expectPlainAnswers(everyNth(17, 1000, 1));
}
TEST(IdIndex, FindsDenseIds)
{
    expectPlainAnswers(everyNth(1, 1000, 3));
}
TEST(IdIndex, FindsSparseIds)
{
    expectPlainAnswers(everyNth(7, 1000, 4000000));
}
TEST(IdIndex, FindsIdsOfTheWholeRange)
{
    expectPlainAnswers({1, 2, 3, 1000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE});
}
TEST(IdIndex, FindsClusteredIds)
{
    expectPlainAnswers(clusters());
}
TEST(IdIndex, FindsASingleId)
{
    expectPlainAnswers({4000000000u});
}
TEST(IdIndex, FindsNothingInAnEmptyList)
{
    expectPlainAnswers({});
}

TEST(UsedNodes, OfACrowdedRange)
{
    expectDistinctAscending({5, 9, 5, 6, 7, 100, 9, 8});
}
TEST(UsedNodes, OfAWideRange)
{
    expectDistinctAscending({2000000000u, 3, 1000000, 3, 2000000000u, 4});
}
TEST(UsedNodes, PassesOverEmptySlots)
{
    expectDistinctAscending({4, noNode, 5, notFound, 4});
}
TEST(UsedNodes, OfEmptySlotsOnly)
{
    expectDistinctAscending({noNode, noNode});
}
TEST(UsedNodes, OfNothing)
{
    expectDistinctAscending({});
}
TEST(UsedNodes, OfPositionZero)
{
    expectDistinctAscending({0});
}

TEST(ModelNodes, FindsInTheFirstFileThatHasTheId)
{
    const Ids first = {10, 20, 30}, second = {20, 40};
    const std::vector<float> xyz(9);
    ModelNodes nodes;
    nodes.addFile(first.data(), xyz.data(), 3);
    nodes.addFile(nullptr, nullptr, 0);
    nodes.addFile(second.data(), xyz.data(), 2);
    EXPECT_EQ(nodes.numNodes(), 5u);
    EXPECT_EQ(nodes.find(20), 1u);
    EXPECT_EQ(nodes.find(40), 4u);
    EXPECT_FALSE(isPosition(nodes.find(50)));
}

TEST(ModelNodes, ResolvesInTheOwnFileFirst)
{
    const Ids first = {10, 20, 30}, second = {20, 40};
    const std::vector<float> xyz(9);
    ModelNodes nodes;
    nodes.addFile(first.data(), xyz.data(), 3);
    nodes.addFile(second.data(), xyz.data(), 2);
    const Ids refs = {20, 40, 10, 77};
    Ids positions(4);
    const PartReferences part = {refs.data(), 4, 4, false, false, 1};
    EXPECT_EQ(resolveReferences(nodes, part, positions.data()), 3u); // 77 is the one that names no node
    EXPECT_EQ((Ids{positions[0], positions[1], positions[2]}), (Ids{3, 4, 0}));
}
