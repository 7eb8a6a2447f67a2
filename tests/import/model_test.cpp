// From meshes to model directories.
#include "import_fixture.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "mantypes.h"
#include "model_slots.h"
#include "modelinfo.h"

namespace {

class Model : public ImportTest
{
protected:
    ModelInfo info(const std::string& name = "model")
    {
        ModelInfo result;
        std::string error;
        EXPECT_TRUE(readModelInfo(folder.string(), name, &result, &error)) << error;
        return result;
    }

    std::string writeError(const kvo::Mesh& mesh)
    {
        try {
            kvo::writeModelDirectory(mesh, path("model"), log);
        } catch (const kvo::ImportError& error) {
            EXPECT_FALSE(std::filesystem::exists(path("model"))) << "something was left behind";
            return error.message;
        }
        ADD_FAILURE() << "no error";
        return {};
    }
};

using Slots = std::vector<unsigned int>;
using Face = std::set<unsigned int>; // the nodes of a face
using Faces = std::set<Face>;

Slots slotsOf(kvo::Shape shape, const Ids& nodes)
{
    Slots slots(8);
    kvo::fillModelSlots({"X", kvo::Family::Solid, shape}, nodes.data(), slots.data());
    return slots;
}

// The faces that a solid is drawn with: the slots 4 = 5 make a tetrahedron, else 5 = 6 a wedge (counted from 1).
// Faces that have collapsed to an edge do not count.
Faces drawnFaces(const Slots& s)
{
    const std::vector<Slots> tetra = {{0, 1, 2}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}};
    const std::vector<Slots> wedge = {{0, 1, 2, 3}, {1, 2, 6, 4}, {3, 0, 4, 6}, {0, 1, 4}, {2, 3, 6}};
    const std::vector<Slots> hexa = {{0, 1, 2, 3}, {1, 2, 6, 5}, {4, 5, 6, 7},
                                     {3, 0, 4, 7}, {2, 3, 7, 6}, {0, 1, 5, 4}};
    Faces faces;
    for (const Slots& row : s[3] == s[4] ? tetra : (s[4] == s[5] ? wedge : hexa)) {
        Face face;
        for (const unsigned int slot : row) {
            face.insert(s[slot]);
        }
        if (face.size() > 2) {
            faces.insert(face);
        }
    }
    return faces;
}

} // namespace

