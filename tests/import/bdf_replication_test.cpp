// Bulk data cards that refer to the card before them.
#include "import_fixture.h"

namespace {

class BdfReplication : public ImportTest
{
protected:
    kvo::Mesh readBdf(const std::string& text) { return read("BEGIN BULK\n" + text, "deck.bdf"); }

    // Nodes 1 to 5 at (0, 5, 2.5), (0.5, 5, 2.5), ... however the deck says it.
    void expectRow(const std::string& text)
    {
        const kvo::Mesh mesh = readBdf(text);
        ASSERT_EQ(mesh.nodeCount(), 5u) << text;
        for (int id = 1; id <= 5; ++id) {
            EXPECT_EQ(pointOf(mesh, id), (Point{0.5 * (id - 1), 5, 2.5})) << text;
        }
        EXPECT_TRUE(log.warnings().empty()) << text << log.warnings().front().lines.front();
        EXPECT_TRUE(log.lists().empty()) << text;
    }
};

// Grid points 1 to count, in one line.
std::string row(int count)
{
    return "GRID,1,,0.\n=,*1,=,*1.\n=" + std::to_string(count - 2) + "\n";
}

} // namespace

TEST_F(BdfReplication, FieldsOfEveryWidth)
{
    const std::string first = "GRID,1,,0.,5.,2.5\n";
    expectRow(first + "=,*1,=,*.5,==\n=3\n");
    expectRow(first + "=,*(1),=,*(.5),=,=\n=(3)\n");
    expectRow(first + " = , *1 , = , * 0.5 , == \n =3\n");
    expectRow(first + "=,*1,,*.5,5.,=\n=,*1,,*.5,=,=\n=2\n");
    expectRow(first + "=,*1,=,*.5,==,,\n=3,\n");
    expectRow("GRID           1              0.      5.     2.5\n"
              "=             *1       =     *.5      ==\n=3\n");
    expectRow("GRID           1              0.      5.     2.5\n"
              "=           *(1)       =   *(.5)       =       =\n=(3)    \n");
    expectRow("GRID    1\t\t0.\t5.\t2.5\n=\t*1\t=\t*.5\t==\n=3\n");
    expectRow("GRID*                  1                              0.              5.\n*                    2.5\n"
              "=*                    *1               =            *0.5              ==\n=3\n");
    expectRow("GRID*                  1                              0.              5.\n*                    2.5\n"
              "=*                    *1               =            *0.5               =\n*                      =\n"
              "=3\n");
    expectRow("GRID*,1,,0.,5.,*A\n*A,2.5\n=,*1,=,*.5,==\n=3\n");
    expectRow("GRID 1 0 0. 5. 2.5\n= *1 = *.5 ==\n=3\n");
    expectRow("GRID,5,,2.,5.,2.5\n=,*-1,=,*(-.5),==\n=3\n");
}

TEST_F(BdfReplication, FieldsMayReferToTheCardBeforeWhateverTheName)
{
    expectRow("GRID,1,,0.,5.,2.5\nGRID,*1,=,*.5,==\nGRID,3,=,1.,=,=\n=,4,,1.5,==\nGRID,5,,2.,==\n");
    // The property and the first corner of a shell are copied to a bar.
    const kvo::Mesh mesh = readBdf(row(4) + "CTRIA3,1,7,2,3,4\nCBAR,*1,=,=,4\n");
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{2, 4, kvo::noNode}));
    EXPECT_EQ(partOf(mesh, 2).propertyId, 7);
}

