// Input decks: what sections say, sets, and what is not drawn.
#include "import_fixture.h"

namespace {

class InpSections : public ImportTest
{
protected:
    const kvo::MeshSet* setNamed(const kvo::Mesh& mesh, const std::string& name, std::uint32_t file)
    {
        for (const kvo::MeshSet& set : mesh.sets) {
            if (set.name == name && set.file == file) {
                return &set;
            }
        }
        return nullptr;
    }

    Ids idsOf(const kvo::MeshSet* set)
    {
        Ids ids;
        if (set) {
            set->ids.forEach([&](std::int64_t id) { ids.push_back(id); });
        }
        return ids;
    }
};

using Vector = std::array<double, 3>;
constexpr std::uint32_t whole = kvo::MeshSet::wholeMesh;

const char* const triangle = "*ELEMENT, TYPE=S3, ELSET=E\n1, 1, 2, 3\n";
const char* const bar = "*ELEMENT, TYPE=B31, ELSET=E\n1, 1, 2\n2, 2, 3, 4\n";

} // namespace

TEST_F(InpSections, ThicknessOfShells)
{
    EXPECT_EQ(partOf(read(someNodes(3) + triangle + "*SHELL SECTION, ELSET=E\n2.5, 5\n"), 1).data.thickness, 2.5);
    EXPECT_EQ(partOf(read(someNodes(3) + triangle + "*MEMBRANE SECTION, ELSET=E\n.5\n"), 1).data.thickness, 0.5);
    EXPECT_EQ(
        partOf(read(someNodes(3) + triangle + "*SHELL SECTION, ELSET=E, COMPOSITE\n.5, 3, M, 0.\n.25, 3, M, 90.\n"), 1)
            .data.thickness,
        0.75);
    EXPECT_EQ(partOf(read(someNodes(3) + triangle + "*SHELL SECTION, ELSET=E\ndistribution, 5\n"), 1).data.thickness,
              0.0);
}

TEST_F(InpSections, CrossSectionsOfBeams)
{
    const kvo::MeshPart pipe = partOf(read(someNodes(4) + bar + "*BEAM SECTION, ELSET=E, SECTION=Pipe\n10., .5\n"), 1);
    EXPECT_EQ(pipe.data.shape, "PIPE");
    EXPECT_EQ(pipe.data.sizes, (std::vector<double>{10, 0.5}));
    const kvo::MeshPart general = partOf(
        read(someNodes(4) + bar + "*BEAM GENERAL SECTION, ELSET=E, SECTION=GENERAL\n3., 1., 0., 1., 1.\n0., 1., 0.\n"),
        1);
    EXPECT_EQ(general.data.area, 3.0);
    EXPECT_TRUE(general.data.sizes.empty());
}

TEST_F(InpSections, TheDirectionOfABeamSectionIsForBeamsWithoutAThirdNode)
{
    const kvo::Mesh mesh = read(someNodes(4) + bar + "*BEAM SECTION, ELSET=E, SECTION=RECT\n1., 2.\n0., 1., -1.\n");
    ASSERT_EQ(mesh.files[0].orientations.size(), 1u);
    EXPECT_EQ(mesh.files[0].orientations[0].vector, (Vector{0, 1, -1}));
    EXPECT_EQ(mesh.files[0].orientations[0].elements.size(), 1u) << "element 2 has its node 4";
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(mesh.nodeCount(), 4u) << "a vector makes no node";
}

TEST_F(InpSections, TheDirectionTurnsWithTheInstance)
{
    const kvo::Mesh mesh =
        read("*PART, NAME=P\n" + someNodes(4) + bar +
             "*BEAM SECTION, ELSET=E, SECTION=RECT\n1., 2.\n1., 0., 0.\n*END PART\n"
             "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=P\n7., 8., 9.\n0., 0., 0., 0., 0., 1., 90.\n"
             "*END INSTANCE\n*END ASSEMBLY\n");
    EXPECT_EQ(mesh.files.at(0).orientations.at(0).vector, (Vector{0, 1, 0}));
}

TEST_F(InpSections, OfGeneralShellsOnlyThoseWithAMaterialHaveAThickness)
{
    const std::string section = "*SHELL GENERAL SECTION, ELSET=E";
    EXPECT_EQ(partOf(read(someNodes(3) + triangle + section + ", MATERIAL=M\n.25\n"), 1).data.thickness, 0.25);
    EXPECT_EQ(partOf(read(someNodes(3) + triangle + section + "\n1.E6, 2.E5, 1.E6\n"), 1).data.thickness, 0.0)
        << "stiffnesses";
}

