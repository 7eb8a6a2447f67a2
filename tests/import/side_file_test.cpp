// deck.json: what a deck has and the model's parts have not.
#include "import_fixture.h"

#include <fstream>

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;

class SideFile : public ImportTest
{
protected:
    // A triangle 7 of nodes 1 2 3 in part 5, and a line 8 of family Beam in the same part.
    kvo::Mesh triangleAndBeam()
    {
        kvo::Mesh mesh;
        mesh.formatName = "Test";
        mesh.sourceFiles = {"deck.test"};
        kvo::MeshRows rows(mesh);
        kvo::MeshFile& file = mesh.files.emplace_back();
        for (int id = 1; id <= 4; ++id) {
            file.addNode(id, id, id * id, 0);
        }
        const std::int64_t triangle[] = {1, 2, 3};
        const std::int64_t line[] = {2, 3, kvo::noNode};
        const std::uint32_t part = rows.part(5);
        file.addElement(rows.type("TRI", kvo::Family::Shell, kvo::Shape::Triangle), 0, 1, 7, part, triangle, 3);
        file.addElement(rows.type("BAR", kvo::Family::Beam, kvo::Shape::Line), 0, 2, 8, part, line, 3);
        return mesh;
    }

    Json written(kvo::Mesh& mesh)
    {
        finishMesh(mesh, log);
        kvo::writeModelDirectory(mesh, path("model"), log);
        return deckOf("model");
    }

    Json deckOf(const std::string& model)
    {
        std::ifstream in(path(model + "/deck.json"));
        return Json::parse(in);
    }
};

} // namespace

TEST_F(SideFile, SaysWhereTheModelComesFrom)
{
    kvo::Mesh mesh = triangleAndBeam();
    mesh.facts = {{"title", "A bracket"}};
    const Json deck = written(mesh);
    EXPECT_EQ(deck["version"], 1);
    EXPECT_EQ(deck["format"], "Test");
    EXPECT_EQ(deck["sources"], Json({"deck.test"}));
    EXPECT_EQ(deck["facts"]["title"], "A bracket");
    EXPECT_EQ(deck["origin"], Json({0.0, 0.0, 0.0}));
}

TEST_F(SideFile, KeepsSectionsAndTypesOfThePiecesOfAPart)
{
    kvo::Mesh mesh = triangleAndBeam();
    mesh.parts[0].section = "pipe section";
    mesh.parts[0].data.thickness = 1.5;
    mesh.parts[0].data.shape = "PIPE";
    mesh.parts[0].data.sizes = {10, 0.5};
    mesh.parts[0].data.stiffness = 1000;
    const Json deck = written(mesh);
    ASSERT_EQ(deck["parts"].size(), 2u);
    EXPECT_EQ(deck["parts"][0]["id"], 5);
    EXPECT_EQ(deck["parts"][1]["id"], 6) << "split off";
    EXPECT_EQ(deck["parts"][1]["source_id"], 5);
    EXPECT_EQ(deck["parts"][0]["section"], Json({{"kind", "pipe section"},
                                                 {"thickness", 1.5},
                                                 {"shape", "PIPE"},
                                                 {"sizes", {10.0, 0.5}},
                                                 {"stiffness", 1000.0}}));
    EXPECT_EQ(deck["parts"][0]["types"], Json::array({{{"name", "TRI"}, {"count", 1}}}));
    EXPECT_EQ(deck["parts"][1]["types"], Json::array({{{"name", "BAR"}, {"count", 1}}}));
}

TEST_F(SideFile, NamesTheModelFilesWhereThereAreSeveral)
{
    kvo::Mesh mesh = triangleAndBeam();
    mesh.files.push_back(mesh.files[0]);
    mesh.files[1].name = "second";
    mesh.files[1].addUndrawn("MASS", 9, nullptr, 0);
    const Json deck = written(mesh);
    EXPECT_EQ(deck["parts"][0]["file"], "model/1_");
    EXPECT_EQ(deck["parts"][2]["file"], "model/2_second");
    EXPECT_EQ(deck["undrawn"][0]["file"], "model/2_second");
}

TEST_F(SideFile, SaysWhichElementsHaveWhichTypeWhereAPartHasSeveral)
{
    kvo::Mesh mesh = triangleAndBeam();
    kvo::MeshRows rows(mesh);
    const std::int64_t nodes[] = {1, 2, 4};
    mesh.types.push_back({"TRI6", kvo::Family::Shell, kvo::Shape::Triangle});
    for (std::int64_t id : {10, 11, 13}) {
        mesh.files[0].addElement(2, 0, 1, id, 0, nodes, 3);
    }
    EXPECT_EQ(written(mesh)["parts"][0]["types"], Json::parse(R"([{"name": "TRI", "count": 1, "elements": [7]},
                              {"name": "TRI6", "count": 3, "elements": [[10, 11], 13]}])"));
}

