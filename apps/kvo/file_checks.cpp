// The files of options, sessions and models.
#include "file_checks.h"

#include <algorithm>
#include <vector>

#include <unistd.h>

#include "deck_file.h"
#include "model_source.h"
#include "output_file.h"
#include "picture_file.h"
#include "program_error.h"
#include "scene_options.h"
#include "session_file.h"

namespace kvo {

namespace {

void addOperation(FileRoles& roles, const Operation& operation, std::vector<std::string>& saved)
{
    const std::string& file = operation.file;
    if (operation.verb == Verb::Picture || operation.verb == Verb::Save) {
        const OutputFile writable(file);
        roles.writes(file, operation.verb == Verb::Save ? "SAVE" : "PICTURE");
    }
    if (operation.verb == Verb::Save) {
        saved.push_back(file);
    }
    const auto isFile = [&file](const std::string& other) { return sameFile(file, other); };
    if (operation.verb == Verb::Restore && std::none_of(saved.begin(), saved.end(), isFile)) {
        roles.reads(file, "a state that is restored");
    }
}

} // namespace

void addOutput(FileRoles& roles, const std::string& path, const std::string& option)
{
    if (path.empty()) {
        return;
    }
    roles.writes(path, option);
    const OutputFile writable(path);
}

void checkPictureName(const std::string& file, const std::string& option)
{
    const std::string wrong = wrongPictureEnding(file);
    if (!wrong.empty()) {
        throw UsageError(option + ": " + wrong);
    }
}

void addPicture(FileRoles& roles, const std::string& path, const Session& session)
{
    if (path != standardOutputName) {
        return addOutput(roles, path, "--output");
    }
    for (const Operation& operation : session.operations) {
        if (operation.verb == Verb::Pick) {
            throw UsageError("-o -: the session prints what it picks, and the picture would get between it");
        }
    }
    if (isatty(STDOUT_FILENO)) {
        throw UsageError("-o -: standard output is a terminal, which shows no pictures");
    }
}

void addSession(FileRoles& roles, const Session& session, const std::string& what)
{
    if (session.file.empty()) {
        return;
    }
    roles.reads(session.file, what);
    std::vector<std::string> saved;
    for (const Operation& operation : session.operations) {
        try {
            addOperation(roles, operation, saved);
        } catch (const HostError& error) {
            throw ProgramError(session.file, operation.line, error.what());
        }
    }
}

void addScene(FileRoles& roles, const SceneSetup& scene, bool withState)
{
    if (withState && !scene.state.empty()) {
        roles.reads(scene.state, "--state");
    }
    addSession(roles, scene.session, "--ops");
}

void addModel(FileRoles& roles, const ModelSource& source)
{
    if (source.isDeck()) {
        for (const std::string& file : readSources(source)) {
            roles.reads(file, "a file of the deck");
        }
        return;
    }
    const std::string folder = source.dirName() + "/" + source.modelName() + "/";
    for (const char* name : {"part_start", "deck.json", "node_ids", "node_coords", "parts", "elements"}) {
        roles.reads(folder + name, "a file of the model");
    }
    for (const std::string& file : source.info().files) {
        for (const char* name : {"node_ids", "node_coords", "parts", "elements"}) {
            roles.reads(source.dirName() + "/" + file + "/" + name, "a file of the model");
        }
    }
}

} // namespace kvo
