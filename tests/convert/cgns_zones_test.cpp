// CGNS zones as programs write them: boundary conditions on faces, coordinates in any order, several sections of
// polygons, files of newer versions.
#include <cgnslib.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

#include "convert_fixture.h"

namespace {

void check(int status)
{
    if (status != CG_OK) {
        throw std::runtime_error(cg_get_error());
    }
}

// One base with one zone.
class ZoneWriter
{
public:
    explicit ZoneWriter(const std::string& path, int dimensions = 3) : dimensions(dimensions)
    {
        check(cg_set_file_type(CG_FILE_HDF5));
        check(cg_open(path.c_str(), CG_MODE_WRITE, &file));
        int base = 0;
        check(cg_base_write(file, "Base", dimensions, 3, &base));
    }
    ~ZoneWriter() { cg_close(file); }

    // Nodes at whole numbers; along each direction as many.
    void block(std::vector<cgsize_t> nodes)
    {
        std::vector<cgsize_t> sizes = nodes;
        for (const cgsize_t count : nodes) {
            sizes.push_back(count - 1);
        }
        sizes.resize(9, 0);
        int zone = 0;
        check(cg_zone_write(file, 1, "block", sizes.data(), CGNS_ENUMV(Structured), &zone));
        nodes.resize(3, 1);
        std::vector<double> xyz[3];
        for (cgsize_t k = 0; k < nodes[2]; ++k) {
            for (cgsize_t j = 0; j < nodes[1]; ++j) {
                for (cgsize_t i = 0; i < nodes[0]; ++i) {
                    for (int d = 0; d < 3; ++d) {
                        xyz[d].push_back(d == 0 ? i : d == 1 ? j : k);
                    }
                }
            }
        }
        coordinate("CoordinateX", xyz[0]);
        coordinate("CoordinateY", xyz[1]);
        coordinate("CoordinateZ", xyz[2]);
    }
    void unstructured(cgsize_t nodes, cgsize_t elements)
    {
        const cgsize_t sizes[] = {nodes, elements, 0};
        int zone = 0;
        check(cg_zone_write(file, 1, "zone", sizes, CGNS_ENUMV(Unstructured), &zone));
    }
    void coordinate(const char* name, const std::vector<double>& values)
    {
        int ignored = 0;
        check(cg_coord_write(file, 1, 1, CGNS_ENUMV(RealDouble), name, values.data(), &ignored));
    }
    void polygons(const char* name, cgsize_t first, const std::vector<cgsize_t>& nodes,
                  const std::vector<cgsize_t>& offsets)
    {
        const cgsize_t last = first + static_cast<cgsize_t>(offsets.size()) - 2;
        int ignored = 0;
        check(cg_poly_section_write(file, 1, 1, name, CGNS_ENUMV(NGON_n), first, last, 0, nodes.data(), offsets.data(),
                                    &ignored));
    }
    // A list of points, or two of them as a range.
    void condition(const char* name, CGNS_ENUMT(GridLocation_t) location, bool range,
                   const std::vector<cgsize_t>& points)
    {
        const auto how = range ? CGNS_ENUMV(PointRange) : CGNS_ENUMV(PointList);
        const cgsize_t count = static_cast<cgsize_t>(points.size()) / dimensions;
        int number = 0;
        check(cg_boco_write(file, 1, 1, name, CGNS_ENUMV(BCWall), how, count, points.data(), &number));
        check(cg_boco_gridlocation_write(file, 1, 1, number, location));
    }

private:
    int file = -1;
    int dimensions;
};

// It stands in the file as a number.
void setVersion(const std::string& path, float newer)
{
    int file = 0;
    float version = 0;
    check(cg_open(path.c_str(), CG_MODE_READ, &file));
    check(cg_version(file, &version));
    check(cg_close(file));
    std::ifstream in(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), {}};
    const std::string from(reinterpret_cast<const char*>(&version), 4), to(reinterpret_cast<const char*>(&newer), 4);
    for (std::size_t at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at + 4)) {
        bytes.replace(at, 4, to);
    }
    std::ofstream(path, std::ios::binary) << bytes;
}

