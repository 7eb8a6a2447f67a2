// ModelWriter: collects a model and puts its directory in place.
#include "modelwriter.h"

#include <algorithm>

#include "modeldata.h"
#include "modelfolders.h"
#include "modelformat.h"
#include "replaceable.h"

using namespace readgen;

struct [[gnu::visibility("hidden")]] ModelWriter::Impl
{
    ModelData model;

    FileData& currentFile()
    {
        if (model.files.empty()) {
            startFile(model.modelName);
        }
        return model.files.back();
    }
    void startFile(const std::string& name)
    {
        model.files.emplace_back();
        model.files.back().name = name;
    }
};

namespace {

// The readers take the model's name for the file of a model that has only one, so that one gets it.
void nameSingleFile(ModelData& model)
{
    if (model.files.empty()) {
        model.files.emplace_back();
    }
    if (model.files.size() == 1) {
        model.files[0].name = model.modelName;
    }
}

bool isInside(const std::string& path, const std::string& folder)
{
    return path == folder || path.compare(0, folder.size() + 1, folder + "/") == 0;
}

// The folders to move: the model's and those of its files, without those that lie in another one of them.
std::vector<std::string> outermostFolders(const ModelData& model)
{
    std::vector<std::string> names = {model.modelName};
    for (const FileData& file : model.files) {
        names.push_back(file.name);
    }
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return a.size() != b.size() ? a.size() < b.size() : a < b;
    });
    std::vector<std::string> outermost;
    for (const std::string& name : names) {
        if (std::none_of(outermost.begin(), outermost.end(), [&](const auto& o) { return isInside(name, o); })) {
            outermost.push_back(name);
        }
    }
    return outermost;
}

void writeModel(ModelData& model)
{
    nameSingleFile(model);
    prepareModel(model);
    const std::vector<std::string> folders = outermostFolders(model);
    checkReplaceable(model.dirName, model.modelName, folders);
    StagingFolder staging(model.dirName);
    writeModelFiles(model, staging.path());
    staging.sync();
    checkReplaceable(model.dirName, model.modelName, folders); // writing can take a while
    staging.moveInto(folders);
}

} // namespace

ModelWriter::ModelWriter(const std::string& dirName, const std::string& modelName) : impl(new Impl)
{
    impl->model.dirName = dirName;
    impl->model.modelName = modelName;
}

ModelWriter::~ModelWriter() = default;

void ModelWriter::beginFile(const std::string& fileName)
{
    impl->startFile(fileName);
}

void ModelWriter::addNodes(std::size_t count, const unsigned int* ids, const float* xyz)
{
    FileData& file = impl->currentFile();
    file.ids.insert(file.ids.end(), ids, ids + count);
    file.xyz.insert(file.xyz.end(), xyz, xyz + 3 * count);
}

void ModelWriter::addPart(const ModelPart& part, std::size_t numElements, const unsigned int* elementIds,
                          const unsigned int* nodeRefs, NodeReference reference)
{
    FileData& file = impl->currentFile();
    file.parts.emplace_back();
    PartData& data = file.parts.back();
    data.part = part;
    data.byIndex = reference == NodeReference::ByIndex;
    data.numElements = numElements;
    data.ids.assign(elementIds, elementIds + numElements);
    // How much an impossible stride would cover is anyone's guess; write() refuses the part.
    if (strideFits(part.drawType, part.stride)) {
        data.refs.assign(nodeRefs, nodeRefs + numElements * part.stride);
    }
}

void ModelWriter::setDeck(const std::string& text)
{
    impl->model.deckText = text;
}

bool ModelWriter::write(std::string* error)
{
    std::string problem;
    try {
        writeModel(impl->model);
        return true;
    } catch (const std::bad_alloc&) {
        problem = impl->model.dirName + "/" + impl->model.modelName + ": not enough memory";
    } catch (const std::exception& caught) {
        problem = caught.what();
    }
    if (error) {
        *error = problem;
    }
    return false;
}
