// Files from real programs, where they are at hand: KVO_TEST_DATA names their folder, else a folder "shared/data" next
// to the project's. The counts are those that their collection states.
#include "convert_fixture.h"

namespace {

struct RealFile
{
    const char* name;
    std::uint64_t nodes;
    std::map<std::string, std::uint64_t> types;
};

const RealFile files[] = {
    {"exodus/exodus.g", 60, {{"HEX8", 24}, {"SHELL4", 26}}},
    {"exodus/8-block.g", 125, {{"HEX8", 64}}},
    {"exodus/two-block.g", 45, {{"HEX8", 16}}},
    {"exodus/test-assembly.exo", 1, {{"SPHERE1", 7}}},
    {"cgns/generated.cgns", 27, {{"HEXA_8", 8}}},
    {"cgns/BC_without_parents.cgns", 4505, {{"HEXA_8", 3840}, {"QUAD_4", 1248}}},
    {"med-gpl3/mesh002e.med", 450, {{"PYRA5", 154}, {"TETRA4", 1764}, {"QUAD4", 154}, {"TRIA3", 4}, {"SEG2", 37}}},
    {"med-gpl3/mesh002h.med", 2973, {{"PYRA13", 154}, {"TETRA10", 1764}, {"QUAD8", 154}, {"TRIA6", 4}, {"SEG3", 37}}},
    {"med-gpl3/zzzz413c.med", 296, {{"QUAD4", 420}, {"SEG2", 149}}},
    {"med-gpl3/xxParallelMechanicalLoad004a.med", 208, {{"HEXA20", 27}, {"QUAD8", 54}}},
};

class RealContainers : public ContainerTest
{
protected:
    void SetUp() override
    {
        data = dataFolder();
        if (!std::filesystem::exists(data / "exodus")) {
            GTEST_SKIP() << withoutRealFile(data / "exodus");
        }
    }

    std::filesystem::path data;
};

std::uint64_t sumOf(const std::map<std::string, std::uint64_t>& counts)
{
    std::uint64_t sum = 0;
    for (const auto& entry : counts) {
        sum += entry.second;
    }
    return sum;
}

} // namespace

TEST_F(RealContainers, HaveTheStatedCounts)
{
    for (const RealFile& file : files) {
        const kvo::Mesh mesh = readIt(data / file.name);
        EXPECT_EQ(mesh.nodeCount(), file.nodes) << file.name;
        EXPECT_EQ(drawnAndUndrawnCounts(mesh), file.types) << file.name;
        kvo::writeModelDirectory(mesh, path("model"), log);
    }
}

TEST_F(RealContainers, HaveSolidsOfPositiveVolume)
{
    for (const RealFile& file : files) {
        const kvo::Mesh mesh = readIt(data / file.name);
        for (const auto& volume : solidVolumes(mesh)) {
            EXPECT_GT(volume.second, 0) << file.name << " element " << volume.first;
        }
    }
}

TEST_F(RealContainers, MedIsRightHandedByItsConventionAlone)
{
    for (const RealFile& file : files) {
        if (std::string(file.name).rfind("med", 0) == 0) {
            readIt(data / file.name);
            EXPECT_TRUE(log.notes().empty()) << file.name << ": " << log.notes().front();
        }
    }
}

TEST_F(RealContainers, ExodusBlocksOfAllKinds)
{
    const kvo::Mesh mesh = readIt(data / "exodus/biplane_rms_pressure_bs.exo");
    EXPECT_EQ(mesh.nodeCount(), 774u);
    EXPECT_EQ(sumOf(drawnAndUndrawnCounts(mesh)), 741u);
    EXPECT_EQ(mesh.files[0].nodeIds.back(), 1249);
    EXPECT_EQ(mesh.parts.size(), 46u);
    EXPECT_EQ(mesh.parts[43].name, "line_weld_block_1");
}

TEST_F(RealContainers, MedNumbersAreKept)
{
    const kvo::Mesh mesh = readIt(data / "med-gpl3/zzzz413c.med");
    EXPECT_EQ(mesh.files[0].nodeIds.back(), 312);
    const kvo::Mesh shells = readIt(data / "med-gpl3/mesh002b.med");
    EXPECT_EQ(shells.nodeCount(), 201u);
    EXPECT_EQ(shells.elementCount(), 148u);
}

TEST_F(RealContainers, CgnsFamiliesAreSets)
{
    const kvo::Mesh mesh = readIt(data / "cgns/BC_without_parents.cgns");
    EXPECT_EQ(mesh.parts.size(), 4u);
    std::uint64_t sets = 0;
    for (const kvo::MeshSet& set : mesh.sets) {
        sets += set.ids.size() > 0 ? 1 : 0;
    }
    EXPECT_GE(sets, 3u);
}
