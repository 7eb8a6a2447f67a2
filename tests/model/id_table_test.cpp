// Ids by position and positions by id.
#include <kvo/id_table.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <random>

namespace {

using Ids = std::vector<std::uint32_t>;

// Both directions and the copies against a plain list.
void expectSame(const kvo::IdTable& table, const Ids& ids)
{
    ASSERT_EQ(table.size(), ids.size());
    std::map<std::uint32_t, std::uint32_t> first;
    for (std::uint32_t k = 0; k < ids.size(); ++k) {
        ASSERT_EQ(table[k], ids[k]) << "position " << k;
        first.emplace(ids[k], k);
    }
    for (const auto& [id, position] : first) {
        ASSERT_EQ(table.find(id), position) << "id " << id;
        for (const std::uint32_t beside : {id - 1, id + 1}) {
            const auto known = first.find(beside);
            ASSERT_EQ(table.find(beside), known == first.end() ? kvo::IdTable::notFound : known->second);
        }
    }
    EXPECT_EQ(table.toVector(), ids);
    EXPECT_EQ(table.repeats(), first.size() != ids.size());
    EXPECT_EQ(table.lowest(), ids.empty() ? 0 : first.begin()->first);
    EXPECT_EQ(table.highest(), ids.empty() ? 0 : first.rbegin()->first);
}

Ids fromTo(std::uint32_t first, std::uint32_t last)
{
    Ids ids(last - first + 1);
    std::iota(ids.begin(), ids.end(), first);
    return ids;
}

} // namespace

TEST(IdTable, OneRunNeedsNoMemoryAnId)
{
    const Ids ids = fromTo(1000001, 1100000);
    const kvo::IdTable table{kvo::Span<std::uint32_t>(ids)};
    expectSame(table, ids);
    EXPECT_TRUE(table.ascending());
    EXPECT_LT(table.bytes(), 500u);
}

TEST(IdTable, RunsInAnyOrderAreFound)
{
    Ids ids = fromTo(500, 599);
    for (const auto& [first, last] : {std::pair(100, 199), std::pair(600, 650), std::pair(1, 20)}) {
        const Ids more = fromTo(first, last);
        ids.insert(ids.end(), more.begin(), more.end());
    }
    const kvo::IdTable table{kvo::Span<std::uint32_t>(ids)};
    expectSame(table, ids);
    EXPECT_FALSE(table.ascending());
    EXPECT_LT(table.bytes(), 1000u) << "kept as runs";
}

TEST(IdTable, ScatteredIdsCostFourBytesEach)
{
    Ids ids;
    for (std::uint32_t k = 0; k < 10000; ++k) {
        ids.push_back(7 + 3 * k);
    }
    const kvo::IdTable table{Ids(ids)};
    expectSame(table, ids);
    EXPECT_LT(table.bytes(), 4 * ids.size() + 500);
}

TEST(IdTable, OfRepeatedIdsTheFirstIsFound)
{
    expectSame(kvo::IdTable(Ids{5, 6, 7, 5, 6, 7}), {5, 6, 7, 5, 6, 7});
    expectSame(kvo::IdTable(Ids{9, 9, 9}), {9, 9, 9});
    Ids runs = fromTo(1, 100);
    const Ids inside = fromTo(50, 60); // a run within the other
    runs.insert(runs.end(), inside.begin(), inside.end());
    expectSame(kvo::IdTable{kvo::Span<std::uint32_t>(runs)}, runs);
}

TEST(IdTable, KnowsNothingOfIdsBesideTheNumbersThatThereAre)
{
    expectSame(kvo::IdTable(), {});
    expectSame(kvo::IdTable(Ids{0, 0xFFFFFFFF}), {0, 0xFFFFFFFF});
    expectSame(kvo::IdTable(Ids{0xFFFFFFFE, 0xFFFFFFFF, 0}), {0xFFFFFFFE, 0xFFFFFFFF, 0});
    expectSame(kvo::IdTable(Ids{0xFFFFFFFF, 0, 1, 2, 3, 4, 5, 6, 7, 8}), {0xFFFFFFFF, 0, 1, 2, 3, 4, 5, 6, 7, 8});
}

TEST(IdTable, AgreesWithAPlainListOnRandomIds)
{
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        Ids ids;
        const int pieces = 1 + static_cast<int>(random() % 12);
        for (int k = 0; k < pieces; ++k) {
            const std::uint32_t first = random() % 400, length = random() % (round % 2 ? 3 : 40);
            const Ids more = fromTo(first, first + length);
            ids.insert(ids.end(), more.begin(), more.end());
        }
        if (round % 3 == 0) {
            std::sort(ids.begin(), ids.end());
            ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
        }
        expectSame(kvo::IdTable{kvo::Span<std::uint32_t>(ids)}, ids);
    }
}

TEST(IdTable, CopiesAnyStretch)
{
    const Ids ids = {10, 11, 12, 40, 41, 42, 43, 20, 21, 22};
    const kvo::IdTable table{kvo::Span<std::uint32_t>(ids)};
    for (std::uint32_t first = 0; first < ids.size(); ++first) {
        for (std::uint32_t number = 0; first + number <= ids.size(); ++number) {
            Ids out(number);
            table.copy(first, number, out.data());
            EXPECT_EQ(out, Ids(ids.begin() + first, ids.begin() + first + number));
        }
    }
}
