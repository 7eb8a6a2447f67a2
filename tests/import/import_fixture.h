// Decks as text in, meshes and models out.
#ifndef KVO_TESTS_IMPORT_FIXTURE_H
#define KVO_TESTS_IMPORT_FIXTURE_H

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "abaqus/inp_reader.h"
#include "deck.h"
#include "mesh_finish.h"
#include "model_builder.h"
#include "partstr.h"

// Ids of an element's nodes; the third node of a beam last, kvo::noNode if it has none.
using Ids = std::vector<std::int64_t>;
using Point = std::vector<double>;

// An element as it comes back out of a model directory.
struct LoadedElement
{
    unsigned int drawType = 0;
    unsigned int part = 0;
    std::vector<unsigned int> nodeIds; // one per slot; 0xFFFFFFFF for an empty third slot
    std::vector<Point> points;         // of the slots that are not empty
};

class ImportTest : public testing::Test
{
protected:
    ImportTest();
    ~ImportTest() override;

    // A file in the test's own folder.
    std::string path(const std::string& name) const { return (folder / name).string(); }
    std::string write(const std::string& name, const std::string& text) const;

    // The mesh of a deck; a fresh log.
    kvo::Mesh read(const std::string& text, const std::string& name = "deck.inp");
    kvo::Mesh readFile(const std::string& path);
    // The message of the error that reading ends with; fails the test if it does not end so.
    std::string readError(const std::string& text, const std::string& name = "deck.inp");

    // Writes the mesh to path(name) and loads it back. Element ids must be unique over the whole model.
    std::map<unsigned int, LoadedElement> roundTrip(const kvo::Mesh& mesh, const std::string& name = "model");

    // Loads the model at path(name).
    std::map<unsigned int, LoadedElement> load(const std::string& name);

    std::filesystem::path folder;
    kvo::ImportLog log;
};

// Part records that a reader has made, and all that they hold.
void releaseParts(unsigned int count, PartInfoStr* parts);

// --- looking into a mesh; file is an index into Mesh::files ---

Ids elementIds(const kvo::Mesh& mesh, std::size_t file = 0); // of what is not dropped, ascending
Ids nodesOf(const kvo::Mesh& mesh, std::int64_t element, std::size_t file = 0);
Point pointOf(const kvo::Mesh& mesh, std::int64_t node, std::size_t file = 0);
const kvo::MeshPart& partOf(const kvo::Mesh& mesh, std::int64_t element, std::size_t file = 0);
std::vector<std::string> partNames(const kvo::Mesh& mesh);

// Elements that are not dropped, by the name of their type.
std::map<std::string, std::uint64_t> typeCounts(const kvo::Mesh& mesh);

// Where real decks may be: KVO_TEST_DATA names the folder, else "shared/data" next to the project's.
std::filesystem::path dataFolder();
// Why a test is skipped that needs one of them.
std::string withoutRealFile(const std::filesystem::path& file);

// "1, x, y, z" lines of nodes 1 to count at (id, id squared, 0).
std::string someNodes(int count);

inline bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

#endif
