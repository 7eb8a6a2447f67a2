// From a word of the command line to the pair of names that the library takes.
#include "model_source.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "caeenv.h"
#include "confinement.h"
#include "deck_import.h"
#include "output_redirect.h"
#include "program_error.h"
#include "scratch_folder.h"
#include "session_model.h"
#include "text/mapped_file.h"
#include "text/printable.h"

namespace fs = std::filesystem;

namespace kvo {

namespace {

// "dir/model/part_start" must fit the library's path buffer of 128 bytes.
const std::size_t longestPath = 127;

// A short name for a directory: /proc/self/fd/N.
class ShortName
{
public:
    explicit ShortName(const std::string& directory)
        : descriptor(open(directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC))
    {
        if (descriptor < 0) {
            throw ProgramError(directory, std::string("cannot be opened (") + std::strerror(errno) + ")");
        }
    }
    ~ShortName() { close(descriptor); }

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor); }

private:
    int descriptor;
};

// The index of a model directory, as it was: a model that takes its place brings one of its own. Held open, so that
// its number is given to no other file.
class HeldIndex
{
public:
    explicit HeldIndex(const std::string& path) : descriptor(open(path.c_str(), O_PATH | O_CLOEXEC))
    {
        there = descriptor >= 0 && fstat(descriptor, &first) == 0;
    }
    ~HeldIndex()
    {
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
    HeldIndex(const HeldIndex&) = delete;
    HeldIndex& operator=(const HeldIndex&) = delete;

    bool isStill(const std::string& path) const
    {
        struct stat now;
        return there && stat(path.c_str(), &now) == 0 && now.st_dev == first.st_dev && now.st_ino == first.st_ino &&
               now.st_size == first.st_size && now.st_mtim.tv_sec == first.st_mtim.tv_sec &&
               now.st_mtim.tv_nsec == first.st_mtim.tv_nsec;
    }

private:
    int descriptor;
    struct stat first;
    bool there;
};

std::size_t pathLength(const std::string& dir, const std::string& model)
{
    return dir.size() + 1 + model.size() + std::strlen("/part_start");
}

// The first line of what the reader library said, without its own name in front.
std::string firstReport(const std::string& text)
{
    const std::string prefix = "kvoread: ";
    const std::size_t from = text.compare(0, prefix.size(), prefix) == 0 ? prefix.size() : 0;
    return text.substr(from, text.find('\n') - from);
}

unsigned long long countNodes(const Model& model, std::uint32_t file)
{
    std::vector<std::uint32_t> ids;
    std::uint64_t count = 0, parts = 0;
    for (const Part& part : model.parts()) {
        if (part.file == file) {
            count += part.nodeCount();
            ++parts;
        }
    }
    if (parts < 2) {
        return count;
    }
    ids.reserve(count);
    for (const Part& part : model.parts()) {
        if (part.file == file) {
            const std::vector<std::uint32_t> some = part.nodeIds.toVector();
            ids.insert(ids.end(), some.begin(), some.end());
        }
    }
    std::sort(ids.begin(), ids.end());
    return static_cast<unsigned long long>(std::unique(ids.begin(), ids.end()) - ids.begin());
}

ModelPartInfo partInfoOf(const Part& part)
{
    ModelPartInfo out;
    out.part.id = part.id;
    out.part.name = part.name;
    out.part.drawType = drawTypeOf(part.kind);
    out.part.stride = part.slotCount;
    out.part.hasColor = true;
    std::copy(part.color.begin(), part.color.end(), out.part.color);
    out.part.propertyId = part.propertyId;
    out.part.propertyName = part.propertyName;
    out.part.materialId = part.materialId;
    out.part.materialName = part.materialName;
    out.numElements = part.elementCount();
    out.numNodes = part.nodeCount();
    std::copy(part.extents.begin(), part.extents.end(), out.extents);
    out.fileIndex = static_cast<int>(part.file);
    return out;
}

// As a model directory of the same deck says it.
ModelInfo modelInfoOf(const Model& model)
{
    ModelInfo out;
    std::copy(model.extents().begin(), model.extents().end(), out.extents);
    for (const std::string& file : model.files()) {
        out.numNodes.push_back(countNodes(model, static_cast<std::uint32_t>(out.files.size())));
        out.files.push_back(file);
    }
    for (const Part& part : model.parts()) {
        out.parts.push_back(partInfoOf(part));
    }
    return out;
}

} // namespace

struct ModelSource::Impl
{
    std::string shown;
    std::string titleText;
    std::string leftOutLine;
    std::string dir;
    std::string realDir; // what dir is short for
    std::string model;
    std::string trueDirectory;
    std::string trueName;
    ModelInfo info;
    bool deck = false;
    std::optional<Model> inMemory;
    std::unique_ptr<ScratchFolder> temporary;
    std::unique_ptr<ShortName> alias;
    std::unique_ptr<HeldIndex> index;

    std::string indexPath() const { return dir + "/" + model + "/part_start"; }
    bool isUnchanged() const { return index->isStill(indexPath()); }

