// CGNS files.
#include "convert_fixture.h"

#include "modelinfo.h"

namespace {

class Cgns : public ContainerTest
{
protected:
    kvo::Mesh tinyMesh(bool adf = false)
    {
        writeTinyCgns(path("tiny.cgns"), adf);
        return readIt(path("tiny.cgns"));
    }
};

Ids positionsOf(const TinyElement& element)
{
    return Ids(element.corners.begin(), element.corners.end());
}

} // namespace

TEST_F(Cgns, EveryZoneIsAFileWithItsOwnIds)
{
    for (const bool adf : {false, true}) {
        const kvo::Mesh mesh = tinyMesh(adf);
        ASSERT_EQ(mesh.files.size(), 2u);
        const std::size_t solids = fileNamed(mesh, "solids"), block = fileNamed(mesh, "block");
        EXPECT_EQ(mesh.files[solids].nodeIds.size(), 16u);
        EXPECT_EQ(elementIds(mesh, block), (Ids{1, 2}));
        for (std::int64_t id = 1; id <= 6; ++id) {
            EXPECT_EQ(nodesOf(mesh, id, solids), positionsOf(tinyElements()[static_cast<std::size_t>(id - 1)])) << id;
        }
        EXPECT_EQ(nodesOf(mesh, 7, solids), (Ids{9, 15, kvo::noNode}));
    }
}

TEST_F(Cgns, SolidsHavePositiveVolumes)
{
    const kvo::Mesh mesh = tinyMesh();
    const auto volumes = solidVolumes(mesh, fileNamed(mesh, "solids"));
    ASSERT_EQ(volumes.size(), 4u);
    for (std::int64_t id = 1; id <= 4; ++id) {
        EXPECT_NEAR(volumes.at(id), tinyElements()[static_cast<std::size_t>(id - 1)].volume, 1e-12);
    }
}

TEST_F(Cgns, LeftHandedBlocksAreTurnedAndCounted)
{
    const kvo::Mesh mesh = tinyMesh();
    const auto volumes = solidVolumes(mesh, fileNamed(mesh, "block"));
    EXPECT_NEAR(volumes.at(1), 1, 1e-12);
    EXPECT_NEAR(volumes.at(2), 1, 1e-12);
    bool told = false;
    for (const std::string& note : log.notes()) {
        told = told || contains(note, "2 cells are left-handed");
    }
    EXPECT_TRUE(told);
}

TEST_F(Cgns, SectionsAreParts)
{
    const kvo::Mesh mesh = tinyMesh();
    const std::size_t solids = fileNamed(mesh, "solids");
    EXPECT_EQ(partOf(mesh, 3, solids).name, "solids/body");
    EXPECT_EQ(partOf(mesh, 5, solids).name, "solids/floor");
    EXPECT_EQ(partOf(mesh, 1, fileNamed(mesh, "block")).name, "block");
}

TEST_F(Cgns, PolygonsAreDividedAndPointsAreKept)
{
    const kvo::Mesh mesh = tinyMesh();
    const std::size_t solids = fileNamed(mesh, "solids");
    EXPECT_EQ(elementIds(mesh, solids), (Ids{1, 2, 3, 4, 5, 6, 7, 9, 10, 11}));
    ASSERT_EQ(mesh.files[solids].undrawn.size(), 1u);
    EXPECT_EQ(mesh.files[solids].undrawn[0].type, "NODE");
    EXPECT_EQ(mesh.files[solids].undrawn[0].ids, (Ids{8}));
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "NODE"), 1u);
}

TEST_F(Cgns, ConditionsAndFamiliesAreSets)
{
    const kvo::Mesh mesh = tinyMesh();
    EXPECT_EQ(setMembers(mesh, kvo::MeshSet::Of::Elements, "bottom"), (Ids{5, 6}));
    EXPECT_EQ(setMembers(mesh, kvo::MeshSet::Of::Elements, "walls"), (Ids{5, 6}));
    EXPECT_EQ(setMembers(mesh, kvo::MeshSet::Of::Nodes, "corner"), (Ids{1, 2, 3}));
    EXPECT_EQ(setMembers(mesh, kvo::MeshSet::Of::Elements, "fluid"), (Ids{1, 2}));
}

TEST_F(Cgns, ConditionsOfStructuredZonesAreNodes)
{
    const kvo::Mesh mesh = tinyMesh();
    EXPECT_EQ(setMembers(mesh, kvo::MeshSet::Of::Nodes, "inlet"), (Ids{1, 4, 7, 10}));
    EXPECT_EQ(setMembers(mesh, kvo::MeshSet::Of::Nodes, "outlet"), (Ids{3, 6, 9, 12}));
}

TEST_F(Cgns, ZonesBecomeModelFiles)
{
    const kvo::Mesh mesh = tinyMesh();
    kvo::writeModelDirectory(mesh, path("model"), log);
    ModelInfo info;
    std::string error;
    ASSERT_TRUE(readModelInfo(folder.string(), "model", &info, &error)) << error;
    EXPECT_EQ(info.files.size(), 2u);
}