class CgnsZones : public ContainerTest
{
protected:
    Ids nodeSet(const kvo::Mesh& mesh, const char* name) { return setMembers(mesh, kvo::MeshSet::Of::Nodes, name); }
};

} // namespace

TEST_F(CgnsZones, ListsOfFacesLieInOnePlane)
{
    {
        ZoneWriter out(path("faces.cgns"));
        out.block({3, 3, 2});
        out.condition("top", CGNS_ENUMV(FaceCenter), false, {1, 1, 2, 2, 1, 2, 2, 2, 2});
        out.condition("one", CGNS_ENUMV(FaceCenter), false, {3, 2, 1});
    }
    const kvo::Mesh mesh = readIt(path("faces.cgns"));
    EXPECT_EQ(nodeSet(mesh, "top"), (Ids{10, 11, 12, 13, 14, 15, 17, 18}));
    EXPECT_EQ(nodeSet(mesh, "one"), (Ids{6, 9, 15, 18}));
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(CgnsZones, FacesOfThinZonesAreOnTheBoundary)
{
    {
        ZoneWriter out(path("thin.cgns"));
        out.block({2, 4, 2}); // one cell thick along i and k
        out.condition("jmax", CGNS_ENUMV(FaceCenter), true, {1, 4, 1, 1, 4, 1});
        out.condition("kmax", CGNS_ENUMV(FaceCenter), true, {1, 1, 2, 1, 3, 2});
    }
    const kvo::Mesh mesh = readIt(path("thin.cgns"));
    EXPECT_EQ(nodeSet(mesh, "jmax"), (Ids{7, 8, 15, 16}));
    EXPECT_EQ(nodeSet(mesh, "kmax"), (Ids{9, 10, 11, 12, 13, 14, 15, 16}));
}

TEST_F(CgnsZones, EdgesOfFlatZonesAreNodes)
{
    {
        ZoneWriter out(path("flat.cgns"), 2);
        out.block({3, 2});
        out.condition("top", CGNS_ENUMV(EdgeCenter), true, {1, 2, 2, 2});
    }
    EXPECT_EQ(nodeSet(readIt(path("flat.cgns")), "top"), (Ids{4, 5, 6}));
}

TEST_F(CgnsZones, ConditionsBeyondTheZoneLoseOnlyWhatIsOutside)
{
    {
        ZoneWriter out(path("beyond.cgns"));
        out.block({2, 2, 2});
        out.condition("wall", CGNS_ENUMV(Vertex), true, {1, 1, 2, 9, 1, 2});
        out.condition("outside", CGNS_ENUMV(Vertex), true, {1, 7, 1, 2, 8, 1});
    }
    const kvo::Mesh mesh = readIt(path("beyond.cgns"));
    EXPECT_EQ(elementIds(mesh), Ids{1});
    EXPECT_EQ(nodeSet(mesh, "wall"), (Ids{5, 6}));
    EXPECT_EQ(nodeSet(mesh, "outside"), Ids{});
    ASSERT_EQ(log.warnings().size(), 1u);
    EXPECT_EQ(log.warnings()[0].count, 2u);
    EXPECT_NE(log.warnings()[0].lines[0].find("\"wall\" reaches out of zone \"block\""), std::string::npos);
}

TEST_F(CgnsZones, CoordinatesMayStandInAnyOrder)
{
    {
        ZoneWriter out(path("order.cgns"));
        out.unstructured(3, 0);
        out.coordinate("CoordinateZ", {7, 8, 9});
        out.coordinate("CoordinateR", {1, 2, 3});
        out.coordinate("CoordinateTheta", {4, 5, 6});
        out.coordinate("Area", {0, 0, 0});
    }
    EXPECT_EQ(pointOf(readIt(path("order.cgns")), 3), (Point{3, 6, 9}));
    ASSERT_EQ(log.warnings().size(), 1u);
    EXPECT_EQ(log.warnings()[0].count, 2u);
}

TEST_F(CgnsZones, DividedPolygonsTakeNoIdsOfOtherSections)
{
    {
        ZoneWriter out(path("polygons.cgns"));
        out.unstructured(6, 0);
        out.coordinate("CoordinateX", {0, 1, 1, 0, 2, 2});
        out.coordinate("CoordinateY", {0, 0, 1, 1, 0, 1});
        out.coordinate("CoordinateZ", {0, 0, 0, 0, 0, 0});
        out.polygons("a", 1, {1, 2, 5, 6, 3, 4}, {0, 6});
        out.polygons("b", 2, {1, 2, 3, 4, 2, 5, 6, 3}, {0, 4, 8});
    }
    const kvo::Mesh mesh = readIt(path("polygons.cgns"));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(partOf(mesh, 6).name, "a");
    EXPECT_TRUE(log.warnings().empty());
}

TEST_F(CgnsZones, SectionsWithTheSameNumbersLoseNoElements)
{
    for (const cgsize_t second : {1, 2, 0}) {
        {
            ZoneWriter out(path("sections.cgns"));
            out.unstructured(6, 0);
            out.coordinate("CoordinateX", {0, 1, 1, 0, 2, 2});
            out.coordinate("CoordinateY", {0, 0, 1, 1, 0, 1});
            out.coordinate("CoordinateZ", {0, 0, 0, 0, 0, 0});
            out.polygons("a", 1, {1, 2, 3, 4, 2, 5, 6, 3}, {0, 4, 8});
            out.polygons("b", second, {1, 2, 3, 2, 5, 6}, {0, 3, 6});
            out.condition("wall", CGNS_ENUMV(FaceCenter), false, {2, 0, 0}); // one element: of which section?
        }
        const kvo::Mesh mesh = readIt(path("sections.cgns"));
        EXPECT_EQ(elementIds(mesh), (Ids{1, 2, 3, 4})) << second;
        EXPECT_EQ(nodesOf(mesh, 3), (Ids{1, 2, 3})) << second;
        EXPECT_EQ(log.warningCount("numbers that cannot be used"), 1u) << second;
        EXPECT_TRUE(mesh.sets.empty()) << second;
        EXPECT_EQ(log.warningCount(kvo::warnSetMember), 1u) << second;
    }
}

TEST_F(CgnsZones, NewerFilesAreReadAsFarAsTheyAreLikeOlderOnes)
{
    writeTinyCgns(path("tiny.cgns"));
    const kvo::Mesh expected = readIt(path("tiny.cgns"));
    setVersion(path("tiny.cgns"), 4.2F);
    const kvo::Mesh mesh = readIt(path("tiny.cgns"));
    ASSERT_EQ(mesh.files.size(), expected.files.size());
    EXPECT_EQ(elementIds(mesh), elementIds(expected));
    EXPECT_EQ(partNames(mesh), partNames(expected));
    EXPECT_EQ(mesh.files[0].xyz, expected.files[0].xyz);
    EXPECT_EQ(mesh.sets.size(), expected.sets.size());
}

TEST_F(CgnsZones, FilesOfUnknownVersionsAreNotCalledDamaged)
{
    writeTinyCgns(path("new.cgns"));
    setVersion(path("new.cgns"), 99);
    try {
        readIt(path("new.cgns"));
        ADD_FAILURE() << "no message";
    } catch (const kvo::ImportError& error) {
        EXPECT_EQ(std::string(error.what()).find("damaged"), std::string::npos) << error.what();
        EXPECT_NE(std::string(error.what()).find("cannot be opened"), std::string::npos) << error.what();
    }
}
