// Small decks that were read wrongly once, where they are at hand: a folder "repro" next to that of the real decks.
// What they show is tested without them as well.
#include "import_fixture.h"

namespace {

using Counts = std::map<std::string, std::uint64_t>;

struct ReproDeck
{
    const char* file;
    std::uint64_t nodes;
    Counts types;
};

void PrintTo(const ReproDeck& deck, std::ostream* out)
{
    *out << deck.file;
}

class ReproDecks : public ImportTest, public testing::WithParamInterface<ReproDeck>
{
};

} // namespace

TEST_P(ReproDecks, AreReadAsTheyShould)
{
    const std::filesystem::path file = dataFolder().parent_path() / "repro" / GetParam().file;
    if (!std::filesystem::exists(file)) {
        GTEST_SKIP() << file << " is not there";
    }
    const kvo::Mesh mesh = readFile(file.string());
    EXPECT_EQ(mesh.nodeCount(), GetParam().nodes);
    EXPECT_EQ(typeCounts(mesh), GetParam().types);
}

INSTANTIATE_TEST_SUITE_P(
    All, ReproDecks,
    testing::Values(ReproDeck{"mesh200.cdb", 8, {{"MESH200", 1}}},
                    ReproDeck{"nblock_mixed_widths.cdb", 3, {}}, // its element lacks the line of nodes
                    ReproDeck{"nodes_only.k", 2, {}}, ReproDeck{"obj_dollar.obj", 3, {{"face", 1}}},
                    ReproDeck{"trailing_comma.bdf", 3, {{"CTRIA3", 1}}},
                    ReproDeck{"two_per_card.bdf",
                              3,
                              {{"PLOTEL", 2}, {"CROD", 2}, {"CTUBE", 2}, {"CVISC", 2}, {"CDAMP3", 2}, {"CELAS3", 2}}},
                    ReproDeck{"unv_empty_group.unv", 3, {{"41 plane stress linear triangle", 1}}},
                    ReproDeck{"unv_parabolic_edge.unv",
                              3,
                              {{"22 tapered beam", 1},
                               {"24 parabolic beam", 1},
                               {"23 curved beam", 1},
                               {"21 linear beam", 1},
                               {"11 rod", 1}}}),
    [](const testing::TestParamInfo<ReproDeck>& row) {
        std::string name = row.param.file;
        for (char& c : name) {
            c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
        }
        return name;
    });
