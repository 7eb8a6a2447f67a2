// Keyword decks: parts, sections, sets, parameters, includes.
#include "deck_outcome.h"

#include "keyword/key_cards.h"
#include "keyword/key_parameters.h"

namespace {

class KeyParts : public DeckOutcomeTest
{
protected:
    kvo::Mesh readKey(const std::string& cards) { return read("*KEYWORD\n" + cards + "*END\n", "deck.k"); }
};

const char* const shells = "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n"
                           "*ELEMENT_SHELL\n1,10,1,2,3,4\n2,20,1,2,3\n3,30,1,2,4\n";

const kvo::MeshSet& setOf(const kvo::Mesh& mesh, const std::string& name)
{
    static const kvo::MeshSet none;
    for (const kvo::MeshSet& set : mesh.sets) {
        if (set.name == name) {
            return set;
        }
    }
    ADD_FAILURE() << "no set " << name;
    return none;
}

Ids idsOf(const kvo::MeshSet& set)
{
    Ids ids;
    set.ids.forEach([&](std::int64_t id) { ids.push_back(id); });
    return ids;
}

} // namespace

TEST_F(KeyParts, PartsHaveTitlesSectionsAndMaterials)
{
    const kvo::Mesh mesh = readKey(shells + std::string("*PART\n"
                                                        "$ a comment inside\n"
                                                        "  Skin, Top  \n        10         7         3\n"
                                                        "second\n        20         8         4\n"
                                                        "*SECTION_SHELL\n         7         2\n       1.5       1.5\n"
                                                        "         8         2       1.0         9                   "
                                                        "                   1\n      2.50\n  0.  0.\n  45.\n"
                                                        "         9         2\n      3.50\n"
                                                        "*MAT_ELASTIC_TITLE\nsteel\n         3   7.85E-9\n"
                                                        "*MAT_PIECEWISE_LINEAR_PLASTICITY\n         4   7.85E-9\n"
                                                        "*MAT_ADD_EROSION\n         3\n"));
    EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"Skin, Top", "second", "PART 30"}));
    EXPECT_EQ(mesh.parts[0].id, 10);
    EXPECT_EQ(mesh.parts[0].section, "SECTION_SHELL");
    EXPECT_EQ(mesh.parts[0].propertyId, 7);
    EXPECT_EQ(mesh.parts[0].data.thickness, 1.5);
    EXPECT_EQ(mesh.parts[0].materialId, 3);
    EXPECT_EQ(mesh.parts[0].materialName, "steel");
    EXPECT_EQ(mesh.parts[1].data.thickness, 2.5);
    EXPECT_EQ(mesh.parts[1].materialName, "MAT_PIECEWISE_LINEAR_PLASTICITY");
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "*MAT_ADD_EROSION"), 1u);
}

TEST_F(KeyParts, OptionsOfPartsAddLines)
{
    const kvo::Mesh mesh =
        readKey(shells + std::string("*PART_INERTIA_CONTACT\n"
                                     "one\n        10         7         3\n"
                                     " 0.,0.,0.,1.,1\n 1.,0.,0.,1.,0.,1.\n 0.,0.,0.\n 1.,0.,0.\n 0.2\n"
                                     "two\n        20         7         3\n"
                                     " 0.,0.,0.,1.,0\n 1.,0.,0.,1.,0.,1.\n 0.,0.,0.\n 0.2\n"
                                     "*PART_COMPOSITE\nlayers\n        30         2\n"
                                     "         5       0.5       0.0                   6      0.25\n"
                                     "         7       1.0\n"));
    EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"one", "two", "layers"}));
    EXPECT_EQ(mesh.parts[2].section, "PART_COMPOSITE");
    EXPECT_EQ(mesh.parts[2].data.thickness, 1.75);
    EXPECT_EQ(mesh.parts[2].materialId, 5);
}

