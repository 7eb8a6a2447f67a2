// Decks that are small and ask for too much, or lie at the ends of ranges: each once ended a reader or kept it busy
// for ever.
#include "import_fixture.h"

#include <algorithm>
#include <limits>
#include <new>

#include "abaqus/inp_generate.h"
#include "id_set.h"

using HostileDecks = ImportTest;

namespace {

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

kvo::Mesh readNeedingTooMuch(std::unique_ptr<kvo::MappedFile>, kvo::ImportLog&, kvo::Progress)
{
    throw std::bad_alloc();
}

kvo::Mesh readNeedingEvenMore(std::unique_ptr<kvo::MappedFile>, kvo::ImportLog&, kvo::Progress)
{
    std::vector<char> bytes;
    bytes.reserve(bytes.max_size() + 1);
    return {};
}

// The error of the cards, which all together may make ten nodes and elements.
std::string errorOfGenerator(const std::vector<std::string>& cards)
{
    kvo::ImportLog log;
    const std::vector<kvo::ElementType> types = {{"S4", kvo::Family::Shell, kvo::Shape::Quad, false}};
    kvo::InpScope scope;
    const std::int64_t nodes[] = {1, 2, 3, 4};
    for (const std::int64_t id : nodes) {
        scope.mesh.addNode(id, static_cast<double>(id), 0, 0);
        scope.nodeSet("N").add(id);
    }
    scope.mesh.addElement(0, 0, 1, 1, 0, nodes, 4);
    scope.elementSet("E").add(1);
    kvo::InpGenerator generator(types, log, 10);
    try {
        for (const std::string& text : cards) {
            const std::size_t end = text.find('\n');
            generator.begin(scope, kvo::parseKeywordLine(text.substr(0, end), {"deck.inp", 1}));
            if (end != std::string::npos) {
                generator.data(text.substr(end + 1), {"deck.inp", 2});
            }
            generator.end();
        }
    } catch (const kvo::ImportError& error) {
        return error.what();
    }
    return "none";
}

} // namespace

TEST_F(HostileDecks, IdsAtTheEndsOfTheirRange)
{
    kvo::IdSet ids;
    ids.add(highest);
    ids.add(lowest);
    ids.add(lowest + 1);
    EXPECT_EQ(ids.size(), 3u);
    EXPECT_EQ(ids.ranges.size(), 2u);
    EXPECT_EQ(ids.keepKnown({lowest, 5, highest}), 1u);
    EXPECT_EQ(ids.size(), 2u);
    ids.ranges = {{lowest, highest - 1, 3}, {lowest, 3, 1}};
    EXPECT_EQ(ids.keepKnown({lowest + 3, 2, 5}), 3u) << "the first and the last ones";
    EXPECT_EQ(ids.size(), 2u);
}

TEST_F(HostileDecks, ASetThatIsARunOfWhatIsKnownStaysARun)
{
    const std::vector<std::int64_t> known = {1, 2, 3, 5, 6};
    const struct
    {
        kvo::IdRange range;
        std::uint64_t unknown;
        std::uint64_t kept;
    } rows[] = {{{1, 3, 1}, 0, 3}, {{5, 6, 1}, 0, 2}, {{2, 5, 1}, 0, 3}, {{3, 4, 1}, 1, 1}, {{1, 5, 2}, 0, 3},
                {{6, 9, 1}, 1, 1}, {{7, 8, 1}, 2, 0}, {{4, 4, 1}, 1, 0}, {{6, 6, 1}, 0, 1}};
    for (const auto& row : rows) {
        kvo::IdSet ids;
        ids.ranges = {row.range};
        EXPECT_EQ(ids.keepKnown(known), row.unknown) << row.range.first << " to " << row.range.last;
        EXPECT_EQ(ids.size(), row.kept) << row.range.first << " to " << row.range.last;
    }
}

TEST_F(HostileDecks, WantOfMemoryIsAnErrorOfTheDeck)
{
    const std::string file = write("deck.inp", "*NODE\n1\n");
    for (auto* read : {readNeedingTooMuch, readNeedingEvenMore}) {
        const kvo::DeckFormat format = {"none", "None", ".none", "", nullptr, read};
        try {
            kvo::readDeck(file, log, {}, &format);
            FAIL() << "no error";
        } catch (const kvo::ImportError& error) {
            EXPECT_EQ(error.what(), file + ": reading it takes more memory than there is");
        }
    }
}

