// Handing view states to the drawing library and taking them from it.
#include "view_state.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include <sys/stat.h>

#include "caeenv.h"
#include "output_file.h"
#include "program_error.h"
#include "state_bytes.h"

namespace kvo {

namespace {

const unsigned int normalsFlags = PART_ELEMENT_NORMALS_DONE | PART_NODE_NORMALS_DONE;

// The flags say which normals the saved environment had computed; what counts is which ones this environment has.
// Without that, parts saved smooth and loaded flat would not be drawn.
void keepNormals(StateBytes& state, const CAEEnv& env)
{
    for (unsigned int part = 0; part < env.numParts; ++part) {
        const unsigned int own = env.partsInfoList[part].partFlag & normalsFlags;
        state.setPartFlag(part, (state.partFlag(part) & ~normalsFlags) | own);
    }
}

// Shows and hides the parts before the rest: that moves lights and pivot, and the state's pivot must win.
void showParts(const StateBytes& state, CAEEnv& env)
{
    bool changed = false;
    for (unsigned int part = 0; part < env.numParts; ++part) {
        const unsigned int wanted = state.partFlag(part) & (PART_SHOWN | PART_HIDDEN);
        changed = changed || wanted != (env.partsInfoList[part].partFlag & (PART_SHOWN | PART_HIDDEN));
        env.setDisplay(part + 1, wanted);
    }
    if (changed) {
        env.modifyExtents();
    }
}

// The library writes the names that its environment was made with; a deck's are those of a temporary directory, and a
// long path's an alias.
class ProperNames
{
public:
    ProperNames(CAEEnv& e, const ModelLabels& labels) : env(e), directory(e.dirName), model(e.modelName)
    {
        env.dirName = labels.directory;
        env.modelName = labels.model;
    }
    ~ProperNames()
    {
        env.dirName = directory;
        env.modelName = model;
    }
    ProperNames(const ProperNames&) = delete;
    ProperNames& operator=(const ProperNames&) = delete;

private:
    CAEEnv& env;
    std::string directory;
    std::string model;
};

[[noreturn]] void failWriting(const std::string& path, const std::string& why)
{
    throw ProgramError(path, "cannot be written (" + why + ")");
}

// A view whose numbers have gone astray, by operations with huge values, could not be restored.
void checkWritten(const std::string& temporary, const ModelLabels& labels, const CAEEnv& env, const std::string& path)
{
    try {
        StateBytes(temporary, env.numParts).check(labels);
    } catch (const ProgramError& error) {
        const std::string what = error.what();
        const std::size_t place = temporary.size() + 2; // behind "FILE: "
        failWriting(path, "this view could not be restored: " + what.substr(std::min(place, what.size())));
    }
}

} // namespace

void restoreViewState(CAEEnv& env, const ModelLabels& labels, const std::string& path)
{
    StateBytes state(path, env.numParts);
    state.check(labels);
    keepNormals(state, env);
    showParts(state, env);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(fmemopen(state.body(), state.bodySize(), "rb"),
                                                                 std::fclose);
    if (!stream) {
        throw ProgramError(path, std::strerror(errno));
    }
    env.restore(stream.get());
}

void saveViewState(CAEEnv& env, const ModelLabels& labels, const std::string& path)
{
    const std::size_t wanted = stateSize(labels.directory.size(), labels.model.size(), env.numParts);
    OutputFile(path).write([&](const std::string& temporary) {
        const ProperNames names(env, labels);
        errno = 0;
        if (env.save(temporary.c_str()) != 0) {
            failWriting(path, std::strerror(errno));
        }
        // The library does not look whether writing worked.
        struct stat status;
        if (stat(temporary.c_str(), &status) != 0 || static_cast<std::size_t>(status.st_size) != wanted) {
            failWriting(path, "not all of it was taken; is the disk full?");
        }
        checkWritten(temporary, labels, env, path);
    });
}

} // namespace kvo
