// One model with every kind of element, written in every format that can hold it, with the same ids: all give the same
// table. A further format is a further row of decks[].
#include "import_fixture.h"

#include <algorithm>
#include <set>

namespace {

// What a format may not be able to say.
enum : unsigned
{
    noPyramid = 1,      // there is no such element
    noThirdNode = 2,    // of beams
    noDiscrete = 4,     // springs and dampers
    noBeams = 8,        // only faces and solids
    noGroundSpring = 16 // springs have two ends
};

struct Deck
{
    const char* name; // its ending tells the format
    unsigned cannot;
    const char* text;
};

const Deck decks[] = {
    {"kinds.inp", 0,
     "*NODE\n1001, 0., 0., 0.\n1007, 1., 0., 0.\n1013, 1., 1., 0.\n1019, 0., 1., 0.\n2001, 0., 0., 1.\n"
     "2007, 1., 0., 1.\n2013, 1., 1., 1.\n2019, 0., 1., 1.\n3001, .5, .5, 2.\n3007, 2., 0., 0.\n3013, 2., 0., 1.\n"
     "4001, 3., 0., 0.\n5001, 0., 0., -1.\n9001, 5., 0., 0.\n2147483647, 0., 0., -3.\n"
     "*ELEMENT, TYPE=C3D8, ELSET=P88\n701, 1001, 1007, 1013, 1019, 2001, 2007, 2013, 2019\n"
     "*ELEMENT, TYPE=C3D5, ELSET=P88\n702, 2001, 2007, 2013, 2019, 3001\n"
     "*ELEMENT, TYPE=C3D6, ELSET=P88\n703, 1007, 3007, 1013, 2007, 3013, 2013\n"
     "*ELEMENT, TYPE=C3D4, ELSET=P88\n704, 3007, 4001, 1013, 3013\n"
     "*ELEMENT, TYPE=S4, ELSET=P77\n501, 1001, 1007, 1013, 1019\n*ELEMENT, TYPE=S3, ELSET=P77\n502, 1007, 3007, 1013\n"
     "*ELEMENT, TYPE=B31, ELSET=P99\n801, 1001, 5001, 9001\n*ELEMENT, TYPE=T3D2, ELSET=P66\n970, 5001, 2147483647\n"
     "*ELEMENT, TYPE=SPRINGA, ELSET=P55\n901, 1013, 2013\n*ELEMENT, TYPE=DASHPOTA, ELSET=P56\n902, 1019, 2019\n"
     "*ELEMENT, TYPE=SPRING1, ELSET=P57\n903, 2001\n*ELEMENT, TYPE=MASS\n950, 3001\n"},
    {"kinds.bdf", 0,
     "BEGIN BULK\nGRID,1001,,0.,0.,0.\nGRID,1007,,1.,0.,0.\nGRID,1013,,1.,1.,0.\nGRID,1019,,0.,1.,0.\n"
     "GRID,2001,,0.,0.,1.\nGRID,2007,,1.,0.,1.\nGRID,2013,,1.,1.,1.\nGRID,2019,,0.,1.,1.\nGRID,3001,,.5,.5,2.\n"
     "GRID,3007,,2.,0.,0.\nGRID,3013,,2.,0.,1.\nGRID,4001,,3.,0.,0.\nGRID,5001,,0.,0.,-1.\nGRID,9001,,5.,0.,0.\n"
     "GRID,2147483647,,0.,0.,-3.\nCHEXA,701,88,1001,1007,1013,1019,2001,2007\n,2013,2019\n"
     "CPYRAM,702,88,2001,2007,2013,2019,3001\nCPENTA,703,88,1007,3007,1013,2007,3013,2013\n"
     "CTETRA,704,88,3007,4001,1013,3013\nCQUAD4,501,77,1001,1007,1013,1019\nCTRIA3,502,77,1007,3007,1013\n"
     "CBAR,801,99,1001,5001,9001\nCROD,970,66,5001,2147483647\nCELAS1,901,55,1013,1,2013,1\n"
     "CDAMP1,902,56,1019,3,2019,3\nCELAS1,903,57,2001,3\nCONM2,950,3001,0,2.5\n"},
    {"kinds.k", 0,
     "*KEYWORD\n*NODE\n1001,0,0,0\n1007,1,0,0\n1013,1,1,0\n1019,0,1,0\n2001,0,0,1\n2007,1,0,1\n2013,1,1,1\n"
     "2019,0,1,1\n3001,0.5,0.5,2\n3007,2,0,0\n3013,2,0,1\n4001,3,0,0\n5001,0,0,-1\n9001,5,0,0\n2147483647,0,0,-3\n"
     "*ELEMENT_SOLID\n701,88,1001,1007,1013,1019,2001,2007,2013,2019\n"
     "702,88,2001,2007,2013,2019,3001,3001,3001,3001\n703,88,1007,1013,2013,2007,3007,3007,3013,3013\n"
     "704,88,3007,4001,1013,3013,3013,3013,3013,3013\n*ELEMENT_SHELL\n501,77,1001,1007,1013,1019\n"
     "502,77,1007,3007,1013,1013\n*ELEMENT_BEAM\n801,99,1001,5001,9001\n970,66,5001,2147483647\n"
     "*ELEMENT_DISCRETE\n901,55,1013,2013\n902,56,1019,2019\n903,57,2001,0\n*ELEMENT_MASS\n950,3001,2.5\n*PART\n"
     "part 55\n55,1,1\n*PART\npart 56\n56,1,1\n*PART\npart 57\n57,1,1\n*PART\npart 66\n66,1,1\n*PART\npart 77\n"
     "77,1,1\n*PART\npart 88\n88,1,1\n*PART\npart 99\n99,1,1\n*END\n"},
    {"kinds.msh", noThirdNode | noDiscrete,
     "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n15\n1001 0 0 0\n1007 1 0 0\n1013 1 1 0\n1019 0 1 0\n"
     "2001 0 0 1\n2007 1 0 1\n2013 1 1 1\n2019 0 1 1\n3001 0.5 0.5 2\n3007 2 0 0\n3013 2 0 1\n4001 3 0 0\n"
     "5001 0 0 -1\n9001 5 0 0\n2147483647 0 0 -3\n$EndNodes\n$Elements\n8\n"
     "701 5 2 88 88 1001 1007 1013 1019 2001 2007 2013 2019\n702 7 2 88 88 2001 2007 2013 2019 3001\n"
     "703 6 2 88 88 1007 3007 1013 2007 3013 2013\n704 4 2 88 88 3007 4001 1013 3013\n"
     "501 3 2 77 77 1001 1007 1013 1019\n502 2 2 77 77 1007 3007 1013\n801 1 2 99 99 1001 5001\n"
     "970 1 2 66 66 5001 2147483647\n$EndElements\n"},
    {"kinds.cdb", noGroundSpring,
     "/PREP7\nET,1,185\nET,2,181\nET,3,188\nET,4,14\nET,5,21\nET,6,180\nNBLOCK,6,SOLID\n(3i11,6e21.13e3)\n"
     "       1001          0          0 0.0000000000000E+000 0.0000000000000E+000 0.0000000000000E+000\n"
     "       1007          0          0 1.0000000000000E+000 0.0000000000000E+000 0.0000000000000E+000\n"
     "       1013          0          0 1.0000000000000E+000 1.0000000000000E+000 0.0000000000000E+000\n"
     "       1019          0          0 0.0000000000000E+000 1.0000000000000E+000 0.0000000000000E+000\n"
     "       2001          0          0 0.0000000000000E+000 0.0000000000000E+000 1.0000000000000E+000\n"
     "       2007          0          0 1.0000000000000E+000 0.0000000000000E+000 1.0000000000000E+000\n"
     "       2013          0          0 1.0000000000000E+000 1.0000000000000E+000 1.0000000000000E+000\n"
     "       2019          0          0 0.0000000000000E+000 1.0000000000000E+000 1.0000000000000E+000\n"
     "       3001          0          0 5.0000000000000E-001 5.0000000000000E-001 2.0000000000000E+000\n"
     "       3007          0          0 2.0000000000000E+000 0.0000000000000E+000 0.0000000000000E+000\n"
     "       3013          0          0 2.0000000000000E+000 0.0000000000000E+000 1.0000000000000E+000\n"
     "       4001          0          0 3.0000000000000E+000 0.0000000000000E+000 0.0000000000000E+000\n"
     "       5001          0          0 0.0000000000000E+000 0.0000000000000E+000-1.0000000000000E+000\n"
     "       9001          0          0 5.0000000000000E+000 0.0000000000000E+000 0.0000000000000E+000\n"
     " 2147483647          0          0 0.0000000000000E+000 0.0000000000000E+000-3.0000000000000E+000\n"
     "N,R5.3,LOC,-1,\nEBLOCK,19,SOLID\n(19i11)\n"
     "         88          1         88         88          0          0          0          0          8          0   "
     "     701       1001       1007       1013       1019       2001       2007       2013       2019\n"
     "         88          1         88         88          0          0          0          0          8          0   "
     "     702       2001       2007       2013       2019       3001       3001       3001       3001\n"
     "         88          1         88         88          0          0          0          0          8          0   "
     "     703       1007       3007       1013       1013       2007       3013       2013       2013\n"
     "         88          1         88         88          0          0          0          0          8          0   "
     "     704       3007       4001       1013       1013       3013       3013       3013       3013\n"
     "         77          2         77         77          0          0          0          0          4          0   "
     "     501       1001       1007       1013       1019\n"
     "         77          2         77         77          0          0          0          0          4          0   "
     "     502       1007       3007       1013       1013\n"
     "         99          3         99         99          0          0          0          0          3          0   "
     "     801       1001       5001       9001\n"
     "         66          6         66         66          0          0          0          0          2          0   "
     "     970       5001 2147483647\n"
     "         55          4         55         55          0          0          0          0          2          0   "
     "     901       1013       2013\n"
     "         56          4         56         56          0          0          0          0          2          0   "
     "     902       1019       2019\n"
     "         57          5         57         57          0          0          0          0          1          0   "
     "     950       3001\n"
     "         -1\nFINISH\n"},
    {"kinds.vtk", noThirdNode | noDiscrete,
     "# vtk DataFile Version 3.0\nkinds\nASCII\nDATASET UNSTRUCTURED_GRID\nPOINTS 15 double\n0 0 0\n1 0 0\n1 1 0\n"
     "0 1 0\n0 0 1\n1 0 1\n1 1 1\n0 1 1\n0.5 0.5 2\n2 0 0\n2 0 1\n3 0 0\n0 0 -1\n5 0 0\n0 0 -3\nCELLS 8 42\n"
     "8 0 1 2 3 4 5 6 7\n5 4 5 6 7 8\n6 1 9 2 5 10 6\n4 9 11 2 10\n4 0 1 2 3\n3 1 9 2\n2 0 12\n2 12 14\n"
     "CELL_TYPES 8\n12\n14\n13\n10\n9\n5\n3\n3\nCELL_DATA 8\nFIELD ids 2\nGlobalElementId 1 8 int\n"
     "701 702 703 704 501 502 801 970\nBlockId 1 8 int\n88 88 88 88 77 77 99 66\nPOINT_DATA 15\nFIELD ids 1\n"
     "GlobalNodeId 1 15 int\n1001 1007 1013 1019 2001 2007 2013 2019 3001 3007 3013 4001 5001 9001 2147483647\n"},
    {"kinds.unv", noPyramid,
     "    -1\n  2411\n      1001         1         1        11\n"
     "   0.0000000000000000E+00   0.0000000000000000E+00   0.0000000000000000E+00\n"
     "      1007         1         1        11\n"
     "   1.0000000000000000E+00   0.0000000000000000E+00   0.0000000000000000E+00\n"
     "      1013         1         1        11\n"
     "   1.0000000000000000E+00   1.0000000000000000E+00   0.0000000000000000E+00\n"
     "      1019         1         1        11\n"
     "   0.0000000000000000E+00   1.0000000000000000E+00   0.0000000000000000E+00\n"
     "      2001         1         1        11\n"
     "   0.0000000000000000E+00   0.0000000000000000E+00   1.0000000000000000E+00\n"
     "      2007         1         1        11\n"
     "   1.0000000000000000E+00   0.0000000000000000E+00   1.0000000000000000E+00\n"
     "      2013         1         1        11\n"
     "   1.0000000000000000E+00   1.0000000000000000E+00   1.0000000000000000E+00\n"
     "      2019         1         1        11\n"
     "   0.0000000000000000E+00   1.0000000000000000E+00   1.0000000000000000E+00\n"
     "      3001         1         1        11\n"
     "   5.0000000000000000E-01   5.0000000000000000E-01   2.0000000000000000E+00\n"
     "      3007         1         1        11\n"
     "   2.0000000000000000E+00   0.0000000000000000E+00   0.0000000000000000E+00\n"
     "      3013         1         1        11\n"
     "   2.0000000000000000E+00   0.0000000000000000E+00   1.0000000000000000E+00\n"
     "      4001         1         1        11\n"
     "   3.0000000000000000E+00   0.0000000000000000E+00   0.0000000000000000E+00\n"
     "      5001         1         1        11\n"
     "   0.0000000000000000E+00   0.0000000000000000E+00  -1.0000000000000000E+00\n"
     "      9001         1         1        11\n"
     "   5.0000000000000000E+00   0.0000000000000000E+00   0.0000000000000000E+00\n"
     "2147483647         1         1        11\n"
     "   0.0000000000000000E+00   0.0000000000000000E+00  -3.0000000000000000E+00\n    -1\n    -1\n  2412\n"
     "       701       115        88         1         7         8\n"
     "      1001      1007      1013      1019      2001      2007      2013      2019\n"
     "       703       112        88         1         7         6\n"
     "      1007      3007      1013      2007      3013      2013\n"
     "       704       111        88         1         7         4\n      3007      4001      1013      3013\n"
     "       501        94        77         1         7         4\n      1001      1007      1013      1019\n"
     "       502        91        77         1         7         3\n      1007      3007      1013\n"
     "       801        21        99         1         7         2\n      9001         1         1\n"
     "      1001      5001\n       970        11        66         1         7         2\n"
     "         0         1         1\n      50012147483647\n"
     "       901       136        55         1         7         2\n      1013      2013\n"
     "       902       141        56         1         7         2\n      1019      2019\n"
     "       903       138        57         1         7         1\n      2001\n"
     "       950       161        58         1         7         1\n      3001\n    -1\n"},
};

struct Element
{
    std::int64_t id;
    kvo::Family family;
    Ids nodes;
    unsigned notIf; // left out by formats that cannot say this
};

const Element elements[] = {
    {701, kvo::Family::Solid, {1001, 1007, 1013, 1019, 2001, 2007, 2013, 2019}, 0},
    {702, kvo::Family::Solid, {2001, 2007, 2013, 2019, 3001}, noPyramid},
    {703, kvo::Family::Solid, {1007, 3007, 1013, 2007, 3013, 2013}, 0},
    {704, kvo::Family::Solid, {3007, 4001, 1013, 3013}, 0},
    {501, kvo::Family::Shell, {1001, 1007, 1013, 1019}, 0},
    {502, kvo::Family::Shell, {1007, 3007, 1013}, 0},
    {801, kvo::Family::Beam, {1001, 5001, 9001}, noBeams},
    {970, kvo::Family::Beam, {5001, 2147483647, kvo::noNode}, noBeams},
    {901, kvo::Family::Discrete, {1013, 2013}, noDiscrete},
    {902, kvo::Family::Discrete, {1019, 2019}, noDiscrete},
    {903, kvo::Family::Discrete, {2001, 2001}, noDiscrete | noGroundSpring},
};

kvo::Family familyOf(const kvo::Mesh& mesh, std::int64_t element)
{
    for (const kvo::ElementBlock& block : mesh.files.at(0).blocks) {
        if (std::count(block.ids.begin(), block.ids.end(), element) > 0) {
            return mesh.types[block.type].family;
        }
    }
    ADD_FAILURE() << "no element " << element;
    return kvo::Family::Shell;
}

class AllKinds : public ImportTest, public testing::WithParamInterface<Deck>
{
protected:
    Ids expectedNodes(const Element& element)
    {
        Ids nodes = element.nodes;
        if (element.family == kvo::Family::Beam && GetParam().cannot & noThirdNode) {
            nodes.back() = kvo::noNode;
        }
        return nodes;
    }