TEST_F(SideFile, KeepsSetsWithoutMembersThatDoNotExist)
{
    kvo::Mesh mesh = triangleAndBeam();
    kvo::MeshSet nodes;
    nodes.name = "fixed";
    nodes.ids.addRange(3, 1000000000000, 1); // wider than any mesh
    nodes.ids.add(1);
    mesh.sets.push_back(nodes);
    kvo::MeshSet elements;
    elements.of = kvo::MeshSet::Of::Elements;
    elements.id = 12;
    elements.ids.addRange(7, 9, 2);
    mesh.files[0].addUndrawn("MASS", 9, nullptr, 0);
    mesh.sets.push_back(elements);
    const Json sets = written(mesh)["sets"];
    EXPECT_EQ(sets, Json::parse(R"([{"name": "fixed", "of": "nodes", "count": 3, "ids": [1, [3, 4]]},
                                    {"name": "", "of": "elements", "id": 12, "count": 2, "ids": [7, 9]}])"));
    EXPECT_EQ(log.warningCount(kvo::warnSetMember), 1u);
}

TEST_F(SideFile, KeepsOrientationsAndWhatIsNotDrawn)
{
    kvo::Mesh mesh = triangleAndBeam();
    mesh.files[0].orient(8, {0, 0, 1});
    mesh.files[0].orient(9, {0, 0, 1});
    mesh.files[0].orient(8, {0, 0, 1}, static_cast<int>(kvo::Family::Discrete));
    const std::int64_t rigid[] = {1, 4, 3};
    mesh.files[0].addUndrawn("RBE2", 100, rigid, 3);
    mesh.files[0].addUndrawn("MASS", 101, rigid + 1, 1);
    mesh.files[0].addUndrawn("RBE2", 102, rigid, 2);
    const Json deck = written(mesh);
    EXPECT_EQ(deck["orientations"], Json::parse(R"([{"vector": [0.0, 0.0, 1.0], "elements": [[8, 9]]},
                              {"vector": [0.0, 0.0, 1.0], "kind": "discrete", "elements": [8]}])"));
    EXPECT_EQ(deck["undrawn"], Json::parse(R"([{"type": "RBE2", "count": 2, "elements": [[100, 1, 4, 3], [102, 1, 4]]},
                              {"type": "MASS", "count": 1, "elements": [[101, 4]]}])"));
}

TEST_F(SideFile, AShiftOfTheOriginIsRecordedAndKeepsShortEdges)
{
    const std::string deck = "*NODE\n1, 1e7\n2, 10000000.1\n3, 1e7, 1\n*ELEMENT, TYPE=S3\n1, 1, 2, 3\n";
    const kvo::Mesh mesh = read(deck);
    const LoadedElement element = roundTrip(mesh).at(1);
    EXPECT_EQ(element.points[1][0], 1e7) << "lost without a shift";
    ASSERT_EQ(log.notes().size(), 1u);
    EXPECT_TRUE(contains(log.notes()[0], "(--shift-origin) it can")) << log.notes()[0];

    kvo::ModelOptions options;
    options.shiftOrigin = true;
    kvo::writeModelDirectory(mesh, path("shifted"), log, options);
    EXPECT_EQ(deckOf("shifted")["origin"], Json({1e7, 0.0, 0.0}));
    EXPECT_EQ(log.notes().size(), 2u);
    EXPECT_EQ(log.notes().back(), "the origin is moved to (10000000, 0, 0)");
    EXPECT_FLOAT_EQ(load("shifted").at(1).points[1][0], 0.1f);
}

TEST_F(SideFile, PartsWithImpossibleIdsGetNewOnes)
{
    kvo::Mesh mesh = triangleAndBeam();
    mesh.files[0].blocks.pop_back();
    const std::int64_t nodes[] = {1, 2, 4};
    for (const std::int64_t id : {std::int64_t(5), std::int64_t(-3), std::int64_t(5000000000)}) {
        mesh.parts.emplace_back().id = id;
        const std::uint32_t part = static_cast<std::uint32_t>(mesh.parts.size()) - 1;
        mesh.files[0].addElement(0, 0, 1, 20 + part, part, nodes, 3);
    }
    finishMesh(mesh, log);
    const auto elements = roundTrip(mesh);
    EXPECT_EQ(elements.at(7).part, 5u);
    EXPECT_EQ(elements.at(21).part, 6u);
    EXPECT_EQ(elements.at(22).part, 7u);
    EXPECT_EQ(elements.at(23).part, 8u);
    EXPECT_EQ(log.notes().size(), 3u);
}

TEST_F(SideFile, IdsMayRepeatBetweenFamiliesWhereTheFormatSaysSo)
{
    for (const bool perFamily : {false, true}) {
        kvo::Mesh mesh = triangleAndBeam();
        mesh.idsPerFamily = perFamily;
        mesh.files[0].blocks[0].ids[0] = 8;
        log = kvo::ImportLog();
        finishMesh(mesh, log);
        EXPECT_EQ(mesh.elementCount(), perFamily ? 2u : 1u);
        EXPECT_EQ(log.warningCount(kvo::warnElementTwice), perFamily ? 0u : 1u);
    }
}