TEST_F(BdfReplication, ElementsAndTheirLines)
{
    const kvo::Mesh mesh = readBdf(row(12) + "CROD,1,7,1,2\n=,*1,=,*1,*1\n$ a comment\n=9\nCROD,100,7,1,99\n");
    ASSERT_EQ(elementIds(mesh), (Ids{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(nodesOf(mesh, 11), (Ids{11, 12, kvo::noNode}));
    const kvo::ElementBlock& block = mesh.files[0].blocks.at(0);
    EXPECT_EQ(block.line[0], 5u);
    EXPECT_EQ(block.line[1], 6u);
    EXPECT_EQ(block.line[2], 8u);
    EXPECT_EQ(block.line[10], 8u);
    EXPECT_TRUE(contains(log.warnings().at(0).lines.at(0), "deck.bdf:9: ")) << log.warnings()[0].lines[0];
}

TEST_F(BdfReplication, RepeatsOfRepeats)
{
    const kvo::Mesh mesh = readBdf("GRID,1,,0.\n=,*1,=,*.1,\n=2\n=3\n=,*10,=,*1.,\n=1\n");
    EXPECT_EQ(mesh.nodeCount(), 9u);
    EXPECT_EQ(pointOf(mesh, 4)[0], 0.1 + 2 * 0.1);
    EXPECT_NEAR(pointOf(mesh, 7)[0], 0.6, 1e-12);
    EXPECT_NEAR(pointOf(mesh, 27)[0], 2.6, 1e-12);
}

TEST_F(BdfReplication, ContinuedCards)
{
    const std::string first = "CHEXA,1,7,1,2,3,4,5,6,+A\n+A,7,8\n";
    const char* const seconds[] = {
        "=,*1,=,*1,*1,*1,*1,*1,*1\n,*1,*1\n=2\n",
        "=,*1,=,*1,*1,*1,*1,*1,*1,+B\n+B,*1,*1\n=2\n",
        "=             *1       =      *1      *1      *1      *1      *1      *1\n              *1      *1\n=2\n",
    };
    for (const char* second : seconds) {
        const kvo::Mesh mesh = readBdf(row(12) + first + second);
        ASSERT_EQ(elementIds(mesh), (Ids{1, 2, 3, 4})) << second;
        EXPECT_EQ(nodesOf(mesh, 4), (Ids{4, 5, 6, 7, 8, 9, 10, 11})) << second;
        EXPECT_EQ(partOf(mesh, 4).propertyId, 7) << second;
    }
    // Lines that are not given are copied with "==", and are blank without it.
    const kvo::Mesh copied = readBdf(row(12) + first + "=,*1,=,9,10,==\n");
    EXPECT_EQ(nodesOf(copied, 2), (Ids{9, 10, 3, 4, 5, 6, 7, 8}));
    const kvo::Mesh given = readBdf(row(12) + first + "=,*1,=,9,10,==\n,=,12\n");
    EXPECT_EQ(nodesOf(given, 2), (Ids{9, 10, 3, 4, 5, 6, 7, 12}));
    EXPECT_EQ(elementIds(readBdf(row(12) + first + "=,*1,=,=,=,=,=,=,=\n")), Ids{1});
    EXPECT_EQ(log.warningCount("elements that refer to missing nodes"), 1u);
}

TEST_F(BdfReplication, TwoElementsOnACard)
{
    const kvo::Mesh mesh = readBdf(row(9) + "PLOTEL,1,1,2,,2,2,3\n=,*2,*2,*2,,*2,*2,*2\n=2\n");
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(nodesOf(mesh, 8), (Ids{8, 9, kvo::noNode}));
}

TEST_F(BdfReplication, NumbersOfEitherKind)
{
    const kvo::Mesh mesh = readBdf("GRID,1,,1.+1,2\n=,*1,,*1,*.5\n=,*1,,*1.-1,*-.25,*3\n");
    EXPECT_EQ(pointOf(mesh, 2), (Point{11, 2.5, 0}));
    EXPECT_EQ(pointOf(mesh, 3), (Point{11.1, 2.25, 3})) << "nothing before counts as 0";
    EXPECT_EQ(readError("BEGIN BULK\nGRID,1\n=,*.5\n", "deck.bdf"),
              "deck.bdf:3: GRID: an integer expected in field 2, found \"1.5\"");
}

TEST_F(BdfReplication, WhatCannotBeReplicated)
{
    EXPECT_EQ(readBdf("=,*1\nGRID,1\n").nodeCount(), 1u);
    EXPECT_TRUE(contains(log.warnings().at(0).lines.at(0), "deck.bdf:2: there is no card before"));
    EXPECT_EQ(readBdf("=3\nGRID,1\n").nodeCount(), 1u);
    EXPECT_TRUE(contains(log.warnings().at(0).lines.at(0), "deck.bdf:2: there is no card before"));
    EXPECT_EQ(readError("BEGIN BULK\nGRID,9223372036854775807\n=,*1\n", "deck.bdf"),
              "deck.bdf:3: GRID: nothing can be added to \"9223372036854775807\" in field 2 of the card before");
    EXPECT_EQ(readError("BEGIN BULK\nGRID,9223372036854775000\n=,*1\n=900\n", "deck.bdf"),
              "deck.bdf:4: GRID: nothing can be added to \"9223372036854775807\" in field 2 of the card before");
    EXPECT_EQ(readError("BEGIN BULK\nGRID,1\n=,*1\n=1000000000\n", "deck.bdf"),
              "deck.bdf:4: more than 1000000 cards would be made by \"=n\"");
    for (const char* line : {"=0\n", "=-3\n", "=x\n", "=(3\n", "=99999999999999999999\n"}) {
        EXPECT_EQ(readBdf("GRID,1\n" + std::string(line)).nodeCount(), 1u) << line;
        EXPECT_EQ(log.warningCount("lines that are no cards"), 1u) << line;
    }
}

TEST_F(BdfReplication, CardsThatTheMeshDoesNotNeedCostNothing)
{
    const kvo::Mesh mesh = readBdf("FORCE,1,2,0,LOW\n=,*1,=,=,*1\n=4\nGRID,1\nFORCE,1,3,0,1.\n=,=,*1,==\n=2\n");
    EXPECT_EQ(mesh.nodeCount(), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "FORCE"), 1u + 4u);
    EXPECT_EQ(log.warningCount("replicated cards that are left out"), 1u);
    EXPECT_EQ(log.warningCount("replicated cards without a card"), 1u) << "\"=4\" has none before it";
    // Words with these characters are no references.
    readBdf("PARAM,NORM,MAX*2\nEIGRL,1,,,,,,,*A\nPLOAD4,1,2,a=b\n" + row(3));
    EXPECT_TRUE(log.warnings().empty());
}
