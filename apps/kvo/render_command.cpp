// kvo render: a picture of a model.
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "confinement.h"
#include "contact_sheet.h"
#include "drawing_options.h"
#include "file_checks.h"
#include "model_session.h"
#include "model_source.h"
#include "model_summary.h"
#include "mtrans.h"
#include "program_error.h"
#include "scene_options.h"
#include "vocabulary.h"

namespace kvo {

namespace {

struct RenderOptions
{
    std::string model;
    std::string output;
    std::string mode = "fill";
    std::string saveState;
    DrawingOptions drawing;
    SceneOptions scene;
    bool boxes = false;
    bool modeGiven = false;

    bool sheet() const { return scene.view == "all"; }
};

std::string manual()
{
    return std::string(R"(
PICTURE
  The model is drawn undistorted and fills the picture up to a small margin, whatever its shape. OUT.png
  is written whole or not at all; - is standard output. No output takes the place of what is no file, of
  what the command reads or of another output.
)") + describeViews() +
           describeLooks() +
           R"(
PARTS
  Lists are ids and ranges: 1,5-9. An id that the model does not have is an error, a range takes what is
  there. --hide is applied after --parts.

SELECTIONS
  Selected parts and elements are blue, highlighted parts green, selected nodes are blue points. Elements
  and nodes go by their own ids, in every part that has them; 3:17,20-30 takes them in part 3 only, up to
  the next PART: of the list.

VIEW STATE
  --save-state keeps the view after the last operation, with the parts' visibility, selection and colours;
  --state begins with it. What the command line says as well (--view, --shade, --mode, --parts, ...) is
  applied after it. A file that does not belong to the model, or is damaged, is an error.

OPERATIONS (--ops FILE)
  A text file of operations, one a line, # begins a comment; each line is carried out and a frame drawn,
  and the picture is the frame of the last line (end with NO_TRANSFORM for a picture without the mark that
  zooming leaves for one frame). Positions are pixels from the picture's top left corner, y downwards. The
  operations and their words:
)" + describeOperations() +
           describeDevices() + R"(
EXAMPLES
  kvo render bracket -o bracket.png --view front --size 800x600
  kvo render car.inp -o hull.png --hide 7,20-29 --mode line
  kvo render bracket -o edges.png --style edges --ghosts --hide 1
  kvo render bracket -o sheet.png --view all --size 1600x900 --background white
  kvo render bracket -o weld.png --highlight 2 --select-elements 1:100-180 --save-state weld.state
)";
}

Picture drawSheet(ModelSession& session, const ContactSheet& sheet, const ModelSource& source, const SceneSetup& scene)
{
    Operation reset; // every view starts afresh
    reset.code = RESET_TRANSFORM;
    const auto draw = [&](std::size_t k) {
        session.setView(standardViews()[k].name);
        session.namePictures(std::string("the ") + standardViews()[k].name + " view");
        session.drawFrame();
        playOperation(session, session.picker(), reset);
        playSession(session, session.picker(), scene.session);
        return session.picture();
    };
    return sheet.compose(draw, describeModel(source));
}

// Seven views play the operations seven times, so only what turns and moves makes sense.
void checkSheet(const RenderOptions& options, const Session& session)
{
    if (!options.scene.state.empty() || !options.saveState.empty()) {
        throw UsageError("--view all goes neither with --state nor with --save-state");
    }
    for (const Operation& operation : session.operations) {
        const bool moves =
            operation.verb == Verb::Transform || (operation.verb >= Verb::Orbit && operation.verb <= Verb::Perspective);
        if (!moves) {
            throw ProgramError(session.file, operation.line,
                               formatOperation(operation) + " cannot be used with --view all");
        }
    }
}

SessionOptions pictureOptions(const RenderOptions& options, const SceneSetup& scene)
{
    if (options.sheet()) {
        return sessionOptions(options.drawing, scene.looks, 1600, 960);
    }
    const Session& session = scene.session;
    return sessionOptions(options.drawing, scene.looks, session.width ? session.width : 1280,
                          session.height ? session.height : 960);
}

