// Exodus II files.
#include "convert_fixture.h"

namespace {

class Exodus : public ContainerTest
{
protected:
    kvo::Mesh tinyMesh(ExodusStorage storage = ExodusStorage::Classic)
    {
        writeTinyExodus(path("tiny.exo"), storage);
        return readIt(path("tiny.exo"));
    }
};

} // namespace

TEST_F(Exodus, IdsAreThoseOfTheMaps)
{
    const kvo::Mesh mesh = tinyMesh();
    for (const TinyElement& element : tinyElements()) {
        if (element.kind == std::string("beam")) {
            EXPECT_EQ(nodesOf(mesh, element.id), (Ids{nodeIdOf(9), nodeIdOf(15), kvo::noNode}));
        } else if (element.kind != std::string("point")) {
            EXPECT_EQ(nodesOf(mesh, element.id), cornerIds(element)) << element.kind;
        }
    }
    EXPECT_EQ(pointOf(mesh, nodeIdOf(15)), (Point{.5, .5, 3}));
}

TEST_F(Exodus, EveryStorageGivesTheSame)
{
    for (const ExodusStorage storage : {ExodusStorage::Data64, ExodusStorage::Hdf5}) {
        const kvo::Mesh mesh = tinyMesh(storage);
        EXPECT_EQ(mesh.formatName, "Exodus II");
        EXPECT_EQ(elementIds(mesh), (Ids{78, 87, 96, 105, 204, 303, 402, 501}));
        EXPECT_EQ(nodesOf(mesh, 303), cornerIds(tiny("wedge")));
        EXPECT_EQ(partOf(mesh, 303).id, 3);
    }
}

TEST_F(Exodus, IdsThatNoModelHoldsAreReplaced)
{
    writeTinyExodus(path("large.exo"), ExodusStorage::Data64, std::int64_t{1} << 31);
    const kvo::Mesh mesh = readIt(path("large.exo"));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(mesh.files[0].nodeIds.back(), static_cast<std::int64_t>(tinyNodes().size()));
    EXPECT_EQ(log.warningCount("id maps that cannot be used"), 2u);
    EXPECT_EQ(setMembers(mesh, kvo::MeshSet::Of::Elements, "side set 44"), (Ids{1, 2}));
}

TEST_F(Exodus, SolidsHavePositiveVolumes)
{
    const kvo::Mesh mesh = tinyMesh();
    const std::map<std::int64_t, double> volumes = solidVolumes(mesh);
    ASSERT_EQ(volumes.size(), 4u);
    for (const TinyElement& element : tinyElements()) {
        if (element.volume > 0) {
            EXPECT_NEAR(volumes.at(element.id), element.volume, 1e-12) << element.kind;
        }
    }
}

TEST_F(Exodus, BlocksAreParts)
{
    const kvo::Mesh mesh = tinyMesh();
    EXPECT_EQ(partNames(mesh),
              (std::vector<std::string>{"cube", "block 12", "keil", "tet", "floor", "block 6", "mast", "block 9"}));
    EXPECT_EQ(partOf(mesh, 501).id, 7);
    EXPECT_EQ(partOf(mesh, 402).id, 12);
    EXPECT_EQ(partOf(mesh, 105).data.thickness, 0.125);
    EXPECT_EQ(partOf(mesh, 87).data.area, 2.5);
}

TEST_F(Exodus, TypesAreOneWhateverTheirSpelling)
{
    const std::map<std::string, std::uint64_t> expected = {{"HEX8", 1},   {"PYRAMID5", 1}, {"WEDGE6", 1},
                                                           {"TETRA4", 1}, {"SHELL4", 1},   {"TRI3", 1},
                                                           {"BEAM2", 1},  {"SPRING2", 1},  {"SPHERE1", 1}};
    EXPECT_EQ(drawnAndUndrawnCounts(tinyMesh()), expected);
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "SPHERE1"), 1u);
}

TEST_F(Exodus, SetsKeepTheirMembersAndIds)
{
    const kvo::Mesh mesh = tinyMesh();
    EXPECT_EQ(setMembers(mesh, kvo::MeshSet::Of::Nodes, "node set 44"), (Ids{nodeIdOf(9), nodeIdOf(6), nodeIdOf(5)}));
    EXPECT_EQ(setMembers(mesh, kvo::MeshSet::Of::Elements, "side set 44"), (Ids{402, 501}));
    EXPECT_EQ(mesh.sets.at(0).id, 44);
}

TEST_F(Exodus, BeamsHaveTheDirectionOfTheirAttributes)
{
    const kvo::Mesh mesh = tinyMesh();
    ASSERT_EQ(mesh.files[0].orientations.size(), 1u);
    EXPECT_EQ(mesh.files[0].orientations[0].vector, (std::array<double, 3>{0, 1, 0}));
}

TEST_F(Exodus, ModelsLoad)
{
    const auto elements = roundTrip(tinyMesh());
    EXPECT_EQ(elements.size(), 8u);
    EXPECT_EQ(elements.at(501).nodeIds.size(), 8u);
    EXPECT_EQ(elements.at(501).nodeIds[0], static_cast<unsigned int>(nodeIdOf(1)));
}