TEST_F(KeyParts, BlankLinesAndPointsThatAreNotGiven)
{
    // Angles of layers without a number of points: two points. Behind the last part a blank line.
    const kvo::Mesh mesh = readKey(shells + std::string("*PART\none\n        10         7\n\n"
                                                        "*PART\ntwo\n        20         8\n\n"
                                                        "*SECTION_SHELL\n"
                                                        "7,2,1.0,0,0,0,1\n1.5,1.5\n0.,45.\n8,2\n2.5\n"));
    EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"one", "two", "PART 30"}));
    EXPECT_EQ(mesh.parts[0].data.thickness, 1.5);
    EXPECT_EQ(mesh.parts[1].data.thickness, 2.5);
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(KeyParts, BeamsAndSpringsHaveSectionData)
{
    const kvo::Mesh mesh = readKey("*NODE\n1,0,0,0\n2,1,0,0\n"
                                   "*ELEMENT_BEAM\n1,1,1,2\n2,2,1,2\n3,3,1,2\n"
                                   "*ELEMENT_DISCRETE\n1,4,1,2\n2,5,1,2\n"
                                   "*PART\na\n1,1,1\nb\n2,2,1\nc\n3,3,1\nd\n4,4,4\ne\n5,4,5\n"
                                   "*SECTION_BEAM\n"
                                   "1,1,1.0,2,1\n5.,5.,4.,4.\n"
                                   "2,3\n12.5\n"
                                   "3,2\nSECTION_04,1.,2.,3.\n"
                                   "*SECTION_DISCRETE\n4,0\n0.,0.\n0.,0.\n"
                                   "*MAT_SPRING_ELASTIC\n4,1000.\n*MAT_S02\n5,10.\n");
    EXPECT_EQ(mesh.parts[0].data.shape, "tube");
    EXPECT_EQ(mesh.parts[0].data.sizes, (std::vector<double>{5, 5, 4, 4}));
    EXPECT_EQ(mesh.parts[1].data.area, 12.5);
    EXPECT_EQ(mesh.parts[2].data.shape, "SECTION_04");
    EXPECT_EQ(mesh.parts[2].data.sizes[1], 2.0);
    EXPECT_EQ(mesh.parts[3].data.stiffness, 1000.0);
    EXPECT_EQ(mesh.parts[3].section, "SECTION_DISCRETE");
    EXPECT_EQ(mesh.parts[4].data.damping, 10.0);
}

TEST_F(KeyParts, SetsOfEveryForm)
{
    const kvo::Mesh mesh = readKey(shells + std::string("*SET_NODE_LIST_TITLE\nfirst\n5\n1,2,0,3\n"
                                                        "*SET_NODE\n6\n         4\n"
                                                        "*SET_NODE_LIST_GENERATE\n7\n1,2,4,4\n"
                                                        "*SET_NODE_ADD_TITLE\nall\n8\n6,5\n"
                                                        "*SET_NODE_COLUMN\n9\n2,1.0\n3,1.0\n"
                                                        "*SET_NODE_GENERAL_TITLE\nsome\n10\nNODE,1,4\nBOX,3\n"
                                                        "*SET_SHELL_LIST_GENERATE_INCREMENT_TITLE\nodd\n5\n1,3,2\n"
                                                        "*SET_PART_LIST_TITLE\nsheets\n5\n10,30,77\n"
                                                        "*SET_SEGMENT\n1\n1,2,3,4\n"));
    EXPECT_EQ(idsOf(setOf(mesh, "first")), (Ids{1, 2, 3}));
    EXPECT_EQ(setOf(mesh, "first").id, 5);
    EXPECT_EQ(idsOf(setOf(mesh, "SET_NODE 6")), Ids{4});
    EXPECT_EQ(idsOf(setOf(mesh, "SET_NODE 7")), (Ids{1, 2, 4}));
    EXPECT_EQ(idsOf(setOf(mesh, "all")), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(idsOf(setOf(mesh, "SET_NODE 9")), (Ids{2, 3}));
    EXPECT_EQ(idsOf(setOf(mesh, "some")), (Ids{1, 4}));
    EXPECT_EQ(idsOf(setOf(mesh, "odd")), (Ids{1, 3}));
    EXPECT_EQ(setOf(mesh, "odd").family, static_cast<int>(kvo::Family::Shell));
    EXPECT_EQ(idsOf(setOf(mesh, "sheets")), (Ids{10, 30}));
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "*SET_SEGMENT"), 1u);
    EXPECT_EQ(log.listCount(kvo::listKeywordsNotRead, "*SET_NODE_GENERAL_TITLE, option BOX"), 1u);
    EXPECT_EQ(log.warningCount(kvo::warnSetMember), 1u);
}