TEST_F(InpSections, AThicknessThatVariesIsNotTheOneOfTheSection)
{
    const std::string section = "*SHELL SECTION, ELSET=E, MATERIAL=M, ";
    EXPECT_EQ(partOf(read(someNodes(3) + triangle + section + "NODAL THICKNESS\n1.\n"), 1).data.thickness, 0.0);
    EXPECT_EQ(partOf(read(someNodes(3) + triangle + section + "SHELL THICKNESS=D\n1.\n"), 1).data.thickness, 0.0);
}

TEST_F(InpSections, TheNumberOfASolidSectionGoesByItsElements)
{
    const kvo::Mesh mesh = read(someNodes(4) + "*ELEMENT, TYPE=T3D2, ELSET=T\n1, 1, 2\n*ELEMENT, TYPE=CPS3, ELSET=P\n"
                                               "2, 1, 2, 3\n*ELEMENT, TYPE=C3D4, ELSET=S\n3, 1, 2, 3, 4\n"
                                               "*SOLID SECTION, ELSET=T, MATERIAL=M\n3.5\n*SOLID SECTION, ELSET=P, "
                                               "MATERIAL=M\n2.\n*SOLID SECTION, ELSET=S, MATERIAL=M\n1.,\n");
    EXPECT_EQ(partOf(mesh, 1).data.area, 3.5);
    EXPECT_EQ(partOf(mesh, 1).data.thickness, 0.0);
    EXPECT_EQ(partOf(mesh, 2).data.thickness, 2.0);
    EXPECT_EQ(partOf(mesh, 2).data.area, 0.0);
    EXPECT_EQ(partOf(mesh, 3).data.thickness, 0.0);
    EXPECT_EQ(partOf(mesh, 3).data.area, 0.0);
}

