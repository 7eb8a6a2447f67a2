// Volumes of solids against their formulas.
#include "convert_fixture.h"

namespace {

// One solid with the corners of a tiny element.
struct OneSolid
{
    explicit OneSolid(const TinyElement& element)
    {
        for (const auto& node : tinyNodes()) {
            file.addNode(static_cast<std::int64_t>(file.nodeIds.size()) + 1, node[0], node[1], node[2]);
        }
        for (const int corner : element.corners) {
            corners.push_back(corner - 1);
        }
    }

    kvo::MeshFile file;
    std::vector<std::int64_t> corners;
};

const std::vector<std::pair<std::string, kvo::Shape>> solids = {{"hexa", kvo::Shape::Hexa},
                                                                {"pyramid", kvo::Shape::Pyramid},
                                                                {"wedge", kvo::Shape::Wedge},
                                                                {"tetra", kvo::Shape::Tetra}};

} // namespace

TEST(SolidSense, VolumesAreThoseOfTheShapes)
{
    for (const auto& row : solids) {
        const OneSolid solid(tiny(row.first));
        EXPECT_NEAR(kvo::solidVolume(solid.file, row.second, solid.corners.data()), tiny(row.first).volume, 1e-12)
            << row.first;
    }
}

TEST(SolidSense, MirroredSolidsHaveTheOppositeVolume)
{
    for (const auto& row : solids) {
        OneSolid solid(tiny(row.first));
        kvo::mirrorSolid(row.second, solid.corners.data());
        EXPECT_NEAR(kvo::solidVolume(solid.file, row.second, solid.corners.data()), -tiny(row.first).volume, 1e-12)
            << row.first;
        kvo::mirrorSolid(row.second, solid.corners.data());
        EXPECT_NEAR(kvo::solidVolume(solid.file, row.second, solid.corners.data()), tiny(row.first).volume, 1e-12)
            << row.first;
    }
}

TEST(ContainerElement, GoesByNameAndNumberOfNodes)
{
    const struct
    {
        const char* name;
        std::size_t nodes;
        kvo::Shape shape;
    } rows[] = {
        {"hex", 8, kvo::Shape::Hexa},           {"HEX27", 27, kvo::Shape::Hexa},
        {"HEXSHELL", 8, kvo::Shape::Hexa},      {"Tetra10", 10, kvo::Shape::Tetra},
        {"tet4", 4, kvo::Shape::Tetra},         {"PYRA_14", 14, kvo::Shape::Pyramid},
        {"WEDGE", 15, kvo::Shape::Wedge},       {"PENTA_18", 18, kvo::Shape::Wedge},
        {"SHELL", 3, kvo::Shape::Triangle},     {"SHELL", 6, kvo::Shape::Triangle},
        {"SHELL8", 8, kvo::Shape::Quad},        {"shell", 9, kvo::Shape::Quad},
        {"TRISHELL6", 6, kvo::Shape::Triangle}, {"QUAD", 4, kvo::Shape::Quad},
        {"BAR", 3, kvo::Shape::Line},           {"Truss", 2, kvo::Shape::Line},
    };
    for (const auto& row : rows) {
        const kvo::ContainerElement kind = kvo::containerElement(row.name, row.nodes);
        EXPECT_TRUE(kind.drawn && kind.shape == row.shape) << row.name << " " << row.nodes;
    }
    EXPECT_FALSE(kvo::containerElement("SPHERE", 1).drawn);
    EXPECT_FALSE(kvo::containerElement("HEX", 4).drawn);
    EXPECT_FALSE(kvo::containerElement("SUPER", 40).drawn);
}

// A quarter of a twisted wall in one cell: were each face halved along one diagonal, its volume would be -0.01.
TEST(SolidSense, ThinCellsAlongCurvedWallsHavePositiveVolumes)
{
    const double thick = 1e-4;
    kvo::MeshFile file;
    for (const double radius : {1.0, 1.0 + thick}) {
        const double points[4][3] = {{radius, 0, 0}, {0, radius, -1.2}, {0, 1.3 * radius, 1}, {1.2 * radius, 0, 1.5}};
        for (const auto& p : points) {
            file.addNode(static_cast<std::int64_t>(file.nodeIds.size()) + 1, p[0], p[1], p[2]);
        }
    }
    const std::int64_t corners[] = {0, 4, 5, 1, 3, 7, 6, 2}; // the wall's sides are the faces 0374 and 1265
    EXPECT_NEAR(kvo::solidVolume(file, kvo::Shape::Hexa, corners), 2.36e-4, 1e-6);
}
