// Models made from meshes in memory are those that a model directory gives.
#include "import_fixture.h"

#include <algorithm>
#include <fstream>

#include <kvo/model_directory.h>

#include "mantypes.h"
#include "mesh_model.h"
#include "modelinfo.h"
#include "readelements.h"

namespace fs = std::filesystem;

namespace {

class MeshModel : public ImportTest
{
protected:
    kvo::Model model(const std::string& text, const std::string& name = "deck.inp")
    {
        return kvo::makeModel(read(text, name), log);
    }
    void expectSameParts(const kvo::Model& model);
};

unsigned int drawTypeOf(kvo::ElementKind kind)
{
    static const unsigned int types[] = {SHELL, SOLID, BEAM, DISCRETE, 0};
    return types[static_cast<int>(kind)];
}

void expectSamePart(const PartInfoStr& record, const ModelPartInfo& info, const kvo::Part& part)
{
    EXPECT_EQ(part.id, info.part.id);
    EXPECT_EQ(part.name, info.part.name);
    EXPECT_EQ(part.propertyId, info.part.propertyId);
    EXPECT_EQ(part.propertyName, info.part.propertyName);
    EXPECT_EQ(part.materialId, info.part.materialId);
    EXPECT_EQ(part.materialName, info.part.materialName);
    EXPECT_EQ(drawTypeOf(part.kind), record.partDrawType);
    EXPECT_TRUE(std::equal(part.color.begin(), part.color.end(), record.partColor));
    ASSERT_EQ(part.slotCount, record.partElements.nodesPerElement);
    ASSERT_EQ(part.slots.size(), record.partElements.numElements);
    ASSERT_EQ(part.nodeCount(), record.partNodes.numNodes);
    EXPECT_TRUE(std::equal(part.slots.begin(), part.slots.end(), record.partElements.elmIndices));
    EXPECT_TRUE(std::equal(part.positions.begin(), part.positions.end(), record.partNodes.nodeValues));
    const std::vector<std::uint32_t> nodes = part.nodeIds.toVector();
    EXPECT_TRUE(std::equal(nodes.begin(), nodes.end(), record.partNodes.idList));
    if (part.nodeCount() > 0) {
        EXPECT_TRUE(std::equal(part.extents.begin(), part.extents.end(), record.partExtents));
    }
    ASSERT_EQ(part.elementCount(), record.partElements.eidMap->size());
    for (const auto& [id, position] : *record.partElements.eidMap) {
        ASSERT_EQ(part.elementIds.find(id), position);
    }
}

// Against the model directory "model" of the test's folder.
void MeshModel::expectSameParts(const kvo::Model& model)
{
    ModelInfo info;
    std::string error;
    ASSERT_TRUE(readModelInfo(folder.string(), "model", &info, &error)) << error;
    ASSERT_EQ(model.parts().size(), info.parts.size());
    ASSERT_EQ(model.files().size(), info.files.size());
    std::size_t next = 0;
    for (std::size_t f = 0; f < info.files.size(); ++f) {
        UIUIMap partIndex;
        unsigned int numParts = 0;
        PartInfoStr* parts = nullptr;
        ReadElements reader(folder.c_str(), info.files[f].c_str(), static_cast<int>(f), &partIndex);
        reader.getAll(&numParts, &parts);
        for (unsigned int p = 0; p < numParts; ++p, ++next) {
            ASSERT_LT(next, model.parts().size());
            EXPECT_EQ(model.parts()[next].file, f);
            expectSamePart(parts[p], info.parts[next], model.parts()[next]);
        }
        releaseParts(numParts, parts);
    }
    EXPECT_EQ(next, info.parts.size());
}

void expectSameModel(const kvo::Model& a, const kvo::Model& b)
{
    ASSERT_EQ(a.parts().size(), b.parts().size());
    EXPECT_EQ(a.extents(), b.extents());
    for (std::size_t k = 0; k < a.parts().size(); ++k) {
        const kvo::Part &p = a.parts()[k], &q = b.parts()[k];
        EXPECT_EQ(p.id, q.id);
        EXPECT_EQ(p.name, q.name);
        EXPECT_EQ(p.kind, q.kind);
        EXPECT_EQ(p.file, q.file);
        EXPECT_EQ(p.propertyName, q.propertyName);
        EXPECT_EQ(p.materialId, q.materialId);
        EXPECT_EQ(p.materialName, q.materialName);
        EXPECT_EQ(p.color, q.color);
        EXPECT_TRUE(std::equal(p.slots.begin(), p.slots.end(), q.slots.begin(), q.slots.end()));
        EXPECT_TRUE(std::equal(p.positions.begin(), p.positions.end(), q.positions.begin(), q.positions.end()));
        EXPECT_EQ(p.nodeIds.toVector(), q.nodeIds.toVector());
        EXPECT_EQ(p.elementIds.toVector(), q.elementIds.toVector());
    }
}

std::string fileText(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::vector<fs::path> sampleDecks()
{
    std::vector<fs::path> decks;
    const fs::path source(KVO_SOURCE_DIR);
    for (const fs::path& root : {source / "tests/fuzz/seeds", source / "examples/decks", dataFolder()}) {
        std::error_code none;
        for (fs::recursive_directory_iterator entry(root, none), end; !none && entry != end; entry.increment(none)) {
            if (entry->is_regular_file() && entry->path().extension() != ".py" && entry->file_size() < 6000000) {
                decks.push_back(entry->path());
            }
        }
    }
    std::sort(decks.begin(), decks.end());
    return decks;
}

} // namespace

TEST_F(MeshModel, EqualsTheModelDirectoryOfEveryDeckAtHand)
{
    std::size_t compared = 0;
    for (const fs::path& deck : sampleDecks()) {
        SCOPED_TRACE(deck.string());
        kvo::ImportLog written, made;
        kvo::Mesh mesh;
        try {
            mesh = kvo::readDeck(deck.string(), written);
            kvo::writeModelDirectory(mesh, path("model"), written);
        } catch (const kvo::ImportError&) {
            continue; // no deck, or a damaged one
        }
        const kvo::Model model = kvo::makeModel(std::move(mesh), made);
        const std::array<double, 3> zero = {0, 0, 0};
        if (model.origin() == zero) {
            expectSameParts(model);
            expectSameModel(model, kvo::readModelDirectory(path("model")));
            ++compared;
        }
        fs::remove_all(path("model"));
    }
    EXPECT_GE(compared, 40u);
}

TEST_F(MeshModel, KeepsTheDigitsOfAModelFarFromZero)
{
    const kvo::Model far = model("*NODE\n1, 500000000.25, 0., 0.\n2, 500000001., 0., 0.\n3, 500000000.25, 0.125, 0.\n"
                                 "*ELEMENT, TYPE=S3\n1, 1, 2, 3\n");
    const kvo::Part& part = far.parts()[0];
    EXPECT_EQ(far.origin()[0] + part.positionOf(0)[0], 500000000.25);
    EXPECT_EQ(far.origin()[0] + part.positionOf(1)[0], 500000001.0);
    const kvo::Model near =
        model("*NODE\n1, 5., 0., 0.\n2, 6., 0., 0.\n3, 5., 1., 0.\n*ELEMENT, TYPE=S3\n1, 1, 2, 3\n");
    EXPECT_EQ(near.origin()[0], 0.0) << "coordinates stay where they need not move";
}

TEST_F(MeshModel, KeepsWhatTheDeckSaysBesideItsMesh)
{
    const kvo::Model out = model("*NODE\n1, 0., 0.\n2, 1., 0.\n3, 1., 1.\n4, 0., 1.\n"
                                 "*ELEMENT, TYPE=S4, ELSET=E\n7, 1, 2, 3, 4\n*ELEMENT, TYPE=S3, ELSET=E\n8, 1, 2, 3\n"
                                 "*ELEMENT, TYPE=MASS, ELSET=M\n50, 3\n51, 2\n"
                                 "*NSET, NSET=CLAMPED\n1, 2, 3\n*SHELL SECTION, ELSET=E, MATERIAL=STEEL\n0.5\n");
    const kvo::Part& part = out.parts()[0];
    EXPECT_EQ(part.section.thickness, 0.5);
    EXPECT_EQ(part.materialName, "STEEL");
    ASSERT_EQ(part.types.size(), 2u);
    EXPECT_EQ(part.types[0].name, "S4");
    EXPECT_EQ(part.types[0].count, 1u);
    ASSERT_EQ(part.types[1].elements.size(), 1u);
    EXPECT_EQ(part.types[1].elements[0].first, 8);
    const auto& sets = out.facts().sets;
    const auto clamped =
        std::find_if(sets.begin(), sets.end(), [](const kvo::ModelSet& set) { return set.name == "CLAMPED"; });
    ASSERT_NE(clamped, sets.end());
    EXPECT_EQ(clamped->of, kvo::ModelSet::Of::Nodes);
    ASSERT_EQ(clamped->ids.size(), 1u);
    EXPECT_EQ(clamped->ids[0].last, 3);
    ASSERT_EQ(out.facts().undrawn.size(), 1u);
    const kvo::ModelUndrawn& masses = out.facts().undrawn[0];
    EXPECT_EQ(masses.type, "MASS");
    EXPECT_EQ(masses.ids, (std::vector<std::int64_t>{50, 51}));
    EXPECT_EQ(masses.starts, (std::vector<std::uint64_t>{0, 1, 2}));
    EXPECT_EQ(masses.nodes, (std::vector<std::int64_t>{3, 2}));
}

TEST_F(MeshModel, ADirectoryThatIsDamagedIsAnErrorWithItsFile)
{
    const kvo::Mesh mesh = read(someNodes(4) + "*ELEMENT, TYPE=S4\n7, 1, 2, 3, 4\n");
    kvo::writeModelDirectory(mesh, path("model"), log);
    EXPECT_EQ(kvo::readModelDirectory(path("model") + "/").parts()[0].elementIds[0], 7u);
    const std::string file = path("model/elements");
    std::string bytes = fileText(file);
    bytes.back() ^= 1;
    std::ofstream(file, std::ios::binary) << bytes;
    try {
        kvo::readModelDirectory(path("model"));
        FAIL() << "no error";
    } catch (const kvo::ModelError& error) {
        EXPECT_TRUE(contains(error.what(), "model/elements: offset")) << error.what();
        EXPECT_TRUE(contains(error.what(), "do not match their checksum")) << error.what();
    }
    EXPECT_THROW(kvo::readModelDirectory(path("nothing")), kvo::ModelError);
    EXPECT_THROW(kvo::readModelDirectory(folder.string()), kvo::ModelError);
}

TEST_F(MeshModel, ReadingADirectoryCanBeStopped)
{
    const kvo::Mesh mesh = read(someNodes(5) + "*ELEMENT, TYPE=S4, ELSET=A\n7, 1, 2, 3, 4\n"
                                               "*ELEMENT, TYPE=S3, ELSET=B\n8, 3, 4, 5\n9, 2, 3, 4\n"
                                               "*SHELL SECTION, ELSET=A\n1.\n*SHELL SECTION, ELSET=B\n1.\n");
    kvo::writeModelDirectory(mesh, path("model"), log);
    std::vector<std::pair<std::uint64_t, std::uint64_t>> calls;
    const auto stopAtTheSecond = [&](std::uint64_t done, std::uint64_t total) {
        calls.emplace_back(done, total);
        return calls.size() < 2;
    };
    EXPECT_THROW(kvo::readModelDirectory(path("model"), stopAtTheSecond), kvo::ModelCancelled);
    EXPECT_EQ(calls, (std::vector<std::pair<std::uint64_t, std::uint64_t>>{{0, 3}, {1, 3}}));
}

TEST_F(MeshModel, RefusesIdsThatNoModelKeeps)
{
    try {
        model("*NODE\n1, 0., 0.\n2, 1., 0.\n3000000000, 1., 1.\n*ELEMENT, TYPE=S3\n7, 1, 2, 3000000000\n");
        FAIL() << "no error";
    } catch (const kvo::ImportError& error) {
        EXPECT_TRUE(contains(error.message, "3000000000")) << error.message;
    }
}
