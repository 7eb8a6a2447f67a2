// Real meshes and surfaces with known counts, where they are at hand: KVO_TEST_DATA names their folder, else a folder
// "shared/data" next to the project's.
#include "import_fixture.h"

#include <cstdlib>

namespace {

struct RealMesh
{
    const char* file;
    std::uint64_t nodes;
    std::map<std::string, std::uint64_t> types;
    std::uint64_t undrawn;
};

std::uint64_t undrawnCount(const kvo::Mesh& mesh)
{
    std::uint64_t count = 0;
    for (const kvo::MeshFile& file : mesh.files) {
        for (const kvo::UndrawnElements& undrawn : file.undrawn) {
            count += undrawn.ids.size();
        }
    }
    return count;
}

void PrintTo(const RealMesh& deck, std::ostream* out)
{
    *out << deck.file;
}

class RealMeshes : public ImportTest, public testing::WithParamInterface<RealMesh>
{
};

} // namespace

TEST_P(RealMeshes, HaveTheCountsThatAreKnown)
{
    const std::filesystem::path file = dataFolder() / GetParam().file;
    if (!std::filesystem::exists(file)) {
        GTEST_SKIP() << withoutRealFile(file);
    }
    const kvo::Mesh mesh = readFile(file.string());
    EXPECT_EQ(mesh.nodeCount(), GetParam().nodes);
    EXPECT_EQ(typeCounts(mesh), GetParam().types);
    EXPECT_EQ(undrawnCount(mesh), GetParam().undrawn);
    EXPECT_TRUE(log.warnings().empty());
}

const std::map<std::string, std::uint64_t> allKindsOfMsh = {
    {"2-node line", 3},    {"3-node triangle", 1}, {"4-node quadrangle", 1}, {"4-node tetrahedron", 1},
    {"5-node pyramid", 1}, {"6-node prism", 1},    {"8-node hexahedron", 1}};

INSTANTIATE_TEST_SUITE_P(
    All, RealMeshes,
    testing::Values(
        RealMesh{"msh/hole8170_v2.msh", 8449, {{"4-node quadrangle", 8170}}, 0},
        RealMesh{"msh/hole8170_v4.msh", 8449, {{"4-node quadrangle", 8170}}, 0},
        RealMesh{"msh/grid_in_msh_01.3da.msh", 462, {{"4-node quadrangle", 460}, {"8-node hexahedron", 200}}, 0},
        RealMesh{"msh/grid_in_msh_01.3da.v41.msh", 462, {{"4-node quadrangle", 460}, {"8-node hexahedron", 200}}, 0},
        RealMesh{"msh/periodic-cube.msh", 125, {{"4-node quadrangle", 96}, {"8-node hexahedron", 64}}, 0},
        RealMesh{"msh/sfepy_msh_tetra.msh", 66, {{"4-node tetrahedron", 127}}, 0},
        RealMesh{"tiny/all_kinds_v22.msh", 20, allKindsOfMsh, 1},
        RealMesh{"tiny/all_kinds_v41.msh", 20, allKindsOfMsh, 1},
        RealMesh{"vtk/can.vtu", 6724, {{"VTK_HEXAHEDRON", 4800}}, 0},
        RealMesh{"vtk/beam-tet.vtk", 36, {{"VTK_TETRA", 48}}, 0},
        RealMesh{"vtk/escher-p2.vtk", 117, {{"VTK_QUADRATIC_TETRA", 42}}, 0},
        RealMesh{
            "vtk/fichera-mixed-p2.vtk",
            116,
            {{"VTK_QUADRATIC_TETRA", 5}, {"VTK_BIQUADRATIC_QUADRATIC_WEDGE", 6}, {"VTK_TRIQUADRATIC_HEXAHEDRON", 3}},
            0},
        RealMesh{"tiny/groups.obj", 12, {{"face", 6}, {"line", 1}}, 0}, // the pentagon is three
        RealMesh{"tiny/quad_tri_ascii.ply", 5, {{"face", 2}}, 0},
        RealMesh{"tiny/quad_tri_big_endian.ply", 5, {{"face", 2}}, 0}),
    [](const testing::TestParamInfo<RealMesh>& row) {
        std::string name = row.param.file;
        for (char& c : name) {
            c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
        }
        return name;
    });
