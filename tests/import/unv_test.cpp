// Universal files.
#include "deck_outcome.h"

#include "ideas/unv_reader.h"
#include "node_surplus.h"

namespace {

class Unv : public DeckOutcomeTest
{
protected:
    kvo::Mesh readUnv(const std::string& text) { return read(text, "deck.unv"); }
};

std::string columns(const std::vector<std::int64_t>& values)
{
    std::string text;
    for (const std::int64_t value : values) {
        const std::string digits = std::to_string(value);
        text += std::string(10 - digits.size(), ' ') + digits;
    }
    return text + "\n";
}

std::string dataset(const std::string& number, const std::string& lines)
{
    return "    -1\n" + std::string(6 - number.size(), ' ') + number + "\n" + lines + "    -1\n";
}

// Nodes 1 to count at (id, 0, 0).
std::string nodes(int count)
{
    std::string lines;
    for (int id = 1; id <= count; ++id) {
        lines += columns({id, 1, 1, 11}) + "   " + std::to_string(id) + ".0000000000000000D+00   0.0D+00   0.0D+00\n";
    }
    return dataset("2411", lines);
}

std::string element(std::int64_t id, std::int64_t descriptor, std::int64_t property, std::vector<std::int64_t> nodes)
{
    return columns({id, descriptor, property, 3, 7, static_cast<std::int64_t>(nodes.size())}) + [&] {
        std::string text;
        for (std::size_t k = 0; k < nodes.size(); k += 8) {
            const std::size_t stop = std::min(k + 8, nodes.size());
            text += columns(
                {nodes.begin() + static_cast<std::ptrdiff_t>(k), nodes.begin() + static_cast<std::ptrdiff_t>(stop)});
        }
        return text;
    }();
}

std::vector<std::int64_t> upTo(std::int64_t last)
{
    std::vector<std::int64_t> ids;
    for (std::int64_t id = 1; id <= last; ++id) {
        ids.push_back(id);
    }
    return ids;
}

Ids idsOf(const kvo::MeshSet& set)
{
    Ids ids;
    set.ids.forEach([&](std::int64_t id) { ids.push_back(id); });
    return ids;
}

} // namespace

TEST_F(Unv, ExponentsHaveADAndColumnsMayTouch)
{
    const kvo::Mesh mesh =
        readUnv(dataset("2411", columns({1234567890, 1, 1, 11}) +
                                    "   1.2500000000000000D-01  -2.0000000000000000D+002  3.5E+00\n" +
                                    columns({1234567891, 1, 1, 11}) + "0 0 0\n") +
                dataset("2412", columns({5, 21, 7, 3, 7, 2}) + columns({1234567891, 0, 0}) +
                                    columns({1234567890, 1234567891})));
    EXPECT_EQ(pointOf(mesh, 1234567890), (Point{0.125, -200, 3.5}));
    EXPECT_EQ(nodesOf(mesh, 5), (Ids{1234567890, 1234567891, 1234567891}));
}

TEST_F(Unv, SecondOrderNodesRunRoundTheRim)
{
    const struct
    {
        int descriptor;
        int count;
        Ids corners;
    } rows[] = {
        {92, 6, {1, 3, 5}},
        {93, 9, {1, 4, 7}},
        {95, 8, {1, 3, 5, 7}},
        {96, 12, {1, 4, 7, 10}},
        {118, 10, {1, 3, 5, 10}},
        {113, 15, {1, 3, 5, 10, 12, 14}},
        {114, 24, {1, 4, 7, 16, 19, 22}},
        {116, 20, {1, 3, 5, 7, 13, 15, 17, 19}},
        {117, 32, {1, 4, 7, 10, 21, 24, 27, 30}},
        {102, 12, {1, 3, 5, 7, 9, 11}},
        {105, 16, {1, 3, 5, 7, 9, 11, 13, 15}},
        {94, 4, {1, 2, 3, 4}},
        {74, 3, {1, 2, 3}},
        {112, 6, {1, 2, 3, 4, 5, 6}},
        {115, 8, {1, 2, 3, 4, 5, 6, 7, 8}},
    };
    for (const auto& row : rows) {
        const kvo::Mesh mesh = readUnv(nodes(32) + dataset("2412", element(1, row.descriptor, 5, upTo(row.count))));
        EXPECT_EQ(nodesOf(mesh, 1), row.corners) << row.descriptor;
        EXPECT_EQ(mesh.nodeCount(), 32u);
    }
}

