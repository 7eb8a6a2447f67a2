// Messages about nodes name the line that the node stands in, in every format of lines.
#include "import_fixture.h"

#include "node_lines.h"

namespace {

struct NodeDeck
{
    const char* name;
    const char* text; // node 7 stands in two lines
    unsigned int line;
};

void PrintTo(const NodeDeck& deck, std::ostream* out)
{
    *out << deck.name;
}

class NodeDecks : public ImportTest, public testing::WithParamInterface<NodeDeck>
{
};

const char unvDeck[] = "    -1\n  2411\n"
                       "         7         1         1        11\n  0.0  0.0  0.0\n"
                       "         8         1         1        11\n  1.0  0.0  0.0\n"
                       "         7         1         1        11\n  2.0  0.0  0.0\n    -1\n";

} // namespace

TEST_P(NodeDecks, OfTheSecondDefinitionTheLineIsNamed)
{
    const kvo::Mesh mesh = read(GetParam().text, GetParam().name);
    EXPECT_EQ(mesh.nodeCount(), 2u);
    EXPECT_EQ(pointOf(mesh, 7), (Point{2, 0, 0}));
    std::vector<std::string> lines;
    for (const kvo::ImportLog::Warnings& warnings : log.warnings()) {
        if (warnings.kind == "nodes defined more than once") {
            lines = warnings.lines;
        }
    }
    ASSERT_EQ(lines.size(), 1u);
    const std::string place = std::string(GetParam().name) + ":" + std::to_string(GetParam().line);
    EXPECT_TRUE(contains(lines[0], place + ": node 7 ")) << lines[0];
}

INSTANTIATE_TEST_SUITE_P(
    All, NodeDecks,
    testing::Values(NodeDeck{"deck.inp", "*NODE\n7, 0.\n8, 1.\n** again\n7, 2.\n", 5},
                    NodeDeck{"deck.bdf", "BEGIN BULK\nGRID,7,,0.,0.,0.\nGRID,8,,1.,0.,0.\nGRID,7,,2.,0.,0.\nENDDATA\n",
                             4},
                    NodeDeck{"deck.k", "*KEYWORD\n*NODE\n7,0.,0.,0.\n$\n8,1.,0.,0.\n7,2.,0.,0.\n*END\n", 6},
                    NodeDeck{"deck.msh",
                             "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n3\n7 0 0 0\n8 1 0 0\n7 2 0 0\n$EndNodes\n"
                             "$Elements\n0\n$EndElements\n",
                             8},
                    NodeDeck{"deck.unv", unvDeck, 7},
                    NodeDeck{"deck.cdb", "/PREP7\nN,7,0.,0.,0.\nN,8,1.,0.,0.\nN,7,2.,0.,0.\nFINISH\n", 4}));

TEST(NodeLines, RunsOfEvenAndUnevenLines)
{
    kvo::NodeLines lines;
    const unsigned int numbers[] = {10, 12, 14, 15, 16, 9, 9, 9};
    for (std::size_t k = 0; k < 8; ++k) {
        lines.add(k, {1, numbers[k]});
    }
    lines.add(9, {2, 5}); // node 8 has none
    for (std::size_t k = 0; k < 8; ++k) {
        EXPECT_EQ(lines.at(k).number, numbers[k]) << k;
        EXPECT_EQ(lines.at(k).sourceFile, 1u);
    }
    EXPECT_EQ(lines.at(8).number, 0u);
    EXPECT_EQ(lines.at(9).number, 5u);
    EXPECT_EQ(lines.at(9).sourceFile, 2u);
    EXPECT_EQ(lines.at(10).number, 0u);
}

TEST(NodeLines, ThoseOfAnInstanceComeBehindOthers)
{
    kvo::NodeLines part, instance;
    part.add(0, {0, 3});
    instance.add(0, {0, 20});
    instance.add(1, {0, 21});
    part.append(instance, 1);
    EXPECT_EQ(part.at(0).number, 3u);
    EXPECT_EQ(part.at(1).number, 20u);
    EXPECT_EQ(part.at(2).number, 21u);
}