    // A model that is replaced meanwhile is read anew, a few times.
    bool readInfo(std::string& problem)
    {
        bool read = false;
        for (int attempt = 0; attempt < 5; ++attempt) {
            index = std::make_unique<HeldIndex>(indexPath());
            read = readModelInfo(dir, model, &info, &problem);
            if (isUnchanged()) {
                break;
            }
        }
        return read;
    }

    void useDirectory(const fs::path& path)
    {
        if (!fs::exists(path / "part_start")) {
            throw ProgramError(shown, "is no model directory (it has no part_start)");
        }
        const fs::path full = fs::canonical(path);
        dir = full.parent_path().string();
        model = full.filename().string();
    }

    void readDeck(const fs::path& deck, const std::string& root, Decks decks)
    {
        ImportLog log;
        DeckOptions reading;
        reading.root = root;
        const auto target = [this] {
            temporary = std::make_unique<ScratchFolder>("kvo-");
            return (fs::path(temporary->path()) / "model").string();
        };
        if (decks == Decks::Memory) {
            inMemory = readDeckModel(deck.string(), target, log, {}, reading);
        } else {
            importDeck(deck.string(), target(), log, {}, reading);
        }
        leftOutLine = summarizeLeftOut(log);
        if (inMemory) {
            info = modelInfoOf(*inMemory);
        } else {
            useDirectory(fs::path(temporary->path()) / "model");
        }
    }

    void shortenPath()
    {
        if (pathLength(dir, model) <= longestPath) {
            return;
        }
        alias = std::make_unique<ShortName>(dir);
        realDir = dir;
        dir = alias->path();
        if (pathLength(dir, model) > longestPath) {
            throw ProgramError(shown, "the model directory's name is longer than the " +
                                          std::to_string(longestPath - pathLength(dir, "")) +
                                          " bytes that can be loaded");
        }
    }
};

ModelSource::ModelSource(const std::string& path, const Confinement& confinement, Decks decks) : impl(new Impl)
{
    impl->shown = path;
    confinement.check({path});
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status) && !isGivenOpen(path)) {
        throw ProgramError(path, error ? error.message() : "No such file or directory");
    }
    if (fs::is_directory(status)) {
        confinement.checkModel(path);
        impl->useDirectory(path);
    } else {
        impl->deck = true;
        impl->readDeck(path, confinement.root(), decks);
    }
    impl->titleText = fs::is_directory(status) ? impl->model : fs::path(path).stem().string();
    const fs::path full = fs::weakly_canonical(path, error); // a pipe has no place
    impl->trueDirectory = full.parent_path().string();
    impl->trueName = full.filename().string();
    if (impl->inMemory) {
        return;
    }
    impl->shortenPath();
    std::string problem;
    if (!impl->readInfo(problem)) {
        throw ProgramError(withRealNames(problem));
    }
    for (std::size_t k = 0; !impl->deck && k < impl->info.files.size(); ++k) {
        confinement.checkModel(impl->dir + "/" + impl->info.files[k]);
    }
}

ModelSource::~ModelSource() = default;

const std::string& ModelSource::dirName() const
{
    return impl->dir;
}

const std::string& ModelSource::modelName() const
{
    return impl->model;
}

const std::string& ModelSource::trueDirectory() const
{
    return impl->trueDirectory;
}

const std::string& ModelSource::trueName() const
{
    return impl->trueName;
}

const std::string& ModelSource::shownName() const
{
    return impl->shown;
}

std::string ModelSource::title() const
{
    return impl->titleText;
}

std::string ModelSource::withRealNames(std::string text) const
{
    const std::size_t at = impl->alias ? text.find(impl->dir) : std::string::npos;
    return at == std::string::npos ? text : text.replace(at, impl->dir.size(), impl->realDir);
}

const std::string& ModelSource::leftOut() const
{
    return impl->leftOutLine;
}

const ModelInfo& ModelSource::info() const
{
    return impl->info;
}

const Model* ModelSource::model() const
{
    return impl->inMemory ? &*impl->inMemory : nullptr;
}

bool ModelSource::isDeck() const
{
    return impl->deck;
}

void ModelSource::checkUnchanged() const
{
    if (!impl->inMemory && !impl->isUnchanged()) {
        throw ProgramError(impl->shown, "was replaced while it was read; run the command again");
    }
}

void warnOfLeftOut(const ModelSource& source)
{
    if (!source.leftOut().empty()) {
        std::fprintf(stderr, "kvo: warning: %s: %s (kvo import lists them)\n", printable(source.shownName()).c_str(),
                     printable(source.leftOut()).c_str());
    }
}

void loadParts(CAEEnv& env, const ModelSource& source)
{
    ErrorCapture errors;
    const int failed = env.getAll(nullptr);
    const std::string reported = errors.text();
    source.checkUnchanged();
    if (!reported.empty()) {
        throw ProgramError(source.withRealNames(firstReport(reported)));
    }
    if (failed) {
        throw ProgramError(source.shownName(), "the model cannot be loaded");
    }
}

} // namespace kvo