Picture drawPicture(ModelSession& session, const RenderOptions& options, const SceneSetup& scene)
{
    playSession(session, session.picker(), scene.session);
    if (!options.saveState.empty()) {
        saveState(session, options.saveState);
    }
    return session.picture();
}

// Faces are drawn in one way: as the mode says, or as the style does.
void checkMode(const RenderOptions& options)
{
    if (options.modeGiven && options.mode != "fill" && options.scene.looks.style != "shaded") {
        throw UsageError("--mode " + options.mode + " does not go with --style " + options.scene.looks.style);
    }
}

SceneSetup sceneOf(const RenderOptions& options)
{
    checkMode(options);
    SceneSetup out = parseScene(options.scene);
    if (options.drawing.shadeGiven) {
        out.shade = findCode(shadeModels(), options.drawing.shade)->code;
    }
    if (options.modeGiven) {
        out.mode = findCode(polygonModes(), options.mode)->code;
    }
    out.boxes = options.boxes;
    return out;
}

FileRoles filesOf(const RenderOptions& options, const SceneSetup& scene)
{
    FileRoles roles;
    roles.reads(options.model, "the model");
    const bool sameState = !options.saveState.empty() && sameFile(scene.state, options.saveState);
    addScene(roles, scene, !sameState);
    addPicture(roles, options.output, scene.session);
    addOutput(roles, options.saveState, "--save-state");
    addOutput(roles, options.drawing.log, "--log");
    return roles;
}

void render(const RenderOptions& options)
{
    checkPictureName(options.output, "--output");
    const Confinement confinement(options.drawing.confine);
    confinement.check({options.model, options.output, options.saveState, options.drawing.log, options.scene.state,
                       options.scene.ops});
    const SceneSetup scene = sceneOf(options);
    confinement.checkSession(scene.session);
    SessionOptions settings = pictureOptions(options, scene);
    std::unique_ptr<ContactSheet> sheet;
    if (options.sheet()) {
        checkSheet(options, scene.session);
        sheet = std::make_unique<ContactSheet>(settings.width, settings.height, settings.background);
        if (!sheet->fontProblem().empty()) {
            std::cerr << "kvo: warning: " << sheet->fontProblem() << "; the text is left out\n";
        }
        settings.width = sheet->viewWidth();
        settings.height = sheet->viewHeight();
    }
    FileRoles roles = filesOf(options, scene);
    const ModelSource source(options.model, confinement, settings.decks());
    addModel(roles, source);
    warnOfLeftOut(source);
    ModelSession session(source, settings);
    openScene(session, scene);
    const Picture picture = sheet ? drawSheet(session, *sheet, source, scene) : drawPicture(session, options, scene);
    session.writePicture(picture, options.output);
    session.finish();
}

} // namespace

void addRenderCommand(CLI::App& program)
{
    auto options = std::make_shared<RenderOptions>();
    CLI::App* command = program.add_subcommand("render", "Draw a model into a PNG picture, without a display.");
    command->add_option("model", options->model, "Model directory, or deck (imported for the while)")
        ->required()
        ->type_name("MODELDIR|DECK");
    command->add_option("-o,--output", options->output, "Picture to write")->required()->type_name("OUT.png");
    addViewOptions(*command, options->scene,
                   "Where it is seen from, or all: a contact sheet of the seven standard views", true);
    addContextOptions(*command, options->drawing, "1280x960; contact sheet 1600x960");
    addLookOptions(*command, options->drawing);
    command->add_option("--mode", options->mode, "Draw faces, their edges or their corners")
        ->check(CLI::IsMember(namesOf(polygonModes())))
        ->each([options = options.get()](const std::string&) { options->modeGiven = true; })
        ->capture_default_str();
    addLooks(*command, options->scene.looks);
    addPartOptions(*command, options->scene);
    addSelectionOptions(*command, options->scene);
    command->add_flag("--boxes", options->boxes, "Draw the parts' bounding boxes with numbered corners");
    addStateAndOpsOptions(*command, options->scene);
    command->add_option("--save-state", options->saveState, "Save the view state after the last operation")
        ->type_name("FILE");
    command->footer(manual);
    command->callback([options] { render(*options); });
}

} // namespace kvo
