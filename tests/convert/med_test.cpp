// MED files.
#include <med.h>

#include "convert_fixture.h"

namespace {

class Med : public ContainerTest
{
protected:
    kvo::Mesh tinyMesh(const MedChoice& choice = {})
    {
        writeTinyMed(path("tiny.med"), choice);
        return readIt(path("tiny.med"));
    }
};

void expectTinyVolumes(const kvo::Mesh& mesh)
{
    const std::map<std::int64_t, double> volumes = solidVolumes(mesh);
    ASSERT_EQ(volumes.size(), 4u);
    for (const TinyElement& element : tinyElements()) {
        if (element.volume > 0) {
            EXPECT_NEAR(volumes.at(element.id), element.volume, 1e-12) << element.kind;
        }
    }
}

void addFieldAndFace(const std::string& path)
{
    const med_idt file = MEDfileOpen(path.c_str(), MED_ACC_RDWR);
    const std::string blanks(MED_SNAME_SIZE, ' ');
    EXPECT_EQ(MEDfieldCr(file, "heat", MED_FLOAT64, 1, blanks.c_str(), blanks.c_str(), "s", "tiny"), 0);
    const med_int corners[] = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(MEDmeshElementConnectivityWr(file, "tiny", MED_NO_DT, MED_NO_IT, 0, MED_DESCENDING_FACE, MED_QUAD4,
                                           MED_NODAL, MED_FULL_INTERLACE, 2, corners),
              0);
    EXPECT_EQ(MEDfileClose(file), 0);
}

} // namespace

TEST_F(Med, SolidsAreTurnedToPositiveVolumes)
{
    const kvo::Mesh mesh = tinyMesh();
    expectTinyVolumes(mesh);
    EXPECT_TRUE(log.notes().empty());
    for (const char* kind : {"hexa", "pyramid", "wedge", "tetra"}) {
        EXPECT_EQ(nodesOf(mesh, tiny(kind).id), cornerIds(tiny(kind))) << kind;
    }
}

TEST_F(Med, SolidsAgainstTheOrderAreTakenTheOtherWayRoundAndCounted)
{
    MedChoice choice;
    choice.medOrder = false;
    expectTinyVolumes(tinyMesh(choice));
    ASSERT_EQ(log.notes().size(), 1u);
    EXPECT_TRUE(contains(log.notes()[0], "4 solids")) << log.notes()[0];
}

TEST_F(Med, NumbersAreTheIds)
{
    const kvo::Mesh mesh = tinyMesh();
    EXPECT_EQ(elementIds(mesh), (Ids{87, 96, 105, 204, 303, 402, 501}));
    EXPECT_EQ(nodesOf(mesh, 105), cornerIds(tiny("quad")));
    EXPECT_EQ(nodesOf(mesh, 87), (Ids{nodeIdOf(9), nodeIdOf(15), kvo::noNode}));
    EXPECT_EQ(pointOf(mesh, nodeIdOf(11)), (Point{2, 0, 1}));
}

TEST_F(Med, WithoutNumbersIdsArePositions)
{
    MedChoice choice;
    choice.numbers = false;
    const kvo::Mesh mesh = tinyMesh(choice);
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(mesh.files[0].nodeIds.front(), 1);
    EXPECT_EQ(mesh.files[0].nodeIds.back(), 16);
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(Med, KindsMayShareNumbers)
{
    MedChoice choice;
    choice.sharedNumbers = true;
    const kvo::Mesh mesh = tinyMesh(choice);
    EXPECT_EQ(elementIds(mesh), (Ids{1, 1, 204, 303, 402, 501}));
    EXPECT_TRUE(mesh.idsPerFamily);
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(Med, FamiliesAreParts)
{
    const kvo::Mesh mesh = tinyMesh();
    EXPECT_EQ(partOf(mesh, 501).name, "solids");
    EXPECT_EQ(partOf(mesh, 501).id, 1);
    EXPECT_EQ(partOf(mesh, 204).name, "solids, tetrahedra");
    EXPECT_EQ(partOf(mesh, 204).id, 4);
    EXPECT_EQ(partOf(mesh, 96).name, "shells, thin");
    EXPECT_EQ(partOf(mesh, 87).name, "FAMILLE_ZERO");
    EXPECT_EQ(partOf(mesh, 87).id, 0);
}

TEST_F(Med, GroupsAreSets)
{
    const kvo::Mesh mesh = tinyMesh();
    EXPECT_EQ(setMembers(mesh, kvo::MeshSet::Of::Elements, "solids"), (Ids{204, 303, 402, 501}));
    EXPECT_EQ(setMembers(mesh, kvo::MeshSet::Of::Elements, "thin"), (Ids{96, 105}));
    EXPECT_EQ(setMembers(mesh, kvo::MeshSet::Of::Nodes, "top"), (Ids{nodeIdOf(16), nodeIdOf(15), nodeIdOf(9)}));
}

TEST_F(Med, GroupsAreOfOneKindWhereKindsShareNumbers)
{
    MedChoice choice;
    choice.sharedNumbers = true;
    const kvo::Mesh mesh = tinyMesh(choice);
    std::map<std::string, int> kinds;
    for (const kvo::MeshSet& set : mesh.sets) {
        kinds[set.name] = set.family;
    }
    EXPECT_EQ(kinds, (std::map<std::string, int>{{"shells", static_cast<int>(kvo::Family::Shell)},
                                                 {"solids", static_cast<int>(kvo::Family::Solid)},
                                                 {"tetrahedra", static_cast<int>(kvo::Family::Solid)},
                                                 {"thin", static_cast<int>(kvo::Family::Shell)},
                                                 {"top", kvo::MeshSet::anyFamily}}));
}

TEST_F(Med, FieldsAndFacesAreCounted)
{
    writeTinyMed(path("more.med"));
    addFieldAndFace(path("more.med"));
    readIt(path("more.med"));
    std::map<std::string, std::uint64_t> counts;
    for (const kvo::ImportLog::List& list : log.lists()) {
        for (const kvo::ImportLog::Entry& entry : list.entries) {
            counts[entry.name] = entry.count;
        }
    }
    EXPECT_EQ(counts, (std::map<std::string, std::uint64_t>{{"fields", 1}, {"faces beside the elements", 2}}));
}

TEST_F(Med, DescriptionAndUnitsAreKept)
{
    const std::vector<std::pair<std::string, std::string>> expected = {{"description", "a tiny model"},
                                                                       {"units", "mm"}};
    EXPECT_EQ(tinyMesh().facts, expected);
}

TEST_F(Med, ModelsLoad)
{
    EXPECT_EQ(roundTrip(tinyMesh()).size(), 7u);
}