TEST_F(InpSections, NamesOfInstancesMayBeQuoted)
{
    const kvo::Mesh mesh =
        read("*PART, NAME=P\n" + someNodes(3) + triangle +
             "*NSET, NSET=\"Left Edge\"\n1\n*END PART\n*ASSEMBLY, NAME=A\n*INSTANCE, NAME=\"P 1\", PART=P\n"
             "*END INSTANCE\n*INSTANCE, NAME=Q, PART=P\n*END INSTANCE\n*NSET, NSET=N\n\"P 1\".3, \"P 1\".\"Left "
             "Edge\"\n*ELEMENT, TYPE=CONN3D2\n1, \"P 1\".2, Q.3\n*END ASSEMBLY\n");
    EXPECT_EQ(idsOf(setNamed(mesh, "N", 0)), (Ids{1, 3}));
    EXPECT_EQ(nodesOf(mesh, 1, 2), (Ids{2, 3}));
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(InpSections, WhereTheDirectionOfABeamStandsGoesByItsSection)
{
    const auto directions = [&](const std::string& section) {
        return read(someNodes(4) + bar + "*BEAM SECTION, ELSET=E, SECTION=" + section).files.at(0).orientations;
    };
    const auto segments = directions("ARBITRARY\n3, 0., 0., 5., 0., .1\n5., 5., .1\n0., 5., .1\n0., 0., -1.\n");
    ASSERT_EQ(segments.size(), 1u);
    EXPECT_EQ(segments[0].vector, (Vector{0, 0, -1}));
    EXPECT_TRUE(directions("ELBOW\n1., .1, 5.\n7., 8., 9.\n").empty()) << "a point, not a direction";
    EXPECT_EQ(directions("MESHED\n0., 1., 0.\n").at(0).vector, (Vector{0, 1, 0}));
    EXPECT_TRUE(directions("RECT\n1., 2.\n").empty());
}

TEST_F(InpSections, ATableOfForcesIsNoStiffness)
{
    const std::string spring = "*ELEMENT, TYPE=SPRINGA, ELSET=E\n1, 1, 2\n";
    const std::string table = ", ELSET=E, NONLINEAR\n\n-10., -1.\n0., 0.\n10., 1.\n";
    EXPECT_EQ(partOf(read(someNodes(2) + spring + "*SPRING" + table), 1).data.stiffness, 0.0);
    EXPECT_EQ(partOf(read(someNodes(2) + spring + "*DASHPOT" + table), 1).data.damping, 0.0);
}

TEST_F(InpSections, StiffnessAndDamping)
{
    const std::string spring = "*ELEMENT, TYPE=SPRINGA, ELSET=E\n1, 1, 2\n";
    EXPECT_EQ(partOf(read(someNodes(2) + spring + "*SPRING, ELSET=E\n\n1000., \n"), 1).data.stiffness, 1000.0);
    EXPECT_EQ(partOf(read(someNodes(2) + spring + "*SPRING, ELSET=E\n3, 3\n500\n"), 1).data.stiffness, 500.0);
    const std::string dashpot = "*ELEMENT, TYPE=DASHPOTA, ELSET=E\n1, 1, 2\n";
    EXPECT_EQ(partOf(read(someNodes(2) + dashpot + "*DASHPOT, ELSET=E\n\n7.\n"), 1).data.damping, 7.0);
}

TEST_F(InpSections, SetsAreKeptWithTheSetsInThem)
{
    const kvo::Mesh mesh =
        read(someNodes(6) + triangle + "*NSET, NSET=Low\n1, 2\n*NSET, NSET=Odd, GENERATE\n1, 5, 2\n" +
             "*NSET, NSET=Both\nLOW, odd, 99\n*ELSET, ELSET=Els\nE\n");
    EXPECT_EQ(idsOf(setNamed(mesh, "Low", whole)), (Ids{1, 2}));
    EXPECT_EQ(idsOf(setNamed(mesh, "Odd", whole)), (Ids{1, 3, 5}));
    EXPECT_EQ(idsOf(setNamed(mesh, "Both", whole)), (Ids{1, 2, 3, 5}));
    EXPECT_EQ(idsOf(setNamed(mesh, "Els", whole)), (Ids{1}));
    EXPECT_EQ(setNamed(mesh, "Els", whole)->of, kvo::MeshSet::Of::Elements);
    EXPECT_EQ(log.warningCount(kvo::warnSetMember), 1u) << "node 99";
}

TEST_F(InpSections, SetsOfInstancesAreOfTheirFiles)
{
    const kvo::Mesh mesh =
        read("*PART, NAME=P\n" + someNodes(3) + triangle +
             "*NSET, NSET=Own\n2\n*END PART\n*ASSEMBLY, NAME=A\n"
             "*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n*INSTANCE, NAME=J, PART=P\n*END INSTANCE\n"
             "*NSET, NSET=Fixed, INSTANCE=J\n1, 3\n*ELSET, ELSET=Hot, INSTANCE=I\n1\n*END ASSEMBLY\n");
    ASSERT_EQ(mesh.files.size(), 2u);
    EXPECT_EQ(idsOf(setNamed(mesh, "Own", 0)), (Ids{2}));
    EXPECT_EQ(idsOf(setNamed(mesh, "Own", 1)), (Ids{2}));
    EXPECT_EQ(idsOf(setNamed(mesh, "Fixed", 1)), (Ids{1, 3}));
    EXPECT_EQ(setNamed(mesh, "Fixed", 0), nullptr);
    EXPECT_EQ(idsOf(setNamed(mesh, "Hot", 0)), (Ids{1}));
}

TEST_F(InpSections, SetsOfTheAssemblyTakeMembersOfSeveralInstances)
{
    const kvo::Mesh mesh =
        read("*PART, NAME=P\n" + someNodes(4) + triangle +
             "*NSET, NSET=Edge\n2, 3\n*ELSET, ELSET=Top\nE\n*END PART\n*ASSEMBLY, NAME=A\n"
             "*INSTANCE, NAME=I-1.x, PART=P\n*END INSTANCE\n*INSTANCE, NAME=J, PART=P\n*END INSTANCE\n"
             "*NODE\n7, 1\n*NSET, NSET=Ref\n7\n*NSET, NSET=Fix, INSTANCE=i-1.X\n1, Edge\n*NSET, NSET=Fix, "
             "INSTANCE=J\n4\n*NSET, NSET=All\nJ.1, i-1.x.edge, Fix, Ref\n*ELSET, ELSET=Els\nJ.TOP, I-1.x.1\n"
             "*END ASSEMBLY\n");
    EXPECT_EQ(idsOf(setNamed(mesh, "Fix", 0)), (Ids{1, 2, 3}));
    EXPECT_EQ(idsOf(setNamed(mesh, "Fix", 1)), (Ids{4}));
    EXPECT_EQ(idsOf(setNamed(mesh, "All", 0)), (Ids{1, 2, 3}));
    EXPECT_EQ(idsOf(setNamed(mesh, "All", 1)), (Ids{1, 4}));
    EXPECT_EQ(idsOf(setNamed(mesh, "All", 2)), (Ids{7}));
    EXPECT_EQ(idsOf(setNamed(mesh, "Els", 0)), (Ids{1}));
    EXPECT_EQ(idsOf(setNamed(mesh, "Els", 1)), (Ids{1}));
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(InpSections, SetsOfOneInstanceAreOfTheModel)
{
    const kvo::Mesh mesh = read("*PART, NAME=P\n" + someNodes(3) + triangle +
                                "*END PART\n*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n"
                                "*NSET, NSET=All\nI.1, I.3\n*END ASSEMBLY\n");
    EXPECT_EQ(idsOf(setNamed(mesh, "All", whole)), (Ids{1, 3}));
}

TEST_F(InpSections, ASetOfTheAssemblyHasItsNameBeforeOneOfThePart)
{
    const kvo::Mesh mesh =
        read("*PART, NAME=P\n" + someNodes(3) + triangle +
             "*NSET, NSET=Set-1\n1, 2, 3\n*END PART\n*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n"
             "*INSTANCE, NAME=J, PART=P\n*END INSTANCE\n*NSET, NSET=SET-1, INSTANCE=J\n2\n*END ASSEMBLY\n");
    EXPECT_EQ(idsOf(setNamed(mesh, "Set-1", 0)), (Ids{1, 2, 3}));
    EXPECT_EQ(idsOf(setNamed(mesh, "SET-1", 1)), (Ids{2}));
    EXPECT_EQ(idsOf(setNamed(mesh, "J.Set-1", 1)), (Ids{1, 2, 3}));
    EXPECT_EQ(setNamed(mesh, "Set-1", 1), nullptr);
}

TEST_F(InpSections, MembersOfInstancesThatDoNotExistAreWarnedOf)
{
    read("*PART, NAME=P\n" + someNodes(3) + triangle +
         "*END PART\n*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n*NSET, NSET=X, INSTANCE=K\n1\n"
         "*NSET, NSET=Y\nK.1, I.2, I.NONE\n*NSET, NSET=Z, INSTANCE=I\nNONE, 1\n*END ASSEMBLY\n");
    EXPECT_EQ(log.warningCount("sets of unknown instances"), 1u);
    EXPECT_EQ(log.warningCount("sets that refer to unknown sets"), 3u);
    EXPECT_TRUE(contains(log.warnings().at(0).lines.at(0), "deck.inp:12: set \"X\" is of instance \"K\""))
        << log.warnings()[0].lines[0];
}

TEST_F(InpSections, TheNodesOfAnElementSetAreListedAsNotRead)
{
    read(someNodes(3) + triangle + "*NSET, NSET=N, ELSET=E\n");
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "*NSET, ELSET"), 1u);
}

