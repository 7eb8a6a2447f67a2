// Real keyword, universal and archive decks with known counts, where they are at hand: KVO_TEST_DATA names their
// folder, else a folder "shared/data" next to the project's.
#include "import_fixture.h"

#include <cstdlib>

namespace {

using Counts = std::map<std::string, std::uint64_t>;

struct SolverDeck
{
    const char* file;
    std::uint64_t nodes;
    Counts types;
    Counts undrawn;
};

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
    {"unv/salome_cube.unv",
     216,
     {{"11 rod", 60}, {"44 plane stress linear quadrilateral", 150}, {"115 solid linear brick", 125}},
     {}},
    {"unv/mesh.unv", 216, {{"94 thin shell linear quadrilateral", 150}, {"115 solid linear brick", 125}}, {}},
    {"unv/test46.unv", 81, {{"11 rod", 32}, {"44 plane stress linear quadrilateral", 64}}, {}},
    {"gpl/cae_default.unv",
     116,
     {{"111 solid linear tetrahedron", 24},
      {"112 solid linear wedge", 24},
      {"115 solid linear brick", 6},
      {"118 solid parabolic tetrahedron", 8},
      {"113 solid parabolic wedge", 12},
      {"116 solid parabolic brick", 1}},
     {}},
    {"tiny/all_kinds.unv",
     20,
     {{"115 solid linear brick", 1},
      {"112 solid linear wedge", 1},
      {"111 solid linear tetrahedron", 1},
      {"94 thin shell linear quadrilateral", 1},
      {"91 thin shell linear triangle", 1},
      {"21 linear beam", 1},
      {"22 tapered beam", 1},
      {"11 rod", 1},
      {"136 node to node translational spring", 1},
      {"141 node to node damper", 1},
      {"138 node to ground translational spring", 1}},
     {{"161 lumped mass", 1}}},
    {"ansys/pcb_mesh_file.cdb",
     14699,
     {{"BEAM188", 100}, {"SHELL181", 4346}, {"SOLID186", 1510}},
     {{"CONTA174", 1363}, {"TARGE170", 1363}}},
    {"ansys/class40.cdb", 4147, {{"SHELL181", 3995}, {"BEAM188", 88}}, {}},
    {"ansys/all_solid_cells.cdb", 52, {{"SOLID186", 4}}, {}},
    {"ansys/mixed_missing_midside.cdb", 584, {{"SOLID45", 21}, {"SOLID92", 236}, {"SOLID95", 8}}, {{"SURF154", 22}}},
    {"ansys/academic_rotor.cdb", 786, {{"SOLID185", 524}}, {}},
    {"ansys/hypermesh.cdb", 105, {{"SHELL181", 80}}, {}},
    {"ansys/etblock.cdb", 4, {{"SHELL181", 1}}, {}},
    {"tiny/all_kinds.cdb",
     20,
     {{"SOLID185", 4}, {"SHELL181", 2}, {"BEAM188", 2}, {"LINK180", 1}, {"COMBIN14", 2}},
     {{"MASS21", 1}}},
};

// Names the row in a failure's message.
void PrintTo(const SolverDeck& deck, std::ostream* out)
{
    *out << deck.file;
}

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
        GTEST_SKIP() << withoutRealFile(file);
    }
    const kvo::Mesh mesh = readFile(file.string());
    EXPECT_EQ(mesh.nodeCount(), GetParam().nodes);
    EXPECT_EQ(typeCounts(mesh), GetParam().types);
    EXPECT_EQ(undrawnCounts(mesh), GetParam().undrawn);
    EXPECT_NO_THROW(kvo::writeModelDirectory(mesh, path("model"), log));
    EXPECT_TRUE(std::filesystem::is_directory(path("model")));
}

TEST(RealSolverDecksThatAreDamaged, AreRefusedWithTheirLine)
{
    const std::filesystem::path file = dataFolder() / "ansys/corrupt_a.cdb";
    if (!std::filesystem::exists(file)) {
        GTEST_SKIP() << withoutRealFile(file);
    }
    kvo::ImportLog log;
    try {
        kvo::readDeck(file.string(), log);
        FAIL() << "no error";
    } catch (const kvo::ImportError& error) {
        EXPECT_EQ(error.place.line, 143u) << error.what();
    }
}

INSTANTIATE_TEST_SUITE_P(All, RealSolverDecks, testing::ValuesIn(decks), nameOf);