TEST_F(Model, SlotsOfSolids)
{
    EXPECT_EQ(slotsOf(kvo::Shape::Wedge, {1, 2, 3, 4, 5, 6}), (Slots{1, 3, 6, 4, 2, 2, 5, 5}));
    EXPECT_EQ(slotsOf(kvo::Shape::Pyramid, {1, 2, 3, 4, 5}), (Slots{1, 2, 3, 4, 5, 5, 5, 5}));
    EXPECT_EQ(slotsOf(kvo::Shape::Tetra, {1, 2, 3, 4}), (Slots{1, 2, 3, 4, 4, 4, 4, 4}));
    EXPECT_EQ(slotsOf(kvo::Shape::Hexa, {1, 2, 3, 4, 5, 6, 7, 8}), (Slots{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST_F(Model, EveryDrawnFaceIsAFaceOfTheElement)
{
    EXPECT_EQ(drawnFaces(slotsOf(kvo::Shape::Wedge, {1, 2, 3, 4, 5, 6})),
              (Faces{{1, 2, 3}, {4, 5, 6}, {1, 2, 4, 5}, {2, 3, 5, 6}, {1, 3, 4, 6}}));
    EXPECT_EQ(drawnFaces(slotsOf(kvo::Shape::Pyramid, {1, 2, 3, 4, 5})),
              (Faces{{1, 2, 3, 4}, {1, 2, 5}, {2, 3, 5}, {3, 4, 5}, {1, 4, 5}}));
    EXPECT_EQ(drawnFaces(slotsOf(kvo::Shape::Tetra, {1, 2, 3, 4})),
              (Faces{{1, 2, 3}, {1, 2, 4}, {1, 3, 4}, {2, 3, 4}}));
    EXPECT_EQ(drawnFaces(slotsOf(kvo::Shape::Hexa, {1, 2, 3, 4, 5, 6, 7, 8})).size(), 6u);
}

TEST_F(Model, CollapsedHexahedraKeepTheirFaces)
{
    // Whatever two neighbouring nodes are one, the faces are those of the hexahedron without the edge between them.
    const std::pair<int, int> edges[] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6},
                                         {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
    const std::vector<std::vector<int>> hexa = {{0, 1, 2, 3}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                                {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};
    for (const auto& first : edges) {
        for (const auto& second : edges) {
            Ids nodes = {1, 2, 3, 4, 5, 6, 7, 8};
            const std::int64_t gone = nodes[first.second];
            std::replace(nodes.begin(), nodes.end(), gone, nodes[first.first]);
            std::replace(nodes.begin(), nodes.end(), std::int64_t(nodes[second.second]),
                         std::int64_t(nodes[second.first]));
            Faces expected;
            for (const auto& row : hexa) {
                Face face;
                for (const int corner : row) {
                    face.insert(static_cast<unsigned int>(nodes[corner]));
                }
                if (face.size() > 2) {
                    expected.insert(face);
                }
            }
            EXPECT_EQ(drawnFaces(slotsOf(kvo::Shape::Hexa, nodes)), expected)
                << "edges " << first.first << first.second << " and " << second.first << second.second;
        }
    }
}

TEST_F(Model, EverythingComesBackWithItsIds)
{
    const kvo::Mesh mesh =
        read("*NODE\n10, 0, 0, 0\n20, 1, 0, 0\n30, 1, 1, 0\n40, 0, 1, 0\n2147483647, 0, 0, 1\n"
             "*ELEMENT, TYPE=C3D5\n2000000000, 10, 20, 30, 40, 2147483647\n*ELEMENT, TYPE=S3\n2, 10, 20, 30\n"
             "*ELEMENT, TYPE=S4\n3, 10, 20, 30, 40\n*ELEMENT, TYPE=B31\n4, 10, 20, 30\n5, 20, 30\n"
             "*ELEMENT, TYPE=SPRING1\n6, 40\n*ELEMENT, TYPE=C3D4\n7, 10, 20, 30, 2147483647\n");
    const auto elements = roundTrip(mesh);
    ASSERT_EQ(elements.size(), 7u);
    const unsigned int apex = 2147483647u;
    EXPECT_EQ(elements.at(2000000000u).nodeIds, (Slots{10, 20, 30, 40, apex, apex, apex, apex}));
    EXPECT_EQ(elements.at(2000000000u).drawType, unsigned(SOLID));
    EXPECT_EQ(elements.at(2000000000u).points.back(), (Point{0, 0, 1}));
    EXPECT_EQ(elements.at(2).nodeIds, (Slots{10, 20, 30, 30}));
    EXPECT_EQ(elements.at(3).nodeIds, (Slots{10, 20, 30, 40}));
    EXPECT_EQ(elements.at(4).nodeIds, (Slots{10, 20, 30}));
    EXPECT_EQ(elements.at(4).drawType, unsigned(BEAM));
    EXPECT_EQ(elements.at(5).nodeIds, (Slots{20, 30, 0xFFFFFFFF}));
    EXPECT_EQ(elements.at(6).nodeIds, (Slots{40, 40, 0xFFFFFFFF}));
    EXPECT_EQ(elements.at(6).drawType, unsigned(DISCRETE));
    EXPECT_EQ(elements.at(7).nodeIds, (Slots{10, 20, 30, apex, apex, apex, apex, apex}));
}

TEST_F(Model, APartOfSeveralFamiliesIsSplit)
{
    const kvo::Mesh mesh =
        read(someNodes(6) + "*ELEMENT, TYPE=T3D2, ELSET=MIX\n1, 1, 2\n*ELEMENT, TYPE=S3, ELSET=MIX\n2, 1, 2, 3\n3, 2, "
                            "3, 4\n*ELEMENT, TYPE=S3, ELSET=OTHER\n4, 4, 5, 6\n");
    const auto elements = roundTrip(mesh);
    EXPECT_EQ(elements.at(2).part, 1u) << "the largest piece keeps the id";
    EXPECT_EQ(elements.at(4).part, 2u);
    EXPECT_EQ(elements.at(1).part, 3u) << "above the highest id";
    const ModelInfo model = info();
    ASSERT_EQ(model.parts.size(), 3u);
    std::set<std::string> names;
    for (const ModelPartInfo& part : model.parts) {
        names.insert(part.part.name);
    }
    EXPECT_EQ(names, (std::set<std::string>{"MIX", "MIX (beam)", "OTHER"}));
    ASSERT_EQ(log.notes().size(), 1u);
    EXPECT_EQ(log.notes()[0], "part 1 \"MIX\" is split: its 1 beam element is part 3");
}

TEST_F(Model, APartWithoutAnIdIsCalledByItsName)
{
    kvo::Mesh mesh =
        read(someNodes(3) + "*ELEMENT, TYPE=T3D2, ELSET=MIX\n1, 1, 2\n*ELEMENT, TYPE=S3, ELSET=MIX\n2, 1, 2, 3\n");
    mesh.parts.at(0).id = 0;
    roundTrip(mesh);
    ASSERT_EQ(log.notes().size(), 1u);
    EXPECT_EQ(log.notes()[0].substr(0, 21), "part \"MIX\" is split: ");
}

TEST_F(Model, PropertiesAndMaterialsAreKept)
{
    roundTrip(
        read(someNodes(3) + "*ELEMENT, TYPE=S3, ELSET=E\n1, 1, 2, 3\n*SHELL SECTION, ELSET=E, MATERIAL=Steel\n1.\n"));
    const ModelPart part = info().parts.at(0).part;
    EXPECT_EQ(part.id, 1u);
    EXPECT_EQ(part.propertyId, 1u);
    EXPECT_EQ(part.propertyName, "shell section");
    EXPECT_EQ(part.materialId, 1u);
    EXPECT_EQ(part.materialName, "Steel");
}

TEST_F(Model, InstancesAreFilesOfTheModelWithTheirOwnIds)
{
    const kvo::Mesh mesh =
        read("*PART, NAME=P\n" + someNodes(3) +
             "*ELEMENT, TYPE=S3\n1, 1, 2, 3\n*END PART\n*ASSEMBLY, NAME=A\n"
             "*INSTANCE, NAME=a/b, PART=P\n*END INSTANCE\n*INSTANCE, NAME=node_ids, PART=P\n0, 0, 5\n*END INSTANCE\n"
             "*END ASSEMBLY\n");
    kvo::writeModelDirectory(mesh, path("model/"), log);
    const ModelInfo model = info();
    ASSERT_EQ(model.files, (std::vector<std::string>{"model/1_a_b", "model/2_node_ids"}));
    EXPECT_EQ(model.parts.at(1).fileIndex, 1);
    EXPECT_EQ(model.parts.at(1).extents[4], 5.0f);
    EXPECT_EQ(model.parts.at(0).extents[4], 0.0f);
}

// A table of every part in every file would take a gigabyte for 2,000 instances.
TEST_F(Model, EachOfManyInstancesHasItsOwnParts)
{
    const int instances = 70;
    std::string deck = "*PART, NAME=P\n" + someNodes(3) +
                       "*ELEMENT, TYPE=S3, ELSET=E\n1, 1, 2, 3\n*ELEMENT, TYPE=T3D2, ELSET=E\n2, 1, 2\n*END PART\n"
                       "*ASSEMBLY, NAME=A\n";
    for (int k = 1; k <= instances; ++k) {
        deck += "*INSTANCE, NAME=I" + std::to_string(k) + ", PART=P\n0, 0, " + std::to_string(k) + "\n*END INSTANCE\n";
    }
    kvo::writeModelDirectory(read(deck + "*END ASSEMBLY\n"), path("model"), log);
    const ModelInfo model = info();
    ASSERT_EQ(model.files.size(), std::size_t(instances));
    ASSERT_EQ(model.parts.size(), std::size_t(2 * instances));
    std::set<unsigned int> ids;
    for (const ModelPartInfo& part : model.parts) {
        EXPECT_EQ(part.numElements, 1u);
        EXPECT_EQ(part.extents[4], float(part.fileIndex + 1)) << "z of the instance";
        ids.insert(part.part.id);
    }
    EXPECT_EQ(ids.size(), model.parts.size());
}

TEST_F(Model, ALargeMeshGoesThroughSeveralBlocks)
{
    // More elements than one block takes, ids descending.
    const int n = 70000;
    std::string deck = "*NODE\n";
    for (int k = n + 2; k > 0; --k) {
        deck += std::to_string(k) + "," + std::to_string(k) + "," + std::to_string(k % 2) + "\n";
    }
    deck += "*ELEMENT, TYPE=S3, ELSET=ALL\n";
    for (int k = n; k > 0; --k) {
        deck += std::to_string(k) + "," + std::to_string(k) + "," + std::to_string(k + 1) + "," +
                std::to_string(k + 2) + "\n";
    }
    const kvo::Mesh mesh = read(deck + "*SHELL SECTION, ELSET=ALL\n");
    EXPECT_GT(mesh.files.at(0).blocks.size(), 1u);
    const auto elements = roundTrip(mesh);
    ASSERT_EQ(elements.size(), std::size_t(n));
    for (int k = 1; k <= n; ++k) {
        const unsigned int id = static_cast<unsigned int>(k);
        ASSERT_EQ(elements.at(id).nodeIds, (Slots{id, id + 1, id + 2, id + 2}));
        ASSERT_EQ(elements.at(id).points[0][0], k);
    }
}

TEST_F(Model, IdsThatDoNotFitAreAnError)
{
    EXPECT_EQ(writeError(read("*NODE\n1, 1\n2, 2\n2147483648, 3\n*ELEMENT, TYPE=S3\n1, 1, 2, 2147483648\n")),
              "node id 2147483648 cannot be kept: a model's ids are 1 to 2147483647");
    EXPECT_EQ(writeError(read(someNodes(3) + "*ELEMENT, TYPE=S3\n5000000000, 1, 2, 3\n")),
              "element id 5000000000 cannot be kept: a model's ids are 1 to 2147483647");
}

TEST_F(Model, ErrorsNameTheLineOfTheNodeOrElement)
{
    const auto placeOf = [this](const std::string& deck) {
        try {
            kvo::writeModelDirectory(read(deck), path("model"), log);
        } catch (const kvo::ImportError& error) {
            return std::string(error.what()).substr(folder.string().size() + 1, 11);
        }
        return std::string("no error");
    };
    EXPECT_EQ(placeOf("*NODE\n1, 1\n2, 2\n2147483648, 3\n*ELEMENT, TYPE=T3D2\n1, 1, 2\n"), "deck.inp:4:");
    EXPECT_EQ(placeOf("*NODE\n9, 1\n2, 2\n7, 1e39\n*ELEMENT, TYPE=T3D2\n1, 9, 2\n"), "deck.inp:4:") << "sorted nodes";
    EXPECT_EQ(placeOf(someNodes(2) + "*ELEMENT, TYPE=T3D2\n5000000000, 1, 2\n"), "deck.inp:5:");
}

TEST_F(Model, CoordinatesThatDoNotFitAreAnError)
{
    EXPECT_EQ(writeError(read("*NODE\n7, 1e39\n")), "node 7: a coordinate is beyond single precision");
}

TEST_F(Model, ADeckWithoutNodesIsAnError)
{
    EXPECT_EQ(writeError(read("*HEADING\nnothing\n")), "the deck has no nodes");
}

TEST_F(Model, AFailedImportKeepsTheOldModel)
{
    const kvo::Mesh good = read(someNodes(3) + "*ELEMENT, TYPE=S3\n1, 1, 2, 3\n");
    kvo::writeModelDirectory(good, path("model"), log);
    EXPECT_THROW(kvo::writeModelDirectory(read("*NODE\n7, 1e39\n"), path("model"), log), kvo::ImportError);
    EXPECT_EQ(info().parts.size(), 1u);
}

TEST_F(Model, NamesThatAreNoModelDirectories)
{
    const kvo::Mesh mesh = read(someNodes(1));
    EXPECT_THROW(kvo::writeModelDirectory(mesh, "", log), kvo::ImportError);
    EXPECT_THROW(kvo::writeModelDirectory(mesh, "/", log), kvo::ImportError);
    EXPECT_THROW(kvo::writeModelDirectory(mesh, "..", log), kvo::ImportError);
    EXPECT_THROW(kvo::writeModelDirectory(mesh, "/proc/none/model", log), kvo::ImportError);
}

TEST_F(Model, LossOfPrecisionIsNoted)
{
    roundTrip(read("*NODE\n1, 1e7\n2, 10000000.1\n3, 1e7, 1\n*ELEMENT, TYPE=S3\n1, 1, 2, 3\n"));
    ASSERT_EQ(log.notes().size(), 1u);
    EXPECT_TRUE(contains(log.notes()[0], "single precision")) << log.notes()[0];
    roundTrip(read("*NODE\n1, 100\n2, 100.1\n3, 100, 1\n*ELEMENT, TYPE=S3\n1, 1, 2, 3\n"), "other");
    EXPECT_TRUE(log.notes().empty());
}

TEST_F(Model, LossOfPrecisionIsNotedForEveryEdge)
{
    // A column of that shape far away, all of whose edges are long but one.
    const struct
    {
        const char* type;
        int corners;
        std::vector<std::pair<int, int>> edges;
    } rows[] = {{"C3D8", 8, {{1, 4}, {1, 5}, {4, 8}, {3, 7}, {5, 8}}},
                {"C3D6", 6, {{1, 3}, {1, 4}, {3, 6}, {4, 6}}},
                {"C3D4", 4, {{1, 3}, {1, 4}, {2, 4}, {3, 4}}},
                {"S4", 4, {{1, 4}}},
                {"S3", 3, {{1, 3}}}};
    for (const auto& row : rows) {
        for (const auto& edge : row.edges) {
            std::ostringstream deck;
            deck.precision(12);
            deck << "*NODE\n";
            for (int k = 1; k <= row.corners; ++k) {
                const int at = k == edge.second ? edge.first : k;
                deck << k << ", " << 1e7 + 100 * at + (at != k ? .1 : 0) << ", " << at * at << ", 0\n";
            }
            deck << "*ELEMENT, TYPE=" << row.type << "\n1";
            for (int k = 1; k <= row.corners; ++k) {
                deck << ", " << k;
            }
            roundTrip(read(deck.str() + "\n"), "model");
            const std::vector<std::string> notes = log.notes();
            EXPECT_EQ(notes.size(), 1u) << row.type << " " << edge.first << "-" << edge.second;
        }
    }
}