    // A discrete element may have room for a third node, which none here has.
    static Ids withoutEmptyThird(Ids nodes, kvo::Family family)
    {
        if (family == kvo::Family::Discrete && nodes.size() == 3 && nodes.back() == kvo::noNode) {
            nodes.pop_back();
        }
        return nodes;
    }
};

} // namespace

TEST_P(AllKinds, GiveTheSameTable)
{
    const kvo::Mesh mesh = read(GetParam().text, GetParam().name);
    EXPECT_TRUE(log.warnings().empty()) << (log.lines().empty() ? "" : log.lines().front());
    EXPECT_EQ(mesh.nodeCount(), 15u);
    EXPECT_EQ(pointOf(mesh, 3001), (Point{0.5, 0.5, 2}));
    Ids ids;
    for (const Element& element : elements) {
        if (GetParam().cannot & element.notIf) {
            continue;
        }
        ids.push_back(element.id);
        EXPECT_EQ(withoutEmptyThird(nodesOf(mesh, element.id), element.family), expectedNodes(element)) << element.id;
        EXPECT_EQ(familyOf(mesh, element.id), element.family) << element.id;
    }
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(elementIds(mesh), ids);
    EXPECT_EQ(partOf(mesh, 701).id, partOf(mesh, 704).id);
    EXPECT_NE(partOf(mesh, 701).id, partOf(mesh, 501).id);
}

TEST_P(AllKinds, ComeBackFromTheModelDirectory)
{
    const kvo::Mesh mesh = read(GetParam().text, GetParam().name);
    const auto loaded = roundTrip(mesh);
    EXPECT_EQ(loaded.size(), mesh.elementCount());
    EXPECT_EQ(loaded.at(502).nodeIds, (std::vector<unsigned int>{1007, 3007, 1013, 1013}));
    EXPECT_EQ(loaded.at(704).nodeIds.front(), 3007u);
    if (!(GetParam().cannot & noBeams)) {
        EXPECT_EQ(loaded.at(970).nodeIds, (std::vector<unsigned int>{5001, 2147483647, 0xFFFFFFFF}));
    }
}

INSTANTIATE_TEST_SUITE_P(Decks, AllKinds, testing::ValuesIn(decks), [](const testing::TestParamInfo<Deck>& row) {
    std::string name = row.param.name;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
});