TEST_F(KeyParts, SetsThatNameEachOtherOrTooMuchEnd)
{
    const kvo::Mesh mesh = readKey(shells + std::string("*SET_NODE_ADD\n1\n2,9\n*SET_NODE_ADD\n2\n1,3\n"
                                                        "*SET_NODE_GENERATE\n3\n1,999999999999,5,2\n"));
    EXPECT_EQ(idsOf(setOf(mesh, "SET_NODE 1")), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(idsOf(setOf(mesh, "SET_NODE 2")), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(log.warningCount(kvo::warnMissingSet), 2u) << "set 9, of both";
    EXPECT_EQ(log.warningCount(kvo::warnBadField), 1u) << "from 5 to 2";
}

TEST_F(KeyParts, ParametersStandForNumbers)
{
    const kvo::Mesh mesh =
        readKey("*PARAMETER\nR   width        2.5I     nid         11\nrdepth,4.\n"
                "*PARAMETER_EXPRESSION\nRhalf     (&width + 1.5)/2 ** 2\nR top, max(depth, sqrt(81.)) - 1\n"
                "*NODE\n&NID,&width,-&depth,&half\n"
                "       2&Top                                     -&width\n");
    EXPECT_EQ(pointOf(mesh, 11), (Point{2.5, -4, 1}));
    EXPECT_EQ(pointOf(mesh, 2), (Point{8, 0, -2.5}));
    EXPECT_TRUE(log.warnings().empty());
    EXPECT_EQ(readError("*KEYWORD\n*NODE\n1,&none\n*END\n", "deck.k"),
              "deck.k:3: *NODE: \"&none\": parameter none is not defined");
    EXPECT_EQ(readError("*KEYWORD\n*NODE\n1,0.,-&none\n*END\n", "deck.k"),
              "deck.k:3: *NODE: \"-&none\": parameter none is not defined");
    EXPECT_EQ(readError("*KEYWORD\n*ELEMENT_SHELL\n1,&none,1,2,3\n*END\n", "deck.k"),
              "deck.k:3: *ELEMENT_SHELL: \"&none\": parameter none is not defined");
    EXPECT_EQ(readError("*KEYWORD\n*PARAMETER\nRbig,1e30\n*NODE\n&big\n*END\n", "deck.k"),
              "deck.k:5: *NODE: \"&big\" is no number")
        << "defined, but no id";
}

TEST_F(KeyParts, ExpressionsGoOnInTheNextLine)
{
    const kvo::Mesh mesh = readKey("*PARAMETER_EXPRESSION\n"
                                   "R  len    2.0 * max(1.5,\n"
                                   "            2.5) +\n"
                                   "          1.0\n"
                                   "I  half   7/2\n"
                                   "*NODE\n1,&len,&half\n");
    EXPECT_EQ(pointOf(mesh, 1), (Point{6, 3, 0}));
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(KeyParts, TheFirstValueOfAParameterHoldsUnlessTheDeckSaysOtherwise)
{
    const std::string twice = "*PARAMETER\nRa,1.\nRa,2.\n*NODE\n1,&a\n";
    EXPECT_EQ(pointOf(readKey(twice), 1), (Point{1, 0, 0}));
    EXPECT_EQ(log.warningCount("parameters defined more than once"), 1u);
    EXPECT_EQ(pointOf(readKey("*PARAMETER_DUPLICATION\n2\n" + twice), 1), (Point{2, 0, 0}));
}

TEST_F(KeyParts, LocalParametersEndWithTheirFile)
{
    write("inner.k", "*NODE\n3,&len\n");
    write("local.k", "*PARAMETER_LOCAL\nRlen,1.\nRmine,7.\n*NODE\n1,&len,&mine\n*INCLUDE\ninner.k\n*NODE\n4,&len\n");
    const std::string deck = "*PARAMETER\nRlen,5.\n*INCLUDE\nlocal.k\n*NODE\n2,&len\n";
    const kvo::Mesh mesh = readKey(deck);
    EXPECT_EQ(pointOf(mesh, 1), (Point{1, 7, 0}));
    EXPECT_EQ(pointOf(mesh, 3), (Point{1, 0, 0})) << "files within see them";
    EXPECT_EQ(pointOf(mesh, 4), (Point{1, 0, 0}));
    EXPECT_EQ(pointOf(mesh, 2), (Point{5, 0, 0}));
    EXPECT_TRUE(log.warnings().empty());
    EXPECT_TRUE(contains(readError("*KEYWORD\n" + deck + "5,&mine\n*END\n", "deck.k"),
                         "\"&mine\": parameter mine is not defined"));
}

TEST_F(KeyParts, ExpressionsFollowTheRulesOfArithmetic)
{
    kvo::KeyParameters parameters;
    parameters.define("a", 3.0, false);
    const struct
    {
        const char* text;
        double value;
    } rows[] = {
        {"1-3", -2},     {"2*a+1", 7},        {"-a**2", -9},   {"2**-1", 0.5}, {"1.5e1/3", 5}, {" ( A - 1 ) * 2 ", 4},
        {"min(a,2)", 2}, {"int(7.9)/2", 3.5}, {"mod(7,a)", 1}, {"&a*&A", 9}};
    for (const auto& row : rows) {
        double value = 0.0;
        EXPECT_TRUE(parameters.evaluate(row.text, value)) << row.text;
        EXPECT_DOUBLE_EQ(value, row.value) << row.text;
    }
    for (const std::string& text :
         {std::string(), std::string("1/0"), std::string("b"), std::string("1+"), std::string("sqrt(-1)"),
          std::string("f(1)"), std::string(100000, '('), std::string(100000, '-') + "1"}) {
        double value = 0.0;
        EXPECT_FALSE(parameters.evaluate(text, value)) << text.substr(0, 20);
    }
}

TEST_F(KeyParts, IncludedFilesAreReadWhereTheyAreNamed)
{
    write("mesh/nodes.k", "*KEYWORD LONG=Y\n*NODE\n                   1                  1.\n*END\n*NODE\nnonsense\n");
    write("elements_with_a_long_name.k", "*ELEMENT_BEAM\n1,2,1,2\n");
    write("empty.k", "");
    const kvo::Mesh mesh = readKey("*INCLUDE\nmesh/nodes.k\nempty.k\nelements_with_a +\n_long_name.k\n"
                                   "*NODE\n       2              2.\n");
    EXPECT_EQ(pointOf(mesh, 1), (Point{1, 0, 0}));
    EXPECT_EQ(pointOf(mesh, 2), (Point{2, 0, 0})) << "the long format was that of the included file";
    EXPECT_EQ(elementIds(mesh), Ids{1});
    EXPECT_EQ(mesh.sourceFiles.size(), 4u);
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(KeyParts, IncludePathsAreSearched)
{
    write("library/parts/nodes.k", "*NODE\n1,1.\n");
    const kvo::Mesh mesh =
        readKey("*INCLUDE_PATH_RELATIVE\nlibrary\n*INCLUDE_PATH\nlibrary/parts\n*INCLUDE\nnodes.k\n");
    EXPECT_EQ(pointOf(mesh, 1), (Point{1, 0, 0}));
    EXPECT_TRUE(contains(readError("*KEYWORD\n*INCLUDE\nnone.k\n", "deck.k"), "deck.k:3: included file \"none.k\""));
}

TEST_F(KeyParts, TransformedIncludesShiftIdsAndMoveNodes)
{
    write("wheel.k",
          "*NODE\n1,1.,0.,0.\n2,2.,0.,0.\n*ELEMENT_BEAM_ORIENTATION\n1,1,1,2\n 1.,0.,0.\n*PART\nwheel\n1,1,1\n"
          "*SECTION_BEAM\n1,3\n2.\n*MAT_ELASTIC_TITLE\niron\n1\n*SET_NODE_TITLE\nhub\n1\n1,2\n");
    const kvo::Mesh mesh = readKey("*INCLUDE\nwheel.k\n"
                                   "*INCLUDE_TRANSFORM\nwheel.k\n"
                                   "$ idnoff ideoff idpoff idmoff idsoff\n"
                                   "       100       200       300       400       500\n"
                                   "       600\n"
                                   "                         0.001\n"
                                   "         9\n"
                                   "*INCLUDE_TRANSFORM\nwheel.k\n"
                                   "1000,1000,1000,1000,1000\n"
                                   "*DEFINE_TRANSFORMATION\n         9\n"
                                   "ROTATE           0.0       0.0       1.0       0.0       0.0       0.0      90.0\n"
                                   "TRANSL          10.0\n");
    EXPECT_EQ(elementIds(mesh), (Ids{1, 201, 1001}));
    EXPECT_EQ(nodesOf(mesh, 201), (Ids{101, 102, kvo::noNode}));
    const Point moved = pointOf(mesh, 102);
    EXPECT_NEAR(moved[0], 10.0, 1e-12);
    EXPECT_NEAR(moved[1], 0.002, 1e-12);
    EXPECT_EQ(pointOf(mesh, 2), (Point{2, 0, 0}));
    EXPECT_EQ(pointOf(mesh, 1002), (Point{2, 0, 0}));
    const kvo::MeshPart& part = partOf(mesh, 201);
    EXPECT_EQ(part.id, 301);
    EXPECT_EQ(part.propertyId, 601);
    EXPECT_EQ(part.materialId, 401);
    EXPECT_EQ(part.data.area, 2.0);
    EXPECT_EQ(part.materialName, "iron");
    EXPECT_EQ(mesh.sets[1].id, 501);
    EXPECT_EQ(idsOf(mesh.sets[1]), (Ids{101, 102}));
    for (const kvo::Orientation& row : mesh.files[0].orientations) {
        if (row.elements.ranges[0].first == 201) {
            EXPECT_NEAR(row.vector[1], 0.001, 1e-12);
        }
    }
}

TEST_F(KeyParts, TransformedIncludesTurnTheVectorsOfTheirSprings)
{
    write("spring.k", "*NODE\n1,1.\n2,2.\n*ELEMENT_DISCRETE\n1,1,1,2,5\n2,1,1,2,6\n"
                      "*DEFINE_SD_ORIENTATION\n5,0,1.,0.,0.\n");
    const kvo::Mesh mesh = readKey("*DEFINE_TRANSFORMATION\n1\nROTATE,0.,0.,1.,0.,0.,0.,90.\n"
                                   "*INCLUDE_TRANSFORM\nspring.k\n10,10,10,10,10,10,10\n\n\n1\n");
    ASSERT_EQ(mesh.files[0].orientations.size(), 1u);
    EXPECT_NEAR(mesh.files[0].orientations[0].vector[0], 0.0, 1e-12);
    EXPECT_NEAR(mesh.files[0].orientations[0].vector[1], 1.0, 1e-12);
    EXPECT_EQ(log.warningCount("vectors that do not exist"), 1u) << "16, of spring 12";
}

TEST_F(KeyParts, TransformedIncludesNest)
{
    write("inner.k", "*NODE\n1,1.,0.,0.\n");
    write("outer.k", "*NODE\n2,1.,0.,0.\n*INCLUDE_TRANSFORM\ninner.k\n10\n\n\n2\n*NODE\n3,1.,0.,0.\n");
    const kvo::Mesh mesh = readKey("*DEFINE_TRANSFORMATION\n1\nTRANSL,0.,5.\n*DEFINE_TRANSFORMATION\n2\nSCALE,3.\n"
                                   "*INCLUDE_TRANSFORM\nouter.k\n100\n\n\n1\n*NODE\n4,1.,0.,0.\n");
    EXPECT_EQ(pointOf(mesh, 111), (Point{3, 5, 0}));
    EXPECT_EQ(pointOf(mesh, 102), (Point{1, 5, 0}));
    EXPECT_EQ(pointOf(mesh, 103), (Point{1, 5, 0}));
    EXPECT_EQ(pointOf(mesh, 4), (Point{1, 0, 0}));
}

TEST_F(KeyParts, OneKeywordMayTransformSeveralFiles)
{
    write("n.k", "*NODE\n1,1.\n");
    write("empty.k", "");
    const kvo::Mesh mesh = read("*KEYWORD LONG=Y\n*INCLUDE_TRANSFORM\nempty.k\n                   5\n\n\n\n"
                                "n.k\n                 100\n\n\n\nn.k\n                 200\n*END\n",
                                "deck.k");
    EXPECT_EQ(mesh.files[0].nodeIds, (Ids{101, 201}));
    EXPECT_TRUE(log.warnings().empty());
    EXPECT_TRUE(contains(complaint("*KEYWORD\n*INCLUDE_TRANSFORM\nn.k\n\n\n\n\nnone.k\n*END\n", "deck.k"),
                         "included file \"none.k\" not found"));
}

TEST_F(KeyParts, StepsOfTransformations)
{
    write("n.k", "*NODE\n1,1.,2.,3.\n");
    const struct
    {
        const char* steps;
        Point point;
    } rows[] = {
        {"MIRROR,2.,0.,0.,3.,0.,0.\n", {3, 2, 3}},
        {"POINT,1,0.,0.,0.\nPOINT,2,0.,0.,1.\nROTATE,1,2,90.\n", {-2, 1, 3}},
        {"POINT,1,0.,0.,0.\nPOINT,2,1.,0.,0.\nPOINT,3,0.,1.,0.\nPOINT,4,5.,0.,0.\nPOINT,5,5.,1.,0.\n"
         "POINT,6,4.,0.,0.\nPOS6P,1,2,3,4,5,6\n",
         {3, 1, 3}},
        {"SCALE,2.,3.\nTRANSL,1.\n", {3, 6, 3}},
        {"ROTATE,0.,0.,1.,0.,0.,0.,0.\nTRANSL,1.\n", {2, 2, 3}}, // by no angle
    };
    for (const auto& row : rows) {
        const kvo::Mesh mesh = readKey(std::string("*DEFINE_TRANSFORMATION_TITLE\nt\n7\n") + row.steps +
                                       "*INCLUDE_TRANSFORM\nn.k\n\n\n\n7\n");
        for (int k = 0; k < 3; ++k) {
            EXPECT_NEAR(pointOf(mesh, 1)[k], row.point[k], 1e-12) << row.steps;
        }
        EXPECT_TRUE(log.warnings().empty());
    }
    readKey("*DEFINE_TRANSFORMATION\n7\nPOS6N,1,2,3,4,5,6\n*INCLUDE_TRANSFORM\nn.k\n\n\n\n8\n");
    EXPECT_EQ(log.warningCount("steps of transformations that are not applied"), 1u);
    EXPECT_EQ(log.warningCount("transformations that do not exist"), 1u);
}

TEST_F(KeyParts, IncludesThatDoNotEndAreErrors)
{
    write("a.k", "*INCLUDE\nb.k\n");
    write("b.k", "*INCLUDE\na.k\n");
    EXPECT_TRUE(
        contains(readError("*KEYWORD\n*INCLUDE\na.k\n*END\n", "deck.k"), "b.k:2: \"a.k\" is included by itself"));
    EXPECT_TRUE(contains(complaint("*KEYWORD\n*INCLUDE_TRANSFORM\n*END\n", "deck.k"), "deck.k:2: "));
    EXPECT_TRUE(contains(complaint("*KEYWORD\n*INCLUDE_TRANSFORM\na.k\nx\n*END\n", "deck.k"), "deck.k:4: "));
    write("cut.k", "*INCLUDE_TRANSFORM\na.k\n1\n");
    EXPECT_TRUE(
        contains(complaint("*KEYWORD\n*INCLUDE\ncut.k\n*END\n", "deck.k"), "cut.k:1: *INCLUDE_TRANSFORM is not"));
    EXPECT_TRUE(
        contains(complaint("*INCLUDE_TRANSFORM\na.k\n", "deck.k"), "deck.k:1: *INCLUDE_TRANSFORM is not whole"));
    write("n.k", "*NODE\n9223372036854775807,1.\n");
    EXPECT_TRUE(contains(complaint("*KEYWORD\n*INCLUDE_TRANSFORM\nn.k\n5\n*END\n", "deck.k"), "n.k:2: id "));
}

TEST_F(KeyParts, TheTitleIsKept)
{
    const kvo::Mesh mesh = readKey("*TITLE\n  Bracket, second try\n" + std::string(shells));
    ASSERT_EQ(mesh.facts.size(), 1u);
    EXPECT_EQ(mesh.facts[0].second, "Bracket, second try");
}
