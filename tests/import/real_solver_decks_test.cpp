// Real keyword, universal and archive decks with known counts, where they are at hand: KVO_TEST_DATA names their
// folder, else a folder "shared/data" next to the project's.
#include "import_fixture.h"

#include <cstdlib>

namespace {

std::filesystem::path dataFolder()
{
    const char* named = std::getenv("KVO_TEST_DATA");
    return named ? std::filesystem::path(named)
                 : std::filesystem::path(KVO_SOURCE_DIR).parent_path() / "shared" / "data";
}

using Counts = std::map<std::string, std::uint64_t>;

struct SolverDeck
{
    const char* file;
    std::uint64_t nodes;
    Counts types;
    Counts undrawn;
};

Counts typeCounts(const kvo::Mesh& mesh)
{
    Counts counts;
    for (const kvo::ElementBlock& block : mesh.files.at(0).blocks) {
        for (const std::uint32_t part : block.part) {
            if (part != kvo::noPart) {
                ++counts[mesh.types[block.type].name];
            }
        }
    }
    return counts;
}

Counts undrawnCounts(const kvo::Mesh& mesh)
{
    Counts counts;
    for (const kvo::UndrawnElements& list : mesh.files.at(0).undrawn) {
        counts[list.type] += list.ids.size();
    }
    return counts;
}

const SolverDeck decks[] = {
    // The list of ten nodes a solid stands on two lines each.
    {"lsdyna/bar_impact_mesh.k", 1411, {{"ELEMENT_SOLID", 768}, {"ELEMENT_SHELL", 256}}, {}},
    {"lsdyna/bird_strike_input.k", 2957, {{"ELEMENT_SHELL", 2304}}, {{"ELEMENT_SPH", 701}}},
    {"lsdyna/john_reid_pipe_nodes.k", 2049, {{"ELEMENT_SHELL", 1400}, {"ELEMENT_SOLID", 304}}, {}},
    {"lsdyna/john_reid_pendulum_nodes.k", 784, {{"ELEMENT_SHELL", 768}, {"ELEMENT_BEAM", 8}}, {}},
    // Two of its seven shells and two of its four beams have too few nodes.
    {"lsdyna/pydyna_plot_test.k", 21, {{"ELEMENT_SHELL", 5}, {"ELEMENT_BEAM", 2}}, {}},
    {"tiny/all_kinds.k",
     20,
     {{"ELEMENT_SOLID", 4}, {"ELEMENT_SHELL", 2}, {"ELEMENT_BEAM", 2}, {"ELEMENT_DISCRETE", 3}},
     {{"ELEMENT_MASS", 1}}},
    {"tiny/same_id_two_classes.k",
     8,
     {{"ELEMENT_SOLID", 1}, {"ELEMENT_SHELL", 1}, {"ELEMENT_BEAM", 1}, {"ELEMENT_DISCRETE", 1}},
     {}},
};

std::string nameOf(const testing::TestParamInfo<SolverDeck>& row)
{
    std::string name = row.param.file;
    for (char& c : name) {
        c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    }
    return name;
}

class RealSolverDecks : public ImportTest, public testing::WithParamInterface<SolverDeck>
{
};

} // namespace

TEST_P(RealSolverDecks, HaveTheCountsThatAreKnown)
{
    const std::filesystem::path file = dataFolder() / GetParam().file;
    if (!std::filesystem::exists(file)) {
        GTEST_SKIP() << file << " is not there";
    }
    const kvo::Mesh mesh = readFile(file.string());
    EXPECT_EQ(mesh.nodeCount(), GetParam().nodes);
    EXPECT_EQ(typeCounts(mesh), GetParam().types);
    EXPECT_EQ(undrawnCounts(mesh), GetParam().undrawn);
}

INSTANTIATE_TEST_SUITE_P(All, RealSolverDecks, testing::ValuesIn(decks), nameOf);