TEST_F(Unv, BeamsHaveALineWithTheOrientationNode)
{
    const kvo::Mesh mesh =
        readUnv(nodes(5) + dataset("2412", columns({1, 21, 4, 3, 7, 2}) + columns({3, 1, 1}) + columns({1, 2}) +
                                               columns({2, 11, 4, 3, 7, 2}) + columns({0, 0, 0}) + columns({2, 4}) +
                                               columns({3, 24, 4, 3, 7, 3}) + columns({5, 1, 1}) + columns({1, 2, 4}) +
                                               // no such line at all
                                               columns({4, 22, 4, 3, 7, 2}) + columns({3, 4})));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{2, 4, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 4, 5})) << "the middle node is the second entry";
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{3, 4, kvo::noNode}));
}

TEST_F(Unv, TheLineWithTheOrientationNodeMayBeMissing)
{
    // Three nodes: the next line tells whether these are them.
    const kvo::Mesh mesh =
        readUnv(nodes(5) + dataset("2412", element(1, 24, 4, {1, 3, 2}) + columns({2, 23, 4, 3, 7, 3}) +
                                               columns({5, 1, 1}) + columns({2, 4, 3}) + element(3, 32, 4, {3, 5, 4}) +
                                               element(4, 31, 4, {4, 5}) + element(5, 24, 4, {2, 1, 5})));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{2, 3, 5}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{3, 4, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{4, 5, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 5), (Ids{2, 5, kvo::noNode}));
    EXPECT_TRUE(contains(readError(dataset("2412", columns({1, 24, 4, 3, 7, 2}) + columns({5, 1, 1})), "deck.unv"),
                         "deck.unv:5: dataset 2412 ends where nodes should be"));
}

TEST_F(Unv, TheCountOfNodesDecidesTheOrder)
{
    const struct
    {
        int descriptor;
        int count;
        Ids corners;
        std::uint64_t warnings;
    } rows[] = {
        {22, 3, {1, 3, kvo::noNode}, 0}, // written for parabolic beams by most programs
        {22, 2, {1, 2, kvo::noNode}, 0}, {23, 2, {1, 2, kvo::noNode}, 0},
        {24, 2, {1, 2, kvo::noNode}, 0}, {21, 3, {1, 3, kvo::noNode}, 1}, // more nodes than the descriptor has
        {11, 3, {1, 3, kvo::noNode}, 1}, {172, 2, {1, 2, kvo::noNode}, 0},
        {95, 4, {1, 2, 3, 4}, 0},        {94, 8, {1, 3, 5, 7}, 1},
        {91, 6, {1, 3, 5}, 1},           {111, 10, {1, 3, 5, 10}, 1},
        {118, 4, {1, 2, 3, 4}, 0},       {115, 20, {1, 3, 5, 7, 13, 15, 17, 19}, 1},
        {102, 6, {1, 2, 3, 4, 5, 6}, 0},
    };
    for (const auto& row : rows) {
        const kvo::Mesh mesh = readUnv(nodes(32) + dataset("2412", element(1, row.descriptor, 5, upTo(row.count))));
        EXPECT_EQ(nodesOf(mesh, 1), row.corners) << row.descriptor << " with " << row.count;
        EXPECT_EQ(log.warningCount(kvo::warnMoreNodes), row.warnings) << row.descriptor << " with " << row.count;
    }
}

TEST_F(Unv, OfMoreNodesThanAnyOrderHasTheFirstOnesCount)
{
    const kvo::Mesh mesh = readUnv(nodes(8) + dataset("2412", element(1, 91, 5, upTo(4)) + element(2, 95, 5, upTo(9)) +
                                                                  element(3, 136, 5, upTo(3))));
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 3, 5, 7}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2}));
    ASSERT_EQ(log.warningCount(kvo::warnMoreNodes), 3u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0],
                         "deck.unv:22: thin shell linear triangle element 1 has 3 nodes, 4 are given; the first 3"))
        << log.warnings()[0].lines[0];
}

TEST_F(Unv, BlanksMayPartTheNumbers)
{
    const kvo::Mesh mesh =
        readUnv("    -1\n  2411\n1 1 1 11\n0. 0. 0.\n2 1 1 11\n1.0 0 0\n3 1 1 11\n1 1 0\n    -1\n"
                "    -1\n  2412\n1 21 3 1 7 2\n    3    1    1\n    1    2\n2 21 3 1 7 2\n2 3\n    -1\n"
                "    -1\n  2467\n1 0 0 0 0 0 0 2\nTOP\n7 1 0 0 7 2 0 0\n    -1\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{2, 3, kvo::noNode}));
    ASSERT_EQ(mesh.sets.size(), 1u);
    EXPECT_EQ(idsOf(mesh.sets[0]), (Ids{1, 2}));
}

TEST_F(Unv, AMinusOneMayBeAValue)
{
    const std::string values = dataset("2414", columns({1}) + columns({-1}) + "  -1.0E+00\n");
    EXPECT_EQ(readUnv(values + nodes(2)).nodeCount(), 2u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "dataset 2414"), 1u);
    // Some writers put it into columns of ten.
    EXPECT_EQ(readUnv("        -1\n      2411\n" + columns({7, 1, 1, 11}) + "0. 0. 0.\n        -1\n").nodeCount(), 1u);
}

