// Exodus II blocks without a fixed number of nodes, and what stands beside the blocks.
#include <netcdf.h>

#include <stdexcept>

#include "convert_fixture.h"

namespace {

void check(int status)
{
    if (status != NC_NOERR) {
        throw std::runtime_error(nc_strerror(status));
    }
}

// Six nodes, and blocks with ids from 1.
class BlockWriter
{
public:
    explicit BlockWriter(const std::string& path) { check(nc_create(path.c_str(), NC_CLOBBER | NC_NETCDF4, &file)); }
    ~BlockWriter() { nc_close(file); }

    int dimension(const std::string& name, std::size_t length)
    {
        int id = 0;
        check(nc_def_dim(file, name.c_str(), length, &id));
        return id;
    }
    int put(const std::string& name, const std::vector<int>& dimensions, const std::vector<int>& values)
    {
        int id = 0;
        check(nc_def_var(file, name.c_str(), NC_INT, static_cast<int>(dimensions.size()), dimensions.data(), &id));
        check(nc_put_var_int(file, id, values.data()));
        return id;
    }
    void nodes()
    {
        const double xyz[3][6] = {{0, 1, 1, 0, 2, 2}, {0, 0, 1, 1, 0, 1}, {0, 0, 0, 0, 0, 0}};
        dimension("num_dim", 3);
        const int count = dimension("num_nodes", 6);
        for (std::size_t d = 0; d < 3; ++d) {
            int id = 0;
            const std::string name = std::string("coord") + "xyz"[d];
            check(nc_def_var(file, name.c_str(), NC_DOUBLE, 1, &count, &id));
            check(nc_put_var_double(file, id, xyz[d]));
        }
    }
    void elements(const std::vector<int>& ids, std::size_t blocks)
    {
        put("elem_num_map", {dimension("num_elem", ids.size())}, ids);
        dimension("num_el_blk", blocks);
    }
    void quads(const std::string& block, const std::vector<int>& corners)
    {
        const int count = dimension("num_el_in_blk" + block, corners.size() / 4);
        type(put("connect" + block, {count, dimension("num_nod_per_el" + block, 4)}, corners), "QUAD4");
    }
    void polygons(const std::string& block, const std::vector<int>& counts, const std::vector<int>& corners)
    {
        put("ebepecnt" + block, {dimension("num_el_in_blk" + block, counts.size())}, counts);
        type(put("connect" + block, {dimension("num_nod_per_el" + block, corners.size())}, corners), "nsided");
    }
    void polyhedron(const std::string& block, const std::vector<int>& faces)
    {
        const int count = static_cast<int>(faces.size());
        put("ebepecnt" + block, {dimension("num_el_in_blk" + block, 1)}, {count});
        type(put("facconn" + block, {dimension("num_fac_per_el" + block, faces.size())}, faces), "nfaced");
    }

    // One element with control points.
    void bezier(const std::string& block, const std::string& typeName, const std::vector<int>& points)
    {
        const int one = dimension("num_el_in_blk" + block, 1);
        type(put("connect" + block, {one, dimension("num_nod_per_el" + block, points.size())}, points), typeName);
    }

private:
    void type(int variable, const std::string& name)
    {
        check(nc_put_att_text(file, variable, "elem_type", name.size(), name.c_str()));
    }

    int file = -1;
};

class ExodusBlocks : public ContainerTest
{
};

} // namespace

