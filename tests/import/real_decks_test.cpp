// Real decks with known counts, where they are at hand: KVO_TEST_DATA names their folder, else a folder "shared/data"
// next to the project's. Debian's package z88-data has more.
#include "import_fixture.h"

#include <cstdlib>

namespace {

struct RealDeck
{
    const char* file;
    std::uint64_t nodes;
    std::map<std::string, std::uint64_t> types;
};

void PrintTo(const RealDeck& deck, std::ostream* out)
{
    *out << deck.file;
}

class RealDecks : public ImportTest, public testing::WithParamInterface<RealDeck>
{
};

} // namespace

TEST_P(RealDecks, HaveTheCountsThatAreKnown)
{
    const std::filesystem::path file = dataFolder() / GetParam().file;
    if (!std::filesystem::exists(file)) {
        GTEST_SKIP() << withoutRealFile(file);
    }
    const kvo::Mesh mesh = readFile(file.string());
    EXPECT_EQ(mesh.nodeCount(), GetParam().nodes);
    EXPECT_EQ(typeCounts(mesh), GetParam().types);
}

INSTANTIATE_TEST_SUITE_P(
    All, RealDecks,
    testing::Values(
        RealDeck{"abaqus/tractor_wheel_coarse.INP", 21359, {{"C3D10", 11171}}},
        RealDeck{"abaqus/3d_test_abaqus.inp", 576, {{"C3D8R", 375}}},
        RealDeck{"abaqus/codim_1-jagged_surface.inp", 439, {{"S4", 394}}},
        RealDeck{"abaqus/3d_CC_cubit_new.inp", 54, {{"C3D8R", 16}}},
        RealDeck{"abaqus/abaqus_hex.inp", 12, {{"C3D8", 2}}}, RealDeck{"abaqus/abaqus_tet.inp", 13, {{"C3D4", 14}}},
        RealDeck{"abaqus/abaqus_quad_tri.inp", 34, {{"CPS4", 20}, {"CPS3", 8}}},
        RealDeck{"abaqus/abaqusreader_beams.inp", 7, {{"B33", 6}}}, // the seventh has a missing node
        RealDeck{"abaqus/abaqusreader_nx_export_problem.inp", 3, {}},
        RealDeck{"gpl/cae_default.inp",
                 116,
                 {{"C3D4", 24}, {"C3D6", 24}, {"C3D8", 6}, {"C3D10", 8}, {"C3D15", 12}, {"C3D20", 1}}},
        RealDeck{"tiny/all_kinds.inp",
                 20,
                 {{"C3D8", 1},
                  {"C3D5", 1},
                  {"C3D6", 1},
                  {"C3D4", 1},
                  {"S4", 1},
                  {"S3", 1},
                  {"B31", 2},
                  {"T3D2", 1},
                  {"SPRINGA", 1},
                  {"DASHPOTA", 1},
                  {"SPRING1", 1}}},
        RealDeck{"nastran/wingbox-L2-Order2.bdf", 17193, {{"CQUAD4", 17800}}},
        RealDeck{"nastran/fuselage.bdf", 8184, {{"CQUAD4", 8157}, {"CTRIA3", 480}}},
        RealDeck{"nastran/tacs_multi_beam_frame.bdf", 7, {{"CBAR", 6}}},
        RealDeck{"nastran/tacs_offset_bar.bdf", 9, {{"CBAR", 8}}},
        RealDeck{"nastran/tacs_I_beam.bdf", 67, {{"CQUAD4", 50}, {"CROD", 20}}},
        RealDeck{"nastran/tacs_rbe_test.bdf", 51, {{"CQUAD4", 32}}},
        RealDeck{"nastran/tacs_beam_tip_mass.bdf", 6, {{"CBAR", 5}}},
        RealDeck{"nastran/tacs_partitioned_plate.bdf", 121, {{"CQUAD4", 100}}},
        RealDeck{"nastran/tacs_two_hexs.bdf", 12, {{"CHEXA", 2}}}, RealDeck{"nastran/BAR-I12.DAT", 2, {{"CBAR", 1}}},
        RealDeck{"nastran/bar_static_large.bdf", 2, {{"CBAR", 1}}},
        RealDeck{"nastran/missing_continuation.bdf", 2, {{"CBAR", 1}}},
        RealDeck{"nastran/cshear.bdf", 4, {{"CROD", 4}, {"CSHEAR", 1}}},
        RealDeck{"nastran/cquad4_pcomp.bdf", 4, {{"CQUAD4", 1}}},
        RealDeck{"gpl/MeshPyraLin.bdf", 205, {{"CTETRA", 426}, {"CPYRAM", 8}, {"CTRIA3", 62}, {"CQUAD4", 8}}},
        RealDeck{"gpl/MeshPentaLin.bdf", 341, {{"CPENTA", 300}, {"CQUAD4", 60}, {"CTRIA3", 20}}},
        RealDeck{"gpl/MeshHexaQuad.bdf", 921, {{"CHEXA", 120}, {"CQUAD8", 68}}},
        RealDeck{"gpl/vega_bush.dat", 242, {{"CQUAD4", 200}, {"CBUSH", 11}}},
        RealDeck{"/usr/share/z88/b8_g.nas", 3211, {{"CTETRA", 12489}}},
        RealDeck{"/usr/share/z88/b21_para_g.nas", 415159, {{"CTETRA", 278763}}},
        RealDeck{"tiny/coord_systems.bdf", 5, {{"CQUAD4", 1}, {"CTRIA3", 1}}},
        RealDeck{"tiny/second_order.bdf", 11, {{"CTETRA", 3}, {"CTRIA6", 1}, {"CTRIA3", 1}}},
        RealDeck{"tiny/all_kinds.bdf",
                 20,
                 {{"CHEXA", 1},
                  {"CPYRAM", 1},
                  {"CPENTA", 1},
                  {"CTETRA", 1},
                  {"CQUAD4", 1},
                  {"CTRIA3", 1},
                  {"CBAR", 1},
                  {"CBEAM", 1},
                  {"CROD", 1},
                  {"CELAS1", 1},
                  {"CDAMP1", 1},
                  {"CELAS2", 1},
                  {"CBUSH", 1}}},
        RealDeck{"tiny/parts_instances.inp", 8, {{"S4", 2}}}, RealDeck{"tiny/two_solids_ascii.stl", 7, {{"facet", 3}}},
        RealDeck{"tiny/binary_header_says_solid.stl", 4, {{"facet", 2}}}),
    [](const testing::TestParamInfo<RealDeck>& row) {
        std::string name = row.param.file;
        for (char& c : name) {
            c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
        }
        return name;
    });