TEST_F(Unv, BinaryDatasetsArePassedOver)
{
    const std::string head = "    -1\n    58b     1     1         0           7     0     0           0           0\n";
    const std::string bytes("\x01\n\0-1\n\xff", 7);
    for (const std::string& end : {std::string("    -1\n"), std::string("\n    -1\n")}) {
        EXPECT_EQ(readUnv(head + bytes + end + nodes(2)).nodeCount(), 2u);
        EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "dataset 58"), 1u);
    }
}

TEST_F(Unv, DiscreteElementsOfEveryKind)
{
    for (const int descriptor : {136, 137, 138, 139, 141, 142, 151, 152}) {
        const kvo::Mesh two = readUnv(nodes(2) + dataset("2412", element(1, descriptor, 4, {1, 2})));
        EXPECT_EQ(nodesOf(two, 1), (Ids{1, 2})) << descriptor;
        EXPECT_EQ(two.types[0].family, kvo::Family::Discrete) << descriptor;
        const kvo::Mesh one = readUnv(nodes(2) + dataset("2412", element(1, descriptor, 4, {2})));
        EXPECT_EQ(nodesOf(one, 1), (Ids{2, 2})) << descriptor;
    }
}

TEST_F(Unv, SpringsDampersMassesAndRigidElements)
{
    const kvo::Mesh mesh = readUnv(
        nodes(12) + dataset("2412", element(1, 136, 4, {1, 2}) + element(2, 139, 4, {3}) + element(3, 142, 4, {4, 0}) +
                                        element(4, 161, 4, {5}) + element(5, 122, 4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}) +
                                        element(6, 999, 4, {11, 12})));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{3, 3}));
    EXPECT_EQ(nodesOf(mesh, 3), (Ids{4, 4}));
    ASSERT_EQ(mesh.files[0].undrawn.size(), 3u);
    EXPECT_EQ(mesh.files[0].undrawn[0].type, "161 lumped mass");
    EXPECT_EQ(mesh.files[0].undrawn[1].nodes.size(), 10u);
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "descriptor 999"), 1u);
}

TEST_F(Unv, PartsArePhysicalProperties)
{
    const kvo::Mesh mesh =
        readUnv(nodes(4) + dataset("2412", element(1, 91, 40, {1, 2, 3}) + element(2, 94, 7, {1, 2, 3, 4}) +
                                               element(3, 94, 40, {1, 2, 3, 4})));
    ASSERT_EQ(mesh.parts.size(), 2u);
    EXPECT_EQ(mesh.parts[0].id, 40);
    EXPECT_EQ(mesh.parts[0].name, "property 40");
    EXPECT_EQ(mesh.parts[0].materialId, 3);
    EXPECT_EQ(partOf(mesh, 3).id, 40);
}

TEST_F(Unv, OlderDatasetsHaveOtherFields)
{
    const kvo::Mesh mesh =
        readUnv(dataset("781", columns({1, 0, 0, 8}) + "  1.0D+00  2.0D+00  3.0D+00\n") +
                dataset("15", columns({2, 0, 0, 8}).substr(0, 40) + "  1.50000E+00 -2.50000E+00  0.00000E+00\n" +
                                  columns({3, 4, 0, 8}).substr(0, 40) + "-1.50000E+00-2.50000E+00-1.00000E+00\n") +
                dataset("780", columns({9, 91, 1, 30, 1, 5, 7, 3}) + columns({1, 2, 3}) +
                                   columns({8, 21, 1, 31, 1, 5, 7, 2}) + columns({3, 1, 1, 1, 1}) + columns({1, 2})));
    EXPECT_EQ(pointOf(mesh, 1), (Point{1, 2, 3}));
    EXPECT_EQ(pointOf(mesh, 2), (Point{1.5, -2.5, 0}));
    EXPECT_EQ(pointOf(mesh, 3), (Point{-1.5, -2.5, -1}));
    EXPECT_EQ(log.warningCount("nodes in local systems"), 1u);
    EXPECT_EQ(partOf(mesh, 9).id, 30);
    EXPECT_EQ(partOf(mesh, 9).materialId, 5);
    EXPECT_EQ(nodesOf(mesh, 8), (Ids{1, 2, 3}));
}

