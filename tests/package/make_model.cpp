// Writes a model of three parts for the example hosts: package_make_model DIR MODEL
//
// A 6 x 4 sheet, and two blocks on it; the model is 6 wide and 4 deep, so that the hosts' pictures are 3 : 2.
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "mantypes.h"
#include "modelwriter.h"

namespace {

// A block's eight corners with ids from firstId; its slots are the ids in order.
void addBlock(ModelWriter& writer, unsigned int partId, unsigned int firstId, float x, float size)
{
    std::vector<unsigned int> ids;
    std::vector<float> xyz;
    const float corners[4][2] = {{x, -size / 2}, {x + size, -size / 2}, {x + size, size / 2}, {x, size / 2}};
    for (unsigned int k = 0; k < 8; ++k) {
        ids.push_back(firstId + k);
        xyz.insert(xyz.end(), {corners[k % 4][0], corners[k % 4][1], k < 4 ? 0.0f : size});
    }
    writer.addNodes(ids.size(), ids.data(), xyz.data());
    ModelPart part;
    part.id = partId;
    part.name = "BLOCK_" + std::to_string(partId);
    part.drawType = SOLID;
    part.stride = 8;
    const unsigned int elementId = 100 * partId;
    writer.addPart(part, 1, &elementId, ids.data());
}

void addSheet(ModelWriter& writer)
{
    const unsigned int ids[] = {1, 2, 3, 4};
    const float xyz[] = {-3, -2, 0, 3, -2, 0, 3, 2, 0, -3, 2, 0};
    writer.addNodes(4, ids, xyz);
    ModelPart part;
    part.id = 1;
    part.name = "SHEET";
    part.drawType = SHELL;
    part.stride = 4;
    const unsigned int elementId = 100;
    writer.addPart(part, 1, &elementId, ids);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        return 2;
    }
    std::filesystem::remove_all(std::filesystem::path(argv[1]) / argv[2]);
    std::filesystem::create_directories(argv[1]);
    ModelWriter writer(argv[1], argv[2]);
    addSheet(writer);
    addBlock(writer, 2, 11, -2.5f, 2);
    addBlock(writer, 3, 21, 0.5f, 1.5f);
    std::string error;
    if (!writer.write(&error)) {
        std::fprintf(stderr, "package_make_model: %s\n", error.c_str());
        return 1;
    }
    return 0;
}