TEST_F(ExodusBlocks, DividedOnesTakeNoIdsOfLaterBlocks)
{
    {
        BlockWriter out(path("polygons.exo"));
        out.nodes();
        out.elements({1, 2, 3, 4}, 3);
        out.polygons("1", {6}, {1, 2, 5, 6, 3, 4});
        out.quads("2", {1, 2, 3, 4, 2, 5, 6, 3});
        out.polygons("3", {5}, {2, 5, 6, 3, 4});
    }
    const kvo::Mesh mesh = readIt(path("polygons.exo"));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(partOf(mesh, 2).id, 2);
    EXPECT_EQ(partOf(mesh, 7).id, 1);
    EXPECT_EQ(partOf(mesh, 9).id, 3);
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(ExodusBlocks, PolyhedraAreKeptByTheirIds)
{
    {
        BlockWriter out(path("polyhedra.exo"));
        out.nodes();
        out.elements({50, 30}, 2);
        out.quads("1", {1, 2, 3, 4});
        out.polyhedron("2", {1, 2, 3, 4, 5, 6});
        out.dimension("num_side_sets", 1);
        out.put("elem_ss1", {out.dimension("num_side_ss1", 2)}, {1, 2});
    }
    const kvo::Mesh mesh = readIt(path("polyhedra.exo"));
    EXPECT_EQ(drawnAndUndrawnCounts(mesh), (std::map<std::string, std::uint64_t>{{"NFACED", 1}, {"QUAD4", 1}}));
    ASSERT_EQ(mesh.files[0].undrawn.size(), 1u);
    EXPECT_EQ(mesh.files[0].undrawn[0].ids, Ids{30});
    EXPECT_EQ(setMembers(mesh, kvo::MeshSet::Of::Elements, "side set 1"), (Ids{30, 50}));
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(ExodusBlocks, BezierElementsAreKeptByTheirIds)
{
    {
        BlockWriter out(path("bezier.exo"));
        out.nodes();
        out.elements({7, 8, 9, 5}, 4);
        out.bezier("1", "BEX_QUAD", {1, 2, 3, 4, 0, 0, 0, 0, 0});
        out.bezier("2", "BEX_HEX", {1, 2, 3, 4, 5, 6, 99, -1});
        out.bezier("3", "bex_triangle", {1, 2, 3});
        out.quads("4", {1, 2, 3, 4});
    }
    const kvo::Mesh mesh = readIt(path("bezier.exo"));
    EXPECT_EQ(elementIds(mesh), Ids{5});
    EXPECT_EQ(drawnAndUndrawnCounts(mesh), (std::map<std::string, std::uint64_t>{
                                               {"BEX_HEX", 1}, {"BEX_QUAD", 1}, {"BEX_TRIANGLE", 1}, {"QUAD4", 1}}));
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "BEX_QUAD"), 1u);
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(ExodusBlocks, MapsThatAreNoNumberingAreReplaced)
{
    const std::vector<int> maps[] = {{7, 7}, {0, 1}, {-3, 2}};
    for (const std::vector<int>& map : maps) {
        {
            BlockWriter out(path("map.exo"));
            out.nodes();
            out.elements(map, 1);
            out.quads("1", {1, 2, 3, 4, 2, 5, 6, 3});
        }
        EXPECT_EQ(elementIds(readIt(path("map.exo"))), (Ids{1, 2})) << map[0];
        EXPECT_EQ(log.warningCount("id maps that cannot be used"), 1u) << map[0];
    }
}

TEST_F(ExodusBlocks, AssembliesAreCounted)
{
    {
        BlockWriter out(path("assemblies.exo"));
        out.nodes();
        out.elements({1}, 1);
        out.quads("1", {1, 2, 3, 4});
        out.put("assembly_entity7", {out.dimension("num_entity_assembly7", 1)}, {1});
        out.put("assembly_entity9", {out.dimension("num_entity_assembly9", 1)}, {1});
    }
    readIt(path("assemblies.exo"));
    ASSERT_EQ(log.lists().size(), 1u);
    ASSERT_EQ(log.lists()[0].entries.size(), 1u);
    EXPECT_EQ(log.lists()[0].entries[0].name, "assemblies");
    EXPECT_EQ(log.lists()[0].entries[0].count, 2u);
}

TEST_F(ExodusBlocks, AFileWithoutNodesIsAMessage)
{
    BlockWriter(path("empty.exo")).dimension("num_dim", 3);
    try {
        log = kvo::ImportLog();
        kvo::readContainer(path("empty.exo"), kvo::findContainerFormat("exodus"), log);
        ADD_FAILURE() << "no message";
    } catch (const kvo::ImportError& error) {
        EXPECT_EQ(std::string(error.what()), path("empty.exo") + ": has no nodes");
    }
}
