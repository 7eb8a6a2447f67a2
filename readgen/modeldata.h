// A model on its way to disk: collected, checked and prepared. Private to readgen/.
#ifndef MODELDATA_H
#define MODELDATA_H

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "modelwriter.h"

namespace readgen {

// Why a model cannot be written, in one line.
class CannotWrite : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct PartData
{
    ModelPart part;
    bool byIndex = false;
    std::size_t numElements = 0;
    std::vector<std::uint32_t> ids;  // numElements
    std::vector<std::uint32_t> refs; // numElements x part.stride; empty when that stride is impossible
    // Set by prepareModel:
    std::uint64_t numNodes = 0;
    float extents[6] = {0, 0, 0, 0, 0, 0};
};

struct FileData
{
    std::string name;
    std::vector<std::uint32_t> ids;
    std::vector<float> xyz; // 3 each
    std::vector<PartData> parts;
};

struct ModelData
{
    std::string dirName;
    std::string modelName;
    std::string deckText; // of deck.json; empty: no such file
    std::vector<FileData> files;
    // Set by prepareModel:
    float extents[6] = {0, 0, 0, 0, 0, 0};
};

// Checks a model, sorts its nodes by id and finds its extents. Throws CannotWrite.
void prepareModel(ModelData& model);

// Writes the files of a prepared model below a root folder (in place of dirName), whose folders it makes. Throws
// CannotWrite.
void writeModelFiles(const ModelData& model, const std::string& root);

} // namespace readgen

#endif