TEST_F(InpSections, MassesOfTheAssemblyKeepTheirInstancesNodes)
{
    const kvo::Mesh mesh = read("*PART, NAME=P\n" + someNodes(3) + triangle +
                                "*END PART\n*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=P\n5., 0., 0.\n*END INSTANCE\n"
                                "*ELEMENT, TYPE=MASS, ELSET=M\n9, I.2\n*END ASSEMBLY\n");
    ASSERT_EQ(mesh.files.size(), 2u);
    EXPECT_EQ(mesh.files[1].undrawn.at(0).nodes, (Ids{2}));
    EXPECT_EQ(pointOf(mesh, 2, 1), (Point{7, 4, 0}));
}

TEST_F(InpSections, MassesAreKeptWithTheirNodes)
{
    const kvo::Mesh mesh = read(someNodes(3) + triangle + "*ELEMENT, TYPE=MASS, ELSET=M\n50, 3\n51, 2\n");
    ASSERT_EQ(mesh.files[0].undrawn.size(), 1u);
    EXPECT_EQ(mesh.files[0].undrawn[0].type, "MASS");
    EXPECT_EQ(mesh.files[0].undrawn[0].ids, (Ids{50, 51}));
    EXPECT_EQ(mesh.files[0].undrawn[0].nodes, (Ids{3, 2}));
    EXPECT_EQ(idsOf(setNamed(mesh, "M", whole)), (Ids{50, 51}));
}

TEST_F(InpSections, MassesOfPartsAreInEveryInstance)
{
    const kvo::Mesh mesh = read("*PART, NAME=P\n" + someNodes(3) + triangle +
                                "*ELEMENT, TYPE=MASS\n50, 3\n*END PART\n*ASSEMBLY, NAME=A\n"
                                "*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n*INSTANCE, NAME=J, PART=P\n"
                                "*ELEMENT, TYPE=MASS\n51, 1\n*END INSTANCE\n*END ASSEMBLY\n");
    EXPECT_EQ(mesh.files.at(0).undrawn.at(0).ids, (Ids{50}));
    EXPECT_EQ(mesh.files.at(1).undrawn.at(0).ids, (Ids{50, 51}));
    EXPECT_EQ(mesh.files.at(1).undrawn.at(0).nodes, (Ids{3, 1}));
}