TEST_F(Unv, GroupsOfEveryLayout)
{
    const std::string mesh4 = nodes(4) + dataset("2412", element(1, 91, 40, {1, 2, 3}) + element(2, 91, 40, {1, 2, 4}));
    const std::string four = columns({1, 0, 0, 0, 0, 0, 0, 3}) + "TOP\n" + columns({7, 1, 0, 0, 7, 2, 0, 0}) +
                             columns({8, 2, 0, 0}) + columns({2, 0, 0, 0, 0, 0, 0, 1}) + "\n" + columns({3, 1, 0, 0});
    const std::string pairs =
        columns({1, 0, 0, 0, 0, 0, 0, 5}) + "TOP\n" + columns({7, 1, 7, 2, 7, 3, 7, 4}) + columns({8, 2});
    const std::string seven = columns({1, 0, 0, 0, 0, 0, 2}) + "TOP\n" + columns({7, 1, 8, 2});
    for (const std::string& groups : {dataset("2467", four), dataset("2477", four), dataset("2452", four),
                                      dataset("2435", pairs), dataset("2432", seven)}) {
        const kvo::Mesh mesh = readUnv(mesh4 + groups);
        ASSERT_EQ(mesh.sets.size(), 2u);
        EXPECT_EQ(mesh.sets[0].name, "TOP");
        EXPECT_EQ(mesh.sets[0].id, 1);
        EXPECT_EQ(idsOf(mesh.sets[0]).front(), 1);
        EXPECT_EQ(mesh.sets[1].of, kvo::MeshSet::Of::Elements);
        EXPECT_EQ(idsOf(mesh.sets[1]), Ids{2});
    }
    readUnv(mesh4 + dataset("2467", four));
    EXPECT_EQ(log.listCount("members of groups not read", "kind 3"), 1u);
}

TEST_F(Unv, AGroupWithoutMembersKeepsItsName)
{
    const std::string empty = columns({1, 0, 0, 0, 0, 0, 0, 0}) + "empty\n";
    const std::string full = columns({2, 0, 0, 0, 0, 0, 0, 1}) + "full\n" + columns({7, 3, 0, 0});
    const std::string mesh3 = nodes(3) + dataset("2412", element(1, 41, 2, {1, 2, 3}));
    // Some writers leave a line for the members that there are not.
    for (const std::string& groups : {empty + "\n" + full, empty + full, full + empty, full + empty + "\n"}) {
        const kvo::Mesh mesh = readUnv(mesh3 + dataset("2467", groups));
        ASSERT_EQ(mesh.sets.size(), 2u);
        const bool emptyFirst = mesh.sets[0].name == "empty";
        EXPECT_EQ(mesh.sets[emptyFirst ? 0 : 1].name, "empty");
        EXPECT_EQ(idsOf(mesh.sets[emptyFirst ? 0 : 1]), Ids{});
        EXPECT_EQ(idsOf(mesh.sets[emptyFirst ? 1 : 0]), Ids{3});
        EXPECT_TRUE(log.warnings().empty());
        EXPECT_EQ(elementIds(mesh), Ids{1});
    }
}