TEST_F(HostileDecks, CardsTogetherDoNotMakeMoreThanAMesh)
{
    const std::string tooMany = ": the deck would make more than 10 nodes and elements";
    EXPECT_EQ(errorOfGenerator({"*NGEN\n1, 4, 1"}), "none");
    EXPECT_EQ(errorOfGenerator({"*ELGEN\n1, 11"}), "none");
    EXPECT_EQ(errorOfGenerator({"*ELGEN\n1, 12"}), "deck.inp:2: *ELGEN" + tooMany);
    EXPECT_EQ(errorOfGenerator({"*ELGEN\n1, 6", "*ELGEN\n1, 7"}), "deck.inp:2: *ELGEN" + tooMany);
    EXPECT_EQ(errorOfGenerator({"*NFILL\nN, N, 4, 1"}), "deck.inp:2: *NFILL" + tooMany);
    const std::string copyNodes = "*NCOPY, CHANGE NUMBER=4, OLD SET=N, NEW SET=N";
    EXPECT_EQ(errorOfGenerator({copyNodes, copyNodes}), "deck.inp:1: *NCOPY" + tooMany);
    const std::string copyElements = "*ELCOPY, ELEMENT SHIFT=1, SHIFT NODES=0, OLD SET=E, NEW SET=E";
    EXPECT_EQ(errorOfGenerator({copyElements, copyElements}), "none");
    EXPECT_EQ(errorOfGenerator(std::vector<std::string>(9, copyElements)), "deck.inp:1: *ELCOPY" + tooMany);
}

TEST_F(HostileDecks, ASetMayGrowByCopiesOfItself)
{
    std::string deck = someNodes(4) + "*NSET, NSET=ALL, GENERATE\n1, 4\n";
    for (int k = 0; k < 1000; ++k) {
        deck += "*NCOPY, CHANGE NUMBER=1, OLD SET=ALL, SHIFT, NEW SET=ALL\n1, 0, 0\n0, 0, 0, 0, 0, 0, 0\n";
    }
    const kvo::Mesh mesh = read(deck);
    EXPECT_EQ(mesh.nodeCount(), 1004u);
    EXPECT_EQ(pointOf(mesh, 1004).at(0), 1004.0);
}

TEST_F(HostileDecks, PointsOfTransformationsHaveNumbersThatFit)
{
    read("*KEYWORD\n*DEFINE_TRANSFORMATION\n1\nPOINT,1.e30,1.,2.,3.\nPOINT,2.,1.,2.,3.\n*NODE\n1,0.,0.,0.\n", "deck.k");
    EXPECT_EQ(log.warningCount("steps of transformations that are not applied"), 1u);
}

TEST_F(HostileDecks, NoElementComesBehindTheHighestNumber)
{
    EXPECT_EQ(readError("/PREP7\nET,1,185\nN,1,0,0,0\nEN,9223372036854775807,1,1,1,1\nE,1,1,1,1\n", "deck.cdb"),
              "deck.cdb:5: E: there is no number above 9223372036854775807");
}

TEST_F(HostileDecks, FacesThatAreInManyGroups)
{
    constexpr std::size_t count = 3000;
    std::string deck = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\ng";
    for (std::size_t k = 0; k < count; ++k) {
        deck += " a" + std::to_string(k);
    }
    for (std::size_t k = 0; k < count; ++k) {
        deck += k == 0 ? "\nf 1 2 3\n" : "f 1 2 3\n";
    }
    const kvo::Mesh mesh = read(deck + "g a0\nf 1 2 3\ng a0 b\nf 1 2 3\n", "deck.obj");
    ASSERT_EQ(mesh.sets.size(), count + 1);
    for (const kvo::MeshSet& set : mesh.sets) {
        ASSERT_EQ(set.ids.size(), set.name == "a0" ? count + 1 : set.name == "b" ? 1 : count) << set.name;
    }
    EXPECT_EQ(mesh.sets[1].ids.ranges.front().first, 2);
}
