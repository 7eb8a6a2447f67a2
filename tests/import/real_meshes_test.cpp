// Real meshes and surfaces with known counts, where they are at hand: KVO_TEST_DATA names their folder, else a folder
// "shared/data" next to the project's.
#include "import_fixture.h"

#include <cstdlib>

namespace {

std::filesystem::path dataFolder()
{
    const char* named = std::getenv("KVO_TEST_DATA");
    return named ? std::filesystem::path(named)
                 : std::filesystem::path(KVO_SOURCE_DIR).parent_path() / "shared" / "data";
}

struct RealMesh
{
    const char* file;
    std::uint64_t nodes;
    std::map<std::string, std::uint64_t> types;
    std::uint64_t undrawn;
};

std::map<std::string, std::uint64_t> typeCounts(const kvo::Mesh& mesh)
{
    std::map<std::string, std::uint64_t> counts;
    for (const kvo::MeshFile& file : mesh.files) {
        for (const kvo::ElementBlock& block : file.blocks) {
            for (const std::uint32_t part : block.part) {
                if (part != kvo::noPart) {
                    ++counts[mesh.types[block.type].name];
                }
            }
        }
    }
    return counts;
}

std::uint64_t undrawnCount(const kvo::Mesh& mesh)
{
    std::uint64_t count = 0;
    for (const kvo::MeshFile& file : mesh.files) {
        for (const kvo::UndrawnElements& undrawn : file.undrawn) {
            count += undrawn.ids.size();
        }
    }
    return count;
}

class RealMeshes : public ImportTest, public testing::WithParamInterface<RealMesh>
{
};

} // namespace

TEST_P(RealMeshes, HaveTheCountsThatAreKnown)
{
    const std::filesystem::path file = dataFolder() / GetParam().file;
    if (!std::filesystem::exists(file)) {
        GTEST_SKIP() << file << " is not there";
    }
    const kvo::Mesh mesh = readFile(file.string());
    EXPECT_EQ(mesh.nodeCount(), GetParam().nodes);
    EXPECT_EQ(typeCounts(mesh), GetParam().types);
    EXPECT_EQ(undrawnCount(mesh), GetParam().undrawn);
    EXPECT_TRUE(log.warnings().empty());
}

INSTANTIATE_TEST_SUITE_P(All, RealMeshes,
                         testing::Values(RealMesh{"msh/hole8170_v2.msh", 8449, {{"4-node quadrangle", 8170}}, 0}),
                         [](const testing::TestParamInfo<RealMesh>& row) {
                             std::string name = row.param.file;
                             for (char& c : name) {
                                 c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
                             }
                             return name;
                         });