TEST_F(Unv, DamageInWhatTheMeshIsWholeWithoutIsAWarning)
{
    const std::string mesh3 = nodes(3) + dataset("2412", element(1, 41, 2, {1, 2, 3}));
    const std::string group = columns({1, 0, 0, 0, 0, 0, 0, 3}) + "TOP\n";
    const struct
    {
        std::string text;
        std::string warning;
    } rows[] = {
        {dataset("2467", group + columns({7, 1, 0, 0})), "deck.unv:20: dataset 2467 ends where the members"},
        {dataset("2467", group + "nonsense\n"), "deck.unv:19: dataset 2467: \"nonsense\" are no integers"},
        {dataset("2435", "nonsense\n\n"), "deck.unv:17: dataset 2435: \"nonsense\" are no integers"},
        {dataset("2477", columns({1, 0, 0, 0, 0, 0, 0, 2})), "deck.unv:18: dataset 2477 ends where the name"},
        // A line like the end of a dataset among the values of another one.
        {dataset("2414", columns({1}) + "    -1\n" + columns({5}) + columns({6})),
         "deck.unv:19: a dataset should begin"},
        {dataset("2414", columns({1}) + "    -1\n"), {}},
    };
    const std::string more = dataset("2411", columns({9, 1, 1, 11}) + "  0. 0. 0.\n");
    for (const auto& row : rows) {
        const kvo::Mesh mesh = readUnv(mesh3 + row.text + more);
        EXPECT_EQ(elementIds(mesh), Ids{1});
        EXPECT_EQ(mesh.nodeCount(), 4u) << "what comes behind it is read: " << row.text;
        ASSERT_EQ(log.warnings().size(), row.warning.empty() ? 0u : 1u) << row.text;
        EXPECT_TRUE(row.warning.empty() || contains(log.warnings()[0].lines[0], row.warning))
            << log.warnings()[0].lines[0];
    }
    EXPECT_EQ(readUnv(mesh3 + dataset("2467", group + columns({7, 1, 0, 0}))).sets.at(0).name, "TOP");
    EXPECT_EQ(idsOf(readUnv(mesh3 + dataset("2467", group + columns({7, 1, 0, 0}))).sets.at(0)), Ids{1});
    for (const char* number : {"2467", "164", "151", "2414"}) {
        const kvo::Mesh mesh = readUnv(mesh3 + "    -1\n  " + number + "\n");
        EXPECT_EQ(elementIds(mesh), Ids{1});
        EXPECT_EQ(log.warnings().at(0).lines.at(0).substr(folder.string().size() + 1),
                  "deck.unv:16: cut off inside dataset " + std::string(number));
    }
}

TEST_F(Unv, UnitsAndTitleAreKept)
{
    const kvo::Mesh mesh = readUnv(dataset("151", "model.mf1\nBracket\nother\n") +
                                   dataset("164", "         5mm (milli-newton)            2\n    1.0D+03\n  0.\n") +
                                   dataset("2420", "1\n") + nodes(1));
    ASSERT_EQ(mesh.facts.size(), 2u);
    EXPECT_EQ(mesh.facts[0].second, "Bracket");
    EXPECT_EQ(mesh.facts[1].second, "mm (milli-newton)");
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "dataset 2420"), 1u);
    EXPECT_EQ(pointOf(mesh, 1), (Point{1, 0, 0})) << "coordinates stay as they are";
}

TEST_F(Unv, FilesAreKnownByTheirFirstTwoLines)
{
    const struct
    {
        const char* text;
        bool own;
    } rows[] = {{"    -1\n   164\n", true},  {"\r\n    -1\r\n  2411\r\n", true}, {"    -1\n    58b     1\n", true},
                {"    -1\n    -1\n", false}, {"-1 0 0\n2411\n", false},          {"    -1\n", false},
                {"    -1\n2.5\n", false}};
    for (const auto& row : rows) {
        const kvo::MappedFile file(write("deck", row.text));
        EXPECT_EQ(kvo::looksLikeUnv(file), row.own) << row.text;
    }
}

TEST_F(Unv, DamageIsSaid)
{
    const std::string deck = nodes(4) + dataset("2412", element(1, 91, 40, {1, 2, 3}) + element(2, 21, 4, {0, 0, 0})) +
                             dataset("2467", columns({1, 0, 0, 0, 0, 0, 0, 2}) + "TOP\n" + columns({7, 1, 0, 0, 7, 2}));
    expectComplaintsWhenCutOff(deck, "deck.unv");
    EXPECT_TRUE(contains(
        readError(nodes(3) + dataset("2412", columns({1, 115, 1, 1, 7, 2000000000}) + columns({1, 2})), "deck.unv"),
        "deck.unv:12: element 1 has 2000000000 nodes, but its dataset ends before"));
    EXPECT_TRUE(contains(readError(dataset("2411", columns({1, 1, 1, 11}) + "x y z\n"), "deck.unv"), "deck.unv:4: "));
    EXPECT_TRUE(contains(readError(dataset("2411", "one\n"), "deck.unv"), "deck.unv:3: "));
    EXPECT_TRUE(contains(readError(nodes(1) + "nonsense\n", "deck.unv"), "deck.unv:6: a dataset should begin here"));
    EXPECT_TRUE(contains(complaint(dataset("2467", columns({1, 0, 0, 0, 0, 0, 0, 2000000000}) + "TOP\n"), "deck.unv"),
                         "deck.unv:5: dataset 2467 ends where the members of a group should be"));
    readUnv(nodes(3) + dataset("2412", element(1, 91, 1, {1, 2, 99}) + element(2, 115, 1, {1, 2, 3})));
    EXPECT_EQ(log.warningCount(kvo::warnMissingNode), 1u);
    EXPECT_EQ(log.warningCount("elements with too few nodes"), 1u);
}
