// A model that is replaced while it is read: the old one, the new one or an error, never a mixture.
#include <atomic>
#include <cstring>
#include <filesystem>
#include <functional>
#include <thread>

#include "modelfixture.h"
#include "modelinfo.h"
#include "outputcapture.h"
#include "readelements.h"
#include "readids.h"
#include "readnodes.h"

namespace fs = std::filesystem;
using namespace readgen;

namespace {

// Two triangles of nodes 1 to 4 in one or two files. The models of two heights have equal ids in equal places, so that
// nothing but a stamp tells their files apart: node_ids, parts' sizes and the elements' ids are the same.
void writeRoof(const std::string& dir, float height, bool twoFiles)
{
    ModelWriter writer(dir, "roof");
    const Ids ids = {1, 2, 3, 4};
    const float xyz[] = {0, 0, height, 1, 0, height, 1, 1, height, 0, 1, height};
    if (twoFiles) {
        writer.beginFile("roof/nodes");
    }
    writer.addNodes(4, ids.data(), xyz);
    if (twoFiles) {
        writer.beginFile("roof/faces");
    }
    const bool even = static_cast<int>(height) % 2 == 0;
    addPart(writer, makePart(1, SHELL, 4), {1, 2}, even ? Ids{1, 2, 3, 3, 1, 3, 4, 4} : Ids{1, 2, 4, 4, 2, 3, 4, 4});
    writeOrFail(writer);
}

// Loads as the environment does, with a call between any two steps.
struct Loading
{
    Loading(const std::string& dir, const std::vector<std::string>& files, const std::function<void(int)>& between)
    {
        int step = 0;
        for (const std::string& file : files) {
            ids.push_back(new ReadIDS(dir.c_str(), file.c_str()));
            nodes.push_back(new ReadNodes(dir.c_str(), file.c_str()));
            const int count = ids.back()->get("node_ids");
            between(++step);
            if (count != 0) {
                nodes.back()->getValues();
                between(++step);
            }
        }
        ReadElements elements(&pidMap, &ids, &nodes);
        for (std::size_t k = 0; k < files.size(); ++k) {
            elements.setValues(dir.c_str(), files[k].c_str(), static_cast<int>(k), ids[k], nodes[k]);
            elements.getAll(&numParts, &parts);
            between(++step);
        }
        steps = step;
    }
    ~Loading()
    {
        for (unsigned int k = 0; k < numParts; ++k) {
            releasePart(parts[k]);
        }
        delete[] parts;
        for (std::size_t k = 0; k < ids.size(); ++k) {
            delete ids[k];
            delete nodes[k];
        }
    }
    Loading(const Loading&) = delete;
    Loading& operator=(const Loading&) = delete;

    // The height of the one part when all of it is of one model, 0 when nothing was loaded, -1 for a mixture.
    int height() const
    {
        if (numParts == 0) {
            return 0;
        }
        const PartInfoStr& part = parts[0];
        const float* xyz = part.partNodes.nodeValues;
        const bool even = static_cast<int>(xyz[2]) % 2 == 0;
        const unsigned int third = part.partElements.elmIndices[2]; // of the first triangle
        const bool fits = numParts == 1 && part.partNodes.numNodes == 4 && third == (even ? 2u : 3u) &&
                          xyz[5] == xyz[2] && xyz[8] == xyz[2] && xyz[11] == xyz[2];
        return fits ? static_cast<int>(xyz[2]) : -1;
    }

    std::vector<ReadIDS*> ids;
    std::vector<ReadNodes*> nodes;
    UIUIMap pidMap;
    unsigned int numParts = 0;
    PartInfoStr* parts = nullptr;
    int steps = 0;
};

struct Replaced : testing::TestWithParam<bool>
{
    bool twoFiles() const { return GetParam(); }
    std::vector<std::string> files() const
    {
        return twoFiles() ? std::vector<std::string>{"roof/nodes", "roof/faces"} : std::vector<std::string>{"roof"};
    }
    TempFolder folder;
};

void nothing(int) {}

} // namespace

