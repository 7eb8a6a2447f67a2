// From a word of the command line to the pair of names that the library takes.
#include "model_source.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "caeenv.h"
#include "confinement.h"
#include "deck_import.h"
#include "output_redirect.h"
#include "program_error.h"
#include "scratch_folder.h"
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

    void importTemporary(const fs::path& deck, const std::string& root)
    {
        temporary = std::make_unique<ScratchFolder>("kvo-");
        const fs::path target = fs::path(temporary->path()) / "model";
        ImportLog log;
        DeckOptions reading;
        reading.root = root;
        importDeck(deck.string(), target.string(), log, {}, reading);
        leftOutLine = summarizeLeftOut(log);
        useDirectory(target);
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

ModelSource::ModelSource(const std::string& path, const Confinement& confinement) : impl(new Impl)
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
        impl->importTemporary(path, confinement.root());
    }
    impl->titleText = fs::is_directory(status) ? impl->model : fs::path(path).stem().string();
    const fs::path full = fs::weakly_canonical(path, error); // a pipe has no place
    impl->trueDirectory = full.parent_path().string();
    impl->trueName = full.filename().string();
    impl->shortenPath();
    std::string problem;
    if (!impl->readInfo(problem)) {
        throw ProgramError(withRealNames(problem));
    }
    for (std::size_t k = 0; !impl->temporary && k < impl->info.files.size(); ++k) {
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

bool ModelSource::isDeck() const
{
    return impl->temporary != nullptr;
}

void ModelSource::checkUnchanged() const
{
    if (!impl->isUnchanged()) {
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
