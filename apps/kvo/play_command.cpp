// kvo play: a session, played.
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "confinement.h"
#include "deck_file.h"
#include "drawing_options.h"
#include "file_checks.h"
#include "model_session.h"
#include "model_source.h"
#include "program_error.h"
#include "scene_options.h"
#include "vocabulary.h"

namespace kvo {

namespace {

struct PlayOptions
{
    std::string session;
    std::string model;
    std::string output;
    DrawingOptions drawing;
    SceneOptions scene; // view and looks
};

std::string manual()
{
    return R"(
SESSIONS
  A text file of operations, one a line; words are separated by blanks, # begins a comment, a file name with
  blanks stands in double quotes. Each line is carried out and a frame is drawn. Before the first operation
  two lines may say what the session is for:
    MODEL FILE      a model directory or a deck; a relative path counts from the session file
    SIZE WxH        the picture, in which positions are pixels from the top left corner, y downwards
  The operations and their words:
)" + describeOperations() +
           R"(
  PICK prints what it finds and selects it: what the picture shows there, with "through" what is covered,
  too. A place without a size is 5x5 pixels, of which the nearest hit counts. IDS are lists such as
  1,5-9, for elements and nodes also 3:17,20-30: in part 3 only. PICTURE writes the last frame. Files of
  PICTURE, SAVE and RESTORE count from the current folder, like those on the command line.

  A line that cannot be carried out ends the session with FILE:LINE and exit status 1; what earlier lines
  wrote stays.
)" + describeViews() +
           describeLooks() + describeDevices() +
           R"(
EXAMPLES
  kvo play tour.session                      the model that the session names
  kvo play tour.session bracket.inp -o end.png --size 1280x960
)";
}

FileRoles filesOf(const PlayOptions& options, const Session& played, const std::string& model)
{
    FileRoles roles;
    roles.reads(model, "the model");
    addSession(roles, played, "the session");
    if (!options.output.empty()) {
        addPicture(roles, options.output, played);
    }
    addOutput(roles, options.drawing.log, "--log");
    return roles;
}

void play(const PlayOptions& options)
{
    if (!options.output.empty()) {
        checkPictureName(options.output, "--output");
    }
    const Confinement confinement(options.drawing.confine);
    confinement.check({options.session, options.output, options.drawing.log});
    const Session played = readSession(options.session);
    confinement.checkSession(played);
    const std::string model = options.model.empty() ? played.modelPath() : options.model;
    confinement.check({model});
    const SceneSetup scene = parseScene(options.scene);
    const LookSetup& looks = scene.looks;
    const SessionOptions settings =
        sessionOptions(options.drawing, looks, played.width ? played.width : 1280, played.height ? played.height : 960);
    if (model.empty()) {
        throw UsageError(options.session + ": the session has no MODEL line, so the command line must name a model");
    }
    FileRoles roles = filesOf(options, played, model);
    const ModelSource source(model, confinement, settings.decks());
    addModel(roles, source);
    warnOfLeftOut(source);
    const std::string moved = formatOrigin(readOrigin(source));
    if (!moved.empty()) {
        std::cerr << "kvo: note: " << moved;
    }
    ModelSession session(source, settings);
    openScene(session, scene);
    playSession(session, session.picker(), played);
    if (!options.output.empty()) {
        session.writePicture(session.picture(), options.output);
    }
    session.finish();
}

} // namespace

void addPlayCommand(CLI::App& program)
{
    auto options = std::make_shared<PlayOptions>();
    CLI::App* command = program.add_subcommand("play", "Play a session: views, drags, picks, selections, pictures.");
    command->add_option("session", options->session, "Session file")->required()->type_name("SESSION");
    command->add_option("model", options->model, "Model directory or deck, instead of the session's")
        ->type_name("MODELDIR|DECK");
    command->add_option("-o,--output", options->output, "Picture of the last frame")->type_name("OUT.png");
    addContextOptions(*command, options->drawing, "the session's, else 1280x960");
    addViewOptions(*command, options->scene, "Where it is seen from in the beginning", false);
    addLookOptions(*command, options->drawing);
    addLooks(*command, options->scene.looks);
    command->footer(manual);
    command->callback([options] { play(*options); });
}

} // namespace kvo