INSTANTIATE_TEST_SUITE_P(Each, Replaced, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& info) { return info.param ? "TwoFiles" : "OneFile"; });

TEST_P(Replaced, BetweenTwoStepsIsAnErrorOrOneOfTheTwo)
{
    writeRoof(folder.path, 1, twoFiles());
    const int steps = Loading(folder.path, files(), nothing).steps;
    for (int step = 1; step <= steps; ++step) {
        writeRoof(folder.path, 1, twoFiles());
        OutputCapture said(2);
        const Loading loading(folder.path, files(), [&](int done) {
            if (done == step) {
                writeRoof(folder.path, 2, twoFiles());
            }
        });
        const std::string errors = said.all();
        EXPECT_EQ(loading.height(), step == steps ? 1 : 0) << "after step " << step;
        EXPECT_EQ(errors.find("was the model replaced while it was read?") != std::string::npos, step < steps)
            << errors << " after step " << step;
    }
}

TEST_P(Replaced, ByAnEqualModelIsThatModel)
{
    writeRoof(folder.path, 1, twoFiles());
    const Loading loading(folder.path, files(), [&](int) { writeRoof(folder.path, 1, twoFiles()); });
    EXPECT_EQ(loading.height(), 1);
}

// By chance what the tests above do on purpose: nearly every replacement falls into a load.
TEST_P(Replaced, OverAndOverGivesNoMixture)
{
    writeRoof(folder.path, 1, twoFiles());
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (int k = 0; k < 25; ++k) {
            writeRoof(folder.path, static_cast<float>(2 - k % 2), twoFiles());
        }
        done = true;
    });
    int whole = 0, mixed = 0;
    {
        OutputCapture said(2);
        while (!done) {
            const int height = Loading(folder.path, files(), nothing).height();
            whole += height > 0;
            mixed += height < 0;
        }
    }
    writer.join();
    EXPECT_EQ(mixed, 0);
    EXPECT_GT(whole, 0);
}

// As they were written before files carried stamps.
TEST_P(Replaced, FilesWithoutStampsLoad)
{
    writeRoof(folder.path, 1, twoFiles());
    for (const std::string& name : listTree(folder.path)) {
        const std::string path = folder.path + "/" + name;
        if (name.back() == '/') {
            continue;
        }
        std::string bytes = readBytes(path);
        if (fs::path(path).filename() == "part_start") {
            bytes = withoutStamp(bytes);
        } else {
            FileHeader& header = *reinterpret_cast<FileHeader*>(&bytes[0]);
            header.stamp = 0;
            header.headerChecksum = headerChecksum(header);
        }
        writeBytes(path, bytes);
    }
    EXPECT_EQ(Loading(folder.path, files(), nothing).height(), 1);
    ModelInfo info;
    std::string error;
    EXPECT_TRUE(readModelInfo(folder.path, "roof", &info, &error)) << error;
}

TEST_P(Replaced, AnIndexOfAnotherModelIsAnError)
{
    writeRoof(folder.path, 1, twoFiles());
    const std::string index = readBytes(folder.path + "/roof/part_start");
    writeRoof(folder.path, 2, twoFiles());
    writeBytes(folder.path + "/roof/part_start", index);
    ModelInfo info;
    std::string error;
    EXPECT_FALSE(readModelInfo(folder.path, "roof", &info, &error));
    EXPECT_NE(error.find("was written with another model than its part_start"), std::string::npos) << error;
}

// One file of the new model copied over the old one's.
TEST_P(Replaced, AFileOfAnotherModelIsAnError)
{
    TempFolder other;
    writeRoof(folder.path, 1, twoFiles());
    writeRoof(other.path, 3, twoFiles());
    const std::string name = "/" + files()[0] + "/node_coords";
    writeBytes(folder.path + name, readBytes(other.path + name));
    OutputCapture said(2);
    EXPECT_EQ(Loading(folder.path, files(), nothing).height(), 0);
    EXPECT_NE(said.all().find("node_coords: offset 48: was written with another model"), std::string::npos);
}
